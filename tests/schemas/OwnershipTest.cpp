#include <tests/schemas/Documents.h>

#include <gtest/gtest.h>
#include <memory>

using lmx60::lmx_exception;
using Movrel::Kernel;

namespace {

int living = 0;

// A child of a host's own class.
template <class Base>
class Counted : public Base {
 public:
  Counted() { ++living; }
  Counted(const Counted& other) : Base(other) { ++living; }
  Counted& operator=(const Counted&) = delete;
  ~Counted() override { --living; }
  Counted* do_clone() const override { return new Counted(*this); }
};

using CountedArg = Counted<Movrel::Arg>;
using CountedModule = Counted<Movrel::ModuleType>;
using CountedSize = Counted<Movrel::MaxWorkGroupSize>;

class MovrelOwnership : public testing::Test {
 protected:
  MovrelOwnership() { living = 0; }
};

}  // namespace

TEST_F(MovrelOwnership, EndsWithTheParent) {
  {
    Kernel kernel;
    kernel.AppendArg(new CountedArg());
    kernel.AssignMaxWorkGroupSize(new CountedSize());
    EXPECT_EQ(living, 2);
  }
  EXPECT_EQ(living, 0);
}

TEST_F(MovrelOwnership, DeletesWhatIsRemovedOrReplaced) {
  Kernel kernel;
  for (int count = 0; count < 4; ++count) kernel.AppendArg(new CountedArg());
  kernel.DeleteArg(1);
  EXPECT_EQ(living, 3);
  kernel.AssignArg(0, Movrel::Arg());
  EXPECT_EQ(living, 2);
  kernel.AssignArg(1, new Movrel::Arg());
  EXPECT_EQ(living, 1);
  kernel.ClearArg();
  EXPECT_EQ(living, 0);
  kernel.AssignMaxWorkGroupSize(new CountedSize());
  kernel.AssignMaxWorkGroupSize(Movrel::MaxWorkGroupSize());
  EXPECT_EQ(living, 0);
  kernel.AssignMaxWorkGroupSize(new CountedSize());
  kernel.UnsetMaxWorkGroupSize();
  EXPECT_EQ(living, 0);
  kernel.AppendArg(new CountedArg());
  kernel.reset();
  EXPECT_EQ(living, 0);
}

TEST_F(MovrelOwnership, DeletesWhatCannotBeStored) {
  Kernel kernel;
  EXPECT_THROW(kernel.InsertArg(1, new CountedArg()), lmx_exception);
  EXPECT_THROW(kernel.AssignArg(0, new CountedArg()), lmx_exception);
  EXPECT_EQ(living, 0);
  EXPECT_EQ(kernel.SizeArg(), 0U);
}

TEST_F(MovrelOwnership, ClonesChildrenOfDerivedClasses) {
  Kernel kernel;
  kernel.AppendArg(new CountedArg());
  kernel.AppendModule().AppendModule(new CountedModule()).AppendModule(new CountedModule());
  EXPECT_EQ(living, 3);
  const auto copy = std::make_unique<Kernel>(kernel);
  EXPECT_EQ(living, 6);
  EXPECT_TRUE(*copy == kernel);
  EXPECT_NE(dynamic_cast<CountedModule*>(&copy->GetModule(0).GetModule(0).GetModule(0)), nullptr);
}

TEST_F(MovrelOwnership, NamesTheFaultOfAnException) {
  Kernel kernel;
  try {
    kernel.GetArg(3);
    FAIL();
  } catch (const lmx_exception& error) {
    EXPECT_EQ(error.code(), lmx60::ELMX_BAD_INDEX);
    EXPECT_STREQ(error.what(), "position 3 of a list of 0");
  }
  EXPECT_THROW(kernel.GetMaxWorkGroupSize(), lmx60::c_lmx_exception);
  EXPECT_THROW(kernel.AppendArg(nullptr), lmx60::c_lmx_exception);
}

TEST_F(MovrelOwnership, ComparesDeeply) {
  lmx60::elmx_error error = lmx60::ELMX_OK;
  const Movrel::Project project("examples/vadd/vadd.xml", &error);
  ASSERT_EQ(error, lmx60::ELMX_OK);
  Movrel::Project copy(project);
  EXPECT_TRUE(copy == project);
  test::kernelOf(copy).GetArg(1).SetName("c");
  EXPECT_FALSE(copy == project);
  test::kernelOf(copy).GetArg(1).SetName("b");
  EXPECT_TRUE(copy == project);
  // Present and empty is not absent.
  test::kernelOf(copy).GetArg(0).UnsetMemSize();
  EXPECT_FALSE(copy == project);
  copy.reset();
  EXPECT_TRUE(copy == Movrel::Project());
}
