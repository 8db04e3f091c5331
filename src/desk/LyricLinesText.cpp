#include "desk/LyricLinesText.h"

#include <array>
#include <cstdint>

namespace Sonarello {

// --- Lyrics

namespace {

constexpr std::string_view LineMarks = "/\\\r\n";
constexpr std::string_view KaraokeHeaders = "KLTVIW";

bool IsKaraokeHeader(std::string_view bytes) noexcept {
  return bytes.size() >= 2 && bytes[0] == '@' &&
         KaraokeHeaders.find(bytes[1]) != std::string_view::npos;
}

std::string_view WithoutTags(std::string_view bytes) {
  while (bytes.starts_with("{@") || bytes.starts_with("{#")) {
    const std::size_t end = bytes.find('}');
    if (end == std::string_view::npos) break;
    bytes.remove_prefix(end + 1);
  }
  return bytes;
}

}  // namespace

TLyricText ReadLyricText(std::string_view bytes) {
  TLyricText lyric;
  bytes = WithoutTags(bytes);
  if (IsKaraokeHeader(bytes)) return lyric;
  while (!bytes.empty() && LineMarks.find(bytes.front()) != std::string_view::npos) {
    lyric.Before = true;
    bytes.remove_prefix(1);
  }
  while (!bytes.empty() &&
         (LineMarks.find(bytes.back()) != std::string_view::npos || bytes.back() == '\0')) {
    lyric.After = lyric.After || bytes.back() != '\0';
    bytes.remove_suffix(1);
  }
  while (bytes.size() >= 2 && bytes[0] == '%' && bytes[1] >= 'a' && bytes[1] <= 'g')
    bytes.remove_prefix(2);
  for (const char c : bytes) {
    if (c == '\r' || c == '\n' || c == '\t')
      lyric.Text += ' ';
    else if (static_cast<unsigned char>(c) >= 0x20)
      lyric.Text += c;
  }
  return lyric;
}

bool IsKaraokeLine(std::string_view bytes) noexcept {
  return bytes.size() >= 2 && (bytes[0] == '/' || bytes[0] == '\\');
}

bool IsKaraokeMark(std::string_view bytes) noexcept { return bytes.starts_with("@K"); }

// --- Bytes

namespace {

/// Windows-1252 at 0x80 to 0x9F; 0 for a byte that is not in use.
constexpr std::array<std::uint16_t, 32> WindowsCharacters = {
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0,      0x017D, 0,      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

}  // namespace

std::string FromLatin1(std::string_view bytes) {
  std::string text;
  for (const char c : bytes) {
    const auto byte = static_cast<std::uint8_t>(c);
    const unsigned code = byte >= 0x80 && byte < 0xA0 ? WindowsCharacters[byte - 0x80U] : byte;
    if (code == 0) continue;
    if (code < 0x80) {
      text += static_cast<char>(code);
    } else if (code < 0x800) {
      text += static_cast<char>(0xC0 | code >> 6);
      text += static_cast<char>(0x80 | (code & 0x3F));
    } else {
      text += static_cast<char>(0xE0 | code >> 12);
      text += static_cast<char>(0x80 | (code >> 6 & 0x3F));
      text += static_cast<char>(0x80 | (code & 0x3F));
    }
  }
  return text;
}

std::size_t CharactersOf(std::string_view text) noexcept {
  std::size_t count = 0;
  for (const char c : text) count += (static_cast<unsigned char>(c) & 0xC0) != 0x80 ? 1 : 0;
  return count;
}

// --- Chords

namespace {

constexpr std::size_t ChordLength = 7;
constexpr std::size_t StyleChordLength = 8;  // with the closing F7

}  // namespace

bool IsXFChord(const TypMidiEvent& event) noexcept {
  constexpr std::uint8_t prefix[] = {0x43, 0x7B, 0x01};
  return event.IsMeta(MetaSequencerSpecific) && event.Meta.size() >= ChordLength &&
         event.Meta.StartsWith(prefix);
}

bool IsStyleChord(const TypMidiEvent& event) noexcept {
  constexpr std::uint8_t prefix[] = {0x43, 0x7E};
  return event.Command == Sysex && event.Meta.size() == StyleChordLength &&
         event.Meta.StartsWith(prefix);
}

}  // namespace Sonarello
