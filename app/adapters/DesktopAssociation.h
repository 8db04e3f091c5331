// Sonarello: makes the desktop open ".mid" files with this program.
#pragma once

#include "core/Ports.h"
#include "desk/FileAssociation.h"

namespace Sonarello {

/// The places of the user's desktop, by the environment (XDG Base Directory Specification), and this
/// program's file.
[[nodiscard]] TAssociationPlaces DesktopPlaces();

/// `MMH_AssocWithMID`: associates, and tells the user how it went and what may be left to do by hand.
void AssocWithMID(const TAssociationPlaces& places, IMessages& messages);

}  // namespace Sonarello
