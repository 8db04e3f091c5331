#include "desk/Workplace.h"

#include <utility>

#include "desk/SongProperties.h"

namespace Sonarello {

Workplace::Workplace(const TDeskParts& parts, const std::string& dataPath)
    : desk(parts),
      undo(desk.song, desk.Functions(), parts.messages, desk.gate),
      backup(TAutoBackupParts{desk.song, desk.options, desk.Routes(), desk.Hooks(), desk.gate,
                              desk.AutoBackupChanged}),
      recovery(dataPath),
      revoicerDesk(desk.song, desk.Routes(), parts.store, parts.messages, desk.gate, revoicer),
      browser(TSoundBrowserParts{desk.song, desk.Sounds(), desk.names, desk.options, desk.Routes(),
                                 parts.store, parts.messages, desk.gate, desk.realtime, desk.Outputs(),
                                 revoicer},
              desk.Sender()),
      overview(desk.song, desk.names, desk.Routes(), parts.messages, desk.gate),
      eventRows(desk.song, desk.Routes(), desk.options, desk.gate),
      eventEdits(desk.song, eventRows, desk.Functions(), desk.Routes(), parts.messages, desk.gate),
      controllers(desk.strips),
      store(parts.store) {
  desk.options.DataPath = dataPath;
  desk.Observers.push_back(this);
  desk.LeavingSong = [this] {
    browser.Btn_CancelClick();
    if (LeavingSong) LeavingSong();
    eventRows.Clear();
  };
  desk.SortSounds = [this](int instrumValue) {
    return BrowserLoadSettings(store, desk.options, instrumValue).SortSounds;
  };
  desk.WindowHooks.WritePendingBackup = [this](Song&) { backup.Tick(); };
  desk.WindowHooks.CloseEditors = [this](Song&) {
    undo.Forget();
    eventEdits.Forget();
  };
  desk.WindowHooks.ReadLyrics = [this](Song& song) { lyrics.ReadAndShowLyrics(song); };
  desk.rerouting.Hooks.CancelBrowser = [this](int instrumValue) {
    if (browser.IsOpenFor(instrumValue)) browser.Btn_CancelClick();
  };
  WireUndo();
  WireBrowser();
  WireRevoicer();
  WireEvents();
  WireEventEdits();
  WireControllers();
}

Workplace::~Workplace() = default;

void Workplace::TellSound(int channel) {
  desk.Tell([channel](SongObserver& o) { o.SoundChanged(channel); });
  TellEvents();
}

void Workplace::WireUndo() {
  undo.Hooks.IsPlaying = [this] { return desk.IsPlaying(); };
  undo.Hooks.StopButtonClick = [this] { desk.StopButtonClick(); };
  // A second stop: cursors, first values and what was tracked follow the tracks that are back.
  undo.Hooks.MoveToStart = [this] { desk.Player().Stop(); };
  undo.Hooks.TempoOffset = [this] { return desk.Player().TempoOffset.load(); };
  undo.Hooks.Transpose = [this] { desk.transpose.Transpose(); };
  undo.Hooks.ReadAndShowLyrics = [this] { lyrics.ReadAndShowLyrics(desk.song); };
  undo.Hooks.Changed = [this] { desk.Changed(); };
  undo.Hooks.ResetLyrics = [this] {
    desk.strips.Position.SignaturesChanged();
    desk.Tell([](SongObserver& o) { o.SongChanged(); });
  };
  undo.Hooks.UpdateEventList = [this] { TellEvents(); };
  undo.Hooks.MenuChanged = [this] {
    // A tool has kept the whole song, the last edit of the list with it.
    if (undo.IsEnabled()) eventEdits.ClearBackupedData();
    if (UndoChanged) UndoChanged();
  };
}

void Workplace::WireBrowser() {
  browser.Hooks.IsPlaying = [this] { return desk.IsPlaying(); };
  browser.Hooks.SoundChanged = [this](int channel) {
    // A sound on trial that was saved and then taken back: the file is not the song any more.
    if (trialSaved && !browser.IsOpen()) {
      trialSaved = false;
      desk.Changed();
    }
    TellSound(channel);
  };
  browser.Hooks.Changed = [this] { desk.Changed(); };
  browser.Hooks.DoSolo = [this](int channel) {
    desk.strips.MuteSolo.Btn_Solo00MouseDown(channel, false);
  };
  browser.Hooks.MoveToTimePosition = [this](std::int32_t milliseconds) {
    desk.Wind(milliseconds - desk.Player().TimePosition);
  };
  browser.Hooks.RevoicerChanged = [this] {
    if (revoicerDesk.Hooks.ListChanged) revoicerDesk.Hooks.ListChanged();
  };
  overview.Hooks.OpenBrowser = [this](int channel) { browser.Open(channel); };
  overview.Hooks.SelectChannel = [this](int channel) { desk.strips.Desk.SetMidiChannel(channel); };
  overview.Hooks.SoundChanged = browser.Hooks.SoundChanged;
  overview.Hooks.Changed = browser.Hooks.Changed;
}

void Workplace::WireRevoicer() {
  revoicerDesk.Hooks.IsPlaying = [this] { return desk.IsPlaying(); };
  revoicerDesk.Hooks.SoundChanged = [this](int channel) { TellSound(channel); };
  revoicerDesk.Hooks.Changed = [this] { desk.Changed(); };
}

void Workplace::Start() {
  desk.Start();
  backup.AutoBackupEnabled = desk.settings.AutoBackupEnabled;
  recent.Load(store);
  browser.SetGrabMidiDriver(desk.settings.GrabMidiDriver);
}

void Workplace::SongOpened(bool opened) {
  if (!desk.song.MidiFileLoaded) {
    recovery.EndSession();
    return;
  }
  if (!opened) return;
  recovery.BeginSession(desk.song.MidiFileName);
  if (desk.song.MidiFileName.empty()) return;
  RememberSourcePath(desk.song.MidiFileName);
  recent.Add(desk.song.MidiFileName);
  recent.Store(store);
  if (RecentChanged) RecentChanged();
}

bool Workplace::SaveMidiFile(const std::string& file, int format) {
  if (!desk.SaveMidiFile(file, format)) return false;
  trialSaved = browser.IsOpen() && browser.NewPlace().IsSet();
  recovery.BeginSession(file);
  recent.Add(file);
  recent.Store(store);
  if (RecentChanged) RecentChanged();
  return true;
}

void Workplace::ForgetRecent(const std::string& file) {
  recent.Remove(file);
  recent.Store(store);
  if (RecentChanged) RecentChanged();
}

void Workplace::RememberSourcePath(const std::string& file) {
  const std::string folder = file.substr(0, file.find_last_of('/'));
  if (folder == file || folder == desk.settings.SourcePath) return;
  desk.settings.SourcePath = folder;
  store.WriteString("", "SourcePath", folder);
}

void Workplace::Close() {
  browser.LetGo();
  desk.Routes().StoreSettings(store, desk.options.MultiMidi);
  StoreSettings(store, desk.options, desk.settings);
  recent.Store(store);
  store.Flush();
  recovery.EndSession();
}

void Workplace::SongChanged() {
  trialSaved = false;
  ReadEffects();
  if (!desk.song.MidiFileLoaded) lyrics.Clear();
  if (LyricsChanged) LyricsChanged();
  if (UndoChanged) UndoChanged();
  revoicerDesk.ForgetRun();
}

void Workplace::RoutesChanged() {
  ReadEffects();
  revoicerDesk.LoadRevoiceData();
  if (revoicerDesk.Hooks.ListChanged) revoicerDesk.Hooks.ListChanged();
}

void Workplace::TimesChanged() {
  // Another tempo or transposition: what the list's undo has kept does not fit the song any more.
  if (!tellsOwnTimes) eventEdits.ClearBackupedData();
  {
    const auto held = desk.gate.Enter();
    lyrics.UpdateTimes(desk.song);
  }
  if (LyricsChanged) LyricsChanged();
}

void Workplace::ReadEffects() {
  const auto held = desk.gate.Enter();
  effects.Read(desk.song, desk.Routes().MidiRouting().front().InstrumValue);
  if (EffectsChanged) EffectsChanged();
}

}  // namespace Sonarello
