// The song slider and its scale of bars.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAccessible>

#include "app/Application.h"
#include "app/panels/PanelBench.h"
#include "app/panels/SongSlider.h"
#include "helpers/InGerman.h"

namespace Sonarello {
namespace {

using testing::ElementsAre;

TEST(BarScale, FindsTheBarOfATime) {
  BarScale scale;
  scale.SetBars({0, 2000, 3000, 7000}, 9000);
  EXPECT_EQ(scale.BarAt(-1), 0);
  EXPECT_EQ(scale.BarAt(1999), 0);
  EXPECT_EQ(scale.BarAt(2000), 1);
  EXPECT_EQ(scale.BarAt(99999), 3);
  EXPECT_EQ(scale.NearestBar(2400), 2000);
  EXPECT_EQ(scale.NearestBar(5100), 7000);
  EXPECT_EQ(scale.NearestBar(8900), 9000);
}

TEST(BarScale, StepsByBarsWhateverTheirLength) {
  BarScale scale;
  scale.SetBars({0, 2000, 3000, 7000}, 9000);
  EXPECT_EQ(scale.Step(0, 1), 2000);
  EXPECT_EQ(scale.Step(2500, 1), 3000);
  EXPECT_EQ(scale.Step(2500, -1), 2000);
  EXPECT_EQ(scale.Step(2000, -1), 0);
  EXPECT_EQ(scale.Step(0, -4), 0);
  EXPECT_EQ(scale.Step(7000, 1), 9000);
  EXPECT_EQ(scale.Step(9000, 4), 9000);
  EXPECT_EQ(scale.Step(9000, -1), 7000);
}

TEST(BarScale, ASongWithoutBarsOrLengthIsHarmless) {
  BarScale scale;
  scale.SetBars({}, 0);
  EXPECT_EQ(scale.bars(), 1);
  EXPECT_EQ(scale.Step(0, 1), 0);
  EXPECT_EQ(scale.XOf(5, 100), 0);
  EXPECT_EQ(scale.TimeAt(50, 100), 0);
  EXPECT_EQ(scale.TimeAt(50, 0), 0);
  EXPECT_TRUE(scale.Ticks(100, 8).empty());
}

TEST(BarScale, TicksStandNoCloserThanAsked) {
  for (const int bars : {1, 3, 68, 160, 500, 5000, 5001}) {
    BarScale scale;
    scale.SetBars(EvenBars(bars), bars * 2000LL);
    for (const double width : {200.0, 1248.0, 2500.0}) {
      const auto ticks = scale.Ticks(width, 8);
      ASSERT_FALSE(ticks.empty());
      EXPECT_LE(static_cast<double>(ticks.size()), width / 8 + 1) << bars;
      EXPECT_TRUE(ticks.front().numbered);
      EXPECT_EQ(ticks.front().measure, 1);
      for (std::size_t i = 1; i < ticks.size(); ++i)
        EXPECT_GE(ticks[i].x - ticks[i - 1].x, 8 - 1e-9) << bars;
    }
  }
}

TEST(BarScale, ShowsEveryBarAndNumbersEveryFourthWhereThereIsRoom) {
  BarScale scale;
  scale.SetBars(EvenBars(68), 136000);
  const auto ticks = scale.Ticks(1248, 8);
  ASSERT_EQ(ticks.size(), 68U);
  for (const BarTick& tick : ticks) EXPECT_EQ(tick.numbered, (tick.measure - 1) % 4 == 0);
  EXPECT_EQ(scale.TickStep(68 * 8 - 1, 8), 2);
  EXPECT_EQ(scale.TickStep(68 * 8, 8), 1);
}

TEST(BarScale, TicksFollowChangesOfTempo) {
  BarScale scale;
  scale.SetBars({0, 1000, 2000, 6000}, 10000);
  const auto ticks = scale.Ticks(100, 8);
  std::vector<double> places;
  for (const BarTick& tick : ticks) places.push_back(tick.x);
  EXPECT_THAT(places, ElementsAre(0, 10, 20, 60));
}

/// A slider of 68 bars of two seconds with a loop from bar 9 to bar 25, 1264 wide.
struct Bench {
  Bench() {
    slider.SetDensity(Density::Compact);
    slider.resize(1264, 28);
    slider.SetBars(EvenBars(68), 136000);
    slider.SetPositionText([](qint64 ms) { return QStringLiteral("at %1").arg(ms); });
    QObject::connect(&slider, &SongSlider::pressed, [this] { said += QStringLiteral("pressed"); });
    QObject::connect(&slider, &SongSlider::moved, [this](qint64 ms) { said += QString::number(ms); });
    QObject::connect(&slider, &SongSlider::released, [this] { said += QStringLiteral("released"); });
    QObject::connect(&slider, &SongSlider::loopMoved, [this](qint64 start, qint64 end) {
      said += QStringLiteral("loop %1-%2").arg(start).arg(end);
    });
    QObject::connect(&slider, &SongSlider::loopReleased,
                     [this] { said += QStringLiteral("loop released"); });
  }
  [[nodiscard]] QPoint At(qint64 ms, int y) const {
    return {static_cast<int>(std::lround(slider.XOf(ms))), y};
  }
  void Move(const QPoint& at, Qt::KeyboardModifiers modifiers = {}) {
    QMouseEvent event(QEvent::MouseMove, QPointF(at), slider.mapToGlobal(QPointF(at)), Qt::NoButton,
                      Qt::LeftButton, modifiers);
    QCoreApplication::sendEvent(&slider, &event);
  }
  SongSlider slider;
  QStringList said;
};

TEST(SongSlider, AClickJumpsAndADragGoesOnFromThere) {
  Bench bench;
  QTest::mousePress(&bench.slider, Qt::LeftButton, {}, bench.At(68000, 10));
  bench.Move(bench.At(34000, 10));
  QTest::mouseRelease(&bench.slider, Qt::LeftButton, {}, bench.At(34000, 10));
  ASSERT_EQ(bench.said.size(), 4);
  EXPECT_EQ(bench.said.front(), "pressed");
  EXPECT_NEAR(bench.said[1].toInt(), 68000, 60);
  EXPECT_NEAR(bench.said[2].toInt(), 34000, 60);
  EXPECT_EQ(bench.said.back(), "released");
}

TEST(SongSlider, TheGripIsTakenWithoutAJump) {
  Bench bench;
  bench.slider.SetPosition(68000);
  const QPoint onGrip = bench.At(68000, 22) + QPoint(4, 0);
  QTest::mousePress(&bench.slider, Qt::LeftButton, {}, onGrip);
  EXPECT_EQ(bench.said, QStringList{"pressed"});
  bench.Move(onGrip + QPoint(10, 0));
  EXPECT_NEAR(bench.slider.XOf(bench.slider.position()), bench.slider.XOf(68000) + 10, 0.6);
}

TEST(SongSlider, TheTickOfTheDisplayDoesNotTearTheGripFromTheHand) {
  Bench bench;
  QTest::mousePress(&bench.slider, Qt::LeftButton, {}, bench.At(68000, 10));
  const qint64 held = bench.slider.position();
  bench.slider.SetPosition(1000);
  EXPECT_EQ(bench.slider.position(), held);
  QTest::mouseRelease(&bench.slider, Qt::LeftButton, {}, bench.At(68000, 10));
  bench.slider.SetPosition(1000);
  EXPECT_EQ(bench.slider.position(), 1000);
}

TEST(SongSlider, SeeksStayInTheSong) {
  Bench bench;
  QTest::mousePress(&bench.slider, Qt::LeftButton, {}, bench.At(68000, 10));
  bench.Move({-500, 10});
  EXPECT_EQ(bench.slider.position(), 0);
  bench.Move({5000, 10});
  EXPECT_EQ(bench.slider.position(), 136000);
}

TEST(SongSlider, FlagsMoveTheLoopByWholeBarsAndFreelyWithShift) {
  Bench bench;
  bench.slider.SetLoop(LoopSpan{16000, 48000});
  QTest::mousePress(&bench.slider, Qt::LeftButton, {}, bench.At(16000, 3) + QPoint(2, 0));
  bench.Move(bench.At(20300, 3));
  EXPECT_EQ(bench.said, QStringList{"loop 20000-48000"});
  bench.Move(bench.At(21500, 3), Qt::ShiftModifier);
  ASSERT_TRUE(bench.slider.loop().has_value());
  EXPECT_NEAR(double(bench.slider.loop()->start), 21500, 60);
  QTest::mouseRelease(&bench.slider, Qt::LeftButton, {}, bench.At(21500, 3));
  EXPECT_EQ(bench.said.back(), "loop released");
}

TEST(SongSlider, TheEndsOfTheLoopNeverCross) {
  Bench bench;
  bench.slider.SetLoop(LoopSpan{16000, 48000});
  QTest::mousePress(&bench.slider, Qt::LeftButton, {}, bench.At(48000, 3) - QPoint(2, 0));
  bench.Move(bench.At(10000, 3));
  EXPECT_TRUE(bench.said.isEmpty());
  EXPECT_EQ(bench.slider.loop(), (LoopSpan{16000, 48000}));
  bench.Move(bench.At(18000, 3));
  EXPECT_EQ(bench.slider.loop(), (LoopSpan{16000, 18000}));
}

TEST(SongSlider, TheStartOfTheLoopStopsBeforeItsEnd) {
  Bench bench;
  bench.slider.SetLoop(LoopSpan{16000, 48000});
  QTest::mousePress(&bench.slider, Qt::LeftButton, {}, bench.At(16000, 3) + QPoint(2, 0));
  bench.Move(bench.At(48000, 3));
  bench.Move(bench.At(60000, 3));
  EXPECT_TRUE(bench.said.isEmpty());
  bench.Move(bench.At(46000, 3));
  EXPECT_EQ(bench.said, QStringList{"loop 46000-48000"});
}

TEST(SongSlider, KeysStepByBars) {
  Bench bench;
  const auto press = [&](Qt::Key key) {
    QTest::keyClick(&bench.slider, key);
    return bench.slider.position();
  };
  EXPECT_EQ(press(Qt::Key_Right), 2000);
  EXPECT_EQ(bench.said, (QStringList{"pressed", "2000", "released"}));
  EXPECT_EQ(press(Qt::Key_PageDown), 10000);
  EXPECT_EQ(press(Qt::Key_Left), 8000);
  EXPECT_EQ(press(Qt::Key_PageUp), 0);
  EXPECT_EQ(press(Qt::Key_End), 136000);
  EXPECT_EQ(press(Qt::Key_Home), 0);
}

TEST(SongSlider, AHeldKeyIsOneSeek) {
  Bench bench;
  for (const bool repeat : {false, true, true}) {
    QKeyEvent event(QEvent::KeyPress, Qt::Key_Right, Qt::NoModifier, QString(), repeat);
    QCoreApplication::sendEvent(&bench.slider, &event);
  }
  QTest::keyRelease(&bench.slider, Qt::Key_Right);
  EXPECT_EQ(bench.said, (QStringList{"pressed", "2000", "4000", "6000", "released"}));
}

TEST(SongSlider, ASeekByKeyEndsWhenTheFocusGoes) {
  Bench bench;
  QTest::keyPress(&bench.slider, Qt::Key_Right);
  QFocusEvent out(QEvent::FocusOut);
  QCoreApplication::sendEvent(&bench.slider, &out);
  EXPECT_EQ(bench.said.back(), "released");
  QTest::keyRelease(&bench.slider, Qt::Key_Right);
  EXPECT_EQ(bench.said.count("released"), 1);
}

TEST(SongSlider, ASeekEndsWhenTheSongGoes) {
  Bench bench;
  QTest::mousePress(&bench.slider, Qt::LeftButton, {}, bench.At(68000, 10));
  bench.slider.Clear();
  EXPECT_EQ(bench.said.back(), "released");
  QTest::mouseRelease(&bench.slider, Qt::LeftButton, {}, bench.At(68000, 10));
  EXPECT_EQ(bench.said.count("released"), 1);
}

TEST(SongSlider, TakesItsKeysBeforeTheWindowDoes) {
  Bench bench;
  const auto takes = [&](Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    QKeyEvent event(QEvent::ShortcutOverride, key, modifiers);
    event.ignore();
    QCoreApplication::sendEvent(&bench.slider, &event);
    return event.isAccepted();
  };
  EXPECT_TRUE(takes(Qt::Key_Home));
  EXPECT_TRUE(takes(Qt::Key_PageUp));
  EXPECT_FALSE(takes(Qt::Key_Space));
  EXPECT_FALSE(takes(Qt::Key_Right, Qt::ControlModifier));
  bench.slider.Clear();
  EXPECT_FALSE(takes(Qt::Key_Home));
}

TEST(SongSlider, TheWheelStepsByBars) {
  Bench bench;
  TurnWheel(bench.slider, -3);
  EXPECT_EQ(bench.slider.position(), 6000);
  TurnWheel(bench.slider, 1);
  EXPECT_EQ(bench.slider.position(), 4000);
  EXPECT_EQ(bench.said.size(), 6);
}

TEST(SongSlider, WithoutASongItTakesNothing) {
  Bench bench;
  bench.slider.Clear();
  QTest::mouseClick(&bench.slider, Qt::LeftButton, {}, {600, 10});
  QTest::keyClick(&bench.slider, Qt::Key_Right);
  TurnWheel(bench.slider, 1);
  EXPECT_TRUE(bench.said.isEmpty());
  EXPECT_TRUE(bench.slider.toolTip().contains("No song is open"));
}

TEST(SongSlider, TellsItsPositionToAssistiveProgramsAndObeysThem) {
  Bench bench;
  bench.slider.SetPosition(33000);
  auto* access = QAccessible::queryAccessibleInterface(&bench.slider);
  ASSERT_NE(access, nullptr);
  EXPECT_EQ(access->role(), QAccessible::Slider);
  EXPECT_EQ(access->text(QAccessible::Name), "Song position");
  EXPECT_EQ(access->text(QAccessible::Value), "at 33000");
  EXPECT_FALSE(access->state().disabled);
  auto* value = access->valueInterface();
  ASSERT_NE(value, nullptr);
  EXPECT_EQ(value->currentValue().toInt(), 33000);
  EXPECT_EQ(value->maximumValue().toInt(), 136000);
  value->setCurrentValue(44000);
  EXPECT_EQ(bench.slider.position(), 44000);
  EXPECT_EQ(bench.said, (QStringList{"pressed", "44000", "released"}));
  bench.slider.Clear();
  EXPECT_TRUE(access->state().disabled);
  const InGerman german;
  SongSlider other;
  EXPECT_EQ(other.accessibleName(), "Songposition");
}

class PaintCount : public QObject {
 public:
  explicit PaintCount(QWidget& widget) { widget.installEventFilter(this); }
  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() == QEvent::Paint) region += static_cast<QPaintEvent*>(event)->region();
    return false;
  }
  QRegion region;
};

