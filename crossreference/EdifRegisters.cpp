#include <crossreference/EdifReader.h>

namespace XRF_RTL2LL {

namespace {

// The output of a register is one bit; a range without 0 counts as none.
BitRef* firstRef(const Signal* output) {
  return output == nullptr || output->getLsb() > 0 ? nullptr : output->getBitRef(0, true);
}

}  // namespace

void EdifReader::tie_instance(Module& instance, const ExprResult& name) {
  if (!RegisterTies::isRegister(m_state, instance)) return;
  if (m_state.reading.has(Rule::PrintableRegisters)) {
    tie_printable(instance, name);
  } else if (instance.getKind() == WIDE_FD) {
    tie_wide_register(instance, name);
  } else {
    tie_register(instance, name);
  }
}

void EdifReader::tie_wide_register(Module& instance, const ExprResult& name) {
  Signal* output = RegisterTies::outputOf(instance);
  if (output == nullptr) return;
  output->setSrcState();
  if (name.first == name.second) return;
  add_signal(m_state.word(name.second), output->getLsb(), output->getMsb(), name.second)
      ->merge(output, 0);
}

void EdifReader::tie_register(Module& instance, const ExprResult& name) {
  Signal* output = RegisterTies::outputOf(instance);
  if (output != nullptr) output->setSrcState();
  BitRef* ref = firstRef(output);
  if (name.first == name.second && m_state.family == TORVAL7) add_alias(instance, name.first);
  const ExprResult bit = createRegBit(name.first);
  if (bit.kind == EXPR_BITREF && ref != nullptr) bit.ref->merge(ref);
}

void EdifReader::add_alias(Module& instance, std::uint32_t name) {
  if (m_state.reading.has(Rule::LateAliases)) {
    m_deferred.push_back({&front(), &instance, name});
  } else {
    make_alias(name, RegisterTies::outputOf(instance));
  }
}

void EdifReader::make_alias(std::uint32_t name, Signal* output) {
  Signal* alias = add_signal(m_state.word(name), 0, 0, name);
  if (firstRef(output) != nullptr) alias->merge(output, 0, 0);
}

EdifReader::ExprResult EdifReader::createRegBit(std::uint32_t instance) {
  if (m_state.family != TORVAL7) return {};
  const RegisterName name = RegisterName::decode(*m_state.word(instance));
  if (!name.valid) return {};
  const std::uint32_t code = m_state.tokens->getCode(name.signal);
  ExprResult result{EXPR_BITREF};
  result.ref = add_signal(m_state.word(code), name.index, name.index, code)->getBitRef(name.index);
  return result;
}

void EdifReader::tie_printable(Module& instance, const ExprResult& name) {
  Signal* output = RegisterTies::outputOf(instance);
  if (output != nullptr) output->setSrcState();
  if (m_state.family != TORVAL7) return;
  if (name.first == name.second) add_alias(instance, name.first);
  NamedBits bits = decodeRegister(*printable(name.second));
  if (!bits.valid) bits = decodeRegister(*printable(name.first));
  if (!bits.valid) return;
  const bool single = output == nullptr || output->getWidth() == 1;
  if (single && is_foreign(bits.signal)) bits = bits.whole();
  m_any_bracketed = m_any_bracketed || bits.signal.ends_with(']');
  m_ties.tie(front(), instance, bits);
}

// What is left to the end of a module: aliases, once all else that may bear their names is known.
void EdifReader::finish_module() {
  Module& module = front();
  std::size_t first = m_deferred.size();
  while (first > 0 && m_deferred[first - 1].parent == &module) --first;
  for (std::size_t at = first; at < m_deferred.size(); ++at) {
    const Deferred& work = m_deferred[at];
    const bool free = module.getSignal(work.alias, true) == nullptr &&
                      m_state.findByName(m_view, module, m_state.word(work.alias)) == nullptr;
    if (free) make_alias(work.alias, RegisterTies::outputOf(*work.instance));
  }
  m_deferred.erase(m_deferred.begin() + static_cast<std::ptrdiff_t>(first), m_deferred.end());
  m_modules.pop_back();
}

}  // namespace XRF_RTL2LL
