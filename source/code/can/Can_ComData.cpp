#include "can/Can_ComData.h"

namespace Trel::Can {

void DataCan::configure(const Dbc& dbc) {
  const auto layout = std::make_shared<Layout>();
  variables_.clear();
  variables_.reserve(dbc.get_signals().size());
  for (const auto& signal : dbc.get_signals()) {
    layout->index_by_sid.emplace(signal->get_sid(), variables_.size());
    layout->index_by_tag.emplace(signal->get_tag(), variables_.size());
    layout->sids.push_back(signal->get_sid());
    variables_.emplace_back(signal->get_type());
  }
  layout_ = layout;
  invalidate();
}

void DataCan::invalidate() {
  for (Dynamic& variable : variables_) variable.invalidate();
}

const std::vector<unsigned int>& DataCan::get_sids() const {
  return layout_->sids;
}

std::size_t DataCan::index_by_sid(unsigned int sid) const {
  const auto found = layout_->index_by_sid.find(sid);
  return found == layout_->index_by_sid.end() ? size() : found->second;
}

std::size_t DataCan::Idx_by_tag(const std::string& tag) const {
  const auto found = layout_->index_by_tag.find(tag);
  return found == layout_->index_by_tag.end() ? size() : found->second;
}

const Dynamic* DataCan::Hit_by_sid(unsigned int sid) const {
  const std::size_t index = index_by_sid(sid);
  return index < size() ? &variables_[index] : nullptr;
}

Dynamic* DataCan::Hit_by_sid(unsigned int sid) {
  const std::size_t index = index_by_sid(sid);
  return index < size() ? &variables_[index] : nullptr;
}

const Dynamic* DataCan::Hit_by_tag(const std::string& tag) const {
  const std::size_t index = Idx_by_tag(tag);
  return index < size() ? &variables_[index] : nullptr;
}

Dynamic* DataCan::Hit_by_tag(const std::string& tag) {
  const std::size_t index = Idx_by_tag(tag);
  return index < size() ? &variables_[index] : nullptr;
}

Dynamic DataCan::Dyn_by_idx(std::size_t index) const {
  return index < size() ? variables_[index] : Dynamic();
}

}  // namespace Trel::Can
