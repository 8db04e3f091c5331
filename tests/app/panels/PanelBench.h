// Views as of a song in the middle of its play, and the appearances that the panels must stand.
#pragma once

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QScreen>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <QWheelEvent>
#include <QWidget>

#include "app/controls/Metrics.h"
#include "app/controls/QtText.h"
#include "app/controls/Theme.h"
#include "app/panels/ControllerPanel.h"
#include "app/panels/EffectRow.h"
#include "app/panels/FilePanel.h"
#include "app/panels/LyricBar.h"
#include "app/panels/PanelTexts.h"
#include "app/panels/StatusBar.h"
#include "core/Texts.h"

namespace Sonarello {

struct InTheme {
  explicit InTheme(ThemeKind kind) { SetTheme(kind); }
  ~InTheme() { SetTheme(ThemeKind::Dark); }
};

struct AtScale {
  explicit AtScale(int percent) { SetScale(percent); }
  ~AtScale() { SetScale(100); }
};

/// The button of a panel that assistive programs call by a name.
inline QAbstractButton* ButtonOf(const QWidget& panel, const QString& name) {
  for (auto* button : panel.findChildren<QAbstractButton*>()) {
    if (button->accessibleName() == name) return button;
  }
  ADD_FAILURE() << "no button is called " << ToStd(name);
  return nullptr;
}

/// Lets the running timer of a widget run out now, without waiting; false if none runs.
inline bool RunOut(const QObject& widget) {
  for (auto* timer : widget.findChildren<QTimer*>(QString(), Qt::FindDirectChildrenOnly)) {
    if (!timer->isActive()) continue;
    QTimerEvent event(timer->timerId());
    QCoreApplication::sendEvent(timer, &event);
    return true;
  }
  return false;
}

/// Turns the wheel over the middle of a widget by whole notches; up is positive.
inline void TurnWheel(QWidget& widget, int notches) {
  const QPointF middle = QRectF(widget.rect()).center();
  QWheelEvent event(middle, widget.mapToGlobal(middle), {}, {0, 120 * notches}, Qt::NoButton,
                    Qt::NoModifier, Qt::NoScrollPhase, false);
  QCoreApplication::sendEvent(&widget, &event);
}

/// What stands on the screen: what was painted piece by piece, not painted anew for the picture. To be
/// taken before another window is shown, as a window that becomes active or inactive is painted whole.
inline QImage OnScreen(const QWidget& window) {
  QCoreApplication::processEvents();
  const QImage picture = window.screen()->grabWindow(window.winId()).toImage();
  EXPECT_EQ(picture.size(), window.size());
  return picture;
}

/// Beginnings of `bars` bars of two seconds each, in ms.
inline std::vector<qint64> EvenBars(int bars, qint64 length = 2000) {
  std::vector<qint64> starts;
  for (int i = 0; i < bars; ++i) starts.push_back(i * length);
  return starts;
}

inline FileView SongFile() {
  return {true,
          QStringLiteral("Muss_i_denn_Genos.mid"),
          QStringLiteral("/songs/Muss_i_denn_Genos.mid"),
          true,
          0,
          480,
          171000};
}

inline EffectView LitEffect(const QString& block, const QString& effect, int channel = 0) {
  EffectView view{block, effect};
  view.on = true;
  if (channel > 0) {
    view.part = QText("K %1", "Ch %1").arg(channel);
    view.spokenPart = QText("Kanal %1", "channel %1").arg(channel);
  }
  return view;
}

inline EffectsView SongEffects() {
  EffectsView view;
  view.system = {LitEffect(QStringLiteral("Chorus"), QStringLiteral("Chorus 3")),
                 LitEffect(QStringLiteral("Reverb"), QStringLiteral("Hall 2")),
                 LitEffect(QStringLiteral("Variation"), QStringLiteral("Tempo Cross 1")),
                 LitEffect(QStringLiteral("Master EQ"), QStringLiteral("Mellow")),
                 {QStringLiteral("Vocal Harmony"), QStringLiteral("Standard Duet")},
                 {QStringLiteral("Vocal Effect"), QStringLiteral("Distortion")}};
  view.system[2].part = QStringLiteral("Right1");
  const QStringList names{QStringLiteral("Stereo Chorus 2"), QStringLiteral("Rotary Speaker 5"),
                          QStringLiteral("Compressor + EQ"), QStringLiteral("British Lead")};
  for (int i = 0; i < 16; ++i) {
    const QString block = QStringLiteral("DSP %1").arg(i + 1);
    if (i < names.size()) {
      view.insertions.push_back(LitEffect(block, names[i], i + 3));
    } else {
      view.insertions.push_back({block, QStringLiteral("Thru")});
    }
  }
  return view;
}

inline LyricView SongLyrics() {
  LyricView view{QStringLiteral("G7"), QStringLiteral("C")};
  const auto add = [&](const char* text, const char* chord = "") {
    view.line.push_back({QString::fromUtf8(text), QString::fromUtf8(chord)});
  };
  add("Muss ", "C");
  add("i ");
  add("denn, ");
  add("muss ");
  add("i ");
  add("denn ");
  add("zum ", "G7");
  add("Städ");
  add("te-");
  add("le ");
  add("hin-", "C");
  add("aus, ");
  add("Städ-", "G7");
  add("te-");
  add("le ");
  add("hin-");
  add("aus, ", "C");
  add("und ", "F");
  add("du, ");
  view.nextLine = QStringLiteral("Wenn i komm, wenn i komm, wenn i wieder-um komm");
  return view;
}

inline ControllersView SongControllers() {
  ControllersView view{true,
                       4,
                       QStringLiteral("ChamberStrings (S.Art2!)"),
                       QStringLiteral("Yamaha Genos"),
                       QStringLiteral("UM-ONE MIDI 1"),
                       true};
  const std::array values{52, 127, 54, 18, 64, 70, 64, 58, 0};
  for (std::size_t i = 0; i < values.size(); ++i) view.values[i] = {values[i], true};
  return view;
}

inline StatusView SongStatus() {
  return {true,
          5,
          QStringLiteral("9:01 – 25:01"),
          QStringLiteral("14:32"),
          QStringLiteral("Yamaha Genos"),
          4,
          metrics().percent};
}

}  // namespace Sonarello
