// What tests with the player's thread stand on: a clock that runs fast and outputs that count.
#pragma once

#include <array>

#include "playback/MidiOut.h"
#include "playback/MidiPlayerThread.h"

namespace Sonarello {

/// A clock that runs many times as fast as the system's.
class FastClock : public IClock {
 public:
  explicit FastClock(int f) : factor(f), began(steady.Microseconds()) {}
  [[nodiscard]] std::int64_t Microseconds() const override {
    return (steady.Microseconds() - began) * factor;
  }
  void SleepUntil(std::int64_t microseconds) override {
    steady.SleepUntil(began + microseconds / factor);
  }

 private:
  SteadyClock steady;
  int factor;
  std::int64_t began;
};

/// Counts what goes out; called with the gate held.
class CountingOutputs : public IOutputs {
 public:
  bool OpenAll() override { return true; }
  bool Open(int) override { return true; }
  [[nodiscard]] bool IsOpen(int) const override { return true; }
  void CloseAll() override {}
  void SendShort(int, std::uint8_t status, std::uint8_t data1, std::uint8_t data2) override {
    ++Sent;
    const std::size_t note = (status & 15U) * KeyCount + data1;
    if ((status & 0xF0) == NoteOn && data2 > 0) ++sounding[note];
    if ((status & 0xF0) == NoteOff || ((status & 0xF0) == NoteOn && data2 == 0)) --sounding[note];
  }
  void SendLong(int, std::span<const std::uint8_t>) override { ++Sent; }
  /// Notes that were started and not ended.
  [[nodiscard]] int Hanging() const {
    int hanging = 0;
    for (const int count : sounding) hanging += count > 0 ? 1 : 0;
    return hanging;
  }
  std::int64_t Sent = 0;

 private:
  std::array<int, std::size_t{ChannelCount} * KeyCount> sounding{};
};

}  // namespace Sonarello
