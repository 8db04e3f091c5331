#include "editors/EventIndex.h"

#include <algorithm>
#include <array>

#include "editors/EventTexts.h"

namespace Sonarello {

namespace {

constexpr int BankMSB = 0;
constexpr int BankLSB = 32;
/// Events that are read or written while the gate is held at one time: some ten microseconds.
constexpr int PieceLength = 4096;

/// The one entry of a format 0 song's list that shows its sysexes: that of channel 10. This is
/// deliberate.
constexpr int SysexEntry = 10;

/// Calls f for each event from `e` on, the gate held in pieces, while f returns true.
template <class F>
void InPieces(SongGate& gate, PtrMidiEvent e, F&& f) {
  while (e != nullptr) {
    const auto held = gate.Enter();
    for (int i = 0; i < PieceLength && e != nullptr; ++i, e = Following(e))
      if (!f(e)) return;
  }
}

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

// --- Pairs

/// Open notes by channel and key, first in, first out.
class TEventIndex::TPairing {
 public:
  static constexpr std::size_t MostOpen = 32;

  struct TQueue {
    std::array<std::int32_t, MostOpen> Rows{};
    std::size_t First = 0;
    std::size_t Count = 0;

    void Push(std::int32_t row) {
      if (Count == MostOpen) return;
      Rows[(First + Count++) % MostOpen] = row;
    }
    std::int32_t Pop() {
      if (Count == 0) return 0;
      const std::int32_t row = Rows[First];
      First = (First + 1) % MostOpen;
      --Count;
      return row;
    }
  };

  TPairing() : queues(ChannelCount * KeyCount) {}
  TQueue& Of(const TypMidiEvent& event) {
    return queues[static_cast<std::size_t>(event.Channel()) * KeyCount + event.Value[0] % KeyCount];
  }

 private:
  std::vector<TQueue> queues;
};

// --- Building

void TEventIndex::Clear() noexcept {
  track = nullptr;
  events = {};
  details = {};
  nodes = 0;
  ends = {};
  unsettled = 0;
}

void TEventIndex::Build(TMyTrack& list, const TEventFilter& rules) {
  track = &list;
  filter = rules;
  nodes = list.TrkEventCounter;
  ends = {list.TrkFirstEvent, list.TrkLastEvent};
  unsettled = 0;
  std::size_t count = 0;
  InPieces(gate, list.TrkFirstEvent->NextEvent, [&](PtrMidiEvent e) {
    count += filter.MakesRow(*e) ? 1 : 0;
    return true;
  });
  events = {};
  details = {};
  events.reserve(count);
  details.reserve(count);
  ReadRows();
}

void TEventIndex::ReadRows() {
  TPairing pairing;
  TBankMemory bank;
  track->TrkFirstEvent->ListPos = 1;
  InPieces(gate, track->TrkFirstEvent->NextEvent, [&](PtrMidiEvent e) {
    e->ListPos = std::max(Rows(), 1);
    if (!filter.IsOfList(*e)) return true;
    if (e->Kind() == NoteOff) {
      const std::int32_t row = e->DLength == 0 ? 0 : pairing.Of(*e).Pop();
      if (row > 0) {
        const auto index = static_cast<std::size_t>(row - 1);
        details[index] = e->Position - events[index]->Position;
      }
      return true;
    }
    if (!filter.MakesRow(*e)) {
      Remember(bank, *e);
      return true;
    }
    events.push_back(e);
    details.push_back(IsProgram(*e) ? DetailOf(bank) : -1);
    e->ListPos = Rows();
    if (e->Kind() == NoteOn) pairing.Of(*e).Push(Rows());
    Remember(bank, *e);
    return true;
  });
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

void TEventIndex::PairKeys(int channel, int key, int other) {
  const std::uint8_t on = static_cast<std::uint8_t>(NoteOn | channel);
  const std::uint8_t off = static_cast<std::uint8_t>(NoteOff | channel);
  struct TOpen {
    PtrMidiEvent Event;
    std::int32_t Row;
  };
  std::array<std::vector<TOpen>, 2> open;
  std::size_t next = 0;
  // Rows stand in the list's order: one walk over both finds them.
  const auto rowOf = [&](PtrMidiEvent e) {
    if (!filter.MakesRow(*e)) return 0;
    while (next < events.size() && events[next] != e) ++next;
    return next < events.size() ? static_cast<std::int32_t>(next) + 1 : 0;
  };
  InPieces(gate, track->TrkFirstEvent, [&](PtrMidiEvent e) {
    if ((e->Command != on && e->Command != off) || e->DLength == 0) return true;
    if (e->Value[0] != key && e->Value[0] != other) return true;
    std::vector<TOpen>& queue = open[e->Value[0] == key ? 0 : 1];
    if (e->Command == on) {
      e->NoteOffEvent = nullptr;
      const std::int32_t row = rowOf(e);
      if (row > 0) details[static_cast<std::size_t>(row - 1)] = -1;
      if (queue.size() < TPairing::MostOpen) queue.push_back({e, row});
      return true;
    }
    e->NoteOnEvent = nullptr;
    if (queue.empty()) return true;
    const TOpen first = queue.front();
    queue.erase(queue.begin());
    e->NoteOnEvent = first.Event;
    first.Event->NoteOffEvent = e;
    if (first.Row > 0)
      details[static_cast<std::size_t>(first.Row - 1)] = e->Position - first.Event->Position;
    return true;
  });
}

void TEventIndex::ReadBanks(const TypMidiEvent& place) {
  constexpr int programFilter = static_cast<int>(TEventKind::ProgramChange) + 1;
  if (filter.Filter != 0 && filter.Filter != programFilter) return;
  const auto isStart = [&](const TypMidiEvent& e) { return IsProgram(e) && filter.IsOfList(e); };
  const TypMidiEvent* from = place.PrevEvent;
  while (from != nullptr && !isStart(*from)) from = from->PrevEvent;
  TBankMemory bank;
  int programs = 0;
  PtrMidiEvent e = from == nullptr ? track->TrkFirstEvent : from->NextEvent;
  // A program at the place itself ends what the next one has in front of it.
  for (; e != nullptr && programs < 2; e = e->NextEvent) {
    if (!filter.IsOfList(*e)) continue;
    if (IsProgram(*e)) {
      ++programs;
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
