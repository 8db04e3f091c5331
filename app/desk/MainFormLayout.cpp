// The main window's panels and where they stand.
#include <QMenuBar>
#include <QResizeEvent>

#include "app/controls/Metrics.h"
#include "app/controls/QtText.h"
#include "app/controls/StripRow.h"
#include "app/controls/Theme.h"
#include "app/desk/MainForm.h"
#include "app/panels/Banner.h"
#include "app/panels/ControllerPanel.h"
#include "app/panels/DropCard.h"
#include "app/panels/EffectRow.h"
#include "app/panels/FilePanel.h"
#include "app/panels/LoopPanel.h"
#include "app/panels/LyricBar.h"
#include "app/panels/PositionDisplay.h"
#include "app/panels/SongSlider.h"
#include "app/panels/StatusBar.h"
#include "app/panels/TempoPanel.h"
#include "app/panels/TransportPanel.h"
#include "app/panels/TransposePanel.h"
#include "app/panels/WindowSwitches.h"

namespace Sonarello {

namespace {

constexpr int RegularFrom = 860;  ///< client height at 100 % from which the desk is regular

/// Heights of the rows at 100 %.
struct TRows {
  int Menu, Transport, Slider, Controller, EffectCell, EffectGap, Lyrics, Status, Gap;
};
constexpr TRows Regular{28, 72, 30, 76, 36, 4, 82, 24, 8};
constexpr TRows Compact{28, 62, 28, 64, 34, 3, 56, 24, 6};
constexpr int Margin = 8;

}  // namespace

bool TMainForm::IsCompact() const { return height() < metrics().px(RegularFrom); }

void TMainForm::BuildPanels() {
  content = new QWidget(this);
  content->setObjectName(QStringLiteral("Desk"));
  setCentralWidget(content);
  banner = new Banner(content);
  transport = new TransportPanel(content);
  display = new PositionDisplay(content);
  tempo = new TempoPanel(content);
  transposePanel = new TransposePanel(content);
  filePanel = new FilePanel(content);
  slider = new SongSlider(content);
  stripRow = new StripRow(content);
  controller = new ControllerPanel(content);
  effectRow = new EffectRow(content);
  lyricBar = new LyricBar(content);
  status = new StatusBar(content);
  loopPanel = new LoopPanel(content);
  card = new DropCard(content);
  banner->hide();
}

void TMainForm::Arrange() {
  if (content == nullptr) return;
  const bool compact = IsCompact();
  const TRows& rows = compact ? Compact : Regular;
  const Density density = compact ? Density::Compact : Density::Regular;
  for (Panel* panel :
       std::initializer_list<Panel*>{transport, display, tempo, transposePanel, filePanel, slider,
                                     controller, effectRow, lyricBar, status})
    panel->SetDensity(density);
  stripRow->setCompact(compact);

  const Metrics& m = metrics();
  const int left = m.px(Margin);
  const int width = content->width() - 2 * left;
  const int gap = m.px(rows.Gap);
  int top = gap;
  if (!banner->isHidden()) {
    const int height = banner->heightForWidth(width);
    banner->setGeometry(left, top, width, height);
    top += height + gap;
  }
  ArrangeTransport(left, top, width, m.px(rows.Transport), gap);
  top += m.px(rows.Transport) + gap;
  slider->setGeometry(left, top, width, m.px(rows.Slider));
  // The panel of the loop lies over what is below the slider; it knows how high it is.
  loopPanel->setGeometry(left, slider->geometry().bottom() + 1, loopPanel->sizeHint().width(),
                         loopPanel->height());
  top += m.px(rows.Slider) + gap;

  int bottom = content->height() - m.px(rows.Status);
  status->setGeometry(0, bottom, content->width(), m.px(rows.Status));
  const auto stack = [&](QWidget& panel, int height) {
    if (panel.isHidden()) return;
    bottom -= gap + height;
    panel.setGeometry(left, bottom, width, height);
  };
  stack(*lyricBar, m.px(rows.Lyrics));
  const int effectHeight =
      m.px(rows.EffectCell) * effectRow->Rows() + m.px(rows.EffectGap) * (effectRow->Rows() - 1);
  stack(*effectRow, effectHeight);
  stack(*controller, m.px(rows.Controller));
  stripRow->setGeometry(left, top, width, bottom - gap - top);
  PlaceCard();
}

void TMainForm::ArrangeTransport(int left, int top, int width, int height, int gap) {
  int x = left;
  for (QWidget* panel : std::initializer_list<QWidget*>{transport, display, tempo, transposePanel}) {
    const int wide = panel->sizeHint().width();
    panel->setGeometry(x, top, wide, height);
    x += wide + gap;
  }
  filePanel->setGeometry(x, top, left + width - x, height);
}

void TMainForm::PlaceCard() {
  const QSize size = card->sizeHint();
  card->setGeometry((content->width() - size.width()) / 2, (content->height() - size.height()) / 2,
                    size.width(), size.height());
  card->raise();
}

void TMainForm::SetTabOrder() {
  QWidget* before = switches;
  for (QWidget* next : std::initializer_list<QWidget*>{transport, slider, tempo, transposePanel,
                                                       stripRow, controller, effectRow, lyricBar}) {
    setTabOrder(before, next);
    before = next;
  }
}

void TMainForm::resizeEvent(QResizeEvent* event) {
  QMainWindow::resizeEvent(event);
  Arrange();
}

void TMainForm::changeEvent(QEvent* event) {
  QMainWindow::changeEvent(event);
  if (AppearanceChanged(*event)) Arrange();
}

}  // namespace Sonarello
