#include "rng/Rng_Lane.h"

#include "rng/Rng_Derived.h"
#include "rng/Rng_Scale.h"
#include "rng/Rng_SlowChannel.h"

namespace Trel::Rng {

namespace {

struct Visit : RComScales {
  const Packet& packet;
  const ComKey::KeyMain& key;
  DataMain& data;
  const Lib::StampExt now = data.Var_Nano();
  // The packet for the fields of its extensions: without bytes if it lacks them.
  const Packet first = longer_than(RNG_PKT_LANE_EXTENSION_1);
  const Packet second = longer_than(RNG_PKT_LANE_EXTENSION_2);

  Visit(const Packet& from, const ComKey& wanted, ComData& record)
      : packet(from), key(wanted.KMain()), data(record.DMain()) {}

  [[nodiscard]] Packet longer_than(unsigned int size) const {
    return packet.size > size ? packet : Packet{packet.data, 0};
  }

  template <Raw R, class T>
  void field(const Packet& from, bool wanted, unsigned int at, double scale,
             Lib::VariableExt<T>& value) const {
    if (!wanted) return value.reject();
    store(read_field<R>(from, at), scale, value, now);
  }

  void fields() const;
};

#define TREL_RNG_FIELD(from, node, raw, at, scale, value) \
  field<Raw::raw>(from, key.Get_##node(), at, scale, data.Hit_##value());

void Visit::fields() const {
#define FIELD(...) TREL_RNG_FIELD(packet, __VA_ARGS__)
#define FIRST(...) TREL_RNG_FIELD(first, __VA_ARGS__)
#define SECOND(...) TREL_RNG_FIELD(second, __VA_ARGS__)
#include "rng/Rng_LaneField.def"
}

#undef TREL_RNG_FIELD

}  // namespace

void ExtractLaneData(const Packet& packet, const ComKey& key, ComData& data) {
  Visit(packet, key, data).fields();
  if (const unsigned char* p = find_channel(packet, kLaneChannel)) {
    ExtractLaneChannel(p[0], p + 1, key, data);
  }
  compute_iso_lanes(key, data);
}

}  // namespace Trel::Rng
