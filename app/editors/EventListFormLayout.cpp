// The parts of the event list's window and where they stand.
#include <QComboBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QMenu>
#include <QPainter>
#include <QShortcut>

#include "app/controls/Control.h"
#include "app/controls/Icons.h"
#include "app/controls/Painting.h"
#include "app/controls/QtText.h"
#include "app/editors/EditorStatus.h"
#include "app/editors/EventDelegate.h"
#include "app/editors/EventListForm.h"
#include "app/editors/EventListModel.h"
#include "app/editors/EventSearch.h"
#include "app/editors/EventView.h"
#include "app/editors/KeyButton.h"

namespace Sonarello {

namespace {

constexpr double ToolHeight = 52, Margin = 12, Gap = 12, LabelGap = 16;
constexpr double TrackWidth = 290, FilterWidth = 180, InsertWidth = 164;
constexpr double LeastShare = 0.45;                      ///< of a list's width, in a narrow window
constexpr int ListInterval = 30, MessageInterval = 100;  // ms

}  // namespace

TEventListForm::TEventListForm(TEventRows& r, TEventEdits& e, IMessages& m, QWidget* parent)
    : QWidget(parent, Qt::Window),
      rows(r),
      edits(e),
      messages(m),
      model(new EventListModel(r, e, this)),
      delegate(new EventDelegate(*model, e, this)) {
  setWindowTitle(QText("Event-Liste", "Event list"));
  MakeParts();
  MakeRows();
  ConnectParts();
  ConnectTable();
  ConnectSearch();
  MakeShortcuts();
  LayOut();
  ShowLists();
  ShowStatus();
}

TEventListForm::~TEventListForm() { edits.Hooks.PostMessage = nullptr; }

void TEventListForm::MakeParts() {
  CB_TrackList = new QComboBox(this);
  CB_TrackList->setAccessibleName(QText("Spur", "Track"));
  CB_TrackList->setToolTip(Tip(CB_TrackList->accessibleName(), QString(),
                               QText("Strg+Bild auf, Strg+Bild ab", "Ctrl+Page Up, Ctrl+Page Down")));
  CB_TrackList->setMaxVisibleItems(20);
  L_MidiChannel = new QLabel(this);
  L_Show = new QLabel(this);
  CB_Filter = new QComboBox(this);
  CB_Filter->setAccessibleName(QText("Angezeigte Events", "Events shown"));
  CB_Filter->setToolTip(Tip(CB_Filter->accessibleName(), QString(),
                            QText("Strg+Umschalt+Bild auf, Bild ab", "Ctrl+Shift+Page Up, Page Down")));
  L_Insert = new QLabel(QText("Einfügen", "Insert"), this);
  CB_Insert = new QComboBox(this);
  CB_Insert->setAccessibleName(QText("Art des neuen Events", "Kind of the new event"));
  Btn_Insert = new KeyButton(QText("Einfügen", "Insert"), QText("Einfg", "Ins"), this);
  Btn_Insert->setIcon(IconFor(Icon::Plus));
  Btn_Delete = new KeyButton(QText("Löschen", "Delete"), QText("Entf", "Del"), this);
  search = new EventSearch(rows, this);
  ASG_EventList = new EventView(this);
  ASG_EventList->setModel(model);
  ASG_EventList->setItemDelegate(delegate);
  ASG_EventList->setAccessibleName(QText("Events", "Events"));
  status = new EditorStatus(this);
}

void TEventListForm::MakeRows() {
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  tools = new QHBoxLayout;
  for (QWidget* part : std::initializer_list<QWidget*>{CB_TrackList, L_MidiChannel, L_Show, CB_Filter})
    tools->addWidget(part);
  tools->addStretch(1);
  for (QWidget* part : std::initializer_list<QWidget*>{L_Insert, CB_Insert, Btn_Insert, Btn_Delete})
    tools->addWidget(part);
  column->addLayout(tools);
  column->addWidget(search);
  column->addWidget(ASG_EventList, 1);
  column->addWidget(status);
}

void TEventListForm::LayOut() {
  const Metrics& m = metrics();
  setMinimumSize(m.px(LeastWidth), m.px(LeastHeight));
  const int above = (m.px(ToolHeight) - m.px(28)) / 2;
  tools->setContentsMargins(m.px(Margin), above, m.px(Margin), m.px(ToolHeight) - m.px(28) - above);
  tools->setSpacing(m.px(Gap));
  L_MidiChannel->setContentsMargins(0, 0, m.px(LabelGap - Gap), 0);
  // In a narrow window the lists give way.
  const auto limit = [&](QComboBox* list, double width) {
    list->setMinimumWidth(m.px(width * LeastShare));
    list->setMaximumWidth(m.px(width));
    list->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    tools->setStretch(tools->indexOf(list), int(width));
  };
  limit(CB_TrackList, TrackWidth);
  limit(CB_Filter, FilterWidth);
  limit(CB_Insert, InsertWidth);
  CB_Insert->setIconSize(QSize(m.px(10), m.px(10)));
  QPalette quiet = palette();
  quiet.setColor(QPalette::WindowText, th().tx2);
  for (QLabel* label : {L_MidiChannel, L_Show, L_Insert}) label->setPalette(quiet);
  ASG_EventList->LayOut();
  status->setFixedHeight(status->sizeHint().height());
  FillInsertList();
}

QSize TEventListForm::sizeHint() const { return {metrics().px(UsualWidth), metrics().px(UsualHeight)}; }

void TEventListForm::FillInsertList() {
  const QSignalBlocker quiet(CB_Insert);
  CB_Insert->clear();
  const std::vector<std::string> lines = rows.InsertLines();
  for (std::size_t i = 0; i < lines.size(); ++i)
    CB_Insert->addItem(KindIcon(rows.InsertKinds()[i]), ToQt(lines[i]));
  CB_Insert->setCurrentIndex(lines.empty() ? -1 : rows.InsertIndex());
  CB_Insert->setEnabled(rows.InsertEnabled());
}

void TEventListForm::ConnectParts() {
  connect(CB_TrackList, &QComboBox::activated, this, &TEventListForm::CB_TrackListChange);
  connect(CB_Filter, &QComboBox::activated, this, &TEventListForm::CB_FilterChange);
  connect(CB_Insert, &QComboBox::activated, this, [this](int index) { rows.CB_InsertChange(index); });
  connect(Btn_Insert, &QPushButton::clicked, this, &TEventListForm::PM_InsertMidiEventClick);
  connect(Btn_Delete, &QPushButton::clicked, this, &TEventListForm::PM_DeleteMidiEventClick);
  EventListTimer.setParent(this);
  EventListTimer.setObjectName(QStringLiteral("EventListTimer"));
  EventListTimer.setInterval(ListInterval);
  connect(&EventListTimer, &QTimer::timeout, this, &TEventListForm::EventListTimerTimer);
  MessageTimer.setParent(this);
  MessageTimer.setObjectName(QStringLiteral("MessageTimer"));
  MessageTimer.setSingleShot(true);
  MessageTimer.setInterval(MessageInterval);
  connect(&MessageTimer, &QTimer::timeout, this,
          [this] { messages.Show(std::exchange(MessageText, {})); });
  edits.Hooks.PostMessage = [this](const std::string& text) { PostMessage(text); };
}

void TEventListForm::ConnectTable() {
  connect(ASG_EventList->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
          [this](const QModelIndex& index) {
            if (index.isValid()) rows.EventListPosition = index.row() + 1;
          });
  connect(ASG_EventList->selectionModel(), &QItemSelectionModel::selectionChanged, this,
          &TEventListForm::ShowStatus);
  connect(ASG_EventList, &EventView::editWanted, this, [this] {
    const QModelIndex index = ASG_EventList->currentIndex();
    if (index.isValid()) EditCell(index.row(), index.column());
  });
  connect(ASG_EventList, &EventView::insertWanted, this, &TEventListForm::PM_InsertMidiEventClick);
  connect(ASG_EventList, &EventView::deleteWanted, this, &TEventListForm::PM_DeleteMidiEventClick);
  connect(ASG_EventList, &EventView::copyWanted, this, &TEventListForm::PM_CopyClick);
  connect(ASG_EventList, &EventView::undoWanted, this, &TEventListForm::PM_UndoClick);
  connect(ASG_EventList, &EventView::trackWanted, this, &TEventListForm::StepTrack);
  connect(ASG_EventList, &EventView::filterWanted, this, &TEventListForm::StepFilter);
  connect(ASG_EventList, &QWidget::customContextMenuRequested, this, [this](const QPoint& at) {
    QMenu* const menu = NewMenu();
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->popup(ASG_EventList->viewport()->mapToGlobal(at));
  });
  connect(delegate, &EventDelegate::began, this, &TEventListForm::ShowStatus);
  // Behind the view's own answer: its editor is gone and rows may move.
  connect(delegate, &QAbstractItemDelegate::closeEditor, this,
          [this](QWidget*, QAbstractItemDelegate::EndEditHint hint) {
            EditEnded(hint == QAbstractItemDelegate::RevertModelCache);
          });
  connect(model, &EventListModel::typed, this, [this](const QModelIndex& index, const QString& text) {
    editedColumn = index.column();
    result = edits.CellEditDone(index.column(), index.row() + 1, ToStd(text));
  });
}

void TEventListForm::ConnectSearch() {
  search->CurrentRow = [this] { return CurrentRow(); };
  connect(search, &EventSearch::found, this, [this](std::int32_t row) { SelectRow(row); });
  connect(search, &EventSearch::closed, this, [this] { ASG_EventList->setFocus(); });
  connect(search, &EventSearch::ended, status, &EditorStatus::EndProgress);
  connect(search, &EventSearch::searching, this, [this](double done) {
    constexpr std::int32_t longList = 2000;
    if (rows.Events() > longList) status->ShowProgress(QText("Suche läuft", "Searching"), done);
  });
}

void TEventListForm::MakeShortcuts() {
  const auto make = [this](const char* key, const std::function<void()>& job) {
    auto* shortcut = new QShortcut(QKeySequence(QLatin1String(key)), this);
    connect(shortcut, &QShortcut::activated, this, job);
  };
  make("Ctrl+F", [this] { search->Open(); });
  make("Ctrl+G", [this] { search->Go(1); });
  make("Ctrl+Shift+G", [this] { search->Go(-1); });
}

void TEventListForm::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), th().bg0);
}

}  // namespace Sonarello
