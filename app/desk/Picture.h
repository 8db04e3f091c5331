// Sonarello: a picture of the main window, for those who have no display.
#pragma once

#include <QString>

namespace Sonarello {

class TMainForm;

/// Waits until the window shows what it was started for, writes a picture of it (a file of Qt's image
/// formats) and ends the program: with 0, or with 1 if there is no song or the file cannot be written.
void TakePicture(TMainForm& window, const QString& file);

}  // namespace Sonarello
