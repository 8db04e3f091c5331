#include "app/desk/VelocityEditor.h"

#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>

#include "app/controls/Metrics.h"
#include "app/controls/ParamSlider.h"
#include "app/controls/QtText.h"
#include "app/controls/Theme.h"

namespace Sonarello {

VelocityEditor::VelocityEditor(TStripVelocities& v, QWidget* parent)
    : QWidget(parent, Qt::Popup),
      velocities(v),
      title(new QLabel(this)),
      source(new QLabel(this)),
      minimum(new ParamSlider(this)),
      maximum(new ParamSlider(this)) {
  setObjectName(QStringLiteral("VelocityEditor"));
  minimum->setObjectName(QStringLiteral("VelocityRangeSliderMin"));
  maximum->setObjectName(QStringLiteral("VelocityRangeSliderMax"));
  minimum->setName(QText("Leiseste Note", "Softest note"));
  maximum->setName(QText("Lauteste Note", "Loudest note"));
  for (ParamSlider* const slider : {minimum, maximum}) slider->setRange(1, 127);
  connect(minimum, &ParamSlider::moved, this, [this](int value) {
    velocities.VelocityRangeSliderMinPosChange(value);
    Changed();
  });
  connect(maximum, &ParamSlider::moved, this, [this](int value) {
    velocities.VelocityRangeSliderMaxPosChange(value);
    Changed();
  });
  auto* const reset = new QPushButton(QText("Zurücksetzen", "Reset"), this);
  reset->setObjectName(QStringLiteral("Btn_ResetVelocityRange"));
  connect(reset, &QPushButton::clicked, this, [this] {
    velocities.ResetVelocityRange();
    Changed();
  });
  auto* const close = new QPushButton(QText("Schließen", "Close"), this);
  close->setObjectName(QStringLiteral("Btn_CloseVelocityEditor"));
  close->setDefault(true);
  connect(close, &QPushButton::clicked, this, &QWidget::hide);
  auto* const buttons = new QHBoxLayout;
  buttons->addWidget(reset);
  buttons->addStretch();
  buttons->addWidget(close);
  auto* const all = new QVBoxLayout(this);
  const int margin = metrics().px(12);
  all->setContentsMargins(margin, margin, margin, margin);
  all->setSpacing(metrics().px(8));
  all->addWidget(title);
  all->addWidget(source);
  all->addWidget(minimum);
  all->addWidget(maximum);
  all->addLayout(buttons);
}

bool VelocityEditor::Open(int channel, const QPoint& at) {
  if (!velocities.OpenVelocityEditor(channel)) return false;
  title->setText(QText("Anschlag auf Midikanal %1", "Velocity on midi channel %1").arg(channel + 1));
  title->setFont(metrics().font(Role::Title));
  ShowRange();
  setFixedWidth(metrics().px(380));
  adjustSize();
  const QRect free = screen()->availableGeometry();
  move(std::clamp(at.x(), free.left(), std::max(free.left(), free.right() - width())),
       std::clamp(at.y() - height(), free.top(), std::max(free.top(), free.bottom() - height())));
  show();
  minimum->setFocus();
  return true;
}

void VelocityEditor::ShowRange() {
  const TVelocityRange range = velocities.Range();
  source->setText(QText("Noten im Song: %1 bis %2", "Notes in the song: %1 to %2")
                      .arg(range.Minimum)
                      .arg(range.Maximum));
  minimum->setDefault(range.Minimum);
  maximum->setDefault(range.Maximum);
  minimum->setValue(range.NewMinimum);
  maximum->setValue(range.NewMaximum);
}

void VelocityEditor::Changed() {
  ShowRange();
  Q_EMIT rangeChanged(velocities.EditedChannel());
}

void VelocityEditor::hideEvent(QHideEvent* event) {
  const int channel = velocities.EditedChannel();
  velocities.Btn_CloseVelocityEditorClick();
  if (channel >= 0) Q_EMIT rangeChanged(channel);
  QWidget::hideEvent(event);
}

}  // namespace Sonarello
