#include "desk/FileAssociation.h"

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <optional>

#include "core/SafeFile.h"
#include "core/Texts.h"

namespace Sonarello {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view ListName = "mimeapps.list";
constexpr std::string_view Applications = "applications";
constexpr std::string_view DefaultGroup = "[Default Applications]";
constexpr std::string_view AddedGroup = "[Added Associations]";
constexpr std::string_view RemovedGroup = "[Removed Associations]";
/// First line of entries that the program wrote and may write anew.
constexpr std::string_view OwnEntryMark =
    "# Written by Sonarello when it was made the program for MIDI files.";

using TLines = std::vector<std::string>;

std::string_view Trimmed(std::string_view text) {
  const auto blank = [](char c) { return c == ' ' || c == '\t' || c == '\r'; };
  while (!text.empty() && blank(text.front())) text.remove_prefix(1);
  while (!text.empty() && blank(text.back())) text.remove_suffix(1);
  return text;
}

TLines LinesOf(std::string_view text) {
  TLines lines;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    lines.emplace_back(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return lines;
}

std::string Joined(const TLines& lines) {
  std::string text;
  for (const std::string& line : lines) text += line + "\n";
  return text;
}

bool IsGroup(std::string_view line) { return Trimmed(line).starts_with('['); }

/// The lines of a group, from behind its head to the next one; nothing if there is no such group.
std::optional<std::pair<std::size_t, std::size_t>> GroupOf(const TLines& lines,
                                                           std::string_view group) {
  for (std::size_t n = 0; n < lines.size(); ++n) {
    if (Trimmed(lines[n]) != group) continue;
    std::size_t end = n + 1;
    while (end < lines.size() && !IsGroup(lines[end])) ++end;
    return std::pair{n + 1, end};
  }
  return std::nullopt;
}

/// Value of a line "key=value", or nothing.
std::optional<std::string_view> ValueOf(std::string_view line, std::string_view key) {
  const std::size_t sign = line.find('=');
  if (sign == std::string_view::npos || Trimmed(line.substr(0, sign)) != key) return std::nullopt;
  return Trimmed(line.substr(sign + 1));
}

/// Entries of a value that is a list with ";" between them, without one of them.
std::string Without(std::string_view value, std::string_view entry) {
  std::string others;
  while (!value.empty()) {
    const std::size_t end = std::min(value.find(';'), value.size());
    const std::string_view part = Trimmed(value.substr(0, end));
    if (!part.empty() && part != entry) others += std::string(part) + ";";
    value.remove_prefix(std::min(end + 1, value.size()));
  }
  return others;
}

/// Gives a key of a group what `f` makes of its value (empty if there is none). A group or a key that
/// is not there comes in; an empty result takes the key out. Of a key that stands twice, only the first
/// counts, and the others go.
template <class F>
void SetKey(TLines& lines, std::string_view group, std::string_view key, F&& f) {
  const auto found = GroupOf(lines, group);
  std::string value;
  std::optional<std::size_t> place;
  if (found)
    for (std::size_t n = found->second; n-- > found->first;)
      if (const auto old = ValueOf(lines[n], key)) {
        value = *old;
        if (place) lines.erase(lines.begin() + static_cast<std::ptrdiff_t>(*place));
        place = n;
      }
  const std::string changed = f(value);
  const std::string line = std::string(key) + "=" + changed;
  if (place && changed.empty()) {
    lines.erase(lines.begin() + static_cast<std::ptrdiff_t>(*place));
  } else if (place) {
    lines[*place] = line;
  } else if (!changed.empty()) {
    if (!found) {
      if (!lines.empty() && !Trimmed(lines.back()).empty()) lines.emplace_back();
      lines.emplace_back(group);
    }
    std::size_t end = GroupOf(lines, group)->second;
    while (end > 0 && Trimmed(lines[end - 1]).empty()) --end;
    lines.insert(lines.begin() + static_cast<std::ptrdiff_t>(end), line);
  }
}

std::string ContentOf(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

bool Write(const fs::path& path, const std::string& text, FileCalls& calls) {
  std::error_code error;
  fs::create_directories(path.parent_path(), error);
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
  return SaveFile(path.string(), std::span(bytes, text.size()), calls).Step == TSaveStep::Done;
}

/// True if the desktop knows the program already, or the user keeps an entry of his own.
bool HasEntry(const TAssociationPlaces& places) {
  std::error_code error;
  const fs::path own = places.DataHome / Applications / DesktopEntryName;
  if (fs::exists(own, error) && !ContentOf(own).starts_with(OwnEntryMark)) return true;
  return std::ranges::any_of(places.DataDirs, [&](const fs::path& folder) {
    return fs::exists(folder / Applications / DesktopEntryName, error);
  });
}

}  // namespace

std::string WithDefault(std::string_view list, std::string_view mimeType, std::string_view entry) {
  TLines lines = LinesOf(list);
  SetKey(lines, DefaultGroup, mimeType, [&](const std::string&) { return std::string(entry); });
  SetKey(lines, AddedGroup, mimeType,
         [&](const std::string& value) { return std::string(entry) + ";" + Without(value, entry); });
  SetKey(lines, RemovedGroup, mimeType,
         [&](const std::string& value) { return Without(value, entry); });
  return Joined(lines);
}

std::string DesktopEntryOf(std::string_view program) {
  // Desktop Entry Specification: an argument in quotes escapes these with "\", a "%" with itself; the
  // value as a whole then escapes each "\" and line end once more.
  std::string quoted = "\"";
  for (const char c : program) {
    if (c == '"' || c == '`' || c == '$' || c == '\\') quoted += '\\';
    quoted += c;
    if (c == '%') quoted += c;
  }
  quoted += "\"";
  std::string exec;
  for (const char c : quoted) {
    if (c == '\n' || c == '\\') exec += '\\';
    exec += c == '\n' ? 'n' : c;
  }
  std::string types;
  for (const std::string_view type : MidiMimeTypes) types += std::string(type) + ";";
  return std::string(OwnEntryMark) +
         "\n[Desktop Entry]\nType=Application\nVersion=1.4\nName=Sonarello\n"
         "GenericName=MIDI File Editor\nGenericName[de]=MIDI-Datei-Editor\nExec=" +
         exec +
         " %f\nIcon=sonarello\nTerminal=false\nCategories=AudioVideo;Audio;Midi;\nMimeType=" + types +
         "\n";
}

TAssociationResult AssociateWithMID(const TAssociationPlaces& places, FileCalls& calls) {
  const fs::path entry = places.DataHome / Applications / DesktopEntryName;
  if (!HasEntry(places)) {
    const std::string text = DesktopEntryOf(places.Program.string());
    if (ContentOf(entry) != text && !Write(entry, text, calls))
      return {TAssociationOutcome::EntryFailed, entry.string()};
  }
  const fs::path list = places.ConfigHome / ListName;
  const std::string before = ContentOf(list);
  std::string text = before;
  for (const std::string_view type : MidiMimeTypes) text = WithDefault(text, type, DesktopEntryName);
  if (text != before && !Write(list, text, calls))
    return {TAssociationOutcome::ListFailed, list.string()};
  return {};
}

bool IsAssociatedWithMID(const TAssociationPlaces& places) {
  const TLines lines = LinesOf(ContentOf(places.ConfigHome / ListName));
  const auto group = GroupOf(lines, DefaultGroup);
  if (!group) return false;
  for (std::size_t n = group->first; n < group->second; ++n)
    if (const auto value = ValueOf(lines[n], MidiMimeTypes[0]))
      return Trimmed(value->substr(0, value->find(';'))) == DesktopEntryName;
  return false;
}

std::string AssociationText(const TAssociationResult& result) {
  if (result.Outcome != TAssociationOutcome::Done)
    return Text(
        "Die Dateiendung \".mid\" konnte nicht mit dem \"Sonarello XI\" verknüpft werden.\r"
        "Diese Datei konnte nicht geschrieben werden: " +
            result.File,
        "The file extension \".mid\" could not be associated with \"Sonarello XI\".\r"
        "This file could not be written: " +
            result.File);
  return Text(
      "Midifiles mit der Endung \".mid\" werden ab jetzt mit dem \"Sonarello XI\" geöffnet.\r\r"
      "Falls Ihr Dateimanager weiterhin ein anderes Programm startet:\r"
      "1. Klicken Sie dort mit der rechten Maustaste auf ein Midifile.\r"
      "2. Wählen Sie \"Öffnen mit\" und dann \"Andere Anwendung\".\r"
      "3. Wählen Sie \"Sonarello\" und legen Sie es als Standard für diesen Dateityp fest.",
      "Midifiles with the extension \".mid\" will be opened with \"Sonarello XI\" from now on.\r\r"
      "If your file manager still starts another program:\r"
      "1. Right-click a midifile there.\r"
      "2. Choose \"Open with\" and then \"Other application\".\r"
      "3. Choose \"Sonarello\" and make it the default for this type of file.");
}

}  // namespace Sonarello
