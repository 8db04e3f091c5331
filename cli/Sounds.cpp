#include <algorithm>

#include "Commands.h"
#include "DisplayText.h"
#include "JsonParts.h"
#include "SoundLists.h"
#include "TextTable.h"
#include "core/TextEncoding.h"
#include "core/TextOrder.h"
#include "core/Texts.h"

namespace Sonarello {

namespace {

/// The lists that a typed name means: the one with this name, else all that hold it, in any case.
std::vector<const TSoundList*> ListsNamed(const SoundSet& set, const std::string& text) {
  const std::string wanted = SmallLetters(DecodedText(text));
  std::vector<const TSoundList*> found;
  for (const TSoundList& list : set.Lists()) {
    const std::string name = SmallLetters(list.Spec->Name);
    const ListPart part = PartOf(list.Spec->Scope);
    if (part == ListPart::Effects || part == ListPart::Categories) continue;
    if (name == wanted) return {&list};
    if (name.find(wanted) != std::string::npos) found.push_back(&list);
  }
  return found;
}

std::string NameText(const TListRow& row) { return VisibleText(row.Row->Name); }

std::string CategoryText(const TListRow& row) {
  const std::string category = VisibleText(CategoryOf(row));
  const std::string below = VisibleText(row.Row->CatName);
  if (category.empty() || below.empty()) return category + below;
  return category + " / " + below;
}

std::string RowsText(const std::vector<TListRow>& rows) {
  if (rows.empty()) return {};
  TextTable table({{Text("Liste", "List"), Align::Left},
                   {Text("Kategorie", "Category"), Align::Left},
                   {Text("Klang", "Sound"), Align::Left},
                   {"MSB", Align::Right},
                   {"LSB", Align::Right},
                   {"Prog 0-127", Align::Right}});
  for (const TListRow& row : rows) {
    const TAddress address = row.Row->Address();
    table.AddRow({std::string(row.List->Spec->Name), CategoryText(row), NameText(row),
                  NumberText(address.CC00), NumberText(address.CC32), NumberText(address.Patch)});
  }
  return table.Render();
}

std::string RowsJson(const std::vector<TListRow>& rows) {
  Json list = Json::array();
  for (const TListRow& row : rows) {
    Json entry = {{"list", row.List->Spec->Name},
                  {"category", DecodedText(CategoryOf(row))},
                  {"subCategory", DecodedText(row.Row->CatName)},
                  {"name", DecodedText(row.Row->Name)},
                  {"kit", row.IsKit}};
    entry.update(AddressJson(row.Row->Address()));
    list.push_back(std::move(entry));
  }
  return list.dump(2) + "\n";
}

}  // namespace

int SoundsCommand(const Arguments& arguments, const Setup& setup, Console& console) {
  std::vector<TListRow> rows;
  if (const SoundSet* set = MainSounds(setup)) {
    rows = RowsOf(*set);
    const std::vector<const TSoundList*> lists = ListsNamed(*set, arguments.List);
    if (lists.empty()) {
      console.Err("sonarello-cli: --list: " +
                  Text("\"" + VisibleText(arguments.List) + "\" gibt es nicht",
                       "there is no \"" + VisibleText(arguments.List) + "\"") +
                  " (" + ListNames(*set) + ")");
      return WrongUsage;
    }
    const std::string wanted = SmallLetters(DecodedText(arguments.Search));
    std::erase_if(rows, [&](const TListRow& row) {
      return std::ranges::find(lists, row.List) == lists.end() ||
             SmallLetters(DecodedText(row.Row->Name)).find(wanted) == std::string::npos;
    });
  }
  console.Out(arguments.Json ? RowsJson(rows) : RowsText(rows));
  if (rows.empty() && !arguments.Quiet)
    console.Err("sonarello-cli: " + Text("Kein Klang gefunden", "No sound found"));
  return Done;
}

}  // namespace Sonarello
