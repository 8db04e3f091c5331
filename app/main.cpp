// Sonarello: the editor for Standard MIDI Files, with its windows.
#include <QApplication>

#include "app/controls/Icons.h"
#include "app/controls/SonStyle.h"
#include "app/desk/FileNames.h"
#include "app/desk/Picture.h"
#include "app/desk/Program.h"

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  QApplication::setApplicationName(QStringLiteral("Sonarello"));
  QApplication::setApplicationVersion(QStringLiteral(SONARELLO_VERSION));
  QGuiApplication::setDesktopFileName(QStringLiteral("sonarello"));
  Sonarello::DressApplication(application);
  QApplication::setWindowIcon(Sonarello::ApplicationIcon());
  const QStringList arguments = QApplication::arguments();
  Sonarello::Program program(Sonarello::TProgramPlaces::OfThisUser(),
                             arguments.size() > 1 ? Sonarello::PathOf(arguments[1]) : std::string());
  program.Start();
  const qsizetype picture = arguments.indexOf(QStringLiteral("--picture"));
  if (picture > 0 && picture + 1 < arguments.size())
    Sonarello::TakePicture(program.Window(), arguments[picture + 1]);
  return QApplication::exec();
}
