// One effect: a light, the block's name, the part it treats, the effect's name.
#pragma once

#include <QAbstractButton>

#include "app/panels/EffectRow.h"

namespace Sonarello {

class EffectCell : public QAbstractButton {
  Q_OBJECT
 public:
  explicit EffectCell(QWidget* parent);

  void SetView(const EffectView& view);
  [[nodiscard]] const EffectView& view() const { return view_; }
  /// What stands in the second line: the effect, "Off" or a dash.
  [[nodiscard]] QString SecondLine() const;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void PaintFirstLine(QPainter& painter, const QRectF& line) const;
  [[nodiscard]] double PaintBadge(QPainter& painter, const QRectF& line) const;

  EffectView view_;
};

}  // namespace Sonarello
