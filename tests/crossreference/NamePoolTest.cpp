#include <crossreference/NamePool.h>

#include <algorithm>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

namespace XRF_RTL2LL {
namespace {

TEST(NamePoolTest, NameIsStoredOnce) {
  NamePool pool;
  const std::string* name = pool.intern("a name");
  EXPECT_EQ(*name, "a name");
  EXPECT_EQ(pool.intern(std::string_view("a name, cut").substr(0, 6)), name);
  EXPECT_NE(pool.intern("another"), name);
}

TEST(NamePoolTest, EmptyNameIsThereFromTheStart) {
  NamePool pool;
  EXPECT_EQ(*pool.empty(), "");
  EXPECT_EQ(pool.intern(""), pool.empty());
  EXPECT_EQ(pool.intern(std::string_view()), pool.empty());
  EXPECT_EQ(pool.intern(static_cast<const char*>(nullptr)), nullptr);
}

TEST(NamePoolTest, NamesDifferInAnyByteAtAnyLength) {
  NamePool pool;
  for (std::size_t size = 1; size <= 70; ++size) {
    const std::string plain(size, 'x');
    const std::string* stored = pool.intern(std::string_view(plain));
    for (std::size_t at = 0; at < size; ++at) {
      std::string other = plain;
      other[at] = 'y';
      const std::string* entered = pool.intern(std::string_view(other));
      ASSERT_NE(entered, stored);
      ASSERT_EQ(*entered, other);
    }
    ASSERT_EQ(pool.intern(std::string_view(plain)), stored);
  }
}

TEST(NamePoolTest, NamesAreEqualWhereverTheyLie) {
  NamePool pool;
  for (std::size_t size = 0; size <= 70; ++size) {
    const std::string* stored = nullptr;
    for (std::size_t before = 0; before < 9; ++before) {
      // Of its own size, so that reading beyond the name is reading beyond the memory.
      const auto text = std::make_unique<char[]>(before + size);
      for (std::size_t at = 0; at < size; ++at)
        text[before + at] = static_cast<char>('a' + at % 26);
      const std::string* name = pool.intern(std::string_view(text.get() + before, size));
      if (stored == nullptr) stored = name;
      ASSERT_EQ(name, stored);
    }
  }
}

TEST(NamePoolTest, NumbersAndHashesStayWithTheirNames) {
  NamePool pool;
  std::vector<const std::string*> names{pool.empty()};
  for (int name = 0; name < 100'000; ++name) {
    names.push_back(pool.intern(std::string_view("name_" + std::to_string(name))));
  }
  for (std::size_t at = 0; at < names.size(); ++at) {
    const std::string& name = *names[at];
    ASSERT_EQ(name, at == 0 ? "" : "name_" + std::to_string(at - 1));
    ASSERT_EQ(NamePool::numberOf(names[at]), at);
    ASSERT_EQ(NamePool::hashOf(names[at]), NamePool::hashOf(std::string_view(name)));
    ASSERT_EQ(pool.intern(std::string_view(name)), names[at]);
  }
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
