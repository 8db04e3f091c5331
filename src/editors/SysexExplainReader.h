// Sonarello: reads the rules that tell what a sysex is.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "editors/SysexExplainRules.h"

namespace Sonarello {

/// Reads rules in the notation that data/sysex/rules.txt explains at its beginning. The names point
/// into `text`, which must stay. A line that is not understood is left out and told in `faults` with
/// its number.
[[nodiscard]] TSysexRules ReadSysexRules(std::string_view text, std::vector<std::string>& faults);

}  // namespace Sonarello
