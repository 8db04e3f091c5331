#include <array>
#include <cstdint>
#include <optional>

#include "core/TextEncoding.h"
#include "instruments/SoundListReader.h"

namespace Sonarello {

namespace {

constexpr std::string_view UTF8Mark = "\xEF\xBB\xBF";
constexpr char32_t Replacement = 0xFFFD;

enum class ByteOrder : std::uint8_t { None, Little, Big };

std::uint8_t Byte(std::string_view bytes, std::size_t index) {
  return static_cast<std::uint8_t>(bytes[index]);
}

/// A zero byte is no character of a list: it betrays UTF-16.
bool HasZero(std::string_view bytes) { return bytes.find('\0') != std::string_view::npos; }

ByteOrder MarkedOrder(std::string_view bytes) {
  if (bytes.starts_with("\xFF\xFE")) return ByteOrder::Little;
  if (bytes.starts_with("\xFE\xFF")) return ByteOrder::Big;
  return ByteOrder::None;
}

/// The byte order of UTF-16 without mark: tabs, digits and Latin letters have a zero on one side. In a
/// list they are a quarter of the text at least.
ByteOrder GuessedOrder(std::string_view bytes) {
  std::array<std::size_t, 2> zeros{};
  for (std::size_t i = 0; i < bytes.size(); ++i)
    if (bytes[i] == '\0') ++zeros[i % 2];
  const auto isClear = [&bytes](std::size_t many, std::size_t few) {
    return many * 8 >= bytes.size() && many > few * 4;
  };
  if (isClear(zeros[1], zeros[0])) return ByteOrder::Little;
  if (isClear(zeros[0], zeros[1])) return ByteOrder::Big;
  return ByteOrder::None;
}

/// Bytes of the ANSI code page; nothing if one of them is no character and `mends` is not set.
std::optional<std::string> DecodeAnsi(std::string_view bytes, bool mends) {
  if (!mends && MarkedOrder(bytes) != ByteOrder::None) return std::nullopt;
  std::string text;
  text.reserve(bytes.size() + bytes.size() / 8);
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    const char32_t c = FromWindowsByte(Byte(bytes, i));
    if (c == 0 && !mends) return std::nullopt;
    AppendUTF8(text, c == 0 ? Replacement : c);
  }
  return text;
}

/// Takes a character off UTF-16 units; `Replacement` for half a pair or a zero.
char32_t TakeUTF16(std::string_view& bytes, ByteOrder order) {
  const auto unit = [&](std::size_t index) {
    const std::size_t low = order == ByteOrder::Little ? index : index + 1;
    return static_cast<char32_t>(Byte(bytes, low) | (Byte(bytes, low ^ 1U) << 8));
  };
  const char32_t first = unit(0);
  const bool isHigh = first >= 0xD800 && first < 0xDC00;
  const char32_t second = isHigh && bytes.size() >= 4 ? unit(2) : 0;
  const bool isPair = second >= 0xDC00 && second < 0xE000;
  bytes.remove_prefix(isPair ? 4 : 2);
  if (isPair) return 0x10000 + ((first - 0xD800) << 10) + (second - 0xDC00);
  return first == 0 || (first >= 0xD800 && first < 0xE000) ? Replacement : first;
}

/// UTF-16 of a known order, without mark; nothing if a part of it is no character and `mends` is not
/// set. Half a character at the end is left out when mending.
std::optional<std::string> DecodeUTF16(std::string_view bytes, ByteOrder order, bool mends) {
  if (order == ByteOrder::None || (!mends && bytes.size() % 2 != 0)) return std::nullopt;
  std::string text;
  text.reserve(bytes.size() / 2 + bytes.size() / 16);
  while (bytes.size() >= 2) {
    const char32_t c = TakeUTF16(bytes, order);
    if (c == Replacement && !mends) return std::nullopt;
    AppendUTF8(text, c);
  }
  return text;
}

std::string MendUTF8(std::string_view bytes) {
  std::string text;
  text.reserve(bytes.size());
  for (const char c : bytes)
    if (c == '\0')
      AppendUTF8(text, Replacement);
    else
      text += c;
  return text;
}

}  // namespace

std::string DecodeListFile(std::string_view bytes) {
  if (bytes.starts_with(UTF8Mark)) bytes.remove_prefix(UTF8Mark.size());
  const bool isUTF8 = IsUTF8(bytes);
  if (isUTF8 && !HasZero(bytes)) return std::string(bytes);
  if (auto text = DecodeAnsi(bytes, false)) return *std::move(text);
  const ByteOrder marked = MarkedOrder(bytes);
  const ByteOrder order = marked == ByteOrder::None ? GuessedOrder(bytes) : marked;
  const std::string_view units = marked == ByteOrder::None ? bytes : bytes.substr(2);
  if (auto text = DecodeUTF16(units, order, false)) return *std::move(text);
  // No encoding reads all of the bytes: the likeliest one reads what it can.
  if (order != ByteOrder::None) return *DecodeUTF16(units, order, true);
  return isUTF8 ? MendUTF8(bytes) : *DecodeAnsi(bytes, true);
}

}  // namespace Sonarello
