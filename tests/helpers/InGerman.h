// The German texts, for as long as a test looks at them.
#pragma once

#include "core/Texts.h"

namespace Sonarello {

/// Speaks German while it lives, English afterwards.
struct InGerman {
  InGerman() { GermanLanguage = true; }
  ~InGerman() { GermanLanguage = false; }
  InGerman(const InGerman&) = delete;
  InGerman& operator=(const InGerman&) = delete;
};

}  // namespace Sonarello
