#include "Songs.h"

#include <algorithm>
#include <array>
#include <initializer_list>
#include <string>
#include <tuple>

namespace Sonarello::Bench {

namespace {

constexpr int TimeBase = 480;
constexpr int ChannelCount = 16;

/// xorshift64* (Vigna 2016): the same songs on every machine.
class Dice {
 public:
  int Below(int n) {
    state ^= state >> 12;
    state ^= state << 25;
    state ^= state >> 27;
    return static_cast<int>((state * 0x2545F4914F6CDD1DU >> 33) % static_cast<std::uint64_t>(n));
  }

 private:
  std::uint64_t state = 88172645463325252U;
};

/// Collects events in any order and writes them as a file of format 1.
class Score {
 public:
  explicit Score(int tracks) : count(tracks) {}

  void Put(int track, int tick, std::string_view bytes) {
    events.push_back({track, tick, static_cast<int>(events.size()), std::string(bytes)});
  }
  void Put(int track, int tick, std::initializer_list<int> bytes) {
    std::string text;
    for (const int b : bytes) text.push_back(static_cast<char>(b));
    Put(track, tick, text);
  }
  [[nodiscard]] int Size() const { return static_cast<int>(events.size()); }

  [[nodiscard]] Bytes File() {
    std::sort(events.begin(), events.end(), [](const Event& a, const Event& b) {
      return std::tie(a.track, a.tick, a.order) < std::tie(b.track, b.tick, b.order);
    });
    Bytes out;
    Append(out, {'M', 'T', 'h', 'd', 0, 0, 0, 6, 0, 1, count >> 8, count & 255, TimeBase >> 8,
                 TimeBase & 255});
    auto event = events.cbegin();
    for (int track = 0; track < count; ++track) {
      Append(out, {'M', 'T', 'r', 'k', 0, 0, 0, 0});
      const std::size_t start = out.size();
      for (int last = 0; event != events.cend() && event->track == track; last = (event++)->tick) {
        AppendDelta(out, event->tick - last);
        out.insert(out.end(), event->bytes.begin(), event->bytes.end());
      }
      Append(out, {0, 0xFF, 0x2F, 0});
      const std::size_t length = out.size() - start;
      for (std::size_t i = 0; i < 4; ++i)
        out[start - 4 + i] = static_cast<std::uint8_t>(length >> (24 - 8 * i));
    }
    return out;
  }

 private:
  struct Event {
    int track;
    int tick;
    int order;
    std::string bytes;
  };

  static void Append(Bytes& out, std::initializer_list<int> bytes) {
    for (const int b : bytes) out.push_back(static_cast<std::uint8_t>(b));
  }
  static void AppendDelta(Bytes& out, int delta) {
    for (int shift = 21; shift > 0; shift -= 7)
      if (delta >> shift != 0) out.push_back(static_cast<std::uint8_t>(0x80 | (delta >> shift & 0x7F)));
    out.push_back(static_cast<std::uint8_t>(delta & 0x7F));
  }

