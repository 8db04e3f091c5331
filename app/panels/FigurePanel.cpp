#include "app/panels/FigurePanel.h"

#include <QPainter>

#include "app/controls/Metrics.h"
#include "app/controls/Theme.h"
#include "app/panels/PanelButton.h"

namespace Sonarello {

namespace {

constexpr int ButtonHeight = 26;
/// The figure stands a little above the middle of its buttons, so that it looks level with them.
constexpr double FigureUp = 2;

int BottomEdge(const Panel& panel) { return metrics().px(panel.compact() ? 4 : 6) + metrics().hair(); }

QRect ButtonRow(const Panel& panel) {
  const int height = metrics().px(ButtonHeight);
  const int edge = FigurePanelEdge(panel);
  return {edge, panel.height() - BottomEdge(panel) - height, panel.width() - 2 * edge, height};
}

}  // namespace

int FigurePanelEdge(const Panel& panel) {
  return metrics().px(panel.compact() ? 9 : 12) + metrics().hair();
}

int ArrangeFigureRow(const Panel& panel, double figureWidth, std::initializer_list<RowPlace> row) {
  const QRect place = ButtonRow(panel);
  int x = place.left() + metrics().px(figureWidth);
  for (const RowPlace& cell : row) {
    x += metrics().px(cell.gap);
    cell.button->setGeometry(x, place.top(), cell.width, place.height());
    x += cell.width;
  }
  return x + FigurePanelEdge(panel);
}

void PaintFigure(const Panel& panel, QPainter& painter, const QString& caption, const QString& figure,
                 bool lit) {
  const QRect row = ButtonRow(panel);
  painter.setFont(metrics().font(Role::Caption));
  painter.setPen(th().tx3);
  const QRect head(row.left(), BottomEdge(panel) - metrics().px(1), row.width(),
                   metrics().lineHeight(Role::Caption));
  painter.drawText(head, Qt::AlignLeft | Qt::AlignVCenter, caption);
  painter.setFont(metrics().font(Role::Figure));
  painter.setPen(lit ? th().tx1 : th().dis);
  drawFigures(painter, row.translated(0, -metrics().px(FigureUp)), figure,
              Qt::AlignLeft | Qt::AlignVCenter);
}

}  // namespace Sonarello
