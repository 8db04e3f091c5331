// The banks of an instrument: radio buttons in a row, or a list to open where they do not fit.
#pragma once

#include <QString>
#include <QWidget>
#include <vector>

class QButtonGroup;
class QComboBox;

namespace Sonarello {

class BankChoice : public QWidget {
  Q_OBJECT

 public:
  explicit BankChoice(QWidget* parent = nullptr);

  struct TEntry {
    int Bank = 0;
    QString Name;
    QString Tip;
  };
  void Show(const std::vector<TEntry>& banks);
  /// Marks a bank; tells nobody.
  void Select(int bank);
  [[nodiscard]] int Bank() const { return chosen; }
  [[nodiscard]] bool ShowsButtons() const { return asButtons; }
  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;

 Q_SIGNALS:
  /// The user chose a bank.
  void bankChosen(int bank);

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void LayOut();
  void Choose(int bank);

  std::vector<TEntry> entries;
  QButtonGroup* buttons;
  QComboBox* combo;
  int chosen = -1;
  bool asButtons = true;
};

}  // namespace Sonarello
