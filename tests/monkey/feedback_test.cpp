// SPDX-License-Identifier: Apache-2.0
#include "monkey/feedback.h"

#include <initializer_list>

#include "messages/function_ids.h"
#include "monkey/weights.h"
#include "tests/monkey/monkey_fixture.h"

namespace ventrik::tests {
namespace {

using Strings = std::vector<std::string>;

void Append(Bytes& block, std::int32_t word) {
  for (int shift = 0; shift < 32; shift += 8) {
    block.value.push_back(static_cast<std::uint8_t>(static_cast<std::uint32_t>(word) >> shift));
  }
}

// Words, and behind them texts, each padded to whole words.
Bytes Message(std::initializer_list<std::int32_t> words, const Strings& texts = {}) {
  Bytes block;
  for (const std::int32_t word : words) Append(block, word);
  for (const std::string& text : texts) {
    block.value.insert(block.value.end(), text.begin(), text.end());
    do block.value.push_back(0);
    while (block.value.size() % 4 != 0);
  }
  return block;
}

std::int32_t Length(const std::string& text) {
  return static_cast<std::int32_t>(text.size());
}

class FeedbackTest : public MonkeyTest {
 protected:
  // Follows a message, which draws these numbers and no others.
  void Follow(const Bytes& message, const Draws& draws = {}) {
    draws_.Feed(draws);
    HandleMonkeyInfo(app_, monkey_, message.Block());
    EXPECT_EQ(draws_.Left(), Draws{}) << "not drawn";
  }

  void AvailableInfo(const std::string& types, const Draws& draws = {}) {
    Follow(Message({RESP_GET_AVAILABLE_INFO, 3, Length(types)}, {"in", types}), draws);
  }
  void Spell(const std::string& next, const Draws& draws = {}) {
    Follow(Message({RESP_GET_SPELL, 3, 1, Length(next), 1, 5, 1}, {"in", next, "x"}), draws);
  }
  void List(const std::string& inputEis, const Strings& rows, const Draws& draws = {}) {
    Strings texts = {inputEis, "field"};
    texts.insert(texts.end(), rows.begin(), rows.end());
    texts.push_back("out");
    const auto count = static_cast<std::int32_t>(rows.size());
    Follow(Message({RESP_GET_LIST, 1, 1, 1, count, count, 1, count, 4, 1}, texts), draws);
  }
  void Details(const std::string& outputEis) {
    Follow(
        Message({RESP_GET_DETAILS, 3, 1, 2, Length(outputEis)}, {"in", "<A>", "<B>", outputEis}));
  }
  void ActiveRoute(std::int32_t first, std::int32_t second, std::int32_t third) {
    Follow(Message({INFO_ACTIVE_ROUTE_DESC, first, second, third}));
  }

  MonkeySearch Search() const { return monkey_.search.Copy(); }
  // "path|term|selection".
  std::wstring SearchText() const {
    const MonkeySearch search = Search();
    return search.searchPath + L"|" + search.spellTerm + L"|" + search.lastSelection;
  }
  void SetSearchText(const std::wstring& path, const std::wstring& term,
                     const std::wstring& selection) {
    SetSearch(monkey_, path, term);
    monkey_.search.With([&](MonkeySearch& search) { search.lastSelection = selection; });
  }

