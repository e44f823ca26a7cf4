#include <lmx60/Integer.h>
#include <lmx60/Validation.h>

#include <gtest/gtest.h>
#include <string>

using namespace lmx60;

TEST(Integer, IsAnOptionalSignAndDigits) {
  for (const char* text : {"0", "00", "7", "+7", "-7", "-0", "18446744073709551616"}) {
    EXPECT_TRUE(is_valid_integer(text)) << text;
  }
  for (const char* text :
       {"", "+", "-", "0x10", "1e3", "1.0", "1 2", " 1", "--1", "1-", "a", "١"}) {
    EXPECT_FALSE(is_valid_integer(text)) << text;
  }
  EXPECT_TRUE(is_valid_integer(std::string(1000, '9')));
  EXPECT_FALSE(is_valid_integer(std::string_view("1\0", 2)));
}

TEST(Integer, LosesTheBlanksAroundIt) {
  EXPECT_EQ(collapse("  12\t\r\n"), "12");
  EXPECT_EQ(collapse("1 2"), "1 2");
  EXPECT_EQ(collapse(" \t "), "");
  EXPECT_EQ(collapse(""), "");
}

TEST(Integer, ComparesAtAnyLength) {
  const auto less = [](const std::string& left, const std::string& right) {
    const c_big_int one(left);
    const c_big_int two(right);
    EXPECT_FALSE(one == two);
    EXPECT_EQ(one<two, two> one);
    EXPECT_NE(one < two, two < one);
    return one < two;
  };
  EXPECT_TRUE(less("9", "10"));
  EXPECT_TRUE(less("-10", "-9"));
  EXPECT_TRUE(less("-1", "0"));
  EXPECT_TRUE(less("-1" + std::string(500, '0'), "1"));
  EXPECT_TRUE(less(std::string(999, '9'), "1" + std::string(999, '0')));
  EXPECT_FALSE(less("18446744073709551616", "18446744073709551615"));
  EXPECT_TRUE(c_big_int("-0") == c_big_int("0"));
  EXPECT_TRUE(c_big_int("+007") == c_big_int("7"));
  EXPECT_TRUE(c_big_int(std::string(100, '0')) == c_big_int("0"));
  EXPECT_TRUE(c_big_int("no integer") == c_big_int("0"));
}

TEST(Integer, HasTheValueOfItsDigits) {
  EXPECT_EQ(c_big_int("0").to_unsigned(), 0U);
  EXPECT_EQ(c_big_int("+0042").to_unsigned(), 42U);
  EXPECT_EQ(c_big_int("18446744073709551615").to_unsigned(), 18446744073709551615ULL);
}

TEST(Integer, IsCheckedForItsFormThenTheLowerThenTheUpperBound) {
  const c_integer_spec spec("0", "4294967295");
  EXPECT_EQ(spec.validate("0"), ELMX_OK);
  EXPECT_EQ(spec.validate("-0"), ELMX_OK);
  EXPECT_EQ(spec.validate("4294967295"), ELMX_OK);
  EXPECT_EQ(spec.validate("0004294967295"), ELMX_OK);
  EXPECT_EQ(spec.validate("4294967296"), ELMX_ABOVE_MAXIMUM);
  EXPECT_EQ(spec.validate("-1"), ELMX_BELOW_MINIMUM);
  EXPECT_EQ(spec.validate("-x"), ELMX_NOT_INTEGER);
  EXPECT_EQ(spec.validate(""), ELMX_NOT_INTEGER);
  EXPECT_EQ(ELMX_NOT_INTEGER, 35);
  EXPECT_EQ(ELMX_ABOVE_MAXIMUM, 36);
  EXPECT_EQ(ELMX_BELOW_MINIMUM, 37);
  EXPECT_EQ(inittowstring("4294967295"), spec.maximum());
}
