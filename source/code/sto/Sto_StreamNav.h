// The streams of navigation packets: what those of NCom and of MCom share. Codec is the family's
// codec, A its access table.
#pragma once

#include "nav/Nav_ComData.h"
#include "sto/Sto_AccessNav.h"
#include "sto/Sto_StreamKeyed.h"

namespace Trel::Sto {

// Notes what is known of the unit: identity, firmware, product, rate. What never became known is
// noted as an empty text.
void note_unit(Com::Meta& header, const Nav::ComData& data);
// Wants the groups behind those notes, and nothing else.
void let_unit(Nav::ComKey& key);

// The same for the way by which the packets came, and for its group, which is wanted in addition.
void note_source(Com::Meta& header, const Nav::ComData& data);
void let_source(Nav::ComKey& key);

template <class Codec, class A>
class StreamNav : public StreamKeyed<Codec, Nav::ComData, A> {
 protected:
  using StreamKeyed<Codec, Nav::ComData, A>::StreamKeyed;

  void let_scan() override { let_unit(this->codec.Key()); }
  void note_scan(Com::Meta& header) override { note_unit(header, this->data_end); }

 private:
  bool page_packet(const unsigned char* data, unsigned int size) override {
    return this->codec.DecodeSuper(data, size, true) == this->kPrescanComplete;
  }
};

}  // namespace Trel::Sto
