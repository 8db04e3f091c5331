// Sonarello: nodes that stand outside a song's lists for a while.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "core/EventPool.h"

namespace Sonarello {

/// Makes nodes from a song's pool and gives them back when it goes.
/// Each function raises EMidiError when there is no memory; the German text tells the site.
class OwnNodes {
 public:
  explicit OwnNodes(EventPool& p) : pool(p) {}
  OwnNodes(const OwnNodes&) = delete;
  OwnNodes& operator=(const OwnNodes&) = delete;
  OwnNodes(OwnNodes&&) = delete;
  OwnNodes& operator=(OwnNodes&&) = delete;
  ~OwnNodes();

  /// A track head.
  PtrMidiEvent Head();
  /// A meta event at tick 0.
  PtrMidiEvent Meta(int type, std::string_view text);
  /// A sysex at tick 0; `bytes` stand behind the 0xF0.
  PtrMidiEvent Sysex(std::span<const std::uint8_t> bytes);
  /// A meta event like `event` with another text.
  PtrMidiEvent Renamed(const TypMidiEvent& event, std::string_view text);

 private:
  template <class F>
  PtrMidiEvent Keep(F&& make);

  EventPool& pool;
  std::vector<PtrMidiEvent> nodes;
};

}  // namespace Sonarello
