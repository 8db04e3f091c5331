// Sonarello: an ordered table of rules that tell what a sysex is, and the index that finds the one.
#pragma once

#include <cstdint>
#include <deque>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Sonarello {

/// The bytes of a sysex behind F0.
using TSysexView = std::span<const std::uint8_t>;

/// Two names depend on whether a list shows the message or the user has just typed it.
enum class TExplained : std::uint8_t { Shown, Edited };

/// What a byte must be: in a range, a whole number of steps behind its first value.
struct TSysexByte {
  std::uint8_t First = 0x00;
  std::uint8_t Last = 0xFF;
  std::uint8_t Step = 1;

  [[nodiscard]] bool Fits(std::uint8_t byte) const noexcept {
    return byte >= First && byte <= Last && (Step == 1 || (byte - First) % Step == 0);
  }
  [[nodiscard]] bool IsOne() const noexcept { return First == Last; }
};

/// Names by number, from 0.
using TSysexTable = std::vector<std::string_view>;

/// A piece of a name: words, then, if it has an index, a number made of that byte of the message, or
/// the entry of a table with that number.
struct TSysexPiece {
  static constexpr int NoIndex = -1;

  std::string_view Words;
  int Index = NoIndex;
  int Mask = 0xFF;
  int Plus = 0;
  int Divisor = 1;
  const TSysexTable* Table = nullptr;

  [[nodiscard]] int NumberOf(std::uint8_t byte) const noexcept {
    return ((byte & Mask) + Plus) / Divisor;
  }
};

struct TSysexRule {
  std::vector<TSysexByte> Bytes;  ///< what a message begins with
  bool Whole = false;             ///< nothing follows
  bool OnlyEdited = false;        ///< holds for `TExplained::Edited` alone
  std::vector<TSysexPiece> Name;  ///< its indices lie within Bytes, its numbers within their tables

  [[nodiscard]] bool Fits(TSysexView bytes, TExplained when) const noexcept;
  /// The name of a message that fits.
  [[nodiscard]] std::string NameOf(TSysexView bytes) const;
};

/// Rules in their order. All that fit a message would be found by trying one after the other, and the
/// last of them counts; the index tries only those whose first bytes are the message's, from the last
/// on.
class TSysexRules {
 public:
  TSysexRules(std::deque<TSysexTable> tables, std::vector<TSysexRule> rules);
  TSysexRules(TSysexRules&&) = default;  // the pieces point at tables, which a deque moves as they lie

  [[nodiscard]] std::span<const TSysexRule> Rules() const noexcept { return rules; }
  /// The rule that counts, or nil.
  [[nodiscard]] const TSysexRule* Find(TSysexView bytes, TExplained when) const noexcept;
  /// The name by the rule that counts; empty without one.
  [[nodiscard]] std::string Explain(TSysexView bytes, TExplained when) const;

 private:
  /// The messages that begin with the bytes on the way to a node.
  struct Node {
    std::vector<std::pair<std::uint8_t, std::uint32_t>> Next;  ///< a byte, and the node behind it
    std::vector<std::uint32_t> Rules;  ///< that such messages may fit, the last one first
  };

  void AddToIndex(std::uint32_t rule);
  void Inherit();
  [[nodiscard]] const Node* Step(const Node& node, std::uint8_t byte) const noexcept;

  std::deque<TSysexTable> tables;
  std::vector<TSysexRule> rules;
  std::vector<Node> nodes;
};

}  // namespace Sonarello
