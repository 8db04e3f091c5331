// Sonarello: how the sounds of a saved song fit its instrument, gathered once for both forms.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <vector>

#include "JsonParts.h"
#include "SongFacts.h"

namespace Sonarello {

enum class SoundState {
  None,    ///< the channel is not in use or has no program
  Fits,    ///< as the song had it
  Mended,  ///< the instrument lacks what the song had
  Unknown,
};

/// A channel's sound as saved.
struct FitChannel {
  int Channel = 0;  ///< 1-16
  TAddress Address;
  std::string Name;  ///< empty without sound
  SoundState State = SoundState::None;
};

/// Sound changes of one channel that ask for one sound which the instrument lacks.
struct FitFinding {
  int Channel = 0;  ///< 1-16
  TAddress Asked;
  std::string AskedName;  ///< the instrument's words for it
  TAddress Given;         ///< as saved
  std::string Name;       ///< of `Given`
  bool Mended = false;
  std::vector<Place> Places;
};

struct FitReport {
  std::string Title;  ///< bytes as in the file
  std::array<FitChannel, ChannelCount> Channels;
  std::vector<FitFinding> Mended;
  std::vector<FitFinding> Unknown;
  std::size_t MendedPlaces = 0;
  std::size_t UnknownPlaces = 0;
};

[[nodiscard]] FitReport GatherFit(const SongDesk& desk, const Setup& setup);

/// The report as a page of text, and as members of a JSON object.
[[nodiscard]] std::string FitText(const FitReport& report, const SongDesk& desk,
                                  const std::string& source, const std::string& target);
[[nodiscard]] Json FitJson(const FitReport& report, const SongDesk& desk);

}  // namespace Sonarello
