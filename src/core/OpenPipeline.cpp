#include "core/OpenPipeline.h"

#include <algorithm>

#include "core/ChannelStock.h"
#include "core/EventList.h"
#include "core/ProgramSetup.h"
#include "core/Texts.h"
#include "core/TimeMap.h"

namespace Sonarello {

bool OpenPipeline::OpenMidiFile(const std::string& FileToOpen, bool CreateNew) {
  LeaveOldSong();
  if (!(CreateNew ? Create() : Load(FileToOpen))) {
    song.ClearMidiMemory();
    return false;
  }
  try {
    Tell(0.55);
    BuildTimeMap();
    Run(hooks.ResetPlayback);
    PlaceLoopStarts();
    FindRemoteSequence(song);
    SetUpChannels();
    Tell(0.7);
    Run(hooks.ShowStrips);
    Run(hooks.ReadDrums);
    functions.SetTimePositions();
    EndTimeZonesBehindSong(song);
    song.MidiFileLoaded = true;
    Run(hooks.ShowControllers);
    Run(hooks.ReadLyrics);
    song.ActiveMidiIndex = -1;
    Run(hooks.SelectChannel);
    Tell(0.8);
    CheckNotes();
    Tell(0.9);
    PairNotes();
    Run(hooks.ForgetRangeTools);
    CheckLists();
    Run(hooks.SetUpEffects);
    Run(hooks.RememberFile);
    Tell(1.0);
  } catch (const EMidiError& error) {
    messages.Show(error.what());
    song.ClearMidiMemory();
    return false;
  }
  return true;
}

void OpenPipeline::LeaveOldSong() {
  Run(hooks.WritePendingBackup);
  song.PromptaRemoteCtrl00 = song.PromptaRemoteCtrl32 = song.PromptaRemotePatch = nullptr;
  if (options.AutoSysex) Run(hooks.ResetEffectMemory);
  song.MidifileConverted = false;
  Run(hooks.StopPlayer);
  Run(hooks.CloseEditors);
  song.ClearMidiMemory();
  song.ResetChannels();
  Run(hooks.ReloadRevoicer);
  Run(hooks.ResetDesk);
}

bool OpenPipeline::Load(const std::string& file) {
  song.MidiFileName = file;
  if (!ReadSourceData(file, functions.SourceData, messages)) return false;
  Tell(0.05);
  try {
    functions.DecodeMidiData();
  } catch (const EMidiError&) {
    // The reader has shown the text.
    functions.SourceData = {};
    return false;
  }
  functions.SourceData = {};
  song.TickOrgPosOfFirstNote = song.TickPositionOfFirstNote;
  TreatCountIn();
  return true;
}

bool OpenPipeline::Create() {
  song.MidiFileName.clear();
  try {
    Run(hooks.CreateMidiData);
  } catch (const EMidiError&) {
    // The hook has shown the text.
    return false;
  }
  return song.NumberOfSourceTracks > 0;
}

void OpenPipeline::TreatCountIn() {
  if (song.CountInIdx < 0) return;
  if (options.RemoveCountIn) {
    Run(hooks.RemoveCountIn);
    if (!options.QuickTakerPresent) functions.ReloadTempoTimeSign();
    return;
  }
  const TCountIn& countIn = song.CountInArray[static_cast<std::size_t>(song.CountInIdx)];
  song.TickPositionOfFirstNote = std::min(song.TickPositionOfFirstNote, countIn.Start);
}

void OpenPipeline::BuildTimeMap() {
  functions.SetTimeZones();
  BackupTempi(song);
  song.CurrentTimeZone = 0;
  // The events get their times once the channels are set up; until then the song's length will do.
  functions.SetSongLength();
  EndTimeZonesBehindSong(song);
}

void OpenPipeline::PlaceLoopStarts() {
  for (TMyTrack& track : song.MidiTrack) track.TrkLoopStart = track.TrkFirstEvent;
}

void OpenPipeline::SetUpChannels() {
  if (options.AutoProgChange) MovePrograms(song);
  TProgramIndex programs = TakeStock(song);
  EnsureDrumProgram(song, programs);
  NormalisePrograms(song, programs, options.AutoProgChange, hooks.MissingBank);
  if (hooks.AdaptBanks) hooks.AdaptBanks(song, programs);
  functions.SetFirstValues();
  Run(hooks.ReadFirstValues);
  InsertDefaultControllers(song);
}

void OpenPipeline::CheckNotes() {
  constexpr std::size_t longestEntry = 100;
  std::string verdict;
  bool clean = false;
  if (options.GeneralMidiCheck)
    clean = functions.CheckForNoteOnsNoteOffs(verdict);
  else
    verdict = Text("Midifile-Überprüfung ist abgeschaltet!", "General MIDI check is disabled!");
  if (verdict.size() > longestEntry) verdict.resize(std::min(verdict.find(','), verdict.size()));
  if (hooks.NoteCheckResult) hooks.NoteCheckResult(verdict, clean);
}

void OpenPipeline::PairNotes() {
  TStrayNoteOffs strays{song, 0, {}};
  for (std::int32_t t = 0; t < song.NumberOfSourceTracks; ++t) {
    strays.Track = t;
    const TMyTrack& track = song.MidiTrack[static_cast<std::size_t>(t)];
    if (track.TrkIgnore || TMidiFunctions::SetNoteOnOffPointers(track.TrkFirstEvent, &strays)) continue;
    const std::string number = std::to_string(t);
    messages.Show(song.MidiFileFormat == 0
                      ? Text("Fehler beim Berechnen der NoteOnOff-Pointer.",
                             "Error processing the NoteOnOff pointers.")
                      : Text("Fehler beim Berechnen der NoteOnOff-Pointer auf Spur " + number + ".",
                             "Error processing the NoteOnOff pointers on track " + number + "."));
  }
  RemoveBatch(song, strays.Found);
  functions.CheckForZeroLength();
}

void OpenPipeline::CheckLists() {
  const std::string fault = ListFault(song);
  if (!fault.empty()) messages.Show(fault);
}

}  // namespace Sonarello
