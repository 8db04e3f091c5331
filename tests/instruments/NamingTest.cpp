#include "instruments/Naming.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

#include "helpers/SoundBench.h"
#include "instruments/InstrumentArray.h"

namespace Sonarello {

namespace {

constexpr TAddress Nothing;  // repair writes none of the numbers
constexpr int Genos = 87;

TSoundName Ask(int instrument, TAddress address, bool repair = false, int channel = 1,
               int drumPart = 0) {
  return NameSound(ShippedSet(instrument),
                   {.Address = address, .Channel = channel - 1, .DrumPart = drumPart},
                   {.AutoProgChange = repair});
}
std::string Name(int instrument, TAddress address, bool repair = false, int channel = 1,
                 int drumPart = 0) {
  return Ask(instrument, address, repair, channel, drumPart).Text();
}
std::string German(int instrument, TAddress address, int channel = 1, int drumPart = 0) {
  const InGerman german;
  return Name(instrument, address, false, channel, drumPart);
}

// --- Genos and the arrangers

TEST(Naming, FindsThePanelVoicesOfTheGenos) {
  EXPECT_EQ(Name(Genos, {104, 21, 0}), "CFX ConcertGrand (S.Art!)");
  EXPECT_TRUE(Ask(Genos, {104, 21, 0}).Known);
  EXPECT_FALSE(Ask(Genos, {104, 21, 0}).IsDrums);
}

TEST(Naming, PutsTheBankBehindTheNamesOfTheOtherLists) {
  EXPECT_EQ(Name(Genos, {0, 0, 0}), "GrandPiano (XG)");
  EXPECT_THAT(Name(Genos, {121, 0, 0}), testing::EndsWith(" (GM2)"));
}

TEST(Naming, KnowsTheNineGM2SetsOfTheGenosByTheirProgram) {
  const std::pair<int, const char*> sets[] = {
      {0, "GM2 Standard Set"},    {8, "GM2 Room Set"},       {16, "GM2 Power Set"},
      {24, "GM2 Electronic Set"}, {25, "GM2 Analog Set"},    {32, "GM2 Jazz Set"},
      {40, "GM2 Brush Set"},      {48, "GM2 Orchestra Set"}, {56, "GM2 SFX Set"}};
  for (const auto& [program, name] : sets) {
    EXPECT_EQ(Name(Genos, {120, 0, program}), name);
    EXPECT_EQ(Name(Genos, {120, 77, program}), name) << "the LSB plays no part";
  }
}

TEST(Naming, TellsOrMendsAnUnknownGM2Set) {
  EXPECT_EQ(Name(Genos, {120, 3, 5}), "Unknown GM2 Set");
  EXPECT_EQ(German(Genos, {120, 3, 5}), "Unbek. GM2 Set");
  const TSoundName mended = Ask(Genos, {120, 3, 5}, true);
  EXPECT_EQ(mended.Text(), "GM2 Standard Set");
  EXPECT_EQ(mended.Mended, (TAddress{-1, 0, 0}));
  EXPECT_FALSE(mended.Known);
}

TEST(Naming, TellsOrMendsAnUnknownGM2SoundByItsCapital) {
  EXPECT_EQ(Name(Genos, {121, 99, 5}), "Unknown GM2-sound");
  EXPECT_EQ(German(Genos, {121, 99, 5}), "Unbek. GM2-Sound");
  const TSoundName mended = Ask(Genos, {121, 99, 5}, true);
  EXPECT_EQ(mended.Text(), Name(Genos, {121, 0, 5}));
  EXPECT_EQ(mended.Mended, (TAddress{-1, 0, -1}));
}

TEST(Naming, TellsOrMendsAnUnknownDrumKitOfTheGenos) {
  EXPECT_EQ(Name(Genos, {127, 99, 99}), "Unknown Drum Kit");
  EXPECT_EQ(German(Genos, {127, 99, 99}), "Unbek. Drum Kit");
  const TSoundName mended = Ask(Genos, {127, 99, 99}, true);
  EXPECT_EQ(mended.Text(), "Standard Kit 1 (Live!Drum)");
  EXPECT_EQ(mended.Mended, (TAddress{-1, 0, 0}));
  EXPECT_TRUE(mended.IsDrums);
}

TEST(Naming, NeverMendsTheUsersOwnSounds) {
  for (const bool repair : {false, true}) {
    EXPECT_EQ(Name(Genos, {62, 0, 0}, repair), "Unknown Custom DrumKit");
    EXPECT_EQ(Name(Genos, {63, 1, 2}, repair), "Unknown Custom voice");
    EXPECT_EQ(Ask(Genos, {62, 0, 0}, repair).Mended, Nothing);
    EXPECT_EQ(Ask(Genos, {63, 1, 2}, repair).Mended, Nothing);
  }
  EXPECT_EQ(German(Genos, {62, 0, 0}), "Unbek. Custom DrumKit");
  EXPECT_EQ(German(Genos, {63, 1, 2}), "Unbek. Custom-Voice");
}

TEST(Naming, TellsOrMendsAnyOtherUnknownSoundByTheXGBank) {
  EXPECT_EQ(Name(Genos, {17, 3, 5}), "Unknown XG-sound");
  EXPECT_EQ(German(Genos, {17, 3, 5}), "Unbek. XG-Sound");
  const TSoundName mended = Ask(Genos, {17, 3, 5}, true);
  EXPECT_EQ(mended.Text(), Name(Genos, {0, 0, 5}));
  EXPECT_EQ(mended.Mended, (TAddress{0, 0, -1}));
  EXPECT_EQ(Ask(Genos, {0, 3, 127}, true).Mended, (TAddress{-1, 0, -1})) << "MSB is right already";
}

TEST(Naming, SpeaksOfDrumsOnChannel10OfTheGenos) {
  EXPECT_EQ(Name(Genos, {17, 3, 5}, false, 10), "Unknown drumkit");
  EXPECT_EQ(German(Genos, {17, 3, 5}, 10), "Unbek. Drumkit");
  EXPECT_EQ(Name(Genos, {0, 0, 0}, false, 10), "GrandPiano (XG)") << "the bank alone decides";
}

TEST(Naming, GivesAnUnsetBankTheInstrumentsOwn) {
  EXPECT_EQ(Name(Genos, {-1, -1, 0}), "GrandPiano (XG)");
  EXPECT_EQ(Name(Genos, {-1, -1, 0}, false, 10), "Standard Kit 1 (Live!Drum)");
  EXPECT_EQ(Name(16, {-1, -1, 0}), "Acoustic Grand Piano");
  EXPECT_EQ(Name(16, {-1, -1, 0}, false, 10), "Standard");
  EXPECT_EQ(Name(Genos, {104, -1, 0}), Name(Genos, {104, 0, 0}));
}

TEST(Naming, NamesNothingOutsideTheMidiRange) {
  for (const TAddress& address : {TAddress{128, 0, 0}, {0, 128, 0}, {0, 0, 128}, {255, 255, 255}})
    EXPECT_FALSE(Ask(Genos, address).Known);
}

// --- GM, GM2 and the instruments of channel 10

TEST(Naming, NamesTheStandardSounds) {
  EXPECT_EQ(Name(0, {0, 0, 0}), "Acoustic Grand Piano");
  EXPECT_EQ(Name(0, {0, 0, 127}), "Gunshot");
  EXPECT_EQ(Name(16, {121, 0, 0}), "Acoustic Grand Piano");
  EXPECT_THAT(Name(16, {121, 1, 0}), testing::StartsWith("Acoustic Grand Piano ("));
}

TEST(Naming, MendsBankAndVariationOnTheGMSet) {
  EXPECT_EQ(Name(0, {8, 4, 3}), "Unknown sound");
  EXPECT_EQ(German(0, {8, 4, 3}), "Unbek. Sound");
  const TSoundName mended = Ask(0, {8, 4, 3}, true);
  EXPECT_EQ(mended.Text(), Name(0, {0, 0, 3}));
  EXPECT_EQ(mended.Mended, (TAddress{0, 0, -1}));
}

TEST(Naming, MendsAMissingVariationOfGM2) {
  EXPECT_EQ(Name(16, {121, 9, 0}), "Unknown sound");
  EXPECT_EQ(German(16, {121, 9, 0}), "Unbek. Sound");
  EXPECT_EQ(Ask(16, {121, 9, 0}, true).Mended, (TAddress{-1, 0, -1}));
  EXPECT_EQ(Ask(16, {5, 9, 0}, true).Mended, (TAddress{121, 0, -1}));
}

TEST(Naming, FindsTheKitsOfChannel10ByTheProgramAlone) {
  EXPECT_EQ(Name(16, {0, 5, 40}, false, 10), "Brush");
  EXPECT_TRUE(Ask(16, {0, 5, 40}, false, 10).Known);
  EXPECT_EQ(Name(16, {120, 0, 40}, false, 3), "Brush") << "bank 120 holds drums on any channel";
  EXPECT_EQ(Name(16, {0, 0, 3}, false, 10), "Unknown drumset");
  EXPECT_EQ(German(0, {0, 0, 3}, 10), "Unbek. GM Drumset");
  EXPECT_EQ(Ask(16, {120, 0, 3}, true, 10).Mended, (TAddress{-1, -1, 0}));
  EXPECT_EQ(Name(16, {120, 0, 3}, true, 10), "Standard");
}

TEST(Naming, KnowsXGKitsByProgramOnChannel10AndByBankElsewhere) {
  constexpr int mu90 = 8;
  EXPECT_TRUE(Ask(mu90, {0, 0, 16}, false, 10).Known);
  EXPECT_EQ(Name(mu90, {127, 0, 16}, false, 5), Name(mu90, {0, 0, 16}, false, 10));
  EXPECT_FALSE(Ask(mu90, {126, 0, 99}, false, 5).Known);
  EXPECT_EQ(German(mu90, {126, 0, 99}, 5), "Unbek. SFX Kit");
}

TEST(Naming, LetsTheBankAloneDecideOnTheXGSet) {
  EXPECT_EQ(Name(19, {0, 0, 0}, false, 10), Name(19, {0, 0, 0}, false, 1));
  EXPECT_TRUE(Ask(19, {127, 0, 0}, false, 4).IsDrums);
  EXPECT_EQ(Name(19, {127, 9, 9}, false, 4), "Unknown XG Drumkit");
  EXPECT_EQ(German(19, {127, 9, 9}, 4), "Unbek. XG Drumkit");
  EXPECT_EQ(Ask(19, {127, 9, 9}, true, 4).Mended, (TAddress{-1, 0, 0}));
  EXPECT_EQ(Ask(19, {50, 9, 9}, true).Mended, (TAddress{0, 0, -1}));
}

TEST(Naming, SendsKorgDrumsToTheKitBank) {
  constexpr int pa4x = 82;
  EXPECT_TRUE(Ask(pa4x, {120, 0, 40}, false, 10).Known);
  EXPECT_FALSE(Ask(pa4x, {0, 0, 40}, false, 10).Known);
  const TSoundName mended = Ask(pa4x, {0, 5, 40}, true, 10);
  EXPECT_EQ(mended.Mended, (TAddress{120, 0, -1})) << "the kit of this program stays";
  EXPECT_EQ(Ask(pa4x, {0, 5, 3}, true, 10).Mended, (TAddress{120, 0, 0}));
  EXPECT_EQ(Ask(pa4x, {9, 9, 9}, true).Mended, (TAddress{121, 0, -1}));
}

// --- Modules that know drums by channel 10 or by a drum part

TEST(Naming, BorrowsANameForAnUnknownSoundOfAModuleAndWritesNothing) {
  constexpr int event = 104;
  const TSoundName known = Ask(event, {0, 0, 5});
  ASSERT_TRUE(known.Known);
  const TSoundName borrowed = Ask(event, {99, 99, 5}, true);
  EXPECT_EQ(borrowed.Text(), known.Text()) << "the first sound of this program";
  EXPECT_FALSE(borrowed.Known);
  EXPECT_EQ(borrowed.Mended, Nothing);
  EXPECT_EQ(Name(event, {99, 99, 5}), "Unknown sound");
}

TEST(Naming, MendsADrumKitOfAModuleToItsFirstKit) {
  constexpr int event = 104;
  for (const auto& [channel, part] : {std::pair{10, 0}, std::pair{4, 1}}) {
    EXPECT_TRUE(Ask(event, {0, 0, 0}, false, channel, part).IsDrums);
    EXPECT_EQ(Name(event, {5, 5, 5}, false, channel, part), "Unknown drumset");
    const TSoundName mended = Ask(event, {5, 6, 7}, true, channel, part);
    EXPECT_EQ(mended.Text(), "Standard 1 (SD)");
    EXPECT_EQ(mended.Mended, (TAddress{0, 0, 0}));
  }
  EXPECT_FALSE(Ask(event, {0, 0, 0}, false, 4, 0).IsDrums);
}

// --- GS

TEST(Naming, PicksTheGSMapByTheLSB) {
  constexpr int sc88 = 15;
  EXPECT_TRUE(Ask(sc88, {0, 1, 0}).Known);
  EXPECT_TRUE(Ask(sc88, {0, 2, 0}).Known);
  EXPECT_EQ(Name(sc88, {0, 0, 0}), Name(sc88, {0, 2, 0})) << "0 is the default, the highest map";
  EXPECT_EQ(Name(sc88, {0, 9, 0}), Name(sc88, {0, 2, 0})) << "a map that it does not have";
  EXPECT_EQ(ShippedSet(4).MapCount(), 4);
  EXPECT_EQ(ShippedSet(1).MapCount(), 3);
}

TEST(Naming, GivesAMissingGSVariationItsCapital) {
  const TSoundName off = Ask(15, {111, 1, 0});
  EXPECT_EQ(off.Text(), Name(15, {0, 1, 0}));
  EXPECT_EQ(off.Mended, Nothing);
  EXPECT_EQ(Ask(15, {111, 1, 0}, true).Mended, (TAddress{0, -1, -1}));
}

TEST(Naming, WritesTheChosenMapOverLSB0) {
  const SoundSet& sc8850 = ShippedSet(4);
  const auto ask = [&](int lsb, int map, bool repair) {
    return NameSound(
        sc8850, {.Address = {0, lsb, 0}},
        {.AutoProgChange = repair, .RolandSCDefaultMap = true, .RolandSCDefaultMapIdx = map});
  };
  EXPECT_EQ(ask(0, 1, true).Mended, (TAddress{-1, 1, -1}));
  EXPECT_EQ(ask(0, 1, true).Text(), ask(1, 1, false).Text());
  EXPECT_EQ(ask(0, 1, false).Mended, Nothing);
  EXPECT_EQ(ask(2, 1, true).Mended, Nothing) << "the song chose its map";
  EXPECT_EQ(ask(0, 0, true).Mended, Nothing) << "no map is chosen";
  EXPECT_EQ(ask(0, 9, true).Mended, Nothing) << "the instrument has no such map";
}

TEST(Naming, KnowsGSDrumsByTheirPartAlone) {
  EXPECT_FALSE(Ask(1, {0, 0, 0}, false, 10, 0).IsDrums);
  EXPECT_EQ(Name(1, {0, 0, 0}, false, 3, 1), "STANDARD 1");
  EXPECT_EQ(Name(1, {77, 0, 25}, false, 10, 1), "TR-808") << "by program, whatever the bank";
  EXPECT_EQ(Name(1, {0, 0, 99}, false, 10, 1), "Unknown drumset");
  EXPECT_EQ(Ask(1, {0, 0, 99}, true, 10, 1).Mended, (TAddress{-1, -1, 0}));
  EXPECT_TRUE(Ask(22, {0, 0, 0}, false, 10, 0).IsDrums) << "the G-70 also goes by channel 10";
}

TEST(Naming, ShowsTheNumbersWhereTheInstrumentDoes) {
  EXPECT_THAT(Name(37, {3, 4, 5}), testing::StartsWith("Unk.MSB=3"));
  EXPECT_THAT(German(37, {3, 4, 5}), testing::StartsWith("Unb.MSB=3"));
  EXPECT_THAT(Name(60, {3, 4, 5}), testing::StartsWith("Unk.preset MSB=3"));
  EXPECT_THAT(German(60, {3, 4, 5}), testing::StartsWith("Unb.Preset MSB=3"));
  EXPECT_THAT(German(60, {3, 4, 5}, 1, 1), testing::StartsWith("Unb.Drumkit MSB=3"));
  EXPECT_THAT(Name(60, {3, 4, 5}, false, 1, 1), testing::StartsWith("Unk.drumkit MSB=3"));
}

TEST(Naming, HasWordsOfItsOwnForTheIntegrasExpansion) {
  EXPECT_EQ(Name(71, {97, 60, 0}), "Unbek. ExPCM Synth Tone");
  EXPECT_EQ(Name(71, {1, 2, 3}), "Unknown preset");
  EXPECT_EQ(Name(9, {1, 2, 3}), "Unknown");
  EXPECT_EQ(German(9, {1, 2, 3}), "Unbekannt");
  EXPECT_EQ(German(18, {1, 2, 3}), "Unbekannter Sound");
  EXPECT_EQ(German(18, {1, 2, 99}, 10), "Unbekannter Drumkit");
}

// --- All instruments

TEST(Naming, KnowsEveryInstrumentOfTheCatalogue) {
  ASSERT_EQ(Members().size(), InstrumentArray.size());
  for (const TInstrument& row : InstrumentArray) {
    const TMember* member = MemberOf(row.Value);
    ASSERT_NE(member, nullptr) << row.Name;
    EXPECT_EQ(member->Value, row.Value);
    EXPECT_TRUE(member->Class.starts_with('T')) << row.Name;
  }
  EXPECT_EQ(MemberOf(106), nullptr);
  EXPECT_EQ(MemberOf(-1), nullptr);
}

/// The question that leads to a row of a list: where the row's address is looked for.
TSoundQuery QuestionFor(const TFamily& family, const TListSpec& spec, const TPatch& row, bool kit) {
  TSoundQuery query{.Address = row.Address()};
  const bool drums = kit || spec.Scope == Scope::Drums || spec.Scope == Scope::GM2Drums ||
                     (spec.Scope >= Scope::MapDrums1 && spec.Scope <= Scope::MapDrums4);
  if (!drums) return query;
  if (family.Drums == DrumRule::Channel10 || family.Drums == DrumRule::Channel10OrPart)
    query.Channel = DrumChannel;
  if (family.Drums == DrumRule::Part) query.DrumPart = 1;
  return query;
}

TEST(Naming, NamesEveryRowOfEveryListByItself) {
  int rows = 0;
  for (const TInstrument& instrument : InstrumentArray) {
    const SoundSet& set = ShippedSet(instrument.Value);
    const TFamily& family = *MemberOf(instrument.Value)->Family;
    std::set<std::tuple<Scope, int, int, int>> taken;
    for (const TSoundList& list : set.Lists()) {
      const Scope scope = list.Spec->Scope;
      if (scope == Scope::Notes || scope == Scope::Categories || scope == Scope::CustomNotes) continue;
      for (const bool kits : {false, true})
        for (const TPatch& row : kits ? list.Kits : list.Rows) {
          const Scope place = kits ? Scope::Drums : scope;
          if (!taken.emplace(place, row.CC00, row.CC32, row.Patch).second) continue;
          const TSoundName name =
              NameSound(set, QuestionFor(family, *list.Spec, row, kits), {.AutoProgChange = true});
          ++rows;
          ASSERT_TRUE(name.Known) << instrument.Name << ", " << list.Spec->Name << ": " << row.Name;
          ASSERT_EQ(name.Text(), row.Name) << instrument.Name << ", " << list.Spec->Name;
          ASSERT_EQ(name.Mended, Nothing) << instrument.Name << ", " << list.Spec->Name;
        }
    }
  }
  EXPECT_GT(rows, 30000);
}

TEST(Naming, LeavesNoChannelWithoutWords) {
  for (const TInstrument& instrument : InstrumentArray)
    for (const bool repair : {false, true})
      for (const int channel : {1, 10})
        for (const int part : {0, 1})
          for (const TAddress& address : {TAddress{}, {-1, -1, 0}, {99, 98, 97}, {127, 127, 127}}) {
            EXPECT_FALSE(Name(instrument.Value, address, repair, channel, part).empty());
            const InGerman german;
            EXPECT_FALSE(Name(instrument.Value, address, repair, channel, part).empty());
          }
}

TEST(Naming, FindsWhatARepairWroteAndThenMendsNoMore) {
  for (const TInstrument& instrument : InstrumentArray)
    for (const int channel : {1, 10})
      for (const int part : {0, 1})
        for (int program = 0; program < 128; ++program) {
          const TAddress asked = {98, 97, program};
          const TSoundName first = Ask(instrument.Value, asked, true, channel, part);
          if (!first.IsMended()) continue;
          const auto now = [](int mended, int old) { return mended >= 0 ? mended : old; };
          const TAddress written = {now(first.Mended.CC00, 98), now(first.Mended.CC32, 97),
                                    now(first.Mended.Patch, program)};
          const TSoundName second = Ask(instrument.Value, written, true, channel, part);
          ASSERT_FALSE(second.IsMended()) << instrument.Name << ' ' << program;
          ASSERT_EQ(second.Text(), first.Text()) << instrument.Name << ' ' << program;
          ASSERT_TRUE(second.Known) << instrument.Name << ' ' << program;
        }
}

TEST(Naming, SaysTheSameOfAnEventElsewhereInTheSong) {
  const SoundSet& genos = ShippedSet(Genos);
  EXPECT_EQ(ProgramChangeName(genos, 104, 21, 0, {}), "CFX ConcertGrand (S.Art!)");
  EXPECT_EQ(ProgramChangeName(genos, 17, 3, 5, {}), "Unknown XG-sound");
  EXPECT_EQ(ProgramChangeName(genos, 17, 3, 5, {.AutoProgChange = true}), Name(Genos, {0, 0, 5}));
  EXPECT_EQ(DrumsChangeName(genos, 0, {}), "Standard Kit 1 (Live!Drum)");
  EXPECT_EQ(DrumsChangeName(ShippedSet(16), 40, {}), "Brush");
  EXPECT_EQ(DrumsChangeName(ShippedSet(1), 25, {}), "TR-808");
}

// --- Organ flutes

Bytes OrganFlute(std::initializer_list<std::uint8_t> setting, bool withPart) {
  Bytes bytes = withPart ? Bytes{0x43, 0x73, 0x01, 0x06, 0x0B, 0x00, 0x00, 0x01, 0x06, 0x02}
                         : Bytes{0x43, 0x73, 0x01, 0x11, 0x00, 0x50, 0x10};
  bytes.insert(bytes.end(), setting);
  bytes.push_back(0xF7);
  return bytes;
}

TEST(OrganFlutes, AreNamedByTheirSetting) {
  const auto fullOrgan = {std::uint8_t{8}, std::uint8_t{8}, std::uint8_t{7}, std::uint8_t{7},
                          std::uint8_t{7}, std::uint8_t{6}, std::uint8_t{8}, std::uint8_t{7},
                          std::uint8_t{8}, std::uint8_t{0}, std::uint8_t{0}, std::uint8_t{0},
                          std::uint8_t{0}, std::uint8_t{0}, std::uint8_t{0}, std::uint8_t{1},
                          std::uint8_t{9}, std::uint8_t{0}, std::uint8_t{0}, std::uint8_t{0},
                          std::uint8_t{0}};
  EXPECT_EQ(OrganFluteName(OrganFlute(fullOrgan, false)), "FullOrgan (OrganFlutes)");
  EXPECT_EQ(OrganFluteName(OrganFlute(fullOrgan, true)), "FullOrgan (OrganFlutes)");
}

TEST(OrganFlutes, HaveAPlainNameWithoutAKnownSetting) {
  EXPECT_EQ(OrganFluteName({}), "OrganFlutes (OrganFlutes)");
  EXPECT_EQ(OrganFluteName(OrganFlute({1, 2, 3}, false)), "OrganFlutes (OrganFlutes)");
  EXPECT_EQ(OrganFluteName(OrganFlute({}, true)), "OrganFlutes (OrganFlutes)");
  EXPECT_EQ(OrganFluteName(Bytes{0xF7}), "OrganFlutes (OrganFlutes)");
}

}  // namespace
}  // namespace Sonarello
