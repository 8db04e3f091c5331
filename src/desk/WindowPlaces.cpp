#include "desk/WindowPlaces.h"

#include <algorithm>
#include <array>

#include "core/TextOrder.h"
#include "desk/MyRegistry.h"

namespace Sonarello {

namespace {

constexpr long long TitleHeight = 32;
constexpr long long GripWidth = 64;
constexpr long long GripHeight = 16;

/// Length of what two stretches of a line share; negative is the gap between them.
long long Shared(long long start1, long long length1, long long start2, long long length2) {
  return std::min(start1 + length1, start2 + length2) - std::max(start1, start2);
}

bool CanBeHeld(const TFormPlace& place, const TFormPlace& screen) {
  const long long width = Shared(place.Left, place.Width, screen.Left, screen.Width);
  const long long height =
      Shared(place.Top, std::min<long long>(TitleHeight, place.Height), screen.Top, screen.Height);
  return width >= std::min<long long>(GripWidth, place.Width) && height >= GripHeight;
}

/// How far a window is from a screen; less than 0 the more of it is on it.
long long Distance(const TFormPlace& place, const TFormPlace& screen) {
  const long long x = Shared(place.Left, place.Width, screen.Left, screen.Width);
  const long long y = Shared(place.Top, place.Height, screen.Top, screen.Height);
  if (x > 0 && y > 0) return -x * y;
  return std::max(0LL, -x) + std::max(0LL, -y);
}

const TFormPlace& NearestScreen(const TFormPlace& place, std::span<const TFormPlace> screens) {
  return *std::ranges::min_element(screens, {},
                                   [&](const TFormPlace& screen) { return Distance(place, screen); });
}

void FitSize(TFormPlace& place, const TFormPlace& screen, int leastWidth, int leastHeight) {
  place.Width = std::max(std::min(place.Width, screen.Width), leastWidth);
  place.Height = std::max(std::min(place.Height, screen.Height), leastHeight);
}

/// A coordinate at which a window of a length lies inside a stretch, or begins with it if it is longer.
int Inside(int start, int length, int screenStart, int screenLength) {
  const long long last = static_cast<long long>(screenStart) + screenLength - length;
  return static_cast<int>(std::max<long long>(screenStart, std::min<long long>(start, last)));
}

void BringToScreen(TFormPlace& place, std::span<const TFormPlace> screens, int leastWidth,
                   int leastHeight) {
  const TFormPlace& screen = NearestScreen(place, screens);
  FitSize(place, screen, leastWidth, leastHeight);
  const auto held = [&](const TFormPlace& one) { return CanBeHeld(place, one); };
  if (std::ranges::any_of(screens, held)) return;
  place.Left = Inside(place.Left, place.Width, screen.Left, screen.Width);
  place.Top = Inside(place.Top, place.Height, screen.Top, screen.Height);
}

using enum TPlaceOwner;

constexpr TWindowPlace Windows[] = {
    {"AudioProduction", false, false, Program},
    {"Chorus", false, false, EffectInstrument},
    {"Controller", false, true, Program},
    {"DrumsMain", false, true, Program},
    {"DrumsSec", false, true, Program},
    {"DrumsThird", false, true, Program},
    {"DSP1", false, false, EffectInstrument},
    {"DSP2", false, false, EffectInstrument},
    {"DSP3", false, false, EffectInstrument},
    {"DSP4", false, false, EffectInstrument},
    {"DSP5", false, false, EffectInstrument},
    {"DSP6", false, false, EffectInstrument},
    {"DSP7", false, false, EffectInstrument},
    {"DSP8", false, false, EffectInstrument},
    {"DSP9", false, false, EffectInstrument},
    {"DSP10", false, false, EffectInstrument},
    {"DSP11", false, false, EffectInstrument},
    {"DSP12", false, false, EffectInstrument},
    {"DSP13", false, false, EffectInstrument},
    {"DSP14", false, false, EffectInstrument},
    {"DSP15", false, false, EffectInstrument},
    {"DSP16", false, false, EffectInstrument},
    {"EventList", true, true, Program},
    {"KeyEditor", true, true, Program},
    {"KorgPaXXXPartEQ", false, false, EffectInstrument},
    {"Lyrics", true, true, Program},
    {"Main", true, false, Program},
    {"MasterEQ", false, false, EffectInstrument},
    {"MasterFX", false, false, EffectInstrument},
    {"MultiPart", false, false, EffectInstrument},
    {"Patch", true, true, Program},
    {"Patches", true, false, Instrument},
    {"Reverb", false, false, EffectInstrument},
    {"Revoicer", true, false, Program},
    {"RolandIntegra7PartEQ", false, false, EffectInstrument},
    {"SCInserts", false, false, EffectInstrument},
    {"Transpose", false, false, Program},
    {"Variation", false, false, EffectInstrument},
    {"VirtualKeys", true, true, Program},
    {"VocalEffect", false, false, EffectInstrument},
    {"VocalHarmony", false, false, EffectInstrument},
    {"x64_VST1", false, false, Program},
    {"x64_VST2", false, false, Program},
    {"x64_VSTi", false, true, Program},
    {"x64_VSTi1", false, false, Program},
    {"x64_VSTi2", false, false, Program},
    {"x64_VSTi3", false, false, Program},
    {"x64_VSTi4", false, false, Program},
    {"x64_VSTi5", false, false, Program},
};

struct TSubdir {
  std::string_view Subdir;
  std::string_view Instrument;  ///< as the catalogue has it
};

constexpr TSubdir EffectInstruments[] = {
    {"Yamaha Genos", "Yamaha Genos"},
    {"Yamaha Motif-Rack ES", "Yamaha Motif-Rack ES"},
    {"Yamaha Motif-Rack XF", "Yamaha Motif XF"},
    {"Yamaha Motif-Rack XS", "Yamaha Motif-Rack XS"},
    {"Yamaha PSR-S900", "Yamaha PSR-S900"},
    {"Yamaha PSR-S910", "Yamaha PSR-S910"},
    {"Yamaha PSR-S950", "Yamaha PSR-S950"},
    {"Yamaha PSR-S970", "Yamaha PSR-S970"},
    {"Yamaha PSR-SX900", "Yamaha PSR-SX900"},
    {"Yamaha Tyros", "Yamaha Tyros"},
    {"Yamaha Tyros2", "Yamaha Tyros 2"},
    {"Yamaha Tyros3", "Yamaha Tyros 3"},
    {"Yamaha Tyros4", "Yamaha Tyros 4"},
    {"Yamaha Tyros5", "Yamaha Tyros 5"},
};

const TSubdir* FindSubdir(std::string_view instrument) {
  const std::string folded = SmallLetters(instrument);
  const auto found = std::ranges::find_if(EffectInstruments, [&](const TSubdir& row) {
    return SmallLetters(row.Instrument) == folded || SmallLetters(row.Subdir) == folded;
  });
  return found == std::end(EffectInstruments) ? nullptr : found;
}

/// The sub-key of a window's place.
std::string SectionOf(const TWindowPlace* window, std::string_view instrument) {
  if (window == nullptr || window->Owner == Program) return {};
  if (window->Owner == EffectInstrument && FindSubdir(instrument) == nullptr) return {};
  return InstrumentSubdir(instrument);
}

std::string KeyOf(std::string_view window, std::string_view what) {
  return std::string(window) + "Form" + std::string(what);
}

}  // namespace

TFormPlace CheckFormLayout(TFormPlace place, std::span<const TFormPlace> screens, int leastWidth,
                           int leastHeight) {
  if (screens.empty()) return place;
  if (place.Left == NotPlaced || place.Top == NotPlaced) {
    const TFormPlace& main = screens.front();
    FitSize(place, main, leastWidth, leastHeight);
    place.Left = main.Left + std::max(0, (main.Width - place.Width) / 2);
    place.Top = main.Top + std::max(0, (main.Height - place.Height) / 2);
    return place;
  }
  // A window that shrinks to its screen may come nearer to another, which then is its screen.
  for (std::size_t i = 0; i <= screens.size(); ++i) {
    const TFormPlace before = place;
    BringToScreen(place, screens, leastWidth, leastHeight);
    if (place == before) break;
  }
  return place;
}

std::span<const TWindowPlace> WindowPlaces() { return Windows; }

const TWindowPlace* FindWindowPlace(std::string_view window) {
  const std::string folded = SmallLetters(window);
  const auto found = std::ranges::find_if(
      Windows, [&](const TWindowPlace& place) { return SmallLetters(place.Window) == folded; });
  return found == std::end(Windows) ? nullptr : found;
}

std::string InstrumentSubdir(std::string_view instrument) {
  const TSubdir* row = FindSubdir(instrument);
  return std::string(row != nullptr ? row->Subdir : instrument);
}

TStoredPlace LoadWindowPlace(const ISettings& settings, std::string_view window,
                             std::string_view instrument) {
  const TWindowPlace* row = FindWindowPlace(window);
  const std::string section = SectionOf(row, instrument);
  TStoredPlace place;
  place.Left = settings.ReadInteger(section, KeyOf(window, "Left"), NotPlaced);
  place.Top = settings.ReadInteger(section, KeyOf(window, "Top"), NotPlaced);
  if (row != nullptr && row->HasSize) {
    place.Width = std::max(0, settings.ReadInteger(section, KeyOf(window, "Width"), 0));
    place.Height = std::max(0, settings.ReadInteger(section, KeyOf(window, "Height"), 0));
  }
  if (row != nullptr && row->HasVisible)
    place.Visible = settings.ReadBool(section, KeyOf(window, "Vis"), false);
  return place;
}

void StoreWindowPlace(ISettings& settings, std::string_view window, const TStoredPlace& place,
                      std::string_view instrument) {
  const TWindowPlace* row = FindWindowPlace(window);
  const std::string section = SectionOf(row, instrument);
  settings.WriteInteger(section, KeyOf(window, "Left"), place.Left);
  settings.WriteInteger(section, KeyOf(window, "Top"), place.Top);
  if (row != nullptr && row->HasSize && place.Width > 0 && place.Height > 0) {
    settings.WriteInteger(section, KeyOf(window, "Width"), place.Width);
    settings.WriteInteger(section, KeyOf(window, "Height"), place.Height);
  }
  if (row != nullptr && row->HasVisible)
    settings.WriteBool(section, KeyOf(window, "Vis"), place.Visible);
}

TPlaceKey PlaceKeyOf(std::string_view key) {
  const std::string folded = SmallLetters(key);
  for (const std::string_view end : {"formleft", "formtop", "formwidth", "formheight", "formvis"})
    if (folded.ends_with(end) && folded.size() > end.size() &&
        FindWindowPlace(std::string_view(folded).substr(0, folded.size() - end.size())) != nullptr)
      return end == "formvis" ? TPlaceKey::Flag : TPlaceKey::Number;
  return TPlaceKey::None;
}

}  // namespace Sonarello
