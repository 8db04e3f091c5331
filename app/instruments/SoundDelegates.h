// How rows of sounds, categories and hits are painted.
#pragma once

#include <QStyledItemDelegate>

namespace Sonarello {

/// A sound: its name, and the bracketed end of the name as a badge; also the figures beside it.
class SoundDelegate : public QStyledItemDelegate {
  Q_OBJECT

 public:
  using QStyledItemDelegate::QStyledItemDelegate;
  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override;
  void setEditorData(QWidget* editor, const QModelIndex& index) const override;
};

/// A name left, a quiet text right.
class CategoryDelegate : public QStyledItemDelegate {
  Q_OBJECT

 public:
  using QStyledItemDelegate::QStyledItemDelegate;
  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override;
};

/// A hit: the name with what was searched for in the accent, and where the sound stands.
class HitDelegate : public QStyledItemDelegate {
  Q_OBJECT

 public:
  /// Length of the searched text, in characters.
  int Length = 0;

  using QStyledItemDelegate::QStyledItemDelegate;
  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override;
};

}  // namespace Sonarello
