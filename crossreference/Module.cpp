#include <crossreference/MemberSet.h>
#include <crossreference/ModelState.h>
#include <crossreference/Module.h>
#include <support/Report.h>

#include <algorithm>

namespace XRF_RTL2LL {

void* Module::operator new(std::size_t size) {
  // The caller may have been compiled with an older, smaller class.
  return ModelState::current().arena.allocate(std::max(size, sizeof(Module)));
}

Module::Module(const char* name, const char* defName, unsigned int id)
    : Module(ModelState::current().names.intern(name), ModelState::current().names.intern(defName),
             id) {}

Module::Module(const Word* name, const Word* defName, unsigned int id)
    : m_name(name),
      m_def_name(defName),
      m_path(ModelState::current().names.empty()),
      m_id(id),
      m_kind(HIER) {
  m_hidden = false;
  m_d_inverted = false;
  m_rst_inverted = false;
  m_named_signals = false;
  m_entered = 0;
}

unsigned int Module::getId() const { return m_id; }

const char* Module::getName() const { return m_name == nullptr ? nullptr : m_name->c_str(); }

const char* Module::getDefName() const {
  return m_def_name == nullptr ? nullptr : m_def_name->c_str();
}

void Module::setDefName(const char* defName) {
  m_def_name = ModelState::current().names.intern(defName);
}

std::string Module::getPath() const { return std::string(m_path->view()); }

void Module::setPath(const char* path) {
  setPathWord(ModelState::current().names.intern(path == nullptr ? "" : path));
}

const Word* Module::pathOf(const Signal& signal) const {
  if (!signal.m_earlier_path) return m_path;
  const EarlierPath* earlier = m_inside->earlierPaths;
  while (earlier->signal != &signal) earlier = earlier->next;
  return earlier->path;
}

void Module::setPathWord(const Word* path) {
  if (path == m_path) return;
  // Full names are composed on demand but belong to the time when the signal was made.
  if (m_named_signals) {
    ModelState& model = ModelState::current();
    model.signals.each([&](Signal* signal) {
      if (signal->m_module != this || signal->m_earlier_path) return;
      EarlierPath*& paths = inside().earlierPaths;
      paths = new (model.arena.allocate(sizeof(EarlierPath))) EarlierPath{signal, m_path, paths};
      signal->m_earlier_path = true;
    });
    m_named_signals = false;
  }
  m_path = path;
  m_entered = 0;
  if (m_inside != nullptr) m_inside->childPath = nullptr;
}

Module::Inside& Module::inside() {
  if (m_inside == nullptr) {
    m_inside = new (ModelState::current().arena.allocate(sizeof(Inside))) Inside;
  }
  return *m_inside;
}

const detail::Members& Module::children() const {
  static constexpr detail::Members none;
  return m_inside == nullptr ? none : m_inside->children;
}

const Word* Module::childPath() {
  const Word*& stored = inside().childPath;
  if (stored == nullptr) {
    std::string path(m_path->view());
    const bool nameless = m_name == nullptr || m_name->empty();
    if (!path.empty() || !nameless) path += '/';
    if (!nameless) path += *m_name;
    ModelState& model = ModelState::current();
    model.pathBytes += path.size();
    stored = model.names.intern(std::string_view(path));
  }
  return stored;
}

bool Module::isHidden() const { return m_hidden; }

void Module::setHidden() { m_hidden = true; }

opKind Module::getKind() const { return m_kind; }

void Module::setKind(opKind kind) { m_kind = kind; }

unsigned long Module::getInit() const { return m_init; }

void Module::setInit(unsigned long init) { m_init = init; }

bool Module::getDInverted() const { return m_d_inverted; }

void Module::setDInverted(bool inverted) { m_d_inverted = inverted; }

bool Module::getRSTInverted() const { return m_rst_inverted; }

void Module::setRSTInverted(bool inverted) { m_rst_inverted = inverted; }

Module* Module::getParent() const { return m_parent; }

void Module::setParent(Module* parent) { m_parent = parent; }

Range<Signal> Module::getSignals(bool visible) const {
  members::settle<Signal>(m_signals, false);
  return members::range<Signal>(m_signals, visible);
}

Range<Module> Module::getChildren(bool visible) const {
  if (m_inside != nullptr) members::settle<Module>(m_inside->children, false);
  return members::range<Module>(children(), visible);
}

Signal* Module::getSignal(unsigned int id, bool quiet) const {
  auto* signal = members::find<Signal>(m_signals, id);
  if (signal == nullptr && !quiet) {
    fatalSilently("Module %s has no signal of number %u.", getName(), id);
  }
  return signal;
}

Module* Module::getChild(unsigned int id, bool quiet) const {
  auto* child = members::find<Module>(children(), id);
  if (child == nullptr && !quiet) {
    fatalSilently("Module %s has no child of number %u.", getName(), id);
  }
  return child;
}

void Module::addChild(Module* child) {
  if (members::find<Module>(children(), child->m_id) != nullptr) {
    fatal("ERROR: (addChild) A child with the id '%d' already exists.\n",
          static_cast<int>(child->m_id));
  }
  Arena& arena = ModelState::current().arena;
  detail::Members& children = inside().children;
  members::append(arena, children, child);
  members::indexLast<Module>(arena, children);
  child->setPathWord(childPath());
  child->m_parent = this;
}

void Module::addSignal(Signal* signal) {
  if (members::find<Signal>(m_signals, signal->m_id) != nullptr) {
    fatalSilently("Module %s has two signals of number %u.", getName(), signal->m_id);
  }
  Arena& arena = ModelState::current().arena;
  members::append(arena, m_signals, signal);
  members::indexLast<Signal>(arena, m_signals);
}

void Module::updateVisibleChildren(bool recursive) {
  Range<Module> children = getChildren(false);
  if (recursive) {
    for (Module* child : children) child->updateVisibleChildren(true);
  }
  if (m_inside == nullptr) return;
  members::updateVisible<Module>(m_inside->children,
                                 [](const Module* child) { return child->isHidden(); });
}

void Module::updateVisibleSignals(bool recursive) {
  getSignals(false);
  if (recursive) {
    for (Module* child : getChildren(false)) child->updateVisibleSignals(true);
  }
  members::updateVisible<Signal>(m_signals,
                                 [](const Signal* signal) { return signal->isHidden(); });
}

unsigned int Module::getDepth() { return ModelState::current().moduleDepth; }

void Module::incrDepth() { ++ModelState::current().moduleDepth; }

void Module::decrDepth() { --ModelState::current().moduleDepth; }

bool Module::getShowHidden() { return ModelState::current().showHidden; }

void Module::setShowHidden(bool show) { ModelState::current().showHidden = show; }

bool CompareModules::operator()(const Module* a, const Module* b) const {
  return orderOfModules(ModelState::nameOf(a), ModelState::nameOf(b)) < 0;
}

}  // namespace XRF_RTL2LL
