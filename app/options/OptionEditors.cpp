#include "app/options/OptionEditors.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QRadioButton>
#include <QSpinBox>
#include <utility>

#include "app/controls/QtText.h"
#include "app/options/ColourButton.h"
#include "app/options/SegmentChoice.h"
#include "desk/SettingsKeys.h"
#include "instruments/InstrumentArray.h"

namespace Sonarello {

namespace {

constexpr double WideField = 280;
constexpr double FontField = 188;
constexpr double SmallField = 112;

QString ItemText(const TOptionItem& item) { return QText(item.German, item.English); }

/// Place of a stored value among the items of a choice; -1 if it is none of them.
int ItemIndex(const TOptionField& field, const std::string& value) {
  for (std::size_t i = 0; i < field.Items.size(); ++i)
    if (field.Items[i].Value == value) return static_cast<int>(i);
  return -1;
}

std::string ItemValue(const TOptionField& field, int index) {
  return std::string(field.Items[static_cast<std::size_t>(index)].Value);
}

int Number(const std::string& value) { return ToQt(value).toInt(); }

void MakeCheck(OptionRow& row, QWidget* parent, const OptionSet& set) {
  auto* box = new QCheckBox(QText(row.Field->German, row.Field->English), parent);
  row.Editor = box;
  row.ShowValue = [box, key = row.Field->Key](const OptionsEdit& edit) {
    const QSignalBlocker quiet(box);
    box->setChecked(edit.Value(key) != "0");
  };
  QObject::connect(box, &QCheckBox::toggled, box,
                   [set, key = row.Field->Key](bool on) { set(key, on ? "1" : "0"); });
}

void MakeNumber(OptionRow& row, QWidget* parent, const OptionSet& set) {
  auto* box = new QSpinBox(parent);
  const TSettingsKey* key = FindSettingsKey(row.Field->Key);
  box->setRange(key->Min, key->Max);
  box->setAccelerated(true);
  row.Editor = box;
  row.Width = SmallField;
  row.ShowValue = [box, name = row.Field->Key](const OptionsEdit& edit) {
    const QSignalBlocker quiet(box);
    box->setValue(Number(edit.Value(name)));
  };
  QObject::connect(box, &QSpinBox::valueChanged, box,
                   [set, name = row.Field->Key](int value) { set(name, std::to_string(value)); });
}

void MakeRadio(OptionRow& row, QWidget* parent, const OptionSet& set) {
  auto* box = new QWidget(parent);
  auto* line = new QHBoxLayout(box);
  line->setContentsMargins(0, 0, 0, 0);
  line->setSpacing(20);
  std::vector<QRadioButton*> buttons;
  const TOptionField& field = *row.Field;
  for (std::size_t i = 0; i < field.Items.size(); ++i) {
    auto* button = new QRadioButton(ItemText(field.Items[i]), box);
    button->setAccessibleName(QText(field.German, field.English) + QLatin1String(": ") +
                              button->text());
    line->addWidget(button);
    buttons.push_back(button);
    QObject::connect(button, &QRadioButton::toggled, button, [set, &field, i](bool on) {
      if (on) set(field.Key, ItemValue(field, static_cast<int>(i)));
    });
  }
  line->addStretch(1);
  box->setFocusProxy(buttons.front());
  row.Editor = box;
  row.ShowValue = [buttons, &field](const OptionsEdit& edit) {
    const int index = ItemIndex(field, edit.Value(field.Key));
    for (std::size_t i = 0; i < buttons.size(); ++i) {
      const QSignalBlocker quiet(buttons[i]);
      if (static_cast<int>(i) == index) buttons[i]->setChecked(true);
    }
  };
}

void MakeSegments(OptionRow& row, QWidget* parent, const OptionSet& set) {
  const TOptionField& field = *row.Field;
  QStringList texts;
  for (const TOptionItem& item : field.Items) texts << ItemText(item);
  auto* choice = new SegmentChoice(texts, parent);
  choice->SetName(QText(field.German, field.English));
  row.Editor = choice;
  row.ShowValue = [choice, &field](const OptionsEdit& edit) {
    choice->SetIndex(ItemIndex(field, edit.Value(field.Key)));
  };
  QObject::connect(choice, &SegmentChoice::Chosen, choice,
                   [set, &field](int index) { set(field.Key, ItemValue(field, index)); });
}

void MakeCombo(OptionRow& row, QWidget* parent, const OptionSet& set) {
  const TOptionField& field = *row.Field;
  auto* combo = new QComboBox(parent);
  for (const TOptionItem& item : field.Items) combo->addItem(ItemText(item));
  row.Editor = combo;
  row.Width = SmallField;
  row.ShowValue = [combo, &field](const OptionsEdit& edit) {
    combo->setCurrentIndex(ItemIndex(field, edit.Value(field.Key)));
  };
  QObject::connect(combo, &QComboBox::activated, combo,
                   [set, &field](int index) { set(field.Key, ItemValue(field, index)); });
}

/// A combo box of names; `names` tells those of the moment.
void MakeNames(OptionRow& row, QWidget* parent, const OptionSet& set, double width,
               std::function<std::vector<std::string>(const OptionsEdit&)> names) {
  const TOptionField& field = *row.Field;
  auto* combo = new QComboBox(parent);
  combo->setMaxVisibleItems(20);
  row.Editor = combo;
  row.Width = width;
  row.ShowValue = [combo, &field, names = std::move(names)](const OptionsEdit& edit) {
    FillCombo(*combo, names(edit), edit.Value(field.Key));
  };
  QObject::connect(combo, &QComboBox::activated, combo,
                   [combo, set, &field](int index) { set(field.Key, ToStd(combo->itemText(index))); });
}

void MakeFont(OptionRow& row, QWidget* parent, const OptionSet& set) {
  const TOptionField& field = *row.Field;
  auto* combo = new QComboBox(parent);
  combo->setMaxVisibleItems(20);
  combo->addItem(QText("Schrift des Programms", "The program's font"));
  combo->addItems(QFontDatabase::families());
  row.Editor = combo;
  row.Width = FontField;
  row.ShowValue = [combo, &field](const OptionsEdit& edit) {
    const QString name = ToQt(edit.Value(field.Key));
    combo->setCurrentIndex(name.isEmpty() ? 0 : std::max(0, combo->findText(name)));
  };
  QObject::connect(combo, &QComboBox::activated, combo, [combo, set, &field](int index) {
    set(field.Key, index == 0 ? std::string() : ToStd(combo->itemText(index)));
  });
}

void MakeColour(OptionRow& row, QWidget* parent, const OptionSet& set) {
  auto* button = new ColourButton(parent);
  row.Editor = button;
  row.Width = 28;
  row.ShowValue = [button, key = row.Field->Key](const OptionsEdit& edit) {
    button->SetColour(Number(edit.Value(key)));
  };
  QObject::connect(button, &ColourButton::ColourChosen, button,
                   [set, key = row.Field->Key](int value) { set(key, std::to_string(value)); });
}

void MakeEditor(OptionRow& row, QWidget* parent, const OptionSet& set) {
  switch (row.Field->Control) {
    case TOptionControl::Check: return MakeCheck(row, parent, set);
    case TOptionControl::Number: return MakeNumber(row, parent, set);
    case TOptionControl::Radio: return MakeRadio(row, parent, set);
    case TOptionControl::Segments: return MakeSegments(row, parent, set);
    case TOptionControl::Combo: return MakeCombo(row, parent, set);
    case TOptionControl::Font: return MakeFont(row, parent, set);
    case TOptionControl::Colour: return MakeColour(row, parent, set);
    case TOptionControl::Input:
      return MakeNames(row, parent, set, WideField,
                       [](const OptionsEdit& edit) { return edit.InputChoices(); });
    case TOptionControl::MainInstrument:
      return MakeNames(row, parent, set, WideField,
                       [](const OptionsEdit&) { return InstrumentNames(); });
    case TOptionControl::MainOutput:
      return MakeNames(row, parent, set, WideField,
                       [](const OptionsEdit& edit) { return edit.OutputChoices(0); });
  }
}

}  // namespace

OptionRow MakeOptionRow(const TOptionField& field, QWidget* parent, OptionSet set) {
  OptionRow row;
  row.Field = &field;
  MakeEditor(row, parent, set);
  row.Editor->setObjectName(ToQt(field.Key));
  if (field.Control == TOptionControl::Check) return row;
  const QString name = QText(field.German, field.English);
  row.Editor->setAccessibleName(name);
  if (field.Place != TOptionPlace::Joined) {
    row.Caption = new QLabel(name, parent);
    row.Caption->setBuddy(row.Editor);
  }
  if (!field.Unit.empty()) row.Unit = new QLabel(ToQt(field.Unit), parent);
  return row;
}

void RefreshOptionRow(const OptionRow& row, const OptionsEdit& edit) {
  row.ShowValue(edit);
  const bool works = edit.WhyDisabled(row.Field->Key).empty();
  const std::string explanation = edit.Explanation(row.Field->Key);
  row.Editor->setEnabled(works);
  row.Editor->setToolTip(TipText(explanation));
  row.Editor->setAccessibleDescription(ToQt(explanation));
  for (QLabel* label : {row.Caption, row.Unit}) {
    if (label == nullptr) continue;
    label->setEnabled(works);
    label->setToolTip(row.Editor->toolTip());
  }
}

QString TipText(const std::string& text) {
  QString escaped = ToQt(text).toHtmlEscaped();
  return QLatin1String("<qt>") + escaped.replace(QLatin1Char('\n'), QLatin1String("<br>")) +
         QLatin1String("</qt>");
}

void FillCombo(QComboBox& combo, const std::vector<std::string>& names, const std::string& chosen) {
  QStringList shown;
  for (const std::string& name : names) shown << ToQt(name);
  QStringList now;
  for (int i = 0; i < combo.count(); ++i) now << combo.itemText(i);
  if (shown != now) {
    combo.clear();
    combo.addItems(shown);
  }
  combo.setCurrentIndex(combo.findText(ToQt(chosen), Qt::MatchExactly | Qt::MatchCaseSensitive));
}

const std::vector<std::string>& InstrumentNames() {
  static const std::vector<std::string> names = [] {
    std::vector<std::string> all;
    for (const TInstrument& row : InstrumentArray) all.emplace_back(row.Name);
    return all;
  }();
  return names;
}

}  // namespace Sonarello
