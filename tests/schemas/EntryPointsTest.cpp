#include <lmx60/AnyInfo.h>
#include <tests/TempFile.h>
#include <tests/schemas/Documents.h>

#include <filesystem>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <sys/stat.h>

using namespace lmx60;
using Movrel::Project;
using test::TempFile;

namespace {

const std::string small = "<project name=\"p\"/>";

Project named(const char* name) {
  Project project;
  project.SetName(name);
  return project;
}

Project example() {
  elmx_error error = ELMX_OK;
  Project project("examples/vadd/vadd.xml", &error);
  EXPECT_EQ(error, ELMX_OK);
  return project;
}

}  // namespace

TEST(MovrelEntryPoints, TellAFileNameFromADocument) {
  const TempFile file(small);
  elmx_error error = ELMX_OK;
  EXPECT_TRUE(Project(file.path().c_str(), &error) == named("p"));
  EXPECT_EQ(error, ELMX_OK);
  s_debug_error debug;
  EXPECT_TRUE(Project(file.path(), &error, &debug) == Project());
  EXPECT_EQ(error, ELMX_NOT_WELL_FORMED);
  EXPECT_EQ(debug.code, ELMX_NOT_WELL_FORMED);
  EXPECT_EQ(debug.source, "memory");
  EXPECT_TRUE(Project(small, &error) == named("p"));
  EXPECT_EQ(error, ELMX_OK);
  EXPECT_TRUE(Project(small.c_str(), &error, &debug) == Project());
  EXPECT_EQ(error, ELMX_CANNOT_OPEN);
}

TEST(MovrelEntryPoints, ReadFromEverySource) {
  elmx_error error = ELMX_NOT_READ;
  EXPECT_TRUE(Project(small.data(), small.size(), &error) == named("p"));
  EXPECT_EQ(error, ELMX_OK);
  EXPECT_TRUE(Project(c_any_info(small), &error) == named("p"));
  EXPECT_EQ(error, ELMX_OK);
  c_read_memory source(small.data(), small.size());
  c_xml_reader reader(source);
  EXPECT_TRUE(Project(reader, &error) == named("p"));
  EXPECT_EQ(error, ELMX_OK);
  const TempFile file(small);
  Project project;
  EXPECT_EQ(project.Unmarshal(file.path().c_str()), ELMX_OK);
  EXPECT_TRUE(project == named("p"));
  EXPECT_EQ(project.Unmarshal("<project/>", 10), ELMX_OK);
  EXPECT_TRUE(project == Project());
  EXPECT_EQ(project.Unmarshal(c_any_info(small)), ELMX_OK);
  EXPECT_TRUE(project == named("p"));
}

TEST(MovrelEntryPoints, TakeNoMoreThanTheGivenLength) {
  elmx_error error = ELMX_OK;
  const Project whole((small + "garbage").c_str(), small.size(), &error);
  EXPECT_EQ(error, ELMX_OK);
  const Project part(small.data(), small.size() - 1, &error);
  EXPECT_EQ(error, ELMX_NOT_WELL_FORMED);
  const Project none(nullptr, 0, &error);
  EXPECT_EQ(error, ELMX_NO_DOCUMENT);
}

TEST(MovrelEntryPoints, StoreFortyTwoBeforeTheyStart) {
  elmx_error error = ELMX_OK;
  elmx_error seen = ELMX_OK;
  const std::string text = "<project a='1'/>";
  c_read_memory source(text.data(), text.size());
  c_xml_reader reader(source);
  reader.set_error_handler([&](const s_debug_error&) {
    seen = error;
    return ELMX_OK;
  });
  const Project project(reader, &error);
  EXPECT_EQ(seen, 42);
  EXPECT_EQ(error, ELMX_OK);
}

TEST(MovrelEntryPoints, AllowEveryPointerToBeNull) {
  EXPECT_TRUE(Project(small, nullptr) == named("p"));
  EXPECT_TRUE(Project("no such file", nullptr, nullptr) == Project());
  EXPECT_TRUE(Project(static_cast<const char*>(nullptr), nullptr) == Project());
  c_read_memory source(small.data(), small.size());
  c_xml_reader reader(source);
  EXPECT_TRUE(Project(reader, nullptr) == named("p"));
}

