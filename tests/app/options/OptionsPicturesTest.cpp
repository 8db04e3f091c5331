// Pictures of every page for the eye, and what can be measured of them: nothing is clipped.
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QCheckBox>
#include <QLabel>

#include "app/Application.h"
#include "app/controls/Metrics.h"
#include "app/controls/Theme.h"
#include "app/options/OptionsBench.h"
#include "app/options/OptionsForm.h"
#include "app/options/OptionsPage.h"
#include "core/Texts.h"

namespace Sonarello {
namespace {

struct TLook {
  bool german;
  ThemeKind theme;
  int percent;
};

class Looks : public testing::TestWithParam<TLook> {
 protected:
  void SetUp() override {
    GermanLanguage = GetParam().german;
    SetTheme(GetParam().theme);
    SetScale(GetParam().percent);
  }
  void TearDown() override {
    GermanLanguage = false;
    SetTheme(ThemeKind::Dark);
    SetScale(100);
  }
  [[nodiscard]] static QString Name(int page) {
    const TLook& look = GetParam();
    return QStringLiteral("settings_%1_%2_%3_%4")
        .arg(page)
        .arg(look.german ? QStringLiteral("de") : QStringLiteral("en"),
             look.theme == ThemeKind::Dark ? QStringLiteral("dark") : QStringLiteral("light"))
        .arg(look.percent);
  }
};

/// What a text needs beyond what it has, in pixels; 0 if it fits.
int Missing(const QWidget& widget) {
  if (const auto* label = qobject_cast<const QLabel*>(&widget)) {
    if (label->wordWrap()) return std::max(0, label->heightForWidth(label->width()) - label->height());
    return std::max(0, label->sizeHint().width() - label->width());
  }
  if (const auto* button = qobject_cast<const QAbstractButton*>(&widget))
    return std::max(0, button->sizeHint().width() - button->width());
  return 0;
}

TEST_P(Looks, NothingIsClipped) {
  MemorySettings store;
  TOptionsForm form(store);
  form.SetInput(Demo());
  ShowForTest(form);
  for (const bool least : {true, false}) {
    const QSize size = least ? form.minimumSize() : QSize(metrics().px(1000), metrics().px(688));
    form.resize(size);
    for (int page = 0; page < OptionPageCount; ++page) {
      form.ShowPage(static_cast<TOptionPage>(page));
      QCoreApplication::processEvents();
      for (const QWidget* widget : form.findChildren<QWidget*>())
        if (widget->isVisible()) {
          EXPECT_EQ(Missing(*widget), 0) << widget->accessibleName().toStdString() << " on page "
                                         << page << " at " << form.width();
        }
      if (!least) {
        EXPECT_TRUE(SaveScreenshot(form, Name(page)));
      }
    }
  }
  form.ShowPage(TOptionPage::Options);
  form.resize(metrics().px(1000), metrics().px(1100));
  QCoreApplication::processEvents();
  EXPECT_TRUE(SaveScreenshot(form, Name(0) + QStringLiteral("_tall")));
}

INSTANTIATE_TEST_SUITE_P(
    All, Looks,
    testing::Values(TLook{true, ThemeKind::Dark, 100}, TLook{false, ThemeKind::Dark, 100},
                    TLook{true, ThemeKind::Light, 100}, TLook{false, ThemeKind::Light, 150},
                    TLook{true, ThemeKind::Dark, 150}, TLook{true, ThemeKind::Light, 180},
                    TLook{false, ThemeKind::Dark, 120}),
    [](const auto& each) {
      return std::string(each.param.german ? "German" : "English") +
             (each.param.theme == ThemeKind::Dark ? "Dark" : "Light") +
             std::to_string(each.param.percent);
    });

}  // namespace
}  // namespace Sonarello
