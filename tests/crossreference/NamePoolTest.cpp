#include <crossreference/NamePool.h>

#include <algorithm>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace XRF_RTL2LL {
namespace {

TEST(NamePoolTest, NameIsStoredOnce) {
  NamePool pool;
  const Word* name = pool.intern("a name");
  EXPECT_EQ(name->view(), "a name");
  EXPECT_EQ(pool.intern(std::string_view("a name, cut").substr(0, 6)), name);
  EXPECT_NE(pool.intern("another"), name);
}

TEST(NamePoolTest, EmptyNameIsThereFromTheStart) {
  NamePool pool;
  EXPECT_EQ(pool.empty()->view(), "");
  EXPECT_EQ(pool.intern(""), pool.empty());
  EXPECT_EQ(pool.intern(std::string_view()), pool.empty());
  EXPECT_EQ(pool.intern(static_cast<const char*>(nullptr)), nullptr);
}

TEST(NamePoolTest, NamesDifferInAnyByteAtAnyLength) {
  NamePool pool;
  for (std::size_t size = 1; size <= 70; ++size) {
    const std::string plain(size, 'x');
    const Word* stored = pool.intern(std::string_view(plain));
    for (std::size_t at = 0; at < size; ++at) {
      std::string other = plain;
      other[at] = 'y';
      const Word* entered = pool.intern(std::string_view(other));
      ASSERT_NE(entered, stored);
      ASSERT_EQ(entered->view(), other);
      ASSERT_STREQ(entered->c_str(), other.c_str());
    }
    ASSERT_EQ(pool.intern(std::string_view(plain)), stored);
  }
}

TEST(NamePoolTest, NamesAreEqualWhereverTheyLie) {
  NamePool pool;
  for (std::size_t size = 0; size <= 70; ++size) {
    const Word* stored = nullptr;
    for (std::size_t before = 0; before < 9; ++before) {
      // Of its own size, so that reading beyond the name is reading beyond the memory.
      const auto text = std::make_unique<char[]>(before + size);
      for (std::size_t at = 0; at < size; ++at)
        text[before + at] = static_cast<char>('a' + at % 26);
      const Word* name = pool.intern(std::string_view(text.get() + before, size));
      if (stored == nullptr) stored = name;
      ASSERT_EQ(name, stored);
    }
  }
}

TEST(NamePoolTest, NumbersStayWithTheirNames) {
  NamePool pool;
  std::vector<const Word*> names{pool.empty()};
  for (int name = 0; name < 100'000; ++name) {
    names.push_back(pool.intern(std::string_view("name_" + std::to_string(name))));
  }
  for (std::size_t at = 0; at < names.size(); ++at) {
    const std::string_view name = names[at]->view();
    ASSERT_EQ(name, at == 0 ? "" : "name_" + std::to_string(at - 1));
    ASSERT_EQ(names[at]->number(), at);
    ASSERT_EQ(pool.intern(name), names[at]);
    ASSERT_EQ(pool.find(name), names[at]);
  }
}

// Each of those that fills a chunk leaves the rest of the one before it empty.
TEST(NamePoolTest, WordsOfAnySizeStandSideBySide) {
  NamePool pool;
  std::vector<std::pair<const Word*, std::string>> words;
  for (std::size_t size = 1; size < std::size_t{1} << 23; size = size * 3 + 1) {
    for (const char byte : {'a', 'b', 'c'}) {
      const std::string text(size, byte);
      words.emplace_back(pool.intern(std::string_view(text)), text);
      pool.intern(std::string_view(text).substr(0, 1));
    }
  }
  for (const auto& [word, text] : words) {
    ASSERT_EQ(word->view(), text);
    ASSERT_EQ(word->c_str()[text.size()], '\0');
    ASSERT_EQ(pool.find(text), word);
  }
}

TEST(NamePoolTest, ANameMayHoldZeroBytes) {
  using namespace std::string_view_literals;
  NamePool pool;
  const Word* word = pool.intern("a\0b"sv);
  EXPECT_EQ(word->view(), "a\0b"sv);
  EXPECT_NE(pool.intern("a\0c"sv), word);
  EXPECT_NE(pool.intern("a"), word);
}

TEST(NamePoolTest, HashesOfNumberedNamesSpread) {
  constexpr std::size_t slots = 1 << 16;
  std::vector<int> used(slots);
  for (std::size_t name = 0; name < slots; ++name) {
    ++used[NamePool::hashOf(std::string_view("data_reg_" + std::to_string(name) + "_")) % slots];
  }
  int most = 0;
  for (const int count : used) most = std::max(most, count);
  EXPECT_LE(most, 12);
}

}  // namespace
}  // namespace XRF_RTL2LL
