#ifndef TQ_CHARACTERPOOL_H
#define TQ_CHARACTERPOOL_H

#include "Warn.h"

#include <cstdint>
#include <new>

/// \file CharacterPool.h
/// Blocks that texts are packed into and never leave: the common part of the pools behind interned
/// names and interned strings. A pool owns its block and the pools behind it; a text keeps its
/// address as long as the pool lives.

/// A chain of blocks, of which this object, the head, holds the one that is being filled.
///
/// The head never moves: when its block is full, a new pool object takes that block over and joins
/// the chain behind the head, which starts a fresh block. `Pool` is the named pool class itself;
/// it hands texts out through an `add` of its own, made of `take` and a copy.
template <class Pool> class TQ_API CharacterPool {
public:
  /// Size in characters of a head's fresh blocks, and the most that a text may take of one.
  static constexpr unsigned blockSize = 800;

  /// A pool with an empty block of that many characters.
  CharacterPool(unsigned size)
      : block(tqAllocated(new (std::nothrow) char[size])), capacity(size) {}
  /// Frees the block and the whole chain behind it: every text handed out ends.
  ~CharacterPool() {
    delete[] block;
    while (Pool* const pool = next) {
      next = pool->next;
      pool->next = nullptr;
      delete pool;
    }
  }
  CharacterPool(const CharacterPool&) = delete;
  CharacterPool& operator=(const CharacterPool&) = delete;

  char* block;
  unsigned capacity;     ///< size of the block; a head made with another size than 800 keeps it
  unsigned used = 0;     ///< characters handed out from the start of the block
  Pool* next = nullptr;  ///< the pool of an older or oversized block, or null

protected:
  /// Room for that many characters, where they lie until the pool is destroyed.
  ///
  /// More than `blockSize` get a block of exactly that size in a pool of its own, directly behind
  /// the head: the head's block keeps its free space. Fewer are taken from the head's block, or
  /// from a fresh one when they do not fit: of `blockSize` characters, or of the head's capacity
  /// when that is larger.
  char* take(unsigned characters) {
    if (characters > blockSize) {
      Pool* const own = newPool(characters);
      own->used = characters;
      own->next = next;
      next = own;
      return own->block;
    }
    if (std::uint64_t{used} + characters > capacity) startBlock();
    char* const place = block + used;
    used += characters;
    return place;
  }

private:
  static Pool* newPool(unsigned size) { return tqAllocated(new (std::nothrow) Pool(size)); }

  void startBlock() {
    Pool* const full = newPool(capacity > blockSize ? capacity : blockSize);
    char* const fresh = full->block;
    full->block = block;
    full->capacity = capacity;
    full->used = used;
    full->next = next;
    block = fresh;
    used = 0;
    next = full;
  }
};

#endif
