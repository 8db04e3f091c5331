#include "app/controls/SonStyle.h"

#include <QApplication>
#include <QStyleFactory>

#include "app/controls/Icons.h"
#include "app/controls/Theme.h"

namespace Sonarello {

SonStyle::SonStyle() : QProxyStyle(QStyleFactory::create(QStringLiteral("Fusion"))) {}

void SonStyle::polish(QApplication* application) { QProxyStyle::polish(application); }

void SonStyle::polish(QPalette& palette) { palette = PaletteOf(th()); }

void DressApplication(QApplication&) {
  QApplication::setStyle(new SonStyle);
  QApplication::setWindowIcon(ApplicationIcon());
  ApplyAppearance();
}

}  // namespace Sonarello
