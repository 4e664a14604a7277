// SPDX-License-Identifier: Apache-2.0
// The one place through which the monkey draws its random numbers.
#pragma once

namespace ventrik {

// A number from 0 to RAND_MAX, from the C library's generator. Any thread; the generator is the
// process's own, so that threads which draw at the same time share its numbers.
int Draw();

// What Draw asks. A test puts its own numbers in.
extern int (*drawSource)();

// The remainder of a draw; 0 without a draw's effect on the result if `count` is 0, which has no
// remainders. A negative `count` gives what C's remainder gives.
int DrawBelow(int count);

}  // namespace ventrik
