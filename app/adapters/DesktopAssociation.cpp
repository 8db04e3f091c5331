#include "app/adapters/DesktopAssociation.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QString>
#include <QStringList>

namespace Sonarello {

namespace {

std::filesystem::path PathOf(const QString& path) { return QFile::encodeName(path).toStdString(); }

/// A folder that the environment names; paths that are not absolute do not count.
std::filesystem::path Home(const char* variable, const QString& otherwise) {
  const QString value = qEnvironmentVariable(variable);
  return PathOf(QDir::isAbsolutePath(value) ? value : QDir::home().filePath(otherwise));
}

}  // namespace

TAssociationPlaces DesktopPlaces() {
  TAssociationPlaces places;
  places.ConfigHome = Home("XDG_CONFIG_HOME", QStringLiteral(".config"));
  places.DataHome = Home("XDG_DATA_HOME", QStringLiteral(".local/share"));
  QString folders = qEnvironmentVariable("XDG_DATA_DIRS");
  if (folders.isEmpty()) folders = QStringLiteral("/usr/local/share:/usr/share");
  for (const QString& folder : folders.split(QLatin1Char(':'), Qt::SkipEmptyParts))
    if (QDir::isAbsolutePath(folder)) places.DataDirs.push_back(PathOf(folder));
  places.Program = PathOf(QCoreApplication::applicationFilePath());
  return places;
}

void AssocWithMID(const TAssociationPlaces& places, IMessages& messages) {
  messages.Show(AssociationText(AssociateWithMID(places)));
}

}  // namespace Sonarello
