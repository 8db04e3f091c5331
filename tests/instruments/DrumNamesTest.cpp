// The names of drum kits and of their notes.
#include "instruments/DrumNames.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "helpers/Workbench.h"
#include "instruments/InstrumentArray.h"

namespace Sonarello {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Lists written down row by row.
struct Kits {
  /// Begins a list.
  Kits& List(std::string_view name, Scope scope, Layout layout = Layout::DS) {
    TListSpec& spec = specs.emplace_back();
    spec.Name = name;
    spec.Scope = scope;
    spec.Layout = layout;
    lists.emplace_back().Spec = &spec;
    return *this;
  }
  Kits& Row(const TAddress& address, std::string_view name, std::string_view cells = {}) {
    TPatch row;
    row.CC00 = static_cast<std::int8_t>(address.CC00);
    row.CC32 = static_cast<std::int8_t>(address.CC32);
    row.Patch = static_cast<std::int8_t>(address.Patch);
    row.Name = name;
    row.Drums = cells;
    lists.back().Rows.push_back(row);
    return *this;
  }
  /// A kit of a list of layout DS whose address matters little.
  Kits& Kit(int program, std::string_view cells) { return Row({127, 0, program}, "Kit", cells); }

  [[nodiscard]] TDrumNames Read(const TAddress& address,
                                std::optional<Scope> scope = std::nullopt) const {
    return ReadDrumNames(lists, address, scope);
  }
  /// The named notes of a kit, "36 Kick".
  [[nodiscard]] std::vector<std::string> Notes(const TAddress& address) const {
    return Named(Read(address));
  }
  [[nodiscard]] std::vector<std::string> Notes(int program) const { return Notes({127, 0, program}); }
  static std::vector<std::string> Named(const TDrumNames& kit) {
    std::vector<std::string> lines;
    for (std::size_t n = 0; n < kit.Names.size(); ++n)
      if (!kit.Names[n].empty()) lines.push_back(std::to_string(n) + " " + std::string(kit.Names[n]));
    return lines;
  }

