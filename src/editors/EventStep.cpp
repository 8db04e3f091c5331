#include "editors/EventStep.h"

#include <algorithm>
#include <functional>

#include "core/TimeMap.h"
#include "playback/Transpose.h"

namespace Sonarello {

namespace {

/// More events at once than rows are moved one by one for.
constexpr std::ptrdiff_t ManyEvents = 64;

bool IsNote(const TypMidiEvent& event) noexcept { return (event.Command & 0xE0) == NoteOff; }

bool IsBankOrProgram(const TypMidiEvent& event) noexcept {
  const bool bank = event.Kind() == Controller && (event.Value[0] == 0 || event.Value[0] == 32);
  return bank || event.Kind() == ProgramChange;
}

bool IsTimeMeta(const TypMidiEvent& event) noexcept {
  return event.IsMeta(MetaTempo) || event.IsMeta(MetaTimeSignature);
}

}  // namespace

TEventEdits::TStep::TStep(TEventEdits& e, std::string name) : TStep(e, e.rows.Index) {
  const auto held = e.gate.Enter();
  e.undo.Begin(std::move(name), track, e.rows.ShownTrack());
}

TEventEdits::TStep::TStep(TEventEdits& e, TEventIndex& known)
    : edits(e), song(e.song), index(known), track(*known.List()), playing(e.IsPlaying()) {}

/// What follows from an event's being here, or from its having been here.
void TEventEdits::TStep::Note(const TypMidiEvent& event) {
  if (event.DLength == 0) return;
  if (IsNote(event)) {
    keys.emplace_back(event.Channel(), event.Value[0]);
    from = std::min(from, event.Position);
    to = std::max(to, event.Position);
    noteChannels.set(static_cast<std::size_t>(event.Channel()));
  }
  if (IsBankOrProgram(event)) {
    // The neighbour in front stays when the event goes.
    if (!valueOnly || event.Kind() == Controller) banks.push_back(event.PrevEvent);
    soundChannels.set(static_cast<std::size_t>(event.Channel()));
  }
  if (IsFirstValue(event)) firstValues = true;
  if (IsTimeMeta(event)) times = true;
  if (event.IsMeta(MetaKeySignature)) keySignatures = true;
  if (event.Command == Sysex || event.Command == SysexEscape) sysexs = true;
  if (event.IsMeta(MetaTrackName)) trackName = true;
  if (event.IsMeta(MetaLyric) || event.IsMeta(MetaText) || HoldsXFChord(event)) lyrics = true;
}

/// True for a controller or program that is, was or becomes its channel's first one.
bool TEventEdits::TStep::IsFirstValue(const TypMidiEvent& event) const {
  const auto c = static_cast<std::size_t>(event.Channel());
  PtrMidiEvent first = nullptr;
  if (event.Kind() == Controller)
    first = song.FirstControllers[c][event.Value[0]];
  else if (event.Kind() == ProgramChange)
    first = song.FirstPatches[c];
  else
    return false;
  const bool remote = &event == song.PromptaRemoteCtrl00 || &event == song.PromptaRemoteCtrl32 ||
                      &event == song.PromptaRemotePatch;
  if (first == nullptr || first == &event || remote || event.Position <= first->Position) return true;
  // Tracks count in their order, so that a later event of an earlier track can come first.
  const int own = TrackOfChannel(song, event.Channel());
  return own < 0 || &song.MidiTrack[static_cast<std::size_t>(own)] != &track;
}

void TEventEdits::TStep::Touch(PtrMidiEvent event) {
  const auto held = edits.gate.Enter();
  Note(*event);
  CountChord(*event, -1);
  CountNote(*event, -1);
  if (event->IsMeta(MetaKeySignature)) signatures.push_back(event);
  if (playing && !valueOnly && IsNote(*event) && edits.Hooks.EndNotes)
    edits.Hooks.EndNotes(event->Channel());
  edits.undo.WillChange(event);
  if (!valueOnly) index.Leave(*event);
}

void TEventEdits::TStep::Settle(PtrMidiEvent event) {
  const auto held = edits.gate.Enter();
  SettleHeld(event);
}

void TEventEdits::TStep::SettleHeld(PtrMidiEvent event) {
  CountChord(*event, 1);
  CountNote(*event, 1);
  if (event->IsMeta(MetaKeySignature)) signatures.push_back(event);
  if (!valueOnly) index.Enter(event);
  Note(*event);
}

void TEventEdits::TStep::Move(PtrMidiEvent event, std::int32_t position) {
  const auto held = edits.gate.Enter();
  // What was due next is due next, wherever the event goes.
  if (track.TrkPlayEvent == event) track.TrkPlayEvent = event->NextEvent;
  if (track.TrkLoopStart == event) track.TrkLoopStart = event->PrevEvent;
  Unlink(track, event);
  event->Position = std::clamp(position, 0, song.MaxSongPosition);
  InsertByPosition(track, event, index.NodeBefore(event->Position));
  event->TimePosition = TimeOfPosition(song, event->Position);
}

void TEventEdits::TStep::SetValue(PtrMidiEvent event, std::size_t index, int value) {
  const int moved = event->ValueOrg[index] + value - event->Value[index];
  event->ValueOrg[index] = static_cast<std::uint8_t>(std::clamp(moved, 0, 127));
  event->Value[index] = static_cast<std::uint8_t>(value);
}

void TEventEdits::TStep::SetMeta(PtrMidiEvent event, std::span<const std::uint8_t> bytes) {
  event->Meta = Sonarello::Meta(bytes);
  event->DLength = static_cast<std::int32_t>(bytes.size());
}

void TEventEdits::TStep::Insert(PtrMidiEvent event) {
  const auto held = edits.gate.Enter();
  const std::int32_t time = event->TimePosition;
  InsertByPosition(track, event, index.NodeBefore(std::max(event->Position, 0)));
  event->TimePosition = time > 0 ? time : TimeOfPosition(song, event->Position);
  edits.undo.Inserted(event);
  SettleHeld(event);
}

void TEventEdits::TStep::Remove(const std::vector<PtrMidiEvent>& events) {
  bulk = bulk || std::ssize(events) > ManyEvents;
  const auto held = edits.gate.Enter();
  std::vector<PtrMidiEvent> gone = events;
  std::ranges::sort(gone, std::less<>());
  gone.erase(std::unique(gone.begin(), gone.end()), gone.end());
  const auto goes = [&](const TypMidiEvent* e) {
    return std::ranges::binary_search(gone, const_cast<PtrMidiEvent>(e), std::less<>());
  };
  for (PtrMidiEvent event : gone) {
    Note(*event);
    CountChord(*event, -1);
    CountNote(*event, -1);
    if (edits.Hooks.ForgetEvent) edits.Hooks.ForgetEvent(event);
    if (!bulk) index.Leave(*event);
  }
  for (const TypMidiEvent*& place : banks)
    while (goes(place)) place = place->PrevEvent;
  std::erase_if(signatures, goes);
  edits.undo.Remove(gone);
  edits.rows.ForgetExplanations();
  index.Adopt();
}

void TEventEdits::TStep::CountNote(const TypMidiEvent& event, int by) {
  if (isUndo || event.DLength == 0 || !event.IsChannelEvent()) return;
  TMidiChannelData& data = song.MidiData[static_cast<std::size_t>(event.Channel())];
  if (by > 0) data.Active = true;
  if (event.Kind() != NoteOn) return;
  data.ActiveNotes = std::max(data.ActiveNotes + by, 0);
  track.TrkNoteOnCnt = std::max(track.TrkNoteOnCnt + by, 0);
}

void TEventEdits::TStep::CountChord(const TypMidiEvent& event, int by) {
  if (isUndo || !HoldsXFChord(event)) return;
  song.XF_ChordsArrayElements = std::max(song.XF_ChordsArrayElements + by, 0);
  song.XF_Format = song.XF_ChordsArrayElements > 0;
  if (by > 0) song.XF_Track = std::max(edits.rows.ShownTrack(), 0);
}

void TEventEdits::TStep::ReadTrackChannel() {
  int channel = -1;
  for (PtrMidiEvent e = track.TrkFirstEvent; e != nullptr && channel < ChannelCount; e = Following(e)) {
    if (!e->IsChannelEvent() || e->DLength == 0) continue;
    if (channel < 0) channel = e->Channel();
    if (e->Channel() != channel) channel = ChannelCount;
  }
  track.TrkMidiIndex = static_cast<std::int8_t>(channel);
}

void TEventEdits::TStep::ReadKeySignature(PtrMidiEvent event) {
  const int number = edits.rows.ShownTrack();
  if (number < 0 || static_cast<std::size_t>(number) >= song.KeySignArray.size()) return;
  TKeySignArray& keysOfTrack = song.KeySignArray[static_cast<std::size_t>(number)];
  std::vector<TKeySigns>& all = keysOfTrack.ValArray;
  std::erase_if(all, [&](const TKeySigns& key) { return key.MidiEvent == event; });
  if (event->IsMeta(MetaKeySignature) && event->Meta.size() >= 2) {
    const auto shown = static_cast<std::int8_t>(event->Meta[0]);
    const auto place = std::ranges::upper_bound(
        all, event->Position, {}, [](const TKeySigns& key) { return key.MidiEvent->Position; });
    all.insert(place, {event, TransposeKeySignature(shown, -song.TransposeNew), event->Meta[1]});
  }
  keysOfTrack.Elements = static_cast<std::int32_t>(all.size());
}

void TEventEdits::TStep::ReadTrackName() {
  track.TrkName.clear();
  for (PtrMidiEvent e = track.TrkFirstEvent; e != nullptr && track.TrkName.empty(); e = Following(e))
    if (e->IsMeta(MetaTrackName) && e->DLength > 0) track.TrkName = e->Meta.Text();
}

void TEventEdits::TStep::ReadIgnore() {
  bool ignore = false;
  for (PtrMidiEvent e = track.TrkFirstEvent; e != nullptr && !ignore; e = Following(e))
    ignore = e->Command == MetaEvent && e->DLength > 0 && e->Meta.Text().starts_with("srl_ignore");
  const auto held = edits.gate.Enter();
  track.TrkIgnore = ignore && song.MidiFileFormat != 0;
}

void TEventEdits::TStep::ForgetReferences(PtrMidiEvent event) {
  const auto held = edits.gate.Enter();
  edits.undo.ForgetReferences({event});
}

void TEventEdits::TStep::Cancel() {
  const auto held = edits.gate.Enter();
  edits.undo.Undo([&](PtrMidiEvent e) { index.Leave(*e); }, [&](PtrMidiEvent e) { index.Enter(e); });
  index.Adopt();
  if (edits.Hooks.UndoChanged) edits.Hooks.UndoChanged();
}

std::vector<PtrMidiEvent> TEventEdits::TStep::Undo(TEventEdits& edits, TEventIndex& known) {
  TStep step(edits, known);
  step.isUndo = true;
  step.bulk = edits.undo.Size() > static_cast<std::size_t>(ManyEvents);
  std::vector<PtrMidiEvent> back;
  {
    const auto held = edits.gate.Enter();
    const auto leave = [&](PtrMidiEvent e) {
      step.Note(*e);
      std::ranges::replace(step.banks, static_cast<const TypMidiEvent*>(e),
                           static_cast<const TypMidiEvent*>(e->PrevEvent));
      if (!step.bulk) known.Leave(*e);
      if (!back.empty()) std::erase(back, e);
      if (edits.Hooks.ForgetEvent) edits.Hooks.ForgetEvent(e);
    };
    const auto enter = [&](PtrMidiEvent e) {
      if (!step.bulk) known.Enter(e);
      step.Note(*e);
      back.push_back(e);
    };
    edits.undo.Undo(leave, enter);
    edits.rows.ForgetExplanations();
    known.Adopt();
  }
  step.Finish();
  return back;
}

void TEventEdits::TStep::Finish() {
  if (bulk)
    index.Build(track, TEventFilter(index.Filter()), true);
  else
    PairNotes();
  {
    const auto held = edits.gate.Enter();
    if (!isUndo)
      for (PtrMidiEvent event : signatures) ReadKeySignature(event);
    if (trackName && !isUndo) ReadTrackName();
    if (times) ChangeTimes();
    if (firstValues) edits.functions.SetFirstValues();
  }
  if (!bulk && !banks.empty()) ReadBanks();
  index.Adopt();
  edits.rows.ForgetTexts();
  edits.rows.ReadTrackLines();
  Tell();
}

void TEventEdits::TStep::ChangeTimes() {
  const auto change = [this] { edits.functions.UpdateTimeZoneData(); };
  if (edits.Hooks.ChangeTimes) return edits.Hooks.ChangeTimes(change);
  change();
}

void TEventEdits::TStep::PairNotes() {
  std::ranges::sort(keys);
  keys.erase(std::unique(keys.begin(), keys.end()), keys.end());
  for (std::size_t n = 0; n < keys.size(); ++n) {
    const auto [channel, key] = keys[n];
    const bool pair = n + 1 < keys.size() && keys[n + 1].first == channel;
    index.PairKeys(channel, key, pair ? keys[n + 1].second : key, from, to);
    if (pair) ++n;
  }
}

void TEventEdits::TStep::ReadBanks() {
  // Of several places at one tick the order is not known: the walk begins in front of that tick and
  // ends behind the last one.
  const auto [first, last] = std::ranges::minmax(banks, {}, &TypMidiEvent::Position);
  const TypMidiEvent* begin = first;
  while (begin->PrevEvent != nullptr && begin->PrevEvent->Position == first->Position)
    begin = begin->PrevEvent;
  const TypMidiEvent* until = last;
  while (until->NextEvent != nullptr && until->NextEvent->Position == last->Position)
    until = until->NextEvent;
  index.ReadBanks(*begin, *until);
}

void TEventEdits::TStep::Tell() {
  const TEventEditHooks& hooks = edits.Hooks;
  if (times && hooks.TimesChanged) hooks.TimesChanged();
  if (keySignatures && hooks.KeySignaturesChanged) hooks.KeySignaturesChanged();
  if (sysexs && hooks.SysexsChanged) hooks.SysexsChanged();
  if (firstValues && !playing && hooks.ReadFirstValues) hooks.ReadFirstValues();
  if (lyrics && hooks.ReadAndShowLyrics) hooks.ReadAndShowLyrics();
  for (int c = 0; c < ChannelCount; ++c) {
    const auto channel = static_cast<std::size_t>(c);
    if (soundChannels[channel] && hooks.DisplayPatchName) hooks.DisplayPatchName(c);
    if (noteChannels[channel] && hooks.NotesChanged) hooks.NotesChanged(c);
  }
  if (hooks.Changed) hooks.Changed();
  if (hooks.UndoChanged) hooks.UndoChanged();
}

}  // namespace Sonarello
