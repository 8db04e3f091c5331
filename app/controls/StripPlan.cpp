#include "app/controls/StripPlan.h"

#include <cmath>

#include "app/controls/Metrics.h"

namespace Sonarello {
namespace {

// Pixels at 100 %.
constexpr double sidePadding = 3, headHeight = 24, ledHeight = 22, valueHeight = 22, stepperHeight = 20;
constexpr double leastFader = 120, groupWidth = 66, leastStrip = 72;
constexpr int strips = 16;

int Gap(bool compact) { return metrics().px(compact ? 3 : 4); }

int PlateHeight(bool compact) { return metrics().px(compact ? 45 : 46); }

}  // namespace

StripPlan StripPlan::Of(const QSize& strip, bool compact) {
  const Metrics& m = metrics();
  const int border = m.hair(), gap = Gap(compact);
  const int left = border + m.px(sidePadding), width = strip.width() - 2 * left;
  StripPlan plan;
  plan.head = QRect(border, border, strip.width() - 2 * border, m.px(headHeight));
  plan.plate = QRect(left, plan.head.bottom() + 1 + gap, width, PlateHeight(compact));
  plan.leds = QRect(left, plan.plate.bottom() + 1 + gap, width, m.px(ledHeight));
  const int stepper = m.px(stepperHeight);
  plan.octave = QRect(left, strip.height() - border - gap - stepper, width, stepper);
  plan.velocity = plan.octave.translated(0, -gap - stepper);
  plan.value = QRect(left, plan.velocity.top() - gap - m.px(valueHeight), width, m.px(valueHeight));
  const int top = plan.leds.bottom() + 1 + gap;
  plan.fader = QRect(left, top, width, plan.value.top() - gap - top);
  return plan;
}

int StripPlan::LeastHeight(bool compact) {
  const Metrics& m = metrics();
  return 2 * m.hair() + m.px(headHeight) + PlateHeight(compact) + m.px(ledHeight) + m.px(leastFader) +
         m.px(valueHeight) + 2 * m.px(stepperHeight) + 7 * Gap(compact);
}

double StripRowPlan::gap() const { return Gap(compact); }

QRect StripRowPlan::group(int height) const { return QRect(0, 0, metrics().px(groupWidth), height); }

QRect StripRowPlan::strip(int channel, int height) const {
  const double first = metrics().px(groupWidth) + gap();
  const double pitch = (width - first + gap()) / strips;
  const double from = first + channel * pitch;
  const int left = int(std::lround(from)), right = int(std::lround(from + pitch - gap()));
  return QRect(left, 0, right - left, height);
}

int StripRowPlan::LeastWidth(bool compact) {
  return metrics().px(groupWidth) + strips * (Gap(compact) + metrics().px(leastStrip) - 1);
}

}  // namespace Sonarello
