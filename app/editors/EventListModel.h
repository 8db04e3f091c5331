// The rows of the event list as a table; each is made when it is painted.
#pragma once

#include <QAbstractTableModel>

#include "editors/EventEdits.h"
#include "editors/EventRows.h"

namespace Sonarello {

/// Rows count from 0 here and from 1 in `TEventRows`.
class EventListModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  EventListModel(TEventRows& r, TEventEdits& e, QObject* parent)
      : QAbstractTableModel(parent), rows(r), edits(e) {}

  /// Other rows are shown: selection and editors go.
  void Reload();
  /// Rows came, went or changed by an edit: selection and place stay.
  void Sync();
  /// The row that the song stands on, from 1; 0 for none.
  void SetPlayRow(std::int32_t row);
  [[nodiscard]] std::int32_t PlayRow() const { return playRow; }
  /// True while the one row says that there are no events.
  [[nodiscard]] bool IsEmpty() const { return rows.Events() == 0; }

  /// The texts of a row, and what kind of event it tells.
  [[nodiscard]] const TEventData& Row(int row) const { return rows.Row(row + 1); }
  [[nodiscard]] TEventKind Kind(int row) const;

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role) override;

  /// True for the columns whose numbers stand at the right: track and channel.
  [[nodiscard]] static constexpr bool IsNumber(int column) {
    return column == TrackColumn || column == ChannelColumn;
  }

 Q_SIGNALS:
  /// The user typed or chose another text for a cell.
  void typed(const QModelIndex& index, const QString& text);

 private:
  [[nodiscard]] int Count() const;

  TEventRows& rows;
  TEventEdits& edits;
  int count = 0;
  std::int32_t playRow = 0;
};

}  // namespace Sonarello
