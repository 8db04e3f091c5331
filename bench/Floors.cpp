#include "Floors.h"

#include <cstring>
#include <new>

namespace Sonarello::Bench {

namespace {

struct Raw {
  std::int32_t position;
  std::uint8_t status;
  std::uint8_t value[2];
  std::int8_t type;
  const std::uint8_t* payload;
  std::uint32_t length;
};

std::uint32_t ReadNumber(const std::uint8_t*& p, const std::uint8_t* end) {
  std::uint32_t value = 0;
  while (p < end) {
    const std::uint8_t byte = *p++;
    value = value << 7 | (byte & 0x7FU);
    if (byte < 0x80) break;
  }
  return value;
}

/// Reads the events of one chunk and calls take(event) for each.
template <class Take>
void WalkTrack(const std::uint8_t* p, const std::uint8_t* end, Take&& take) {
  Raw event{};
  std::uint8_t running = 0;
  while (p < end) {
    event.position += static_cast<std::int32_t>(ReadNumber(p, end));
    if (p >= end) return;
    event.status = *p;
    if (event.status < 0x80)
      event.status = running;
    else
      ++p;
    if (event.status < 0xF0) {
      running = event.status;
      const std::ptrdiff_t need = (event.status & 0xE0) == 0xC0 ? 1 : 2;
      if (end - p < need) return;
      event.value[0] = p[0];
      event.value[1] = need == 2 ? p[1] : std::uint8_t{0};
      event.type = -1;
      p += need;
    } else {
      event.type = event.status == 0xFF && p < end ? static_cast<std::int8_t>(*p++) : std::int8_t{-1};
      event.length = ReadNumber(p, end);
      if (static_cast<std::size_t>(end - p) < event.length) return;
      event.payload = p;
      p += event.length;
    }
    take(event);
  }
}

/// Calls track(first byte, end) for each chunk of the file.
template <class Track>
void WalkFile(std::span<const std::uint8_t> file, Track&& track) {
  const std::uint8_t* p = file.data() + 14;
  const std::uint8_t* const fileEnd = file.data() + file.size();
  while (fileEnd - p >= 8) {
    const std::uint32_t length = static_cast<std::uint32_t>(p[4]) << 24 |
                                 static_cast<std::uint32_t>(p[5]) << 16 |
                                 static_cast<std::uint32_t>(p[6]) << 8 | p[7];
    p += 8;
    if (static_cast<std::size_t>(fileEnd - p) < length) return;
    track(p, p + length);
    p += length;
  }
}

std::size_t NumberSize(std::uint32_t value) {
  return value < 1U << 7 ? 1 : value < 1U << 14 ? 2 : value < 1U << 21 ? 3 : value < 1U << 28 ? 4 : 5;
}

std::uint8_t* PutNumber(std::uint8_t* out, std::uint32_t value) {
  for (std::size_t i = NumberSize(value); i-- > 0;)
    *out++ = static_cast<std::uint8_t>((value >> (7 * i) & 0x7F) | (i > 0 ? 0x80 : 0));
  return out;
}

std::uint8_t* PutEvent(std::uint8_t* out, const NodeFloor::Node& node) {
  *out++ = node.status;
  if (node.kind == 1) {
    *out++ = node.value[0];
    if (node.length == 3) *out++ = node.value[1];
    return out;
  }
  if (node.status == 0xFF) *out++ = static_cast<std::uint8_t>(node.type);
  out = PutNumber(out, static_cast<std::uint32_t>(node.length));
  if (node.length > 0) std::memcpy(out, node.payload, static_cast<std::size_t>(node.length));
  return out + node.length;
}

}  // namespace

std::size_t NodeFloor::Count() const {
  std::size_t count = 0;
  WalkFile(file, [&](const std::uint8_t* p, const std::uint8_t* end) {
    WalkTrack(p, end, [&](const Raw&) { ++count; });
  });
  return count;
}

void NodeFloor::Link(std::size_t events) {
  arena.reset(static_cast<std::byte*>(std::malloc(events * sizeof(Node))));
  if (arena == nullptr) throw std::bad_alloc();
  auto* next = reinterpret_cast<Node*>(arena.get());
  WalkFile(file, [&](const std::uint8_t* p, const std::uint8_t* end) {
    Node* last = nullptr;
    heads.push_back(next);
    WalkTrack(p, end, [&](const Raw& raw) {
      Node* node = new (next++) Node{};
      node->status = raw.status;
      node->position = raw.position;
      node->type = raw.type;
      if (raw.status < 0xF0) {
        node->kind = 1;
        node->length = (raw.status & 0xE0) == 0xC0 ? 2 : 3;
        const bool silent = (raw.status & 0xF0) == 0x90 && raw.value[1] == 0;
        if (silent) node->status = static_cast<std::uint8_t>(raw.status ^ 0x10);
        node->value[0] = node->original[0] = raw.value[0];
        node->value[1] = node->original[1] = silent ? std::uint8_t{17} : raw.value[1];
      } else {
        node->kind = 2;
        node->length = static_cast<std::int32_t>(raw.length);
        node->payload = raw.payload;
      }
      node->previous = last;
      if (last != nullptr) last->next = node;
      last = node;
    });
  });
}

std::size_t NodeFloor::Write() {
  std::size_t total = 14;
  for (const Node* node : heads) {
    total += 8;
    for (std::int32_t last = 0; node != nullptr; last = node->position, node = node->next) {
      const auto length = static_cast<std::uint32_t>(node->length);
      total += NumberSize(static_cast<std::uint32_t>(node->position - last));
      total +=
          node->kind == 1 ? length : (node->status == 0xFF ? 2U : 1U) + NumberSize(length) + length;
    }
  }
  written.reset(static_cast<std::uint8_t*>(std::malloc(total)));
  if (written == nullptr) throw std::bad_alloc();
  std::uint8_t* out = written.get();
  std::memcpy(out, file.data(), 14);
  out += 14;
  for (const Node* node : heads) {
    std::uint8_t* const chunk = out;
    std::memcpy(out, "MTrk", 4);
    out += 8;
    for (std::int32_t last = 0; node != nullptr; last = node->position, node = node->next) {
      out = PutNumber(out, static_cast<std::uint32_t>(node->position - last));
      out = PutEvent(out, *node);
    }
    const auto length = static_cast<std::uint32_t>(out - chunk - 8);
    for (int i = 0; i < 4; ++i) chunk[4 + i] = static_cast<std::uint8_t>(length >> (24 - 8 * i));
  }
  return static_cast<std::size_t>(out - written.get());
}

}  // namespace Sonarello::Bench
