#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QPainter>

#include "app/Application.h"
#include "app/controls/Hands.h"
#include "app/controls/Icons.h"
#include "app/controls/Painting.h"
#include "app/controls/PianoKeys.h"
#include "app/controls/Shown.h"

namespace Sonarello {
namespace {

using testing::ElementsAre;

TEST(Icons, AllLieOnTheirGridAndDrawSomething) {
  for (int i = 0; i < Icons; ++i) {
    const QRectF bounds = IconPath(static_cast<Icon>(i)).boundingRect();

    EXPECT_TRUE(QRectF(0, 0, 16, 16).contains(bounds.adjusted(-0.1, -0.1, 0.1, 0.1))) << i;
    QImage image(32, 32, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    PaintIcon(painter, static_cast<Icon>(i), QRectF(0, 0, 32, 32), Qt::white);
    painter.end();
    int inked = 0;
    for (int y = 0; y < 32; ++y)
      for (int x = 0; x < 32; ++x) inked += qAlpha(image.pixel(x, y)) > 128;
    EXPECT_GE(inked, 20) << i;
  }
}

TEST(Icons, OutlinesAreReadAsInSvg) {
  const QPainterPath path = ParsePath("M4 6.2 8 10.2l2-2h1V3.5v.5z");
  ASSERT_EQ(path.elementCount(), 7);
  EXPECT_EQ(QPointF(path.elementAt(1)), QPointF(8, 10.2));
  EXPECT_EQ(QPointF(path.elementAt(2)), QPointF(10, 8.2));
  EXPECT_EQ(QPointF(path.elementAt(3)), QPointF(11, 8.2));
  EXPECT_EQ(QPointF(path.elementAt(4)), QPointF(11, 3.5));
  EXPECT_EQ(QPointF(path.elementAt(5)), QPointF(11, 4));
  EXPECT_EQ(QPointF(path.elementAt(6)), QPointF(4, 6.2));
}

TEST(Icons, NumbersMayStandWithoutBlanks) {
  const QPainterPath path = ParsePath("M3 13l.7-2.8-1.8.5");
  EXPECT_EQ(QPointF(path.elementAt(1)), QPointF(3.7, 10.2));
  EXPECT_NEAR(path.elementAt(2).x, 1.9, 1e-9);
  EXPECT_NEAR(path.elementAt(2).y, 10.7, 1e-9);
}

TEST(Icons, ArcsBulgeToTheSideThatTheirFlagSays) {
  const QRectF clockwise = ParsePath("M8 4a4 4 0 0 1 0 8").boundingRect();
  EXPECT_NEAR(clockwise.right(), 12, 0.01);
  EXPECT_NEAR(clockwise.left(), 8, 0.01);
  const QRectF other = ParsePath("M8 4A4 4 0 0 0 8 12").boundingRect();
  EXPECT_NEAR(other.left(), 4, 0.01);
  EXPECT_NEAR(other.right(), 8, 0.01);
}

TEST(Icons, OfActionsFollowTheThemeAndTheScale) {
  const QIcon icon = IconFor(Icon::Stop);
  const auto ink = [&](QIcon::Mode mode, QIcon::State state) {
    return icon.pixmap(QSize(32, 32), mode, state).toImage().pixelColor(16, 7);
  };
  EXPECT_EQ(ink(QIcon::Normal, QIcon::Off), ThemeOf(ThemeKind::Dark).tx1);
  EXPECT_EQ(ink(QIcon::Normal, QIcon::On), ThemeOf(ThemeKind::Dark).acc);
  EXPECT_EQ(ink(QIcon::Disabled, QIcon::Off), ThemeOf(ThemeKind::Dark).dis);
  const InTheme light(ThemeKind::Light);
  EXPECT_EQ(ink(QIcon::Normal, QIcon::Off), ThemeOf(ThemeKind::Light).tx1);
}

TEST(Icons, OfMessagesHaveTheColourOfTheirWeight) {
  const auto has = [](Sign sign, const QColor& colour) {
    const QImage drawn = SignIcon(sign).pixmap(QSize(32, 32)).toImage();
    int found = 0;
    for (int y = 0; y < 32; ++y)
      for (int x = 0; x < 32; ++x) found += drawn.pixelColor(x, y) == colour;
    return found >= 10;
  };
  EXPECT_TRUE(has(Sign::Error, th().err));
  EXPECT_TRUE(has(Sign::Warning, th().warn));
  EXPECT_TRUE(has(Sign::Question, th().acc));
  EXPECT_TRUE(has(Sign::Information, th().acc));
}

TEST(Icons, TheProgramHasOneInAllSizes) {
  for (const int side : {16, 32, 48, 256})
    EXPECT_EQ(ApplicationIcon().pixmap(side, side).size(), QSize(side, side));
}

/// How far two pictures differ in any channel of any pixel.
int Difference(const QImage& one, const QImage& other) {
  int most = 0;
  for (int y = 0; y < one.height(); ++y)
    for (int x = 0; x < one.width(); ++x) {
      const QColor a = one.pixelColor(x, y), b = other.pixelColor(x, y);
      most = std::max({most, std::abs(a.red() - b.red()), std::abs(a.green() - b.green()),
                       std::abs(a.blue() - b.blue())});
    }
  return most;
}

TEST(Painting, ABoxPutTogetherFromItsCornersLooksAsOneDrawnInOne) {
  struct Box {
    QRect rect;
    double radius, border;
    bool face;
  };
  for (const Box& box : {Box{{4, 4, 60, 30}, 4, 1, true}, Box{{4, 4, 60, 30}, 6, 2, true},
                         Box{{4, 4, 6, 30}, 3, 1, true}, Box{{4, 4, 3, 30}, 1.5, 0, true},
                         Box{{4, 4, 9, 40}, 4, 1, true}, Box{{4, 4, 40, 9}, 4, 1, true},
                         Box{{4, 4, 50, 40}, 7, 2, false}, Box{{4, 4, 50, 40}, 0, 1, true}}) {
    const auto drawn = [&](bool assembled) {
      QImage image(80, 50, QImage::Format_ARGB32_Premultiplied);
      image.fill(th().bg1);
      QPainter painter(&image);
      if (!assembled) painter.translate(0.25, 0);  // off the whole pixels, and back again below
      const QRectF rect = QRectF(box.rect).translated(assembled ? 0 : -0.25, 0);
      PaintBox(painter, rect, box.radius, box.face ? QBrush(th().bg3) : QBrush(Qt::NoBrush),
               box.border > 0 ? th().acc : QColor(), std::max(box.border, 1.0));
      return image;
    };
    EXPECT_LE(Difference(drawn(true), drawn(false)), 4)
        << box.rect.width() << " x " << box.rect.height() << " radius " << box.radius;
  }
}

struct Piano {
  Piano() {
    keys.setRange(48, 72);  // 15 white keys
    keys.resize(330, 110);
    ShowForTest(keys);
    QObject::connect(&keys, &PianoKeys::pressed,
                     [this](int note) { log.push_back("on " + std::to_string(note)); });
    QObject::connect(&keys, &PianoKeys::released,
                     [this](int note) { log.push_back("off " + std::to_string(note)); });
  }
  PianoKeys keys;
  Log log;
};

TEST(PianoKeys, HaveWhiteKeysOf22By110) {
  Piano piano;
  EXPECT_EQ(piano.keys.sizeHint(), QSize(330, 110));
  EXPECT_EQ(piano.keys.keyRect(48), QRectF(0, 0, 22, 110));
  EXPECT_EQ(piano.keys.keyRect(72).right(), 330);
}

TEST(PianoKeys, EveryNoteIsWhereItsKeyIs) {
  Piano piano;
  for (int note = 48; note <= 72; ++note) {
    const QRectF key = piano.keys.keyRect(note);
    EXPECT_EQ(piano.keys.noteAt({key.center().x(), PianoKeys::IsBlack(note) ? 20.0 : 100.0}), note);
  }
  EXPECT_EQ(piano.keys.noteAt({-1, 50}), -1);
  EXPECT_EQ(piano.keys.noteAt({10, 111}), -1);
}

TEST(PianoKeys, SlideFromKeyToKeyOneNoteAtATime) {
  Piano piano;
  Press(piano.keys, {5, 100});
  MoveTo(piano.keys, {6, 100});
  MoveTo(piano.keys, {22, 20});
  MoveTo(piano.keys, {-50, 20});
  MoveTo(piano.keys, {30, 100});
  Release(piano.keys, {30, 100});
  EXPECT_THAT(piano.log, ElementsAre("on 48", "off 48", "on 49", "off 49", "on 50", "off 50"));
}

TEST(PianoKeys, AreLetGoWhenTheWindowIsHidden) {
  Piano piano;
  Press(piano.keys, {5, 100});
  piano.keys.hide();
  EXPECT_THAT(piano.log, ElementsAre("on 48", "off 48"));
}

TEST(PianoKeys, ShowWhatSounds) {
  Piano piano;
  piano.keys.setSounding(60, true);
  piano.keys.setSounding(61, true);
  const QImage picture = Picture(piano.keys);
  EXPECT_EQ(picture.pixelColor(piano.keys.keyRect(60).center().toPoint() + QPoint(0, 20)),
            th().keysounds);
  EXPECT_EQ(picture.pixelColor(piano.keys.keyRect(61).center().toPoint()), th().accd);
  piano.keys.silence();
  EXPECT_EQ(Picture(piano.keys).pixelColor(piano.keys.keyRect(61).center().toPoint()), th().kb);
}

TEST(PianoKeys, IgnoreNotesThatDoNotExist) {
  Piano piano;
  piano.keys.setSounding(-1, true);
  piano.keys.setSounding(128, true);
  piano.keys.setSounding(10, true);
  EXPECT_EQ(piano.keys.heldNote(), -1);
}

}  // namespace
}  // namespace Sonarello
