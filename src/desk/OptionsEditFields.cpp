#include "desk/OptionsEditFields.h"

#include <algorithm>

#include "core/TextOrder.h"
#include "core/Texts.h"
#include "desk/MyRegistry.h"

namespace Sonarello {

namespace {

constexpr std::string_view MainHintGerman = "Das Hauptinstrument bestimmt Soundnamen und Effekte.";
constexpr std::string_view MainHintEnglish = "The main instrument decides sound names and effects.";

constexpr TOptionPageInfo Pages[] = {
    {TOptionPage::Options, "TI_Options", "Allgemein", "General",
     "Die Sprache wechselt beim nächsten Start.", "The language changes with the next start."},
    {TOptionPage::Midi, "TI_MIDI", "MIDI", "MIDI", MainHintGerman, MainHintEnglish},
    {TOptionPage::MidiRouting, "TI_MidiRouting", "MIDI-Routing", "MIDI routing", MainHintGerman,
     MainHintEnglish},
    {TOptionPage::YamahaDSPs, "TI_YamahaDSPs", "Yamaha DSPs", "Yamaha DSPs", MainHintGerman,
     MainHintEnglish},
    {TOptionPage::MotifDSPs, "TI_MotifDSPs", "Motif DSPs", "Motif DSPs", MainHintGerman,
     MainHintEnglish},
    {TOptionPage::MotifAudioRouting, "TI_MotifAudioRouting", "Motif Audio-Routing",
     "Motif audio routing", MainHintGerman, MainHintEnglish},
    {TOptionPage::Integra7AudioRouting, "TI_Integra7AudioRouting", "Integra-7 Audio-Routing",
     "Integra-7 audio routing", MainHintGerman, MainHintEnglish},
};

using enum TOptionGroup;
using enum TOptionControl;
using enum TOptionRoom;
using enum TOptionPlace;

constexpr TOptionGroupInfo Groups[] = {
    {General, TOptionPage::Options, "GB_General", "Allgemein", "General"},
    {Lyrics, TOptionPage::Options, "GB_Lyrics", "Liedtext und Akkorde", "Lyrics and chords"},
    {Files, TOptionPage::Options, "GB_Files", "Laden und Speichern", "Loading and saving"},
    {Instruments, TOptionPage::Options, "GB_Instruments", "Instrumente", "Instruments"},
    {MidiOut, TOptionPage::Midi, "GB_MIDIout", "MIDI-Ausgang", "MIDI output"},
    {MidiIn, TOptionPage::Midi, "GB_MIDIin", "MIDI-Eingang und Aufnahme", "MIDI input and recording"},
    {Routing, TOptionPage::MidiRouting, "GB_MidiRouting", "MIDI-Routing", "MIDI routing"},
    {Yamaha, TOptionPage::YamahaDSPs, "GB_YamahaDSPs", "Yamaha DSPs", "Yamaha DSPs"},
    {Motif, TOptionPage::MotifDSPs, "GB_MotifDSPs", "Motif DSPs", "Motif DSPs"},
    {MotifRouting, TOptionPage::MotifAudioRouting, "GB_MotifAudioRouting", "Motif Audio-Routing",
     "Motif audio routing"},
    {Integra7Routing, TOptionPage::Integra7AudioRouting, "GB_Integra7AudioRouting",
     "Integra-7 Audio-Routing", "Integra-7 audio routing"},
};

constexpr TOptionItem Languages[] = {{"de", "Deutsch", "Deutsch"}, {"en", "English", "English"}};
constexpr TOptionItem Skins[] = {{"0", "Dunkel", "Dark"}, {"1", "Hell", "Light"}};
constexpr TOptionItem Scales[] = {{"0", "100 %", "100 %"}, {"1", "120 %", "120 %"},
                                  {"2", "130 %", "130 %"}, {"3", "150 %", "150 %"},
                                  {"4", "160 %", "160 %"}, {"5", "180 %", "180 %"}};
constexpr TOptionItem Modes[] = {{"1", "1", "1"}, {"2", "2", "2"}, {"3", "3", "3"}, {"4", "4", "4"}};
constexpr TOptionItem RecordingModes[] = {{"0", "Ersetzen", "Replace"}, {"1", "Mischen", "Merge"}};
constexpr TOptionItem Grids[] = {
    {"0", "Aus", "Off"},   {"1", "1/4", "1/4"},       {"2", "1/8", "1/8"},   {"3", "1/8 T", "1/8 T"},
    {"4", "1/16", "1/16"}, {"6", "1/16 T", "1/16 T"}, {"8", "1/32", "1/32"}, {"16", "1/64", "1/64"}};
constexpr TOptionItem Maps[] = {{"0", "Keine", "None"},
                                {"1", "SC-55", "SC-55"},
                                {"2", "SC-88", "SC-88"},
                                {"3", "SC-88Pro", "SC-88Pro"},
                                {"4", "SC-8820", "SC-8820"}};

constexpr std::string_view YamahaKey = "YamahaDSPsEnabled";
constexpr std::string_view MotifKey = "MotifDSPsEnabled";

constexpr TOptionField Fields[] = {
    {"Lang", General, Radio, "Sprache", "Language", Built, {}, Languages},
    {"SkinIndex", General, Segments, "Darstellung", "Appearance", Built, {}, Skins},
    {"ScaleIndex", General, Combo, "Fenstergröße", "Window scale", Built, {}, Scales},
    {"MinNoteLength", General, Number, "Kürzeste Notenlänge (Ticks)", "Shortest note (ticks)"},
    {"IntelligentTransposeMode", General, Segments, "Modus der Transponierung", "Transposition mode",
     Built, "IntelligentTranspose", Modes},
    {"AutoSysex", General, Check, "Sysex automatisch anpassen", "Fit sysex automatically"},
    {"AutoProgChange", General, Check, "Nicht vorhandene Sounds automatisch ersetzen",
     "Replace missing sounds automatically"},
    {"AutoBackupEnabled", General, Check, "Automatisches Backup alle 10 Minuten",
     "Automatic backup every 10 minutes"},
    {"ConfirmTerminate", General, Check, "Beim Beenden nachfragen", "Ask before the end"},
    {"IntelligentTranspose", General, Check, "Intelligente Transponierung",
     "Intelligent transposition"},
    {"RemoveCountIn", General, Check, "Vorzähler beim Laden entfernen", "Remove count-in on load"},
    {"InsertSongName", General, Check, "Songname in die Datei einfügen",
     "Insert song name into the file"},
    {"SaveMidiRunningMode", General, Check, "Mit Running Status speichern", "Save with running status"},
    {"SysexsOnExtraTrack", General, Check, "Sysex auf eigener Spur speichern",
     "Save sysex on a track of its own"},
    {"DisplayActive", General, Check, "Pegelanzeige aktiv", "Level meters on"},

    {"LyricsFontName", Lyrics, Font, "Schrift der Liedtexte", "Font of the lyrics", LyricsWindow},
    {"LyricsFontSize",
     Lyrics,
     Number,
     "Schriftgröße (Pixel)",
     "Font size (pixels)",
     LyricsWindow,
     {},
     {},
     {},
     Joined},
    {"LyricsFontColor",
     Lyrics,
     Colour,
     "Farbe der Liedtexte",
     "Colour of the lyrics",
     LyricsWindow,
     {},
     {},
     {},
     Joined},
    {"ShowLyrics", Lyrics, Check, "Liedtext anzeigen", "Show lyrics"},
    {"LyricsExtraWindow", Lyrics, Check, "Liedtext in eigenem Fenster",
     "Lyrics in a window of their own", LyricsWindow},
    {"ShowXFChords", Lyrics, Check, "XF-Akkorde anzeigen", "Show XF chords", LyricsWindow},
    {"UseGermanChords", Lyrics, Check, "Deutsche Akkordnamen (H statt B)",
     "German chord names (H for B)"},
    {"LyricsSpotLine", Lyrics, Check, "Aktuelle Zeile hervorheben", "Highlight current line",
     LyricsWindow},
    {"LyricsInsertSpaceAtEOL", Lyrics, Check, "Leerzeichen am Zeilenende einfügen",
     "Insert blank at line ends", LyricsWindow},

    {"UnmixFormat0", Files, Check, "Format 0 nach Kanälen aufteilen", "Split format 0 by channel"},
    {"GeneralMidiCheck", Files, Check, "Noten beim Laden prüfen", "Check notes on load"},
    {"RemoveCountInRadical", Files, Check, "Takte des Vorzählers mit entfernen",
     "Remove the count-in's measures, too", Built, "RemoveCountIn"},
    {"QuickTakerPresent", Files, Check, "Quick-Taker angeschlossen", "Quick-Taker connected", Built,
     "RemoveCountIn"},
    {"PrevCommandMode", Files, Check, "Running Status über Metas hinweg",
     "Running status across metas"},
    {"WordBoxSearch", Files, Check, "Word-Box-Dateien erkennen", "Recognise word-box files"},
    {"DontSaveSMF33", Files, Check, "Port-Metas nicht speichern", "Do not save port metas"},
    {"AutoShowEventEditor", Files, Check, "Eventliste mit dem Song öffnen",
     "Open event list with the song"},

    {"RolandSCDefaultMap",
     Instruments,
     Check,
     "Roland SC: Sound-Map vorgeben",
     "Roland SC: prescribe sound map",
     Built,
     {},
     {},
     {},
     Alone},
    {"RolandSCDefaultMapIdx", Instruments, Combo, "Sound-Map des Roland SC",
     "Sound map of the Roland SC", Built, "RolandSCDefaultMap", Maps},
    {"SpecialD", Instruments, Check, "Roland GS: GM-Reset und Hall", "Roland GS: GM reset and reverb"},
    {"LimexTE200", Instruments, Check, "Limex: TE200 eingebaut", "Limex: TE200 built in"},
    {"KorgDSPsEnabled", Instruments, Check, "Korg Pa: Part-EQ benutzen", "Korg Pa: use part EQ"},
    {"RevoicerExtended", Instruments, Check, "Auto-Revoicer: erweiterte Ansicht",
     "Auto revoicer: extended view"},

    {"MidiInstrument00", MidiOut, MainInstrument, "Instrument", "Instrument"},
    {"MidiOutput00", MidiOut, MainOutput, "MIDI-Ausgang", "MIDI output"},
    {"VirtualSynthDelay",
     MidiOut,
     Number,
     "Verzögerung virtueller Instrumente",
     "Delay of virtual instruments",
     Built,
     {},
     {},
     "ms"},
    {"GrabMidiDriver", MidiOut, Check, "MIDI-Treiber belegen", "Grab MIDI driver"},
    {"MultiMidi", MidiOut, Check, "Mehrere MIDI-Ausgänge benutzen", "Use several MIDI outputs"},

    {"MidiInputName", MidiIn, Input, "MIDI-Eingang", "MIDI input"},
    {"RecMidiMode", MidiIn, Segments, "Aufnahmemodus", "Recording mode", Recording, {}, RecordingModes},
    {"RecQuantize", MidiIn, Combo, "Quantisierung", "Quantisation", Recording, {}, Grids},
    {"RecLatency", MidiIn, Number, "Latenzausgleich", "Latency compensation", Recording, {}, {}, "ms"},
    {"RecMidiThru", MidiIn, Check, "MIDI Thru", "MIDI Thru", Recording},
    {"RecSendLocalOff", MidiIn, Check, "Local Off bei Wiedergabe senden",
     "Send Local Off during playback", Recording},

    {YamahaKey, Yamaha, Check, "Yamaha-DSPs benutzen", "Use Yamaha DSPs", Built, {}, {}, {}, Alone},
    {"YamahaAutoChorus", Yamaha, Check, "Chorus automatisch einfügen", "Insert chorus automatically",
     Effects, YamahaKey},
    {"YamahaAutoReverb", Yamaha, Check, "Reverb automatisch einfügen", "Insert reverb automatically",
     Effects, YamahaKey},
    {"YamahaMasterEQ", Yamaha, Check, "Master Equalizer", "Master Equalizer", Effects, YamahaKey},
    {"YamahaAutoMasterEQ", Yamaha, Check, "Master EQ automatisch einfügen",
     "Insert master EQ automatically", Effects, "YamahaMasterEQ"},
    {"YamahaVocalHarmony", Yamaha, Check, "Vocal Harmony", "Vocal Harmony", Effects, YamahaKey},
    {"YamahaAutoVocalHarmony", Yamaha, Check, "Vocal Harmony automatisch einfügen",
     "Insert vocal harmony automatically", Effects, "YamahaVocalHarmony"},
    {"YamahaAutoRemoveMicVolume", Yamaha, Check, "Mikrofon-Lautstärke aus dem Song entfernen",
     "Remove microphone volume from the song", Effects, YamahaKey},
    {"YamahaDSPShowAllParams", Yamaha, Check, "Alle Parameter anzeigen", "Show all parameters", Effects,
     YamahaKey},
    {"YamahaDSPsMaxMeasure", Yamaha, Number, "Effekt-Sysex suchen bis Takt",
     "Look for effect sysex up to measure", Effects, YamahaKey},
    {"YamahaDSPsFromPosition", Yamaha, Number, "Einfügen ab Position (Ticks)",
     "Insert from position (ticks)", Built, YamahaKey},
    {"YamahaDSPsSysexDelta", Yamaha, Number, "Abstand zwischen Sysex (Ticks)",
     "Distance between sysex (ticks)", Built, YamahaKey},
    {"YamahaXGSxPosition", Yamaha, Number, "Position des XG-Resets (Ticks)",
     "Position of the XG reset (ticks)"},
    {"YamahaAutoVocalHarmonyIdx", Yamaha, Number, "Eingefügte Vocal Harmony (Nr.)",
     "Inserted vocal harmony (no.)", Effects, "YamahaAutoVocalHarmony"},

    {MotifKey, Motif, Check, "Motif-DSPs benutzen", "Use Motif DSPs", Built, {}, {}, {}, Alone},
    {"MotifAutoChorus", Motif, Check, "Chorus automatisch einfügen", "Insert chorus automatically",
     Effects, MotifKey},
    {"MotifAutoReverb", Motif, Check, "Reverb automatisch einfügen", "Insert reverb automatically",
     Effects, MotifKey},
    {"MotifMasterEQFX", Motif, Check, "Master-EQ und Master-Effekt", "Master EQ and master effect",
     Effects, MotifKey},
    {"MotifAutoMasterEQ", Motif, Check, "Master EQ automatisch einfügen",
     "Insert master EQ automatically", Effects, "MotifMasterEQFX"},
    {"MotifAutoPartEQ", Motif, Check, "Part-EQ automatisch einfügen", "Insert part EQs automatically",
     Effects, MotifKey},
    {"MotifAutoMasterFX", Motif, Check, "Master-Effekt automatisch einfügen",
     "Insert master effect automatically", Effects, "MotifMasterEQFX"},
    {"MotifDSPsFromPosition", Motif, Number, "Einfügen ab Position (Ticks)",
     "Insert from position (ticks)", Built, MotifKey},
    {"MotifDSPsSysexDelta", Motif, Number, "Abstand zwischen Sysex (Ticks)",
     "Distance between sysex (ticks)", Built, MotifKey},
    {"MotifGMSxPosition", Motif, Number, "Position des GM-Resets (Ticks)",
     "Position of the GM reset (ticks)"},
    {"MotifXFInsertsDelay",
     Motif,
     Number,
     "Pause nach Inserts (Motif XF)",
     "Pause behind inserts (Motif XF)",
     Effects,
     MotifKey,
     {},
     "ms"},
    {"MotifXSInsertsDelay",
     Motif,
     Number,
     "Pause nach Inserts (Motif XS)",
     "Pause behind inserts (Motif XS)",
     Effects,
     MotifKey,
     {},
     "ms"},

    {"MotifAudioRouting",
     MotifRouting,
     Check,
     "Audio-Routing benutzen",
     "Use audio routing",
     Effects,
     {},
     {},
     {},
     Alone},
    {"MotifAutoRouting", MotifRouting, Check, "Audio-Routing automatisch einfügen",
     "Insert audio routing automatically", Effects, "MotifAudioRouting"},
    {"MotifAlwaysNewRouting", MotifRouting, Check, "Vorhandenes Audio-Routing ersetzen",
     "Replace existing audio routing", Effects, "MotifAutoRouting"},

    {"RolandIntegra7AudioRouting",
     Integra7Routing,
     Check,
     "Audio-Routing benutzen",
     "Use audio routing",
     Effects,
     {},
     {},
     {},
     Alone},
    {"RolandIntegra7AutoRouting", Integra7Routing, Check, "Audio-Routing automatisch einfügen",
     "Insert audio routing automatically", Effects, "RolandIntegra7AudioRouting"},
    {"RolandIntegra7AlwaysNewRouting", Integra7Routing, Check, "Vorhandenes Audio-Routing ersetzen",
     "Replace existing audio routing", Effects, "RolandIntegra7AutoRouting"},
    {"RolandIntegra7ReverbLevel", Integra7Routing, Number, "Hallpegel", "Reverb level", Effects,
     "RolandIntegra7AudioRouting"},
};

}  // namespace

std::span<const TOptionPageInfo> OptionPages() { return Pages; }
std::span<const TOptionGroupInfo> OptionGroups() { return Groups; }
std::span<const TOptionField> OptionFields() { return Fields; }

const TOptionField* FindOptionField(std::string_view key) {
  const std::string folded = SmallLetters(key);
  const auto found = std::ranges::find_if(
      Fields, [&](const TOptionField& field) { return SmallLetters(field.Key) == folded; });
  return found == std::end(Fields) ? nullptr : found;
}

std::string RoomReason(TOptionRoom room) {
  switch (room) {
    case Built: return {};
    case Effects:
      return Text("Die Effekte der Instrumente sind noch nicht eingebaut.",
                  "The instruments' effects are not built in yet.");
    case Recording:
      return Text("Die Aufnahme ist noch nicht eingebaut.", "Recording is not built in yet.");
    case LyricsWindow:
      return Text("Das Liedtext-Fenster ist noch nicht eingebaut.",
                  "The lyrics window is not built in yet.");
  }
  return {};
}

}  // namespace Sonarello
