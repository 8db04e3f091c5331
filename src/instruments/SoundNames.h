// Sonarello: the sounds of a song's channels, named and mended in their instruments' terms.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "core/ChannelStock.h"
#include "core/Options.h"
#include "core/Ports.h"
#include "instruments/Naming.h"

namespace Sonarello {

/// What a channel strip shows of its sound.
struct TStripText {
  std::string Prefix;  ///< "Ch 01 - "
  std::string Name;    ///< for a label: the first "&" is doubled
  std::string Hint;    ///< the two bank selects
};

/// A sound change of a song that did not fit its instrument.
struct TSoundFinding {
  int Channel = 0;            ///< 0-15
  std::int32_t Position = 0;  ///< ticks
  TAddress Asked;             ///< as the song had it
  TAddress Given;             ///< as the song has it now
  std::string Name;           ///< how it is named now
  bool Mended = false;        ///< else it stays unknown to the instrument

  friend bool operator==(const TSoundFinding&, const TSoundFinding&) = default;
};

/// Names the sounds of one song. The tables belong to the instruments of the channels' routes; those of
/// an instrument that is not in use are missing, and the name is then "???".
class TSoundNames {
 public:
  TSoundNames(Song& s, const SoundSets& t, const Options& o, const IRoutes& r)
      : song(s), sets(t), options(o), routes(r) {}

  /// Name of the channel's (0-15) current sound; "???" without program. With `AutoProgChange` a sound
  /// that the instrument does not have is mended in the song: values and events of the channel.
  std::string PatchName(int channel);
  /// The same name without a change to the song.
  [[nodiscard]] std::string CurrentName(int channel) const;
  /// Name of a sound change anywhere on a channel; never writes.
  [[nodiscard]] std::string ProgramChangeName(int channel, const TAddress& address) const;
  /// What the channel's strip shows; a channel out of use or without program has no name.
  [[nodiscard]] TStripText DisplayPatchName(int channel);
  /// The two bank selects of a channel, a line each.
  [[nodiscard]] std::string BankHint(int channel) const;

  /// Gives a channel without sound program 0 and its two bank selects: the program at
  /// `position` + 4 ticks a channel, LSB and MSB 2 and 4 ticks in front. An event in front of the
  /// track's first one is left out. False if no track serves the channel. Raises EMidiError.
  bool InsertPatch(int channel, std::int32_t position);
  /// Writes an address to the channel's values and events; bank selects that had been dropped live
  /// again. Numbers of -1 stay, as does what has no event.
  void UpdateMSB_LSB_PC(int channel, const TAddress& address);

  /// Bank MSB and LSB that a sound change without them means.
  [[nodiscard]] TBank MissingBank(int channel) const;
  /// Brings the song's bank selects into the instruments' terms before they are read. LSB 0 of GS
  /// instruments becomes the chosen default map; drum banks of other instruments become the
  /// instrument's own; a channel 10 of bank 0 becomes drums where the bank alone decides, unless the
  /// song was made for XG.
  void AdaptBanks(const TProgramIndex& programs);
  /// Decides which channels play drums and numbers their drum parts: 1 to 3, channel 10 first.
  void DecideDrumParts();
  /// Names every channel in use once, which mends what is to be mended.
  void NameAll();

  /// Sound changes that do not fit, in the order of channels and positions: those that `PatchName`
  /// mended since the song was opened, and all that stay unknown.
  [[nodiscard]] std::vector<TSoundFinding> Findings() const;
  /// Forgets what was mended; for the next song.
  void ForgetFindings() { mended.clear(); }

  /// Sets the hooks of the open and save pipelines that names have a part in.
  void Wire(SongHooks& hooks);

 private:
  [[nodiscard]] const TMidiRouting& RouteOf(int channel) const;
  [[nodiscard]] const SoundSet* SetOf(int channel) const;
  /// The GS map that LSB 0 stands for on the channel's instrument, from 1; 0 without choice or maps.
  [[nodiscard]] int DefaultMap(int channel) const;
  void ChooseMap(const std::vector<TProgramEvent>& events, int map);
  void ChooseDrumBank(int channel, const std::vector<TProgramEvent>& events);
  void NoteAdapted(int channel, bool msb, int value);
  void NameOnOpen(int channel);
  [[nodiscard]] TNaming Naming() const;
  [[nodiscard]] TSoundQuery QueryOf(int channel) const;
  [[nodiscard]] std::string OrganFluteOf(int channel, const TSoundName& name) const;
  void LogSound(int channel, const TypMidiEvent& event);
  void LinkNew(TMyTrack& track, PtrMidiEvent event, PtrMidiEvent& entry);

  Song& song;
  const SoundSets& sets;
  const Options& options;
  const IRoutes& routes;
  std::vector<TSoundFinding> mended;
  /// Banks that channels had before they were adapted, of their first such sound; -1: as it was.
  std::array<TAddress, ChannelCount> adapted{};
};

}  // namespace Sonarello
