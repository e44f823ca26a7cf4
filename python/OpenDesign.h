#pragma once

#include <crossreference/XRF_RTL2LL.h>
#include <python/Guest.h>

#include <memory>
#include <string>
#include <vector>

namespace xrf::python {

/// The files of one design; those that are not there are empty.
struct DesignFiles {
  std::string rtl;
  std::string synth;
  std::string xrf;  ///< instead of the two netlists
  std::string locations;
  std::string log;
};

/// How a design's files are read.
struct DesignReading {
  XRF_RTL2LL::Matching matching;
  XRF_RTL2LL::Limits limits;
};

/// A design that was read to its end, in a model of its own. Nothing changes it from then on but
/// `save`, so whoever holds the interpreter's lock may look into it.
class OpenDesign {
 public:
  /// Reads the files, without any need of the interpreter but for what `progress` does.
  static std::shared_ptr<OpenDesign> read(const DesignFiles& files, const DesignReading& how,
                                          Read::Progress progress);

  explicit OpenDesign(const DesignReading& how);

  const XRF_RTL2LL::Design& design() const { return *m_design; }
  XRF_RTL2LL::Module* top(XRF_RTL2LL::EdifView view) const;
  const std::vector<std::string>& warnings() const { return m_warnings; }
  void save(const std::string& path, bool hideHidden) const;

 private:
  void readDesign(const DesignFiles& files, Read& read);
  void readDeviceFiles(const DesignFiles& files, Read& read);
  void declareBits();

  XRF_RTL2LL::Model m_model;
  std::unique_ptr<XRF_RTL2LL::Design> m_design;
  std::vector<std::string> m_warnings;
};

}  // namespace xrf::python
