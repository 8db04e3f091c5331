// The dialog of one message.
#pragma once

#include <QDialog>
#include <QStringList>

#include "app/adapters/QtMessages.h"

class QFontMetricsF;

namespace Sonarello {

/// A text's lines as a dialog shows them: its own line breaks, and others where a line has more than
/// `most` characters or is wider than `width` px. Breaks at blanks if there are any.
[[nodiscard]] QStringList MessageLines(const QString& text, int most, double width,
                                       const QFontMetricsF& metrics);

/// Icon, text and one button or two. Return and Esc are the safe answer; Ctrl+C copies the text.
class QtMessageDialog : public QDialog {
 public:
  QtMessageDialog(const TMessage& message, QWidget* parent);

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  [[nodiscard]] QWidget* NewText(const TMessage& message);
  [[nodiscard]] QLayout* NewButtons(const TMessage& message);

  QString text;
};

}  // namespace Sonarello
