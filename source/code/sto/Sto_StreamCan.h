// A stream of CAN frames, which the DBC text of the stream's "(Trel-Can-Dbc)" header describes.
//
// An element is a signal of the database under its tag, or one of the variables of time that every
// CAN stream has. Those are asked first: they hide a signal of the same name and kind.
#pragma once

#include "can/Can_Codec.h"
#include "sto/Sto_AccessCan.h"
#include "sto/Sto_StreamDescribed.h"

namespace Trel::Sto {

class StreamCan : public StreamDescribed<Can::Codec, Can::ComData, AccessCan> {
 public:
  StreamCan(Enum::TRANSPORT_TYPE transport, unsigned int serial);
  ~StreamCan() override;

  // False without the database header.
  bool codec_configure() override;

 private:
  template <Lib::ElementType T>
  void add_signal(const Can::Signal& signal);
};

}  // namespace Trel::Sto
