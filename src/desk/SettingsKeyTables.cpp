#include "desk/SettingsKeyTables.h"

#include <iterator>

namespace Sonarello {

namespace {

using D = DeskSettings;

constexpr TSettingsKey Flag(std::string_view key, bool D::*member, std::string_view german,
                            std::string_view english) {
  return {key, TKeyKind::Flag, member, 0, 1, {}, german, english};
}

constexpr TSettingsKey Number(std::string_view key, std::int32_t D::*member, std::int32_t min,
                              std::int32_t max, std::string_view german, std::string_view english) {
  return {key, TKeyKind::Number, member, min, max, {}, german, english};
}

constexpr TSettingsKey String(std::string_view key, std::string D::*member, std::string_view german,
                              std::string_view english) {
  return {key, TKeyKind::Text, member, 0, 0, {}, german, english};
}

constexpr TSettingsKey Desk[] = {
    Flag("AutoBackupEnabled", &D::AutoBackupEnabled,
         "Ein geänderter Song wird alle 10 Minuten im Ordner AutoBackups gesichert",
         "A changed song is saved into the folder AutoBackups every 10 minutes"),
    Flag("AutoShowEventEditor", &D::AutoShowEventEditor,
         "Die Eventliste öffnet sich mit jedem geöffneten Song",
         "The event list opens with every song that is opened"),
    Flag("ConfirmTerminate", &D::ConfirmTerminate, "Vor dem Beenden wird nachgefragt",
         "You are asked before the program ends"),
    String("DestPath", &D::DestPath, "Ordner, in den zuletzt gespeichert wurde",
           "Folder that was last saved into"),
    Flag("DisplayActive", &D::DisplayActive,
         "Die Pegelanzeigen der Kanäle laufen bei der Wiedergabe mit",
         "The level meters of the channels move during playback"),
    Flag(
        "GrabMidiDriver", &D::GrabMidiDriver,
        "Die MIDI-Ausgänge werden auch im Stillstand geöffnet: Sounds und Regler sind sofort zu hören, "
        "andere Programme können die Ausgänge dann nicht benutzen",
        "The MIDI outputs are opened while the song stands, too: sounds and faders are heard at once, "
        "and "
        "other programs cannot use the outputs then"),
    Flag(
        "IntelligentTranspose", &D::IntelligentTranspose,
        "Transponiert wird je Kanal auf dem kürzeren Weg nach oben oder unten, damit die Stimmen nicht "
        "gemeinsam springen",
        "Each channel is transposed by the shorter way up or down, so that the voices do not jump "
        "together"),
    Number("IntelligentTransposeMode", &D::IntelligentTransposeMode, 1, 4,
           "Welche der vier Tabellen bestimmt, ab wann ein Kanal in die andere Richtung geht",
           "Which of the four tables says from where on a channel goes the other way"),
    String("Lang", &D::Lang, "Sprache des Programms; sie wechselt beim nächsten Start",
           "Language of the program; it changes with the next start"),
    Flag("LyricsExtraWindow", &D::LyricsExtraWindow, "Der Liedtext steht in einem eigenen Fenster",
         "The lyrics stand in a window of their own"),
    Number("LyricsFontColor", &D::LyricsFontColor, -1, 0xFFFFFF,
           "Farbe des Liedtextes in seinem Fenster; ohne Wahl die des Programms",
           "Colour of the lyrics in their window; without a choice, the program's"),
    String("LyricsFontName", &D::LyricsFontName, "Schrift des Liedtextes in seinem Fenster",
           "Font of the lyrics in their window"),
    Number("LyricsFontSize", &D::LyricsFontSize, 8, 200,
           "Größe der Schrift des Liedtextes in seinem Fenster, in Pixeln",
           "Size of the font of the lyrics in their window, in pixels"),
    Flag("LyricsFormMaximized", &D::LyricsFormMaximized,
         "Das Fenster des Liedtextes füllt den Bildschirm",
         "The window of the lyrics fills the screen"),
    Flag("LyricsInsertSpaceAtEOL", &D::LyricsInsertSpaceAtEOL,
         "Am Ende einer Liedtextzeile wird ein Leerzeichen eingefügt",
         "A blank is inserted at the end of a line of lyrics"),
    Flag("LyricsSpotLine", &D::LyricsSpotLine, "Die Zeile, die gerade gesungen wird, ist hervorgehoben",
         "The line that is being sung stands out"),
    String("MidiInputName", &D::MidiInputName, "MIDI-Eingang, von dem aufgenommen wird",
           "MIDI input that is recorded from"),
    String("MidiOutputDeviceID", &D::MidiOutputDeviceID, "Nummer des MIDI-Ausgangs beim Treiber",
           "Number of the MIDI output at the driver"),
    Number("RecLatency", &D::RecLatency, 0, 1000,
           "Um so viele Millisekunden werden aufgenommene Ereignisse nach vorn gerückt",
           "Recorded events are moved forward by this many milliseconds"),
    Number("RecMidiMode", &D::RecMidiMode, 0, 1,
           "Aufnahme: 0 ersetzt die Noten des Kanals, 1 mischt die neuen dazu",
           "Recording: 0 replaces the notes of the channel, 1 merges the new ones with them"),
    Flag("RecMidiThru", &D::RecMidiThru,
         "Was am MIDI-Eingang ankommt, klingt auf dem scharf geschalteten Kanal",
         "What arrives at the MIDI input sounds on the armed channel"),
    Number("RecQuantize", &D::RecQuantize, 0, 64, "Raster der Aufnahme in Noten je Viertel; 0: keines",
           "Grid of a recording in notes per quarter note; 0: none"),
    Flag("RecSendLocalOff", &D::RecSendLocalOff,
         "Bei der Wiedergabe wird Local Off gesendet, damit die Tastatur des Instruments nicht doppelt "
         "klingt",
         "Local Off is sent during playback, so that the instrument's keyboard does not sound twice"),
    Flag("RevoicerExtended", &D::RevoicerExtended, "Der Auto-Revoicer zeigt seine erweiterten Spalten",
         "The auto revoicer shows its further columns"),
    Number("ScaleIndex", &D::ScaleIndex, 0, static_cast<std::int32_t>(std::size(ScalePercents)) - 1,
           "Größe aller Fenster; sie wirkt sofort", "Size of all windows; it takes effect at once"),
    Flag("ShowLyrics", &D::ShowLyrics, "Der Liedtext läuft im Hauptfenster mit",
         "The lyrics follow the song in the main window"),
    Flag("ShowXFChords", &D::ShowXFChords,
         "Akkorde, die in der Datei stehen, gelten vor den aus den Noten erkannten",
         "Chords that stand in the file come before those recognised from the notes"),
    Number("SkinIndex", &D::SkinIndex, 0, 1, "Farben des Programms: 0 dunkel, 1 hell",
           "Colours of the program: 0 dark, 1 light"),
    String("SourcePath", &D::SourcePath, "Ordner, aus dem zuletzt geöffnet wurde",
           "Folder that was last opened from"),
    Flag("UseGermanChords", &D::UseGermanChords,
         "Akkorde und Noten heißen deutsch: H statt B, B statt Bb",
         "Chords and notes bear German names: H for B, B for Bb"),
    Number("VirtualSynthDelay", &D::VirtualSynthDelay, 0, 2000,
           "Um so viele Millisekunden klingen virtuelle Instrumente später; sie werden entsprechend "
           "früher "
           "gespielt",
           "Virtual instruments sound later by this many milliseconds; they are played earlier by as "
           "much"),
    Flag("x64_AutoSaveVSTiSet", &D::AutoSaveVSTiSet,
         "Die Einstellungen der virtuellen Instrumente werden neben dem Song gespeichert",
         "The settings of the virtual instruments are saved beside the song"),
    Flag("x64_IgnoreRolandSCVAChunk", &D::IgnoreRolandSCVAChunk,
         "Der gespeicherte Zustand des Sound Canvas VA wird beim Laden übergangen",
         "The stored state of the Sound Canvas VA is passed over on load"),
    String("x64_VSTiAudioDeviceName", &D::VSTiAudioDeviceName,
           "Audio-Ausgang der virtuellen Instrumente", "Audio output of the virtual instruments"),
    Flag("x64_VSTiEnabled", &D::VSTiEnabled, "Virtuelle Instrumente sind eingeschaltet",
         "Virtual instruments are switched on"),
    Flag("x64_VSTiShowEditorOnStart", &D::VSTiShowEditorOnStart,
         "Die Fenster der virtuellen Instrumente öffnen sich beim Start",
         "The windows of the virtual instruments open at start"),
    String("x64_VSTiSourcePath", &D::VSTiSourcePath, "Ordner der virtuellen Instrumente",
           "Folder of the virtual instruments"),
};

constexpr TSettingsKey Effects[] = {
    Flag("MotifAlwaysNewRouting", &D::MotifAlwaysNewRouting,
         "Das Audio-Routing wird bei jedem Song neu eingefügt, auch wenn er eines hat",
         "The audio routing is inserted anew into every song, even if it has one"),
    Flag("MotifAudioRouting", &D::MotifAudioRouting,
         "Die Audio-Ausgänge der Parts werden bearbeitet und gespeichert",
         "The audio outputs of the parts are worked on and saved"),
    Flag("MotifAutoChorus", &D::MotifAutoChorus,
         "Ein Song ohne Chorus-Einstellung bekommt beim Laden eine",
         "A song without a chorus setting gets one on load"),
    Flag("MotifAutoMasterEQ", &D::MotifAutoMasterEQ, "Ein Song ohne Master-EQ bekommt beim Laden einen",
         "A song without a master EQ gets one on load"),
    Flag("MotifAutoMasterFX", &D::MotifAutoMasterFX,
         "Ein Song ohne Master-Effekt bekommt beim Laden einen",
         "A song without a master effect gets one on load"),
    Flag("MotifAutoPartEQ", &D::MotifAutoPartEQ, "Ein Song ohne Part-EQ bekommt beim Laden einen",
         "A song without part EQs gets them on load"),
    Flag("MotifAutoReverb", &D::MotifAutoReverb,
         "Ein Song ohne Hall-Einstellung bekommt beim Laden eine",
         "A song without a reverb setting gets one on load"),
    Flag("MotifAutoRouting", &D::MotifAutoRouting,
         "Ein Song ohne Audio-Routing bekommt beim Laden eines",
         "A song without an audio routing gets one on load"),
    Flag("MotifMasterEQFX", &D::MotifMasterEQFX, "Master-EQ und Master-Effekt werden bearbeitet",
         "The master EQ and the master effect are worked on"),
    Number("MotifXFInsertsDelay", &D::MotifXFInsertsDelay, 0, 1000,
           "Pause nach den Insert-Effekten beim Motif XF in Millisekunden",
           "Pause behind the insert effects of the Motif XF in milliseconds"),
    Number("MotifXSInsertsDelay", &D::MotifXSInsertsDelay, 0, 1000,
           "Pause nach den Insert-Effekten beim Motif XS in Millisekunden",
           "Pause behind the insert effects of the Motif XS in milliseconds"),
    Flag("RolandIntegra7AlwaysNewRouting", &D::RolandIntegra7AlwaysNewRouting,
         "Das Audio-Routing wird bei jedem Song neu eingefügt, auch wenn er eines hat",
         "The audio routing is inserted anew into every song, even if it has one"),
    Flag("RolandIntegra7AudioRouting", &D::RolandIntegra7AudioRouting,
         "Die Audio-Ausgänge der Parts werden bearbeitet und gespeichert",
         "The audio outputs of the parts are worked on and saved"),
    Flag("RolandIntegra7AutoRouting", &D::RolandIntegra7AutoRouting,
         "Ein Song ohne Audio-Routing bekommt beim Laden eines",
         "A song without an audio routing gets one on load"),
    Number("RolandIntegra7ReverbLevel", &D::RolandIntegra7ReverbLevel, 0, 127,
           "Hallpegel, den das Audio-Routing einfügt", "Reverb level that the audio routing inserts"),
    Flag("YamahaAutoChorus", &D::YamahaAutoChorus,
         "Ein Song ohne Chorus-Einstellung bekommt beim Laden eine",
         "A song without a chorus setting gets one on load"),
    Flag("YamahaAutoMasterEQ", &D::YamahaAutoMasterEQ,
         "Ein Song ohne Master-EQ bekommt beim Laden einen",
         "A song without a master EQ gets one on load"),
    Flag("YamahaAutoRemoveMicVolume", &D::YamahaAutoRemoveMicVolume,
         "Die Mikrofon-Lautstärke wird beim Laden aus dem Song genommen",
         "The microphone volume is taken out of the song on load"),
    Flag("YamahaAutoReverb", &D::YamahaAutoReverb,
         "Ein Song ohne Hall-Einstellung bekommt beim Laden eine",
         "A song without a reverb setting gets one on load"),
    Flag("YamahaAutoVocalHarmony", &D::YamahaAutoVocalHarmony,
         "Ein Song ohne Vocal Harmony bekommt sie beim Laden",
         "A song without vocal harmony gets it on load"),
    Number("YamahaAutoVocalHarmonyIdx", &D::YamahaAutoVocalHarmonyIdx, 0, 127,
           "Welche Vocal Harmony ein Song bekommt: ihr Platz in der Liste",
           "Which vocal harmony a song gets: its place in the list"),
    Flag("YamahaDSPShowAllParams", &D::YamahaDSPShowAllParams,
         "Die Effekt-Fenster zeigen auch Parameter, die ein Effekt nicht benutzt",
         "The effect windows show parameters, too, that an effect does not use"),
    Number("YamahaDSPsMaxMeasure", &D::YamahaDSPsMaxMeasure, 1, 999,
           "Bis zu diesem Takt werden im Song Effekt-Sysex gesucht",
           "Effect sysexes are looked for in the song up to this measure"),
    Flag("YamahaMasterEQ", &D::YamahaMasterEQ, "Der Master Equalizer wird bearbeitet und gespeichert",
         "The master equalizer is worked on and saved"),
    Flag("YamahaVocalHarmony", &D::YamahaVocalHarmony, "Vocal Harmony wird bearbeitet und gespeichert",
         "Vocal harmony is worked on and saved"),
};

constexpr TSettingsKey KeptText(std::string_view key, std::string_view german,
                                std::string_view english) {
  return {key, TKeyKind::Text, std::monostate{}, 0, 0, {}, german, english};
}

constexpr TSettingsKey KeptFlag(std::string_view key, std::string_view german,
                                std::string_view english) {
  return {key, TKeyKind::Flag, std::monostate{}, 0, 1, "0", german, english};
}

constexpr TSettingsKey KeptNumber(std::string_view key, std::int32_t min, std::int32_t max,
                                  std::string_view otherwise, std::string_view german,
                                  std::string_view english) {
  return {key, TKeyKind::Number, std::monostate{}, min, max, otherwise, german, english};
}

constexpr std::int32_t Least = -0x7FFFFFFF - 1;
constexpr std::int32_t Largest = 0x7FFFFFFF;

constexpr std::string_view MetersGerman =
    "Aussehen der früheren Pegelanzeige; das Thema bestimmt es jetzt";
constexpr std::string_view MetersEnglish = "Look of a former level display; the theme decides it now";
constexpr std::string_view KeyEditorGerman =
    "Ansicht des Key-Editors, der sie selbst liest und schreibt";
constexpr std::string_view KeyEditorEnglish =
    "View of the key editor, which reads and writes it itself";
constexpr std::string_view SlotGerman = "Plug-in eines Platzes; der Plug-in-Host liest und schreibt es";
constexpr std::string_view SlotEnglish = "Plug-in of a slot; the plug-in host reads and writes it";
constexpr std::string_view OldRouteGerman = "Frühere Form der Route 00; wird nur aufbewahrt";
constexpr std::string_view OldRouteEnglish = "Former form of route 00; only kept";

constexpr std::string_view UnreadGerman = "Nichts im Programm liest es; wird nur aufbewahrt";
constexpr std::string_view UnreadEnglish = "Nothing in the program reads it; only kept";

constexpr TSettingsKey Kept[] = {
    KeptFlag("AlphaGMStructure", UnreadGerman, UnreadEnglish),
    KeptFlag("AudioProductionMulti",
             "Audio-Produktion mehrerer Dateien; ihr Fenster liest und schreibt es",
             "Audio production of several files; its window reads and writes it"),
    KeptNumber(
        "ChordTextCounter", 0, 9999, "4",
        "Zahl der eigenen Akkordtexte ChordText1, ChordText2 ...; die Liste liest und schreibt sie",
        "Number of the user's chord texts ChordText1, ChordText2 ...; the list reads and writes it"),
    KeptNumber("DisplayFontColor", Least, Largest, "0", MetersGerman, MetersEnglish),
    KeptNumber("DisplayFontHeight", Least, Largest, "0", MetersGerman, MetersEnglish),
    KeptText("DisplayFontName", MetersGerman, MetersEnglish),
    KeptNumber("DisplayFontSize", Least, Largest, "0", MetersGerman, MetersEnglish),
    KeptNumber("DisplayLevelBack", Least, Largest, "0", MetersGerman, MetersEnglish),
    KeptNumber("DisplayLevelColor", Least, Largest, "0", MetersGerman, MetersEnglish),
    KeptNumber("DisplaySpacing", Least, Largest, "0", MetersGerman, MetersEnglish),
    KeptNumber("DisplayStripes", Least, Largest, "0", MetersGerman, MetersEnglish),
    KeptNumber("DisplayTickHeight", Least, Largest, "0", MetersGerman, MetersEnglish),
    KeptFlag("Flag_SpecialA", UnreadGerman, UnreadEnglish),
    KeptNumber("KeyEditor_NoteLengthIdx", 0, 11, "3", KeyEditorGerman, KeyEditorEnglish),
    KeptNumber("KeyEditor_QNWidth", 16, 320, "80", KeyEditorGerman, KeyEditorEnglish),
    KeptNumber("KeyEditor_RasterIdx", 0, 11, "3", KeyEditorGerman, KeyEditorEnglish),
    KeptNumber("KeyEditor_WhiteNoteHeight", 10, 40, "22", KeyEditorGerman, KeyEditorEnglish),
    KeptFlag("Korgi30GMStructure", UnreadGerman, UnreadEnglish),
    KeptFlag("LimexGMStructure", UnreadGerman, UnreadEnglish),
    KeptText("LastMidifilesList", "Zuletzt geöffnete Songs; das Menü liest und schreibt sie",
             "Songs opened last; the menu reads and writes them"),
    KeptText("MidiInstrument", OldRouteGerman, OldRouteEnglish),
    KeptText("MidiInstrument00",
             "Hauptinstrument: es bestimmt Soundnamen und Effekte; die Routen lesen und schreiben es",
             "Main instrument: it decides sound names and effects; the routes read and write it"),
    KeptText("MidiOutput", OldRouteGerman, OldRouteEnglish),
    KeptText("MidiOutput00", "MIDI-Ausgang des Hauptinstruments; die Routen lesen und schreiben ihn",
             "MIDI output of the main instrument; the routes read and write it"),
    KeptNumber("MidiOutputPriority", Least, Largest, "0", UnreadGerman, UnreadEnglish),
    KeptFlag("ResetBassDrumReverb", UnreadGerman, UnreadEnglish),
    KeptNumber("SmallerMainFormGaugeColor", Least, Largest, "0", MetersGerman, MetersEnglish),
    KeptFlag("VSTiEnabled", "Frühere Form von x64_VSTiEnabled; wird nur aufbewahrt",
             "Former form of x64_VSTiEnabled; only kept"),
    KeptText("x64_VST1FileName", SlotGerman, SlotEnglish),
    KeptText("x64_VST2FileName", SlotGerman, SlotEnglish),
    KeptText("x64_VSTi1FileName", SlotGerman, SlotEnglish),
    KeptText("x64_VSTi2FileName", SlotGerman, SlotEnglish),
    KeptText("x64_VSTi3FileName", SlotGerman, SlotEnglish),
    KeptText("x64_VSTi4FileName", SlotGerman, SlotEnglish),
    KeptText("x64_VSTi5FileName", SlotGerman, SlotEnglish),
};

}  // namespace

std::span<const TSettingsKey> DeskKeys() { return Desk; }
std::span<const TSettingsKey> EffectKeys() { return Effects; }
std::span<const TSettingsKey> KeptKeys() { return Kept; }

}  // namespace Sonarello
