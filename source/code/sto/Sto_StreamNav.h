// The streams of navigation packets: what those of NCom and of MCom share.
//
// Nothing needs to be configured. A scan decodes little: the prescan looks for the first times and
// samples, and the scan that follows wants only the groups behind the scan header. Elements bring
// their own groups along once they have been selected. Codec is the family's codec, A its access
// table.
#pragma once

#include "nav/Nav_ComData.h"
#include "sto/Sto_AccessNav.h"
#include "sto/Sto_StreamCodec.h"

namespace Trel::Sto {

// Notes what is known of the unit: identity, firmware, product, rate. What never became known is
// noted as an empty text.
void note_unit(Com::Meta& header, const Nav::ComData& data);
// Wants the groups behind those notes, and nothing else.
void let_unit(Nav::ComKey& key);

template <class Codec, class A>
class StreamNav : public StreamCodec<Codec, Nav::ComData, A> {
 public:
  bool codec_configure() override {
    this->set_configured();
    return true;
  }
  void prescan_tidy() override {
    StreamCodec<Codec, Nav::ComData, A>::prescan_tidy();
    let_unit(this->codec.Key());
  }
  // Adds the groups of the elements selected in `mode` to those that are wanted already.
  void let_system(unsigned int mode) override {
    this->systems.at(mode).let(this->codec.Key());
    this->codec.Key().PropagateKeyOr();
  }

 protected:
  // What the codec answers to the packet that completed its prescan.
  static constexpr int kPrescanComplete = 2;

  StreamNav(Enum::TRANSPORT_TYPE transport, Enum::CODEC_TYPE type, unsigned int serial)
      : StreamCodec<Codec, Nav::ComData, A>(transport, type, serial, true) {}

 private:
  bool page_packet(const unsigned char* data, unsigned int size) override {
    return this->codec.DecodeSuper(data, size, true) == kPrescanComplete;
  }
  void rewind_codec() override { this->codec.PrescanRewind(true); }
  void note_scan(Com::Meta& header) override { note_unit(header, this->data_end); }
};

}  // namespace Trel::Sto
