// Look-up of the entries of a signal database document, by identifier and through inheritance.
//
// An entry that lacks a key has the value of the entry that its "IP" names, and so on, 256 steps at
// most; a longer or a circular chain ends in "not found". A key that is there hides the parent's,
// even with a value of the wrong JSON type, which then counts as absent. An "IP" that is no number
// throws the JSON library's exception, and only when it is followed; one that names no entry ends
// the search.
//
// The look-up refers into the document, which must outlive it; texts and lists that it hands out do
// not. Entries that inherit a text or a list share one copy, so what is made from a document takes
// memory in proportion to the document. A search costs 257 steps at most.
#pragma once

#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <type_traits>
#include <unordered_map>

#include "library/Lib_Types.h"
#include "ucom/UCom_Basic.h"

namespace Trel::UCom {

class SignalList;

class Recursive {
 public:
  using Json = nlohmann::json;
  static constexpr unsigned int kDepth = 256;

  struct Entry {
    const Json* object;
    const Entry* parent = nullptr;  // null also when "IP" is no number
  };

  Recursive() = default;
  Recursive(const Recursive&) = delete;
  Recursive& operator=(const Recursive&) = delete;

  // Takes the objects of `array` whose "ID" is an unsigned integer, and passes over its other
  // members. Of several with one "ID" the first stays.
  void import(const Json& array);

  // In ascending order of "ID".
  [[nodiscard]] const std::map<std::uint64_t, Entry>& get_entries() const { return entries_; }

  // The value of `key` for the entry `id` after at most `depth` steps of inheritance; null when
  // there is none. A JSON null is a value.
  [[nodiscard]] const Json* find(std::uint64_t id, const char* key,
                                 unsigned int depth = kDepth) const;
  // The same, and null for a value of another JSON type.
  [[nodiscard]] const Json* find_if(std::uint64_t id, const char* key, Json::value_t json_type,
                                    unsigned int depth = kDepth) const;

  // Converts the value into `out` and returns true; false, with `out` untouched, when it is absent
  // or of the wrong kind. float and double take any number, signed integers any integer, unsigned
  // integers only an unsigned one, bool a boolean. An integer is cut to the width of `out`.
  template <Lib::ElementType T>
  bool parse(T& out, std::uint64_t id, const char* key, unsigned int depth = kDepth) const;

  // The string; an empty one when it is absent or no string. Never null.
  [[nodiscard]] SharedText text(std::uint64_t id, const char* key);

 private:
  std::map<std::uint64_t, Entry> entries_;
  std::unordered_map<const Json*, SharedText> texts_;
};

class RecursiveSignals : public Recursive {
 public:
  [[nodiscard]] bool is_usable(sid_t) const { return true; }
  // The layout that the entry describes. If it describes none, everything but `sid` is as in a
  // fresh SignalBasic.
  [[nodiscard]] SignalBasic get_basic(sid_t sid) const;
};

class RecursiveMessages : public Recursive {
 public:
  [[nodiscard]] bool is_usable(mid_t) const { return true; }
  [[nodiscard]] MessageBasic get_basic(mid_t mid) const { return MessageBasic{mid}; }
  // The signals that the entry lists, not connected yet; an empty list when there is none.
  [[nodiscard]] std::shared_ptr<SignalList> list(mid_t mid);

 private:
  std::unordered_map<const Json*, std::shared_ptr<SignalList>> lists_;
};

template <Lib::ElementType T>
bool Recursive::parse(T& out, std::uint64_t id, const char* key, unsigned int depth) const {
  const Json* value = find(id, key, depth);
  if (value == nullptr) return false;
  if constexpr (std::is_same_v<T, bool>) {
    if (!value->is_boolean()) return false;
    out = value->get<bool>();
  } else if constexpr (std::is_floating_point_v<T>) {
    if (!value->is_number()) return false;
    out = value->get<T>();
  } else if constexpr (std::is_signed_v<T>) {
    if (!value->is_number_integer()) return false;
    out = static_cast<T>(value->get<Json::number_integer_t>());
  } else {
    if (!value->is_number_unsigned()) return false;
    out = static_cast<T>(value->get<Json::number_unsigned_t>());
  }
  return true;
}

}  // namespace Trel::UCom
