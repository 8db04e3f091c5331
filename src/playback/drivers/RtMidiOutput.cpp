#include "playback/drivers/RtMidiOutput.h"

#include <RtMidi.h>

#include <charconv>
#include <chrono>
#include <memory>
#include <string>
#include <string_view>
#include <thread>
#include <utility>

#include "playback/drivers/JackWatch.h"
#include "playback/drivers/MidiBytes.h"
#include "playback/drivers/MidiPace.h"

namespace Sonarello {

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr auto LongestWait = 1s;
constexpr auto WaitStep = 200us;
constexpr const char* GoneText = "The MIDI port is gone.";
constexpr const char* BusyText = "The MIDI port takes no more data.";

/// An output of RtMidi. What JACK and ALSA have in common.
class RtMidiOutput : public IDriverOutput {
 public:
  RtMidiOutput(RtMidi::Api api, const std::string& clientName, std::string portName,
               std::size_t longestPiece)
      : port(std::move(portName)),
        piece(longestPiece),
        out(std::make_unique<RtMidiOut>(api, clientName)) {
    out->setErrorCallback(&RtMidiOutput::Failed, this);
    unsigned number = 0;
    const unsigned count = out->getPortCount();
    while (number < count && out->getPortName(number) != port) {
      ++number;
    }
    if (number == count) {
      throw TDriverError(BadDeviceId, GoneText);
    }
    out->openPort(number, "out");
    if (!failure.empty() || !out->isPortOpen()) {
      throw TDriverError(NotReady, failure);
    }
  }

  void Send(std::span<const std::uint8_t> message) override {
    if (message.empty() || !ForEachMessage(message, [](auto) {})) {
      throw TDriverError(InvalidParameter, "The bytes are no MIDI message.");
    }
    if (!Present()) {
      throw TDriverError(InvalidHandle, GoneText);
    }
    ForEachMessage(message, [this](std::span<const std::uint8_t> one) { SendOne(one); });
  }

 protected:
  /// False once the port is gone; it stays so.
  virtual bool Present() = 0;
  /// True if the system has room for a message now.
  virtual bool Fits(std::size_t bytes) = 0;
  virtual void Written(std::size_t bytes) = 0;
  /// True if waiting for room is in vain.
  virtual bool Stalled() { return false; }

  /// Waits for room. False if none comes free in time.
  bool Wait(std::size_t bytes) {
    const auto end = Clock::now() + LongestWait;
    while (!Fits(bytes)) {
      if (!Present()) {
        throw TDriverError(InvalidHandle, GoneText);
      }
      if (Stalled() || (Clock::now() >= end && !Draining())) {
        return false;
      }
      std::this_thread::sleep_for(WaitStep);
    }
    return true;
  }
  /// True while a buffer of known speed empties, however long that takes.
  virtual bool Draining() { return false; }

  const std::string port;

 private:
  /// A long sysex goes in pieces, one behind the other: what the receiver gets is the same bytes. All
  /// pieces but the last have the same length, without which ALSA's encoder holds them back.
  void SendOne(std::span<const std::uint8_t> message) {
    while (!message.empty()) {
      const std::span part = message.first(std::min(message.size(), piece));
      if (!Wait(part.size())) {
        throw TDriverError(NotReady, BusyText);
      }
      failure.clear();
      out->sendMessage(part.data(), part.size());
      if (!failure.empty()) {
        throw TDriverError(NotReady, failure);
      }
      Written(part.size());
      message = message.subspan(part.size());
    }
  }

  static void Failed(RtMidiError::Type type, const std::string& text, void* self) {
    if (type != RtMidiError::DEBUG_WARNING) {
      static_cast<RtMidiOutput*>(self)->failure = text;
    }
  }

  const std::size_t piece;
  std::string failure;

 protected:
  std::unique_ptr<RtMidiOut> out;
};

class JackOutput : public RtMidiOutput {
 public:
  JackOutput(const std::string& clientName, const std::string& portName,
             std::shared_ptr<JackWatch> server)
      : RtMidiOutput(RtMidi::UNIX_JACK, clientName, portName, LongestPiece),
        watch(std::move(server)),
        opened(watch->Cycles()),
        present(watch->Alive() && watch->HasPort(port)) {
    if (!present) {
      throw TDriverError(BadDeviceId, GoneText);
    }
  }

