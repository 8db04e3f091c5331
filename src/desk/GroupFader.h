// Sonarello: the spring-loaded fader that moves all others in proportion.
#pragma once

#include "desk/StripsMoves.h"

namespace Sonarello {

/// `TB_MasterVol`. It rests at 0; what it shows on its way back moves nothing.
class TGroupFader {
 public:
  TGroupFader(TStripsDesk& d, TStripsMoves& m) : desk(d), moves(m) {}

  /// It is taken: remembers where all faders stand and which one is the loudest.
  void TB_MasterVolMouseDown();
  /// It is dragged to a position, -127 to 127 from its rest.
  void TB_MasterVolChange(int position);
  /// It is let go and returns to its rest.
  void TB_MasterVolMouseUp() { held = false; }

  [[nodiscard]] bool IsHeld() const { return held; }
  /// The channel (0-15) that was the loudest when the fader was taken; -1 if no channel has events.
  [[nodiscard]] int Tag() const { return loudest; }

 private:
  TStripsDesk& desk;
  TStripsMoves& moves;
  bool held = false;
  int loudest = -1;
};

}  // namespace Sonarello
