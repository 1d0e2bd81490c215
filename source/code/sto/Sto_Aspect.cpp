#include "sto/Sto_Aspect.h"

#include "library/Lib_Report.h"

namespace Trel::Sto {

namespace {

DestinationNode entry_of(const AspectNode& node, unsigned int measurement, unsigned int index) {
  DestinationNode entry(node, measurement, index);
  const std::string label = node.label != nullptr ? node.label(index) : std::to_string(index);
  entry.name.append("[").append(label).append("]");
  entry.size = 1;
  entry.offset += index;
  entry.destination += index;
  return entry;
}

}  // namespace

const AspectStore& Aspect::store(unsigned int id) const {
  static const AspectStore nothing;
  const auto found = stores_.find(id);
  return found == stores_.end() ? nothing : found->second;
}

unsigned int Aspect::add_destinations(const StoreLeaf& leaf, unsigned int id, int index) {
  const auto m = static_cast<unsigned int>(measurements_.size());
  const auto d = static_cast<unsigned int>(destinations_.size());
  const AspectNode store_measurement(leaf, id, d);
  measurements_.push_back(store_measurement);
  if (!leaf.is_array) {
    TREL_ASSERT(store_measurement.size == 1, "sto/Sto_Aspect");
    destinations_.emplace_back(store_measurement, m, 0U);
  } else if (index >= 0) {
    destinations_.push_back(entry_of(store_measurement, m, static_cast<unsigned int>(index)));
  } else {
    for (unsigned int i = 0; i < leaf.size; ++i) {
      destinations_.push_back(entry_of(store_measurement, m, i));
    }
  }
  return d;
}

}  // namespace Trel::Sto
