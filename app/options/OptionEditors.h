// The controls of the settings window, one for each option.
#pragma once

#include <QComboBox>
#include <QLabel>
#include <QString>
#include <QWidget>
#include <functional>
#include <string>

#include "desk/OptionsEdit.h"
#include "desk/OptionsEditFields.h"

namespace Sonarello {

/// An option on its page.
struct OptionRow {
  const TOptionField* Field = nullptr;
  QWidget* Editor = nullptr;
  QLabel* Caption = nullptr;  ///< left of it; a check box has its text itself
  QLabel* Unit = nullptr;     ///< right of it
  double Width = 0;           ///< of the editor, pixels at 100 %; 0: its own
  std::function<void(const OptionsEdit&)> ShowValue;
};

/// Called when the user has set an option: its key and its new value as stored.
using OptionSet = std::function<void(std::string_view key, const std::string& value)>;

/// Makes the control of an option.
[[nodiscard]] OptionRow MakeOptionRow(const TOptionField& field, QWidget* parent, OptionSet set);

/// Shows an option's value, whether it can be used, and what it does.
void RefreshOptionRow(const OptionRow& row, const OptionsEdit& edit);

/// A tool tip whose lines break where they must.
[[nodiscard]] QString TipText(const std::string& text);

/// Shows a combo box's choices, the catalogue or connected outputs, and the chosen one.
void FillCombo(QComboBox& combo, const std::vector<std::string>& names, const std::string& chosen);
/// The instruments of the catalogue in its order.
[[nodiscard]] const std::vector<std::string>& InstrumentNames();

}  // namespace Sonarello
