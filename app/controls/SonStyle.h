// The look of the standard controls: menus, buttons, fields, lists, tables, scroll bars.
#pragma once

#include <QProxyStyle>

class QApplication;

namespace Sonarello {

/// Paints standard controls in the colours of th() and the lengths of metrics().
class SonStyle : public QProxyStyle {
  Q_OBJECT

 public:
  SonStyle();

  void polish(QApplication* application) override;
  void polish(QPalette& palette) override;
  using QProxyStyle::polish;
};

/// Gives an application its style, theme and font; call it once, before the first window.
void DressApplication(QApplication& application);

}  // namespace Sonarello
