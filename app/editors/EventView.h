// The table of the event list, with its keys.
#pragma once

#include "app/editors/RowTable.h"
#include "editors/EventRows.h"

namespace Sonarello {

class EventView : public RowTable {
  Q_OBJECT

 public:
  explicit EventView(QWidget* parent = nullptr);

  /// The selected rows, from 1, ascending.
  [[nodiscard]] std::vector<std::int32_t> SelectedRows() const;
  [[nodiscard]] std::int32_t SelectedCount() const;
  /// True while the pointer draws a selection.
  [[nodiscard]] bool IsDragging() const { return state() == DragSelectingState; }
  /// Lengths of the scale in force.
  void LayOut();
  void keyboardSearch(const QString&) override {}  // letters are typed into cells only

 Q_SIGNALS:
  void editWanted();
  void insertWanted();
  void deleteWanted();
  void copyWanted();
  void undoWanted();
  /// The next or previous entry (1 or -1) of the track list, of the filter.
  void trackWanted(int step);
  void filterWanted(int step);

 protected:
  bool event(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  bool CommandPressed(const QKeyEvent& key);
  void ShareWidth();
};

}  // namespace Sonarello
