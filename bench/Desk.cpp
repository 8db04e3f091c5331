#include "Desk.h"

#include "Measure.h"
#include "desk/Strips.h"

namespace Sonarello::Bench {

double MeasureFader(const TStripsParts& parts) {
  constexpr int moves = 200'000;
  TStrips strips(parts);
  strips.SongChanged();
  return Seconds([&] {
           for (int i = 0; i < moves; ++i)
             strips.Moves.TB_Volume00Change(i % ChannelCount, i % (ControllerCount - 1));
         }) /
         moves;
}

}  // namespace Sonarello::Bench
