#include <charconv>
#include <utility>

#include "core/TextOrder.h"
#include "core/Texts.h"
#include "desk/RegistryText.h"
#include "desk/RegistryTextCode.h"
#include "desk/RegistryTextValue.h"
#include "desk/SettingsKeys.h"

namespace Sonarello {

namespace {

constexpr std::string_view KeyPath = "HKEY_CURRENT_USER\\SOFTWARE\\Brightfold\\Sonarello XI";

/// A fault of the file: both languages, without the number of the line.
struct TFault {
  std::string German;
  std::string English;
};

bool IsBlank(char c) { return c == ' ' || c == '\t'; }

/// The text of a file and a place in it.
class Scanner {
 public:
  explicit Scanner(std::string_view file) : text(file) {}

  [[nodiscard]] bool AtEnd() const { return place == text.size(); }
  [[nodiscard]] bool AtLineEnd() const { return AtEnd() || text[place] == '\n' || text[place] == '\r'; }
  [[nodiscard]] char Peek() const { return AtEnd() ? '\0' : text[place]; }
  char Next() {
    const char c = text[place++];
    if (c == '\n' || (c == '\r' && Peek() != '\n')) ++line;
    return c;
  }
  bool Take(char c) {
    if (AtEnd() || text[place] != c) return false;
    Next();
    return true;
  }
  /// Takes a word without regard to case.
  bool TakeWord(std::string_view word) {
    if (SmallLetters(text.substr(place, word.size())) != word) return false;
    place += word.size();
    return true;
  }
  void SkipBlanks() {
    while (!AtEnd() && IsBlank(text[place])) ++place;
  }
  void SkipLineEnd() {
    const bool isReturn = Take('\r');
    if (!Take('\n') && !isReturn && !AtEnd()) Next();
  }
  /// The rest of the line, without its end.
  std::string_view TakeLine() {
    const std::size_t start = place;
    while (!AtLineEnd()) ++place;
    return text.substr(start, place - start);
  }
  [[nodiscard]] int Line() const { return line; }

 private:
  std::string_view text;
  std::size_t place = 0;
  int line = 1;
};

/// A value as the file has it, before it is known what its key holds.
struct TFileValue {
  enum class TKind : std::uint8_t { Deletion, String, Number, Raw };
  TKind Kind = TKind::String;
  std::string String;
  std::int32_t Number = 0;
  TRawValue Raw;
};

class Reader {
 public:
  explicit Reader(std::string_view file) : in(file) {}

  TRegistryImport Read() {
    try {
      ReadHead();
      while (!in.AtEnd()) ReadLine();
      if (import.Changes.empty())
        import.Error = Text("Die Datei enthält keine Einstellungen.", "The file holds no settings.");
    } catch (const TFault& fault) {
      // One fault is enough: nothing of the file takes effect.
      const std::string number = std::to_string(startLine);
      import.Changes.clear();
      import.Error =
          Text("Zeile " + number + ": " + fault.German, "Line " + number + ": " + fault.English);
    }
    return std::move(import);
  }

 private:
  void ReadHead();
  void ReadLine();
  void ReadSection();
  void ReadValue();
  std::string ReadQuoted(bool severalLines);
  TFileValue ReadData();
  TFileValue ReadNumber();
  TFileValue ReadBytes();
  std::vector<std::uint8_t> ReadByteList();
  void EndOfLine();
  std::string Checked(const std::string& key, const TFileValue& value) const;

