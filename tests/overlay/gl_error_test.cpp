// SPDX-License-Identifier: Apache-2.0
// How each error of OpenGL ends the program. Which errors a machine gives for which calls is
// OpenGL's; GL_OUT_OF_MEMORY comes from a buffer that no memory can hold.
#include "overlay/gl_error.h"

#include <GLES/gl.h>

#include <cstdint>
#include <limits>

#include "tests/overlay/screen_fixture.h"

namespace ventrik::tests {
namespace {

class GlError : public ScreenTest {
 protected:
  // Makes the call with a context of its own and then checks.
  template <class Call>
  static void Check(Call call) {
    const OffscreenSurface surface = OpenOffscreenSurface();
    const CurrentSurface current(surface);
    call();
    CheckGlError("a_file", 12);
  }
};

TEST_F(GlError, NoErrorSaysNothing) {
  EXPECT_EQ(ErrorsOf([] { Check([] { glLineWidth(2); }); }), "");
}

using GlErrorDeathTest = GlError;

TEST_F(GlErrorDeathTest, InvalidEnum) {
  EXPECT_DEATH(Check([] { glEnable(0xFFFF); }),
               "^GL ERROR=0x0500\na_file\\(12\\):GL_INVALID_ENUM:$");
}

TEST_F(GlErrorDeathTest, InvalidValue) {
  EXPECT_DEATH(Check([] { glLineWidth(-1); }),
               "^GL ERROR=0x0501\na_file\\(12\\):GL_INVALID_VALUE:$");
}

TEST_F(GlErrorDeathTest, InvalidOperation) {
  EXPECT_DEATH(Check([] { glBufferSubData(GL_ARRAY_BUFFER, 0, 1, ""); }),
               "^GL ERROR=0x0502\na_file\\(12\\):GL_INVALID_OPERATION:$");
}

TEST_F(GlErrorDeathTest, OutOfMemoryHasNoDetailLine) {
  const auto exhaust = [] {
    GLuint buffer = 0;
    glGenBuffers(1, &buffer);
    glBindBuffer(GL_ARRAY_BUFFER, buffer);
    glBufferData(GL_ARRAY_BUFFER, std::numeric_limits<GLsizeiptr>::max(), nullptr, GL_STATIC_DRAW);
  };
  EXPECT_DEATH(Check(exhaust), "^GL ERROR=0x0505\n$");
}

TEST_F(GlErrorDeathTest, AnyOtherIsANumber) {
  EXPECT_DEATH(Check([] { glPopMatrix(); }), "^GL ERROR=0x0504\nGL ERROR=1284\n$");
  EXPECT_DEATH(Check([] {
                 for (int i = 0; i < 100; ++i) glPushMatrix();
               }),
               "^GL ERROR=0x0503\nGL ERROR=1283\n$");
}

// The same, provoked by files.

TEST_F(GlErrorDeathTest, TwoEndsTooManyEndTheProgram) {
  WriteImages({ImageAt(kPixels, 1, 1, kEndOfBitmap + kEndOfBitmap + kEndOfBitmap)});
  EXPECT_DEATH(Screen().GetSID(0, 0, 0.01F, 0.01F), "GL ERROR=0x0504\nGL ERROR=1284\n$");
}

TEST_F(GlErrorDeathTest, MoreUnfinishedImagesThanMatricesEndTheProgram) {
  WriteImages(std::vector<TestImage>(64, ImageAt(kPixels, 1, 1, "")));
  EXPECT_DEATH(Screen().GetSID(0, 0, 0.01F, 0.01F), "GL ERROR=0x0503\nGL ERROR=1283\n$");
}

}  // namespace
}  // namespace ventrik::tests
