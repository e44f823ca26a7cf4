#include <crossreference/RegisterPlaces.h>
#include <crossreference/RegisterTies.h>

#include <algorithm>

namespace XRF_RTL2LL {

bool isOfView(const NetlistState& state, EdifView view, const Signal& signal) {
  return state.signals.at(view).contains(signal);
}

std::vector<BitRef*> registerPlaces(const NetlistState& state, EdifView view, const Bit& bit) {
  std::vector<BitRef*> places;
  for (BitRef* ref : bit.getBitRefs()) {
    if (RegisterTies::isTied(*ref) && isOfView(state, view, *ref->getSignal())) {
      places.push_back(ref);
    }
  }
  std::sort(places.begin(), places.end(), isEarlierPlace);
  return places;
}

bool isEarlierPlace(const BitRef* a, const BitRef* b) {
  const int order = NameKey::compare(NameKey(*a->getSignal()), NameKey(*b->getSignal()));
  return order != 0 ? order < 0 : a->getIndex() < b->getIndex();
}

}  // namespace XRF_RTL2LL
