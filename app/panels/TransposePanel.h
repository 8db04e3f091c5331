// The transposition of the song and its intelligent folding.
#pragma once

#include <array>

#include "app/controls/Control.h"
#include "app/panels/Panel.h"

namespace Sonarello {

class PanelButton;

struct TransposeView {
  bool song = false;
  int transpose = 0;  ///< semitones
  bool intelligent = false;
  int mode = 1;  ///< of the intelligent folding, 1 to 4
};

class TransposePanel : public Panel {
  Q_OBJECT
 public:
  explicit TransposePanel(QWidget* parent = nullptr);

  void SetView(const TransposeView& view);

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

 Q_SIGNALS:
  void Transpose_MinusClick();
  void Transpose_NullClick();
  void Transpose_PlusClick();
  void IntelligentTransposeChange(bool on);
  /// A mode of 1 to 4 was chosen.
  void IT_ModeClick(int mode);

 protected:
  void Arrange() override;
  void Refresh() override;
  void paintEvent(QPaintEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  bool eventFilter(QObject* object, QEvent* event) override;

 private:
  static constexpr int Modes = 4;

  void RefreshModes(const QString& reason);
  [[nodiscard]] int IntelligentWidth() const;

  TransposeView view_;
  PanelButton* Transpose_Minus;
  PanelButton* Transpose_Null;
  PanelButton* Transpose_Plus;
  PanelButton* IntelligentTranspose;
  std::array<PanelButton*, Modes> IT_Mode{};
  WheelNotches wheel_;
};

}  // namespace Sonarello
