#include <fmt/format.h>

#include <algorithm>

#include "Commands.h"
#include "DisplayText.h"
#include "JsonParts.h"
#include "SoundLists.h"
#include "TextTable.h"
#include "core/MidiFunctions.h"
#include "core/TextEncoding.h"
#include "core/TextOrder.h"
#include "core/Texts.h"
#include "instruments/DrumNames.h"

namespace Sonarello {

namespace {

/// A kit of an instrument and the names of its notes.
struct TKit {
  TListRow Place;
  TDrumNames Drums;

  [[nodiscard]] std::string_view Name() const {
    return Drums.DrumSetName.empty() ? Place.Row->Name : std::string_view(Drums.DrumSetName);
  }
  [[nodiscard]] std::size_t NoteCount() const {
    return KeyCount - static_cast<std::size_t>(std::ranges::count(Drums.Names, std::string_view()));
  }
};

TKit KitOf(const SoundSet& set, const TListRow& place) {
  return {place, ReadDrumNames(set, place.Row->Address())};
}

/// Kits of the lists of kits; those of the lists of note names follow where no kit has their address.
std::vector<TKit> KitsOf(const SoundSet& set) {
  std::vector<TKit> kits;
  const std::vector<TListRow> rows = RowsOf(set);
  for (const bool noteNames : {false, true})
    for (const TListRow& row : rows) {
      if (!row.IsKit || (PartOf(row.List->Spec->Scope) == ListPart::NoteNames) != noteNames) continue;
      const TAddress address = row.Row->Address();
      if (std::ranges::none_of(kits,
                               [&](const TKit& kit) { return kit.Place.Row->Address() == address; }))
        kits.push_back(KitOf(set, row));
    }
  return kits;
}

Json KitJson(const TKit& kit) {
  Json entry = {{"kit", DecodedText(kit.Name())}, {"list", kit.Place.List->Spec->Name}};
  entry.update(AddressJson(kit.Place.Row->Address()));
  return entry;
}

std::string KitsText(const std::vector<TKit>& kits) {
  if (kits.empty()) return {};
  TextTable table({{"MSB", Align::Right},
                   {"LSB", Align::Right},
                   {"Prog 0-127", Align::Right},
                   {"Kit", Align::Left},
                   {Text("Notennamen", "Note names"), Align::Right},
                   {Text("Liste", "List"), Align::Left}});
  for (const TKit& kit : kits) {
    const TAddress address = kit.Place.Row->Address();
    table.AddRow({NumberText(address.CC00), NumberText(address.CC32), NumberText(address.Patch),
                  VisibleText(kit.Name()), std::to_string(kit.NoteCount()),
                  std::string(kit.Place.List->Spec->Name)});
  }
  return table.Render();
}

std::string KitsJson(const std::vector<TKit>& kits) {
  Json list = Json::array();
  for (const TKit& kit : kits) {
    list.push_back(KitJson(kit));
    list.back()["noteNames"] = kit.NoteCount();
  }
  return list.dump(2) + "\n";
}

std::string NotesText(const TKit& kit) {
  std::string text = fmt::format("{} ({}), {}\n", VisibleText(kit.Name()),
                                 PlainAddress(kit.Place.Row->Address()), kit.Place.List->Spec->Name);
  for (std::size_t note = 0; note < KeyCount; ++note)
    if (const std::string_view name = kit.Drums.Names[note]; !name.empty())
      text +=
          fmt::format("{:>3}  {:<4} {}\n", note, NoteName(static_cast<int>(note)), VisibleText(name));
  return text;
}

std::string NotesJson(const TKit& kit) {
  Json entry = KitJson(kit);
  entry["notes"] = Json::array();
  for (std::size_t note = 0; note < KeyCount; ++note)
    if (const std::string_view name = kit.Drums.Names[note]; !name.empty())
      entry["notes"].push_back(
          {{"note", note}, {"key", NoteName(static_cast<int>(note))}, {"name", DecodedText(name)}});
  return entry.dump(2) + "\n";
}

/// The kits that a typed name means: those with this name, else all that hold it, in any case.
std::vector<TKit> KitsNamed(std::vector<TKit> kits, const std::string& text) {
  const std::string wanted = SmallLetters(DecodedText(text));
  const auto nameOf = [](const TKit& kit) { return SmallLetters(DecodedText(kit.Name())); };
  std::erase_if(kits, [&](const TKit& kit) { return nameOf(kit).find(wanted) == std::string::npos; });
  if (std::ranges::find(kits, wanted, nameOf) != kits.end())
    std::erase_if(kits, [&](const TKit& kit) { return nameOf(kit) != wanted; });
  return kits;
}

/// The kit with an address; a bank of -1 is any. Lists of kits come first.
std::optional<TKit> KitAt(const SoundSet& set, const TAddress& address) {
  const TDrumNames drums = ReadDrumNames(set, address);
  if (drums.Row != nullptr) return TKit{{ListOf(set, drums.Row), drums.Row, true}, drums};
  const auto same = [](int wanted, int number) { return wanted < 0 || wanted == number; };
  for (const TListRow& row : RowsOf(set)) {
    const TAddress at = row.Row->Address();
    if (row.IsKit && same(address.CC00, at.CC00) && same(address.CC32, at.CC32) &&
        address.Patch == at.Patch)
      return KitOf(set, row);
  }
  return std::nullopt;
}

void TellEmpty(const Arguments& arguments, Console& console, const std::string& text) {
  if (!arguments.Quiet) console.Err("sonarello-cli: " + text);
}

int ListKits(const std::vector<TKit>& kits, const Arguments& arguments, Console& console) {
  console.Out(arguments.Json ? KitsJson(kits) : KitsText(kits));
  if (kits.empty())
    TellEmpty(
        arguments, console,
        Text("Von diesem Instrument sind keine Kits bekannt", "No kits of this instrument are known"));
  return Done;
}

int ShowKit(const TKit& kit, const Arguments& arguments, Console& console) {
  console.Out(arguments.Json ? NotesJson(kit) : NotesText(kit));
  if (kit.NoteCount() == 0)
    TellEmpty(
        arguments, console,
        Text("Von diesem Kit sind keine Notennamen bekannt", "No note names of this kit are known"));
  return Done;
}

/// Says why a typed name means no single kit.
int ComplainOfName(const std::vector<TKit>& found, const std::string& name, Console& console) {
  const std::string shown = VisibleText(name);
  std::string text = "sonarello-cli: --kit: ";
  if (found.empty())
    text += Text("Unbekanntes Kit: " + shown + " (ohne --kit werden die Kits aufgelistet)",
                 "Unknown kit: " + shown + " (without --kit the kits are listed)");
  else
    text += Text("Mehrere Kits passen zu \"" + shown + "\":", "Several kits match \"" + shown + "\":");
  for (const TKit& kit : found)
    text += fmt::format("\n  {} ({})", VisibleText(kit.Name()), PlainAddress(kit.Place.Row->Address()));
  console.Err(text);
  return WrongUsage;
}

}  // namespace

int DrumsCommand(const Arguments& arguments, const Setup& setup, Console& console) {
  const SoundSet* set = MainSounds(setup);
  if (set == nullptr) return ListKits({}, arguments, console);
  if (!arguments.Kit.empty()) {
    const std::vector<TKit> found = KitsNamed(KitsOf(*set), arguments.Kit);
    if (found.size() != 1) return ComplainOfName(found, arguments.Kit, console);
    return ShowKit(found.front(), arguments, console);
  }
  if (!arguments.Program) return ListKits(KitsOf(*set), arguments, console);
  const TAddress address = {arguments.MSB.value_or(-1), arguments.LSB.value_or(-1), *arguments.Program};
  if (const auto kit = KitAt(*set, address)) return ShowKit(*kit, arguments, console);
  if (arguments.Json) console.Out("null\n");
  TellEmpty(arguments, console, Text("Kein Kit gefunden: ", "No kit found: ") + PlainAddress(address));
  return Done;
}

}  // namespace Sonarello
