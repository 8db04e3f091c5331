// The table of routes: on each output an instrument.
#pragma once

#include <QCheckBox>
#include <QComboBox>
#include <QToolButton>
#include <QWidget>
#include <functional>
#include <vector>

#include "app/options/OptionGroupBox.h"

namespace Sonarello {

/// A line about a condition that lasts, as high as its text needs.
class WarningLine : public QWidget {
  Q_OBJECT

 public:
  using QWidget::QWidget;
  void SetText(const QString& value);
  [[nodiscard]] const QString& Text() const { return text; }
  [[nodiscard]] int HeightFor(int width) const;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QString text;
};

/// Rows in use have combo boxes, and so has the first free one; others say what they wait for.
class RoutesTable : public QWidget {
  Q_OBJECT

 public:
  explicit RoutesTable(QWidget* parent = nullptr);

  void Refresh(const OptionsEdit& edit);
  [[nodiscard]] int HeightFor(int width) const;

  QCheckBox* MultiMidi;
  WarningLine* Warning;
  [[nodiscard]] QComboBox* Instrument(int route) const { return rows.at(Index(route)).Instrument; }
  [[nodiscard]] QComboBox* Output(int route) const { return rows.at(Index(route)).Output; }
  [[nodiscard]] QToolButton* Remove(int route) const { return rows.at(Index(route)).Remove; }

 Q_SIGNALS:
  void MultiMidiSet(bool on);
  void InstrumentSet(int route, const QString& name);
  void OutputSet(int route, const QString& name);
  void Removed(int route);
  void HeightChanged();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  struct Row {
    QComboBox* Instrument;
    QComboBox* Output;
    QToolButton* Remove;
  };
  static std::size_t Index(int route) { return static_cast<std::size_t>(route); }
  void MakeRow();
  void RefreshRow(const OptionsEdit& edit, int route);
  void Arrange();
  [[nodiscard]] QRect Table() const;
  [[nodiscard]] QRect RowRect(int route) const;
  /// Left edge and width of a column: 0 number, 1 instrument, 2 output.
  [[nodiscard]] QRect Cell(int route, int column) const;
  void PaintRow(QPainter& painter, int route) const;

  std::vector<Row> rows;
  int shown = 0;
  int used = 0;
};

/// The panel of the routes.
class RoutesBox : public OptionGroupBox {
  Q_OBJECT

 public:
  RoutesBox(const TOptionGroupInfo& info, const OptionSet& set, QWidget* parent = nullptr);
  void RefreshRoutes(const OptionsEdit& edit);

  RoutesTable* Table;

 protected:
  [[nodiscard]] int BodyHeight(int width) const override;
};

}  // namespace Sonarello
