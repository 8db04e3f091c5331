#include "app/editors/EventListForm.h"

#include <QClipboard>
#include <QCloseEvent>
#include <QComboBox>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QScrollBar>

#include "app/controls/QtText.h"
#include "app/controls/Theme.h"
#include "app/editors/EditorStatus.h"
#include "app/editors/EventDelegate.h"
#include "app/editors/EventListModel.h"
#include "app/editors/EventSearch.h"
#include "app/editors/EventView.h"

namespace Sonarello {

namespace {

/// 1284 as "1.284" or "1,284".
QString Grouped(std::int32_t number) {
  QString text = QString::number(number);
  for (qsizetype at = text.size() - 3; at > 0; at -= 3) text.insert(at, QText(".", ","));
  return text;
}

QString PlayingText() { return QText("Nicht während der Wiedergabe", "Not while the song plays"); }

}  // namespace

// --- What is shown

void TEventListForm::UpdateDisplayedEvents() {
  delegate->Cancel();
  search->Stop();
  if (!isVisible()) {
    // Its pointers may lead nowhere by now.
    rows.Index.Clear();
    stale = true;
    return;
  }
  stale = false;
  rows.UpdateDisplayedEvents();
  ShowLists();
  const int first = ASG_EventList->verticalScrollBar()->value();
  model->Sync();
  ASG_EventList->verticalScrollBar()->setValue(first);
  SelectRow(rows.EventListPosition);
  MarkPlayRow();
  ShowStatus();
}

void TEventListForm::ShowValues() {
  if (!isVisible()) return;
  rows.ForgetTexts();
  ASG_EventList->viewport()->update();
}

void TEventListForm::LeaveSong() {
  delegate->Cancel();
  search->Stop();
  MessageTimer.stop();
  rows.Clear();
  model->Reload();
  stale = true;
}

void TEventListForm::ShowSong(const QString& file, int track) {
  fileName = file;
  const QString title = QText("Event-Liste", "Event list");
  setWindowTitle(file.isEmpty() ? title : title + QStringLiteral(" – ") + file);
  if (rows.TrackIndex() < 0) rows.CB_TrackListChange(track);
  stale = true;
  if (!isVisible()) return rows.Index.Clear();
  UpdateDisplayedEvents();
  SyncDisplayToMidiPosition();
}

void TEventListForm::ShowTrack(int track, int filter) {
  if (stale) UpdateDisplayedEvents();
  CB_TrackListChange(track);
  if (filter >= 0) CB_FilterChange(filter);
}

void TEventListForm::CB_TrackListChange(int index) {
  delegate->Cancel();
  rows.CB_TrackListChange(index);
  ShowRows();
}

void TEventListForm::ShowSysexs() {
  delegate->Cancel();
  rows.ShowSysexs();
  ShowRows();
}

void TEventListForm::CB_FilterChange(int index) {
  delegate->Cancel();
  rows.CB_FilterChange(index);
  ShowRows();
}

void TEventListForm::ShowRows() {
  search->Stop();
  ShowLists();
  model->Reload();
  SelectRow(rows.EventListPosition);
  MarkPlayRow();
  ShowStatus();
}

void TEventListForm::ShowLists() {
  const auto fill = [](QComboBox* list, const std::vector<std::string>& lines, int index) {
    const QSignalBlocker quiet(list);
    QStringList texts;
    for (const std::string& line : lines) texts += ToQt(line);
    list->clear();
    list->addItems(texts);
    list->setCurrentIndex(index);
  };
  fill(CB_TrackList, rows.TrackLines(), rows.TrackIndex());
  fill(CB_Filter, FilterLines(), rows.FilterIndex());
  FillInsertList();
  L_MidiChannel->setText(ToQt(rows.ChannelLabel()));
  L_Show->setText(ToQt(FilterLabel(rows.FilterIndex())));
  ShowButtons();
}

void TEventListForm::ShowButtons() {
  playing = IsPlaying();
  const bool shown = rows.Showing;
  const QString why = playing ? PlayingText() : QString();
  Btn_Insert->setEnabled(shown && edits.MayInsert());
  Btn_Delete->setEnabled(shown && !model->IsEmpty() && !playing);
  Btn_Insert->setToolTip(why);
  Btn_Delete->setToolTip(why);
}

void TEventListForm::ShowStatus() {
  const std::int32_t count = rows.Events();
  QStringList parts;
  parts += count == 1 ? QText("1 Event", "1 event") : Grouped(count) + QText(" Events", " events");
  const std::int32_t selected = ASG_EventList->SelectedCount();
  if (count > 0 && CurrentRow() > 0) {
    QString place = QText("Zeile ", "Row ") + Grouped(CurrentRow());
    if (selected > 1)
      place += QStringLiteral(" · ") + Grouped(selected) + QText(" markiert", " selected");
    parts += place;
  }
  if (delegate->Editor() != nullptr)
    parts += QText("Enter bestätigt, Esc verwirft", "Enter applies, Esc discards");
  status->SetParts(parts);
}

// --- Selection and song position

std::int32_t TEventListForm::CurrentRow() const { return ASG_EventList->currentIndex().row() + 1; }

bool TEventListForm::IsPlaying() const { return edits.Hooks.IsPlaying && edits.Hooks.IsPlaying(); }

void TEventListForm::SelectRow(std::int32_t row, int column) {
  if (model->rowCount() == 0) return;
  const int last = model->rowCount();
  const int place = std::clamp(static_cast<int>(row), 1, last) - 1;
  const int current =
      ASG_EventList->currentIndex().isValid() ? ASG_EventList->currentIndex().column() : PositionColumn;
  const QModelIndex index = model->index(place, column >= 0 ? column : current);
  rows.EventListPosition = place + 1;
  ASG_EventList->selectionModel()->setCurrentIndex(
      index, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
  const int visible = ASG_EventList->VisibleRows();
  QScrollBar* bar = ASG_EventList->verticalScrollBar();
  if (place < bar->value() || place >= bar->value() + visible)
    bar->setValue(rows.DisplayEventListPosition(visible) - 1);
}

void TEventListForm::SyncDisplayToMidiPosition() {
  rows.SyncDisplayToMidiPosition();
  SelectRow(rows.EventListPosition);
  ASG_EventList->verticalScrollBar()->setValue(
      rows.DisplayEventListPosition(ASG_EventList->VisibleRows()) - 1);
}

std::int32_t TEventListForm::SongTime() const {
  return rows.Hooks.TimePosition ? rows.Hooks.TimePosition() : 0;
}

/// At the song's start no row is marked: nothing is played there.
void TEventListForm::MarkPlayRow() {
  shownTime = SongTime();
  model->SetPlayRow(shownTime > 0 ? rows.Index.RowAtTime(shownTime) : 0);
}

void TEventListForm::EventListTimerTimer() {
  // While a song is read or replaced nothing of it may be looked at.
  if (!rows.Showing || !updatesEnabled()) return;
  if (!rows.Index.IsCurrent()) return UpdateDisplayedEvents();
  if (IsPlaying() != playing) ShowButtons();
  if (SongTime() == shownTime) return rows.Index.SettleListPos();
  const std::int32_t before = model->PlayRow();
  MarkPlayRow();
  if (shownTime > 0 && model->PlayRow() == before) return;
  // A selection that the user made stays, and so does a row that is edited.
  if (delegate->Editor() != nullptr || ASG_EventList->IsDragging()) return;
  if (ASG_EventList->SelectedCount() > 1) return;
  SyncDisplayToMidiPosition();
}

// --- Edits

void TEventListForm::EditCell(int row, int column) {
  const QModelIndex index = model->index(row, column);
  if ((model->flags(index) & Qt::ItemIsEditable) == 0) return;
  ASG_EventList->selectionModel()->setCurrentIndex(index, QItemSelectionModel::NoUpdate);
  ASG_EventList->edit(index);
}

void TEventListForm::EditEnded(bool discarded) {
  const int step = delegate->TakeStep();
  if (discarded) {
    result.reset();
    edits.CellEditCancelled();
    return ShowStatus();
  }
  if (!result) return ShowStatus();
  const TEditResult ended = *result;
  result.reset();
  FinishEdit(ended, editedColumn);
  if (step != 0) EditNext(ended.Row > 0 ? ended.Row : CurrentRow(), editedColumn, step);
}

void TEventListForm::FinishEdit(const TEditResult& ended, int column) {
  if (ended.Applied) {
    search->Stop();
    model->Sync();
    if (ended.Row > 0) SelectRow(ended.Row, column);
    ShowLists();
    MarkPlayRow();
  }
  ShowStatus();
  status->ShowMessage(ToQt(ended.Status));
}

void TEventListForm::EditNext(std::int32_t row, int column, int step) {
  for (int next = column + step; next >= 0 && next < EventColumnCount; next += step)
    if ((model->flags(model->index(row - 1, next)) & Qt::ItemIsEditable) != 0)
      return EditCell(row - 1, next);
}

void TEventListForm::PM_InsertMidiEventClick() {
  delegate->Cancel();
  if (rows.Showing && IsPlaying()) return status->ShowMessage(PlayingText());
  if (!rows.Showing || !edits.MayInsert()) return;
  const std::int32_t row = edits.PM_InsertMidiEventClick(std::max(CurrentRow(), 1));
  if (row == 0) return ShowStatus();
  FinishEdit({.Applied = true, .Text = {}, .Row = row, .Status = {}}, -1);
  ASG_EventList->setFocus(Qt::OtherFocusReason);
}

void TEventListForm::PM_DeleteMidiEventClick() {
  delegate->Cancel();
  if (!rows.Showing || model->IsEmpty()) return;
  const std::vector<std::int32_t> selected = ASG_EventList->SelectedRows();
  if (selected.empty()) return;
  const std::int32_t gone = edits.PM_DeleteMidiEventClick(selected);
  if (gone == 0) return;
  const QString text = gone == 1 ? QText("1 Event gelöscht", "1 event deleted")
                                 : Grouped(gone) + QText(" Events gelöscht", " events deleted");
  FinishEdit({.Applied = true, .Text = {}, .Row = selected.front(), .Status = ToStd(text)}, -1);
}

void TEventListForm::PM_UndoClick() {
  delegate->Cancel();
  if (!rows.Showing || !edits.CanUndo()) return;
  const std::int32_t row = edits.PM_UndoClick();
  FinishEdit({.Applied = true, .Text = {}, .Row = std::max(row, 0), .Status = {}}, -1);
}

void TEventListForm::PM_CopyClick() {
  if (model->IsEmpty()) return;
  QGuiApplication::clipboard()->setText(ToQt(rows.TextOfRows(ASG_EventList->SelectedRows())));
}

void TEventListForm::RecomputeChecksum() {
  if (edits.HasRolandChecksum(CurrentRow())) FinishEdit(edits.RecomputeChecksum(CurrentRow()), -1);
}

void TEventListForm::PostMessage(const std::string& text) {
  MessageText = MessageText.empty() || !MessageTimer.isActive() ? text : MessageText + "\r\r" + text;
  MessageTimer.start();
}

QMenu* TEventListForm::NewMenu() {
  auto* menu = new QMenu(this);
  const auto add = [&](const char* name, const QString& text, const QString& key, bool able,
                       const std::function<void()>& click) {
    QAction* action = menu->addAction(key.isEmpty() ? text : text + QLatin1Char('\t') + key);
    action->setObjectName(QLatin1String(name));
    action->setEnabled(able);
    connect(action, &QAction::triggered, this, click);
  };
  const bool some = rows.Showing && !model->IsEmpty();
  add("PM_InsertMidiEvent", QText("Einfügen", "Insert"), QText("Einfg", "Ins"), Btn_Insert->isEnabled(),
      [this] { PM_InsertMidiEventClick(); });
  add("PM_DeleteMidiEvent", QText("Löschen", "Delete"), QText("Entf", "Del"), some && !playing,
      [this] { PM_DeleteMidiEventClick(); });
  menu->addSeparator();
  const QModelIndex current = ASG_EventList->currentIndex();
  const bool editable = current.isValid() && (model->flags(current) & Qt::ItemIsEditable) != 0;
  add("PM_Edit", QText("Zelle bearbeiten", "Edit cell"), QStringLiteral("F2"), editable,
      [this, current] { EditCell(current.row(), current.column()); });
  if (some && edits.HasRolandChecksum(CurrentRow()))
    add("PM_Checksum", QText("Roland-Prüfsumme neu berechnen", "Recompute Roland checksum"), {}, true,
        [this] { RecomputeChecksum(); });
  add("PM_Copy", QText("Zeilen kopieren", "Copy rows"), QText("Strg+C", "Ctrl+C"), some,
      [this] { PM_CopyClick(); });
  if (rows.HasSysexs())
    add("PM_SysexList", QText("Sysex-Liste", "Sysex list"), {}, rows.Showing, [this] { ShowSysexs(); });
  add("PM_Search", QText("Suchen...", "Search..."), QText("Strg+F", "Ctrl+F"), some,
      [this] { search->Open(); });
  if (edits.CanUndo()) {
    menu->addSeparator();
    add("PM_Undo", ToQt(edits.UndoText()), QText("Strg+Z", "Ctrl+Z"), true, [this] { PM_UndoClick(); });
  }
  return menu;
}

// --- Stepping

void TEventListForm::StepTrack(int step) {
  const int index = rows.TrackIndex() + step;
  if (index >= 0 && index < CB_TrackList->count()) CB_TrackListChange(index);
}

void TEventListForm::StepFilter(int step) {
  const int index = rows.FilterIndex() + step;
  if (index >= 0 && index < CB_Filter->count()) CB_FilterChange(index);
}

// --- Window

void TEventListForm::keyPressEvent(QKeyEvent* event) {
  if (event->key() != Qt::Key_Escape) return QWidget::keyPressEvent(event);
  if (search->IsSearching())
    search->Stop();
  else if (search->isVisible())
    search->Close();
  else
    close();
}

void TEventListForm::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  if (stale) UpdateDisplayedEvents();
  // Arrows, Insert and Delete work at once.
  ASG_EventList->setFocus(Qt::ActiveWindowFocusReason);
  EventListTimer.start();
}

void TEventListForm::hideEvent(QHideEvent* event) {
  EventListTimer.stop();
  delegate->Cancel();
  search->Stop();
  // What happens to the song meanwhile is not told: its pointers would lead nowhere.
  rows.Index.Clear();
  stale = true;
  QWidget::hideEvent(event);
}

void TEventListForm::closeEvent(QCloseEvent* event) {
  QWidget::closeEvent(event);
  Q_EMIT closed();
}

void TEventListForm::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (AppearanceChanged(*event) && tools != nullptr) LayOut();
}

}  // namespace Sonarello
