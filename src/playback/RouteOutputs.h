// Sonarello: the outputs of the routes: ports of the system and hosted instruments.
#pragma once

#include <memory>
#include <vector>

#include "core/Ports.h"
#include "playback/MidiDriver.h"
#include "playback/MidiOut.h"
#include "playback/Outputs.h"
#include "playback/VSTInstruments.h"

namespace Sonarello {

/// A port for each route that is no hosted instrument (`MidiOutputArray`), made when the routes were
/// built and opened when they are needed. Messages may come from several threads.
class TRouteOutputs : public IOutputs {
 public:
  TRouteOutputs(IMidiDriver& d, const IRoutes& r, TVSTInstruments* h) : driver(d), routes(r), host(h) {}

  /// The routes are new: ports are made for them, closed. Not while anything is sent.
  void RoutesBuilt();

  bool OpenAll() override;
  bool Open(int route) override;
  [[nodiscard]] bool IsOpen(int route) const override;
  void CloseAll() override;
  void SendShort(int route, std::uint8_t status, std::uint8_t data1, std::uint8_t data2) override;
  void SendLong(int route, std::span<const std::uint8_t> message) override;

 private:
  [[nodiscard]] const TMidiRouting* RouteAt(int route) const;
  [[nodiscard]] TMidiOutput* PortOf(int route) const;

  IMidiDriver& driver;
  const IRoutes& routes;
  TVSTInstruments* host;                                      ///< nil: no hosted instruments
  std::vector<std::unique_ptr<TMidiOutput>> MidiOutputArray;  ///< by route; nil for a hosted one
};

}  // namespace Sonarello
