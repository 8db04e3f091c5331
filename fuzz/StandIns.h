// Sonarello: what stands in for the user and the outputs where a fuzz target needs neither.
#pragma once

#include <span>
#include <string>

#include "core/Ports.h"

namespace Sonarello::Fuzz {

/// Hears nothing and answers every question with yes.
class YesMessages : public IMessages {
 public:
  void Show(const std::string&) override {}
  bool Ask(const std::string&) override { return true; }
};

/// One output, of the first instrument of the catalogue.
class OneRoute : public IRoutes {
 public:
  [[nodiscard]] std::span<const TMidiRouting> MidiRouting() const override { return {&route, 1}; }

 private:
  TMidiRouting route;
};

}  // namespace Sonarello::Fuzz
