#include "app/editors/EventDelegate.h"

#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>
#include <QTimer>

#include "app/controls/Icons.h"
#include "app/controls/Painting.h"
#include "app/controls/QtText.h"
#include "app/editors/EventListModel.h"

namespace Sonarello {

namespace {

constexpr double Side = 10;  ///< between a cell's edge and its text
constexpr double ChipSize = 10;
constexpr double ChipGap = 8;
constexpr double MarkWidth = 7, MarkGap = 3;  ///< of the sign in front of the played position

QColor ChipColour(TEventKind kind) {
  return kind == TEventKind::Unknown ? th().dis : th().kindColour(static_cast<EventKind>(kind));
}

/// Secondary texts step back, as those of the desk do.
QColor InkOf(int column, bool selected, bool empty) {
  if (empty) return th().tx3;
  if (selected) return th().tx1;
  return column == TrackColumn ? th().tx3 : column == TimeColumn ? th().tx2 : th().tx1;
}

void PaintPlayMark(QPainter& painter, const QRectF& area) {
  const Metrics& m = metrics();
  const double half = m.f(3.5);
  QPainterPath mark(QPointF(area.left(), area.center().y() - half));
  mark.lineTo(area.left() + m.f(MarkWidth - 1), area.center().y());
  mark.lineTo(area.left(), area.center().y() + half);
  mark.closeSubpath();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.fillPath(mark, th().play);
}

/// A text without line breaks.
QString OneLine(const std::string& field) {
  QString text = ToQt(field);
  for (QChar& letter : text)
    if (letter.category() == QChar::Other_Control) letter = QLatin1Char(' ');
  return text;
}

/// Draws one line of text, elided at its end. Some hundred are drawn with each step of a list that
/// scrolls: a text that fits by far is not measured, and none is laid out in a rectangle.
void PaintLine(QPainter& painter, const QRect& area, QString text, bool right) {
  const QFontMetrics sizes = painter.fontMetrics();
  if (text.size() * sizes.maxWidth() > area.width() || right) {
    int width = sizes.horizontalAdvance(text);
    if (width > area.width()) {
      text = sizes.elidedText(text, Qt::ElideRight, area.width());
      width = area.width();
    }
    if (right) {
      painter.drawText(area.right() + 1 - width,
                       area.top() + (area.height() + sizes.ascent() - sizes.descent()) / 2, text);
      return;
    }
  }
  painter.drawText(area.left(), area.top() + (area.height() + sizes.ascent() - sizes.descent()) / 2,
                   text);
}

void SelectOnOpen(QLineEdit& field, const QString& text) {
  field.setText(text);
  field.selectAll();
}

}  // namespace

void PaintKindChip(QPainter& painter, const QPointF& middle, TEventKind kind) {
  const double size = metrics().px(ChipSize);
  const QRectF chip(std::round(middle.x() - size / 2), std::round(middle.y() - size / 2), size, size);
  PaintBox(painter, chip, metrics().f(2), ChipColour(kind), QColor());
}

QIcon KindIcon(TEventKind kind) {
  const int size = metrics().px(ChipSize);
  constexpr int sharp = 2;  // for screens of two pixels to the point
  QPixmap picture(size * sharp, size * sharp);
  picture.setDevicePixelRatio(sharp);
  picture.fill(Qt::transparent);
  QPainter painter(&picture);
  PaintKindChip(painter, QPointF(size / 2.0, size / 2.0), kind);
  return QIcon(picture);
}

// --- Painting

void EventDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const {
  const Theme& t = th();
  const int hair = metrics().hair();
  const PainterState state(*painter);
  const QRect& cell = option.rect;
  const bool selected = (option.state & QStyle::State_Selected) != 0 && !model.IsEmpty();
  const bool played = model.PlayRow() == index.row() + 1;
  painter->fillRect(cell, selected ? t.sel : index.row() % 2 != 0 ? t.rowalt : t.row);
  if (!selected && index.column() < Value2Column)
    painter->fillRect(QRect(cell.right() + 1 - hair, cell.top(), hair, cell.height()), t.line);
  if (played) {
    painter->fillRect(QRect(cell.left(), cell.top(), cell.width(), hair), t.play);
    painter->fillRect(QRect(cell.left(), cell.bottom() + 1 - hair, cell.width(), hair), t.play);
  }
  PaintCell(*painter, option, index);
  if ((option.state & QStyle::State_HasFocus) != 0)
    PaintBox(*painter, cell, 0, Qt::NoBrush, t.acc, hair);
}

void EventDelegate::PaintCell(QPainter& painter, const QStyleOptionViewItem& option,
                              const QModelIndex& index) const {
  const Metrics& m = metrics();
  const int column = index.column();
  const bool selected = (option.state & QStyle::State_Selected) != 0 && !model.IsEmpty();
  const std::string& field = model.Row(index.row()).Fields[static_cast<std::size_t>(column)];
  QRect area = option.rect.adjusted(m.px(Side), 0, -m.px(Side), 0);
  const TEventKind kind = model.Kind(index.row());
  if (column == KindColumn && !model.IsEmpty()) {
    PaintKindChip(painter, QPointF(area.left() + m.px(ChipSize) / 2.0, area.center().y() + 0.5), kind);
    area.setLeft(area.left() + m.px(ChipSize) + m.px(ChipGap));
  }
  if (column == PositionColumn && model.PlayRow() == index.row() + 1) {
    PaintPlayMark(painter, area);
    area.setLeft(area.left() + m.px(MarkWidth) + m.px(MarkGap));
  }
  if (field.empty()) return;
  const bool bytes = column == Value2Column && kind == TEventKind::Sysex;
  const QFont& font = m.font(bytes ? Role::Mono : Role::Body);
  painter.setFont(font);
  painter.setPen(bytes && !selected ? th().tx2 : InkOf(column, selected, model.IsEmpty()));
  PaintLine(painter, area, OneLine(field), EventListModel::IsNumber(column));
}

// --- Editing

QWidget* EventDelegate::NewField(QWidget* parent, const TCellEditing& cell, bool bytes) const {
  auto* field = new QLineEdit(parent);
  if (bytes) field->setFont(metrics().font(Role::Mono));
  field->setTextMargins(-metrics().px(2), 0, 0, 0);  // the text stands where the cell's stood
  SelectOnOpen(*field, ToQt(cell.Text));
  return field;
}

QWidget* EventDelegate::NewList(QWidget* parent, const TCellEditing& cell) const {
  auto* list = new QComboBox(parent);
  for (const std::string& item : cell.Items) list->addItem(ToQt(item));
  list->setMaxVisibleItems(16);
  list->setCurrentIndex(list->findText(ToQt(cell.Text)));
  if (cell.Editor == TCellEditor::ListWithText) {
    list->setEditable(true);
    list->setInsertPolicy(QComboBox::NoInsert);
    SelectOnOpen(*list->lineEdit(), ToQt(cell.Text));
  }
  // A chosen item is the answer: nothing more is to be confirmed.
  connect(list, &QComboBox::activated, this, [this, list] {
    auto* self = const_cast<EventDelegate*>(this);
    Q_EMIT self->commitData(list);
    Q_EMIT self->closeEditor(list, NoHint);
  });
  if (!list->isEditable()) QTimer::singleShot(0, list, &QComboBox::showPopup);
  return list;
}

QWidget* EventDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem&,
                                     const QModelIndex& index) const {
  const TCellEditing cell = edits.GetCellEditorType(index.column(), index.row() + 1);
  if (cell.Editor == TCellEditor::None) return nullptr;
  const bool bytes = index.column() == Value2Column && model.Kind(index.row()) == TEventKind::Sysex;
  editor = cell.Editor == TCellEditor::Text ? NewField(parent, cell, bytes) : NewList(parent, cell);
  editor->setAccessibleName(
      model.headerData(index.column(), Qt::Horizontal, Qt::DisplayRole).toString());
  Q_EMIT const_cast<EventDelegate*>(this)->began();
  return editor;
}

