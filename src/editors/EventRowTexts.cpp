#include "editors/EventRowTexts.h"

#include <algorithm>

#include "core/MidiFunctions.h"
#include "core/TextEncoding.h"
#include "core/Texts.h"
#include "core/TimeMap.h"
#include "editors/SysexExplain.h"
#include "editors/XFChordText.h"

namespace Sonarello {

namespace {

constexpr std::string_view NewPage = "***_NP_***";  ///< LF in a lyric
constexpr std::string_view NewLine = "***_NL_***";  ///< CR in a lyric

std::string Number(std::int64_t number) { return std::to_string(number); }

std::string TwoDigits(int number) { return (number < 10 ? "0" : "") + Number(number); }

/// Route of a channel (0-15); the main one for a number beyond the table.
const TMidiRouting* RouteOf(const Song& song, const IRoutes& routes, int channel) {
  const auto table = routes.MidiRouting();
  if (table.empty()) return nullptr;
  const std::size_t index = song.MidiOutIndex[static_cast<std::size_t>(channel)];
  return &table[index < table.size() ? index : 0];
}

/// Line breaks of a text event as the signs that show them: bytes F7 and B6 of Latin-1.
std::string WithBreakSigns(std::string_view bytes) {
  std::string text = DecodedText(bytes);
  std::string shown;
  for (const char c : text) {
    if (c == '\n')
      shown += "÷";
    else if (c == '\r')
      shown += "¶";
    else
      shown += c;
  }
  return shown;
}

std::string WithLyricMarks(std::string_view bytes) {
  std::string shown;
  for (const char c : DecodedText(bytes)) {
    if (c == '\n')
      shown += NewPage;
    else if (c == '\r')
      shown += NewLine;
    else
      shown += c;
  }
  return shown;
}

std::string TempoText(std::span<const std::uint8_t> bytes) {
  if (bytes.size() < 3) return HexText(bytes);
  const int read = bytes[0] << 16 | bytes[1] << 8 | bytes[2];
  return Number(RoundToEven(60'000'000.0 / (read == 0 ? 500'000 : read)));
}

std::string SmpteText(std::span<const std::uint8_t> bytes) {
  if (bytes.size() < 5) return HexText(bytes);
  // The hour's byte holds the frame rate as well; 20 hex is taken off whatever it is. This is
  // deliberate.
  return Number(bytes[0] - 0x20) + ":" + TwoDigits(bytes[1]) + ":" + TwoDigits(bytes[2]) + ":" +
         TwoDigits(bytes[3]) + "." + TwoDigits(bytes[4]);
}

std::string TimeSignatureText(std::span<const std::uint8_t> bytes) {
  constexpr int mostBits = 62;
  if (bytes.size() < 2) return HexText(bytes);
  return Number(bytes[0]) + "/" + Number(std::int64_t{1} << std::min<int>(bytes[1], mostBits));
}

}  // namespace

// --- Rows

TEventData TEventRowTexts::Row(const TypMidiEvent& event, int listIndex, std::int32_t length,
                               TBankMemory bank) const {
  TEventData row;
  auto& fields = row.Fields;
  // The blank ends at 8, not at 9. This is deliberate.
  fields[TrackColumn] = (listIndex < 9 ? " " : "") + Number(listIndex);
  fields[PositionColumn] = TicksToStr(song, event.Position);
  fields[TimeColumn] = TimeToStr(event.TimePosition);
  fields[ChannelColumn] =
      event.IsChannelEvent()
          ? Number(song.MidiData[static_cast<std::size_t>(event.Channel())].MidiChannel + 1)
          : "-";
  const TEventKind kind = KindOf(event);
  fields[KindColumn] = KindName(kind);
  if (kind == TEventKind::Unknown) return row;
  if (event.IsChannelEvent()) {
    TellChannelEvent(event, length, bank, row);
  } else if (kind == TEventKind::Sysex) {
    fields[Value1Column] = event.Command == Sysex ? "F0" : "F7";
    if (event.Command == Sysex) fields[LengthColumn] = ExplainSysex(event.Meta.Bytes());
    fields[Value2Column] = HexText(event.Meta.Bytes());
  } else {
    fields[Value1Column] = Number(event.MType);
    fields[LengthColumn] = MetaName(event);
    fields[Value2Column] = MetaValue(event);
  }
  return row;
}

void TEventRowTexts::TellChannelEvent(const TypMidiEvent& event, std::int32_t length, TBankMemory bank,
                                      TEventData& row) const {
  auto& fields = row.Fields;
  const auto [value0, value1] = event.Value;
  switch (event.Kind()) {
    case NoteOn:
      fields[Value1Column] = KeyText(event);
      if (length >= 0) fields[LengthColumn] = Number(length);
      fields[Value2Column] = Number(value1);
      return;
    case KeyAftertouch:
      fields[Value1Column] = KeyName(value0 % KeyCount, UseGermanChords);
      fields[Value2Column] = Number(value1);
      return;
    case Controller:
      fields[Value1Column] = Number(value0);
      fields[LengthColumn] = ControllerName(value0);
      fields[Value2Column] = Number(value1);
      return;
    case ProgramChange: return TellProgram(event, bank, row);
    case ChannelAftertouch: fields[LengthColumn] = Number(value0); return;
    default: fields[LengthColumn] = Number(value1 * 128 + value0 - 8192); return;
  }
}

void TEventRowTexts::TellProgram(const TypMidiEvent& event, TBankMemory bank, TEventData& row) const {
  constexpr int remoteBank = 77;
  constexpr std::int32_t remoteUntil = 10;  // ticks
  const int program = event.Value[0];
  row.Fields[Value1Column] = Number(program + 1);
  row.Fields[LengthColumn] = "(" + Instrument(event.Channel()) + ")";
  std::string& name = row.Fields[Value2Column];
  if (bank.MSB == remoteBank && event.Position < remoteUntil) {
    name = Text("Prompta Fernbedienung für Position ", "Prompta remote control for position ") +
           Number(bank.LSB * 100 + program + 1);
    return;
  }
  const auto given = [](std::uint8_t number) {
    return number == TBankMemory::NotGiven ? -1 : int{number};
  };
  if (Hooks.ProgramChangeName)
    name = Hooks.ProgramChangeName(event.Channel(), {given(bank.MSB), given(bank.LSB), program});
}

std::string TEventRowTexts::KeyText(const TypMidiEvent& event) const {
  const int key = event.Value[0] % KeyCount;
  if (Hooks.DrumName)
    if (const auto drum = Hooks.DrumName(event.Channel(), key)) return Number(key) + " " + *drum;
  return KeyName(key, UseGermanChords);
}

std::string TEventRowTexts::Instrument(int channel) const {
  const TMidiRouting* route = RouteOf(song, routes, channel);
  return route == nullptr ? std::string() : route->Instrument;
}

std::string TEventRowTexts::MetaValue(const TypMidiEvent& event) const {
  const auto bytes = event.Meta.Bytes();
  switch (event.MType) {
    case MetaText: return WithBreakSigns(event.Meta.Text());
    case MetaLyric: return WithLyricMarks(event.Meta.Text());
    case 0x4B: return HexText(bytes);
    case MetaTempo: return TempoText(bytes);
    case MetaSmpteOffset: return SmpteText(bytes);
    case MetaTimeSignature: return TimeSignatureText(bytes);
    case MetaKeySignature: return KeySignatureName(bytes);
    case MetaSequencerSpecific:
      return HoldsXFChord(event) ? XFChordName(XFChordIn(bytes), UseGermanChords) : HexText(bytes);
    default: return DecodedText(event.Meta.Text());
  }
}

}  // namespace Sonarello
