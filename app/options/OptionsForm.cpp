#include "app/options/OptionsForm.h"

#include <QEvent>
#include <QFocusEvent>
#include <QStringListModel>
#include <QStyledItemDelegate>
#include <utility>

#include "app/controls/FocusRing.h"
#include "app/controls/Painting.h"
#include "app/controls/QtText.h"
#include "app/options/OptionsPage.h"

namespace Sonarello {

namespace {

// Pixels at 100 %.
constexpr double ListWidth = 220;
constexpr double ListMargin = 8;
constexpr double ListRow = 36;
constexpr double BarHeight = 52;
constexpr double Margin = 12;
constexpr double ButtonWidth = 104;
constexpr double ButtonHeight = 28;
constexpr QSize DefaultSize{1000, 688};
constexpr QSize LeastSize{860, 568};

int Px(double length) { return metrics().px(length); }

/// A row of the page list.
class PageDelegate : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  QSize sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const override {
    return {Px(ListWidth - 2 * ListMargin), Px(ListRow)};
  }

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override {
    const PainterState state(*painter);
    const bool chosen = option.state.testFlag(QStyle::State_Selected);
    const bool hovered = option.state.testFlag(QStyle::State_MouseOver);
    if (chosen || hovered)
      PaintBox(*painter, option.rect, metrics().f(4), chosen ? th().sel : th().bg2, QColor());
    if (chosen) {
      painter->setClipRect(QRect(option.rect.left(), option.rect.top(), Px(3), option.rect.height()));
      PaintBox(*painter, option.rect, metrics().f(4), th().acc, QColor());
      painter->setClipping(false);
    }
    if (option.state.testFlag(QStyle::State_HasFocus) &&
        option.state.testFlag(QStyle::State_KeyboardFocusChange))
      PaintBox(*painter, option.rect, metrics().f(4), Qt::NoBrush, th().acc, Px(2));
    painter->setFont(metrics().font(chosen ? Role::Strong : Role::Body));
    painter->setPen(chosen ? th().tx1 : th().tx2);
    painter->drawText(option.rect.adjusted(Px(12), 0, 0, 0), Qt::AlignLeft | Qt::AlignVCenter,
                      index.data().toString());
  }
};

QStringList PageNames() {
  QStringList names;
  for (const TOptionPageInfo& page : OptionPages()) names << QText(page.German, page.English);
  return names;
}

}  // namespace

TOptionsForm::TOptionsForm(ISettings& settings, QWidget* parent)
    : QDialog(parent),
      store(&settings),
      edit(std::make_unique<OptionsEdit>(TOptionsInput())),
      pageList(new QListView(this)),
      stack(new QStackedWidget(this)),
      hint(new QLabel(this)),
      Btn_Cancel(new QPushButton(QText("Abbrechen", "Cancel"), this)),
      Btn_OK(new QPushButton(QText("OK", "OK"), this)) {
  setObjectName(QStringLiteral("OptionsForm"));
  setWindowTitle(QText("Einstellungen", "Settings"));
  setWindowModality(Qt::WindowModal);
  scalePercent = metrics().percent;
  pageList->setObjectName(QStringLiteral("Pages"));
  pageList->setAccessibleName(QText("Seiten", "Pages"));
  pageList->setModel(new QStringListModel(PageNames(), pageList));
  pageList->setItemDelegate(new PageDelegate(pageList));
  pageList->setFrameShape(QFrame::NoFrame);
  pageList->setEditTriggers(QAbstractItemView::NoEditTriggers);
  pageList->setMouseTracking(true);
  pageList->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  hint->setWordWrap(true);
  hint->setObjectName(QStringLiteral("Hint"));
  MakePages();
  Btn_OK->setDefault(true);
  Btn_Cancel->setAutoDefault(false);
  setTabOrder(pageList, stack);
  setTabOrder(Btn_Cancel, Btn_OK);
  connect(Btn_OK, &QPushButton::clicked, this, &TOptionsForm::Btn_OKClick);
  connect(Btn_Cancel, &QPushButton::clicked, this, &TOptionsForm::Btn_CancelClick);
  connect(pageList->selectionModel(), &QItemSelectionModel::currentChanged, this,
          [this](const QModelIndex& now) {
            stack->setCurrentIndex(now.row());
            ShowPageHint();
          });
  ShowPage(TOptionPage::Options);
  ApplySizes();
  resize(Px(DefaultSize.width()), Px(DefaultSize.height()));
}

