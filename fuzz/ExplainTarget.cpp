#include <algorithm>
#include <string>
#include <vector>

#include "InputReader.h"
#include "Targets.h"
#include "editors/SysexExplain.h"
#include "editors/SysexExplainReader.h"

namespace Sonarello::Fuzz {

namespace {

void Demand(bool condition, const char* what) {
  if (!condition) throw Fault(what);
}

/// Each rule is tried, and a later one overwrites.
std::string InOrder(const TSysexRules& rules, Input message, TExplained when) {
  std::string text;
  for (const TSysexRule& rule : rules.Rules())
    if (rule.Fits(message, when)) text = rule.NameOf(message);
  return text;
}

void CheckMessage(const TSysexRules& rules, Input message) {
  for (const TExplained when : {TExplained::Shown, TExplained::Edited})
    Demand(rules.Explain(message, when) == InOrder(rules, message, when),
           "the index finds another rule than trying all of them");
}

}  // namespace

void FuzzExplain(Input input) {
  InputReader in(input);
  if (!in.Flag()) {
    CheckMessage(SysexRules(), in.Rest());
    return;
  }
  const std::string_view all = in.Text();
  const std::string_view text = all.substr(0, all.find('\0'));
  std::vector<std::string> faults;
  const TSysexRules rules = ReadSysexRules(text, faults);
  for (const std::string& fault : faults)
    Demand(fault.starts_with("line "), "a fault without its line");
  for (const TSysexRule& rule : rules.Rules()) Demand(!rule.Bytes.empty(), "a rule that fits anything");
  CheckMessage(rules, in.Rest().subspan(std::min(text.size() + 1, all.size())));
}

}  // namespace Sonarello::Fuzz
