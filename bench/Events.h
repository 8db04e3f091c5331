// Sonarello: what the event list costs.
#pragma once

#include <string>

#include "core/MidiFunctions.h"

namespace Sonarello::Bench {

/// What the list works on.
struct EventParts {
  Song& song;
  const Options& options;
  const IRoutes& routes;
  IMessages& messages;
  TMidiFunctions& functions;
};

/// Seconds, each the slowest of several places in the list.
struct EventFigures {
  double Rows = 0;      ///< rows of the list
  double RowBytes = 0;  ///< that stay allocated for each of them
  double Show = 0;      ///< from nothing to the rows of the first page
  double Page = 0;      ///< texts of forty rows
  double Value = 0;     ///< an edit of a value
  double Move = 0;      ///< of a note's position, over half the list
  double Length = 0;    ///< of a note's length
  double Insert = 0;    ///< of a note
  double Delete = 0;    ///< of one note
  double Undo = 0;      ///< of that
  double Tempo = 0;     ///< an edit of a tempo
  double Find = 0;      ///< a search through the whole list, in vain
};

/// Measures the list of a track of the open song.
[[nodiscard]] EventFigures MeasureEvents(const EventParts& parts, int track);

}  // namespace Sonarello::Bench
