// Sonarello: the user's settings of the desk, its windows and its outputs.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "core/Options.h"
#include "core/Settings.h"

namespace Sonarello {

/// Everything that is stored and that the song core does not read (its settings are `Options`). Each
/// field bears the name of its key; keys that begin with "x64_" go without that prefix.
struct DeskSettings {
  // The program
  bool AutoBackupEnabled = true;  ///< a changed song is saved into "AutoBackups" every ten minutes
  bool ConfirmTerminate = true;   ///< the end of the program asks first
  std::string Lang;               ///< language code, such as "de"; empty: the system's
  std::int32_t SkinIndex = 0;     ///< 0 dark, 1 light
  std::int32_t ScaleIndex = 0;    ///< window scale: place in `ScalePercents`
  bool DisplayActive = true;      ///< level meters run
  bool AutoShowEventEditor = false;
  bool RevoicerExtended = false;
  std::string SourcePath;  ///< folder of the song opened last, UTF-8
  std::string DestPath;    ///< folder of the song saved last, UTF-8

  // Playing
  bool GrabMidiDriver = true;  ///< outputs are opened for what sounds while the song stands
  bool IntelligentTranspose = true;
  std::int32_t IntelligentTransposeMode = 1;  ///< 1-4
  std::int32_t VirtualSynthDelay = 0;         ///< ms
  std::string MidiOutputDeviceID = "0";

  // Recording
  std::string MidiInputName;
  std::int32_t RecLatency = 0;   ///< ms taken from the time of a recorded event
  std::int32_t RecMidiMode = 0;  ///< 0 replace, 1 merge
  bool RecMidiThru = true;
  bool RecSendLocalOff = false;
  std::int32_t RecQuantize = 0;  ///< notes per quarter note of the grid; 0: none

  // Lyrics and chords
  bool ShowLyrics = true;
  bool LyricsExtraWindow = false;
  bool ShowXFChords = true;      ///< chords of the file come before those recognised from the notes
  bool UseGermanChords = false;  ///< B is called H, Bb is called B
  bool LyricsInsertSpaceAtEOL = false;
  bool LyricsSpotLine = true;
  bool LyricsFormMaximized = false;
  std::string LyricsFontName;         ///< empty: the program's own
  std::int32_t LyricsFontSize = 32;   ///< px
  std::int32_t LyricsFontColor = -1;  ///< 0xRRGGBB; -1: the theme's

  // Effects
  bool YamahaAutoChorus = false;
  bool YamahaAutoReverb = false;
  bool YamahaAutoMasterEQ = false;
  bool YamahaAutoRemoveMicVolume = false;
  bool YamahaAutoVocalHarmony = false;
  std::int32_t YamahaAutoVocalHarmonyIdx = 0;
  bool YamahaDSPShowAllParams = false;
  std::int32_t YamahaDSPsMaxMeasure = 4;  ///< measures from the start in which effect sysexes count
  bool YamahaMasterEQ = true;
  bool YamahaVocalHarmony = true;
  bool MotifAutoChorus = false;
  bool MotifAutoReverb = false;
  bool MotifAutoMasterEQ = false;
  bool MotifAutoMasterFX = false;
  bool MotifAutoPartEQ = false;
  bool MotifMasterEQFX = true;
  std::int32_t MotifXFInsertsDelay = 0;
  std::int32_t MotifXSInsertsDelay = 0;
  bool MotifAudioRouting = false;
  bool MotifAutoRouting = false;
  bool MotifAlwaysNewRouting = false;
  bool RolandIntegra7AudioRouting = false;
  bool RolandIntegra7AutoRouting = false;
  bool RolandIntegra7AlwaysNewRouting = false;
  std::int32_t RolandIntegra7ReverbLevel = 0;

  // Hosted sound
  bool VSTiEnabled = false;
  bool AutoSaveVSTiSet = false;
  bool IgnoreRolandSCVAChunk = false;
  bool VSTiShowEditorOnStart = false;
  std::string VSTiAudioDeviceName;
  std::string VSTiSourcePath;

  /// Texts that a chord line may bear instead of a chord, the user's list.
  std::vector<std::string> ChordTexts = {"Instrumental:", "Intro:", "Refrain:", "Solo:"};
};

/// Window scales in per cent, in the order of `ScaleIndex`.
inline constexpr std::int32_t ScalePercents[] = {100, 120, 130, 150, 160, 180};
[[nodiscard]] std::int32_t WindowScaleOf(const DeskSettings& settings);

/// Reads both. What is absent or out of its range takes its default; a number is brought into its
/// range. `options.DataPath` is no setting and stays.
void LoadSettings(const ISettings& settings, Options& options, DeskSettings& desk);
/// Writes both, but only values that differ from what is stored or, where nothing is, from the default.
void StoreSettings(ISettings& settings, const Options& options, const DeskSettings& desk);

/// The language that texts are shown in: `Lang`, or without it the system's code, such as "de_DE".
[[nodiscard]] bool IsGerman(const DeskSettings& desk, std::string_view systemLanguage);

}  // namespace Sonarello
