#include "sto/Sto_StreamRCom.h"

#include "sto/Sto_AccessText.h"

namespace Trel::Sto {

namespace {

using Rng::ComData;
using Rng::ComKey;

std::optional<unsigned int> known(const Lib::VariableExt<unsigned int>& value) {
  return value.good() ? std::optional(value.get()) : std::nullopt;
}

// A value in words; empty when it is not known.
template <Lib::ElementType T>
std::string words(const Lib::VariableExt<T>& value, ValueText<T> text) {
  return value.good() ? text(value.get()) : std::string();
}

}  // namespace

StreamRCom::StreamRCom(Enum::TRANSPORT_TYPE transport, unsigned int serial)
    : StreamKeyed(transport, Enum::CODEC_TYPE_RCOM, serial) {}

StreamRCom::~StreamRCom() = default;

RangeSources StreamRCom::sources() const {
  RangeSources found;
  for (unsigned int n = 0; n < ComData::kWraps; ++n) {
    const auto& wrap = data_end.DWrap(n);
    if (!wrap.Is_Address_Valid() || !wrap.Is_Provenance_Valid()) continue;
    found.wraps[n] = {wrap.Get_Address(), wrap.Var_Provenance().get()};
  }
  found.hunter = known(data_end.DMain().Var_Hunter_IPv4Adr());
  for (unsigned int n = 0; n < ComData::kTargets; ++n) {
    found.targets[n] = known(data_end.DTarget(n).Var_IPv4Adr());
  }
  return found;
}

bool StreamRCom::raw_packet(const unsigned char* data, unsigned int size) {
  return codec.DecodeLite(data, size) == kPrescanComplete;
}

bool StreamRCom::page_packet(const unsigned char* data, unsigned int size) {
  return codec.DecodeSuper(data, size) == kPrescanComplete;
}

void StreamRCom::let_scan() {
  ComKey& key = codec.Key();
  key.Reset(false);
  key.KMain().Let_General_Range();
  key.KMain().Let_System_Id();
  key.KMain().Let_Hunter_General_Source();
  for (unsigned int n = 0; n < ComKey::kWraps; ++n) key.KWrap(n).Let_General();
  for (unsigned int n = 0; n < ComKey::kTargets; ++n) key.KTarget(n).Let_General_Source();
  key.PropagateKeyOr();
}

void StreamRCom::note_scan(Com::Meta& header) {
  const ComData::DataMain& main = data_end.DMain();
  if (getTrans() == Enum::TRANSPORT_TYPE_RNG) {
    Com::Meta range("{Trel-Range}", true);
    range.set("WhoAmI", std::string("Range"));
    range.set("Address.IPv4", words(main.Var_Range_IPv4Adr(), &address_text));
    meta.append_aux_header(range);
  }
  header.set("Range.DevId", words(main.Var_DevID(), &characters_text<unsigned long long>));
}

}  // namespace Trel::Sto
