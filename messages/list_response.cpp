// SPDX-License-Identifier: Apache-2.0
#include "messages/list_response.h"

#include <cstddef>
#include <utility>

#include "console/utf8.h"
#include "messages/message_text.h"
#include "messages/printer_pieces.h"
#include "state/logger.h"

namespace ventrik {
namespace {

bool HasRow(const ListResponse& response, std::int32_t number) {
  return number >= 1 && static_cast<std::size_t>(number) <= response.items.size();
}

}  // namespace

ListResponse ReadListResponse(const ReceivedBlock& block) {
  BlockCursor cursor(block, 10);
  ListResponse response{};
  response.inputEis = cursor.OptionalString(block.Word(1));
  response.validState = block.Word(2);
  response.startIndex = block.Word(3);
  response.resultCount = block.Word(4);
  response.fieldOptions = NextStrings(cursor, block.Word(6));
  response.items = NextStrings(cursor, block.Word(7));
  response.outputEis = cursor.OptionalString(block.Word(8));
  response.completeState = block.Word(9);
  return response;
}

std::string UseListAssignments(ClientApp& app, const ListResponse& response) {
  const PendingListAssignments assignments = app.pendingListAssignments.With(
      [](PendingListAssignments& queue) { return std::exchange(queue, {}); });
  std::string text;
  for (const PendingListAssignment& assignment : assignments) {
    if (!HasRow(response, assignment.itemNumber)) {
      AppendFormat(text, "%sVARIABLE> Error! Invalid list item number (%d).\n%s", ColourRed,
                   assignment.itemNumber, ColourReset);
      continue;
    }
    const std::size_t row = static_cast<std::size_t>(assignment.itemNumber) - 1;
    const std::wstring value = Utf8ToWide(response.items[row]);
    app.variables.With([&](VariableTable& table) { table[assignment.variableName] = value; });
    text += "VARIABLE> Variable '" + WideToUtf8(assignment.variableName) + "' has new value '" +
            WideToUtf8(value) + "'.\n";
  }
  return text;
}

}  // namespace ventrik
