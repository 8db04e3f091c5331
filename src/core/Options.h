// Sonarello: the user's options that the song core reads, under their settings keys.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace Sonarello {

/// Defaults are what a musician wants out of the box.
struct Options {
  bool AutoSysex = true;           ///< sysex is fitted to the main instrument
  bool AutoProgChange = true;      ///< programs and banks are brought into the setup window, repaired
  bool GeneralMidiCheck = true;    ///< notes are checked on load
  bool UnmixFormat0 = true;        ///< a format 0 file is split by channel
  bool InsertSongName = false;     ///< a track name on track 0 is guaranteed
  bool SysexsOnExtraTrack = false; ///< sysex goes to a track of its own
  std::int32_t PrevCommandMode = 1;  ///< 0: metas and sysex end running status; else it survives them
  std::int32_t MinNoteLength = 0;    ///< ticks
  bool RemoveCountIn = false;
  bool RemoveCountInRadical = false;  ///< the count-in's measures go as well
  bool QuickTakerPresent = false;
  bool WordBoxSearch = false;      ///< word-box files are recognised
  bool SpecialD = false;
  bool YamahaDSPsEnabled = true;
  bool MotifDSPsEnabled = true;
  bool KorgDSPsEnabled = true;
  bool MultiMidi = false;          ///< several routes
  bool DontSaveSMF33 = false;      ///< track heads (port metas) are not written
  bool SaveMidiRunningMode = false;  ///< channel events are written with running status
  bool RolandSCDefaultMap = false;
  std::int32_t RolandSCDefaultMapIdx = 0;
  std::int32_t YamahaDSPsFromPosition = 0;
  std::int32_t YamahaDSPsSysexDelta = 2;
  std::int32_t YamahaXGSxPosition = 2;
  std::int32_t MotifDSPsFromPosition = 0;
  std::int32_t MotifDSPsSysexDelta = 2;
  std::int32_t MotifGMSxPosition = 2;
  std::string DataPath;            ///< folder of the diagnostic files, UTF-8
};

}  // namespace Sonarello
