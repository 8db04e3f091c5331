#include "core/DeviceSysex.h"

#include <algorithm>
#include <array>

namespace Sonarello {

namespace {

using enum SysexRoutine;

constexpr Reason OwnReset = {"Reset des Instruments", "the instrument's reset"};
constexpr Reason OwnReverb = {"Hall-Einstellung des Instruments", "the instrument's reverb setting"};
constexpr Reason OwnInserts = {"Insert-Effekte des Instruments", "the instrument's insert effects"};

/// A message that an Insert routine guarantees.
struct DeviceSysexRow {
  SysexRoutine Routine;
  std::array<std::uint8_t, 13> Meta;  ///< bytes behind the 0xF0
  std::size_t Length;
  std::int32_t Position;         ///< ticks
  std::int32_t SpecialPosition;  ///< ticks with `SpecialD`
  bool FollowsDrums;             ///< with `SpecialD` it goes to the drum track
  bool IsReset;                  ///< what is set up stands relative to it
  const Reason& Why;
};
constexpr DeviceSysexRow DeviceSysexRows[] = {
    {InsertGMSysex, {0x7E, 0x7F, 0x09, 0x01, 0xF7}, 5, 2, 2, true, true, OwnReset},
    {InsertGM2Sysex, {0x7E, 0x7F, 0x09, 0x03, 0xF7}, 5, 2, 2, false, true, OwnReset},
    {InsertXGSysex, {0x43, 0x10, 0x4C, 0x00, 0x00, 0x7E, 0x00, 0xF7}, 8, 2, 2, false, true, OwnReset},
    {InsertGSSysex,
     {0x41, 0x10, 0x42, 0x12, 0x40, 0x00, 0x7F, 0x00, 0x41, 0xF7},
     10,
     2,
     62,
     true,
     true,
     OwnReset},
    {InsertGSReverbSysex,
     {0x41, 0x10, 0x42, 0x12, 0x40, 0x01, 0x34, 0x5D, 0x2E, 0xF7},
     10,
     100,
     100,
     true,
     false,
     OwnReverb},
    {InsertMBMusicSysex,
     {0x41, 0x00, 0x42, 0x12, 0x40, 0x00, 0x7F, 0x00, 0x41, 0xF7},
     10,
     2,
     2,
     false,
     true,
     OwnReset},
    {InsertMP11Sysex,
     {0x41, 0x00, 0x42, 0x12, 0x40, 0x00, 0x7F, 0x00, 0x41, 0xF7},
     10,
     2,
     2,
     false,
     true,
     OwnReset},
    {InsertKN6000Sysex,
     {0x50, 0x2C, 0x20, 0x7E, 0x1F, 0x00, 0x00, 0x7F, 0x00, 0xF7},
     10,
     2,
     2,
     false,
     true,
     OwnReset},
    {InsertKetronSysex, {0x26, 0x7B, 0x0E, 0x00, 0x01, 0xF7}, 6, 2, 2, false, true, OwnReset},
    {InsertKetronSD1000Sysex, {0x26, 0x7B, 0x0E, 0x00, 0x01, 0xF7}, 6, 2, 2, false, true, OwnReset},
    {InsertLimexSysex, {0x7E, 0x7F, 0x09, 0x01, 0xF7}, 5, 2, 2, false, true, OwnReset},
    {InsertSonicCellReverbLevelSysex,
     {0x41, 0x10, 0x00, 0x00, 0x25, 0x12, 0x10, 0x00, 0x06, 0x01, 0x7F, 0x7A, 0xF7},
     13,
     50,
     50,
     false,
     false,
     OwnReverb},
};

/// The insert switches of a Motif: address and the switches that a song without them gets.
struct MotifInsertsRow {
  SysexRoutine Routine;
  std::array<std::uint8_t, 12> Meta;
};
constexpr MotifInsertsRow MotifInsertsRows[] = {
    {InsertMotifESInsertsSysex,
     {0x43, 0x10, 0x7F, 0x00, 0x36, 0x00, 0x60, 0x00, 0x00, 0x01, 0x7F, 0xF7}},
    {InsertMotifXFInsertsSysex,
     {0x43, 0x10, 0x7F, 0x12, 0x36, 0x00, 0x4D, 0x00, 0x00, 0x01, 0x7F, 0xF7}},
    {InsertMotifXSInsertsSysex,
     {0x43, 0x10, 0x7F, 0x03, 0x36, 0x00, 0x4D, 0x00, 0x00, 0x01, 0x7F, 0xF7}},
};
constexpr std::size_t MotifPrefixLength = 7;
constexpr std::int32_t MotifInsertsPosition = 95;
/// The last byte of the switches; seven parts to a byte, the first parts in the last byte.
constexpr std::size_t MotifLastSwitches = 10;
constexpr std::size_t MotifPartsPerByte = 7;

/// The first of the file's sysexes that `matches`, in the setup or in the whole song.
template <class F>
TSourceSysex FirstSysex(SongSysexs& sysexs, bool inSetup, F&& matches) {
  TSourceSysex found;
  const auto look = [&](const TSourceSysex& sysex) {
    if (found.Event == nullptr && matches(*sysex.Event)) found = sysex;
  };
  if (inSetup)
    sysexs.ForEachInSetup(look);
  else
    sysexs.ForEach(look);
  return found;
}

}  // namespace

void InsertDeviceSysex(SongSysexs& sysexs, SysexRoutine routine) {
  const DeviceSysexRow& row = *std::ranges::find(DeviceSysexRows, routine, &DeviceSysexRow::Routine);
  const std::span<const std::uint8_t> bytes = std::span(row.Meta).first(row.Length);
  sysexs.ChooseSysexTrack(row.FollowsDrums);
  const TSourceSysex own = FirstSysex(sysexs, true, [&](const TypMidiEvent& e) {
    return e.DLength == static_cast<std::int32_t>(bytes.size()) && e.Meta.Equals(bytes);
  });
  std::int32_t position = sysexs.options.SpecialD ? row.SpecialPosition : row.Position;
  if (own.Event != nullptr) {
    sysexs.song.SysexTrack = own.Track;
    position = own.Event->Position;
  } else {
    position = sysexs.Insert(bytes, position, row.Why)->Position;
  }
  if (row.IsReset) sysexs.ResetPosition = position;
  if (routine == InsertGSSysex) sysexs.song.RolandGSResetPosition = position;
}

void InsertMotifInsertsSysex(SongSysexs& sysexs, SysexRoutine routine) {
  const MotifInsertsRow& row = *std::ranges::find(MotifInsertsRows, routine, &MotifInsertsRow::Routine);
  Song& song = sysexs.song;
  sysexs.ChooseSysexTrack(false);
  const TSourceSysex own = FirstSysex(sysexs, false, [&](const TypMidiEvent& e) {
    return e.DLength == static_cast<std::int32_t>(row.Meta.size()) &&
           e.Meta.StartsWith(std::span(row.Meta).first(MotifPrefixLength));
  });
  if (own.Event == nullptr) {
    song.MotifSysex = sysexs.Insert(row.Meta, MotifInsertsPosition, OwnInserts);
  } else {
    song.SysexTrack = own.Track;
    song.MotifSysex = own.Event;
    if (own.Event->Position != MotifInsertsPosition) sysexs.Move(own, MotifInsertsPosition, OwnInserts);
  }
  for (std::size_t part = 0; part < song.MotifInsertsArray.size(); ++part) {
    const std::uint8_t switches = song.MotifSysex->Meta[MotifLastSwitches - part / MotifPartsPerByte];
    song.MotifInsertsArray[part] = (switches >> part % MotifPartsPerByte & 1) != 0;
  }
}

}  // namespace Sonarello
