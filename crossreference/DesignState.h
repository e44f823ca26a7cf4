#pragma once

#include <crossreference/Design.h>
#include <crossreference/ModelState.h>
#include <crossreference/Reading.h>

#include <memory>
#include <string>

namespace XRF_RTL2LL {

struct Design::State {
  std::weak_ptr<ModelState> model;
  Netlist* netlist = nullptr;
  Module* top = nullptr;  // of the RTL view
  bool loaded = false;
  bool started = false;  // a file was read, so the matching is fixed
  LocationReport locations;
  LogReport log;
};

/// One operation of a design: holds its model and makes it current. A model that was reset is
/// fatal.
class DesignUse {
 public:
  explicit DesignUse(const std::weak_ptr<ModelState>& model);

 private:
  std::shared_ptr<ModelState> m_model;
  StateScope m_scope;
};

/// Keeps the first names of what could not be placed.
void keepName(std::vector<std::string>& names, std::string_view name);

}  // namespace XRF_RTL2LL
