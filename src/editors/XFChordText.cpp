#include "editors/XFChordText.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "core/Texts.h"

namespace Sonarello {

namespace {

constexpr std::uint8_t ChordCancel = 34;
constexpr std::uint8_t NoChord = 127;
constexpr std::uint8_t NoBass = 127;  ///< of a bass root and of a bass type
constexpr std::string_view NoRoot = "X";
constexpr std::string_view Unknown = "???";

constexpr std::array<std::string_view, 38> Types = {
    "",      "6",      "M7",   "M7(#11)", "9",      "M7(9)",  "6(9)",   "aug",    "m",     "m6",
    "m7",    "m7(b5)", "m(9)", "m7(9)",   "m7(11)", "mM7",    "mM7(9)", "dim",    "dim7",  "7",
    "7sus4", "7(b5)",  "7(9)", "7(#11)",  "7(13)",  "7(b9)",  "7(b13)", "7(#9)",  "M7aug", "7aug",
    "1+8",   "1+5",    "sus4", "sus2",    "cc",     "M7(b5)", "(b5)",   "mM7(b5)"};

/// By the high nibble of a root.
constexpr std::array<std::string_view, 7> Accidentals = {"bbb", "bb", "b", "", "#", "##", "###"};
/// By the low nibble, from 1.
constexpr std::string_view Notes = "CDEFGAB";

std::string RootName(std::uint8_t root, bool german) {
  const std::size_t note = root & 0x0F;
  const std::size_t accidental = root >> 4;
  if (note == 0 || note > Notes.size() || accidental >= Accidentals.size()) return std::string(NoRoot);
  std::string name = Notes[note - 1] + std::string(Accidentals[accidental]);
  if (!german) return name;
  if (name == "B") return "H";
  return name == "Bb" || name == "A#" ? "B" : name;
}

std::string_view TypeName(std::uint8_t type) { return type < Types.size() ? Types[type] : Unknown; }

/// Every root that has a name, in the order in which a text is compared with them: usual spellings
/// first, so that the German "B" is read as Bb.
std::vector<std::uint8_t> MakeRoots() {
  std::vector<std::uint8_t> roots;
  for (const unsigned accidental : {0x30U, 0x20U, 0x40U, 0x10U, 0x50U, 0x00U, 0x60U})
    for (std::uint8_t note = 1; note <= Notes.size(); ++note)
      roots.push_back(static_cast<std::uint8_t>(accidental | note));
  return roots;
}

struct TReadRoot {
  std::uint8_t Byte;
  std::size_t Length;
};

/// The root at a text's start: the longest name that fits. "C##" is read whole.
std::optional<TReadRoot> ReadRoot(std::string_view text, bool german) {
  static const std::vector<std::uint8_t> roots = MakeRoots();
  if (text.starts_with(NoRoot)) return TReadRoot{0x30, NoRoot.size()};
  std::optional<TReadRoot> found;
  for (const std::uint8_t root : roots) {
    const std::string name = RootName(root, german);
    if (text.starts_with(name) && (!found || name.size() > found->Length))
      found = TReadRoot{root, name.size()};
  }
  return found;
}

std::optional<std::uint8_t> TypeOfName(std::string_view name) {
  const auto found = std::ranges::find(Types, name);
  if (found == Types.end() || found - Types.begin() == ChordCancel) return std::nullopt;
  return static_cast<std::uint8_t>(found - Types.begin());
}

/// Root and type of a text that holds both and nothing else. No type begins as an accidental does.
std::optional<std::pair<std::uint8_t, std::uint8_t>> ReadChord(std::string_view text, bool german) {
  const std::optional<TReadRoot> root = ReadRoot(text, german);
  if (!root) return std::nullopt;
  const std::optional<std::uint8_t> type = TypeOfName(text.substr(root->Length));
  if (!type) return std::nullopt;
  return std::pair{root->Byte, *type};
}

}  // namespace

std::string XFChordName(const TXFChordBytes& chord, bool german) {
  const auto [root, type, bassRoot, bassType] = chord;
  if (type == NoChord) return Text("kein-Akkord", "no-chord");
  if (type == ChordCancel) return std::string(Types[ChordCancel]);
  std::string name = RootName(root, german) + std::string(TypeName(type));
  const bool differs = bassRoot != root || bassType != type;
  if (!differs || bassRoot >= NoBass) return name;
  name += "/" + RootName(bassRoot, german);
  if (bassType < NoBass) name += TypeName(bassType);
  return name;
}

std::optional<TXFChordBytes> XFChordOfName(std::string_view name, bool german) {
  if (name == "kein-Akkord" || name == "no-chord") return TXFChordBytes{0x31, NoChord, NoBass, NoBass};
  if (name == Types[ChordCancel]) return TXFChordBytes{0x31, ChordCancel, NoBass, NoBass};
  const std::size_t slash = name.find('/');
  const auto chord = ReadChord(name.substr(0, slash), german);
  if (!chord) return std::nullopt;
  TXFChordBytes bytes = {chord->first, chord->second, NoBass, NoBass};
  if (slash == std::string_view::npos) return bytes;
  const auto bass = ReadChord(name.substr(slash + 1), german);
  if (!bass) return std::nullopt;
  bytes[2] = bass->first;
  // A bass note alone has no type of its own.
  bytes[3] = bass->second == 0 ? NoBass : bass->second;
  return bytes;
}

std::array<std::uint8_t, 7> XFChordEvent(const TXFChordBytes& chord) noexcept {
  return {0x43, 0x7B, 0x01, chord[0], chord[1], chord[2], chord[3]};
}

TXFChordBytes XFChordIn(std::span<const std::uint8_t> event) noexcept {
  return {event[3], event[4], event[5], event[6]};
}

}  // namespace Sonarello
