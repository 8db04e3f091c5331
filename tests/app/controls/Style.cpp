#include <gtest/gtest.h>

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFontMetrics>
#include <QHeaderView>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QSpinBox>
#include <QStyle>
#include <QStyleOptionSlider>
#include <QTableWidget>

#include "app/Application.h"
#include "app/controls/Control.h"
#include "app/controls/Hands.h"
#include "app/controls/Shown.h"
#include "app/controls/SonStyle.h"

namespace Sonarello {
namespace {

template <typename Widget>
void Prepare(Widget& widget) {
  widget.resize(widget.sizeHint());
  ShowForTest(widget);
  widget.clearFocus();
}

TEST(Style, FieldsAndButtonsAre28HighAtEveryScale) {
  for (const int percent : {100, 150, 180}) {
    const AtScale scale(percent);
    const int height = metrics().px(28);
    EXPECT_EQ(QPushButton(QStringLiteral("OK")).sizeHint().height(), height);
    EXPECT_EQ(QComboBox().sizeHint().height(), height);
    EXPECT_EQ(QLineEdit().sizeHint().height(), height);
    EXPECT_EQ(QSpinBox().sizeHint().height(), height);
  }
}

TEST(Style, AButtonThatLivesGrowsWithTheScale) {
  QPushButton button(QStringLiteral("Normal"));
  Prepare(button);
  const int before = button.sizeHint().width();
  const AtScale scale(180);
  EXPECT_EQ(button.sizeHint().height(), 50);
  EXPECT_GT(button.sizeHint().width(), before * 3 / 2);
}

TEST(Style, ButtonsHaveTheFaceOfTheirState) {
  const auto face = [](QPushButton& button) {
    return Picture(button).pixelColor(6, button.height() / 2);
  };
  for (const ThemeKind kind : {ThemeKind::Dark, ThemeKind::Light}) {
    const InTheme theme(kind);
    QPushButton normal(QStringLiteral("Normal")), checked(QStringLiteral("Checked")),
        first(QStringLiteral("OK")), off(QStringLiteral("Disabled")), down(QStringLiteral("Down"));
    checked.setCheckable(true);
    checked.setChecked(true);
    first.setDefault(true);
    off.setEnabled(false);

    for (QPushButton* button : {&normal, &checked, &first, &off, &down}) Prepare(*button);
    down.setDown(true);
    EXPECT_EQ(face(normal), th().bg3);
    EXPECT_EQ(face(checked), th().accbg);
    EXPECT_EQ(face(off), th().bg2);
    EXPECT_EQ(face(down), th().bg3p);
    EXPECT_EQ(Picture(normal).pixelColor(20, 0), th().line2);
    EXPECT_EQ(Picture(checked).pixelColor(20, 0), th().acc);
  }
}

TEST(Style, TheDefaultButtonHasTheAccentAsItsFace) {
  QDialogButtonBox box(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
  QPushButton* ok = box.button(QDialogButtonBox::Ok);
  ok->setDefault(true);
  Prepare(box);
  EXPECT_EQ(Picture(*ok).pixelColor(6, 14), th().accd);
  EXPECT_GE(ok->width(), 104);
  EXPECT_GE(box.button(QDialogButtonBox::Cancel)->width(), 104);
}

TEST(Style, NoTextOfAButtonIsCutEvenIfItIsDefault) {
  for (const int percent : {100, 180}) {
    const AtScale scale(percent);
    QPushButton button(QStringLiteral("Nicht vorhandene Sounds automatisch ersetzen"));
    button.setDefault(true);
    const int text = QFontMetrics(metrics().font(Role::Strong)).horizontalAdvance(button.text());
    EXPECT_GE(button.sizeHint().width(), text + 2 * metrics().px(12));
  }
}

TEST(Style, FieldsShowTheFocusInsideOfTheirBorder) {
  QWidget window;
  QLineEdit edit(&window), other(&window);
  edit.setGeometry(10, 10, 100, 28);
  other.setGeometry(10, 50, 100, 28);
  window.resize(200, 100);
  ShowForTest(window);
  window.activateWindow();
  edit.setFocus(Qt::MouseFocusReason);
  EXPECT_EQ(Picture(edit).pixelColor(50, 0), th().acc);
  EXPECT_EQ(Picture(edit).pixelColor(50, 1), th().acc);
  EXPECT_EQ(Picture(other).pixelColor(50, 0), th().edge);
  EXPECT_EQ(Picture(other).pixelColor(50, 2), th().well);
}

TEST(Style, MenusHaveRowsOf26AndSeparatorsOf9) {
  QMenu menu;
  QAction* open = menu.addAction(QStringLiteral("Open"));
  QAction* separator = menu.addSeparator();
  menu.addAction(QStringLiteral("Quit"));
  menu.popup({0, 0});
  EXPECT_EQ(menu.actionGeometry(open).height(), 26);
  EXPECT_EQ(menu.actionGeometry(separator).height(), 9);
  EXPECT_EQ(Picture(menu).pixelColor(menu.width() / 2, menu.height() - 3), th().bg2);
}

TEST(Style, AMenuIsWideEnoughForItsEntriesAndShortcuts) {
  QMenu menu;
  QAction* save = menu.addAction(QStringLiteral("Speichern als Format 0"));
  save->setShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_F4));
  menu.popup({0, 0});
  const QFontMetrics font(metrics().font(Role::Body));
  EXPECT_GE(menu.width(),
            28 + font.horizontalAdvance(save->text()) + 24 +
                font.horizontalAdvance(save->shortcut().toString(QKeySequence::NativeText)));
}

TEST(Style, TheMenuBarIs28High) {
  QMenuBar bar;
  bar.addMenu(QStringLiteral("File"))->addAction(QStringLiteral("Open"));
  EXPECT_EQ(bar.sizeHint().height(), 28);
  const AtScale scale(150);
  EXPECT_EQ(bar.sizeHint().height(), 42);
}

TEST(Style, ListsHaveRowsOf24AndABarAtTheSelection) {
  QListWidget list;
  list.addItems({QStringLiteral("Piano"), QStringLiteral("Strings")});
  list.setAlternatingRowColors(true);
  list.setCurrentRow(1);
  list.resize(200, 100);
  ShowForTest(list);
  EXPECT_EQ(list.visualItemRect(list.item(0)).height(), 24);
  const QRect row = list.visualItemRect(list.item(1));
  const QImage picture = Picture(*list.viewport());
  EXPECT_EQ(picture.pixelColor(row.left() + 1, row.center().y()), th().acc);
  EXPECT_EQ(picture.pixelColor(row.right() - 2, row.center().y()), th().sel);
  EXPECT_EQ(picture.pixelColor(150, 12), th().row);
}

TEST(Style, SelectionLooksTheSameWithoutTheFocus) {
  QWidget window;
  QListWidget list(&window);
  QLineEdit other(&window);
  list.addItem(QStringLiteral("Piano"));
  list.setCurrentRow(0);
  list.resize(200, 100);
  other.setGeometry(0, 110, 100, 28);
  window.resize(220, 150);
  ShowForTest(window);
  window.activateWindow();
  list.setFocus();
  const QColor with = Picture(*list.viewport()).pixelColor(150, 12);
  other.setFocus();
  EXPECT_EQ(Picture(*list.viewport()).pixelColor(150, 12), with);
}

TEST(Style, TablesHaveAHeadOf26AndTheirFirstRowsInSight) {
  QTableWidget table(3, 2);
  table.setHorizontalHeaderLabels({QStringLiteral("Name"), QStringLiteral("MSB")});
  table.resize(300, 150);
  ShowForTest(table);
  EXPECT_EQ(table.horizontalHeader()->height(), 26);
  EXPECT_EQ(table.rowHeight(0), 24);
}

TEST(Style, ScrollBarsAreLanesOf14WithAHandleOfAtLeast32) {
  QScrollBar bar(Qt::Vertical);
  bar.setRange(0, 1000000);
  bar.setPageStep(10);
  bar.resize(14, 300);
  ShowForTest(bar);
  EXPECT_EQ(bar.sizeHint().width(), 14);
  QStyleOptionSlider option;
  option.initFrom(&bar);
  option.orientation = Qt::Vertical;
  option.maximum = 1000000;
  option.pageStep = 10;
  const auto handle = [&](int at) {
    option.sliderPosition = at;
    return bar.style()->subControlRect(QStyle::CC_ScrollBar, &option, QStyle::SC_ScrollBarSlider, &bar);
  };
  EXPECT_EQ(handle(0), QRect(0, 0, 14, 32));
  EXPECT_EQ(handle(1000000).bottom(), 299);
}

TEST(Style, AScrollBarMovesByDraggingItsHandle) {
  QScrollBar bar(Qt::Vertical);
  bar.setRange(0, 100);
  bar.setPageStep(20);
  bar.resize(14, 300);
  ShowForTest(bar);
  Press(bar, {7, 10});
  MoveTo(bar, {7, 135});
  Release(bar, {7, 135});
  EXPECT_EQ(bar.value(), 50);
}

TEST(Style, CheckAndRadioBoxesAre16AndSayTheirStateByMoreThanColour) {
  QCheckBox check(QStringLiteral("Levels"));
  QRadioButton radio(QStringLiteral("Deutsch"));
  Prepare(check);
  Prepare(radio);
  EXPECT_EQ(check.style()->pixelMetric(QStyle::PM_IndicatorWidth), 16);
  check.setChecked(true);
  radio.setChecked(true);
  int white = 0;
  const QImage tick = Picture(check);
  for (int x = 0; x < 16; ++x)
    for (int y = 0; y < tick.height(); ++y) white += tick.pixelColor(x, y) == th().onaccd;
  EXPECT_GE(white, 4) << "a tick";
  EXPECT_EQ(Picture(radio).pixelColor(8, radio.height() / 2), th().acc) << "a disc";
}

TEST(Tip, TellsWhatThenTheValueThenTheShortcut) {
  const QString tip = Tip(QStringLiteral("Solo <all>\noff"), QStringLiteral("on"), QStringLiteral("S"));
  EXPECT_TRUE(tip.contains(QStringLiteral("Solo &lt;all&gt;<br>off<br>on<br><span")));
  EXPECT_TRUE(tip.contains(th().tx3.name()));
  EXPECT_FALSE(Tip(QStringLiteral("Solo"), {}, {}).contains(QStringLiteral("<br>")));
}

}  // namespace
}  // namespace Sonarello
