#include <string>
#include <vector>

#include "Targets.h"
#include "desk/RegistryText.h"

namespace Sonarello::Fuzz {

namespace {

void Demand(bool condition, const char* what) {
  if (!condition) throw Fault(what);
}

bool SameValues(const IRegistryStore& a, const IRegistryStore& b, const std::string& section) {
  if (a.Values(section) != b.Values(section)) return false;
  for (const std::string& key : a.Values(section))
    if (a.ReadString(section, key, {}) != b.ReadString(section, key, {})) return false;
  return true;
}

bool SameContent(const IRegistryStore& a, const IRegistryStore& b) {
  if (a.Sections() != b.Sections() || !SameValues(a, b, {})) return false;
  for (const std::string& section : a.Sections())
    if (!SameValues(a, b, section)) return false;
  return true;
}

}  // namespace

void FuzzRegistry(Input input) {
  const TRegistryImport import = ReadRegistryFile(input);
  Demand(import.IsGood() != import.Changes.empty(), "a file that is neither good nor refused");
  MemoryRegistry store;
  ApplyImport(store, import);
  if (!import.IsGood()) {
    Demand(store.Values({}).empty() && store.Sections().empty(),
           "a refused file that changed something");
    return;
  }
  const std::vector<std::uint8_t> file = ExportRegistry(store);
  const TRegistryImport exported = ReadRegistryFile(file);
  MemoryRegistry again;
  ApplyImport(again, exported);
  Demand(SameContent(store, again), "settings that are exported and imported differ");
  Demand(ExportRegistry(again) == file, "an export that does not come to rest");
}

}  // namespace Sonarello::Fuzz
