// What every test of the windows stands on: one offscreen application with the program's look, and a
// watch over Qt's own warnings, such as of a connect that failed.
#pragma once

#include <QApplication>
#include <QDir>
#include <QLibraryInfo>
#include <QStandardPaths>
#include <QString>
#include <QWidget>
#include <filesystem>

namespace Sonarello {

/// Lives in main while the tests run; a warning of Qt fails the test that runs.
class TestApplication {
 public:
  TestApplication(int& argc, char** argv);
  ~TestApplication();
  TestApplication(const TestApplication&) = delete;
  TestApplication& operator=(const TestApplication&) = delete;

 private:
  QApplication application;
};

/// Lets Qt's warnings that contain a text pass while it lives, for tests of what Qt itself warns about.
class Expecting {
 public:
  explicit Expecting(const QString& part);
  ~Expecting();
  Expecting(const Expecting&) = delete;
  Expecting& operator=(const Expecting&) = delete;
};

/// Shows a widget offscreen and waits until it is laid out and painted.
void ShowForTest(QWidget& widget);

/// Saves a picture of a widget as <name>.png into the folder that the environment variable
/// SONARELLO_SCREENSHOTS names (default: screenshots in the build folder); true if the file was
/// written.
bool SaveScreenshot(QWidget& widget, const QString& name);

}  // namespace Sonarello
