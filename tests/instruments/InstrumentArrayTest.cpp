#include "instruments/InstrumentArray.h"

#include <gmock/gmock.h>

#include <cctype>
#include <set>
#include <string>

namespace Sonarello {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<int> Values(const std::vector<const TInstrument*>& rows) {
  std::vector<int> values;
  for (const TInstrument* row : rows) values.push_back(row->Value);
  return values;
}

/// True if `a` stands in front of `b` in display order: letters in any case, numbers by their size.
bool StandsBefore(std::string_view a, std::string_view b) {
  const auto isDigit = [](char c) { return std::isdigit(static_cast<unsigned char>(c)) != 0; };
  while (!a.empty() && !b.empty()) {
    if (isDigit(a.front()) && isDigit(b.front())) {
      std::size_t behindA = 0;
      std::size_t behindB = 0;
      const int numberA = std::stoi(std::string(a), &behindA);
      const int numberB = std::stoi(std::string(b), &behindB);
      if (numberA != numberB) return numberA < numberB;
      a.remove_prefix(behindA);
      b.remove_prefix(behindB);
      continue;
    }
    const int lowerA = std::tolower(static_cast<unsigned char>(a.front()));
    const int lowerB = std::tolower(static_cast<unsigned char>(b.front()));
    if (lowerA != lowerB) return lowerA < lowerB;
    a.remove_prefix(1);
    b.remove_prefix(1);
  }
  return a.empty() && !b.empty();
}

TEST(InstrumentArray, HoldsEachValueFrom0To105AndEachNameOnce) {
  std::set<int> values;
  std::set<std::string_view> names;
  for (const TInstrument& row : InstrumentArray) {
    values.insert(row.Value);
    names.insert(row.Name);
  }
  EXPECT_EQ(values.size(), 106U);
  EXPECT_EQ(*values.begin(), 0);
  EXPECT_EQ(*values.rbegin(), 105);
  EXPECT_EQ(names.size(), 106U);
}

TEST(InstrumentArray, GoesFromDeebachToYamahaXG) {
  EXPECT_EQ(InstrumentArray.front().Name, "Deebach MAX II");
  EXPECT_EQ(InstrumentArray.front().Value, 102);
  EXPECT_EQ(InstrumentArray.back().Name, "Yamaha XG Soundset");
  EXPECT_EQ(InstrumentArray.back().Value, 19);
}

TEST(InstrumentArray, IsOrderedByMakerThenModelWithNumbersByTheirSize) {
  for (std::size_t i = 1; i < InstrumentArray.size(); ++i)
    EXPECT_TRUE(StandsBefore(InstrumentArray[i - 1].Name, InstrumentArray[i].Name))
        << InstrumentArray[i - 1].Name << ", " << InstrumentArray[i].Name;
}

TEST(InstrumentArray, LooksUpNamesExactly) {
  ASSERT_NE(InstrumentByName("Yamaha Genos"), nullptr);
  EXPECT_EQ(InstrumentByName("Yamaha Genos")->Value, 87);
  EXPECT_EQ(InstrumentByName("GM Soundset")->Value, 0);
  EXPECT_EQ(InstrumentByName("Ketron Audya, Audya 4, Audya 5")->Value, 55);
  EXPECT_EQ(InstrumentByName("Korg Pa1Xpro + XMS-1 V3")->Value, 48);
  EXPECT_EQ(InstrumentByName("Roland fantom XR")->Value, 25);
  EXPECT_EQ(InstrumentByName("yamaha genos"), nullptr);
  EXPECT_EQ(InstrumentByName("Yamaha Genos "), nullptr);
  EXPECT_EQ(InstrumentByName(""), nullptr);
}

TEST(InstrumentArray, LooksUpValues) {
  ASSERT_NE(InstrumentByValue(58), nullptr);
  EXPECT_EQ(InstrumentByValue(58)->Name, "Limex Tradition Exclusiv 200v3");
  EXPECT_EQ(InstrumentByValue(83)->Name, "Roland SC-VA (VSTi)");
  EXPECT_EQ(InstrumentByValue(106), nullptr);
  EXPECT_EQ(InstrumentByValue(-1), nullptr);
}

TEST(FindInstruments, TakesAValue) {
  EXPECT_THAT(Values(FindInstruments("0")), ElementsAre(0));
  EXPECT_THAT(Values(FindInstruments("87")), ElementsAre(87));
  EXPECT_THAT(FindInstruments("106"), IsEmpty());
}

TEST(FindInstruments, PrefersTheWholeNameToAPartOfLongerOnes) {
  EXPECT_THAT(Values(FindInstruments("Roland SC-88")), ElementsAre(15));
  EXPECT_THAT(Values(FindInstruments("yamaha TYROS")), ElementsAre(9));
  EXPECT_THAT(Values(FindInstruments("Limex G4")), ElementsAre(85));
}

TEST(FindInstruments, TakesAPartOfOneNameInAnyCase) {
  EXPECT_THAT(Values(FindInstruments("genos")), ElementsAre(87));
  EXPECT_THAT(Values(FindInstruments("INTEGRA")), ElementsAre(71));
}

TEST(FindInstruments, GivesAllRowsThatAPartMayMean) {
  EXPECT_THAT(Values(FindInstruments("sx")), ElementsAre(100, 97));
  EXPECT_THAT(Values(FindInstruments("ketron sd")), ElementsAre(10, 30, 40, 47, 32, 79, 92, 84, 73));
}

TEST(FindInstruments, FindsNothingForAForeignNameOrNoText) {
  EXPECT_THAT(FindInstruments("Casio"), IsEmpty());
  EXPECT_THAT(FindInstruments(""), IsEmpty());
}

TEST(FindInstruments, KnowsTheTwoFormerNames) {
  EXPECT_THAT(Values(FindInstruments("Ketron SD2")), ElementsAre(40));
  EXPECT_THAT(Values(FindInstruments("Limex Tradition Exclusiv 200")), ElementsAre(58));
}

}  // namespace
}  // namespace Sonarello
