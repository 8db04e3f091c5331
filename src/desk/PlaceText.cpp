#include "desk/PlaceText.h"

#include <charconv>

#include "core/MidiFunctions.h"

namespace Sonarello {

std::optional<std::int32_t> TimeOfPlace(const Song& song, std::string_view text) {
  while (text.starts_with(' ')) text.remove_prefix(1);
  while (text.ends_with(' ')) text.remove_suffix(1);
  int measure = 0;
  int beat = 1;
  const char* const end = text.data() + text.size();
  const auto [colon, fault] = std::from_chars(text.data(), end, measure);
  if (fault != std::errc{} || measure < 1) return std::nullopt;
  if (colon != end) {
    const auto [behind, wrong] = std::from_chars(colon + 1, end, beat);
    if ((*colon != ':' && *colon != '.') || wrong != std::errc{} || behind != end || beat < 1)
      return std::nullopt;
  }
  const std::int32_t tick = MTCToSongPosition(song, measure, beat, 0);
  if (tick < 0 || tick > song.MaxSongPosition) return std::nullopt;
  return TimeOfPosition(song, tick);
}

}  // namespace Sonarello
