#include "desk/EffectRow.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>

#include "core/EventList.h"
#include "core/Texts.h"
#include "desk/EffectRowBytes.h"

namespace Sonarello {

namespace {

constexpr TEffectBlocks BlockTable[] = {
    {.InstrumValue = 9, .MasterEQ = false, .Vocal = false, .DSPs = 5},   // Tyros
    {.InstrumValue = 31, .MasterEQ = false, .Vocal = false, .DSPs = 5},  // Tyros 2
    {.InstrumValue = 54, .MasterEQ = true, .Vocal = false, .DSPs = 6},   // Tyros 3
    {.InstrumValue = 62, .MasterEQ = true, .Vocal = true, .DSPs = 6},    // Tyros 4
    {.InstrumValue = 74, .MasterEQ = true, .Vocal = true, .DSPs = 6},    // Tyros 5
    {.InstrumValue = 41, .MasterEQ = false, .Vocal = false, .DSPs = 3},  // PSR-S900
    {.InstrumValue = 59, .MasterEQ = false, .Vocal = false, .DSPs = 3},  // PSR-S910
    {.InstrumValue = 70, .MasterEQ = false, .Vocal = false, .DSPs = 3},  // PSR-S950
    {.InstrumValue = 80, .MasterEQ = true, .Vocal = true, .DSPs = 3},    // PSR-S970
    {.InstrumValue = 97, .MasterEQ = true, .Vocal = true, .DSPs = 6},    // PSR-SX900
    {.InstrumValue = 87, .MasterEQ = true, .Vocal = true, .DSPs = 16},   // Genos
};
constexpr std::size_t MostDSPs = 16;

constexpr int Type(int msb, int lsb) { return msb * 128 + lsb; }
constexpr int NoEffect = Type(0, 0);
constexpr int Thru = Type(64, 0);

constexpr int MicPart = 64;
constexpr int OffPart = 127;

// --- Names

enum class TNameList : std::uint8_t { Chorus, Reverb, DSP };

struct TTypeName {
  TNameList List;
  int Number;
  std::string_view Name;
};

std::string_view Cell(std::string_view& line) {
  const std::size_t end = std::min(line.find('\t'), line.size());
  const std::string_view cell = line.substr(0, end);
  line.remove_prefix(std::min(end + 1, line.size()));
  return cell;
}

int NumberOf(std::string_view text) {
  int number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

std::vector<TTypeName> ReadNames() {
  std::vector<TTypeName> names;
  for (std::size_t f = 0; f < EffectRowByteCount; ++f) {
    if (EffectRowBytes[f].Path != "EffectTypes.tsv") continue;
    std::string_view text(
        EffectRowBytes[f].Begin,
        static_cast<std::size_t>(EffectRowBytes[f + 1].Begin - EffectRowBytes[f].Begin));
    while (!text.empty()) {
      const std::size_t end = std::min(text.find('\n'), text.size());
      std::string_view line = text.substr(0, end);
      text.remove_prefix(std::min(end + 1, text.size()));
      const std::string_view block = Cell(line);
      const int msb = NumberOf(Cell(line));
      const int number = Type(msb, NumberOf(Cell(line)));
      if (block == "chorus") names.push_back({TNameList::Chorus, number, Cell(line)});
      if (block == "reverb") names.push_back({TNameList::Reverb, number, Cell(line)});
      if (block == "dsp") names.push_back({TNameList::DSP, number, Cell(line)});
    }
  }
  return names;
}

std::optional<TNameList> ListOf(TEffectBlock block) {
  switch (block) {
    case TEffectBlock::Chorus: return TNameList::Chorus;
    case TEffectBlock::Reverb: return TNameList::Reverb;
    case TEffectBlock::Variation:
    case TEffectBlock::DSP: return TNameList::DSP;
    default: return std::nullopt;
  }
}

// --- What the song sets

/// A byte or a type that messages set, each later than the other.
struct TSetting {
  std::optional<int> Value;
  std::int32_t Position = 0;  ///< ticks
  bool OfMemory = false;      ///< the effect memory set it

  /// The state as the first notes sound counts, behind it the first one that comes.
  void Take(int value, std::int32_t position, bool ofMemory, std::int32_t firstNotes) {
    if (Value && OfMemory && !ofMemory) return;
    if (Value && OfMemory == ofMemory) {
      if (Position <= firstNotes && (position > firstNotes || position < Position)) return;
      if (Position > firstNotes && position > firstNotes && position >= Position) return;
    }
    Value = value;
    Position = position;
    OfMemory = ofMemory;
  }
};

struct TBlockState {
  bool IsSet = false;
  TSetting Type;
  TSetting Part;
  TSetting Connection;  ///< of the variation: 1 system, 0 insertion
  TSetting Switch;      ///< of the vocal effect
};

/// Which message of a block sets what: offsets from the block's first address; -1 for none.
struct TAddresses {
  int Begin = 0;
  int End = 0;  ///< behind the last address
  int Type = 0;
  int Part = -1;
  int Connection = -1;
  int Switch = -1;
};
constexpr TAddresses ReverbAddresses{.Begin = 0x00, .End = 0x20, .Type = 0x00};
constexpr TAddresses ChorusAddresses{.Begin = 0x20, .End = 0x40, .Type = 0x20};
constexpr TAddresses VariationAddresses{
    .Begin = 0x40, .End = 0x80, .Type = 0x40, .Part = 0x5B, .Connection = 0x5A};
constexpr TAddresses DSPAddresses{.Begin = 0x00, .End = 0x80, .Type = 0x00, .Part = 0x0C};
constexpr TAddresses EQAddresses{.Begin = 0x00, .End = 0x80, .Type = 0x00};
constexpr TAddresses HarmonyAddresses{.Begin = 0x00, .End = 0x60, .Type = 0x00};
constexpr TAddresses VocalAddresses{.Begin = 0x60, .End = 0x80, .Type = 0x60, .Switch = 0x76};

constexpr std::size_t FirstDSP = static_cast<std::size_t>(TEffectBlock::DSP);

/// Reads the XG parameter changes of the effects: 43 1n 4C, three bytes of address, data, F7.
class EffectScan {
 public:
  explicit EffectScan(const Song& s)
      : song(s), firstNotes(std::max(s.TickPositionOfFirstNote, s.SourceTimeBase * SetupBeats)) {}

  void Scan(const TMyTrack& track, bool isMemory) {
    for (PtrMidiEvent e = track.TrkFirstEvent; e != nullptr; e = Following(e))
      if (e->Command == Sysex && e->DLength > 0) Read(*e, isMemory);
  }
  void ScanSong() {
    for (std::int32_t t = 0; t < song.NumberOfSourceTracks; ++t)
      if (const TMyTrack& track = song.MidiTrack[static_cast<std::size_t>(t)]; !track.TrkIgnore)
        Scan(track, false);
  }
  [[nodiscard]] const TBlockState& Of(TEffectBlock block, int number) const {
    return states[static_cast<std::size_t>(block) + static_cast<std::size_t>(std::max(0, number - 1))];
  }

 private:
  static constexpr std::int32_t SetupBeats = 8;
  static constexpr std::size_t ShortestChange = 8;

  void Read(const TypMidiEvent& e, bool isMemory) {
    const std::span<const std::uint8_t> bytes = e.Meta.Bytes();
    if (bytes.size() < ShortestChange || bytes[0] != 0x43 || (bytes[1] & 0xF0) != 0x10 ||
        bytes[2] != 0x4C)
      return;
    const int block = bytes[3] << 8 | bytes[4];
    if (block == 0x0201) {
      Set(TEffectBlock::Reverb, ReverbAddresses, e, isMemory);
      Set(TEffectBlock::Chorus, ChorusAddresses, e, isMemory);
      Set(TEffectBlock::Variation, VariationAddresses, e, isMemory);
    } else if (block == 0x0240) {
      Set(TEffectBlock::MasterEQ, EQAddresses, e, isMemory);
    } else if (block == 0x0400) {
      Set(TEffectBlock::VocalHarmony, HarmonyAddresses, e, isMemory);
      Set(TEffectBlock::VocalEffect, VocalAddresses, e, isMemory);
    } else if (bytes[3] == 0x03 && bytes[4] < MostDSPs) {
      Set(TEffectBlock::DSP, DSPAddresses, e, isMemory, bytes[4]);
    }
  }

  void Set(TEffectBlock block, const TAddresses& addresses, const TypMidiEvent& e, bool isMemory,
           std::size_t index = 0) {
    const std::span<const std::uint8_t> bytes = e.Meta.Bytes();
    const int address = bytes[5];
    if (address < addresses.Begin || address >= addresses.End) return;
    TBlockState& state = states[static_cast<std::size_t>(block) + index];
    state.IsSet = true;
    const auto take = [&](TSetting& setting, int value) {
      setting.Take(value, e.Position, isMemory, firstNotes);
    };
    if (address == addresses.Type) {
      // The master EQ's type is one byte, all others are two.
      if (block == TEffectBlock::MasterEQ)
        take(state.Type, bytes[6]);
      else if (bytes.size() > ShortestChange)
        take(state.Type, Type(bytes[6], bytes[7]));
    }
    if (address == addresses.Part) take(state.Part, bytes[6]);
    if (address == addresses.Connection) take(state.Connection, bytes[6]);
    if (address == addresses.Switch) take(state.Switch, bytes[6]);
  }

  const Song& song;
  std::int32_t firstNotes;  ///< ticks
  std::array<TBlockState, FirstDSP + MostDSPs> states{};
};

/// The type of a block that a song sets parameters of, but no type: the instrument's default.
int DefaultType(TEffectBlock block) {
  switch (block) {
    case TEffectBlock::Reverb: return Type(1, 0);
    case TEffectBlock::Chorus: return Type(65, 0);
    case TEffectBlock::Variation: return Type(5, 0);
    case TEffectBlock::DSP: return Thru;
    case TEffectBlock::VocalHarmony: return Type(12, 0);
    case TEffectBlock::VocalEffect: return Type(21, 0);
    default: return 0;
  }
}

bool IsOn(TEffectBlock block, const TBlockState& state) {
  if (!state.IsSet || state.Switch.Value == 0) return false;
  if (block == TEffectBlock::MasterEQ) return true;
  const int type = state.Type.Value.value_or(DefaultType(block));
  return type != NoEffect && type != Thru;
}

std::string NameOf(TEffectBlock block, int type) {
  const std::string_view name = EffectTypeName(block, type);
  if (!name.empty()) return std::string(name);
  const std::string number = block == TEffectBlock::MasterEQ
                                 ? std::to_string(type)
                                 : std::to_string(type / 128) + "/" + std::to_string(type % 128);
  return Text("Typ " + number, "Type " + number);
}

std::string PartOf(const TBlockState& state) {
  if (state.Connection.Value == 1) return "System";
  if (!state.Part.Value) return {};
  const int part = *state.Part.Value;
  if (part < ChannelCount) return Text("K ", "Ch ") + std::to_string(part + 1);
  if (part == MicPart) return "Mic";
  return part == OffPart ? "Off" : "";
}

TEffectCell CellOf(TEffectBlock block, int number, const EffectScan& scan) {
  const TBlockState& state = scan.Of(block, number);
  TEffectCell cell{block, number, IsOn(block, state), "Off", {}};
  if (!cell.On) return cell;
  cell.EffectName = NameOf(block, state.Type.Value.value_or(DefaultType(block)));
  cell.Part = PartOf(state);
  return cell;
}

}  // namespace

std::string TEffectCell::BlockName() const {
  switch (Block) {
    case TEffectBlock::Chorus: return "Chorus";
    case TEffectBlock::Reverb: return "Reverb";
    case TEffectBlock::Variation: return "Variation";
    case TEffectBlock::MasterEQ: return "Master EQ";
    case TEffectBlock::VocalHarmony: return "Vocal Harmony";
    case TEffectBlock::VocalEffect: return "Vocal Effect";
    case TEffectBlock::DSP: break;
  }
  return "DSP " + std::to_string(Number);
}

const TEffectBlocks* EffectBlocksOf(int instrumValue) noexcept {
  const auto* found = std::ranges::find(BlockTable, instrumValue, &TEffectBlocks::InstrumValue);
  return found == std::end(BlockTable) ? nullptr : found;
}

std::string_view EffectTypeName(TEffectBlock block, int type) noexcept {
  static const std::vector<TTypeName> names = ReadNames();
  const std::optional<TNameList> list = ListOf(block);
  if (!list) return {};
  const auto found = std::ranges::find_if(
      names, [&](const TTypeName& row) { return row.List == *list && row.Number == type; });
  return found == names.end() ? std::string_view{} : found->Name;
}

bool TEffectRow::Read(const Song& song, int instrumValue) {
  std::vector<TEffectCell> cells;
  if (const TEffectBlocks* blocks = EffectBlocksOf(instrumValue)) {
    EffectScan scan(song);
    if (const TMyTrack* memory = song.DSPTrackOf(instrumValue)) scan.Scan(*memory, true);
    scan.ScanSong();
    const auto add = [&](TEffectBlock block, int number = 0) {
      cells.push_back(CellOf(block, number, scan));
    };
    add(TEffectBlock::Chorus);
    add(TEffectBlock::Reverb);
    add(TEffectBlock::Variation);
    if (blocks->MasterEQ) add(TEffectBlock::MasterEQ);
    if (blocks->Vocal) add(TEffectBlock::VocalHarmony);
    if (blocks->Vocal) add(TEffectBlock::VocalEffect);
    for (int n = 1; n <= blocks->DSPs; ++n) add(TEffectBlock::DSP, n);
  }
  if (cells == Cells) return false;
  Cells = std::move(cells);
  return true;
}

int TEffectRow::DSPCount() const noexcept {
  return static_cast<int>(std::ranges::count(Cells, TEffectBlock::DSP, &TEffectCell::Block));
}

}  // namespace Sonarello
