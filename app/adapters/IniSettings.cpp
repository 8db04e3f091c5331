#include "app/adapters/IniSettings.h"

#include <QStandardPaths>
#include <algorithm>
#include <utility>

#include "app/adapters/IniFile.h"
#include "core/TextOrder.h"
#include "core/Texts.h"
#include "desk/RegistryTextCode.h"

namespace Sonarello {

namespace {

/// A path at which no file can be: QSettings then keeps in memory what is written.
const QString nowhere = QStringLiteral("/dev/null/settings.ini");

QString FromText(std::string_view text) { return QString::fromStdU16String(ToUtf16(text)); }
std::string ToText(const QString& text) { return FromUtf16(text.toStdU16String()); }

/// Names may hold the sign that divides them in QSettings.
QString EscapedName(std::string_view name) {
  return FromText(name)
      .replace(QLatin1Char('%'), QLatin1String("%25"))
      .replace(QLatin1Char('/'), QLatin1String("%2F"));
}

std::string NameOf(QString escaped) {
  return ToText(escaped.replace(QLatin1String("%2F"), QLatin1String("/"))
                    .replace(QLatin1String("%25"), QLatin1String("%")));
}

QString PathOf(std::string_view section, std::string_view key) {
  return section.empty() ? EscapedName(key)
                         : EscapedName(section) + QLatin1Char('/') + EscapedName(key);
}

QByteArray FoldedPlace(std::string_view section, std::string_view key) {
  return QByteArray::fromStdString(SmallLetters(section) + '\n' + SmallLetters(key));
}

/// A value that was written by hand without quotation marks is a list where it holds commas.
std::string TextOf(const QVariant& value) {
  if (value.typeId() == QMetaType::QStringList)
    return ToText(value.toStringList().join(QLatin1String(", ")));
  return ToText(value.toString());
}

std::string SetAsideText(const QString& aside) {
  const std::string name = ToText(aside);
  return Text("Die Einstellungen konnten nicht gelesen werden.\rDie beschädigte Datei heißt jetzt \"" +
                  name + "\".\rDas Programm beginnt mit den Werkseinstellungen.",
              "The settings could not be read.\rThe damaged file is now called \"" + name +
                  "\".\rThe program begins with its factory settings.");
}

std::string ReadOnlyText(const QString& fileName) {
  const std::string name = ToText(fileName);
  return Text(
      "Die Einstellungen können nicht gespeichert werden:\r\"" + name +
          "\"\rÄnderungen gelten nur, bis das Programm endet.",
      "The settings cannot be saved:\r\"" + name + "\"\rChanges are in force until the program ends.");
}

}  // namespace

QString IniSettings::DefaultFileName() {
  return QStandardPaths::writableLocation(QStandardPaths::ConfigLocation) +
         QStringLiteral("/Sonarello/Sonarello XI.ini");
}

IniSettings::IniSettings(const QString& file) : fileName(file) {
  OpenFile();
  ReadNames();
}

IniSettings::~IniSettings() = default;

void IniSettings::OpenFile() {
  place = fileName;
  if (LookAtIniFile(fileName) == IniState::Damaged) {
    const QString aside = SetAside(fileName);
    if (aside.isEmpty())
      place = nowhere;
    else
      report = SetAsideText(aside);
  }
  ini = std::make_unique<QSettings>(place, QSettings::IniFormat);
  if (ini->isWritable()) return;
  toldReadOnly = true;
  report += (report.empty() ? "" : "\r") + ReadOnlyText(fileName);
}

void IniSettings::Report(IMessages& messages) {
  if (report.empty()) return;
  const std::string text = std::exchange(report, {});
  messages.Show(text);
}

void IniSettings::ReadNames() {
  entries.clear();
  for (const QString& path : ini->allKeys()) {
    const qsizetype slash = path.indexOf(QLatin1Char('/'));
    const std::string section = slash < 0 ? std::string() : NameOf(path.left(slash));
    const std::string key = NameOf(path.mid(slash + 1));
    entries.insert(FoldedPlace(section, key), {section, key, path});
  }
}

const IniSettings::TEntry* IniSettings::Find(std::string_view section, std::string_view key) const {
  const auto found = entries.constFind(FoldedPlace(section, key));
  return found == entries.constEnd() ? nullptr : &*found;
}

std::string IniSettings::SpellingOf(std::string_view section) const {
  const std::string folded = SmallLetters(section);
  for (const TEntry& entry : entries)
    if (SmallLetters(entry.Section) == folded) return entry.Section;
  return std::string(section);
}

std::string IniSettings::ReadString(std::string_view section, std::string_view key,
                                    std::string_view otherwise) const {
  const TEntry* entry = Find(section, key);
  return entry != nullptr ? TextOf(ini->value(entry->Path)) : std::string(otherwise);
}

void IniSettings::WriteString(std::string_view section, std::string_view key, std::string_view value) {
  const TEntry* entry = Find(section, key);
  if (entry == nullptr) {
    const std::string spelling = SpellingOf(section);
    entry = &*entries.insert(FoldedPlace(section, key),
                             {spelling, std::string(key), PathOf(spelling, key)});
  }
  ini->setValue(entry->Path, FromText(value));
}

void IniSettings::DeleteValue(std::string_view section, std::string_view key) {
  const TEntry* entry = Find(section, key);
  if (entry == nullptr) return;
  ini->remove(entry->Path);
  entries.remove(FoldedPlace(section, key));
}

std::vector<std::string> IniSettings::Sections() const {
  std::vector<std::string> names;
  for (const TEntry& entry : entries)
    if (!entry.Section.empty()) names.push_back(entry.Section);
  std::ranges::sort(names, {}, SmallLetters);
  const auto rest = std::ranges::unique(names, {}, SmallLetters);
  names.erase(rest.begin(), rest.end());
  return names;
}

std::vector<std::string> IniSettings::Values(std::string_view section) const {
  const std::string folded = SmallLetters(section);
  std::vector<std::string> names;
  for (const TEntry& entry : entries)
    if (SmallLetters(entry.Section) == folded) names.push_back(entry.Key);
  std::ranges::sort(names, {}, SmallLetters);
  return names;
}

bool IniSettings::HasValue(std::string_view section, std::string_view key) const {
  return Find(section, key) != nullptr;
}

void IniSettings::DeleteSection(std::string_view section) {
  QHash<QByteArray, TEntry> kept;
  for (auto entry = entries.constBegin(); entry != entries.constEnd(); ++entry) {
    if (IsSectionWithin(entry->Section, section))
      ini->remove(entry->Path);
    else
      kept.insert(entry.key(), *entry);
  }
  entries = kept;
}

bool IniSettings::Flush() {
  // The state of a QSettings is that of its first failure; a fresh one on the same file has its own.
  QSettings now(place, QSettings::IniFormat);
  now.sync();
  const bool isWritten = now.status() != QSettings::AccessError;
  if (!isWritten && !toldReadOnly) {
    toldReadOnly = true;
    report += (report.empty() ? "" : "\r") + ReadOnlyText(fileName);
  }
  if (isWritten) ReadNames();
  return isWritten;
}

}  // namespace Sonarello
