// A value in a well; a double click types another.
#pragma once

#include <QPointer>

#include "app/controls/Control.h"

class QLineEdit;

namespace Sonarello {

class ValueBox : public Control {
  Q_OBJECT

 public:
  explicit ValueBox(QWidget* parent = nullptr);

  /// Shows a number.
  void setValue(int value);
  /// Shows a text instead, such as a dash while there is no value.
  void setText(const QString& text);
  [[nodiscard]] QString text() const { return shownText; }
  void setRange(int least, int most);
  /// Draws it as a strip without notes is drawn.
  void setFaint(bool faint);
  /// Whether a double click types.
  void setTypes(bool types) { canType = types; }

  /// Opens the field for typing, with a first character if the user has typed one already.
  void beginTyping(const QString& first = {});
  [[nodiscard]] bool typing() const;

  [[nodiscard]] Spoken spoken() const override;
  void setSpokenValue(int value) override;
  [[nodiscard]] QSize sizeHint() const override;

 Q_SIGNALS:
  /// A number that the user typed, kept in the range. Enter takes it, Esc and nothing typed do not.
  void typed(int value);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;
  void layOut() override;

 private:
  void endTyping(bool take);

  QString shownText;
  int lowest = 0, highest = 127;
  bool faint = false, canType = true;
  QPointer<QLineEdit> field;
};

}  // namespace Sonarello
