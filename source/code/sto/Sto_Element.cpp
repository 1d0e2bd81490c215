#include "sto/Sto_Element.h"

namespace Trel::Sto {

void ElementSystem::expand(unsigned int count) {
  const bool drops = count < stores.size();
  stores.resize(count);
  if (!drops) return;
  for (std::size_t kind = 0; kind < kKinds; ++kind) {
    names_[kind].clear();
    for (const ElementStore& store : stores) {
      for (const Element& element : store[kind]) note_name(kind, element);
    }
  }
}

void ElementSystem::clear() {
  for (std::vector<Element>& list : all_) list.clear();
  for (Names& names : names_) names.clear();
  for (ElementStore& store : stores) {
    for (std::vector<Element>& list : store) list.clear();
  }
}

void ElementSystem::add_element(std::size_t kind, const AnyAccessRow& row, unsigned int store_id,
                                std::size_t offset) {
  TREL_ASSERT(store_id < stores.size(), "sto/Sto_Element");
  const Element element{&row, store_id, static_cast<unsigned int>(offset)};
  stores[store_id][kind].push_back(element);
  all_[kind].push_back(element);
  note_name(kind, element);
}

void ElementSystem::note_name(std::size_t kind, const Element& element) {
  const auto [first, fresh] = names_[kind].try_emplace(element.row->name, element);
  if (!fresh && element.store_id < first->second.store_id) first->second = element;
}

const AnyAccessRow* ElementSystem::use_element(StoreLeaf& leaf, std::size_t kind,
                                               const std::string& name,
                                               unsigned int stream_id) const {
  const Element* element = find(kind, name);
  if (element == nullptr) return nullptr;
  leaf = describe(*element, stream_id);
  return element->row;
}

StoreLeaf ElementSystem::sum_element(std::size_t kind, unsigned int stream_id) const {
  const std::vector<Element>& list = all_[kind];
  return list.empty() ? StoreLeaf() : describe(list.back(), stream_id);
}

const Element* ElementSystem::find(std::size_t kind, const std::string& name) const {
  const auto found = names_[kind].find(name);
  return found == names_[kind].end() ? nullptr : &found->second;
}

StoreLeaf ElementSystem::describe(const Element& element, unsigned int stream_id) const {
  return StoreLeaf(ElementNode(element.row->describe(), stream_id), mode_id_, element.store_id,
                   element.offset);
}

}  // namespace Trel::Sto
