// Sonarello: the user's options that the song and its instruments read, under their settings keys.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>

namespace Sonarello {

/// Defaults are what a musician wants out of the box.
struct Options {
  bool AutoSysex = true;             ///< sysex is fitted to the main instrument
  bool AutoProgChange = true;        ///< programs and banks are brought into the setup window, repaired
  bool GeneralMidiCheck = true;      ///< notes are checked on load
  bool UnmixFormat0 = true;          ///< a format 0 file is split by channel
  bool InsertSongName = false;       ///< a track name on track 0 is guaranteed
  bool SysexsOnExtraTrack = false;   ///< sysex goes to a track of its own
  std::int32_t PrevCommandMode = 1;  ///< 0: metas and sysex end running status; else it survives them
  std::int32_t MinNoteLength = 0;    ///< ticks
  bool RemoveCountIn = false;
  bool RemoveCountInRadical = false;  ///< the count-in's measures go as well
  bool QuickTakerPresent = false;
  bool WordBoxSearch = false;  ///< word-box files are recognised
  bool SpecialD = false;
  bool YamahaDSPsEnabled = true;
  bool MotifDSPsEnabled = true;
  bool KorgDSPsEnabled = true;
  bool MultiMidi = false;            ///< several routes
  bool DontSaveSMF33 = false;        ///< track heads (port metas) are not written
  bool SaveMidiRunningMode = false;  ///< channel events are written with running status
  bool RolandSCDefaultMap = false;
  std::int32_t RolandSCDefaultMapIdx = 0;
  bool LimexTE200 = false;  ///< the TE200 extension is built into a Limex HQ200 or HQ260
  std::int32_t YamahaDSPsFromPosition = 0;
  std::int32_t YamahaDSPsSysexDelta = 2;
  std::int32_t YamahaXGSxPosition = 2;
  std::int32_t MotifDSPsFromPosition = 0;
  std::int32_t MotifDSPsSysexDelta = 2;
  std::int32_t MotifGMSxPosition = 2;
  std::string
      DataPath;  ///< folder of the user's sound lists and of the diagnostic files, UTF-8; or empty
};

/// A setting: its key, its place in `Options`, its range, and what it does in both languages.
struct TOption {
  std::string_view Key;
  std::variant<bool Options::*, std::int32_t Options::*> Member;
  std::int32_t Min;  ///< of a number; a flag goes from 0 to 1
  std::int32_t Max;
  std::string_view German;
  std::string_view English;

  [[nodiscard]] bool IsFlag() const noexcept { return Member.index() == 0; }
};

/// Every setting that the song core reads, in alphabetical order of the keys.
[[nodiscard]] std::span<const TOption> OptionTable();
/// The setting with this key, or nil. As everywhere in the settings, case does not count.
[[nodiscard]] const TOption* FindOption(std::string_view key);
/// Value of a setting as text: a number, or 0 or 1 for a flag.
[[nodiscard]] std::string OptionText(const Options& options, const TOption& option);
/// Sets a setting from text: a number in its range; a flag also takes on/off, true/false, yes/no and
/// the German words. Nothing on success, else what is wrong, in the user's language; the options then
/// stay.
[[nodiscard]] std::optional<std::string> SetOption(Options& options, std::string_view key,
                                                   std::string_view text);

}  // namespace Sonarello
