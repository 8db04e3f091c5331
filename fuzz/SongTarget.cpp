#include <array>
#include <string>
#include <vector>

#include "Folder.h"
#include "InputReader.h"
#include "Targets.h"
#include "core/EventList.h"
#include "core/MidiFileWriter.h"
#include "core/OpenPipeline.h"
#include "instruments/SoundNames.h"

namespace Sonarello::Fuzz {

namespace {

using Bytes = std::vector<std::uint8_t>;

/// Catalogue numbers run from 0 to here.
constexpr int LastInstrument = 105;
/// Saves after which a song that is opened again must come back byte for byte. The first save drops
/// what the pipeline marked; the second lays tracks out anew if that left fewer of them. A short note
/// at the song's end grows by the ten ticks that follow it until it has its least length.
constexpr int SavesToRest = 3;
constexpr int TicksBehindSong = 10;

/// A song that every store must open, whatever was in it before.
const Bytes& GoodFile() {
  static const Bytes file = {'M',  'T',  'h', 'd', 0,    0,    0,    6,  0,    0, 0,    1,    1,
                             0xE0, 'M',  'T', 'r', 'k',  0,    0,    0,  0x11, 0, 0xC0, 5,    0x87,
                             0x40, 0x90, 60,  100, 0x83, 0x60, 0x80, 60, 64,   0, 0xFF, 0x2F, 0};
  return file;
}

class CountingMessages : public IMessages {
 public:
  void Show(const std::string& text) override { shown += text.empty() ? 0 : 1; }
  bool Ask(const std::string&) override { return answer = !answer; }
  [[nodiscard]] int Shown() const { return shown; }

 private:
  int shown = 0;
  bool answer = false;
};

class Routes : public IRoutes {
 public:
  Routes() {
    table[0].Instrument = "GM Soundset";
    table[1].Instrument = "Yamaha Genos";
    table[1].InstrumValue = 87;
    table[1].OutputName = "Port 2";
    table[2].VSTi = true;
    table[2].VSTiUniqueID = -1234;
  }
  void MainInstrument(int value) { table[0].InstrumValue = static_cast<std::uint8_t>(value); }
  [[nodiscard]] std::span<const TMidiRouting> MidiRouting() const override { return table; }

 private:
  std::array<TMidiRouting, 3> table;
};

/// The tables of all instruments that inputs asked for so far.
SoundSets& Sounds() {
  static SoundSets sets;
  return sets;
}

/// Options by the bits of two bytes; as a user may have set them.
Options ChosenOptions(std::uint8_t first, std::uint8_t second, const std::string& folder) {
  Options options;
  const auto bit = [](std::uint8_t byte, int n) { return (byte >> n & 1) != 0; };
  options.AutoSysex = bit(first, 0);
  options.AutoProgChange = bit(first, 1);
  options.UnmixFormat0 = bit(first, 2);
  options.PrevCommandMode = bit(first, 3) ? 1 : 0;
  options.InsertSongName = bit(first, 4);
  options.SysexsOnExtraTrack = bit(first, 5);
  options.DontSaveSMF33 = bit(first, 6);
  options.SaveMidiRunningMode = bit(first, 7);
  options.MultiMidi = bit(second, 1);
  options.WordBoxSearch = bit(second, 2);
  options.SpecialD = bit(second, 3);
  options.MinNoteLength = bit(second, 4) ? 30 : 0;
  options.RemoveCountIn = bit(second, 5);
  options.GeneralMidiCheck = bit(second, 6);
  options.RolandSCDefaultMap = bit(second, 7);
  options.RolandSCDefaultMapIdx = bit(second, 7) ? 2 : 0;
  options.DataPath = folder;
  return options;
}

class Desk {
 public:
  Desk(InputReader& in, const Folder& f) : folder(f) {
    routes.MainInstrument(in.Byte() % (LastInstrument + 1));
    const std::uint8_t first = in.Byte();
    const std::uint8_t second = in.Byte();
    options = ChosenOptions(first, second, folder.Name());
    format = second & 1;
    if (in.Flag()) song.Changes = &changes;
    for (const TMidiRouting& route : routes.MidiRouting())
      Sounds().Load(route.InstrumValue, {}, messages);
    names.Wire(hooks);
  }

  /// True if the file opened. A song is sound then; a refusal has been told.
  bool Open(Input file) {
    folder.WriteSong(file);
    const int before = messages.Shown();
    const bool opened = pipeline.OpenMidiFile(folder.SongFile(), false);
    if (opened != song.MidiFileLoaded) throw Fault("the pipeline and the song disagree on success");
    if (!opened && messages.Shown() == before) throw Fault("a refusal without a message");
    if (opened) CheckSound("after opening");
    if (opened) CheckNames();
    return opened;
  }

  Bytes Save() {
    const std::size_t before = song.Pool.Live();
    Bytes bytes = writer.Encode(folder.SongFile(), format);
    if (song.Pool.Live() != before) throw Fault("the writer left events behind");
    CheckSound("after saving");
    return bytes;
  }

  /// Saving must come to rest, but for what the rules let grow: every open of a word-box file ends its
  /// texts with one more return.
  [[nodiscard]] bool MustRest() const { return !song.WordBoxFormat; }
  [[nodiscard]] int Saves() const { return SavesToRest + options.MinNoteLength / TicksBehindSong; }

 private:
  void CheckSound(const std::string& when) const {
    const std::vector<std::string> faults = CheckSong(song);
    if (!faults.empty()) throw Fault(when + ": " + faults.front());
  }

  /// A mended sound is known, so that it is mended but once; every sound has a name.
  void CheckNames() {
    for (int c = 0; c < ChannelCount; ++c) {
      const std::string first = names.PatchName(c);
      if (first.empty()) throw Fault("a sound without a name");
      if (names.PatchName(c) != first) throw Fault("a sound is mended twice");
    }
    static_cast<void>(names.Findings());
    CheckSound("after naming");
  }

  const Folder& folder;
  ChangeLog changes;
  Song song;
  Options options;
  Routes routes;
  CountingMessages messages;
  SongHooks hooks;
  TSoundNames names{song, Sounds(), options, routes};
  OpenPipeline pipeline{song, options, routes, messages, hooks};
  MidiFileWriter writer{song, options, routes, messages, hooks};
  int format = 1;
};

}  // namespace

void FuzzSong(Input input) {
  static const Folder folder;
  InputReader in(input);
  Desk desk(in, folder);
  if (!desk.Open(in.Rest())) {
    if (!desk.Open(GoodFile())) throw Fault("a refused file keeps the next song from opening");
    return;
  }
  Bytes saved = desk.Save();
  for (int i = 1; i < desk.Saves(); ++i) {
    if (!desk.Open(saved)) throw Fault("what was saved does not open");
    saved = desk.Save();
  }
  if (!desk.Open(saved)) throw Fault("what was saved does not open");
  if (desk.Save() != saved && desk.MustRest()) throw Fault("saving does not come to rest");
}

}  // namespace Sonarello::Fuzz
