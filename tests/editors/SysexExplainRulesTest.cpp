// The table as such: each rule at the ends of its ranges, and the index against trying rule by rule.
#include <gtest/gtest.h>

#include <optional>
#include <random>
#include <set>

#include "editors/SysexExplain.h"
#include "editors/SysexExplainHex.h"

namespace Sonarello {

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr TExplained Moments[] = {TExplained::Shown, TExplained::Edited};

/// What the rules say by definition: each is tried, and a later one overwrites.
std::string InOrder(const TSysexRules& rules, const Bytes& bytes, TExplained when) {
  std::string text;
  for (const TSysexRule& rule : rules.Rules())
    if (rule.Fits(bytes, when)) text = rule.NameOf(bytes);
  return text;
}

void ExpectAsInOrder(const Bytes& bytes) {
  for (const TExplained when : Moments)
    EXPECT_EQ(ExplainSysex(bytes, when), InOrder(SysexRules(), bytes, when)) << TextOf(bytes);
}

/// A message of the first or the last value of every range.
Bytes EndsOf(const TSysexRule& rule, bool last) {
  Bytes bytes;
  for (const TSysexByte& byte : rule.Bytes) bytes.push_back(last ? byte.Last : byte.First);
  return bytes;
}

/// Values just outside a byte's range, or between its steps.
std::vector<std::uint8_t> Outside(const TSysexByte& byte) {
  std::vector<std::uint8_t> values;
  for (const int value : {byte.First - 1, byte.Last + 1, byte.First + 1})
    if (value >= 0 && value <= 0xFF && !byte.Fits(static_cast<std::uint8_t>(value)))
      values.push_back(static_cast<std::uint8_t>(value));
  return values;
}

class Dice {
 public:
  int Below(int end) { return static_cast<int>(numbers() % static_cast<unsigned>(end)); }
  std::uint8_t Byte() { return static_cast<std::uint8_t>(Below(0x100)); }
  bool Chance(int oneIn) { return Below(oneIn) == 0; }

  Bytes Message() {
    Bytes bytes(static_cast<std::size_t>(Below(36)));
    for (std::uint8_t& byte : bytes) byte = Byte();
    return bytes;
  }
  /// A message that fits a rule, followed by others' bytes.
  Bytes Fitting(const TSysexRule& rule) {
    Bytes bytes;
    for (const TSysexByte& byte : rule.Bytes) {
      const int steps = (byte.Last - byte.First) / byte.Step + 1;
      bytes.push_back(static_cast<std::uint8_t>(byte.First + byte.Step * Below(steps)));
    }
    if (!rule.Whole)
      for (int more = Below(6); more > 0; --more) bytes.push_back(Byte());
    return bytes;
  }
  /// The same with one or two bytes changed, added, or the end cut off.
  Bytes Mutated(Bytes bytes) {
    for (int change = 1 + Below(2); change > 0 && !bytes.empty(); --change) {
      const auto at = static_cast<std::size_t>(Below(static_cast<int>(bytes.size())));
      switch (Below(5)) {
        case 0: bytes[at] = Byte(); break;
        case 1: ++bytes[at]; break;
        case 2: --bytes[at]; break;
        case 3: bytes.resize(at); break;
        default: bytes.insert(bytes.begin() + static_cast<std::ptrdiff_t>(at), Byte()); break;
      }
    }
    return bytes;
  }

 private:
  std::mt19937 numbers{20};
};

/// A message for which the rule counts, if there is one.
std::optional<Bytes> Won(const TSysexRule& rule, Dice& dice) {
  constexpr int tries = 2000;
  const TExplained when = rule.OnlyEdited ? TExplained::Edited : TExplained::Shown;
  for (int i = 0; i < tries; ++i)
    if (const Bytes bytes = dice.Fitting(rule); SysexRules().Find(bytes, when) == &rule) return bytes;
  return std::nullopt;
}

}  // namespace

TEST(SysexRules, FitAtTheEndsOfTheirRanges) {
  for (const TSysexRule& rule : SysexRules().Rules())
    for (const bool last : {false, true}) {
      const Bytes bytes = EndsOf(rule, last);
      EXPECT_TRUE(rule.Fits(bytes, TExplained::Edited)) << TextOf(bytes);
      EXPECT_EQ(rule.Fits(bytes, TExplained::Shown), !rule.OnlyEdited) << TextOf(bytes);
      EXPECT_FALSE(rule.NameOf(bytes).empty()) << TextOf(bytes);
      ExpectAsInOrder(bytes);
    }
}

