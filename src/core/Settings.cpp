#include "core/Settings.h"

#include <charconv>

#include "core/TextOrder.h"

namespace Sonarello {

namespace {

std::string PlaceOf(std::string_view section, std::string_view key) {
  return SmallLetters(section) + '\n' + SmallLetters(key);
}

std::string_view Trimmed(std::string_view text) {
  constexpr std::string_view blanks = " \t\r\n";
  const std::size_t first = text.find_first_not_of(blanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

/// The whole text as a number; false if it is none or does not fit.
bool ToInteger(std::string_view text, int& value) {
  text = Trimmed(text);
  if (text.size() > 1 && text.front() == '+' && text[1] != '-') text.remove_prefix(1);
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  return error == std::errc{} && end == text.data() + text.size();
}

}  // namespace

int ISettings::ReadInteger(std::string_view section, std::string_view key, int otherwise) const {
  int value = 0;
  return ToInteger(ReadString(section, key, {}), value) ? value : otherwise;
}

void ISettings::WriteInteger(std::string_view section, std::string_view key, int value) {
  WriteString(section, key, std::to_string(value));
}

// Flags are stored as 0 and 1. The words are for those who write the settings by hand.
bool ISettings::ReadBool(std::string_view section, std::string_view key, bool otherwise) const {
  const std::string text = ReadString(section, key, {});
  int value = 0;
  if (ToInteger(text, value)) return value != 0;
  const std::string word = SmallLetters(Trimmed(text));
  if (word == "true") return true;
  if (word == "false") return false;
  return otherwise;
}

void ISettings::WriteBool(std::string_view section, std::string_view key, bool value) {
  WriteInteger(section, key, value ? 1 : 0);
}

std::string MemorySettings::ReadString(std::string_view section, std::string_view key,
                                       std::string_view otherwise) const {
  const auto found = values.find(PlaceOf(section, key));
  return found != values.end() ? found->second : std::string(otherwise);
}

void MemorySettings::WriteString(std::string_view section, std::string_view key,
                                 std::string_view value) {
  values.insert_or_assign(PlaceOf(section, key), std::string(value));
}

void MemorySettings::DeleteValue(std::string_view section, std::string_view key) {
  values.erase(PlaceOf(section, key));
}

}  // namespace Sonarello
