#include <crossreference/Design.h>
#include <crossreference/DesignState.h>
#include <crossreference/Export.h>
#include <crossreference/NetlistState.h>
#include <support/Report.h>

namespace XRF_RTL2LL {

namespace {

std::shared_ptr<ModelState> locked(const std::weak_ptr<ModelState>& model) {
  std::shared_ptr<ModelState> state = model.lock();
  if (state == nullptr)
    fatalHere("The design's model was reset; the design can't be used any more.");
  return state;
}

}  // namespace

DesignUse::DesignUse(const std::weak_ptr<ModelState>& model)
    : m_model(locked(model)), m_scope(*m_model) {}

void keepName(std::vector<std::string>& names, std::string_view name) {
  constexpr std::size_t mostKept = 100;
  if (names.size() < mostKept) names.emplace_back(name);
}

Design::Design(Matching matching) : m_state(std::make_unique<State>()) {
  ModelState& model = ModelState::current();
  m_state->model = model.weak_from_this();
  // The netlist outlives the design: what it names stays in use.
  model.netlists.push_back(std::make_unique<Netlist>());
  m_state->netlist = model.netlists.back().get();
  setMatching(matching);
}

Design::~Design() = default;

void Design::setMatching(Matching matching) {
  const DesignUse use(m_state->model);
  if (m_state->started)
    fatalHere("The matching of a design can't be changed after its first read.");
  readAs(*m_state->netlist,
         matching == Matching::Extended ? Reading::extended() : Reading::strict());
}

void Design::setLimits(const Limits& limits) {
  const DesignUse use(m_state->model);
  ModelState::current().limits = limits.possible();
}

int Design::parse_rtl(std::string file) {
  const DesignUse use(m_state->model);
  m_state->started = true;
  Netlist& netlist = *m_state->netlist;
  netlist.parse_rtl(file);
  m_state->top = netlist.getTop(RTL);
  if (m_state->top == nullptr) {
    const ReadPlace place(file, nullptr, [](const void*) { return ReadPlace::Position(); });
    fatal("ERROR: Top module not found\n");
  }
  m_state->loaded = true;
  return 0;
}

int Design::parse_synth(std::string file) {
  const DesignUse use(m_state->model);
  m_state->started = true;
  m_state->netlist->parse_synth(file);
  if (m_state->netlist->getTop(SYNTH) == nullptr) {
    fatalSilently("The file %s holds no design: top module not found.", file.c_str());
  }
  return 0;
}

int Design::parse_xrf(std::string file) {
  const DesignUse use(m_state->model);
  m_state->started = true;
  m_state->netlist->parse_xrf(file);
  m_state->top = m_state->netlist->getTop(RTL);
  m_state->loaded = true;
  return initializeBits();
}

bool Design::cleans() const { return m_state->netlist->m_state->reading.has(Rule::CleanNames); }

int Design::initializeBits() {
  const DesignUse use(m_state->model);
  const std::string text = "z";
  for (Bit* bit : Bit::getAllBits()) bit->setValueStr(text);
  return 0;
}

Module* Design::findModule(EdifView view, std::string name) const {
  const DesignUse use(m_state->model);
  if (cleans()) name = cleaned(name);
  Module* module = m_state->netlist->findModule(view, name);
  return module != nullptr ? module : m_state->netlist->findModule(view, normalised(name));
}

Module* Design::findModule(unsigned int /*id*/) const { return nullptr; }

Signal* Design::findSignal(EdifView view, std::string name) const {
  const DesignUse use(m_state->model);
  if (cleans()) name = cleaned(name);
  Signal* signal = m_state->netlist->findSignal(view, name);
  if (signal != nullptr) return signal;
  const std::size_t slash = name.rfind('/');
  // A name without a slash has no signal part, for which substr throws.
  const std::string signalPart = name.substr(slash);
  return m_state->netlist->findSignal(view, normalised(name.substr(0, slash)) + signalPart);
}

BitRef* Design::findBitRef(EdifView view, std::string defName, std::string signalName,
                           unsigned int index) const {
  const DesignUse use(m_state->model);
  const InstanceIndex& instances = m_state->netlist->m_state->instances[SYNTH];
  const auto group = instances.find(defName);
  if (group == instances.end()) return nullptr;
  for (const Module* instance : group->second.modules) {
    std::string name = NameKey(*instance).compose();
    name += '/';
    name += signalName;
    const Signal* signal = findSignal(view, name);
    if (signal == nullptr || index < signal->getLsb() || index > signal->getMsb()) continue;
    BitRef* ref = signal->getBitRef(index);
    if (ref != nullptr) return ref;
  }
  return nullptr;
}

std::string Design::getValidModulePath(EdifView view, const std::string& path) const {
  const DesignUse use(m_state->model);
  std::string result;
  std::string current;
  const auto accept = [&] {
    const Module* module = m_state->netlist->findModule(view, current);
    const bool accepted = module != nullptr && module->getKind() == HIER;
    if (accepted) result = current;
    return accepted;
  };
  for (const char byte : path) {
    if (byte == '/' && !accept()) current = result;
    current += byte;
  }
  accept();
  return result;
}

void Design::dump() const {
  const DesignUse use(m_state->model);
  m_state->netlist->dump();
}

unsigned int Design::getInUseBitCount() const { return 0; }

Family Design::getFamily() const {
  const DesignUse use(m_state->model);
  return m_state->netlist->getFamily();
}

int Design::exportDesign(std::string file, bool showHidden) const {
  const DesignUse use(m_state->model);
  const Netlist& netlist = *m_state->netlist;
  return Export::exportDesign(netlist.getFamily(), netlist.getTop(RTL), netlist.getTop(SYNTH), file,
                              showHidden);
}

Netlist* Design::getNetlist() const {
  const DesignUse use(m_state->model);
  return m_state->netlist;
}

const LocationReport& Design::locationReport() const { return m_state->locations; }

const LogReport& Design::logReport() const { return m_state->log; }

}  // namespace XRF_RTL2LL
