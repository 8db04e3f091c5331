// The window of the auto revoicer: its list, what it does to the song, and what it had to leave alone.
#pragma once

#include <QAbstractTableModel>
#include <QWidget>

#include "desk/RevoicerDesk.h"

class QLabel;
class QListView;
class QPushButton;
class QStringListModel;
class QTableView;

namespace Sonarello {

/// The replacements as the grid `ASG_Revoicer` shows them.
class RevoicerModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  enum Column { Pos, Source, SourceAddress, Dest, DestAddress, Columns };

  explicit RevoicerModel(const TRevoicerDesk& d, QObject* parent)
      : QAbstractTableModel(parent), desk(d) {}
  void Update();

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  const TRevoicerDesk& desk;
};

class TAutoRevoicerForm : public QWidget {
  Q_OBJECT

 public:
  /// Takes the desk's hook `ListChanged`. The desk outlives the window.
  explicit TAutoRevoicerForm(TRevoicerDesk& desk, QWidget* parent = nullptr);
  ~TAutoRevoicerForm() override;

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QTableView* Grid() const { return ASG_Revoicer; }

 public Q_SLOTS:
  /// Shows list, result and protocol anew, such as after another song was opened.
  void ShowAll();
  void Btn_RevoiceClick();
  void Btn_DeleteClick();

 Q_SIGNALS:
  void closed();

 protected:
  void showEvent(QShowEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void MakeGrid();
  void LayOut();
  void ShowResult();
  void ShowButtons();

  TRevoicerDesk& desk;
  RevoicerModel model;
  QTableView* ASG_Revoicer;
  QLabel* empty;
  QLabel* result;
  QListView* protocol;
  QStringListModel* lines;
  QPushButton* Btn_Revoice;
  QPushButton* Btn_Delete;
  QPushButton* Btn_Close;
};

}  // namespace Sonarello
