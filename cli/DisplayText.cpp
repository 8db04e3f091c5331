#include "DisplayText.h"

#include <fmt/format.h>

#include <algorithm>

#include "core/TextEncoding.h"

namespace Sonarello {

namespace {

/// Controls (C0, DEL, C1) and the marks that turn the direction of writing around.
bool IsControl(char32_t c) {
  return c < 0x20 || (c >= 0x7F && c < 0xA0) || (c >= 0x202A && c <= 0x202E) ||
         (c >= 0x2066 && c <= 0x2069);
}

std::string WrittenOut(char32_t c) {
  switch (c) {
    case '\r': return "\\r";
    case '\n': return "\\n";
    case '\t': return "\\t";
    default: break;
  }
  const auto code = static_cast<std::uint32_t>(c);
  return c < 0x100 ? fmt::format("\\x{:02X}", code) : fmt::format("\\u{:04X}", code);
}

/// The small letter of a capital: ASCII, Latin-1 Supplement and Latin Extended-A of Unicode.
char32_t SmallLetter(char32_t c) {
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

}  // namespace

std::string VisibleText(std::string_view bytes) {
  const std::string decoded = DecodedText(bytes);
  std::string text;
  for (std::string_view rest = decoded; !rest.empty();) {
    const TCharacter c = FirstCharacter(rest);
    if (IsControl(c.Code))
      text += WrittenOut(c.Code);
    else
      text += rest.substr(0, c.Length);
    rest.remove_prefix(c.Length);
  }
  return text;
}

std::string NameOnOneLine(std::string_view name) {
  std::string text;
  for (const char c : name) {
    const auto byte = static_cast<unsigned char>(c);
    text += byte < 0x20 || byte == 0x7F ? WrittenOut(byte) : std::string(1, c);
  }
  return text;
}

std::string OneLine(std::string_view message) {
  std::string text;
  for (std::size_t i = 0; i < message.size(); ++i) {
    if (message[i] == '\r' || message[i] == '\n') {
      text += "\\r";
      if (message.substr(i).starts_with("\r\n")) ++i;
    } else {
      text += message[i];
    }
  }
  return text;
}

std::string Shortened(std::string_view text, std::size_t characters) {
  if (TextWidth(text) <= characters) return std::string(text);
  std::size_t end = 0;
  for (std::size_t kept = 0; kept + 1 < characters; ++kept) do
      ++end;
    while (end < text.size() && ContinuesCharacter(text[end]));
  return std::string(text.substr(0, end)) + "…";
}

std::string CaseFolded(std::string_view text) {
  std::string small;
  small.reserve(text.size());
  while (!text.empty()) {
    const TCharacter c = FirstCharacter(text);
    if (c.Length == 0)
      small += text.front();
    else
      AppendUTF8(small, SmallLetter(c.Code));
    text.remove_prefix(std::max<std::size_t>(c.Length, 1));
  }
  return small;
}

std::size_t TextWidth(std::string_view text) { return CharactersOf(text); }

}  // namespace Sonarello
