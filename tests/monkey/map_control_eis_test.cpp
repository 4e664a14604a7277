// SPDX-License-Identifier: Apache-2.0
#include "monkey/generators.h"
#include "tests/monkey/monkey_fixture.h"

namespace ventrik::tests {
namespace {

constexpr std::size_t kBeforeTheWindow = 4;
constexpr std::size_t kBehindTheWindow = 19;

// The draws of a chain in which only one field is let in, by the draws of its value.
struct Field {
  std::wstring text;
  Draws value;
};

// A whole number: the least, the greatest, the least again.
std::vector<Field> Integer(const std::wstring& tag, int low, int high) {
  const auto text = [&tag](int number) {
    return L"<" + tag + L">" + std::to_wstring(number) + L"<*>";
  };
  const int range = high - low + 1;
  return {{text(low), {0}}, {text(high), {range - 1}}, {text(low), {range}}};
}

class MapControlEis : public MonkeyTest {
 protected:
  std::wstring Eis(const Draws& draws) {
    return Appended(draws, [this] { AppendMapControlEis(monkey_); });
  }

  // Without any field but that of the map.
  static Draws Nothing() { return Draws(1 + kBeforeTheWindow + 1 + 2 + kBehindTheWindow, 0); }

  // All closed but the gate at `gate`, which the value's draws follow. The draw before the window
  // is 1, so that its two fields have gates.
  std::wstring With(std::size_t gate, const Draws& value) {
    Draws draws = Nothing();
    draws[1 + kBeforeTheWindow] = 1;
    draws[gate] = 1;
    draws.insert(draws.begin() + static_cast<std::ptrdiff_t>(gate) + 1, value.begin(), value.end());
    return Eis(draws);
  }

  // The fields in a row of gates, each on its own.
  void ExpectFields(std::size_t firstGate, const std::vector<std::vector<Field>>& gates) {
    for (std::size_t i = 0; i < gates.size(); ++i) {
      for (const Field& field : gates[i]) {
        EXPECT_EQ(With(firstGate + i, field.value), L"<MID>map<*>" + field.text);
      }
    }
  }
};

TEST_F(MapControlEis, MapIsAlwaysNamed) {
  Draws draws = Nothing();
  draws[1 + kBeforeTheWindow] = 1;
  EXPECT_EQ(Eis(draws), L"<MID>map<*>");
  draws[0] = 1;
  EXPECT_EQ(Eis(draws), L"<MID>all<*>");
  draws[0] = 2;
  EXPECT_EQ(Eis(draws), L"<MID>map<*>");
}

TEST_F(MapControlEis, FieldsBeforeTheWindow) {
  ExpectFields(1,
               {
                   {{L"<MZ>-1<*>", {0}},
                    {L"<MZ>-2<*>", {1}},
                    {L"<MZ>-3<*>", {2}},
                    {L"<MZ>100<*>", {3, 0}},
                    {L"<MZ>1000000<*>", {7, 999900}},
                    {L"<MZ>100<*>", {3, 999901}}},
                   {{L"<MVT>1<*>", {0}},
                    {L"<MVT>2<*>", {1}},
                    {L"<MVT>4<*>", {2}},
                    {L"<MVT>8<*>", {3}},
                    {L"<MVT>1<*>", {4}}},
                   {{L"<MH>1<*>", {0}}, {L"<MH>2<*>", {1}}, {L"<MH>4<*>", {2}}, {L"<MH>1<*>", {3}}},
                   {{L"<MVI>0<*>", {0}}, {L"<MVI>1<*>", {1}}, {L"<MVI>0<*>", {2}}},
               });
}

TEST_F(MapControlEis, FieldsOfTheWindow) {
  ExpectFields(
      2 + kBeforeTheWindow,
      {
          {{L"<MP>0,0<*>", {0, 0}}, {L"<MP>240,120<*>", {240, 120}}, {L"<MP>0,0<*>", {241, 121}}},
          {{L"<MR>240,120<*>", {0, 0}},
           {L"<MR>479,239<*>", {239, 119}},
           {L"<MR>240,120<*>", {240, 120}}},
      });
}

TEST_F(MapControlEis, WholeWindowOnceInTen) {
  for (const int drawn : {0, 10, 120}) {
    Draws draws(1 + kBeforeTheWindow + 1 + kBehindTheWindow, 0);
    draws[1 + kBeforeTheWindow] = drawn;
    EXPECT_EQ(Eis(draws), L"<MID>map<*><MP>0,0<*><MR>480,240<*>");
  }
  for (int drawn = 1; drawn < 10; ++drawn) {
    Draws draws = Nothing();
    draws[1 + kBeforeTheWindow] = drawn;
    EXPECT_EQ(Eis(draws), L"<MID>map<*>") << drawn;
  }
}

TEST_F(MapControlEis, FieldsBehindTheWindow) {
  ExpectFields(
      4 + kBeforeTheWindow,
      {
          Integer(L"MSD", 0, 359),
          {{L"<MSM>1<*>", {0}}, {L"<MSM>2<*>", {1}}, {L"<MSM>4<*>", {2}}, {L"<MSM>8<*>", {3}}},
          Integer(L"MSS", 1, 100),
          Integer(L"MEV", 0, 90),
          Integer(L"MAS", 1, 2),
          Integer(L"M3L", 0, 1),
          Integer(L"M3T", 0, 1),
          Integer(L"M3C", 0, 1),
          Integer(L"MLR", 0, 2),
          Integer(L"MSP", 0, 1),
          Integer(L"MSC", 0, 1),
          Integer(L"MTI", 0, 1),
          Integer(L"MTF", 0, 1),
          Integer(L"MSL", 0, 2),
          {{L"<MVR>240,120<*>", {0, 0}}, {L"<MVR>479,239<*>", {239, 119}}},
          {{L"<MVP>0,0<*>", {0, 0}}, {L"<MVP>240,120<*>", {240, 120}}},
          {{L"<MEP>5,5<*>", {0, 0}}, {L"<MEP>475,235<*>", {470, 230}}},
          Integer(L"MRT", 0, 1),
          {{L"<PRE>0<*>", {}}},
      });
}

TEST_F(MapControlEis, AllFieldsAtOnceComeInTheirOrder) {
  const Draws draws = {
      1,                                       // the map
      1, 0,  1, 3, 1, 1,  1,  1,               // before the window
      3, 1,  7, 8, 1, 9,  10,                  // the window
      1, 45, 1, 2, 1, 49, 1,  60, 1, 1,        // MSD to MAS
      1, 0,  1, 1, 1, 0,  1,  2,               // M3L to MLR
      1, 1,  1, 0, 1, 1,  1,  0,  1, 1,        // MSP to MSL
      1, 1,  2, 1, 3, 4,  1,  5,  6, 1, 1, 1,  // MVR to PRE
  };
  EXPECT_EQ(Eis(draws),
            L"<MID>all<*><MZ>-1<*><MVT>8<*><MH>2<*><MVI>1<*><MP>7,8<*><MR>249,130<*><MSD>45<*>"
            L"<MSM>4<*><MSS>50<*><MEV>60<*><MAS>2<*><M3L>0<*><M3T>1<*><M3C>0<*><MLR>2<*><MSP>1<*>"
            L"<MSC>0<*><MTI>1<*><MTF>0<*><MSL>1<*><MVR>241,122<*><MVP>3,4<*><MEP>10,11<*>"
            L"<MRT>1<*><PRE>0<*>");
}

}  // namespace
}  // namespace ventrik::tests
