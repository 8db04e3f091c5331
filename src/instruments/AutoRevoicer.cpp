#include "instruments/AutoRevoicer.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <unordered_map>

#include "core/EventList.h"
#include "core/Texts.h"

namespace Sonarello {

namespace {

constexpr std::size_t CellCount = 8;
constexpr int MaxNumber = 127;

// --- Rows

std::string_view Trimmed(std::string_view text) {
  constexpr std::string_view blanks = " \r";
  const std::size_t first = text.find_first_not_of(blanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

std::vector<std::string_view> Cells(std::string_view row) {
  std::vector<std::string_view> cells;
  for (std::size_t from = 0; from != std::string_view::npos;) {
    const std::size_t tab = row.find('\t', from);
    cells.push_back(Trimmed(row.substr(from, tab - from)));
    from = tab == std::string_view::npos ? tab : tab + 1;
  }
  return cells;
}

bool IsNumber(int value) { return value >= 0 && value <= MaxNumber; }
bool IsAddress(const TAddress& a) { return IsNumber(a.CC00) && IsNumber(a.CC32) && IsNumber(a.Patch); }

/// A number of 0-127, or -1.
int NumberOf(std::string_view cell) {
  int value = -1;
  const char* end = cell.data() + cell.size();
  const auto [stop, error] = std::from_chars(cell.data(), end, value);
  return error == std::errc{} && stop == end && IsNumber(value) ? value : -1;
}

/// Reads a row; what is wrong with it, or an empty text.
std::string ReadRow(std::string_view row, TRevoicerRec& rec) {
  const auto cells = Cells(row);
  if (cells.size() != CellCount)
    return std::to_string(cells.size()) + Text(" Felder statt 8", " cells instead of 8");
  std::array<int, CellCount> numbers{};
  for (std::size_t i = 0; i < CellCount; ++i) {
    if (i % 4 == 0) continue;  // the names
    numbers[i] = NumberOf(cells[i]);
    if (numbers[i] < 0)
      return Text("Feld ", "cell ") + std::to_string(i + 1) + ", \"" + std::string(cells[i]) +
             Text("\", ist keine Zahl von 0 bis 127", "\", is no number from 0 to 127");
  }
  rec = {.DestVoiceCC00 = numbers[5],
         .DestVoiceCC32 = numbers[6],
         .DestVoicePatch = numbers[7],
         .DestVoiceName = std::string(cells[4]),
         .SourceVoiceCC00 = numbers[1],
         .SourceVoiceCC32 = numbers[2],
         .SourceVoicePatch = numbers[3],
         .SourceVoiceName = std::string(cells[0])};
  return {};
}

int KeyOf(const TAddress& a) { return (a.CC00 * KeyCount + a.CC32) * KeyCount + a.Patch; }

/// Gathers rows with different sources.
class RowCollector {
 public:
  explicit RowCollector(TRevoicerRules& r) : rules(r) {}

  /// `place`: where the row stands, such as "line 3".
  void Add(std::string_view row, const std::string& place) {
    TRevoicerRec rec;
    const std::string fault = ReadRow(row, rec);
    if (!fault.empty()) {
      rules.Faults.push_back(place + ": " + fault);
      return;
    }
    const auto [known, fresh] = places.try_emplace(KeyOf(rec.Source()), place);
    if (fresh)
      rules.Rows.push_back(std::move(rec));
    else
      rules.Faults.push_back(place + Text(": dieselbe Quelle wie ", ": same source as ") +
                             known->second);
  }

 private:
  TRevoicerRules& rules;
  std::unordered_map<int, std::string> places;
};

std::string Clean(std::string name) {
  std::ranges::replace_if(
      name, [](char c) { return c == '\t' || c == '\r' || c == '\n'; }, ' ');
  return name;
}

std::string TabbedAddress(const TAddress& a) {
  return '\t' + std::to_string(a.CC00) + '\t' + std::to_string(a.CC32) + '\t' + std::to_string(a.Patch);
}

// --- The run

constexpr std::array<std::uint8_t, 2> BankControllers = {0, 32};

/// Plans the changes of a run and makes them when nothing can fail any more.
class Revoicing {
 public:
  Revoicing(Song& s, const IRoutes& routes, std::span<const TRevoicerRec> rows) : song(s) {
    for (const TRevoicerRec& row : rows) bySource.try_emplace(KeyOf(row.Source()), &row);
    const auto table = routes.MidiRouting();
    for (std::size_t c = 0; c < ChannelCount; ++c) {
      const std::size_t route = song.MidiOutIndex[c];
      result.Channels[c] = route < table.size() && table[route].InstrumValue == table[0].InstrumValue &&
                           song.MidiData[c].DrumPart == 0;
    }
  }
  Revoicing(const Revoicing&) = delete;
  Revoicing& operator=(const Revoicing&) = delete;
  ~Revoicing() {
    for (const TInsertion& i : insertions) song.Pool.Release(i.Bank);
  }

  void Plan() {
    for (std::int32_t t = 0; t < song.NumberOfSourceTracks; ++t) {
      const TMyTrack& at = song.MidiTrack[static_cast<std::size_t>(t)];
      if (at.TrkIgnore) continue;
      track = t;
      banks = {};
      ForEachEvent(at, [this](PtrMidiEvent e) { Follow(e); });
    }
  }

  TRevoiceResult Apply() {
    for (const TWrite& w : writes) {
      w.Event->Value[w.Byte] = w.Value;
      LogChange(song, ChangeKind::Rewritten, w.Track, *w.Event, "Klang durch den Auto Revoicer ersetzt",
                "sound replaced by the auto revoicer");
    }
    for (const TInsertion& i : insertions) {
      LinkBehind(song.MidiTrack[static_cast<std::size_t>(i.Track)], i.Program->PrevEvent, i.Bank);
      LogChange(song, ChangeKind::Inserted, i.Track, *i.Bank, "Bankwahl galt mehreren Programmwechseln",
                "bank select served several program changes");
    }
    result.Inserted = static_cast<std::int32_t>(insertions.size());
    insertions.clear();
    for (const TDesk& d : desk) {
      TMidiChannelData& data = song.MidiData[d.Channel];
      for (std::size_t i = 0; i < BankControllers.size(); ++i)
        data.CtrlArray[BankControllers[i]] = {d.Banks[i], d.Banks[i]->Value[1]};
      data.Patch = d.Patch;
    }
    for (auto& lines : protocol) std::ranges::move(lines, std::back_inserter(result.Protocol));
    return std::move(result);
  }

 private:
  /// A bank select of a channel on the track that is gone through.
  struct TBank {
    PtrMidiEvent Event = nullptr;    ///< the last one of the song
    PtrMidiEvent InForce = nullptr;  ///< it, or the one planned behind it; nil: no program used it yet
    int Value = 0;                   ///< of `InForce`, as planned
  };
  using TBanks = std::array<TBank, BankControllers.size()>;
  struct TWrite {
    std::int32_t Track;
    PtrMidiEvent Event;
    std::size_t Byte;
    std::uint8_t Value;
  };
  struct TInsertion {
    std::int32_t Track;
    PtrMidiEvent Program;
    PtrMidiEvent Bank;
  };
  struct TDesk {
    std::size_t Channel;
    std::array<PtrMidiEvent, BankControllers.size()> Banks;
    std::int8_t Patch;
  };

  [[nodiscard]] bool Counts(PtrMidiEvent e) const {
    return e->IsChannelEvent() && !e->IsRemoved() &&
           result.Channels[static_cast<std::size_t>(e->Channel())] && e != song.PromptaRemotePatch &&
           e != song.PromptaRemoteCtrl00 && e != song.PromptaRemoteCtrl32;
  }

  void Follow(PtrMidiEvent e) {
    if (!Counts(e)) return;
    TBanks& own = banks[static_cast<std::size_t>(e->Channel())];
    if (e->Kind() == ProgramChange) Program(e, own);
    if (e->Kind() != Controller) return;
    for (std::size_t i = 0; i < BankControllers.size(); ++i)
      if (e->Value[0] == BankControllers[i]) own[i] = {.Event = e};
  }

  void Program(PtrMidiEvent e, TBanks& own) {
    const auto missing = std::ranges::find(own, nullptr, &TBank::Event);
    if (missing != own.end()) {
      Tell(e, missing == own.begin() ? " - Ctrl00 fehlt!" : " - Ctrl32 fehlt!");
      for (std::size_t i = 0; i < own.size(); ++i)
        if (own[i].Event != nullptr) Need(own[i], i, own[i].Event->Value[1], e);
      return;
    }
    const TAddress source = {own[0].Event->Value[1], own[1].Event->Value[1], e->Value[0]};
    const auto row = bySource.find(KeyOf(source));
    const TAddress dest = row != bySource.end() ? row->second->Dest() : source;
    Need(own[0], 0, dest.CC00, e);
    Need(own[1], 1, dest.CC32, e);
    if (row == bySource.end()) return;
    ++result.Replaced;
    Write(e, 0, dest.Patch);
    const auto channel = static_cast<std::size_t>(e->Channel());
    if (e == song.FirstPatches[channel])
      desk.push_back({channel, {own[0].InForce, own[1].InForce}, static_cast<std::int8_t>(dest.Patch)});
  }

  /// Sees to it that a bank select has a value for a program change.
  void Need(TBank& bank, std::size_t which, int value, PtrMidiEvent program) {
    if (bank.InForce == nullptr) {
      Write(bank.Event, 1, value);
      bank.InForce = bank.Event;
    } else if (bank.Value != value) {
      const auto command = static_cast<std::uint8_t>(Controller | program->Channel());
      PtrMidiEvent node = NewChannelEvent(song.Pool, command, BankControllers[which],
                                          static_cast<std::uint8_t>(value), program->Position);
      insertions.push_back({track, program, node});
      node->TimePosition = program->TimePosition;
      bank.InForce = node;
    }
    bank.Value = value;
  }

  void Write(PtrMidiEvent e, std::size_t byte, int value) {
    if (e->Value[byte] != value) writes.push_back({track, e, byte, static_cast<std::uint8_t>(value)});
  }

  /// The words of these lines are the same in both languages.
  void Tell(PtrMidiEvent e, std::string_view what) {
    const auto channel = static_cast<std::size_t>(e->Channel());
    protocol[channel].push_back(
        {track, e->Position, ": Kanal " + std::to_string(channel + 1) + std::string(what)});
  }

  Song& song;
  std::unordered_map<int, const TRevoicerRec*> bySource;
  TRevoiceResult result;
  std::int32_t track = 0;
  std::array<TBanks, ChannelCount> banks{};
  std::vector<TWrite> writes;
  std::vector<TInsertion> insertions;
  std::vector<TDesk> desk;
  std::array<std::vector<TRevoiceLine>, ChannelCount> protocol;
};

// --- The store

constexpr std::string_view CountKey = "AutoRevoicerElm";

/// The key of a row by its index.
std::string RowKey(std::size_t index) {
  const std::string number = std::to_string(index + 1);
  return (number.size() < 2 ? "AutoRev0" : "AutoRev") + number;
}

/// Tells the rows that a store lacks, in few words: a broken count may stand for thousands.
std::string MissingRows(const std::vector<std::size_t>& missing) {
  constexpr std::size_t named = 10;
  std::string text;
  for (std::size_t i = 0; i < std::min(missing.size(), named); ++i)
    text += (i > 0 ? ", " : "") + RowKey(missing[i]);
  if (missing.size() > named) text += ", ... (" + std::to_string(missing.size()) + ")";
  return text + Text(": fehlt", ": missing");
}

}  // namespace

TRevoiceResult Revoice(Song& song, const IRoutes& routes, std::span<const TRevoicerRec> rows) {
  Revoicing revoicing(song, routes, rows);
  revoicing.Plan();
  return revoicing.Apply();
}

std::string AddressText(const TAddress& a) {
  return std::to_string(a.CC00) + '/' + std::to_string(a.CC32) + '/' + std::to_string(a.Patch);
}

std::string RevoicerRow(const TRevoicerRec& rec) {
  return Clean(rec.SourceVoiceName) + TabbedAddress(rec.Source()) + '\t' + Clean(rec.DestVoiceName) +
         TabbedAddress(rec.Dest());
}

TRevoicerRules ReadRevoicerRules(std::string_view text) {
  constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
  if (text.starts_with(byteOrderMark)) text.remove_prefix(byteOrderMark.size());
  TRevoicerRules rules;
  RowCollector collector(rules);
  for (int number = 1; !text.empty(); ++number) {
    const std::size_t end = text.find('\n');
    const std::string_view line = text.substr(0, end);
    text = end == std::string_view::npos ? std::string_view{} : text.substr(end + 1);
    if (line.starts_with('#') || line.find_first_not_of(" \t\r") == std::string_view::npos) continue;
    collector.Add(line, Text("Zeile ", "line ") + std::to_string(number));
  }
  return rules;
}

std::string RevoicerRulesText(std::span<const TRevoicerRec> rows) {
  std::string text = Text("# Quelle\tCC0\tCC32\tProgramm\tZiel\tCC0\tCC32\tProgramm\n",
                          "# source\tCC0\tCC32\tprogram\tdestination\tCC0\tCC32\tprogram\n");
  for (const TRevoicerRec& row : rows) {
    const std::string line = RevoicerRow(row);
    // A blank keeps a name that starts with "#" from being a comment.
    if (line.starts_with('#')) text += ' ';
    text += line + '\n';
  }
  return text;
}

void TAutoRevoicer::LoadRevoiceData(const ISettings& settings, std::string_view name,
                                    IMessages& messages) {
  instrument = name;
  const int claimed = settings.ReadInteger(instrument, CountKey, 0);
  stored = std::clamp(claimed, 0, MaxRows);
  TRevoicerRules rules;
  RowCollector collector(rules);
  std::vector<std::size_t> missing;
  for (std::size_t i = 0; i < static_cast<std::size_t>(stored); ++i) {
    const std::string row = settings.ReadString(instrument, RowKey(i), {});
    if (row.empty())
      missing.push_back(i);
    else
      collector.Add(row, RowKey(i));
  }
  if (!missing.empty()) rules.Faults.push_back(MissingRows(missing));
  if (claimed != stored) rules.Faults.push_back(std::string(CountKey) + ": " + std::to_string(claimed));
  RevoicerArray = std::move(rules.Rows);
  storeIsSound = rules.Faults.empty();
  if (storeIsSound) return;
  std::string text = "Auto Revoicer - " + instrument + ": " +
                     Text("fehlerhafte Zeilen werden übergangen", "faulty rows are left out");
  for (const std::string& fault : rules.Faults) text += "\r" + fault;
  messages.Show(text);
}

bool TAutoRevoicer::SaveToRevoicer(ISettings& settings, const TAddress& source,
                                   std::string_view sourceName, const TAddress& dest,
                                   std::string_view destName) {
  if (instrument.empty() || !IsAddress(source) || !IsAddress(dest)) return false;
  auto row = std::ranges::find(RevoicerArray, source, &TRevoicerRec::Source);
  if (row == RevoicerArray.end()) {
    if (RevoicerArrayElm() >= MaxRows) return false;
    row = RevoicerArray.emplace(row);
    row->SourceVoiceCC00 = source.CC00;
    row->SourceVoiceCC32 = source.CC32;
    row->SourceVoicePatch = source.Patch;
    row->SourceVoiceName = sourceName;
  }
  row->DestVoiceCC00 = dest.CC00;
  row->DestVoiceCC32 = dest.CC32;
  row->DestVoicePatch = dest.Patch;
  row->DestVoiceName = destName;
  if (storeIsSound) {
    StoreRow(settings, static_cast<std::size_t>(row - RevoicerArray.begin()));
    settings.WriteInteger(instrument, CountKey, RevoicerArrayElm());
    stored = RevoicerArrayElm();
  } else {
    StoreAll(settings);
  }
  return true;
}

void TAutoRevoicer::Delete(ISettings& settings, int index) {
  if (index < 0 || index >= RevoicerArrayElm()) return;
  RevoicerArray.erase(RevoicerArray.begin() + index);
  StoreAll(settings);
  settings.WriteInteger("Auto Revoicer", "RevoicerArrayElm", RevoicerArrayElm());
}

void TAutoRevoicer::StoreRow(ISettings& settings, std::size_t index) const {
  settings.WriteString(instrument, RowKey(index), RevoicerRow(RevoicerArray[index]));
}

void TAutoRevoicer::StoreAll(ISettings& settings) {
  for (std::size_t i = 0; i < RevoicerArray.size(); ++i) StoreRow(settings, i);
  settings.WriteInteger(instrument, CountKey, RevoicerArrayElm());
  for (int i = RevoicerArrayElm(); i < stored; ++i)
    settings.DeleteValue(instrument, RowKey(static_cast<std::size_t>(i)));
  stored = RevoicerArrayElm();
  storeIsSound = true;
}

}  // namespace Sonarello