  Scanner in;
  bool isOld = false;  ///< version 4: texts in bytes are not UTF-16
  bool hasSection = false;
  bool isDeleted = false;  ///< the section is one that goes
  std::string section;
  int startLine = 1;
  TRegistryImport import;
};

std::string_view Trimmed(std::string_view text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  return text;
}

void Reader::ReadHead() {
  std::string_view head;
  while (!in.AtEnd() && head.empty()) {
    startLine = in.Line();
    head = Trimmed(in.TakeLine());
    in.SkipLineEnd();
  }
  isOld = head == "REGEDIT4";
  if (!isOld && head != "Windows Registry Editor Version 5.00")
    throw TFault{"Das ist keine Registrierungsdatei.", "This is no registry file."};
}

void Reader::ReadLine() {
  in.SkipBlanks();
  startLine = in.Line();
  if (in.AtLineEnd()) return in.SkipLineEnd();
  switch (in.Peek()) {
    case ';': in.TakeLine(); return;
    case '[': return ReadSection();
    case '"':
    case '@': return ReadValue();
    default:
      throw TFault{"Hier steht weder ein Schlüssel noch ein Wert.",
                   "There is neither a key nor a value here."};
  }
}

void CheckName(std::string_view name) {
  if (!IsOneLine(name))
    throw TFault{"Der Name enthält ein Steuerzeichen.", "The name holds a control character."};
}

/// The path between the brackets of a line; nothing may follow but a comment.
std::optional<std::string_view> PathOf(std::string_view line) {
  line = Trimmed(line);
  if (line.size() >= 2 && line.back() == ']') return line.substr(1, line.size() - 2);
  for (std::size_t end = line.find(']'); end != std::string_view::npos; end = line.find(']', end + 1))
    if (Trimmed(line.substr(end + 1)).starts_with(';')) return line.substr(1, end - 1);
  return std::nullopt;
}

void Reader::ReadSection() {
  const std::optional<std::string_view> found = PathOf(in.TakeLine());
  if (!found) throw TFault{"Die eckige Klammer ist nicht geschlossen.", "The bracket is not closed."};
  std::string_view path = *found;
  isDeleted = path.starts_with('-');
  if (isDeleted) path.remove_prefix(1);
  if (!IsSectionWithin(path, KeyPath))
    throw TFault{"Der Schlüssel \"" + std::string(path) + "\" gehört nicht zu Sonarello.",
                 "The key \"" + std::string(path) + "\" does not belong to Sonarello."};
  path.remove_prefix(std::min(path.size(), KeyPath.size() + 1));
  if (path.starts_with('\\') || path.ends_with('\\') || path.find("\\\\") != std::string_view::npos)
    throw TFault{"Der Schlüssel hat einen leeren Namen.", "The key has an empty name."};
  CheckName(path);
  section = path;
  hasSection = true;
  if (isDeleted) import.Changes.push_back({TRegistryChange::TKind::DeleteSection, section, {}, {}});
}

void Reader::ReadValue() {
  std::string key(DefaultValueName);
  if (!in.Take('@')) key = ReadQuoted(false);
  if (key.empty()) key = DefaultValueName;
  CheckName(key);
  in.SkipBlanks();
  if (!in.Take('=')) throw TFault{"Hinter dem Namen fehlt \"=\".", "\"=\" is missing behind the name."};
  if (!hasSection || isDeleted)
    throw TFault{"Der Wert steht unter keinem Schlüssel.", "The value stands under no key."};
  in.SkipBlanks();
  const TFileValue value = ReadData();
  EndOfLine();
  if (value.Kind == TFileValue::TKind::Deletion)
    import.Changes.push_back({TRegistryChange::TKind::DeleteValue, section, key, {}});
  else
    import.Changes.push_back({TRegistryChange::TKind::Write, section, key, Checked(key, value)});
}

std::string Reader::ReadQuoted(bool severalLines) {
  std::string text;
  in.Next();
  while (!in.AtEnd()) {
    if (!severalLines && in.AtLineEnd()) break;
    const char c = in.Next();
    if (c == '"') return text;
    if (c == '\0') break;
    if (c != '\\') {
      text += c;
    } else if (in.Peek() == '"' || in.Peek() == '\\') {
      text += in.Next();
    } else {
      throw TFault{"Hinter \"\\\" muss \"\\\" oder ein Anführungszeichen stehen.",
                   "\"\\\" must be followed by \"\\\" or a quotation mark."};
    }
  }
  throw TFault{"Das Anführungszeichen ist nicht geschlossen.", "The quotation mark is not closed."};
}

TFileValue Reader::ReadData() {
  if (in.Peek() == '"')
    return {.Kind = TFileValue::TKind::String, .String = ReadQuoted(true), .Number = 0, .Raw = {}};
  if (in.Take('-')) return {.Kind = TFileValue::TKind::Deletion, .String = {}, .Number = 0, .Raw = {}};
  if (in.TakeWord("dword:")) return ReadNumber();
  if (in.TakeWord("hex")) return ReadBytes();
  throw TFault{"Der Wert ist weder Text noch dword noch hex.",
               "The value is neither a text nor a dword nor hex."};
}

TFileValue Reader::ReadNumber() {
  std::uint32_t number = 0;
  int digits = 0;
  in.SkipBlanks();
  while (HexDigit(in.Peek()) >= 0 && digits < 9) {
    number = number * 16 + static_cast<std::uint32_t>(HexDigit(in.Next()));
    ++digits;
  }
  if (digits == 0 || digits > 8)
    throw TFault{"dword muss eine bis acht hexadezimale Ziffern haben.",
                 "A dword must have one to eight hexadecimal digits."};
  return {.Kind = TFileValue::TKind::Number,
          .String = {},
          .Number = static_cast<std::int32_t>(number),
          .Raw = {}};
}

TFileValue Reader::ReadBytes() {
  TFileValue value;
  value.Kind = TFileValue::TKind::Raw;
  if (in.Take('(')) {
    value.Raw.Type = 0;
    int digits = 0;
    for (; HexDigit(in.Peek()) >= 0 && digits < 8; ++digits)
      value.Raw.Type = value.Raw.Type * 16 + static_cast<std::uint32_t>(HexDigit(in.Next()));
    if (digits == 0 || !in.Take(')'))
      throw TFault{"Der Typ hinter hex ist unverständlich.", "The type behind hex makes no sense."};
  }
  if (!in.Take(':')) throw TFault{"Hinter hex fehlt \":\".", "\":\" is missing behind hex."};
  value.Raw.Bytes = ReadByteList();
  if (IsRawType(value.Raw.Type)) return value;
  if (value.Raw.Type == 4) {
    if (value.Raw.Bytes.size() != 4)
      throw TFault{"hex(4) muss vier Bytes haben.", "hex(4) must have four bytes."};
    std::uint32_t number = 0;
    for (std::size_t i = 4; i-- > 0;) number = (number << 8U) | value.Raw.Bytes[i];
    value.Kind = TFileValue::TKind::Number;
    value.Number = static_cast<std::int32_t>(number);
    return value;
  }
  value.Kind = TFileValue::TKind::String;
  value.String = isOld ? FromOldBytes(value.Raw.Bytes) : FromUtf16Bytes(value.Raw.Bytes);
  if (value.String.ends_with('\0')) value.String.pop_back();
  return value;
}

std::vector<std::uint8_t> Reader::ReadByteList() {
  const TFault fault{"Eine Liste aus zweistelligen hexadezimalen Zahlen wird erwartet.",
                     "A list of hexadecimal numbers of two digits is expected."};
  std::vector<std::uint8_t> bytes;
  for (bool needsByte = false;;) {
    in.SkipBlanks();
    if (in.Take('\\')) {
      in.SkipBlanks();
      if (!in.AtLineEnd() || in.AtEnd()) throw fault;
      in.SkipLineEnd();
      continue;
    }
    if (HexDigit(in.Peek()) < 0) {
      if (needsByte) throw fault;
      return bytes;
    }
    int byte = HexDigit(in.Next());
    if (HexDigit(in.Peek()) >= 0) byte = byte * 16 + HexDigit(in.Next());
    bytes.push_back(static_cast<std::uint8_t>(byte));
    in.SkipBlanks();
    if (!in.Take(',')) return bytes;
    needsByte = true;
  }
}

void Reader::EndOfLine() {
  in.SkipBlanks();
  if (in.Peek() == ';') in.TakeLine();
  if (!in.AtLineEnd())
    throw TFault{"Hinter dem Wert steht noch etwas.", "Something follows the value."};
  in.SkipLineEnd();
}

/// The value as the store keeps it, if the key can hold it.
std::string Reader::Checked(const std::string& key, const TFileValue& value) const {
  using enum TFileValue::TKind;
  const std::optional<TKeyKind> kind = KindOfKey(section, key);
  if (value.Kind == Raw) {
    if (kind)
      throw TFault{"\"" + key + "\" kann keine Bytes enthalten.", "\"" + key + "\" cannot hold bytes."};
    return value.Raw.StoredText();
  }
  if (value.Kind == Number) {
    if (kind == TKeyKind::Flag) return value.Number != 0 ? "1" : "0";
    return std::to_string(value.Number);
  }
  if (!kind || *kind == TKeyKind::Text) return value.String;
  MemorySettings one;
  one.WriteString({}, "value", value.String);
  const bool isFlag = *kind == TKeyKind::Flag;
  const auto read = [&](int otherwise) {
    return isFlag ? int{one.ReadBool({}, "value", otherwise != 0)}
                  : one.ReadInteger({}, "value", otherwise);
  };
  if (read(0) != read(1))
    throw TFault{"\"" + key + "\" muss eine Zahl sein.", "\"" + key + "\" must be a number."};
  return std::to_string(read(0));
}

}  // namespace

TRegistryImport ReadRegistryFile(std::span<const std::uint8_t> bytes) {
  TRegistryImport refused;
  if (bytes.size() > MostRegistryBytes) {
    refused.Error = Text("Die Datei ist zu groß.", "The file is too large.");
    return refused;
  }
  const std::optional<std::string> file = DecodeRegistryFile(bytes);
  if (!file) {
    refused.Error = Text("Die Datei ist abgeschnitten.", "The file is cut off.");
    return refused;
  }
  return Reader(*file).Read();
}

}  // namespace Sonarello
