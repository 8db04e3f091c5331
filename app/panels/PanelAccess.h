// What assistive programs read of the panels' own-painted controls.
#pragma once

namespace Sonarello {

/// Makes the panels known to assistive programs; every later call does nothing.
void InstallPanelAccess();

}  // namespace Sonarello
