// The layout that the panels of tempo and transposition share: a caption over a figure and buttons.
#pragma once

#include <initializer_list>

#include "app/panels/Panel.h"

namespace Sonarello {

class PanelButton;

/// One button of a row: its width and the gap in front of it, at 100 %.
struct RowPlace {
  PanelButton* button;
  int width;
  double gap;
};

/// Distance of content from the left and right end of such a panel, in pixels of the scale.
[[nodiscard]] int FigurePanelEdge(const Panel& panel);

/// Places the buttons in one row at the bottom, behind a figure `figureWidth` wide at 100 %. Returns
/// the width of the panel that they need.
int ArrangeFigureRow(const Panel& panel, double figureWidth, std::initializer_list<RowPlace> row);

/// Draws caption and figure.
void PaintFigure(const Panel& panel, QPainter& painter, const QString& caption, const QString& figure,
                 bool lit);

}  // namespace Sonarello
