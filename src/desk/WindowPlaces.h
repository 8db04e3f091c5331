// Sonarello: where windows stood last, and whether they can stand there now.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "core/Settings.h"

namespace Sonarello {

/// A rectangle of the desktop, in its pixels; the main screen need not begin at 0, 0.
struct TFormPlace {
  int Left = 0;
  int Top = 0;
  int Width = 0;
  int Height = 0;
  bool operator==(const TFormPlace&) const = default;
};

/// A coordinate of a window that was never placed.
inline constexpr int NotPlaced = -9999;

/// A window's place with its frame, brought to where it can be seen and taken hold of. `screens` are
/// the areas free of panels, the main screen first. A window that was not placed comes into the middle
/// of the main screen. One too large for its screen shrinks to it, but not below `leastWidth` and
/// `leastHeight`. One whose title bar (the top 32 pixels) shows less than 64 by 16 pixels on any single
/// screen moves onto the screen nearest to it; all others stay. Without a screen nothing changes.
[[nodiscard]] TFormPlace CheckFormLayout(TFormPlace place, std::span<const TFormPlace> screens,
                                         int leastWidth = 1, int leastHeight = 1);

/// Whose sub-key holds a window's place.
enum class TPlaceOwner : std::uint8_t {
  Program,           ///< none
  Instrument,        ///< each instrument's
  EffectInstrument,  ///< that of an instrument with an effect editor; the others have none
};

/// What is stored of a window's place.
struct TWindowPlace {
  std::string_view Window;  ///< such as "EventList", as it is written
  bool HasSize = false;     ///< "...FormWidth", "...FormHeight"
  bool HasVisible = false;  ///< "...FormVis"
  TPlaceOwner Owner = TPlaceOwner::Program;
};

/// Every window whose place is stored. Case does not count in a name.
[[nodiscard]] std::span<const TWindowPlace> WindowPlaces();
[[nodiscard]] const TWindowPlace* FindWindowPlace(std::string_view window);
/// The sub-key in which an instrument (a name of the catalogue) keeps settings of its own.
[[nodiscard]] std::string InstrumentSubdir(std::string_view instrument);

/// A window as it stood.
struct TStoredPlace {
  int Left = NotPlaced;
  int Top = NotPlaced;
  int Width = 0;  ///< 0: the window's own
  int Height = 0;
  bool Visible = false;
};

/// Reads and writes a window's place. `instrument` names the instrument of a window whose place is not
/// the program's.
[[nodiscard]] TStoredPlace LoadWindowPlace(const ISettings& settings, std::string_view window,
                                           std::string_view instrument = {});
void StoreWindowPlace(ISettings& settings, std::string_view window, const TStoredPlace& place,
                      std::string_view instrument = {});

/// What a key holds if it is one of a window's place, whatever the section.
enum class TPlaceKey : std::uint8_t { None, Number, Flag };
[[nodiscard]] TPlaceKey PlaceKeyOf(std::string_view key);

}  // namespace Sonarello
