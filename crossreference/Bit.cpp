#include <crossreference/Bit.h>
#include <crossreference/MemberSet.h>
#include <crossreference/ModelState.h>
#include <support/Report.h>

#include <algorithm>
#include <new>

namespace XRF_RTL2LL {

void* BitRef::operator new(std::size_t size) {
  // The caller may have been compiled with an older, smaller class.
  return ModelState::current().arena.allocate(std::max(size, sizeof(BitRef)));
}

BitRef::BitRef(Signal* signal, unsigned int index) : m_signal(signal), m_index(index) {}

unsigned int BitRef::getIndex() const { return m_index; }

Signal* BitRef::getSignal() const { return m_signal; }

void BitRef::setSignal(Signal* signal) { m_signal = signal; }

Bit* BitRef::getBit() const {
  if (m_bit == nullptr && m_promised) {
    ModelState::current().makePromised(const_cast<BitRef&>(*this));
  }
  if (m_bit != nullptr && m_bit->m_absorbed) m_bit = m_bit->survivor();
  return m_bit;
}

void BitRef::setBit(Bit* bit) {
  Bit* before = getBit();
  if (before != nullptr && before != bit) before->m_irregular = true;
  m_bit = bit;
  if (bit != nullptr) bit->addBitRef(this);
}

void BitRef::leave() {
  Bit* before = getBit();
  before->remove(this);
  m_bit = new Bit;
  if (before->m_irregular) m_bit->link();
  m_bit->append(this);
}

int BitRef::merge(BitRef* other) {
  Bit* bit = getBit();
  if (bit != nullptr && other->m_promised && bit->takePromised(*other)) return 0;
  Bit* absorbed = other->getBit();
  return bit == nullptr || absorbed == nullptr ? 0 : bit->merge(absorbed);
}

void* Bit::operator new(std::size_t size) {
  // The caller may have been compiled with an older, smaller class.
  return ModelState::current().arena.allocate(std::max(size, sizeof(Bit)));
}

Bit::Bit() : Bit(ModelState::current()) {}

Bit::Bit(ModelState& model) {
  begin(model.nextBitId++);
  model.enter(this);
}

Bit::Bit(unsigned int id) {
  ModelState& model = ModelState::current();
  model.nextBitId = std::max(model.nextBitId, id + 1);
  begin(id);
  model.enter(this);
}

Bit::Bit(BitRef::Promise promise) {
  begin(promise.id);
  m_place = promise.place;
  m_inferred = false;
}

void Bit::begin(unsigned int id) {
  m_id = id;
  m_kind = UNKNOWN;
  m_value_text = TextZ;
  m_value = false;
  m_src = false;
  m_changed = false;
  m_inferred = true;
  m_absorbed = false;
  m_followed = false;
  m_linked = false;
  m_irregular = false;
  m_text = nullptr;
}

unsigned int Bit::getId() const { return m_id; }

void Bit::setId(unsigned int id) { m_id = id; }

Bit::BitKind Bit::getKind() const { return m_kind; }

void Bit::setKind(BitKind kind) { m_kind = kind; }

bool Bit::getValue() const { return m_value; }

void Bit::setValue(bool value) {
  m_value = value;
  m_value_text = value ? Text1 : Text0;
}

std::string Bit::getValueStr(bool display) const {
  if (display && m_kind == STATE) return "s";
  if (display && m_kind == UNREAD) return "u";
  switch (m_value_text) {
    case TextZ:
      return "z";
    case Text0:
      return "0";
    case Text1:
      return "1";
    case TextOther:
      break;
  }
  return std::string(m_text->view());
}

void Bit::setValueStr(const std::string& text) {
  if (m_absorbed) return;
  m_value_text = text == "z" ? TextZ : text == "0" ? Text0 : text == "1" ? Text1 : TextOther;
  if (m_value_text == TextOther)
    m_text = ModelState::current().names.intern(std::string_view(text));
}

bool Bit::isChanged() const { return m_changed; }

void Bit::setChanged(bool changed) { m_changed = changed; }

bool Bit::isSrc() const { return m_src; }

void Bit::setSrc(bool source) { m_src = source; }

bool Bit::isInferred() const { return m_inferred; }

void Bit::setInferred(bool inferred) { m_inferred = inferred; }

unsigned int Bit::getStateLoc1() const { return m_state_loc1; }

unsigned int Bit::getStateLoc2() const { return m_state_loc2; }

unsigned int Bit::getStateLoc3() const { return m_state_loc3; }

void Bit::setStateLoc(unsigned int loc1, unsigned int loc2, unsigned int loc3) {
  m_state_loc1 = loc1;
  m_state_loc2 = loc2;
  m_state_loc3 = loc3;
}

void Bit::append(BitRef* ref) {
  ref->m_member = true;
  ++m_ref_count;
  if (m_linked) {
    auto* link = new (ModelState::current().arena.allocate(sizeof(Link))) Link{ref, nullptr};
    (m_first.link == nullptr ? m_first.link : m_last.link->next) = link;
    m_last.link = link;
    return;
  }
  ref->m_next = nullptr;
  (m_first.ref == nullptr ? m_first.ref : m_last.ref->m_next) = ref;
  m_last.ref = ref;
}

// From now on a reference may be in other sets too.
void Bit::link() {
  if (m_linked) return;
  const Range<BitRef> chained = getBitRefs();
  m_first.link = nullptr;
  m_ref_count = 0;
  m_linked = true;
  m_irregular = true;
  for (BitRef* ref : chained) append(ref);
}

void Bit::addBitRef(BitRef* ref) {
  if (m_absorbed) {
    survivor()->addBitRef(ref);
    return;
  }
  // Only a reference that some set holds already can be in this one.
  if (ref->m_member) {
    if (getBitRefs().contains(ref)) return;
    link();
  }
  if (ref->getBit() != this) m_irregular = true;
  append(ref);
}

void Bit::remove(BitRef* ref) {
  if (m_linked) {
    for (Link* link = m_first.link; link != nullptr;
         link = link == m_last.link ? nullptr : link->next) {
      if (link->ref != ref) continue;
      link->ref = nullptr;
      --m_ref_count;
      ref->m_member = false;
    }
    return;
  }
  BitRef* before = nullptr;
  for (BitRef* at = m_first.ref; at != nullptr; before = at, at = at->m_next) {
    if (at != ref) continue;
    (before == nullptr ? m_first.ref : before->m_next) = ref->m_next;
    if (m_last.ref == ref) m_last.ref = before;
    --m_ref_count;
    ref->m_member = false;
    return;
  }
}

Range<BitRef> Bit::getBitRefs() const {
  if (m_linked) return {{m_first.link, m_last.link, members::Links}, m_ref_count};
  return {{m_first.ref, m_last.ref, members::Chained}, m_ref_count};
}

Bit* Bit::survivor() {
  Bit* last = this;
  while (last->m_absorbed) last = last->m_survivor;
  for (Bit* bit = this; bit != last;) {
    Bit* next = bit->m_survivor;
    bit->m_survivor = last;
    bit = next;
  }
  return last;
}

int Bit::combine(const Bit& other) {
  if (m_kind == CNST && other.m_kind == CNST && m_value != other.m_value) {
    message(StandardOutput, "ERROR: Bit conflict! 0: %d 1: %d\n", static_cast<int>(m_value),
            static_cast<int>(other.m_value));
    return 1;
  }
  if (other.m_kind == CNST) {
    m_kind = CNST;
    setValue(other.m_value);
  } else if (other.m_kind == STATE && m_kind != CNST) {
    // The locations stay behind: they are recorded on the survivor once its own line is read.
    m_kind = STATE;
  }
  return 0;
}

void Bit::splice(Bit& other) {
  if (other.m_first.ref == nullptr) return;
  (m_first.ref == nullptr ? m_first.ref : m_last.ref->m_next) = other.m_first.ref;
  m_last.ref = other.m_last.ref;
  m_ref_count += other.m_ref_count;
}

void Bit::adoptEach(const Bit& other) {
  for (BitRef* ref : other.getBitRefs()) ref->setBit(this);
  m_irregular = true;
}

// Tells each reference of an absorbed bit.
void Bit::redirect(Bit* survivor) {
  for (BitRef* ref = m_first.ref; ref != nullptr; ref = ref == m_last.ref ? nullptr : ref->m_next) {
    ref->m_bit = survivor;
  }
}

int Bit::merge(Bit* other) {
  if (m_absorbed) return survivor()->merge(other);
  other = other->survivor();
  if (other == this) return 0;
  if (combine(*other) != 0) return 1;
  // References follow an absorbed bit to its survivor, so the whole set moves at once.
  if (m_irregular || other->m_irregular) {
    adoptEach(*other);
  } else {
    splice(*other);
  }
  m_id = std::max(m_id, other->m_id);
  m_src = m_src || other->m_src;
  m_inferred = m_inferred && other->m_inferred;
  ModelState& model = ModelState::current();
  model.bits.remove(other);
  if (model.isPassing(*other)) {
    other->redirect(this);
    model.giveBack(other);
    return 0;
  }
  other->m_absorbed = true;
  other->m_value_text = TextZ;
  other->m_survivor = this;
  m_followed = true;
  return 0;
}

// Merges the bit that a reference is promised, which is as good as made and merged. False where the
// sets of references are not plain enough for that.
bool Bit::takePromised(BitRef& ref) {
  if (m_irregular) return false;
  ModelState::current().bits.drop(ref.m_promise);
  m_id = std::max(m_id, ref.m_promise.id);
  m_inferred = false;
  ref.m_promised = false;
  ref.m_bit = this;
  append(&ref);
  return true;
}

Range<Bit> Bit::getAllBits() { return ModelState::current().bits.range(); }

void Bit::setMaxBitId(unsigned int id) { ModelState::current().maxBitId = id; }

unsigned int Bit::getMaxBitId() { return ModelState::current().maxBitId; }

unsigned int Bit::getNextId() { return ModelState::current().nextBitId; }

}  // namespace XRF_RTL2LL
