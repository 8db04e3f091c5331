#include "instruments/SoundListReader.h"

#include <gmock/gmock.h>

#include <random>
#include <string>

#include "helpers/InGerman.h"
#include "helpers/SoundLists.h"
#include "helpers/Workbench.h"

namespace Sonarello {
namespace {

using testing::AllOf;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

const char* const ThreeRows =
    "Piano\tGrand\t104\t21\t0\n"
    "\tUpright\t104\t10\t1\n"
    "Strings\tSection\t8\t33\t127\n";

/// 128 rows with the first ones given, and a row of kits.
std::string Programs(const std::vector<std::string>& first, const std::string& kits) {
  std::string text;
  for (std::size_t program = 0; program < 128; ++program)
    text += (program < first.size() ? first[program] : "Tone " + std::to_string(program)) + "\n";
  return text + kits + "\n";
}

TEST(SoundLists, ReadsTheFlatRow) {
  const TListSpec spec = ListSpec(Layout::F5);
  const TSoundList list = ReadSoundList(spec, ThreeRows, nullptr);
  EXPECT_THAT(RowTexts(list), ElementsAre("104/21/0 Grand @Piano", "104/10/1 Upright @Piano",
                                          "8/33/127 Section @Strings"));
  EXPECT_EQ(list.Spec, &spec);
  EXPECT_FALSE(list.FromUser);
  EXPECT_THAT(list.Effects, IsEmpty());
  EXPECT_THAT(list.Inserts, IsEmpty());
}

TEST(SoundLists, KeepsTheCategoryOfTheRowAbove) {
  const TListSpec spec = ListSpec(Layout::F5);
  const TSoundList list = ReadSoundList(spec, ThreeRows, nullptr);
  EXPECT_THAT(list.Categories, ElementsAre("Piano", "Strings"));
  EXPECT_EQ(list.Rows[1].CatIndex, 0);
  EXPECT_EQ(list.Rows[2].CatIndex, 1);
}

TEST(SoundLists, AppendsNothingForACategoryThatIsWrittenOnEachOfItsRows) {
  const TListSpec spec = ListSpec(Layout::F5);
  const TSoundList list = ReadSoundList(spec, "Piano\tA\t0\t0\t0\nPiano\tB\t0\t0\t1\n", nullptr);
  EXPECT_THAT(list.Categories, ElementsAre("Piano"));
}

TEST(SoundLists, AppendsACategoryThatComesBackBehindAnotherOne) {
  const TListSpec spec = ListSpec(Layout::F5);
  const TSoundList list =
      ReadSoundList(spec, "Piano\tA\t0\t0\t0\nOrgan\tB\t0\t0\t1\nPiano\tC\t0\t0\t2\n", nullptr);
  EXPECT_THAT(list.Categories, ElementsAre("Piano", "Organ", "Piano"));
  EXPECT_EQ(list.Rows[2].CatIndex, 2);
}

TEST(SoundLists, StartTheFirstCategoryWithTheFirstRowEvenWithoutName) {
  const TListSpec spec = ListSpec(Layout::F5);
  const TSoundList list = ReadSoundList(spec, "\tA\t0\t0\t0\nOrgan\tB\t0\t0\t1\n", nullptr);
  EXPECT_THAT(list.Categories, ElementsAre("", "Organ"));
  EXPECT_EQ(list.Rows[0].CatIndex, 0);
}

TEST(SoundLists, ReadTheLayoutWithoutBankLSB) {
  const TListSpec spec = ListSpec(Layout::F4);
  const TSoundList list = ReadSoundList(spec, "Piano\tGrand Piano\t0\t1\n", nullptr);
  EXPECT_THAT(RowTexts(list), ElementsAre("0/0/1 Grand Piano @Piano"));
}

TEST(SoundLists, ReadTheLayoutWhoseBanksAreTheLists) {
  TListSpec spec = ListSpec(Layout::Kronos);
  spec.CC00 = 63;
  spec.CC32 = 4;
  const TSoundList list = ReadSoundList(spec, "Keyboard\tA.Piano\tBerlin\t7\n", nullptr);
  EXPECT_THAT(RowTexts(list), ElementsAre("63/4/7 Berlin @Keyboard>A.Piano"));
}

TEST(SoundLists, ReadTheLayoutWithASubCategory) {
  const TListSpec spec = ListSpec(Layout::F6);
  const TSoundList list = ReadSoundList(spec, "Keyboard\tA.Piano\tGrand\t121\t2\t0\n", nullptr);
  EXPECT_THAT(RowTexts(list), ElementsAre("121/2/0 Grand @Keyboard>A.Piano"));
}

TEST(SoundLists, GiveCustomSoundsTheBankOfTheirList) {
  TListSpec spec = ListSpec(Layout::Custom);
  spec.CC00 = 63;
  const TSoundList list = ReadSoundList(spec, "Pack\tMy Voice\t8\t16\n\tOther\t8\t17\n", nullptr);
  EXPECT_THAT(RowTexts(list), ElementsAre("63/8/16 My Voice @Pack", "63/8/17 Other @Pack"));
}

TEST(SoundLists, ReadCustomKitsWithoutProgram) {
  const TListSpec spec = ListSpec(Layout::C3);
  const TSoundList list = ReadSoundList(spec, "My Kit\t62\t3\n", nullptr);
  EXPECT_THAT(RowTexts(list), ElementsAre("62/3/0 My Kit"));
  EXPECT_EQ(list.Rows[0].CatIndex, -1);
  EXPECT_THAT(list.Categories, IsEmpty());
}

TEST(SoundLists, ReadKitsWithTheirAddresses) {
  const TListSpec spec = ListSpec(Layout::K4);
  const TSoundList list = ReadSoundList(spec, "Standard Kit GM\t120\t0\t0\n", nullptr);
  EXPECT_THAT(RowTexts(list), ElementsAre("120/0/0 Standard Kit GM"));
}

TEST(SoundLists, CountProgramsFromOneIfTheListDoes) {
  TListSpec spec = ListSpec(Layout::F5);
  spec.OneBased = true;
  const TSoundList list =
      ReadSoundList(spec, "P\tA\t0\t0\t1\nP\tB\t0\t0\t128\nP\tC\t0\t0\t0\nP\tD\t0\t0\t129\n", nullptr);
  EXPECT_THAT(RowTexts(list), ElementsAre("0/0/0 A @P", "0/0/127 B @P"));
}

TEST(SoundLists, LeaveOutNumbersThatAreNone) {
  const TListSpec spec = ListSpec(Layout::F5);
  for (const char* const cell :
       {"128", "-1", "x", "", "1x", "0x10", "+1", "1.0", "1 2", "99999999999999999999", "\xC2\xB2"}) {
    for (int place = 2; place < 5; ++place) {
      std::string row = "P\tA";
      for (int i = 2; i < 5; ++i) row += std::string("\t") + (i == place ? cell : "1");
      row += "\tmore";  // a last cell that is empty would be no cell
      EXPECT_THAT(ReadSoundList(spec, row, nullptr).Rows, IsEmpty()) << row;
    }
  }
}

TEST(SoundLists, AcceptLeadingZerosAndBlanksInNumbers) {
  const TListSpec spec = ListSpec(Layout::F5);
  const TSoundList list = ReadSoundList(spec, "P\tA\t016\t 007\t000000000000005 \n", nullptr);
  EXPECT_THAT(RowTexts(list), ElementsAre("16/7/5 A @P"));
}

TEST(SoundLists, IgnoreCellsBehindTheLastOneOfTheLayout) {
  const TListSpec spec = ListSpec(Layout::F5);
  const std::string text = "P\tA\t1\t2\t3\t\t\nP\tB\t1\t2\t4\tnote" + std::string(50, '\t') + "\n";
  EXPECT_THAT(RowTexts(ReadSoundList(spec, text, nullptr)), ElementsAre("1/2/3 A @P", "1/2/4 B @P"));
}

TEST(SoundLists, EndRowsWithEveryKindOfLineEnd) {
  const TListSpec spec = ListSpec(Layout::F5);
  const TSoundList list =
      ReadSoundList(spec, "P\tA\t0\t0\t0\r\nP\tB\t0\t0\t1\rP\tC\t0\t0\t2\nP\tD\t0\t0\t3", nullptr);
  EXPECT_THAT(RowTexts(list), ElementsAre("0/0/0 A @P", "0/0/1 B @P", "0/0/2 C @P", "0/0/3 D @P"));
}

TEST(SoundLists, SkipEmptyRowsWhereverTheyStand) {
  const TListSpec spec = ListSpec(Layout::F5);
  const TSoundList list =
      ReadSoundList(spec, "\n\r\n\nP\tA\t0\t0\t0\n\n\t\t\t\t\n\tB\t0\t0\t1\n\n", nullptr);
  EXPECT_THAT(RowTexts(list), ElementsAre("0/0/0 A @P", "0/0/1 B @P"));
}

TEST(SoundLists, KeepQuotesAndBlanksVerbatim) {
  const TListSpec spec = ListSpec(Layout::F5);
  const TSoundList list =
      ReadSoundList(spec, "Premium Pack 'Alpen'\t\"Steirische\" \t0\t0\t0\n", nullptr);
  EXPECT_THAT(RowTexts(list), ElementsAre("0/0/0 \"Steirische\"  @Premium Pack 'Alpen'"));
}

TEST(SoundLists, ReadAnEmptyText) {
  for (const Layout layout : {Layout::F5, Layout::P, Layout::DS, Layout::Names, Layout::X15}) {
    const TListSpec spec = ListSpec(layout);
    for (const char* const text : {"", "\n", "\r\n\r\n"}) {
      RecordedMessages messages;
      EXPECT_THAT(ReadSoundList(spec, text, &messages, true).Rows, IsEmpty());
      EXPECT_THAT(messages.Shown, IsEmpty());
    }
  }
}

TEST(SoundLists, PutTheSuffixInFrontOfABracket) {
  TListSpec spec = ListSpec(Layout::F5);
  spec.Suffix = " (Legacy)";
  const TSoundList list = ReadSoundList(
      spec, "P\tFoo\t0\t0\t0\nP\tFoo (S.Art!)\t0\t0\t1\nP\tA (b) (c)\t0\t0\t2\nP\tA(b)\t0\t0\t3\n",
      nullptr);
  EXPECT_THAT(RowTexts(list), ElementsAre("0/0/0 Foo (Legacy) @P", "0/0/1 Foo (Legacy) (S.Art!) @P",
                                          "0/0/2 A (Legacy) (b) (c) @P", "0/0/3 A(b) (Legacy) @P"));
}

TEST(SoundLists, PutAMarkerWordOfKitsBehindTheName) {
  TListSpec spec = ListSpec(Layout::DN);
  spec.Suffix = " Legacy";
  const TSoundList list = ReadSoundList(spec, "127-8-18 Rock Drum Kit (Revo!)\t27 High Q\n", nullptr);
  EXPECT_THAT(RowTexts(list), ElementsAre("127/8/17 Rock Drum Kit (Revo!) Legacy [27 High Q]"));
}

TEST(SoundLists, KeepTheirTextsWhenMoved) {
  TListSpec spec = ListSpec(Layout::F5);
  spec.Suffix = " (XG)";
  TSoundList list = ReadSoundList(spec, ThreeRows, nullptr);
  const char* const place = list.Rows[0].Name.data();
  TSoundList moved = std::move(list);
  TSoundList assigned;
  assigned = std::move(moved);
  EXPECT_EQ(assigned.Rows[0].Name, "Grand (XG)");
  EXPECT_EQ(assigned.Rows[0].Name.data(), place);
}

TEST(SoundLists, PointIntoTheTextTheyWereReadFrom) {
  const TListSpec spec = ListSpec(Layout::F5);
  const std::string text = ThreeRows;
  const TSoundList list = ReadSoundList(spec, text, nullptr);
  EXPECT_THAT(list.Texts, IsEmpty());
  EXPECT_EQ(list.Rows[0].Name.data(), text.data() + 6);
}

// Kits with note names

TEST(SoundLists, ReadKitsWithNoteNames) {
  TListSpec spec = ListSpec(Layout::DS);
  spec.CC00 = 120;
  spec.CC32 = 0;
  const TSoundList list =
      ReadSoundList(spec, "0 Standard\t27 High Q\t28 Slap\n16 Power Kit\n25\t35 Kick\n", nullptr);
  EXPECT_THAT(RowTexts(list), ElementsAre("120/0/0 Standard [27 High Q\t28 Slap]", "120/0/16 Power Kit",
                                          "120/0/25  [35 Kick]"));
}

TEST(SoundLists, CountProgramsOfKitsByTheirLayout) {
  TListSpec spec = ListSpec(Layout::DS);
  spec.OneBased = true;
  EXPECT_EQ(ReadSoundList(spec, "1 Standard", nullptr).Rows.at(0).Patch, 0);
  EXPECT_THAT(ReadSoundList(spec, "0 Standard", nullptr).Rows, IsEmpty());
  spec.Layout = Layout::DN;
  spec.OneBased = false;
  EXPECT_EQ(ReadSoundList(spec, "127-1 Standard", nullptr).Rows.at(0).Patch, 0);
  EXPECT_THAT(ReadSoundList(spec, "127-0 Standard", nullptr).Rows, IsEmpty());
}

TEST(SoundLists, ReadAddressesInFrontOfKitNames) {
  const TListSpec spec = ListSpec(Layout::DN);
  const TSoundList list = ReadSoundList(
      spec, "127-8-18 Rock Drum Kit (Revo!)\t+\t13 Hi-Hat Tip 00 RD\n126-111 Name-2 x\n", nullptr);
  EXPECT_THAT(RowTexts(list), ElementsAre("127/8/17 Rock Drum Kit (Revo!) [+\t13 Hi-Hat Tip 00 RD]",
                                          "126/0/110 Name-2 x"));
}

TEST(SoundLists, LeaveOutKitsWithoutAddress) {
  const TListSpec spec = ListSpec(Layout::DN);
  RecordedMessages messages;
  const TSoundList list = ReadSoundList(
      spec, "Kit\n127 Kit\n127- Kit\n-5 Kit\n1-2-3-4 Kit\n127--5 Kit\n128-1 Kit\n127-129 Kit\n*\n",
      &messages);
  EXPECT_THAT(list.Rows, IsEmpty());
  EXPECT_THAT(messages.Shown, SizeIs(9));
}

TEST(SoundLists, KeepTheCellsThatNameTheBaseKit) {
  const TListSpec spec = ListSpec(Layout::DS);
  const TSoundList list =
      ReadSoundList(spec, "1 A\t+\t35 K\n2 B\t++\t35 K\n3 C\t+++\n4 D\t\t35 K\t\n", nullptr);
  EXPECT_EQ(list.Rows[0].Drums, "+\t35 K");
  EXPECT_EQ(list.Rows[1].Drums, "++\t35 K");
  EXPECT_EQ(list.Rows[2].Drums, "+++");
  EXPECT_EQ(list.Rows[3].Drums, "\t35 K\t");
}

TEST(SoundLists, KeepTheMarkOfAnEditedKitInFrontOfItsName) {
  const TListSpec spec = ListSpec(Layout::DN);
  const TSoundList list = ReadSoundList(
      spec,
      "62-1 * Mine\t35 K\n* 62-2 Mine\t35 K\n*\t62-3 Mine\t35 K\n62-4 Mine\t*\t35 K\n*\t62-5 * Mine\n",
      nullptr);
  EXPECT_THAT(RowTexts(list),
              ElementsAre("62/0/0 * Mine [35 K]", "62/0/1 * Mine [35 K]", "62/0/2 * Mine [35 K]",
                          "62/0/3 Mine [*\t35 K]", "62/0/4 * Mine"));
}

// Layout P

TEST(ProgramLists, ReadVariationsByBankLSB) {
  TListSpec spec = ListSpec(Layout::P);
  spec.CC00 = 121;
  const std::string text =
      Programs({"Acoustic Grand Piano\t1 Wet Acoustic Grand \t2 Dry Acoustic Grand "},
               "Standard\t8 Room\t16 Power");
  const TSoundList list = ReadSoundList(spec, text, nullptr);
  ASSERT_THAT(list.Rows, SizeIs(130));
  EXPECT_EQ(RowText(list, list.Rows[0]), "121/0/0 Acoustic Grand Piano");
  EXPECT_EQ(RowText(list, list.Rows[1]), "121/1/0 Wet Acoustic Grand ");
  EXPECT_EQ(RowText(list, list.Rows[2]), "121/2/0 Dry Acoustic Grand ");
  EXPECT_EQ(RowText(list, list.Rows[3]), "121/0/1 Tone 1");
  EXPECT_EQ(RowText(list, list.Rows[129]), "121/0/127 Tone 127");
}

TEST(ProgramLists, ReadVariationsOfAMapByBankMSB) {
  TListSpec spec = ListSpec(Layout::P);
  spec.CC00 = 0;
  spec.CC32 = 3;
  spec.NumberIsCC00 = true;
  const std::string text = Programs({"Piano 1\t8 Piano 1w\t16 Piano 1d"}, "STANDARD\t8 ROOM");
  const TSoundList list = ReadSoundList(spec, text, nullptr);
  EXPECT_EQ(RowText(list, list.Rows[0]), "0/3/0 Piano 1");
  EXPECT_EQ(RowText(list, list.Rows[1]), "8/3/0 Piano 1w");
  EXPECT_EQ(RowText(list, list.Rows[2]), "16/3/0 Piano 1d");
  EXPECT_THAT(KitTexts(list), ElementsAre("0/3/0 STANDARD", "0/3/8 ROOM"));
}

TEST(ProgramLists, PutTheLastRowIntoTheKits) {
  struct {
    int CC00;
    int CC32;
    const char* Standard;
    const char* Power;
  } const rows[] = {{121, -1, "120/0/0 Standard", "120/0/16 Power"},
                    {121, 0, "120/0/0 Standard", "120/0/16 Power"},
                    {0, -1, "127/0/0 Standard", "127/0/16 Power"},
                    {0, 0, "0/0/0 Standard", "0/0/16 Power"}};
  for (const auto& row : rows) {
    TListSpec spec = ListSpec(Layout::P);
    spec.CC00 = static_cast<std::int8_t>(row.CC00);
    spec.CC32 = static_cast<std::int8_t>(row.CC32);
    const std::string text = Programs({}, "Standard\t16 Power");
    const TSoundList list = ReadSoundList(spec, text, nullptr);
    EXPECT_THAT(list.Rows, SizeIs(128));
    EXPECT_THAT(KitTexts(list), ElementsAre(row.Standard, row.Power));
  }
}

TEST(ProgramLists, AreReadOnlyWithExactly129Rows) {
  const TListSpec spec = ListSpec(Layout::P);
  const std::string text = Programs({}, "Standard");
  EXPECT_THAT(ReadSoundList(spec, text + "One more\n", nullptr).Rows, IsEmpty());
  EXPECT_THAT(ReadSoundList(spec, text.substr(text.find('\n') + 1), nullptr).Rows, IsEmpty());
  EXPECT_THAT(ReadSoundList(spec, "\n\n" + text, nullptr).Rows, SizeIs(128));
  EXPECT_THAT(ReadSoundList(spec, text.substr(0, text.size() - 1), nullptr).Rows, SizeIs(128));
}

TEST(ProgramLists, LeaveOutCellsWithoutNumberOrText) {
  TListSpec spec = ListSpec(Layout::P);
  spec.CC00 = 121;
  const std::string text = Programs({"\t1 A\t\tB\t128 C\t3 D\t", ""}, "\t8 Room\tx\t129 y\t");
  RecordedMessages messages;
  const TSoundList list = ReadSoundList(spec, text, &messages);
  EXPECT_EQ(RowText(list, list.Rows[0]), "121/1/0 A");
  EXPECT_EQ(RowText(list, list.Rows[1]), "121/3/0 D");
  EXPECT_EQ(RowText(list, list.Rows[2]), "121/0/2 Tone 2");
  EXPECT_THAT(KitTexts(list), ElementsAre("120/0/8 Room"));
  EXPECT_THAT(messages.Shown, SizeIs(4));
}

TEST(ProgramLists, KeepAFirstProgramWithoutTone) {
  TListSpec spec = ListSpec(Layout::P);
  const std::string text = Programs({""}, "Standard");
  EXPECT_THAT(ReadSoundList(spec, text, nullptr).Rows, SizeIs(127));
}

// Names and Motif rows

TEST(SoundLists, ReadNamesAsCategories) {
  const TListSpec spec = ListSpec(Layout::Names);
  const TSoundList list = ReadSoundList(spec, "\nPiano\nChromatic Percussion\r\n", nullptr);
  EXPECT_THAT(list.Categories, ElementsAre("Piano", "Chromatic Percussion"));
  EXPECT_THAT(list.Rows, IsEmpty());
}

TEST(MotifLists, ReadTheInsertEffects) {
  const TListSpec spec = ListSpec(Layout::M17);
  const TSoundList list = ReadSoundList(spec,
                                        "Piano\tAPno\tFull Concert Grand\t63\t0\t0\t47\tVCM EQ "
                                        "501\t0\tFlat\t1,2,3\t12\tHall\t3\tBig\t4,5\t1\n",
                                        nullptr);
  EXPECT_THAT(RowTexts(list), ElementsAre("63/0/0 Full Concert Grand @Piano>APno"));
  ASSERT_THAT(list.Inserts, SizeIs(1));
  const TMotifInserts& inserts = list.Inserts[0];
  EXPECT_EQ(inserts.InsertA_FxIndex, 47);
  EXPECT_EQ(inserts.InsertA_FxName, "VCM EQ 501");
  EXPECT_EQ(inserts.InsertA_FxPreset, 0);
  EXPECT_EQ(inserts.InsertA_PresetName, "Flat");
  EXPECT_EQ(inserts.InsertA_DefaultValues, "1,2,3");
  EXPECT_EQ(inserts.InsertB_FxIndex, 12);
  EXPECT_EQ(inserts.InsertB_FxName, "Hall");
  EXPECT_EQ(inserts.InsertB_FxPreset, 3);
  EXPECT_EQ(inserts.InsertB_PresetName, "Big");
  EXPECT_EQ(inserts.InsertB_DefaultValues, "4,5");
  EXPECT_EQ(inserts.InsertConnect, 1);
}

TEST(MotifLists, TakeMissingInsertEffectsAsNone) {
  const TListSpec spec = ListSpec(Layout::M17);
  const TSoundList list =
      ReadSoundList(spec, "Ap\t\tFull Grand\t63\t0\t0\nAp\t\tB\t63\t0\t1\t47\tEQ\n", nullptr);
  ASSERT_THAT(list.Inserts, SizeIs(2));
  EXPECT_EQ(list.Inserts[0], TMotifInserts());
  EXPECT_EQ(list.Inserts[1].InsertA_FxIndex, 47);
  EXPECT_EQ(list.Inserts[1].InsertB_FxIndex, -1);
}

TEST(MotifLists, ReportAnEffectThatIsNoNumber) {
  const TListSpec spec = ListSpec(Layout::M17);
  RecordedMessages messages;
  const TSoundList list =
      ReadSoundList(spec, "Ap\t\tA\t63\t0\t0\tx\nAp\t\tB\t63\t0\t1\t-1\n", &messages);
  EXPECT_THAT(RowTexts(list), ElementsAre("63/0/1 B @Ap"));
  EXPECT_THAT(list.Inserts, SizeIs(1));
  EXPECT_THAT(messages.Shown,
              ElementsAre("Fehler in Zeile 1 beim Import der Sounds für Test\rAp\t\tA\t63\t0\t0\tx"));
}

// Sorting

TEST(SortedLists, KeepEachRowInItsCategory) {
  const TListSpec spec = ListSpec(Layout::F5);
  const TSoundList list = ReadSoundList(spec,
                                        "Strings\tViola\t0\t0\t0\n\tcello\t0\t0\t1\nPiano\tGrand\t0\t0"
                                        "\t2\nStrings\tBass\t0\t0\t3\n\tÄther\t0\t0\t4\n",
                                        nullptr, true);
  EXPECT_THAT(RowTexts(list),
              ElementsAre("0/0/2 Grand @Piano", "0/0/3 Bass @Strings", "0/0/1 cello @Strings",
                          "0/0/0 Viola @Strings", "0/0/4 Äther @Strings"));
  EXPECT_THAT(list.Categories, ElementsAre("Piano", "Strings"));
}

TEST(SortedLists, HoldEachCategoryOnceWhateverItsCase) {
  const TListSpec spec = ListSpec(Layout::F5);
  const TSoundList list = ReadSoundList(spec,
                                        "piano\tA\t0\t0\t0\nPiano\tB\t0\t0\t1\npiano\tC\t0\t0\t2\nÖ\tx"
                                        "\t0\t0\t3\nö\ty\t0\t0\t4\nÖ\tz\t0\t0\t5\n",
                                        nullptr, true);
  EXPECT_THAT(list.Categories, ElementsAre("Piano", "piano", "Ö", "ö"));
}

TEST(SortedLists, TakeNoSignForALetter) {
  const TListSpec spec = ListSpec(Layout::F5);
  const TSoundList list = ReadSoundList(
      spec, "P\t÷a\t0\t0\t0\n\t×b\t0\t0\t1\n\tØb\t0\t0\t2\n\tøa\t0\t0\t3\n", nullptr, true);
  EXPECT_THAT(RowTexts(list), ElementsAre("0/0/1 ×b @P", "0/0/0 ÷a @P", "0/0/3 øa @P", "0/0/2 Øb @P"));
}

TEST(SortedLists, SortEveryFlatLayoutAndNoOther) {
  const struct {
    Sonarello::Layout Layout;
    const char* Text;
    const char* First;
  } rows[] = {{Layout::F4, "P\tB\t0\t1\nP\tA\t0\t2", "A"},
              {Layout::F6, "P\ts\tB\t0\t0\t1\nP\ts\tA\t0\t0\t2", "A"},
              {Layout::Kronos, "P\ts\tB\t1\nP\ts\tA\t2", "A"},
              {Layout::Custom, "P\tB\t0\t1\nP\tA\t0\t2", "A"},
              {Layout::M17, "P\ts\tB\t0\t0\t1\nP\ts\tA\t0\t0\t2", "A"},
              {Layout::K4, "B\t0\t0\t1\nA\t0\t0\t2", "B"},
              {Layout::C3, "B\t0\t0\nA\t0\t0", "B"},
              {Layout::DS, "9 B\n1 A", "B"}};
  for (const auto& row : rows) {
    const TListSpec spec = ListSpec(row.Layout);
    const TSoundList list = ReadSoundList(spec, row.Text, nullptr, true);
    ASSERT_THAT(list.Rows, SizeIs(2)) << row.Text;
    EXPECT_EQ(list.Rows[0].Name, row.First) << row.Text;
  }
}

TEST(SortedLists, KeepInsertEffectsWithTheirSound) {
  const TListSpec spec = ListSpec(Layout::M17);
  const TSoundList list =
      ReadSoundList(spec, "P\ts\tB\t0\t0\t1\t5\nP\ts\tA\t0\t0\t2\t6\n", nullptr, true);
  EXPECT_EQ(list.Rows[0].Name, "A");
  EXPECT_EQ(list.Inserts[0].InsertA_FxIndex, 6);
  EXPECT_EQ(list.Inserts[1].InsertA_FxIndex, 5);
}

TEST(SortedLists, TellOfTheLinesOfTheFile) {
  TListSpec spec = ListSpec(Layout::Custom);
  RecordedMessages messages;
  const TSoundList list = ReadSoundList(spec, "Z\tZ\t0\t1\nA\tA\tx\t2\nB\tB\t0\t3\n", &messages, true);
  EXPECT_THAT(RowTexts(list), ElementsAre("-1/0/3 B @B", "-1/0/1 Z @Z"));
  EXPECT_THAT(messages.Shown, ElementsAre(StartsWith("Fehler in Zeile 2 ")));
}

// Faults

TEST(FaultyLists, SayNothingOfRowsThatShip) {
  const TListSpec spec = ListSpec(Layout::F5);
  const TSoundList list = ReadSoundList(spec, "P\tA\t0\nP\tB\tx\t0\t0\nP\tC\t0\t0\t0\n", nullptr);
  EXPECT_THAT(RowTexts(list), ElementsAre("0/0/0 C @P"));
}

TEST(FaultyLists, EndAPanelListAtARowWithTooFewCells) {
  const TListSpec spec = ListSpec(Layout::F5, "Panel Sounds für Genos");
  RecordedMessages messages;
  const TSoundList list =
      ReadSoundList(spec, "P\tA\t0\t0\t0\nP\tB\t0\t1\nP\tC\t0\t0\t2\nP\tD\n", &messages);
  EXPECT_THAT(RowTexts(list), ElementsAre("0/0/0 A @P"));
  EXPECT_THAT(messages.Shown,
              ElementsAre("Fehler in Zeile 2 beim Import der Panel Sounds für Genos\rP\tB\t0\t1"));
}

TEST(FaultyLists, GoOnBehindARowOfAPanelListWithANumberThatIsNone) {
  const TListSpec spec = ListSpec(Layout::F5, "Panel Sounds für Genos");
  RecordedMessages messages;
  const TSoundList list =
      ReadSoundList(spec, "P\tA\t0\t0\t0\nQ\tB\t0\t1\t128\n\tC\t0\t0\t2\n", &messages);
  EXPECT_THAT(RowTexts(list), ElementsAre("0/0/0 A @P", "0/0/2 C @Q"));
  EXPECT_THAT(messages.Shown,
              ElementsAre("Fehler in Zeile 2 beim Import der Panel Sounds für Genos\rQ\tB\t0\t1\t128"));
}

TEST(FaultyLists, GoOnBehindACustomRowWithTooFewCells) {
  TListSpec spec = ListSpec(Layout::Custom, "Custom Sounds für Genos");
  spec.CC00 = 63;
  RecordedMessages messages;
  const TSoundList list = ReadSoundList(spec, "P\tA\t0\t0\nQ\tB\t0\t\n\tC\t0\t2\n", &messages);
  EXPECT_THAT(RowTexts(list), ElementsAre("63/0/0 A @P", "63/0/2 C @P"));
  EXPECT_THAT(messages.Shown, ElementsAre("Weniger als 4 Felder in Zeile 2 von 3 beim Import der "
                                          "Custom Sounds für Genos\r\"Q\tB\t0\t\""));
}

TEST(FaultyLists, GoOnBehindACustomKitWithTooFewCells) {
  const TListSpec spec = ListSpec(Layout::C3, "Custom Drums für Genos");
  RecordedMessages messages;
  const TSoundList list = ReadSoundList(spec, "A\t62\nB\t62\t1\nC\t62\tx\n", &messages);
  EXPECT_THAT(RowTexts(list), ElementsAre("62/1/0 B"));
  EXPECT_THAT(
      messages.Shown,
      ElementsAre(
          "Weniger als 3 Felder in Zeile 1 von 3 beim Import der Custom Drums für Genos\r\"A\t62\"",
          "Fehler in Zeile 3 beim Import der Custom Drums für Genos\rC\t62\tx"));
}

TEST(FaultyLists, GoOnBehindFaultyRowsOfOtherLayouts) {
  const struct {
    Sonarello::Layout Layout;
    const char* Text;
    const char* Message;
  } rows[] = {{Layout::F4, "P\tA\t0\nP\tB\t0\t1", "Weniger als 4 Felder in Zeile 1 von 2 "},
              {Layout::Kronos, "P\ts\tA\nP\ts\tB\t1", "Weniger als 4 Felder in Zeile 1 von 2 "},
              {Layout::K4, "A\t0\t0\nB\t0\t0\t1", "Weniger als 4 Felder in Zeile 1 von 2 "},
              {Layout::F6, "P\ts\tA\t0\t0\nP\ts\tB\t0\t0\t1", "Fehler in Zeile 1 beim Import der "},
              {Layout::M17, "P\ts\tA\t0\t0\nP\ts\tB\t0\t0\t1", "Fehler in Zeile 1 beim Import der "},
              {Layout::DS, "A\n1 B", "Fehler in Zeile 1 beim Import der "},
              {Layout::DN, "1 A\n127-2 B", "Fehler in Zeile 1 beim Import der "}};
  for (const auto& row : rows) {
    const TListSpec spec = ListSpec(row.Layout);
    RecordedMessages messages;
    const TSoundList list = ReadSoundList(spec, row.Text, &messages);
    EXPECT_THAT(messages.Shown, ElementsAre(StartsWith(row.Message))) << row.Text;
    ASSERT_THAT(list.Rows, SizeIs(1)) << row.Text;
    EXPECT_EQ(list.Rows[0].Name, "B");
  }
}

TEST(FaultyLists, TellTheLineOfTheFileBehindEmptyRows) {
  const TListSpec spec = ListSpec(Layout::Custom);
  RecordedMessages messages;
  (void)ReadSoundList(spec, "\n\r\n\nP\tA\n\nP\tB\tx\t0\n", &messages);
  EXPECT_THAT(messages.Shown, ElementsAre(StartsWith("Weniger als 4 Felder in Zeile 4 von 6 "),
                                          StartsWith("Fehler in Zeile 6 ")));
}

TEST(FaultyLists, SpeakGermanInBothLanguages) {
  const TListSpec spec = ListSpec(Layout::Custom);
  RecordedMessages english;
  (void)ReadSoundList(spec, "x\nP\tA\tx\t0", &english);
  const InGerman german;
  RecordedMessages inGerman;
  (void)ReadSoundList(spec, "x\nP\tA\tx\t0", &inGerman);
  EXPECT_EQ(english.Shown, inGerman.Shown);
  EXPECT_THAT(english.Shown, SizeIs(2));
}

TEST(FaultyLists, CountTheMessagesBehindTheFirst25) {
  const TListSpec spec = ListSpec(Layout::Custom);
  std::string text;
  for (int i = 0; i < 25; ++i) text += "x\n";
  RecordedMessages few;
  (void)ReadSoundList(spec, text, &few);
  EXPECT_THAT(few.Shown, AllOf(SizeIs(25), Each(HasSubstr("Weniger als"))));
  RecordedMessages oneMore;
  (void)ReadSoundList(spec, text + "x\n", &oneMore);
  ASSERT_THAT(oneMore.Shown, SizeIs(26));
  EXPECT_EQ(oneMore.Shown.back(), "Further rows with errors: 1 (Sounds für Test)");
  for (int i = 0; i < 975; ++i) text += "x\n";
  RecordedMessages many;
  (void)ReadSoundList(spec, text, &many);
  ASSERT_THAT(many.Shown, SizeIs(26));
  EXPECT_EQ(many.Shown.back(), "Further rows with errors: 975 (Sounds für Test)");
  const InGerman german;
  RecordedMessages inGerman;
  (void)ReadSoundList(spec, text, &inGerman);
  EXPECT_EQ(inGerman.Shown.back(), "Weitere Zeilen mit Fehlern: 975 (Sounds für Test)");
}

TEST(FaultyLists, ShowNoEndlessRow) {
  const TListSpec spec = ListSpec(Layout::Custom);
  std::string row(999, 'x');
  for (int i = 0; i < 1000; ++i) row += "ä";
  RecordedMessages messages;
  (void)ReadSoundList(spec, row, &messages);
  ASSERT_THAT(messages.Shown, SizeIs(1));
  EXPECT_TRUE(messages.Shown[0].ends_with(std::string(999, 'x') + "…\""));
}

TEST(FaultyLists, NeverCrashOnRandomBytes) {
  std::mt19937 random(20240607);
  const Layout layouts[] = {Layout::F5,  Layout::F4,  Layout::Kronos, Layout::F6, Layout::Custom,
                            Layout::P,   Layout::C3,  Layout::K4,     Layout::DS, Layout::DN,
                            Layout::X15, Layout::M17, Layout::Names};
  const std::string_view alphabet = "0123456789\t\t\t\t\n\r -+*;( \xC3\xA4\0\xFFPx";
  for (int round = 0; round < 2000; ++round) {
    TListSpec spec = ListSpec(layouts[random() % std::size(layouts)]);
    spec.OneBased = random() % 2 == 0;
    spec.Suffix = random() % 2 == 0 ? " (GM2)" : "";
    std::string bytes(random() % 400, ' ');
    for (char& c : bytes)
      c = round % 4 == 0 ? static_cast<char>(random()) : alphabet[random() % alphabet.size()];
    const std::string text = DecodeListFile(bytes);
    RecordedMessages messages;
    TSoundList list = ReadSoundList(spec, text, &messages, random() % 2 == 0);
    ReadCompanion(list, spec, text, 358, &messages);
    for (const TPatch& row : list.Rows) {
      ASSERT_LE(row.CatIndex, static_cast<int>(list.Categories.size()) - 1);
      ASSERT_GE(row.Patch, 0);
    }
    const std::string written = SoundListText(list);
    EXPECT_EQ(RowTexts(ReadSoundList(spec, written, nullptr)), RowTexts(list)) << written;
  }
}

}  // namespace
}  // namespace Sonarello
