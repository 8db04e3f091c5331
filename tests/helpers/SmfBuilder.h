// Writes the bytes of Standard MIDI Files in a readable notation, for tests.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string_view>
#include <vector>

namespace Sonarello {

using Bytes = std::vector<std::uint8_t>;

/// A file under construction: Smf(1, 480).Track().At(0).Tempo(500000).At(480).On(1, 60, 100)...
/// Positions are absolute ticks and must not go back inside a track; channels count from 1.
class Smf {
 public:
  explicit Smf(int fileFormat = 1, int timeBase = 480) : format(fileFormat), division(timeBase) {}

  Smf& Track() {
    tracks.emplace_back();
    tick = last = 0;
    return *this;
  }
  Smf& At(std::int64_t position) {
    tick = position;
    return *this;
  }
  Smf& On(int channel, int key, int velocity = 100) {
    return Event({0x90 + channel - 1, key, velocity});
  }
  Smf& Off(int channel, int key, int velocity = 64) {
    return Event({0x80 + channel - 1, key, velocity});
  }
  Smf& Note(int channel, int key, std::int64_t from, std::int64_t to, int velocity = 100) {
    return At(from).On(channel, key, velocity).At(to).Off(channel, key);
  }
  Smf& Ctrl(int channel, int controller, int value) {
    return Event({0xB0 + channel - 1, controller, value});
  }
  Smf& Prog(int channel, int program) { return Event({0xC0 + channel - 1, program}); }
  Smf& Bend(int channel, int lsb, int msb) { return Event({0xE0 + channel - 1, lsb, msb}); }
  /// Bytes behind 0xF0, with the closing 0xF7.
  Smf& Sysex(std::initializer_list<int> bytes) { return Long({0xF0}, bytes); }
  Smf& Escape(std::initializer_list<int> bytes) { return Long({0xF7}, bytes); }
  Smf& Meta(int type, std::initializer_list<int> bytes) { return Long({0xFF, type}, bytes); }
  Smf& Text(int type, std::string_view text) {
    Delta();
    Put({0xFF, type});
    Vlq(text.size());
    for (const char c : text) Put({static_cast<unsigned char>(c)});
    return *this;
  }
  Smf& Tempo(int micros) { return Meta(0x51, {micros >> 16 & 255, micros >> 8 & 255, micros & 255}); }
  Smf& Time(int numerator, int exponent) { return Meta(0x58, {numerator, exponent, 24, 8}); }
  /// Any bytes behind a delta to the current position.
  Smf& Event(std::initializer_list<int> bytes) {
    Delta();
    return Put(bytes);
  }
  /// Any bytes without a delta.
  Smf& Put(std::initializer_list<int> bytes) {
    for (const int b : bytes) tracks.back().push_back(static_cast<std::uint8_t>(b));
    return *this;
  }
  Smf& End() { return Event({0xFF, 0x2F, 0}); }
  /// Number of tracks for the header where it shall differ from the chunks'.
  Smf& Claims(int count) {
    claimed = count;
    return *this;
  }

  [[nodiscard]] Bytes Build() const {
    const int count = claimed >= 0 ? claimed : static_cast<int>(tracks.size());
    Bytes out = {'M', 'T', 'h', 'd', 0, 0, 0, 6};
    for (const int word : {format, count, division}) {
      out.push_back(static_cast<std::uint8_t>(word >> 8));
      out.push_back(static_cast<std::uint8_t>(word));
    }
    for (const Bytes& track : tracks) {
      out.insert(out.end(), {'M', 'T', 'r', 'k'});
      for (int shift = 24; shift >= 0; shift -= 8)
        out.push_back(static_cast<std::uint8_t>(track.size() >> shift));
      out.insert(out.end(), track.begin(), track.end());
    }
    return out;
  }

 private:
  void Vlq(std::uint64_t value) {
    Bytes reversed = {static_cast<std::uint8_t>(value & 127)};
    while (value >>= 7) reversed.push_back(static_cast<std::uint8_t>(0x80 | (value & 127)));
    tracks.back().insert(tracks.back().end(), reversed.rbegin(), reversed.rend());
  }
  void Delta() {
    Vlq(static_cast<std::uint64_t>(tick - last));
    last = tick;
  }
  Smf& Long(std::initializer_list<int> head, std::initializer_list<int> bytes) {
    Delta();
    Put(head);
    Vlq(bytes.size());
    return Put(bytes);
  }

  int format;
  int division;
  int claimed = -1;
  std::vector<Bytes> tracks;
  std::int64_t tick = 0;
  std::int64_t last = 0;
};

}  // namespace Sonarello
