// CAN database texts.
#include "Fuzz_Input.h"
#include "can/Can_Codec.h"

using namespace Trel;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Can::Codec codec;
  codec.configure({data, size}, true);
  for (std::size_t six = 0; six < codec.get_signals_size(); ++six) {
    static_cast<void>(codec.get_signal_by_six(six)->get_tag());
  }
  return 0;
}
