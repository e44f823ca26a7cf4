#include <tests/TempFile.h>
#include <tests/schemas/Documents.h>
#include <tests/schemas/Members.h>

#include <cstdlib>
#include <gtest/gtest.h>
#include <iterator>
#include <random>
#include <string>
#include <string_view>

using Movrel::Project;
using test::TempFile;

namespace {

constexpr std::string_view schemaFile = "ocl/src/shared/schemas/movrel.xsd";

// Texts of every character that a document can carry, numbers near their bounds.
class RandomContent {
 public:
  explicit RandomContent(unsigned seed) : m_random(seed) {}

  bool percent(unsigned share) { return m_random() % 100 < share; }

  template <class Number>
  Number number() {
    const Number numbers[] = {0, 1, 4294967295U, static_cast<Number>(m_random()),
                              static_cast<Number>(-1)};
    return numbers[m_random() % 5];
  }

  std::string text() {
    static constexpr std::string_view pieces[] = {
        "&",      "<",      ">",          "\"",         "'",     "\t",     "\n",
        "\r",     " ",      "]]>",        "plain",      "\x7F",  "\u0080", "\u00e9",
        "\u20ac", "\ufffd", "\U0001f600", "\U0010ffff", "&amp;", "\r\n"};
    std::string result;
    for (auto count = m_random() % 6; count > 0; --count) {
      result += pieces[m_random() % std::size(pieces)];
    }
    return result;
  }

  template <class Step>
  void repeat(unsigned depth, const Step& step) {
    const unsigned most = depth < 6 ? 3 : depth < 12 ? 2 : 1;
    for (auto count = m_random() % (most + (depth < 14 ? 1 : 0)); count > 0; --count) step();
  }

 private:
  std::mt19937 m_random;
};

bool isValid(const std::string& path) {
  return std::system(
             ("xmllint --noout --schema " + std::string(schemaFile) + " '" + path + "' 2>/dev/null")
                 .c_str()) == 0;
}

bool haveXmllint() { return std::system("command -v xmllint >/dev/null") == 0; }

}  // namespace

TEST(MovrelDocuments, AreTheSameAfterWritingAndReading) {
  const bool validate = haveXmllint();
  for (unsigned seed = 0; seed < 60; ++seed) {
    RandomContent random(seed);
    Project project;
    members::fill(project, random, 0);
    const std::string text = test::written(project);
    const test::Document again(text);
    ASSERT_EQ(again.error, lmx60::ELMX_OK) << seed << ": " << again.debug.message;
    ASSERT_TRUE(again.project == project) << seed;
    ASSERT_EQ(test::written(again.project), text) << seed;
    if (!validate || seed % 10 != 0) continue;
    const TempFile file(text);
    EXPECT_TRUE(isValid(file.path())) << seed;
  }
  if (!validate) GTEST_SKIP() << "xmllint is not installed: nothing was validated";
}

TEST(MovrelDocuments, OfTheExampleAreValid) {
  if (!haveXmllint()) GTEST_SKIP() << "xmllint is not installed";
  EXPECT_TRUE(isValid("examples/vadd/vadd.xml"));
  const TempFile wrong("<project><platform/></project>");
  EXPECT_FALSE(isValid(wrong.path()));
}

TEST(MovrelDocuments, OfTheBenchmarkAreValidAndOfTheSizeAskedFor) {
  const TempFile file;
  const std::string command =
      std::string(XRF_GENERATE_METADATA) + " --bytes 200000 --out '" + file.path() + "'";
  ASSERT_EQ(std::system(command.c_str()), 0);
  const std::string text = file.content();
  EXPECT_NEAR(static_cast<double>(text.size()), 200'000, 10'000);
  test::Document document(text);
  ASSERT_EQ(document.error, lmx60::ELMX_OK) << document.debug.message;
  const Movrel::Arg& arg = test::kernelOf(document.project).GetArg(11);
  EXPECT_TRUE(arg.IssetName() && arg.IssetAddressQualifier() && arg.IssetId() && arg.IssetPort());
  EXPECT_TRUE(arg.IssetSize() && arg.IssetOffset() && arg.IssetHostOffset() && arg.IssetHostSize());
  EXPECT_TRUE(arg.IssetType() && arg.IssetMemSize() && arg.IssetOrigName() && arg.IssetOrigUse());
  EXPECT_TRUE(!haveXmllint() || isValid(file.path()));
}

TEST(MovrelDocuments, OfTheExampleHoldEveryElementOfTheSchema) {
  const std::string schema = test::contentOf(std::string(schemaFile));
  const std::string example = test::contentOf("examples/vadd/vadd.xml");
  constexpr std::string_view mark = "<xs:element name=\"";
  int elements = 0;
  for (std::size_t at = schema.find(mark); at != std::string::npos; at = schema.find(mark, at)) {
    at += mark.size();
    const std::string name = schema.substr(at, schema.find('"', at) - at);
    EXPECT_NE(example.find("<" + name), std::string::npos) << name;
    ++elements;
  }
  EXPECT_EQ(elements, 53);
}

TEST(MovrelDocuments, GiveACodeWhereverTheyAreCut) {
  const std::string whole = test::contentOf("examples/vadd/vadd.xml");
  const std::size_t complete = whole.rfind('>') + 1;
  ASSERT_GT(complete, 1000U);
  for (std::size_t size = 0; size <= whole.size(); ++size) {
    lmx60::elmx_error error = lmx60::ELMX_OK;
    lmx60::s_debug_error debug;
    const Project project(whole.data(), size, &error, &debug);
    if (size < complete) {
      ASSERT_TRUE(error == lmx60::ELMX_NOT_WELL_FORMED || error == lmx60::ELMX_NO_DOCUMENT) << size;
      ASSERT_FALSE(debug.message.empty());
    } else {
      ASSERT_EQ(error, lmx60::ELMX_OK) << size;
    }
  }
}

TEST(MovrelDocuments, GiveACodeOrAProjectWhateverByteIsBroken) {
  const std::string whole = test::contentOf("examples/vadd/vadd.xml");
  for (std::size_t at = 0; at < whole.size(); ++at) {
    for (const char broken : {'\0', '<', '"', '\xFF'}) {
      std::string text = whole;
      text[at] = broken;
      lmx60::elmx_error error = lmx60::ELMX_NOT_READ;
      const Project project(text, &error);
      ASSERT_NE(error, lmx60::ELMX_NOT_READ);
    }
  }
}
