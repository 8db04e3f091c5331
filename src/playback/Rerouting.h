// Sonarello: a channel is given another output.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "core/Options.h"
#include "core/Ports.h"
#include "core/Song.h"
#include "playback/Routes.h"
#include "playback/SongGate.h"

namespace Sonarello {

/// The two bank controllers that make a channel of an instrument play drums.
struct TDrumBank {
  std::uint8_t MSB = 0;
  std::uint8_t LSB = 0;
  bool SendsLSB = true;  ///< else the song's event of the LSB is marked as removed

  friend bool operator==(const TDrumBank&, const TDrumBank&) = default;
};

/// The drum bank of an instrument by its catalogue number. `defaultMap` is the GS map from 1 that
/// stands for LSB 0 on the instruments that have maps, 0 without a choice.
[[nodiscard]] TDrumBank DrumBankOf(int instrumValue, int defaultMap) noexcept;

/// The routes as the user chooses one for the active channel.
struct TRouteMenu {
  struct TItem {
    std::string Text;
    bool Checked = false;  ///< the route that the channel uses now
  };
  std::string Head;  ///< a line that cannot be chosen
  std::vector<TItem> Items;
};

/// A route as the user reads it: its instrument on its output.
[[nodiscard]] std::string RouteText(const TMidiRouting& route);

/// The menu line of a drum editor (1-3) that shows a kit on a channel (0-15). With several routes the
/// instrument that it plays on stands in front.
[[nodiscard]] std::string DrumEditorText(int editor, const std::string& kit, int channel,
                                         std::span<const TMidiRouting> routes, std::size_t route);

/// What re-routing asks of those above. Called without the gate; unset ones do nothing.
struct TReroutingHooks {
  std::function<void(int instrumValue)> CancelBrowser;  ///< sound browser of the old instrument
  std::function<void(int instrumValue)> CreateBrowser;  ///< tables and browser of the new instrument
  std::function<void(int channel)> ShowSound;           ///< name and drum editors of a channel
  std::function<void()> WakePlayer;                     ///< hosted instruments are in use
  std::function<void(std::size_t route)> ShowRoute;     ///< the panel follows the route
  std::function<void()> Changed;                        ///< the song wants a backup
};

/// Everything of re-routing runs on the main thread.
class TRerouting {
 public:
  TRerouting(Song& s, TRoutes& r, const Options& o, IMessages& m, SongGate& g)
      : song(s), routes(r), options(o), messages(m), gate(g) {}

  TReroutingHooks Hooks;
  bool SetAllMidiOuts = false;           ///< the next choice is for all channels
  std::uint8_t LastRoutedChannel = 255;  ///< channel of the track that got a delay last; 255: none

  /// The menu for the active channel; `all` for a choice that goes for all channels. Nothing without a
  /// song, without several routes and, with a word to the user, during playback.
  [[nodiscard]] std::optional<TRouteMenu> Menu(bool isPlaying, bool all);
  /// Gives the active channel, or all of them, a route by its index. False if that is refused.
  bool Choose(std::size_t route, bool isPlaying);

 private:
  [[nodiscard]] bool IsOffered() const;
  bool RefuseWhilePlaying(bool isPlaying);
  void Assign(int channel, std::size_t route);
  void SetDrumBank(TMidiChannelData& channel, const TMidiRouting& route) const;

  Song& song;
  TRoutes& routes;
  const Options& options;
  IMessages& messages;
  SongGate& gate;
};

}  // namespace Sonarello
