#include "app/controls/StripRow.h"

#include <algorithm>

#include "app/controls/GroupColumn.h"
#include "app/controls/StripBank.h"
#include "app/controls/Theme.h"

namespace Sonarello {

StripRow::StripRow(QWidget* parent)
    : QWidget(parent), column(new GroupColumn(this)), strips(new StripBank(this)) {
  column->setSongLoaded(false);
  connect(column, &GroupColumn::allSoloOff, strips, &StripBank::allSoloOff);
  connect(column, &GroupColumn::allMuteOff, strips, &StripBank::allMuteOff);
}

ChannelStrip& StripRow::strip(int channel) const { return strips->strip(channel); }

void StripRow::setView(int channel, const StripView& view) {
  strips->setView(channel, view);
  column->setSongLoaded(view.Song);
}

void StripRow::setNoSong() {
  for (int channel = 0; channel < StripBank::Strips; ++channel)
    setView(channel, {.Channel = channel, .WireChannel = channel, .Song = false});
}

void StripRow::setLevels(std::span<const int> levels) {
  const int count = std::min(int(levels.size()), StripBank::Strips);
  for (int channel = 0; channel < count; ++channel)
    strip(channel).setLevel(levels[static_cast<std::size_t>(channel)]);
}

void StripRow::setMetersShown(bool shown) {
  for (int channel = 0; channel < StripBank::Strips; ++channel) strip(channel).setMeterShown(shown);
}

void StripRow::setLinked(bool linked) { column->setLinked(linked); }

void StripRow::setCompact(bool on) {
  if (on == compact) return;
  compact = on;
  layOut();
  updateGeometry();
}

QSize StripRow::minimumSizeHint() const {
  return {StripRowPlan::LeastWidth(compact), StripPlan::LeastHeight(compact)};
}

QSize StripRow::sizeHint() const { return minimumSizeHint(); }

void StripRow::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  layOut();
}

void StripRow::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (AppearanceChanged(*event)) layOut();
}

void StripRow::layOut() {
  const StripRowPlan plan{width(), compact};
  column->setCompact(compact);
  column->setGeometry(plan.group(height()));
  const int left = plan.strip(0, height()).left();
  strips->setGeometry(left, 0, width() - left, height());
  for (int channel = 0; channel < StripBank::Strips; ++channel) {
    strip(channel).setCompact(compact);
    strip(channel).setGeometry(plan.strip(channel, height()).translated(-left, 0));
  }
}

}  // namespace Sonarello
