// Edits of metas and sysexes.
#include <algorithm>
#include <charconv>

#include "core/RolandChecksum.h"
#include "core/TextEncoding.h"
#include "core/Texts.h"
#include "core/TimeMap.h"
#include "editors/EventEdits.h"
#include "editors/EventPosition.h"
#include "editors/EventStep.h"
#include "editors/SysexExplain.h"
#include "editors/XFChordText.h"
#include "playback/InstrumentResets.h"

namespace Sonarello {

namespace {

using TBytes = std::vector<std::uint8_t>;

constexpr std::string_view IgnoreMark = "srl_ignore";
constexpr std::uint8_t EndOfSysex = 0xF7;

TBytes BytesOf(std::string_view text) { return {text.begin(), text.end()}; }

void ReplaceAll(std::string& text, std::string_view from, std::string_view to) {
  std::string changed;
  std::size_t done = 0;
  for (std::size_t at = 0; (at = text.find(from, done)) != std::string::npos; done = at + from.size()) {
    changed.append(text, done, at - done);
    changed.append(to);
  }
  changed.append(text, done);
  text.swap(changed);
}

bool StartsWithIgnore(const TypMidiEvent& event) {
  return event.Command == MetaEvent && event.Meta.Text().starts_with(IgnoreMark);
}

/// True for types whose payload is shown as hexadecimal bytes.
bool IsShownAsHex(const TypMidiEvent& event) {
  return event.MType == 0x4B || (event.IsMeta(MetaSequencerSpecific) && !HoldsXFChord(event));
}

/// A text and its bytes: marks and signs become line breaks again.
TBytes TextBytes(const TypMidiEvent& event, std::string text) {
  const std::string before = DecodedText(event.Meta.Text());
  if (event.MType == MetaLyric) {
    ReplaceAll(text, "***_NP_***", "\n");
    ReplaceAll(text, "***_NL_***", "\r");
  }
  if (event.MType == MetaText) {
    // A sign that the text had as such stays one.
    if (before.find("÷") == std::string::npos) ReplaceAll(text, "÷", "\n");
    if (before.find("¶") == std::string::npos) ReplaceAll(text, "¶", "\r");
  }
  return BytesOf(EncodedText(text, event.Meta.Text()));
}

/// Three bytes of a tempo in beats per minute; a fraction may follow a point or a comma.
std::optional<TBytes> TempoBytes(std::string text) {
  constexpr double microsecondsPerMinute = 60'000'000;
  constexpr double longest = 0xFFFFFF;
  std::ranges::replace(text, ',', '.');
  double tempo = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), tempo);
  if (error != std::errc{} || end != text.data() + text.size() || !(tempo > 0)) return std::nullopt;
  const double microseconds = microsecondsPerMinute / tempo;
  if (!(microseconds >= 0.5 && microseconds <= longest)) return std::nullopt;
  const std::int32_t rounded = std::max(RoundToEven(microseconds), 1);
  return TBytes{static_cast<std::uint8_t>(rounded >> 16), static_cast<std::uint8_t>(rounded >> 8),
                static_cast<std::uint8_t>(rounded)};
}

std::optional<TBytes> TimeSignatureBytes(const TypMidiEvent& event, std::string_view text) {
  constexpr std::int64_t largestNumerator = 255;
  const std::size_t slash = text.find('/');
  std::int64_t numerator = 0;
  std::int64_t denominator = 0;
  if (slash == std::string_view::npos || !ReadNumber(text.substr(0, slash), numerator) ||
      !ReadNumber(text.substr(slash + 1), denominator))
    return std::nullopt;
  if (numerator < 1 || numerator > largestNumerator) return std::nullopt;
  std::uint8_t exponent = 0;
  while (exponent < 8 && std::int64_t{1} << exponent != denominator) ++exponent;
  if (exponent == 8) return std::nullopt;
  TBytes bytes = MetaDefault(MetaTimeSignature);
  if (event.Meta.size() == bytes.size()) bytes.assign(event.Meta.data(), event.Meta.data() + 4);
  bytes[0] = static_cast<std::uint8_t>(numerator);
  bytes[1] = exponent;
  return bytes;
}

