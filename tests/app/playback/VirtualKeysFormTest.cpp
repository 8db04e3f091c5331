#include "app/playback/VirtualKeysForm.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAccessible>
#include <QKeyEvent>
#include <QLabel>
#include <QTest>

#include "app/Application.h"
#include "app/controls/Metrics.h"
#include "app/controls/PianoKeys.h"
#include "app/controls/Stepper.h"
#include "app/controls/Theme.h"
#include "app/controls/ValueBox.h"
#include "app/playback/ComputerKeys.h"
#include "helpers/InGerman.h"
#include "helpers/SentLog.h"
#include "playback/MidiErrors.h"

namespace Sonarello {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Ports : public IOutputs {
 public:
  bool OpenAll() override { return false; }
  bool Open(int) override {
    if (raises) throw EMidiOutputError("no such port");
    return open;
  }
  [[nodiscard]] bool IsOpen(int) const override { return open; }
  void CloseAll() override {}
  void SendShort(int, std::uint8_t, std::uint8_t, std::uint8_t) override {}
  void SendLong(int, std::span<const std::uint8_t>) override {}

  bool open = true;
  bool raises = false;
};

constexpr std::uint32_t placeOfZ = 52, placeOfS = 39, placeOfQ = 24, placeOf2 = 11, placeOfEnter = 36;

struct Window {
  Window() {
    song.ActiveMidiIndex = song.ActiveMidiChannel = 2;
    form.ShowChannel(3, "ChamberStrings (S.Art2!)");
    form.resize(form.sizeHint());
    ShowForTest(form);
  }
  void Key(QEvent::Type type, std::uint32_t place, Qt::KeyboardModifiers modifiers = {},
           bool repeats = false) {
    QKeyEvent event(type, Qt::Key_unknown, modifiers, place, 0, 0, {}, repeats);
    QCoreApplication::sendEvent(&form, &event);
  }
  void Down(std::uint32_t place) { Key(QEvent::KeyPress, place); }
  void Up(std::uint32_t place) { Key(QEvent::KeyRelease, place); }
  /// A point on a key, from its upper to its lower end (0 to 1). White keys are met beside the black.
  [[nodiscard]] QPoint On(int note, double depth) const {
    const QRectF key = form.Keys->keyRect(note);
    const double height = PianoKeys::IsBlack(note) ? key.height() : form.Keys->height();
    return QPointF(key.center().x(), std::min(depth * height, height - 1)).toPoint();
  }
  [[nodiscard]] QString Hint() const { return form.findChildren<QLabel*>().last()->text(); }

