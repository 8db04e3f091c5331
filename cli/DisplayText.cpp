#include "DisplayText.h"

#include <fmt/format.h>

namespace Sonarello {

namespace {

constexpr char32_t NoCharacter = 0xFFFFFFFF;

constexpr bool IsContinuation(char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; }

/// The character at the head of a text and its bytes; `NoCharacter` if it is not valid UTF-8
/// (RFC 3629: no overlong forms, no surrogates, at most U+10FFFF).
struct Character {
  char32_t Code = NoCharacter;
  std::size_t Bytes = 1;
};

Character FirstCharacter(std::string_view text) {
  const auto lead = static_cast<unsigned char>(text.front());
  if (lead < 0x80) return {lead, 1};
  const std::size_t bytes = lead < 0xC2 ? 0 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : lead < 0xF5 ? 4 : 0;
  if (bytes == 0 || text.size() < bytes) return {};
  char32_t code = lead & (0x7F >> bytes);
  for (std::size_t i = 1; i < bytes; ++i) {
    if (!IsContinuation(text[i])) return {};
    code = code << 6 | (static_cast<unsigned char>(text[i]) & 0x3F);
  }
  constexpr char32_t smallest[] = {0, 0, 0x80, 0x800, 0x10000};
  if (code < smallest[bytes] || code > 0x10FFFF || (code >= 0xD800 && code < 0xE000)) return {};
  return {code, bytes};
}

bool IsValidUTF8(std::string_view text) {
  while (!text.empty()) {
    const Character c = FirstCharacter(text);
    if (c.Code == NoCharacter) return false;
    text.remove_prefix(c.Bytes);
  }
  return true;
}

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

std::string DecodeText(std::string_view bytes) {
  if (IsValidUTF8(bytes)) return std::string(bytes);
  std::string text;
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x80) {
      text += c;
    } else {
      text += static_cast<char>(0xC0 | byte >> 6);
      text += static_cast<char>(0x80 | (byte & 0x3F));
    }
  }
  return text;
}

std::string VisibleText(std::string_view bytes) {
  const std::string decoded = DecodeText(bytes);
  std::string text;
  for (std::string_view rest = decoded; !rest.empty();) {
    const Character c = FirstCharacter(rest);
    if (IsControl(c.Code))
      text += WrittenOut(c.Code);
    else
      text += rest.substr(0, c.Bytes);
    rest.remove_prefix(c.Bytes);
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
    while (end < text.size() && IsContinuation(text[end]));
  return std::string(text.substr(0, end)) + "…";
}

std::string CaseFolded(std::string_view text) {
  std::string small;
  small.reserve(text.size());
  while (!text.empty()) {
    const Character c = FirstCharacter(text);
    const char32_t letter = SmallLetter(c.Code);
    if (c.Code == NoCharacter || letter == c.Code) {
      small += text.substr(0, c.Bytes);
    } else if (letter < 0x80) {
      small += static_cast<char>(letter);
    } else {
      small += static_cast<char>(0xC0 | letter >> 6);
      small += static_cast<char>(0x80 | (letter & 0x3F));
    }
    text.remove_prefix(c.Bytes);
  }
  return small;
}

std::size_t TextWidth(std::string_view text) {
  std::size_t width = 0;
  for (const char c : text) width += !IsContinuation(c);
  return width;
}

}  // namespace Sonarello
