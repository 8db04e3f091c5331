// Sonarello: how the events of one track become the bytes of a track chunk (SMF 1.0).
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <functional>
#include <limits>
#include <span>
#include <string>

#include "core/Data.h"
#include "core/DeskCopy.h"

namespace Sonarello {

/// Greatest number of a variable-length quantity: SMF 1.0 allows four bytes of seven bits.
inline constexpr std::uint32_t GreatestQuantity = 0x0FFFFFFF;

/// Bytes of a variable-length quantity up to `GreatestQuantity`.
[[nodiscard]] constexpr std::size_t QuantitySize(std::uint32_t value) noexcept {
  return value < 0x80 ? 1 : value < 0x4000 ? 2 : value < 0x200000 ? 3 : 4;
}

/// Takes bytes and only counts them.
class ByteCounter {
 public:
  void Byte(std::uint8_t) noexcept { ++size; }
  void Bytes(std::span<const std::uint8_t> bytes) noexcept { size += bytes.size(); }
  void Quantity(std::uint32_t value) noexcept { size += QuantitySize(value); }
  [[nodiscard]] std::uint64_t Size() const noexcept { return size; }

 private:
  std::uint64_t size = 0;
};

/// Stores bytes one behind the other; the room for them was counted.
class ByteStore {
 public:
  explicit ByteStore(std::uint8_t* first = nullptr) noexcept : at(first) {}
  void Byte(std::uint8_t byte) noexcept { *at++ = byte; }
  void Bytes(std::span<const std::uint8_t> bytes) noexcept {
    if (!bytes.empty()) std::memcpy(at, bytes.data(), bytes.size());
    at += bytes.size();
  }
  void Quantity(std::uint32_t value) noexcept {
    for (std::size_t more = QuantitySize(value) - 1; more > 0; --more)
      Byte(static_cast<std::uint8_t>(0x80 | (value >> (7 * more) & 0x7F)));
    Byte(value & 0x7F);
  }
  [[nodiscard]] const std::uint8_t* End() const noexcept { return at; }

 private:
  std::uint8_t* at;
};

/// An event that stands elsewhere than its node says.
struct TPlacedEvent {
  const TypMidiEvent* Event = nullptr;
  std::int32_t Position = 0;  ///< ticks
};

/// What all tracks of a file are encoded by.
struct TEncoding {
  bool RunningStatus = false;
  bool LeaveOutPorts = false;             ///< track heads are not written
  const DeskCopy* Desk = nullptr;         ///< nil: channel events are written as they are
  const TypMidiEvent* Renamed = nullptr;  ///< this event is written as `RenamedTo`
  const TypMidiEvent* RenamedTo = nullptr;
  std::string Failure;  ///< text of the EMidiError for an event that has no form in a file
  /// Told of an event whose position is above its successor's.
  std::function<void(const TPlacedEvent&, const TPlacedEvent&)> Descends;
};

/// Encodes one track. `Sink` takes the bytes: a `ByteCounter` in a first pass, a `ByteStore` in a
/// second one over the same events. Raises EMidiError with `TEncoding::Failure`.
template <class Sink>
class TrackEncoder {
 public:
  /// The events to `insert`, ascending, are merged in, each behind the track's events of its tick.
  TrackEncoder(Sink s, const TEncoding& e, std::span<const TPlacedEvent> insert = {})
      : encoding(&e), sink(s), inserted(insert) {
    AimAtInserted();
  }

  /// The next event of the track. One with `DLength` 0 is removed and left out.
  void Put(const TypMidiEvent& event) {
    if (event.DLength == 0 && &event != encoding->Renamed) return;
    if (event.Position > nextInserted) PutInserted(event.Position);
    PutAt(event, event.Position);
  }
  /// What was not yet merged in, then the End of track.
  void Finish(const TypMidiEvent& endOfTrack) {
    if (!inserted.empty()) PutInserted(std::numeric_limits<std::int64_t>::max());
    Delta(sink, endOfTrack, endOfTrack.Position);
    for (const int byte : {int{MetaEvent}, int{MetaEndOfTrack}, 0})
      sink.Byte(static_cast<std::uint8_t>(byte));
  }
  /// True if the track has more than a head and track names.
  [[nodiscard]] bool HoldsEvents() const noexcept { return holdsEvents; }
  [[nodiscard]] const Sink& Out() const noexcept { return sink; }

