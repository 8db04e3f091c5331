// The controller overview: one controller of all sixteen channels side by side.
#pragma once

#include <QWidget>
#include <array>
#include <vector>

#include "core/Data.h"
#include "desk/ControllerOverview.h"

class QComboBox;
class QLabel;
class QPushButton;

namespace Sonarello {

class ControllerColumn;
class EditorStatus;

class TControllerForm : public QWidget {
  Q_OBJECT

 public:
  static constexpr int UsualWidth = 1280, UsualHeight = 420;
  static constexpr int LeastWidth = 1180, LeastHeight = 320;

  explicit TControllerForm(TControllerOverview& overview, QWidget* parent = nullptr);
  ~TControllerForm() override;

  /// Brings all columns up to date: another song, another controller.
  void ShowController();
  /// The same of one channel (0-15).
  void ShowChannel(int channel);
  [[nodiscard]] ControllerColumn& Column(int channel) const {
    return *columns[static_cast<std::size_t>(channel)];
  }
  [[nodiscard]] EditorStatus& Status() const { return *status; }
  [[nodiscard]] QSize sizeHint() const override;

  QComboBox* Panel_ControllerNumber = nullptr;  ///< the controller that is shown
  std::vector<QPushButton*> Usual;              ///< those that are wanted most, in front of the list

 Q_SIGNALS:
  void channelTouched(int channel);
  void closed();

 protected:
  void changeEvent(QEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void showEvent(QShowEvent* event) override;

 private:
  void MakeParts();
  void LayOut();
  void Arrange();
  void MidiCh00_CtrlValueChange(int channel, int value);
  void ShowStatus();

  TControllerOverview& overview;
  std::array<ControllerColumn*, ChannelCount> columns{};
  EditorStatus* status = nullptr;
  QLabel* empty = nullptr;
  int current = 0;  ///< channel that the status line tells of
};

}  // namespace Sonarello
