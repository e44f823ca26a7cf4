#include <tests/schemas/Documents.h>

#include <algorithm>
#include <gtest/gtest.h>
#include <string>
#include <string_view>

using namespace lmx60;
using test::Document;
using test::inKernel;

namespace {

// "Grüße" as UTF-8.
const std::string greeting = "Gr\u00fc\u00dfe";

std::string utf16(std::u16string_view text, bool bigEndian) {
  std::string bytes;
  for (const char16_t unit : text) {
    const char high = static_cast<char>(unit >> 8U);
    const char low = static_cast<char>(unit & 0xFFU);
    bytes += bigEndian ? high : low;
    bytes += bigEndian ? low : high;
  }
  return bytes;
}

std::string nameIn(const std::string& text) {
  const Document document(text);
  EXPECT_EQ(document.error, ELMX_OK) << document.debug.message;
  return document.project.GetName();
}

// Hands the document out in pieces of a given size.
class Pieces : public c_read {
 public:
  Pieces(std::string_view text, std::size_t size) : m_rest(text), m_size(size) {}
  elmx_error read(char* place, std::size_t capacity, std::size_t& count) override {
    ++m_reads;
    m_largest = std::max(m_largest, capacity);
    count = m_rest.copy(place, std::min(capacity, m_size));
    m_rest.remove_prefix(count);
    return ELMX_OK;
  }
  std::string name() const override { return "pieces"; }
  std::size_t reads() const { return m_reads; }
  std::size_t largest() const { return m_largest; }

 private:
  std::string_view m_rest;
  std::size_t m_size;
  std::size_t m_reads = 0;
  std::size_t m_largest = 0;
};

class Failing : public c_read {
 public:
  elmx_error read(char* place, std::size_t, std::size_t& count) override {
    if (m_failed) return ELMX_CANNOT_READ;
    m_failed = true;
    count = std::string_view("<project name='n'><pla").copy(place, 100);
    return ELMX_OK;
  }
  std::string name() const override { return "failing"; }

 private:
  bool m_failed = false;
};

std::string declared(const std::string& declarations, const std::string& root) {
  return "<!DOCTYPE project [" + declarations + "]>" + root;
}

}  // namespace

TEST(XmlReader, ReadsEveryEncodingIntoUtf8) {
  EXPECT_EQ(nameIn("<project name='" + greeting + "'/>"), greeting);
  EXPECT_EQ(nameIn("\xEF\xBB\xBF<project name='" + greeting + "'/>"), greeting);
  EXPECT_EQ(nameIn("<?xml version='1.0' encoding='UTF-8'?><project name='" + greeting + "'/>"),
            greeting);
  EXPECT_EQ(nameIn("<?xml version='1.0' encoding='ISO-8859-1'?><project name='Gr\xFC\xDF"
                   "e'/>"),
            greeting);
  EXPECT_EQ(nameIn("<?xml version='1.0' encoding='US-ASCII'?><project name='Gr&#252;&#xDF;e'/>"),
            greeting);
  EXPECT_EQ(nameIn(utf16(u"\uFEFF<project name='Gr\u00fc\u00dfe'/>", false)), greeting);
  EXPECT_EQ(nameIn(utf16(u"\uFEFF<project name='Gr\u00fc\u00dfe'/>", true)), greeting);
  EXPECT_EQ(nameIn(utf16(u"\uFEFF<project name='\U0001F600'/>", true)), "\U0001F600");
}

TEST(XmlReader, RefusesUnknownEncodingsAndBrokenText) {
  EXPECT_EQ(Document("<?xml version='1.0' encoding='KLINGON'?><project/>").error, ELMX_ENCODING);
  EXPECT_EQ(Document("<?xml version='1.0' encoding='UTF-16'?><project/>").error, ELMX_ENCODING);
  for (const char* name : {"\xFF", "\xC0\x80", "\xED\xA0\x80", "\xE2\x82", "\x01", "&#0;", "&#1;",
                           "&#xD800;", "&#xFFFF;", "<", "&", "&nothing;"}) {
    EXPECT_EQ(Document("<project name='" + std::string(name) + "'/>").error, ELMX_NOT_WELL_FORMED);
  }
  EXPECT_EQ(Document(std::string("<project name='a\0b'/>", 21)).error, ELMX_NOT_WELL_FORMED);
}

