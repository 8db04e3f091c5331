// Sonarello: what `show` tells of an opened song, gathered once for both its forms.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "Composition.h"

namespace Sonarello {

/// The controllers of the desk, in the order of its knobs.
inline constexpr std::array<int, 11> DeskControllers = {7, 10, 11, 71, 72, 73, 74, 91, 93, 94, 1};

/// A controller, bank select or program of a channel. A placeholder stands on the desk only: it is
/// neither played nor saved.
struct DeskValue {
  int Value = 0;
  bool Placeholder = false;
};

struct ChannelFacts {
  int Channel = 0;  ///< 1-16
  bool Active = false;
  int Output = 0;  ///< output channel, 1-16
  int Route = 0;
  std::optional<DeskValue> BankMSB, BankLSB, Program;  ///< as stored, 0-127
  std::string Sound;                                   ///< in the instrument's terms; empty without
  int DrumPart = 0;                                    ///< 0 melodic
  int Notes = 0;
  std::array<std::optional<DeskValue>, DeskControllers.size()> Controllers;
};

/// A place in the song.
struct Place {
  std::int32_t Tick = 0;
  std::string Text;  ///< measure.beat.tick
  std::int32_t Milliseconds = 0;
};

struct TempoFacts {
  Place At;
  double Bpm = 0;
};

struct SignatureFacts {
  Place At;
  int Numerator = 0;
  int Denominator = 0;
};

struct CountInFacts {
  int Channel = 0;  ///< 1-16
  int Notes = 0;
  Place First, Last;
};

struct SongFacts {
  std::string Title;  ///< bytes as in the file
  int FormatRead = 0;
  int FormatWorking = 0;
  int Tracks = 0;
  int TimeBase = 0;
  std::vector<TempoFacts> Tempi;
  std::vector<SignatureFacts> Signatures;
  int Measures = 0;
  Place End;
  std::optional<Place> FirstNote;
  std::optional<CountInFacts> CountIn;
  std::array<ChannelFacts, ChannelCount> Channels;
};

[[nodiscard]] SongFacts GatherFacts(const SongDesk& desk);
[[nodiscard]] Place PlaceOf(const Song& song, std::int32_t tick);

/// A time as minutes, seconds and milliseconds, such as "3:05.250".
[[nodiscard]] std::string TimeText(std::int32_t milliseconds);

/// The song as text and as JSON, and what fitting changed in it; each ends with a line break.
[[nodiscard]] std::string SongText(const SongDesk& desk, const std::string& file);
[[nodiscard]] std::string ChangesText(const SongDesk& desk);
[[nodiscard]] std::string SongJson(const SongDesk& desk, const std::string& file, bool changes);

/// The changes in the order of tracks and positions.
[[nodiscard]] std::vector<TChange> ChangesInOrder(const SongDesk& desk);
/// A kind of change in the user's language.
[[nodiscard]] std::string KindText(ChangeKind kind);

}  // namespace Sonarello
