#include "desk/RegistryText.h"

#include <algorithm>
#include <charconv>
#include <cstdio>

#include "core/Texts.h"
#include "desk/RegistryTextCode.h"
#include "desk/RegistryTextValue.h"
#include "desk/SettingsKeys.h"

namespace Sonarello {

namespace {

constexpr std::string_view KeyPath = "HKEY_CURRENT_USER\\SOFTWARE\\Brightfold\\Sonarello XI";

/// A list of bytes goes on in the next line once a line has this many columns.
constexpr std::size_t FoldColumn = 77;

std::string Quoted(std::string_view text) {
  std::string quoted = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') quoted += '\\';
    quoted += c;
  }
  return quoted + '"';
}

/// Bytes behind "name=hex:", folded as the registry's own tools do it.
std::string ByteList(std::string_view start, std::span<const std::uint8_t> bytes) {
  std::string list(start);
  // Columns count characters of the file, not bytes of UTF-8.
  std::size_t column = ToUtf16(start).size();
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    char digits[4];
    std::snprintf(digits, sizeof digits, "%02x", static_cast<unsigned>(bytes[i]));
    list += digits;
    if (i + 1 == bytes.size()) break;
    list += ',';
    column += 3;
    if (column < FoldColumn) continue;
    list += "\\\r\n  ";
    column = 2;
  }
  return list;
}

std::string TextLine(const std::string& name, std::string_view value) {
  if (IsOneLine(value)) return name + Quoted(value);
  std::vector<std::uint8_t> bytes;
  for (const char16_t unit : ToUtf16(value) + u'\0') {
    bytes.push_back(static_cast<std::uint8_t>(unit & 0xFFU));
    bytes.push_back(static_cast<std::uint8_t>(unit >> 8U));
  }
  return ByteList(name + "hex(1):", bytes);
}

std::string NumberLine(const std::string& name, int value) {
  char digits[16];
  std::snprintf(digits, sizeof digits, "%08x", static_cast<unsigned>(value));
  return name + "dword:" + digits;
}

/// One value as the file has it. A number or flag whose text is none stays what it is, a text.
std::string ValueLine(const IRegistryStore& store, std::string_view section, const std::string& key) {
  const std::string name = key == DefaultValueName ? "@=" : Quoted(key) + '=';
  const std::string text = store.ReadString(section, key, {});
  const std::optional<TKeyKind> kind = KindOfKey(section, key);
  if (!kind) {
    if (const std::optional<TRawValue> raw = TRawValue::Parse(text))
      return ByteList(name + raw->Prefix(), raw->Bytes);
    return TextLine(name, text);
  }
  const auto read = [&](int otherwise) {
    return *kind == TKeyKind::Flag ? int{store.ReadBool(section, key, otherwise != 0)}
                                   : store.ReadInteger(section, key, otherwise);
  };
  if (*kind == TKeyKind::Text || read(0) != read(1)) return TextLine(name, text);
  return NumberLine(name, read(0));
}

/// True for a sub-key that a file can name.
bool IsNameable(std::string_view section) {
  return IsOneLine(section) && !section.starts_with('\\') && !section.ends_with('\\') &&
         section.find("\\\\") == std::string_view::npos;
}

void AppendSection(std::string& file, const IRegistryStore& store, const std::string& section) {
  file += '[';
  file += KeyPath;
  if (!section.empty()) file += '\\' + section;
  file += "]\r\n";
  for (const std::string& key : store.Values(section))
    if (IsOneLine(key) && !key.empty()) file += ValueLine(store, section, key) + "\r\n";
  file += "\r\n";
}

std::string Count(std::size_t count, std::string_view one, std::string_view several) {
  return std::to_string(count) + ' ' + std::string(count == 1 ? one : several);
}

}  // namespace

std::vector<std::uint8_t> ExportRegistry(const IRegistryStore& store) {
  std::string file = "Windows Registry Editor Version 5.00\r\n\r\n";
  AppendSection(file, store, {});
  for (const std::string& section : store.Sections())
    if (IsNameable(section)) AppendSection(file, store, section);
  std::vector<std::uint8_t> bytes = {0xFF, 0xFE};
  for (const char16_t unit : ToUtf16(file)) {
    bytes.push_back(static_cast<std::uint8_t>(unit & 0xFFU));
    bytes.push_back(static_cast<std::uint8_t>(unit >> 8U));
  }
  return bytes;
}

std::size_t TRegistryImport::Writes() const noexcept {
  return static_cast<std::size_t>(
      std::ranges::count(Changes, TRegistryChange::TKind::Write, &TRegistryChange::Kind));
}

std::string ImportQuestion(const TRegistryImport& import) {
  const std::size_t writes = import.Writes();
  const std::size_t deletions = import.Changes.size() - writes;
  std::string what =
      Text(Count(writes, "Einstellung", "Einstellungen"), Count(writes, "setting", "settings"));
  if (deletions > 0)
    what += Text(" und " + Count(deletions, "Löschung", "Löschungen"),
                 " and " + Count(deletions, "deletion", "deletions"));
  return Text("Die Datei enthält " + what +
                  ".\rSollen sie übernommen werden?\r(dabei werden die jetzigen Werte überschrieben)",
              "The file holds " + what +
                  ".\rDo you want to take them over?\r(the present values will be overwritten)");
}

void ApplyImport(IRegistryStore& store, const TRegistryImport& import) {
  if (!import.IsGood()) return;
  for (const TRegistryChange& change : import.Changes) switch (change.Kind) {
      case TRegistryChange::TKind::Write:
        store.WriteString(change.Section, change.Key, change.Value);
        break;
      case TRegistryChange::TKind::DeleteValue: store.DeleteValue(change.Section, change.Key); break;
      case TRegistryChange::TKind::DeleteSection: store.DeleteSection(change.Section); break;
    }
}

}  // namespace Sonarello
