#include <tests/schemas/Documents.h>
#include <tests/schemas/Members.h>

#include <gtest/gtest.h>
#include <limits>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

using lmx60::lmx_exception;
using test::elementOf;
using test::readElement;

namespace {

template <class Item>
Item complete() {
  Item item;
  members::complete(item);
  return item;
}

template <class Value>
Value sample() {
  if constexpr (std::is_same_v<Value, std::string>) {
    return "a \"sample\" <of> 'text' & more";
  } else {
    return std::numeric_limits<Value>::max();
  }
}

template <class Item>
void expectWrittenBack(const Item& item) {
  Item back;
  EXPECT_EQ(readElement(back, elementOf(item)), lmx60::ELMX_OK);
  EXPECT_TRUE(back == item);
}

// Whether an object equals none that is like it but for one change.
template <class Item>
void expectDiffers(const Item& one, const Item& other) {
  EXPECT_FALSE(one == other);
  EXPECT_TRUE(one != other);
  EXPECT_TRUE(Item(one) == one);
}

struct Walk {
  template <class Member>
  void attribute() {
    value<Member>(std::string(" ") + Member::name + "=\"");
  }
  template <class Member>
  void text() {
    value<Member>(std::string("<") + Member::name + ">");
  }

  template <class Member>
  void value(const std::string& mark) {
    SCOPED_TRACE(Member::name);
    using Value = typename Member::Value;
    auto item = complete<typename Member::Parent>();
    const bool required = Member::isset(item);
    const auto before = item;
    EXPECT_EQ(Member::set(item, sample<Value>()), lmx60::ELMX_OK);
    EXPECT_TRUE(Member::isset(item));
    EXPECT_EQ(Member::get(item), sample<Value>());
    expectDiffers(item, before);
    EXPECT_NE(elementOf(item).find(mark), std::string::npos);
    expectWrittenBack(item);
    Member::set(item, Value());
    EXPECT_TRUE(Member::isset(item));
    Member::unset(item);
    EXPECT_FALSE(Member::isset(item));
    EXPECT_EQ(Member::get(item), Value());
    if (required) return;
    EXPECT_TRUE(item == before);
    EXPECT_EQ(elementOf(item).find(mark), std::string::npos);
  }

  template <class Member>
  void texts() {
    SCOPED_TRACE(Member::name);
    auto item = complete<typename Member::Parent>();
    const auto before = item;
    EXPECT_THROW(Member::back(item), lmx_exception);
    Member::append(item, "b");
    Member::insert(item, 0, "a");
    Member::insert(item, 2, "d");
    Member::insert(item, 2, "c");
    expectTexts<Member>(item, {"a", "b", "c", "d"});
    expectDiffers(item, before);
    expectWrittenBack(item);
    Member::assign(item, 1, "B");
    Member::get(item, 2) = "C";
    Member::back(item) = "D";
    expectTexts<Member>(item, {"a", "B", "C", "D"});
    Member::append(item, Member::get(item, 0));
    Member::erase(item, 1);
    expectTexts<Member>(item, {"a", "C", "D", "a"});
    expectNoPosition<Member>(item, 4, std::string("x"));
    EXPECT_EQ(Member::size(item), 4U);
    Member::clear(item);
    EXPECT_TRUE(item == before);
  }

  template <class Member>
  static void expectTexts(const typename Member::Parent& item,
                          const std::vector<std::string>& texts) {
    ASSERT_EQ(Member::size(item), texts.size());
    for (std::size_t at = 0; at < texts.size(); ++at) EXPECT_EQ(Member::get(item, at), texts[at]);
    EXPECT_EQ(Member::back(item), texts.back());
  }

  template <class Member, class Item>
  static void expectNoPosition(typename Member::Parent& item, std::size_t end, const Item& other) {
    const auto& same = item;
    EXPECT_THROW(Member::get(item, end), lmx_exception);
    EXPECT_THROW(Member::get(same, end), lmx_exception);
    EXPECT_THROW(Member::erase(item, end), lmx_exception);
    EXPECT_THROW(Member::assign(item, end, other), lmx_exception);
    if constexpr (std::is_same_v<Item, std::string>) {
      EXPECT_THROW(Member::insert(item, end + 1, other), lmx_exception);
    } else {
      EXPECT_THROW(Member::insert(item, end + 1), lmx_exception);
      EXPECT_THROW(Member::insert(item, end + 1, new Item(other)), lmx_exception);
      EXPECT_THROW(Member::assign(item, end, new Item(other)), lmx_exception);
      EXPECT_THROW(Member::append(item, nullptr), lmx_exception);
      EXPECT_THROW(Member::insert(item, 0, nullptr), lmx_exception);
      EXPECT_THROW(Member::assign(item, 0, static_cast<Item*>(nullptr)), lmx_exception);
    }
  }

