#include "Coverage.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

#include "JsonParts.h"
#include "TextTable.h"
#include "core/Texts.h"
#include "instruments/InstrumentFiles.h"
#include "instruments/SoundListReader.h"

namespace Sonarello {

namespace {

/// Words in the names of lists that no instrument leaves its maker with: the user's memory, and
/// extensions that are bought apart.
constexpr std::array<std::string_view, 3> NotFromTheMaker = {"User", "SRX", "TE200"};

std::size_t LineCount(std::string_view text) {
  const auto breaks = static_cast<std::size_t>(std::ranges::count(text, '\n'));
  return text.empty() || text.ends_with('\n') ? breaks : breaks + 1;
}

std::size_t RowCountOf(const TListSpec& spec) {
  if (spec.File.empty()) return 0;
  const std::string_view text = InstrumentFile(spec.File);
  const ListPart part = PartOf(spec.Scope);
  // Effect defaults load into another list's rows.
  if (part == ListPart::Effects) return LineCount(text);
  const TSoundList list = ReadSoundList(spec, text, nullptr);
  return part == ListPart::Categories ? list.Categories.size() : list.Rows.size() + list.Kits.size();
}

bool CountsForState(const TListSpec& spec) {
  const ListPart part = PartOf(spec.Scope);
  return part == ListPart::Sounds || part == ListPart::Kits;
}

bool IsFromTheMaker(const TListSpec& spec) {
  return !IsCustom(spec.Scope) && std::ranges::none_of(NotFromTheMaker, [&](std::string_view word) {
    return spec.Name.find(word) != std::string_view::npos;
  });
}

ListCoverage CoverageOfList(const TListSpec& spec) {
  ListCoverage list{.Spec = &spec, .Rows = RowCountOf(spec)};
  list.IsMissing = list.Rows == 0 && IsFromTheMaker(spec);
  return list;
}

bool IsOwn(const ListCoverage& list) { return list.Spec->Kind == ListKind::Real && list.Rows > 0; }
bool IsFallback(const ListCoverage& list) {
  return list.Spec->Kind == ListKind::Fallback && list.Rows > 0;
}

Knowledge StateOf(const std::vector<ListCoverage>& lists) {
  bool own = false;
  bool fallback = false;
  bool missing = false;
  for (const ListCoverage& list : lists) {
    if (!CountsForState(*list.Spec)) continue;
    own |= IsOwn(list);
    fallback |= IsFallback(list);
    missing |= list.IsMissing;
  }
  if (own) return fallback || missing ? Knowledge::Partly : Knowledge::OwnTables;
  return fallback ? Knowledge::Fallback : Knowledge::Nothing;
}

struct CoverageSums {
  std::array<std::size_t, 4> Instruments{};  ///< by `Knowledge`
  std::size_t OwnRows = 0;
  std::size_t FallbackRows = 0;
};

CoverageSums SumsOf(std::span<const InstrumentCoverage> all) {
  CoverageSums sums;
  for (const InstrumentCoverage& one : all) {
    ++sums.Instruments[static_cast<std::size_t>(one.State)];
    sums.OwnRows += one.OwnRows;
    sums.FallbackRows += one.FallbackRows;
  }
  return sums;
}

std::string SumsText(const CoverageSums& sums) {
  const auto [own, partly, fallback, nothing] = sums.Instruments;
  const std::size_t rows = sums.OwnRows + sums.FallbackRows;
  return Text(fmt::format("{} mit eigenen Tabellen, {} teilweise, {} mit Ersatz, {} ohne Tabellen; {} "
                          "Zeilen, davon {} eigene",
                          own, partly, fallback, nothing, rows, sums.OwnRows),
              fmt::format(
                  "{} with own tables, {} partly, {} on fall-backs, {} without tables; {} rows, {} "
                  "of them own",
                  own, partly, fallback, nothing, rows, sums.OwnRows)) +
         "\n";
}

std::string PartText(ListPart part) {
  switch (part) {
    case ListPart::Sounds: return Text("Klänge", "sounds");
    case ListPart::Kits: return Text("Kits", "kits");
    case ListPart::NoteNames: return Text("Notennamen", "note names");
    case ListPart::Effects: return Text("Effekte", "effects");
    case ListPart::Categories: return Text("Kategorien", "categories");
  }
  return {};
}

std::string StateText(const ListCoverage& list) {
  if (IsOwn(list)) return Text("eigene", "own");
  if (IsFallback(list)) return Text("Ersatz", "fall-back");
  if (list.IsMissing) return Text("fehlt", "missing");
  return Text("des Benutzers", "the user's");
}

const char* StateName(const ListCoverage& list) {
  if (IsOwn(list)) return "real";
  if (IsFallback(list)) return "fallback";
  return list.IsMissing ? "missing" : "user";
}

const char* KnowledgeName(Knowledge state) {
  switch (state) {
    case Knowledge::OwnTables: return "own";
    case Knowledge::Partly: return "partly";
    case Knowledge::Fallback: return "fallback";
    case Knowledge::Nothing: return "nothing";
  }
  return "";
}

const char* PartName(ListPart part) {
  switch (part) {
    case ListPart::Sounds: return "sounds";
    case ListPart::Kits: return "kits";
    case ListPart::NoteNames: return "noteNames";
    case ListPart::Effects: return "effects";
    case ListPart::Categories: return "categories";
  }
  return "";
}

/// The less sure, the higher; 0 for nothing.
int SureRank(std::string_view sure) {
  if (sure.empty()) return 0;
  return sure == "high" ? 1 : sure == "medium" ? 2 : 3;
}

/// "high" and so on in the user's language; a word that is none of these stays.
std::string SureText(std::string_view sure) {
  if (sure == "high") return Text("sicher", "high");
  if (sure == "medium") return Text("mittel", "medium");
  if (sure == "low") return Text("gering", "low");
  return std::string(sure);
}

/// The names of the replacement files, commas between.
std::string UserFilesText(const TListSpec& spec) {
  std::string text;
  for (const char c : spec.UserFiles) text += c == '|' ? std::string(", ") : std::string(1, c);
  return text.empty() ? "-" : text;
}

/// A source and how sure it is only tell something of rows.
std::string SourceText(const ListCoverage& list) {
  return list.Rows == 0 ? "-" : std::string(list.Spec->Source);
}

Json ListJson(const ListCoverage& list) {
  const TListSpec& spec = *list.Spec;
  Json entry = {{"list", spec.Name},
                {"holds", PartName(PartOf(spec.Scope))},
                {"rows", list.Rows},
                {"state", StateName(list)},
                {"source", list.Rows == 0 ? Json(nullptr) : Json(spec.Source)},
                {"sure", list.Rows == 0 ? Json(nullptr) : Json(spec.Sure)},
                {"userFiles", Json::array()}};
  for (std::string_view rest = spec.UserFiles; !rest.empty();) {
    const std::size_t end = std::min(rest.find('|'), rest.size());
    entry["userFiles"].push_back(rest.substr(0, end));
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
  return entry;
}

Json InstrumentJson(const InstrumentCoverage& one) {
  Json entry = {{"value", one.Instrument->Value},
                {"name", one.Instrument->Name},
                {"state", KnowledgeName(one.State)},
                {"ownRows", one.OwnRows},
                {"fallbackRows", one.FallbackRows},
                {"missingLists", one.Missing},
                {"sure", one.Sure.empty() ? Json(nullptr) : Json(one.Sure)},
                {"lists", Json::array()}};
  for (const ListCoverage& list : one.Lists) entry["lists"].push_back(ListJson(list));
  return entry;
}

}  // namespace

InstrumentCoverage CoverageOf(const TInstrument& instrument) {
  InstrumentCoverage coverage;
  coverage.Instrument = &instrument;
  for (const TListSpec& spec : ListsOf(instrument.Value)) {
    const ListCoverage& list = coverage.Lists.emplace_back(CoverageOfList(spec));
    if (!CountsForState(spec) && PartOf(spec.Scope) != ListPart::NoteNames) continue;
    coverage.Missing += list.IsMissing;
    if (IsOwn(list)) coverage.OwnRows += list.Rows;
    if (IsOwn(list) && SureRank(spec.Sure) > SureRank(coverage.Sure)) coverage.Sure = spec.Sure;
    if (IsFallback(list)) coverage.FallbackRows += list.Rows;
  }
  coverage.State = StateOf(coverage.Lists);
  return coverage;
}

std::string KnowledgeText(Knowledge state) {
  switch (state) {
    case Knowledge::OwnTables: return Text("eigene Tabellen", "own tables");
    case Knowledge::Partly: return Text("teilweise", "partly");
    case Knowledge::Fallback: return Text("Ersatz", "fall-back");
    case Knowledge::Nothing: return Text("nichts", "nothing");
  }
  return {};
}

std::string CoverageText(std::span<const InstrumentCoverage> all) {
  TextTable table({{Text("Nr", "Value"), Align::Right},
                   {"Instrument", Align::Left},
                   {Text("Eigene Zeilen", "Own rows"), Align::Right},
                   {Text("Ersatzzeilen", "Fall-back rows"), Align::Right},
                   {Text("Fehlende Listen", "Missing lists"), Align::Right},
                   {Text("Gewähr", "Sure"), Align::Left},
                   {Text("Stand", "State"), Align::Left}});
  for (const InstrumentCoverage& one : all)
    table.AddRow({std::to_string(one.Instrument->Value), std::string(one.Instrument->Name),
                  std::to_string(one.OwnRows), std::to_string(one.FallbackRows),
                  std::to_string(one.Missing), one.Sure.empty() ? "-" : SureText(one.Sure),
                  KnowledgeText(one.State)});
  return table.Render() + "\n" + SumsText(SumsOf(all));
}

std::string CoverageDetails(const InstrumentCoverage& instrument) {
  TextTable table({{Text("Liste", "List"), Align::Left},
                   {Text("Inhalt", "Holds"), Align::Left},
                   {Text("Zeilen", "Rows"), Align::Right},
                   {Text("Stand", "State"), Align::Left},
                   {Text("Quelle", "Source"), Align::Left},
                   {Text("Gewähr", "Sure"), Align::Left},
                   {Text("Eigene Datei", "Your own file"), Align::Left}});
  for (const ListCoverage& list : instrument.Lists) {
    const TListSpec& spec = *list.Spec;
    table.AddRow({std::string(spec.Name), PartText(PartOf(spec.Scope)), std::to_string(list.Rows),
                  StateText(list), SourceText(list), list.Rows == 0 ? "-" : SureText(spec.Sure),
                  UserFilesText(spec)});
  }
  const std::string counts =
      Text(fmt::format("Eigene Zeilen: {}, Ersatzzeilen: {}, fehlende Listen: {}", instrument.OwnRows,
                       instrument.FallbackRows, instrument.Missing),
           fmt::format("Own rows: {}, fall-back rows: {}, missing lists: {}", instrument.OwnRows,
                       instrument.FallbackRows, instrument.Missing));
  return fmt::format("{} ({}): {}\n\n{}\n{}\n", instrument.Instrument->Name,
                     instrument.Instrument->Value, KnowledgeText(instrument.State), table.Render(),
                     counts);
}

std::string CoverageJson(std::span<const InstrumentCoverage> all) {
  const CoverageSums sums = SumsOf(all);
  const auto [own, partly, fallback, nothing] = sums.Instruments;
  Json result = {{"own", own},
                 {"partly", partly},
                 {"fallback", fallback},
                 {"nothing", nothing},
                 {"ownRows", sums.OwnRows},
                 {"fallbackRows", sums.FallbackRows},
                 {"instruments", Json::array()}};
  for (const InstrumentCoverage& one : all) result["instruments"].push_back(InstrumentJson(one));
  return result.dump(2) + "\n";
}

}  // namespace Sonarello
