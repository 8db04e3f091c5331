// Sonarello: the walk over the bytes of a Standard MIDI File.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>

#include "core/Data.h"

namespace Sonarello {

/// What is wrong with a file, and where.
struct SmfFault {
  enum class Kind {
    InvalidOffset,    ///< the file ends where more is promised, or a delta of -1
    NoRunning,        ///< a data byte without running status
    RunningSystem,    ///< a data byte under a running status of 0xF0 or above
    SystemCommon,     ///< status 0xF1 to 0xF6
    ActiveSensing,    ///< status 0xFD or 0xFE
    EndOfTrackLength  ///< End of track with a length other than 0
  };
  Kind What;
  std::size_t Pointer = 0;    ///< byte offset in the file
  std::int32_t Position = 0;  ///< ticks
  std::uint8_t Byte = 0;      ///< the offending byte or status
};

/// Reads bytes in order and raises SmfFault instead of leaving the buffer.
class SmfCursor {
 public:
  explicit SmfCursor(std::span<const std::uint8_t> bytes) : data(bytes.data()), size(bytes.size()) {}

  [[nodiscard]] std::size_t At() const noexcept { return at; }
  void GoTo(std::size_t offset) noexcept { at = offset; }

  std::uint8_t Byte() {
    if (at >= size) Fail();
    return data[at++];
  }
  /// Unsigned 16 or 32 bits, big-endian.
  std::uint32_t BigEndian(int bytes) {
    std::uint32_t value = 0;
    while (bytes-- > 0) value = value << 8 | Byte();
    return value;
  }
  /// A variable-length quantity in 32 bits; more than SMF 1.0's four bytes are read on, high bits lost.
  std::uint32_t VariableLength() {
    std::uint8_t byte = Byte();
    if (byte < 0x80) return byte;
    std::uint32_t value = byte & 0x7F;
    do {
      byte = Byte();
      value = value << 7 | (byte & 0x7F);
    } while (byte >= 0x80);
    return value;
  }
  /// The next bytes, of a count as the file states it: more than is there, or 2^31 and more, is a
  /// fault.
  std::span<const std::uint8_t> Bytes(std::uint32_t count) {
    if (count > size - at) Fail();
    const std::span<const std::uint8_t> bytes(data + at, count);
    at += count;
    return bytes;
  }

 private:
  [[noreturn]] void Fail() const { throw SmfFault{SmfFault::Kind::InvalidOffset, at, 0, 0}; }

  const std::uint8_t* data;
  std::size_t size;
  std::size_t at = 0;
};

/// A status byte's place in a file.
enum class StatusClass { Running, TwoData, OneData, Sysex, SystemCommon, Realtime, Forbidden, Meta };

/// Classes of the 256 values that may stand behind a delta.
[[nodiscard]] constexpr StatusClass ClassOf(std::uint8_t status) noexcept {
  if (status < 0x80) return StatusClass::Running;
  if (status < 0xF0) return (status & 0xE0) == 0xC0 ? StatusClass::OneData : StatusClass::TwoData;
  if (status == 0xF0 || status == 0xF7) return StatusClass::Sysex;
  if (status < 0xF7) return StatusClass::SystemCommon;
  if (status < 0xFD) return StatusClass::Realtime;
  return status == 0xFF ? StatusClass::Meta : StatusClass::Forbidden;
}

/// The status that a data byte stands under. Raises SmfFault if there is none or it is a system status.
[[nodiscard]] inline std::uint8_t RunningStatus(std::uint8_t running, std::size_t pointer,
                                                std::int32_t position, std::uint8_t byte) {
  if (running < 0x80) throw SmfFault{SmfFault::Kind::NoRunning, pointer, position, byte};
  if (running >= 0xF0) throw SmfFault{SmfFault::Kind::RunningSystem, pointer, position, running};
  return running;
}

/// One event as it stands in the file. Short events have their data in `Value`, long ones in `Payload`.
struct SmfEvent {
  std::int32_t Position = 0;  ///< ticks; 32 bits that wrap, as the deltas of a damaged file may
  std::uint8_t Status = 0;
  std::uint8_t Value[2] = {0, 0};
  std::uint8_t Type = 0;  ///< of a meta event
  std::span<const std::uint8_t> Payload;
};

/// The loop of `WalkChunk`; `event` tells on a fault how far the walk came.
template <class OnChannel, class OnLong, class OnRealtime>
void WalkEvents(SmfCursor& in, SmfEvent& event, std::uint64_t chunkEnd, bool statusSurvives,
                OnChannel&& onChannel, OnLong&& onLong, OnRealtime&& onRealtime) {
  std::uint8_t running = 0;
  const auto fault = [&](SmfFault::Kind kind) {
    return SmfFault{kind, in.At() - 1, event.Position, event.Status};
  };
  while (in.At() < chunkEnd) {
    const std::uint32_t delta = in.VariableLength();
    if (delta == ~std::uint32_t{0}) throw fault(SmfFault::Kind::InvalidOffset);
    event.Position = static_cast<std::int32_t>(static_cast<std::uint32_t>(event.Position) + delta);
    std::uint8_t byte = in.Byte();
    event.Status = byte;
    StatusClass kind = ClassOf(byte);
    const bool implicit = kind == StatusClass::Running;
    if (implicit) {
      event.Status = RunningStatus(running, in.At() - 1, event.Position, byte);
      kind = ClassOf(event.Status);
    }
    switch (kind) {
      case StatusClass::TwoData:
      case StatusClass::OneData:
        running = event.Status;
        event.Value[0] = implicit ? byte : in.Byte();
        event.Value[1] = kind == StatusClass::TwoData ? in.Byte() : std::uint8_t{0};
        onChannel(std::as_const(event));
        continue;
      case StatusClass::Sysex:
        event.Payload = in.Bytes(in.VariableLength());
        onLong(std::as_const(event));
        break;
      case StatusClass::Meta:
        event.Type = in.Byte();
        if (const std::uint32_t length = in.VariableLength(); event.Type == MetaEndOfTrack) {
          if (length != 0) throw fault(SmfFault::Kind::EndOfTrackLength);
          in.GoTo(static_cast<std::size_t>(chunkEnd));
          return;
        } else {
          event.Payload = in.Bytes(length);
        }
        onLong(std::as_const(event));
        break;
      case StatusClass::Realtime: onRealtime(std::as_const(event)); break;
      case StatusClass::SystemCommon: throw fault(SmfFault::Kind::SystemCommon);
      default: throw fault(SmfFault::Kind::ActiveSensing);
    }
    if (!statusSurvives) running = 0;
  }
}

/// Walks the events of one chunk from the cursor to the chunk's end, a byte offset that may lie behind
/// the file's end. Calls onChannel(event), onLong(event) for sysex, escape and meta events but for the
/// End of track, which ends the walk, and onRealtime(event). An event that crosses the chunk's end is
/// the last one. With `statusSurvives` metas and sysexes leave running status as it is.
template <class OnChannel, class OnLong, class OnRealtime>
void WalkChunk(SmfCursor& in, std::uint64_t chunkEnd, bool statusSurvives, OnChannel&& onChannel,
               OnLong&& onLong, OnRealtime&& onRealtime) {
  SmfEvent event;
  try {
    WalkEvents(in, event, chunkEnd, statusSurvives, onChannel, onLong, onRealtime);
  } catch (SmfFault& fault) {
    fault.Position = event.Position;  // the cursor knows bytes only
    throw;
  }
}

}  // namespace Sonarello
