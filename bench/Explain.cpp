#include "Explain.h"

#include <random>
#include <string>
#include <vector>

#include "Measure.h"
#include "editors/SysexExplain.h"

namespace Sonarello::Bench {

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::size_t MessageCount = 100'000;
constexpr std::size_t RuleByRuleCount = MessageCount / 10;

/// Keeps the optimiser from dropping what nobody reads.
volatile std::size_t Sink;

std::uint8_t Byte(std::mt19937& numbers) { return static_cast<std::uint8_t>(numbers()); }

std::vector<Bytes> RandomMessages() {
  constexpr std::size_t longest = 32;
  std::mt19937 numbers(1);
  std::vector<Bytes> messages(MessageCount);
  for (Bytes& message : messages) {
    message.resize(numbers() % longest);
    for (std::uint8_t& byte : message) byte = Byte(numbers);
  }
  return messages;
}

std::vector<Bytes> KnownMessages() {
  std::mt19937 numbers(2);
  const std::span<const TSysexRule> rules = SysexRules().Rules();
  std::vector<Bytes> messages(MessageCount);
  for (Bytes& message : messages)
    for (const TSysexByte& byte : rules[numbers() % rules.size()].Bytes) {
      const unsigned steps = static_cast<unsigned>(byte.Last - byte.First) / byte.Step + 1U;
      message.push_back(static_cast<std::uint8_t>(byte.First + numbers() % steps * byte.Step));
    }
  return messages;
}

template <class F>
double SecondsFor(std::span<const Bytes> messages, F&& explain) {
  std::size_t letters = 0;
  const double seconds = Seconds([&] {
    for (const Bytes& message : messages) letters += explain(message).size();
  });
  Sink = letters;
  return seconds;
}

std::string RuleByRule(const Bytes& message) {
  std::string text;
  for (const TSysexRule& rule : SysexRules().Rules())
    if (rule.Fits(message, TExplained::Shown)) text = rule.NameOf(message);
  return text;
}

}  // namespace

ExplainFigures MeasureExplain() {
  const std::vector<Bytes> random = RandomMessages();
  const std::vector<Bytes> known = KnownMessages();
  const auto explain = [](const Bytes& message) { return ExplainSysex(message); };
  constexpr double share = static_cast<double>(MessageCount) / RuleByRuleCount;
  return {.Random = SecondsFor(random, explain),
          .Known = SecondsFor(known, explain),
          .RuleByRule = share * SecondsFor(std::span(known).first(RuleByRuleCount), RuleByRule)};
}

}  // namespace Sonarello::Bench
