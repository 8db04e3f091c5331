#include "editors/EventTexts.h"

#include <algorithm>
#include <charconv>

#include "core/MidiFunctions.h"
#include "core/Texts.h"
#include "editors/XFChordText.h"

namespace Sonarello {

namespace {

/// A text in both languages.
struct TWords {
  std::string_view German;
  std::string_view English;
  [[nodiscard]] std::string Chosen() const { return Text(German, English); }
};

constexpr std::array<TWords, EventKindCount> KindWords = {{{"Note", "Note"},
                                                           {"Program change", "Program change"},
                                                           {"Controller", "Controller"},
                                                           {"Key after-touch", "Key after-touch"},
                                                           {"Ch. after-touch", "Ch. after-touch"},
                                                           {"Pitch Bend", "Pitch bend"},
                                                           {"Sysex", "Sysex"},
                                                           {"Meta Event", "Meta event"}}};

/// What a plural adds to the kind.
constexpr std::array<TWords, EventKindCount> PluralEndings = {
    {{"n", "s"}, {"", "s"}, {"", ""}, {"", ""}, {"", ""}, {"", ""}, {"", ""}, {"s", "s"}}};

constexpr std::array<TWords, EventColumnCount> Heads = {{{" Sp", " Trk"},
                                                         {" Position", " Position"},
                                                         {" Zeit", " Time"},
                                                         {" Ka", " Chn"},
                                                         {" Typ", " Type"},
                                                         {" Wert 1", " Value 1"},
                                                         {" Länge / Erklärung", " Length / Expl."},
                                                         {" Wert 2", " Value 2"}}};

/// By index of the filter. "toouch" is deliberate.
constexpr std::array<TWords, EventKindCount + 1> EmptyLists = {
    {{"keine Events vorhanden", "No events found"},
     {"keine Noten gefunden", "No notes found"},
     {"keine Programm-Wechsel gefunden", "No program changes found"},
     {"keine Controller gefunden", "No controllers found"},
     {"keine Noten After-touch gefunden", "No key after-toouch found"},
     {"keine Kanal After-touch gefunden", "No channel after-touch found"},
     {"keine Pitch-Bend gefunden", "No pitch bend found"},
     {"keine Sysex gefunden", "No sysex found"},
     {"keine Metas gefunden", "No meta found"}}};

std::array<std::string_view, ControllerCount> MakeControllerNames() {
  struct TRow {
    int First;
    std::initializer_list<std::string_view> Names;
  };
  const TRow runs[] = {
      {0, {"Bank MSB", "Modulation", "Breath"}},
      {4,
       {"Foot controller", "Portamento Time", "Data MSB", "Volume", "Balance", "", "Panorama",
        "Expression"}},
      {32, {"Bank LSB", "Modulation LSB", "Breath LSB", "", "Foot Ctrl LSB"}},
      {38, {"Data LSB", "Volume LSB", "Balance LSB", "", "Panorama LSB", "Expression LSB"}},
      {64, {"Damper Pedal", "Portamento Pedal", "Sostenuto", "Soft Pedal"}},
      {71,
       {"Harmonics", "Release Time", "Attack Time", "Brightness", "Decay Time", "Vibrato Rate",
        "Vibrato Depth", "Vibrato Delay"}},
      {84, {"Porta Ctrl"}},
      {91,
       {"Hall Depth", "Tremolo Depth", "Chorus Depth", "Celeste Depth", "Phaser Depth",
        "Data increment", "Data decrement", "NRPN LSB", "NRPN MSB", "RPN LSB", "RPN MSB"}},
      {120,
       {"All Sounds Off", "Reset Ctrl", "Local Ctrl", "All Note Off", "Omni Mode Off", "Omni Mode On",
        "Mono Mode On", "Poly Mode On"}},
  };
  std::array<std::string_view, ControllerCount> names{};
  for (const TRow& run : runs) std::ranges::copy(run.Names, names.begin() + run.First);
  return names;
}

const std::array<std::string_view, ControllerCount>& ControllerNames() {
  static const std::array<std::string_view, ControllerCount> names = MakeControllerNames();
  return names;
}

constexpr std::string_view SequencerSpecificName = "Seq.specific";

struct TMetaWord {
  int Type;
  std::string_view Name;
};
constexpr TMetaWord MetaWords[] = {{0x01, "Text"},           {0x02, "Copyright info"},
                                   {0x03, "Track name"},     {0x04, "Instrument name"},
                                   {0x05, "Lyric"},          {0x06, "Marker"},
                                   {0x07, "Cue point"},      {0x08, "Program Name"},
                                   {0x09, "Device Name"},    {0x4B, "Miditemp MP11 Meta"},
                                   {0x51, "Tempo"},          {0x54, "SMPTE Offset"},
                                   {0x58, "Time signature"}, {0x59, "Key signature"}};

/// Major keys from seven flats to seven sharps.
constexpr std::array<std::string_view, 15> MajorKeys = {"Cb", "Gb", "Db", "Ab", "Eb", "Bb", "F", "C",
                                                        "G",  "D",  "A",  "E",  "B",  "F#", "C#"};
constexpr int MostAccidentals = 7;
constexpr std::string_view GermanMinor = " mol";
constexpr std::string_view EnglishMinor = " min";

constexpr std::uint8_t XFPrefix[] = {0x43, 0x7B};
constexpr std::uint8_t XFVersion = 0x00;
constexpr std::uint8_t XFChord = 0x01;

bool HoldsXF(const TypMidiEvent& event, std::int32_t length, std::uint8_t what) noexcept {
  return event.IsMeta(MetaSequencerSpecific) && event.DLength == length &&
         std::ssize(event.Meta.Bytes()) == length && event.Meta.StartsWith(XFPrefix) &&
         event.Meta[2] == what;
}

int DigitOf(char c) noexcept {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return c >= 'a' && c <= 'f' ? c - 'a' + 10 : -1;
}

}  // namespace

TEventKind KindOf(const TypMidiEvent& event) noexcept {
  if (event.Command == Sysex || event.Command == SysexEscape) return TEventKind::Sysex;
  if (event.Command == MetaEvent) return TEventKind::Meta;
  switch (event.Kind()) {
    case NoteOn: return TEventKind::Note;
    case ProgramChange: return TEventKind::ProgramChange;
    case Controller: return TEventKind::Controller;
    case KeyAftertouch: return TEventKind::KeyAftertouch;
    case ChannelAftertouch: return TEventKind::ChannelAftertouch;
    case PitchBend: return TEventKind::PitchBend;
    default: return TEventKind::Unknown;
  }
}

std::string KindName(TEventKind kind) {
  const auto index = static_cast<std::size_t>(kind);
  return index < KindWords.size() ? KindWords[index].Chosen() : "...unknown";
}

std::string ColumnHead(int column) { return Heads.at(static_cast<std::size_t>(column)).Chosen(); }

std::vector<std::string> FilterLines() {
  std::vector<std::string> lines = {Text("Alles", "All events")};
  for (std::size_t k = 0; k < KindWords.size(); ++k)
    lines.push_back(KindWords[k].Chosen() + PluralEndings[k].Chosen());
  return lines;
}

std::string FilterLabel(int filter) {
  return filter == 0 ? Text("Zeige", "Show") : Text("Zeige nur", "Show only");
}

std::string EmptyListText(int filter) {
  return EmptyLists.at(static_cast<std::size_t>(filter)).Chosen();
}

std::string KeyName(int key, bool german) {
  std::string name = NoteName(key);
  if (german && name.front() == 'B') name.front() = 'H';
  return name;
}

std::optional<int> KeyOfName(std::string_view name, bool german) {
  for (int key = 0; key < KeyCount; ++key)
    if (KeyName(key, german) == name) return key;
  return std::nullopt;
}

std::string_view ControllerName(int controller) noexcept {
  return ControllerNames()[static_cast<std::size_t>(controller) % ControllerCount];
}

std::span<const std::uint8_t> NamedControllers() noexcept {
  static const std::vector<std::uint8_t> named = [] {
    std::vector<std::uint8_t> numbers;
    for (std::size_t n = 0; n < ControllerCount; ++n)
      if (!ControllerNames()[n].empty()) numbers.push_back(static_cast<std::uint8_t>(n));
    return numbers;
  }();
  return named;
}

std::optional<int> ControllerOfName(std::string_view text) noexcept {
  const auto& names = ControllerNames();
  if (const auto found = std::ranges::find(names, text); found != names.end() && !text.empty())
    return static_cast<int>(found - names.begin());
  int number = -1;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc{} || end != text.data() + text.size()) return std::nullopt;
  if (number < 0 || number >= ControllerCount) return std::nullopt;
  return number;
}

