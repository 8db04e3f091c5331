#include "app/options/RoutesTable.h"

#include <QAccessible>
#include <QEvent>

#include "app/controls/Icons.h"
#include "app/controls/Painting.h"
#include "app/controls/QtText.h"

namespace Sonarello {

namespace {

// Pixels at 100 %.
constexpr double Side = 17;  // with the border
constexpr double TableTop = 43;
constexpr double HeadHeight = 26;
constexpr double RowHeight = 36;
constexpr double NumberLeft = 9;
constexpr double InstrumentLeft = 61;
constexpr double RemoveWidth = 49;
constexpr double ComboWidth = 250;
constexpr double WarningGap = 9;
constexpr double Bottom = 14;

int Px(double length) { return metrics().px(length); }

QString RouteName(int route) {
  return QText("Route ", "Route ") + QStringLiteral("%1").arg(route, 2, 10, QLatin1Char('0'));
}

}  // namespace

// --- The warning

void WarningLine::SetText(const QString& value) {
  if (value == text) return;
  text = value;
  setAccessibleName(text);
  setVisible(!text.isEmpty());
  update();
  if (text.isEmpty()) return;
  QAccessibleEvent alert(this, QAccessible::Alert);
  QAccessible::updateAccessibility(&alert);
}

int WarningLine::HeightFor(int width) const {
  const QFontMetrics font(metrics().font(Role::Body));
  const QRect room(0, 0, width - Px(46), 10000);
  return font.boundingRect(room, Qt::TextWordWrap, text).height() + Px(16);
}

void WarningLine::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  PaintBox(painter, rect(), metrics().f(4), th().warnbg, th().warn);
  const double side = metrics().f(16);
  PaintIcon(painter, Icon::Warning, QRectF(metrics().f(12), (height() - side) / 2, side, side),
            th().warn);
  painter.setFont(metrics().font(Role::Body));
  painter.setPen(th().tx1);
  painter.drawText(rect().adjusted(Px(36), 0, -Px(10), 0),
                   Qt::AlignLeft | Qt::AlignVCenter | Qt::TextWordWrap, text);
}

// --- The table

RoutesTable::RoutesTable(QWidget* parent)
    : QWidget(parent),
      MultiMidi(
          new QCheckBox(QText("Mehrere MIDI-Ausgänge benutzen", "Use several MIDI outputs"), this)),
      Warning(new WarningLine(this)) {
  Warning->hide();
  connect(MultiMidi, &QCheckBox::toggled, this, &RoutesTable::MultiMidiSet);
}

void RoutesTable::MakeRow() {
  const int route = static_cast<int>(rows.size());
  Row row{new QComboBox(this), new QComboBox(this), new QToolButton(this)};
  row.Instrument->setAccessibleName(RouteName(route) + QText(" Instrument", " instrument"));
  row.Instrument->setPlaceholderText(QText("Instrument wählen…", "Choose instrument…"));
  row.Instrument->setMaxVisibleItems(20);
  row.Output->setAccessibleName(RouteName(route) + QText(" MIDI-Ausgang", " MIDI output"));
  row.Output->setMaxVisibleItems(20);
  row.Remove->setAutoRaise(true);
  row.Remove->setIcon(IconFor(Icon::Cross));
  row.Remove->setFocusPolicy(Qt::StrongFocus);
  row.Remove->setAccessibleName(RouteName(route) + QText(" entfernen", " remove"));
  row.Remove->setToolTip(row.Remove->accessibleName());
  // A combo box goes by its text; what it is for comes behind.
  for (QComboBox* combo : {row.Instrument, row.Output})
    combo->setAccessibleDescription(combo->accessibleName());
  connect(row.Instrument, &QComboBox::activated, this,
          [this, route] { Q_EMIT InstrumentSet(route, Instrument(route)->currentText()); });
  connect(row.Output, &QComboBox::activated, this,
          [this, route] { Q_EMIT OutputSet(route, Output(route)->currentText()); });
  connect(row.Remove, &QToolButton::clicked, this, [this, route] { Q_EMIT Removed(route); });
  rows.push_back(row);
}

void RoutesTable::Refresh(const OptionsEdit& edit) {
  const QSignalBlocker quiet(MultiMidi);
  const int before = HeightFor(width());
  MultiMidi->setChecked(edit.Value("MultiMidi") != "0");
  MultiMidi->setToolTip(TipText(edit.Explanation("MultiMidi")));
  used = edit.UsedRoutes();
  shown = edit.ShownRoutes();
  const int widgets = std::min(std::max(used + 1, 1), MostRoutes);
  while (static_cast<int>(rows.size()) < widgets) MakeRow();
  for (int route = 0; route < static_cast<int>(rows.size()); ++route) RefreshRow(edit, route);
  Warning->SetText(ToQt(edit.RoutesWarning()));
  Arrange();
  update();
  if (HeightFor(width()) != before) Q_EMIT HeightChanged();
}

void RoutesTable::RefreshRow(const OptionsEdit& edit, int route) {
  const Row& row = rows[Index(route)];
  const bool inUse = route < used || route == 0;
  const bool open = edit.IsRouteOpen(route);
  const QString why = open ? QString()
                           : QText("Wirkt erst mit mehreren MIDI-Ausgängen.",
                                   "Takes effect with several MIDI outputs.");
  row.Instrument->setVisible(inUse || open);
  row.Output->setVisible(inUse);
  row.Remove->setVisible(inUse && route > 0);
  if (!inUse && !open) return;
  FillCombo(*row.Instrument, InstrumentNames(), edit.Route(route).Instrument);
  FillCombo(*row.Output, edit.OutputChoices(route), edit.Route(route).OutputName);
  row.Instrument->setToolTip(open ? row.Instrument->currentText() : why);
  row.Output->setToolTip(open ? row.Output->currentText() : why);
  for (QWidget* widget : {static_cast<QWidget*>(row.Instrument), static_cast<QWidget*>(row.Output),
                          static_cast<QWidget*>(row.Remove)})
    widget->setEnabled(open);
}

