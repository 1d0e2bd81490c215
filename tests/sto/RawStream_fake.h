// A stream without a codec for raw navigation files: it notes down what is asked of it and takes
// the time from its packets.
#pragma once

#include <string>
#include <vector>

#include "Stream_fake.h"
#include "support/Support_NavPacket.h"

namespace Trel::Sto::Test {

// What the fake makes of a packet's status.
inline constexpr unsigned char kEndsPrescan = 1;
inline constexpr unsigned char kEndsPostscan = 2;

// A packet whose time is its milliseconds, which the fake takes for nanoseconds.
inline Support::Bytes at(std::uint16_t time, unsigned char status = 0) {
  return Support::NComPacket().time_ms(time).status(status).bytes();
}

// A packet without a time.
inline Support::Bytes untimed_packet() {
  return at(Support::kNoTime);
}

class RawStream : public FakeStream {
 public:
  explicit RawStream(Enum::TRANSPORT_TYPE transport = Enum::TRANSPORT_TYPE_NAV,
                     unsigned int serial = 0)
      : FakeStream(serial, transport, Enum::CODEC_TYPE_NCOM) {}

  std::vector<unsigned long long> finishes;  // of the reader, at each packet of the postscan

  bool prescan_packet(const unsigned char* data, unsigned int size) override {
    note("prescan", data, size);
    return data[21] == kEndsPrescan;
  }
  bool postscan_packet(const unsigned char* data, unsigned int size) override {
    note("postscan", data, size);
    finishes.push_back(get_logical_nav()->finish());
    if (timed(data)) {
      if (!found_) first = last = time(data);
      found_ = true;
      last = std::max(last, time(data));
    }
    return data[21] == kEndsPostscan;
  }
  bool seek_packet(const unsigned char* data, unsigned int size, long long location) override {
    return walk("seek", data, size, location);
  }
  bool decode_packet(const unsigned char* data, unsigned int size, long long location) override {
    return walk("decode", data, size, location);
  }
  bool codec_configure() override {
    calls.push_back("configure");
    was_captured = is_captured();
    return false;
  }
  void prescan_tidy() override { calls.push_back("prescan tidy"); }
  void postscan_tidy() override {
    calls.push_back("postscan tidy");
    if (found_) set_storable();
  }
  // The clock goes back to 0, as with a codec.
  void rewind() override {
    FakeStream::rewind();
    cache_indexer(time_of(0), 0);
  }

  bool was_captured = false;  // when it was configured

 private:
  static nano_t time(const unsigned char* data) { return cast_2_byte_LE_to_uint16(data + 1); }
  static bool timed(const unsigned char* data) { return time(data) != Support::kNoTime; }
  void note(const std::string& pass, const unsigned char* data, unsigned int size) {
    calls.push_back(pass + " " + (timed(data) ? std::to_string(time(data)) : "?") +
                    (size == 72 ? "" : " of " + std::to_string(size)));
  }
  bool walk(const std::string& pass, const unsigned char* data, unsigned int size, long long at) {
    note(pass, data, size);
    if (at != 0) calls.back() += " at " + std::to_string(at);
    cache_indexer(timed(data) ? time_of(time(data)) : time_of(0, Lib::Flags::Invalid), at);
    return false;
  }

  bool found_ = false;
};

}  // namespace Trel::Sto::Test
