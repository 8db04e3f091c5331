// Every panel as the desk shows it, in both languages, themes and densities and at two scales: for the
// eye as pictures, for the machine by what must hold of any layout.
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QPainter>
#include <QVBoxLayout>
#include <memory>

#include "app/Application.h"
#include "app/panels/Banner.h"
#include "app/panels/ControllerPanel.h"
#include "app/panels/DropCard.h"
#include "app/panels/LoopPanel.h"
#include "app/panels/PanelBench.h"
#include "app/panels/PositionDisplay.h"
#include "app/panels/SongSlider.h"
#include "app/panels/TempoPanel.h"
#include "app/panels/TransportPanel.h"
#include "app/panels/TransposePanel.h"
#include "app/panels/WindowSwitches.h"

namespace Sonarello {
namespace {

struct Look {
  bool german;
  ThemeKind theme;
  int scale;
  Density density;
};

QString NameOf(const Look& look) {
  return QStringLiteral("%1_%2_%3_%4")
      .arg(look.german ? QStringLiteral("de") : QStringLiteral("en"),
           look.theme == ThemeKind::Dark ? QStringLiteral("dark") : QStringLiteral("light"))
      .arg(look.scale)
      .arg(look.density == Density::Compact ? QStringLiteral("compact") : QStringLiteral("regular"));
}

/// The ground of the desk with the panels in their rows.
class Ground : public QWidget {
 public:
  void paintEvent(QPaintEvent*) override { QPainter(this).fillRect(rect(), th().bg0); }
};

class DeskPicture {
 public:
  DeskPicture(Density density, bool song) : density_(density), song_(song) {
    auto* column = new QVBoxLayout(&ground);
    const int gap = metrics().px(density == Density::Compact ? 6 : 8);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(gap);
    ground.resize(metrics().px(density == Density::Compact ? 1280 : 1440), 10);
    column->addLayout(MenuRow());
    auto* inside = new QVBoxLayout;
    inside->setContentsMargins(metrics().px(8), 0, metrics().px(8), 0);
    inside->setSpacing(gap);
    inside->addLayout(TransportRow(gap));
    inside->addWidget(Slider());
    inside->addWidget(Loop());
    inside->addWidget(Controllers());
    inside->addWidget(Effects());
    inside->addWidget(Lyrics());
    column->addLayout(inside);
    column->addWidget(Status());
  }

  Ground ground;
  std::vector<Panel*> panels;

 private:
  template <typename P>
  P* Add(P* panel) {
    panel->SetDensity(density_);
    panels.push_back(panel);
    return panel;
  }

  QLayout* MenuRow() {
    auto* row = new QHBoxLayout;
    auto* switches = Add(new WindowSwitches);
    switches->SetView(DeskWindow::Events, {true, {}});
    if (!song_) switches->SetView(DeskWindow::Drums, {false, NoSongReason()});
    switches->SetMidiIn(song_, QStringLiteral("UM-ONE MIDI 1"));
    row->addStretch();
    row->addWidget(switches);
    return row;
  }

  QLayout* TransportRow(int gap) {
    auto* row = new QHBoxLayout;
    row->setSpacing(gap);
    auto* transport = Add(new TransportPanel);
    transport->SetView({song_, song_, false, song_, {}});
    auto* position = Add(new PositionDisplay);
    position->SetSong(song_);
    if (song_) {
      position->SetPosition(17, 3, 41382);
      position->SetSignature(SignatureText(4, 4, KeyText(0, false, GermanLanguage)));
    }
    auto* tempo = Add(new TempoPanel);
    tempo->SetView({song_, song_ ? 96.0 : 120.0, song_ ? 4 : 0});
    auto* transpose = Add(new TransposePanel);
    transpose->SetView({song_, song_ ? -2 : 0, song_, 2});
    auto* file = Add(new FilePanel);
    file->SetView(song_ ? SongFile() : FileView{});
    for (QWidget* widget : std::initializer_list<QWidget*>{transport, position, tempo, transpose}) {
      row->addWidget(widget);
    }
    row->addWidget(file, 1);
    return row;
  }

  QWidget* Slider() {
    auto* slider = Add(new SongSlider);
    if (!song_) return slider;
    slider->SetBars(EvenBars(68), 136000);
    slider->SetLoop(LoopSpan{16000, 48000});
    slider->SetPosition(33000);
    return slider;
  }

  QWidget* Loop() {
    auto* loop = Add(new LoopPanel);
    loop->SetView({song_, song_, song_ ? QStringLiteral("9:01") : QString(),
                   song_ ? QStringLiteral("25:01") : QString()});
    SetReducedMotion(true);
    loop->Slide(true);
    SetReducedMotion(false);
    return loop;
  }

  QWidget* Controllers() {
    auto* controllers = Add(new ControllerPanel);
    controllers->SetView(song_ ? SongControllers() : ControllersView{});
    return controllers;
  }

