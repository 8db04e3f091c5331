// Sonarello: one song on its way into the bytes of one file.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "core/DeskCopy.h"
#include "core/Options.h"
#include "core/OutputTracks.h"
#include "core/OwnNodes.h"
#include "core/Ports.h"
#include "core/SmfEncoder.h"
#include "core/Song.h"
#include "core/SourceWalk.h"
#include "core/WriterMarkers.h"

namespace Sonarello {

/// Counts the bytes of every output track, then stores them into a buffer of that size. The source
/// events are walked in both passes; only what the writer adds has nodes of its own.
class FileEncoding {
 public:
  FileEncoding(Song& s, const Options& o, std::span<const TMidiRouting> table, IMessages& m,
               const SongHooks& h, const std::string& fileName, int format);

  /// The file. Raises EMidiError or std::bad_alloc.
  [[nodiscard]] std::vector<std::uint8_t> Run();

 private:
  void Prepare();
  void CountSources();
  void CountFronts();
  [[nodiscard]] std::vector<std::uint8_t> Store();
  void StoreHeader(std::uint8_t* first) const;
  void StoreTracks(std::vector<std::uint8_t>& file);

  /// Encodes each written track: `begin` makes the encoder of an output track, which then meets its
  /// source events and the End of track; `end` is told the encoder.
  template <class Begin, class End>
  void EncodeTracks(Begin&& begin, End&& end);
  template <class Begin, class End>
  void EncodeSplit(Begin&& begin, End&& end);
  template <class Sink>
  void PutFront(TrackEncoder<Sink>& encoder, const TOutputTrack& track);

  [[nodiscard]] bool HoldsEffects(std::size_t track) const noexcept {
    return track == plan.SysexTarget && !plan.Effects.empty();
  }
  [[nodiscard]] std::span<const TPlacedEvent> EffectsOf(std::size_t track) const noexcept;
  void TellWrongOrder(const TPlacedEvent& event, const TPlacedEvent& next);

  Song& song;
  const Options& options;
  IMessages& messages;
  const SongHooks& hooks;
  OwnNodes nodes;
  OutputRoutes routes;
  int instrumValue;
  DeskCopy desk;
  std::string songName;
  TOutputPlan plan;
  MergedWalk merged;  ///< of the branches that do not go track by track
  TEncoding encoding;
  TypMidiEvent endOfTrack;
  PtrMidiEvent head = nullptr;
  std::vector<std::uint64_t> sizes;  ///< bytes of each output track, without the chunk's head
  std::vector<std::size_t> order;    ///< output tracks as they stand in the file
  bool toldWrongOrder = false;
};

}  // namespace Sonarello
