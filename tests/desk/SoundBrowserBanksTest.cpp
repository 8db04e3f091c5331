#include "desk/SoundBrowserBanks.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "core/TextOrder.h"
#include "desk/SoundBrowserBench.h"
#include "instruments/InstrumentArray.h"

namespace Sonarello {

namespace {

constexpr int Genos = 87;

std::vector<std::string> Names(const TBrowserBanks& banks, bool drums) {
  std::vector<std::string> names;
  for (const TBrowserBank& bank : banks.Banks())
    if (bank.IsDrums == drums) names.push_back(bank.Name);
  return names;
}

TEST(SoundBrowserBanks, AreTheListsOfTheInstrumentInTheirOrder) {
  const TBrowserBanks banks(ShippedSet(Genos));
  EXPECT_EQ(Names(banks, false), (std::vector<std::string>{"Panel", "Legacy", "XG", "GM2", "Custom"}));
  EXPECT_EQ(Names(banks, true), (std::vector<std::string>{"Panel", "Legacy", "GM2", "Custom"}));
}

TEST(SoundBrowserBanks, NameTheMapsOfAGSInstrument) {
  const TBrowserBanks banks(ShippedSet(4));
  EXPECT_EQ(Names(banks, false), (std::vector<std::string>{"SC-55", "SC-88", "SC-88Pro", "SC-8820"}));
}

TEST(SoundBrowserBanks, GroupTheProgramsOfAnInstrumentWithoutCategories) {
  const TBrowserBanks banks(ShippedSet(0));
  ASSERT_FALSE(banks.Banks().empty());
  const TBrowserBank& bank = banks.Banks().front();
  ASSERT_EQ(bank.Categories.size(), 16U);
  EXPECT_EQ(bank.Categories.front().Name, "Piano");
  EXPECT_EQ(bank.Categories.back().Name, "Sound Effects");
  for (const TBrowserCategory& category : bank.Categories) EXPECT_EQ(category.Sounds.size(), 8U);
}

TEST(SoundBrowserBanks, HoldEverySoundOfEveryInstrumentExactlyOnce) {
  for (const TInstrument& instrument : InstrumentArray) {
    const TBrowserBanks banks(ShippedSet(instrument.Value));
    for (std::size_t b = 0; b < banks.Banks().size(); ++b) {
      const TBrowserBank& bank = banks.Banks()[b];
      EXPECT_FALSE(bank.Name.empty()) << instrument.Name;
      std::size_t count = 0;
      std::set<const TPatch*> rows;
      for (std::size_t c = 0; c < bank.Categories.size(); ++c)
        for (std::size_t s = 0; s < bank.Categories[c].Sounds.size(); ++s, ++count) {
          const TSoundPlace place{static_cast<int>(b), static_cast<int>(c), static_cast<int>(s)};
          const TPatch* row = banks.RowAt(place);
          rows.insert(row);
          ASSERT_EQ(banks.PlaceOf(row), place) << instrument.Name << " " << row->Name;
        }
      EXPECT_EQ(count, bank.Rows().size()) << instrument.Name << " " << bank.Name;
      EXPECT_EQ(rows.size(), count);
    }
  }
}

TEST(SoundBrowserBanks, HaveTitlesThatDifferAmongTheSoundsAndAmongTheKitsOfAnInstrument) {
  for (const TInstrument& instrument : InstrumentArray)
    for (const bool drums : {false, true}) {
      const auto names = Names(TBrowserBanks(ShippedSet(instrument.Value)), drums);
      const std::set<std::string> different(names.begin(), names.end());
      std::string all;
      for (const std::string& name : names) all += name + ", ";
      EXPECT_EQ(different.size(), names.size()) << instrument.Name << ": " << all;
    }
}

TEST(SoundBrowserBanks, OfferSoundsForEveryInstrument) {
  for (const TInstrument& instrument : InstrumentArray) {
    const TBrowserBanks banks(ShippedSet(instrument.Value));
    const bool any = std::ranges::any_of(
        banks.Banks(), [](const TBrowserBank& bank) { return !bank.IsDrums && !bank.Rows().empty(); });
    EXPECT_TRUE(any) << instrument.Name;
  }
}

TEST(SoundBrowserBanks, KnowNoPlaceOutsideTheLists) {
  const TBrowserBanks banks(ShippedSet(Genos));
  const TPatch foreign;
  EXPECT_FALSE(banks.PlaceOf(&foreign).IsSet());
  EXPECT_FALSE(banks.PlaceOf(nullptr).IsSet());
  for (const TSoundPlace& place : {TSoundPlace{}, TSoundPlace{99, 0, 0}, TSoundPlace{0, 99, 0},
                                   TSoundPlace{0, 0, 99999}, TSoundPlace{-1, 0, 0}})
    EXPECT_EQ(banks.RowAt(place), nullptr);
}

TEST(SoundBrowserBanks, CutThePaidPackFromALabelAndNameANamelessKit) {
  EXPECT_EQ(VoiceLabel("HollywoodStrings - Premium"), "HollywoodStrings");
  EXPECT_EQ(VoiceLabel("HollywoodStrings - Premium (S.Art2!)"), "HollywoodStrings");
  EXPECT_EQ(VoiceLabel("Premium Pack 'Alpen'"), "Premium Pack 'Alpen'");
  EXPECT_EQ(VoiceLabel("ChamberStrings (S.Art2!)"), "ChamberStrings (S.Art2!)");
  EXPECT_EQ(VoiceLabel(""), "---");
}

TEST(SoundBrowserBanks, ShowANameWithoutTheSuffixOfItsBankAndItsBracketApart) {
  SoundBrowserBench bench(Genos);
  ASSERT_TRUE(bench.OpenWith({{4, {104, 21, 0}}}));
  ASSERT_TRUE(bench.browser.Open(3));
  const auto& banks = bench.browser.Banks();
  const auto textOf = [&](std::string_view name) {
    const TSoundPlace place = bench.Named(name);
    return banks.ListText(place.Bank, *banks.RowAt(place));
  };
  EXPECT_EQ(textOf("CFX ConcertGrand (S.Art!)"), (TSoundText{"CFX ConcertGrand", "S.Art!"}));
  const TPatch& xg = banks.Banks()[2].Rows().front();
  ASSERT_TRUE(xg.Name.ends_with(" (XG)")) << xg.Name;
  EXPECT_EQ(banks.ListText(2, xg).Name, xg.Name.substr(0, xg.Name.size() - 5));
  EXPECT_EQ(banks.ListText(2, xg).Badge, "");
}

TEST(SoundBrowserBanks, FindATextInAllListsInAnyCase) {
  const TBrowserBanks banks(ShippedSet(Genos));
  const std::vector<bool> all(banks.Banks().size(), true);
  const auto small = banks.Search("strings", all);
  EXPECT_GT(small.size(), 20U);
  EXPECT_EQ(small, banks.Search("sTRINGS", all));
  std::set<int> found;
  for (const TSoundPlace& place : small) {
    found.insert(place.Bank);
    EXPECT_NE(SmallLetters(banks.RowAt(place)->Name).find("strings"), std::string::npos);
  }
  EXPECT_GE(found.size(), 3U) << "Panel, Legacy, XG";
  EXPECT_TRUE(banks.Search("", all).empty());
  EXPECT_TRUE(banks.Search("no such sound", all).empty());
}

TEST(SoundBrowserBanks, SearchOnlyWhatIsOffered) {
  const TBrowserBanks banks(ShippedSet(Genos));
  std::vector<bool> offered(banks.Banks().size(), false);
  offered[1] = true;
  for (const TSoundPlace& place : banks.Search("piano", offered)) EXPECT_EQ(place.Bank, 1);
  EXPECT_FALSE(banks.Search("piano", offered).empty());
}

TEST(SoundBrowserBanks, FindUmlautsInAnyCase) {
  UserFolder folder;
  folder.Write("_Yamaha_Genos_Custom.txt", "Eigene\tGRÜNE Wiese\t1\t2\n\tgrüner Klee\t1\t3\n");
  RecordedMessages messages;
  const SoundSet set(Genos, {.DataPath = folder.Path}, messages);
  const TBrowserBanks banks(set);
  const std::vector<bool> all(banks.Banks().size(), true);
  EXPECT_EQ(banks.Search("Grüne", all).size(), 2U);
  EXPECT_EQ(banks.Search("ÜNE W", all).size(), 1U);
}

TEST(SoundBrowserBanks, ShowTheUsersListsAlsoWithoutSounds) {
  const TBrowserBanks banks(ShippedSet(Genos));
  const auto custom = std::ranges::find(banks.Banks(), "Custom", &TBrowserBank::Name);
  ASSERT_NE(custom, banks.Banks().end());
  EXPECT_TRUE(custom->Rows().empty());
  EXPECT_TRUE(custom->IsCustom());
}

}  // namespace

}  // namespace Sonarello
