#include "app/controls/ChannelStrip.h"
#include "app/controls/LedButton.h"
#include "app/controls/LevelMeter.h"
#include "app/controls/NamePlate.h"
#include "app/controls/QtText.h"
#include "app/controls/Stepper.h"
#include "app/controls/TrackBar.h"
#include "app/controls/ValueBox.h"

namespace Sonarello {

QString ChannelStrip::channelWord() const {
  return QText("Kanal ", "Channel ") + QString::number(shown.Channel + 1);
}

QString ChannelStrip::stateWords() const {
  QString words;
  const auto add = [&](bool holds, const QString& word) {
    if (holds) words += QStringLiteral(", ") + word;
  };
  add(shown.Active, QText("aktiv", "active"));
  add(shown.Drum, QText("Schlagzeug", "drums"));
  add(shown.Solo, QText("Solo", "solo"));
  add(shown.MutedBySolo, QText("durch Solo stumm", "muted by solo"));
  add(shown.Mute && !shown.MutedBySolo, QText("stumm", "muted"));
  add(shown.Armed, QText("zur Aufnahme bereit", "armed for recording"));
  add(shown.Song && !shown.HasNotes, QText("notenlos", "noteless"));
  add(!shown.Song, QText("kein Song", "no song"));
  add(shown.Redirected(),
      QText("umgeleitet auf ", "redirected to ") + QString::number(shown.WireChannel + 1));
  return words;
}

void ChannelStrip::showTexts() {
  const QString channel = channelWord();
  const QString sound = shown.Noteless() ? QString() : shown.Name;
  plate->setName(!shown.Song       ? QString()
                 : !shown.HasNotes ? QText("notenlos", "noteless")
                                   : shown.Name);
  setAccessibleName(channel + stateWords());
  const QString volume = channel + QText(" Lautstärke", " volume");
  fader->setAccessibleName(sound.isEmpty() ? volume : volume + QStringLiteral(", ") + sound);
  value->setAccessibleName(volume);
  meter->setAccessibleName(channel + QText(" Pegel", " level"));
  soloButton->setAccessibleName(channel + QText(" Solo", " solo"));
  muteButton->setAccessibleName(channel + QText(" stumm", " mute"));
  recordButton->setAccessibleName(channel + QText(" Aufnahme", " record"));
  plate->setAccessibleName(channel + QText(" Sound: ", " sound: ") + plate->name());
  velocityStepper->setAccessibleName(channel + QText(" Anschlag", " velocity"));
  octaveStepper->setAccessibleName(channel + QText(" Oktave", " octave"));
}

void ChannelStrip::showTips() {
  const QString reason = !shown.Song ? QText("Kein Song geöffnet", "No song is open")
                         : !shown.HasNotes
                             ? QText("Keine Noten auf diesem Kanal", "No notes on this channel")
                             : QString();
  const auto tip = [&](QWidget* part, const QString& what, const QString& shortcut) {
    part->setToolTip(
        Tip(what, part->isEnabled() ? QString() : reason, part->isEnabled() ? shortcut : QString()));
  };
  if (shown.Noteless())
    tip(plate, shown.Song ? QText("Sound wählen", "Choose a sound") : reason,
        QText("Eingabe", "Enter"));
  else
    plate->setToolTip(Tip(shown.Name, shown.Hint, QText("Eingabe", "Enter")));
  tip(fader, QText("Lautstärke", "Volume"), QText("Auf, Ab", "Up, Down"));
  tip(value, QText("Lautstärke: Doppelklick zum Eintippen", "Volume: double click to type"),
      QStringLiteral("0..9"));
  const QString allOff =
      QText("Mit Strg: alle Solos und Stummschaltungen aus", "With Ctrl: all solos and mutes off");
  tip(soloButton, QText("Solo", "Solo") + QLatin1Char('\n') + allOff, QStringLiteral("S"));
  tip(muteButton, QText("Stumm\nMit Strg: alle Stummschaltungen aus", "Mute\nWith Ctrl: all mutes off"),
      QStringLiteral("M"));
  const QString record = QText("Aufnahme auf diesem Kanal", "Record on this channel");
  if (shown.Song && !shown.NoRecord.isEmpty())
    recordButton->setToolTip(Tip(record, shown.NoRecord, QString()));
  else
    tip(recordButton, record, QStringLiteral("R"));
  tip(velocityStepper,
      QText("Anschlag\nMit Strg: Bereich einstellen", "Velocity\nWith Ctrl: set the range"),
      QStringLiteral("+, −"));
  tip(octaveStepper, QText("Oktave", "Octave"), QText("Strg+Auf, Strg+Ab", "Ctrl+Up, Ctrl+Down"));
}

}  // namespace Sonarello
