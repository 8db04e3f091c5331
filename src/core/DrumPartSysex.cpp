#include "core/DrumPartSysex.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace Sonarello {

namespace {

using enum SysexRoutine;

constexpr Reason OwnPlace = {"fester Platz der Schlagzeug-Parts", "fixed place of the drum parts"};
constexpr Reason Overtaken = {"von einem späteren Sysex desselben Parts überholt",
                              "overtaken by a later sysex of the same part"};

/// Distance from the reset to the first part's sysex and from part to part, ticks.
constexpr std::int32_t DrumPartDistance = 50;
constexpr std::int32_t DrumPartStep = 2;

/// How a part is numbered in the message.
enum class Numbering {
  Plain,  ///< parts 1 to 16 as 0 to 15
  GS,     ///< 0x10 part 10, 0x11 to 0x19 parts 1 to 9, 0x1A to 0x1F parts 11 to 16
};

/// The drum-part message of a dialect.
struct DrumPartRow {
  SysexRoutine Routine;
  std::array<std::uint8_t, 10> Default;  ///< bytes of the placeholder
  std::size_t Length;
  std::size_t PrefixLength;  ///< bytes of `Default` in front of the part
  std::size_t PartIndex;
  std::size_t ValueIndex;  ///< the drum map: 0 melodic
  Numbering Parts;
  Song::TPartEvents Song::*Table;
};
constexpr DrumPartRow DrumPartRows[] = {
    {InsertGSSysex,
     {0x41, 0x10, 0x42, 0x12, 0x40, 0x10, 0x15, 0x00, 0x00, 0xF7},
     10,
     5,
     5,
     7,
     Numbering::GS,
     &Song::RolandDrumSysexArray},
    {InsertMBMusicSysex,
     {0x41, 0x00, 0x42, 0x12, 0x40, 0x10, 0x15, 0x00, 0x00, 0xF7},
     10,
     5,
     5,
     7,
     Numbering::GS,
     &Song::MBMusicDrumSysexArray},
    {InsertMP11Sysex,
     {0x41, 0x00, 0x42, 0x12, 0x40, 0x10, 0x15, 0x00, 0x00, 0xF7},
     10,
     5,
     5,
     7,
     Numbering::GS,
     &Song::MP11DrumsSysexArray},
    // Limex writes the GS message without its checksum.
    {InsertLimexSysex,
     {0x41, 0x00, 0x42, 0x12, 0x40, 0x11, 0x15, 0x00, 0xF7},
     9,
     5,
     5,
     7,
     Numbering::GS,
     &Song::LimexDrumsSysexArray},
    {InsertKetronSD1000Sysex,
     {0x26, 0x7B, 0x0F, 0x00, 0x00, 0x00, 0xF7},
     7,
     4,
     4,
     5,
     Numbering::Plain,
     &Song::KetronDrumsSysexArray},
};

constexpr std::uint8_t GSPartBlock = 0x10;
constexpr std::uint8_t UseForRhythmPart = 0x15;

/// The part (0-15) of a drum-part sysex of the dialect, or -1 for another message.
int PartOf(const DrumPartRow& row, const TypMidiEvent& event) {
  const Meta& bytes = event.Meta;
  if (event.DLength != static_cast<std::int32_t>(row.Length) ||
      !bytes.StartsWith(std::span(row.Default).first(row.PrefixLength)))
    return -1;
  const std::uint8_t number = bytes[row.PartIndex];
  if (row.Parts == Numbering::Plain) return number < ChannelCount ? number : -1;
  if ((number & 0xF0) != GSPartBlock || bytes[row.PartIndex + 1] != UseForRhythmPart) return -1;
  const int block = number & 0x0F;
  if (block == 0) return 9;
  return block <= 9 ? block - 1 : block;
}

}  // namespace

void InsertDrumPartSysexs(SongSysexs& sysexs, SysexRoutine routine) {
  const auto row = std::ranges::find(DrumPartRows, routine, &DrumPartRow::Routine);
  if (row == std::end(DrumPartRows)) return;
  std::array<TSourceSysex, ChannelCount> own;
  sysexs.ForEachInSetup([&](const TSourceSysex& sysex) {
    const int part = PartOf(*row, *sysex.Event);
    if (part < 0) return;
    TSourceSysex& known = own[static_cast<std::size_t>(part)];
    if (known.Event != nullptr) sysexs.Drop(known, Overtaken);
    known = sysex;
  });
  Song::TPartEvents& table = sysexs.song.*row->Table;
  for (std::size_t part = 0; part < own.size(); ++part) {
    const std::int32_t position =
        sysexs.ResetPosition + static_cast<std::int32_t>(part) * DrumPartStep + DrumPartDistance;
    const TSourceSysex& known = own[part];
    if (known.Event == nullptr) {
      table[part] = sysexs.InsertPlaceholder(std::span(row->Default).first(row->Length), position);
      continue;
    }
    table[part] = sysexs.InsertInstead(known, known.Event->Meta.Bytes(), position, OwnPlace);
    MarkRemoved(known.Event);
    sysexs.song.MidiData[part].DrumPart = known.Event->Meta[row->ValueIndex];
  }
}

}  // namespace Sonarello
