// What the streams share whose codec decodes by keys: those of navigation and of range packets.
//
// Nothing needs to be configured. A scan decodes little: the prescan looks for the first times and
// samples, and the scan that follows wants only the groups behind the headers that it writes.
// Elements bring their own groups along once they have been selected. Codec is the family's codec,
// Data its record, A its access table.
#pragma once

#include "sto/Sto_StreamCodec.h"

namespace Trel::Sto {

template <class Codec, class Data, class A>
class StreamKeyed : public StreamCodec<Codec, Data, A> {
 public:
  bool codec_configure() override {
    this->set_configured();
    return true;
  }
  void prescan_tidy() override {
    StreamCodec<Codec, Data, A>::prescan_tidy();
    let_scan();
  }
  // Adds the groups of the elements selected in `mode` to those that are wanted already.
  void let_system(unsigned int mode) override {
    this->systems.at(mode).let(this->codec.Key());
    this->codec.Key().PropagateKeyOr();
  }

 protected:
  // What the codec answers to the packet that completed its prescan.
  static constexpr int kPrescanComplete = 2;

  StreamKeyed(Enum::TRANSPORT_TYPE transport, Enum::CODEC_TYPE type, unsigned int serial)
      : StreamCodec<Codec, Data, A>(transport, type, serial, true) {}

  // Wants what the scan for the last time shall decode, and nothing else.
  virtual void let_scan() = 0;

 private:
  void rewind_codec() override { this->codec.PrescanRewind(true); }
};

}  // namespace Trel::Sto
