// Sonarello: what MIDI inputs and outputs have in common.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "playback/MidiDriver.h"
#include "playback/MidiRing.h"

namespace Sonarello {

/// Device number of the system's choice: the first device there is.
inline constexpr std::int32_t MidiMapper = -1;

/// The name that goes with it.
inline constexpr const char* MidiMapperName = "MIDI Mapper";

/// What is told of an error that nobody has words for.
inline constexpr const char* UnknownErrorText = "Specified error number is out of range";

/// A piece of an incoming sysex. The driver's thread fills it, the main thread gives it back.
struct TMyMidiHdr {
  std::vector<std::uint8_t> Data;   ///< the room
  std::uint32_t BytesRecorded = 0;  ///< how much of it is filled
};

/// An incoming message on its way to the main thread.
struct TMidiBufferItem {
  std::uint32_t timestamp = 0;  ///< ms as the driver gives them
  std::uint32_t data = 0;       ///< short message: status in the low byte, then data 1, then data 2
  TMyMidiHdr* sysex = nullptr;  ///< null for a short message
};

using TCircularBuffer = TRing<TMidiBufferItem>;

/// What an input leaves out. `msgMidiTimeCode` stands for the timing clock (status 248), deliberately:
/// time code itself (241) always passes.
enum class TMidiMsg : std::uint8_t { msgActiveSensing = 1, msgMidiTimeCode = 2 };

class TMidiMsgFilter {
 public:
  constexpr TMidiMsgFilter() = default;
  constexpr TMidiMsgFilter(std::initializer_list<TMidiMsg> messages) {
    for (const TMidiMsg message : messages) {
      bits = static_cast<std::uint8_t>(bits | static_cast<std::uint8_t>(message));
    }
  }
  [[nodiscard]] constexpr bool Has(TMidiMsg message) const {
    return (bits & static_cast<std::uint8_t>(message)) != 0;
  }
  constexpr bool operator==(const TMidiMsgFilter&) const = default;

 private:
  std::uint8_t bits = 0;
};

/// A MIDI message: a short one, or a sysex or piece of one with its bytes in `Sysex`.
struct TMyMidiEvent {
  std::uint8_t MidiMessage = 0;  ///< status; 240 for every piece of a sysex
  std::uint8_t Data1 = 0;
  std::uint8_t Data2 = 0;
  std::uint32_t Time = 0;  ///< ms as the driver gives them
  std::vector<std::uint8_t> Sysex;

  [[nodiscard]] std::uint16_t SysexLength() const { return static_cast<std::uint16_t>(Sysex.size()); }
};

/// Bytes of a short message by its status: 1 to 3; 0 for a data byte and for a sysex.
[[nodiscard]] constexpr int ShortMessageLength(std::uint8_t status) {
  if (status < 0x80 || status == 0xF0) {
    return 0;
  }
  if (status < 0xF0) {
    return (status & 0xE0) == 0xC0 ? 2 : 3;
  }
  if (status == 0xF1 || status == 0xF3) {
    return 2;
  }
  return status == 0xF2 ? 3 : 1;
}

/// Base of ports. A port belongs to the main thread; what other threads may call says so.
class TMidiIO {
 public:
  using TNotify = std::function<void()>;

  explicit TMidiIO(IMidiDriver& midi) : driver(midi) {}
  virtual ~TMidiIO() = default;
  TMidiIO(const TMidiIO&) = delete;
  TMidiIO& operator=(const TMidiIO&) = delete;

  /// Who is told that `Pump` has something to do. Called on other threads, so it may only post: it must
  /// neither wait nor allocate. Told once until the next `Pump`. To be set while the port is closed.
  void SetNotify(TNotify notify) { handle = std::move(notify); }
  /// Calls the events that are due, on the thread that calls it. To be called by the main thread, after
  /// a notification or now and then.
  virtual void Pump() = 0;

 protected:
  IMidiDriver& driver;
  TNotify handle;
};

}  // namespace Sonarello
