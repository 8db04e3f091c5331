#include "instruments/ListTable.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <stdexcept>
#include <string>
#include <utility>

#include "instruments/InstrumentFiles.h"

namespace Sonarello {

namespace {

constexpr std::size_t ColumnCount = 14;
using TRow = std::array<std::string_view, ColumnCount>;
enum Column : std::size_t {
  Value,
  Name,
  ScopeName,
  LayoutName,
  Base,
  CC0,
  CC32,
  Suffix,
  Kind,
  File,
  UserFile,
  Words,
  Source,
  Sure
};

template <class T>
using TWord = std::pair<std::string_view, T>;

constexpr TWord<Layout> Layouts[] = {
    {"F5", Layout::F5},      {"F4", Layout::F4},         {"F4-Kronos", Layout::Kronos},
    {"F6", Layout::F6},      {"Custom", Layout::Custom}, {"P", Layout::P},
    {"C3", Layout::C3},      {"K4", Layout::K4},         {"DS", Layout::DS},
    {"DN", Layout::DN},      {"X15", Layout::X15},       {"M17", Layout::M17},
    {"names", Layout::Names}};

constexpr TWord<Scope> Scopes[] = {
    {"sounds", Scope::Sounds},       {"gm2", Scope::GM2},
    {"custom", Scope::Custom},       {"drums", Scope::Drums},
    {"gm2drums", Scope::GM2Drums},   {"customdrums", Scope::CustomDrums},
    {"map1", Scope::Map1},           {"map2", Scope::Map2},
    {"map3", Scope::Map3},           {"map4", Scope::Map4},
    {"mapdrums1", Scope::MapDrums1}, {"mapdrums2", Scope::MapDrums2},
    {"mapdrums3", Scope::MapDrums3}, {"mapdrums4", Scope::MapDrums4},
    {"notes", Scope::Notes},         {"customnotes", Scope::CustomNotes},
    {"companion", Scope::Companion}, {"categories", Scope::Categories},
};

constexpr TWord<ListKind> Kinds[] = {{"real", ListKind::Real},
                                     {"fallback", ListKind::Fallback},
                                     {"user", ListKind::User},
                                     {"absent", ListKind::Absent}};

/// The table ships with the program: a fault in it is a fault of the build, which the tests find.
[[noreturn]] void Fault(std::string_view what, const TRow& row) {
  throw std::logic_error("lists.tsv: " + std::string(what) + " of list " + std::string(row[Name]) +
                         " of instrument " + std::string(row[Value]));
}

template <class T, std::size_t N>
T Word(const TWord<T> (&words)[N], Column column, const TRow& row) {
  for (const auto& [word, value] : words)
    if (word == row[column].substr(0, row[column].find(':'))) return value;
  Fault(row[column], row);
}

int Number(std::string_view cell, const TRow& row) {
  int value = 0;
  const auto [end, fault] = std::from_chars(cell.data(), cell.data() + cell.size(), value);
  if (fault != std::errc{} || end != cell.data() + cell.size() || value < 0 || value > 127)
    Fault(cell, row);
  return value;
}

/// A bank that all rows share, -1 if each tells its own or its number is the bank.
std::int8_t Bank(std::string_view cell, const TRow& row) {
  if (cell.empty() || cell == "CC00" || cell == "CC32") return -1;
  return static_cast<std::int8_t>(Number(cell, row));
}

TListSpec SpecOf(const TRow& row) {
  TListSpec spec;
  spec.Value = static_cast<std::uint8_t>(Number(row[Value], row));
  spec.Name = row[Name];
  spec.Scope = Word(Scopes, ScopeName, row);
  if (const std::size_t colon = row[ScopeName].find(':'); colon != std::string_view::npos)
    spec.Companion = row[ScopeName].substr(colon + 1);
  spec.Layout = Word(Layouts, LayoutName, row);
  spec.OneBased = row[Base] == "1";
  spec.CC00 = Bank(row[CC0], row);
  spec.CC32 = Bank(row[CC32], row);
  spec.NumberIsCC00 = row[CC0] == "CC00";
  spec.Suffix = row[Suffix];
  spec.Kind = Word(Kinds, Kind, row);
  spec.File = row[File];
  spec.UserFiles = row[UserFile];
  spec.Words = row[Words];
  spec.Source = row[Source];
  spec.Sure = row[Sure];
  return spec;
}

TRow CellsOf(std::string_view line) {
  TRow row;
  for (std::string_view& cell : row) {
    const std::size_t tab = line.find('\t');
    cell = line.substr(0, tab);
    line = tab == std::string_view::npos ? std::string_view() : line.substr(tab + 1);
  }
  return row;
}

std::vector<TListSpec> ReadTable() {
  std::vector<TListSpec> specs;
  std::string_view text = InstrumentFile("lists.tsv");
  text.remove_prefix(std::min(text.size(), text.find('\n') + 1));  // the headings
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    if (end > 0) specs.push_back(SpecOf(CellsOf(text.substr(0, end))));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  std::ranges::stable_sort(specs, {}, &TListSpec::Value);
  return specs;
}

}  // namespace

std::span<const TListSpec> AllLists() {
  static const std::vector<TListSpec> table = ReadTable();
  return table;
}

std::span<const TListSpec> ListsOf(int value) {
  const auto table = AllLists();
  const auto begin = std::ranges::lower_bound(table, value, {}, &TListSpec::Value);
  const auto end = std::ranges::upper_bound(table, value, {}, &TListSpec::Value);
  return {begin, end};
}

}  // namespace Sonarello
