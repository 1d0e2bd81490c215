// The streams that a database in their own headers describes: UCom signals, CAN frames.
//
// Without that database a stream stays unconfigured: it has an id and serves no data. Packets take
// the same way whether they come from a page or not.
#pragma once

#include "sto/Sto_StreamCodec.h"

namespace Trel::Sto {

template <class Codec, class Data, class A>
class StreamDescribed : public StreamCodec<Codec, Data, A> {
 protected:
  using StreamCodec<Codec, Data, A>::StreamCodec;

 private:
  bool raw_packet(const unsigned char* data, unsigned int size) override {
    return !this->codec.decode(data, size);
  }
  bool page_packet(const unsigned char* data, unsigned int size) override {
    return !this->codec.decode(data, size);
  }
  void rewind_codec() override { this->codec.rewind(true); }
};

}  // namespace Trel::Sto
