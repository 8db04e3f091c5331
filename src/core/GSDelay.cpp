#include "core/GSDelay.h"

#include <algorithm>
#include <array>

#include "core/RolandChecksum.h"

namespace Sonarello {

namespace {

using enum SysexRoutine;

constexpr Reason OwnDelay = {"Delay-Einstellung des Instruments", "the instrument's delay setting"};

/// A stretch of the delay-time scale: up to a data byte each step adds so many tenths of a millisecond.
struct DelaySegment {
  int LastIndex;
  int Step;
};
// GS delay time centre, address 40 01 52: the segments of the SC-8850 owner's manual, page 236, as the
// public SpessaSynth source quotes them; the table of the public TiMidity41 source is the same. The
// scale starts at 1; a 0 counts as the shortest time.
constexpr DelaySegment DelaySegments[] = {
    {20, 1}, {35, 2}, {45, 5}, {55, 10}, {70, 20}, {80, 50}, {90, 100}, {105, 200}, {115, 500},
};

constexpr std::array<int, GSDelayTimes> MakeDelayTimes() {
  std::array<int, GSDelayTimes> tenths{};
  tenths[0] = 1;
  int index = 1;
  int time = 0;
  for (const DelaySegment& segment : DelaySegments)
    for (; index <= segment.LastIndex; ++index)
      tenths[static_cast<std::size_t>(index)] = time += segment.Step;
  return tenths;
}
constexpr std::array<int, GSDelayTimes> DelayTenths = MakeDelayTimes();

constexpr int FirstMusicalIndex = 70;
constexpr int LastMusicalIndex = 114;

/// The device byte of a dialect's GS messages.
struct DelayRow {
  SysexRoutine Routine;
  std::uint8_t Device;
};
constexpr DelayRow DelayRows[] = {{InsertGSDelaySysex, 0x10}, {InsertMP11DelaySysex, 0x00}};

constexpr std::uint8_t FeedbackAddress = 0x59;
constexpr std::uint8_t TimeAddress = 0x52;
constexpr std::int32_t FeedbackPosition = 90;  ///< ticks
constexpr std::int32_t TimePosition = 80;      ///< ticks
constexpr std::uint8_t DefaultFeedback = 0x50;

constexpr std::int32_t MessageBytes = 10;
using DelayMessage = std::array<std::uint8_t, MessageBytes>;
constexpr std::size_t AddressIndex = 4;
constexpr std::size_t PrefixLength = 7;

DelayMessage MakeDelay(std::uint8_t device, std::uint8_t address, std::uint8_t value) {
  DelayMessage bytes = {0x41, device, 0x42, 0x12, 0x40, 0x01, address, value, 0x00, 0xF7};
  bytes[8] = RolandChecksum(std::span(bytes).subspan(AddressIndex, 4));
  return bytes;
}

/// Sets `event` to the song's own delay message, the last one, or to a new one.
void GuaranteeDelay(SongSysexs& sysexs, const DelayMessage& message, std::int32_t position,
                    PtrMidiEvent& event) {
  const std::span<const std::uint8_t> prefix = std::span(message).first(PrefixLength);
  sysexs.ForEachInSetup([&](const TSourceSysex& sysex) {
    if (sysex.Event->DLength != MessageBytes || !sysex.Event->Meta.StartsWith(prefix)) return;
    event = sysex.Event;
    sysexs.song.RolandDelaySysexTrack = sysex.Track;
  });
  if (event != nullptr) return;
  event = sysexs.Insert(message, position, OwnDelay);
  sysexs.song.RolandDelaySysexTrack = sysexs.song.SysexTrack;
}

/// Data byte for an eighth note of the song's first tempo.
std::uint8_t EighthNoteIndex(const Song& song) {
  constexpr int eighthPerMinute = 30000;  ///< ms of an eighth note at one beat per minute
  const int tempo = song.SourceTempo.empty() ? 0 : song.SourceTempo[0].Tempo;
  return static_cast<std::uint8_t>(GSDelayTimeIndex(eighthPerMinute / (tempo == 0 ? 120 : tempo)));
}

}  // namespace

double GSDelayTimeMs(int index) noexcept {
  return DelayTenths[static_cast<std::size_t>(std::clamp(index, 0, GSDelayTimes - 1))] / 10.0;
}

int GSDelayTimeIndex(int milliseconds) noexcept {
  for (int i = FirstMusicalIndex; i <= LastMusicalIndex; ++i)
    if (GSDelayTimeMs(i) <= milliseconds && milliseconds < GSDelayTimeMs(i + 1)) return i;
  return 0;
}

void InsertDelaySysex(SongSysexs& sysexs, SysexRoutine routine) {
  const DelayRow& row = *std::ranges::find(DelayRows, routine, &DelayRow::Routine);
  Song& song = sysexs.song;
  song.RolandDelayFeedbackSysexEvent = song.RolandDelayTimeSysexEvent = nullptr;
  GuaranteeDelay(sysexs, MakeDelay(row.Device, TimeAddress, EighthNoteIndex(song)), TimePosition,
                 song.RolandDelayTimeSysexEvent);
  GuaranteeDelay(sysexs, MakeDelay(row.Device, FeedbackAddress, DefaultFeedback), FeedbackPosition,
                 song.RolandDelayFeedbackSysexEvent);
}

}  // namespace Sonarello
