// Sonarello: what reading and writing a song cost at the least.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <span>
#include <vector>

namespace Sonarello::Bench {

/// The least that an editor must do to a file: one pass over the bytes that links one node per event,
/// taken from a bump arena. No checks beyond those that keep the pass inside the bytes, no rules.
class NodeFloor {
 public:
  /// An event of the usual fields of an editor, 96 bytes.
  struct Node {
    Node* next;
    Node* previous;
    Node* noteOn;
    Node* noteOff;
    std::int32_t position;
    std::int32_t milliseconds;
    std::int32_t length;
    std::int32_t flags[3];
    std::uint8_t status;
    std::uint8_t kind;
    std::uint8_t value[2];
    std::uint8_t original[2];
    std::int8_t type;
    bool selected;
    const std::uint8_t* payload;
    std::uint8_t spare[24];
  };
  static_assert(sizeof(Node) == 96);

  explicit NodeFloor(std::span<const std::uint8_t> bytes) : file(bytes) {}

  /// Counts the events of the file, so that the arena is sized before the clock runs.
  [[nodiscard]] std::size_t Count() const;
  /// Links the nodes of at most `events` events, in an arena that is asked for here and untouched.
  void Link(std::size_t events);
  /// The linked nodes as a file again: one pass that counts bytes, one that stores them.
  [[nodiscard]] std::size_t Write();

 private:
  std::span<const std::uint8_t> file;
  std::unique_ptr<std::byte, decltype(&std::free)> arena{nullptr, &std::free};
  std::vector<Node*> heads;
  std::unique_ptr<std::uint8_t, decltype(&std::free)> written{nullptr, &std::free};
};

}  // namespace Sonarello::Bench