TEST(XmlReader, RefusesWhatIsNoDocument) {
  for (const char* text : {"", " \n", "<!-- nothing -->", "<?xml version='1.0'?>"}) {
    const Document document(text);
    EXPECT_EQ(document.error, ELMX_NO_DOCUMENT) << text;
    EXPECT_EQ(document.debug.message, "there is no element");
  }
  for (const char* text : {"text", "<project", "<project>", "<project></projekt>",
                           "<project a='1' a='2'/>", "<project><![CDATA[</project>", "{}"}) {
    EXPECT_EQ(Document(text).error, ELMX_NOT_WELL_FORMED) << text;
  }
}

TEST(XmlReader, TellsWhereADocumentIsBroken) {
  const Document document("<project>\n  <platform>\n    <host></hosts>\n  </platform>\n</project>");
  EXPECT_EQ(document.error, ELMX_NOT_WELL_FORMED);
  EXPECT_EQ(document.debug.line, 3U);
  EXPECT_EQ(document.debug.column, 13U);
  EXPECT_EQ(document.debug.message, "mismatched tag");
  EXPECT_EQ(document.project.SizePlatform(), 1U);
  EXPECT_TRUE(document.project.GetPlatform(0).IssetHost());
}

TEST(XmlReader, KeepsOnlyErrorsBehindWhichItCannotReadFromAHandler) {
  const test::Tolerated read("<project name='n'><platform><host/>");
  EXPECT_EQ(read.error, ELMX_NOT_WELL_FORMED);
  EXPECT_EQ(read.faults.size(), 1U);
  EXPECT_EQ(read.project.SizePlatform(), 1U);
}

TEST(XmlReader, ReadsTheSameFromPiecesOfAnySize) {
  const std::string text =
      inKernel("<arg name='a&amp;b'/>" + std::string(100, ' ') + "<arg name='" + greeting + "'/>");
  const Document whole(text);
  ASSERT_EQ(whole.error, ELMX_OK);
  for (const std::size_t size : {1U, 2U, 3U, 7U, 64U}) {
    Pieces source(text, size);
    c_xml_reader reader(source);
    Movrel::Project project;
    EXPECT_EQ(project.unmarshal(reader), ELMX_OK);
    EXPECT_TRUE(project == whole.project);
  }
}

