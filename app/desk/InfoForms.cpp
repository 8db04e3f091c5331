#include "app/desk/InfoForms.h"

#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>

#include "app/controls/Icons.h"
#include "app/controls/Metrics.h"
#include "app/controls/QtText.h"
#include "app/controls/Theme.h"

namespace Sonarello {

namespace {

QLabel* NewText(QWidget* parent, const QString& text, Role role, const QColor& ink) {
  auto* const label = new QLabel(text, parent);
  label->setTextFormat(Qt::PlainText);
  label->setWordWrap(true);
  label->setFont(metrics().font(role));
  label->setTextInteractionFlags(Qt::TextSelectableByMouse);
  QPalette palette = label->palette();
  palette.setColor(QPalette::WindowText, ink);
  label->setPalette(palette);
  return label;
}

QDialogButtonBox* NewCloseButton(QDialog* form) {
  auto* const box = new QDialogButtonBox(form);
  QPushButton* const close = box->addButton(QText("Schließen", "Close"), QDialogButtonBox::AcceptRole);
  close->setDefault(true);
  QObject::connect(box, &QDialogButtonBox::accepted, form, &QDialog::accept);
  return box;
}

}  // namespace

TPropertiesForm::TPropertiesForm(const std::vector<TSongProperty>& properties, QWidget* parent)
    : QDialog(parent) {
  setObjectName(QStringLiteral("PropertiesForm"));
  setWindowTitle(QText("Eigenschaften", "Properties"));
  auto* const grid = new QGridLayout;
  grid->setHorizontalSpacing(metrics().px(16));
  grid->setVerticalSpacing(metrics().px(8));
  grid->setColumnStretch(1, 1);
  int row = 0;
  for (const TSongProperty& property : properties) {
    grid->addWidget(NewText(this, ToQt(property.Label), Role::Body, th().tx3), row, 0, Qt::AlignTop);
    grid->addWidget(NewText(this, ToQt(property.Text), Role::Body, th().tx1), row++, 1, Qt::AlignTop);
  }
  auto* const all = new QVBoxLayout(this);
  const int margin = metrics().px(20);
  all->setContentsMargins(margin, margin, margin, margin);
  all->setSpacing(metrics().px(16));
  all->addLayout(grid);
  all->addStretch();
  all->addWidget(NewCloseButton(this));
  setMinimumWidth(metrics().px(480));
}

TAboutForm::TAboutForm(const QString& version, QWidget* parent) : QDialog(parent) {
  setObjectName(QStringLiteral("AboutForm"));
  setWindowTitle(QText("Über Sonarello", "About Sonarello"));
  auto* const picture = new QLabel(this);
  picture->setPixmap(
      ApplicationIcon().pixmap(QSize(metrics().px(64), metrics().px(64)), devicePixelRatioF()));
  auto* const texts = new QVBoxLayout;
  texts->setSpacing(metrics().px(8));
  texts->addWidget(
      NewText(this, QStringLiteral("Sonarello %1").arg(version), Role::Headline, th().tx1));
  texts->addWidget(NewText(this,
                           QText("Ein Editor für Standard MIDI Files: bereitet Songs für Keyboards, "
                                 "Synthesizer und Soundmodule vor.",
                                 "An editor for Standard MIDI Files: prepares songs for keyboards, "
                                 "synthesizers and sound modules."),
                           Role::Body, th().tx1));
  texts->addWidget(NewText(
      this,
      QText("Freie Software unter der GNU General Public License, Version 3 oder neuer. Verwendet Qt, "
            "RtMidi, "
            "RtAudio, FluidSynth und die Schrift Roboto.",
            "Free software under the GNU General Public License, version 3 or later. Uses Qt, RtMidi, "
            "RtAudio, FluidSynth and the typeface Roboto."),
      Role::Body, th().tx2));
  auto* const row = new QHBoxLayout;
  row->setSpacing(metrics().px(20));
  row->addWidget(picture, 0, Qt::AlignTop);
  row->addLayout(texts, 1);
  auto* const all = new QVBoxLayout(this);
  const int margin = metrics().px(20);
  all->setContentsMargins(margin, margin, margin, margin);
  all->setSpacing(metrics().px(16));
  all->addLayout(row);
  all->addWidget(NewCloseButton(this));
  setMinimumWidth(metrics().px(480));
}

}  // namespace Sonarello
