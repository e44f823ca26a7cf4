#include <tests/schemas/Documents.h>

#include <gtest/gtest.h>
#include <memory>
#include <pthread.h>
#include <string>

using Movrel::ModuleType;
using Movrel::Project;

namespace {

constexpr int deep = 100'000;

std::string nested(int depth, const std::string& innermost) {
  std::string text;
  for (int level = 0; level < depth; ++level) text += "<module name=\"m\"><rtlPort/>";
  text += innermost;
  for (int level = 0; level < depth; ++level) text += "</module>";
  return test::inKernel(text);
}

int depthOf(const ModuleType& top) {
  int depth = 1;
  for (const ModuleType* at = &top; at->SizeModule() > 0; at = &at->GetModule(0)) ++depth;
  return depth;
}

// Runs on a thread whose stack would not do for a recursion of that depth.
template <class Work>
void onSmallStack(Work work) {
  pthread_attr_t attributes;
  ASSERT_EQ(pthread_attr_init(&attributes), 0);
  ASSERT_EQ(pthread_attr_setstacksize(&attributes, std::size_t{256} << 10), 0);
  pthread_t thread{};
  const auto run = [](void* given) -> void* {
    (*static_cast<Work*>(given))();
    return nullptr;
  };
  ASSERT_EQ(pthread_create(&thread, &attributes, run, &work), 0);
  ASSERT_EQ(pthread_join(thread, nullptr), 0);
  pthread_attr_destroy(&attributes);
}

}  // namespace

TEST(MovrelNesting, ReadsWritesCopiesComparesAndEndsModulesOfAnyDepth) {
  onSmallStack([] {
    test::Document document(nested(deep, ""));
    ASSERT_EQ(document.error, lmx60::ELMX_OK) << document.debug.message;
    EXPECT_EQ(depthOf(test::kernelOf(document.project).GetModule(0)), deep);
    auto copy = std::make_unique<Project>(document.project);
    EXPECT_TRUE(*copy == document.project);
    const test::Document again(test::written(*copy));
    EXPECT_EQ(again.error, lmx60::ELMX_OK);
    EXPECT_TRUE(again.project == *copy);
    ModuleType* at = &test::kernelOf(*copy).GetModule(0);
    while (at->SizeModule() > 0) at = &at->GetModule(0);
    at->SetType("other");
    EXPECT_FALSE(*copy == document.project);
    const std::unique_ptr<ModuleType> clone(test::kernelOf(*copy).GetModule(0).do_clone());
    EXPECT_TRUE(*clone == test::kernelOf(*copy).GetModule(0));
    test::kernelOf(*copy).GetModule(0).ClearModule();
    copy.reset();
  });
}

TEST(MovrelNesting, GivesUpReadingAtAnyDepth) {
  onSmallStack([] {
    test::Document document(nested(deep, "<module/><rtlPort/>"));
    EXPECT_EQ(document.error, lmx60::ELMX_UNEXPECTED_ELEMENT);
    EXPECT_EQ(depthOf(test::kernelOf(document.project).GetModule(0)), deep + 1);
    std::string cut = nested(deep, "");
    cut.resize(cut.size() / 2 + 100);
    EXPECT_EQ(test::Document(cut).error, lmx60::ELMX_NOT_WELL_FORMED);
  });
}

TEST(MovrelNesting, SkipsUnknownElementsOfAnyDepth) {
  onSmallStack([] {
    std::string text;
    for (int level = 0; level < deep; ++level) text += "<x>";
    for (int level = 0; level < deep; ++level) text += "</x>";
    EXPECT_EQ(test::Document(test::inKernel(text)).error, lmx60::ELMX_OK);
  });
}

TEST(MovrelNesting, KeepsTheShapeOfATree) {
  const std::string text = test::inKernel(
      "<module name='a'><module name='b'><module name='c'/></module><module name='d'/></module>"
      "<module name='e'><rtlPort name='p'/></module>");
  test::Document document(text);
  const test::Document again(test::written(document.project));
  EXPECT_TRUE(again.project == document.project);
  const ModuleType& top = test::kernelOf(document.project).GetModule(0);
  EXPECT_EQ(top.GetModule(0).GetModule(0).GetName(), "c");
  EXPECT_EQ(top.GetModule(1).GetName(), "d");
  EXPECT_EQ(test::kernelOf(document.project).GetModule(1).GetRtlPort(0).GetName(), "p");
  // The same names in another shape are another tree.
  const test::Document other(test::inKernel(
      "<module name='a'><module name='b'/><module name='c'><module name='d'/></module></module>"
      "<module name='e'><rtlPort name='p'/></module>"));
  EXPECT_FALSE(other.project == document.project);
}

TEST(MovrelNesting, GrowsNoFasterThanTheNumberOfElements) {
  test::Document shallow(nested(1000, ""));
  test::Document deeper(nested(2000, ""));
  EXPECT_LT(test::written(deeper.project).size(), test::written(shallow.project).size() * 3);
}
