// A panel of the settings window: a title, options in rows and columns, a note.
#pragma once

#include <QLabel>
#include <QWidget>
#include <vector>

#include "app/options/OptionEditors.h"

namespace Sonarello {

class OptionGroupBox : public QWidget {
  Q_OBJECT

 public:
  /// Makes the options of a group; `set` is told what the user does with them.
  OptionGroupBox(const TOptionGroupInfo& info, OptionSet set, QWidget* parent = nullptr);

  void Refresh(const OptionsEdit& edit);
  /// What it needs of a width; it is as high as that at any time.
  [[nodiscard]] int HeightFor(int width) { return Arrange(width, false); }
  [[nodiscard]] const std::vector<OptionRow>& Rows() const { return rows; }
  [[nodiscard]] const QString& Title() const { return title; }

 protected:
  /// A widget below the title that is no option, over the whole width; a part of it right of the title.
  void SetBody(QWidget* widget) { body = widget; }
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;
  [[nodiscard]] virtual int BodyHeight(int width) const;

 private:
  struct Pen;  ///< where the next option goes
  int Arrange(int width, bool place);
  void PlaceCheck(const OptionRow& row, Pen& pen, bool place) const;
  void PlaceField(const OptionRow& row, Pen& pen, bool place) const;
  /// Of the options that join the row of this one, with the gaps in front of them.
  [[nodiscard]] int WidthOfJoined(const OptionRow& row) const;
  [[nodiscard]] bool InTwoColumns(int inner) const;
  void ApplyFonts();

  QString title;
  std::vector<OptionRow> rows;
  QLabel* note;
  QWidget* body = nullptr;
};

}  // namespace Sonarello
