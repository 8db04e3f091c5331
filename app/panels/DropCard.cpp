#include "app/panels/DropCard.h"

#include <QFontMetricsF>
#include <algorithm>

#include "app/controls/Icons.h"
#include "app/controls/Painting.h"
#include "app/controls/QtText.h"
#include "app/panels/PanelButton.h"

namespace Sonarello {

namespace {

constexpr double CardWidth = 520, CardHeight = 200, Radius = 10;
constexpr double ShadowDown = 8, ShadowReach = 30;
constexpr double IconTop = 29, IconSize = 40, HeadTop = 78, HeadHeight = 28, TargetTop = 110;
constexpr double ButtonTop = 143, ButtonHeight = 28, ButtonGap = 8;

QString Sentence() {
  return QText("Öffnen Sie einen Song oder legen Sie ihn hier ab", "Open a song or drop it here");
}

QString TargetText() {
  return QText("Midifile (.mid) · Zielinstrument: ", "Midifile (.mid) · target instrument: ");
}

}  // namespace

DropCard::DropCard(QWidget* parent)
    : Panel(parent),
      open_(new PanelButton(QText("Midifile öffnen", "Open midifile"), this)),
      recent_(new PanelButton(QText("Zuletzt geöffnet", "Open recent"), this)) {
  open_->setText(QText("Midifile öffnen…", "Open midifile…"));
  open_->SetAside(QText("Strg+O", "Ctrl+O"));
  open_->SetDefault(true);
  recent_->setText(QText("Zuletzt geöffnet", "Open recent"));
  recent_->SetArrow(true);
  connect(open_, &PanelButton::clicked, this, &DropCard::openClicked);
  connect(recent_, &PanelButton::clicked, this,
          [this] { Q_EMIT recentWanted(recent_->mapToGlobal(recent_->rect().bottomLeft())); });
  setAccessibleName(Sentence());
  Renew();
}

void DropCard::SetInstrument(const QString& instrument) {
  instrument_ = instrument;
  Refresh();
}

void DropCard::SetRecent(bool any) {
  anyRecent_ = any;
  Refresh();
}

void DropCard::SetDragging(bool dragging) {
  if (dragging == dragging_) return;
  dragging_ = dragging;
  update();
}

void DropCard::FocusOpen() { open_->setFocus(Qt::TabFocusReason); }

void DropCard::Refresh() {
  open_->SetState(true, {QText("Ein Midifile wählen und öffnen", "Choose a midifile and open it"),
                         {},
                         QText("Strg+O", "Ctrl+O")});
  recent_->SetState(
      anyRecent_,
      {QText("Eines der zuletzt geöffneten Midifiles", "One of the midifiles opened last"),
       {},
       {},
       anyRecent_ ? QString()
                  : QText("Es wurde noch kein Midifile geöffnet", "No midifile has been opened yet")});
  setAccessibleDescription(instrument_.isEmpty() ? QString() : TargetText() + instrument_);
  update();
}

QSize DropCard::sizeHint() const {
  const int reach = 2 * metrics().px(ShadowReach);
  return {metrics().px(CardWidth) + reach, metrics().px(CardHeight) + reach};
}

QRect DropCard::CardRect() const {
  const QSize card(metrics().px(CardWidth), metrics().px(CardHeight));
  return {(width() - card.width()) / 2, (height() - card.height()) / 2, card.width(), card.height()};
}

void DropCard::Arrange() {
  const QRect card = CardRect();
  const int padding = metrics().px(12), tall = metrics().px(ButtonHeight),
            gap = metrics().px(ButtonGap);
  const int openWidth = open_->WidthFor(padding), recentWidth = recent_->WidthFor(padding);
  const int top = card.top() + metrics().px(ButtonTop);
  const int left = card.left() + (card.width() - openWidth - gap - recentWidth) / 2;
  open_->setGeometry(left, top, openWidth, tall);
  recent_->setGeometry(left + openWidth + gap, top, recentWidth, tall);
}

/// A soft shadow as rings that grow fainter outwards.
void DropCard::PaintShadow(QPainter& painter) const {
  const Metrics& m = metrics();
  const double reach = m.f(ShadowReach) - m.f(ShadowDown);
  const QRectF below = QRectF(CardRect()).translated(0, m.f(ShadowDown));
  constexpr int rings = 16;
  for (int i = 0; i < rings; ++i) {
    const double away = reach * (1 - 2.0 * i / rings);
    const QRectF ring = below.adjusted(-away, -away, away, away);
    PaintBox(painter, ring, std::max(m.f(Radius) + away, m.f(2)),
             WithAlpha(th().shadow, th().shadow.alphaF() * 1.6 / rings), QColor());
  }
}

void DropCard::PaintTarget(QPainter& painter, const QRect& line) const {
  const QFont& plain = metrics().font(Role::Body);
  const QFont& strong = metrics().font(Role::Strong);
  const QString head = instrument_.isEmpty() ? QStringLiteral("Midifile (.mid)") : TargetText();
  const double room = line.width() - 2 * metrics().px(16);
  const double headWidth = QFontMetricsF(plain).horizontalAdvance(head);
  const QString name = Elided(strong, instrument_, room - headWidth);
  const double width = headWidth + QFontMetricsF(strong).horizontalAdvance(name);
  double x = line.left() + (line.width() - width) / 2;
  painter.setFont(plain);
  painter.setPen(th().tx2);
  painter.drawText(QRectF(x, line.top(), headWidth + 1, line.height()), Qt::AlignVCenter, head);
  x += headWidth;
  painter.setFont(strong);
  painter.setPen(th().tx1);
  painter.drawText(QRectF(x, line.top(), width - headWidth + 1, line.height()), Qt::AlignVCenter, name);
}

void DropCard::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const Metrics& m = metrics();
  const QRect card = CardRect();
  PaintShadow(painter);
  PaintBox(painter, card, m.px(Radius), dragging_ ? th().accbg : th().bg1, QColor());
  const double border = dragging_ ? m.px(2) : m.hair();
  painter.setRenderHint(QPainter::Antialiasing);
  QPen pen(dragging_ ? th().acc : th().line2, border);
  if (!dragging_) pen.setDashPattern({4.0, 3.0});
  painter.setPen(pen);
  painter.setBrush(Qt::NoBrush);
  const double half = border / 2;
  painter.drawRoundedRect(QRectF(card).adjusted(half, half, -half, -half), m.px(Radius), m.px(Radius));
  const double icon = m.f(IconSize);
  PaintIcon(painter, Icon::File,
            QRectF(card.center().x() + 0.5 - icon / 2, card.top() + m.px(IconTop), icon, icon),
            th().acc);
  painter.setFont(m.font(Role::Headline));
  painter.setPen(th().tx1);
  painter.drawText(QRect(card.left(), card.top() + m.px(HeadTop), card.width(), m.px(HeadHeight)),
                   Qt::AlignCenter, Sentence());
  PaintTarget(painter, QRect(card.left(), card.top() + m.px(TargetTop), card.width(), m.px(18)));
}

}  // namespace Sonarello
