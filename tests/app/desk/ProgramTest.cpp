// The program put together: settings on disk, language, the command line's questions.
#include "app/desk/Program.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QFile>
#include <QLabel>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include "app/Application.h"
#include "app/adapters/IniSettings.h"
#include "app/controls/QtText.h"
#include "core/Texts.h"

namespace Sonarello {
namespace {

class ProgramAtStart : public testing::Test {
 protected:
  ProgramAtStart() {
    QStandardPaths::setTestModeEnabled(false);
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(folder.filePath(QStringLiteral("config"))));
    places.Documents = ToStd(folder.path());
    places.Application = ToStd(folder.path()) + "/";
  }
  ~ProgramAtStart() override {
    GermanLanguage = false;
    qunsetenv("XDG_CONFIG_HOME");
    QStandardPaths::setTestModeEnabled(true);
  }
  /// Presses a button of the dialog that is about to come, and gives its text.
  static void AnswerWith(const QString& button, QString& asked) {
    auto* const timer = new QTimer(qApp);
    QObject::connect(timer, &QTimer::timeout, timer, [timer, button, &asked] {
      QWidget* const dialog = QApplication::activeModalWidget();
      if (dialog == nullptr) return;
      timer->deleteLater();
      asked = dialog->accessibleDescription() + dialog->accessibleName();
      for (const QLabel* label : dialog->findChildren<QLabel*>()) asked += label->text();
      for (QAbstractButton* one : dialog->findChildren<QAbstractButton*>())
        if (one->text() == button) return one->click();
      ADD_FAILURE() << "no button " << ToStd(button);
      dialog->close();
    });
    timer->start(1);
  }
  void Store(const char* key, const std::string& value) {
    IniSettings settings;
    settings.WriteString("", key, value);
    settings.Flush();
  }
  static std::string Stored(const char* key) { return IniSettings().ReadString("", key, "none"); }

  QTemporaryDir folder;
  TProgramPlaces places;
};

TEST_F(ProgramAtStart, SpeaksTheLanguageThatIsSet) {
  Store("Lang", "de");
  Program german(places, "");
  EXPECT_TRUE(GermanLanguage);
  EXPECT_EQ(german.Window().Menu().Entry("MMF_OpenMidifile").text(),
            QString::fromUtf8("Midifile öffnen"));
}

TEST_F(ProgramAtStart, MakesItsFolderInTheDocuments) {
  Program program(places, "");
  EXPECT_TRUE(QFile::exists(folder.filePath(QStringLiteral("Sonarello XI"))));
}

TEST_F(ProgramAtStart, ForgetsAllSettingsIfTheUserWantsIt) {
  Store("Lang", "en");
  Store("SkinIndex", "1");
  QString asked;
  AnswerWith(QStringLiteral("Reset"), asked);
  Program program(places, "reset_registry");
  EXPECT_TRUE(asked.contains(QStringLiteral("Reset \"Sonarello XI\" to factory settings?")))
      << ToStd(asked);
  EXPECT_EQ(Stored("SkinIndex"), "none");
}

TEST_F(ProgramAtStart, KeepsAllSettingsIfTheUserThinksAgain) {
  Store("Lang", "de");
  Store("SkinIndex", "1");
  QString asked;
  AnswerWith(QStringLiteral("Abbrechen"), asked);
  Program program(places, "reset_registry");
  EXPECT_TRUE(asked.contains(QString::fromUtf8(
      "Soll der \"Sonarello XI\" zu Werkseinstellungen zurückgesetzt werden?\n(dabei gehen alle selbst "
      "gemachte Einstellungen verloren)")))
      << ToStd(asked);
  EXPECT_EQ(Stored("SkinIndex"), "1");
}

TEST_F(ProgramAtStart, TakesASongFromTheCommandLine) {
  Store("Lang", "en");
  Program program(places, "/songs/My Song.MID");
  program.Start();
  EXPECT_EQ(program.Window().AutoloadFileName, "/songs/My Song.MID");
  program.Window().AutoloadFileName.clear();
}

}  // namespace
}  // namespace Sonarello
