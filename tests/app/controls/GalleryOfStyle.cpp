#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>
#include <QSpinBox>
#include <QTabBar>
#include <QTableWidget>
#include <QTest>
#include <QToolTip>

#include "app/Application.h"
#include "app/controls/Control.h"
#include "app/controls/Icons.h"
#include "app/controls/Metrics.h"
#include "app/controls/QtText.h"
#include "app/controls/Theme.h"

namespace Sonarello {
namespace {

QPushButton* Button(const char* text, QWidget* parent) { return new QPushButton(ToQt(text), parent); }

QWidget* Buttons(QWidget* parent) {
  auto* box = new QGroupBox(QText("Knöpfe", "Buttons"), parent);
  auto* row = new QGridLayout(box);
  auto* checked = Button("Checked", box);
  checked->setCheckable(true);
  checked->setChecked(true);
  auto* disabled = Button("Disabled", box);
  disabled->setEnabled(false);
  auto* down = Button("Pressed", box);
  down->setDown(true);
  auto* icon = Button("zur 1. Note", box);
  icon->setIcon(IconFor(Icon::First));
  auto* menu = Button("Open recent", box);
  menu->setMenu(new QMenu(menu));
  auto* focus = Button("Focus", box);
  focus->setObjectName(QStringLiteral("focus"));
  auto* ok = Button("OK", box);
  ok->setDefault(true);
  ok->setAutoDefault(true);
  int column = 0;
  for (QWidget* widget :
       std::vector<QWidget*>{Button("Normal", box), down, focus, checked, disabled, icon, menu, ok})
    row->addWidget(widget, 0, column++);
  return box;
}

QWidget* Fields(QWidget* parent) {
  auto* box = new QGroupBox(QText("Felder", "Fields"), parent);
  auto* grid = new QGridLayout(box);
  auto* edit = new QLineEdit(QStringLiteral("strings"), box);
  auto* hint = new QLineEdit(box);
  hint->setPlaceholderText(QText("Sound suchen", "Search a sound"));
  auto* combo = new QComboBox(box);
  combo->addItems({QStringLiteral("Yamaha Genos"), QStringLiteral("Roland SC-88Pro")});
  auto* editable = new QComboBox(box);
  editable->setEditable(true);
  editable->addItem(QStringLiteral("editable"));
  auto* spin = new QSpinBox(box);
  spin->setMaximum(500);
  spin->setValue(10);
  auto* off = new QSpinBox(box);
  off->setEnabled(false);
  auto* offCombo = new QComboBox(box);
  offCombo->addItem(QStringLiteral("disabled"));
  offCombo->setEnabled(false);
  auto* slider = new QSlider(Qt::Horizontal, box);
  slider->setValue(40);
  int column = 0;
  for (QWidget* widget :
       std::vector<QWidget*>{edit, hint, combo, editable, spin, off, offCombo, slider})
    grid->addWidget(widget, 0, column++);
  column = 0;
  for (const bool enabled : {true, false}) {
    for (const bool on : {false, true}) {
      auto* check = new QCheckBox(QText("Pegelanzeige aktiv", "Level meters on"), box);
      check->setChecked(on);
      check->setEnabled(enabled);
      grid->addWidget(check, 1, column);
      auto* radio = new QRadioButton(QStringLiteral("Deutsch"), box);
      radio->setAutoExclusive(false);
      radio->setChecked(on);
      radio->setEnabled(enabled);
      grid->addWidget(radio, 2, column++);
    }
  }
  auto* progress = new QProgressBar(box);
  progress->setValue(60);
  progress->setTextVisible(false);
  progress->setFixedHeight(metrics().px(6));
  grid->addWidget(progress, 1, 4, 1, 3);
  auto* tabs = new QTabBar(box);
  for (const char* name : {"General", "MIDI", "MIDI routing"}) tabs->addTab(ToQt(name));
  grid->addWidget(tabs, 2, 4, 1, 3);
  return box;
}

QWidget* Lists(QWidget* parent) {
  auto* box = new QGroupBox(QText("Listen", "Lists"), parent);
  auto* grid = new QGridLayout(box);
  auto* list = new QListWidget(box);
  list->setAlternatingRowColors(true);
  for (int i = 0; i < 30; ++i) list->addItem(QStringLiteral("Strings %1").arg(i));
  list->setCurrentRow(2);
  auto* table = new QTableWidget(12, 3, box);
  table->setAlternatingRowColors(true);
  table->setHorizontalHeaderLabels(
      {QStringLiteral("Name"), QStringLiteral("MSB"), QStringLiteral("LSB")});
  for (int row = 0; row < 12; ++row)
    for (int column = 0; column < 3; ++column)
      table->setItem(row, column, new QTableWidgetItem(QString::number(row * 10 + column)));
  table->selectRow(1);
  grid->addWidget(list, 0, 0);
  grid->addWidget(table, 0, 1);
  return box;
}

void FillMenu(QMenu& menu) {
  menu.addSection(QText("Ausgang wählen", "Choose an output"));
  menu.addAction(IconFor(Icon::File), QText("Midifile öffnen…", "Open midifile…"), QKeySequence::Open,
                 &menu, [] {});
  QAction* loop = menu.addAction(QText("Schleife", "Loop"));
  loop->setCheckable(true);
  loop->setChecked(true);
  menu.addSeparator();
  menu.addAction(QText("Speichern", "Save"))->setEnabled(false);
  menu.addMenu(QText("Fenstergröße", "Window scale"))->addAction(QStringLiteral("100 %"));
}

void SaveGallery(const QString& suffix) {
  QWidget window;
  auto* column = new QVBoxLayout(&window);
  auto* bar = new QMenuBar(&window);
  for (const char* name : {"File", "Edit", "View"})
    bar->addMenu(ToQt(name))->addAction(QStringLiteral("x"));
  column->setMenuBar(bar);
  column->addWidget(Buttons(&window));
  column->addWidget(Fields(&window));
  column->addWidget(Lists(&window));
  auto* answers = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &window);
  column->addWidget(answers);
  ShowForTest(window);
  window.activateWindow();
  window.findChild<QPushButton*>(QStringLiteral("focus"))->setFocus(Qt::TabFocusReason);
  EXPECT_TRUE(SaveScreenshot(window, QStringLiteral("controls_style_") + suffix));
  QMenu menu(&window);
  FillMenu(menu);
  menu.popup(QPoint(0, 0));
  menu.setActiveAction(menu.actions().at(2));
  EXPECT_TRUE(SaveScreenshot(menu, QStringLiteral("controls_menu_") + suffix));
}

/// The list of a combo, a message box and a tooltip, which are windows of their own.
void SavePopups(const QString& suffix) {
  QWidget window;
  QComboBox combo(&window);
  for (const char* name : {"Yamaha Genos", "Roland SC-88Pro", "Ketron SD2/SD4", "GM Soundset"})
    combo.addItem(ToQt(name));
  combo.setGeometry(10, 10, metrics().px(200), combo.sizeHint().height());
  ShowForTest(window);
  combo.showPopup();
  EXPECT_TRUE(SaveScreenshot(*combo.view()->window(), QStringLiteral("controls_combo_") + suffix));
  combo.hidePopup();
  QMessageBox box(QMessageBox::Question, QStringLiteral("Sonarello"),
                  QText("Wollen Sie die Änderungen speichern?", "Do you want to save the changes?"),
                  QMessageBox::Yes | QMessageBox::No);
  box.setDefaultButton(QMessageBox::No);
  ShowForTest(box);
  EXPECT_TRUE(SaveScreenshot(box, QStringLiteral("controls_message_") + suffix));
  QToolTip::showText(QPoint(100, 100),
                     Tip(QText("Solo", "Solo"), QText("aus", "off"), QStringLiteral("S")), &window);
  for (QWidget* top : QApplication::topLevelWidgets()) {
    if (!top->inherits("QTipLabel")) continue;
    EXPECT_TRUE(SaveScreenshot(*top, QStringLiteral("controls_tip_") + suffix));
  }
  QToolTip::hideText();
}

TEST(Gallery, StandardControlsAreDrawnInBothThemesAndScales) {
  for (const int percent : {100, 150}) {
    SetScale(percent);
    SetTheme(ThemeKind::Dark);
    SaveGallery(QStringLiteral("dark_%1").arg(percent));
    SetTheme(ThemeKind::Light);
    SaveGallery(QStringLiteral("light_%1").arg(percent));
    SavePopups(QStringLiteral("light_%1").arg(percent));
    SetTheme(ThemeKind::Dark);
    SavePopups(QStringLiteral("dark_%1").arg(percent));
  }
  SetTheme(ThemeKind::Dark);
  SetScale(100);
}

}  // namespace
}  // namespace Sonarello
