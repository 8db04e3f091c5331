// Sonarello: the tree of the user's settings, and the ways to read and write it.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/Settings.h"

namespace Sonarello {

/// The program's own key of the current user, under which everything is stored.
inline constexpr std::string_view RegistryRoot = "\\SOFTWARE\\Brightfold\\Sonarello XI\\";

/// The name by which a section's default value goes, the one without a name of its own.
inline constexpr std::string_view DefaultValueName = "@";

/// A store of settings whose content can be listed. Sections are sub-keys of `RegistryRoot`, deeper
/// ones divided by "\"; the empty section is the key itself. Names keep the spelling in which they were
/// first written; case does not count.
class IRegistryStore : public ISettings {
 public:
  /// Sub-keys at any depth that hold values, in alphabetical order; the empty section is not named.
  [[nodiscard]] virtual std::vector<std::string> Sections() const = 0;
  /// Names of a section's values, in alphabetical order.
  [[nodiscard]] virtual std::vector<std::string> Values(std::string_view section) const = 0;
  [[nodiscard]] virtual bool HasValue(std::string_view section, std::string_view key) const = 0;
  /// Forgets a section with all that is below it; the empty section is everything.
  virtual void DeleteSection(std::string_view section) = 0;
  /// Brings what was written to where it stays. False if that is not possible; what was written then
  /// lasts as long as the program.
  virtual bool Flush() { return true; }
};

/// A store that lasts as long as the object.
class MemoryRegistry : public IRegistryStore {
 public:
  [[nodiscard]] std::string ReadString(std::string_view section, std::string_view key,
                                       std::string_view otherwise) const override;
  void WriteString(std::string_view section, std::string_view key, std::string_view value) override;
  void DeleteValue(std::string_view section, std::string_view key) override;
  [[nodiscard]] std::vector<std::string> Sections() const override;
  [[nodiscard]] std::vector<std::string> Values(std::string_view section) const override;
  [[nodiscard]] bool HasValue(std::string_view section, std::string_view key) const override;
  void DeleteSection(std::string_view section) override;

 private:
  struct TValue {
    std::string Name;
    std::string Text;
  };
  struct TSection {
    std::string Name;
    std::map<std::string, TValue, std::less<>> Values;  ///< by name in small letters
  };
  std::map<std::string, TSection, std::less<>> sections;  ///< by name in small letters
};

/// True if `section` is `above` or lies below it.
[[nodiscard]] bool IsSectionWithin(std::string_view section, std::string_view above);

/// A key of the registry that is opened, read or written, and closed.
class TMyRegistry {
 public:
  explicit TMyRegistry(IRegistryStore& store) : REG(&store) {}

  enum class TRootKey { CurrentUser };

  bool bCreateReg = false;               ///< `Open` may open a key that holds nothing yet
  bool bSaveNew = false;                 ///< reading an absent value writes its default
  std::string sRegString{RegistryRoot};  ///< path from the root, such as `RegistryRoot`
  TRootKey hRootKey = TRootKey::CurrentUser;
  std::function<void(const std::string&)> FOnError;  ///< told why a key could not be opened

  /// Opens the key `sRegString`. It must be the program's own key, one below it, or the one above it,
  /// where nothing but `DeleteKey` works. False and `FOnError` if it is another or does not exist.
  bool Open();
  void Close();

  /// Values of a sub-key (`Section`, may be empty) of the open key; the default while none is open.
  [[nodiscard]] std::string ReadString(std::string_view Section, std::string_view Ident,
                                       std::string_view Default);
  [[nodiscard]] int ReadInteger(std::string_view Section, std::string_view Ident, int Default);
  [[nodiscard]] bool ReadBool(std::string_view Section, std::string_view Ident, bool Default);
  void WriteString(std::string_view Group, std::string_view Ident, std::string_view Value);
  void WriteInteger(std::string_view Group, std::string_view Ident, int Value);
  void WriteBool(std::string_view Group, std::string_view Ident, bool Value);
  /// Deletes the sub-key `Ident` of `Section` with all that is below it.
  void DeleteKey(std::string_view Section, std::string_view Ident);
  void DeleteValue(std::string_view Section, std::string_view Ident);
  [[nodiscard]] bool KeyExists(std::string_view Section) const;
  [[nodiscard]] bool ValueExists(std::string_view Section, std::string_view Ident) const;

 private:
  /// The store's section of a sub-key of the open key; nothing above the program's own key.
  [[nodiscard]] std::optional<std::string> SectionOf(std::string_view subKey) const;

  IRegistryStore* REG;
  bool isOpen = false;
  std::string openPath;  ///< without backslashes at the ends
};

/// The settings as the program's parts read and write them: each call opens the key, does one thing and
/// closes it. With `Subdir` it is a sub-key, such as an instrument's name. An absent value gives the
/// default and is not made.
class UserRegistry {
 public:
  explicit UserRegistry(IRegistryStore& tree) : store(&tree), MyRegistry(tree) {}

  [[nodiscard]] bool ReadBoolFromUserRegistry(std::string_view Key, bool Default);
  [[nodiscard]] int ReadIntFromUserRegistry(std::string_view Key, int Default);
  [[nodiscard]] std::string ReadStrFromUserRegistry(std::string_view Key, std::string_view Default);
  void WriteBoolToUserRegistry(std::string_view Key, bool Value);
  void WriteIntToUserRegistry(std::string_view Key, int Value);
  void WriteStrToUserRegistry(std::string_view Key, std::string_view Value);
  void DeleteFromUserRegistry(std::string_view Key);
  [[nodiscard]] bool KeyInUserRegistry(std::string_view Key);

  [[nodiscard]] bool ReadBoolFromUserRegistrySubdir(std::string_view Subdir, std::string_view Key,
                                                    bool Default);
  [[nodiscard]] int ReadIntFromUserRegistrySubdir(std::string_view Subdir, std::string_view Key,
                                                  int Default);
  [[nodiscard]] std::string ReadStrFromUserRegistrySubdir(std::string_view Subdir, std::string_view Key,
                                                          std::string_view Default);
  void WriteBoolToUserRegistrySubdir(std::string_view Subdir, std::string_view Key, bool Value);
  void WriteIntToUserRegistrySubdir(std::string_view Subdir, std::string_view Key, int Value);
  void WriteStrToUserRegistrySubdir(std::string_view Subdir, std::string_view Key,
                                    std::string_view Value);
  void DeleteFromUserRegistrySubdir(std::string_view Subdir, std::string_view Key);
  [[nodiscard]] bool KeyInUserRegistrySubdir(std::string_view Subdir, std::string_view Key);

  /// Back to factory settings: deletes the program's own key.
  void DeleteAllRegistry();

  /// The tree behind it, for those who work on whole tables of settings.
  [[nodiscard]] IRegistryStore& Store() noexcept { return *store; }

 private:
  /// Opens the program's key or a sub-key of it, does something, closes it.
  template <typename Work>
  auto With(std::string_view subdir, Work work);

  IRegistryStore* store;
  TMyRegistry MyRegistry;
};

}  // namespace Sonarello
