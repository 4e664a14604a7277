// SPDX-License-Identifier: Apache-2.0
// The way of a message's text to the console and to the file opened by `startlog`.
//
// The listener queues each finished text. While a command line is typed or echoed (holdOutput) the
// texts wait; the next message that finds the console free writes them all, oldest first. Nothing
// else empties the queue, not even the end of the prompt.
#pragma once

#include <cstdio>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "state/guarded.h"

namespace ventrik {

struct ResponsePrinter {
  Guarded<std::vector<std::string>> queuedTexts;   // UTF-8, oldest first
  Guarded<std::shared_ptr<std::FILE>> logFile;     // null while no log is open
  Guarded<std::string> mapId{std::string("map")};  // the map view that `map` last named
};

// Starts logging to `path`, truncating it. Does nothing if a log is open; a file that can't be
// opened is not reported. Any thread.
void StartLog(ResponsePrinter& printer, const char* path);

// Ends the log, if one is open. Any thread.
void StopLog(ResponsePrinter& printer);

// Remembers `text` as the identifier of the map view. Any thread.
void SetMapId(ResponsePrinter& printer, std::string_view text);

// Takes the complete text of a message, UTF-8, and writes it with all that wait before it unless
// holdOutput is set. Listener thread.
void QueueResponseText(ResponsePrinter& printer, std::string_view text);

// Writes `text` to the log file, unchanged, and to the console. Listener thread.
void WriteText(ResponsePrinter& printer, std::string_view text);

}  // namespace ventrik
