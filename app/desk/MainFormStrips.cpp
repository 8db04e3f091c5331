// The main window's strips, the controllers of the active channel, and the effect row.
#include <QMenu>

#include "app/controls/GroupColumn.h"
#include "app/controls/QtText.h"
#include "app/controls/StripBank.h"
#include "app/controls/StripRow.h"
#include "app/desk/DeskViews.h"
#include "app/desk/MainForm.h"
#include "app/desk/VelocityEditor.h"
#include "app/editors/ControllerForm.h"
#include "app/panels/ControllerPanel.h"
#include "app/panels/EffectRow.h"
#include "core/Texts.h"

namespace Sonarello {

namespace {

/// The menu that shows its own first line as a head that cannot be chosen.
void AddHead(QMenu& menu, const QString& text) {
  QAction* const head = menu.addAction(text);
  head->setEnabled(false);
  menu.addSeparator();
}

}  // namespace

void TMainForm::ConnectStrips() {
  TStrips& strips = p.work.desk.strips;
  const StripBank* const bank = &stripRow->bank();
  const GroupColumn* const group = &stripRow->group();
  connect(bank, &StripBank::channelSelected, this, [&strips](int c) { strips.Desk.SetMidiChannel(c); });
  connect(bank, &StripBank::faderPressed, this,
          [&strips](int c) { strips.Moves.TB_Volume00MouseDown(c); });
  connect(bank, &StripBank::faderReleased, this, [&strips] { strips.Moves.TB_Volume00MouseUp(); });
  connect(bank, &StripBank::volumeMoved, this, [this, &strips](int c, int value) {
    strips.Moves.TB_Volume00Change(c, value);
    ShowStrip(c);
  });
  connect(bank, &StripBank::soundWanted, this, &TMainForm::OpenBrowser);
  connect(bank, &StripBank::redirectMenuWanted, this, &TMainForm::ShowChannelsMenu);
  connect(bank, &StripBank::soloPressed, this, [&strips](int c, Qt::KeyboardModifiers keys) {
    strips.MuteSolo.Btn_Solo00MouseDown(c, keys.testFlag(Qt::ControlModifier));
  });
  connect(bank, &StripBank::mutePressed, this, [&strips](int c, Qt::KeyboardModifiers keys) {
    strips.MuteSolo.Btn_Mute00MouseDown(c, keys.testFlag(Qt::ControlModifier));
  });
  connect(bank, &StripBank::allSoloOff, this, [&strips] { strips.MuteSolo.ClearSolos(); });
  connect(bank, &StripBank::allMuteOff, this, [&strips] { strips.MuteSolo.ClearMutes(); });
  connect(bank, &StripBank::recPressed, this, [this] { Status(NoRecording()); });
  connect(bank, &StripBank::velocityPressed, this, [this, &strips](int c, int direction) {
    const int next = strips.Velocities.VelocityDown(c, direction);
    if (next > 0) VelocityTimer.start(next);
  });
  connect(bank, &StripBank::velocityReleased, this, [this, &strips] {
    VelocityTimer.stop();
    strips.Velocities.VelocityUp();
  });
  connect(bank, &StripBank::velocityRangeWanted, this, &TMainForm::OpenVelocityEditor);
  connect(bank, &StripBank::octavePressed, this,
          [&strips](int c, int direction) { strips.MoveOctave(c, direction); });
  connect(group, &GroupColumn::pressed, this, [&strips] { strips.GroupFader.TB_MasterVolMouseDown(); });
  connect(group, &GroupColumn::moved, this,
          [&strips](int position) { strips.GroupFader.TB_MasterVolChange(position); });
  connect(group, &GroupColumn::released, this, [&strips] { strips.GroupFader.TB_MasterVolMouseUp(); });
  connect(group, &GroupColumn::linkToggled, this,
          [&strips](bool on) { strips.Moves.SetMasterVolume(on); });
  strips.Desk.Hooks.PortFailed = [this](const std::string& text) { p.messages.Show(text); };
}

void TMainForm::VelocityTimerTimer() {
  const int next = p.work.desk.strips.Velocities.VelocityTimerTimer();
  if (next > 0)
    VelocityTimer.start(next);
  else
    VelocityTimer.stop();
}

void TMainForm::ConnectController() {
  connect(controller, &ControllerPanel::controllerMoved, this, [this](int number, int value) {
    p.work.desk.strips.Moves.PanelChange(number, value);
    ShowController();
  });
  connect(controller, &ControllerPanel::routingMenuWanted, this,
          [this](const QPoint& at, Qt::KeyboardModifiers keys) {
            ShowRoutesMenu(at, keys.testFlag(Qt::ControlModifier));
          });
}

void TMainForm::ShowStrip(int strip) {
  const Desk& desk = p.work.desk;
  if (busy || !desk.song.MidiFileLoaded) return;
  const TStripView at = desk.strips.View(strip);
  const TPatchRow sound = p.work.overview.Row(strip);
  stripRow->setView(strip, {.Channel = strip,
                            .WireChannel = at.Label.Number - 1,
                            .Name = ToQt(sound.Sound),
                            .Hint = ToQt(sound.Hint),
                            .Volume = at.Volume,
                            .Velocity = at.VelocityOffset,
                            .Octave = at.Octave,
                            .Song = true,
                            .HasNotes = at.Active,
                            .Active = at.Selected,
                            .Drum = at.Drums,
                            .Solo = at.Solo,
                            .Mute = at.Mute && !at.MutedBySolo,
                            .MutedBySolo = at.MutedBySolo,
                            .Armed = at.Rec,
                            .Recording = false,
                            .NoRecord = NoRecording()});
}

void TMainForm::ShowStrips() {
  if (busy) return;
  if (!p.work.desk.song.MidiFileLoaded) return stripRow->setNoSong();
  stripRow->setMetersShown(p.work.desk.settings.DisplayActive);
  stripRow->setLinked(p.work.desk.strips.Moves.MasterVolume());
  for (int strip = 0; strip < ChannelCount; ++strip) ShowStrip(strip);
}

void TMainForm::ShowController() {
  const Desk& desk = p.work.desk;
  ControllersView view{.song = desk.song.MidiFileLoaded};
  if (view.song && !busy) {
    const int strip = desk.song.ActiveMidiIndex;
    const TActiveChannelText text = desk.strips.Desk.ActiveText();
    const int routes = p.work.desk.Routes().MidiRouteElements();
    view.channel = desk.song.ActiveMidiChannel + 1;
    view.sound = ToQt(p.work.overview.Row(strip).Sound);
    view.instrument = ToQt(text.Instrument);
    view.output = ToQt(text.OutputName);
    view.severalRoutes = desk.options.MultiMidi && routes > 1;
    if (!view.severalRoutes)
      view.routingReason = QText("Es gibt nur einen Ausgang; weitere in den Einstellungen",
                                 "There is only one output; more in the settings");
    const TPanelView values = desk.strips.Panel();
    for (std::size_t n = 0; n < values.size(); ++n)
      view.values[n] = {.value = values[n].Value, .inSong = values[n].InSong};
  }
  controller->SetView(view);
}

void TMainForm::ControllerChanged(int channel, int number, int) {
  constexpr int volume = 7;
  if (number == p.work.controllers.Controller()) controllerForm->ShowChannel(channel);
  if (number == volume) return ShowStrip(channel);
  if (channel == p.work.desk.song.ActiveMidiIndex) ShowController();
}

void TMainForm::ShowEffects() {
  if (busy) return;
  effectRow->SetView(EffectsViewOf(p.work.effects, p.work.desk.song.MidiFileLoaded));
  effectRow->setVisible(showEffects && effectRow->HasCells());
  Arrange();
}

void TMainForm::OpenBrowser(int strip) {
  if (busy || !p.work.desk.song.MidiFileLoaded) return;
  p.work.desk.strips.Desk.SetMidiChannel(strip);
  p.work.browser.Open(strip);
}

void TMainForm::ShowChannelsMenu(int strip, const QPoint& at) {
  if (busy || !p.work.desk.song.MidiFileLoaded) return;
  const int wire = p.work.desk.song.MidiData[static_cast<std::size_t>(strip)].MidiChannel;
  QMenu popup(this);
  popup.setObjectName(QStringLiteral("PopupMenu_Channels"));
  AddHead(popup, QText("Midikanal %1 umleiten auf", "Redirect midi channel %1 to").arg(wire + 1));
  for (int channel = 0; channel < ChannelCount; ++channel) {
    if (!TRedirection::IsOffered(channel)) continue;
    QAction* const item = popup.addAction(QText("Midikanal %1", "Midi channel %1").arg(channel + 1));
    item->setObjectName(QStringLiteral("PM_MidiChannel%1").arg(channel, 2, 10, QLatin1Char('0')));
    item->setCheckable(true);
    item->setChecked(channel == wire);
    connect(item, &QAction::triggered, this, [this, wire, channel] {
      p.work.desk.redirection.Redirect(wire, channel, p.work.desk.IsPlaying());
      ShowStrips();
      ShowController();
    });
  }
  popup.exec(at);
}

void TMainForm::ShowRoutesMenu(const QPoint& at, bool all) {
  TRerouting& rerouting = p.work.desk.rerouting;
  const auto routes = rerouting.Menu(p.work.desk.IsPlaying(), all);
  if (!routes) return;
  QMenu popup(this);
  popup.setObjectName(QStringLiteral("MidiOuts"));
  AddHead(popup, ToQt(routes->Head));
  for (std::size_t route = 0; route < routes->Items.size(); ++route) {
    QAction* const item =
        popup.addAction(ToQt(routes->Items[route].Text).replace(QLatin1Char('&'), QLatin1String("&&")));
    item->setObjectName(QStringLiteral("MidiOuts_MI%1").arg(route + 1, 2, 10, QLatin1Char('0')));
    item->setCheckable(true);
    item->setChecked(routes->Items[route].Checked);
    connect(item, &QAction::triggered, this, [this, &rerouting, route] {
      rerouting.Choose(route, p.work.desk.IsPlaying());
      ShowStrips();
      ShowController();
    });
  }
  popup.exec(at);
}

void TMainForm::OpenVelocityEditor(int strip) {
  if (busy) return;
  velocityEditor->Open(strip, QCursor::pos());
}

}  // namespace Sonarello
