// The pieces of the hot path by themselves: pages, packets, signals, frames, casts and lines.
//
// Rates are given per item: a packet, a signal, a field or a line.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <iomanip>
#include <sstream>
#include <vector>

#include "can/Can_Codec.h"
#include "com/Com_XComStream.h"
#include "library/Lib_Cast.h"
#include "library/Lib_Dynamic.h"
#include "nav/Nav_MComRx.h"
#include "nav/Nav_NComRx.h"
#include "nav/Nav_Sync.h"
#include "rng/Rng_RComRx.h"
#include "support/Support_Dbu.h"
#include "support/Support_NavPacket.h"
#include "support/Support_Packet.h"
#include "support/Support_Page.h"
#include "support/Support_RangePacket.h"
#include "support/Support_Recording.h"
#include "ucom/UCom_Codec.h"

namespace {

using namespace Trel;
using Support::Bytes;

void count_items(benchmark::State& state, std::size_t per_round) {
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * per_round));
}

// Payload pages of one stream, `packets` packets of 100 bytes each.
std::vector<Bytes> payload_pages(std::size_t packets) {
  std::vector<Bytes> pages;
  Support::Recording recording(
      [&](std::span<const unsigned char> page) { pages.emplace_back(page.begin(), page.end()); });
  auto& stream = recording.stream(1).codec("UCom").bytes_per_page(4096);
  const Bytes packet(100, 7);
  for (std::size_t n = 0; n < packets; ++n) stream.packet(packet);
  recording.finish();
  return pages;
}

// Page by page through the stream decoder, each packet drawn.
void BM_pages_to_packets(benchmark::State& state) {
  const std::vector<Bytes> pages = payload_pages(10000);
  std::size_t packets = 0;
  for (auto _ : state) {
    Com::XComStreamDec decoder(1, false);
    decoder.capture();
    for (const Bytes& bytes : pages) {
      auto* data = const_cast<unsigned char*>(bytes.data());
      const long header = 27 + data[26];
      ogg_page page{data, header, data + header, static_cast<long>(bytes.size()) - header};
      decoder.decode_page(page);
      ogg_packet packet;
      while (decoder.packet_out(packet) > 0) ++packets;
    }
  }
  benchmark::DoNotOptimize(packets);
  state.SetItemsProcessed(static_cast<std::int64_t>(packets));
}
BENCHMARK(BM_pages_to_packets);

// A message of a time and 200 signals of one type.
struct Message {
  Message(const char* type, unsigned int bits, const char* measured, const nlohmann::json& scale)
      : codec(false), packet(1) {
    Support::Dbu::Ids ids{1};
    for (std::uint64_t n = 0; n < kSignals; ++n) ids.push_back(n + 2);
    Support::Dbu dbu;
    dbu.message(1, ids).signal(1).name("Nano").type("S", 64).at(0);
    for (unsigned int n = 0; n < kSignals; ++n) {
      dbu.signal(n + 2)
          .name("S" + std::to_string(n))
          .type(type, bits)
          .at(64 + n * bits)
          .measured(measured)
          .scale(scale);
      packet.bits(64 + n * bits, bits, n);
    }
    codec.configure(dbu.json(), false);
  }

  static constexpr unsigned int kSignals = 200;
  UCom::Codec codec;
  Support::UComPacket packet;
};

void decode_message(benchmark::State& state, Message message) {
  const Bytes& bytes = message.packet.bytes();
  for (auto _ : state) {
    message.codec.decode(bytes.data(), bytes.size());
    benchmark::ClobberMemory();
  }
  count_items(state, Message::kSignals);
}

void BM_signals_scaled_16_bit(benchmark::State& state) {
  decode_message(state, Message("S", 16, "R64", 0.01));
}
BENCHMARK(BM_signals_scaled_16_bit);

void BM_signals_unaligned_12_bit(benchmark::State& state) {
  decode_message(state, Message("U", 12, "U32", 3));
}
BENCHMARK(BM_signals_unaligned_12_bit);

void BM_signals_64_bit_real(benchmark::State& state) {
  decode_message(state, Message("R", 64, "R64", 1.0));
}
BENCHMARK(BM_signals_64_bit_real);

// A frame of eight signals of a byte each, in the byte order given.
std::string dbc_text(char order) {
  std::ostringstream text;
  text << "BO_ 5 Frame: 8 Node\n";
  for (int n = 0; n < 8; ++n) {
    const int start = order == '1' ? 8 * n : 8 * n + 7;
    text << " SG_ S" << n << " : " << start << "|8@" << order << "+ (0.5,1) [0|0] \"\" Node\n";
  }
  return text.str();
}

// 60 records of that frame behind a time.
Bytes can_packet() {
  Bytes packet(8 + 60 * 16);
  cast_int64_to_8_byte_LE(packet.data(), 1400000000000000000);
  for (std::size_t at = 8; at < packet.size(); at += 16) {
    packet[at] = 0x80;
    packet[at + 4] = 5;
    for (std::size_t k = 8; k < 16; ++k) packet[at + k] = static_cast<unsigned char>(k);
  }
  return packet;
}

