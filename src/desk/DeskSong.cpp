// The song that the desk works on: opened, made anew, saved.
#include <new>

#include "core/MidiFileWriter.h"
#include "core/OpenPipeline.h"
#include "core/Texts.h"
#include "desk/Desk.h"

namespace Sonarello {

bool Desk::IsReadable(const std::string& file) {
  auto trial = std::make_unique<Song>();
  const SongHooks none;
  TMidiFunctions reader(*trial, options, routes, parts.messages, none);
  trial->MidiFileName = file;
  if (!ReadSourceData(file, reader.SourceData, parts.messages)) return false;
  try {
    reader.DecodeMidiData();
    return true;
  } catch (const EMidiError&) {
    // The reader has shown the text.
    return false;
  }
}

bool Desk::OpenMidiFile(const std::string& file) {
  LeaveSong();
  const bool opened = ReadSong(file);
  ShowSong();
  return opened;
}

bool Desk::NewMidiFile(const TNewSong& wishes) {
  LeaveSong();
  const bool made = ReadSong({}, &wishes);
  ShowSong();
  return made;
}

void Desk::LeaveSong() {
  if (IsPlaying()) StopButtonClick();
  keys.Release();
  player.EndAllNotes();
  if (LeavingSong) LeavingSong();
}

bool Desk::ReadSong(const std::string& file, const TNewSong* wishes) {
  replaced = false;
  try {
    // The store holds one song: a file that will be refused must not cost the one that is there.
    if (wishes == nullptr && song.MidiFileLoaded && !IsReadable(file)) return false;
    replaced = true;
    if (wishes != nullptr) newSong = *wishes;
    noteCheck.clear();
    names.ForgetFindings();
    realtime.ResetChannels();
    realtime.InitializeRealtimeData();
    const bool opened = OpenPipeline(song, options, routes, parts.messages, hooks)
                            .OpenMidiFile(file, wishes != nullptr);
    modified = AutoBackupChanged = false;
    return opened;
  } catch (const std::bad_alloc&) {
    song.ClearMidiMemory();
    parts.messages.Show(OutOfMemoryText());
    return false;
  }
}

void Desk::ShowSong() {
  if (!replaced) return;
  transpose.SongChanged();
  rerouting.LastRoutedChannel = 255;
  routes.UpdateVSTiUse(song);
  host.VSTiInUse = routes.VSTiInUse.load();
  player.SongChanged();
  strips.SongChanged();
  Tell([](SongObserver& o) { o.SongChanged(); });
}

bool Desk::SaveMidiFile(const std::string& file, int format) {
  if (!song.MidiFileLoaded) return false;
  if (!MidiFileWriter(song, options, routes, parts.messages, hooks).Save(file, format)) return false;
  song.MidiFileName = file;
  modified = AutoBackupChanged = false;
  Tell([](SongObserver& o) { o.ModifiedChanged(); });
  return true;
}

void Desk::Changed() {
  if (!song.MidiFileLoaded) return;
  AutoBackupChanged = true;
  if (modified) return;
  modified = true;
  Tell([](SongObserver& o) { o.ModifiedChanged(); });
}

}  // namespace Sonarello