  /// What was sent shall still go out: the last messages of a song are what ends its notes.
  ~JackOutput() override {
    try {
      Wait(LongestPiece);
    } catch (const TDriverError&) {
      // The port is gone, and with it what was on its way there.
    }
    if (!watch->Alive()) {
      Abandon(std::move(out));
      return;
    }
    // RtMidi frees its ring before it ends the client, whose cycle may just be reading it. Once the
    // port is closed the next cycles leave the ring alone, so they are let pass first.
    out->closePort();
    watch->AwaitCycles();
  }

 protected:
  /// JACK tells of a port's end before it takes the name away, so the name is looked for now and then.
  bool Present() override {
    present = present && watch->Alive();
    if (const auto now = Clock::now(); present && now - looked >= 20ms) {
      looked = now;
      present = watch->HasPort(port);
    }
    return present;
  }

  bool Fits(std::size_t bytes) override {
    const std::uint32_t cycle = watch->Cycles();
    connected = connected || cycle - opened >= JackWatch::ConnectionDelay;
    return connected && pace.Fits(cycle, bytes);
  }

  void Written(std::size_t bytes) override { pace.Written(watch->Cycles(), bytes); }

  /// After a second without a cycle there is no use in waiting a second for each message.
  bool Stalled() override {
    const auto now = Clock::now();
    if (const std::uint32_t cycle = watch->Cycles(); cycle != lastCycle) {
      lastCycle = cycle;
      lastMoved = now;
    }
    return now - lastMoved > LongestWait;
  }

 private:
  /// Below what RtMidi's ring takes at once (16,384 bytes); it drops what is longer.
  static constexpr std::size_t LongestPiece = 16000;

  std::shared_ptr<JackWatch> watch;
  CyclePace pace;
  const std::uint32_t opened;
  bool connected = false;
  bool present;
  Clock::time_point looked = Clock::now();
  std::uint32_t lastCycle = 0;
  Clock::time_point lastMoved = Clock::now();
};

/// The client number at the end of the name that RtMidi gives an ALSA port ("UM-1 20:0"); 0 if none.
int AlsaClient(std::string_view name) {
  const std::size_t blank = name.rfind(' ');
  int client = 0;
  if (blank != std::string_view::npos) {
    std::from_chars(name.data() + blank + 1, name.data() + name.size(), client);
  }
  return client;
}

/// Clients below 128 are the kernel's, from 16 the cards: wires, mostly, whose 4096 bytes of buffer the
/// kernel drops from without telling us when they overflow. Programs take data much faster, but not
/// without limit: their queue holds a few thousand bytes until they wake up.
WirePace AlsaPace(std::string_view name) {
  constexpr double Buffer = 4096;
  constexpr double Wire = 3125;
  constexpr double Program = 200'000;
  const int client = AlsaClient(name);
  return {Buffer, client >= 16 && client < 128 ? Wire : Program, Clock::now()};
}

class AlsaOutput : public RtMidiOutput {
 public:
  AlsaOutput(const std::string& clientName, const std::string& portName)
      : RtMidiOutput(RtMidi::LINUX_ALSA, clientName, portName, LongestPiece),
        pace(AlsaPace(portName)) {}

 protected:
  /// ALSA sends into the void when a port is gone; the list of ports tells.
  bool Present() override {
    const auto now = Clock::now();
    if (present && now - looked >= 250ms) {
      looked = now;
      present = Listed();
    }
    return present;
  }

  bool Fits(std::size_t bytes) override { return pace.Fits(Clock::now(), bytes); }
  void Written(std::size_t bytes) override { pace.Written(Clock::now(), bytes); }
  bool Draining() override { return true; }

 private:
  static constexpr std::size_t LongestPiece = 4096;

  bool Listed() {
    for (unsigned i = 0, count = out->getPortCount(); i < count; ++i) {
      if (out->getPortName(i) == port) {
        return true;
      }
    }
    return false;
  }

  WirePace pace;
  bool present = true;
  Clock::time_point looked = Clock::now();
};

}  // namespace

std::unique_ptr<IDriverOutput> OpenRtMidiOutput(const std::string& clientName,
                                                const std::string& portName,
                                                std::shared_ptr<JackWatch> watch) {
  try {
    if (watch != nullptr) {
      return std::make_unique<JackOutput>(clientName, portName, std::move(watch));
    }
    return std::make_unique<AlsaOutput>(clientName, portName);
  } catch (const RtMidiError& error) {
    throw TDriverError(NotReady, error.getMessage());
  }
}

}  // namespace Sonarello
