#include <gtest/gtest.h>

#include <QLabel>
#include <QTest>

#include "app/Application.h"
#include "app/controls/Icons.h"
#include "app/controls/Knob.h"
#include "app/controls/LedButton.h"
#include "app/controls/LevelMeter.h"
#include "app/controls/Painting.h"
#include "app/controls/ParamSlider.h"
#include "app/controls/PianoKeys.h"
#include "app/controls/QtText.h"
#include "app/controls/SegmentedChoice.h"
#include "app/controls/Shown.h"
#include "app/controls/Stepper.h"
#include "app/controls/TrackBar.h"
#include "app/controls/ValueBox.h"

namespace Sonarello {
namespace {

/// A sheet on which controls are laid out one beside the other.
class Sheet : public QWidget {
 public:
  Sheet() {
    const Metrics& m = metrics();
    QPalette ground = palette();
    ground.setColor(QPalette::Window, th().bg1);
    setPalette(ground);
    resize(m.px(1140), m.px(560));
  }

  void place(QWidget* control, double x, double y, QSize size = {}) {
    const Metrics& m = metrics();
    control->setParent(this);
    control->setGeometry(QRect(QPoint(m.px(x), m.px(y)), size.isEmpty() ? control->sizeHint() : size));
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    const Metrics& m = metrics();
    QPainter painter(this);
    for (int i = 0; i < Icons; ++i)
      PaintIcon(painter, static_cast<Icon>(i), QRectF(m.px(20 + 34 * i), m.px(500), m.px(16), m.px(16)),
                th().tx1);
    painter.drawPixmap(m.px(1070), m.px(430), ApplicationIcon().pixmap(m.px(48)));
  }
};

void PlaceLights(Sheet& sheet) {
  double x = 20;
  for (const LedKind kind : {LedKind::Solo, LedKind::Mute, LedKind::Record})
    for (const LedState state : {LedState::Off, LedState::Lit, LedState::Implied}) {
      if (state == LedState::Implied && kind != LedKind::Mute) continue;
      for (const bool enabled : {true, false}) {
        auto* button = new LedButton(kind);
        button->setState(state);
        button->setEnabled(enabled);
        sheet.place(button, x, 20);
        x += 36;
      }
    }
  for (const bool lit : {false, true}) {
    auto* led = new SmallLed;
    led->setLit(lit);
    sheet.place(led, x += 30, 28);
  }
  auto* file = new SmallLed(nullptr, SmallLed::Ink::File);
  file->setLit(true);
  sheet.place(file, x + 30, 28);
}

Knob* PlaceKnobs(Sheet& sheet) {
  double x = 20;
  Knob* last = nullptr;
  struct Shown {
    int value;
    bool bipolar, enabled;
  };
  for (const Shown& shown :
       {Shown{0, false, true}, Shown{64, false, true}, Shown{127, false, true}, Shown{52, true, true},
        Shown{64, true, true}, Shown{64, true, false}, Shown{92, false, true}}) {
    last = new Knob;
    last->setBipolar(shown.bipolar);
    last->setValue(shown.value);
    last->setEnabled(shown.enabled);
    sheet.place(last, x, 70);
    x += 66;
  }
  return last;
}

void PlaceSliders(Sheet& sheet) {
  double y = 60;
  for (const bool bipolar : {false, true})
    for (const bool active : {false, true}) {
      auto* slider = new ParamSlider;
      slider->setName(bipolar ? QStringLiteral("EQ Low Gain") : QStringLiteral("Rotor Speed"));
      slider->setBipolar(bipolar);
      slider->setValue(bipolar ? 80 : 40);
      slider->setValueText(bipolar ? QStringLiteral("+2 dB") : QStringLiteral("0.83 Hz"));
      slider->setActive(active);
      sheet.place(slider, 640, y += 36);
    }
}

void PlaceSmallThings(Sheet& sheet) {
  double x = 640;
  for (const StepperKind kind : {StepperKind::Velocity, StepperKind::Octave})
    for (const int value : {-1, 0, 1}) {
      auto* stepper = new Stepper(kind);
      stepper->setValue(value);
      sheet.place(stepper, x, 24);
      x += 80;
    }
  auto* choice = new SegmentedChoice({QText("Dunkel", "Dark"), QText("Hell", "Light")});
  sheet.place(choice, 640, 250);
  auto* box = new ValueBox;
  box->setValue(96);
  sheet.place(box, 820, 252);
  auto* keys = new PianoKeys;
  keys->setSounding(60, true);
  keys->setSounding(63, true);
  const Metrics& m = metrics();
  sheet.place(keys, 640, 300, QSize(m.px(480), m.px(110)));
}

void PlaceFaders(Sheet& sheet) {
  using Bar = TCustomTrackBar;
  double x = 20;
  const Metrics& m = metrics();
  struct Shown {
    int position, level;
    Bar::Look look;
    Bar::Dim dim;
    double width;
  };
  for (const Shown& shown : {Shown{96, 80, Bar::Look::Normal, Bar::Dim::None, 74},
                             Shown{96, 120, Bar::Look::Normal, Bar::Dim::None, 74},
                             Shown{88, 70, Bar::Look::Active, Bar::Dim::None, 74},
                             Shown{110, 100, Bar::Look::Drum, Bar::Dim::None, 74},
                             Shown{72, 0, Bar::Look::Normal, Bar::Dim::Muted, 74},
                             Shown{100, 0, Bar::Look::Normal, Bar::Dim::Noteless, 74},
                             Shown{96, 60, Bar::Look::Normal, Bar::Dim::None, 66}}) {
    auto* fader = new Bar;
    fader->setPosition(shown.position);
    fader->setLook(shown.look, shown.dim);
    sheet.place(fader, x, 150, QSize(m.px(shown.width), m.px(190)));
    auto* meter = new LevelMeter(fader);
    meter->setGround(th().bg1, Bar::Opacity(shown.dim));
    meter->setGeometry(m.px(2), 0, m.px(9), fader->height());
    meter->setLevel(shown.level);
    x += 84;
  }
}

void SaveSheet(const QString& name) {
  Sheet sheet;
  PlaceLights(sheet);
  Knob* focus = PlaceKnobs(sheet);
  PlaceSliders(sheet);
  PlaceSmallThings(sheet);
  PlaceFaders(sheet);
  ShowForTest(sheet);
  sheet.activateWindow();
  focus->clearFocus();
  focus->setFocus(Qt::TabFocusReason);
  EXPECT_TRUE(SaveScreenshot(sheet, QStringLiteral("controls_own_") + name));
}

TEST(Gallery, OwnControlsAreDrawnInBothThemesAndScales) {
  for (const int percent : {100, 150}) {
    const AtScale scale(percent);
    SaveSheet(QStringLiteral("dark_%1").arg(percent));
    const InTheme light(ThemeKind::Light);
    SaveSheet(QStringLiteral("light_%1").arg(percent));
  }
}

}  // namespace
}  // namespace Sonarello
