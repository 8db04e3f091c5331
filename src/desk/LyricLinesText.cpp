#include "desk/LyricLinesText.h"

#include <cstdint>

#include "core/TextEncoding.h"

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

std::string FromLatin1(std::string_view bytes) {
  std::string text;
  for (const char c : bytes)
    if (const char32_t code = FromWindowsByte(static_cast<std::uint8_t>(c)); code != 0)
      AppendUTF8(text, code);
  return text;
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