TOptionsForm::~TOptionsForm() = default;

// --- Pages

void TOptionsForm::MakePages() {
  for (const TOptionPageInfo& page : OptionPages()) stack->addWidget(MakePage(page.Page));
  WatchEditors();
}

QWidget* TOptionsForm::MakePage(TOptionPage page) {
  auto* area = new OptionsPage(this);
  area->setObjectName(ToQt(OptionPages()[static_cast<std::size_t>(page)].Name));
  const OptionSet set = [this](std::string_view key, const std::string& value) {
    SetOption(key, value);
  };
  for (const TOptionGroupInfo& group : OptionGroups()) {
    if (group.Page != page) continue;
    if (group.Group == TOptionGroup::Routing) {
      routes = new RoutesBox(group, set);
      ConnectRoutes(*routes->Table);
      connect(routes->Table, &RoutesTable::HeightChanged, area, &OptionsPage::Arrange);
      area->Add(routes);
    } else {
      groups.push_back(new OptionGroupBox(group, set));
      area->Add(groups.back());
    }
  }
  return area;
}

void TOptionsForm::ConnectRoutes(RoutesTable& table) {
  connect(&table, &RoutesTable::MultiMidiSet, this,
          [this](bool on) { SetOption("MultiMidi", on ? "1" : "0"); });
  connect(&table, &RoutesTable::InstrumentSet, this, [this](int route, const QString& name) {
    edit->SetRouteInstrument(route, ToStd(name));
    Refresh();
  });
  connect(&table, &RoutesTable::OutputSet, this, [this](int route, const QString& name) {
    edit->SetRouteOutput(route, ToStd(name));
    Refresh();
  });
  connect(&table, &RoutesTable::Removed, this, [this](int route) {
    edit->RemoveRoute(route);
    Refresh();
  });
}

void TOptionsForm::ShowPage(TOptionPage page) {
  pageList->setCurrentIndex(pageList->model()->index(static_cast<int>(page), 0));
}

TOptionPage TOptionsForm::Page() const { return static_cast<TOptionPage>(stack->currentIndex()); }

void TOptionsForm::ShowPageHint() {
  const TOptionPageInfo& page = OptionPages()[static_cast<std::size_t>(stack->currentIndex())];
  hint->setText(QText(page.GermanHint, page.EnglishHint));
}

// --- Values

void TOptionsForm::SetInput(TOptionsInput input) {
  edit = std::make_unique<OptionsEdit>(std::move(input));
  Refresh();
}

void TOptionsForm::ShowOptions(TOptionsInput input) {
  SetInput(std::move(input));
  show();
  raise();
  activateWindow();
  pageList->setFocus();
}

void TOptionsForm::SetOption(std::string_view key, const std::string& value) {
  edit->SetValue(key, value);
  Refresh();
}

void TOptionsForm::Refresh() {
  for (OptionGroupBox* group : groups) group->Refresh(*edit);
  routes->RefreshRoutes(*edit);
}

void TOptionsForm::Btn_OKClick() {
  const TOptionChanges changes = edit->Changes();
  edit->Store(*store);
  QDialog::accept();
  if (!changes.IsEmpty()) Q_EMIT OptionsChanged(changes);
}

void TOptionsForm::Btn_CancelClick() { QDialog::reject(); }

void TOptionsForm::reject() { Btn_CancelClick(); }

