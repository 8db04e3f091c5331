// A hosted instrument that writes down what it is told and hums while a note sounds, for tests.
#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "playback/HostedInstrument.h"

namespace Sonarello {

class TestInstrument : public IHostedInstrument {
 public:
  struct TTold {
    std::int64_t Frame = 0;  ///< frames rendered before the message came
    std::vector<std::uint8_t> Bytes;
    friend bool operator==(const TTold&, const TTold&) = default;
  };

  [[nodiscard]] std::string Name() const override { return "Test"; }
  [[nodiscard]] std::int32_t UniqueID() const override { return 7; }
  [[nodiscard]] int InitDelay() const override { return 0; }
  void SendMidiData(std::uint8_t status, std::uint8_t data1, std::uint8_t data2) override {
    Told.push_back({Frames, {status, data1, data2}});
    if ((status & 0xF0) == 0x90 && data2 > 0) ++Sounding;
    if ((status & 0xF0) == 0x80 || ((status & 0xF0) == 0x90 && data2 == 0))
      Sounding = std::max(0, Sounding - 1);
  }
  void SendSysex(std::span<const std::uint8_t> message) override {
    Told.push_back({Frames, {message.begin(), message.end()}});
  }
  void Render(std::span<float> stereo) override {
    std::ranges::fill(stereo, Sounding > 0 ? 0.25F : 0.0F);
    Frames += static_cast<std::int64_t>(stereo.size() / AudioChannels);
  }
  void Reset() override { Sounding = 0; }
  [[nodiscard]] std::vector<std::uint8_t> GetChunk() const override { return {}; }
  bool SetChunk(std::span<const std::uint8_t>) override { return false; }

  std::vector<TTold> Told;
  std::int64_t Frames = 0;
  int Sounding = 0;
};

}  // namespace Sonarello
