// Sonarello: the songs that were open last.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/Settings.h"

namespace Sonarello {

/// The list behind the nine menu items "MMF_Midifile1" to "MMF_Midifile9": paths (UTF-8, or the bytes
/// that the file system has), newest first, none twice.
class RecentFiles {
 public:
  static constexpr std::size_t Most = 9;

  void Load(const ISettings& settings);
  void Store(ISettings& settings) const;

  /// Brings a path to the top. One with a tab is not taken, as the list is stored divided by tabs.
  void Add(const std::string& path);
  /// Takes out a path, such as one whose file is gone.
  void Remove(std::string_view path);
  void Clear() { LastMidifilesList.clear(); }

  [[nodiscard]] const std::vector<std::string>& Names() const noexcept { return LastMidifilesList; }

 private:
  std::vector<std::string> LastMidifilesList;
};

}  // namespace Sonarello
