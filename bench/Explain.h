// Sonarello: what it costs to tell what a sysex is.
#pragma once

namespace Sonarello::Bench {

/// Seconds for 100,000 sysexes.
struct ExplainFigures {
  double Random = 0;      ///< of random bytes
  double Known = 0;       ///< that rules know, each rule as often as any other
  double RuleByRule = 0;  ///< the same, every rule tried in order
};

[[nodiscard]] ExplainFigures MeasureExplain();

}  // namespace Sonarello::Bench
