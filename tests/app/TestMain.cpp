// The main of every test program in tests/app/.
#include <gtest/gtest.h>

#include <QCursor>
#include <QScreen>
#include <QTemporaryDir>
#include <QTest>
#include <cstdlib>

#include "app/Application.h"
#include "app/controls/SonStyle.h"
#include "core/Texts.h"

namespace Sonarello {
namespace {

QString& ExpectedWarning() {
  static QString part;
  return part;
}

void FailOnWarning(QtMsgType type, const QMessageLogContext&, const QString& message) {
  const bool expected = !ExpectedWarning().isEmpty() && message.contains(ExpectedWarning());
  // What the offscreen platform has no screen for, such as raising a window, is no fault of the
  // program.
  const bool ofPlatform = message.startsWith(QLatin1String("This plugin does not support "));
  if (type == QtDebugMsg || type == QtInfoMsg || expected || ofPlatform) return;
  ADD_FAILURE() << "Qt says: " << message.toStdString();
  if (type == QtFatalMsg) std::abort();
}

/// The platform and the folders of tests, wherever they run; must come before the QApplication.
int& Offscreen(int& argc) {
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  static const QTemporaryDir runtimeFolder;  // of this user alone, as Qt wants it
  qputenv("XDG_RUNTIME_DIR", runtimeFolder.path().toUtf8());
  QStandardPaths::setTestModeEnabled(true);
  qInstallMessageHandler(FailOnWarning);
  return argc;
}

}  // namespace

TestApplication::TestApplication(int& argc, char** argv) : application(Offscreen(argc), argv) {
  GermanLanguage = false;
  DressApplication(application);
}

TestApplication::~TestApplication() { qInstallMessageHandler(nullptr); }

Expecting::Expecting(const QString& part) { ExpectedWarning() = part; }

Expecting::~Expecting() { ExpectedWarning().clear(); }

void ShowForTest(QWidget& widget) {
  // The pointer must not hover over what a test looks at.
  QCursor::setPos(QGuiApplication::primaryScreen()->geometry().bottomRight());
  widget.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&widget));
  QCoreApplication::processEvents();
}

bool SaveScreenshot(QWidget& widget, const QString& name) {
  const QString folder =
      qEnvironmentVariable("SONARELLO_SCREENSHOTS", QStringLiteral(SONARELLO_SCREENSHOTS));
  return QDir().mkpath(folder) &&
         widget.grab().save(QDir(folder).filePath(name + QStringLiteral(".png")));
}

}  // namespace Sonarello

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  const Sonarello::TestApplication application(argc, argv);
  return RUN_ALL_TESTS();
}
