#include "playback/drivers/JackWatch.h"

#include <jack/jack.h>

#include <atomic>
#include <chrono>
#include <thread>
#include <utility>

namespace Sonarello {

struct JackWatch::State {
  jack_client_t* client = nullptr;
  std::atomic<bool> alive{true};
  std::atomic<std::uint32_t> cycles{0};
};

std::shared_ptr<JackWatch> JackWatch::Connect(const std::string& clientName) {
  static std::once_flag silenced;
  std::call_once(silenced, [] {
    jack_set_error_function([](const char*) {});
    jack_set_info_function([](const char*) {});
  });
  jack_status_t status{};
  auto state = std::make_unique<State>();
  State* const raw = state.get();
  raw->client = jack_client_open(clientName.c_str(), JackNoStartServer, &status);
  if (raw->client == nullptr) {
    return nullptr;
  }
  std::shared_ptr<JackWatch> watch(new JackWatch(std::move(state)));
  jack_set_process_callback(
      raw->client,
      [](jack_nframes_t, void* s) {
        static_cast<State*>(s)->cycles.fetch_add(1, std::memory_order_release);
        return 0;
      },
      raw);
  jack_on_shutdown(
      raw->client,
      [](void* s) { static_cast<State*>(s)->alive.store(false, std::memory_order_release); }, raw);
  return jack_activate(raw->client) == 0 ? watch : nullptr;
}

JackWatch::JackWatch(std::unique_ptr<State> opened) : state(std::move(opened)) {}

JackWatch::~JackWatch() {
  if (Alive()) {
    jack_client_close(state->client);
  } else {
    Abandon(std::move(state));
  }
}

bool JackWatch::Alive() const noexcept { return state->alive.load(std::memory_order_acquire); }

std::uint32_t JackWatch::Cycles() const noexcept {
  return state->cycles.load(std::memory_order_acquire);
}

void JackWatch::AwaitCycles() const {
  using namespace std::chrono_literals;
  const std::uint32_t from = Cycles();
  const auto end = std::chrono::steady_clock::now() + 1s;
  while (Cycles() - from < ConnectionDelay && Alive() && std::chrono::steady_clock::now() < end) {
    std::this_thread::sleep_for(500us);
  }
}

bool JackWatch::HasPort(const std::string& name) const {
  return jack_port_by_name(state->client, name.c_str()) != nullptr;
}

std::vector<std::string> JackWatch::Ports(bool inputs) const {
  std::vector<std::string> names;
  const char** const ports = jack_get_ports(state->client, nullptr, JACK_DEFAULT_MIDI_TYPE,
                                            inputs ? JackPortIsInput : JackPortIsOutput);
  for (const char** port = ports; port != nullptr && *port != nullptr; ++port) {
    names.emplace_back(*port);
  }
  jack_free(ports);
  return names;
}

}  // namespace Sonarello
