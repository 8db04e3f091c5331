// The column left of the strips: what moves or clears all channels together.
#pragma once

#include "app/controls/Control.h"
#include "app/controls/StripPlan.h"

namespace Sonarello {

class GroupButton;
class GroupFader;
class ValueBox;

class GroupColumn : public Control {
  Q_OBJECT

 public:
  explicit GroupColumn(QWidget* parent = nullptr);

  void setCompact(bool compact);
  void setLinked(bool linked);
  void setSongLoaded(bool loaded);

  [[nodiscard]] GroupFader& fader() const { return *spring; }
  [[nodiscard]] GroupButton& link() const { return *linkButton; }
  [[nodiscard]] GroupButton& allSoloOffButton() const { return *soloOff; }
  [[nodiscard]] GroupButton& allMuteOffButton() const { return *muteOff; }

  [[nodiscard]] Spoken spoken() const override;

 Q_SIGNALS:
  /// The group fader; its position is -127..127 from where it was taken.
  void pressed();
  void moved(int position);
  void released();
  void linkToggled(bool linked);
  void allSoloOff();
  void allMuteOff();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void layOut() override;

 private:
  void showTexts();

  StripPlan plan;
  bool compact = false, song = true;
  GroupButton* linkButton;
  GroupButton* soloOff;
  GroupButton* muteOff;
  GroupFader* spring;
  ValueBox* value;
};

}  // namespace Sonarello