TEST(MovrelEntryPoints, NameTheFileThatCannotBeRead) {
  elmx_error error = ELMX_OK;
  s_debug_error debug;
  const TempFile file;
  const Project missing(file.missing().c_str(), &error, &debug);
  EXPECT_EQ(error, ELMX_CANNOT_OPEN);
  EXPECT_EQ(debug.source, file.missing());
  EXPECT_EQ(debug.message, "cannot open the file: No such file or directory");
  const Project folder(file.folder().c_str(), &error, &debug);
  EXPECT_EQ(error, ELMX_CANNOT_READ);
  EXPECT_EQ(debug.message, "cannot read the file: Is a directory");
}

TEST(MovrelEntryPoints, ForgetTheFaultsOfAnEarlierReading) {
  Project project;
  s_debug_error debug;
  EXPECT_EQ(project.Unmarshal("<x/>", 4, &debug), ELMX_WRONG_ROOT);
  EXPECT_EQ(project.Unmarshal(small.data(), small.size(), &debug), ELMX_OK);
  EXPECT_EQ(debug.code, ELMX_OK);
  EXPECT_EQ(debug.message, "");
}

TEST(MovrelEntryPoints, WriteTheSameToEveryTarget) {
  const Project project = example();
  const std::string text = test::written(project);
  const TempFile file;
  EXPECT_EQ(project.Marshal(file.path().c_str()), ELMX_OK);
  EXPECT_EQ(file.content(), text);
  std::ostringstream stream;
  EXPECT_EQ(project.Marshal(stream), ELMX_OK);
  EXPECT_EQ(stream.str(), text);
}

TEST(MovrelEntryPoints, WriteWhatWasReadInTheOrderOfTheSchema) {
  const std::string text = test::written(example());
  const std::string original = test::contentOf("examples/vadd/vadd.xml");
  EXPECT_EQ(text.substr(text.find("<project")), original.substr(original.find("<project")));
  EXPECT_EQ(test::written(Project()), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<project/>\n");
}

TEST(MovrelEntryPoints, RaiseTheAbsenceOfAHostAndLeaveTheTargetAlone) {
  Project project;
  project.AppendPlatform();
  std::string text = "before";
  EXPECT_THROW(project.Marshal(&text), lmx_exception);
  EXPECT_EQ(text, "before");
  const TempFile file("before");
  EXPECT_THROW(project.Marshal(file.path().c_str()), lmx_exception);
  EXPECT_EQ(file.content(), "before");
  const Movrel::Platform& platform = project.GetPlatform(0);
  EXPECT_THROW(platform.GetHost(), lmx_exception);
  project.GetPlatform(0).GetHost();
  EXPECT_EQ(project.Marshal(&text), ELMX_OK);
}

TEST(MovrelEntryPoints, KeepTheOldFileWhenTheNewOneCannotBeWritten) {
  const TempFile file("before");
  Project project = named("\x01");
  s_debug_error debug;
  EXPECT_EQ(project.Marshal(file.path().c_str(), &debug), ELMX_UNWRITABLE_TEXT);
  EXPECT_EQ(debug.element, "project");
  EXPECT_EQ(debug.source, file.path());
  EXPECT_EQ(file.content(), "before");
  std::size_t entries = 0;
  for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator(file.folder())) {
    ++entries;
  }
  EXPECT_EQ(entries, 1U);
}

TEST(MovrelEntryPoints, ReportADeviceThatIsFull) {
  s_debug_error debug;
  EXPECT_EQ(named("p").Marshal("/dev/full", &debug), ELMX_CANNOT_WRITE);
  EXPECT_EQ(debug.message, "cannot write the file: No space left on device");
  EXPECT_EQ(named("p").Marshal("/no/such/folder/file", &debug), ELMX_CANNOT_WRITE);
  std::ostringstream broken;
  broken.setstate(std::ios::badbit);
  EXPECT_EQ(named("p").Marshal(broken, &debug), ELMX_CANNOT_WRITE);
}

TEST(MovrelEntryPoints, RefuseToWriteAnIncompleteFifo) {
  Project project;
  Movrel::Platform& platform = project.AppendPlatform();
  platform.GetHost();
  platform.AppendDevice().AppendCore().AppendKernel().AppendFIFOInformation().AppendFIFOInst();
  std::string text;
  s_debug_error debug;
  EXPECT_EQ(project.Marshal(&text, &debug), ELMX_MISSING_ELEMENT);
  EXPECT_EQ(debug.message, "\"Name\" is missing");
}
