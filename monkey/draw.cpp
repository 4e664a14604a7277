// SPDX-License-Identifier: Apache-2.0
#include "monkey/draw.h"

#include <cstdlib>

namespace ventrik {

int (*drawSource)() = std::rand;

int Draw() {
  return drawSource();
}

int DrawBelow(int count) {
  const int drawn = Draw();
  return count == 0 ? 0 : drawn % count;
}

}  // namespace ventrik
