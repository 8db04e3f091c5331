// Sonarello: what the writer puts in front of a song's events: names, route markers, resets.
#pragma once

#include <cstddef>
#include <span>

#include "core/Options.h"
#include "core/OutputTracks.h"
#include "core/OwnNodes.h"
#include "core/Ports.h"

namespace Sonarello {

/// The routes of a song while it is written.
class OutputRoutes {
 public:
  OutputRoutes(const Song& s, const Options& options, std::span<const TMidiRouting> routes);

  /// True with several routes of which a channel uses another one than route 0.
  [[nodiscard]] bool Several() const noexcept { return several; }
  /// Index of a channel's route (channel 0-15); 0 for a channel that points at no route.
  [[nodiscard]] std::size_t IndexOf(int channel) const noexcept;
  [[nodiscard]] const TMidiRouting& operator[](std::size_t route) const { return table[route]; }
  [[nodiscard]] std::size_t Count() const noexcept { return table.size(); }

 private:
  const Song& song;
  std::span<const TMidiRouting> table;
  bool several;
};

/// Index of the output track that the song's sysexes and effects go to.
[[nodiscard]] std::size_t SysexTargetOf(const TOutputPlan& plan, const Song& song,
                                        const OutputRoutes& routes, bool sysexsOnExtraTrack);

/// Everything that the front of the tracks is made from.
struct TFrontSources {
  const Song& song;
  const Options& options;
  const SongHooks& hooks;
  const OutputRoutes& routes;
  const DeskCopy& desk;
  const std::string& songName;
};

/// Fills the front of each track of the plan that is written. The heads are not part of it.
void AddFronts(TOutputPlan& plan, const TFrontSources& from, OwnNodes& nodes);

/// The reset that an instrument (catalogue number) wants in a file, bytes behind the 0xF0; empty for
/// one that wants none.
[[nodiscard]] std::span<const std::uint8_t> RouteResetOf(int instrumValue);

}  // namespace Sonarello
