// What the desk shows without a song: a card that asks for one.
#pragma once

#include "app/panels/Panel.h"

namespace Sonarello {

class PanelButton;

class DropCard : public Panel {
  Q_OBJECT
 public:
  explicit DropCard(QWidget* parent = nullptr);

  /// The main instrument, by which the song will be fitted.
  void SetInstrument(const QString& instrument);
  /// Whether there are songs to open again.
  void SetRecent(bool any);
  /// A file hangs over the window: the card lights up.
  void SetDragging(bool dragging);
  [[nodiscard]] bool dragging() const { return dragging_; }
  /// Gives the focus to the button that opens a file.
  void FocusOpen();

  /// The card itself; around it lies its shadow.
  [[nodiscard]] QRect CardRect() const;

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

 Q_SIGNALS:
  void openClicked();
  /// The menu of recent files, at a point of the screen below the button.
  void recentWanted(const QPoint& at);

 protected:
  void Arrange() override;
  void Refresh() override;
  void paintEvent(QPaintEvent* event) override;

 private:
  void PaintShadow(QPainter& painter) const;
  void PaintTarget(QPainter& painter, const QRect& line) const;

  PanelButton* open_;
  PanelButton* recent_;
  QString instrument_;
  bool anyRecent_ = false;
  bool dragging_ = false;
};

}  // namespace Sonarello
