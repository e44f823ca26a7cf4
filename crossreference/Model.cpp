#include <crossreference/MemberSet.h>
#include <crossreference/Model.h>
#include <crossreference/ModelState.h>
#include <crossreference/Netlist.h>

#include <type_traits>

namespace XRF_RTL2LL {

namespace {

// What a thread's static calls act on: a state set for the time of one operation comes first, then
// the model of the innermost scope, then the process's model.
struct Current {
  ModelState* state = nullptr;
  Model* model = nullptr;
};

Current& currentOfThread() {
  thread_local Current current;
  return current;
}

// Never destroyed: objects that hosts keep in static storage may outlive any order of destruction.
Model& processModel() {
  static Model* model = new Model;
  return *model;
}

}  // namespace

// Objects that never leave need not know where they stand.
template <class T>
void Registry<T>::setPlace(T& object, std::size_t place) {
  if constexpr (std::is_same_v<T, Bit>) object.m_place = static_cast<std::uint32_t>(place);
}

template <class T>
void Registry<T>::add(T* object) {
  setPlace(*object, m_slots.size());
  m_slots.push_back(reinterpret_cast<std::uintptr_t>(object));
  ++m_live;
}

template <class T>
void Registry<T>::remove(const T* object) {
  if (!contains(object)) return;
  m_slots[object->m_place] |= gone;
  --m_live;
}

template <class T>
void Registry<T>::promise(BitRef& ref, std::uint32_t id) {
  ref.m_promise = {id, static_cast<std::uint32_t>(m_slots.size())};
  m_slots.push_back(reinterpret_cast<std::uintptr_t>(&ref) | promised);
  ref.m_promised = true;
  ref.m_member = true;
  ++m_live;
}

template <class T>
void Registry<T>::keep(const BitRef::Promise& promise, T* made) {
  m_slots[promise.place] = reinterpret_cast<std::uintptr_t>(made);
}

template <class T>
void Registry<T>::drop(const BitRef::Promise& promise) {
  m_slots[promise.place] |= gone;
  --m_live;
}

template <class T>
void Registry<T>::movePlace(std::uintptr_t slot, std::size_t place) {
  if ((slot & promised) != 0) {
    promisedBy(slot).m_promise.place = static_cast<std::uint32_t>(place);
  } else {
    setPlace(*reinterpret_cast<T*>(slot), place);  // NOLINT(performance-no-int-to-ptr)
  }
}

template <class T>
std::size_t Registry<T>::compact(std::size_t place) {
  std::size_t kept = 0;
  std::size_t before = 0;
  for (std::size_t at = 0; at < m_slots.size(); ++at) {
    const std::uintptr_t slot = m_slots[at];
    if ((slot & gone) != 0) continue;
    if (at < place) ++before;
    if (kept != at) {
      movePlace(slot, kept);
      m_slots[kept] = slot;
    }
    ++kept;
  }
  m_slots.truncate(kept);
  if (m_slots.capacity() > 2 * kept) m_slots.shrink_to_fit();
  return before;
}

template <class T>
bool Registry<T>::contains(const T* object) const {
  return object != nullptr && object->m_place < m_slots.size() &&
         m_slots[object->m_place] == reinterpret_cast<std::uintptr_t>(object);
}

template <class T>
Range<T> Registry<T>::range() const {
  return {{m_slots.data(), m_slots.data() + m_slots.size(), members::Live}, m_live};
}

template class Registry<Bit>;
template void Registry<Signal>::add(Signal*);
template Range<Signal> Registry<Signal>::range() const;
template void Registry<Net>::add(Net*);
template Range<Net> Registry<Net>::range() const;

ModelState::ModelState() = default;
ModelState::~ModelState() = default;

ModelState& ModelState::current() {
  const Current& current = currentOfThread();
  if (current.state != nullptr) return *current.state;
  return *(current.model != nullptr ? *current.model : processModel()).m_state;
}

void ModelState::loosen() {
  if (firstPassing != std::numeric_limits<std::size_t>::max() && bits.isLoose()) {
    firstPassing = bits.compact(firstPassing);
  }
}

void ModelState::enter(Bit* bit) {
  loosen();
  bits.add(bit);
}

void ModelState::promiseBit(BitRef& ref) {
  loosen();
  bits.promise(ref, nextBitId++);
}

void ModelState::makePromised(BitRef& ref) {
  Bit* bit = new (takeBit()) Bit(ref.m_promise);
  bits.keep(ref.m_promise, bit);
  ref.m_promised = false;
  ref.m_bit = bit;
  bit->append(&ref);
}

void ModelState::makePromised() {
  bits.eachPromised([this](BitRef& ref) { makePromised(ref); });
}

void ModelState::breakPromises() {
  bits.eachPromised([this](BitRef& ref) {
    bits.drop(ref.m_promise);
    ref.m_next = nullptr;
    ref.m_promised = false;
    ref.m_member = false;
  });
}

void* ModelState::takeBit() {
  if (freeBits.empty()) return arena.allocate(sizeof(Bit));
  void* bit = freeBits.back();
  freeBits.pop_back();
  return bit;
}

void ModelState::settleTree(const Module& module) {
  module.getSignals(false);
  module.getChildren(false);
  // Those that share a name with a sibling are not listed but found by number.
  members::each<Module>(module.children(), [](const Module* child) { settleTree(*child); });
}

void ModelState::settleBits() {
  signals.each([](const Signal* signal) {
    const Signal::Entries all = signal->entries();
    for (std::uint32_t at = 0; at < all.count; ++at) {
      if (all.refs[at] != nullptr) all.refs[at]->getBit();
    }
  });
  bits.compact();
}

void ModelState::renumberBits() {
  std::uint32_t next = 0;
  bits.each([&](Bit* bit) { bit->setId(next++); });
  if (next > 0) maxBitId = next - 1;
}

StateScope::StateScope(ModelState& state) : m_previous(currentOfThread().state) {
  currentOfThread().state = &state;
}

StateScope::~StateScope() { currentOfThread().state = m_previous; }

Model::Model() : m_state(std::make_shared<ModelState>()) {}

Model::~Model() = default;

void Model::setLimits(const Limits& limits) { m_state->limits = limits.possible(); }

Limits Model::getLimits() const { return m_state->limits; }

ModelScope::ModelScope(Model& model)
    : m_previous(currentOfThread().model), m_previous_state(currentOfThread().state) {
  currentOfThread() = {nullptr, &model};
}

ModelScope::~ModelScope() { currentOfThread() = {m_previous_state, m_previous}; }

void resetModel() {
  Model* model = currentOfThread().model;
  (model != nullptr ? *model : processModel()).m_state = std::make_shared<ModelState>();
}

}  // namespace XRF_RTL2LL
