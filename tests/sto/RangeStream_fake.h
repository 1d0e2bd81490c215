// Streams without a codec for raw range files: they note down what is asked of them and take time
// and sources from packets that a real codec would not know.
//
//   join({timed_range(100), wrapped(7, 0, 150), tells_slot(0, 7, 0), timed_range(200)})
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Stream_fake.h"
#include "sto/Sto_StreamSources.h"
#include "support/Support_NavPacket.h"
#include "support/Support_RangePacket.h"

namespace Trel::Sto::Test {

// What the fakes make of a packet's status.
inline constexpr unsigned char kEndsRangePrescan = 1;
inline constexpr unsigned char kEndsRangePostscan = 2;

// Kinds of range data; the second tells a source, the third the address of the hunter or a target.
inline constexpr unsigned char kTimedKind = 2;
inline constexpr unsigned char kSlotKind = 5;
inline constexpr unsigned char kAddressKind = 6;

// 8 bytes of range data with a time in nanoseconds.
inline Support::Bytes timed_range(std::uint16_t time, unsigned char status = 0) {
  return Support::range_file_packet(kTimedKind, {static_cast<unsigned char>(time),
                                                 static_cast<unsigned char>(time >> 8), status});
}

// 82 bytes: a wrapper with one NCom packet, whose milliseconds the fake takes for nanoseconds.
inline Support::Bytes wrapped(std::uint32_t address, unsigned char provenance, std::uint16_t time,
                              unsigned char status = 0) {
  return Support::range_packet(address, provenance,
                               {Support::NComPacket().time_ms(time).status(status).bytes()});
}

inline Support::Bytes with_number(unsigned char kind, unsigned char first, std::uint32_t number,
                                  unsigned char last) {
  Support::Bytes body = {first};
  for (int byte = 0; byte < 4; ++byte) {
    body.push_back(static_cast<unsigned char>(number >> 8 * byte));
  }
  body.push_back(last);
  return Support::range_file_packet(kind, body);
}

// Range data that fill a slot of the sources, or that tell an address: of the hunter, or of a
// target, counted from 1.
inline Support::Bytes tells_slot(unsigned char slot, std::uint32_t address,
                                 unsigned char provenance) {
  return with_number(kSlotKind, slot, address, provenance);
}
inline Support::Bytes tells_hunter(std::uint32_t address) {
  return with_number(kAddressKind, 0, address, 0);
}
inline Support::Bytes tells_target(unsigned char target, std::uint32_t address) {
  return with_number(kAddressKind, target, address, 0);
}

// What both fakes share. They notice a packet as "100", "?" for one without a time.
class RangeFake : public FakeStream {
 public:
  using FakeStream::FakeStream;

  std::vector<unsigned long long> finishes;  // of the reader, at each packet of the postscan
  bool was_captured = false;                 // when it was configured

  bool prescan_packet(const unsigned char* data, unsigned int size) override {
    note("prescan", data, size);
    return status_of(data, size) == kEndsRangePrescan;
  }
  bool postscan_packet(const unsigned char* data, unsigned int size) override {
    note("postscan", data, size);
    if (get_logical_rng() != nullptr) finishes.push_back(get_logical_rng()->finish());
    if (const auto time = time_in(data, size)) {
      if (!found_) first = *time;
      found_ = true;
      last = std::max(last, *time);
    }
    learn(data);
    return status_of(data, size) == kEndsRangePostscan;
  }
  bool seek_packet(const unsigned char* data, unsigned int size, long long at) override {
    return walk("seek", data, size, at);
  }
  bool decode_packet(const unsigned char* data, unsigned int size, long long at) override {
    return walk("decode", data, size, at);
  }
  bool codec_configure() override {
    calls.push_back("configure");
    was_captured = is_captured();
    return true;
  }
  void prescan_tidy() override { calls.push_back("prescan tidy"); }
  void postscan_tidy() override {
    calls.push_back("postscan tidy");
    if (has_header()) get_meta().append_aux_header(Com::Meta("{Trel-Range}", true));
    get_meta().append_aux_header(Com::Meta("{Trel-StreamScan}", true));
    if (found_) set_storable();
  }
  // The clock goes back to 0, as with a codec.
  void rewind() override {
    FakeStream::rewind();
    cache_indexer(time_of(0), 0);
  }

 protected:
  virtual std::optional<nano_t> time_in(const unsigned char* data, unsigned int size) const = 0;
  virtual unsigned char status_of(const unsigned char* data, unsigned int size) const = 0;
  virtual bool has_header() const { return false; }
  virtual void learn(const unsigned char*) {}

 private:
  void note(const std::string& pass, const unsigned char* data, unsigned int size) {
    const auto time = time_in(data, size);
    calls.push_back(pass + " " + (time ? std::to_string(*time) : "?"));
  }
  bool walk(const std::string& pass, const unsigned char* data, unsigned int size, long long at) {
    note(pass, data, size);
    if (at != 0) calls.back() += " at " + std::to_string(at);
    const auto time = time_in(data, size);
    cache_indexer(time ? time_of(*time) : time_of(0, Lib::Flags::Invalid), at);
    return false;
  }

  bool found_ = false;
};

// The stream of the range data: packets come whole. Any but those with a time are "?".
class RangeStream : public RangeFake {
 public:
  explicit RangeStream(Enum::TRANSPORT_TYPE transport = Enum::TRANSPORT_TYPE_RNG,
                       unsigned int serial = 0)
      : RangeFake(serial, transport, Enum::CODEC_TYPE_RCOM) {}

  RangeSources told;

 protected:
  std::optional<nano_t> time_in(const unsigned char* data, unsigned int size) const override {
    if (data[1] != kTimedKind || size != 8) return std::nullopt;
    return cast_2_byte_LE_to_uint16(data + 4);
  }
  unsigned char status_of(const unsigned char* data, unsigned int size) const override {
    return time_in(data, size) ? data[6] : 0;
  }
  bool has_header() const override { return true; }
  void learn(const unsigned char* data) override {
    const unsigned int number = cast_4_byte_LE_to_uint32(data + 5);
    if (data[1] == kSlotKind) told.wraps[data[4]] = {number, data[9]};
    if (data[1] != kAddressKind) return;
    (data[4] == 0 ? told.hunter : told.targets[data[4] - 1U]) = number;
  }
};

// A stream of wrapped packets: address, provenance, packets.
class WrappedStream : public RangeFake {
 public:
  explicit WrappedStream(Enum::TRANSPORT_TYPE transport = Enum::TRANSPORT_TYPE_RNG,
                         unsigned int serial = 0)
      : RangeFake(serial, transport, Enum::CODEC_TYPE_NCOM) {}

 protected:
  std::optional<nano_t> time_in(const unsigned char* data, unsigned int size) const override {
    if (size != 77 || cast_2_byte_LE_to_uint16(data + 6) == Support::kNoTime) return std::nullopt;
    return cast_2_byte_LE_to_uint16(data + 6);
  }
  unsigned char status_of(const unsigned char* data, unsigned int size) const override {
    return size != 77 ? 0 : data[5 + 21];
  }
};

}  // namespace Trel::Sto::Test
