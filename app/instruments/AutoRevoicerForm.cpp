#include "app/instruments/AutoRevoicerForm.h"

#include <QBoxLayout>
#include <QCloseEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QListView>
#include <QPushButton>
#include <QStringListModel>
#include <QTableView>

#include "app/controls/Metrics.h"
#include "app/controls/QtText.h"
#include "app/controls/Theme.h"

namespace Sonarello {

void RevoicerModel::Update() {
  beginResetModel();
  endResetModel();
}

int RevoicerModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : desk.RowCount();
}

int RevoicerModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : Columns;
}

QVariant RevoicerModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || index.row() >= desk.RowCount()) return {};
  if (role == Qt::TextAlignmentRole)
    return int((index.column() == Pos ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
  if (role != Qt::DisplayRole && role != Qt::ToolTipRole) return {};
  const TRevoicerGridRow row = desk.Row(index.row());
  const std::string* const cells[] = {&row.Pos, &row.SourceName, &row.SourceAddress, &row.DestName,
                                      &row.DestAddress};
  return ToQt(*cells[index.column()]);
}

QVariant RevoicerModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
  switch (section) {
    case Pos: return ToQt(TAutoRevoicer::PositionHead);
    case Source: return QText("Quelle", "Source");
    case Dest: return QText("Ziel", "Destination");
    default: return QStringLiteral("MSB/LSB/Prog");
  }
}

TAutoRevoicerForm::TAutoRevoicerForm(TRevoicerDesk& of, QWidget* parent)
    : QWidget(parent, Qt::Window),
      desk(of),
      model(of, this),
      ASG_Revoicer(new QTableView(this)),
      empty(new QLabel(ASG_Revoicer)),
      result(new QLabel(this)),
      protocol(new QListView(this)),
      lines(new QStringListModel(this)),
      Btn_Revoice(new QPushButton(QText("Sounds ersetzen", "Revoice"), this)),
      Btn_Delete(new QPushButton(QText("Löschen", "Delete"), this)),
      Btn_Close(new QPushButton(QText("Schließen", "Close"), this)) {
  MakeGrid();
  protocol->setModel(lines);
  protocol->setUniformItemSizes(true);
  protocol->setAlternatingRowColors(true);
  protocol->setEditTriggers(QAbstractItemView::NoEditTriggers);
  protocol->setAccessibleName(QText("Protokoll", "Protocol"));
  Btn_Revoice->setDefault(true);
  auto* buttons = new QHBoxLayout;
  buttons->addWidget(Btn_Delete);
  buttons->addStretch(1);
  buttons->addWidget(Btn_Close);
  buttons->addWidget(Btn_Revoice);
  auto* column = new QVBoxLayout(this);
  column->addWidget(ASG_Revoicer, 3);
  column->addWidget(result);
  column->addWidget(protocol, 1);
  column->addLayout(buttons);
  connect(Btn_Revoice, &QPushButton::clicked, this, &TAutoRevoicerForm::Btn_RevoiceClick);
  connect(Btn_Delete, &QPushButton::clicked, this, &TAutoRevoicerForm::Btn_DeleteClick);
  connect(Btn_Close, &QPushButton::clicked, this, &QWidget::close);
  desk.Hooks.ListChanged = [this] { ShowAll(); };
  LayOut();
  ShowAll();
}

TAutoRevoicerForm::~TAutoRevoicerForm() { desk.Hooks.ListChanged = {}; }

void TAutoRevoicerForm::MakeGrid() {
  ASG_Revoicer->setModel(&model);
  ASG_Revoicer->setAlternatingRowColors(true);
  ASG_Revoicer->setSelectionBehavior(QAbstractItemView::SelectRows);
  ASG_Revoicer->setSelectionMode(QAbstractItemView::SingleSelection);
  ASG_Revoicer->setTabKeyNavigation(false);
  ASG_Revoicer->verticalHeader()->hide();
  ASG_Revoicer->horizontalHeader()->setSectionsClickable(false);
  ASG_Revoicer->horizontalHeader()->setHighlightSections(false);
  ASG_Revoicer->setAccessibleName(QStringLiteral("Auto Revoicer"));
  empty->setText(
      QText("Noch keine Ersetzungen: Im Fenster eines Sounds einen anderen wählen und mit "
            "„In Revoicer speichern“ hier ablegen.",
            "No replacements yet: choose another sound in a channel's sound window and keep "
            "it here with “save to Revoicer”."));
  empty->setWordWrap(true);
  empty->setAlignment(Qt::AlignCenter);
  connect(ASG_Revoicer->selectionModel(), &QItemSelectionModel::selectionChanged, this,
          [this] { ShowButtons(); });
}

