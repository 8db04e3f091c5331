// A line across the desk about a condition that lasts; it goes when the condition goes.
#pragma once

#include "app/panels/Panel.h"

namespace Sonarello {

enum class Severity { Warning, Error };

class Banner : public Panel {
  Q_OBJECT
 public:
  explicit Banner(QWidget* parent = nullptr);

  /// Shows a condition; line breaks of the text become blanks. An empty text hides the banner. A text
  /// that does not fit into a line takes more of them.
  void SetMessage(Severity severity, const QString& text);
  [[nodiscard]] const QString& text() const { return text_; }
  [[nodiscard]] Severity severity() const { return severity_; }

  [[nodiscard]] int heightForWidth(int width) const override;
  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;

 protected:
  void Arrange() override;
  void paintEvent(QPaintEvent* event) override;

 private:
  [[nodiscard]] QRect TextRect(const QSize& size) const;

  Severity severity_ = Severity::Warning;
  QString text_;
};

}  // namespace Sonarello
