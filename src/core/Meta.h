// Sonarello: the payload of a long event, as a reference-counted byte string of one pointer.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <utility>

namespace Sonarello {

/// Bytes behind the length field of a sysex or a meta event, kept verbatim (SMF 1.0).
/// Copies share the bytes; writing makes the writer's copy its own. An empty payload owns nothing.
class Meta {
 public:
  Meta() noexcept = default;
  /// Takes a copy of the bytes. Raises std::bad_alloc when there is no memory.
  explicit Meta(std::span<const std::uint8_t> bytes);
  explicit Meta(std::string_view text);
  Meta(const Meta& other) noexcept : block(other.block) { Retain(); }
  Meta(Meta&& other) noexcept : block(std::exchange(other.block, nullptr)) {}
  Meta& operator=(const Meta& other) noexcept;
  Meta& operator=(Meta&& other) noexcept;
  ~Meta() { Release(); }

  /// Lets go of the bytes; the payload is empty afterwards.
  void Clear() noexcept {
    Release();
    block = nullptr;
  }

  [[nodiscard]] std::size_t size() const noexcept { return block == nullptr ? 0 : block->size; }
  [[nodiscard]] bool empty() const noexcept { return block == nullptr; }
  [[nodiscard]] const std::uint8_t* data() const noexcept {
    return block == nullptr ? nullptr : BytesOf(block);
  }
  /// Byte at an index from 0 to size() - 1.
  [[nodiscard]] std::uint8_t operator[](std::size_t index) const noexcept { return data()[index]; }
  [[nodiscard]] std::span<const std::uint8_t> Bytes() const noexcept { return {data(), size()}; }
  /// The bytes as characters of no particular encoding.
  [[nodiscard]] std::string_view Text() const noexcept {
    return {reinterpret_cast<const char*>(data()), size()};
  }
  /// Writable bytes; the payload is copied first if it is shared. Raises std::bad_alloc.
  [[nodiscard]] std::span<std::uint8_t> Mutable();

  [[nodiscard]] bool StartsWith(std::span<const std::uint8_t> prefix) const noexcept;
  [[nodiscard]] bool Equals(std::span<const std::uint8_t> bytes) const noexcept;
  friend bool operator==(const Meta& a, const Meta& b) noexcept { return a.Equals(b.Bytes()); }

 private:
  struct Block {
    std::atomic<std::uint32_t> references;
    std::uint32_t size;
  };
  static std::uint8_t* BytesOf(Block* b) noexcept { return reinterpret_cast<std::uint8_t*>(b + 1); }
  static Block* Make(std::span<const std::uint8_t> bytes);
  void Retain() const noexcept {
    if (block != nullptr) block->references.fetch_add(1, std::memory_order_relaxed);
  }
  void Release() noexcept {
    if (block != nullptr) LetGo();
  }
  void LetGo() noexcept;

  Block* block = nullptr;
};

}  // namespace Sonarello