void EventDelegate::setModelData(QWidget* of, QAbstractItemModel* to, const QModelIndex& index) const {
  if (const auto* field = qobject_cast<QLineEdit*>(of)) to->setData(index, field->text(), Qt::EditRole);
  if (const auto* list = qobject_cast<QComboBox*>(of))
    to->setData(index, list->currentText(), Qt::EditRole);
}

void EventDelegate::updateEditorGeometry(QWidget* of, const QStyleOptionViewItem& option,
                                         const QModelIndex&) const {
  const Metrics& m = metrics();
  of->setGeometry(option.rect.adjusted(m.px(2), m.px(1), -m.px(2), -m.px(1)));
}

void EventDelegate::Cancel() {
  if (!editor.isNull()) Q_EMIT closeEditor(editor, RevertModelCache);
}

int EventDelegate::TakeStep() {
  editor = nullptr;
  return std::exchange(step, 0);
}

bool EventDelegate::eventFilter(QObject* watched, QEvent* event) {
  auto* of = qobject_cast<QWidget*>(watched);
  if (of != nullptr && of == editor && event->type() == QEvent::KeyPress) {
    const int key = static_cast<QKeyEvent*>(event)->key();
    // The edited row may move: which cell comes next is known behind the edit.
    if (key == Qt::Key_Tab || key == Qt::Key_Backtab) {
      step = key == Qt::Key_Tab ? 1 : -1;
      Q_EMIT commitData(of);
      Q_EMIT closeEditor(of, NoHint);
      return true;
    }
  }
  return QStyledItemDelegate::eventFilter(watched, event);
}

}  // namespace Sonarello
