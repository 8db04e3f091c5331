#include "app/instruments/SoundView.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>

namespace Sonarello {

SoundView::SoundView(QWidget* parent) : QTreeView(parent) {
  setRootIsDecorated(false);
  setItemsExpandable(false);
  setIndentation(0);
  setUniformRowHeights(true);
  setAlternatingRowColors(true);
  setAllColumnsShowFocus(true);
  setSelectionBehavior(SelectRows);
  setSelectionMode(SingleSelection);
  setEditTriggers(EditKeyPressed);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  header()->setSectionsMovable(false);
  header()->setSectionsClickable(false);
  header()->setStretchLastSection(false);
  header()->setHighlightSections(false);
}

void SoundView::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::RightButton) return event->accept();  // its menu changes no sound
  const QModelIndex before = currentIndex();
  QTreeView::mousePressEvent(event);
  const QModelIndex now = indexAt(event->pos());
  if (now.isValid() && event->button() == Qt::LeftButton && now.row() == before.row())
    Q_EMIT heardAgain(now);
}

void SoundView::keyPressEvent(QKeyEvent* event) {
  const bool command = (event->modifiers() & (Qt::ControlModifier | Qt::AltModifier)) != 0;
  const QString text = event->text();
  if (!command && !text.isEmpty() && text.at(0).isPrint()) {
    // A blank is no start of a search; it plays and stops.
    if (text.at(0).isSpace()) return event->ignore();
    Q_EMIT typed(text);
    return event->accept();
  }
  QTreeView::keyPressEvent(event);
}

}  // namespace Sonarello
