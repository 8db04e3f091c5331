#include "app/options/OptionGroupBox.h"

#include <QEvent>
#include <QLayout>
#include <algorithm>

#include "app/controls/Painting.h"
#include "app/controls/QtText.h"

namespace Sonarello {

namespace {

// Pixels at 100 %.
constexpr double Side = 17;  // with the border
constexpr double FirstTop = 45;
constexpr double FieldHeight = 28;
constexpr double CheckHeight = 20;
constexpr double RowGap = 12;
constexpr double CheckGap = 10;
constexpr double ColumnGap = 24;
constexpr double CaptionWidth = 236;
constexpr double FieldLeft = 248;
constexpr double JoinGap = 8;
constexpr double Bottom = 14;

int Px(double length) { return metrics().px(length); }

/// The reasons why options of a group do nothing yet, each once.
QString NoteOf(const std::vector<OptionRow>& rows) {
  QStringList reasons;
  for (const OptionRow& row : rows) {
    const QString reason = ToQt(RoomReason(row.Field->Room));
    if (!reason.isEmpty() && !reasons.contains(reason)) reasons << reason;
  }
  return reasons.join(QLatin1Char(' '));
}

}  // namespace

/// Goes down the panel; `column` is the one in which the next check stands.
struct OptionGroupBox::Pen {
  int inner = 0;
  bool twoColumns = true;
  int y = 0;
  int column = 0;
  bool afterCheck = false;
  int joinLeft = 0;  ///< where an option joins the row above
  int joinTop = 0;

