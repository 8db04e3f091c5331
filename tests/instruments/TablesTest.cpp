// The instruments' tables as they ship: what a wrong keystroke in data/instruments could break.
#include <gmock/gmock.h>

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "instruments/InstrumentArray.h"
#include "instruments/InstrumentFiles.h"
#include "instruments/SoundListReader.h"

namespace Sonarello {
namespace {

using testing::IsEmpty;

const std::filesystem::path DataFolder =
    std::filesystem::path(SONARELLO_SOURCE_DIR) / "data" / "instruments";

// --- Texts

std::vector<std::string_view> Split(std::string_view text, char separator) {
  std::vector<std::string_view> parts;
  for (;;) {
    const std::size_t end = text.find(separator);
    parts.push_back(text.substr(0, end));
    if (end == std::string_view::npos) return parts;
    text.remove_prefix(end + 1);
  }
}

/// The rows of a file; the last line break ends the last row.
std::vector<std::string_view> RowsOf(std::string_view text) {
  if (!text.empty() && text.back() == '\n') text.remove_suffix(1);
  return Split(text, '\n');
}

int Number(std::string_view text) {
  int value = -1;
  const char* end = text.data() + text.size();
  const auto [stop, fault] = std::from_chars(text.data(), end, value);
  return fault == std::errc{} && stop == end ? value : -1;
}

std::string FileText(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

/// True if the bytes are UTF-8 without controls (0-31 and 127-159), byte order marks, blanks that do
/// not break and signs that stand for a lost character.
bool IsCleanUtf8(std::string_view text) {
  for (std::size_t i = 0; i < text.size();) {
    const auto first = static_cast<unsigned char>(text[i]);
    if (first < 0x20 || first == 0x7F) return false;
    const std::size_t size = first < 0x80   ? 1
                             : first < 0xC2 ? 0
                             : first < 0xE0 ? 2
                             : first < 0xF0 ? 3
                                            : 0;
    if (size == 0 || i + size > text.size()) return false;
    unsigned code = size == 1 ? first : first & (0xFFU >> (size + 1));
    for (std::size_t k = 1; k < size; ++k) {
      const auto next = static_cast<unsigned char>(text[i + k]);
      if ((next & 0xC0U) != 0x80) return false;
      code = code << 6 | (next & 0x3FU);
    }
    if (code >= 0x80 && (code <= 0xA0 || code == 0xFEFF || code == 0xFFFD)) return false;
    i += size;
  }
  return true;
}

/// A name as an instrument can show it: some text, no doubled blanks and none at the edges.
bool IsCleanName(std::string_view name) {
  return !name.empty() && name.front() != ' ' && name.back() != ' ' &&
         name.find("  ") == std::string_view::npos && IsCleanUtf8(name);
}

// --- Lists

std::string Tell(const TListSpec& spec) {
  return std::to_string(spec.Value) + " " + std::string(spec.Name) + " (" + std::string(spec.File) +
         ")";
}

bool HoldsRows(const TListSpec& spec) { return !spec.File.empty() && spec.Layout != Layout::Names; }

TSoundList Read(const TListSpec& spec) {
  return ReadSoundList(spec, InstrumentFile(spec.File), nullptr);
}

/// Every list that has rows, read once for all tests.
const std::vector<TSoundList>& Lists() {
  static const std::vector<TSoundList> lists = [] {
    std::vector<TSoundList> read;
    for (const TListSpec& spec : AllLists())
      if (HoldsRows(spec)) read.push_back(Read(spec));
    return read;
  }();
  return lists;
}

const TListSpec* Find(int value, std::string_view name) {
  for (const TListSpec& spec : ListsOf(value))
    if (spec.Name == name) return &spec;
  return nullptr;
}

/// The name of an address in a list as it is displayed, empty if the list has no such row.
std::string NameIn(int value, std::string_view list, TAddress address) {
  const TListSpec* spec = Find(value, list);
  if (spec == nullptr) return {};
  const TSoundList read = Read(*spec);
  const auto row =
      std::ranges::find_if(read.Rows, [&](const TPatch& r) { return r.Address() == address; });
  return row == read.Rows.end() ? std::string() : std::string(row->Name);
}

bool HoldsKits(Scope scope) {
  return scope == Scope::Drums || scope == Scope::GM2Drums ||
         (scope >= Scope::MapDrums1 && scope <= Scope::MapDrums4);
}
bool HoldsSounds(Scope scope) {
  return scope == Scope::Sounds || scope == Scope::GM2 ||
         (scope >= Scope::Map1 && scope <= Scope::Map4);
}

/// Cells of a row in its layout; 0 where kits have one per note.
std::size_t CellsOf(Layout layout) {
  switch (layout) {
    case Layout::F5: return 5;
    case Layout::F4:
    case Layout::Kronos:
    case Layout::Custom:
    case Layout::K4: return 4;
    case Layout::F6:
    case Layout::M17: return 6;  // of M17 the effects are not known and left out
    case Layout::C3: return 3;
    case Layout::X15: return 15;
    case Layout::Names: return 1;
    case Layout::P:
    case Layout::DS:
    case Layout::DN: break;
  }
  return 0;
}

// --- Files

TEST(Tables, NameFilesThatShip) {
  for (const TListSpec& spec : AllLists()) {
    const bool ships = spec.Kind == ListKind::Real || spec.Kind == ListKind::Fallback;
    EXPECT_EQ(ships, !spec.File.empty()) << Tell(spec);
    EXPECT_EQ(ships, !InstrumentFile(spec.File).empty()) << Tell(spec);
    if (!ships) {
      EXPECT_EQ(spec.Kind == ListKind::User, !spec.UserFiles.empty()) << Tell(spec);
    }
  }
}

TEST(Tables, ShipNoFileThatNoListUses) {
  std::set<std::string> used = {"lists.tsv", "SOURCES.md"};
  for (const TListSpec& spec : AllLists()) used.insert(std::string(spec.File));
  std::vector<std::string> unused;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(DataFolder)) {
    if (!entry.is_regular_file()) continue;
    const std::string path = entry.path().lexically_relative(DataFolder).generic_string();
    if (!used.contains(path)) unused.push_back(path);
  }
  EXPECT_THAT(unused, IsEmpty());
}

TEST(Tables, AreCleanTextFiles) {
  std::set<std::string_view> seen;
  for (const TListSpec& spec : AllLists()) {
    if (spec.File.empty() || !seen.insert(spec.File).second) continue;
    const std::string_view text = InstrumentFile(spec.File);
    ASSERT_TRUE(text.ends_with('\n')) << Tell(spec);
    std::size_t line = 0;
    for (const std::string_view row : RowsOf(text)) {
      ++line;
      EXPECT_FALSE(row.empty()) << Tell(spec) << " line " << line;
      for (const std::string_view cell : Split(row, '\t'))
        EXPECT_TRUE(cell.empty() || IsCleanName(cell))
            << Tell(spec) << " line " << line << ": \"" << cell << '"';
    }
  }
}

TEST(Tables, HaveTheCellsOfTheirLayout) {
  for (const TListSpec& spec : AllLists()) {
    const std::size_t cells = CellsOf(spec.Layout);
    if (spec.File.empty()) continue;
    std::size_t line = 0;
    for (const std::string_view row : RowsOf(InstrumentFile(spec.File))) {
      ++line;
      const auto parts = Split(row, '\t');
      if (cells > 0) {
        EXPECT_EQ(parts.size(), cells) << Tell(spec) << " line " << line;
      } else {  // no cell of a kit or of a program is empty
        EXPECT_EQ(std::ranges::count(parts, std::string_view()), 0) << Tell(spec) << " line " << line;
      }
    }
  }
}

TEST(Tables, AreReadWithoutALostRow) {
  for (const TSoundList& list : Lists()) {
    const auto rows = RowsOf(InstrumentFile(list.Spec->File));
    if (list.Spec->Layout != Layout::P) {
      EXPECT_EQ(list.Rows.size(), rows.size()) << Tell(*list.Spec);
      continue;
    }
    ASSERT_EQ(rows.size(), 129U) << Tell(*list.Spec);
    std::size_t cells = 0;
    for (const std::string_view row : rows) cells += Split(row, '\t').size();
    EXPECT_EQ(list.Rows.size() + list.Kits.size(), cells) << Tell(*list.Spec);
  }
}

// --- Row counts

struct TRowCount {
  int Value;
  std::string_view List;
  std::size_t Rows;
};

TEST(Tables, HaveTheRowsThatAreKnownOfThem) {
  const TRowCount counts[] = {
      {87, "Panel_Voices", 956},    {87, "Legacy_Sounds", 697},   {87, "Legacy_Drums", 9},
      {87, "GM2_Drums", 9},         {74, "Panel_Sounds", 913},    {74, "Legacy_Sounds", 407},
      {71, "PCM_Sounds", 896},      {71, "ExPCM_Sounds", 512},    {25, "GM2_Sounds", 256},
      {45, "GM2_Sounds", 256},      {71, "GM2_Sounds", 256},      {78, "GM2_Sounds", 256},
      {26, "Presets_DrumSets", 64}, {34, "Presets_DrumSets", 64}, {51, "Presets_DrumSets", 64},
      {69, "Presets_DrumSets", 64}};
  for (const TRowCount& count : counts) {
    const TListSpec* spec = Find(count.Value, count.List);
    ASSERT_NE(spec, nullptr) << count.Value << ' ' << count.List;
    EXPECT_EQ(Read(*spec).Rows.size(), count.Rows) << Tell(*spec);
  }
}

TEST(Tables, Have480XGAnd256GM2SoundsInEachYamahaArranger) {
  for (const int value : {31, 41, 54, 59, 62, 70, 74, 80, 87, 97}) {
    const TListSpec* xg = Find(value, "XG_Sounds");
    const TListSpec* gm2 = Find(value, "GM2_Sounds");
    ASSERT_TRUE(xg != nullptr && gm2 != nullptr) << value;
    EXPECT_EQ(Read(*xg).Rows.size(), 480U) << value;
    EXPECT_EQ(Read(*gm2).Rows.size(), 256U) << value;
  }
}

TEST(Tables, Have128RowsInEachMotifBank) {
  for (const int value : {26, 33, 34, 51, 69})
    for (const TListSpec& spec : ListsOf(value))
      if (!spec.File.empty() && spec.Scope == Scope::Sounds) {
        EXPECT_EQ(Read(spec).Rows.size(), 128U) << Tell(spec);
      }
}

TEST(Tables, Have16CategoriesInProgramIndexedInstruments) {
  for (const TListSpec& spec : AllLists())
    if (spec.Scope == Scope::Categories) {
      EXPECT_EQ(RowsOf(InstrumentFile(spec.File)).size(), 16U) << Tell(spec);
    }
}

// --- Addresses

TEST(Tables, HoldNumbersOfMidi) {
  const auto inRange = [](int number) { return number >= 0 && number <= 127; };
  const auto check = [&](const TSoundList& list, const TPatch& row) {
    EXPECT_TRUE(inRange(row.CC00) && inRange(row.CC32) && inRange(row.Patch))
        << Tell(*list.Spec) << ": " << row.Name << ' ' << int{row.CC00} << '/' << int{row.CC32} << '/'
        << int{row.Patch};
  };
  for (const TSoundList& list : Lists()) {
    for (const TPatch& row : list.Rows) check(list, row);
    for (const TPatch& row : list.Kits) check(list, row);
  }
}

TEST(Tables, NameEachAddressOnceInAnInstrumentsScope) {
  using TPlace = std::tuple<int, Scope, int, int, int>;
  std::map<TPlace, std::string> seen;
  const auto check = [&](const TSoundList& list, const TPatch& row, Scope scope) {
    const TPlace place = {list.Spec->Value, scope, row.CC00, row.CC32, row.Patch};
    const auto [first, isNew] = seen.emplace(place, Tell(*list.Spec) + " " + std::string(row.Name));
    EXPECT_TRUE(isNew) << Tell(*list.Spec) << ": " << row.Name << ' ' << int{row.CC00} << '/'
                       << int{row.CC32} << '/' << int{row.Patch} << " is " << first->second;
  };
  for (const TSoundList& list : Lists()) {
    const Scope scope = list.Spec->Scope;
    for (const TPatch& row : list.Rows) check(list, row, scope);
    // The kits of a GS map stand in a second list, too.
    if (scope == Scope::Sounds)
      for (const TPatch& row : list.Kits) check(list, row, Scope::Drums);
  }
}

TEST(Tables, HoldTheSameKitsInBothListsOfAGSMap) {
  for (const TSoundList& list : Lists()) {
    const int map = static_cast<int>(list.Spec->Scope) - static_cast<int>(Scope::Map1);
    if (map < 0 || map > 3) continue;
    const TListSpec* spec = Find(list.Spec->Value, "SourceDrums" + std::to_string(map + 1));
    if (spec == nullptr) continue;  // a fall-back without a list of kits
    const TSoundList drums = Read(*spec);
    ASSERT_EQ(drums.Rows.size(), list.Kits.size()) << Tell(*spec);
    for (std::size_t i = 0; i < drums.Rows.size(); ++i) {
      EXPECT_EQ(drums.Rows[i].Name, list.Kits[i].Name) << Tell(*spec);
      EXPECT_EQ(drums.Rows[i].Address(), list.Kits[i].Address()) << Tell(*spec);
    }
  }
}

TEST(Tables, KeepYamahasKitsAndSoundsApartByTheirBanks) {
  for (const TSoundList& list : Lists()) {
    if (!InstrumentByValue(list.Spec->Value)->Name.starts_with("Yamaha")) continue;
    const Scope scope = list.Spec->Scope;
    for (const TPatch& row : list.Rows) {
      const bool isKitBank = row.CC00 == 120 || row.CC00 >= 126 || (row.CC00 == 63 && row.CC32 == 32);
      EXPECT_EQ(isKitBank, !HoldsSounds(scope)) << Tell(*list.Spec) << ": " << row.Name;
    }
    for (const TPatch& kit : list.Kits) {
      EXPECT_EQ(kit.CC00, 127) << Tell(*list.Spec) << ": " << kit.Name;
    }
  }
}

TEST(Tables, AskForAListByWhatItsNameSays) {
  for (const TListSpec& spec : AllLists()) {
    if (spec.Scope == Scope::Companion || spec.Scope == Scope::Categories) continue;
    const bool isOfKits = spec.Name.find("Drum") != std::string_view::npos;
    EXPECT_EQ(isOfKits, !HoldsSounds(spec.Scope) && spec.Scope != Scope::Custom) << Tell(spec);
    const bool isOfNotes = spec.Name.find("Names") != std::string_view::npos;
    if (isOfNotes) {
      EXPECT_TRUE(spec.Scope == Scope::Notes || spec.Scope == Scope::CustomNotes) << Tell(spec);
    }
  }
}

TEST(Tables, NameTheNotesOfKitsThatStandElsewhere) {
  std::set<std::tuple<int, int, int, int>> kits;
  const auto add = [&](const TSoundList& list, const TPatch& row) {
    kits.insert({list.Spec->Value, row.CC00, row.CC32, row.Patch});
  };
  for (const TSoundList& list : Lists()) {
    if (HoldsKits(list.Spec->Scope))
      for (const TPatch& row : list.Rows) add(list, row);
    for (const TPatch& row : list.Kits) add(list, row);
  }
  for (const TSoundList& list : Lists()) {
    if (list.Spec->Scope != Scope::Notes) continue;
    const auto known = std::ranges::count_if(list.Rows, [&](const TPatch& row) {
      return kits.contains({list.Spec->Value, row.CC00, row.CC32, row.Patch});
    });
    // A standard's notes may name kits that the instrument lacks, but serve some that it has.
    if (list.Spec->Kind == ListKind::Fallback) {
      EXPECT_GT(known, 0) << Tell(*list.Spec);
    } else {
      EXPECT_EQ(static_cast<std::size_t>(known), list.Rows.size()) << Tell(*list.Spec);
    }
  }
}

TEST(Tables, StoreGM2SoundsAndKitsInTheirBanks) {
  for (const TSoundList& list : Lists()) {
    const bool isSounds = list.Spec->Name == "GM2_Sounds";
    if (!isSounds && list.Spec->Scope != Scope::GM2Drums) continue;
    for (const TPatch& row : list.Rows)
      EXPECT_EQ(row.CC00, isSounds ? 121 : 120) << Tell(*list.Spec) << row.Name;
  }
}

TEST(Tables, HaveSoundsAndKitsForEveryInstrument) {
  std::set<int> withSounds;
  std::set<int> withKits;
  for (const TSoundList& list : Lists()) {
    if (HoldsSounds(list.Spec->Scope) && !list.Rows.empty()) withSounds.insert(list.Spec->Value);
    if ((HoldsKits(list.Spec->Scope) && !list.Rows.empty()) || !list.Kits.empty())
      withKits.insert(list.Spec->Value);
  }
  for (const TInstrument& instrument : InstrumentArray) {
    EXPECT_TRUE(withSounds.contains(instrument.Value)) << instrument.Name;
    EXPECT_TRUE(withKits.contains(instrument.Value)) << instrument.Name;
  }
  for (const TListSpec& spec : AllLists())
    EXPECT_NE(InstrumentByValue(spec.Value), nullptr) << Tell(spec);
}

TEST(Tables, NameEveryProgramOfTheCapitalBank) {
  std::map<int, std::set<int>> programs;
  for (const TSoundList& list : Lists())
    for (const TPatch& row : list.Rows)
      if (HoldsSounds(list.Spec->Scope) && row.CC32 <= 4 &&
          (row.CC00 == 0 || (row.CC00 == 121 && row.CC32 == 0)))
        programs[list.Spec->Value].insert(row.Patch);
  for (const TInstrument& instrument : InstrumentArray)
    EXPECT_EQ(programs[instrument.Value].size(), 128U) << instrument.Name;
}

// --- Names

TEST(Tables, ShowCleanNames) {
  for (const TSoundList& list : Lists()) {
    for (const TPatch& row : list.Rows)
      EXPECT_TRUE(IsCleanName(row.Name)) << Tell(*list.Spec) << ": \"" << row.Name << '"';
    for (const TPatch& row : list.Kits)
      EXPECT_TRUE(IsCleanName(row.Name)) << Tell(*list.Spec) << ": \"" << row.Name << '"';
    for (const std::string_view category : list.Categories)
      EXPECT_TRUE(IsCleanName(category)) << Tell(*list.Spec) << ": \"" << category << '"';
  }
}

TEST(Tables, KeepEachCategoryTogether) {
  for (const TSoundList& list : Lists()) {
    if (list.Spec->Layout != Layout::F5 && list.Spec->Layout != Layout::F6) continue;
    std::set<std::string_view> seen;
    for (const std::string_view category : list.Categories)
      EXPECT_TRUE(seen.insert(category).second) << Tell(*list.Spec) << ": " << category;
    for (const TPatch& row : list.Rows) EXPECT_GE(row.CatIndex, 0) << Tell(*list.Spec) << row.Name;
  }
}

TEST(Tables, NameTheNotesOfKitsInAscendingOrder) {
  for (const TSoundList& list : Lists())
    for (const TPatch& row : list.Rows) {
      if (row.Drums.empty()) continue;
      int last = -1;
      for (const std::string_view cell : Split(row.Drums, '\t')) {
        const std::size_t blank = cell.find(' ');
        ASSERT_NE(blank, std::string_view::npos) << Tell(*list.Spec) << row.Name << ": " << cell;
        const int note = Number(cell.substr(0, blank));
        EXPECT_GT(note, last) << Tell(*list.Spec) << ' ' << row.Name << ": " << cell;
        EXPECT_LE(note, 127) << Tell(*list.Spec) << ' ' << row.Name << ": " << cell;
        EXPECT_TRUE(IsCleanName(cell.substr(blank + 1))) << Tell(*list.Spec) << ": " << cell;
        last = note;
      }
    }
}

TEST(Tables, NameAllNotesOfTheGMRangeInStandardKits) {
  for (const std::string_view file :
       {"standards/GM_DrumSet_DS.txt", "standards/GM_DrumSet_DS_1based.txt",
        "standards/Ketron_DrumSet_DS_1based.txt", "standards/XG_DrumSet_DS.txt"})
    for (const std::string_view row : RowsOf(InstrumentFile(file)))
      for (int note = 35; note <= 81; ++note) {
        const std::string start = "\t" + std::to_string(note) + " ";
        EXPECT_NE(row.find(start), std::string_view::npos) << file << " note " << note;
      }
}

TEST(Tables, NameTheGenosAsItsDisplayDoes) {
  EXPECT_EQ(NameIn(87, "Panel_Voices", {104, 21, 0}), "CFX ConcertGrand (S.Art!)");
  EXPECT_EQ(NameIn(87, "Panel_Drums", {127, 0, 0}), "Standard Kit 1 (Live!Drum)");
  EXPECT_EQ(NameIn(87, "Panel_Drums", {127, 8, 17}), "Rock Drum Kit (Revo!)");
  const std::pair<int, std::string_view> sets[] = {
      {0, "GM2 Standard Set"},    {8, "GM2 Room Set"},       {16, "GM2 Power Set"},
      {24, "GM2 Electronic Set"}, {25, "GM2 Analog Set"},    {32, "GM2 Jazz Set"},
      {40, "GM2 Brush Set"},      {48, "GM2 Orchestra Set"}, {56, "GM2 SFX Set"}};
  for (const auto& [program, name] : sets) EXPECT_EQ(NameIn(87, "GM2_Drums", {120, 0, program}), name);
}

TEST(Tables, NameTheFirstKitOfTheKetronSets) {
  for (const int value : {40, 73, 76, 79, 84, 92, 101, 104})
    EXPECT_EQ(NameIn(value, "DrumSet", {0, 0, 0}), "Standard 1 (SD)") << value;
}

TEST(Tables, CountProgramsOfOtherListsAsTheirMakersDo) {
  EXPECT_EQ(NameIn(40, "LiveDrums", {4, 0, 0}), "Bachata");
  EXPECT_EQ(NameIn(102, "XG_DrumSets", {127, 0, 0}), "StandardXG");
  EXPECT_EQ(NameIn(102, "XG_DrumSets", {127, 0, 27}), "DanceXG");
}

TEST(Tables, BeginEachBankOfTheIntegraWithProgram0) {
  std::map<std::pair<int, int>, int> first;
  for (const TSoundList& list : Lists())
    if (list.Spec->Value == 71)
      for (const TPatch& row : list.Rows) {
        const auto [bank, isNew] = first.emplace(std::pair{row.CC00, row.CC32}, row.Patch);
        if (!isNew) bank->second = std::min(bank->second, int{row.Patch});
      }
  for (const auto& [bank, program] : first)
    if (bank.first != 121 && bank.first != 120) {
      EXPECT_EQ(program, 0) << bank.first << '/' << bank.second;
    }
}

TEST(Tables, NameTheFirstSoundOfTheMotifXSAndXF) {
  for (const int value : {51, 69}) {
    const TSoundList list = Read(*Find(value, "Presets1"));
    ASSERT_FALSE(list.Rows.empty());
    EXPECT_EQ(list.Rows[0].Name, "Full Concert Grand");
    EXPECT_EQ(list.Rows[0].Address(), (TAddress{63, 0, 0}));
  }
}

// --- Sources

TEST(Tables, TellTheSourceOfEveryList) {
  const std::string sources = FileText(DataFolder / "SOURCES.md");
  std::set<std::string> keys;
  for (const TListSpec& spec : AllLists()) {
    EXPECT_THAT(spec.Sure, testing::AnyOf("high", "medium", "low")) << Tell(spec);
    ASSERT_FALSE(spec.Source.empty()) << Tell(spec);
    keys.emplace(spec.Source);
  }
  for (const std::string& key : keys)
    EXPECT_NE(sources.find("\n### `" + key + "`\n"), std::string::npos) << key;
  for (const std::string_view line : Split(sources, '\n'))
    if (line.starts_with("### `")) {
      EXPECT_TRUE(keys.contains(std::string(line.substr(5, line.size() - 6)))) << line;
    }
}

TEST(Tables, TellTheListsOfEveryInstrumentInTheSources) {
  const std::string sources = FileText(DataFolder / "SOURCES.md");
  for (const TInstrument& instrument : InstrumentArray) {
    const std::string start =
        "\n| " + std::to_string(instrument.Value) + " | " + std::string(instrument.Name) + " | ";
    const std::size_t row = sources.find(start);
    ASSERT_NE(row, std::string::npos) << instrument.Name;
    const std::string line = sources.substr(row + 1, sources.find('\n', row + 1) - row - 1);
    for (const TListSpec& spec : ListsOf(instrument.Value))
      EXPECT_NE(line.find("`" + std::string(spec.Name) + "`"), std::string::npos) << Tell(spec);
  }
}

// --- Files of the user

TEST(Tables, LookForEachFileOfTheUserInOneList) {
  std::map<std::string_view, std::string> owners;
  for (const TListSpec& spec : AllLists()) {
    if (spec.UserFiles.empty()) continue;
    const auto names = Split(spec.UserFiles, '|');
    for (const std::string_view name : names) {
      EXPECT_TRUE(name.starts_with('_') && name.ends_with(".txt")) << Tell(spec) << ": " << name;
      const auto [owner, isNew] = owners.emplace(name, Tell(spec));
      EXPECT_TRUE(isNew) << name << " of " << owner->second << " and " << Tell(spec);
    }
    EXPECT_FALSE(spec.Words.empty()) << Tell(spec);
  }
  EXPECT_EQ(owners.size(), 184U);  // in seven lists of the PSR-S900 two spellings of the name
}

// --- A second look

TEST(Tables, AgreeWithASecondSourceOnEverySpotCheck) {
  const std::string text =
      FileText(std::filesystem::path(SONARELLO_SOURCE_DIR) / "tests/data/instruments/spot_checks.tsv");
  std::map<std::tuple<int, int, int, int, bool>, std::set<std::string_view>> names;
  for (const TSoundList& list : Lists()) {
    const Scope scope = list.Spec->Scope;
    const auto add = [&](const TPatch& row, bool isKit) {
      names[{list.Spec->Value, row.CC00, row.CC32, row.Patch, isKit}].insert(row.Name);
    };
    for (const TPatch& row : list.Rows)
      if (HoldsSounds(scope) || HoldsKits(scope)) add(row, HoldsKits(scope));
    for (const TPatch& row : list.Kits) add(row, true);
  }
  std::size_t checks = 0;
  for (const std::string_view row : RowsOf(text)) {
    const auto cells = Split(row, '\t');
    if (cells[0] == "value") continue;
    ASSERT_EQ(cells.size(), 8U) << row;
    const auto found = names.find(
        {Number(cells[0]), Number(cells[1]), Number(cells[2]), Number(cells[3]), cells[4] == "kit"});
    ASSERT_NE(found, names.end()) << row;
    EXPECT_TRUE(found->second.contains(cells[5])) << row << "; we have " << *found->second.begin();
    ++checks;
  }
  EXPECT_GE(checks, 500U);
}

}  // namespace
}  // namespace Sonarello
