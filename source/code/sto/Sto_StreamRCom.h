// A stream of range packets: what a hunter measures of its targets and of lanes, and the sources of
// the navigation packets that it measures with.
#pragma once

#include "rng/Rng_RComRx.h"
#include "sto/Sto_AccessRng.h"
#include "sto/Sto_StreamKeyed.h"
#include "sto/Sto_StreamSources.h"

namespace Trel::Sto {

class StreamRCom : public StreamKeyed<Rng::RComCodec, Rng::ComData, AccessRCom> {
 public:
  StreamRCom(Enum::TRANSPORT_TYPE transport, unsigned int serial);
  ~StreamRCom() override;

  // What the last good data tells of the sources; before the scan for it, nothing.
  [[nodiscard]] RangeSources sources() const;

 private:
  bool raw_packet(const unsigned char* data, unsigned int size) override;
  bool page_packet(const unsigned char* data, unsigned int size) override;
  // The sources, who is the hunter and who are the targets, and the range unit's identity.
  void let_scan() override;
  // In a range file, which has no headers, also the one that tells the stream's role.
  void note_scan(Com::Meta& header) override;
};

}  // namespace Trel::Sto
