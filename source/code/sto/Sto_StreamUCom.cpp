#include "sto/Sto_StreamUCom.h"

namespace Trel::Sto {

StreamUCom::StreamUCom(Enum::TRANSPORT_TYPE transport, unsigned int serial)
    : StreamDescribed(transport, Enum::CODEC_TYPE_UCOM, serial, true) {}

StreamUCom::~StreamUCom() = default;

bool StreamUCom::codec_configure() {
  const Com::Meta* header = meta.find_aux_header("/Trel-UCom-Dbu/");
  if (header == nullptr) return false;
  codec.configure(header->get_json(), true);
  set_configured();
  for (std::size_t six = 0; six < codec.get_signals_size(); ++six) {
    const UCom::Signal* signal = codec.get_signal_by_six(six);
    if (signal == nullptr) continue;
    Lib::visit_element_type(signal->get_mea_type(),
                            [&]<class T>(std::type_identity<T>) { add_row<T>(*signal); });
  }
  return true;
}

template <Lib::ElementType T>
void StreamUCom::add_row(const UCom::Signal& signal) {
  const auto& typed = static_cast<const UCom::SignalM<T>&>(signal);
  const InfoNode info(InfoProps(
      typed.get_name(), 1, nullptr, typed.get_shared_unit(), typed.get_shared_comment(), 0.0,
      static_cast<double>(typed.get_min()), static_cast<double>(typed.get_max()), 0.0, 0.0));
  access.add(AccessUCom::Pointer<Lib::VariableExt<T>>(typed.get_slot(), info),
             AccessUCom::shared().size());
}

}  // namespace Trel::Sto
