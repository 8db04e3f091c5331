#include "editors/SysexExplainReader.h"

#include <algorithm>
#include <charconv>
#include <map>
#include <optional>
#include <stdexcept>

namespace Sonarello {

namespace {

/// What is wrong with a line.
class LineFault : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

[[noreturn]] void Refuse(const std::string& what, std::string_view where) {
  throw LineFault(what + ": " + std::string(where));
}

constexpr int Hexadecimal = 16;
constexpr int Decimal = 10;
constexpr int HighestByte = 0xFF;

int ReadNumber(std::string_view text, int base) {
  int number = -1;
  const char* const end = text.data() + text.size();
  const auto [behind, fault] = std::from_chars(text.data(), end, number, base);
  if (fault != std::errc{} || behind != end || number < 0 || number > HighestByte)
    Refuse("no number from 0 to 255", text);
  return number;
}

std::uint8_t ReadByte(std::string_view text) {
  if (text.size() != 2) Refuse("no byte of two digits", text);
  return static_cast<std::uint8_t>(ReadNumber(text, Hexadecimal));
}

/// The text in front of a sign, which is taken away with it; all of it if the sign is missing.
std::string_view TakeUpTo(std::string_view& text, char sign) {
  const std::size_t end = std::min(text.find(sign), text.size());
  const std::string_view front = text.substr(0, end);
  text.remove_prefix(std::min(end + 1, text.size()));
  return front;
}

TSysexByte ReadPattern(std::string_view word) {
  if (word == "**") return {};
  std::string_view rest = word;
  std::string_view range = TakeUpTo(rest, '/');
  const int step = rest.empty() ? 1 : ReadNumber(rest, Decimal);
  TSysexByte byte;
  byte.First = ReadByte(TakeUpTo(range, '-'));
  byte.Last = range.empty() ? byte.First : ReadByte(range);
  byte.Step = static_cast<std::uint8_t>(step);
  if (byte.First > byte.Last || step == 0 || (byte.Last - byte.First) % step != 0)
    Refuse("no range", word);
  return byte;
}

/// The bytes and the name of a line, and the words that say more about it.
struct RuleLine {
  std::vector<TSysexByte> Bytes;
  std::vector<TSysexPiece> Name;
  std::optional<std::size_t> Place;  ///< number of bytes in front of "..."
  bool Whole = false;                ///< "end"
};

using Tables = std::map<std::string_view, const TSysexTable*, std::less<>>;

/// What stands between braces: 5, 5&15+1, 5-29:Control.
TSysexPiece ReadPlaceholder(std::string_view text, const Tables& tables) {
  TSysexPiece piece;
  std::string_view sums = TakeUpTo(text, ':');
  if (!text.empty()) {
    const auto table = tables.find(text);
    if (table == tables.end()) Refuse("no such table", text);
    piece.Table = table->second;
  }
  const auto takeNumber = [&sums] {
    const std::size_t end = std::min(sums.find_first_of("&+-/"), sums.size());
    const int number = ReadNumber(sums.substr(0, end), Decimal);
    sums.remove_prefix(end);
    return number;
  };
  const auto takeSign = [&sums](char sign) {
    const bool isThere = sums.starts_with(sign);
    if (isThere) sums.remove_prefix(1);
    return isThere;
  };
  piece.Index = takeNumber();
  if (takeSign('&')) piece.Mask = takeNumber();
  if (takeSign('+'))
    piece.Plus = takeNumber();
  else if (takeSign('-'))
    piece.Plus = -takeNumber();
  if (takeSign('/')) piece.Divisor = takeNumber();
  if (!sums.empty()) Refuse("not understood", sums);
  if (piece.Divisor == 0) Refuse("divided by nothing", "0");
  return piece;
}

std::vector<TSysexPiece> ReadName(std::string_view text, const Tables& tables) {
  std::vector<TSysexPiece> pieces;
  while (!text.empty()) {
    const std::size_t open = text.find('{');
    const std::string_view words = text.substr(0, open);
    if (words.find('}') != std::string_view::npos) Refuse("a brace that was not opened", words);
    if (open == std::string_view::npos) {
      pieces.push_back({.Words = words});
      break;
    }
    text.remove_prefix(open + 1);
    if (text.find('}') == std::string_view::npos) Refuse("a brace that is not closed", text);
    TSysexPiece piece = ReadPlaceholder(TakeUpTo(text, '}'), tables);
    piece.Words = words;
    pieces.push_back(piece);
  }
  return pieces;
}

/// The words between the quotes at a line's end; what is in front of them stays.
std::string_view TakeQuoted(std::string_view& line) {
  const std::size_t open = line.find('"');
  if (open == std::string_view::npos || line.size() < open + 2 || !line.ends_with('"'))
    Refuse("no name in quotes at its end", line);
  const std::string_view name = line.substr(open + 1, line.size() - open - 2);
  if (name.find('"') != std::string_view::npos) Refuse("a quote in a name", name);
  line = line.substr(0, open);
  return name;
}

RuleLine ReadLine(std::string_view line, const Tables& tables) {
  RuleLine rule;
  rule.Name = ReadName(TakeQuoted(line), tables);
  while (!line.empty()) {
    const std::string_view word = TakeUpTo(line, ' ');
    if (word.empty()) continue;
    if (rule.Whole) Refuse("behind the end", word);
    if (word == "end")
      rule.Whole = true;
    else if (word == "..." && !rule.Place)
      rule.Place = rule.Bytes.size();
    else
      rule.Bytes.push_back(ReadPattern(word));
  }
  return rule;
}

/// A rule with one of its beginnings, bytes and names put together.
RuleLine Under(const RuleLine& head, const RuleLine& line) {
  RuleLine rule = head;
  const auto place = static_cast<std::ptrdiff_t>(head.Place.value_or(head.Bytes.size()));
  rule.Bytes.insert(rule.Bytes.begin() + place, line.Bytes.begin(), line.Bytes.end());
  rule.Name.insert(rule.Name.end(), line.Name.begin(), line.Name.end());
  rule.Whole = line.Whole;
  return rule;
}

/// Every byte that fits must make a number that the name can show.
void Check(const RuleLine& rule) {
  if (rule.Bytes.empty()) Refuse("a rule without bytes", "");
  for (const TSysexPiece& piece : rule.Name) {
    if (piece.Index == TSysexPiece::NoIndex) continue;
    if (static_cast<std::size_t>(piece.Index) >= rule.Bytes.size())
      Refuse("a name that needs a byte behind the rule's", std::to_string(piece.Index));
    const TSysexByte& pattern = rule.Bytes[static_cast<std::size_t>(piece.Index)];
    for (int byte = pattern.First; byte <= pattern.Last; byte += pattern.Step) {
      const int number = piece.NumberOf(static_cast<std::uint8_t>(byte));
      if (number < 0) Refuse("a number below 0", std::to_string(piece.Index));
      if (piece.Table != nullptr && static_cast<std::size_t>(number) >= piece.Table->size())
        Refuse("no such entry of the table", std::to_string(number));
    }
  }
}

class RuleReader {
 public:
  explicit RuleReader(std::vector<std::string>& f) : faults(f) {}

