// A choice of one among few, in one frame.
#pragma once

#include <QAbstractButton>
#include <QButtonGroup>
#include <QStringList>
#include <QWidget>
#include <vector>

namespace Sonarello {

/// Its parts are buttons of which one is checked: Tab reaches the checked one, arrows choose.
class SegmentChoice : public QWidget {
  Q_OBJECT

 public:
  explicit SegmentChoice(const QStringList& texts, QWidget* parent = nullptr);

  [[nodiscard]] int Index() const;
  /// Chooses a part without a signal; one that does not exist chooses none.
  void SetIndex(int index);
  /// The name that the choice goes by for screen readers; each part adds its own.
  void SetName(const QString& name);
  [[nodiscard]] QAbstractButton* Part(int index) const {
    return parts[static_cast<std::size_t>(index)];
  }
  [[nodiscard]] QSize sizeHint() const override;

 Q_SIGNALS:
  void Chosen(int index);

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void Arrange();

  QButtonGroup group;
  std::vector<QAbstractButton*> parts;
};

}  // namespace Sonarello
