#pragma once

#include "tests/crossreference/ReadingTest.h"

#include <string>

namespace test {

/// A test that reads the files of a whole design, none of which may end in a fatal error.
class DesignFilesTest : public ReadingTest {
 protected:
  void readNetlists(const std::string& rtl, const std::string& synth) {
    parse(XRF_RTL2LL::RTL, rtl);
    parse(XRF_RTL2LL::SYNTH, synth);
  }
  void parse(XRF_RTL2LL::EdifView view, const std::string& text) {
    const TempFile file(text, "netlist.edf");
    run([&] {
      view == XRF_RTL2LL::RTL ? subject.parse_rtl(file.path()) : subject.parse_synth(file.path());
    });
    ASSERT_FALSE(fatal) << fatal->text;
  }
  void readLocations(const std::string& text) {
    const TempFile file(text, "design.ll");
    run([&] { subject.parse_ll(file.path()); });
    ASSERT_FALSE(fatal) << fatal->text;
  }
  void readLog(const std::string& text) {
    const TempFile file(text, "synth.log");
    run([&] { subject.parse_log(file.path()); });
    ASSERT_FALSE(fatal) << fatal->text;
  }
};

}  // namespace test