  TSysexRules Read(std::string_view text) {
    while (!text.empty()) {
      ++lineNumber;
      try {
        TakeLine(TakeUpTo(text, '\n'));
      } catch (const LineFault& fault) {
        faults.push_back("line " + std::to_string(lineNumber) + ": " + fault.what());
      }
    }
    EndBlock();
    return {std::move(tables), std::move(rules)};
  }

 private:
  void TakeLine(std::string_view line) {
    if (line.find_first_not_of(' ') == std::string_view::npos || line.starts_with('#')) return;
    if (line.starts_with(Indent)) return TakeIndented(line.substr(Indent.size()));
    if (line.starts_with(TableWord)) return BeginTable(line.substr(TableWord.size()));
    if (line.starts_with(UnderWord)) return BeginHead(line.substr(UnderWord.size()));
    EndBlock();
    const bool onlyEdited = line.starts_with(EditedWord);
    const RuleLine rule = ReadLine(onlyEdited ? line.substr(EditedWord.size()) : line, byName);
    if (rule.Place) Refuse("\"...\" in a rule", line);
    Check(rule);
    Add(rule, onlyEdited);
  }

  void TakeIndented(std::string_view line) {
    if (table != nullptr) {
      std::string_view front = line;
      const std::string_view name = TakeQuoted(front);
      if (!front.empty()) Refuse("bytes in a table", front);
      table->push_back(name);
      return;
    }
    if (heads.empty()) Refuse("belongs to nothing", line);
    const RuleLine rule = ReadLine(line, byName);
    if (rule.Place) Refuse("\"...\" in a rule", line);
    for (const RuleLine& head : heads) Check(Under(head, rule));
    block.push_back(rule);
  }

  void BeginTable(std::string_view name) {
    EndBlock();
    if (byName.contains(name)) Refuse("a second table of the name", name);
    table = &tables.emplace_back();
    byName.emplace(name, table);
  }

  void BeginHead(std::string_view line) {
    if (!block.empty() || table != nullptr) EndBlock();
    const RuleLine head = ReadLine(line, byName);
    if (head.Whole) Refuse("an end of a beginning", line);
    heads.push_back(head);
  }

  /// The rules of a beginning stand together, those of the next one behind them.
  void EndBlock() {
    for (const RuleLine& head : heads)
      for (const RuleLine& rule : block) Add(Under(head, rule), false);
    heads.clear();
    block.clear();
    table = nullptr;
  }

  void Add(RuleLine rule, bool onlyEdited) {
    rules.push_back({.Bytes = std::move(rule.Bytes),
                     .Whole = rule.Whole,
                     .OnlyEdited = onlyEdited,
                     .Name = std::move(rule.Name)});
  }

  static constexpr std::string_view Indent = "  ";
  static constexpr std::string_view TableWord = "table ";
  static constexpr std::string_view UnderWord = "under ";
  static constexpr std::string_view EditedWord = "edited ";

  std::vector<std::string>& faults;
  std::size_t lineNumber = 0;
  std::deque<TSysexTable> tables;
  Tables byName;
  TSysexTable* table = nullptr;  ///< whose entries come, or nil
  std::vector<RuleLine> heads;   ///< the beginnings of the rules that come
  std::vector<RuleLine> block;   ///< their rules
  std::vector<TSysexRule> rules;
};

}  // namespace

TSysexRules ReadSysexRules(std::string_view text, std::vector<std::string>& faults) {
  return RuleReader(faults).Read(text);
}

}  // namespace Sonarello
