#include "core/PartEQ.h"

#include <algorithm>
#include <array>
#include <vector>

#include "core/RolandChecksum.h"

namespace Sonarello {

namespace {

using enum SysexRoutine;

constexpr Reason OwnPartEQ = {"Part-EQ des Instruments", "the instrument's part EQ"};
constexpr Reason Overtaken = {"von einem späteren Part-EQ überholt", "overtaken by a later part EQ"};
constexpr Reason Merged = {"im Part-EQ des Instruments zusammengefasst",
                           "merged into the instrument's part EQ"};

// Places of the messages, ticks: so far behind the reset and so far apart if the first note allows.
constexpr std::int32_t PartEQDistance = 100;
constexpr std::int32_t PartEQStep = 2;
constexpr std::int32_t LastPart = ChannelCount - 1;

/// The part EQ message of an instrument.
struct PartEQRow {
  SysexRoutine Routine;
  std::array<std::uint8_t, 34> Default;  ///< bytes behind the 0xF0, of part 1
  std::size_t Length;
  std::size_t PrefixLength;     ///< bytes that tell the message, the part's byte excepted
  std::size_t PartIndex;        ///< the part's byte, `Default` counting from part 1
  std::size_t ChecksumAddress;  ///< first byte under the Roland checksum; 0: it has none
  bool BlockOfParameters;       ///< single parameters have messages of their own
  Song::TPartEvents Song::*Table;
};
constexpr PartEQRow PartEQRows[] = {
    {SearchKorgPartEQSysex,
     {0x42, 0x7F, 0x60, 0x00, 0x01, 0x00, 0x10, 0x00, 0x00, 0x00, 0x00, 0x01,
      0x00, 0x00, 0x02, 0x00, 0x03, 0x00, 0x04, 0x00, 0x05, 0x00, 0x5A, 0xF7},
     24,
     8,
     8,
     0,
     false,
     &Song::KorgPaXXXPartEQ},
    {SearchRolandBK9PartEQSysex,
     {0x41, 0x10, 0x00, 0x5C, 0x12, 0x30, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00,
      0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x01, 0x00, 0x0F, 0x00, 0x07,
      0x00, 0x0F, 0x00, 0x00, 0x00, 0x01, 0x00, 0x0F, 0x16, 0xF7},
     34,
     17,
     15,
     5,
     false,
     &Song::RolandBK9PartEQ},
    // Studio set, part n: 18 00 5n 00 and up are switch, low frequency and gain, mid frequency, gain
    // and Q, high frequency and gain. The default is off, 400 Hz, 0 dB, 1 kHz, 0 dB, 0.5, 4 kHz, 0 dB,
    // after the parameter tables of the public integra7-editor, whose labels Integra7AuralAlchemist
    // confirms.
    {SearchRolandIntegra7PartEQSysex,
     {0x41, 0x10, 0x00, 0x00, 0x64, 0x12, 0x18, 0x00, 0x50, 0x00,
      0x00, 0x01, 0x0F, 0x07, 0x0F, 0x00, 0x01, 0x0F, 0x00, 0xF7},
     20,
     8,
     8,
     6,
     true,
     &Song::RolandIntegra7PartEQ},
};

// A Roland block message: the offset of its first parameter, then the parameters, checksum, 0xF7.
constexpr std::size_t BlockOffsetIndex = 9;
constexpr std::size_t BlockDataIndex = 10;
constexpr std::size_t BlockTail = 2;
constexpr std::uint8_t SysexEnd = 0xF7;

/// What the song says of one part's equalizer.
struct PartState {
  std::vector<std::uint8_t> Bytes;
  TSourceSysex From;  ///< the last message that said it; nil for the default
};
using PartStates = std::array<PartState, ChannelCount>;

class PartEQSearch {
 public:
  PartEQSearch(SongSysexs& s, const PartEQRow& r) : sysexs(s), row(r) {
    for (std::size_t part = 0; part < parts.size(); ++part) {
      std::vector<std::uint8_t>& bytes = parts[part].Bytes;
      bytes.assign(row.Default.begin(), row.Default.begin() + static_cast<std::ptrdiff_t>(row.Length));
      bytes[row.PartIndex] = static_cast<std::uint8_t>(bytes[row.PartIndex] + part);
      SetChecksum(bytes);
    }
  }