void decode_frames(benchmark::State& state, char order) {
  const std::string text = dbc_text(order);
  Can::Codec codec;
  codec.configure({reinterpret_cast<const unsigned char*>(text.data()), text.size()}, false);
  const Bytes packet = can_packet();
  for (auto _ : state) {
    codec.decode(packet.data(), packet.size());
    benchmark::ClobberMemory();
  }
  count_items(state, 60 * 8);
}

void BM_can_signals_little_endian(benchmark::State& state) {
  decode_frames(state, '1');
}
BENCHMARK(BM_can_signals_little_endian);

void BM_can_signals_big_endian(benchmark::State& state) {
  decode_frames(state, '0');
}
BENCHMARK(BM_can_signals_big_endian);

// The same frames unpacked by hand, for comparison.
void BM_can_signals_by_hand(benchmark::State& state) {
  const Bytes packet = can_packet();
  double values[8] = {};
  for (auto _ : state) {
    for (std::size_t at = 8; at < packet.size(); at += 16) {
      if (cast_4_byte_LE_to_uint32(&packet[at + 4]) != 5) continue;
      for (std::size_t k = 0; k < 8; ++k) values[k] = packet[at + 8 + k] * 0.5 + 1;
    }
    benchmark::DoNotOptimize(values);
    benchmark::ClobberMemory();
  }
  count_items(state, 60 * 8);
}
BENCHMARK(BM_can_signals_by_hand);

// The signed 24-bit fields of a navigation packet, one behind the other.
void BM_cast_24_bit_fields(benchmark::State& state) {
  const Bytes bytes(24 * 1024, 0x9A);
  for (auto _ : state) {
    long long sum = 0;
    for (std::size_t at = 0; at < bytes.size(); at += 3) {
      sum += cast_3_byte_LE_to_int32(&bytes[at]);
    }
    benchmark::DoNotOptimize(sum);
  }
  count_items(state, bytes.size() / 3);
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * bytes.size()));
}
BENCHMARK(BM_cast_24_bit_fields);

// A thousand packets of a drive, ten milliseconds apart, with a cycle of slow channels.
template <class Packet>
std::vector<Bytes> navigation_packets() {
  std::vector<Bytes> packets;
  for (unsigned int n = 0; n < 1000; ++n) {
    const auto channel = static_cast<unsigned char>(n % 95);
    packets.push_back(
        Packet()
            .time_ms(static_cast<std::uint16_t>(n * 10))
            .status(4)
            .acceleration(0.5, -0.25, -9.8)
            .angular_rate(0.01, 0.02, 0.1)
            .position(0.9 + n * 1e-7, -0.02, 110)
            .velocity(10, 5, -0.5)
            .attitude(0.5 + n * 1e-4, 0.02, -0.01)
            .channel(channel, channel == 0
                                  ? typename Packet::ChannelData{0, 0x93, 0x5E, 1, 12, 4, 4, 4}
                                  : typename Packet::ChannelData{1, 0, 2, 0, 3, 0, 0, 8})
            .bytes());
  }
  return packets;
}

template <class Codec, class Packet>
void decode_navigation(benchmark::State& state, bool everything) {
  const std::vector<Bytes> packets = navigation_packets<Packet>();
  Codec codec(false);
  codec.Key().Reset(everything);
  codec.Key().KMain().Let_Pos();
  codec.Key().KMain().Let_Vel();
  codec.Key().PropagateKeyOr();
  for (auto _ : state) {
    for (const Bytes& packet : packets) codec.DecodeBasic(packet.data(), false);
    benchmark::ClobberMemory();
  }
  count_items(state, packets.size());
}

void BM_ncom_time_position_velocity(benchmark::State& state) {
  decode_navigation<Nav::NComCodec, Support::NComPacket>(state, false);
}
BENCHMARK(BM_ncom_time_position_velocity);

void BM_ncom_everything(benchmark::State& state) {
  decode_navigation<Nav::NComCodec, Support::NComPacket>(state, true);
}
BENCHMARK(BM_ncom_everything);

void BM_mcom_time_position_velocity(benchmark::State& state) {
  decode_navigation<Nav::MComCodec, Support::MComPacket>(state, false);
}
BENCHMARK(BM_mcom_time_position_velocity);

void BM_mcom_everything(benchmark::State& state) {
  decode_navigation<Nav::MComCodec, Support::MComPacket>(state, true);
}
BENCHMARK(BM_mcom_everything);

// An outline of eight corners for the hunter (0) or a target.
Bytes outline_packet(unsigned char vehicle) {
  constexpr short kCorners[8][2] = {{4000, -500}, {4000, 500}, {3500, 900}, {300, 900},
                                    {0, 700},     {0, -700},   {300, -900}, {3500, -900}};
  Support::RangePacket packet(5);
  packet.resize(42).u8(6, vehicle).u8(7, 8).u8(9, 7);
  for (std::size_t corner = 0; corner < 8; ++corner) {
    packet.i16(10 + 4 * corner, kCorners[corner][0]).i16(12 + 4 * corner, kCorners[corner][1]);
  }
  return packet.bytes();
}