  template <class Member>
  void items() {
    SCOPED_TRACE(Member::name);
    using Item = typename Member::Item;
    auto item = complete<typename Member::Parent>();
    const auto before = item;
    EXPECT_THROW(Member::back(item), lmx_exception);
    Item& first = Member::append(item);
    members::complete(first);
    auto* const owned = new Item(complete<Item>());
    EXPECT_EQ(&Member::append(item, owned), owned);
    EXPECT_EQ(&Member::back(item), owned);
    Item& inserted = Member::insert(item, 0);
    members::complete(inserted);
    auto* const last = new Item(complete<Item>());
    EXPECT_EQ(&Member::insert(item, 3, last), last);
    expectItems<Member>(item, {&inserted, &first, owned, last});
    expectDiffers(item, before);
    expectWrittenBack(item);
    itemsReplaced<Member>(item);
    Member::clear(item);
    EXPECT_EQ(Member::size(item), 0U);
    EXPECT_TRUE(item == before);
  }

  template <class Member>
  static void itemsReplaced(typename Member::Parent& item) {
    using Item = typename Member::Item;
    auto* const other = new Item(complete<Item>());
    Member::assign(item, 0, other);
    EXPECT_EQ(&Member::get(item, 0), other);
    Member::assign(item, 0, other);
    Item* const second = &Member::get(item, 2);
    Member::assign(item, 1, *second);
    EXPECT_NE(&Member::get(item, 1), second);
    EXPECT_TRUE(Member::get(item, 1) == *second);
    Member::erase(item, 1);
    ASSERT_EQ(Member::size(item), 3U);
    EXPECT_EQ(&Member::get(item, 1), second);
    expectNoPosition<Member>(item, 3, *second);
    EXPECT_EQ(Member::size(item), 3U);
  }

  template <class Member>
  static void expectItems(const typename Member::Parent& item,
                          const std::vector<const typename Member::Item*>& items) {
    ASSERT_EQ(Member::size(item), items.size());
    for (std::size_t at = 0; at < items.size(); ++at) EXPECT_EQ(&Member::get(item, at), items[at]);
    EXPECT_EQ(&Member::back(item), items.back());
  }

  template <class Member>
  void item() {
    SCOPED_TRACE(Member::name);
    using Item = typename Member::Item;
    typename Member::Parent item;
    const auto& same = item;
    const auto before = item;
    EXPECT_FALSE(Member::isset(item));
    EXPECT_THROW(Member::get(same), lmx_exception);
    EXPECT_THROW(Member::assign(item, static_cast<Item*>(nullptr)), lmx_exception);
    if constexpr (Member::required) {
      Member::get(item);
      EXPECT_TRUE(Member::isset(item));
    } else {
      EXPECT_THROW(Member::get(item), lmx_exception);
    }
    auto* const owned = new Item(complete<Item>());
    Member::assign(item, owned);
    Member::assign(item, owned);
    EXPECT_EQ(&Member::get(same), owned);
    expectDiffers(item, before);
    expectWrittenBack(item);
    const auto copy = item;
    EXPECT_NE(&Member::get(copy), owned);
    Member::assign(item, Member::get(copy));
    EXPECT_NE(&Member::get(item), &Member::get(copy));
    EXPECT_TRUE(item == copy);
    Member::unset(item);
    EXPECT_FALSE(Member::isset(item));
    EXPECT_TRUE(item == before);
  }
};

struct Count {
  int classes = 0;
  int attributes = 0;
  int children = 0;

  template <class Member>
  void attribute() {
    ++attributes;
  }
  template <class Member>
  void text() {
    ++children;
  }
  template <class Member>
  void texts() {
    ++children;
  }
  template <class Member>
  void item() {
    ++children;
  }
  template <class Member>
  void items() {
    ++children;
  }
};

template <class... Classes>
struct Totals {
  static Count count() {
    Count result;
    ((++result.classes, members::visit(std::type_identity<Classes>(), result)), ...);
    return result;
  }
};

// Small numbers that are the same on every machine.
class Sequence {
 public:
  bool percent(unsigned share) { return next() % 100 < share; }
  std::string text() { return "text " + std::to_string(next()); }
  template <class Number>
  Number number() {
    return static_cast<Number>(next());
  }
  template <class Step>
  void repeat(unsigned depth, const Step& step) {
    for (unsigned count = depth > 2 ? 0 : 2; count > 0; --count) step();
  }

