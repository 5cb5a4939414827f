// Memory for the many small pieces of equal size that rows are made of.
//
// A large table is a million pieces that are made one after the other and released together. Cut from
// large chunks and kept in lists by size they cost a few instructions each and stand in memory in the
// order of the rows; from the general heap they are a third of a run (bench/ shows it). Chunks are kept
// until the end of the process. Lists are per thread; a piece may be released by another thread.
#pragma once

#include <cstddef>     // for std::size_t
#include <functional>  // for std::less
#include <map>         // for std::map
#include <new>         // for operator new
#include <utility>     // for std::pair

#if defined(__SANITIZE_ADDRESS__)
#define ZORVELA_PLAIN_HEAP
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(memory_sanitizer)
#define ZORVELA_PLAIN_HEAP
#endif
#endif

class Pool {
 public:
  /// `size` bytes, aligned for any type of the program.
  static void* take(std::size_t size) {
    const std::size_t units = unitsOf(size);
    if (units > kMostUnits) return ::operator new(size);
    Free*& list = freePieces[units];
    if (!list) return cut(units * kUnit);
    Free* piece = list;
    list = piece->next;
    return piece;
  }
  /// Gives back what `take` gave for the same size.
  static void release(void* memory, std::size_t size) {
    const std::size_t units = unitsOf(size);
    if (units > kMostUnits) {
      ::operator delete(memory);
      return;
    }
    freePieces[units] = ::new (memory) Free{freePieces[units]};
  }

 private:
  struct Free {
    Free* next;
  };

  static constexpr std::size_t kUnit = 8;
  static constexpr std::size_t kChunk = std::size_t{1} << 16;
#ifdef ZORVELA_PLAIN_HEAP
  static constexpr std::size_t kMostUnits = 0;  // sanitizers watch each piece of the heap
#else
  static constexpr std::size_t kMostUnits = 64;
#endif

  // At least one: a free piece holds the address of the next.
  static std::size_t unitsOf(std::size_t size) {
    return size == 0 ? 1 : (size + kUnit - 1) / kUnit;
  }

  static void* cut(std::size_t size) {
    if (size > left) {
      chunk = static_cast<char*>(::operator new(kChunk));
      left = kChunk;
    }
    char* piece = chunk;
    chunk += size;
    left -= size;
    return piece;
  }

  static inline thread_local Free* freePieces[kMostUnits + 1] = {};
  static inline thread_local char* chunk = nullptr;
  static inline thread_local std::size_t left = 0;
};

/// For the containers of rows and cells.
template <class T>
struct PoolAllocator {
  using value_type = T;

  PoolAllocator() = default;
  template <class U>
  PoolAllocator(const PoolAllocator<U>&) {}

  T* allocate(std::size_t count) { return static_cast<T*>(Pool::take(count * sizeof(T))); }
  void deallocate(T* memory, std::size_t count) { Pool::release(memory, count * sizeof(T)); }

  friend bool operator==(const PoolAllocator&, const PoolAllocator&) { return true; }
  friend bool operator!=(const PoolAllocator&, const PoolAllocator&) { return false; }
};

/// A std::map with pooled nodes, for maps with an entry a residue or a row.
template <class Key, class Value>
using PooledMap = std::map<Key, Value, std::less<Key>, PoolAllocator<std::pair<const Key, Value>>>;
