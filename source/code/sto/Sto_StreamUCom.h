// A stream of UCom packets: messages of signals that the stream's "/Trel-UCom-Dbu/" header
// describes.
//
// An element is a signal of the database under its own name, so "Nano", which carries the time, and
// all others exist only where the recording defines them. Signals of a type that is no element type
// are passed over.
#pragma once

#include "sto/Sto_AccessUCom.h"
#include "sto/Sto_StreamDescribed.h"
#include "ucom/UCom_Codec.h"

namespace Trel::Sto {

class StreamUCom : public StreamDescribed<UCom::Codec, UCom::ComData, AccessUCom> {
 public:
  StreamUCom(Enum::TRANSPORT_TYPE transport, unsigned int serial);
  ~StreamUCom() override;

  // False without the database header.
  bool codec_configure() override;

 private:
  template <Lib::ElementType T>
  void add_row(const UCom::Signal& signal);
};

}  // namespace Trel::Sto
