#include "editors/EventIndex.h"

#include <algorithm>
#include <array>
#include <limits>

#include "editors/EventPairing.h"
#include "editors/EventTexts.h"

namespace Sonarello {

namespace {

constexpr int BankMSB = 0;
constexpr int BankLSB = 32;
/// The one entry of a format 0 song's list that shows its sysexes: that of channel 10. This is
/// deliberate.
constexpr int SysexEntry = 10;

std::int32_t DetailOf(TBankMemory bank) noexcept { return bank.MSB << 8 | bank.LSB; }

bool IsBank(const TypMidiEvent& event) noexcept {
  return event.Kind() == Controller && event.DLength != 0 &&
         (event.Value[0] == BankMSB || event.Value[0] == BankLSB);
}

bool IsProgram(const TypMidiEvent& event) noexcept {
  return event.Kind() == ProgramChange && event.DLength != 0;
}

/// Takes a bank select, or forgets the banks behind a program change.
void Remember(TBankMemory& bank, const TypMidiEvent& event) noexcept {
  if (IsProgram(event)) {
    bank = {};
  } else if (IsBank(event)) {
    (event.Value[0] == BankMSB ? bank.MSB : bank.LSB) = event.Value[1];
  }
}

bool IsOfKind(const TypMidiEvent& event, int filter) noexcept {
  return filter == 0 || static_cast<int>(KindOf(event)) == filter - 1;
}

}  // namespace

// --- Rules

bool TEventFilter::IsOfList(const TypMidiEvent& event) const noexcept {
  if (Format != 0) return true;
  if (event.IsChannelEvent()) return event.Channel() + 1 == Track;
  if (event.Command != MetaEvent) return Track == SysexEntry || Track >= SysexListIndex;
  const int type = event.MType;
  const bool isMaster = type == 0x4B || type == MetaTempo || type == MetaSmpteOffset ||
                        type == MetaTimeSignature || type == MetaKeySignature;
  if (isMaster) return Track == 0;
  const bool isText = (type >= MetaText && type <= 0x09) || type == MetaSequencerSpecific;
  return isText && Track == 1;
}

bool TEventFilter::MakesRow(const TypMidiEvent& event) const noexcept {
  if (event.IsEndOfTrack() || !IsOfList(event)) return false;
  if (event.Kind() == NoteOff) return false;
  if (Track < SysexListIndex && event.DLength == 0) return false;
  return IsOfKind(event, Filter);
}

// --- Building

void TEventIndex::Clear() noexcept {
  track = nullptr;
  events = {};
  details = {};
  nodes = 0;
  ends = {};
  unsettled = 0;
}

void TEventIndex::Build(TMyTrack& list, const TEventFilter& rules, bool pair) {
  track = &list;
  filter = rules;
  nodes = list.TrkEventCounter;
  ends = {list.TrkFirstEvent, list.TrkLastEvent};
  unsettled = 0;
  loose.reset();
  longest = 0;
  firstProgram = std::numeric_limits<std::int32_t>::max();
  lastProgram = -1;
  std::size_t count = 0;
  InPieces(gate, list.TrkFirstEvent->NextEvent, [&](PtrMidiEvent e) {
    count += filter.MakesRow(*e) ? 1 : 0;
    return true;
  });
  events = {};
  details = {};
  events.reserve(count);
  details.reserve(count);
  ReadRows(pair);
}

void TEventIndex::ReadRows(bool pair) {
  TPairing pairing;
  TBankMemory bank;
  track->TrkFirstEvent->ListPos = 1;
  InPieces(gate, track->TrkFirstEvent->NextEvent, [&](PtrMidiEvent e) {
    e->ListPos = std::max(Rows(), 1);
    if (!filter.IsOfList(*e)) return true;
    if (e->Kind() == NoteOff) {
      if (e->DLength != 0) CloseNote(pairing, e, pair);
      return true;
    }
    std::int32_t row = 0;
    if (filter.MakesRow(*e)) {
      events.push_back(e);
      details.push_back(IsProgram(*e) ? DetailOf(bank) : -1);
      row = e->ListPos = Rows();
    }
    if (e->Kind() == NoteOn && e->DLength != 0) {
      if (pair) e->NoteOffEvent = nullptr;
      if (!pairing.Of(*e).Push({e, row})) loose.set(KeyIndex(e->Channel(), e->Value[0]));
    }
    Remember(bank, *e);
    NoteProgram(*e);
    return true;
  });
  pairing.ForEachOpen([&](const TypMidiEvent& e) { loose.set(KeyIndex(e.Channel(), e.Value[0])); });
}

void TEventIndex::NoteProgram(const TypMidiEvent& event) noexcept {
  if (!IsProgram(event)) return;
  firstProgram = std::min(firstProgram, event.Position);
  lastProgram = std::max(lastProgram, event.Position);
}

void TEventIndex::CloseNote(TPairing& pairing, PtrMidiEvent off, bool pair) {
  const TOpenNoteRow open = pairing.Of(*off).Pop();
  if (pair) return EndPair(open, off);
  if (open.Event == nullptr || open.Event->NoteOffEvent != off)
    loose.set(KeyIndex(off->Channel(), off->Value[0]));
  if (open.Event == nullptr) return;
  const std::int32_t length = off->Position - open.Event->Position;
  longest = std::max(longest, length);
  if (open.Row > 0) details[static_cast<std::size_t>(open.Row - 1)] = length;
}

bool TEventIndex::IsCurrent() const noexcept {
  return track != nullptr && track->TrkEventCounter == nodes &&
         ends == std::pair{track->TrkFirstEvent, track->TrkLastEvent};
}

// --- Looking up

PtrMidiEvent TEventIndex::Event(std::int32_t row) const noexcept {
  return row >= 1 && row <= Rows() ? events[static_cast<std::size_t>(row - 1)] : nullptr;
}

std::int32_t TEventIndex::Length(std::int32_t row) const noexcept {
  const PtrMidiEvent event = Event(row);
  return event != nullptr && event->Kind() == NoteOn ? details[static_cast<std::size_t>(row - 1)] : -1;
}

TBankMemory TEventIndex::Bank(std::int32_t row) const noexcept {
  const PtrMidiEvent event = Event(row);
  if (event == nullptr || event->Kind() != ProgramChange) return {};
  const std::int32_t detail = details[static_cast<std::size_t>(row - 1)];
  return {static_cast<std::uint8_t>(detail >> 8), static_cast<std::uint8_t>(detail)};
}

std::int32_t TEventIndex::RowOf(const TypMidiEvent* event) const noexcept {
  const auto at = std::lower_bound(
      events.begin(), events.end(), event->Position,
      [](const TypMidiEvent* e, std::int32_t position) { return e->Position < position; });
  for (auto e = at; e != events.end() && (*e)->Position == event->Position; ++e)
    if (*e == event) return static_cast<std::int32_t>(e - events.begin()) + 1;
  return 0;
}

PtrMidiEvent TEventIndex::NodeBefore(std::int32_t position) const noexcept {
  const auto at =
      std::lower_bound(events.begin(), events.end(), position,
                       [](const TypMidiEvent* e, std::int32_t tick) { return e->Position <= tick; });
  return at == events.begin() ? track->TrkFirstEvent : *(at - 1);
}

PtrMidiEvent TEventIndex::NodeBeforeNotes(int channel, int key, std::int32_t position) const noexcept {
  return loose[KeyIndex(channel, key)] ? track->TrkFirstEvent : NodeBefore(position - longest - 1);
}

std::int32_t TEventIndex::RowAtTime(std::int32_t milliseconds) const noexcept {
  if (events.empty()) return 0;
  const auto at =
      std::lower_bound(events.begin(), events.end(), milliseconds,
                       [](const TypMidiEvent* e, std::int32_t time) { return e->TimePosition < time; });
  auto row = static_cast<std::int32_t>(at - events.begin()) + 1;
  // Where a hidden event comes first, the song stands on the row in front of it. Times ascend, so the
  // event directly in front of the row tells whether there is one.
  if (row > Rows()) return Rows();
  const TypMidiEvent* before = (*at)->PrevEvent;
  const bool hidden = row == 1 || before != events[static_cast<std::size_t>(row - 2)];
  if (hidden && before->TimePosition >= milliseconds) --row;
  return std::max(row, 1);
}

/// The row that an event which stands in the list takes or would take.
std::int32_t TEventIndex::PlaceOfRow(const TypMidiEvent& event) const noexcept {
  for (const TypMidiEvent* e = event.PrevEvent; e != nullptr && e->Position == event.Position;
       e = e->PrevEvent)
    if (filter.MakesRow(*e))
      if (const std::int32_t row = RowOf(e)) return row + 1;
  const auto at = std::lower_bound(
      events.begin(), events.end(), event.Position,
      [](const TypMidiEvent* e, std::int32_t position) { return e->Position < position; });
  return static_cast<std::int32_t>(at - events.begin()) + 1;
}

// --- Edits

void TEventIndex::Grow() {
  if (events.size() < events.capacity()) return;
  // Little by little, so that a row stays cheap; doubling would waste as much again.
  const std::size_t room = events.size() + events.size() / 16 + 64;
  events.reserve(room);
  details.reserve(room);
}

std::int32_t TEventIndex::Leave(const TypMidiEvent& event) {
  const std::int32_t row = filter.MakesRow(event) ? RowOf(&event) : 0;
  if (row == 0) return 0;
  events.erase(events.begin() + (row - 1));
  details.erase(details.begin() + (row - 1));
  unsettled = unsettled == 0 ? row : std::min(unsettled, row);
  return row;
}

void TEventIndex::Adopt() noexcept {
  if (track == nullptr) return;
  nodes = track->TrkEventCounter;
  ends = {track->TrkFirstEvent, track->TrkLastEvent};
}

std::int32_t TEventIndex::Enter(PtrMidiEvent event) {
  Adopt();
  NoteProgram(*event);
  if (!filter.MakesRow(*event)) {
    // A hidden event that moved points at another row as well.
    const std::int32_t behind = std::max(PlaceOfRow(*event) - 1, 1);
    event->ListPos = behind;
    return 0;
  }
  const std::int32_t row = PlaceOfRow(*event);
  Grow();
  events.insert(events.begin() + (row - 1), event);
  details.insert(details.begin() + (row - 1), -1);
  event->ListPos = row;
  unsettled = unsettled == 0 ? row : std::min(unsettled, row);
  return row;
}

void TEventIndex::ReadBanks(const TypMidiEvent& first, const TypMidiEvent& last) {
  constexpr int programFilter = static_cast<int>(TEventKind::ProgramChange) + 1;
  if (filter.Filter != 0 && filter.Filter != programFilter) return;
  const TypMidiEvent* from = &first;
  do from = from->PrevEvent;
  while (from != nullptr && from->Position >= firstProgram &&
         !(IsProgram(*from) && filter.IsOfList(*from)));
  // In front of the first program all banks count, from the list's start: those are few.
  if (from != nullptr && from->Position < firstProgram) from = nullptr;
  TBankMemory bank;
  // Behind the last place, a program there ends what the next one has in front of it.
  bool passed = false;
  int programs = 0;
  for (PtrMidiEvent e = from == nullptr ? track->TrkFirstEvent : from->NextEvent;
       e != nullptr && programs < 2 && e->Position <= lastProgram; e = Following(e)) {
    passed = passed || e == &last;
    if (e->Kind() != Controller && e->Kind() != ProgramChange) continue;
    if (!filter.IsOfList(*e)) continue;
    if (IsProgram(*e)) {
      programs += passed ? 1 : 0;
      if (const std::int32_t row = RowOf(e))
        details[static_cast<std::size_t>(row - 1)] = DetailOf(bank);
    }
    Remember(bank, *e);
  }
}

void TEventIndex::SettleListPos() {
  if (unsettled == 0 || track == nullptr) return;
  std::int32_t row = std::min(unsettled, Rows());
  unsettled = 0;
  PtrMidiEvent from = row > 1 ? Event(row - 1) : track->TrkFirstEvent;
  if (row > 1) --row;
  if (from == track->TrkFirstEvent) row = 0;
  InPieces(gate, from, [&](PtrMidiEvent e) {
    if (row < Rows() && e == events[static_cast<std::size_t>(row)]) ++row;
    e->ListPos = std::max(row, 1);
    return true;
  });
}

}  // namespace Sonarello