 private:
  unsigned next() { return m_state = m_state * 1664525U + 1013904223U; }
  unsigned m_state = 1;
};

}  // namespace

template <class Item>
class EveryClass : public testing::Test {};
TYPED_TEST_SUITE(EveryClass, members::every_class<testing::Types>);

TYPED_TEST(EveryClass, KeepsWhatEachMemberIsGiven) {
  members::visit(std::type_identity<TypeParam>(), Walk());
}

TYPED_TEST(EveryClass, CopiesSwapsAndEmpties) {
  Sequence sequence;
  TypeParam filled;
  members::fill(filled, sequence, 0);
  const TypeParam copy(filled);
  EXPECT_TRUE(copy == filled);
  TypeParam assigned;
  members::fill(assigned, sequence, 0);
  assigned = filled;
  EXPECT_TRUE(assigned == filled);
  const TypeParam& itself = assigned;
  assigned = itself;
  EXPECT_TRUE(assigned == filled);
  const std::unique_ptr<TypeParam> clone(filled.do_clone());
  EXPECT_TRUE(*clone == filled);
  TypeParam other;
  other.swap(assigned);
  EXPECT_TRUE(other == filled);
  EXPECT_TRUE(assigned == TypeParam());
  filled.reset();
  EXPECT_TRUE(filled == TypeParam());
  other.init();
  EXPECT_TRUE(other == TypeParam());
}

TYPED_TEST(EveryClass, IsWrittenAndReadBackWithRandomContent) {
  Sequence sequence;
  for (int round = 0; round < 20; ++round) {
    TypeParam filled;
    members::fill(filled, sequence, 0);
    expectWrittenBack(filled);
  }
}

TYPED_TEST(EveryClass, TakesNoUnknownNameForAMember) {
  // Of each length that the name of a member may have.
  constexpr std::size_t longest = 32;
  std::string attributes;
  std::string elements;
  for (std::size_t length = 1; length <= longest; ++length) {
    const std::string name(length, '_');
    attributes += " " + name + "=\"1\"";
    elements += "<" + name + "/>";
  }
  const auto item = complete<TypeParam>();
  std::string text = elementOf(item);
  const std::size_t end = text.find('>', text.find("<element"));
  if (text[end - 1] == '/') {
    text.replace(end - 1, 2, attributes + ">" + elements + "</element>");
  } else {
    text.insert(end + 1, elements).insert(end, attributes);
  }
  lmx60::c_read_memory source(text.data(), text.size());
  lmx60::c_xml_reader reader(source);
  std::size_t unknownAttributes = 0;
  std::size_t unknownElements = 0;
  reader.set_error_handler([&](const lmx60::s_debug_error& fault) {
    if (fault.code == lmx60::ELMX_UNKNOWN_ATTRIBUTE) ++unknownAttributes;
    if (fault.code == lmx60::ELMX_UNKNOWN_ELEMENT) ++unknownElements;
    return lmx60::ELMX_OK;
  });
  TypeParam back;
  EXPECT_EQ(back.unmarshal(reader, "element"), lmx60::ELMX_OK);
  EXPECT_EQ(unknownAttributes, longest);
  EXPECT_EQ(unknownElements, longest);
  EXPECT_EQ(reader.warning_count(), 2 * longest);
  EXPECT_TRUE(back == item);
}

TYPED_TEST(EveryClass, IsCompleteUnlessMandatoryTextsAreAbsent) {
  EXPECT_EQ(TypeParam().IsOccursOk(), (!std::is_same_v<TypeParam, Movrel::FIFOInst>));
  EXPECT_TRUE(complete<TypeParam>().IsOccursOk());
}

TEST(EveryClass, IsCountedAsTheSchemaHasIt) {
  const Count count = members::every_class<Totals>::count();
  EXPECT_EQ(count.classes, 41);
  EXPECT_EQ(count.attributes, 109);
  EXPECT_EQ(count.children, 52);
}