void TAutoRevoicerForm::LayOut() {
  const Metrics& m = metrics();
  setMinimumSize(m.px(560), m.px(320));
  layout()->setContentsMargins(m.px(12), m.px(12), m.px(12), m.px(12));
  layout()->setSpacing(m.px(12));
  ASG_Revoicer->verticalHeader()->setDefaultSectionSize(m.px(24));
  QHeaderView* head = ASG_Revoicer->horizontalHeader();
  head->setSectionResizeMode(QHeaderView::Fixed);
  head->setSectionResizeMode(RevoicerModel::Source, QHeaderView::Stretch);
  head->setSectionResizeMode(RevoicerModel::Dest, QHeaderView::Stretch);
  head->resizeSection(RevoicerModel::Pos, m.px(48));
  head->resizeSection(RevoicerModel::SourceAddress, m.px(110));
  head->resizeSection(RevoicerModel::DestAddress, m.px(110));
  for (QPushButton* button : {Btn_Delete, Btn_Close, Btn_Revoice}) button->setMinimumWidth(m.px(104));
  QPalette quiet = palette();
  quiet.setColor(QPalette::WindowText, th().tx3);
  empty->setPalette(quiet);
  auto* inside = ASG_Revoicer->layout();
  if (inside == nullptr) {
    inside = new QVBoxLayout(ASG_Revoicer);
    inside->addWidget(empty);
  }
  inside->setContentsMargins(m.px(40), m.px(26), m.px(40), 0);
}

QSize TAutoRevoicerForm::sizeHint() const { return {metrics().px(760), metrics().px(480)}; }

void TAutoRevoicerForm::ShowAll() {
  setWindowTitle(ToQt(desk.Caption()).trimmed());
  model.Update();
  empty->setVisible(desk.RowCount() == 0);
  ShowResult();
  ShowButtons();
}

void TAutoRevoicerForm::ShowResult() {
  result->setText(ToQt(desk.Result()));
  result->setVisible(!desk.Result().empty());
  QStringList texts;
  for (const std::string& line : desk.Protocol()) texts.push_back(ToQt(line));
  lines->setStringList(texts);
  protocol->setVisible(!texts.isEmpty());
}

void TAutoRevoicerForm::ShowButtons() {
  Btn_Delete->setEnabled(ASG_Revoicer->selectionModel()->hasSelection());
  Btn_Revoice->setEnabled(desk.CanRevoice());
  Btn_Revoice->setToolTip(desk.CanRevoice() ? QText("Alle Sounds der Liste im Song ersetzen",
                                                    "Replace all sounds of the list in the song")
                                            : QText("Kein Song geöffnet oder Liste leer",
                                                    "No song is open, or the list is empty"));
}

void TAutoRevoicerForm::Btn_RevoiceClick() {
  desk.Btn_RevoiceClick();
  ShowResult();
}

void TAutoRevoicerForm::Btn_DeleteClick() {
  const QModelIndexList rows = ASG_Revoicer->selectionModel()->selectedRows();
  if (rows.isEmpty()) return;
  const int row = rows.front().row();
  desk.Btn_DeleteClick(row);
  const int last = desk.RowCount() - 1;
  if (last >= 0) ASG_Revoicer->selectRow(std::min(row, last));
}

void TAutoRevoicerForm::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  desk.LoadRevoiceData();
  ShowAll();
}

void TAutoRevoicerForm::closeEvent(QCloseEvent* event) {
  event->accept();
  Q_EMIT closed();
}

void TAutoRevoicerForm::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_Escape: close(); return;
    case Qt::Key_Delete: Btn_DeleteClick(); return;
    case Qt::Key_Return:
    case Qt::Key_Enter:
      if (auto* button = qobject_cast<QPushButton*>(focusWidget())) button->click();
      return;
    default: QWidget::keyPressEvent(event);
  }
}

void TAutoRevoicerForm::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (AppearanceChanged(*event) && layout() != nullptr) LayOut();
}

}  // namespace Sonarello
