// Sonarello: the wishes for a new song.
#pragma once

#include <QDialog>
#include <optional>

#include "tools/NewMidiData.h"

class QComboBox;
class QSpinBox;

namespace Sonarello {

/// Asks for time base, signature and tempo of a new song.
class TNewMidiDataForm : public QDialog {
  Q_OBJECT

 public:
  explicit TNewMidiDataForm(QWidget* parent);
  [[nodiscard]] TNewSong Wishes() const;

 private:
  QComboBox* timeBase;
  QComboBox* signature;
  QSpinBox* tempo;
};

}  // namespace Sonarello
