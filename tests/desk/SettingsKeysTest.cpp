#include "desk/SettingsKeys.h"

#include <gtest/gtest.h>

#include <set>

#include "core/TextOrder.h"
#include "desk/MyRegistry.h"

namespace Sonarello {

namespace {

/// Every key that the settings know by name.
constexpr std::string_view AllNames[] = {
    "AlphaGMStructure", "AudioProductionMulti", "AutoBackupEnabled", "AutoProgChange",
    "AutoShowEventEditor", "AutoSysex", "ChordTextCounter", "ConfirmTerminate", "DestPath",
    "DisplayActive", "DisplayFontColor", "DisplayFontHeight", "DisplayFontName", "DisplayFontSize",
    "DisplayLevelBack", "DisplayLevelColor", "DisplaySpacing", "DisplayStripes", "DisplayTickHeight",
    "DontSaveSMF33", "Flag_SpecialA", "GeneralMidiCheck", "GrabMidiDriver", "InsertSongName",
    "IntelligentTranspose", "IntelligentTransposeMode", "KeyEditor_NoteLengthIdx", "KeyEditor_QNWidth",
    "KeyEditor_RasterIdx", "KeyEditor_WhiteNoteHeight", "KorgDSPsEnabled", "Korgi30GMStructure", "Lang",
    "LastMidifilesList", "LimexGMStructure", "LimexTE200", "LyricsExtraWindow", "LyricsFontColor",
    "LyricsFontName", "LyricsFontSize", "LyricsFormMaximized", "LyricsInsertSpaceAtEOL",
    "LyricsSpotLine", "MidiInputName", "MidiInstrument", "MidiInstrument00", "MidiOutput",
    "MidiOutput00", "MidiOutputDeviceID", "MidiOutputPriority", "MinNoteLength",
    "MotifAlwaysNewRouting", "MotifAudioRouting", "MotifAutoChorus", "MotifAutoMasterEQ",
    "MotifAutoMasterFX", "MotifAutoPartEQ", "MotifAutoReverb", "MotifAutoRouting", "MotifDSPsEnabled",
    "MotifDSPsFromPosition", "MotifDSPsSysexDelta", "MotifGMSxPosition", "MotifMasterEQFX",
    "MotifXFInsertsDelay", "MotifXSInsertsDelay", "MultiMidi", "PrevCommandMode", "RecLatency",
    "RecMidiMode", "RecMidiThru", "RecQuantize", "RemoveCountIn", "ResetBassDrumReverb",
    "RevoicerExtended", "RolandIntegra7AlwaysNewRouting", "RolandIntegra7AudioRouting",
    "RolandIntegra7AutoRouting", "RolandIntegra7ReverbLevel", "RolandSCDefaultMap",
    "RolandSCDefaultMapIdx", "SaveMidiRunningMode", "ShowLyrics", "ShowXFChords", "SkinIndex",
    "SmallerMainFormGaugeColor", "SourcePath", "SpecialD", "SysexsOnExtraTrack", "UseGermanChords",
    "VSTiEnabled", "VirtualSynthDelay", "WordBoxSearch", "YamahaAutoChorus", "YamahaAutoMasterEQ",
    "YamahaAutoRemoveMicVolume", "YamahaAutoReverb", "YamahaAutoVocalHarmony",
    "YamahaAutoVocalHarmonyIdx", "YamahaDSPShowAllParams", "YamahaDSPsEnabled",
    "YamahaDSPsFromPosition", "YamahaDSPsMaxMeasure", "YamahaDSPsSysexDelta", "YamahaMasterEQ",
    "YamahaVocalHarmony", "YamahaXGSxPosition", "x64_AutoSaveVSTiSet", "x64_IgnoreRolandSCVAChunk",
    "x64_VST1FileName", "x64_VST2FileName", "x64_VSTi1FileName", "x64_VSTi2FileName",
    "x64_VSTi3FileName", "x64_VSTi4FileName", "x64_VSTi5FileName", "x64_VSTiAudioDeviceName",
    "x64_VSTiEnabled", "x64_VSTiShowEditorOnStart", "x64_VSTiSourcePath",
    // Those of the program's own.
    "QuickTakerPresent", "RecSendLocalOff", "RemoveCountInRadical", "ScaleIndex", "UnmixFormat0"};

TEST(SettingsKeys, HoldEveryKeyOnceInAlphabeticalOrder) {
  std::set<std::string> names;
  std::string before;
  for (const TSettingsKey& key : SettingsKeys()) {
    EXPECT_LT(before, SmallLetters(key.Key));
    before = SmallLetters(key.Key);
    names.emplace(key.Key);
  }
  std::set<std::string> expected(std::begin(AllNames), std::end(AllNames));
  EXPECT_EQ(names, expected);
}

TEST(SettingsKeys, SayWhatEachMeansInBothLanguages) {
  for (const TSettingsKey& key : SettingsKeys()) {
    EXPECT_GT(key.German.size(), 10U) << key.Key;
    EXPECT_GT(key.English.size(), 10U) << key.Key;
    EXPECT_NE(key.German, key.English) << key.Key;
    EXPECT_FALSE(key.German.ends_with('.')) << key.Key;
  }
}

TEST(SettingsKeys, HaveDefaultsInTheirRanges) {
  for (const TSettingsKey& key : SettingsKeys()) {
    const std::string text = DefaultText(key);
    if (key.Kind == TKeyKind::Text) continue;
    ASSERT_FALSE(text.empty()) << key.Key;
    EXPECT_LT(key.Min, key.Max) << key.Key;
    EXPECT_GE(std::stoi(text), key.Min) << key.Key;
    EXPECT_LE(std::stoi(text), key.Max) << key.Key;
  }
}

TEST(SettingsKeys, AreFoundInAnyCase) {
  ASSERT_NE(FindSettingsKey("autobackupENABLED"), nullptr);
  EXPECT_EQ(FindSettingsKey("autobackupENABLED")->Key, "AutoBackupEnabled");
  EXPECT_EQ(DefaultText(*FindSettingsKey("AutoBackupEnabled")), "1");
  EXPECT_EQ(DefaultText(*FindSettingsKey("ConfirmTerminate")), "1");
  EXPECT_EQ(DefaultText(*FindSettingsKey("MidiOutputDeviceID")), "0");
  EXPECT_EQ(FindSettingsKey("Unknown"), nullptr);
  EXPECT_EQ(FindSettingsKey(""), nullptr);
}

TEST(SettingsKeys, KnowTheKindOfEveryKeyOfARow) {
  EXPECT_EQ(KindOfKey("", "Lang"), TKeyKind::Text);
  EXPECT_EQ(KindOfKey("", "MULTIMIDI"), TKeyKind::Flag);
  EXPECT_EQ(KindOfKey("", "RecLatency"), TKeyKind::Number);
  EXPECT_EQ(KindOfKey("", "MidiInstrument99"), TKeyKind::Text);
  EXPECT_EQ(KindOfKey("", "midioutput07"), TKeyKind::Text);
  EXPECT_EQ(KindOfKey("", "MidiOutput7"), std::nullopt);
  EXPECT_EQ(KindOfKey("", "MidiOutput100"), std::nullopt);
  EXPECT_EQ(KindOfKey("", "ChordText12"), TKeyKind::Text);
  EXPECT_EQ(KindOfKey("", "ChordTextX"), std::nullopt);
  EXPECT_EQ(KindOfKey("", "MainFormLeft"), TKeyKind::Number);
  EXPECT_EQ(KindOfKey("Yamaha Genos", "Dsp4FormTop"), TKeyKind::Number);
  EXPECT_EQ(KindOfKey("", "KeyEditorFormVis"), TKeyKind::Flag);
  EXPECT_EQ(KindOfKey("Yamaha Genos", "SortSounds"), TKeyKind::Flag);
  EXPECT_EQ(KindOfKey("Yamaha Genos", "Lang"), std::nullopt);
  EXPECT_EQ(KindOfKey("", "SortSounds"), std::nullopt);
}

}  // namespace

}  // namespace Sonarello
