// Sonarello: the settings as a registry text file, out and in.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "desk/MyRegistry.h"

namespace Sonarello {

/// The whole key as a file of version 5.00: UTF-16, low byte first, with its mark and CRLF. The table
/// of the keys says which value is a double word; all others are texts.
[[nodiscard]] std::vector<std::uint8_t> ExportRegistry(const IRegistryStore& store);

/// Largest file that is read, in bytes.
inline constexpr std::size_t MostRegistryBytes = 4U << 20U;

/// One change that a file asks for.
struct TRegistryChange {
  enum class TKind : std::uint8_t { Write, DeleteValue, DeleteSection };
  TKind Kind = TKind::Write;
  std::string Section;
  std::string Key;
  std::string Value;  ///< as stored
};

/// A file that was read and checked, or why it is refused.
struct TRegistryImport {
  std::vector<TRegistryChange> Changes;  ///< in the order of the file
  std::string Error;  ///< in the user's language, with the number of the line; empty if all is well

  [[nodiscard]] bool IsGood() const noexcept { return Error.empty(); }
  /// How many values the file sets.
  [[nodiscard]] std::size_t Writes() const noexcept;
};

/// Reads a registry text file of version 5.00 or 4, in UTF-16 or UTF-8. Every line is checked before
/// anything comes of it: one fault refuses the file. Keys of other programs are faults.
[[nodiscard]] TRegistryImport ReadRegistryFile(std::span<const std::uint8_t> bytes);
/// The question to the user before a file that was read takes effect.
[[nodiscard]] std::string ImportQuestion(const TRegistryImport& import);
/// Makes the changes of a good file; those of a refused one never.
void ApplyImport(IRegistryStore& store, const TRegistryImport& import);

}  // namespace Sonarello
