#include "app/controls/GroupColumn.h"

#include "app/controls/GroupButton.h"
#include "app/controls/GroupFader.h"
#include "app/controls/Painting.h"
#include "app/controls/QtText.h"
#include "app/controls/ValueBox.h"

namespace Sonarello {
namespace {

constexpr double buttonGap = 4;

QString GroupText(int position) { return position == 0 ? QStringLiteral("±0") : SignedText(position); }

}  // namespace

GroupColumn::GroupColumn(QWidget* parent)
    : Control(parent),
      linkButton(new GroupButton(Icon::Link, GroupButton::Place::Above, this)),
      soloOff(new GroupButton(Icon::Cross, GroupButton::Place::Behind, this)),
      muteOff(new GroupButton(Icon::Cross, GroupButton::Place::Behind, this)),
      spring(new GroupFader(this)),
      value(new ValueBox(this)) {
  linkButton->setCheckable(true);
  soloOff->setText(QStringLiteral("S"));
  muteOff->setText(QStringLiteral("M"));
  value->setTypes(false);
  value->setFaint(true);
  value->setText(GroupText(0));
  showTexts();
  connect(linkButton, &GroupButton::clicked, this,
          [this] { Q_EMIT linkToggled(linkButton->isChecked()); });
  connect(soloOff, &GroupButton::clicked, this, &GroupColumn::allSoloOff);
  connect(muteOff, &GroupButton::clicked, this, &GroupColumn::allMuteOff);
  connect(spring, &GroupFader::pressed, this, &GroupColumn::pressed);
  connect(spring, &GroupFader::moved, this, &GroupColumn::moved);
  connect(spring, &GroupFader::released, this, &GroupColumn::released);
  connect(spring, &GroupFader::shown, this, [this](int position) {
    value->setText(GroupText(position));
    value->setFaint(position == 0);
  });
}

void GroupColumn::showTexts() {
  linkButton->setText(QText("Koppeln", "Link"));
  linkButton->setAccessibleName(QText("Fader koppeln", "Link faders"));
  linkButton->setToolTip(Tip(QText("Der Fader des aktiven Kanals nimmt alle anderen mit",
                                   "The fader of the active channel takes all others along"),
                             {}, {}));
  soloOff->setAccessibleName(QText("Alle Solos und Stummschaltungen aus", "All solos and mutes off"));
  soloOff->setToolTip(Tip(soloOff->accessibleName(), {}, QText("Umschalt+S", "Shift+S")));
  muteOff->setAccessibleName(QText("Alle Stummschaltungen aus", "All mutes off"));
  muteOff->setToolTip(Tip(muteOff->accessibleName(), {}, QText("Umschalt+M", "Shift+M")));
  spring->setAccessibleName(QText("Gruppe Lautstärke", "Group volume"));
  spring->setToolTip(Tip(QText("Alle Kanäle im Verhältnis lauter oder leiser",
                               "All channels louder or softer in proportion"),
                         {}, QText("Auf, Ab", "Up, Down")));
  value->setAccessibleName(spring->accessibleName());
  setAccessibleName(QText("Gruppe", "Group"));
}

void GroupColumn::setCompact(bool on) {
  if (on == compact) return;
  compact = on;
  layOut();
}

void GroupColumn::setLinked(bool linked) { linkButton->setChecked(linked); }

void GroupColumn::setSongLoaded(bool loaded) {
  song = loaded;
  for (QWidget* part : std::initializer_list<QWidget*>{linkButton, soloOff, muteOff, spring})
    part->setEnabled(loaded);
  update();
}

Spoken GroupColumn::spoken() const { return {}; }

void GroupColumn::layOut() {
  plan = StripPlan::Of(size(), compact);
  // The column has no border of its own, so its parts take the whole width.
  const auto wide = [this](QRect row) { return QRect(0, row.top(), width(), row.height()); };
  linkButton->setGeometry(wide(plan.plate));
  const QRect buttons = wide(plan.leds);
  const int gap = metrics().px(buttonGap), half = (buttons.width() - gap) / 2;
  soloOff->setGeometry(0, buttons.top(), half, buttons.height());
  muteOff->setGeometry(buttons.width() - half, buttons.top(), half, buttons.height());
  spring->setGeometry(wide(plan.fader));
  value->setGeometry(wide(plan.value));
  update();
}

void GroupColumn::paintEvent(QPaintEvent*) {
  const Metrics& m = metrics();
  QPainter painter(this);
  painter.setPen(th().tx2);
  painter.setFont(m.font(Role::ToolTip));
  const auto caption = [&](const QRect& row, const QString& text) {
    painter.drawText(QRect(0, row.top(), width(), row.height()), Qt::AlignLeft | Qt::AlignVCenter,
                     text);
  };
  caption(plan.head, QText("Gruppe", "Group"));
  caption(plan.velocity, QText("Anschlag", "Velocity"));
  caption(plan.octave, QText("Oktave", "Octave"));
}

}  // namespace Sonarello
