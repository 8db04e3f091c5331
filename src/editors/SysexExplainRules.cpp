#include "editors/SysexExplainRules.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <functional>

namespace Sonarello {

namespace {

/// Bytes that the index looks at. Behind them the rules of a node are few enough to be tried.
constexpr std::size_t IndexedBytes = 8;

void AppendNumber(std::string& text, int number) {
  std::array<char, 12> digits{};
  const char* const end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
  text.append(digits.data(), static_cast<std::size_t>(end - digits.data()));
}

}  // namespace

bool TSysexRule::Fits(TSysexView bytes, TExplained when) const noexcept {
  if (OnlyEdited && when != TExplained::Edited) return false;
  if (Whole ? bytes.size() != Bytes.size() : bytes.size() < Bytes.size()) return false;
  for (std::size_t i = 0; i < Bytes.size(); ++i)
    if (!Bytes[i].Fits(bytes[i])) return false;
  return true;
}

std::string TSysexRule::NameOf(TSysexView bytes) const {
  constexpr std::size_t usualLength = 64;
  std::string name;
  name.reserve(usualLength);
  for (const TSysexPiece& piece : Name) {
    name += piece.Words;
    if (piece.Index == TSysexPiece::NoIndex) continue;
    const int number = piece.NumberOf(bytes[static_cast<std::size_t>(piece.Index)]);
    if (piece.Table != nullptr)
      name += (*piece.Table)[static_cast<std::size_t>(number)];
    else
      AppendNumber(name, number);
  }
  return name;
}

TSysexRules::TSysexRules(std::deque<TSysexTable> t, std::vector<TSysexRule> r)
    : tables(std::move(t)), rules(std::move(r)), nodes(1) {
  for (std::uint32_t rule = 0; rule < rules.size(); ++rule) AddToIndex(rule);
  Inherit();
}

void TSysexRules::AddToIndex(std::uint32_t rule) {
  std::uint32_t node = 0;
  for (std::size_t i = 0; i < std::min(rules[rule].Bytes.size(), IndexedBytes); ++i) {
    const TSysexByte& byte = rules[rule].Bytes[i];
    if (!byte.IsOne()) break;
    const Node* next = Step(nodes[node], byte.First);
    const auto behind = static_cast<std::uint32_t>(
        next == nullptr ? nodes.size() : static_cast<std::size_t>(next - nodes.data()));
    if (next == nullptr) {
      nodes[node].Next.emplace_back(byte.First, behind);
      nodes.emplace_back();
    }
    node = behind;
  }
  nodes[node].Rules.push_back(rule);
}

/// Gives each node the rules of those on the way to it. A node is made after the one in front of it.
void TSysexRules::Inherit() {
  for (Node& node : nodes) {
    std::ranges::sort(node.Rules, std::greater{});
    for (const auto& [byte, behind] : node.Next) {
      std::vector<std::uint32_t>& below = nodes[behind].Rules;
      below.insert(below.end(), node.Rules.begin(), node.Rules.end());
    }
  }
}

const TSysexRules::Node* TSysexRules::Step(const Node& node, std::uint8_t byte) const noexcept {
  for (const auto& [first, behind] : node.Next)
    if (first == byte) return &nodes[behind];
  return nullptr;
}

const TSysexRule* TSysexRules::Find(TSysexView bytes, TExplained when) const noexcept {
  const Node* node = nodes.data();
  for (const std::uint8_t byte : bytes) {
    const Node* const next = Step(*node, byte);
    if (next == nullptr) break;
    node = next;
  }
  for (const std::uint32_t rule : node->Rules)
    if (rules[rule].Fits(bytes, when)) return &rules[rule];
  return nullptr;
}

std::string TSysexRules::Explain(TSysexView bytes, TExplained when) const {
  const TSysexRule* const rule = Find(bytes, when);
  return rule == nullptr ? std::string() : rule->NameOf(bytes);
}

}  // namespace Sonarello
