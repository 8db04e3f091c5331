#include "app/panels/FilePanel.h"

#include <QFontMetricsF>
#include <QPainter>
#include <algorithm>

#include "app/controls/Metrics.h"
#include "app/controls/QtText.h"
#include "app/controls/Theme.h"
#include "app/panels/FigurePanel.h"
#include "app/panels/PanelTexts.h"

namespace Sonarello {

FilePanel::FilePanel(QWidget* parent) : Panel(parent) {
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
  setAccessibleName(QText("Datei", "File"));
  Renew();
}

void FilePanel::SetView(const FileView& view) {
  view_ = view;
  Refresh();
}

QString FilePanel::NameLine() const {
  if (!view_.song) return QText("Keine Datei", "No file");
  return view_.name.isEmpty() ? QText("Noch nicht gespeichert", "Not saved yet") : view_.name;
}

QString FilePanel::FactsLine() const {
  if (!view_.song) return {};
  QString facts = QStringLiteral("SMF %1 · %2 %3 · %4")
                      .arg(view_.format)
                      .arg(view_.ticksPerQuarter)
                      .arg(QText("T/V", "PPQ"), LengthText(view_.length));
  if (view_.modified) facts += QText(" · geändert", " · modified");
  return facts;
}

void FilePanel::Refresh() {
  const QString ticks = QText("T/V: Ticks je Viertelnote", "PPQ: ticks per quarter note");
  if (view_.song) {
    SetTip(*this, {view_.path.isEmpty() ? NameLine() : view_.path, FactsLine(), ticks});
  } else {
    SetTip(*this, {NameLine(), {}, {}, NoSongReason()});
  }
  setAccessibleDescription(NameLine() + QLatin1Char('\n') + FactsLine());
  update();
}

QSize FilePanel::sizeHint() const { return {metrics().px(250), Px(62, 72)}; }

QSize FilePanel::minimumSizeHint() const {
  const double facts = QFontMetricsF(metrics().font(Role::Caption))
                           .horizontalAdvance(QText("SMF 0 · 480 T/V · 12:51 · geändert",
                                                    "SMF 0 · 480 PPQ · 12:51 · modified"));
  return {std::min(2 * FigurePanelEdge(*this) + static_cast<int>(facts) + 1, metrics().px(207)),
          Px(62, 72)};
}

void FilePanel::PaintName(QPainter& painter, const QRect& line) const {
  const QFont& font = metrics().font(compact() ? Role::Value : Role::FileName);
  const QFontMetricsF sizes(font);
  const double dot = metrics().f(4), gap = metrics().f(5);
  const double room = line.width() - (view_.modified ? dot + 2 * gap : 0);
  const QString shown = sizes.elidedText(NameLine(), Qt::ElideMiddle, room);
  painter.setFont(font);
  painter.setPen(th().tx1);
  painter.drawText(line, Qt::AlignLeft | Qt::AlignVCenter, shown);
  if (!view_.modified) return;
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(th().warn);
  painter.drawEllipse(
      QPointF(line.left() + sizes.horizontalAdvance(shown) + gap + dot / 2, line.center().y() + 0.5),
      dot / 2, dot / 2);
}

void FilePanel::paintEvent(QPaintEvent* event) {
  Panel::paintEvent(event);
  QPainter painter(this);
  const int edge = FigurePanelEdge(*this), width = this->width() - 2 * edge;
  if (!view_.song) {
    painter.setFont(metrics().font(Role::Value));
    painter.setPen(th().tx2);
    painter.drawText(QRect(edge, 0, width, height()), Qt::AlignLeft | Qt::AlignVCenter, NameLine());
    return;
  }
  const int top = Px(4, 6);
  const int caption = metrics().lineHeight(Role::Caption);
  const int name = metrics().lineHeight(Role::FileName);
  painter.setFont(metrics().font(Role::Caption));
  painter.setPen(th().tx3);
  painter.drawText(QRect(edge, top, width, caption), Qt::AlignLeft | Qt::AlignVCenter,
                   QText("Datei", "File"));
  const QString facts =
      QFontMetricsF(painter.font()).elidedText(FactsLine(), Qt::ElideRight, width + 1);
  painter.drawText(QRect(edge, height() - top - caption, width + 1, caption),
                   Qt::AlignLeft | Qt::AlignVCenter, facts);
  PaintName(painter, QRect(edge, (height() - name) / 2, width, name));
}

}  // namespace Sonarello
