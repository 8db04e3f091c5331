// Sonarello: what the settings window works on: the values while they are edited, and what follows.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "core/Options.h"
#include "desk/DeskSettings.h"
#include "desk/MyRegistry.h"
#include "playback/Routes.h"

namespace Sonarello {

/// What the program must do anew after a change of settings.
enum class TOptionChange : std::uint8_t {
  Language = 1,  ///< from the next start on
  Theme = 2,
  Scale = 4,
  Routes = 8,           ///< the routes are built anew
  MainInstrument = 16,  ///< with the routes: the song should be loaded again
  Sounds = 32,          ///< the sound lists are read anew
  Recording = 64,       ///< MIDI input, recording
  Display = 128,        ///< meters, lyrics, chords
  Other = 0
};

/// A set of `TOptionChange`, and the keys whose values changed.
struct TOptionChanges {
  unsigned Flags = 0;
  std::vector<std::string> Keys;

  [[nodiscard]] bool Has(TOptionChange change) const noexcept {
    return (Flags & static_cast<unsigned>(change)) != 0;
  }
  [[nodiscard]] bool IsEmpty() const noexcept { return Keys.empty(); }
};

/// A route as the user edits it.
struct TEditedRoute {
  std::string Instrument;
  std::string OutputName;
  bool operator==(const TEditedRoute&) const = default;
};

/// What the settings window is given.
struct TOptionsInput {
  Options SongOptions;
  DeskSettings Desk;
  std::array<TEditedRoute, MostRoutes> Routes;
  std::vector<std::string> Outputs;  ///< names of what is connected, in the order shown
  std::vector<std::string> Inputs;
};

/// What is stored, for the window: all of it, and the outputs and inputs that are connected.
[[nodiscard]] TOptionsInput LoadOptionsInput(const ISettings& settings,
                                             std::vector<std::string> outputs,
                                             std::vector<std::string> inputs);

/// A copy of the settings under the user's hands.
class OptionsEdit {
 public:
  explicit OptionsEdit(TOptionsInput input);

  /// The value of a key as text: 0 or 1 of a flag.
  [[nodiscard]] std::string Value(std::string_view key) const;
  /// Sets a value; a number is brought into its range. False if the key is unknown or the text none.
  bool SetValue(std::string_view key, std::string_view text);
  /// Why an option does nothing now: its room is not built, or a flag that it needs is off. Empty if it
  /// works.
  [[nodiscard]] std::string WhyDisabled(std::string_view key) const;
  /// What an option does, its range and default; in front of it, why it is disabled.
  [[nodiscard]] std::string Explanation(std::string_view key) const;

  [[nodiscard]] const TEditedRoute& Route(int index) const;
  /// Sets a route's instrument; the first that a route gets brings the first output along.
  void SetRouteInstrument(int index, const std::string& instrument);
  void SetRouteOutput(int index, const std::string& output);
  /// Takes a route out; those behind it move up. Route 0 stays: it is the main instrument.
  void RemoveRoute(int index);
  /// One more than the last route in use.
  [[nodiscard]] int UsedRoutes() const;
  /// Rows that the window shows: the routes in use and one more, at least 8, at most 100.
  [[nodiscard]] int ShownRoutes() const;
  /// True if a route can be edited: all in front of it are in use.
  [[nodiscard]] bool IsRouteOpen(int index) const;
  /// The outputs to choose from: those connected, and the one that a route names though it is not.
  [[nodiscard]] std::vector<std::string> OutputChoices(int index) const;
  [[nodiscard]] std::vector<std::string> InputChoices() const;
  /// True if a route's output is not connected.
  [[nodiscard]] bool IsOutputMissing(int index) const;
  /// What the user is told of routes whose output is missing, or of ones that the menu cannot offer;
  /// empty if all is well.
  [[nodiscard]] std::string RoutesWarning() const;

  [[nodiscard]] TOptionChanges Changes() const;
  /// Writes what changed.
  void Store(ISettings& settings) const;

  [[nodiscard]] const TOptionsInput& Now() const noexcept { return now; }
  [[nodiscard]] const TOptionsInput& OnEntry() const noexcept { return onEntry; }

 private:
  TOptionsInput onEntry;
  TOptionsInput now;
};

}  // namespace Sonarello
