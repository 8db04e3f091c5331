#include "desk/RecentFiles.h"

#include <algorithm>

namespace Sonarello {

namespace {

constexpr std::string_view ListKey = "LastMidifilesList";

}  // namespace

void RecentFiles::Load(const ISettings& settings) {
  LastMidifilesList.clear();
  const std::string stored = settings.ReadString({}, ListKey, {});
  for (std::size_t start = 0; start <= stored.size() && LastMidifilesList.size() < Most;) {
    const std::size_t end = std::min(stored.find('\t', start), stored.size());
    const std::string name = stored.substr(start, end - start);
    if (!name.empty() && std::ranges::find(LastMidifilesList, name) == LastMidifilesList.end())
      LastMidifilesList.push_back(name);
    start = end + 1;
  }
}

void RecentFiles::Store(ISettings& settings) const {
  if (LastMidifilesList.empty()) return settings.DeleteValue({}, ListKey);
  std::string list;
  for (const std::string& name : LastMidifilesList) {
    if (!list.empty()) list += '\t';
    list += name;
  }
  settings.WriteString({}, ListKey, list);
}

void RecentFiles::Add(const std::string& path) {
  if (path.empty() || path.find('\t') != std::string::npos) return;
  const std::string name = path;  // the path may be an entry of the list itself
  Remove(name);
  LastMidifilesList.insert(LastMidifilesList.begin(), name);
  if (LastMidifilesList.size() > Most) LastMidifilesList.resize(Most);
}

void RecentFiles::Remove(std::string_view path) { std::erase(LastMidifilesList, path); }

}  // namespace Sonarello
