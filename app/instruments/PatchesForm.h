// The window with the sounds of all sixteen channels.
#pragma once

#include <QAbstractListModel>
#include <QStyledItemDelegate>
#include <QWidget>

#include "desk/PatchOverview.h"

class QLabel;
class QListView;

namespace Sonarello {

/// The sixteen channels; each row is asked for when it is painted.
class PatchModel : public QAbstractListModel {
  Q_OBJECT

 public:
  explicit PatchModel(const TPatchOverview& o, QObject* parent)
      : QAbstractListModel(parent), overview(o) {}

  /// A row has changed; -1: all of them.
  void Update(int channel);
  [[nodiscard]] TPatchRow Row(int channel) const { return overview.Row(channel); }

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;

 private:
  const TPatchOverview& overview;
};

/// Paints a channel: badge with its number, sound, marks of its state, part.
class PatchDelegate : public QStyledItemDelegate {
  Q_OBJECT

 public:
  using QStyledItemDelegate::QStyledItemDelegate;
  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override;
  [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option,
                               const QModelIndex& index) const override;
};

class TPatchesForm : public QWidget {
  Q_OBJECT

 public:
  explicit TPatchesForm(TPatchOverview& overview, QWidget* parent = nullptr);

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QListView* List() const { return list; }

 public Q_SLOTS:
  /// A channel's sound or state has changed.
  void ShowChannel(int channel);
  /// Another song, or another channel is selected.
  void ShowAll();
  /// The menu of a channel.
  void PopupMenu(int channel, const QPoint& at);

 Q_SIGNALS:
  void closed();

 protected:
  void closeEvent(QCloseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void LayOut();

  TPatchOverview& overview;
  PatchModel model;
  QListView* list;
  QLabel* hint;
};

}  // namespace Sonarello