  void BlockAll() {
    for (const wchar_t* name : {L"start", L"rkill", L"demo", L"rnew", L"verd"}) {
      BlockCommand(monkey_, name);
    }
  }
  void SetThreeWeights() { SetRecords(monkey_, {{L"a", 1, 2, 3, {}}, {L"b", 4, 5, 6, {}}}); }
};

TEST_F(FeedbackTest, DrawnTypeIsSpelledNext) {
  AvailableInfo("<GEOS>16<*><CTY>500<*>", {1});
  EXPECT_EQ(SearchText(), L"|<CTY><*>|");
  EXPECT_EQ(Search().spellLimit, 500);
}

TEST_F(FeedbackTest, TypeIsDrawnByTheRemainder) {
  AvailableInfo("<GEOS>16<*><CTY>500<*><STR>7<*>", {9});
  EXPECT_EQ(SearchText(), L"|<GEOS><*>|");
  EXPECT_EQ(Search().spellLimit, 16);
}

TEST_F(FeedbackTest, NumbersOfTypesHaveABase) {
  const std::pair<const char*, std::int32_t> kNumbers[] = {
      {"0x10", 16}, {"010", 8}, {"12x", 12}, {"", 0},
      {"many", 0},  {" 7", 7},  {"-3", -3},  {"99999999999", 2147483647},
  };
  for (const auto& [text, number] : kNumbers) {
    SetSearch(monkey_, L"", L"");
    AvailableInfo(std::string("<CTY>") + text + "<*>", {0});
    EXPECT_EQ(Search().spellLimit, number) << text;
  }
}

TEST_F(FeedbackTest, TypesMayLackWhatBelongsToThem) {
  AvailableInfo("text<CTY>5", {0});
  EXPECT_EQ(SearchText(), L"|<CTY><*>|");
  EXPECT_EQ(Search().spellLimit, 5);
  SetSearch(monkey_, L"", L"");
  AvailableInfo("<CTY><STR>7", {0});
  EXPECT_EQ(SearchText(), L"|<CTY><*>|");
  EXPECT_EQ(Search().spellLimit, 0);
  SetSearch(monkey_, L"", L"");
  AvailableInfo("<CTY", {0});
  EXPECT_EQ(SearchText(), L"|<CTY<*>|");
  SetSearch(monkey_, L"", L"");
  AvailableInfo("<", {0});
  EXPECT_EQ(SearchText(), L"|<<*>|");
}

TEST_F(FeedbackTest, OddityTagInsideOfATagIsAnotherType) {
  const std::pair<int, const wchar_t*> kTypes[] = {
      {0, L"|<A<B><*>|"}, {1, L"|<B><*>|"}, {2, L"|<<<C><*>|"}, {3, L"|<<C><*>|"}, {4, L"|<C><*>|"},
  };
  for (const auto& [drawn, search] : kTypes) {
    SetSearch(monkey_, L"", L"");
    AvailableInfo("<A<B>5<*><<<C>7<*>", {drawn});
    EXPECT_EQ(SearchText(), search);
    EXPECT_EQ(Search().spellLimit, drawn < 2 ? 5 : 7);
  }
}

TEST_F(FeedbackTest, TextWithoutATypeIsNotDrawnFrom) {
  SetSearchText(L"path", L"", L"selection");
  for (const char* types : {"text", "<*>", "5<*>6"}) AvailableInfo(types);
  EXPECT_EQ(SearchText(), L"path||selection");
}

TEST_F(FeedbackTest, NoTypesEndTheSearch) {
  SetSearchText(L"path", L"<CTY>x<*>", L"selection");
  AvailableInfo("");
  EXPECT_EQ(SearchText(), L"||");
  SetSearchText(L"path", L"<CTY>x<*>", L"selection");
  app_.listRequested = 1;
  Follow(Message({RESP_GET_AVAILABLE_INFO, 0, 0}));
  EXPECT_EQ(SearchText(), L"||");
}

TEST_F(FeedbackTest, TypesAreLeftAloneWhileAListIsAwaited) {
  app_.listRequested = 1;
  AvailableInfo("<CTY>500<*>");
  EXPECT_EQ(SearchText(), L"||");
  EXPECT_EQ(Search().spellLimit, 0);
}

TEST_F(FeedbackTest, TypesAreLeftAloneWhileATermIsSpelled) {
  SetSearchText(L"path", L"<STR>x<*>", L"selection");
  AvailableInfo("<CTY>500<*>");
  EXPECT_EQ(SearchText(), L"path|<STR>x<*>|selection");
}

TEST_F(FeedbackTest, SpelledTermGrowsByADrawnCharacter) {
  SetSearchText(L"path", L"<CTY><*>", L"selection");
  Spell("ABC", {1});
  EXPECT_EQ(SearchText(), L"path|<CTY>B<*>|selection");
  Spell("XYZ", {3});
  EXPECT_EQ(SearchText(), L"path|<CTY>BX<*>|selection");
}

TEST_F(FeedbackTest, SpelledCharactersMayBeWide) {
  SetSearch(monkey_, L"", L"<CTY><*>");
  Spell("a\u20ACb", {1});
  EXPECT_EQ(SearchText(), L"|<CTY>\u20AC<*>|");
  Spell("a\u20ACb", {5});
  EXPECT_EQ(SearchText(), L"|<CTY>\u20ACb<*>|");
}

TEST_F(FeedbackTest, WithoutCharactersTheTermStays) {
  SetSearch(monkey_, L"", L"<CTY>W<*>");
  Spell("");
  EXPECT_EQ(SearchText(), L"|<CTY>W<*>|");
}

TEST_F(FeedbackTest, OddityTermThatIsNotBegunIsSpelledAllTheSame) {
  Spell("A", {0});
  EXPECT_EQ(SearchText(), L"|A<*>|");
}

TEST_F(FeedbackTest, DrawnRowExtendsThePath) {
  SetSearchText(L"<CTR>AT<*>", L"<CTY>Wi<*>", L"<CTR>AT<*>");
  List("<X>in<*>", {"<CTY>Wien<*>", "<CTY>Wels<*>"}, {3});
  EXPECT_EQ(SearchText(), L"<CTR>AT<*><CTY>Wels<*>||<CTY>Wels<*>");
}

TEST_F(FeedbackTest, FirstRowBeginsThePath) {
  SetSearchText(L"", L"<CTY>Wi<*>", L"");
  List("<X>in<*>", {"<CTY>Wien<*>"}, {0});
  EXPECT_EQ(SearchText(), L"<CTY>Wien<*>||<CTY>Wien<*>");
}

TEST_F(FeedbackTest, SecondChoiceOfATagDoesntExtendThePath) {
  SetSearchText(L"<CTY>Wien<*>", L"<CTY>We<*>", L"<CTY>Wien<*>");
  List("", {"<CTY>Wels<*>"}, {0});
  EXPECT_EQ(SearchText(), L"<CTY>Wien<*>||<CTY>Wien<*>");
}

TEST_F(FeedbackTest, OddityTagIsComparedWithoutItsEnd) {
  SetSearchText(L"<GEOC>Austria<*>", L"<X>y<*>", L"<GEOC>Austria<*>");
  List("", {"<GEO>16.3 48.2<*>"}, {0});
  EXPECT_EQ(SearchText(), L"<GEOC>Austria<*>||<GEOC>Austria<*>");
  SetSearchText(L"<GEO>1 2<*>", L"<X>y<*>", L"<GEO>1 2<*>");
  List("", {"<GEOC>Austria<*>"}, {0});
  EXPECT_EQ(SearchText(), L"<GEO>1 2<*><GEOC>Austria<*>||<GEOC>Austria<*>");
}

TEST_F(FeedbackTest, RowWithoutATagIsComparedAsAWhole) {
  SetSearchText(L"<CTY>Wien<*>", L"<X>y<*>", L"Wien<*>");
  List("", {"Wien"}, {0});
  EXPECT_EQ(SearchText(), L"<CTY>Wien<*>||Wien<*>");
  SetSearchText(L"<CTY>Wien<*>", L"<X>y<*>", L"Wien");
  List("", {"Wien<*>"}, {0});
  EXPECT_EQ(SearchText(), L"<CTY>Wien<*>Wien<*>||Wien<*>");
}

TEST_F(FeedbackTest, TagIsComparedOnlyWithAPathAndAChoice) {
  SetSearchText(L"", L"<CTY>We<*>", L"<CTY>Wien<*>");
  List("", {"<CTY>Wels<*>"}, {0});
  EXPECT_EQ(SearchText(), L"<CTY>Wels<*>||<CTY>Wels<*>");
  SetSearchText(L"<CTY>Wien<*>", L"<CTY>We<*>", L"");
  List("", {"<CTY>Wels<*>"}, {0});
  EXPECT_EQ(SearchText(), L"<CTY>Wien<*><CTY>Wels<*>||<CTY>Wels<*>");
  SetSearchText(L"<CTY>Wien<*>", L"<CTY>We<*>", L"");
  List("", {">"}, {0});
  EXPECT_EQ(SearchText(), L"<CTY>Wien<*>>||>");
}

TEST_F(FeedbackTest, CountryOrStateStartsFromTheResponsesOwnPath) {
  SetSearchText(L"<OLD>1<*>", L"<GEOC><*>", L"<OLD>1<*>");
  List("<GEOC>1 2<*>", {"<CTR>AT<*>"}, {0});
  EXPECT_EQ(SearchText(), L"<GEOC>1 2<*><CTR>AT<*>||<CTR>AT<*>");
  SetSearchText(L"", L"<GEOS><*>", L"");
  List("<GEOS>1 2<*>", {"<STA>W<*>"}, {0});
  EXPECT_EQ(SearchText(), L"<GEOS>1 2<*><STA>W<*>||<STA>W<*>");
}

TEST_F(FeedbackTest, CountryOrStateIsTheChoiceThatARowIsComparedWith) {
  SetSearchText(L"<OLD>1<*>", L"<GEOC><*>", L"<OLD>1<*>");
  List("<GEOC>1 2<*>", {"<GEOC>AT<*>"}, {0});
  EXPECT_EQ(SearchText(), L"<GEOC>1 2<*>||<GEOC><*>");
  SetSearchText(L"", L"<GEOS><*>", L"");
  List("<GEOS>1 2<*>", {"<GEOS>W<*>"}, {0});
  EXPECT_EQ(SearchText(), L"<GEOS>1 2<*>||<GEOS><*>");
}

TEST_F(FeedbackTest, SpelledCountryIsATermLikeOthers) {
  SetSearchText(L"<OLD>1<*>", L"<GEOC>A<*>", L"<OLD>1<*>");
  List("<GEOC>1 2<*>", {"<CTR>AT<*>"}, {0});
  EXPECT_EQ(SearchText(), L"<OLD>1<*><CTR>AT<*>||<CTR>AT<*>");
}

TEST_F(FeedbackTest, ListWithoutATermOrRowsChangesNoSearch) {
  SetSearchText(L"path", L"", L"selection");
  List("", {"<CTY>Wien<*>"});
  EXPECT_EQ(SearchText(), L"path||selection");
  SetSearchText(L"path", L"<CTY><*>", L"selection");
  List("", {});
  EXPECT_EQ(SearchText(), L"path|<CTY><*>|selection");
}

TEST_F(FeedbackTest, EveryListEndsTheWaitForOne) {
  app_.listRequested = 1;
  List("", {});
  EXPECT_EQ(app_.listRequested, 0);
  app_.listRequested = 1;
  SetSearchText(L"", L"<CTY><*>", L"");
  List("", {"<CTY>Wien<*>"}, {0});
  EXPECT_EQ(app_.listRequested, 0);
}

TEST_F(FeedbackTest, DetailsWithAPositionAreKept) {
  Details("<CTY>Wien<*><GEO>1 2<*>");
  Details("<CTY>Wels<*>");
  Details("");
  Details("<GEOC>3 4<*>");
  EXPECT_EQ(monkey_.recentGeoResults.Copy(), (Texts{L"<CTY>Wien<*><GEO>1 2<*>", L"<GEOC>3 4<*>"}));
}

TEST_F(FeedbackTest, TenthDetailsAreKeptAndTheEleventhPushTheFirstOut) {
  for (int i = 0; i < 10; ++i) Details("<GEO>" + std::to_string(i));
  EXPECT_EQ(monkey_.recentGeoResults.Copy().size(), 10u);
  EXPECT_EQ(monkey_.recentGeoResults.Copy().front(), L"<GEO>0");
  Details("<GEO>10");
  EXPECT_EQ(monkey_.recentGeoResults.Copy().size(), 10u);
  EXPECT_EQ(monkey_.recentGeoResults.Copy().front(), L"<GEO>1");
  EXPECT_EQ(monkey_.recentGeoResults.Copy().back(), L"<GEO>10");
}

TEST_F(FeedbackTest, RouteThatBecomesActivePutsItsWeightsInForce) {
  SetThreeWeights();
  ActiveRoute(1, 0, 3);
  EXPECT_EQ(monkey_.activeRoute, 1);
  EXPECT_EQ(CurrentWeights(monkey_), (std::vector<std::int32_t>{3, 6}));
}

TEST_F(FeedbackTest, MinusOneInAnyWordIsNoRoute) {
  const std::int32_t kNoRoutes[][3] = {{-1, 2, 3}, {1, -1, 3}, {1, 2, -1}, {-1, -1, -1}};
  for (const auto& words : kNoRoutes) {
    SetThreeWeights();
    ActiveRoute(words[0], words[1], words[2]);
    EXPECT_EQ(monkey_.activeRoute, 0);
    EXPECT_EQ(CurrentWeights(monkey_), (std::vector<std::int32_t>{1, 4}));
  }
}

TEST_F(FeedbackTest, WhileARouteIsActiveItsMessageChangesNothing) {
  SetThreeWeights();
  monkey_.activeRoute = 1;
  ActiveRoute(-1, -1, -1);
  ActiveRoute(1, 2, 3);
  EXPECT_EQ(monkey_.activeRoute, 1);
  EXPECT_EQ(CurrentWeights(monkey_), (std::vector<std::int32_t>{2, 5}));
}

TEST_F(FeedbackTest, CalculatedRouteIsKnownAndReleasesTheRouteCommands) {
  BlockAll();
  Follow(Message({INFO_CALC_STATE, 77, 4, 100}));
  Follow(Message({INFO_CALC_STATE, 77, 4, 100}));
  EXPECT_EQ(monkey_.routeHandles.Copy(), (std::vector<std::int32_t>{77, 77}));
  EXPECT_EQ(BlockedCommands(monkey_), Texts{L"verd"});
}

TEST_F(FeedbackTest, OtherStatesOfACalculationChangeNothing) {
  BlockAll();
  const Texts blocked = BlockedCommands(monkey_);
  const std::pair<std::int32_t, std::int32_t> kStates[] = {{4, 99},  {4, 101}, {4, 0},
                                                           {3, 100}, {5, 100}, {0, 100}};
  for (const auto& [state, percent] : kStates) {
    Follow(Message({INFO_CALC_STATE, 77, state, percent}));
  }
  EXPECT_TRUE(monkey_.routeHandles.Copy().empty());
  EXPECT_EQ(BlockedCommands(monkey_), blocked);
}

TEST_F(FeedbackTest, ReachedDestinationEndsTheRoute) {
  SetThreeWeights();
  BlockAll();
  monkey_.activeRoute = 1;
  Follow(Message({INFO_DESTINATION_REACHED, 3, 0, 1}, {"de"}));
  EXPECT_EQ(monkey_.activeRoute, 0);
  EXPECT_EQ(CurrentWeights(monkey_), (std::vector<std::int32_t>{1, 4}));
  EXPECT_EQ(WeightTotal(monkey_), 7);
  EXPECT_EQ(BlockedCommands(monkey_), (Texts{L"rkill", L"demo", L"rnew", L"verd"}));
}

TEST_F(FeedbackTest, OtherMessagesChangeNothing) {
  SetThreeWeights();
  SetSearchText(L"path", L"<CTY><*>", L"selection");
  app_.listRequested = 1;
  BlockAll();
  const Texts blocked = BlockedCommands(monkey_);
  for (const std::int32_t id : {0, -1, 300, 302, 304, 305, 306, 308, 405, 411, 412, 9999}) {
    Follow(Message({id, 4, 4, 100, 1, 1, 1, 1, 1, 1}, {"<GEO>1 2<*>", "<GEO>"}));
  }
  EXPECT_EQ(SearchText(), L"path|<CTY><*>|selection");
  EXPECT_EQ(BlockedCommands(monkey_), blocked);
  EXPECT_EQ(CurrentWeights(monkey_), (std::vector<std::int32_t>{2, 5}));
  EXPECT_EQ(app_.listRequested, 1);
  EXPECT_EQ(monkey_.activeRoute, 0);
}

// Every message cut short anywhere, in memory that ends where it does.
TEST_F(FeedbackTest, MessagesMayEndAnywhere) {
  const ZeroDraws zeroes;
  const Bytes kWhole[] = {
      Message({RESP_GET_AVAILABLE_INFO, 3, 9}, {"in", "<CTY>5<*>"}),
      Message({RESP_GET_SPELL, 3, 1, 3, 1, 5, 1}, {"in", "abc", "x"}),
      Message({RESP_GET_LIST, 1, 1, 1, 2, 2, 1, 2, 4, 1}, {"", "f", "<A>1<*>", "<B>2<*>", "out"}),
      Message({RESP_GET_DETAILS, 3, 1, 2, 9}, {"in", "<A>", "<B>", "<GEO>1 2<*>"}),
      Message({INFO_ACTIVE_ROUTE_DESC, 1, 2, 3}),
      Message({INFO_CALC_STATE, 7, 4, 100}),
      Message({INFO_DESTINATION_REACHED, 3, 0, 1}, {"de"}),
  };
  for (const Bytes& whole : kWhole) {
    for (std::size_t size = 0; size <= whole.value.size(); ++size) {
      SetSearchText(L"path", size % 2 == 0 ? L"<CTY><*>" : L"", L"selection");
      const std::vector<std::uint8_t> part(whole.value.begin(),
                                           whole.value.begin() + static_cast<std::ptrdiff_t>(size));
      HandleMonkeyInfo(app_, monkey_, {part.data(), part.size()});
    }
  }
  EXPECT_EQ(monkey_.routeHandles.Copy(), std::vector<std::int32_t>{7});
}

TEST_F(FeedbackTest, CountsMayBeWrong) {
  SetSearchText(L"", L"<CTY><*>", L"");
  Follow(Message({RESP_GET_LIST, 1, 1, 1, 9, 9, 0, 2147483647, 4, 1}, {"", "<A>1<*>"}), {1});
  EXPECT_EQ(SearchText(), L"<A>1<*>||<A>1<*>");
  SetSearchText(L"", L"<CTY><*>", L"");
  Follow(Message({RESP_GET_LIST, 1, 1, 1, 9, 9, -1, -1, 4, 1}, {"", "<A>1<*>"}));
  EXPECT_EQ(SearchText(), L"|<CTY><*>|");
  Follow(Message({RESP_GET_DETAILS, 0, 1, 2147483647, 9}, {"<GEO>1 2<*>"}));
  EXPECT_TRUE(monkey_.recentGeoResults.Copy().empty());
  Follow(Message({RESP_GET_DETAILS, 0, 1, -5, 9}, {"<GEO>1 2<*>"}));
  EXPECT_EQ(monkey_.recentGeoResults.Copy(), Texts{L"<GEO>1 2<*>"});
}

}  // namespace
}  // namespace ventrik::tests
