// GlobalAlloc and its family: blocks known by handle, and found again from their address.
//
// A block's bytes come plain from the C library, with nothing of ours around them, so that a
// sanitizer sees every step out of them. What is known of a block stands in a table, and a foreign
// or stale address fails without being looked at.
#include "platform/headless/memory/global_memory.h"

#include <atomic>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <unordered_map>

#include "platform/headless/base/faults.h"
#include "platform/headless/base/handle_table.h"
#include "platform/headless/base/kernel_objects.h"
#include "platform/headless/memory/free_memory.h"
#include "platform/headless/memory/plain_memory.h"

namespace headless {
namespace {

struct Block {
  void* address;  // null for a moveable block of 0 bytes, which Windows keeps as discarded
  size_t bytes;
  uint32_t locks;  // of a moveable block
  bool moveable;
};

// Moveable blocks have a handle of the table; the handle of a fixed one is its address.
struct GlobalHeap {
  std::mutex mutex;
  HandleTable<Block, HandleTag::kMemory> moveable;
  std::unordered_map<HANDLE, Block> fixed;
  std::unordered_map<const void*, HANDLE> moveableByAddress;
  uint32_t count = 0;

  Block* Find(HANDLE handle) {
    if (Block* block = moveable.Find(handle)) return block;
    const auto found = fixed.find(handle);
    return found == fixed.end() ? nullptr : &found->second;
  }
};

// Outlives every static object that may still free memory.
GlobalHeap& Heap() {
  static auto& heap = *new GlobalHeap;
  return heap;
}

void* NewBytes(size_t bytes, UINT flags) {
  if (bytes == 0 && (flags & GMEM_MOVEABLE)) return nullptr;
  return PlainMemory(bytes, (flags & GMEM_ZEROINIT) != 0);
}

HGLOBAL Enter(GlobalHeap& heap, const Block& block) {
  if (!block.moveable) {
    heap.fixed.emplace(block.address, block);
    return block.address;
  }
  const HGLOBAL handle = heap.moveable.Add(block);
  try {
    if (block.address) heap.moveableByAddress.emplace(block.address, handle);
  } catch (const std::bad_alloc&) {
    heap.moveable.Remove(handle);
    throw;
  }
  return handle;
}

// What the machine claims to have in one piece.
std::atomic<uint64_t> largestBlock{UINT64_MAX};

HGLOBAL Allocate(UINT flags, size_t bytes) {
  if (bytes > largestBlock || !FitsInMemory(bytes)) return nullptr;
  void* address = NewBytes(bytes, flags);
  const bool moveable = flags & GMEM_MOVEABLE;
  if (!address && (bytes || !moveable)) return nullptr;
  GlobalHeap& heap = Heap();
  const std::lock_guard lock(heap.mutex);
  try {
    const HGLOBAL handle = Enter(heap, {address, bytes, 0, moveable});
    ++heap.count;
    return handle;
  } catch (const std::bad_alloc&) {
    std::free(address);
    return nullptr;
  }
}

// Moves the bytes; the entries of the old address take the new one, without an allocation.
void* Resize(GlobalHeap& heap, Block& block, size_t bytes, UINT flags) {
  void* moved = std::realloc(block.address, bytes ? bytes : 1);
  if (!moved) return nullptr;
  if ((flags & GMEM_ZEROINIT) && bytes > block.bytes) {
    std::memset(static_cast<uint8_t*>(moved) + block.bytes, 0, bytes - block.bytes);
  }
  const auto rename = [&](auto& map) {
    auto entry = map.extract(block.address);
    entry.key() = moved;
    return map.insert(std::move(entry)).position;
  };
  Block* known = &block;
  if (block.moveable) {
    rename(heap.moveableByAddress);
  } else {
    known = &rename(heap.fixed)->second;
  }
  known->address = moved;
  known->bytes = bytes;
  return moved;
}

// A moveable block without bytes has no address; going there and coming back changes the tables.
bool Discard(GlobalHeap& heap, Block& block) {
  if (block.locks) return false;
  heap.moveableByAddress.erase(block.address);
  std::free(std::exchange(block.address, nullptr));
  block.bytes = 0;
  return true;
}
bool Restore(GlobalHeap& heap, HGLOBAL handle, Block& block, size_t bytes, UINT flags) {
  void* address = NewBytes(bytes, flags);
  if (!address) return false;
  try {
    heap.moveableByAddress.emplace(address, handle);
  } catch (const std::bad_alloc&) {
    std::free(address);
    return false;
  }
  block.address = address;
  block.bytes = bytes;
  return true;
}

HGLOBAL Reallocate(HGLOBAL handle, size_t bytes, UINT flags) {
  GlobalHeap& heap = Heap();
  const std::lock_guard lock(heap.mutex);
  Block* block = heap.Find(handle);
  if (!block || bytes > largestBlock) return nullptr;
  if (bytes > block->bytes && !FitsInMemory(bytes - block->bytes)) return nullptr;
  if (block->moveable) {
    if (bytes == 0) return !block->address || Discard(heap, *block) ? handle : nullptr;
    if (!block->address) return Restore(heap, handle, *block, bytes, flags) ? handle : nullptr;
  }
  // A block that somebody points into moves only when the caller says that it may.
  const bool pinned = !block->moveable || block->locks;
  if (pinned && !(flags & GMEM_MOVEABLE) && bytes > block->bytes) return nullptr;
  void* moved = Resize(heap, *block, bytes, flags);
  return block->moveable ? (moved ? handle : nullptr) : moved;
}

}  // namespace

uint32_t CountGlobalBlocks() {
  GlobalHeap& heap = Heap();
  const std::lock_guard lock(heap.mutex);
  return heap.count;
}

}  // namespace headless