  void Run() {
    // Single parameters are changed in the course of a song as well; only the setup is taken over.
    const auto take = [&](const TSourceSysex& sysex) { Take(sysex); };
    if (row.BlockOfParameters)
      sysexs.ForEachInSetup(take);
    else
      sysexs.ForEach(take);
    Place();
  }

 private:
  void SetChecksum(std::vector<std::uint8_t>& bytes) const {
    if (row.ChecksumAddress == 0) return;
    bytes[row.Length - BlockTail] = RolandChecksum(
        std::span(bytes).subspan(row.ChecksumAddress, row.Length - BlockTail - row.ChecksumAddress));
  }

  /// The part (0-15) that a message sets, or -1 for another message.
  [[nodiscard]] int PartOf(const Meta& bytes) const {
    if (bytes.size() <= std::max(row.PrefixLength, row.PartIndex)) return -1;
    for (std::size_t i = 0; i < row.PrefixLength; ++i)
      if (i != row.PartIndex && bytes[i] != row.Default[i]) return -1;
    const int part = bytes[row.PartIndex] - row.Default[row.PartIndex];
    return part >= 0 && part < ChannelCount && HasGoodLength(bytes) ? part : -1;
  }
  [[nodiscard]] bool HasGoodLength(const Meta& bytes) const {
    if (!row.BlockOfParameters) return bytes.size() == row.Length;
    return bytes.size() > BlockDataIndex + BlockTail && bytes[bytes.size() - 1] == SysexEnd &&
           bytes.size() + bytes[BlockOffsetIndex] <= row.Length;
  }

  void Take(const TSourceSysex& sysex) {
    const Meta& bytes = sysex.Event->Meta;
    const int part = PartOf(bytes);
    if (part < 0) return;
    PartState& state = parts[static_cast<std::size_t>(part)];
    if (state.From.Event != nullptr) {
      sysexs.Drop(state.From, row.BlockOfParameters ? Merged : Overtaken);
      Neutralise(state.From.Event);
    }
    state.From = sysex;
    if (!row.BlockOfParameters) {
      state.Bytes.assign(bytes.data(), bytes.data() + bytes.size());
      return;
    }
    std::copy(bytes.data() + BlockDataIndex, bytes.data() + bytes.size() - BlockTail,
              state.Bytes.data() + BlockDataIndex + bytes[BlockOffsetIndex]);
    SetChecksum(state.Bytes);
  }

  void Place() {
    const std::int32_t reset = sysexs.ResetPosition;
    const std::int32_t lastTick = FirstNote() - 1;
    std::int32_t first = reset + PartEQDistance;
    std::int32_t step = PartEQStep;
    if (first + LastPart * step > lastTick) {
      step = lastTick - reset > LastPart ? 1 : 0;
      first = std::clamp(lastTick - LastPart * step, reset, first);
    }
    for (std::size_t part = 0; part < parts.size(); ++part) {
      PartState& state = parts[part];
      const std::int32_t position = first + static_cast<std::int32_t>(part) * step;
      PtrMidiEvent& event = (sysexs.song.*row.Table)[part];
      if (state.From.Event == nullptr) {
        event = sysexs.Insert(state.Bytes, position, OwnPartEQ);
      } else {
        event = sysexs.InsertInstead(state.From, state.Bytes, position, OwnPartEQ);
        Neutralise(state.From.Event);
      }
    }
  }

  /// Tick of the first note, a count-in's included.
  [[nodiscard]] std::int32_t FirstNote() const {
    const Song& song = sysexs.song;
    std::int32_t tick = song.TickPositionOfFirstNote;
    if (song.CountInIdx >= 0)
      tick = std::min(tick, song.CountInArray[static_cast<std::size_t>(song.CountInIdx)].Start);
    return tick;
  }

  SongSysexs& sysexs;
  const PartEQRow& row;
  PartStates parts;
};

}  // namespace

void SearchPartEQSysex(SongSysexs& sysexs, SysexRoutine routine) {
  const PartEQRow& row = *std::ranges::find(PartEQRows, routine, &PartEQRow::Routine);
  PartEQSearch(sysexs, row).Run();
}

}  // namespace Sonarello
