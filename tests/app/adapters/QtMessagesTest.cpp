#include "app/adapters/QtMessages.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QClipboard>
#include <QDialog>
#include <QFontMetricsF>
#include <QPushButton>
#include <QScrollArea>
#include <QTest>
#include <QTimer>

#include "app/Application.h"
#include "app/adapters/QtMessageDialog.h"
#include "app/controls/Metrics.h"
#include "app/controls/Theme.h"
#include "helpers/InGerman.h"

namespace Sonarello {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Messages whose answers are given; what was asked is written down.
struct Told {
  Told() {
    messages.Answer = [this](const TMessage& message) {
      Texts.push_back(message.Text.toStdString());
      Buttons.push_back((message.Refuse + "|" + message.Accept).toStdString());
      if (inside) std::exchange(inside, nullptr)();
      return accepts;
    };
  }
  void Start() {
    messages.WindowShown(nullptr);
    QCoreApplication::processEvents();
  }

  QtMessages messages;
  std::vector<std::string> Texts;
  std::vector<std::string> Buttons;
  std::function<void()> inside;  ///< done once while a message is open
  bool accepts = true;
};

/// The dialog that is open.
QDialog& Open() { return *qobject_cast<QDialog*>(QApplication::activeModalWidget()); }

QStringList Captions(const QDialog& dialog) {
  QStringList captions;
  for (const auto* button : dialog.findChildren<QPushButton*>()) captions.append(button->text());
  return captions;
}

/// Opens a dialog, does something with it, and tells how it was answered.
template <typename Deed>
bool AnsweredBy(const std::string& text, Deed deed) {
  QtMessages messages;
  messages.WindowShown(nullptr);
  QTimer::singleShot(0, qApp, [&] { deed(Open()); });
  return messages.Ask(text);
}

TEST(QtMessages, WaitUntilTheMainWindowIsShown) {
  Told t;
  t.messages.Show("one");
  t.messages.Show("two");
  QCoreApplication::processEvents();
  EXPECT_THAT(t.Texts, IsEmpty());
  t.messages.WindowShown(nullptr);
  EXPECT_THAT(t.Texts, IsEmpty()) << "the window is painted first";
  QCoreApplication::processEvents();
  EXPECT_THAT(t.Texts, ElementsAre("one", "two"));
  t.messages.Show("three");
  EXPECT_THAT(t.Texts, ElementsAre("one", "two", "three"));
}

TEST(QtMessages, AreToldInFrontOfAQuestionThatCannotWait) {
  Told t;
  t.messages.Show("The settings were set aside.");
  EXPECT_TRUE(t.messages.Ask("Open the backup?"));
  EXPECT_THAT(t.Texts, ElementsAre("The settings were set aside.", "Open the backup?"));
}

TEST(QtMessages, StandInARowAndNotInsideOneAnother) {
  Told t;
  t.Start();
  t.inside = [&] {
    t.messages.Show("two");
    t.messages.Show("three");
    t.messages.Show("two");
    t.messages.Show("one");
    EXPECT_THAT(t.Texts, ElementsAre("one"));
  };
  t.messages.Show("one");
  EXPECT_THAT(t.Texts, ElementsAre("one", "two", "three"));
}

TEST(QtMessages, RaisedInsideAQuestionComeBehindIt) {
  Told t;
  t.Start();
  t.inside = [&] { t.messages.Show("Told meanwhile"); };
  EXPECT_TRUE(t.messages.Ask("Really?"));
  EXPECT_THAT(t.Texts, ElementsAre("Really?", "Told meanwhile"));
}

TEST(QtMessages, AnswerNoToQuestionsThatNestWithoutEnd) {
  Told t;
  t.Start();
  bool last = true;
  const std::function<void()> again = [&] {
    t.inside = again;
    last = t.messages.Ask("And again?") && last;
  };
  t.inside = again;
  t.messages.Ask("And again?");
  EXPECT_EQ(t.Texts.size(), 3U);
  EXPECT_FALSE(last);
}

TEST(QtMessages, AskWithYesAndNoOrWithVerbsInTheUsersLanguage) {
  Told t;
  t.messages.Ask("?");
  t.messages.Ask("?", "Delete", "Keep");
  const InGerman german;
  t.messages.Ask("?");
  t.messages.Show("!");
  t.Start();
  EXPECT_THAT(t.Buttons, ElementsAre("No|Yes", "Keep|Delete", "Nein|Ja", "|OK"));
}

TEST(QtMessages, KeepUmlautsAndLineBreaks) {
  Told t;
  t.messages.Ask("Soll das zurückgesetzt werden?\r(dabei geht alles verloren)\r\nWirklich?");
  EXPECT_THAT(t.Texts,
              ElementsAre("Soll das zurückgesetzt werden?\n(dabei geht alles verloren)\nWirklich?"));
}

TEST(QtMessages, ThatNobodyWasShownGoToTheErrorOutput) {
  testing::internal::CaptureStderr();
  { QtMessages().Show("The display is gone"); }
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "sonarello: The display is gone\n");
}

