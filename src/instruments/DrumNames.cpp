#include "instruments/DrumNames.h"

#include <algorithm>
#include <charconv>
#include <vector>

namespace Sonarello {

namespace {

constexpr std::string_view EditedMark = "*";
constexpr std::string_view EditedPrefix = "* ";
constexpr std::string_view EndOfRun = "##";
constexpr std::string_view Blanks = " \r";

// --- Cells

std::string_view Trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(Blanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(Blanks) - first + 1);
}

struct TNoteName {
  std::size_t Note = 0;
  std::string_view Name;
};

/// The note of a cell without blanks around it.
std::optional<TNoteName> NoteOf(std::string_view cell) {
  const std::size_t blank = cell.find(' ');
  if (blank == std::string_view::npos) return {};
  const char* end = cell.data() + blank;
  unsigned note = 0;
  const auto [stop, error] = std::from_chars(cell.data(), end, note);
  if (error != std::errc{} || stop != end || note >= KeyCount) return {};
  return TNoteName{note, Trimmed(cell.substr(blank))};
}

/// What the cells of a row say.
struct TKitCells {
  std::vector<TNoteName> Notes;
  std::size_t Level = 0;  ///< number of "+" signs
  bool Edited = false;
  bool EndsRun = false;

  [[nodiscard]] bool HasNames() const noexcept { return Level > 0 || !Notes.empty(); }
};

TKitCells CellsOf(const TPatch& row) {
  TKitCells cells;
  for (std::string_view rest = row.Drums; !rest.empty() && !cells.EndsRun;) {
    const std::size_t tab = rest.find('\t');
    const std::string_view cell = Trimmed(rest.substr(0, tab));
    rest = tab == std::string_view::npos ? std::string_view{} : rest.substr(tab + 1);
    if (cell.empty()) continue;
    if (cell == EndOfRun)
      cells.EndsRun = true;
    else if (cell == EditedMark)
      cells.Edited = true;
    else if (cell.find_first_not_of('+') == std::string_view::npos)
      cells.Level = cell.size();
    else if (const auto note = NoteOf(cell))
      cells.Notes.push_back(*note);
  }
  return cells;
}

// --- Rows

bool HoldsKits(Scope scope) {
  return (scope >= Scope::Drums && scope <= Scope::CustomDrums) ||
         (scope >= Scope::MapDrums1 && scope <= Scope::MapDrums4);
}
bool HoldsNotes(Scope scope) { return scope == Scope::Notes || scope == Scope::CustomNotes; }
/// The lists that name the notes of a scope's kits.
Scope NotesOf(Scope kits) {
  return kits == Scope::CustomDrums || kits == Scope::CustomNotes ? Scope::CustomNotes : Scope::Notes;
}

bool Matches(const TPatch& row, const TAddress& address) {
  const auto same = [](int a, int b) { return a < 0 || b < 0 || a == b; };
  return same(row.CC00, address.CC00) && same(row.CC32, address.CC32) && same(row.Patch, address.Patch);
}

/// A row of a list, or one of the kits of its last row.
struct TPlace {
  const TSoundList* List = nullptr;
  std::size_t Index = 0;
  bool IsKit = false;

