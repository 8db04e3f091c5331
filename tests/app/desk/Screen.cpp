// A screen that can hold the main window: the offscreen platform's own is smaller than the desk.
#include <QByteArray>
#include <QtGlobal>

namespace {

/// Before any application is made, which is in main.
const bool IsChosen = [] {
  const QByteArray platform = qgetenv("QT_QPA_PLATFORM");
  if (platform.isEmpty() || platform == "offscreen")
    qputenv("QT_QPA_PLATFORM",
            "offscreen:configfile=" SONARELLO_SOURCE_DIR "/tests/app/desk/screens.json");
  return true;
}();

}  // namespace
