#include "app/adapters/IniFile.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>

#include "core/TextEncoding.h"

namespace Sonarello {

namespace {

constexpr qint64 MostBytes = 16 << 20;

bool IsLine(const QByteArray& line) {
  const QByteArray text = line.trimmed();
  if (text.isEmpty() || text.startsWith(';') || text.startsWith('#')) return true;
  return text.startsWith('[') ? text.contains(']') : text.indexOf('=') > 0;
}

bool IsText(const QByteArray& bytes) {
  for (const char c : bytes)
    if ((c >= 0 && c < ' ' && c != '\t' && c != '\r' && c != '\n') || c == '\x7f') return false;
  return IsUTF8({bytes.constData(), static_cast<std::size_t>(bytes.size())});
}

}  // namespace

bool IsIniText(const QByteArray& bytes) {
  if (!IsText(bytes)) return false;
  QByteArray line;
  bool isQuoted = false;
  bool isComment = false;
  for (qsizetype i = 0; i < bytes.size(); ++i) {
    const char c = bytes[i];
    if (c == '\\' && !isComment) {
      line += c;
      if (i + 1 < bytes.size()) ++i;
    } else if (c == '\n' && !isQuoted) {
      if (!IsLine(line)) return false;
      line.clear();
      isComment = false;
    } else {
      if (line.isEmpty() && (c == ';' || c == '#')) isComment = true;
      if (c == '"' && !isComment) isQuoted = !isQuoted;
      line += c;
    }
  }
  return !isQuoted && IsLine(line);
}

IniState LookAtIniFile(const QString& fileName) {
  const QFileInfo info(fileName);
  if (!info.exists() && !info.isSymLink()) return IniState::Absent;
  // A pipe must not be opened: that waits for whoever writes into it.
  if (!info.isFile() || info.size() > MostBytes) return IniState::Damaged;
  QFile file(fileName);
  if (!file.open(QIODevice::ReadOnly)) return IniState::Damaged;
  const QByteArray bytes = file.readAll();
  if (file.error() != QFileDevice::NoError) return IniState::Damaged;
  return IsIniText(bytes) ? IniState::Good : IniState::Damaged;
}

QString SetAside(const QString& fileName) {
  const QString stamp = QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-HHmmss"));
  const QString name = fileName + QStringLiteral(".damaged-") + stamp;
  for (int number = 1; number < 100; ++number) {
    const QString aside = number == 1 ? name : name + QLatin1Char('-') + QString::number(number);
    if (!QFileInfo::exists(aside) && QFile::rename(fileName, aside)) return aside;
  }
  return {};
}

}  // namespace Sonarello
