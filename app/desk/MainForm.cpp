#include "app/desk/MainForm.h"

#include <QApplication>
#include <QMenu>
#include <QMenuBar>

#include "app/adapters/UpdateCheck.h"
#include "app/controls/Metrics.h"
#include "app/controls/QtText.h"
#include "app/controls/StripBank.h"
#include "app/controls/StripRow.h"
#include "app/desk/DeskViews.h"
#include "app/desk/ToolWindows.h"
#include "app/desk/VelocityEditor.h"
#include "app/editors/ControllerForm.h"
#include "app/editors/EventListForm.h"
#include "app/instruments/AutoRevoicerForm.h"
#include "app/instruments/PatchesForm.h"
#include "app/instruments/SoundBrowserForm.h"
#include "app/options/OptionsForm.h"
#include "app/panels/Banner.h"
#include "app/panels/DropCard.h"
#include "app/panels/FilePanel.h"
#include "app/panels/LyricBar.h"
#include "app/panels/PositionDisplay.h"
#include "app/panels/StatusBar.h"
#include "app/panels/WindowSwitches.h"
#include "app/playback/VirtualKeysForm.h"
#include "desk/SongProperties.h"

namespace Sonarello {

namespace {

// Intervals of the timers, ms.
constexpr int DisplayInterval = 30;
constexpr int SlidersInterval = 60;
constexpr int SetupInterval = 100;
constexpr int AutoloadInterval = 300;
constexpr int MidiInInterval = 100;

}  // namespace

TMainForm::TMainForm(const TMainFormParts& parts) : p(parts), midiIn(parts.midi) {
  setObjectName(QStringLiteral("MainForm"));
  setWindowTitle(QStringLiteral("Sonarello"));
  setAcceptDrops(true);
  setMinimumSize(metrics().px(LeastWidth), metrics().px(LeastHeight));
  BuildPanels();
  BuildWindows();
  BuildMenu();
  ConnectTransport();
  ConnectLoopPanel();
  ConnectStrips();
  ConnectController();
  ConnectCard();
  SetTabOrder();
  p.work.desk.Observers.push_back(this);
  p.work.UndoChanged = [this] { UpdateMenu(); };
  p.work.RecentChanged = [this] { UpdateRecentMenu(); };
  p.work.LyricsChanged = [this] { ShowLyrics(); };
  p.work.EffectsChanged = [this] { ShowEffects(); };
  p.messages.Work.Shown = [this](const std::optional<TProgressShown>& shown) {
    if (shown)
      status->ShowProgress(shown->Word, shown->Percent, shown->MayCancel);
    else
      status->EndProgress();
  };
  qApp->installEventFilter(this);
  StartTimers();
  SongChanged();
  RoutesChanged();
  UpdateSwitches();
  ShowEffects();
  ShowLyrics();
  AllFormsCreated = true;
}

TMainForm::~TMainForm() {
  std::erase(p.work.desk.Observers, static_cast<SongObserver*>(this));
  p.work.UndoChanged = p.work.RecentChanged = p.work.LyricsChanged = p.work.EffectsChanged = nullptr;
  p.work.EventsChanged = p.work.LeavingSong = nullptr;
  p.messages.Work.Shown = nullptr;
  // A field tells what was typed when it loses the focus, even as it ends.
  for (const QObject* part : content->findChildren<QObject*>()) part->disconnect(this);
  // Windows that this one does not own as children end before the panels that they report to.
  updates.reset();
}

void TMainForm::BuildMenu() {
  menu = std::make_unique<MainMenu>(*menuBar(), [this](std::string_view name) { MenuChosen(name); });
  switches = new WindowSwitches(menuBar());
  menuBar()->setCornerWidget(switches);
  connect(switches, &WindowSwitches::switchClicked, this, [this](DeskWindow window) {
    if (window == DeskWindow::Sounds) windows->Toggle(ToolWindow::Sounds);
    if (window == DeskWindow::Keyboard) windows->Toggle(ToolWindow::Keyboard);
    if (window == DeskWindow::Events) windows->Toggle(ToolWindow::Events);
    if (window == DeskWindow::Controllers) windows->Toggle(ToolWindow::Controllers);
  });
  UpdateRecentMenu();
}

void TMainForm::StartTimers() {
  const auto every = [this](QTimer& timer, const char* name, int interval, void (TMainForm::*job)()) {
    timer.setParent(this);
    timer.setObjectName(QLatin1String(name));
    timer.setInterval(interval);
    connect(&timer, &QTimer::timeout, this, job);
  };
  DisplayTimer.setTimerType(Qt::PreciseTimer);
  every(DisplayTimer, "DisplayTimer", DisplayInterval, &TMainForm::DisplayTimerTimer);
  every(SlidersTimer, "SlidersUpdateTimer", SlidersInterval, &TMainForm::SlidersUpdateTimer);
  every(SetupTimer, "SetupTimer", SetupInterval, &TMainForm::SetupTimerTimer);
  every(AutoloadTimer, "AutoloadTimer", AutoloadInterval, &TMainForm::AutoloadTimerTimer);
  every(AutoBackupTimer, "AutoBackupTimer", TAutoBackup::Interval, &TMainForm::AutoBackupTimerTimer);
  every(MidiInMonitorTimer, "MidiInMonitorTimer", MidiInInterval, &TMainForm::MidiInMonitorTimerTimer);
  every(VelocityTimer, "VelocityTimer", VelocityRepeat, &TMainForm::VelocityTimerTimer);
}

void TMainForm::Start(const std::string& autoload) {
  AutoloadFileName = autoload;
  RestoreWindows();
  if (p.store.ReadBool("", "MainFormMaximized", false))
    showMaximized();
  else
    show();
  card->FocusOpen();
  windows->Restore();
  activateWindow();
  SetupTimer.start();
  AutoloadTimer.start();
  AutoBackupTimer.start();
  ListenToMidiIn();
}

void TMainForm::AutoBackupTimerTimer() {
  if (busy) return;
  p.work.backup.Tick();
  ShowStatus();
  ShowComplaints();
}

void TMainForm::ListenToMidiIn() {
  midiIn.Listen(p.work.desk.settings.MidiInputName);
  if (midiIn.IsListening())
    MidiInMonitorTimer.start();
  else
    MidiInMonitorTimer.stop();
  switches->SetMidiIn(false, ToQt(midiIn.Name()));
}

void TMainForm::MidiInMonitorTimerTimer() {
  switches->SetMidiIn(midiIn.TakeActivity(), ToQt(midiIn.Name()));
}

void TMainForm::Status(const QString& text) { status->ShowMessage(text); }

void TMainForm::ShowFile() {
  const Song& song = p.work.desk.song;
  const bool modified = song.MidiFileLoaded && p.work.desk.IsModified();
  filePanel->SetView({.song = song.MidiFileLoaded,
                      .name = ToQt(FileNameOf(song.MidiFileName)),
                      .path = ToQt(song.MidiFileName),
                      .modified = modified,
                      .format = song.MidiFileOrgFormat,
                      .ticksPerQuarter = song.SourceTimeBase,
                      .length = song.SongLength});
  const QString name = song.MidiFileLoaded ? ToQt(FileNameOf(song.MidiFileName)) : QString();
  setWindowTitle(name.isEmpty() ? QStringLiteral("Sonarello")
                                : name + QStringLiteral("[*] - Sonarello"));
  setWindowModified(modified && !name.isEmpty());
}

void TMainForm::ShowStatus() {
  const Desk& desk = p.work.desk;
  const TMidiPlayer& player = p.work.desk.Player();
  StatusView view;
  view.playing = desk.IsPlaying();
  if (stopped) view.stopTime = player.StopTime.load();
  if (desk.song.MidiFileLoaded && player.Looping) {
    const TStripsPosition& position = desk.strips.Position;
    view.loop = ToQt(position.At(loopStart).Position + " – " + position.At(loopEnd).Position);
  }
  if (const auto& last = p.work.backup.LastBackup())
    view.lastBackup =
        QStringLiteral("%1:%2").arg(last->tm_hour).arg(last->tm_min, 2, 10, QLatin1Char('0'));
  view.instrument = ToQt(p.work.desk.Routes().MidiRouting().front().Instrument);
  view.outputs = p.work.desk.Routes().MidiRouteElements();
  view.scale = metrics().percent;
  status->SetView(view);
}

void TMainForm::ShowComplaints() {
  QStringList complaints;
  for (const std::string& complaint : p.work.desk.Complaints()) complaints += ToQt(complaint);
  if (const std::string failure = p.work.backup.Failure(); !failure.empty())
    complaints += ToQt(failure);
  const QString all = complaints.join(QStringLiteral(" · ")).simplified();
  // What still stands is not announced to a screen reader again.
  if (all == banner->text()) return;
  banner->SetMessage(Severity::Warning, all);
  banner->setVisible(!all.isEmpty());
  Arrange();
}

void TMainForm::ConnectCard() {
  connect(card, &DropCard::openClicked, this, &TMainForm::MMF_OpenMidifileClick);
  connect(card, &DropCard::recentWanted, this,
          [this](const QPoint& at) { menu->Submenu("MMF_OpenRecent").popup(at); });
}

void TMainForm::SongChanged() {
  const bool loaded = p.work.desk.song.MidiFileLoaded;
  stopped = false;
  loopStart = loopEnd = 0;
  card->setVisible(!loaded);
  card->SetRecent(!p.work.recent.Names().empty());
  ShowTimes();
  ShowLoop();
  ShowStrips();
  ShowController();
  ShowTranspose();
  ShowTempo();
  ShowFile();
  ShowLevels(false);
  ShowPosition();
  ShowTransport();
  ShowKeyboardChannel();
  patchesForm->ShowAll();
  revoicerForm->ShowAll();
  ShowEditors();
  UpdateSwitches();
  // The keys of the strips work at once; without a song Return opens one.
  if (loaded)
    stripRow->bank().setFocus(Qt::OtherFocusReason);
  else
    card->FocusOpen();
}

void TMainForm::SoundChanged(int channel) {
  ShowStrip(channel);
  if (channel == p.work.desk.song.ActiveMidiIndex) ShowController();
  if (channel == p.work.desk.song.ActiveMidiIndex) ShowKeyboardChannel();
  patchesForm->ShowChannel(channel);
  controllerForm->ShowChannel(channel);
  eventListForm->ShowValues();
}

void TMainForm::StripChanged(int strip) {
  ShowStrip(strip);
  patchesForm->ShowChannel(strip);
  browserForm->StripChanged(strip);
  controllerForm->ShowChannel(strip);
  eventListForm->ShowValues();
}

void TMainForm::SelectionChanged() {
  ShowController();
  ShowKeyboardChannel();
  patchesForm->ShowAll();
}

void TMainForm::ShowKeyboardChannel() {
  const Song& song = p.work.desk.song;
  const int strip = song.MidiFileLoaded ? song.ActiveMidiIndex : -1;
  keysForm->ShowChannel(strip >= 0 ? song.ActiveMidiChannel + 1 : 0,
                        strip >= 0 ? ToQt(p.work.overview.Row(strip).Sound) : QString());
}

void TMainForm::ModifiedChanged() { ShowFile(); }

void TMainForm::RoutesChanged() {
  card->SetInstrument(ToQt(p.work.desk.Routes().MidiRouting().front().Instrument));
  ShowStrips();
  ShowController();
  ShowStatus();
  eventListForm->ShowValues();
  controllerForm->ShowController();
}

void TMainForm::TimesChanged() {
  ShowTimes();
  if (loopEnd > loopStart) {
    // A loop, on or off, keeps its place among the bars.
    const TMidiPlayer& player = p.work.desk.Player();
    loopStart = player.LoopStart;
    loopEnd = std::min<std::int32_t>(player.LoopEnd, p.work.desk.song.SongLength);
  }
  ShowLoop();
  ShowFile();
  ShowPosition();
  eventListForm->ShowValues();
}

void TMainForm::ShowLyrics() {
  shownLine = -2;
  // A desk without a song has all of its rows, as the song to come may need them.
  const bool any =
      !p.work.desk.song.MidiFileLoaded || p.work.lyrics.HasLyrics() || p.work.lyrics.HasChords();
  lyricBar->setVisible(any && p.work.desk.settings.ShowLyrics);
  if (!busy) ShowLyricMoment(p.work.desk.Player().TimePosition);
  Arrange();
}

void TMainForm::ShowLyricMoment(std::int32_t time) {
  if (lyricBar->isHidden()) return;
  const TLyricMoment moment = p.work.lyrics.At(time);
  if (moment.Line != shownLine || moment.Chord != shownChord) {
    lyricBar->SetView(LyricViewOf(p.work.lyrics, moment, p.work.desk.settings.UseGermanChords));
    shownLine = moment.Line;
    shownChord = moment.Chord;
  }
  lyricBar->SetCurrent(moment.Syllable);
}

}  // namespace Sonarello
