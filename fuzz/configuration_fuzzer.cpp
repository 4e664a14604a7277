// SPDX-License-Identifier: Apache-2.0
// Any bytes must do as the configuration file, and any text as the filter of responses.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "console/utf8.h"
#include "messages/response_filter.h"
#include "shell/configuration.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view file(reinterpret_cast<const char*>(data), size);
  ventrik::ClientApp app;
  ventrik::ApplyConfiguration(app, file);
  app.responseFilter.Store(ventrik::ParseResponseFilter(ventrik::Utf8ToWide(file)));
  for (std::int32_t id = -2; id < 1000; ++id) ventrik::IsFiltered(app, id);
  return 0;
}