 private:
  [[noreturn]] void Fail() const { throw EMidiError(encoding->Failure); }

  void PutAt(const TypMidiEvent& event, std::int32_t position) {
    if (event.DType == ShortEvent)
      PutShort(event, position);
    else if (event.DType == LongEvent)
      PutLong(event, position);
    else
      Fail();
  }

  void PutShort(const TypMidiEvent& event, std::int32_t position) {
    // Bytes with a top bit would be read as status bytes: such a file could not be opened again.
    if (event.Command < NoteOff || event.Command >= Sysex ||
        event.DLength != ((event.Command & 0xE0) == ProgramChange ? 2 : 3) ||
        ((event.Value[0] | event.Value[1]) & 0x80) != 0)
      Fail();
    TShortMessage message{event.Command, event.Value[0], event.Value[1]};
    if (encoding->Desk != nullptr) encoding->Desk->Apply(message);
    Sink out = sink;  // a local copy stays in registers
    Delta(out, event, position);
    if (!encoding->RunningStatus || message.Command != lastStatus) out.Byte(message.Command);
    out.Byte(message.Value0);
    if (event.DLength == 3) out.Byte(message.Value1);
    sink = out;
    lastStatus = message.Command;
    holdsEvents = true;
  }

  void PutLong(const TypMidiEvent& source, std::int32_t position) {
    const TypMidiEvent& event = &source == encoding->Renamed ? *encoding->RenamedTo : source;
    if (event.DLength == 0 || event.IsEndOfTrack()) return;
    if (encoding->LeaveOutPorts && event.IsMeta(MetaPort) && event.DLength == 1) return;
    Delta(sink, source, position);
    sink.Byte(event.Command);
    lastStatus = 0;
    switch (event.Command) {
      case MetaEvent:
        if (event.MType < 0) Fail();
        sink.Byte(static_cast<std::uint8_t>(event.MType));
        PutPayload(event);
        if (event.MType != MetaTrackName) holdsEvents = true;
        return;
      case Sysex:
      case SysexEscape:
        PutPayload(event);
        holdsEvents = true;
        return;
      case 0xF8:
      case 0xFA:
      case 0xFB:
      case 0xFC: holdsEvents = true; return;
      default: Fail();
    }
  }

  void PutPayload(const TypMidiEvent& event) {
    const std::size_t length = std::min(static_cast<std::size_t>(event.DLength), event.Meta.size());
    if (event.DLength < 0 || length > GreatestQuantity) Fail();
    sink.Quantity(static_cast<std::uint32_t>(length));
    sink.Bytes(event.Meta.Bytes().first(length));
  }

  void Delta(Sink& out, const TypMidiEvent& event, std::int32_t position) {
    std::int64_t delta = std::int64_t{position} - last.Position;
    if (delta < 0) {
      if (encoding->Descends && last.Event != nullptr) encoding->Descends(last, {&event, position});
      delta = 0;
    }
    last = {&event, position};
    auto rest = static_cast<std::uint32_t>(delta);
    if (rest > GreatestQuantity) rest = Bridge(out, rest);
    out.Quantity(rest);
  }

  /// Empty sequencer-specific metas, which every reader skips, carry a gap that four bytes cannot tell.
  std::uint32_t Bridge(Sink& out, std::uint32_t rest) {
    for (; rest > GreatestQuantity; rest -= GreatestQuantity) {
      out.Quantity(GreatestQuantity);
      out.Byte(MetaEvent);
      out.Byte(MetaSequencerSpecific);
      out.Byte(0);
    }
    lastStatus = 0;
    return rest;
  }

  void PutInserted(std::int64_t before) {
    while (!inserted.empty() && inserted.front().Position < before) {
      PutAt(*inserted.front().Event, inserted.front().Position);
      inserted = inserted.subspan(1);
    }
    AimAtInserted();
  }
  void AimAtInserted() noexcept {
    nextInserted =
        inserted.empty() ? std::numeric_limits<std::int32_t>::max() : inserted.front().Position;
  }

  const TEncoding* encoding;
  Sink sink;
  TPlacedEvent last;
  std::int32_t nextInserted = 0;  ///< ticks of the next event to merge in
  std::uint8_t lastStatus = 0;
  bool holdsEvents = false;
  std::span<const TPlacedEvent> inserted;
};

}  // namespace Sonarello
