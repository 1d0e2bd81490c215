#include "sto/Sto_StreamCan.h"

namespace Trel::Sto {

StreamCan::StreamCan(Enum::TRANSPORT_TYPE transport, unsigned int serial)
    : StreamDescribed(transport, Enum::CODEC_TYPE_CAN, serial) {}

StreamCan::~StreamCan() = default;

bool StreamCan::codec_configure() {
  const Com::Meta* header = meta.find_aux_header("(Trel-Can-Dbc)");
  if (header == nullptr) return false;
  codec.configure(header->get_data(), true);
  set_configured();
  for (std::size_t six = 0; six < codec.get_signals_size(); ++six) {
    const Can::Signal* signal = codec.get_signal_by_six(six);
    if (signal == nullptr) continue;
    Lib::visit_element_type(signal->get_type(),
                            [&]<class T>(std::type_identity<T>) { add_signal<T>(*signal); });
  }
  return true;
}

template <Lib::ElementType T>
void StreamCan::add_signal(const Can::Signal& signal) {
  const InfoNode info(InfoProps(signal.get_tag(), 1, nullptr, signal.get_unit(),
                                signal.get_shared_comment(), signal.get_factor().get_real(),
                                signal.get_min().get_real(), signal.get_max().get_real(), 0, 0));
  access.add(AccessCan::Pointer<Lib::VariableExt<T>>(signal.get_six(), info),
             AccessCan::shared().size());
}

}  // namespace Trel::Sto
