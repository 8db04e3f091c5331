// Sonarello: what a system-exclusive message is, in words.
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "editors/SysexExplainRules.h"

namespace Sonarello {

/// What a sysex is: "XG System On", "Yamaha MultiPart 3 - Pan". Empty if no rule knows it. `bytes` are
/// those behind F0, the closing F7 included; a message may be cut short or hold anything. The
/// names are the same in both languages. Threads may call it at once.
[[nodiscard]] std::string ExplainSysex(std::span<const std::uint8_t> bytes,
                                       TExplained when = TExplained::Shown);

/// The rules behind it, which are read from data/sysex at the first call.
[[nodiscard]] const TSysexRules& SysexRules();

}  // namespace Sonarello
