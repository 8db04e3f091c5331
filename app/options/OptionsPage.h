// A page of the settings window: panels one below the other, scrolled where there are many.
#pragma once

#include <QScrollArea>
#include <vector>

#include "app/options/OptionGroupBox.h"

namespace Sonarello {

class OptionsPage : public QScrollArea {
  Q_OBJECT

 public:
  explicit OptionsPage(QWidget* parent = nullptr);
  void Add(OptionGroupBox* box);
  /// Lays the panels out anew, after one of them changed its height.
  void Arrange();

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  std::vector<OptionGroupBox*> boxes;
};

}  // namespace Sonarello
