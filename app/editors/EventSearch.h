// The search in the event list: a text in any column, next and previous.
#pragma once

#include <QTimer>
#include <QWidget>
#include <optional>

#include "editors/EventRows.h"

class QBoxLayout;
class QLabel;
class QLineEdit;
class QToolButton;

namespace Sonarello {

/// The row with the search field. A long list is searched piece by piece, so that the window lives on.
class EventSearch : public QWidget {
  Q_OBJECT

 public:
  explicit EventSearch(const TEventRows& rows, QWidget* parent = nullptr);

  /// Shows the field, its text selected.
  void Open();
  void Close();
  /// Goes to the next hit (1) or the previous one (-1), from the row that `CurrentRow` tells.
  /// `inclusive`: that row may be the hit.
  void Go(int step, bool inclusive = false);
  /// Ends a search that is under way; the rows are others.
  void Stop();
  [[nodiscard]] bool IsSearching() const { return search.has_value(); }
  [[nodiscard]] QLineEdit& Field() const { return *field; }
  [[nodiscard]] QString Note() const;

  std::function<std::int32_t()> CurrentRow;

 Q_SIGNALS:
  void found(std::int32_t row);
  /// How far a long search has come, 0 to 1.
  void searching(double done);
  void ended();
  /// The field was closed by the user.
  void closed();

 protected:
  void changeEvent(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  struct TSearch {
    std::string Wanted;
    std::int32_t From = 0;
    bool Backwards = false;
    std::int32_t Tested = 0;  ///< rows without the text so far
  };
  void LayOut();
  void SearchPiece();
  void End(std::int32_t row);

  const TEventRows& rows;
  QBoxLayout* line;
  QLineEdit* field;
  QToolButton* previous;
  QToolButton* next;
  QToolButton* cross;
  QLabel* note;
  QTimer pieces;
  std::optional<TSearch> search;
};

}  // namespace Sonarello