// A thousand packets about one target, ten milliseconds apart; with outlines on both sides, a
// sensor and the local frame each value has something to follow from.
std::vector<Bytes> range_packets() {
  std::vector<Bytes> packets;
  for (unsigned int n = 0; n < 1000; ++n) {
    const int away = static_cast<int>(n);
    Support::RangePacket packet(2);
    packet.time_ms(static_cast<std::uint16_t>(n * 10)).target(1, 1);
    packet.i32(8, 1500 + away).i32(12, 40000 - 3 * away).i16(16, 10).i16(18, -300);
    packet.i32(20, 1000 * away).i32(24, 2000).i32(28, 1000 * away + 40000).i32(32, 3500);
    packet.u16(36, static_cast<std::uint16_t>(1000 + n)).u16(38, 1500).u8(40, 1);
    packet.i16(50, 1500).i16(52, 20).i16(54, 8).i16(56, -20);
    packet.u8(59, 1).u8(65, 1).u8(67, 1).u8(69, 1).u8(70, 100).u8(71, 50).u8(72, 25).u8(73, 200);
    packet.i32(74, 1000 * away).i32(78, 1000).i32(82, 1000 * away + 39000).i32(86, 2500);
    packet.i16(106, 120).i16(108, -80).i16(110, 60).i16(112, 200);
    // the minute, then the heading of the local frame, then lever arms
    if (n == 0) packet.channel(0, Support::little(22900000, 4));
    if (n > 0) packet.channel(n % 2 == 1 ? 12 : 14, {0, 0, 1, 0, 0, 0, 0, 2});
    packet.append({0x10, 0x27, 0, 0, 1, 50});
    packets.push_back(packet.bytes());
  }
  return packets;
}

void decode_ranges(benchmark::State& state, bool everything) {
  const std::vector<Bytes> packets = range_packets();
  Support::RangePacket sensor(6);
  sensor.resize(38).u8(7, 1).u8(9, 0x40).i16(10, 3500).i16(26, 500).i16(28, 30000);
  const Bytes sensor_bytes = sensor.bytes();
  Rng::RComCodec codec(false);
  codec.Key().Reset(everything);
  codec.Key().KTarget(0).Let_General_Range();
  codec.Key().PropagateKeyOr();
  for (const Bytes& packet : {outline_packet(0), outline_packet(1), sensor_bytes}) {
    codec.DecodeLite(packet.data(), static_cast<unsigned int>(packet.size()));
  }
  for (auto _ : state) {
    for (const Bytes& packet : packets) {
      codec.DecodeLite(packet.data(), static_cast<unsigned int>(packet.size()));
    }
    benchmark::ClobberMemory();
  }
  count_items(state, packets.size());
}

void BM_rcom_range(benchmark::State& state) {
  decode_ranges(state, false);
}
BENCHMARK(BM_rcom_range);

void BM_rcom_everything(benchmark::State& state) {
  decode_ranges(state, true);
}
BENCHMARK(BM_rcom_everything);

// The sums alone, which is the least that a reader of a raw file has to do.
void BM_ncom_sums(benchmark::State& state) {
  const std::vector<Bytes> packets = navigation_packets<Support::NComPacket>();
  for (auto _ : state) {
    unsigned int good = 0;
    for (const Bytes& packet : packets) {
      good += Nav::SyncState::status_ncom(72, packet.data()) == Lib::kPacketGood ? 1 : 0;
    }
    benchmark::DoNotOptimize(good);
  }
  count_items(state, packets.size());
}
BENCHMARK(BM_ncom_sums);

// The same packets through the synchronisation, in reads of 2048 bytes.
void BM_ncom_synchronisation(benchmark::State& state) {
  Bytes file;
  for (const Bytes& packet : navigation_packets<Support::NComPacket>()) {
    file.insert(file.end(), packet.begin(), packet.end());
  }
  std::size_t packets = 0;
  for (auto _ : state) {
    Nav::SyncState sync;
    Nav::PacketState packet;
    for (std::size_t at = 0; at < file.size();) {
      const std::size_t size = std::min<std::size_t>({2048, sync.space(), file.size() - at});
      sync.write(&file[at], static_cast<unsigned int>(size));
      at += size;
      while (sync.packet_out(packet) != 0) ++packets;
    }
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(packets));
}
BENCHMARK(BM_ncom_synchronisation);

// A line as the program writes it, without the file.
void BM_write_line(benchmark::State& state) {
  std::ostringstream out;
  for (auto _ : state) {
    out.str({});
    out << 1381234567000000000 << ";" << std::fixed << std::setprecision(12) << 51.123456789012
        << ";" << -1.123456789012 << ";" << std::setprecision(3) << 110.25F << std::endl;
    benchmark::DoNotOptimize(out);
  }
  count_items(state, 1);
}
BENCHMARK(BM_write_line);

}  // namespace