  Song song;
  TRealtimeData realtime;
  Ports ports;
  SongGate gate;
  SentLog log;
  TVirtualKeys keys{song, realtime, ports, gate, log.Sender()};
  TVirtualKeysForm form{keys};
};

TEST(VirtualKeysForm, PlaysTheKeyUnderTheMouseLouderTheLowerItIs) {
  Window w;
  for (const double depth : {0.65, 1.0}) {
    QTest::mousePress(w.form.Keys, Qt::LeftButton, {}, w.On(60, depth));
    QTest::mouseRelease(w.form.Keys, Qt::LeftButton, {}, w.On(60, depth));
  }
  ASSERT_EQ(w.log.Lines.size(), 4U);
  EXPECT_EQ(w.log.Lines[0].substr(0, 9), "0> 92 3C ");
  EXPECT_EQ(w.log.Lines[1], "0> 82 3C 40");
  EXPECT_EQ(w.log.Lines[2], "0> 92 3C 7F");
  EXPECT_LT(w.log.Lines[0], w.log.Lines[2]);
}

TEST(VirtualKeysForm, IsSoftAtTheUpperEndOfBlackAndWhiteKeys) {
  Window w;
  QTest::mousePress(w.form.Keys, Qt::LeftButton, {}, w.On(61, 0));
  QTest::mouseRelease(w.form.Keys, Qt::LeftButton, {}, w.On(61, 0));
  QTest::mousePress(w.form.Keys, Qt::LeftButton, {}, w.On(61, 1));
  QTest::mouseRelease(w.form.Keys, Qt::LeftButton, {}, w.On(61, 1));
  EXPECT_THAT(w.log.Lines, ElementsAre("0> 92 3D 1E", "0> 82 3D 40", "0> 92 3D 7F", "0> 82 3D 40"));
}

TEST(VirtualKeysForm, PlaysOneKeyAfterTheOtherWhenTheMouseSlidesOverThem) {
  Window w;
  QTest::mousePress(w.form.Keys, Qt::LeftButton, {}, w.On(60, 1));
  QMouseEvent slide(QEvent::MouseMove, w.On(62, 1), w.form.Keys->mapToGlobal(QPointF(w.On(62, 1))),
                    Qt::NoButton, Qt::LeftButton, {});
  QCoreApplication::sendEvent(w.form.Keys, &slide);
  QTest::mouseRelease(w.form.Keys, Qt::LeftButton, {}, w.On(62, 1));
  EXPECT_THAT(w.log.Lines, ElementsAre("0> 92 3C 7F", "0> 82 3C 40", "0> 92 3E 7F", "0> 82 3E 40"));
}

TEST(VirtualKeysForm, IsPlayedByThePlacesOfTheComputersKeys) {
  Window w;
  for (const std::uint32_t place : {placeOfZ, placeOfS, placeOfQ, placeOf2}) {
    w.Down(place);
    w.Up(place);
  }
  EXPECT_THAT(w.log.Lines, ElementsAre("0> 92 30 64", "0> 82 30 40", "0> 92 31 64", "0> 82 31 40",
                                       "0> 92 3C 64", "0> 82 3C 40", "0> 92 3D 64", "0> 82 3D 40"));
}

TEST(VirtualKeysForm, HoldsAKeyOfTheComputerAsLongAsTheUserDoes) {
  Window w;
  w.Down(placeOfZ);
  w.Key(QEvent::KeyRelease, placeOfZ, {}, true);
  w.Key(QEvent::KeyPress, placeOfZ, {}, true);
  EXPECT_THAT(w.log.Lines, ElementsAre("0> 92 30 64"));
  w.Down(placeOfS);
  w.Up(placeOfZ);
  EXPECT_THAT(w.log.Lines, ElementsAre("0> 92 30 64", "0> 82 30 40", "0> 92 31 64"))
      << "the key let go is not the one that sounds";
  w.Up(placeOfS);
  EXPECT_EQ(w.log.Lines.back(), "0> 82 31 40");
}

TEST(VirtualKeysForm, LeavesShortcutsAndOtherKeysAlone) {
  Window w;
  w.Key(QEvent::KeyPress, placeOfZ, Qt::ControlModifier);
  w.Key(QEvent::KeyPress, placeOfZ, Qt::AltModifier);
  w.Down(placeOfEnter);
  EXPECT_THAT(w.log.Lines, IsEmpty());
  w.Key(QEvent::KeyPress, placeOfZ, Qt::ShiftModifier);
  EXPECT_THAT(w.log.Lines, ElementsAre("0> 92 30 64"));
}

TEST(VirtualKeysForm, MovesTheComputersKeysByOctaves) {
  Window w;
  QTest::keyClick(&w.form, Qt::Key_Right);
  EXPECT_EQ(w.form.LowestNote(), 60);
  EXPECT_EQ(w.form.OctaveShift->value(), 1);
  w.Down(placeOfZ);
  QTest::keyClick(&w.form, Qt::Key_Left);
  w.Up(placeOfZ);
  EXPECT_THAT(w.log.Lines, ElementsAre("0> 92 3C 64", "0> 82 3C 40")) << "ended where it began";
  QTest::mouseClick(w.form.OctaveShift, Qt::LeftButton, {}, w.form.OctaveShift->minusRect().center());
  EXPECT_EQ(w.form.LowestNote(), 36);
  for (int i = 0; i < 20; ++i) QTest::keyClick(&w.form, Qt::Key_Left);
  EXPECT_EQ(w.form.LowestNote(), 0);
  for (int i = 0; i < 20; ++i) QTest::keyClick(&w.form, Qt::Key_Right);
  EXPECT_EQ(w.form.LowestNote(), 108);
  w.log.Lines.clear();
  w.Down(35);
  EXPECT_THAT(w.log.Lines, IsEmpty()) << "there is no note 139";
}

TEST(VirtualKeysForm, KeepsTheOctavesThatArePlayedInSight) {
  Window w;
  for (const int width : {560, 880, 1600}) {
    w.form.resize(width, 150);
    for (int i = 0; i < 12; ++i) QTest::keyClick(&w.form, Qt::Key_Left);
    for (int i = 0; i < 10; ++i) {
      for (const int note : {w.form.LowestNote(), std::min(127, w.form.LowestNote() + 24)}) {
        const QRectF key = w.form.Keys->keyRect(note);
        EXPECT_GE(key.left(), -0.5) << note << " at width " << width;
        EXPECT_LE(key.right(), w.form.Keys->width() + 0.5) << note << " at width " << width;
      }
      QTest::keyClick(&w.form, Qt::Key_Right);
    }
  }
}

TEST(VirtualKeysForm, SetsTheVelocityOfTheComputersKeys) {
  Window w;
  QTest::keyClick(&w.form, Qt::Key_Up);
  EXPECT_EQ(w.form.Velocity(), 108);
  for (int i = 0; i < 9; ++i) QTest::keyClick(&w.form, Qt::Key_Up);
  EXPECT_EQ(w.form.Velocity(), 127);
  for (int i = 0; i < 20; ++i) QTest::keyClick(&w.form, Qt::Key_Down);
  EXPECT_EQ(w.form.Velocity(), 1) << "0 would be no note";
  Q_EMIT w.form.VelocityBox->typed(64);
  w.Down(placeOfZ);
  EXPECT_THAT(w.log.Lines, ElementsAre("0> 92 30 40"));
  EXPECT_EQ(w.form.VelocityBox->text(), QStringLiteral("64"));
}

TEST(VirtualKeysForm, LeavesNoNoteHangingWhenItLosesTheFocusIsHiddenClosedOrGone) {
  const auto endsNote = [](const auto& deed) {
    Window w;
    w.Down(placeOfZ);
    deed(w.form);
    return w.log.Lines.size() == 2 && w.log.Lines[1] == "0> 82 30 40";
  };
  EXPECT_TRUE(endsNote([](QWidget& form) {
    QEvent event(QEvent::WindowDeactivate);
    QCoreApplication::sendEvent(&form, &event);
  }));
  EXPECT_TRUE(endsNote([](QWidget& form) { form.hide(); }));
  EXPECT_TRUE(endsNote([](QWidget& form) { form.close(); }));
  EXPECT_TRUE(endsNote([](QWidget& form) { QTest::keyClick(&form, Qt::Key_Escape); }));
  EXPECT_TRUE(endsNote([](TVirtualKeysForm& form) { form.Quiet(); }));
  Song song;
  song.ActiveMidiIndex = 0;
  TRealtimeData realtime;
  Ports ports;
  SongGate gate;
  SentLog log;
  TVirtualKeys keys{song, realtime, ports, gate, log.Sender()};
  {
    TVirtualKeysForm form(keys);
    QKeyEvent press(QEvent::KeyPress, Qt::Key_Y, {}, placeOfZ, 0, 0);
    QCoreApplication::sendEvent(&form, &press);
  }
  EXPECT_THAT(log.Lines, ElementsAre("0> 90 30 64", "0> 80 30 40"));
}

TEST(VirtualKeysForm, LetsTheMouseGoWhenItIsHidden) {
  Window w;
  QTest::mousePress(w.form.Keys, Qt::LeftButton, {}, w.On(60, 1));
  w.form.hide();
  EXPECT_THAT(w.log.Lines, ElementsAre("0> 92 3C 7F", "0> 82 3C 40"));
  EXPECT_EQ(w.form.Keys->heldNote(), -1);
}

TEST(VirtualKeysForm, TellsWhyNothingSounds) {
  Window w;
  const QString usual = w.Hint();
  EXPECT_EQ(usual, QStringLiteral("Computer keyboard: two rows of letters from C2"));
  w.ports.open = false;
  w.Down(placeOfZ);
  EXPECT_EQ(w.Hint(), QStringLiteral("The MIDI output is not open"));
  w.keys.GrabMidiDriver = w.ports.raises = true;
  w.Down(placeOfZ);
  EXPECT_EQ(w.Hint(), QStringLiteral("no such port"));
  w.ports.open = true;
  w.Down(placeOfZ);
  EXPECT_EQ(w.Hint(), usual);
  w.song.ActiveMidiIndex = -1;
  w.form.ShowChannel(0, {});
  w.Down(placeOfZ);
  EXPECT_EQ(w.Hint(), QStringLiteral("No channel is active"));
}

TEST(VirtualKeysForm, NamesChannelAndSoundInItsTitle) {
  Window w;
  EXPECT_EQ(w.form.windowTitle(),
            QStringLiteral("Virtual keyboard - midi-channel 3: ChamberStrings (S.Art2!)"));
  w.form.ShowChannel(0, {});
  EXPECT_EQ(w.form.windowTitle(), QStringLiteral("Virtual keyboard"));
  const InGerman german;
  w.form.ShowChannel(10, "Standard Kit");
  EXPECT_EQ(w.form.windowTitle(), QStringLiteral("Virtuelle Klaviatur - Midikanal 10: Standard Kit"));
  w.form.ShowChannel(10, {});
  EXPECT_EQ(w.form.windowTitle(), QStringLiteral("Virtuelle Klaviatur - Midikanal 10"));
  EXPECT_EQ(w.Hint(), QStringLiteral("Computertastatur: zwei Buchstabenreihen ab C2"));
}

TEST(VirtualKeysForm, HasNamesForScreenReaders) {
  Window w;
  const auto name = [](QWidget* of) {
    return QAccessible::queryAccessibleInterface(of)->text(QAccessible::Name);
  };
  EXPECT_EQ(name(w.form.Keys), w.form.windowTitle());
  EXPECT_EQ(name(w.form.OctaveShift), QStringLiteral("Octave of the computer keyboard"));
  EXPECT_EQ(name(w.form.VelocityBox), QStringLiteral("Velocity of the computer keyboard"));
}

TEST(VirtualKeysForm, HasTheSizesOfItsScale) {
  Window w;
  EXPECT_EQ(w.form.sizeHint(), QSize(880, 150));
  EXPECT_EQ(w.form.minimumSize(), QSize(560, 120));
  EXPECT_NEAR(w.form.Keys->keyRect(60).width(), 22, 0.5);
  EXPECT_EQ(w.form.Keys->height(), 110);
  SetScale(150);
  EXPECT_EQ(w.form.sizeHint(), QSize(1320, 225));
  EXPECT_EQ(w.form.minimumSize(), QSize(840, 180));
  SetScale(100);
}

TEST(VirtualKeysForm, LooksAsItShouldInBothThemesAndScales) {
  Window w;
  w.Down(placeOfQ);
  EXPECT_TRUE(SaveScreenshot(w.form, "virtual_keys_en"));
  SetTheme(ThemeKind::Light);
  {
    const InGerman german;
    w.form.ShowChannel(3, "ChamberStrings");
    QCoreApplication::processEvents();
    EXPECT_TRUE(SaveScreenshot(w.form, "virtual_keys_de_light"));
  }
  SetTheme(ThemeKind::Dark);
  SetScale(150);
  w.form.resize(w.form.sizeHint());
  w.Down(placeOf2);
  EXPECT_TRUE(SaveScreenshot(w.form, "virtual_keys_en_scale150"));
  SetScale(100);
  w.form.resize(560, 120);
  w.ports.open = false;
  w.Down(placeOfZ);
  EXPECT_TRUE(SaveScreenshot(w.form, "virtual_keys_en_small"));
}

TEST(ComputerKeys, AreTwoPianoRowsAnOctaveApart) {
  const auto row = [](std::uint32_t first, int count) {
    std::vector<int> semitones;
    for (int i = 0; i < count; ++i)
      semitones.push_back(SemitoneOfKey(first + static_cast<std::uint32_t>(i)).value_or(-1));
    return semitones;
  };
  EXPECT_THAT(row(52, 10), ElementsAre(0, 2, 4, 5, 7, 9, 11, 12, 14, 16));
  EXPECT_THAT(row(38, 11), ElementsAre(-1, 1, 3, -1, 6, 8, 10, -1, 13, 15, -1));
  EXPECT_THAT(row(24, 12), ElementsAre(12, 14, 16, 17, 19, 21, 23, 24, 26, 28, 29, 31));
  EXPECT_THAT(row(10, 12), ElementsAre(-1, 13, 15, -1, 18, 20, 22, -1, 25, 27, -1, 30));
  for (const std::uint32_t other : {0U, 9U, 22U, 23U, 36U, 37U, 50U, 51U, 62U, 65U, 4000000000U})
    EXPECT_FALSE(SemitoneOfKey(other)) << other;
}

}  // namespace
}  // namespace Sonarello
