#include "app/instruments/PatchesForm.h"

#include <QAction>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QListView>
#include <QMenu>
#include <QPainter>
#include <QVBoxLayout>

#include "app/controls/Icons.h"
#include "app/controls/Painting.h"
#include "app/controls/QtText.h"

namespace Sonarello {

namespace {

constexpr double RowHeight = 28, BadgeWidth = 64, MarkWidth = 20, PartWidth = 170, Side = 10;

/// Texts of a row's state, in the order of their marks.
QString StateText(const TPatchRow& row) {
  QString text;
  const auto add = [&text](bool is, const QString& word) {
    if (is) text += QStringLiteral(", ") + word;
  };
  add(row.Selected, QText("aktiv", "active"));
  add(row.Solo, QStringLiteral("Solo"));
  add(row.MuteBySolo, QText("durch Solo stumm", "muted by solo"));
  add(row.Mute && !row.MuteBySolo, QText("stumm", "muted"));
  add(row.Rec, QText("Aufnahme", "record"));
  add(row.Drums, QText("Schlagzeug", "drums"));
  return text;
}

QColor GroundOf(const TPatchRow& row) {
  const Theme& t = th();
  return row.Selected ? t.bg2a : row.Drums ? t.drumbg : row.Active ? t.bg2 : t.bg1;
}

/// A mark with its letter, as the strips have them.
void PaintMark(QPainter& painter, const QRectF& box, const QString& letter, const QColor& face,
               const QColor& ink, const QColor& border) {
  PaintBox(painter, box, metrics().f(4), face, border, metrics().hair());
  painter.setFont(metrics().font(Role::Letter));
  painter.setPen(ink);
  painter.drawText(box, Qt::AlignCenter, letter);
}

void PaintBadge(QPainter& painter, const QRectF& badge, const TPatchRow& row, int channel) {
  const Theme& t = th();
  const Metrics& m = metrics();
  if (row.Rec || row.Selected) PaintBox(painter, badge, m.f(4), row.Rec ? t.rec : t.accd, QColor());
  const QColor ink = row.Rec          ? t.onrec
                     : row.Selected   ? t.onaccd
                     : row.Redirected ? t.redirected
                     : !row.Active    ? t.dis
                     : row.Drums      ? t.drum
                                      : t.tx2;
  painter.setPen(ink);
  painter.setFont(m.font(Role::Channel));
  const QString number = ToQt(row.Number);
  const QRectF inner = badge.adjusted(m.f(7), 0, -m.f(5), 0);
  drawFigures(painter, inner, number, Qt::AlignLeft | Qt::AlignVCenter);
  const double behind = inner.left() + FiguresWidth(painter.font(), number) + m.f(4);
  painter.setFont(m.font(Role::Caption));
  const QRectF rest(behind, inner.top(), inner.right() - behind, inner.height());
  if (row.Rec)
    painter.drawText(rest, Qt::AlignRight | Qt::AlignVCenter, QStringLiteral("REC"));
  else if (row.Redirected)
    painter.drawText(rest, Qt::AlignLeft | Qt::AlignVCenter, QStringLiteral("(%1)").arg(channel + 1));
  else if (row.Drums)
    PaintIcon(painter, Icon::Drum,
              QRectF(inner.right() - m.f(15), inner.center().y() - m.f(7.5), m.f(15), m.f(15)), ink);
}

/// Marks of solo and mute, from the right; returns where they begin.
double PaintMarks(QPainter& painter, const QRectF& area, const TPatchRow& row) {
  const Theme& t = th();
  const Metrics& m = metrics();
  double right = area.right();
  const auto next = [&] {
    right -= m.f(MarkWidth + 4);
    return QRectF(right, area.center().y() - m.f(10), m.f(MarkWidth), m.f(20));
  };
  const QString mute = QStringLiteral("M");
  if (row.MuteBySolo)
    PaintMark(painter, next(), mute, t.muteface, t.mute2, t.mute);
  else if (row.Mute)
    PaintMark(painter, next(), mute, t.mute, t.onlit, t.mute);
  if (row.Solo) PaintMark(painter, next(), QStringLiteral("S"), t.solo, t.onlit, t.solob);
  return right;
}

}  // namespace

void PatchModel::Update(int channel) {
  const int first = channel < 0 ? 0 : channel;
  const int last = channel < 0 ? ChannelCount - 1 : channel;
  Q_EMIT dataChanged(index(first), index(last));
}

int PatchModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : ChannelCount;
}

QVariant PatchModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  if (role != Qt::DisplayRole && role != Qt::ToolTipRole && role != Qt::AccessibleTextRole) return {};
  const TPatchRow row = Row(index.row());
  if (role == Qt::DisplayRole) return ToQt(row.Sound);
  if (role == Qt::ToolTipRole) return row.Hint.empty() ? QString() : ToQt(row.Sound + "\r" + row.Hint);
  return QText("Kanal ", "Channel ") + QString::number(index.row() + 1) + QStringLiteral(": ") +
         ToQt(row.Sound) + StateText(row);
}

void PatchDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const {
  const Theme& t = th();
  const Metrics& m = metrics();
  const TPatchRow row = static_cast<const PatchModel*>(index.model())->Row(index.row());
  const PainterState state(*painter);
  const QRectF all(option.rect);
  painter->fillRect(all, GroundOf(row));
  painter->fillRect(QRectF(all.left(), all.bottom() - m.hair(), all.width(), m.hair()), t.line);
  const QRectF badge(all.left() + m.f(3), all.top() + m.f(2), m.f(BadgeWidth), all.height() - m.f(5));
  PaintBadge(*painter, badge, row, index.row());
  const QRectF area = all.adjusted(m.f(BadgeWidth + Side), 0, -m.f(Side), 0);
  const QString part = ToQt(row.Part);
  painter->setFont(m.font(Role::Caption));
  painter->setPen(row.Active ? t.tx3 : t.dis);
  const double partWidth =
      part.isEmpty()
          ? 0
          : std::min(m.f(PartWidth), QFontMetricsF(painter->font()).horizontalAdvance(part) + 2);
  painter->drawText(QRectF(area.right() - partWidth, area.top(), partWidth, area.height()),
                    Qt::AlignRight | Qt::AlignVCenter, Elided(painter->font(), part, partWidth));
  const double right =
      PaintMarks(*painter, area.adjusted(0, 0, partWidth > 0 ? -partWidth - m.f(4) : 0, 0), row);
  painter->setFont(m.font(row.Selected ? Role::Strong : Role::Body));
  painter->setPen(!row.Active ? t.dis : row.Mute ? t.tx3 : t.tx1);
  const double room = right - area.left() - m.f(8);
  painter->drawText(QRectF(area.left(), area.top(), room, area.height()),
                    Qt::AlignLeft | Qt::AlignVCenter, Elided(painter->font(), ToQt(row.Sound), room));
  const bool isCurrent = (option.state & QStyle::State_HasFocus) != 0;
  if (isCurrent || row.Selected)
    PaintBox(*painter, all, 0, Qt::NoBrush, t.acc, isCurrent ? m.px(2) : m.hair());
}

QSize PatchDelegate::sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const {
  return {metrics().px(200), metrics().px(RowHeight)};
}

TPatchesForm::TPatchesForm(TPatchOverview& of, QWidget* parent)
    : QWidget(parent, Qt::Window),
      overview(of),
      model(of, this),
      list(new QListView(this)),
      hint(new QLabel(this)) {
  setWindowTitle(QText("Sounds", "Sounds"));
  list->setModel(&model);
  list->setItemDelegate(new PatchDelegate(list));
  list->setUniformItemSizes(true);
  list->setContextMenuPolicy(Qt::CustomContextMenu);
  list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  list->setAccessibleName(QText("Sounds der Kanäle", "Sounds of the channels"));
  list->setCurrentIndex(model.index(0));
  hint->setText(QText("Klick oder Eingabe: Sound wählen · rechte Maustaste: Programmwechsel einfügen",
                      "Click or Enter: choose a sound · right button: insert a patch change"));
  hint->setWordWrap(true);
  auto* column = new QVBoxLayout(this);
  column->addWidget(list, 1);
  column->addWidget(hint);
  connect(list, &QListView::clicked, this,
          [this](const QModelIndex& index) { overview.L_PatchMouseUp(index.row()); });
  connect(list, &QWidget::customContextMenuRequested, this, [this](const QPoint& at) {
    const QModelIndex index = list->indexAt(at);
    if (index.isValid()) PopupMenu(index.row(), list->viewport()->mapToGlobal(at));
  });
  LayOut();
}

void TPatchesForm::LayOut() {
  const Metrics& m = metrics();
  setMinimumSize(m.px(420), m.px(460));
  layout()->setContentsMargins(m.px(12), m.px(12), m.px(12), m.px(8));
  layout()->setSpacing(m.px(6));
  hint->setFont(m.font(Role::Caption));
  QPalette quiet = palette();
  quiet.setColor(QPalette::WindowText, th().tx3);
  hint->setPalette(quiet);
}

QSize TPatchesForm::sizeHint() const { return {metrics().px(560), metrics().px(520)}; }

void TPatchesForm::ShowChannel(int channel) {
  if (channel >= 0 && channel < ChannelCount) model.Update(channel);
}

void TPatchesForm::ShowAll() { model.Update(-1); }

void TPatchesForm::PopupMenu(int channel, const QPoint& at) {
  QMenu menu(this);
  QAction* open = menu.addAction(QText("Sound wählen…", "choose sound…"));
  open->setEnabled(overview.CanOpen(channel));
  connect(open, &QAction::triggered, this, [this, channel] { overview.L_PatchMouseUp(channel); });
  QAction* insert = menu.addAction(QText("Programmwechsel einfügen", "insert patch change"));
  insert->setEnabled(overview.CanInsertPatch(channel));
  connect(insert, &QAction::triggered, this, [this, channel] {
    overview.PM_InsertPatchClick(channel);
    ShowChannel(channel);
  });
  menu.exec(at);
}

void TPatchesForm::closeEvent(QCloseEvent* event) {
  event->accept();
  Q_EMIT closed();
}

void TPatchesForm::keyPressEvent(QKeyEvent* event) {
  const int channel = list->currentIndex().row();
  switch (event->key()) {
    case Qt::Key_Escape: close(); return;
    case Qt::Key_Return:
    case Qt::Key_Enter: overview.L_PatchMouseUp(channel); return;
    default: QWidget::keyPressEvent(event);
  }
}

void TPatchesForm::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (AppearanceChanged(*event) && layout() != nullptr) LayOut();
}

}  // namespace Sonarello