/// Hours, minutes, seconds, frames and their parts; the hour as it is shown, 20 hex below its byte.
std::optional<TBytes> SmpteBytes(std::string text) {
  constexpr std::int64_t shift = 0x20;
  std::ranges::replace(text, ':', '.');
  TBytes bytes;
  std::string_view rest = text;
  for (bool more = true; more;) {
    const std::size_t point = rest.find('.');
    more = point != std::string_view::npos;
    std::int64_t number = 0;
    if (!ReadNumber(rest.substr(0, point), number)) return std::nullopt;
    if (bytes.empty()) number += shift;
    if (number < 0 || number > 255) return std::nullopt;
    bytes.push_back(static_cast<std::uint8_t>(number));
    if (more) rest.remove_prefix(point + 1);
  }
  return bytes.size() == 5 ? std::optional(bytes) : std::nullopt;
}

std::optional<TBytes> ChordBytes(std::string_view text, bool german) {
  const std::optional<TXFChordBytes> chord = XFChordOfName(text, german);
  if (!chord) return std::nullopt;
  const auto bytes = XFChordEvent(*chord);
  return TBytes(bytes.begin(), bytes.end());
}

/// Payload of a meta for the text of its column 7, or none for a text that makes no sense there.
std::optional<TBytes> MetaBytes(const TypMidiEvent& event, const std::string& text, bool german) {
  if (HoldsXFChord(event)) return ChordBytes(text, german);
  if (IsShownAsHex(event)) return BytesOfHex(text);
  switch (event.MType) {
    case MetaTempo: return TempoBytes(text);
    case MetaTimeSignature: return TimeSignatureBytes(event, text);
    case MetaSmpteOffset: return SmpteBytes(text);
    case MetaKeySignature: {
      const auto bytes = KeySignatureOfName(text);
      return bytes ? std::optional(TBytes(bytes->begin(), bytes->end())) : std::nullopt;
    }
    default: return TextBytes(event, text);
  }
}

/// Index of a Roland message's first address byte, 0 for any other: maker, device, model (00 in front
/// of the number of a later model), command 12 (Roland: data set 1).
std::size_t AddressOf(std::span<const std::uint8_t> bytes) {
  constexpr std::uint8_t roland = 0x41;
  constexpr std::uint8_t dataSet = 0x12;
  constexpr std::size_t model = 2;
  if (bytes.size() < model || bytes[0] != roland) return 0;
  std::size_t at = model;
  while (at < bytes.size() && bytes[at] == 0) ++at;
  // Behind the command: some address, a byte of data, the checksum, F7.
  constexpr std::size_t least = 6;
  if (at + 1 + least > bytes.size() || bytes[at + 1] != dataSet) return 0;
  return bytes.back() == EndOfSysex ? at + 2 : 0;
}

}  // namespace

// --- Metas

TEditResult TEventEdits::EditMetaType(const TCell& cell) {
  const PtrMidiEvent event = cell.Event;
  const std::vector<TMetaChoice> choices = MetaChoices();
  const auto chosen = std::ranges::find(choices, cell.Text, &TMetaChoice::Name);
  if (chosen == choices.end())
    return Refused(cell, Text("Meta-Event-Typ erwartet", "meta event type expected"));
  const bool isChord = chosen->Type == MetaSequencerSpecific;
  if (chosen->Type == event->MType && (!isChord || HoldsXFChord(*event))) return Refused(cell);
  const TBytes bytes = MetaDefault(chosen->Type);
  TStep step(*this, Text("Meta-Event-Typ ändern", "change meta event type"));
  const bool ignored = StartsWithIgnore(*event);
  step.Change(event, [&](PtrMidiEvent e) {
    e->MType = static_cast<std::int8_t>(chosen->Type);
    TStep::SetMeta(e, bytes);
    e->Value = e->ValueOrg = {};
  });
  step.ForgetReferences(event);
  if (ignored) step.ReadIgnore();
  step.Finish();
  return Done(cell, Value1Column);
}

TEditResult TEventEdits::EditMetaValue(const TCell& cell) {
  const PtrMidiEvent event = cell.Event;
  const std::optional<TBytes> bytes = MetaBytes(*event, cell.Text, rows.Texts.UseGermanChords);
  if (!bytes || bytes->empty())
    return Refused(cell, Text("Wert nicht verstanden", "value not understood"));
  const bool ignore = std::string_view(reinterpret_cast<const char*>(bytes->data()), bytes->size())
                          .starts_with(IgnoreMark);
  if (ignore && song.MidiFileFormat == 0) {
    Post(Text("Dieser Befehl ist nur für Midifiles im Format 1 sinnvoll!",
              "This setting is on for midifiles in Format 1 usefull!"));
    return Refused(cell);
  }
  TStep step(*this, Text("Meta-Event-Wert ändern", "change meta event value"));
  const bool ignored = StartsWithIgnore(*event);
  step.Change(event, [&](PtrMidiEvent e) { TStep::SetMeta(e, *bytes); });
  if (ignore || ignored) step.ReadIgnore();
  step.Finish();
  return Done(cell, Value2Column);
}

