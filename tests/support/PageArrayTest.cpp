#include <support/PageArray.h>

#include <cstdint>
#include <gtest/gtest.h>
#include <utility>

namespace XRF_RTL2LL {
namespace {

using Numbers = PageArray<std::uint32_t>;

constexpr std::size_t onePage = hugePage / sizeof(std::uint32_t);

Numbers counted(std::size_t count) {
  Numbers numbers;
  for (std::size_t number = 0; number < count; ++number) {
    numbers.push_back(static_cast<std::uint32_t>(number));
  }
  return numbers;
}

void expectCounted(const Numbers& numbers, std::size_t count) {
  ASSERT_EQ(numbers.size(), count);
  std::uint32_t next = 0;
  for (const std::uint32_t number : numbers) ASSERT_EQ(number, next++);
  ASSERT_EQ(next, count);
}

bool isLarge(const Numbers& numbers) {
  return reinterpret_cast<std::uintptr_t>(numbers.data()) % hugePage == 0;
}

TEST(PageArrayTest, AnEmptyOneHoldsNothing) {
  Numbers numbers;
  EXPECT_TRUE(numbers.empty());
  EXPECT_EQ(numbers.size(), 0U);
  EXPECT_EQ(numbers.capacity(), 0U);
  EXPECT_EQ(numbers.begin(), numbers.end());
  numbers.shrink_to_fit();
  numbers.truncate(0);
  numbers.resize(0, 7);
  EXPECT_TRUE(numbers.empty());
}

TEST(PageArrayTest, GrowingKeepsWhatIsThere) {
  // From small memory into large, and on through several moves of large memory.
  for (const std::size_t count : {std::size_t{1}, std::size_t{17}, std::size_t{5000}, onePage - 1,
                                  onePage, onePage + 1, 9 * onePage}) {
    const Numbers numbers = counted(count);
    expectCounted(numbers, count);
    EXPECT_EQ(isLarge(numbers), numbers.capacity() >= onePage) << count;
  }
}

TEST(PageArrayTest, ManyGrowSideBySide) {
  Numbers first;
  Numbers second;
  constexpr std::size_t count = 5 * onePage;
  for (std::uint32_t number = 0; number < count; ++number) {
    first.push_back(number);
    second.push_back(number);
  }
  expectCounted(first, count);
  expectCounted(second, count);
}

TEST(PageArrayTest, ResizeFillsWhatIsNewAlone) {
  Numbers numbers = counted(10);
  for (const std::size_t count : {onePage / 2, 3 * onePage, 8 * onePage}) {
    const std::size_t before = numbers.size();
    numbers.resize(count, 0xffffffffU);
    ASSERT_EQ(numbers.size(), count);
    for (std::size_t at = before; at < count; ++at) ASSERT_EQ(numbers[at], 0xffffffffU);
  }
  numbers.resize(10, 0);
  expectCounted(numbers, 10);
}

TEST(PageArrayTest, ZerosOfAnySize) {
  for (const std::size_t count : {std::size_t{0}, std::size_t{3}, onePage, 2 * onePage + 5}) {
    Numbers numbers(count);
    ASSERT_EQ(numbers.size(), count);
    for (const std::uint32_t number : numbers) ASSERT_EQ(number, 0U);
    numbers.push_back(1);
    EXPECT_EQ(numbers.back(), 1U);
  }
}

TEST(PageArrayTest, ShrinkingKeepsWhatIsLeft) {
  for (const std::size_t left : {std::size_t{0}, std::size_t{9}, onePage, 3 * onePage + 1}) {
    Numbers numbers = counted(7 * onePage);
    numbers.truncate(left);
    numbers.shrink_to_fit();
    EXPECT_EQ(numbers.capacity(), left);
    expectCounted(numbers, left);
    numbers.push_back(static_cast<std::uint32_t>(left));
    expectCounted(numbers, left + 1);
  }
}

TEST(PageArrayTest, LastComesOffFirst) {
  Numbers numbers = counted(3);
  EXPECT_EQ(numbers.back(), 2U);
  numbers.pop_back();
  expectCounted(numbers, 2);
}

TEST(PageArrayTest, AMovedOneIsEmptyAndUsable) {
  for (const std::size_t count : {std::size_t{5}, 2 * onePage}) {
    Numbers from = counted(count);
    Numbers to = std::move(from);
    expectCounted(to, count);
    EXPECT_TRUE(from.empty());  // NOLINT(bugprone-use-after-move): what is tested
    EXPECT_EQ(from.capacity(), 0U);
    from.push_back(0);
    expectCounted(from, 1);
    from = std::move(to);
    expectCounted(from, count);
    EXPECT_TRUE(to.empty());  // NOLINT(bugprone-use-after-move)
  }
}

}  // namespace
}  // namespace XRF_RTL2LL