std::string MetaName(const TypMidiEvent& meta) {
  if (meta.MType == MetaSequencerSpecific) {
    if (HoldsXF(meta, 9, XFVersion)) return "XF Version ID";
    if (HoldsXFChord(meta)) return Text("XF-Akkord", "XF chord");
    return std::string(SequencerSpecificName);
  }
  for (const TMetaWord& word : MetaWords)
    if (word.Type == meta.MType) return std::string(word.Name);
  return Text("Unbekanntes Meta-Event", "Unknown meta event");
}

bool HoldsXFChord(const TypMidiEvent& event) noexcept { return HoldsXF(event, 7, XFChord); }

std::vector<std::string> KeySignatureNames() {
  std::vector<std::string> names(MajorKeys.begin(), MajorKeys.end());
  const std::string minor = Text(GermanMinor, EnglishMinor);
  for (const std::string_view key : MajorKeys) names.push_back(std::string(key) + minor);
  return names;
}

std::string KeySignatureName(std::span<const std::uint8_t> bytes) {
  const int accidentals = bytes.empty() ? 0 : static_cast<std::int8_t>(bytes[0]);
  const bool known = accidentals >= -MostAccidentals && accidentals <= MostAccidentals;
  std::string name(MajorKeys[static_cast<std::size_t>((known ? accidentals : 0) + MostAccidentals)]);
  if (bytes.size() > 1 && bytes[1] == 1) name += Text(GermanMinor, EnglishMinor);
  return name;
}

