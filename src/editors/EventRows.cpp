#include "editors/EventRows.h"

#include <algorithm>

#include "core/TextEncoding.h"
#include "core/TextOrder.h"
#include "core/Texts.h"

namespace Sonarello {

namespace {

constexpr int TextTrack = 1;    ///< entry of a format 0 list that takes metas
constexpr int SysexEntry = 10;  ///< entry of a format 0 list that takes sysexes
constexpr int MetaInsertIndex = 7;

constexpr TEventKind AllKinds[] = {TEventKind::Note,
                                   TEventKind::ProgramChange,
                                   TEventKind::Controller,
                                   TEventKind::KeyAftertouch,
                                   TEventKind::ChannelAftertouch,
                                   TEventKind::PitchBend,
                                   TEventKind::Sysex,
                                   TEventKind::Meta};

std::string ChannelWord() { return Text("K: ", "Ch: "); }

bool IsFormat0(const Song& song) { return song.MidiFileFormat == 0; }

}  // namespace

// --- Track list

std::string TEventRows::ChannelLine(int channel) const {
  const TMidiChannelData& data = song.MidiData[static_cast<std::size_t>(channel)];
  std::string line = ChannelWord() + std::to_string(data.MidiChannel + 1);
  if (!data.Active) return line + Text(", notenlos", ", noteless");
  return line + ", " + (Hooks.PatchName ? Hooks.PatchName(channel) : std::string());
}

std::string TEventRows::TrackLine(int number) const {
  const TMyTrack& track = song.MidiTrack[static_cast<std::size_t>(number)];
  if (!track.TrkName.empty()) return DecodedText(track.TrkName);
  if (track.TrkMidiIndex >= 0 && track.TrkMidiIndex < ChannelCount)
    return ChannelLine(track.TrkMidiIndex);
  // A file of format 0 that was split has a track for each channel, used or not.
  const bool split = song.MidiFileOrgFormat == 0 && number <= ChannelCount;
  if (split && track.TrkMidiIndex < 0) return ChannelLine(number - 1);
  return Text("Spur ", "Track ") + std::to_string(number);
}

void TEventRows::ReadTrackLines() {
  trackLines = {"Master"};
  if (IsFormat0(song)) {
    for (int channel = 0; channel < ChannelCount; ++channel) trackLines.push_back(ChannelLine(channel));
  } else {
    for (int t = 1; t < song.NumberOfSourceTracks; ++t) trackLines.push_back(TrackLine(t));
  }
  PrevNumberOfSourceTracks = song.NumberOfSourceTracks;
  if (trackIndex >= static_cast<int>(trackLines.size())) trackIndex = -1;
}

bool TEventRows::IsValid(int index) const noexcept {
  if (index < 0 || !song.MidiFileLoaded) return false;
  return IsFormat0(song) ? index <= ChannelCount : index < song.NumberOfSourceTracks;
}

void TEventRows::CB_TrackListChange(int index) {
  const bool wasMaster = trackIndex == 0;
  trackIndex = index;
  if (index == 0) {
    if (!wasMaster) PrevFilterIndex = filterIndex;
    filterIndex = 0;
  } else {
    filterIndex = PrevFilterIndex;
  }
  FillInsertKinds();
  if (!IsValid(index)) return;
  ShowEventsOnTrack(index);
  EventListPosition = 1;
  SyncDisplayToMidiPosition();
}

void TEventRows::ShowSysexs() {
  trackIndex = -1;
  FillInsertKinds();
  ShowEventsOnTrack(SysexListIndex);
  EventListPosition = 1;
  SyncDisplayToMidiPosition();
}

bool TEventRows::HasSysexs() const {
  const TMyTrack* const list = song.MidiFileLoaded ? ListOf(SysexListIndex) : nullptr;
  if (list == nullptr) return false;
  for (const TypMidiEvent* e = list->TrkFirstEvent->NextEvent; e != nullptr; e = e->NextEvent)
    if (e->Command == Sysex || e->Command == SysexEscape) return true;
  return false;
}

void TEventRows::UpdateDisplayedEvents() {
  if (!song.MidiFileLoaded) return;
  const std::int32_t position = EventListPosition;
  ReadTrackLines();
  if (trackIndex < 0 && ShowingTrack < SysexListIndex) {
    CB_TrackListChange(0);
  } else {
    FillInsertKinds();
    // The sysex list holds pointers as well: where the song itself has changed they must go.
    ShowEventsOnTrack(ShowingTrack >= SysexListIndex ? SysexListIndex : trackIndex);
  }
  EventListPosition = std::clamp(position, 1, Rows());
}

void TEventRows::Clear() {
  Index.Clear();
  trackLines.clear();
  explained.clear();
  trackIndex = ShowingTrack = -1;
  EventListPosition = 1;
  Showing = false;
  ForgetTexts();
  FillInsertKinds();
}

void TEventRows::CB_FilterChange(int index) {
  filterIndex = std::clamp(index, 0, EventKindCount);
  if (trackIndex != 0) PrevFilterIndex = filterIndex;
  if (ShowingTrack < 0) return;
  ShowEventsOnTrack(ShowingTrack);
  EventListPosition = 1;
  SyncDisplayToMidiPosition();
}

// --- Insert list

void TEventRows::FillInsertKinds() {
  const TEventKind chosen =
      insertKinds.empty() ? TEventKind::Note : insertKinds[static_cast<std::size_t>(insertIndex)];
  insertKinds.assign(std::begin(AllKinds), std::end(AllKinds));
  insertEnabled = trackIndex > 0;
  if (trackIndex == 0) {
    if (chosen != TEventKind::Meta) PrevInsertIndex = static_cast<std::int32_t>(chosen);
    insertIndex = MetaInsertIndex;
    return;
  }
  if (IsFormat0(song)) {
    if (trackIndex != TextTrack) std::erase(insertKinds, TEventKind::Meta);
    if (trackIndex != SysexEntry) std::erase(insertKinds, TEventKind::Sysex);
  }
  // What was chosen before Master, where there was no choice, comes back.
  const bool fromMaster = chosen == TEventKind::Meta && PrevInsertIndex != MetaInsertIndex;
  const TEventKind wanted = fromMaster ? static_cast<TEventKind>(PrevInsertIndex) : chosen;
  const auto found = std::ranges::find(insertKinds, wanted);
  insertIndex = found == insertKinds.end() ? 0 : static_cast<int>(found - insertKinds.begin());
}

std::vector<std::string> TEventRows::InsertLines() const {
  std::vector<std::string> lines;
  for (const TEventKind kind : insertKinds) lines.push_back(KindName(kind));
  return lines;
}

void TEventRows::CB_InsertChange(int index) {
  if (!insertEnabled || index < 0 || index >= static_cast<int>(insertKinds.size())) return;
  insertIndex = index;
  PrevInsertIndex = static_cast<std::int32_t>(insertKinds[static_cast<std::size_t>(index)]);
}

// --- Labels

std::string TEventRows::ChannelLabel() const {
  if (ShowingTrack >= SysexListIndex) return "Sysexs";
  if (trackIndex <= 0) return ChannelWord() + "-";
  if (IsFormat0(song)) return ChannelWord() + std::to_string(trackIndex);
  const int channel = song.MidiTrack[static_cast<std::size_t>(trackIndex)].TrkMidiIndex;
  if (channel >= 0 && channel < ChannelCount) return ChannelWord() + std::to_string(channel + 1);
  return ChannelWord() + Text("Alle", "All");
}

std::string TEventRows::CounterLabel() const { return std::to_string(Events()); }

// --- Rows

TMyTrack* TEventRows::ListOf(int track) const noexcept {
  if (track >= SysexListIndex) {
    const auto table = routes.MidiRouting();
    constexpr std::uint8_t withEffects[] = {62, 74, 87, 97};
    const int value = table.empty() ? 0 : table[0].InstrumValue;
    if (options.YamahaDSPsEnabled && std::ranges::find(withEffects, value) != std::end(withEffects)) {
      TMyTrack* effects = song.DSPTrackOf(value);
      if (effects != nullptr && effects->TrkFirstEvent != nullptr) return effects;
    }
  }
  const int number = track >= SysexListIndex || IsFormat0(song) ? 0 : track;
  if (number < 0 || number >= song.NumberOfSourceTracks) return nullptr;
  TMyTrack& list = song.MidiTrack[static_cast<std::size_t>(number)];
  return list.TrkFirstEvent == nullptr ? nullptr : &list;
}

void TEventRows::ShowEventsOnTrack(int track) {
  Showing = false;
  explained.clear();
  ForgetTexts();
  TMyTrack* list = song.MidiFileLoaded ? ListOf(track) : nullptr;
  if (list == nullptr) {
    Index.Clear();
    ShowingTrack = -1;
  } else {
    Index.Build(*list, {.Track = track, .Format = song.MidiFileFormat, .Filter = filterIndex});
    ShowingTrack = track;
  }
  EventListPosition = std::clamp(EventListPosition, 1, Rows());
  if (Hooks.ShowPlayed) Hooks.ShowPlayed(ShownTrack());
  Showing = list != nullptr;
}

int TEventRows::ShownTrack() const noexcept {
  if (Index.List() == nullptr) return -1;
  for (std::int32_t t = 0; t < song.NumberOfSourceTracks; ++t)
    if (&song.MidiTrack[static_cast<std::size_t>(t)] == Index.List()) return t;
  return -1;
}

PtrMidiEvent TEventRows::Event(std::int32_t row) const noexcept {
  return Index.IsCurrent() ? Index.Event(row) : nullptr;
}

const TEventData& TEventRows::Row(std::int32_t row) const {
  TKeptRow& place = kept[static_cast<std::size_t>(row) % kept.size()];
  if (place.Row != row || place.Generation != generation) place = {row, generation, Make(row)};
  return place.Data;
}

TEventData TEventRows::Make(std::int32_t row) const {
  const PtrMidiEvent event = Event(row);
  if (event == nullptr) return row == 1 && Events() == 0 ? EmptyRow() : TEventData{};
  TEventData data = Texts.Row(*event, ShowingTrack, Index.Length(row), Index.Bank(row));
  for (const auto& [known, text] : explained)
    if (known == event) data.Fields[LengthColumn] = text;
  return data;
}

TEventData TEventRows::EmptyRow() const {
  TEventData data;
  data.Fields.fill("-");
  data.Fields[LengthColumn] = EmptyListText(filterIndex);
  return data;
}

void TEventRows::Explain(PtrMidiEvent event, std::string text) {
  std::erase_if(explained, [&](const auto& entry) { return entry.first == event; });
  if (!text.empty()) explained.emplace_back(event, std::move(text));
  ForgetTexts();
}

std::string TEventRows::TextOfRows(const std::vector<std::int32_t>& rows) const {
  std::string text;
  for (const std::int32_t row : rows) {
    const TEventData data = Make(row);
    for (std::size_t column = 0; column < data.Fields.size(); ++column)
      text += (column == 0 ? "" : "\t") + data.Fields[column];
    text += '\n';
  }
  return text;
}

// --- Position

bool TEventRows::SyncDisplayToMidiPosition() {
  const std::int32_t row = Index.RowAtTime(Hooks.TimePosition ? Hooks.TimePosition() : 0);
  const std::int32_t wanted = std::max(row, 1);
  if (wanted == EventListPosition) return false;
  EventListPosition = wanted;
  return true;
}

std::int32_t TEventRows::DisplayEventListPosition(std::int32_t visible) const noexcept {
  const std::int32_t last = std::max(Rows() - visible + 1, 1);
  return std::clamp(EventListPosition - visible / 2, 1, last);
}

// --- Search

std::optional<std::int32_t> TEventRows::Find(std::string_view text, std::int32_t from, bool backwards,
                                             const std::function<bool(double)>& goOn) const {
  constexpr std::int32_t step = 4096;
  const std::int32_t count = Events();
  const std::string wanted = SmallLetters(text);
  if (wanted.empty() || count == 0 || !Index.IsCurrent()) return std::nullopt;
  std::int32_t row = std::clamp(from, backwards ? 1 : 0, backwards ? count + 1 : count);
  for (std::int32_t done = 0; done < count; ++done) {
    row += backwards ? -1 : 1;
    if (row < 1) row = count;
    if (row > count) row = 1;
    if (goOn && done % step == step - 1 && !goOn(static_cast<double>(done) / count))
      return std::nullopt;
    const TEventData data = Make(row);
    for (const std::string& field : data.Fields)
      if (SmallLetters(field).find(wanted) != std::string::npos) return row;
  }
  return std::nullopt;
}

}  // namespace Sonarello
