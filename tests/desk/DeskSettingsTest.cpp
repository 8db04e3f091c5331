#include "desk/DeskSettings.h"

#include <gtest/gtest.h>

#include "desk/MyRegistry.h"
#include "desk/SettingsKeys.h"

namespace Sonarello {

namespace {

using Strings = std::vector<std::string>;

/// A value of a key that differs from its default.
std::string OtherValue(const TSettingsKey& key) {
  if (key.Kind == TKeyKind::Text) return "other";
  if (key.Kind == TKeyKind::Flag) return DefaultText(key) == "0" ? "1" : "0";
  return std::to_string(DefaultText(key) == std::to_string(key.Max) ? key.Min : key.Max);
}

class Stored : public testing::Test {
 protected:
  MemoryRegistry store;
  Options options;
  DeskSettings desk;
};

TEST_F(Stored, WithoutAValueTheyTakeTheirDefaults) {
  options.AutoSysex = false;
  options.DataPath = "/data";
  desk.ConfirmTerminate = false;
  desk.ChordTexts.clear();
  LoadSettings(store, options, desk);
  EXPECT_TRUE(options.AutoSysex);
  EXPECT_EQ(options.DataPath, "/data");
  EXPECT_TRUE(desk.ConfirmTerminate);
  EXPECT_TRUE(desk.AutoBackupEnabled);
  EXPECT_EQ(desk.ChordTexts, (Strings{"Instrumental:", "Intro:", "Refrain:", "Solo:"}));
}

TEST_F(Stored, DefaultsAreNotWritten) {
  StoreSettings(store, options, desk);
  EXPECT_TRUE(store.Values("").empty());
}

TEST_F(Stored, EveryKeyWithAMemberComesBack) {
  int members = 0;
  for (const TSettingsKey& key : SettingsKeys()) {
    if (std::holds_alternative<std::monostate>(key.Member)) continue;
    ++members;
    EXPECT_TRUE(SetSetting(key, OtherValue(key), options, desk)) << key.Key;
  }
  StoreSettings(store, options, desk);
  EXPECT_EQ(store.Values("").size(), static_cast<std::size_t>(members));
  Options readOptions;
  DeskSettings readDesk;
  LoadSettings(store, readOptions, readDesk);
  for (const TSettingsKey& key : SettingsKeys()) {
    if (std::holds_alternative<std::monostate>(key.Member)) continue;
    EXPECT_EQ(store.ReadString("", key.Key, ""), OtherValue(key)) << key.Key;
    EXPECT_EQ(SettingText(key, readOptions, readDesk), OtherValue(key)) << key.Key;
  }
}

TEST_F(Stored, AValueThatGoesBackToItsDefaultIsWritten) {
  store.WriteString("", "ConfirmTerminate", "0");
  LoadSettings(store, options, desk);
  ASSERT_FALSE(desk.ConfirmTerminate);
  desk.ConfirmTerminate = true;
  StoreSettings(store, options, desk);
  EXPECT_EQ(store.ReadString("", "ConfirmTerminate", ""), "1");
}

TEST_F(Stored, KeysOfOthersStayAsTheyAre) {
  store.WriteString("", "KeyEditor_QNWidth", "123");
  store.WriteString("", "Unknown", "x");
  store.WriteString("", "MidiOutputPriority", "7");
  LoadSettings(store, options, desk);
  desk.RecLatency = 3;
  StoreSettings(store, options, desk);
  EXPECT_EQ(store.ReadString("", "KeyEditor_QNWidth", ""), "123");
  EXPECT_EQ(store.ReadString("", "Unknown", ""), "x");
  EXPECT_EQ(store.ReadString("", "MidiOutputPriority", ""), "7");
}

TEST_F(Stored, NumbersOutOfTheirRangeAreBroughtIntoIt) {
  store.WriteString("", "SkinIndex", "99");
  store.WriteString("", "ScaleIndex", "-3");
  store.WriteString("", "IntelligentTransposeMode", "0");
  store.WriteString("", "MinNoteLength", "1000000");
  store.WriteString("", "RecLatency", "99999999999999999999");
  store.WriteString("", "YamahaDSPsMaxMeasure", "many");
  LoadSettings(store, options, desk);
  EXPECT_EQ(desk.SkinIndex, 1);
  EXPECT_EQ(desk.ScaleIndex, 0);
  EXPECT_EQ(desk.IntelligentTransposeMode, 1);
  EXPECT_EQ(options.MinNoteLength, 960);
  EXPECT_EQ(desk.RecLatency, 0);
  EXPECT_EQ(desk.YamahaDSPsMaxMeasure, 4);
}

TEST_F(Stored, ATextThatIsNoValueChangesNothing) {
  const TSettingsKey& number = *FindSettingsKey("RecLatency");
  const TSettingsKey& flag = *FindSettingsKey("ShowLyrics");
  desk.RecLatency = 7;
  EXPECT_FALSE(SetSetting(number, "abc", options, desk));
  EXPECT_FALSE(SetSetting(number, "", options, desk));
  EXPECT_FALSE(SetSetting(flag, "maybe", options, desk));
  EXPECT_FALSE(SetSetting(*FindSettingsKey("LastMidifilesList"), "x", options, desk));
  EXPECT_EQ(desk.RecLatency, 7);
  EXPECT_TRUE(SetSetting(number, "5000", options, desk));
  EXPECT_EQ(desk.RecLatency, 1000);
  EXPECT_TRUE(SetSetting(flag, "false", options, desk));
  EXPECT_FALSE(desk.ShowLyrics);
}

TEST_F(Stored, ChordTextsAreCountedAndShrink) {
  desk.ChordTexts = {"Vers:", "Ende:", "Intro:"};
  StoreSettings(store, options, desk);
  EXPECT_EQ(store.ReadString("", "ChordTextCounter", ""), "3");
  EXPECT_EQ(store.ReadString("", "ChordText2", ""), "Ende:");
  desk.ChordTexts = {"Solo:"};
  StoreSettings(store, options, desk);
  EXPECT_FALSE(store.HasValue("", "ChordText2"));
  EXPECT_FALSE(store.HasValue("", "ChordText3"));
  LoadSettings(store, options, desk);
  EXPECT_EQ(desk.ChordTexts, Strings{"Solo:"});
  desk.ChordTexts.clear();
  StoreSettings(store, options, desk);
  LoadSettings(store, options, desk);
  EXPECT_TRUE(desk.ChordTexts.empty());
}

TEST_F(Stored, ACountOfChordTextsThatLiesCostsNoTime) {
  store.WriteString("", "ChordTextCounter", "2147483647");
  store.WriteString("", "ChordText5", "Vers:");
  LoadSettings(store, options, desk);
  EXPECT_EQ(desk.ChordTexts, Strings{"Vers:"});
  store.WriteString("", "ChordTextCounter", "-1");
  LoadSettings(store, options, desk);
  EXPECT_EQ(desk.ChordTexts.size(), 4U);
}

TEST(Language, IsTheChosenOneOrTheSystems) {
  DeskSettings desk;
  EXPECT_TRUE(IsGerman(desk, "de_DE"));
  EXPECT_TRUE(IsGerman(desk, "DE"));
  EXPECT_FALSE(IsGerman(desk, "en_US"));
  EXPECT_FALSE(IsGerman(desk, "d"));
  EXPECT_FALSE(IsGerman(desk, ""));
  desk.Lang = "de";
  EXPECT_TRUE(IsGerman(desk, "en_US"));
  desk.Lang = "en";
  EXPECT_FALSE(IsGerman(desk, "de_DE"));
}

TEST(WindowScale, FollowsItsIndex) {
  DeskSettings desk;
  EXPECT_EQ(WindowScaleOf(desk), 100);
  desk.ScaleIndex = 3;
  EXPECT_EQ(WindowScaleOf(desk), 150);
  desk.ScaleIndex = 77;
  EXPECT_EQ(WindowScaleOf(desk), 180);
  desk.ScaleIndex = -1;
  EXPECT_EQ(WindowScaleOf(desk), 100);
}

}  // namespace

}  // namespace Sonarello
