#include <crossreference/EdifReader.h>

namespace XRF_RTL2LL {

namespace {

Signal* outputOf(const Module& instance) {
  Signal* output = instance.getSignal(token::UpperQ, true);
  return output != nullptr ? output : instance.getSignal(token::LowerQ, true);
}

// The output of a register is one bit; a range without 0 counts as none.
BitRef* firstRef(const Signal* output) {
  return output == nullptr || output->getLsb() > 0 ? nullptr : output->getBitRef(0, true);
}

}  // namespace

void EdifReader::tie_wide_register(Module& instance, const ExprResult& name) {
  Signal* output = outputOf(instance);
  if (output == nullptr) return;
  output->setSrcState();
  if (name.first == name.second) return;
  add_signal(name.second, output->getLsb(), output->getMsb(), name.second)->merge(output, 0);
}

void EdifReader::tie_register(Module& instance, const ExprResult& name) {
  Signal* output = outputOf(instance);
  if (output != nullptr) output->setSrcState();
  BitRef* ref = firstRef(output);
  if (name.first == name.second && m_state.family == TORVAL7) {
    Signal* alias = add_signal(name.first, 0, 0, name.first);
    if (ref != nullptr) alias->merge(output, 0, 0);
  }
  const ExprResult bit = createRegBit(name.first);
  if (bit.kind == EXPR_BITREF && ref != nullptr) bit.ref->merge(ref);
}

EdifReader::ExprResult EdifReader::createRegBit(std::uint32_t instance) {
  if (m_state.family != TORVAL7) return {};
  const RegisterName name = RegisterName::decode(*m_state.word(instance));
  if (!name.valid) return {};
  const std::uint32_t code = m_state.tokens->getCode(name.signal);
  ExprResult result{EXPR_BITREF};
  result.ref = add_signal(code, name.index, name.index, code)->getBitRef(name.index);
  return result;
}

}  // namespace XRF_RTL2LL
