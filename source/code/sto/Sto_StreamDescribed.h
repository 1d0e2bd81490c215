// The streams that a database in their own headers describes: UCom signals, CAN frames.
//
// Without that database a stream stays unconfigured: it has an id and serves no data. Both kinds of
// packet take the same way, whether they come from a page or not.
#pragma once

#include "sto/Sto_StreamCodec.h"

namespace Trel::Sto {

template <class Codec, class Data, class A>
class StreamDescribed : public StreamCodec<Codec, Data, A> {
 public:
  bool prescan_packet(const unsigned char* data, unsigned int size) override {
    return !this->codec.decode(data, size);
  }
  bool xcom_prescan_packet(const unsigned char* data, unsigned int size) override {
    return !this->codec.decode(data, size);
  }
  bool postscan_packet(const unsigned char* data, unsigned int size) override {
    this->codec.decode(data, size);
    return false;
  }
  bool xcom_postscan_packet(const unsigned char* data, unsigned int size) override {
    this->codec.decode(data, size);
    return false;
  }
  bool seek_packet(const unsigned char* data, unsigned int size, long long location) override {
    return walk_packet(data, size, location);
  }
  bool decode_packet(const unsigned char* data, unsigned int size, long long location) override {
    return walk_packet(data, size, location);
  }
  bool xcom_seek_packet(const unsigned char* data, unsigned int size, long long location) override {
    return walk_packet(data, size, location);
  }
  bool xcom_decode_packet(const unsigned char* data, unsigned int size,
                          long long location) override {
    return walk_packet(data, size, location);
  }

  void rewind() override {
    this->codec.rewind(true);
    cache_indexer(0);
  }

  void prescan_tidy() override {
    rewind();
    if (this->is_configured()) this->data_start = this->codec.CData();
  }

  void postscan_tidy() override {
    if (this->is_configured()) this->data_end = this->codec.CData();
    rewind();
    this->append_scan_header();
    if (A::time_of(this->codec.CData()).good() && A::time_of(this->data_start).good() &&
        A::time_of(this->data_end).good()) {
      this->set_storable();
    }
  }

  using Stream::cache_indexer;
  // Offers the clock the codec's time.
  void cache_indexer(long long location) {
    Stream::cache_indexer(A::time_of(this->codec.CData()), location);
  }

 protected:
  using StreamCodec<Codec, Data, A>::StreamCodec;

 private:
  bool walk_packet(const unsigned char* data, unsigned int size, long long location) {
    this->codec.decode(data, size);
    cache_indexer(location);
    return false;
  }
};

}  // namespace Trel::Sto
