// A stream without a codec: it notes down what is asked of it and takes the time from its packets.
#pragma once

#include <string>
#include <vector>

#include "library/Lib_Cast.h"
#include "sto/Sto_Stream.h"
#include "support/Support_Bytes.h"

namespace Trel::Sto::Test {

// A packet with a good time.
inline Support::Bytes timed(long long nano) {
  Support::Bytes bytes;
  for (int byte = 0; byte < 8; ++byte) {
    bytes.push_back(static_cast<unsigned char>(static_cast<unsigned long long>(nano) >> 8 * byte));
  }
  return bytes;
}

// A packet without one.
inline Support::Bytes untimed() {
  return {'?'};
}

// A good time; `flags` add a reservation.
inline Lib::VariableExt<long long> time_of(long long nano, unsigned char flags = 0) {
  Lib::VariableExt<long long> time;
  time.set(nano, Lib::StampExt());
  time.set_flags(Lib::Flags(flags));
  time.set_nano(nano);
  return time;
}

class FakeStream : public Stream {
 public:
  explicit FakeStream(unsigned int serial,
                      Enum::TRANSPORT_TYPE transport = Enum::TRANSPORT_TYPE_OGG,
                      Enum::CODEC_TYPE type = Enum::CODEC_TYPE_UCOM)
      : Stream(transport, type, serial) {}
  ~FakeStream() override {
    if (gone != nullptr) ++*gone;
  }

  // What was called, in order: "rewind", "seek 100 at 1", "decode ? at 2".
  std::vector<std::string> calls;
  nano_t first = 0;  // what get_start() and get_end() say
  nano_t last = 0;
  bool good_at_rewind = true;
  int* gone = nullptr;  // counts the end of the stream

  bool xcom_seek_packet(const unsigned char* data, unsigned int size, long long at) override {
    return take("seek ", data, size, at);
  }
  bool xcom_decode_packet(const unsigned char* data, unsigned int size, long long at) override {
    return take("decode ", data, size, at);
  }
  void rewind() override {
    calls.push_back("rewind");
    good_at_rewind = get_good();
  }
  Result get_start() const override { return result(first); }
  Result get_end() const override { return result(last); }

  bool prescan_packet(const unsigned char*, unsigned int) override { return unexpected(); }
  bool postscan_packet(const unsigned char*, unsigned int) override { return unexpected(); }
  bool xcom_prescan_packet(const unsigned char*, unsigned int) override { return unexpected(); }
  bool xcom_postscan_packet(const unsigned char*, unsigned int) override { return unexpected(); }
  bool seek_packet(const unsigned char*, unsigned int, long long) override { return unexpected(); }
  bool decode_packet(const unsigned char*, unsigned int, long long) override {
    return unexpected();
  }
  bool codec_configure() override { return unexpected(); }
  void prescan_tidy() override {}
  void postscan_tidy() override {}
  void query_measurements(std::vector<DynamicNode>&) const override {}
  Result get_start(const std::string&) const override { return Result(); }
  Result get_end(const std::string&) const override { return Result(); }
#define TREL_FAKE(kind, K)                                                                         \
  bool add_element_##kind(unsigned int, unsigned int, unsigned int, const std::string&) override { \
    return false;                                                                                  \
  }                                                                                                \
  bool hit_element_##kind(unsigned int, const std::string&) const override {                       \
    return false;                                                                                  \
  }                                                                                                \
  bool use_element_##kind(StoreLeaf&, ValueText<typename K::value_type>&, unsigned int,            \
                          const std::string&) const override {                                     \
    return false;                                                                                  \
  }                                                                                                \
  StoreLeaf sum_element_##kind(unsigned int) const override {                                      \
    return StoreLeaf();                                                                            \
  }
  TREL_ELEMENT_KINDS(TREL_FAKE)
#undef TREL_FAKE
  void let_system(unsigned int) override {}
  void pop_system(unsigned int, unsigned int, Datum&) const override {}
  void exp_system(unsigned int, unsigned int) override {}
  void clr_system(unsigned int) override {}

 private:
  bool take(const std::string& form, const unsigned char* data, unsigned int size, long long at) {
    Lib::VariableExt<long long> now;
    if (size == 8) now = time_of(cast_8_byte_LE_to_int64(data));
    calls.push_back(form + (size == 8 ? std::to_string(now.get()) : "?") + " at " +
                    std::to_string(at));
    cache_indexer(now, at);
    return false;
  }
  bool unexpected() {
    calls.push_back("unexpected");
    return false;
  }
  static Result result(nano_t nano) {
    Result answer;
    answer = nano;
    return answer;
  }
};

}  // namespace Trel::Sto::Test
