#include "app/desk/NewMidiDataForm.h"

#include <QComboBox>
#include <QFormLayout>
#include <QPushButton>
#include <QSpinBox>

#include "app/controls/Metrics.h"
#include "app/controls/QtText.h"

namespace Sonarello {

TNewMidiDataForm::TNewMidiDataForm(QWidget* parent)
    : QDialog(parent),
      timeBase(new QComboBox(this)),
      signature(new QComboBox(this)),
      tempo(new QSpinBox(this)) {
  setObjectName(QStringLiteral("NewMidiDataForm"));
  setWindowTitle(QText("Neues Midifile", "New midifile"));
  for (const int ticks : {384, 480}) timeBase->addItem(QText("%1 Ticks", "%1 ticks").arg(ticks), ticks);
  timeBase->setCurrentIndex(1);
  constexpr int signatures[][2] = {{2, 4}, {3, 4}, {4, 4}, {6, 8}};
  for (const auto& [numerator, denominator] : signatures)
    signature->addItem(QStringLiteral("%1/%2").arg(numerator).arg(denominator),
                       QPoint(numerator, denominator));
  signature->setCurrentIndex(2);
  tempo->setRange(TNewSong::MinTempo, TNewSong::MaxTempo);
  tempo->setValue(TNewSong{}.Tempo);
  tempo->setSuffix(QStringLiteral(" BPM"));

  auto* const form = new QFormLayout;
  form->setSpacing(metrics().px(8));
  form->addRow(QText("Auflösung pro Viertel", "Resolution per quarter"), timeBase);
  form->addRow(QText("Taktart", "Time signature"), signature);
  form->addRow(QText("Tempo", "Tempo"), tempo);
  auto* const cancel = new QPushButton(QText("Abbrechen", "Cancel"), this);
  auto* const create = new QPushButton(QText("Anlegen", "Create"), this);
  create->setDefault(true);
  for (QPushButton* const button : {cancel, create}) button->setMinimumWidth(metrics().px(104));
  connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
  connect(create, &QPushButton::clicked, this, &QDialog::accept);
  auto* const buttons = new QHBoxLayout;
  buttons->setSpacing(metrics().px(8));
  buttons->addStretch();
  buttons->addWidget(cancel);
  buttons->addWidget(create);
  auto* const all = new QVBoxLayout(this);
  const int margin = metrics().px(20);
  all->setContentsMargins(margin, margin, margin, margin);
  all->setSpacing(metrics().px(16));
  all->addLayout(form);
  all->addLayout(buttons);
  setMinimumWidth(metrics().px(420));
}

TNewSong TNewMidiDataForm::Wishes() const {
  const QPoint sign = signature->currentData().toPoint();
  TNewSong wishes;
  wishes.SourceTimeBase = static_cast<std::uint16_t>(timeBase->currentData().toInt());
  wishes.Numerator = static_cast<std::uint8_t>(sign.x());
  wishes.Denominator = static_cast<std::uint8_t>(sign.y());
  wishes.Tempo = static_cast<std::uint16_t>(tempo->value());
  return wishes;
}

}  // namespace Sonarello
