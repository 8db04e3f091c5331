#include "core/ChangeLog.h"

#include <algorithm>
#include <array>
#include <string>

#include "core/Song.h"
#include "core/Texts.h"

namespace Sonarello {

namespace {

constexpr std::size_t ShownBytes = 16;

std::string Hex(std::span<const std::uint8_t> bytes) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  std::string text;
  for (const std::uint8_t byte : bytes.first(std::min(bytes.size(), ShownBytes))) {
    if (!text.empty()) text += ' ';
    text += digits[byte >> 4];
    text += digits[byte & 15];
  }
  if (bytes.size() > ShownBytes)
    text += " ... (" + std::to_string(bytes.size()) + Text(" Bytes)", " bytes)");
  return text;
}

std::string MetaName(int type) {
  switch (type) {
    case MetaSequenceNumber: return Text("Sequenznummer", "Sequence number");
    case MetaText: return "Text";
    case MetaTrackName: return Text("Spurname", "Track name");
    case MetaInstrumentName: return Text("Instrumentname", "Instrument name");
    case MetaLyric: return Text("Liedtext", "Lyric");
    case MetaMarker: return "Marker";
    case MetaCue: return Text("Cue-Punkt", "Cue point");
    case MetaChannelPrefix: return Text("Kanal-Präfix", "Channel prefix");
    case MetaPort: return Text("MIDI-Port", "MIDI port");
    case MetaEndOfTrack: return Text("Spurende", "End of track");
    case MetaTempo: return "Tempo";
    case MetaSmpteOffset: return "SMPTE-Offset";
    case MetaTimeSignature: return Text("Taktart", "Time signature");
    case MetaKeySignature: return Text("Tonart", "Key signature");
    case MetaSequencerSpecific: return Text("Sequenzerdaten", "Sequencer-specific data");
    default: return "Meta " + Hex(std::array{static_cast<std::uint8_t>(type)});
  }
}

std::string DescribeMeta(const TypMidiEvent& event) {
  const bool text = event.MType >= MetaText && event.MType <= 0x0F;
  std::string words = MetaName(event.MType);
  if (event.Meta.empty()) return words;
  if (text) return words + " \"" + std::string(event.Meta.Text()) + "\"";
  return words + " " + Hex(event.Meta.Bytes());
}

std::string DescribeChannelEvent(const TypMidiEvent& event) {
  const std::string first = std::to_string(event.Value[0]);
  const std::string second = std::to_string(event.Value[1]);
  const std::string on = Text(", Kanal ", ", channel ") + std::to_string(event.Channel() + 1);
  switch (event.Kind()) {
    case NoteOff: return Text("Note aus ", "Note off ") + first + ", " + second + on;
    case NoteOn: return Text("Note an ", "Note on ") + first + ", " + second + on;
    case KeyAftertouch:
      return Text("Tasten-Aftertouch ", "Key aftertouch ") + first + " = " + second + on;
    case Controller: return "Controller " + first + " = " + second + on;
    case ProgramChange: return Text("Programmwechsel ", "Program change ") + first + on;
    case ChannelAftertouch: return Text("Kanal-Aftertouch ", "Channel aftertouch ") + first + on;
    default: return Text("Pitchbend ", "Pitch bend ") + first + ", " + second + on;
  }
}

}  // namespace

std::string DescribeEvent(const TypMidiEvent& event) {
  if (event.IsChannelEvent()) return DescribeChannelEvent(event);
  if (event.Command == MetaEvent) return DescribeMeta(event);
  if (event.Command != Sysex && event.Command != SysexEscape)
    return Text("Systembyte ", "System byte ") + Hex(std::array{event.Command});
  const std::string name = event.Command == Sysex ? "Sysex" : "Sysex (F7)";
  return event.Meta.empty() ? name : name + " " + Hex(event.Meta.Bytes());
}

void LogChange(Song& song, ChangeKind kind, std::int32_t track, const TypMidiEvent& event,
               std::string_view germanWhy, std::string_view englishWhy) {
  if (song.Changes == nullptr) return;
  song.Changes->Add(
      {kind, track, event.Position, event.Position, DescribeEvent(event), Text(germanWhy, englishWhy)});
}

void LogMove(Song& song, std::int32_t track, const TypMidiEvent& event, std::int32_t oldPosition,
             std::string_view germanWhy, std::string_view englishWhy) {
  if (song.Changes == nullptr) return;
  song.Changes->Add({ChangeKind::Moved, track, event.Position, oldPosition, DescribeEvent(event),
                     Text(germanWhy, englishWhy)});
}

void LogText(Song& song, ChangeKind kind, std::int32_t track, std::int32_t position,
             std::string_view germanWhat, std::string_view englishWhat, std::string_view germanWhy,
             std::string_view englishWhy) {
  if (song.Changes == nullptr) return;
  song.Changes->Add(
      {kind, track, position, position, Text(germanWhat, englishWhat), Text(germanWhy, englishWhy)});
}

}  // namespace Sonarello
