// Fits the name of a sound into the plate of a strip.
#pragma once

#include <QString>
#include <QStringList>

namespace Sonarello {

struct FittedName {
  QStringList lines;      ///< at most three
  double size = 0;        ///< of the condensed font, in pixels at 100 %
  double lineHeight = 0;  ///< in pixels at 100 %
};

/// Breaks a name into at most three lines of a width in pixels of the scale in force, with the largest
/// font that does it. A name that no font can hold loses its end to three dots. Answers are kept.
[[nodiscard]] const FittedName& FitName(const QString& name, int width);

}  // namespace Sonarello
