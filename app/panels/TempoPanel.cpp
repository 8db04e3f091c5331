#include "app/panels/TempoPanel.h"

#include <QPainter>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>

#include "app/controls/QtText.h"
#include "app/controls/Theme.h"
#include "app/panels/FigurePanel.h"
#include "app/panels/PanelButton.h"
#include "app/panels/PanelTexts.h"

namespace Sonarello {

namespace {

/// Hold time before a button repeats and the time between two repeats, in ms.
constexpr int RepeatDelay = 700, RepeatInterval = 150;

constexpr double FigureWidth = 58;

}  // namespace

TempoPanel::TempoPanel(QWidget* parent)
    : Panel(parent),
      Tempo_Minus(new PanelButton(QText("Tempo langsamer", "Tempo slower"), this)),
      Tempo_Null(new PanelButton(QText("Tempo wie im Song", "Tempo as in the song"), this)),
      Tempo_Plus(new PanelButton(QText("Tempo schneller", "Tempo faster"), this)) {
  setAccessibleName(QText("Tempo", "Tempo"));
  Tempo_Minus->SetIcon(Icon::Minus, 15);
  Tempo_Plus->SetIcon(Icon::Plus, 15);
  for (PanelButton* button : {Tempo_Minus, Tempo_Plus}) {
    button->setAutoRepeat(true);
    button->setAutoRepeatDelay(RepeatDelay);
    button->setAutoRepeatInterval(RepeatInterval);
  }
  connect(Tempo_Minus, &PanelButton::clicked, this, &TempoPanel::Tempo_MinusClick);
  connect(Tempo_Null, &PanelButton::clicked, this, &TempoPanel::Tempo_NullClick);
  connect(Tempo_Plus, &PanelButton::clicked, this, &TempoPanel::Tempo_PlusClick);
  Renew();
}

void TempoPanel::SetView(const TempoView& view) {
  view_ = view;
  Refresh();
}

void TempoPanel::Refresh() {
  const QString shown = QString::number(view_.tempo, 'f', 1);
  if (shown != figure_ && !figure_.isEmpty()) update();
  figure_ = shown;
  const QString reason = view_.song ? QString() : NoSongReason();
  const QString value =
      QText("Jetzt %1 BPM, Versatz %2", "Now %1 BPM, offset %2").arg(figure_, SignedText(view_.offset));
  Tempo_Minus->SetState(view_.song, {QText("Ein BPM langsamer", "One BPM slower"), value, {}, reason});
  Tempo_Plus->SetState(view_.song, {QText("Ein BPM schneller", "One BPM faster"), value, {}, reason});
  Tempo_Null->SetState(view_.song, {QText("Versatz; ein Klick stellt das Tempo des Songs wieder her",
                                          "Offset; a click brings back the tempo of the song"),
                                    value,
                                    {},
                                    reason});
  Tempo_Null->setText(SignedText(view_.offset));
  Tempo_Null->SetInk(view_.offset == 0 ? th().tx1 : th().acc);
  setAccessibleDescription(value);
  update();
}

void TempoPanel::Arrange() {
  const int side = Px(26, 28);
  ArrangeFigureRow(*this, FigureWidth,
                   {{Tempo_Minus, side, 12}, {Tempo_Null, metrics().px(40), 3}, {Tempo_Plus, side, 3}});
}

QSize TempoPanel::sizeHint() const {
  const int inside = metrics().px(FigureWidth) + metrics().px(12) + 2 * Px(26, 28) + metrics().px(40) +
                     2 * metrics().px(3);
  return {2 * FigurePanelEdge(*this) + inside, Px(62, 72)};
}

void TempoPanel::paintEvent(QPaintEvent* event) {
  Panel::paintEvent(event);
  QPainter painter(this);
  PaintFigure(*this, painter, QText("Tempo (BPM)", "Tempo (BPM)"), figure_, view_.song);
}

void TempoPanel::wheelEvent(QWheelEvent* event) {
  event->accept();
  const int notches = wheel_.take(event->angleDelta().y());
  if (!view_.song) return;
  for (int i = 0; i < std::abs(notches); ++i) {
    if (notches > 0) {
      Q_EMIT Tempo_PlusClick();
    } else {
      Q_EMIT Tempo_MinusClick();
    }
  }
}

}  // namespace Sonarello
