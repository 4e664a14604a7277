// SPDX-License-Identifier: Apache-2.0
#include "state/lists.h"

#include <gtest/gtest.h>

namespace ventrik {
namespace {

TEST(NamedLists, ListIsMadeByTheFirstWhoAsksForIt) {
  NamedLists<SRouteHandleList> lists;
  EXPECT_EQ(FindList(lists, "a"), nullptr);
  SRouteHandleList& made = FindOrCreateList(lists, "a");
  EXPECT_EQ(&FindOrCreateList(lists, "a"), &made);
  EXPECT_EQ(FindList(lists, "a"), &made);
  EXPECT_EQ(FindList(lists, "b"), nullptr);
  EXPECT_EQ(lists.size(), 1u);
}

TEST(NamedLists, SharedListOutlivesItsName) {
  NamedLists<SStringArray> lists;
  const std::shared_ptr<SStringArray> kept = FindOrCreateSharedList(lists, "a");
  lists.erase("a");
  EXPECT_EQ(kept.use_count(), 1);
  EXPECT_NE(FindOrCreateSharedList(lists, "a"), kept);
}

}  // namespace
}  // namespace ventrik