TEST(SongSlider, ATickRepaintsALittleAroundThePosition) {
  Bench bench;
  ShowForTest(bench.slider);
  bench.slider.SetPosition(68000);
  QCoreApplication::processEvents();
  PaintCount count(bench.slider);
  bench.slider.SetPosition(68005);
  QCoreApplication::processEvents();
  EXPECT_TRUE(count.region.isEmpty());
  bench.slider.SetPosition(68500);
  QCoreApplication::processEvents();
  EXPECT_FALSE(count.region.isEmpty());
  EXPECT_LE(count.region.boundingRect().width(), 30);
}

TEST(SongSlider, LooksTheSameAfterARunAsWhenPaintedWhole) {
  Bench bench, whole;
  ShowForTest(bench.slider);
  for (qint64 ms = 0; ms <= 90000; ms += 30) {
    bench.slider.SetPosition(ms);
    if (ms % 300 == 0) QCoreApplication::processEvents();
  }
  bench.slider.SetPosition(20000);
  bench.slider.SetPosition(60000);
  const QImage run = OnScreen(bench.slider);
  whole.slider.SetPosition(60000);
  ShowForTest(whole.slider);
  EXPECT_EQ(run, OnScreen(whole.slider));
}

TEST(SongSlider, KeepsPositionAndPlaceThroughScaleAndSize) {
  Bench bench;
  bench.slider.SetPosition(68000);
  EXPECT_NEAR(bench.slider.XOf(68000), 632, 1);
  {
    const AtScale scale(150);
    EXPECT_EQ(bench.slider.sizeHint().height(), 42);
    bench.slider.resize(1896, 42);
    EXPECT_NEAR(bench.slider.XOf(68000), 948, 1);
  }
  EXPECT_EQ(bench.slider.position(), 68000);
}

TEST(SongSlider, AShorterSongPullsThePositionBack) {
  Bench bench;
  bench.slider.SetPosition(130000);
  bench.slider.SetBars(EvenBars(10), 20000);
  EXPECT_EQ(bench.slider.position(), 20000);
}

}  // namespace
}  // namespace Sonarello
