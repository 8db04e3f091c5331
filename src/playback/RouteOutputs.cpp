#include "playback/RouteOutputs.h"

#include <algorithm>

namespace Sonarello {

const TMidiRouting* TRouteOutputs::RouteAt(int route) const {
  const auto table = routes.MidiRouting();
  const auto index = static_cast<std::size_t>(route);
  return index < table.size() ? &table[index] : nullptr;
}

TMidiOutput* TRouteOutputs::PortOf(int route) const {
  const auto index = static_cast<std::size_t>(route);
  return index < MidiOutputArray.size() ? MidiOutputArray[index].get() : nullptr;
}

void TRouteOutputs::RoutesBuilt() {
  CloseAll();
  MidiOutputArray.clear();
  const std::vector<std::string> names = driver.OutputNames();
  for (const TMidiRouting& route : routes.MidiRouting()) {
    auto& port = MidiOutputArray.emplace_back();
    // "Virtual MIDI" stands for no device at all.
    const auto device = std::ranges::find(names, route.OutputName);
    if (route.VSTi || device == names.end()) continue;
    port = std::make_unique<TMidiOutput>(driver);
    port->SetDeviceID(static_cast<std::int32_t>(device - names.begin()));
  }
}

bool TRouteOutputs::OpenAll() {
  bool all = true;
  for (const auto& port : MidiOutputArray)
    if (port && !port->IsOpen()) all = port->Open() && all;
  return all;
}

bool TRouteOutputs::Open(int route) {
  const TMidiRouting* row = RouteAt(route);
  if (row != nullptr && row->VSTi) return true;
  TMidiOutput* port = PortOf(route);
  return port != nullptr && (port->IsOpen() || port->Open());
}

bool TRouteOutputs::IsOpen(int route) const {
  const TMidiRouting* row = RouteAt(route);
  if (row != nullptr && row->VSTi) return true;
  const TMidiOutput* port = PortOf(route);
  return port != nullptr && port->IsOpen();
}

void TRouteOutputs::CloseAll() {
  for (const auto& port : MidiOutputArray)
    if (port && port->IsOpen()) port->Close();
}

void TRouteOutputs::SendShort(int route, std::uint8_t status, std::uint8_t data1, std::uint8_t data2) {
  const TMidiRouting* row = RouteAt(route);
  if (row == nullptr) return;
  if (row->VSTi && host != nullptr) return host->SendMidiData(row->VSTiHandle, status, data1, data2);
  if (TMidiOutput* port = PortOf(route)) port->PutShort(status, data1, data2);
}

void TRouteOutputs::SendLong(int route, std::span<const std::uint8_t> message) {
  const TMidiRouting* row = RouteAt(route);
  if (row == nullptr) return;
  if (row->VSTi && host != nullptr) return host->SendSysex(row->VSTiHandle, message);
  if (TMidiOutput* port = PortOf(route)) port->PutLong(message);
}

}  // namespace Sonarello