TEST(QtMessages, ThatKeepComingAreShownOnceUntilTheyWereSilent) {
  QtMessages messages;
  std::int64_t now = 0;
  messages.Work.Now = [&] { return now; };
  messages.WindowShown(nullptr);
  int shown = 0;
  const auto show = [&](const char* text) {
    QTimer::singleShot(0, qApp, [&] {
      if (QApplication::activeModalWidget() == nullptr) return;
      ++shown;
      Open().close();
    });
    messages.Show(text);
    QCoreApplication::processEvents();
  };
  show("No output");
  for (int i = 0; i < 10; ++i) {
    now += 400;
    show("No output");
  }
  EXPECT_EQ(shown, 1);
  show("Another");
  EXPECT_EQ(shown, 2) << "others are not held back";
  show("No output");
  EXPECT_EQ(shown, 3);
  now += 500;
  show("No output");
  EXPECT_EQ(shown, 4);
}

TEST(QtMessageDialog, IsAnsweredByItsButtonsAndKeys) {
  const auto click = [](const char* caption) {
    return [caption](QDialog& dialog) {
      for (auto* button : dialog.findChildren<QPushButton*>())
        if (button->text() == QLatin1String(caption)) button->click();
    };
  };
  const auto press = [](Qt::Key key) {
    return [key](QDialog& dialog) { QTest::keyClick(dialog.focusWidget(), key); };
  };
  EXPECT_TRUE(AnsweredBy("?", click("Yes")));
  EXPECT_FALSE(AnsweredBy("?", click("No")));
  EXPECT_FALSE(AnsweredBy("?", press(Qt::Key_Return))) << "the default is the safe answer";
  EXPECT_FALSE(AnsweredBy("?", press(Qt::Key_Space)));
  EXPECT_FALSE(AnsweredBy("?", press(Qt::Key_Escape)));
  EXPECT_FALSE(AnsweredBy("?", [](QDialog& dialog) { dialog.close(); }));
  EXPECT_TRUE(AnsweredBy("?", [](QDialog& dialog) {
    QTest::keyClick(dialog.focusWidget(), Qt::Key_Tab);
    QTest::keyClick(dialog.focusWidget(), Qt::Key_Return);
  }));
}

TEST(QtMessageDialog, CopiesItsText) {
  AnsweredBy("Zeile 1\rZeile 2", [](QDialog& dialog) {
    QTest::keyClick(dialog.focusWidget(), Qt::Key_C, Qt::ControlModifier);
    dialog.close();
  });
  EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("Zeile 1\nZeile 2"));
}

TEST(QtMessageDialog, IsNamedByItsTextForScreenReaders) {
  AnsweredBy("Undo the command \"Copy\"?", [](QDialog& dialog) {
    EXPECT_EQ(dialog.accessibleName(), QStringLiteral("Undo the command \"Copy\"?"));
    EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Sonarello"));
    EXPECT_EQ(Captions(dialog), QStringList({"No", "Yes"}));
    dialog.close();
  });
}

