// The tempo and its offset.
#pragma once

#include "app/controls/Control.h"
#include "app/panels/Panel.h"

namespace Sonarello {

class PanelButton;

struct TempoView {
  bool song = false;
  double tempo = 120;  ///< beats per minute at the position, the offset included
  int offset = 0;      ///< what the user has added to every tempo of the song
};

class TempoPanel : public Panel {
  Q_OBJECT
 public:
  explicit TempoPanel(QWidget* parent = nullptr);

  void SetView(const TempoView& view);
  [[nodiscard]] const QString& figure() const { return figure_; }

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

 Q_SIGNALS:
  void Tempo_MinusClick();
  void Tempo_NullClick();
  void Tempo_PlusClick();

 protected:
  void Arrange() override;
  void Refresh() override;
  void paintEvent(QPaintEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;

 private:
  TempoView view_;
  QString figure_;
  PanelButton* Tempo_Minus;
  PanelButton* Tempo_Null;
  PanelButton* Tempo_Plus;
  WheelNotches wheel_;
};

}  // namespace Sonarello
