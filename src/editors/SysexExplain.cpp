#include "editors/SysexExplain.h"

#include "editors/SysexExplainBytes.h"
#include "editors/SysexExplainReader.h"

namespace Sonarello {

namespace {

constexpr std::string_view RulesPath = "rules.txt";

std::string_view RulesText() {
  for (std::size_t f = 0; f < SysexExplainByteCount; ++f)
    if (SysexExplainBytes[f].Path == RulesPath)
      return {SysexExplainBytes[f].Begin,
              static_cast<std::size_t>(SysexExplainBytes[f + 1].Begin - SysexExplainBytes[f].Begin)};
  return {};
}

}  // namespace

const TSysexRules& SysexRules() {
  // The rules that come with the program have no faults; a test reads them.
  static const TSysexRules rules = [] {
    std::vector<std::string> faults;
    return ReadSysexRules(RulesText(), faults);
  }();
  return rules;
}

std::string ExplainSysex(std::span<const std::uint8_t> bytes, TExplained when) {
  return SysexRules().Explain(bytes, when);
}

}  // namespace Sonarello