TEST(QtMessageDialog, IsAsWideAsItsTextWithinItsBounds) {
  for (const int percent : WindowScales) {
    SetScale(percent);
    const auto width = [](const std::string& text) {
      const TMessage message{TMessageKind::Warning, QString::fromStdString(text), "OK", {}};
      return QtMessageDialog(message, nullptr).width();
    };
    EXPECT_EQ(width("Short"), metrics().px(420));
    EXPECT_EQ(width(std::string(2000, 'W')), metrics().px(560));
    EXPECT_LE(
        width("No outputs could be opened, since another program holds all of them at this moment."),
        metrics().px(560));
  }
  SetScale(100);
}

TEST(QtMessageDialog, ScrollsATextThatIsTallerThanAScreen) {
  QString text;
  for (int i = 0; i < 200; ++i) text += QStringLiteral("Line\n");
  const TMessage message{TMessageKind::Note, text, "OK", {}};
  const QtMessageDialog dialog(message, nullptr);
  EXPECT_LT(dialog.height(), 600);
  EXPECT_NE(dialog.findChild<QScrollArea*>(), nullptr);
}

TEST(MessageLines, KeepTheTextsOwnBreaksAndAddOthersAtBlanks) {
  const QFontMetricsF font(metrics().font(Role::Body));
  EXPECT_EQ(MessageLines("", 60, 500, font), QStringList({""}));
  EXPECT_EQ(MessageLines("one\n\ntwo", 60, 500, font), QStringList({"one", "", "two"}));
  EXPECT_EQ(MessageLines("one two three", 8, 500, font), QStringList({"one two", "three"}));
  EXPECT_EQ(MessageLines("one two three", 7, 500, font), QStringList({"one two", "three"}));
  EXPECT_EQ(MessageLines("to the end ?", 11, 500, font), QStringList({"to the", "end ?"}));
  EXPECT_EQ(MessageLines("a - b c", 4, 500, font), QStringList({"a -", "b c"}));
  EXPECT_EQ(MessageLines("? ?", 2, 500, font), QStringList({"? ", "?"}));
  EXPECT_EQ(MessageLines("abcdefghij", 4, 500, font), QStringList({"abcd", "efgh", "ij"}));
  EXPECT_EQ(MessageLines("/music/songs/a.mid", 14, 500, font), QStringList({"/music/songs", "/a.mid"}));
  for (const QString& line : MessageLines(QString(300, QLatin1Char('W')), 60, 300, font))
    EXPECT_LE(font.horizontalAdvance(line), 300);
  EXPECT_EQ(MessageLines("WW", 60, 1, font), QStringList({"W", "W"})) << "it never stands still";
}

TEST(QtMessageDialog, LooksAsItShouldInBothThemesAndScales) {
  const auto picture = [](const TMessage& message, const QString& name) {
    QtMessageDialog dialog(message, nullptr);
    ShowForTest(dialog);
    EXPECT_TRUE(SaveScreenshot(dialog, name));
  };
  const TMessage question{
      TMessageKind::Question,
      "Es befinden sich bereits Daten auf Midikanal 4!\nSollen die Daten vom Midikanal 2 "
      "auf Midikanal 4 umgeleitet werden?",
      "Ja", "Nein"};
  const TMessage fault{TMessageKind::Error, "Error allocating memory!", "OK", {}};
  picture(question, "message_question_de");
  picture(fault, "message_error_en");
  SetTheme(ThemeKind::Light);
  picture(question, "message_question_de_light");
  SetScale(150);
  picture({TMessageKind::Warning, "Please close Multi-Mode window!", "OK", {}},
          "message_warning_en_light_scale150");
  SetScale(100);
  SetTheme(ThemeKind::Dark);
}

}  // namespace
}  // namespace Sonarello
