// The main window's transport, and what follows the song's position.
#include <QMenu>

#include "app/controls/QtText.h"
#include "app/controls/StripRow.h"
#include "app/desk/DeskViews.h"
#include "app/desk/MainForm.h"
#include "app/panels/LoopPanel.h"
#include "app/panels/LyricBar.h"
#include "app/panels/PanelTexts.h"
#include "app/panels/PositionDisplay.h"
#include "app/panels/SongSlider.h"
#include "app/panels/StatusBar.h"
#include "app/panels/TempoPanel.h"
#include "app/panels/TransportPanel.h"
#include "app/panels/TransposePanel.h"
#include "desk/BarTimes.h"
#include "playback/LevelMeters.h"
#include "playback/SliderTimer.h"

namespace Sonarello {

namespace {

constexpr int WindStep = 500;  ///< ms of the song for each tick of winding
constexpr int MostMeasures = 999;

}  // namespace

void TMainForm::ConnectTransport() {
  connect(transport, &TransportPanel::playClicked, this, &TMainForm::PlayClick);
  connect(transport, &TransportPanel::stopClicked, this, &TMainForm::StopClick);
  connect(transport, &TransportPanel::rewindClicked, this, &TMainForm::RewindClick);
  connect(transport, &TransportPanel::windBack, this, [this] { WindBy(-WindStep); });
  connect(transport, &TransportPanel::windBackEnded, this, &TMainForm::EndWind);
  connect(transport, &TransportPanel::loopClicked, this, &TMainForm::LoopClick);
  connect(transport, &TransportPanel::loopPanelWanted, this,
          [this] { loopPanel->Slide(!loopPanel->open()); });

  TTempoControl& tempi = p.work.desk.strips.Tempo;
  connect(tempo, &TempoPanel::Tempo_MinusClick, this, [this, &tempi] {
    tempi.Tempo_MinusClick();
    ShowTempo();
  });
  connect(tempo, &TempoPanel::Tempo_NullClick, this, [this, &tempi] {
    tempi.Tempo_NullClick();
    ShowTempo();
  });
  connect(tempo, &TempoPanel::Tempo_PlusClick, this, [this, &tempi] {
    tempi.Tempo_PlusClick();
    ShowTempo();
  });

  Desk& desk = p.work.desk;
  const auto transposeBy = [this, &desk](int to) {
    desk.TransposeTo(to);
    ShowTranspose();
  };
  connect(transposePanel, &TransposePanel::Transpose_MinusClick, this,
          [=, &desk] { transposeBy(desk.song.TransposeNew - 1); });
  connect(transposePanel, &TransposePanel::Transpose_NullClick, this, [=] { transposeBy(0); });
  connect(transposePanel, &TransposePanel::Transpose_PlusClick, this,
          [=, &desk] { transposeBy(desk.song.TransposeNew + 1); });
  connect(transposePanel, &TransposePanel::IntelligentTransposeChange, this, [this, &desk](bool on) {
    desk.settings.IntelligentTranspose = on;
    p.store.WriteBool("", "IntelligentTranspose", on);
    desk.SettingsChanged();
    ShowTranspose();
  });
  connect(transposePanel, &TransposePanel::IT_ModeClick, this, [this, &desk](int mode) {
    desk.settings.IntelligentTransposeMode = mode;
    p.store.WriteInteger("", "IntelligentTransposeMode", mode);
    desk.SettingsChanged();
    ShowTranspose();
  });
  ConnectSlider();
}

void TMainForm::ConnectSlider() {
  Desk& desk = p.work.desk;
  slider->SetPositionText([this](qint64 ms) {
    const TPositionView at = p.work.desk.strips.Position.At(static_cast<std::int32_t>(ms));
    return SpokenPosition(at.Measure, at.Beat);
  });
  slider->setContextMenuPolicy(Qt::CustomContextMenu);
  connect(slider, &QWidget::customContextMenuRequested, this,
          [this](const QPoint& at) { ShowSliderMenu(slider->mapToGlobal(at)); });
  connect(slider, &SongSlider::pressed, this, [this, &desk] {
    seeking = true;
    desk.slider.TrackBarMouseDown();
  });
  connect(slider, &SongSlider::moved, this, [this, &desk](qint64 ms) {
    desk.slider.TrackBarChange(static_cast<std::int32_t>(ms));
    ShowPosition();
  });
  connect(slider, &SongSlider::released, this, [this, &desk] {
    seeking = false;
    desk.slider.TrackBarMouseUp();
    SlidersUpdateTimer();
    ShowPosition();
    ShowTransport();
  });
  connect(slider, &SongSlider::loopMoved, this, [this](qint64 start, qint64 end) {
    SetLoop(static_cast<std::int32_t>(start), static_cast<std::int32_t>(end));
  });
}

void TMainForm::ShowSliderMenu(const QPoint& at) {
  if (busy) return;
  QMenu popup(this);
  popup.setObjectName(QStringLiteral("PopupMenu_Copy"));
  popup.setToolTipsVisible(true);
  const auto later = [&popup](const char* name, const QString& text) {
    QAction* const item = popup.addAction(text);
    item->setObjectName(QString::fromLatin1(name));
    item->setEnabled(false);
    item->setToolTip(QText("Die Bereichs-Werkzeuge gehören noch nicht zu dieser Version",
                           "The range tools are not part of this version yet"));
  };
  later("PMC_CopyStartPosition", QText("Kopieren: Anfang hier", "Copy: start here"));
  later("PMC_CopyEndPosition", QText("Kopieren: Ende hier", "Copy: end here"));
  later("PMC_CopyDestPosition", QText("Kopieren: Ziel hier", "Copy: destination here"));
  popup.addSeparator();
  later("PMC_DeleteStartPosition", QText("Löschen: Anfang hier", "Delete: start here"));
  later("PMC_DeleteEndPosition", QText("Löschen: Ende hier", "Delete: end here"));
  popup.addSeparator();
  QAction* const undo = popup.addAction(ToQt(p.work.undo.MenuText()));
  undo->setObjectName(QStringLiteral("PMC_Undo"));
  undo->setEnabled(p.work.undo.IsEnabled());
  undo->setToolTip(menu->Entry("MME_Undo").toolTip());
  connect(undo, &QAction::triggered, this, [this] { p.work.undo.Undo(); });
  popup.exec(at);
}

void TMainForm::PlayClick() {
  if (busy || !p.work.desk.song.MidiFileLoaded) return;
  if (p.work.desk.IsPlaying()) return StopClick();
  p.work.desk.PlayButtonClick();
  ShowTransport();
}

void TMainForm::StopClick() {
  if (busy || !p.work.desk.song.MidiFileLoaded) return;
  p.work.desk.StopButtonClick();
  stopped = true;
  ShowLevels(false);
  ShowTransport();
  ShowPosition();
}

void TMainForm::RewindClick() {
  if (busy || !p.work.desk.song.MidiFileLoaded) return;
  Desk& desk = p.work.desk;
  const bool plays = desk.IsPlaying();
  if (plays) desk.StopButtonClick();
  desk.StopButtonClick();
  if (plays) desk.PlayButtonClick();
  ShowTransport();
  ShowPosition();
}

void TMainForm::WindBy(int milliseconds) {
  if (busy || !p.work.desk.song.MidiFileLoaded) return;
  PositionSlider& grip = p.work.desk.slider;
  if (!winding) {
    winding = true;
    grip.TrackBarMouseDown();
  }
  const std::int64_t to = std::int64_t{p.work.desk.Player().TimePosition} + milliseconds;
  grip.TrackBarChange(static_cast<std::int32_t>(
      std::clamp<std::int64_t>(to, 0, std::max(p.work.desk.song.SongLength, 0))));
  ShowPosition();
}

void TMainForm::EndWind() {
  if (!winding) return;
  winding = false;
  p.work.desk.slider.TrackBarMouseUp();
  SlidersUpdateTimer();
  ShowTransport();
  ShowPosition();
}

void TMainForm::DisplayTimerTimer() {
  if (DisplayTimerTag || busy) return;
  DisplayTimerTag = true;
  if (!p.work.desk.IsPlaying() && !winding && !seeking) {
    DisplayTimer.stop();
    SlidersTimer.stop();
    if (p.work.desk.Player().TimePosition > p.work.desk.song.SongLength) p.work.desk.EndOfSong();
    ShowLevels(false);
    ShowTransport();
  }
  p.work.desk.strips.Tempo.TellTaken();
  ShowPosition();
  if (p.work.desk.IsPlaying()) ShowLevels(true);
  DisplayTimerTag = false;
}

void TMainForm::SlidersUpdateTimer() {
  Desk& desk = p.work.desk;
  if (busy || !desk.song.MidiFileLoaded) return;
  const TDeskUpdate update =
      SlidersUpdateTimerTimer(desk.Player(), desk.song, desk.gate, desk.song.ActiveMidiIndex);
  for (const int channel : update.Sounds) SoundChanged(channel);
  for (const TSliderMove& move : update.Sliders)
    ControllerChanged(move.Channel, move.Controller, move.Value);
}

void TMainForm::ShowPosition() {
  const Song& song = p.work.desk.song;
  if (!song.MidiFileLoaded) {
    display->SetPosition(1, 1, 0);
    return;
  }
  const std::int32_t time = p.work.desk.Player().TimePosition;
  const TPositionView at = p.work.desk.strips.Position.At(time);
  display->SetPosition(at.Measure, at.Beat, time);
  display->SetSignature(ToQt(at.Key.empty() ? at.Signature : at.Signature + " · " + at.Key));
  slider->SetPosition(time);
  ShowTempoAt(at.Tempo);
  ShowLyricMoment(time);
}

void TMainForm::ShowTempoAt(double bpm) {
  tempo->SetView({.song = p.work.desk.song.MidiFileLoaded,
                  .tempo = bpm,
                  .offset = p.work.desk.strips.Tempo.Offset()});
}

void TMainForm::ShowTempo() {
  ShowTempoAt(p.work.desk.song.MidiFileLoaded
                  ? p.work.desk.strips.Position.At(p.work.desk.Player().TimePosition).Tempo
                  : 120);
}

void TMainForm::ShowTransport() {
  const Desk& desk = p.work.desk;
  const bool playing = desk.IsPlaying();
  transport->SetView({.song = desk.song.MidiFileLoaded,
                      .playing = playing,
                      .recording = false,
                      .looping = p.work.desk.Player().Looping,
                      .whyNoRecording = NoRecording()});
  if (playing && !DisplayTimer.isActive()) DisplayTimer.start();
  if (playing && !SlidersTimer.isActive()) SlidersTimer.start();
  UpdateMenu();
  ShowStatus();
}

void TMainForm::ShowTranspose() {
  const Desk& desk = p.work.desk;
  transposePanel->SetView({.song = desk.song.MidiFileLoaded,
                           .transpose = desk.song.TransposeNew,
                           .intelligent = desk.settings.IntelligentTranspose,
                           .mode = desk.settings.IntelligentTransposeMode});
}

void TMainForm::ShowTimes() {
  const Song& song = p.work.desk.song;
  if (!song.MidiFileLoaded) {
    slider->Clear();
    display->SetSong(false);
    display->SetLastMeasure(1);
    return;
  }
  const std::vector<std::int64_t> bars = BarTimes(song);
  slider->SetBars(std::vector<qint64>(bars.begin(), bars.end()), song.SongLength);
  display->SetSong(true);
  display->SetLastMeasure(std::max(song.MaxSongPositionMeasure, MostMeasures));
}

void TMainForm::ShowLevels(bool running) {
  std::array<int, ChannelCount> levels{};
  {
    Desk& desk = p.work.desk;
    const auto held = desk.gate.Enter();
    if (running && desk.settings.DisplayActive) UpdateRMS(desk.realtime.RMSValue);
    for (std::size_t c = 0; running && c < levels.size(); ++c)
      levels[c] = desk.song.MidiData[c].Mute ? 0 : desk.realtime.RMSValue[c].Level;
  }
  stripRow->setLevels(levels);
}

}  // namespace Sonarello
