#include "instruments/TextOrder.h"

#include <algorithm>

namespace Sonarello {

namespace {

/// The byte of a UTF-8 text with capital letters as small ones. U+00C0 to U+00DE are the capitals of
/// Latin-1, but for the sign U+00D7; their second byte is 0x20 below that of the small letter.
unsigned char Small(std::string_view text, std::size_t index) noexcept {
  const auto byte = static_cast<unsigned char>(text[index]);
  if (byte >= 'A' && byte <= 'Z') return static_cast<unsigned char>(byte + 0x20);
  const bool isLatin = index > 0 && text[index - 1] == '\xC3';
  if (isLatin && byte >= 0x80 && byte <= 0x9E && byte != 0x97)
    return static_cast<unsigned char>(byte + 0x20);
  return byte;
}

}  // namespace

std::strong_ordering CompareTexts(std::string_view a, std::string_view b) noexcept {
  const std::size_t common = std::min(a.size(), b.size());
  for (std::size_t i = 0; i < common; ++i) {
    if (a[i] == b[i]) continue;
    const auto order = Small(a, i) <=> Small(b, i);
    if (order != 0) return order;
  }
  return a.size() != b.size() ? a.size() <=> b.size() : a.compare(b) <=> 0;
}

std::string SmallLetters(std::string_view text) {
  std::string small(text);
  for (std::size_t i = 0; i < text.size(); ++i) small[i] = static_cast<char>(Small(text, i));
  return small;
}

}  // namespace Sonarello
