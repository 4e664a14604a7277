// SPDX-License-Identifier: Apache-2.0
// The extraction of raw logs from file to file. All that goes wrong is said on the console; an
// output that can't be written is not. The output may be the input, which is then read whole first.
// Threads that run commands.
#pragma once

#include "state/client_app.h"

namespace ventrik {

void ExtractBatchChannel(const char* path, const char* output, bool keep);
void ExtractTextChannel(const char* path, const char* output);

// Both channels into files of fixed names, and both in one.
void ExtractAll(const char* path, const char* output);

// Both channels into files of fixed names, and plays the records at their own pace.
void ExtractAndReplay(ClientApp& app, const char* path);

}  // namespace ventrik
