#include <string>
#include <vector>

#include "InputReader.h"
#include "Targets.h"
#include "instruments/SoundListReader.h"

namespace Sonarello::Fuzz {

namespace {

class DeafMessages : public IMessages {
 public:
  void Show(const std::string& text) override {
    if (text.empty()) throw Fault("an empty message");
  }
  bool Ask(const std::string&) override { return false; }
};

void Demand(bool condition, const char* what) {
  if (!condition) throw Fault(what);
}

bool InRange(int value) { return value >= -1 && value <= 127; }

void CheckRow(const TSoundList& list, const TPatch& row) {
  Demand(InRange(row.CC00) && InRange(row.CC32) && InRange(row.Patch), "a number out of range");
  Demand(row.CatIndex >= -1 && row.CatIndex < static_cast<std::int32_t>(list.Categories.size()),
         "a category that does not exist");
  Demand(row.Name.find_first_of("\t\n") == std::string_view::npos,
         "a name that holds a tab or a line end");
}

bool SameRows(const TSoundList& a, const TSoundList& b) {
  if (a.Rows.size() != b.Rows.size()) return false;
  for (std::size_t i = 0; i < a.Rows.size(); ++i)
    if (a.Rows[i].Name != b.Rows[i].Name || a.Rows[i].Address() != b.Rows[i].Address()) return false;
  return true;
}

constexpr int LayoutCount = static_cast<int>(Layout::Names) + 1;

/// Any list of a layout will do: the reader goes by the layout alone.
const TListSpec& ListOfLayout(Layout layout) {
  for (const TListSpec& spec : AllLists())
    if (spec.Layout == layout) return spec;
  return AllLists().front();
}

}  // namespace

void FuzzList(Input input) {
  InputReader in(input);
  const TListSpec& spec = ListOfLayout(static_cast<Layout>(in.Byte() % LayoutCount));
  const bool sort = in.Flag();
  const std::string text = DecodeListFile(in.Text());
  DeafMessages messages;
  const TSoundList list = ReadSoundList(spec, text, &messages, sort);
  for (const TPatch& row : list.Rows) CheckRow(list, row);
  for (const TPatch& kit : list.Kits) CheckRow(list, kit);
  const std::string written = SoundListText(list);
  const TSoundList again = ReadSoundList(spec, written, &messages);
  Demand(SameRows(list, again), "a list that is written and read again differs");
}

}  // namespace Sonarello::Fuzz
