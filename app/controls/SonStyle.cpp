#include "app/controls/SonStyle.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QHeaderView>
#include <QPainterPath>
#include <QStyleFactory>
#include <QStyleOption>

#include "app/controls/Control.h"
#include "app/controls/FocusRing.h"
#include "app/controls/Icons.h"
#include "app/controls/Painting.h"
#include "app/controls/StyleParts.h"

namespace Sonarello {
namespace {

struct MetricRow {
  QStyle::PixelMetric metric;
  double length;  // pixels at 100 %
};

constexpr std::array metricRows{
    MetricRow{QStyle::PM_ButtonIconSize, 14},
    MetricRow{QStyle::PM_SmallIconSize, 16},
    MetricRow{QStyle::PM_ListViewIconSize, 16},
    MetricRow{QStyle::PM_LargeIconSize, 32},
    MetricRow{QStyle::PM_MessageBoxIconSize, 32},
    MetricRow{QStyle::PM_TabBarIconSize, 14},
    MetricRow{QStyle::PM_ToolBarIconSize, 16},
    MetricRow{QStyle::PM_ButtonMargin, 12},
    MetricRow{QStyle::PM_ButtonDefaultIndicator, 0},
    MetricRow{QStyle::PM_ButtonShiftHorizontal, 0},
    MetricRow{QStyle::PM_ButtonShiftVertical, 0},
    MetricRow{QStyle::PM_MenuButtonIndicator, 20},
    MetricRow{QStyle::PM_IndicatorWidth, 16},
    MetricRow{QStyle::PM_IndicatorHeight, 16},
    MetricRow{QStyle::PM_ExclusiveIndicatorWidth, 16},
    MetricRow{QStyle::PM_ExclusiveIndicatorHeight, 16},
    MetricRow{QStyle::PM_CheckBoxLabelSpacing, 8},
    MetricRow{QStyle::PM_RadioButtonLabelSpacing, 8},
    MetricRow{QStyle::PM_ScrollBarExtent, 14},
    MetricRow{QStyle::PM_ScrollBarSliderMin, 32},
    MetricRow{QStyle::PM_ScrollView_ScrollBarSpacing, 0},
    MetricRow{QStyle::PM_ScrollView_ScrollBarOverlap, 0},
    MetricRow{QStyle::PM_LayoutLeftMargin, 12},
    MetricRow{QStyle::PM_LayoutTopMargin, 12},
    MetricRow{QStyle::PM_LayoutRightMargin, 12},
    MetricRow{QStyle::PM_LayoutBottomMargin, 12},
    MetricRow{QStyle::PM_LayoutHorizontalSpacing, 8},
    MetricRow{QStyle::PM_LayoutVerticalSpacing, 8},
    MetricRow{QStyle::PM_HeaderMargin, 3},
    MetricRow{QStyle::PM_HeaderMarkSize, 12},
    MetricRow{QStyle::PM_HeaderDefaultSectionSizeVertical, 24},
    MetricRow{QStyle::PM_HeaderGripMargin, 4},
    MetricRow{QStyle::PM_MenuHMargin, 0},
    MetricRow{QStyle::PM_MenuVMargin, 4},
    MetricRow{QStyle::PM_MenuBarItemSpacing, 0},
    MetricRow{QStyle::PM_MenuBarHMargin, 0},
    MetricRow{QStyle::PM_MenuBarVMargin, 0},
    MetricRow{QStyle::PM_MenuBarPanelWidth, 0},
    MetricRow{QStyle::PM_TabBarTabHSpace, 24},
    MetricRow{QStyle::PM_TabBarTabVSpace, 12},
    MetricRow{QStyle::PM_TabBarTabOverlap, 0},
    MetricRow{QStyle::PM_TabBarBaseOverlap, 0},
    MetricRow{QStyle::PM_TabBarTabShiftVertical, 0},
    MetricRow{QStyle::PM_ToolTipLabelFrameWidth, 6},
    MetricRow{QStyle::PM_SplitterWidth, 6},
    MetricRow{QStyle::PM_SliderThickness, 18},
    MetricRow{QStyle::PM_SliderControlThickness, 18},
    MetricRow{QStyle::PM_SliderLength, 12},
    MetricRow{QStyle::PM_ProgressBarChunkWidth, 1},
};

bool IsFrameWidth(QStyle::PixelMetric metric) {
  return metric == QStyle::PM_DefaultFrameWidth || metric == QStyle::PM_MenuPanelWidth ||
         metric == QStyle::PM_ComboBoxFrameWidth || metric == QStyle::PM_SpinBoxFrameWidth;
}

/// The rounded outline of a popup, for platforms that cannot blend windows.
bool RoundMask(const QStyleOption* option, double radius, QStyleHintReturn* result) {
  auto* mask = qstyleoption_cast<QStyleHintReturnMask*>(result);
  if (mask == nullptr || option == nullptr) return false;
  QPainterPath outline;
  outline.addRoundedRect(option->rect, radius, radius);
  mask->region = QRegion(outline.toFillPolygon().toPolygon());
  return true;
}

}  // namespace

SonStyle::SonStyle() : QProxyStyle(QStyleFactory::create(QStringLiteral("Fusion"))) {}

void SonStyle::polish(QPalette& palette) { palette = PaletteOf(th()); }

void SonStyle::polish(QWidget* widget) {
  QProxyStyle::polish(widget);
  if (auto* view = qobject_cast<QAbstractItemView*>(widget))
    view->viewport()->setAttribute(Qt::WA_Hover);
  if (auto* head = qobject_cast<QHeaderView*>(widget);
      head != nullptr && head->orientation() == Qt::Horizontal)
    head->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
}

void SonStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                             const QWidget* widget) const {
  const bool done = StyleButtons::Primitive(element, *option, *painter) ||
                    StyleFields::Primitive(element, *option, *painter, widget) ||
                    StyleLists::Primitive(element, *option, *painter, widget) ||
                    StyleMenus::Primitive(element, *option, *painter);
  if (!done) QProxyStyle::drawPrimitive(element, option, painter, widget);
}

void SonStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                           const QWidget* widget) const {
  if (element == CE_FocusFrame) {
    PaintFocusRing(*painter, option->rect, metrics().f(4 + 3));
    return;
  }
  const bool done = StyleButtons::Control(element, *option, *painter, *this) ||
                    StyleFields::Control(element, *option, *painter, *this) ||
                    StyleLists::Control(element, *option, *painter, widget) ||
                    StyleMenus::Control(element, *option, *painter);
  if (!done) QProxyStyle::drawControl(element, option, painter, widget);
}

void SonStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                  QPainter* painter, const QWidget* widget) const {
  const bool done = StyleFields::Complex(control, *option, *painter, *this) ||
                    StyleLists::Complex(control, *option, *painter, *this, widget);
  if (!done) QProxyStyle::drawComplexControl(control, option, painter, widget);
}

QRect SonStyle::subElementRect(SubElement element, const QStyleOption* option,
                               const QWidget* widget) const {
  if (element == SE_LineEditContents) {
    const int side = metrics().px(8), border = metrics().px(2);
    return option->rect.adjusted(side, border, -side, -border);
  }
  if (element == SE_HeaderLabel)
    return option->rect.adjusted(metrics().px(10), 0, -metrics().px(10), 0);
  return QProxyStyle::subElementRect(element, option, widget);
}

QRect SonStyle::subControlRect(ComplexControl control, const QStyleOptionComplex* option,
                               SubControl part, const QWidget* widget) const {
  if (const auto rect = StyleFields::Part(control, *option, part)) return *rect;
  if (const auto rect = StyleLists::Part(control, *option, part)) return *rect;
  return QProxyStyle::subControlRect(control, option, part, widget);
}

QSize SonStyle::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                                 const QWidget* widget) const {
  if (const auto size = StyleButtons::Size(type, *option, contents, widget)) return *size;
  if (const auto size = StyleFields::Size(type, *option, contents)) return *size;
  if (const auto size = StyleMenus::Size(type, *option, contents)) return *size;
  const QSize below = QProxyStyle::sizeFromContents(type, option, contents, widget);
  return StyleLists::Size(type, *option, below, widget).value_or(below);
}

int SonStyle::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const {
  if (metric == PM_FocusFrameHMargin || metric == PM_FocusFrameVMargin) {
    // The same name means the ring's way out of its widget and a text's way into its cell.
    if (qobject_cast<const QAbstractItemView*>(widget) == nullptr) return metrics().px(4);
    return metric == PM_FocusFrameHMargin ? metrics().px(10) - 1 : metrics().px(2);
  }
  if (IsFrameWidth(metric)) return metrics().hair();
  for (const MetricRow& row : metricRows)
    if (row.metric == metric) return metrics().px(row.length);
  return QProxyStyle::pixelMetric(metric, option, widget);
}

QIcon SonStyle::standardIcon(StandardPixmap pixmap, const QStyleOption* option,
                             const QWidget* widget) const {
  switch (pixmap) {
    case SP_MessageBoxCritical: return SignIcon(Sign::Error);
    case SP_MessageBoxWarning: return SignIcon(Sign::Warning);
    case SP_MessageBoxQuestion: return SignIcon(Sign::Question);
    case SP_MessageBoxInformation: return SignIcon(Sign::Information);
    default: return QProxyStyle::standardIcon(pixmap, option, widget);
  }
}

int SonStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                        QStyleHintReturn* result) const {
  switch (hint) {
    case SH_Menu_Mask: return RoundMask(option, metrics().f(6), result);
    case SH_ToolTip_Mask: return RoundMask(option, metrics().f(4), result);
    case SH_ToolTip_WakeUpDelay: return 500;
    case SH_ToolTipLabel_Opacity: return 255;
    case SH_ComboBox_Popup: return 0;
    case SH_ComboBox_ListMouseTracking: return 1;
    case SH_UnderlineShortcut:
    case SH_EtchDisabledText:
    case SH_DitherDisabledText: return 0;
    case SH_ScrollBar_Transient:
    case SH_ScrollBar_ContextMenu: return 0;
    case SH_ItemView_ShowDecorationSelected: return 1;
    case SH_ItemView_ActivateItemOnSingleClick: return 0;
    case SH_Table_GridLineColor: return int(th().line.rgba());
    case SH_Widget_Animation_Duration: return 0;
    case SH_FocusFrame_AboveWidget: return 1;
    case SH_FocusFrame_Mask: return 0;
    case SH_Slider_AbsoluteSetButtons: return Qt::LeftButton;
    default: return QProxyStyle::styleHint(hint, option, widget, result);
  }
}

void DressApplication(QApplication& application) {
  QApplication::setStyle(new SonStyle);
  QApplication::setWindowIcon(ApplicationIcon());
  ApplyAppearance();
  new FocusRing(&application);
  InstallControlAccessibility();
}

}  // namespace Sonarello
