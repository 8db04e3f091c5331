#include "core/OwnNodes.h"

#include "core/EventList.h"
#include "core/Texts.h"

namespace Sonarello {

namespace {

/// Sites of the out-of-memory message; the English text has none.
std::string_view HeadSite() { return GermanLanguage ? "1066: " : ""; }
std::string_view NodeSite() { return GermanLanguage ? "1003: " : ""; }

}  // namespace

OwnNodes::~OwnNodes() {
  for (PtrMidiEvent node : nodes) pool.Release(node);
}

template <class F>
PtrMidiEvent OwnNodes::Keep(F&& make) {
  nodes.reserve(nodes.size() + 1);  // so that a node that was made is surely kept
  return nodes.emplace_back(make());
}

PtrMidiEvent OwnNodes::Head() {
  return Keep([&] {
    constexpr std::uint8_t port[] = {0};
    return NewMeta(pool, MetaPort, port, 0, HeadSite());
  });
}

PtrMidiEvent OwnNodes::Meta(int type, std::string_view text) {
  return Keep([&] { return NewMeta(pool, type, text, 0, NodeSite()); });
}

PtrMidiEvent OwnNodes::Sysex(std::span<const std::uint8_t> bytes) {
  return Keep([&] { return NewSysex(pool, bytes, 0, NodeSite()); });
}

PtrMidiEvent OwnNodes::Renamed(const TypMidiEvent& event, std::string_view text) {
  return Keep([&] { return NewMeta(pool, event.MType, text, event.Position, NodeSite()); });
}

}  // namespace Sonarello
