// Lists as tests write them down.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "instruments/SoundListReader.h"

namespace Sonarello {

/// A list of a layout with the words of import messages.
inline TListSpec ListSpec(Layout layout, std::string_view words = "Sounds für Test") {
  TListSpec spec;
  spec.Name = "Sounds";
  spec.Layout = layout;
  spec.Words = words;
  return spec;
}

/// A row as a text: "0/121/3 Name", banks, program and name, with the category behind if there is one.
inline std::string RowText(const TSoundList& list, const TPatch& row) {
  std::string text = std::to_string(row.CC00) + "/" + std::to_string(row.CC32) + "/" +
                     std::to_string(row.Patch) + " " + std::string(row.Name);
  if (row.CatIndex >= 0)
    text += " @" + std::string(list.Categories.at(static_cast<std::size_t>(row.CatIndex)));
  if (!row.CatName.empty()) text += ">" + std::string(row.CatName);
  if (!row.Drums.empty()) text += " [" + std::string(row.Drums) + "]";
  return text;
}

inline std::vector<std::string> RowTexts(const TSoundList& list) {
  std::vector<std::string> texts;
  for (const TPatch& row : list.Rows) texts.push_back(RowText(list, row));
  return texts;
}

inline std::vector<std::string> KitTexts(const TSoundList& list) {
  std::vector<std::string> texts;
  for (const TPatch& kit : list.Kits) texts.push_back(RowText(list, kit));
  return texts;
}

}  // namespace Sonarello
