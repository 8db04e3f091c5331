// Sonarello: file names as Qt and as the system have them.
#pragma once

#include <QFile>
#include <QString>
#include <string>

namespace Sonarello {

/// A path as the file system has it.
[[nodiscard]] inline std::string PathOf(const QString& name) {
  return QFile::encodeName(name).toStdString();
}
[[nodiscard]] inline QString NameOf(const std::string& path) {
  return QFile::decodeName(QByteArray::fromStdString(path));
}

}  // namespace Sonarello
