#include "app/adapters/DesktopAssociation.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <optional>
#include <vector>

#include "core/Texts.h"

namespace Sonarello {
namespace {

/// Gives a variable of the environment a value while it lives.
class Variable {
 public:
  Variable(const char* n, const QString& value) : name(n) {
    if (qEnvironmentVariableIsSet(name)) before = qgetenv(name);
    qputenv(name, QFile::encodeName(value));
  }
  ~Variable() {
    if (before)
      qputenv(name, *before);
    else
      qunsetenv(name);
  }
  Variable(const Variable&) = delete;
  Variable& operator=(const Variable&) = delete;

 private:
  const char* name;
  std::optional<QByteArray> before;
};

struct Told : IMessages {
  std::vector<std::string> Shown;
  void Show(const std::string& text) override { Shown.push_back(text); }
  bool Ask(const std::string&) override { return false; }
};

TEST(DesktopAssociation, ThePlacesFollowTheEnvironment) {
  const Variable config("XDG_CONFIG_HOME", QStringLiteral("/c"));
  const Variable data("XDG_DATA_HOME", QStringLiteral("/d"));
  const Variable folders("XDG_DATA_DIRS", QStringLiteral("/a::relative:/b"));
  const TAssociationPlaces places = DesktopPlaces();
  EXPECT_EQ(places.ConfigHome, "/c");
  EXPECT_EQ(places.DataHome, "/d");
  EXPECT_EQ(places.DataDirs, (std::vector<std::filesystem::path>{"/a", "/b"}));
  EXPECT_EQ(places.Program.string(), QCoreApplication::applicationFilePath().toStdString());
}

TEST(DesktopAssociation, WithoutAnEnvironmentTheUsualPlacesCount) {
  const Variable config("XDG_CONFIG_HOME", QString());
  const Variable data("XDG_DATA_HOME", QStringLiteral("relative"));
  const Variable folders("XDG_DATA_DIRS", QString());
  const TAssociationPlaces places = DesktopPlaces();
  const std::string home = QDir::homePath().toStdString();
  EXPECT_EQ(places.ConfigHome.string(), home + "/.config");
  EXPECT_EQ(places.DataHome.string(), home + "/.local/share");
  EXPECT_EQ(places.DataDirs, (std::vector<std::filesystem::path>{"/usr/local/share", "/usr/share"}));
}

TEST(DesktopAssociation, AssociatesInTheUsersHomeAndTellsHowItWent) {
  const QTemporaryDir home;
  const Variable config("XDG_CONFIG_HOME", home.filePath(QStringLiteral("config")));
  const Variable data("XDG_DATA_HOME", home.filePath(QStringLiteral("data")));
  const Variable folders("XDG_DATA_DIRS", home.filePath(QStringLiteral("system")));
  Told messages;
  AssocWithMID(DesktopPlaces(), messages);
  EXPECT_EQ(messages.Shown, std::vector{AssociationText({})});
  EXPECT_TRUE(IsAssociatedWithMID(DesktopPlaces()));
  EXPECT_TRUE(QFile::exists(home.filePath(QStringLiteral("data/applications/sonarello.desktop"))));
}

TEST(DesktopAssociation, AFailureIsToldWithItsFile) {
  const QTemporaryDir home;
  QFile inTheWay(home.filePath(QStringLiteral("config")));
  ASSERT_TRUE(inTheWay.open(QIODevice::WriteOnly));
  const Variable config("XDG_CONFIG_HOME", inTheWay.fileName());
  const Variable data("XDG_DATA_HOME", home.filePath(QStringLiteral("data")));
  Told messages;
  AssocWithMID(DesktopPlaces(), messages);
  const std::string list = inTheWay.fileName().toStdString() + "/mimeapps.list";
  EXPECT_EQ(messages.Shown, std::vector{AssociationText({TAssociationOutcome::ListFailed, list})});
}

}  // namespace
}  // namespace Sonarello
