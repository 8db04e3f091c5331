#include "core/Options.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "core/Texts.h"

namespace Sonarello {

namespace {

constexpr TOption Flag(std::string_view key, bool Options::*member, std::string_view german,
                       std::string_view english) {
  return {key, member, 0, 1, german, english};
}

constexpr TOption Number(std::string_view key, std::int32_t Options::*member, std::int32_t min,
                         std::int32_t max, std::string_view german, std::string_view english) {
  return {key, member, min, max, german, english};
}

using O = Options;

constexpr TOption Table[] = {
    Flag("AutoProgChange", &O::AutoProgChange,
         "Programmwechsel und Bankwahlen werden ins Setup-Fenster gestellt, geordnet und ergänzt",
         "Program changes and bank selects are moved to the setup window, put in order and completed"),
    Flag("AutoSysex", &O::AutoSysex, "Sysex wird an das Hauptinstrument angepasst",
         "Sysex is fitted to the main instrument"),
    Flag("DontSaveSMF33", &O::DontSaveSMF33,
         "Die Port-Metas (Typ 33) am Anfang der Spuren werden nicht gespeichert",
         "The port metas (type 33) at the head of the tracks are not saved"),
    Flag("GeneralMidiCheck", &O::GeneralMidiCheck,
         "Beim Laden wird geprüft, ob zu jeder Note ein Ende gehört",
         "On load it is checked that every note has an end"),
    Flag("InsertSongName", &O::InsertSongName,
         "Der Dateiname wird als Songname (Spurname auf Spur 0) eingefügt",
         "The file's name is put in as the song's name (track name on track 0)"),
    Flag("KorgDSPsEnabled", &O::KorgDSPsEnabled, "Der Part-EQ der Korg-Pa-Instrumente wird bearbeitet",
         "The part EQ of the Korg Pa instruments is worked on"),
    Flag("LimexTE200", &O::LimexTE200, "Die Erweiterung TE200 ist im Limex HQ200 oder HQ260 eingebaut",
         "The TE200 extension is built into the Limex HQ200 or HQ260"),
    Number("MinNoteLength", &O::MinNoteLength, 0, 960,
           "Kürzeste Notenlänge in Ticks; kürzere Noten werden beim Laden verlängert",
           "Shortest length of a note in ticks; shorter notes are lengthened on load"),
    Flag("MotifDSPsEnabled", &O::MotifDSPsEnabled,
         "Die Effekte der Motif-Racks werden als Sysex bearbeitet und gespeichert",
         "The effects of the Motif racks are worked on and saved as sysex"),
    Number("MotifDSPsFromPosition", &O::MotifDSPsFromPosition, 0, 100000,
           "Tick, ab dem die Effekt-Sysex der Motif-Racks gespeichert werden",
           "Tick from which the effect sysexes of the Motif racks are saved"),
    Number("MotifDSPsSysexDelta", &O::MotifDSPsSysexDelta, 0, 1000,
           "Abstand zwischen zwei Effekt-Sysex der Motif-Racks in Ticks",
           "Ticks between two effect sysexes of the Motif racks"),
    Number("MotifGMSxPosition", &O::MotifGMSxPosition, 0, 100000,
           "Tick des GM-Resets vor den Effekt-Sysex der Motif-Racks",
           "Tick of the GM reset in front of the effect sysexes of the Motif racks"),
    Flag("MultiMidi", &O::MultiMidi,
         "Mehrere MIDI-Ausgänge: die Routen MidiInstrument00 bis MidiInstrument99 gelten",
         "Several MIDI outputs: the routes MidiInstrument00 to MidiInstrument99 are in force"),
    Number("PrevCommandMode", &O::PrevCommandMode, 0, 255,
           "0: Metas und Sysex beenden den Running Status; sonst gilt er über sie hinweg",
           "0: metas and sysexes end running status; else it survives them"),
    Flag("QuickTakerPresent", &O::QuickTakerPresent,
         "Ein Quick-Taker ist angeschlossen: beim Entfernen eines Vorzählers bleiben seine Takte",
         "A Quick-Taker is connected: a removed count-in leaves its measures"),
    Flag("RemoveCountIn", &O::RemoveCountIn, "Ein Vorzähler auf Kanal 10 wird beim Laden entfernt",
         "A count-in on channel 10 is removed on load"),
    Flag("RemoveCountInRadical", &O::RemoveCountInRadical,
         "Mit dem Vorzähler werden auch seine Takte entfernt",
         "The measures of a removed count-in go as well"),
    Flag("RolandSCDefaultMap", &O::RolandSCDefaultMap,
         "Roland GS: Bankwahl LSB 0 steht für den gewählten Sound-Map",
         "Roland GS: bank select LSB 0 stands for the chosen sound map"),
    Number("RolandSCDefaultMapIdx", &O::RolandSCDefaultMapIdx, 0, 4,
           "Nummer dieses Sound-Maps ab 1; 0: keiner", "Number of that sound map from 1; 0: none"),
    Flag("SaveMidiRunningMode", &O::SaveMidiRunningMode, "Gespeichert wird mit Running Status",
         "Files are saved with running status"),
    Flag("SpecialD", &O::SpecialD,
         "Roland GS: GM-Reset vor dem GS-Reset, der bei Tick 62 steht, dazu ein GS-Hall",
         "Roland GS: a GM reset in front of the GS reset, which stands at tick 62, and a GS reverb"),
    Flag("SysexsOnExtraTrack", &O::SysexsOnExtraTrack, "Sysex kommt auf eine eigene Spur",
         "Sysex goes to a track of its own"),
    Flag("UnmixFormat0", &O::UnmixFormat0,
         "Eine Datei im Format 0 wird beim Laden nach Kanälen aufgeteilt",
         "A format 0 file is split by channel on load"),
    Flag("WordBoxSearch", &O::WordBoxSearch,
         "Word-Box-Dateien werden erkannt; ihre Texte gelten als Liedtext",
         "Word-box files are recognised; their texts count as lyrics"),
    Flag("YamahaDSPsEnabled", &O::YamahaDSPsEnabled,
         "Die Effekte der Yamaha-Keyboards werden als Sysex bearbeitet und gespeichert",
         "The effects of the Yamaha keyboards are worked on and saved as sysex"),
    Number("YamahaDSPsFromPosition", &O::YamahaDSPsFromPosition, 0, 100000,
           "Tick, ab dem die Effekt-Sysex der Yamaha-Keyboards gespeichert werden",
           "Tick from which the effect sysexes of the Yamaha keyboards are saved"),
    Number("YamahaDSPsSysexDelta", &O::YamahaDSPsSysexDelta, 0, 1000,
           "Abstand zwischen zwei Effekt-Sysex der Yamaha-Keyboards in Ticks",
           "Ticks between two effect sysexes of the Yamaha keyboards"),
    Number("YamahaXGSxPosition", &O::YamahaXGSxPosition, 0, 100000,
           "Tick des XG-Resets vor den Effekt-Sysex der Yamaha-Keyboards",
           "Tick of the XG reset in front of the effect sysexes of the Yamaha keyboards"),
};

constexpr char Lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool SameWord(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return Lower(x) == Lower(y); });
}