  QWidget* Effects() {
    auto* effects = Add(new EffectRow);
    EffectsView view = SongEffects();
    if (!song_) {
      for (auto* cells : {&view.system, &view.insertions}) {
        for (EffectView& cell : *cells) cell = {cell.block};
      }
    }
    effects->SetView(view);
    return effects;
  }

  QWidget* Lyrics() {
    auto* lyrics = Add(new LyricBar);
    if (!song_) return lyrics;
    lyrics->SetView(SongLyrics());
    lyrics->SetCurrent(7);
    return lyrics;
  }

  QWidget* Status() {
    auto* status = Add(new StatusBar);
    StatusView view = SongStatus();
    if (!song_) view = {false, {}, {}, {}, view.instrument, view.outputs, view.scale};
    status->SetView(view);
    return status;
  }

  Density density_;
  bool song_;
};

/// Buttons lie inside their panel and never on one another.
void ExpectTidy(const Panel& panel) {
  const auto buttons = panel.findChildren<QAbstractButton*>(QString(), Qt::FindDirectChildrenOnly);
  for (qsizetype i = 0; i < buttons.size(); ++i) {
    const QRect place = buttons[i]->geometry();
    EXPECT_TRUE(panel.rect().contains(place))
        << panel.metaObject()->className() << ": " << ToStd(buttons[i]->accessibleName());
    EXPECT_FALSE(buttons[i]->accessibleName().isEmpty());
    EXPECT_FALSE(buttons[i]->toolTip().isEmpty()) << ToStd(buttons[i]->accessibleName());
    for (qsizetype k = 0; k < i; ++k) EXPECT_FALSE(place.intersects(buttons[k]->geometry()));
  }
}

class Gallery : public testing::TestWithParam<Look> {};

TEST_P(Gallery, APanelIsTidyInEveryLook) {
  const Look look = GetParam();
  GermanLanguage = look.german;
  const InTheme theme(look.theme);
  const AtScale scale(look.scale);
  for (const bool song : {true, false}) {
    DeskPicture desk(look.density, song);
    ShowForTest(desk.ground);
    for (const Panel* panel : desk.panels) {
      if (!panel->isVisible()) continue;
      ExpectTidy(*panel);
      EXPECT_GE(panel->width(), panel->minimumSizeHint().width()) << panel->metaObject()->className();
      EXPECT_FALSE(panel->accessibleName().isEmpty()) << panel->metaObject()->className();
    }
    EXPECT_TRUE(SaveScreenshot(
        desk.ground,
        QStringLiteral("panels_%1%2").arg(song ? QString() : QStringLiteral("empty_"), NameOf(look))));
  }
  GermanLanguage = false;
}

/// The card over the desk and the banners, one below the other.
class Notices : public Ground {
 public:
  Notices() {
    auto* column = new QVBoxLayout(this);
    card.SetInstrument(QStringLiteral("Yamaha Genos"));
    column->addWidget(&card, 0, Qt::AlignHCenter);
    column->addWidget(&error);
    column->addWidget(&warning);
    error.SetMessage(Severity::Error,
                     QText("Sie haben keine MIDI-Interface an Ihrem Computer!\r\nDaher ist keine "
                           "MIDI-Wiedergabe möglich!",
                           "There is no midi interface in your computer!\r\nTherefor no midi playback "
                           "posible!"));
    warning.SetMessage(Severity::Warning, QText("3 Noten wurden gekürzt.", "3 notes were shortened."));
  }
  DropCard card;
  Banner error, warning;
};

TEST_P(Gallery, CardAndBannersAreTidyInEveryLook) {
  const Look look = GetParam();
  if (look.density == Density::Compact) return;  // neither knows a density
  GermanLanguage = look.german;
  const InTheme theme(look.theme);
  const AtScale scale(look.scale);
  Notices notices;
  ShowForTest(notices);
  for (const bool dragging : {false, true}) {
    notices.card.SetDragging(dragging);
    notices.card.SetRecent(dragging);
    ExpectTidy(notices.card);
    for (const auto* button : notices.card.findChildren<QAbstractButton*>()) {
      EXPECT_TRUE(notices.card.CardRect().contains(button->geometry()));
    }
    EXPECT_TRUE(SaveScreenshot(notices,
                               QStringLiteral("notices_%1%2")
                                   .arg(dragging ? QStringLiteral("drag_") : QString(), NameOf(look))));
  }
  GermanLanguage = false;
}

std::vector<Look> AllLooks() {
  std::vector<Look> looks;
  for (const bool german : {true, false}) {
    for (const ThemeKind theme : {ThemeKind::Dark, ThemeKind::Light}) {
      for (const int scale : {100, 150, 180}) {
        for (const Density density : {Density::Compact, Density::Regular}) {
          looks.push_back({german, theme, scale, density});
        }
      }
    }
  }
  return looks;
}

INSTANTIATE_TEST_SUITE_P(Panels, Gallery, testing::ValuesIn(AllLooks()),
                         [](const auto& look) { return ToStd(NameOf(look.param)); });

}  // namespace
}  // namespace Sonarello
