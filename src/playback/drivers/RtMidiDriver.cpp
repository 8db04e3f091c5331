#include "playback/drivers/RtMidiDriver.h"

#include <RtMidi.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <string_view>
#include <utility>

#include "playback/drivers/JackWatch.h"
#include "playback/drivers/MidiBytes.h"
#include "playback/drivers/RtMidiOutput.h"

namespace Sonarello {

namespace {

/// The ports that RtMidi lists for an input or output of its own.
std::vector<std::string> PortsOf(RtMidi& lister) {
  std::vector<std::string> names;
  for (unsigned i = 0, count = lister.getPortCount(); i < count; ++i) {
    names.push_back(lister.getPortName(i));
  }
  return names;
}

void Ignore(RtMidiError::Type, const std::string&, void*) {}

/// Takes what comes in from RtMidi's thread, which hands it over as one block; what leaves are whole
/// messages.
class Receiver {
 public:
  Receiver(RtMidi::Api api, const std::string& clientName, TDriverInputCallback callback)
      : In(api, clientName, 1), take(std::move(callback)), opened(std::chrono::steady_clock::now()) {
    In.setErrorCallback(&Ignore, nullptr);
    In.ignoreTypes(false, false, false);
    In.setCallback(&Receiver::Incoming, this);
    ready.store(true, std::memory_order_release);
  }

  RtMidiIn In;

 private:
  static void Incoming(double, std::vector<unsigned char>* bytes, void* self) {
    auto* const receiver = static_cast<Receiver*>(self);
    if (receiver->ready.load(std::memory_order_acquire)) {
      receiver->Deliver(*bytes);
    }
  }

  void Deliver(std::vector<unsigned char>& bytes) {
    using namespace std::chrono;
    const auto now =
        static_cast<std::uint32_t>(duration_cast<milliseconds>(steady_clock::now() - opened).count());
    // RtMidi leaves real-time bytes inside the sysex that they came between.
    if (bytes.size() > 1 && bytes[0] == 0xF0) {
      const auto realTime = [](unsigned char byte) { return byte >= 0xF8; };
      for (const unsigned char& byte : bytes) {
        if (realTime(byte)) {
          take(now, std::span(&byte, 1));
        }
      }
      std::erase_if(bytes, realTime);
    }
    ForEachMessage(bytes, [&](std::span<const std::uint8_t> message) { take(now, message); });
  }

  const TDriverInputCallback take;
  const std::chrono::steady_clock::time_point opened;
  std::atomic<bool> ready{false};  ///< hands all of this over to RtMidi's thread
};

class RtMidiInput : public IDriverInput {
 public:
  /// `server`: JACK's, null for ALSA.
  RtMidiInput(std::unique_ptr<Receiver> receiving, const std::string& portName,
              std::shared_ptr<JackWatch> server)
      : receiver(std::move(receiving)), watch(std::move(server)) {
    const std::vector<std::string> names = PortsOf(receiver->In);
    const auto found = std::find(names.begin(), names.end(), portName);
    if (found == names.end()) {
      throw TDriverError(BadDeviceId, "The MIDI port is gone.");
    }
    receiver->In.openPort(static_cast<unsigned>(found - names.begin()), "in");
    if (watch != nullptr) {
      watch->AwaitCycles();
    }
  }

  ~RtMidiInput() override {
    if (watch != nullptr && !watch->Alive()) {
      receiver->In.cancelCallback();
      Abandon(std::move(receiver));
    }
  }

 private:
  std::unique_ptr<Receiver> receiver;
  std::shared_ptr<JackWatch> watch;
};

}  // namespace

struct RtMidiDriver::Session {
  RtMidi::Api Api;
  std::shared_ptr<JackWatch> Watch;      ///< of JACK
  std::unique_ptr<RtMidiIn> InLister;    ///< of ALSA
  std::unique_ptr<RtMidiOut> OutLister;  ///< of ALSA

  [[nodiscard]] bool Alive() const { return Watch == nullptr || Watch->Alive(); }

