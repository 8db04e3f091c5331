// Appearances and songs that the tests of the controls show.
#pragma once

#include <QColor>
#include <QImage>
#include <QWidget>
#include <array>

#include "app/controls/Metrics.h"
#include "app/controls/StripRow.h"
#include "app/controls/StripView.h"
#include "app/controls/Theme.h"

namespace Sonarello {

struct InTheme {
  explicit InTheme(ThemeKind kind) { SetTheme(kind); }
  ~InTheme() { SetTheme(ThemeKind::Dark); }
  InTheme(const InTheme&) = delete;
  InTheme& operator=(const InTheme&) = delete;
};

struct AtScale {
  explicit AtScale(int percent) { SetScale(percent); }
  ~AtScale() { SetScale(100); }
  AtScale(const AtScale&) = delete;
  AtScale& operator=(const AtScale&) = delete;
};

/// Every state of a strip at once, on sixteen channels.
inline void ShowSong(StripRow& row) {
  struct Sound {
    const char* name;
    int volume, velocity;
  };
  constexpr std::array<Sound, 16> sounds{{{"ConcertGrand (S.Art!)", 96, 0},
                                          {"FingerBass (MegaVoice)", 104, 0},
                                          {"SteelAcoustic (MegaVoice)", 78, 5},
                                          {"ChamberStrings (S.Art2!)", 88, 0},
                                          {"FullOrgan (OrganFlutes)", 64, 0},
                                          {"SweetTrumpet (S.Art!)", 92, -8},
                                          {"Flugelhorn Duo", 84, 0},
                                          {"StyrianAccordionMaster", 100, 12},
                                          {"BrassSection Warm", 72, 0},
                                          {"Standard Kit 1 (Live!Drum)", 110, 0},
                                          {"LatinPercussion (Live!Drum)", 70, -4},
                                          {"Glockenspiel", 58, 0},
                                          {"MaleChoirAah (S.Art!)", 90, 0},
                                          {"", 100, 0},
                                          {"", 100, 0},
                                          {"", 100, 0}}};
  for (int channel = 0; channel < 16; ++channel) {
    const Sound& sound = sounds[static_cast<std::size_t>(channel)];
    StripView view{.Channel = channel, .WireChannel = channel};
    view.Name = QString::fromUtf8(sound.name);
    view.Volume = sound.volume;
    view.Velocity = sound.velocity;
    view.HasNotes = channel < 13;
    view.Active = channel == 3;
    view.Drum = channel == 9 || channel == 10;
    view.Mute = channel == 4 || channel == 8;
    view.Armed = channel == 7;
    view.Octave = channel == 1 ? -1 : channel == 11 ? 1 : 0;
    view.WireChannel = channel == 11 ? 13 : channel == 13 ? 11 : channel;
    row.setView(channel, view);
  }
  constexpr std::array levels{85, 97, 58, 70, 90, 88, 50, 72, 60, 120, 64, 30, 42, 0, 0, 0};
  row.setLevels(levels);
}

inline QImage Picture(QWidget& widget) { return widget.grab().toImage(); }

}  // namespace Sonarello
