#include "ucom/UCom_Recursive.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

#include "ucom/UCom_Message.h"

namespace Trel::UCom {
namespace {

using Json = Recursive::Json;

constexpr std::uint32_t kMaxBitOffset = 65535;
constexpr std::uint32_t kMaxBitSize = 65536;
constexpr std::uint32_t kDefaultBitSize = 32;

// The entry's own value of `key`; null when it has none.
const Json* own(const Json& object, const char* key) {
  const auto found = object.find(key);
  return found == object.end() ? nullptr : &*found;
}

// The identifier that a number names. A real number loses its fraction; one outside the range of
// identifiers names nothing.
std::optional<std::uint64_t> identifier(const Json& number) {
  if (number.is_number_float()) {
    constexpr double kEnd = 18446744073709551616.0;  // 2^64
    const double value = number.get<double>();
    if (!(value > -1.0 && value < kEnd)) return std::nullopt;
  }
  return number.get<Json::number_unsigned_t>();
}

std::string upper_case(std::string text) {
  std::ranges::transform(text, text.begin(), [](char letter) {
    return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
  });
  return text;
}

// The narrowest of four types of 8, 16, 32 and 64 bits that holds `bits`; UNKNOWN above.
Enum::BASIC_TYPE narrowest(const std::array<Enum::BASIC_TYPE, 4>& types, std::uint32_t bits) {
  if (bits <= 8) return types[0];
  if (bits <= 16) return types[1];
  if (bits <= 32) return types[2];
  if (bits <= 64) return types[3];
  return Enum::BASIC_TYPE_UNKNOWN;
}

// The bit type for "BT" and "BS"; UNKNOWN when they make none. A bool sets the size to 1.
Enum::BASIC_TYPE bit_type(std::string_view letter, std::uint32_t& bit_size) {
  using namespace Enum;
  if (letter == "B") {
    bit_size = 1;
    return BASIC_TYPE_bool;
  }
  if (letter == "R") {
    return narrowest({BASIC_TYPE_UNKNOWN, BASIC_TYPE_UNKNOWN, BASIC_TYPE_float, BASIC_TYPE_double},
                     bit_size);
  }
  if (letter == "S") {
    return narrowest(
        {BASIC_TYPE_int8_t, BASIC_TYPE_int16_t, BASIC_TYPE_int32_t, BASIC_TYPE_int64_t}, bit_size);
  }
  if (letter == "U") {
    return narrowest(
        {BASIC_TYPE_uint8_t, BASIC_TYPE_uint16_t, BASIC_TYPE_uint32_t, BASIC_TYPE_uint64_t},
        bit_size);
  }
  return BASIC_TYPE_UNKNOWN;
}

struct MeasurementName {
  std::string_view name;
  Enum::BASIC_TYPE type;
};
constexpr std::array<MeasurementName, 11> kMeasurementNames{{
    {"B", Enum::BASIC_TYPE_bool},
    {"R32", Enum::BASIC_TYPE_float},
    {"R64", Enum::BASIC_TYPE_double},
    {"S8", Enum::BASIC_TYPE_int8_t},
    {"S16", Enum::BASIC_TYPE_int16_t},
    {"S32", Enum::BASIC_TYPE_int32_t},
    {"S64", Enum::BASIC_TYPE_int64_t},
    {"U8", Enum::BASIC_TYPE_uint8_t},
    {"U16", Enum::BASIC_TYPE_uint16_t},
    {"U32", Enum::BASIC_TYPE_uint32_t},
    {"U64", Enum::BASIC_TYPE_uint64_t},
}};

// The type that "MT" names; UNKNOWN for an unknown name.
Enum::BASIC_TYPE measurement_type(std::string_view name) {
  const auto* const found = std::ranges::find(kMeasurementNames, name, &MeasurementName::name);
  return found == kMeasurementNames.end() ? Enum::BASIC_TYPE_UNKNOWN : found->type;
}

}  // namespace

void Recursive::import(const Json& array) {
  for (const Json& member : array) {
    if (!member.is_object()) continue;
    const Json* id = own(member, "ID");
    if (id == nullptr || !id->is_number_unsigned()) continue;
    entries_.try_emplace(id->get<Json::number_unsigned_t>(), Entry{&member});
  }
  for (auto& [id, entry] : entries_) {
    const Json* parent = own(*entry.object, "IP");
    if (parent == nullptr || !parent->is_number()) continue;
    const auto parent_id = identifier(*parent);
    const auto found = parent_id ? entries_.find(*parent_id) : entries_.end();
    if (found != entries_.end()) entry.parent = &found->second;
  }
}

const Json* Recursive::find(std::uint64_t id, const char* key, unsigned int depth) const {
  const auto found = entries_.find(id);
  const Entry* entry = found == entries_.end() ? nullptr : &found->second;
  while (entry != nullptr) {
    if (const Json* value = own(*entry->object, key)) return value;
    if (depth == 0) return nullptr;
    --depth;
    if (entry->parent == nullptr) {
      const Json* parent = own(*entry->object, "IP");
      // Left to the JSON library, which throws unless this is a number.
      if (parent != nullptr) static_cast<void>(identifier(*parent));
    }
    entry = entry->parent;
  }
  return nullptr;
}

const Json* Recursive::find_if(std::uint64_t id, const char* key, Json::value_t json_type,
                               unsigned int depth) const {
  const Json* value = find(id, key, depth);
  return value != nullptr && value->type() == json_type ? value : nullptr;
}

SharedText Recursive::text(std::uint64_t id, const char* key) {
  const Json* value = find_if(id, key, Json::value_t::string);
  SharedText& shared = texts_[value];
  if (shared == nullptr) {
    shared = std::make_shared<const std::string>(
        value == nullptr ? std::string() : value->get_ref<const std::string&>());
  }
  return shared;
}

SignalBasic RecursiveSignals::get_basic(sid_t sid) const {
  SignalBasic failure;
  failure.sid = sid;

  unsigned long long bit_offset = 0;
  parse(bit_offset, sid, "BO");
  if (bit_offset > kMaxBitOffset) return failure;

  unsigned long long bit_size = kDefaultBitSize;
  parse(bit_size, sid, "BS");
  if (bit_size == 0 || bit_size > kMaxBitSize) return failure;

  SignalBasic basic;
  basic.sid = sid;
  basic.bit_offset = static_cast<std::uint32_t>(bit_offset);
  basic.bit_size = static_cast<std::uint32_t>(bit_size);

  basic.bit_type = Enum::BASIC_TYPE_int32_t;
  if (const Json* letter = find_if(sid, "BT", Json::value_t::string)) {
    basic.bit_type = bit_type(upper_case(letter->get<std::string>()), basic.bit_size);
    if (basic.bit_type == Enum::BASIC_TYPE_UNKNOWN) return failure;
  }

  basic.mea_type = basic.bit_type;
  if (const Json* name = find_if(sid, "MT", Json::value_t::string)) {
    basic.mea_type = measurement_type(upper_case(name->get<std::string>()));
    if (basic.mea_type == Enum::BASIC_TYPE_UNKNOWN) return failure;
  }
  return basic;
}

std::shared_ptr<SignalList> RecursiveMessages::list(mid_t mid) {
  const Json* array = find_if(mid, "BS", Json::value_t::array);
  std::shared_ptr<SignalList>& shared = lists_[array];
  if (shared == nullptr) {
    shared = std::make_shared<SignalList>();
    if (array != nullptr) {
      for (const Json& sid : *array) {
        if (sid.is_number_unsigned()) shared->insert(sid.get<Json::number_unsigned_t>());
      }
    }
  }
  return shared;
}

}  // namespace Trel::UCom
