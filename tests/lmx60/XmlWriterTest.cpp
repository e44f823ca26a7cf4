#include <lmx60/XmlWriter.h>
#include <tests/schemas/Documents.h>

#include <gtest/gtest.h>
#include <string>
#include <vector>

using namespace lmx60;

namespace {

elmx_error marshalName(const std::string& name, std::string& text) {
  Movrel::Project project;
  project.SetName(name);
  return project.Marshal(&text);
}

std::string attribute(const std::string& name) {
  std::string text;
  EXPECT_EQ(marshalName(name, text), ELMX_OK);
  const std::size_t first = text.find("name=\"") + 6;
  return text.substr(first, text.rfind('"') - first);
}

Movrel::Project described(const std::string& description) {
  Movrel::Project project;
  Movrel::Platform& platform = project.AppendPlatform();
  platform.AppendDescription(description);
  platform.GetHost();
  return project;
}

std::string content(const std::string& description) {
  const std::string text = test::written(described(description));
  const std::size_t first = text.find("<description>") + 13;
  return text.substr(first, text.find("</description>") - first);
}

}  // namespace

TEST(XmlWriter, EscapesWhatWouldBeReadAsSomethingElse) {
  EXPECT_EQ(attribute("a&b<c>d\"e'f"), "a&amp;b&lt;c&gt;d&quot;e'f");
  EXPECT_EQ(attribute("\t\n\r"), "&#9;&#10;&#13;");
  EXPECT_EQ(attribute("\x7F"), "&#127;");
  EXPECT_EQ(content("a&b<c>d\"e'f ]]>"), "a&amp;b&lt;c&gt;d\"e'f ]]&gt;");
  EXPECT_EQ(content(" \t\n\r "), " \t\n&#13; ");
  EXPECT_EQ(attribute("\u00e9\u20ac\U0001F600"), "\u00e9\u20ac\U0001F600");
}

TEST(XmlWriter, WritesTextThatComesBackTheSame) {
  const std::vector<std::string> texts = {"",
                                          " ",
                                          "\r\n",
                                          "\n",
                                          "\t",
                                          "a\rb",
                                          "]]>",
                                          "&amp;",
                                          "\"'<>&",
                                          "\x7F\u0080\u009f",
                                          "\ud7ff\ue000\ufffd",
                                          "\U00010000\U0010ffff",
                                          std::string(100'000, '&'),
                                          std::string(100'000, 'x') + "\u20ac"};
  for (const std::string& text : texts) {
    std::string document;
    ASSERT_EQ(marshalName(text, document), ELMX_OK);
    EXPECT_EQ(test::Document(document).project.GetName(), text);
    test::Document again(test::written(described(text)));
    ASSERT_EQ(again.error, ELMX_OK);
    EXPECT_EQ(again.project.GetPlatform(0).GetDescription(0), text);
  }
}

TEST(XmlWriter, RefusesTextThatNoDocumentCanCarry) {
  const std::vector<std::string> texts = {std::string(1, '\0'),
                                          "\x01",
                                          "a\x1F",
                                          "\x0B",
                                          "\xFF",
                                          "\x80",
                                          "\xC3",
                                          "\xE2\x82",
                                          "\xC0\x80",
                                          "\xE0\x80\x80",
                                          "\xED\xA0\x80",
                                          "\xED\xBF\xBF",
                                          "\xEF\xBF\xBE",
                                          "\xEF\xBF\xBF",
                                          "\xF4\x90\x80\x80",
                                          "\xF8\x88\x80\x80\x80",
                                          "\xF0\x80\x80\x80",
                                          "ok\xC3("};
  for (const std::string& text : texts) {
    std::string document = "before";
    EXPECT_EQ(marshalName(text, document), ELMX_UNWRITABLE_TEXT) << testing::PrintToString(text);
    EXPECT_EQ(document, "before");
    s_debug_error debug;
    EXPECT_EQ(described(text).Marshal(&document, &debug), ELMX_UNWRITABLE_TEXT);
    EXPECT_EQ(debug.element, "description");
    EXPECT_EQ(debug.message, "the value of \"description\" holds what no XML document can carry");
  }
}

TEST(XmlWriter, IndentsAndClosesEmptyElementsAtOnce) {
  EXPECT_EQ(test::written(described("d")),
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<project>\n  <platform>\n"
            "    <description>d</description>\n    <host/>\n  </platform>\n</project>\n");
}

TEST(XmlWriter, DeclaresTheNamespacesOfTheFirstMap) {
  static constexpr s_namespace entries[] = {{"", "urn:a"}, {"b", "urn:&"}};
  static constexpr s_namespace others[] = {{"c", "urn:c"}};
  std::string text;
  c_write_string target(text);
  c_xml_writer writer(target);
  writer.conditionally_select_ns_map({entries, 2});
  writer.conditionally_select_ns_map({others, 1});
  writer.start_element("a");
  writer.start_element("b");
  writer.end_element();
  writer.end_element();
  EXPECT_EQ(writer.finish(), ELMX_OK);
  EXPECT_EQ(text.substr(39), "<a xmlns=\"urn:a\" xmlns:b=\"urn:&amp;\">\n  <b/>\n</a>\n");
}

TEST(XmlWriter, KeepsTheFirstFaultAndWritesNoMore) {
  std::string text;
  c_write_string target(text);
  c_xml_writer writer(target);
  writer.start_element("a");
  writer.handle_error(ELMX_NULL_CHILD, "first");
  writer.handle_error(ELMX_BAD_INDEX, "second");
  writer.start_element("b");
  writer.end_element();
  writer.end_element();
  EXPECT_EQ(writer.finish(), ELMX_NULL_CHILD);
  EXPECT_EQ(writer.debug_error().message, "first");
  EXPECT_EQ(writer.debug_error().element, "a");
  EXPECT_EQ(text, "");
}
