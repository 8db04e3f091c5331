// The settings window.
#pragma once

#include <QDialog>
#include <QLabel>
#include <QListView>
#include <QPushButton>
#include <QScrollArea>
#include <QStackedWidget>
#include <memory>
#include <vector>

#include "app/options/RoutesTable.h"
#include "core/Settings.h"
#include "desk/OptionsEdit.h"

namespace Sonarello {

/// Pages on the left, the options of one on the right. Nothing is stored before OK.
class TOptionsForm : public QDialog {
  Q_OBJECT

 public:
  /// What the user changes is written into `store`.
  explicit TOptionsForm(ISettings& store, QWidget* parent = nullptr);
  ~TOptionsForm() override;

  /// Shows the window with the values as they are now.
  void ShowOptions(TOptionsInput input);
  /// Takes the values without showing the window.
  void SetInput(TOptionsInput input);
  void ShowPage(TOptionPage page);
  [[nodiscard]] TOptionPage Page() const;
  [[nodiscard]] const OptionsEdit& Edit() const { return *edit; }
  /// The sentence at the bottom.
  [[nodiscard]] QString Hint() const { return hint->text(); }

 public Q_SLOTS:
  void Btn_OKClick();
  void Btn_CancelClick();

 Q_SIGNALS:
  /// The changes were stored. Not sent if nothing changed.
  void OptionsChanged(const Sonarello::TOptionChanges& changes);

 protected:
  void reject() override;
  void resizeEvent(QResizeEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void changeEvent(QEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void MakePages();
  QWidget* MakePage(TOptionPage page);
  void ConnectRoutes(RoutesTable& table);
  void SetOption(std::string_view key, const std::string& value);
  void Refresh();
  void WatchEditors();
  void ApplySizes();
  void Arrange();
  void ShowPageHint();

  ISettings* store;
  std::unique_ptr<OptionsEdit> edit;
  QListView* pageList;
  QStackedWidget* stack;
  QLabel* hint;
  QPushButton* Btn_Cancel;
  QPushButton* Btn_OK;
  std::vector<OptionGroupBox*> groups;
  RoutesBox* routes = nullptr;
  int scalePercent = 100;
};

}  // namespace Sonarello