TEST(SysexRules, FitNothingJustOutsideOfTheirRanges) {
  for (const TSysexRule& rule : SysexRules().Rules())
    for (std::size_t i = 0; i < rule.Bytes.size(); ++i)
      for (const std::uint8_t value : Outside(rule.Bytes[i]))
        for (const bool last : {false, true}) {
          Bytes bytes = EndsOf(rule, last);
          bytes[i] = value;
          EXPECT_FALSE(rule.Fits(bytes, TExplained::Edited)) << TextOf(bytes);
          ExpectAsInOrder(bytes);
        }
}

TEST(SysexRules, FitOnlyAsManyBytesAsTheySay) {
  for (const TSysexRule& rule : SysexRules().Rules()) {
    Bytes bytes = EndsOf(rule, false);
    bytes.push_back(0x00);
    EXPECT_EQ(rule.Fits(bytes, TExplained::Edited), !rule.Whole) << TextOf(bytes);
    bytes.resize(rule.Bytes.size() - 1);
    EXPECT_FALSE(rule.Fits(bytes, TExplained::Edited)) << TextOf(bytes);
  }
}

TEST(SysexRules, AreNotHiddenByOthers) {
  Dice dice;
  for (const TSysexRule& rule : SysexRules().Rules())
    EXPECT_TRUE(Won(rule, dice)) << TextOf(EndsOf(rule, false));
}

TEST(SysexRules, NameEachMessageOnce) {
  // A name is never broken off: no brace of the notation is left, and no two blanks stand together.
  Dice dice;
  for (const TSysexRule& rule : SysexRules().Rules()) {
    const std::string name = rule.NameOf(dice.Fitting(rule));
    EXPECT_EQ(name.find_first_of("{}\""), std::string::npos) << name;
    EXPECT_EQ(name.find("  "), std::string::npos) << name;
  }
}

TEST(SysexRules, SayTheSameByTheIndexAsOneAfterTheOther) {
  Dice dice;
  const std::span<const TSysexRule> rules = SysexRules().Rules();
  constexpr int rounds = 40;
  for (int round = 0; round < rounds; ++round)
    for (const TSysexRule& rule : rules) {
      ExpectAsInOrder(dice.Fitting(rule));
      ExpectAsInOrder(dice.Mutated(dice.Fitting(rule)));
      ExpectAsInOrder(dice.Message());
    }
}

TEST(SysexRules, SayTheSameByTheIndexForTablesOfAnyShape) {
  Dice dice;
  // Few values, so that rules overlap; beginnings longer than the index looks.
  const auto smallByte = [&dice] {
    const auto first = static_cast<std::uint8_t>(dice.Below(3));
    const bool isRange = dice.Chance(4);
    return TSysexByte{.First = first, .Last = static_cast<std::uint8_t>(isRange ? first + 1 : first)};
  };
  constexpr int tableCount = 200;
  for (int t = 0; t < tableCount; ++t) {
    std::vector<TSysexRule> table(static_cast<std::size_t>(dice.Below(30)));
    std::deque<std::string> names;
    for (TSysexRule& rule : table) {
      rule.Bytes.resize(static_cast<std::size_t>(1 + dice.Below(12)));
      for (TSysexByte& byte : rule.Bytes) byte = dice.Chance(8) ? TSysexByte{} : smallByte();
      rule.Whole = dice.Chance(4);
      rule.OnlyEdited = dice.Chance(4);
      rule.Name = {{.Words = names.emplace_back(std::to_string(names.size()))}};
    }
    const TSysexRules rules({}, table);
    for (int m = 0; m < 100; ++m) {
      Bytes bytes(static_cast<std::size_t>(dice.Below(14)));
      for (std::uint8_t& byte : bytes) byte = static_cast<std::uint8_t>(dice.Below(3));
      if (dice.Chance(2) && !table.empty())
        bytes =
            dice.Fitting(table[static_cast<std::size_t>(dice.Below(static_cast<int>(table.size())))]);
      for (const TExplained when : Moments)
        EXPECT_EQ(rules.Explain(bytes, when), InOrder(rules, bytes, when)) << TextOf(bytes);
    }
  }
}

TEST(SysexRules, FindNothingWithoutRules) {
  const TSysexRules none({}, {});
  EXPECT_EQ(none.Find(BytesOf("26"), TExplained::Shown), nullptr);
  EXPECT_EQ(none.Explain({}, TExplained::Edited), "");
}

}  // namespace Sonarello
