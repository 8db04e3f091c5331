// The settings in an INI file under the user's configuration folder.
#pragma once

#include <QHash>
#include <QSettings>
#include <QString>
#include <memory>
#include <string>
#include <vector>

#include "core/Ports.h"
#include "desk/MyRegistry.h"

namespace Sonarello {

/// Keys without a section stand under [General]. A file that cannot be read is set aside and the
/// program begins with its defaults; where nothing can be written the settings last as long as the
/// program. Several running programs may share the file: each brings its own changes into it.
class IniSettings : public IRegistryStore {
 public:
  explicit IniSettings(const QString& fileName = DefaultFileName());
  ~IniSettings() override;
  IniSettings(const IniSettings&) = delete;
  IniSettings& operator=(const IniSettings&) = delete;

  /// "Sonarello/Sonarello XI.ini" in the user's configuration folder.
  [[nodiscard]] static QString DefaultFileName();

  /// Tells what went wrong with the file since the last call; nothing if all is well.
  void Report(IMessages& messages);

  [[nodiscard]] std::string ReadString(std::string_view section, std::string_view key,
                                       std::string_view otherwise) const override;
  void WriteString(std::string_view section, std::string_view key, std::string_view value) override;
  void DeleteValue(std::string_view section, std::string_view key) override;
  [[nodiscard]] std::vector<std::string> Sections() const override;
  [[nodiscard]] std::vector<std::string> Values(std::string_view section) const override;
  [[nodiscard]] bool HasValue(std::string_view section, std::string_view key) const override;
  void DeleteSection(std::string_view section) override;
  bool Flush() override;

 private:
  /// A value under the names that it was first written with.
  struct TEntry {
    std::string Section;
    std::string Key;
    QString Path;  ///< as QSettings knows it
  };

  void OpenFile();
  void ReadNames();
  [[nodiscard]] const TEntry* Find(std::string_view section, std::string_view key) const;
  /// The spelling of a section that holds values already, or the given one.
  [[nodiscard]] std::string SpellingOf(std::string_view section) const;

  QString fileName;
  QString place;  ///< where `ini` keeps them; not the file if that is out of reach
  std::unique_ptr<QSettings> ini;
  QHash<QByteArray, TEntry> entries;  ///< by section, "\n" and key in small letters
  std::string report;
  bool toldReadOnly = false;
};

}  // namespace Sonarello
