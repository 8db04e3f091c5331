#include "app/instruments/BankChoice.h"

#include <QButtonGroup>
#include <QComboBox>
#include <QEvent>
#include <QRadioButton>

#include "app/controls/Metrics.h"
#include "app/controls/QtText.h"
#include "app/controls/Theme.h"

namespace Sonarello {

namespace {

constexpr double Gap = 20;
constexpr double RowHeight = 28;
constexpr double ComboWidth = 180;

}  // namespace

BankChoice::BankChoice(QWidget* parent)
    : QWidget(parent), buttons(new QButtonGroup(this)), combo(new QComboBox(this)) {
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  combo->setAccessibleName(QText("Bank", "Bank"));
  connect(buttons, &QButtonGroup::idClicked, this, &BankChoice::Choose);
  connect(combo, &QComboBox::activated, this,
          [this](int row) { Choose(entries[static_cast<std::size_t>(row)].Bank); });
}

void BankChoice::Show(const std::vector<TEntry>& banks) {
  entries = banks;
  chosen = -1;
  for (QAbstractButton* button : buttons->buttons()) delete button;
  combo->clear();
  for (const TEntry& entry : entries) {
    auto* button = new QRadioButton(entry.Name, this);
    button->setToolTip(entry.Tip);
    buttons->addButton(button, entry.Bank);
    combo->addItem(entry.Name);
    combo->setItemData(combo->count() - 1, entry.Tip, Qt::ToolTipRole);
  }
  QWidget* before = combo;
  for (QAbstractButton* button : buttons->buttons()) {
    setTabOrder(before, button);
    before = button;
  }
  LayOut();
}

void BankChoice::Select(int bank) {
  chosen = bank;
  if (QAbstractButton* button = buttons->button(bank)) {
    button->setChecked(true);
  } else {
    // An exclusive group has no way back to nothing chosen.
    buttons->setExclusive(false);
    for (QAbstractButton* each : buttons->buttons()) each->setChecked(false);
    buttons->setExclusive(true);
  }
  combo->setCurrentIndex(-1);
  for (std::size_t i = 0; i < entries.size(); ++i)
    if (entries[i].Bank == bank) combo->setCurrentIndex(static_cast<int>(i));
}

void BankChoice::Choose(int bank) {
  Select(bank);
  Q_EMIT bankChosen(bank);
}

void BankChoice::LayOut() {
  const Metrics& m = metrics();
  int left = 0;
  for (QAbstractButton* button : buttons->buttons()) {
    button->setGeometry(left, 0, button->sizeHint().width(), m.px(RowHeight));
    left += button->width() + m.px(Gap);
  }
  asButtons = left - m.px(Gap) <= width();
  // A choice of one is none.
  const bool shown = entries.size() > 1;
  for (QAbstractButton* button : buttons->buttons()) button->setVisible(shown && asButtons);
  combo->setVisible(shown && !asButtons);
  combo->setGeometry(0, 0, std::min(m.px(ComboWidth), width()), m.px(RowHeight));
}

QSize BankChoice::sizeHint() const { return {metrics().px(ComboWidth), metrics().px(RowHeight)}; }

QSize BankChoice::minimumSizeHint() const { return sizeHint(); }

void BankChoice::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  LayOut();
}

void BankChoice::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (!AppearanceChanged(*event)) return;
  updateGeometry();
  LayOut();
}

}  // namespace Sonarello