std::optional<std::int32_t> ReadFlag(std::string_view text) {
  for (const std::string_view yes : {"1", "on", "true", "yes", "ein", "an", "ja", "wahr"})
    if (SameWord(text, yes)) return 1;
  for (const std::string_view no : {"0", "off", "false", "no", "aus", "nein", "falsch"})
    if (SameWord(text, no)) return 0;
  return std::nullopt;
}

enum class NumberFault { None, NoNumber, OutOfRange };

NumberFault ReadNumber(std::string_view text, const TOption& option, std::int32_t& value) {
  const char* const end = text.data() + text.size();
  const auto [behind, fault] = std::from_chars(text.data(), end, value);
  if (fault == std::errc::invalid_argument || behind != end) return NumberFault::NoNumber;
  if (fault != std::errc{} || value < option.Min || value > option.Max) return NumberFault::OutOfRange;
  return NumberFault::None;
}

std::string RangeText(const TOption& option) {
  const std::string min = std::to_string(option.Min);
  const std::string max = std::to_string(option.Max);
  return std::string(option.Key) +
         Text(": muss von " + min + " bis " + max + " gehen", ": must be from " + min + " to " + max);
}

}  // namespace

std::span<const TOption> OptionTable() { return Table; }

const TOption* FindOption(std::string_view key) {
  const auto found = std::find_if(std::begin(Table), std::end(Table),
                                  [&](const TOption& option) { return SameWord(option.Key, key); });
  return found == std::end(Table) ? nullptr : found;
}

std::string OptionText(const Options& options, const TOption& option) {
  if (option.IsFlag()) return options.*std::get<0>(option.Member) ? "1" : "0";
  return std::to_string(options.*std::get<1>(option.Member));
}

std::optional<std::string> SetOption(Options& options, std::string_view key, std::string_view text) {
  const TOption* option = FindOption(key);
  if (option == nullptr)
    return std::string(key) + Text(": unbekannte Einstellung", ": unknown setting");
  if (option->IsFlag()) {
    const std::optional<std::int32_t> flag = ReadFlag(text);
    if (!flag) return std::string(option->Key) + Text(": muss 0 oder 1 sein", ": must be 0 or 1");
    options.*std::get<0>(option->Member) = *flag != 0;
    return std::nullopt;
  }
  std::int32_t value = 0;
  switch (ReadNumber(text, *option, value)) {
    case NumberFault::NoNumber:
      return std::string(option->Key) + Text(": keine Zahl", ": not a number");
    case NumberFault::OutOfRange: return RangeText(*option);
    case NumberFault::None: break;
  }
  options.*std::get<1>(option->Member) = value;
  return std::nullopt;
}

}  // namespace Sonarello
