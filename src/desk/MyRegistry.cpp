#include "desk/MyRegistry.h"

#include "core/TextOrder.h"
#include "core/Texts.h"

namespace Sonarello {

bool IsSectionWithin(std::string_view section, std::string_view above) {
  if (above.empty()) return true;
  const std::string inner = SmallLetters(section);
  const std::string outer = SmallLetters(above);
  return inner == outer || (inner.starts_with(outer) && inner[outer.size()] == '\\');
}

// --- The store in memory

std::string MemoryRegistry::ReadString(std::string_view section, std::string_view key,
                                       std::string_view otherwise) const {
  const auto place = sections.find(SmallLetters(section));
  if (place == sections.end()) return std::string(otherwise);
  const auto value = place->second.Values.find(SmallLetters(key));
  return value != place->second.Values.end() ? value->second.Text : std::string(otherwise);
}

void MemoryRegistry::WriteString(std::string_view section, std::string_view key,
                                 std::string_view value) {
  TSection& place =
      sections.try_emplace(SmallLetters(section), TSection{std::string(section), {}}).first->second;
  TValue& entry =
      place.Values.try_emplace(SmallLetters(key), TValue{std::string(key), {}}).first->second;
  entry.Text = value;
}

void MemoryRegistry::DeleteValue(std::string_view section, std::string_view key) {
  const auto place = sections.find(SmallLetters(section));
  if (place == sections.end()) return;
  place->second.Values.erase(SmallLetters(key));
  if (place->second.Values.empty()) sections.erase(place);
}

std::vector<std::string> MemoryRegistry::Sections() const {
  std::vector<std::string> names;
  for (const auto& [folded, section] : sections)
    if (!folded.empty()) names.push_back(section.Name);
  return names;
}

std::vector<std::string> MemoryRegistry::Values(std::string_view section) const {
  std::vector<std::string> names;
  const auto place = sections.find(SmallLetters(section));
  if (place != sections.end())
    for (const auto& [folded, value] : place->second.Values) names.push_back(value.Name);
  return names;
}

bool MemoryRegistry::HasValue(std::string_view section, std::string_view key) const {
  const auto place = sections.find(SmallLetters(section));
  return place != sections.end() && place->second.Values.contains(SmallLetters(key));
}

void MemoryRegistry::DeleteSection(std::string_view section) {
  std::erase_if(sections, [&](const auto& entry) { return IsSectionWithin(entry.first, section); });
}

// --- The component

namespace {

std::string_view WithoutBackslashes(std::string_view path) {
  while (path.starts_with('\\')) path.remove_prefix(1);
  while (path.ends_with('\\')) path.remove_suffix(1);
  return path;
}

std::string Joined(std::string_view path, std::string_view below) {
  below = WithoutBackslashes(below);
  if (below.empty()) return std::string(path);
  return path.empty() ? std::string(below) : std::string(path) + '\\' + std::string(below);
}

bool HoldsAnything(const IRegistryStore& store, std::string_view section) {
  if (!store.Values(section).empty()) return true;
  for (const std::string& name : store.Sections())
    if (IsSectionWithin(name, section)) return true;
  return false;
}

std::string CannotOpenText(std::string_view path) {
  return Text("Die Einstellungen unter \"" + std::string(path) + "\" können nicht geöffnet werden.",
              "The settings under \"" + std::string(path) + "\" cannot be opened.");
}

}  // namespace

bool TMyRegistry::Open() {
  Close();
  const std::string_view root = WithoutBackslashes(RegistryRoot);
  openPath = WithoutBackslashes(sRegString);
  const std::optional<std::string> section = SectionOf({});
  const bool known = section ? bCreateReg || HoldsAnything(*REG, *section)
                             : IsSectionWithin(root, openPath) && !openPath.empty();
  if (!known) {
    if (FOnError) FOnError(CannotOpenText(sRegString));
    return false;
  }
  isOpen = true;
  return true;
}

void TMyRegistry::Close() { isOpen = false; }

std::optional<std::string> TMyRegistry::SectionOf(std::string_view subKey) const {
  const std::string_view root = WithoutBackslashes(RegistryRoot);
  const std::string path = Joined(openPath, subKey);
  if (!IsSectionWithin(path, root)) return std::nullopt;
  return std::string(WithoutBackslashes(std::string_view(path).substr(root.size())));
}

std::string TMyRegistry::ReadString(std::string_view Section, std::string_view Ident,
                                    std::string_view Default) {
  const std::optional<std::string> section = SectionOf(Section);
  if (!isOpen || !section) return std::string(Default);
  if (bSaveNew && !REG->HasValue(*section, Ident)) REG->WriteString(*section, Ident, Default);
  return REG->ReadString(*section, Ident, Default);
}

int TMyRegistry::ReadInteger(std::string_view Section, std::string_view Ident, int Default) {
  const std::optional<std::string> section = SectionOf(Section);
  if (!isOpen || !section) return Default;
  if (bSaveNew && !REG->HasValue(*section, Ident)) REG->WriteInteger(*section, Ident, Default);
  return REG->ReadInteger(*section, Ident, Default);
}

bool TMyRegistry::ReadBool(std::string_view Section, std::string_view Ident, bool Default) {
  const std::optional<std::string> section = SectionOf(Section);
  if (!isOpen || !section) return Default;
  if (bSaveNew && !REG->HasValue(*section, Ident)) REG->WriteBool(*section, Ident, Default);
  return REG->ReadBool(*section, Ident, Default);
}

void TMyRegistry::WriteString(std::string_view Group, std::string_view Ident, std::string_view Value) {
  if (const std::optional<std::string> section = SectionOf(Group); isOpen && section)
    REG->WriteString(*section, Ident, Value);
}

void TMyRegistry::WriteInteger(std::string_view Group, std::string_view Ident, int Value) {
  WriteString(Group, Ident, std::to_string(Value));
}

void TMyRegistry::WriteBool(std::string_view Group, std::string_view Ident, bool Value) {
  WriteInteger(Group, Ident, Value ? 1 : 0);
}

void TMyRegistry::DeleteKey(std::string_view Section, std::string_view Ident) {
  if (!isOpen || WithoutBackslashes(Ident).empty()) return;
  const std::string path = Joined(Joined(openPath, Section), Ident);
  const std::string_view root = WithoutBackslashes(RegistryRoot);
  // Above the program's own key there is nothing else that this store could delete.
  if (!IsSectionWithin(path, root)) return;
  REG->DeleteSection(WithoutBackslashes(std::string_view(path).substr(root.size())));
}

void TMyRegistry::DeleteValue(std::string_view Section, std::string_view Ident) {
  if (const std::optional<std::string> section = SectionOf(Section); isOpen && section)
    REG->DeleteValue(*section, Ident);
}

bool TMyRegistry::KeyExists(std::string_view Section) const {
  const std::optional<std::string> section = SectionOf(Section);
  return isOpen && section && HoldsAnything(*REG, *section);
}

bool TMyRegistry::ValueExists(std::string_view Section, std::string_view Ident) const {
  const std::optional<std::string> section = SectionOf(Section);
  return isOpen && section && REG->HasValue(*section, Ident);
}

// --- The settings of the program's parts

template <typename Work>
auto UserRegistry::With(std::string_view subdir, Work work) {
  MyRegistry.sRegString = std::string(RegistryRoot) + std::string(subdir);
  MyRegistry.bCreateReg = true;
  MyRegistry.bSaveNew = false;
  MyRegistry.Open();
  struct TCloser {
    TMyRegistry* Opened;
    ~TCloser() { Opened->Close(); }
  } closer{&MyRegistry};
  return work(MyRegistry);
}

bool UserRegistry::ReadBoolFromUserRegistry(std::string_view Key, bool Default) {
  return ReadBoolFromUserRegistrySubdir({}, Key, Default);
}

int UserRegistry::ReadIntFromUserRegistry(std::string_view Key, int Default) {
  return ReadIntFromUserRegistrySubdir({}, Key, Default);
}

std::string UserRegistry::ReadStrFromUserRegistry(std::string_view Key, std::string_view Default) {
  return ReadStrFromUserRegistrySubdir({}, Key, Default);
}

void UserRegistry::WriteBoolToUserRegistry(std::string_view Key, bool Value) {
  WriteBoolToUserRegistrySubdir({}, Key, Value);
}

void UserRegistry::WriteIntToUserRegistry(std::string_view Key, int Value) {
  WriteIntToUserRegistrySubdir({}, Key, Value);
}

void UserRegistry::WriteStrToUserRegistry(std::string_view Key, std::string_view Value) {
  WriteStrToUserRegistrySubdir({}, Key, Value);
}

void UserRegistry::DeleteFromUserRegistry(std::string_view Key) {
  DeleteFromUserRegistrySubdir({}, Key);
}

bool UserRegistry::KeyInUserRegistry(std::string_view Key) { return KeyInUserRegistrySubdir({}, Key); }

bool UserRegistry::ReadBoolFromUserRegistrySubdir(std::string_view Subdir, std::string_view Key,
                                                  bool Default) {
  return With(Subdir, [&](TMyRegistry& key) {
    return key.ValueExists({}, Key) ? key.ReadBool({}, Key, Default) : Default;
  });
}

int UserRegistry::ReadIntFromUserRegistrySubdir(std::string_view Subdir, std::string_view Key,
                                                int Default) {
  return With(Subdir, [&](TMyRegistry& key) {
    return key.ValueExists({}, Key) ? key.ReadInteger({}, Key, Default) : Default;
  });
}

std::string UserRegistry::ReadStrFromUserRegistrySubdir(std::string_view Subdir, std::string_view Key,
                                                        std::string_view Default) {
  return With(Subdir, [&](TMyRegistry& key) {
    return key.ValueExists({}, Key) ? key.ReadString({}, Key, Default) : std::string(Default);
  });
}

void UserRegistry::WriteBoolToUserRegistrySubdir(std::string_view Subdir, std::string_view Key,
                                                 bool Value) {
  With(Subdir, [&](TMyRegistry& key) { key.WriteBool({}, Key, Value); });
}

void UserRegistry::WriteIntToUserRegistrySubdir(std::string_view Subdir, std::string_view Key,
                                                int Value) {
  With(Subdir, [&](TMyRegistry& key) { key.WriteInteger({}, Key, Value); });
}

void UserRegistry::WriteStrToUserRegistrySubdir(std::string_view Subdir, std::string_view Key,
                                                std::string_view Value) {
  With(Subdir, [&](TMyRegistry& key) { key.WriteString({}, Key, Value); });
}

void UserRegistry::DeleteFromUserRegistrySubdir(std::string_view Subdir, std::string_view Key) {
  With(Subdir, [&](TMyRegistry& key) { key.DeleteValue({}, Key); });
}

bool UserRegistry::KeyInUserRegistrySubdir(std::string_view Subdir, std::string_view Key) {
  return With(Subdir, [&](TMyRegistry& key) { return key.ValueExists({}, Key); });
}

void UserRegistry::DeleteAllRegistry() {
  MyRegistry.sRegString = "\\SOFTWARE\\Brightfold\\";
  if (MyRegistry.Open()) MyRegistry.DeleteKey({}, "Sonarello XI");
  MyRegistry.Close();
}

}  // namespace Sonarello
