// SPDX-License-Identifier: Apache-2.0
// The one question that the program asks in the middle of its work.
#pragma once

namespace ventrik {

// Prints what is asked, and reads standard input up to a "c". At the end of the input there is
// nobody to type one, so it waits on. The main thread may be reading keys at the same time, and
// takes its share of what is typed. A cancellation point; any thread.
void AskForC();

}  // namespace ventrik
