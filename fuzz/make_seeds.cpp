// Writes the first corpora of the fuzz targets: make_seeds FOLDER
//
// One folder per target below FOLDER, each with a few small inputs made by the recording builder.
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "support/Support_Damage.h"
#include "support/Support_NavPacket.h"
#include "support/Support_Packet.h"
#include "support/Support_RangePacket.h"
#include "support/Support_Recording.h"

namespace {

using namespace Trel::Support;
namespace fs = std::filesystem;

void seed(const fs::path& folder, const std::string& target, const std::string& name,
          const Bytes& bytes) {
  fs::create_directories(folder / target);
  write_file(folder / target / ("seed-" + name), bytes);
}

// A 16-bit size and so many bytes, as the targets cut their input.
Bytes part(const Bytes& bytes) {
  return join(
      {{static_cast<unsigned char>(bytes.size()), static_cast<unsigned char>(bytes.size() >> 8)},
       bytes});
}

Dbu database() {
  return Dbu()
      .message(1, {1, 2, 3, 4, 5})
      .message(2, {6, 7})
      .signal(1)
      .name("Nano")
      .type("S", 64)
      .at(0)
      .signal(2)
      .name("GnssInt1_Latitude")
      .type("R", 64)
      .at(64)
      .unit("deg")
      .signal(3)
      .name("GnssInt1_Longitude")
      .type("R", 64)
      .at(128)
      .signal(4)
      .name("GnssInt1_Altitude")
      .type("R", 32)
      .at(192)
      .signal(5)
      .name("Brake")
      .type("B")
      .at(227)
      .signal(6)
      .name("Speed")
      .type("U", 12)
      .at(4)
      .measured("R32")
      .scale(0.01)
      .offset(-3)
      .signal(7)
      .inherits(6)
      .at(16)
      .name("Turn")
      .type("S", 16)
      .measured("S32");
}

const char* const kDbc =
    "VERSION \"1\"\n\nBU_: Engine Brake\n\n"
    "BO_ 291 Motion: 8 Engine\n"
    " SG_ Speed : 0|16@1+ (0.01,0) [0|655.35] \"km/h\" Brake\n"
    " SG_ Torque : 23|12@0- (1,-100) [-100|400] \"Nm\" Brake\n"
    " SG_ Mode M : 40|4@1+ (1,0) [0|15] \"\" Vector__XXX\n"
    " SG_ Detail m3 : 44|20@1+ (1,0) [0|0] \"\" Vector__XXX\n\n"
    "CM_ BO_ 291 \"How it moves\";\nCM_ SG_ 291 Speed \"Over ground\";\n";

Bytes can_packet(std::int64_t nano) {
  UComPacket packet(0);  // its two bytes are taken off again
  packet.integer(0, 64, nano).bits(68, 4, 8).bits(96, 32, 291).bits(128, 64, 0x123456789ABCDEF0);
  return remove_bytes(packet.bytes(), 0, 2);
}

Bytes ucom_packet(int second) {
  return UComPacket(1)
      .integer(0, 64, second * 1000000000LL)
      .real64(64, 51.5)
      .real64(128, -1.25)
      .real32(192, 110)
      .bits(227, 1, 1)
      .bytes();
}

// UCom and CAN side by side, with a group, a hole and a footer.
Bytes recording() {
  Recording recording;
  auto& car = recording.stream(7).ucom(database()).grouping("Car");
  auto& bus = recording.stream(9).codec("Can").dbc(kDbc);
  for (int second = 1; second <= 12; ++second) {
    car.packet(ucom_packet(second)).packet(UComPacket(2).bits(0, 32, 0x1234567).bytes());
    bus.packet(can_packet(second < 4 ? second : 1400000000000000000 + second * 1000000000LL));
    if (second % 3 == 0) {
      car.page();
      bus.page();
    }
    if (second == 6) car.hole(2);
  }
  car.footer(bytes_of("{Trel-End}why=done"));
  return recording.bytes();
}

// Packets of a minute's turn, one slow channel after the other.
template <class Packet>
Bytes navigation() {
  Bytes file;
  for (unsigned int n = 0; n < 100; ++n) {
    const auto channel = static_cast<unsigned char>(n % 5 == 0 ? 0 : n % 95);
    const auto packet =
        Packet()
            .time_ms(static_cast<std::uint16_t>((59500 + n * 10) % 60000))
            .status(n % 33 == 32 ? 20
                    : n < 10     ? 2
                                 : 4)
            .acceleration(0.5, -0.25, -9.8)
            .angular_rate(0.01, 0.02, 0.1)
            .position(0.9, -0.02, 110)
            .velocity(10, 5, -0.5)
            .attitude(0.5, 0.02, -0.01)
            .channel(channel, channel == 0
                                  ? typename Packet::ChannelData{0, 0x93, 0x5E, 1, 12, 4, 4, 4}
                                  : typename Packet::ChannelData{1, 2, 3, 4, 5, 6, 0, 8})
            .bytes();
    file.insert(file.end(), packet.begin(), packet.end());
  }
  return file;
}

// Packets of all types over a minute's turn, one slow channel after the other.
std::vector<Bytes> measurement() {
  std::vector<Bytes> packets;
  const Bytes inner = NComPacket().time_ms(100).status(4).channel(0, {0, 0x93, 0x5E, 1}).bytes();
  packets.push_back(RangePacket(5).append({0, 0, 1, 4, 0, 3}).append(noise(16)).bytes());
  packets.push_back(RangePacket(5).append({0, 0, 0, 2, 0, 0xC1}).append(noise(18)).bytes());
  packets.push_back(RangePacket(6).append({0, 0, 0, 1, 0, 0}).append(noise(22)).bytes());
  packets.push_back(RangePacket(6).append({0, 0, 0, 1, 0, 0xC0}).append(noise(38)).bytes());
  for (unsigned int n = 0; n < 36; ++n) {
    const auto ms = static_cast<std::uint16_t>((59800 + n * 10) % 60000);
    const auto channel = static_cast<unsigned char>(n % 4 == 0 ? 0 : n % 23);
    const Bytes data = channel == 0   ? Bytes{0, 0x93, 0x5E, 1, 3, 4, 5}
                       : channel == 9 ? Bytes{1, 0, 0, 10, 't', 'g', 't', '1'}
                                      : Bytes{18, 0, 3, 4, 5, 6, 7, 8};
    for (const unsigned char target : {1, 2}) {
      packets.push_back(RangePacket(2)
                            .time_ms(ms)
                            .target(target, 2)
                            .raw(8, noise(33, n))
                            .channel(channel, data)
                            .raw(50, noise(64, n))
                            .append(n % 7 == 0 ? noise(12, n) : Bytes())
                            .bytes());
    }
    packets.push_back(
        RangePacket(1).time_ms(ms).raw(6, noise(43, n)).channel(channel, data).bytes());
    if (n % 8 == 0) {
      packets.push_back(
          RangePacket(0).time_ms(ms).raw(6, noise(31, n)).channel(channel, data).bytes());
      packets.push_back(range_packet(0x0A000001, 0, {inner}));
      packets.push_back(range_packet(0, 3, {inner}));
    }
  }
  return packets;
}

Bytes spanning_recording() {
  Recording recording;
  auto& car = recording.stream(0x80000001).ucom(database()).segments_per_page(1).headers_together();
  for (int second = 1; second <= 4; ++second) {
    Bytes packet = ucom_packet(second);
    packet.resize(600);
    car.packet(packet);
  }
  return recording.finish().bytes();
}

}  // namespace