  [[nodiscard]] const TPatch& Row() const { return IsKit ? List->Kits[Index] : List->Rows[Index]; }
};

/// The first row in the lists of these scopes that is asked for.
template <class InScope, class Wanted>
std::optional<TPlace> FindRow(std::span<const TSoundList> lists, InScope&& inScope, Wanted&& wanted) {
  for (const TSoundList& list : lists) {
    if (list.Spec == nullptr || !inScope(list.Spec->Scope)) continue;
    const auto row = std::ranges::find_if(list.Rows, wanted);
    if (row != list.Rows.end()) return TPlace{&list, static_cast<std::size_t>(row - list.Rows.begin())};
  }
  return {};
}

/// The first kit of the last rows of program-indexed lists that is asked for. They stand in the scope
/// of drums, or of the drums of their map.
template <class Wanted>
std::optional<TPlace> FindProgramKit(std::span<const TSoundList> lists, std::optional<Scope> scope,
                                     Wanted&& wanted) {
  for (const TSoundList& list : lists) {
    if (list.Spec == nullptr || (scope && *scope != KitScope(list.Spec->Scope))) continue;
    const auto kit = std::ranges::find_if(list.Kits, wanted);
    if (kit != list.Kits.end())
      return TPlace{&list, static_cast<std::size_t>(kit - list.Kits.begin()), true};
  }
  return {};
}

std::optional<TPlace> FindKit(std::span<const TSoundList> lists, const TAddress& address,
                              std::optional<Scope> scope) {
  const auto wanted = [&](const TPatch& row) { return Matches(row, address); };
  const auto kits = [&](Scope s) { return scope ? s == *scope : HoldsKits(s); };
  if (auto kit = FindProgramKit(lists, scope, wanted)) return kit;
  if (auto kit = FindRow(lists, kits, wanted)) return kit;
  const auto notes = [&](Scope s) { return scope ? s == NotesOf(*scope) : HoldsNotes(s); };
  return FindRow(lists, notes, wanted);
}

/// The row that names the notes of a kit.
std::optional<TPlace> FindNames(std::span<const TSoundList> lists, const TPlace& kit,
                                const TAddress& asked) {
  if (CellsOf(kit.Row()).HasNames()) return kit;
  const auto known = [](int own, int other) { return own >= 0 ? own : other; };
  const TAddress address = {known(kit.Row().CC00, asked.CC00), known(kit.Row().CC32, asked.CC32),
                            known(kit.Row().Patch, asked.Patch)};
  const auto wanted = [&](const TPatch& row) {
    return Matches(row, address) && CellsOf(row).HasNames();
  };
  const Scope own = kit.IsKit ? KitScope(kit.List->Spec->Scope) : kit.List->Spec->Scope;
  const auto near = [&](Scope s) { return s == own || s == NotesOf(own); };
  if (auto names = FindRow(lists, near, wanted)) return names;
  return FindRow(
      lists, [](Scope s) { return HoldsKits(s) || HoldsNotes(s); }, wanted);
}

void TakeNames(const TPlace& place, std::array<std::string_view, KeyCount>& names) {
  std::vector<TKitCells> chain = {CellsOf(place.Row())};  // from the kit to its last base
  for (std::size_t i = place.Index; i > 0 && chain.back().Level > 0; --i) {
    TKitCells above = CellsOf(place.List->Rows[i - 1]);
    if (above.EndsRun) break;
    if (above.Level < chain.back().Level) chain.push_back(std::move(above));
  }
  for (auto cells = chain.rbegin(); cells != chain.rend(); ++cells)
    for (const TNoteName& note : cells->Notes) names[note.Note] = note.Name;
}

// --- Kit names

/// What the kits of a list are told apart by.
struct TKitWord {
  std::string_view InListName;
  std::string_view Before;
  std::string_view Behind;
};
constexpr TKitWord KitWords[] = {
    {"SFX", "", " SFX"},   {"GM2", "", " GM2"},        {"Custom", "", " Custom"},
    {"User", "", " User"}, {"SRX", "SRX Rhythm ", ""},
};

bool IsLetterOrDigit(char c) {
  return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}
char Small(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

/// True if a word of the name is `word`, in any case, or starts with it as in "SFXKit".
bool HasWord(std::string_view name, std::string_view word) {
  for (std::size_t i = 0; i + word.size() <= name.size(); ++i) {
    if (i > 0 && IsLetterOrDigit(name[i - 1])) continue;
    const std::size_t end = i + word.size();
    if (end < name.size() && IsLetterOrDigit(name[end]) && !(name[end] >= 'A' && name[end] <= 'Z'))
      continue;
    if (std::ranges::equal(name.substr(i, word.size()), word, {}, Small, Small)) return true;
  }
  return false;
}

std::string KitName(const TPlace& kit, bool edited) {
  std::string_view bare = kit.Row().Name;
  if (bare.starts_with(EditedPrefix)) bare.remove_prefix(EditedPrefix.size());
  std::string name(bare);
  const auto word = std::ranges::find_if(KitWords, [&](const TKitWord& w) {
    return kit.List->Spec->Name.find(w.InListName) != std::string_view::npos;
  });
  if (word != std::end(KitWords) && !HasWord(bare, word->InListName))
    name = std::string(word->Before) + name + std::string(word->Behind);
  return edited ? std::string(EditedPrefix) + name : name;
}

}  // namespace

TDrumNames ReadDrumNames(std::span<const TSoundList> lists, const TAddress& address,
                         std::optional<Scope> scope) {
  TDrumNames result;
  if (address.Patch < 0) return result;
  const auto kit = FindKit(lists, address, scope);
  if (!kit) return result;
  result.Row = &kit->Row();
  result.UserEdited = result.Row->Name.starts_with(EditedPrefix) || CellsOf(*result.Row).Edited;
  if (const auto names = FindNames(lists, *kit, address)) {
    result.UserEdited |= CellsOf(names->Row()).Edited;
    TakeNames(*names, result.Names);
  }
  result.DrumSetName = KitName(*kit, result.UserEdited);
  return result;
}

}  // namespace Sonarello