  int count;
  std::vector<Event> events;
};

void PutSetup(Score& score) {
  score.Put(0, 0, {0xFF, 0x03, 4, 'S', 'o', 'n', 'g'});
  score.Put(0, 0, {0xFF, 0x51, 3, 0x07, 0xA1, 0x20});
  score.Put(0, 0, {0xFF, 0x58, 4, 4, 2, 24, 8});
  score.Put(0, 0, {0xF0, 5, 0x7E, 0x7F, 9, 1, 0xF7});
  for (int channel = 0; channel < 16; ++channel) {
    score.Put(channel + 1, 0, {0xFF, 0x03, 4, 'P', 'a', 'r', 't'});
    for (const int controller : {0, 32, 7, 10, 91, 93})
      score.Put(channel + 1, 40 + channel, {0xB0 | channel, controller, controller == 7 ? 100 : 0});
    score.Put(channel + 1, 41 + channel, {0xC0 | channel, channel == 9 ? 0 : channel * 7});
  }
}

/// Keys that sound, so that no two notes of a key overlap.
using BusyUntil = std::array<std::array<int, 128>, 16>;

void PutNote(Score& score, Dice& dice, BusyUntil& busy, int channel, int tick) {
  int key = 30 + dice.Below(60);
  auto& until = busy[static_cast<std::size_t>(channel)];
  while (until[static_cast<std::size_t>(key)] >= tick) key = (key + 1) & 127;
  const int end = tick + 60 + dice.Below(120);
  until[static_cast<std::size_t>(key)] = end;
  score.Put(channel + 1, tick, {0x90 | channel, key, 1 + dice.Below(127)});
  score.Put(channel + 1, end, {0x80 | channel, key, 64});
}

void PutOther(Score& score, Dice& dice, int channel, int tick) {
  const int what = dice.Below(28);
  const auto put = [&](std::initializer_list<int> bytes) { score.Put(channel + 1, tick, bytes); };
  constexpr std::array Controllers = {1, 7, 10, 11, 64, 71, 74, 91};
  if (what < 12)
    put({0xB0 | channel, Controllers[static_cast<std::size_t>(dice.Below(8))], dice.Below(128)});
  else if (what < 20)
    put({0xE0 | channel, dice.Below(128), dice.Below(128)});
  else if (what < 23)
    put({0xD0 | channel, dice.Below(128)});
  else if (what < 24)
    put({0xA0 | channel, 40 + dice.Below(40), dice.Below(128)});
  else if (what < 26)
    score.Put(0, tick, {0xFF, 0x05, 3, 'l', 'a', ' '});
  else if (what < 27)
    score.Put(0, tick, {0xF0, 8, 0x43, 0x10, 0x4C, 8, dice.Below(16), 11, dice.Below(128), 0xF7});
  else
    put({0xC0 | channel, dice.Below(128)});
}

Bytes OneTickSong(int size) {
  Score score(17);
  PutSetup(score);
  for (int i = 0; i < size / 2; ++i) {
    const int channel = i % 16;
    score.Put(channel + 1, 960, {0x90 | channel, 36 + i / 16 % 60, 100});
    score.Put(channel + 1, 960, {0x80 | channel, 36 + i / 16 % 60, 64});
  }
  return score.File();
}

Bytes ProgramSong(int size) {
  Score score(17);
  PutSetup(score);
  for (int i = 0; i < size; ++i) score.Put(1, 480 + 20 * i, {0xC0, i % 128});
  score.Put(1, 480, {0x90, 60, 100});
  score.Put(1, 960, {0x80, 60, 64});
  return score.File();
}

Bytes SysexSong(int size) {
  Score score(17);
  PutSetup(score);
  for (int i = 0; i < size; ++i) {
    const int tick = 60 + static_cast<int>(std::int64_t{i} * 3600 / size);
    if (i % 2 == 0)
      score.Put(2, tick, {0xF0, 8, 0x43, 0x10, 0x4C, 8, i % 16, 11, i % 128, 0xF7});
    else
      score.Put(2, tick, {0xF0, 10, 0x41, 0x10, 0x42, 0x12, 0x40, 0x10 | i % 16, 0x15, i % 3, 0, 0xF7});
  }
  score.Put(2, 7680, {0x91, 60, 100});
  score.Put(2, 8000, {0x81, 60, 64});
  return score.File();
}

Bytes TempoSong(int size) {
  Score score(17);
  PutSetup(score);
  for (int i = 0; i < size; ++i) {
    score.Put(0, 480 + 24 * i, {0xFF, 0x51, 3, 7, i >> 8 & 255, i & 255});
    const int channel = i % 16;
    score.Put(channel + 1, 480 + 24 * i, {0x90 | channel, 60, 90});
    score.Put(channel + 1, 490 + 24 * i, {0x80 | channel, 60, 64});
  }
  return score.File();
}

Bytes TrackSong(int size) {
  Score score(size);
  for (int i = 0; i < size; ++i) score.Put(i, 480 + i, {0xB0 | i % 16, 7, i % 128});
  return score.File();
}

Bytes OverlapSong(int size) {
  Score score(2);
  for (int i = 0; i < size; ++i) {
    score.Put(1, 480 + i, {0x90, 60, 100});
    score.Put(1, 480 + i + size / 2, {0x80, 60, 64});
  }
  return score.File();
}

}  // namespace

namespace {

Bytes Mixture(int events, int channels) {
  Score score(17);
  PutSetup(score);
  Dice dice;
  BusyUntil busy{};
  int tick = TimeBase;
  for (int i = 0; score.Size() < events - 17; ++i) {
    if (i % 4096 == 0)
      score.Put(0, tick, {0xFF, 0x51, 3, 5 + dice.Below(6), dice.Below(256), dice.Below(256)});
    if (i % 16384 == 0) score.Put(0, tick, {0xFF, 0x58, 4, 3 + dice.Below(3), 2, 24, 8});
    const int channel = dice.Below(channels);
    if (dice.Below(100) < 72)
      PutNote(score, dice, busy, channel, tick);
    else
      PutOther(score, dice, channel, tick);
    if (dice.Below(3) == 0) tick += 31;
  }
  return score.File();
}

}  // namespace

Bytes MixedSong(int events) { return Mixture(events, ChannelCount); }

Bytes OneTrackSong(int events) { return Mixture(events, 1); }

const std::vector<Shape>& AwkwardShapes() {
  static const std::vector<Shape> shapes = {
      {"all events at one tick", 1'000'000, OneTickSong},
      {"program changes on one channel", 100'000, ProgramSong},
      {"sysexes in the first eight beats", 100'000, SysexSong},
      {"tempo changes", 50'000, TempoSong},
      {"one-event tracks", 65'000, TrackSong},
      {"overlapping notes of one key", 500'000, OverlapSong},
  };
  return shapes;
}

}  // namespace Sonarello::Bench