int main(int argc, char* argv[]) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: make_seeds FOLDER\n");
    return 2;
  }
  const fs::path folder = argv[1];
  const Bytes recorded = recording();
  for (const char* target : {"store", "store_raw"}) {
    seed(folder, target, "two-kinds", recorded);
    seed(folder, target, "spanning", spanning_recording());
    seed(folder, target, "cut", cut_end(recorded, recorded.size() / 3));
  }
  seed(folder, "decoder", "two-kinds", join({{0, 0}, recorded}));
  seed(folder, "decoder", "footers-and-rewinds", join({{1, 5}, recorded}));
  seed(folder, "decoder", "spanning", join({{0, 3}, spanning_recording()}));
  seed(folder, "meta", "initial", part(bytes_of("[Trel-UCom]\nheaders=2\nName=Car\n")));
  seed(folder, "meta", "json", part(bytes_of("/x/{\"V\":1,\"M\":[],\"S\":[1,2.5,true,null]}")));
  seed(folder, "meta", "others", part(bytes_of("(Trel-Can-Dbc)BO_ 1|x|<y>{z}")));
  seed(folder, "dbu", "database", bytes_of(database().text()));
  seed(folder, "ucom", "mixed",
       join({noise(200), part(ucom_packet(1)), part(ucom_packet(2)), part({1, 0, 5})}));
  seed(folder, "dbc", "database", bytes_of(kDbc));
  const Bytes raw = navigation<NComPacket>();
  seed(folder, "store_nav", "drive", raw);
  seed(folder, "store_nav", "voyage", navigation<MComPacket>());
  seed(folder, "nav_sync", "drive", join({part(noise(100)), part(raw), part(noise(50))}));
  Bytes inner;
  for (std::size_t at = 0; at < raw.size(); at += 72) {
    inner.insert(inner.end(), raw.begin() + static_cast<std::ptrdiff_t>(at) + 1,
                 raw.begin() + static_cast<std::ptrdiff_t>(at) + 71);
  }
  seed(folder, "nav", "drive", inner);
  Bytes ranges;
  Bytes bodies = {0, 0};  // all keys on
  for (const Bytes& packet : measurement()) {
    const Bytes body(packet.begin() + 4, packet.end() - 1);
    ranges = join({ranges, packet});
    bodies = join({bodies, {packet[1]}, part(body)});
  }
  seed(folder, "store_rng", "measurement", ranges);
  seed(folder, "rng", "measurement", bodies);
  seed(folder, "rng_sync", "measurement", join({part(noise(100)), part(ranges), part(noise(50))}));
  seed(folder, "can", "packets",
       join({part(can_packet(5)), part(can_packet(6)), part(can_packet(1400000000000000000)),
             part(can_packet(1400000001000000000)), part(Bytes(12, 1))}));
}
