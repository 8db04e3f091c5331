// Sonarello: what a song's operations ask of others, for benchmarks that run without them.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <utility>

#include "core/Ports.h"

namespace Sonarello::Bench {

/// Awkward songs earn warnings, such as that of too many open notes; a benchmark lets them pass.
class DeafMessages : public IMessages {
 public:
  void Show(const std::string&) override {}
  bool Ask(const std::string&) override { return true; }
};

/// The main route and no other.
class OneRoute : public IRoutes {
 public:
  /// A route for an instrument (its number in the catalogue).
  explicit OneRoute(int instrument) { table[0].InstrumValue = static_cast<std::uint8_t>(instrument); }
  explicit OneRoute(TMidiRouting route) : table{std::move(route)} {}
  [[nodiscard]] std::span<const TMidiRouting> MidiRouting() const override { return table; }

 private:
  std::array<TMidiRouting, 1> table;
};

}  // namespace Sonarello::Bench
