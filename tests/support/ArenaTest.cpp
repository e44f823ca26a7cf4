#include <support/Arena.h>
#include <support/HugePages.h>

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