  [[nodiscard]] std::vector<std::string> Ports(bool ofOutputs) const {
    if (Watch != nullptr) {
      // What receives is an input of its own client and an output to us.
      return Watch->Ports(ofOutputs);
    }
    return ofOutputs ? PortsOf(*OutLister) : PortsOf(*InLister);
  }

  static std::unique_ptr<Session> Alsa(const std::string& client) {
    // ALSA's library prints that there is no sequencer; looking first keeps it quiet.
    if (access("/dev/snd/seq", R_OK | W_OK) != 0) {
      return nullptr;
    }
    try {
      auto session = std::make_unique<Session>(Session{RtMidi::LINUX_ALSA, nullptr, nullptr, nullptr});
      session->InLister = std::make_unique<RtMidiIn>(RtMidi::LINUX_ALSA, client, 1);
      session->OutLister = std::make_unique<RtMidiOut>(RtMidi::LINUX_ALSA, client);
      session->InLister->setErrorCallback(&Ignore, nullptr);
      session->OutLister->setErrorCallback(&Ignore, nullptr);
      return session;
    } catch (const RtMidiError&) {
      return nullptr;
    }
  }

  static std::unique_ptr<Session> Jack(const std::string& client) {
    auto watch = JackWatch::Connect(client);
    if (watch == nullptr) {
      return nullptr;
    }
    return std::make_unique<Session>(Session{RtMidi::UNIX_JACK, std::move(watch), nullptr, nullptr});
  }
};

namespace {

std::vector<std::string> WithoutOurs(std::vector<std::string> names, const std::string& client) {
  std::erase_if(names, [&](const std::string& name) { return name.starts_with(client); });
  return names;
}

const std::string& NameOf(const std::vector<std::string>& names, int device) {
  if (device < 0 || static_cast<std::size_t>(device) >= names.size()) {
    throw TDriverError(BadDeviceId, "There is no MIDI device of this number.");
  }
  return names[static_cast<std::size_t>(device)];
}

}  // namespace

RtMidiDriver::RtMidiDriver(std::string clientName, TSystem system)
    : client(std::move(clientName)), wanted(system) {
  Current();
}

RtMidiDriver::~RtMidiDriver() = default;

RtMidiDriver::Session* RtMidiDriver::Current() {
  if (session != nullptr && !session->Alive()) {
    session.reset();
  }
  if (session == nullptr && wanted != TSystem::Jack) {
    session = Session::Alsa(client);
  }
  if (session == nullptr && wanted != TSystem::Alsa) {
    session = Session::Jack(client);
  }
  return session.get();
}

std::string RtMidiDriver::ApiName() const {
  if (session == nullptr || !session->Alive()) {
    return "none";
  }
  return session->Api == RtMidi::UNIX_JACK ? "JACK" : "ALSA";
}

std::vector<std::string> RtMidiDriver::InputNames() {
  const Session* const current = Current();
  inputs = current == nullptr ? std::vector<std::string>{} : WithoutOurs(current->Ports(false), client);
  return inputs;
}

std::vector<std::string> RtMidiDriver::OutputNames() {
  const Session* const current = Current();
  outputs = current == nullptr ? std::vector<std::string>{} : WithoutOurs(current->Ports(true), client);
  return outputs;
}

std::unique_ptr<IDriverOutput> RtMidiDriver::OpenOutput(int device) {
  const std::string& name = NameOf(outputs, device);
  const Session* const current = Current();
  if (current == nullptr) {
    throw TDriverError(BadDeviceId, "There is no MIDI system.");
  }
  return OpenRtMidiOutput(client, name, current->Watch);
}

std::unique_ptr<IDriverInput> RtMidiDriver::OpenInput(int device, TDriverInputCallback callback) {
  const std::string& name = NameOf(inputs, device);
  const Session* const current = Current();
  if (current == nullptr) {
    throw TDriverError(BadDeviceId, "There is no MIDI system.");
  }
  try {
    return std::make_unique<RtMidiInput>(
        std::make_unique<Receiver>(current->Api, client, std::move(callback)), name, current->Watch);
  } catch (const RtMidiError& error) {
    throw TDriverError(NotReady, error.getMessage());
  }
}

}  // namespace Sonarello