int RoutesTable::HeightFor(int width) const {
  const int table = Px(TableTop) + Px(HeadHeight) + std::max(shown, 1) * Px(RowHeight);
  const int warning =
      Warning->isHidden() ? 0 : Px(WarningGap) + Warning->HeightFor(width - 2 * Px(Side));
  return table + warning + Px(Bottom);
}

QRect RoutesTable::Table() const {
  return {Px(Side), Px(TableTop), width() - 2 * Px(Side), Px(HeadHeight) + shown * Px(RowHeight)};
}

QRect RoutesTable::RowRect(int route) const {
  const QRect table = Table();
  return {table.left(), table.top() + Px(HeadHeight) + route * Px(RowHeight), table.width(),
          Px(RowHeight)};
}

QRect RoutesTable::Cell(int route, int column) const {
  const QRect row = RowRect(route);
  if (column == 0)
    return {row.left() + Px(NumberLeft), row.top(), Px(InstrumentLeft - NumberLeft), row.height()};
  const int pitch = (row.width() - Px(InstrumentLeft) - Px(RemoveWidth)) / 2;
  const int left = row.left() + Px(InstrumentLeft) + (column - 1) * pitch;
  return {left, row.top(), std::min(pitch - Px(12), Px(ComboWidth)), row.height()};
}

void RoutesTable::Arrange() {
  const QSize check = MultiMidi->sizeHint();
  MultiMidi->setGeometry(width() - Px(Side) - check.width(), Px(25) - Px(10), check.width(), Px(20));
  const int inset = (Px(RowHeight) - Px(28)) / 2;
  for (int route = 0; route < static_cast<int>(rows.size()); ++route) {
    const Row& row = rows[Index(route)];
    row.Instrument->setGeometry(Cell(route, 1).adjusted(0, inset, 0, -inset));
    row.Output->setGeometry(Cell(route, 2).adjusted(0, inset, 0, -inset));
    const QRect line = RowRect(route);
    row.Remove->setGeometry(line.right() - Px(29) - Px(12), line.center().y() - Px(12), Px(24), Px(24));
  }
  const int warningTop = Table().bottom() + 1 + Px(WarningGap);
  const int inner = width() - 2 * Px(Side);
  Warning->setGeometry(Px(Side), warningTop, inner, Warning->HeightFor(inner));
}

void RoutesTable::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const QRect table = Table();
  PaintBox(painter, table, metrics().f(4), th().row, th().line);
  const QRect head(table.left(), table.top(), table.width(), Px(HeadHeight));
  painter.fillRect(head.adjusted(1, 1, -1, 0), th().bg2);
  painter.setFont(metrics().font(Role::ToolTip));
  painter.setPen(th().tx2);
  const QString titles[] = {QText("Nr.", "No."), QText("Instrument", "Instrument"),
                            QText("MIDI-Ausgang", "MIDI output")};
  for (int column = 0; column < 3; ++column) {
    const QRect cell = Cell(0, column);
    painter.drawText(QRect(cell.left(), head.top(), cell.width(), head.height()),
                     Qt::AlignLeft | Qt::AlignVCenter, titles[column]);
  }
  for (int route = 0; route < shown; ++route) PaintRow(painter, route);
  PaintHairline(painter, QLineF(head.left(), head.bottom(), head.right() + 1, head.bottom()),
                th().line);
}

void RoutesTable::PaintRow(QPainter& painter, int route) const {
  const QRect row = RowRect(route);
  const bool isMain = route == 0;
  painter.fillRect(row.adjusted(1, 0, -1, route == shown - 1 ? -1 : 0), isMain           ? th().sel
                                                                        : route % 2 == 1 ? th().rowalt
                                                                                         : th().row);
  if (isMain) painter.fillRect(QRect(row.left(), row.top(), Px(3), row.height()), th().acc);
  painter.setFont(metrics().font(Role::Body));
  painter.setPen(route < used || isMain ? th().tx2 : th().tx3);
  painter.drawText(Cell(route, 0), Qt::AlignLeft | Qt::AlignVCenter,
                   QStringLiteral("%1").arg(route, 2, 10, QLatin1Char('0')));
  if (route < used || isMain) return;
  painter.setPen(th().tx3);
  const bool hasCombo =
      route < static_cast<int>(rows.size()) && !rows[Index(route)].Instrument->isHidden();
  if (!hasCombo)
    painter.drawText(Cell(route, 1), Qt::AlignLeft | Qt::AlignVCenter,
                     QText("Instrument wählen…", "Choose instrument…"));
  painter.drawText(Cell(route, 2), Qt::AlignLeft | Qt::AlignVCenter, QString(QChar(0x2013)));
}

void RoutesTable::resizeEvent(QResizeEvent*) { Arrange(); }

void RoutesTable::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (AppearanceChanged(*event)) Arrange();
}

// --- The panel

RoutesBox::RoutesBox(const TOptionGroupInfo& info, const OptionSet& set, QWidget* parent)
    : OptionGroupBox(info, set, parent), Table(new RoutesTable(this)) {
  SetBody(Table);
}

void RoutesBox::RefreshRoutes(const OptionsEdit& edit) { Table->Refresh(edit); }

int RoutesBox::BodyHeight(int width) const { return Table->HeightFor(width); }

}  // namespace Sonarello
