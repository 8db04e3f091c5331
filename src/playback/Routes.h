// Sonarello: the outputs that a song plays through.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "core/Ports.h"
#include "core/Settings.h"
#include "core/Song.h"

namespace Sonarello {

/// One known output: a port of the system or a hosted instrument.
struct TDeviceList {
  int DeviceID = 0;  ///< device number, or slot of the hosted instrument
  std::string Name;
  bool VSTi = false;
  std::uint32_t VSTiHandle = 0;
  std::int32_t VSTiUniqueID = 0;
};

/// A slot of the host as routes see it; empty without a name.
struct TInstrumentSlot {
  std::string Name;  ///< as the user sees it
  std::uint32_t Handle = 0;
  std::int32_t UniqueID = 0;
  int MidiRoutingIdx = -1;  ///< its route, -1 if none; set when routes are built

  [[nodiscard]] bool IsFilled() const noexcept { return !Name.empty(); }
};

/// The list of outputs that the user chooses from: the ports by their names, in the order of an index
/// in a book (case does not count), then the hosted instruments by their slots.
[[nodiscard]] std::vector<TDeviceList> OutDevices(std::span<const std::string> portNames,
                                                  std::span<const TInstrumentSlot> slots);

/// What the user is told at start if nothing can sound; nothing if something can.
/// `portCount` is how many outputs the system counts, `devices` the list that came out.
[[nodiscard]] std::optional<std::string> NoPlaybackText(std::size_t portCount,
                                                        std::span<const TDeviceList> devices);

inline constexpr int MostRoutes = 100;

/// The routes. Route 0 is the main instrument. There is always one, "Virtual MIDI" if nothing else.
/// Everything here runs on the main thread; whoever builds the routes while a player's thread lives
/// holds the song's gate, as the thread reads them.
class TRoutes : public IRoutes {
 public:
  TRoutes();

  /// The live routes.
  [[nodiscard]] std::span<const TMidiRouting> MidiRouting() const override {
    return std::span(live).first(static_cast<std::size_t>(elements));
  }
  [[nodiscard]] int MidiRouteElements() const noexcept { return elements; }
  /// The routes as the settings have them: instrument and output name; empty ones are no routes.
  std::array<TMidiRouting, MostRoutes> MidiRouteLoad;

  /// Reads `MidiRouteLoad`: all of it with several routes (`MultiMidi`), else the first alone. Without
  /// a main instrument the first one of the catalogue is it. Former names become the current ones.
  void LoadSettings(const ISettings& settings, bool MultiMidi);
  /// Writes `MidiRouteLoad`. Without several routes the further ones stay as they are stored.
  void StoreSettings(ISettings& settings, bool MultiMidi) const;

  /// Builds the live routes from `MidiRouteLoad` and what there is, ports first closed through
  /// `ClosePorts`. Sets `MidiRoutingIdx` of the slots. `AudioTotalLatencyTime` (ms) is how much earlier
  /// hosted instruments are played. Tells `RoutesBuilt`, when ports may be made for the new routes.
  void Build(std::span<const TDeviceList> devices, std::span<TInstrumentSlot> slots,
             std::int32_t AudioTotalLatencyTime);

  /// Sets how many ms earlier a route is played, and the delay of the tracks of its channels.
  void SetDelay(Song& song, int route, std::int32_t delay);

  /// Finds out whether the channels use hosted instruments.
  void UpdateVSTiUse(const Song& song);
  std::atomic<bool> VSTiOnly = false;   ///< every channel plays on a hosted instrument
  std::atomic<bool> VSTiInUse = false;  ///< a channel does
  bool MidiDriverReady = false;         ///< routes were built

  std::function<void()> ClosePorts;
  std::function<void()> RoutesBuilt;

 private:
  TMidiRouting* Append();
  void AppendStored(const TMidiRouting& stored, std::span<const TDeviceList> devices,
                    std::span<TInstrumentSlot> slots, std::int32_t latency);
  void AppendSlots(std::span<TInstrumentSlot> slots, std::int32_t latency);
  void AppendFallback(std::span<const TDeviceList> devices, std::int32_t latency);
  void AppendVirtual();
  void UseMainInstrument(TMidiRouting& route) const;

  /// All places keep what they held when the routes are built anew, as an instrument of an unknown name
  /// leaves the number of its place alone.
  std::array<TMidiRouting, MostRoutes> live;
  int elements = 0;
};

/// Index of the route that a channel (0-15) plays on; 0 if its own is gone.
[[nodiscard]] std::size_t RouteOfChannel(const Song& song, std::span<const TMidiRouting> routes,
                                         int channel) noexcept;

}  // namespace Sonarello