  std::deque<TListSpec> specs;
  std::vector<TSoundList> lists;
};

/// The name of the one kit of a list.
std::string NameIn(std::string_view list, std::string_view kit) {
  Kits k;
  k.List(list, Scope::Drums).Row({0, 0, 0}, kit, "36 Kick");
  return k.Read({0, 0, 0}).DrumSetName;
}

// --- Cells

TEST(DrumNames, NameEachNoteByItsCell) {
  Kits k;
  k.List("DrumSet", Scope::Drums).Row({127, 0, 0}, "Standard", "27 High Q\t28 Slap\t127 Last\t0 First");
  const TDrumNames kit = k.Read({127, 0, 0});
  EXPECT_EQ(kit.DrumSetName, "Standard");
  EXPECT_THAT(Kits::Named(kit), ElementsAre("0 First", "27 High Q", "28 Slap", "127 Last"));
  EXPECT_EQ(kit.Row, &k.lists[0].Rows[0]);
  EXPECT_FALSE(kit.UserEdited);
  EXPECT_EQ(kit.Names[36], "") << "a note that the kit does not define stays empty";
}

TEST(DrumNames, SplitACellAtItsFirstBlankOnly) {
  Kits k;
  k.List("DrumSet", Scope::Drums).Kit(0, "37 909 Rim Shot +2\t036  Kick \t 40 Snare");
  EXPECT_THAT(k.Notes(0), ElementsAre("36 Kick", "37 909 Rim Shot +2", "40 Snare"));
}

TEST(DrumNames, LeaveOutCellsThatDoNotRead) {
  Kits k;
  k.List("DrumSet", Scope::Drums)
      .Kit(0,
           "128 Too high\t-1 Negative\t36\t38 \tSnare\t3x Snare\t \t\t999999999999 Far\t1.5 Half\t40 "
           "Good\r");
  const TDrumNames kit = k.Read({127, 0, 0});
  EXPECT_THAT(Kits::Named(kit), ElementsAre("40 Good"));
  EXPECT_EQ(kit.Row, &k.lists[0].Rows[0]) << "nothing is written behind the last note";
}

TEST(DrumNames, LetTheLaterOfTwoCellsWithOneNoteHold) {
  Kits k;
  k.List("DrumSet", Scope::Drums).Kit(0, "36 Kick\t36 Other Kick");
  EXPECT_THAT(k.Notes(0), ElementsAre("36 Other Kick"));
}

// --- Finding the kit

TEST(DrumNames, AreEmptyForAKitThatNoListHas) {
  Kits k;
  k.List("DrumSet", Scope::Drums).Kit(0, "36 Kick");
  for (const TAddress& address :
       {TAddress{127, 0, 1}, TAddress{126, 0, 0}, TAddress{127, 1, 0}, TAddress{255, 255, 0}}) {
    const TDrumNames kit = k.Read(address);
    EXPECT_EQ(kit.DrumSetName, "");
    EXPECT_THAT(Kits::Named(kit), IsEmpty());
    EXPECT_EQ(kit.Row, nullptr);
  }
  EXPECT_EQ(ReadDrumNames(std::span<const TSoundList>{}, {0, 0, 0}).Row, nullptr);
}

TEST(DrumNames, FindNoKitForAChannelWithoutProgram) {
  Kits k;
  k.List("DrumSet", Scope::Drums).Kit(0, "36 Kick");
  EXPECT_EQ(k.Read({127, 0, -1}).Row, nullptr);
  EXPECT_EQ(k.Read({}).Row, nullptr);
}

TEST(DrumNames, ComeFromTheFirstKitOfAnAddressInStoredOrder) {
  Kits k;
  k.List("Panel_Drums", Scope::Drums).Row({127, 0, 5}, "Other", "36 No");
  k.Row({127, 0, 0}, "First", "36 A").Row({127, 0, 0}, "Second", "36 B");
  k.List("Legacy_Drums", Scope::Drums).Row({127, 0, 0}, "Third", "36 C");
  const TDrumNames kit = k.Read({127, 0, 0});
  EXPECT_EQ(kit.DrumSetName, "First");
  EXPECT_THAT(Kits::Named(kit), ElementsAre("36 A"));
}

TEST(DrumNames, FindAKitByItsProgramAloneIfTheBanksAreLeftOpen) {
  Kits k;
  k.List("DrumSet1", Scope::MapDrums1).Row({0, 1, 8}, "ROOM 1", "36 A");
  k.List("DrumSet2", Scope::MapDrums2).Row({0, 2, 8}, "ROOM 2", "36 B");
  EXPECT_EQ(k.Read({-1, -1, 8}).DrumSetName, "ROOM 1");
  EXPECT_EQ(k.Read({-1, -1, 8}, Scope::MapDrums2).DrumSetName, "ROOM 2");
  EXPECT_EQ(k.Read({-1, 2, 8}).DrumSetName, "ROOM 2");
  EXPECT_EQ(k.Read({-1, -1, 9}).Row, nullptr);
}

TEST(DrumNames, TakeANumberThatARowLeavesOpenForAny) {
  Kits k;
  k.List("DrumSet", Scope::Drums).Row({-1, -1, 8}, "Room", "36 A");
  EXPECT_EQ(k.Read({120, 3, 8}).DrumSetName, "Room");
}

TEST(DrumNames, StayInTheScopeThatIsAskedFor) {
  Kits k;
  k.List("Panel_Drums", Scope::Drums).Row({120, 0, 0}, "Panel", "36 A");
  k.List("GM2", Scope::GM2Drums).Row({120, 0, 0}, "Standard", "36 B");
  EXPECT_EQ(k.Read({120, 0, 0}, Scope::GM2Drums).Row, &k.lists[1].Rows[0]);
  EXPECT_EQ(k.Read({120, 0, 0}, Scope::CustomDrums).Row, nullptr);
  EXPECT_EQ(k.Read({120, 0, 0}).Row, &k.lists[0].Rows[0]);
}

TEST(DrumNames, TakeNoSoundForAKit) {
  Kits k;
  k.List("Panel_Voices", Scope::Sounds, Layout::F5).Row({0, 0, 0}, "Grand Piano");
  k.List("Custom_Sounds", Scope::Custom, Layout::F5).Row({0, 0, 0}, "Mine");
  k.List("SourceData1", Scope::Map1, Layout::P).Row({0, 0, 0}, "Piano 1");
  k.List("LB_Categories", Scope::Categories, Layout::Names).Row({0, 0, 0}, "Piano");
  EXPECT_EQ(k.Read({0, 0, 0}).Row, nullptr);
}

// --- Kit and note names in different lists

TEST(DrumNames, TakeTheNotesOfAKitListFromTheListOfNoteNames) {
  Kits k;
  k.List("DrumSets", Scope::Drums, Layout::K4)
      .Row({120, 0, 0}, "Standard Kit GM")
      .Row({120, 0, 8}, "Room Kit");
  k.List("DrumSet_NoteNames", Scope::Notes)
      .Row({120, 0, 8}, "Room", "36 Room Kick")
      .Row({120, 0, 0}, "Std", "36 Kick");
  const TDrumNames kit = k.Read({120, 0, 0});
  EXPECT_EQ(kit.DrumSetName, "Standard Kit GM");
  EXPECT_THAT(Kits::Named(kit), ElementsAre("36 Kick"));
  EXPECT_EQ(kit.Row, &k.lists[0].Rows[0]);
}

TEST(DrumNames, TakeTheNotesOfAKitFromAnotherDrumListOfTheSameMap) {
  Kits k;
  k.List("SourceDrums1", Scope::MapDrums1).Row({0, 1, 0}, "STANDARD");
  k.List("DrumSet1", Scope::MapDrums1).Row({0, 1, 0}, "Standard 1", "36 Kick 1");
  k.List("DrumSet2", Scope::MapDrums2).Row({0, 2, 0}, "STANDARD", "36 Kick 2");
  const TDrumNames kit = k.Read({0, 1, 0});
  EXPECT_EQ(kit.DrumSetName, "STANDARD");
  EXPECT_THAT(Kits::Named(kit), ElementsAre("36 Kick 1"));
}

TEST(DrumNames, SearchTheNotesUnderTheAddressOfTheKitThatWasFound) {
  Kits k;
  k.List("SourceDrums2", Scope::MapDrums2).Row({0, 2, 0}, "STANDARD");
  k.List("DrumSet1", Scope::MapDrums1).Row({0, 1, 0}, "STANDARD", "36 Kick 1");
  k.List("DrumSet2", Scope::MapDrums2).Row({0, 2, 0}, "STANDARD", "36 Kick 2");
  EXPECT_THAT(Kits::Named(k.Read({-1, -1, 0})), ElementsAre("36 Kick 2"));
}

TEST(DrumNames, SkipNoteListsWhoseRowHasNoNotes) {
  Kits k;
  k.List("DrumSets", Scope::Drums, Layout::K4).Row({0, 0, 0}, "A");
  k.List("Notes", Scope::Notes)
      .Row({0, 0, 0}, "A", "##")
      .Row({0, 0, 0}, "A", "x\t*")
      .Row({0, 0, 0}, "A", "36 Kick");
  EXPECT_THAT(k.Notes({0, 0, 0}), ElementsAre("36 Kick"));
}

TEST(DrumNames, NameACustomKitsNotesFromTheCustomNames) {
  Kits k;
  k.List("Panel_Drums", Scope::Drums, Layout::DN).Row({62, 3, 0}, "Panel", "36 Panel Kick");
  k.List("Some_DrumNames", Scope::Notes).Row({62, 3, 0}, "Some", "36 Some Kick");
  k.List("CustomDrumsSrc", Scope::CustomDrums, Layout::C3).Row({62, 3, 0}, "My Kit");
  k.List("CustomDrumNamesSrc", Scope::CustomNotes, Layout::DN).Row({62, 3, 0}, "My Kit", "36 My Kick");
  const TDrumNames kit = k.Read({62, 3, 0}, Scope::CustomDrums);
  EXPECT_EQ(kit.DrumSetName, "My Kit Custom");
  EXPECT_THAT(Kits::Named(kit), ElementsAre("36 My Kick"));
}

TEST(DrumNames, FallBackToAnyListForNotes) {
  Kits k;
  k.List("Panel_Drums", Scope::Drums, Layout::DN).Row({62, 3, 0}, "Panel", "36 Panel Kick");
  k.List("CustomDrumsSrc", Scope::CustomDrums, Layout::C3).Row({62, 3, 0}, "My Kit");
  EXPECT_THAT(Kits::Named(k.Read({62, 3, 0}, Scope::CustomDrums)), ElementsAre("36 Panel Kick"));
}

TEST(DrumNames, LeaveAllNotesEmptyIfNoListNamesThem) {
  Kits k;
  k.List("Panel_Drums", Scope::Drums, Layout::DN).Row({127, 8, 17}, "RockDrumKit (Revo!)");
  k.List("GM2_Drums", Scope::GM2Drums, Layout::DN).Row({120, 0, 0}, "StandardSet", "36 Kick");
  const TDrumNames kit = k.Read({127, 8, 17});
  EXPECT_EQ(kit.DrumSetName, "RockDrumKit (Revo!)");
  EXPECT_THAT(Kits::Named(kit), IsEmpty());
}

TEST(DrumNames, KnowAKitThatOnlyTheNoteNamesHave) {
  Kits k;
  k.List("DrumSets", Scope::Drums, Layout::K4).Row({86, 64, 0}, "StandardKit1");
  k.List("GM2_DrumNames", Scope::Notes).Row({120, 0, 8}, "Room", "36 Kick");
  EXPECT_EQ(k.Read({120, 0, 8}).DrumSetName, "Room GM2");
  EXPECT_THAT(k.Notes({120, 0, 8}), ElementsAre("36 Kick"));
  EXPECT_EQ(k.Read({120, 0, 8}, Scope::Drums).DrumSetName, "Room GM2");
  EXPECT_EQ(k.Read({120, 0, 8}, Scope::CustomDrums).Row, nullptr);
}

// --- Variations

TEST(DrumNames, OfAVariationReplaceThoseOfItsBaseNoteByNote) {
  Kits k;
  k.List("DrumSet", Scope::Drums)
      .Kit(0, "35 Kick 2\t36 Kick\t38 Snare")
      .Kit(1, "+\t36 Rock Kick\t40 Snare 2");
  EXPECT_THAT(k.Notes(1), ElementsAre("35 Kick 2", "36 Rock Kick", "38 Snare", "40 Snare 2"));
  EXPECT_THAT(k.Notes(0), ElementsAre("35 Kick 2", "36 Kick", "38 Snare")) << "the base stays as it is";
}

TEST(DrumNames, OfSeveralVariationsInARowHaveTheSameBase) {
  Kits k;
  k.List("DrumSet", Scope::Drums)
      .Kit(0, "36 Other")
      .Kit(1, "36 Kick")
      .Kit(2, "+\t38 A")
      .Kit(3, "+\t40 B")
      .Kit(4, "+");
  EXPECT_THAT(k.Notes(2), ElementsAre("36 Kick", "38 A"));
  EXPECT_THAT(k.Notes(3), ElementsAre("36 Kick", "40 B"));
  EXPECT_THAT(k.Notes(4), ElementsAre("36 Kick"));
}

TEST(DrumNames, OfATwofoldVariationComeThroughTheVariationAbove) {
  Kits k;
  k.List("DrumSet", Scope::Drums)
      .Kit(0, "35 Base\t36 Base\t37 Base\t38 Base")
      .Kit(1, "+\t36 One\t37 One\t38 One");
  k.Kit(2, "++\t37 Two\t38 Two")
      .Kit(3, "++\t36 Other")
      .Kit(4, "+++\t38 Three")
      .Kit(5, "+\t35 Last")
      .Kit(6, "++");
  EXPECT_THAT(k.Notes(2), ElementsAre("35 Base", "36 One", "37 Two", "38 Two"));
  EXPECT_THAT(k.Notes(3), ElementsAre("35 Base", "36 Other", "37 One", "38 One"));
  EXPECT_THAT(k.Notes(4), ElementsAre("35 Base", "36 Other", "37 One", "38 Three"));
  EXPECT_THAT(k.Notes(5), ElementsAre("35 Last", "36 Base", "37 Base", "38 Base"));
  EXPECT_THAT(k.Notes(6), ElementsAre("35 Last", "36 Base", "37 Base", "38 Base"));
}

TEST(DrumNames, OfAVariationThatLeavesOutALevelStayWithTheKitItStandsUnder) {
  Kits k;
  k.List("DrumSet", Scope::Drums)
      .Kit(0, "36 A")
      .Kit(1, "+\t37 A+")
      .Kit(2, "36 B")
      .Kit(3, "++\t38 B++")
      .Kit(4, "+++\t39 C");
  EXPECT_THAT(k.Notes(3), ElementsAre("36 B", "38 B++"));
  EXPECT_THAT(k.Notes(4), ElementsAre("36 B", "38 B++", "39 C"));
}

TEST(DrumNames, OfAVariationWithoutBaseAreItsOwn) {
  Kits k;
  k.List("DrumSet", Scope::Drums).Kit(0, "+\t36 A").Kit(1, "++\t38 B").Kit(2, "+").Kit(3, "36 Below");
  EXPECT_THAT(k.Notes(0), ElementsAre("36 A"));
  EXPECT_THAT(k.Notes(1), ElementsAre("36 A", "38 B"));
  EXPECT_THAT(k.Notes(2), IsEmpty()) << "a base never stands below";
}

TEST(DrumNames, TakeNoBaseFromAnotherList) {
  Kits k;
  k.List("DrumKits", Scope::Drums).Kit(0, "36 Kick");
  k.List("SFXDrumKits", Scope::Drums).Kit(1, "+\t38 Snare");
  EXPECT_THAT(k.Notes(1), ElementsAre("38 Snare"));
}

TEST(DrumNames, TakeNoBaseFromARunThatHasEnded) {
  Kits k;
  k.List("Drumset00", Scope::Drums)
      .Kit(0, "36 A")
      .Kit(1, "+\t37 A+\t##\t38 Not read")
      .Kit(2, "+\t39 B")
      .Kit(3, "36 C");
  k.Kit(4, "+\t40 C+").Kit(5, "##").Kit(6, "+\t41 D");
  EXPECT_THAT(k.Notes(1), ElementsAre("36 A", "37 A+")) << "the last row of a run still has its base";
  EXPECT_THAT(k.Notes(2), ElementsAre("39 B"));
  EXPECT_THAT(k.Notes(4), ElementsAre("36 C", "40 C+"));
  EXPECT_THAT(k.Notes(5), IsEmpty());
  EXPECT_THAT(k.Notes(6), ElementsAre("41 D"));
}

TEST(DrumNames, EndInAListOfVariationsOnly) {
  Kits k;
  k.List("DrumSet", Scope::Drums);
  const std::string marks(3000, '+');
  for (std::size_t i = 0; i < 100; ++i)
    k.Kit(static_cast<int>(i), std::string_view(marks).substr(0, 3000 - i * 30));
  k.Kit(100, std::string_view(marks)).Kit(101, "++++++++\t36 Kick");
  EXPECT_THAT(k.Notes(100), IsEmpty());
  EXPECT_THAT(k.Notes(101), ElementsAre("36 Kick"));
}

TEST(DrumNames, TakeASignInsideANameForNoMark) {
  Kits k;
  k.List("DrumSet", Scope::Drums).Kit(0, "36 Kick").Kit(1, "38 +\t40 ##\t42 *\t44 Snare +");
  EXPECT_THAT(k.Notes(1), ElementsAre("38 +", "40 ##", "42 *", "44 Snare +"));
}

// --- Kit names

TEST(DrumNames, GiveTheKitTheWordOfItsList) {
  EXPECT_EQ(NameIn("SFXDrumKits", "Live!Pop Latin Kit"), "Live!Pop Latin Kit SFX");
  EXPECT_EQ(NameIn("GM2DrumSets", "RoomSet"), "RoomSet GM2");
  EXPECT_EQ(NameIn("GM2_Drums", "Room"), "Room GM2");
  EXPECT_EQ(NameIn("CustomDrumsSrc", "Mine"), "Mine Custom");
  EXPECT_EQ(NameIn("CustomDrumKits", "Mine"), "Mine Custom");
  EXPECT_EQ(NameIn("User_DrumSets", "Mine"), "Mine User");
  EXPECT_EQ(NameIn("UserDrums", "Mine"), "Mine User");
  EXPECT_EQ(NameIn("SRX01_Drums", "Jazz"), "SRX Rhythm Jazz");
}

TEST(DrumNames, LeaveTheKitsOfOtherListsAsTheyAre) {
  for (const char* list : {"DrumSet", "DrumKits", "Panel_Drums", "Legacy_Drums", "GM_DrumSets",
                           "Presets_DrumSets", "XG_DrumSets"})
    EXPECT_EQ(NameIn(list, "Standard Kit"), "Standard Kit") << list;
}

TEST(DrumNames, SayAWordOfTheListOnlyOnce) {
  EXPECT_EQ(NameIn("SFXDrumKits", "Arabic SFX"), "Arabic SFX");
  EXPECT_EQ(NameIn("SFXDrumKits", "Arabic sfx"), "Arabic sfx");
  EXPECT_EQ(NameIn("SFXDrumKits", "SFX Kit 1"), "SFX Kit 1");
  EXPECT_EQ(NameIn("SFXDrumKits", "SFXKit"), "SFXKit");
  EXPECT_EQ(NameIn("GM2_Drums", "Standard (GM2)"), "Standard (GM2)");
  EXPECT_EQ(NameIn("SRX01_Drums", "SRX Jazz"), "SRX Jazz");
  EXPECT_EQ(NameIn("UserDrums", "Username"), "Username User") << "part of a word is no word";
  EXPECT_EQ(NameIn("UserDrums", "MyUser"), "MyUser User");
  EXPECT_EQ(NameIn("UserDrums", "User2"), "User2 User");
  EXPECT_EQ(NameIn("UserDrums", ""), " User");
}

TEST(DrumNames, MarkAKitThatTheUserEdited) {
  Kits k;
  k.List("UserDrums", Scope::Drums)
      .Row({0, 0, 0}, "* Mine", "36 Kick")
      .Row({0, 0, 1}, "Yours", "*\t36 Kick");
  k.Row({0, 0, 2}, "* Both", "*\t+\t38 Snare").Row({0, 0, 3}, "*Star", "36 Kick");
  EXPECT_EQ(k.Read({0, 0, 0}).DrumSetName, "* Mine User");
  EXPECT_TRUE(k.Read({0, 0, 0}).UserEdited);
  EXPECT_EQ(k.Read({0, 0, 1}).DrumSetName, "* Yours User");
  EXPECT_TRUE(k.Read({0, 0, 1}).UserEdited);
  EXPECT_THAT(k.Notes({0, 0, 1}), ElementsAre("36 Kick"));
  EXPECT_EQ(k.Read({0, 0, 2}).DrumSetName, "* Both User");
  EXPECT_THAT(k.Notes({0, 0, 2}), ElementsAre("36 Kick", "38 Snare"));
  EXPECT_EQ(k.Read({0, 0, 3}).DrumSetName, "*Star User");
  EXPECT_FALSE(k.Read({0, 0, 3}).UserEdited);
}

TEST(DrumNames, PutTheMarkOfAnEditedKitInFrontOfTheListsWord) {
  EXPECT_EQ(NameIn("SRX01_Drums", "* Jazz"), "* SRX Rhythm Jazz");
}

TEST(DrumNames, DoNotTakeAVariationOfAnEditedKitForEdited) {
  Kits k;
  k.List("DrumSet", Scope::Drums).Kit(0, "*\t36 Kick").Kit(1, "+\t38 Snare");
  EXPECT_FALSE(k.Read({127, 0, 1}).UserEdited);
  EXPECT_EQ(k.Read({127, 0, 1}).DrumSetName, "Kit");
}

TEST(DrumNames, SeeTheEditMarkInTheListOfNoteNames) {
  Kits k;
  k.List("DrumSets", Scope::Drums, Layout::K4).Row({0, 0, 0}, "Kit");
  k.List("DrumSet_NoteNames", Scope::Notes).Row({0, 0, 0}, "Kit", "*\t36 Kick");
  EXPECT_EQ(k.Read({0, 0, 0}).DrumSetName, "* Kit");
}

// --- The instruments' own tables

struct Instrument {
  explicit Instrument(int value) : set(value, {}, messages) {}
  RecordedMessages messages;
  SoundSet set;
};

TEST(DrumNames, OfTheGM2SetAreKnown) {
  const Instrument gm2(16);
  const TDrumNames kit = ReadDrumNames(gm2.set, {120, 0, 0});
  EXPECT_EQ(kit.DrumSetName, "Standard");
  EXPECT_EQ(kit.Names[27], "High Q");
  EXPECT_EQ(kit.Names[37], "Sd.Stick");
  EXPECT_EQ(kit.Names[0], "");
}

TEST(DrumNames, OfTheSC88AreThoseOfItsMap) {
  const Instrument sc88(15);
  const TDrumNames first = ReadDrumNames(sc88.set, {0, 1, 0}, Scope::MapDrums1);
  const TDrumNames second = ReadDrumNames(sc88.set, {0, 2, 0}, Scope::MapDrums2);
  EXPECT_EQ(first.DrumSetName, "STANDARD");
  EXPECT_EQ(first.Names[35], "Kick 2");
  ASSERT_NE(second.Row, nullptr);
  EXPECT_EQ(second.Row->CC32, 2);
  EXPECT_FALSE(second.Names[36].empty());
}

TEST(DrumNames, OfTheFantomTakeTheNotesOfGM2FromTheirOwnList) {
  const Instrument fantom(25);
  const TSoundList* kits = fantom.set.List("DrumSets");
  ASSERT_NE(kits, nullptr);
  ASSERT_FALSE(kits->Rows.empty());
  EXPECT_EQ(kits->Rows[0].Drums, "") << "the kits stand without notes";
  const TDrumNames kit = ReadDrumNames(fantom.set, {120, 0, 0});
  EXPECT_EQ(kit.DrumSetName, "GM2 STANDARD");
  EXPECT_EQ(kit.Names[27], "High Q");
}

TEST(DrumNames, OfTheGenosAreKnownByAddress) {
  const Instrument genos(87);
  const TDrumNames rock = ReadDrumNames(genos.set, {127, 8, 17});
  EXPECT_EQ(rock.DrumSetName, "Rock Drum Kit (Revo!)");
  EXPECT_THAT(Kits::Named(rock), IsEmpty()) << "no list names its notes";
  const TDrumNames legacy = ReadDrumNames(genos.set, {127, 0, 1}, Scope::Drums);
  EXPECT_EQ(legacy.Names[13], "Surdo Mute");
  EXPECT_EQ(ReadDrumNames(genos.set, {120, 0, 0}, Scope::GM2Drums).DrumSetName, "GM2 Standard Set");
}

TEST(DrumNames, TakeAKitOfTheLastRowOfPrograms) {
  const Instrument psr8000(5);
  const TDrumNames hit = ReadDrumNames(psr8000.set, {127, 0, 4});
  EXPECT_EQ(hit.DrumSetName, "Hit Kit");
  const TDrumNames standard = ReadDrumNames(psr8000.set, {127, 0, 0}, Scope::Drums);
  EXPECT_EQ(standard.DrumSetName, "Std.Kit1");
  EXPECT_FALSE(standard.Names[36].empty()) << "the notes stand in a list of their own";
}

TEST(DrumNames, AreFoundForEveryKitOfEveryInstrument) {
  int kits = 0;
  int named = 0;
  for (const TInstrument& row : InstrumentArray) {
    const Instrument instrument(row.Value);
    for (const TSoundList& list : instrument.set.Lists()) {
      const Scope scope = list.Spec->Scope;
      const bool ofMap = scope >= Scope::MapDrums1 && scope <= Scope::MapDrums4;
      if (scope != Scope::Drums && scope != Scope::GM2Drums && !ofMap) continue;
      for (const TPatch& kit : list.Rows) {
        const TDrumNames names = ReadDrumNames(instrument.set, kit.Address(), scope);
        ASSERT_NE(names.Row, nullptr) << row.Name << ", " << kit.Name;
        EXPECT_EQ(names.Row->Address(), kit.Address());
        EXPECT_THAT(names.DrumSetName, testing::HasSubstr(std::string(names.Row->Name)));
        ++kits;
        if (kit.Drums.empty()) continue;
        EXPECT_FALSE(Kits::Named(names).empty()) << row.Name << ", " << kit.Name;
        ++named;
      }
    }
  }
  EXPECT_GT(kits, 1000);
  EXPECT_GT(named, 300);
}

}  // namespace
}  // namespace Sonarello
