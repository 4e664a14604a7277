// SPDX-License-Identifier: Apache-2.0
#include "command/list_store.h"

namespace ventrik {

void ClearAllLists(ClientApp& app) {
  app.stringArrayLists.clear();
  app.routeHandleLists.clear();
  app.destinationElementLists.clear();
  app.routeModeLists.clear();
}

}  // namespace ventrik