std::optional<std::array<std::uint8_t, 2>> KeySignatureOfName(std::string_view name) {
  std::uint8_t minor = 0;
  for (const std::string_view ending : {GermanMinor, EnglishMinor}) {
    if (minor != 0 || !name.ends_with(ending)) continue;
    minor = 1;
    name.remove_suffix(ending.size());
  }
  const auto found = std::ranges::find(MajorKeys, name);
  if (found == MajorKeys.end()) return std::nullopt;
  const auto accidentals = found - MajorKeys.begin() - MostAccidentals;
  return std::array{static_cast<std::uint8_t>(accidentals), minor};
}

std::vector<TMetaChoice> MetaChoices() {
  // "Lyrics" and "Cue Point" differ from the words of the rows. This is deliberate.
  return {{0x01, "Text"},          {0x02, "Copyright info"},
          {0x03, "Track name"},    {0x04, "Instrument name"},
          {0x05, "Lyrics"},        {0x06, "Marker"},
          {0x07, "Cue Point"},     {0x08, "Program Name"},
          {0x09, "Device Name"},   {0x4B, "Miditemp MP11 Meta"},
          {0x51, "Tempo"},         {0x58, "Time signature"},
          {0x59, "Key signature"}, {0x7F, Text("XF-Akkord", "XF chord")}};
}

std::vector<std::uint8_t> MetaDefault(int type) {
  const auto bytesOf = [](std::string_view text) {
    return std::vector<std::uint8_t>(text.begin(), text.end());
  };
  switch (type) {
    case MetaTempo: return {0x07, 0xA1, 0x20};     // 500,000 microseconds: 120
    case MetaTimeSignature: return {4, 2, 24, 8};  // 4/4
    case MetaKeySignature: return {0, 0};          // C
    case MetaMarker: return bytesOf("PCLP_Scroll");
    case MetaSequencerSpecific: {
      const auto chord = XFChordEvent(*XFChordOfName("C", false));
      return {chord.begin(), chord.end()};
    }
    default: return bytesOf("**** ");
  }
}

std::string HexText(std::span<const std::uint8_t> bytes) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  std::string text;
  text.reserve(bytes.size() * 3);
  for (const std::uint8_t byte : bytes) {
    if (!text.empty()) text += ' ';
    text += digits[byte >> 4];
    text += digits[byte & 0x0F];
  }
  return text;
}

std::optional<std::vector<std::uint8_t>> BytesOfHex(std::string_view text) {
  const auto isBlank = [](char c) { return c == ' ' || c == '\r' || c == '\n' || c == '\t'; };
  std::vector<std::uint8_t> bytes;
  for (std::size_t at = 0; at < text.size();) {
    if (isBlank(text[at])) {
      ++at;
      continue;
    }
    int byte = 0;
    std::size_t digits = 0;
    for (; at < text.size() && !isBlank(text[at]); ++at, ++digits) {
      const int digit = DigitOf(text[at]);
      if (digit < 0 || digits == 2) return std::nullopt;
      byte = byte * 16 + digit;
    }
    bytes.push_back(static_cast<std::uint8_t>(byte));
  }
  return bytes;
}

}  // namespace Sonarello
