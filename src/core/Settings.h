// Sonarello: what the program remembers from one start to the next.
#pragma once

#include <map>
#include <string>
#include <string_view>

namespace Sonarello {

/// The store of settings: texts by section and key; case does not count in either. The empty section
/// holds the settings of no instrument.
class ISettings {
 public:
  virtual ~ISettings() = default;
  /// The text of a key, or `otherwise`. Reading an absent key never makes it.
  [[nodiscard]] virtual std::string ReadString(std::string_view section, std::string_view key,
                                               std::string_view otherwise) const = 0;
  virtual void WriteString(std::string_view section, std::string_view key, std::string_view value) = 0;
  /// Forgets a key; nothing happens if there is none.
  virtual void DeleteValue(std::string_view section, std::string_view key) = 0;

  /// A number; `otherwise` if the key is absent or holds none.
  [[nodiscard]] int ReadInteger(std::string_view section, std::string_view key, int otherwise) const;
  void WriteInteger(std::string_view section, std::string_view key, int value);
  [[nodiscard]] bool ReadBool(std::string_view section, std::string_view key, bool otherwise) const;
  void WriteBool(std::string_view section, std::string_view key, bool value);
};

/// Settings that last as long as the object.
class MemorySettings : public ISettings {
 public:
  [[nodiscard]] std::string ReadString(std::string_view section, std::string_view key,
                                       std::string_view otherwise) const override;
  void WriteString(std::string_view section, std::string_view key, std::string_view value) override;
  void DeleteValue(std::string_view section, std::string_view key) override;

 private:
  std::map<std::string, std::string, std::less<>>
      values;  ///< by section, "\n" and key in small letters
};

}  // namespace Sonarello