void Headless_SetLargestBlock(uint64_t bytes) {
  headless::largestBlock = bytes ? bytes : UINT64_MAX;
}

HGLOBAL GlobalAlloc(UINT flags, SIZE_T bytes) {
  if (headless::FailsNow(HEADLESS_MEMORY)) return nullptr;
  return headless::Allocate(flags, bytes);
}

HGLOBAL GlobalReAlloc(HGLOBAL memory, SIZE_T bytes, UINT flags) {
  if (headless::FailsNow(HEADLESS_MEMORY)) return nullptr;
  return headless::Reallocate(memory, bytes, flags);
}

HGLOBAL GlobalFree(HGLOBAL memory) {
  headless::GlobalHeap& heap = headless::Heap();
  const std::lock_guard lock(heap.mutex);
  const headless::Block* block = heap.Find(memory);
  if (!block) return memory;  // the sign of failure; null is success
  void* address = block->address;
  heap.moveableByAddress.erase(address);
  if (block->moveable) {
    heap.moveable.Remove(memory);
  } else {
    heap.fixed.erase(memory);
  }
  std::free(address);
  --heap.count;
  return nullptr;
}

LPVOID GlobalLock(HGLOBAL memory) {
  headless::GlobalHeap& heap = headless::Heap();
  const std::lock_guard lock(heap.mutex);
  headless::Block* block = heap.Find(memory);
  if (!block) return nullptr;
  if (block->moveable && block->address) ++block->locks;
  return block->address;
}

// TRUE while the block stays locked, and for a fixed one, which nobody locks.
BOOL GlobalUnlock(HGLOBAL memory) {
  headless::GlobalHeap& heap = headless::Heap();
  const std::lock_guard lock(heap.mutex);
  headless::Block* block = heap.Find(memory);
  if (!block) return FALSE;
  if (!block->moveable) return TRUE;
  return block->locks > 0 && --block->locks > 0;
}

HGLOBAL GlobalHandle(LPCVOID address) {
  headless::GlobalHeap& heap = headless::Heap();
  const std::lock_guard lock(heap.mutex);
  const auto moveable = heap.moveableByAddress.find(address);
  if (moveable != heap.moveableByAddress.end()) return moveable->second;
  const auto fixed = heap.fixed.find(const_cast<void*>(address));
  return fixed == heap.fixed.end() ? nullptr : fixed->first;
}

SIZE_T GlobalSize(HGLOBAL memory) {
  headless::GlobalHeap& heap = headless::Heap();
  const std::lock_guard lock(heap.mutex);
  const headless::Block* block = heap.Find(memory);
  return block ? block->bytes : 0;
}
