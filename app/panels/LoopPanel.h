// The panel of the loop that slides out under the song slider: on and off, start, end.
#pragma once

#include <QTimer>
#include <array>

#include "app/controls/Control.h"
#include "app/panels/Panel.h"

class QLineEdit;

namespace Sonarello {

class PanelButton;

enum class LoopEnd { Start, End };

struct LoopView {
  bool song = false;
  bool looping = false;
  QString start = {};  ///< position texts, "9:01"
  QString end = {};
};

class LoopPanel : public Panel {
  Q_OBJECT
 public:
  explicit LoopPanel(QWidget* parent = nullptr);

  /// Interval of LoopPanelTimer in ms.
  static constexpr int SlideInterval = 10;

  /// Fields take the view's texts, but not the one that the user types in.
  void SetView(const LoopView& view);
  /// Puts the field back to the view's text and tells beside it why the typed text was refused.
  void Refuse(LoopEnd which, const QString& reason);
  /// Slides open or shut; at once for those who want no motion, and while the panel cannot be seen.
  void Slide(bool open);
  [[nodiscard]] bool open() const { return open_; }
  /// True while it slides.
  [[nodiscard]] bool sliding() const { return LoopPanelTimer->isActive(); }

  [[nodiscard]] QLineEdit* field(LoopEnd which) const { return ends_[Index(which)].field; }
  /// Height when open, in pixels of the scale.
  [[nodiscard]] int FullHeight() const;
  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;

 Q_SIGNALS:
  void loopClicked();
  /// The user typed a position; not sent for a text that did not change.
  void endTyped(LoopEnd which, const QString& position);
  /// Up, Down or the wheel: a number of bars to move by.
  void endStepped(LoopEnd which, int bars);
  /// This end is to be where the song stands.
  void setHereClicked(LoopEnd which);
  /// The user closed the panel, which slides shut.
  void closed();

 protected:
  void Arrange() override;
  void Refresh() override;
  void paintEvent(QPaintEvent* event) override;
  bool eventFilter(QObject* object, QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  struct End {
    QLineEdit* field = nullptr;
    PanelButton* here = nullptr;
    QRect caption = {};
    bool refused = false;
    WheelNotches wheel = {};
  };

  static std::size_t Index(LoopEnd which) { return static_cast<std::size_t>(which); }
  [[nodiscard]] const QString& TextOf(LoopEnd which) const;
  void MakeEnd(LoopEnd which);
  void Typed(LoopEnd which);
  void RefreshEnd(LoopEnd which, const QString& reason);
  void Close();
  void LoopPanelTimerTimer();
  void ShowHeight(int height);

  LoopView view_;
  PanelButton* Looping;
  PanelButton* close_;
  std::array<End, 2> ends_;
  QTimer* LoopPanelTimer;
  int shownHeight_ = 0;
  bool open_ = false;
};

}  // namespace Sonarello
