#include "desk/SoundBrowserLists.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <span>

#include "core/SafeFile.h"
#include "core/Texts.h"
#include "instruments/InstrumentArray.h"
#include "instruments/ListReading.h"
#include "instruments/ListRows.h"
#include "instruments/SoundListReader.h"
#include "instruments/UserFiles.h"

namespace Sonarello {

namespace {

constexpr std::string_view SortKey = "SortSounds";

/// The name of the file that a list is read from: the one that is there, else the first of its names.
std::string FileNameOf(const TListSpec& spec, std::string_view DataPath) {
  std::string_view names = spec.UserFiles;
  const std::string first(names.substr(0, names.find('|')));
  std::string bytes;
  while (!names.empty()) {
    const std::size_t end = std::min(names.find('|'), names.size());
    const std::string name(names.substr(0, end));
    if (ReadUserFile(PathInFolder(DataPath, name), bytes) != UserFile::Missing) return name;
    names.remove_prefix(std::min(end + 1, names.size()));
  }
  return first;
}

bool WriteText(const std::string& path, const std::string& text, IMessages& messages,
               FileCalls& calls) {
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
  const TSaveResult result = SaveFile(path, std::span(bytes, text.size()), calls);
  if (result.Step == TSaveStep::Done) return true;
  std::string told =
      Text("Fehler beim Schreiben der Datei\r\"", "Error writing the file\r\"") + path + "\"!";
  if (!result.Copy.empty())
    told += Text("\rDie Liste steht vollständig in\r\"", "\rThe complete list is in\r\"") +
            result.Copy + "\".";
  messages.Show(told);
  return false;
}

bool CanSave(const TBrowserBank& bank) {
  return !bank.Kits && !bank.IsCustom() && !bank.List->Spec->UserFiles.empty() && !bank.Rows().empty();
}

/// Where a cell stands in a text, bytes.
struct TCellPlace {
  std::size_t Begin = 0;
  std::size_t Length = 0;
};

/// True if a cell of a row holds a number of a sound; a layout without that cell has it elsewhere.
bool HoldsNumber(const RowCells& cells, std::int8_t cell, int number) {
  if (cell < 0) return true;
  return CellNumber(cells[static_cast<std::size_t>(cell)], ControllerCount) == number;
}

/// The name of a sound in the text of its list; nothing if no row has its name and numbers.
std::optional<TCellPlace> NameCellOf(std::string_view text, const TListSpec& spec,
                                     const TPatch& sound) {
  const TColumns* columns = ColumnsOf(spec.Layout);
  if (columns == nullptr) return std::nullopt;
  const std::string name = NameWithoutSuffix(sound.Name, spec.Suffix);
  const int program = sound.Patch + (spec.OneBased ? 1 : 0);
  RowWalk walk(text);
  for (std::string_view row; walk.Next(row);) {
    const RowCells cells(row);
    const std::string_view cell = cells[static_cast<std::size_t>(columns->Name)];
    if (cell == name && HoldsNumber(cells, columns->CC00, sound.CC00) &&
        HoldsNumber(cells, columns->CC32, sound.CC32) && HoldsNumber(cells, columns->Patch, program))
      return TCellPlace{static_cast<std::size_t>(cell.data() - text.data()), cell.size()};
  }
  return std::nullopt;
}

/// A name as a cell: no tab or line break, no blanks around it.
std::string AsCell(std::string_view name) {
  std::string cell(name);
  std::ranges::replace_if(
      cell, [](char c) { return c == '\t' || c == '\r' || c == '\n'; }, ' ');
  cell.erase(0, std::min(cell.find_first_not_of(' '), cell.size()));
  cell.resize(cell.find_last_not_of(' ') + 1);
  return cell;
}

}  // namespace

TBrowserSettings ReadBrowserSettings(const ISettings& settings, std::string_view instrument) {
  const TBrowserSettings standard;
  return {
      .SortSounds = settings.ReadBool(instrument, SortKey, standard.SortSounds),
      .Patches_WithDSPs = settings.ReadBool(instrument, "Patches_WithDSPs", standard.Patches_WithDSPs),
      .PatchesFormHeight =
          settings.ReadInteger(instrument, "PatchesFormHeight", standard.PatchesFormHeight),
      .PatchesFormLeft = settings.ReadInteger(instrument, "PatchesFormLeft", standard.PatchesFormLeft),
      .PatchesFormTop = settings.ReadInteger(instrument, "PatchesFormTop", standard.PatchesFormTop),
  };
}

TLoadSettings BrowserLoadSettings(const ISettings& settings, const Options& options, int instrumValue) {
  const TInstrument* instrument = InstrumentByValue(instrumValue);
  const std::string_view name = instrument == nullptr ? std::string_view() : instrument->Name;
  return {.DataPath = options.DataPath,
          .SortSounds = settings.ReadBool(name, SortKey, TBrowserSettings().SortSounds),
          .LimexTE200 = options.LimexTE200};
}

void SetSortSounds(ISettings& settings, IMessages& messages, std::string_view instrument, bool sort) {
  settings.WriteBool(instrument, SortKey, sort);
  // No blank stands in front of the instrument. This is deliberate.
  messages.Show(Text("Nach dem Neustart des", "After restarting the").append(instrument) +
                (sort ? Text(" werden die Sounds sortiert angezeigt", " the sounds will be sorted")
                      : Text(" werden die Sounds nicht mehr sortiert angezeigt",
                             " the sounds will not be sorted anymore")));
}

std::string SaveVoicesText(const TBrowserBank& bank) {
  if (!CanSave(bank)) return {};
  // What the list "XG" holds are the sounds of XG with those of GM among them.
  const std::string name = bank.Name == "XG" ? "XG/GM" : bank.Name;
  return Text(name + "-Voices speichern", "save " + name + " voices");
}

bool SaveVoices(const TBrowserBank& bank, std::string_view DataPath, IMessages& messages,
                FileCalls& calls) {
  if (!CanSave(bank) || DataPath.empty()) return false;
  const std::string name = FileNameOf(*bank.List->Spec, DataPath);
  const std::string path = PathInFolder(DataPath, name);
  std::string bytes;
  if (ReadUserFile(path, bytes) != UserFile::Missing &&
      !messages.Ask(Text("Es existiert bereits eine Datei mit dem Namen \"" + name +
                             "\"!\rWollen Sie diese Datei überschreiben?",
                         "There is a file with the same name!\rDo you want to overwrite it?")))
    return false;
  return WriteText(path, SoundListText(*bank.List), messages, calls);
}

bool RenameCustomSound(const TBrowserBank& bank, std::int32_t row, std::string_view name,
                       std::string_view DataPath, IMessages& messages, FileCalls& calls) {
  const std::string cell = AsCell(name);
  if (!bank.IsCustom() || bank.Kits || !bank.List->FromUser || DataPath.empty() || cell.empty())
    return false;
  const TSoundList& list = *bank.List;
  if (row < 0 || static_cast<std::size_t>(row) >= list.Rows.size()) return false;
  const std::string path = PathInFolder(DataPath, FileNameOf(*list.Spec, DataPath));
  std::string bytes;
  if (ReadUserFile(path, bytes) != UserFile::Read) return false;
  // Only the one cell changes: the file may hold rows that the list left out.
  std::string text = DecodeListFile(bytes);
  const auto place = NameCellOf(text, *list.Spec, list.Rows[static_cast<std::size_t>(row)]);
  if (!place) return false;
  text.replace(place->Begin, place->Length, cell);
  return WriteText(path, text, messages, calls);
}

}  // namespace Sonarello
