// Another program on the JACK server, as a test sees it.
#pragma once

#include <jack/jack.h>
#include <jack/midiport.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <cstring>
#include <deque>
#include <mutex>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace Sonarello {

/// A client with a MIDI input "in" and a MIDI output "out". Writes down each event that comes, and
/// when.
class JackPeer {
 public:
  using TBytes = std::vector<std::uint8_t>;
  using TClock = std::chrono::steady_clock;

  explicit JackPeer(const std::string& name) : log(LogSize) {
    jack_status_t status{};
    client = jack_client_open(name.c_str(), JackNoStartServer, &status);
    if (client == nullptr) {
      throw std::runtime_error("no JACK server for " + name);
    }
    in = jack_port_register(client, "in", JACK_DEFAULT_MIDI_TYPE, JackPortIsInput, 0);
    out = jack_port_register(client, "out", JACK_DEFAULT_MIDI_TYPE, JackPortIsOutput, 0);
    jack_set_process_callback(
        client,
        [](jack_nframes_t frames, void* self) {
          static_cast<JackPeer*>(self)->Process(frames);
          return 0;
        },
        this);
    jack_activate(client);
  }
  ~JackPeer() { jack_client_close(client); }
  JackPeer(const JackPeer&) = delete;
  JackPeer& operator=(const JackPeer&) = delete;

  /// Sends events, each as it is, in order; those that find no room in a cycle go in the next.
  void Send(const TBytes& event) {
    const std::lock_guard lock(sending);
    toSend.push_back(event);
  }
  [[nodiscard]] bool AllSent() {
    const std::lock_guard lock(sending);
    return toSend.empty();
  }

  /// Events that have come so far.
  [[nodiscard]] std::size_t Count() const { return count.load(std::memory_order_acquire); }
  /// Waits until so many events have come; false if they do not.
  [[nodiscard]] bool WaitFor(std::size_t events, int milliseconds = 10'000) const {
    return Until([&] { return Count() >= events; }, milliseconds);
  }
  [[nodiscard]] std::size_t Bytes() const { return used.load(std::memory_order_acquire); }
  [[nodiscard]] bool WaitForBytes(std::size_t bytes, int milliseconds = 10'000) const {
    return Until([&] { return Bytes() >= bytes; }, milliseconds);
  }

  /// The events so far, each by itself and all in one row of bytes.
  [[nodiscard]] std::vector<TBytes> Events() const {
    std::vector<TBytes> events;
    std::size_t at = 0;
    for (std::size_t i = 0, n = Count(); i < n; ++i) {
      const auto begin = log.begin() + static_cast<std::ptrdiff_t>(at);
      events.emplace_back(begin, begin + static_cast<std::ptrdiff_t>(sizes[i]));
      at += sizes[i];
    }
    return events;
  }
  [[nodiscard]] TBytes Row() const {
    return {log.begin(), log.begin() + static_cast<std::ptrdiff_t>(Bytes())};
  }
  [[nodiscard]] TClock::time_point CameAt(std::size_t event) const { return times[event]; }
  void Forget() {
    count.store(0);
    used.store(0);
  }

  template <class F>
  static bool Until(F&& true_, int milliseconds) {
    const auto end = TClock::now() + std::chrono::milliseconds(milliseconds);
    while (!true_()) {
      if (TClock::now() > end) {
        return false;
      }
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
  }

 private:
  static constexpr std::size_t LogSize = 1'000'000;

  void Process(jack_nframes_t frames) {
    void* const incoming = jack_port_get_buffer(in, frames);
    std::size_t events = count.load(std::memory_order_acquire);
    std::size_t bytes = used.load(std::memory_order_acquire);
    for (jack_nframes_t i = 0; i < jack_midi_get_event_count(incoming); ++i) {
      jack_midi_event_t event;
      if (jack_midi_event_get(&event, incoming, i) != 0 || bytes + event.size > LogSize) {
        continue;
      }
      std::copy_n(event.buffer, event.size, log.begin() + static_cast<std::ptrdiff_t>(bytes));
      bytes += event.size;
      sizes[events] = event.size;
      times[events++] = TClock::now();
    }
    used.store(bytes, std::memory_order_release);
    count.store(events, std::memory_order_release);
    Emit(jack_port_get_buffer(out, frames));
  }

  void Emit(void* outgoing) {
    jack_midi_clear_buffer(outgoing);
    const std::unique_lock lock(sending, std::try_to_lock);
    std::size_t bytes = 0;
    while (lock && !toSend.empty() && bytes < 20'000) {
      const TBytes& event = toSend.front();
      if (jack_midi_event_write(outgoing, 0, event.data(), event.size()) != 0) {
        return;
      }
      bytes += event.size();
      toSend.pop_front();
      if (++inCycle % 200 == 0) {
        return;
      }
    }
  }

  jack_client_t* client = nullptr;
  jack_port_t* in = nullptr;
  jack_port_t* out = nullptr;
  TBytes log;
  std::vector<std::size_t> sizes = std::vector<std::size_t>(LogSize);
  std::vector<TClock::time_point> times = std::vector<TClock::time_point>(LogSize);
  std::atomic<std::size_t> used{0};
  std::atomic<std::size_t> count{0};
  std::mutex sending;
  std::deque<TBytes> toSend;
  int inCycle = 0;
};

}  // namespace Sonarello
