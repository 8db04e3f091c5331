// The table of sounds: each step of the selection lets one be heard, typing searches.
#pragma once

#include <QTreeView>

namespace Sonarello {

class SoundView : public QTreeView {
  Q_OBJECT

 public:
  explicit SoundView(QWidget* parent = nullptr);

  /// True while a name is being typed.
  [[nodiscard]] bool IsEditing() const { return state() == EditingState; }

 Q_SIGNALS:
  /// A click on the sound that is selected already.
  void heardAgain(const QModelIndex& index);
  /// A letter was typed that is no command.
  void typed(const QString& text);

 protected:
  void mousePressEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
};

}  // namespace Sonarello
