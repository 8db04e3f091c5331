#include "DisplayText.h"

#include <fmt/format.h>

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

std::size_t TextWidth(std::string_view text) { return CharactersOf(text); }

}  // namespace Sonarello
