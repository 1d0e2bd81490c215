#include "rng/Rng_Source.h"

#include <algorithm>
#include <array>
#include <optional>
#include <span>

#include "library/Lib_Cast.h"

namespace Trel::Rng {

namespace {

constexpr unsigned int kPacketSize = 82;
constexpr unsigned int kAddressAt = 4;
constexpr unsigned int kProvenanceAt = 8;
constexpr unsigned int kNoProvenance = 255;

// Four characters as a channel has them, in one number.
constexpr unsigned int characters(const char (&text)[5]) {
  unsigned int number = 0;
  for (unsigned int at = 0; at < 4; ++at) {
    number |= static_cast<unsigned int>(static_cast<unsigned char>(text[at])) << 8 * at;
  }
  return number;
}

constexpr std::array kHunterKeys = {characters("hunt")};
constexpr std::array kTargetKeys = {characters("tgt1"), characters("tgt2"), characters("tgt3"),
                                    characters("tgt4")};

using Number = Lib::VariableExt<unsigned int>;

void put(Number& value, bool known, unsigned int number, const Lib::StampExt& nano) {
  known ? value.set(number, nano) : value.invalidate();
}

// The values that tell a source.
struct Source {
  using Way = Lib::VariableExt<Enum::Traits<Enum::PROVENANCE_TYPE>::Number>;

  Way& provenance;
  Number& address;
  Number& ipv4;
  Number& file;

  void set(unsigned int way, unsigned int number, const Lib::StampExt& nano) const {
    provenance.set(static_cast<Way::value_type>(way), nano);
    address.set(number, nano);
    put(ipv4, way == kNetwork, number, nano);
    put(file, way == kFile, number, nano);
  }

  void reject() const {
    provenance.reject();
    for (Number* value : {&address, &ipv4, &file}) value->reject();
  }
};

std::optional<unsigned int> place_of(unsigned int address, const ComData& data) {
  for (unsigned int index = 0; index < ComData::kWraps; ++index) {
    const DataWrap& wrap = data.DWrap(index);
    if (wrap.Is_Address_Valid() && wrap.Get_Address() == address) return index;
  }
  return std::nullopt;
}

// The source of the hunter or a target, and what follows from it.
struct Party {
  Source source;
  Number& adr;
  Number& place;
  std::span<const unsigned int> keys;

  void set(unsigned int number, const ComData& data) const {
    const Lib::StampExt& nano = data.DMain().Var_Nano();
    const bool is_key = std::find(keys.begin(), keys.end(), number) != keys.end();
    const unsigned int way = number == 0 ? kNoSource : is_key ? kFile : kNetwork;
    source.set(way, number, nano);
    if (number == 0) source.address.invalidate();
    const auto found = way == kNetwork ? place_of(number, data) : std::nullopt;
    put(adr, way == kNetwork, number, nano);
    put(place, found.has_value(), found.value_or(0), nano);
  }

  void reject() const {
    source.reject();
    adr.reject();
    place.reject();
  }
};

Source source_of(DataWrap& wrap) {
  return {wrap.Hit_Provenance(), wrap.Hit_Address(), wrap.Hit_AddressIPv4(),
          wrap.Hit_AddressFile()};
}

Party hunter_of(DataMain& main) {
  return {{main.Hit_Hunter_Provenance(), main.Hit_Hunter_Address(), main.Hit_Hunter_AddressIPv4(),
           main.Hit_Hunter_AddressFile()},
          main.Hit_Hunter_IPv4Adr(),
          main.Hit_Hunter_NComIndex(),
          kHunterKeys};
}

Party party_of(DataTarget& own) {
  return {{own.Hit_Provenance(), own.Hit_Address(), own.Hit_AddressIPv4(), own.Hit_AddressFile()},
          own.Hit_IPv4Adr(),
          own.Hit_NComIndex(),
          kTargetKeys};
}

}  // namespace

void ExtractNCom(const Packet& packet, const ComKey& key, ComData& data) {
  if (packet.size != kPacketSize) return;
  const unsigned int address = cast_4_byte_LE_to_uint32(packet.data + kAddressAt);
  const unsigned int provenance = packet.data[kProvenanceAt];
  if (provenance == kNoProvenance || (address == 0 && provenance == 0)) return;
  for (unsigned int index = 0; index < ComData::kWraps; ++index) {
    DataWrap& wrap = data.DWrap(index);
    if (!key.KWrap(index).Get_General()) {
      source_of(wrap).reject();
      continue;
    }
    if (!wrap.Is_Address_Valid()) {
      return source_of(wrap).set(provenance, address, data.DMain().Var_Nano());
    }
    if (wrap.Get_Address() == address) return;
  }
}

void set_hunter_source(unsigned int number, ComData& data) {
  hunter_of(data.DMain()).set(number, data);
}

void set_target_source(unsigned int number, unsigned int target, ComData& data) {
  party_of(data.DTarget(target)).set(number, data);
}

void reject_hunter_source(ComData& data) {
  hunter_of(data.DMain()).reject();
}

void reject_target_source(unsigned int target, ComData& data) {
  party_of(data.DTarget(target)).reject();
}

}  // namespace Trel::Rng