TEST(XmlReader, JoinsTheTextOfAnElement) {
  const std::string description(200'000, 'x');
  Document document("<project><platform><description>a<!-- c -->&lt;<![CDATA[<b>]]>\r\n" +
                    description + "</description><host/></platform></project>");
  EXPECT_EQ(document.project.GetPlatform(0).GetDescription(0), "a<<b>\n" + description);
}

// A piece that leaves a tag unfinished is scanned anew with the next: pieces have to grow with it.
TEST(XmlReader, ReadsLongValuesInFewPieces) {
  const std::string value(20'000'000, 'v');
  const std::string text = "<!--" + value + "--><project name='" + value + "'/>";
  Pieces source(text, text.size());
  c_xml_reader reader(source);
  Movrel::Project project;
  EXPECT_EQ(project.unmarshal(reader), ELMX_OK);
  EXPECT_EQ(project.GetName(), value);
  EXPECT_LT(source.reads(), 30U);
}

TEST(XmlReader, HoldsLittleOfTheDocumentAtATime) {
  const std::string args(100'000, ' ');
  const std::string text = inKernel("<arg/>" + args + "<arg/>" + args);
  Pieces source(text, text.size());
  c_xml_reader reader(source);
  Movrel::Project project;
  EXPECT_EQ(project.unmarshal(reader), ELMX_OK);
  EXPECT_EQ(source.largest(), std::size_t{1} << 16);
}

TEST(XmlReader, ReportsASourceThatFails) {
  Failing source;
  c_xml_reader reader(source);
  Movrel::Project project;
  EXPECT_EQ(project.unmarshal(reader), ELMX_CANNOT_READ);
  EXPECT_EQ(reader.debug_error().source, "failing");
  EXPECT_EQ(reader.debug_error().message, "the document cannot be read");
}

TEST(XmlReader, ExpandsEntitiesOfTheDocument) {
  EXPECT_EQ(nameIn(declared("<!ENTITY maker 'us &amp; them'>", "<project name='&maker;'/>")),
            "us & them");
  EXPECT_EQ(nameIn(declared("<!ENTITY % all \"<!ENTITY maker 'us'>\"> %all;",
                            "<project name='&maker;'/>")),
            "us");
}

TEST(XmlReader, RefusesEntitiesThatExpandWithoutEnd) {
  std::string laughs = "<!ENTITY a0 'ha ha ha ha ha ha ha ha ha ha'>";
  for (int level = 1; level < 10; ++level) {
    const std::string below = "&a" + std::to_string(level - 1) + ";";
    laughs += "<!ENTITY a" + std::to_string(level) + " '";
    for (int count = 0; count < 10; ++count) laughs += below;
    laughs += "'>";
  }
  EXPECT_EQ(Document(declared(laughs, "<project name='&a9;'/>")).error, ELMX_HOSTILE_ENTITIES);
  EXPECT_EQ(Document(declared(laughs, "<project>&a9;</project>")).error, ELMX_HOSTILE_ENTITIES);
  EXPECT_EQ(Document(declared("<!ENTITY a '&a;'>", "<project name='&a;'/>")).error,
            ELMX_NOT_WELL_FORMED);
}

TEST(XmlReader, RefusesDefaultValuesThatExpandWithoutEnd) {
  const std::string value(10'000, 'v');
  std::string text = declared("<!ATTLIST arg name CDATA '" + value + "'>", "");
  text += "<project><platform><host/><device><core><kernel>";
  for (int count = 0; count < 1'000; ++count) text += "<arg/>";
  text += "</kernel></core></device></platform></project>";
  EXPECT_EQ(Document(text).error, ELMX_HOSTILE_ENTITIES);
}

TEST(XmlReader, RefusesMoreEntitiesThanItsStackCouldExpand) {
  std::string chain = "<!ENTITY e0 'x'>";
  for (int number = 1; number < 50'000; ++number) {
    chain += "<!ENTITY e" + std::to_string(number) + " '&e" + std::to_string(number - 1) + ";'>";
  }
  EXPECT_EQ(Document(declared(chain, "<project name='&e49999;'/>")).error, ELMX_HOSTILE_ENTITIES);
}

TEST(XmlReader, NeverFetchesAnotherFile) {
  const std::string external = "<!ENTITY x SYSTEM 'file:///etc/hostname'>";
  EXPECT_EQ(Document(declared(external, "<project>&x;</project>")).error, ELMX_EXTERNAL_ENTITY);
  EXPECT_EQ(Document(declared(external, "<project name='&x;'/>")).error, ELMX_EXTERNAL_ENTITY);
  EXPECT_EQ(Document(declared("<!ENTITY % x SYSTEM 'x.dtd'> %x;", "<project/>")).error,
            ELMX_EXTERNAL_ENTITY);
  EXPECT_EQ(Document("<!DOCTYPE project SYSTEM 'x.dtd'><project name='&x;'/>").error,
            ELMX_EXTERNAL_ENTITY);
}

TEST(XmlReader, TellsNamespacesApart) {
  static constexpr s_namespace entries[] = {{"a", "urn:a"}, {"b", "urn:b"}};
  const s_ns_map map{entries, 2};
  EXPECT_EQ(c_cracked_name("", "x").get_element_ns_id(map), c_cracked_name::no_namespace);
  EXPECT_EQ(c_cracked_name("urn:b", "x").get_element_ns_id(map), 2);
  EXPECT_EQ(c_cracked_name("urn:c", "x").get_element_ns_id(map), c_cracked_name::unknown_namespace);
  EXPECT_EQ(c_cracked_name("urn:a", "x").get_element_ns_id({}), c_cracked_name::unknown_namespace);
  const test::Tolerated read("<project xmlns:x='urn:x' x:name='n' xml:lang='en'/>");
  EXPECT_EQ(read.codes(), (std::vector<int>{ELMX_UNKNOWN_ATTRIBUTE, ELMX_UNKNOWN_ATTRIBUTE}));
  EXPECT_FALSE(read.project.IssetName());
}

TEST(XmlReader, ShortensTheValuesItQuotes) {
  const Document document(test::inPlatform("<device addrWidth='" + std::string(62, 'x') +
                                           std::string("\u20ac\u20ac") + "'/>"));
  EXPECT_EQ(document.debug.message,
            "attribute addrWidth: \"" + std::string(62, 'x') + "...\" is no decimal integer");
}
