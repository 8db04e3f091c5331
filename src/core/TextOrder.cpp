#include "core/TextOrder.h"

#include <cstdint>

#include "core/TextEncoding.h"

namespace Sonarello {

namespace {

/// The small letter of a capital: ASCII, Latin-1 Supplement and Latin Extended-A of Unicode. Beyond
/// ASCII, capital and small letter take two bytes each.
constexpr char32_t SmallLetter(char32_t c) noexcept {
  constexpr char32_t step = 0x20;
  if (c >= 'A' && c <= 'Z') return c + step;
  if (c >= 0xC0 && c <= 0xDE && c != 0xD7) return c + step;
  if (c == 0x178) return 0xFF;
  // From here capital and small letter stand side by side.
  const bool evenCapitals =
      (c >= 0x100 && c <= 0x12F) || (c >= 0x132 && c <= 0x137) || (c >= 0x14A && c <= 0x177);
  const bool oddCapitals = (c >= 0x139 && c <= 0x148) || (c >= 0x179 && c <= 0x17E);
  if (evenCapitals) return c | 1;
  return oddCapitals ? c + (c & 1) : c;
}

/// Takes the first character off a text, as a small letter.
char32_t TakeSmallLetter(std::string_view& text) noexcept {
  constexpr char32_t behindCharacters = 0x110000;
  const auto byte = static_cast<std::uint8_t>(text.front());
  const TCharacter character = FirstCharacter(text);
  if (character.Length == 0) {
    text.remove_prefix(1);
    return behindCharacters + byte;
  }
  text.remove_prefix(character.Length);
  return SmallLetter(character.Code);
}

}  // namespace

std::string SmallLetters(std::string_view text) {
  std::string small(text);
  for (std::size_t i = 0; i < small.size(); ++i) {
    const auto byte = static_cast<std::uint8_t>(small[i]);
    if (byte < 0x80) {
      small[i] = static_cast<char>(SmallLetter(byte));
      continue;
    }
    const TCharacter character = FirstCharacter(text.substr(i));
    if (character.Length == 0) continue;
    if (character.Length == 2) {
      const char32_t letter = SmallLetter(character.Code);
      small[i] = static_cast<char>(0xC0U | letter >> 6U);
      small[i + 1] = static_cast<char>(0x80U | (letter & 0x3FU));
    }
    i += character.Length - 1;
  }
  return small;
}

std::strong_ordering CompareTexts(std::string_view a, std::string_view b) noexcept {
  std::string_view restA = a;
  std::string_view restB = b;
  while (!restA.empty() && !restB.empty()) {
    const auto order = TakeSmallLetter(restA) <=> TakeSmallLetter(restB);
    if (order != 0) return order;
  }
  if (restA.empty() != restB.empty()) return restB.empty() <=> restA.empty();
  return a.compare(b) <=> 0;
}

}  // namespace Sonarello
