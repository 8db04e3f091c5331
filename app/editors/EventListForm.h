// The event list: one row for every event of a track, edited in place.
#pragma once

#include <QTimer>
#include <QWidget>
#include <optional>

#include "core/Ports.h"
#include "editors/EventEdits.h"
#include "editors/EventRows.h"

class QBoxLayout;
class QComboBox;
class QLabel;
class QMenu;
class QPushButton;

namespace Sonarello {

class EditorStatus;
class EventDelegate;
class EventListModel;
class EventSearch;
class EventView;

/// The window over `TEventRows` and `TEventEdits`, which outlive it. Nothing of the song is read while
/// it is hidden.
class TEventListForm : public QWidget {
  Q_OBJECT

 public:
  static constexpr int UsualWidth = 1240, UsualHeight = 800;
  static constexpr int LeastWidth = 860, LeastHeight = 360;

  TEventListForm(TEventRows& rows, TEventEdits& edits, IMessages& messages, QWidget* parent = nullptr);
  ~TEventListForm() override;

  /// Events, tracks or sounds are others: rows and lists are made anew. The call of all who changed
  /// events.
  void UpdateDisplayedEvents();
  /// Values of events have changed in place.
  void ShowValues();
  /// The song goes: no row may stay.
  void LeaveSong();
  /// Another song is there, or the old one stayed. `track`: entry of the track list.
  void ShowSong(const QString& file, int track);
  /// Shows an entry of the track list, and if `filter` is not negative, events of a kind alone.
  void ShowTrack(int track, int filter = -1);
  /// Selects the row of the song position.
  void SyncDisplayToMidiPosition();

  [[nodiscard]] EventView& Table() const { return *ASG_EventList; }
  [[nodiscard]] EventListModel& Model() const { return *model; }
  [[nodiscard]] EventDelegate& Delegate() const { return *delegate; }
  [[nodiscard]] EventSearch& Search() const { return *search; }
  [[nodiscard]] EditorStatus& Status() const { return *status; }
  /// The row's context menu, for tests as well; the caller deletes it.
  [[nodiscard]] QMenu* NewMenu();
  [[nodiscard]] QSize sizeHint() const override;

  QComboBox* CB_TrackList = nullptr;
  QLabel* L_MidiChannel = nullptr;
  QComboBox* CB_Filter = nullptr;
  QComboBox* CB_Insert = nullptr;
  QPushButton* Btn_Insert = nullptr;
  QPushButton* Btn_Delete = nullptr;

 public Q_SLOTS:
  void CB_TrackListChange(int index);
  void CB_FilterChange(int index);
  /// All that the song or the instrument's effect memory holds, until a track is chosen again.
  void ShowSysexs();
  void PM_InsertMidiEventClick();
  void PM_DeleteMidiEventClick();
  void PM_UndoClick();
  void PM_CopyClick();

 Q_SIGNALS:
  void closed();

 protected:
  void changeEvent(QEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void showEvent(QShowEvent* event) override;

 private:
  // --- Parts (EventListFormLayout.cpp)
  void MakeParts();
  void MakeRows();
  void ConnectParts();
  void ConnectTable();
  void ConnectSearch();
  void MakeShortcuts();
  void LayOut();
  void FillInsertList();

  void ShowLists();
  void ShowRows();
  void ShowStatus();
  void ShowButtons();
  void SelectRow(std::int32_t row, int column = -1);
  void EditCell(int row, int column);
  void EditEnded(bool discarded);
  void FinishEdit(const TEditResult& result, int column);
  void EditNext(std::int32_t row, int column, int step);
  void RecomputeChecksum();
  void PostMessage(const std::string& text);
  void EventListTimerTimer();
  void StepTrack(int step);
  void StepFilter(int step);
  void MarkPlayRow();
  [[nodiscard]] std::int32_t CurrentRow() const;
  [[nodiscard]] std::int32_t SongTime() const;
  [[nodiscard]] bool IsPlaying() const;

  TEventRows& rows;
  TEventEdits& edits;
  IMessages& messages;
  EventListModel* model;
  EventDelegate* delegate;
  EventView* ASG_EventList = nullptr;
  EventSearch* search = nullptr;
  EditorStatus* status = nullptr;
  QLabel* L_Show = nullptr;
  QLabel* L_Insert = nullptr;
  QBoxLayout* tools = nullptr;
  QTimer EventListTimer, MessageTimer;
  std::string MessageText;
  QString fileName;
  std::optional<TEditResult> result;  ///< of the edit whose editor is about to close
  int editedColumn = 0;
  std::int32_t shownTime = 0;  ///< song position of the mark, ms
  bool stale = true;           ///< the song changed while the window was hidden
  bool playing = false;
};

}  // namespace Sonarello
