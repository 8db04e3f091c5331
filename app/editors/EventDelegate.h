// How the cells of the event list are painted and edited.
#pragma once

#include <QPointer>
#include <QStyledItemDelegate>

#include "editors/EventEdits.h"

namespace Sonarello {

class EventListModel;

/// The square in the colour of a kind that stands in front of its name.
void PaintKindChip(QPainter& painter, const QPointF& middle, TEventKind kind);
/// The same as an icon for lists.
[[nodiscard]] QIcon KindIcon(TEventKind kind);

class EventDelegate : public QStyledItemDelegate {
  Q_OBJECT

 public:
  EventDelegate(const EventListModel& m, TEventEdits& e, QObject* parent)
      : QStyledItemDelegate(parent), model(m), edits(e) {}

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override;
  QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                        const QModelIndex& index) const override;
  /// The editor has its text from the start; what is typed stays while rows around it change.
  void setEditorData(QWidget*, const QModelIndex&) const override {}
  void setModelData(QWidget* editor, QAbstractItemModel* model,
                    const QModelIndex& index) const override;
  void updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                            const QModelIndex& index) const override;

  /// The editor of the cell that is edited, or nil.
  [[nodiscard]] QWidget* Editor() const { return editor; }
  /// Gives the edit up.
  void Cancel();
  /// `closeEditor` has come. 1 or -1 if the next or the previous cell is to be edited, else 0.
  int TakeStep();

 Q_SIGNALS:
  void began();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  [[nodiscard]] QWidget* NewField(QWidget* parent, const TCellEditing& cell, bool bytes) const;
  [[nodiscard]] QWidget* NewList(QWidget* parent, const TCellEditing& cell) const;
  void PaintCell(QPainter& painter, const QStyleOptionViewItem& option, const QModelIndex& index) const;

  const EventListModel& model;
  TEventEdits& edits;
  mutable QPointer<QWidget> editor;
  int step = 0;
};

}  // namespace Sonarello
