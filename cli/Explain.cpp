#include "editors/SysexExplain.h"

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <unistd.h>

#include <algorithm>
#include <iostream>
#include <optional>

#include "Commands.h"
#include "DisplayText.h"
#include "JsonParts.h"
#include "core/Texts.h"

namespace Sonarello {

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::string_view Blanks = " \t\r\n";
constexpr std::size_t DigitsOfByte = 2;

std::optional<std::uint8_t> Digit(char sign) {
  if (sign >= '0' && sign <= '9') return static_cast<std::uint8_t>(sign - '0');
  if (sign >= 'A' && sign <= 'F') return static_cast<std::uint8_t>(sign - 'A' + 10);
  if (sign >= 'a' && sign <= 'f') return static_cast<std::uint8_t>(sign - 'a' + 10);
  return std::nullopt;
}

/// Adds the bytes of a word without blanks; what is wrong with it otherwise.
std::string AddWord(Bytes& bytes, std::string_view word) {
  const std::string quoted = "\"" + VisibleText(word) + "\"";
  if (!std::ranges::all_of(word, [](char sign) { return Digit(sign).has_value(); }))
    return Text(quoted + " ist keine Hexadezimalzahl", quoted + " is no hexadecimal number");
  if (word.size() % DigitsOfByte != 0)
    return Text(quoted + ": Ein Byte hat zwei Stellen", quoted + ": a byte has two digits");
  for (std::size_t i = 0; i < word.size(); i += DigitsOfByte)
    bytes.push_back(static_cast<std::uint8_t>(*Digit(word[i]) << 4 | *Digit(word[i + 1])));
  return {};
}

/// Adds the bytes of a text; what is wrong with it otherwise.
std::string AddText(Bytes& bytes, std::string_view text) {
  while (true) {
    const std::size_t begin = text.find_first_not_of(Blanks);
    if (begin == std::string_view::npos) return {};
    text.remove_prefix(begin);
    const std::size_t end = std::min(text.find_first_of(Blanks), text.size());
    if (std::string fault = AddWord(bytes, text.substr(0, end)); !fault.empty()) return fault;
    text.remove_prefix(end);
  }
}

/// A message is told without its F0; whoever types it with one means the same.
std::span<const std::uint8_t> BehindF0(const Bytes& bytes) {
  const std::span<const std::uint8_t> all(bytes);
  return !all.empty() && all.front() == Sysex ? all.subspan(1) : all;
}

Json ExplanationJson(const Bytes& bytes) {
  const std::string text = ExplainSysex(BehindF0(bytes));
  return {{"bytes", fmt::format("{:02X}", fmt::join(BehindF0(bytes), " "))},
          {"explanation", text.empty() ? Json(nullptr) : Json(text)}};
}

/// Single bytes that follow one another are one message, up to its F7: they need no quotes then.
struct TWords {
  std::vector<Bytes> Messages;
  bool Open = false;  ///< the last message takes further single bytes

  std::string Add(const std::string& word) {
    Bytes bytes;
    if (std::string fault = AddText(bytes, word); !fault.empty()) return fault;
    const bool isSingle = bytes.size() == 1;
    if (isSingle && Open)
      Messages.back().push_back(bytes.front());
    else
      Messages.push_back(bytes);
    Open = isSingle && bytes.front() != SysexEscape;
    return {};
  }
};

int ExplainWords(const Arguments& arguments, Console& console) {
  TWords words;
  for (const std::string& word : arguments.Sysexs)
    if (const std::string fault = words.Add(word); !fault.empty()) {
      console.Err("sonarello-cli: " + fault);
      return WrongUsage;
    }
  Json results = Json::array();
  for (const Bytes& message : words.Messages) {
    if (arguments.Json)
      results.push_back(ExplanationJson(message));
    else
      console.Out(ExplainSysex(BehindF0(message)) + "\n");
  }
  if (arguments.Json) console.Out(results.dump(2) + "\n");
  return Done;
}

/// A line of results for each line, empty ones too, so that the two go together.
int ExplainLines(const Arguments& arguments, Console& console) {
  const bool isTyped = ::isatty(STDIN_FILENO) != 0;
  int status = Done;
  Json results = Json::array();
  std::string line;
  for (int number = 1; console.HasReader() && std::getline(std::cin, line); ++number) {
    Bytes message;
    const std::string fault = AddText(message, line);
    if (!fault.empty()) {
      console.Err(fmt::format("sonarello-cli: {} {}: {}", Text("Zeile", "line"), number, fault));
      status = Refused;
    }
    if (arguments.Json)
      results.push_back(fault.empty() ? ExplanationJson(message) : Json(nullptr));
    else
      console.Out((fault.empty() ? ExplainSysex(BehindF0(message)) : "") + "\n");
    if (isTyped) console.FlushResults();
  }
  if (arguments.Json) console.Out(results.dump(2) + "\n");
  return status;
}

}  // namespace

int ExplainCommand(const Arguments& arguments, const Setup&, Console& console) {
  return arguments.Sysexs.empty() ? ExplainLines(arguments, console) : ExplainWords(arguments, console);
}

}  // namespace Sonarello