// --- Sysexes

TEditResult TEventEdits::EditSysex(const TCell& cell) {
  std::optional<TBytes> bytes = BytesOfHex(cell.Text);
  if (!bytes)
    return Refused(cell, Text("Sysex: nur hexadezimale Bytes, durch Leerzeichen getrennt",
                              "sysex: hexadecimal bytes only, parted by blanks"));
  if (cell.Event->Command == Sysex) {
    // The cell shows what stands behind F0; one that is typed is not meant twice.
    if (!bytes->empty() && bytes->front() == Sysex) bytes->erase(bytes->begin());
    if (bytes->empty() || bytes->back() != EndOfSysex) bytes->push_back(EndOfSysex);
    if (std::any_of(bytes->begin(), bytes->end() - 1, [](std::uint8_t b) { return b > 0x7F; }))
      return Refused(cell, Text("Sysex: Bytes über 7F sind nur am Ende erlaubt (F7)",
                                "sysex: bytes above 7F are only allowed at the end (F7)"));
  }
  if (bytes->size() < 2 && cell.Event->Command == Sysex)
    return Refused(cell, Text("Sysex: keine Daten", "sysex: no data"));
  return SetSysex(cell, std::move(*bytes));
}

TEditResult TEventEdits::SetSysex(const TCell& cell, TBytes bytes) {
  if (bytes.empty()) return Refused(cell, Text("Sysex: keine Daten", "sysex: no data"));
  if (cell.Event->Meta.Equals(bytes)) return Refused(cell);
  TStep step(*this, Text("Sysex ändern", "change sysex"));
  step.Change(cell.Event, [&](PtrMidiEvent e) { TStep::SetMeta(e, bytes); });
  step.Finish();
  if (cell.Event->Command == Sysex)
    rows.Explain(cell.Event, ExplainSysex(cell.Event->Meta.Bytes(), TExplained::Edited));
  return Done(cell, Value2Column);
}

bool TEventEdits::HasRolandChecksum(std::int32_t row) const {
  const PtrMidiEvent event = rows.Event(row);
  return event != nullptr && event->Command == Sysex && AddressOf(event->Meta.Bytes()) != 0;
}

TEditResult TEventEdits::RecomputeChecksum(std::int32_t row) {
  if (!HasRolandChecksum(row) || !rows.Showing) return {};
  const PtrMidiEvent event = rows.Event(row);
  TBytes bytes(event->Meta.Bytes().begin(), event->Meta.Bytes().end());
  const std::size_t first = AddressOf(bytes);
  bytes[bytes.size() - 2] = RolandChecksum(std::span(bytes).subspan(first, bytes.size() - 2 - first));
  const TCell cell{.Column = Value2Column,
                   .Row = row,
                   .Event = event,
                   .Text = {},
                   .Prev = rows.Row(row).Fields[Value2Column]};
  return SetSysex(cell, std::move(bytes));
}

bool TEventEdits::IsProtected(const TypMidiEvent& event) const {
  // Effects hold the events of their memory, whatever those are.
  if (rows.ShownTrack() < 0) return true;
  if (event.Command != Sysex) return false;
  bool held = false;
  song.ForEachReference([&](PtrMidiEvent& e) { held = held || e == &event; });
  if (held) return true;
  // The song's first reset of its instrument: without it the instrument starts as it was left.
  const auto table = routes.MidiRouting();
  const auto reset = ResetOf(table.empty() ? 0 : table[0].InstrumValue);
  if (reset.empty() || !event.Meta.Equals(reset)) return false;
  for (const TypMidiEvent* e = event.PrevEvent; e != nullptr; e = e->PrevEvent)
    if (e->Command == Sysex && e->DLength > 0 && e->Meta.Equals(reset)) return false;
  return true;
}

}  // namespace Sonarello
