// A MIDI system for tests: devices by name, what is sent is written down, errors on demand.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "playback/MidiDriver.h"

namespace Sonarello {

/// Any thread may send; the test looks when nobody does. Must outlive the ports on it.
class TestMidiDriver : public IMidiDriver {
 public:
  using TBytes = std::vector<std::uint8_t>;

  struct TSent {
    std::int64_t Time;   ///< as `Now` told it
    std::string Device;  ///< name
    TBytes Bytes;
    bool operator==(const TSent&) const = default;
  };

  std::vector<std::string> Inputs;
  std::vector<std::string> Outputs;
  std::function<std::int64_t()> Now = [] { return std::int64_t{0}; };
  std::optional<TDriverError> FailOpen;  ///< raised by every opening
  std::optional<TDriverError> FailSend;  ///< raised by every sending
  std::vector<TSent> Sent;
  int OpenInputs = 0;
  int OpenOutputs = 0;

  std::string ApiName() const override { return "test"; }
  std::vector<std::string> InputNames() override { return Inputs; }
  std::vector<std::string> OutputNames() override { return Outputs; }

  std::unique_ptr<IDriverOutput> OpenOutput(int device) override {
    return std::make_unique<TOutput>(*this, Opened(Outputs, device));
  }
  std::unique_ptr<IDriverInput> OpenInput(int device, TDriverInputCallback callback) override {
    return std::make_unique<TInput>(*this, Opened(Inputs, device), std::move(callback));
  }

  /// A message arrives at every open input of a name, on the thread that calls.
  void Feed(const std::string& name, std::uint32_t milliseconds,
            std::span<const std::uint8_t> message) {
    const auto [first, last] = callbacks.equal_range(name);
    for (auto it = first; it != last; ++it) {
      it->second(milliseconds, message);
    }
  }
  void Feed(const std::string& name, std::uint32_t milliseconds,
            std::initializer_list<std::uint8_t> message) {
    Feed(name, milliseconds, std::span(message.begin(), message.size()));
  }

  /// The bytes of all that was sent to a device, message by message.
  [[nodiscard]] std::vector<TBytes> SentTo(const std::string& name) const {
    std::vector<TBytes> messages;
    for (const TSent& sent : Sent) {
      if (sent.Device == name) {
        messages.push_back(sent.Bytes);
      }
    }
    return messages;
  }

 private:
  struct TOutput : IDriverOutput {
    TOutput(TestMidiDriver& d, std::string n) : driver(d), name(std::move(n)) { ++driver.OpenOutputs; }
    ~TOutput() override { --driver.OpenOutputs; }
    void Send(std::span<const std::uint8_t> message) override {
      const std::lock_guard lock(driver.writing);
      if (driver.FailSend) {
        throw *driver.FailSend;
      }
      driver.Sent.push_back({driver.Now(), name, {message.begin(), message.end()}});
    }
    TestMidiDriver& driver;
    std::string name;
  };

  struct TInput : IDriverInput {
    TInput(TestMidiDriver& d, const std::string& name, TDriverInputCallback callback)
        : driver(d), place(driver.callbacks.emplace(name, std::move(callback))) {
      ++driver.OpenInputs;
    }
    ~TInput() override {
      driver.callbacks.erase(place);
      --driver.OpenInputs;
    }
    TestMidiDriver& driver;
    std::multimap<std::string, TDriverInputCallback>::iterator place;
  };

  [[nodiscard]] std::string Opened(const std::vector<std::string>& names, int device) const {
    if (FailOpen) {
      throw *FailOpen;
    }
    if (device < 0 || static_cast<std::size_t>(device) >= names.size()) {
      throw TDriverError(BadDeviceId, "no such device");
    }
    return names[static_cast<std::size_t>(device)];
  }

  std::mutex writing;
  std::multimap<std::string, TDriverInputCallback> callbacks;
};

}  // namespace Sonarello