// --- Explanations

void TOptionsForm::WatchEditors() {
  for (OptionGroupBox* group : groups)
    for (const OptionRow& row : group->Rows()) {
      row.Editor->installEventFilter(this);
      for (QWidget* inside : row.Editor->findChildren<QWidget*>()) {
        inside->setProperty("optionKey", ToQt(row.Field->Key));
        inside->installEventFilter(this);
      }
      row.Editor->setProperty("optionKey", ToQt(row.Field->Key));
    }
}

bool TOptionsForm::eventFilter(QObject* watched, QEvent* event) {
  auto* widget = qobject_cast<QWidget*>(watched);
  if (widget == nullptr) return QDialog::eventFilter(watched, event);
  // Scrolling the page must not turn what happens to lie under the pointer.
  if (event->type() == QEvent::Wheel && !widget->hasFocus()) {
    event->ignore();
    return true;
  }
  // What a tool tip says is for the keyboard, too.
  if (event->type() == QEvent::FocusIn && ByKeyboard(static_cast<QFocusEvent*>(event)->reason())) {
    const std::string key = ToStd(widget->property("optionKey").toString());
    hint->setText(ToQt(edit->Explanation(key)).replace(QLatin1Char('\n'), QLatin1Char(' ')));
    if (auto* page = qobject_cast<QScrollArea*>(stack->currentWidget()))
      page->ensureWidgetVisible(widget, 0, Px(ListRow));
  }
  if (event->type() == QEvent::FocusOut) ShowPageHint();
  return QDialog::eventFilter(watched, event);
}

// --- Geometry

void TOptionsForm::ApplySizes() {
  setMinimumSize(Px(LeastSize.width()), Px(LeastSize.height()));
  QPalette quiet = palette();
  quiet.setColor(QPalette::WindowText, th().tx3);
  hint->setPalette(quiet);
  QPalette list = palette();
  list.setColor(QPalette::Base, th().bg1);
  pageList->setPalette(list);
  Arrange();
}

void TOptionsForm::Arrange() {
  const int bar = height() - Px(BarHeight);
  const int list = Px(ListWidth);
  const int inset = Px(ListMargin);
  pageList->setGeometry(inset, inset, list - 2 * inset - metrics().hair(), bar - 2 * inset);
  stack->setGeometry(list, 0, width() - list, bar);
  const int top = bar + (Px(BarHeight) - Px(ButtonHeight)) / 2;
  const int right = width() - Px(Margin);
  Btn_OK->setGeometry(right - Px(ButtonWidth), top, Px(ButtonWidth), Px(ButtonHeight));
  const int cancel = right - 2 * Px(ButtonWidth) - Px(8);
  Btn_Cancel->setGeometry(cancel, top, Px(ButtonWidth), Px(ButtonHeight));
  hint->setGeometry(Px(Margin), bar + metrics().hair(), cancel - 2 * Px(Margin),
                    Px(BarHeight) - metrics().hair());
}

void TOptionsForm::resizeEvent(QResizeEvent*) { Arrange(); }

void TOptionsForm::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const int bar = height() - Px(BarHeight);
  const int list = Px(ListWidth);
  painter.fillRect(rect(), th().bg0);
  painter.fillRect(0, 0, list, bar, th().bg1);
  painter.fillRect(0, bar, width(), height() - bar, th().bg1);
  PaintHairline(painter, QLineF(list - 1, 0, list - 1, bar), th().line);
  PaintHairline(painter, QLineF(0, bar, width(), bar), th().line);
}

void TOptionsForm::changeEvent(QEvent* event) {
  QDialog::changeEvent(event);
  if (!AppearanceChanged(*event)) return;
  const double grown = double(metrics().percent) / scalePercent;
  scalePercent = metrics().percent;
  const QSize now = size() * grown;
  ApplySizes();
  resize(now);
}

}  // namespace Sonarello
