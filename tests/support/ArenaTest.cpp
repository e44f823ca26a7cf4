#include <support/Arena.h>
#include <support/HugePages.h>

#include <array>
#include <cstdint>
#include <cstring>
#include <gtest/gtest.h>
#include <vector>

namespace XRF_RTL2LL {
namespace {

TEST(ArenaTest, ObjectsOfAnySizeDoNotOverlap) {
  Arena arena;
  struct Piece {
    unsigned char* start;
    std::size_t size;
    unsigned char mark;
  };
  std::vector<Piece> pieces;
  std::size_t size = 1;
  for (unsigned index = 0; index < 3000; ++index) {
    size = index % 500 == 499 ? std::size_t{3} << 20 : (size * 7 + 3) % 9000 + 1;
    auto* start = static_cast<unsigned char*>(arena.allocate(size));
    ASSERT_EQ(reinterpret_cast<std::uintptr_t>(start) % 8, 0U);
    std::memset(start, static_cast<int>(index % 251), size);
    pieces.push_back({start, size, static_cast<unsigned char>(index % 251)});
  }
  for (const Piece& piece : pieces) {
    ASSERT_EQ(piece.start[0], piece.mark);
    ASSERT_EQ(piece.start[piece.size / 2], piece.mark);
    ASSERT_EQ(piece.start[piece.size - 1], piece.mark);
  }
}

std::uint64_t* fill(std::uint64_t* array, std::size_t from, std::size_t to) {
  for (std::size_t at = from; at < to; ++at) array[at] = at;
  return array;
}

TEST(ArenaTest, AnArrayThatGrowsKeepsWhatItHolds) {
  Arena arena;
  // Two grow in turns, from small arrays to ones that have memory of their own.
  std::array<std::uint64_t*, 2> arrays{fill(arena.allocateArray<std::uint64_t>(2), 0, 2),
                                       fill(arena.allocateArray<std::uint64_t>(2), 0, 2)};
  for (std::size_t capacity = 2; capacity < std::size_t{1} << 21; capacity *= 2) {
    for (std::uint64_t*& array : arrays) {
      array = fill(arena.growArray(array, capacity, capacity * 2), capacity, capacity * 2);
    }
    for (const std::uint64_t* array : arrays) {
      for (std::size_t at = 0; at < capacity * 2; ++at) ASSERT_EQ(array[at], at) << capacity;
    }
  }
}

TEST(ArenaTest, OutgrownArraysAreHandedOutAgain) {
  Arena arena;
  auto* array = arena.allocateArray<std::uint64_t>(64);
  arena.recycle(array, 64);
  EXPECT_EQ(arena.allocateArray<std::uint64_t>(64), array);
}

TEST(ArenaTest, LargeArraysThatAreOutgrownLeaveNothing) {
  Arena arena;
  // More addresses than there are, were they not given back.
  for (int time = 0; time < 10000; ++time) {
    constexpr std::size_t capacity = std::size_t{1} << 34;
    arena.recycle(arena.allocateArray<char>(capacity), capacity);
  }
}

// An array of that size may lie in a block, with other things around it.
TEST(ArenaTest, LargeArraysInABlockStayThere) {
  Arena arena;
  std::vector<std::uint64_t*> arrays;
  for (int time = 0; time < 100; ++time) static_cast<void>(arena.allocate(100'000));
  constexpr std::size_t capacity = std::size_t{1} << 18;
  for (int time = 0; time < 4; ++time) {
    arrays.push_back(fill(arena.allocateArray<std::uint64_t>(capacity), 0, capacity));
  }
  arena.recycle(arrays.front(), capacity);
  for (std::size_t index = 1; index < arrays.size(); ++index) {
    arrays[index] =
        fill(arena.growArray(arrays[index], capacity, 2 * capacity), capacity, 2 * capacity);
    for (std::size_t at = 0; at < 2 * capacity; ++at) ASSERT_EQ(arrays[index][at], at);
  }
}

TEST(HugePagesTest, LargeMemoryIsAligned) {
  for (const std::size_t size : {hugePage, hugePage + 1, 3 * hugePage}) {
    const Pages pages = allocatePages(size, true);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(pages.get()) % hugePage, 0U);
    std::memset(pages.get(), 1, size);
  }
}

TEST(HugePagesTest, SmallMemory) {
  const Pages pages = allocatePages(100, false);
  std::memset(pages.get(), 1, 100);
  EXPECT_NE(pages, nullptr);
}

}  // namespace
}  // namespace XRF_RTL2LL
