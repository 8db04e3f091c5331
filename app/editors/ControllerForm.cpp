#include "app/editors/ControllerForm.h"

#include <QCloseEvent>
#include <QComboBox>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QPushButton>

#include "app/controls/Painting.h"
#include "app/controls/QtText.h"
#include "app/editors/ControllerColumn.h"
#include "app/editors/EditorStatus.h"

namespace Sonarello {

namespace {

constexpr double Margin = 12, ToolHeight = 52, Gap = 4, ChoiceWidth = 236, ChoiceHeight = 28,
                 LeastButton = 72;
/// What is offered beside the list of all, under the names that the desk's panel has.
constexpr int UsualNumbers[] = {7, 10, 11, 91, 93};

QStringList UsualNames() {
  return {QText("Lautstärke", "Volume"), QStringLiteral("Panorama"), QStringLiteral("Expression"),
          QText("Hall", "Reverb"), QStringLiteral("Chorus")};
}

}  // namespace

TControllerForm::TControllerForm(TControllerOverview& o, QWidget* parent)
    : QWidget(parent, Qt::Window), overview(o) {
  setWindowTitle(QText("Controller Übersicht", "Controller overview"));
  MakeParts();
  overview.Hooks.ShowController = [this] { ShowController(); };
  LayOut();
  ShowController();
}

TControllerForm::~TControllerForm() { overview.Hooks.ShowController = nullptr; }

void TControllerForm::MakeParts() {
  Panel_ControllerNumber = new QComboBox(this);
  Panel_ControllerNumber->setAccessibleName(QText("Controller Liste", "Controller list"));
  Panel_ControllerNumber->setToolTip(Panel_ControllerNumber->accessibleName());
  Panel_ControllerNumber->setMaxVisibleItems(24);
  for (const int number : TControllerOverview::Choices())
    Panel_ControllerNumber->addItem(ToQt(TControllerOverview::ChoiceText(number)), number);
  connect(Panel_ControllerNumber, &QComboBox::activated, this, [this](int index) {
    overview.SetController(Panel_ControllerNumber->itemData(index).toInt());
  });
  for (qsizetype i = 0; i < UsualNames().size(); ++i) {
    auto* button = new QPushButton(UsualNames()[i], this);
    button->setCheckable(true);
    Usual.push_back(button);
    connect(button, &QPushButton::clicked, this,
            [this, i] { overview.SetController(UsualNumbers[i]); });
  }
  for (int channel = 0; channel < ChannelCount; ++channel) {
    auto* column = new ControllerColumn(channel, this);
    columns[static_cast<std::size_t>(channel)] = column;
    connect(column, &ControllerColumn::changed, this, &TControllerForm::MidiCh00_CtrlValueChange);
    connect(column, &ControllerColumn::touched, this, [this](int touched) {
      current = touched;
      ShowStatus();
      Q_EMIT channelTouched(touched);
    });
  }
  empty = new QLabel(ToQt(TControllerOverview::NoSongText()), this);
  empty->setAlignment(Qt::AlignCenter);
  empty->setAttribute(Qt::WA_TransparentForMouseEvents);
  status = new EditorStatus(this);
}

void TControllerForm::LayOut() {
  const Metrics& m = metrics();
  setMinimumSize(m.px(LeastWidth), m.px(LeastHeight));
  empty->setFont(m.font(Role::Value));
  QPalette quiet = palette();
  quiet.setColor(QPalette::WindowText, th().tx2);
  empty->setPalette(quiet);
  Arrange();
}

void TControllerForm::Arrange() {
  const Metrics& m = metrics();
  const int margin = m.px(Margin), high = m.px(ChoiceHeight), top = (m.px(ToolHeight) - high) / 2;
  Panel_ControllerNumber->setGeometry(margin, top, m.px(ChoiceWidth), high);
  int left = 2 * margin + m.px(ChoiceWidth);
  for (QPushButton* button : Usual) {
    const int wide = std::max(button->sizeHint().width(), m.px(LeastButton));
    button->setGeometry(left, top, wide, high);
    left += wide + m.px(Gap);
  }
  const int foot = status->sizeHint().height();
  status->setGeometry(0, height() - foot, width(), foot);
  const QRect field(margin, m.px(ToolHeight), width() - 2 * margin,
                    height() - m.px(ToolHeight) - foot - margin);
  // What is left of the width is spread, so that no white stays at the right.
  const double pitch = (field.width() + m.px(Gap)) / double(ChannelCount);
  for (int channel = 0; channel < ChannelCount; ++channel) {
    const int from = qRound(channel * pitch);
    const int right = qRound((channel + 1) * pitch) - m.px(Gap);
    Column(channel).setGeometry(field.left() + from, field.top(), right - from, field.height());
  }
  empty->setGeometry(field);
}

QSize TControllerForm::sizeHint() const {
  return {metrics().px(UsualWidth), metrics().px(UsualHeight)};
}

void TControllerForm::ShowController() {
  if (!isVisible()) return;
  const int number = overview.Controller();
  Panel_ControllerNumber->setCurrentIndex(Panel_ControllerNumber->findData(number));
  for (std::size_t i = 0; i < Usual.size(); ++i) Usual[i]->setChecked(UsualNumbers[i] == number);
  for (int channel = 0; channel < ChannelCount; ++channel) ShowChannel(channel);
  empty->setVisible(!overview.HasSong());
  empty->raise();
}

void TControllerForm::ShowChannel(int channel) {
  if (!isVisible() || channel < 0 || channel >= ChannelCount) return;
  const TControllerColumn column = overview.Column(channel);
  if (column.Strip.Selected) current = channel;
  Column(channel).Show(column, overview.Controller());
  if (channel == current) ShowStatus();
}

void TControllerForm::ShowStatus() {
  if (!overview.HasSong()) return status->SetParts({ToQt(TControllerOverview::NoSongText())});
  const TControllerColumn column = overview.Column(current);
  QStringList parts{QText("Kanal ", "Channel ") + QString::number(current + 1)};
  if (!column.Name.empty()) parts.front() += QLatin1Char(' ') + ToQt(column.Name);
  const QString what = ToQt(TControllerOverview::ChoiceText(overview.Controller()));
  const QString value =
      column.Shown == column.Value ? QString::number(column.Value) : SignedText(column.Shown);
  if (column.InSong) {
    parts += what + QStringLiteral(": ") + value;
    parts += QText("erstes Event bei ", "first event at ") + ToQt(column.Position);
  } else {
    parts += what + QText(": kein Event im Song", ": no event in the song");
  }
  status->SetParts(parts);
}

void TControllerForm::MidiCh00_CtrlValueChange(int channel, int value) {
  current = channel;
  if (overview.MidiCh00_CtrlValueChange(channel, value)) return ShowStatus();
  ShowChannel(channel);
  status->ShowMessage(
      QText("Keine Spur kann den Controller aufnehmen", "No track can take the controller"));
}

void TControllerForm::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape) {
    close();
    return;
  }
  QWidget::keyPressEvent(event);
}

void TControllerForm::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  ShowController();
}

void TControllerForm::closeEvent(QCloseEvent* event) {
  QWidget::closeEvent(event);
  Q_EMIT closed();
}

void TControllerForm::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (AppearanceChanged(*event) && status != nullptr) LayOut();
}

void TControllerForm::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  Arrange();
}

void TControllerForm::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), th().bg0);
}

}  // namespace Sonarello
