// SPDX-License-Identifier: Apache-2.0
// The searches beside spelling and plain lists, for which model_test.cpp has the tests.
#include "bench/model/searches.h"

#include "bench/search.h"
#include "tests/bench/model/sent_text.h"

namespace ventrik::bench {
namespace {

using Texts = std::vector<std::string>;
using Numbers = std::vector<std::int32_t>;

const Numbers kPlainOrders = {0, 1, 2, 4, 8};
const Numbers kAllOrders = {0, 1, 2, 4, 8, 16, 32};

class SearchesTest : public ModelFixture {
 protected:
  Texts List(const std::string& eis, ListOrder order, const Texts& fields) {
    const auto sent =
        Handle(encode::REQU_GET_LIST(eis, 1, 2, static_cast<std::int32_t>(order), {fields}, 2));
    EXPECT_EQ(sent.size(), 1u);
    return sent.empty() ? Texts() : sent[0].Field<Texts>("itemList");
  }

  Lines Details(const std::string& eis, const Texts& fields) {
    return SentLines(Handle(encode::REQU_GET_DETAILS(eis, {fields})));
  }

  // The one answer to REQU_GET_LIST_INFO.
  Sent ListInfo(const std::string& eis) {
    auto sent = Handle(encode::REQU_GET_LIST_INFO(eis));
    EXPECT_EQ(sent.size(), 1u);
    if (sent.size() != 1) return {};
    EXPECT_EQ(sent[0].id, RESP_GET_LIST_INFO);
    EXPECT_EQ(sent[0].Text("inputEIS"), eis);
    return sent[0];
  }
};

TEST_F(SearchesTest, AvailableInfoTellsWhatCanBeAskedNext) {
  EXPECT_EQ(SentLines(Handle(encode::REQU_GET_AVAILABLE_INFO("<GEOC>Germany<*>"))),
            (Lines{"RESP_GET_AVAILABLE_INFO inputEIS='<GEOC>Germany<*>' availableTypesEIS='" +
                   AvailableTypes(BuiltInWorld(), "<GEOC>Germany<*>") + "'"}));
  const auto from = [this](const char* eis) {
    const auto sent = Handle(encode::REQU_GET_AVAILABLE_INFO(eis));
    return sent.empty() ? "none" : sent[0].Text("availableTypesEIS");
  };
  EXPECT_EQ(from("").substr(0, 6), "<GEOC>");
  EXPECT_EQ(from("<GEOC>Germany<*>").substr(0, 6), "<GEOS>");
  EXPECT_EQ(from("<CTY>Passau<*>"), "");
  EXPECT_EQ(from("nonsense"), "");
}

TEST_F(SearchesTest, ListInfoOfCountriesHasNoHierarchy) {
  const Sent info = ListInfo("<GEOC>Ger<*>");
  EXPECT_EQ(info.Number("validState"), 1);
  EXPECT_EQ(info.Field<Numbers>("sortOptions"), kPlainOrders);
  EXPECT_EQ(info.Field<Texts>("fieldOptions"), (Texts{"GEO", "POP", "DST"}));
  EXPECT_EQ(info.Text("outputEIS"), "<GEOC>Ger<*>");
}

TEST_F(SearchesTest, ListInfoOffersHierarchyForRowsOfSeveralStates) {
  const Sent open = ListInfo("<GEOC>Germany<*><CTY>B<*>");
  EXPECT_EQ(open.Field<Numbers>("sortOptions"), kAllOrders);
  EXPECT_EQ(open.Field<Texts>("fieldOptions"), (Texts{"CTR", "GEO", "POP", "DST"}));
  const Sent chosen = ListInfo("<GEOC>Germany<*><GEOS>Bayern<*><CTY>B<*>");
  EXPECT_EQ(chosen.Field<Numbers>("sortOptions"), kPlainOrders);
  EXPECT_EQ(chosen.Field<Texts>("fieldOptions"), (Texts{"CTR", "STA", "GEO", "POP", "DST"}));
}

TEST_F(SearchesTest, EveryFieldOfTheListInfoAddsToTheRows) {
  for (const char* eis :
       {"", "<GEOC>Ger<*>", "<GEOS>B<*>", "<CTY>B<*>", "<GEOC>Germany<*><CTY>B<*>",
        "<GEOC>Germany<*><GEOS>Bayern<*><CTY>B<*>"}) {
    const Texts bare = List(eis, ListOrder::ascending, {});
    ASSERT_FALSE(bare.empty()) << eis;
    const Sent info = ListInfo(eis);
    for (const std::string& field : info.Field<Texts>("fieldOptions")) {
      const Texts rows = List(eis, ListOrder::ascending, {field});
      EXPECT_EQ(rows[0].substr(0, bare[0].size()), bare[0]) << eis;
      EXPECT_GT(rows[0].size(), bare[0].size()) << eis << ' ' << field;
    }
  }
}

TEST_F(SearchesTest, ListInfoOfNonsenseIsInvalid) {
  EXPECT_EQ(SentLines(Handle(encode::REQU_GET_LIST_INFO("nonsense"))),
            (Lines{"RESP_GET_LIST_INFO inputEIS='nonsense' validState=2 sortOptions=[] "
                   "fieldOptions=[] outputEIS=''"}));
}

TEST_F(SearchesTest, HighwayExitsHaveNothingToChoose) {
  EXPECT_EQ(SentLines(Handle(encode::REQU_GET_LIST_INFO("<IFT>HWM<*><EXT><*>"))),
            (Lines{"RESP_GET_LIST_INFO inputEIS='<IFT>HWM<*><EXT><*>' validState=1 "
                   "sortOptions=[0] fieldOptions=[] outputEIS='<IFT>HWM<*><EXT><*>'"}));
}

TEST_F(SearchesTest, DistancesAreFromTheVehicle) {
  state().vehicle.position = {13.4, 48.6};
  const Texts near = List("<GEOC>Germany<*><CTY><*>", ListOrder::nearFirst, {"DST"});
  ASSERT_EQ(near.size(), 2u);
  EXPECT_EQ(near[0], "<GEOS>Bayern<*><CTY>Passau<*><DST>" +
                         std::to_string(static_cast<std::int64_t>(
                             DistanceMetres({13.4, 48.6}, {13.43122, 48.56650}))) +
                         "<*>");
  const Lines details = Details("<CTY>Passau<*>", {"DST"});
  state().vehicle.position = {-79.4, 43.7};
  EXPECT_NE(Details("<CTY>Passau<*>", {"DST"}), details);
  EXPECT_NE(List("<GEOC>Germany<*><CTY><*>", ListOrder::nearFirst, {"DST"}), near);
  EXPECT_EQ(List("<CTY>13.4 48.6<*>", ListOrder::defaultSort, {})[0],
            "<GEOC>Germany<*><GEOS>Bayern<*><CTY>Passau<*>")
      << "a position in the input goes before the vehicle's";
}

TEST_F(SearchesTest, DetailsHaveThePosition) {
  EXPECT_EQ(Details("<GEOC>Germany<*><CTY>Passau<*>", {}),
            (Lines{"RESP_GET_DETAILS inputEIS='<GEOC>Germany<*><CTY>Passau<*>' validState=1 "
                   "requestedFields=[] outputEIS='<CTR>Germany<*><STA>Bayern<*><CTY>Passau<*>"
                   "<GEO>13.43122 48.56650<*><POP>50560<*>'"}));
  EXPECT_EQ(Details("<CTY>Passau<*>", {"<GEO>", "none"}),
            (Lines{"RESP_GET_DETAILS inputEIS='<CTY>Passau<*>' validState=1 "
                   "requestedFields=['<GEO>''none'] outputEIS='<GEO>13.43122 48.56650<*>'"}));
}

TEST_F(SearchesTest, DetailsOfNonsenseAreInvalid) {
  for (const std::string eis : {"", "nonsense", "<CTY><*>", "<CTY>Xa<*>"}) {
    EXPECT_EQ(Details(eis, {"GEO"}),
              (Lines{"RESP_GET_DETAILS inputEIS='" + eis +
                     "' validState=2 requestedFields=['GEO'] outputEIS=''"}));
  }
}

TEST_F(SearchesTest, VeryLongRequestsAreNotRepeated) {
  const std::string huge = "<GEOC>Germany<*>" + std::string(700'000, 'x');
  const auto available = Handle(encode::REQU_GET_AVAILABLE_INFO(huge));
  ASSERT_EQ(available.size(), 1u);
  EXPECT_EQ(available[0].Text("inputEIS"), "");
  EXPECT_NE(available[0].Text("availableTypesEIS"), "");
  const auto info = Handle(encode::REQU_GET_LIST_INFO(huge));
  ASSERT_EQ(info.size(), 1u);
  EXPECT_EQ(info[0].Text("outputEIS"), "");
  EXPECT_EQ(info[0].Field<Numbers>("sortOptions"), kPlainOrders);
  const auto details = Handle(encode::REQU_GET_DETAILS("<CTY>Passau<*>", {Texts(300'000, "GEO")}));
  ASSERT_EQ(details.size(), 1u);
  EXPECT_EQ(details[0].Field<Texts>("requestedFields"), Texts());
  EXPECT_EQ(details[0].Text("outputEIS"), "<GEO>13.43122 48.56650<*>");
}

TEST_F(SearchesTest, RequestsCutShortAreAnswered) {
  const std::string eis = "<GEOC>Germany<*><CTY>Passau<*>";
  for (const auto& answer : HandleEveryPrefix(encode::REQU_GET_AVAILABLE_INFO(eis))) {
    EXPECT_EQ(answer.size(), 1u);
  }
  for (const auto& answer : HandleEveryPrefix(encode::REQU_GET_LIST_INFO(eis))) {
    EXPECT_EQ(answer.size(), 1u);
  }
  for (const auto& answer : HandleEveryPrefix(encode::REQU_GET_DETAILS(eis, {{"GEO", "POP"}}))) {
    EXPECT_EQ(answer.size(), 1u);
  }
}

}  // namespace
}  // namespace ventrik::bench
