#include <gmock/gmock.h>

#include <string>

#include "helpers/SoundLists.h"
#include "helpers/Workbench.h"
#include "instruments/InstrumentFiles.h"
#include "instruments/SoundListReader.h"

namespace Sonarello {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

/// The text of a list that was read from a text.
std::string Written(const TListSpec& spec, std::string_view text, bool sort = false) {
  return SoundListText(ReadSoundList(spec, text, nullptr, sort));
}

TEST(ListTexts, HaveTheLayoutOfTheirList) {
  const struct {
    Sonarello::Layout Layout;
    const char* Text;
  } rows[] = {
      {Layout::F5, "Piano\tGrand\t104\t21\t0\n\tUpright\t104\t10\t1\nPad\tX\t0\t0\t127\n"},
      {Layout::F4, "Piano\tGrand Piano\t0\t1\n\tOther\t8\t2\n"},
      {Layout::Kronos, "Keyboard\tA.Piano\tBerlin\t7\n\t\tPlain\t8\n"},
      {Layout::F6, "Keyboard\tA.Piano\tGrand\t121\t2\t0\n"},
      {Layout::Custom, "Pack\tMy Voice\t8\t16\n\tOther\t8\t17\n"},
      {Layout::C3, "My Kit\t62\t3\n"},
      {Layout::K4, "Standard Kit GM\t120\t0\t0\n"},
      {Layout::DS, "0 Standard\t27 High Q\t28 Slap\n16 Power\n25 * Mine\t+\t35 Kick\n"},
      {Layout::DN, "127-8-18 Rock Kit (Revo!)\t+\t13 Tip\n126-111 Name\n62-1 * Mine\n"},
      {Layout::M17, "Ap\tX\tGrand\t63\t0\t0\n\t\tB\t63\t0\t1\t47\tEQ\t0\tFlat\t1,2\t\t\t\t\t\t1\n"},
      {Layout::Names, "Piano\nOrgan\n"},
  };
  for (const auto& row : rows) {
    const TListSpec spec = ListSpec(row.Layout);
    EXPECT_EQ(Written(spec, row.Text), row.Text);
  }
}

TEST(ListTexts, CountProgramsFromOneIfTheListDoes) {
  for (const Layout layout : {Layout::F5, Layout::K4, Layout::DS}) {
    TListSpec spec = ListSpec(layout);
    spec.OneBased = true;
    const std::string text = layout == Layout::F5   ? "P\tA\t0\t0\t1\n\tB\t0\t0\t128\n"
                             : layout == Layout::K4 ? "A\t0\t0\t1\nB\t0\t0\t128\n"
                                                    : "1 A\n128 B\n";
    EXPECT_EQ(Written(spec, text), text);
  }
}

TEST(ListTexts, HoldNoSuffix) {
  TListSpec spec = ListSpec(Layout::F5);
  spec.Suffix = " (XG)";
  const std::string text =
      "P\tFoo\t0\t0\t0\n\tFoo (S.Art!)\t0\t0\t1\n\tFoo (XG)\t0\t0\t2\n\t (x)\t0\t0\t3\n";
  EXPECT_EQ(Written(spec, text), text);
  EXPECT_EQ(Written(spec, Written(spec, text)), text);
}

TEST(ListTexts, HoldNoMarkerWord) {
  TListSpec spec = ListSpec(Layout::DN);
  spec.Suffix = " Legacy";
  const std::string text = "127-18 Rock (Revo!)\n127-19 Old Legacy\n127-20 * Mine\n";
  EXPECT_EQ(Written(spec, text), text);
}

TEST(ListTexts, HoldTheRowsOfAllPrograms) {
  TListSpec spec = ListSpec(Layout::P);
  spec.CC00 = 121;
  std::string text = "\nPiano (GM2)\t1 Wide \t2 Dark\n\t3 No capital\n";
  for (int program = 3; program < 128; ++program) text += "Tone " + std::to_string(program) + "\n";
  for (const char* const kits : {"Standard\t8 Room\n", "\t8 Room\n", "\n"})
    EXPECT_EQ(Written(spec, text + kits), text + kits);
  spec.NumberIsCC00 = true;
  spec.CC32 = 4;
  EXPECT_EQ(Written(spec, text + "A\t8 B\n"), text + "A\t8 B\n");
  EXPECT_EQ(Written(spec, ""), "");
}

TEST(ListTexts, OfASortedListReadTheSame) {
  const TListSpec spec = ListSpec(Layout::F5);
  EXPECT_EQ(Written(spec, "Z\tB\t0\t0\t0\n\tA\t0\t0\t1\nA\tX\t0\t0\t2\nZ\tC\t0\t0\t3\n", true),
            "A\tX\t0\t0\t2\nZ\tA\t0\t0\t1\n\tB\t0\t0\t0\n\tC\t0\t0\t3\n");
}

TEST(ListTexts, OfShippedListsReadTheSame) {
  int lists = 0;
  for (const TListSpec& spec : AllLists()) {
    if (spec.File.empty() || spec.Layout == Layout::X15) continue;
    for (const bool sort : {false, true}) {
      const TSoundList list = ReadSoundList(spec, InstrumentFile(spec.File), nullptr, sort);
      const std::string text = SoundListText(list);
      RecordedMessages messages;
      const TSoundList again = ReadSoundList(spec, text, &messages);
      ASSERT_EQ(RowTexts(again), RowTexts(list)) << int{spec.Value} << " " << spec.Name;
      EXPECT_EQ(KitTexts(again), KitTexts(list)) << int{spec.Value} << " " << spec.Name;
      EXPECT_EQ(again.Categories, list.Categories) << int{spec.Value} << " " << spec.Name;
      EXPECT_EQ(again.Inserts, list.Inserts) << int{spec.Value} << " " << spec.Name;
      EXPECT_EQ(SoundListText(again), text) << int{spec.Value} << " " << spec.Name;
      EXPECT_THAT(messages.Shown, IsEmpty()) << int{spec.Value} << " " << spec.Name;
    }
    ++lists;
  }
  EXPECT_GT(lists, 300);
}

TEST(ShippedLists, HaveNoFaultyRow) {
  for (const TListSpec& spec : AllLists()) {
    if (spec.File.empty() || spec.Layout == Layout::X15) continue;
    RecordedMessages messages;
    const TSoundList list = ReadSoundList(spec, InstrumentFile(spec.File), &messages);
    EXPECT_THAT(messages.Shown, IsEmpty()) << int{spec.Value} << " " << spec.Name;
    EXPECT_FALSE(list.Rows.empty() && list.Categories.empty()) << int{spec.Value} << " " << spec.Name;
  }
}

TEST(ShippedLists, PutTheKitsOfProgramListsOnTheBankOfTheirStandard) {
  const struct {
    int Value;
    std::string_view List;
    int CC00;
    int CC32;
  } rows[] = {{0, "SourceData", 0, 0},   {16, "SourceData", 120, 0}, {19, "SourceData", 127, 0},
              {5, "SourceData", 127, 0}, {6, "SourceData", 127, 0},  {18, "SourceData", 127, 0},
              {1, "SourceData3", 0, 3},  {4, "SourceData4", 0, 4}};
  for (const auto& row : rows) {
    int found = 0;
    for (const TListSpec& spec : ListsOf(row.Value)) {
      if (spec.Name != row.List) continue;
      ++found;
      const TSoundList list = ReadSoundList(spec, InstrumentFile(spec.File), nullptr);
      ASSERT_FALSE(list.Kits.empty()) << row.Value;
      for (const TPatch& kit : list.Kits) {
        EXPECT_EQ(kit.CC00, row.CC00) << row.Value;
        EXPECT_EQ(kit.CC32, row.CC32) << row.Value;
      }
    }
    EXPECT_EQ(found, 1) << row.Value << " " << row.List;
  }
}

}  // namespace
}  // namespace Sonarello
