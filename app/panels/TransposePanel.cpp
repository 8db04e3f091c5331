#include "app/panels/TransposePanel.h"

#include <QKeyEvent>
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

constexpr double FigureWidth = 30;
constexpr double Gap = 3, FigureGap = 12, IntelligentGap = 18;
constexpr double ModeWidth = 22;

}  // namespace

TransposePanel::TransposePanel(QWidget* parent)
    : Panel(parent),
      Transpose_Minus(new PanelButton(QText("Einen Halbton tiefer", "One semitone down"), this)),
      Transpose_Null(new PanelButton(QText("Nicht transponieren", "No transposition"), this)),
      Transpose_Plus(new PanelButton(QText("Einen Halbton höher", "One semitone up"), this)),
      IntelligentTranspose(
          new PanelButton(QText("Intelligent transponieren", "Intelligent transposition"), this)) {
  setAccessibleName(QText("Transponieren", "Transpose"));
  Transpose_Minus->SetIcon(Icon::Minus, 15);
  Transpose_Plus->SetIcon(Icon::Plus, 15);
  Transpose_Null->setText(QStringLiteral("0"));
  IntelligentTranspose->setText(QStringLiteral("Intelligent"));
  IntelligentTranspose->setCheckable(true);
  connect(Transpose_Minus, &PanelButton::clicked, this, &TransposePanel::Transpose_MinusClick);
  connect(Transpose_Null, &PanelButton::clicked, this, &TransposePanel::Transpose_NullClick);
  connect(Transpose_Plus, &PanelButton::clicked, this, &TransposePanel::Transpose_PlusClick);
  connect(IntelligentTranspose, &PanelButton::clicked, this, [this] {
    Refresh();
    Q_EMIT IntelligentTransposeChange(!view_.intelligent);
  });
  for (int i = 0; i < Modes; ++i) {
    auto* mode = new PanelButton(QText("Intelligent-Modus %1", "Intelligent mode %1").arg(i + 1), this);
    mode->setText(QString::number(i + 1));
    mode->setCheckable(true);
    mode->installEventFilter(this);
    connect(mode, &PanelButton::clicked, this, [this, i] {
      Refresh();
      Q_EMIT IT_ModeClick(i + 1);
    });
    IT_Mode[static_cast<std::size_t>(i)] = mode;
  }
  Renew();
}

void TransposePanel::SetView(const TransposeView& view) {
  view_ = view;
  Refresh();
}

void TransposePanel::Refresh() {
  const QString reason = view_.song ? QString() : NoSongReason();
  const QString value = QText("Jetzt %1 Halbtöne", "Now %1 semitones").arg(SignedText(view_.transpose));
  const auto set = [&](PanelButton* button, const QString& what, const QString& shown) {
    button->SetState(view_.song, {what, shown, {}, reason});
  };
  set(Transpose_Minus, QText("Einen Halbton tiefer", "One semitone down"), value);
  set(Transpose_Null, QText("Tonart des Songs wiederherstellen", "Back to the key of the song"), value);
  set(Transpose_Plus, QText("Einen Halbton höher", "One semitone up"), value);
  set(IntelligentTranspose,
      QText("Jeder Kanal wird um höchstens wenige Halbtöne verschoben, nach oben oder unten, was näher "
            "liegt",
            "Each channel moves by a few semitones at most, up or down, whichever is nearer"),
      view_.intelligent ? QText("Ein", "On") : QText("Aus", "Off"));
  IntelligentTranspose->setChecked(view_.intelligent);
  RefreshModes(reason);
  setAccessibleDescription(value);
  update();
}

void TransposePanel::RefreshModes(const QString& reason) {
  const QString off = QText("Erst „Intelligent“ einschalten", "Switch “Intelligent” on first");
  for (int i = 0; i < Modes; ++i) {
    PanelButton* mode = IT_Mode[static_cast<std::size_t>(i)];
    const bool chosen = view_.mode == i + 1;
    mode->setChecked(chosen && view_.song);
    mode->SetState(
        view_.song && view_.intelligent,
        {QText("Modus %1: die Kanäle springen an anderen Stellen in die andere Oktave als in "
               "den übrigen Modi",
               "Mode %1: the channels change to the other octave at points that differ from "
               "those of the other modes")
             .arg(i + 1),
         {},
         {},
         !reason.isEmpty()   ? reason
         : view_.intelligent ? QString()
                             : off});
    mode->setFocusPolicy(chosen ? Qt::TabFocus : Qt::NoFocus);
  }
}

int TransposePanel::IntelligentWidth() const {
  return std::max(metrics().px(75), IntelligentTranspose->WidthFor(metrics().px(6)));
}

void TransposePanel::Arrange() {
  const int side = Px(26, 28), mode = metrics().px(ModeWidth);
  ArrangeFigureRow(*this, FigureWidth,
                   {{Transpose_Minus, side, FigureGap},
                    {Transpose_Null, side, Gap},
                    {Transpose_Plus, side, Gap},
                    {IntelligentTranspose, IntelligentWidth(), IntelligentGap},
                    {IT_Mode[0], mode, Gap},
                    {IT_Mode[1], mode, Gap},
                    {IT_Mode[2], mode, Gap},
                    {IT_Mode[3], mode, Gap}});
}

QSize TransposePanel::sizeHint() const {
  const Metrics& m = metrics();
  const int inside = m.px(FigureWidth) + m.px(FigureGap) + 3 * Px(26, 28) + 2 * m.px(Gap) +
                     m.px(IntelligentGap) + IntelligentWidth() + Modes * (m.px(Gap) + m.px(ModeWidth));
  return {2 * FigurePanelEdge(*this) + inside, Px(62, 72)};
}

void TransposePanel::paintEvent(QPaintEvent* event) {
  Panel::paintEvent(event);
  QPainter painter(this);
  PaintFigure(*this, painter, QText("Transponieren", "Transpose"), SignedText(view_.transpose),
              view_.song);
}

void TransposePanel::wheelEvent(QWheelEvent* event) {
  event->accept();
  const int notches = wheel_.take(event->angleDelta().y());
  if (!view_.song) return;
  for (int i = 0; i < std::abs(notches); ++i) {
    if (notches > 0) {
      Q_EMIT Transpose_PlusClick();
    } else {
      Q_EMIT Transpose_MinusClick();
    }
  }
}

/// The four modes are one stop of the tab key; arrows choose among them.
bool TransposePanel::eventFilter(QObject* object, QEvent* event) {
  if (event->type() != QEvent::KeyPress) return Panel::eventFilter(object, event);
  const auto* key = static_cast<QKeyEvent*>(event);
  const int step = key->key() == Qt::Key_Right || key->key() == Qt::Key_Down ? 1
                   : key->key() == Qt::Key_Left || key->key() == Qt::Key_Up  ? -1
                                                                             : 0;
  if (step == 0) return Panel::eventFilter(object, event);
  const int next = std::clamp(view_.mode + step, 1, Modes);
  if (next != view_.mode) {
    IT_Mode[static_cast<std::size_t>(next - 1)]->setFocus(Qt::TabFocusReason);
    Q_EMIT IT_ModeClick(next);
  }
  return true;
}

}  // namespace Sonarello
