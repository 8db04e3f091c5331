#include "core/Options.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <sstream>

#include "helpers/SongBuilder.h"

namespace Sonarello {
namespace {

TEST(Options, StandInTheOrderOfTheirKeys) {
  const auto table = OptionTable();
  EXPECT_TRUE(std::is_sorted(table.begin(), table.end(),
                             [](const TOption& a, const TOption& b) { return a.Key < b.Key; }));
  for (const TOption& option : table) {
    EXPECT_EQ(FindOption(option.Key), &option);
    EXPECT_FALSE(option.German.empty() || option.English.empty()) << option.Key;
  }
}

TEST(Options, ComeToTheirOwnMembers) {
  for (const TOption& option : OptionTable()) {
    Options options;
    const std::string changed = OptionText(options, option) == "1" ? "0" : "1";
    ASSERT_EQ(SetOption(options, option.Key, changed), std::nullopt) << option.Key;
    const Options defaults;
    for (const TOption& other : OptionTable())
      EXPECT_EQ(OptionText(options, other), &other == &option ? changed : OptionText(defaults, other))
          << option.Key << ", " << other.Key;
  }
}

TEST(Options, HaveDefaultsWithinTheirRanges) {
  for (const TOption& option : OptionTable()) {
    const int value = std::stoi(OptionText(Options{}, option));
    EXPECT_GE(value, option.Min) << option.Key;
    EXPECT_LE(value, option.Max) << option.Key;
  }
}

TEST(Options, OutOfTheBoxFitASong) {
  const Options options;
  EXPECT_TRUE(options.AutoSysex && options.AutoProgChange && options.GeneralMidiCheck &&
              options.UnmixFormat0);
  EXPECT_EQ(options.PrevCommandMode, 1);
  EXPECT_FALSE(options.RemoveCountIn || options.SysexsOnExtraTrack || options.InsertSongName);
  EXPECT_TRUE(options.DataPath.empty());
}

TEST(Options, TakeTheWordsOfBothLanguagesForFlags) {
  Options options;
  for (const char* yes : {"1", "on", "TRUE", "yes", "ja", "Ein"}) {
    options.SpecialD = false;
    EXPECT_EQ(SetOption(options, "SpecialD", yes), std::nullopt);
    EXPECT_TRUE(options.SpecialD) << yes;
  }
  for (const char* no : {"0", "Off", "false", "no", "nein", "aus"}) {
    options.SpecialD = true;
    EXPECT_EQ(SetOption(options, "SpecialD", no), std::nullopt);
    EXPECT_FALSE(options.SpecialD) << no;
  }
}

TEST(Options, AreFoundInAnyCase) {
  Options options;
  EXPECT_EQ(SetOption(options, "minnotelength", "24"), std::nullopt);
  EXPECT_EQ(options.MinNoteLength, 24);
}

TEST(Options, RefuseWhatIsNoValueAndStayAsTheyAre) {
  Options options;
  EXPECT_EQ(SetOption(options, "MinNoteLength", "ten"), "MinNoteLength: not a number");
  EXPECT_EQ(SetOption(options, "MinNoteLength", ""), "MinNoteLength: not a number");
  EXPECT_EQ(SetOption(options, "MinNoteLength", "10 "), "MinNoteLength: not a number");
  EXPECT_EQ(SetOption(options, "MinNoteLength", "-1"), "MinNoteLength: must be from 0 to 960");
  EXPECT_EQ(SetOption(options, "MinNoteLength", "99999999999999"),
            "MinNoteLength: must be from 0 to 960");
  EXPECT_EQ(SetOption(options, "minnotelength", "961"), "MinNoteLength: must be from 0 to 960");
  EXPECT_EQ(SetOption(options, "AutoSysex", "2"), "AutoSysex: must be 0 or 1");
  EXPECT_EQ(SetOption(options, "DataPath", "/tmp"), "DataPath: unknown setting");
  EXPECT_EQ(options.MinNoteLength, 0);
  EXPECT_TRUE(options.AutoSysex);
}

TEST(Options, RefuseInGermanAsWell) {
  const InGerman german;
  Options options;
  EXPECT_EQ(SetOption(options, "MinNoteLength", "zehn"), "MinNoteLength: keine Zahl");
  EXPECT_EQ(SetOption(options, "MinNoteLength", "961"), "MinNoteLength: muss von 0 bis 960 gehen");
  EXPECT_EQ(SetOption(options, "AutoSysex", "vielleicht"), "AutoSysex: muss 0 oder 1 sein");
  EXPECT_EQ(SetOption(options, "Unfug", "1"), "Unfug: unbekannte Einstellung");
}

std::string DocumentedRow(const TOption& option) {
  const std::string type =
      option.IsFlag() ? "flag"
                      : "number, " + std::to_string(option.Min) + " to " + std::to_string(option.Max);
  return "| `" + std::string(option.Key) + "` | " + type + " | " + OptionText(Options{}, option) +
         " | " + std::string(option.English) + " |\n";
}

TEST(Options, StandInTheManualRowByRow) {
  std::ifstream file(SONARELLO_SOURCE_DIR "/docs/settings.md");
  ASSERT_TRUE(file);
  std::stringstream text;
  text << file.rdbuf();
  std::string rows;
  for (const TOption& option : OptionTable()) rows += DocumentedRow(option);
  EXPECT_NE(text.str().find("\n" + rows + "\n"), std::string::npos)
      << "the table of docs/settings.md should read:\n"
      << rows;
}

}  // namespace
}  // namespace Sonarello
