#include "core/Meta.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace Sonarello {

Meta::Block* Meta::Make(std::span<const std::uint8_t> bytes) {
  if (bytes.empty()) return nullptr;
  void* memory = ::operator new(sizeof(Block) + bytes.size());
  auto* made = new (memory) Block{1, static_cast<std::uint32_t>(bytes.size())};
  std::memcpy(BytesOf(made), bytes.data(), bytes.size());
  return made;
}

Meta::Meta(std::span<const std::uint8_t> bytes) : block(Make(bytes)) {}

Meta::Meta(std::string_view text)
    : Meta(std::span(reinterpret_cast<const std::uint8_t*>(text.data()), text.size())) {}

Meta& Meta::operator=(const Meta& other) noexcept {
  other.Retain();
  Release();
  block = other.block;
  return *this;
}

Meta& Meta::operator=(Meta&& other) noexcept {
  std::swap(block, other.block);
  return *this;
}

void Meta::LetGo() noexcept {
  if (block->references.fetch_sub(1, std::memory_order_acq_rel) != 1) return;
  block->~Block();
  ::operator delete(block);
}

std::span<std::uint8_t> Meta::Mutable() {
  if (block == nullptr) return {};
  if (block->references.load(std::memory_order_acquire) != 1) {
    Block* own = Make(Bytes());
    Release();
    block = own;
  }
  return {BytesOf(block), block->size};
}

bool Meta::StartsWith(std::span<const std::uint8_t> prefix) const noexcept {
  return prefix.size() <= size() && std::equal(prefix.begin(), prefix.end(), data());
}

bool Meta::Equals(std::span<const std::uint8_t> bytes) const noexcept {
  return bytes.size() == size() && StartsWith(bytes);
}

}  // namespace Sonarello
