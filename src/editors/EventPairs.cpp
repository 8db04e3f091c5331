// Notes are paired anew around an edit.
#include <algorithm>

#include "editors/EventIndex.h"
#include "editors/EventPairing.h"

namespace Sonarello {

namespace {

/// One or two keys of a channel while their notes are paired.
class TPairWalk {
 public:
  TPairWalk(int c, int k, int o) : channel(c), key(k), other(o) {}

  [[nodiscard]] bool Concerns(const TypMidiEvent& e) const noexcept {
    const int kind = e.Command & 0xEF;
    return kind == (NoteOff | channel) && e.DLength != 0 && (e.Value[0] == key || e.Value[0] == other);
  }
  [[nodiscard]] TOpenQueue& Of(const TypMidiEvent& e) noexcept {
    return open[e.Value[0] == key ? 0 : 1];
  }
  [[nodiscard]] bool IsQuiet() const noexcept { return open[0].IsEmpty() && open[1].IsEmpty(); }

 private:
  int channel;
  int key;
  int other;
  std::array<TOpenQueue, 2> open;
};

}  // namespace

void TEventIndex::PairKeys(int channel, int key, int other, std::int32_t from, std::int32_t to) {
  const std::size_t keyIndex = KeyIndex(channel, key);
  const std::size_t otherIndex = KeyIndex(channel, other);
  // Where all notes have their ends, those that began earlier than the longest note before the change
  // have ended there. Else the list is walked from its start.
  const bool whole = loose[keyIndex] || loose[otherIndex];
  const std::int64_t start = whole ? -1 : std::int64_t{from} - longest;
  const auto firstRow = std::lower_bound(
      events.begin(), events.end(), start,
      [](const TypMidiEvent* e, std::int64_t position) { return e->Position < position; });
  auto next = static_cast<std::size_t>(firstRow - events.begin());
  if (next > 0) --next;
  const bool fromRow = next < events.size() && events[next]->Position < start;
  // Rows stand in the list's order: one walk over both finds them.
  const auto rowOf = [&](PtrMidiEvent e) {
    if (!filter.MakesRow(*e)) return 0;
    while (next < events.size() && events[next] != e) ++next;
    return next < events.size() ? static_cast<std::int32_t>(next) + 1 : 0;
  };
  if (whole) loose.reset(keyIndex), loose.reset(otherIndex);
  TPairWalk walk(channel, key, other);
  InPieces(gate, fromRow ? events[next] : track->TrkFirstEvent, [&](PtrMidiEvent e) {
    if (e->Position > to && !whole && walk.IsQuiet()) return false;
    if (!walk.Concerns(*e)) return true;
    const bool before = !whole && e->Position < from;
    if (e->Kind() == NoteOff) {
      if (!before) EndPair(walk.Of(*e).Pop(), e);
      return true;
    }
    if (before && (e->NoteOffEvent == nullptr || e->NoteOffEvent->Position < from)) return true;
    const std::int32_t row = rowOf(e);
    if (row > 0) details[static_cast<std::size_t>(row - 1)] = -1;
    e->NoteOffEvent = nullptr;
    if (!walk.Of(*e).Push({e, row})) loose.set(KeyIndex(channel, e->Value[0]));
    return true;
  });
  for (const int k : {key, other}) {
    TypMidiEvent note;
    note.Value[0] = static_cast<std::uint8_t>(k);
    if (!walk.Of(note).IsEmpty()) loose.set(KeyIndex(channel, k));
  }
}

void TEventIndex::EndPair(const TOpenNoteRow& open, PtrMidiEvent off) {
  off->NoteOnEvent = open.Event;
  if (open.Event == nullptr) {
    loose.set(KeyIndex(off->Channel(), off->Value[0]));
    return;
  }
  open.Event->NoteOffEvent = off;
  const std::int32_t length = off->Position - open.Event->Position;
  longest = std::max(longest, length);
  if (open.Row > 0) details[static_cast<std::size_t>(open.Row - 1)] = length;
}

}  // namespace Sonarello