  /// Begins a row below what is there.
  void NextRow(bool check) {
    if (column == 1) y += Px(CheckHeight);
    column = 0;
    if (y > Px(FirstTop)) y += Px(check && afterCheck ? CheckGap : RowGap);
  }
};

OptionGroupBox::OptionGroupBox(const TOptionGroupInfo& info, OptionSet set, QWidget* parent)
    : QWidget(parent), title(QText(info.German, info.English)), note(new QLabel(this)) {
  setObjectName(ToQt(info.Name));
  setAccessibleName(title);
  for (const TOptionField& field : OptionFields())
    if (field.Group == info.Group) rows.push_back(MakeOptionRow(field, this, set));
  note->setText(NoteOf(rows));
  note->setWordWrap(true);
  note->setVisible(!note->text().isEmpty());
  ApplyFonts();
}

void OptionGroupBox::Refresh(const OptionsEdit& edit) {
  for (const OptionRow& row : rows) RefreshOptionRow(row, edit);
}

int OptionGroupBox::BodyHeight(int) const { return 0; }

bool OptionGroupBox::InTwoColumns(int inner) const {
  const int column = (inner - Px(ColumnGap)) / 2;
  return std::ranges::all_of(rows, [&](const OptionRow& row) {
    return row.Field->Control != TOptionControl::Check || row.Field->Place == TOptionPlace::Alone ||
           row.Editor->sizeHint().width() <= column;
  });
}

int OptionGroupBox::Arrange(int width, bool place) {
  Pen pen;
  pen.inner = width - 2 * Px(Side);
  pen.twoColumns = InTwoColumns(pen.inner);
  pen.y = Px(FirstTop);
  if (body != nullptr) {
    const int height = BodyHeight(width);
    if (place) body->setGeometry(0, 0, width, height);
    pen.y = height;
  }
  for (const OptionRow& row : rows) {
    if (row.Field->Control == TOptionControl::Check)
      PlaceCheck(row, pen, place);
    else
      PlaceField(row, pen, place);
  }
  if (pen.column == 1) pen.y += Px(CheckHeight);
  if (!note->isHidden()) {
    const int height = note->heightForWidth(pen.inner);
    pen.y += Px(RowGap);
    if (place) note->setGeometry(Px(Side), pen.y, pen.inner, height);
    pen.y += height;
  }
  return pen.y + (body != nullptr ? 0 : Px(Bottom));
}

void OptionGroupBox::PlaceCheck(const OptionRow& row, Pen& pen, bool place) const {
  const bool alone = row.Field->Place == TOptionPlace::Alone || !pen.twoColumns;
  const bool second = pen.column == 1 && !alone;
  if (!second) pen.NextRow(row.Field->Place != TOptionPlace::Alone);
  const int column = (pen.inner - Px(ColumnGap)) / 2;
  const int left = Px(Side) + (second ? column + Px(ColumnGap) : 0);
  const int width = alone ? pen.inner : column;
  if (place)
    row.Editor->setGeometry(left, pen.y, std::min(width, row.Editor->sizeHint().width()),
                            Px(CheckHeight));
  pen.afterCheck = row.Field->Place != TOptionPlace::Alone;
  if (alone || second) {
    pen.column = 0;
    pen.y += Px(CheckHeight);
  } else {
    pen.column = 1;
  }
}

int OptionGroupBox::WidthOfJoined(const OptionRow& row) const {
  int width = 0;
  for (const OptionRow* next = &row + 1; next != rows.data() + rows.size(); ++next) {
    if (next->Field->Place != TOptionPlace::Joined) break;
    width += Px(JoinGap) + Px(next->Width);
  }
  return width;
}

void OptionGroupBox::PlaceField(const OptionRow& row, Pen& pen, bool place) const {
  const bool joined = row.Field->Place == TOptionPlace::Joined;
  if (!joined) {
    pen.NextRow(false);
    pen.joinLeft = Px(Side) + Px(FieldLeft);
    pen.joinTop = pen.y;
    pen.y += Px(FieldHeight);
    pen.afterCheck = false;
  }
  const int width = row.Width > 0 ? Px(row.Width) : row.Editor->sizeHint().width();
  const int room = Px(Side) + pen.inner - pen.joinLeft - WidthOfJoined(row);
  if (place) {
    if (QLayout* inside = row.Editor->layout()) inside->setSpacing(Px(16));
    row.Editor->setGeometry(pen.joinLeft, pen.joinTop, std::min(width, room), Px(FieldHeight));
    if (row.Caption != nullptr)
      row.Caption->setGeometry(Px(Side), pen.joinTop, Px(CaptionWidth), Px(FieldHeight));
  }
  pen.joinLeft += std::min(width, room) + Px(JoinGap);
  if (row.Unit == nullptr) return;
  const int unit = row.Unit->sizeHint().width();
  if (place) row.Unit->setGeometry(pen.joinLeft, pen.joinTop, unit, Px(FieldHeight));
  pen.joinLeft += unit + Px(JoinGap);
}

void OptionGroupBox::ApplyFonts() {
  QPalette quiet = palette();
  quiet.setColor(QPalette::Active, QPalette::WindowText, th().tx3);
  quiet.setColor(QPalette::Inactive, QPalette::WindowText, th().tx3);
  note->setFont(metrics().font(Role::Caption));
  note->setPalette(quiet);
  QPalette caption = palette();
  caption.setColor(QPalette::Active, QPalette::WindowText, th().tx2);
  caption.setColor(QPalette::Inactive, QPalette::WindowText, th().tx2);
  for (const OptionRow& row : rows) {
    if (row.Caption != nullptr) row.Caption->setPalette(caption);
    if (row.Unit != nullptr) row.Unit->setPalette(quiet);
  }
}

void OptionGroupBox::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  PaintBox(painter, rect(), metrics().f(6), th().bg1, th().line);
  painter.setFont(metrics().font(Role::Title));
  painter.setPen(th().tx1);
  painter.drawText(QRect(Px(Side), 0, width() - 2 * Px(Side), Px(48)), Qt::AlignLeft | Qt::AlignVCenter,
                   title);
}

void OptionGroupBox::resizeEvent(QResizeEvent*) { Arrange(width(), true); }

void OptionGroupBox::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (!AppearanceChanged(*event)) return;
  ApplyFonts();
  Arrange(width(), true);
}

}  // namespace Sonarello
