// SPDX-License-Identifier: Apache-2.0
#include "bench/model/packages.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "tests/bench/model/cut_requests.h"
#include "tests/bench/model/model_fixture.h"

namespace ventrik::bench {
namespace {

Block PackageBlock(FunctionId id, const std::string& body) {
  Block block;
  std::string error;
  EXPECT_TRUE(EncodeMessage(id, {{"body", body}}, block, error)) << error;
  return block;
}

class PackagesTest : public ModelFixture {
 protected:
  std::vector<Sent> Begin() { return Handle(PackageBlock(CMD_STATE_PACKAGE, "state")); }
  std::vector<Sent> Piece(const std::string& body) {
    return Handle(PackageBlock(CMD_PACKAGE_PIECE, body));
  }
  std::vector<Sent> End() { return Handle(PackageBlock(CMD_PACKAGE_END, "")); }

  void ExpectLoaded(const std::vector<Sent>& sent) const {
    ASSERT_EQ(sent.size(), 1u);
    EXPECT_EQ(sent[0].id, CMD_PACKAGE_LOADED);
    EXPECT_EQ(sent[0].audience, Audience::everyone);
  }
};

TEST_F(PackagesTest, IsLoadedAMomentAfterItsEnd) {
  EXPECT_TRUE(Begin().empty());
  EXPECT_TRUE(Piece("abc").empty());
  EXPECT_TRUE(Piece("de").empty());
  EXPECT_TRUE(End().empty());
  EXPECT_EQ(state().packages.pieces, 2u);
  EXPECT_EQ(state().packages.bytes, 5u);
  EXPECT_TRUE(Pass(kPackageLoadTime - Milliseconds(1)).empty());
  ExpectLoaded(Pass(Milliseconds(1)));
  EXPECT_EQ(state().packages.loaded, 1u);
  EXPECT_TRUE(Pass(std::chrono::minutes(1)).empty());
}

TEST_F(PackagesTest, IsLoadedOnceNothingMoreComes) {
  Begin();
  EXPECT_TRUE(Pass(kPackageSilence - Milliseconds(1)).empty());
  Piece("a");
  EXPECT_TRUE(Pass(kPackageSilence - Milliseconds(1)).empty());
  Piece("b");
  EXPECT_TRUE(Pass(kPackageSilence - Milliseconds(1)).empty());
  ExpectLoaded(Pass(Milliseconds(1)));
}

TEST_F(PackagesTest, ABeginningAloneIsAPackage) {
  Begin();
  ExpectLoaded(Pass(kPackageSilence));
}

TEST_F(PackagesTest, APieceBeginsAPackageIfNeedBe) {
  Piece("abc");
  ExpectLoaded(Pass(kPackageSilence));
  Piece("x");
  EXPECT_EQ(state().packages.pieces, 1u);
  EXPECT_EQ(state().packages.bytes, 1u);
  ExpectLoaded(Pass(kPackageSilence));
  EXPECT_EQ(state().packages.loaded, 2u);
}

TEST_F(PackagesTest, ABeginningForgetsTheOneBefore) {
  Begin();
  Piece("abc");
  Begin();
  EXPECT_EQ(state().packages.pieces, 0u);
  EXPECT_EQ(state().packages.bytes, 0u);
  ExpectLoaded(Pass(std::chrono::minutes(1)));
}

TEST_F(PackagesTest, AnEndAloneIsNothing) {
  EXPECT_TRUE(End().empty());
  EXPECT_TRUE(Pass(std::chrono::minutes(1)).empty());
  EXPECT_EQ(state().packages.loaded, 0u);
}

TEST_F(PackagesTest, TakesPiecesOfAnySize) {
  Piece("");
  EXPECT_EQ(state().packages.pieces, 1u);
  Piece(std::string(1 << 20, '\0'));
  EXPECT_EQ(state().packages.bytes, std::uint64_t{1} << 20);
  HandleCutShort(model_, PackageBlock(CMD_STATE_PACKAGE, "abc"), now_);
  HandleCutShort(model_, PackageBlock(CMD_PACKAGE_PIECE, "abc"), now_);
  HandleCutShort(model_, PackageBlock(CMD_PACKAGE_END, "abc"), now_);
  ExpectLoaded(Pass(std::chrono::minutes(1)));
}

}  // namespace
}  // namespace ventrik::bench
