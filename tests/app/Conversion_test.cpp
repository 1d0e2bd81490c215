// What a conversion writes: lines, reports and exit values, for recordings made in the test.
#include <gtest/gtest.h>

#include <bit>
#include <cstdint>

#include "app/Program.h"
#include "support/Support_CanPacket.h"
#include "support/Support_NavPacket.h"
#include "support/Support_Packet.h"
#include "support/Support_RangePacket.h"
#include "support/Support_Recording.h"

namespace Trel::Test {
namespace {

using Support::Dbu;
using Support::Recording;
using Support::RecordingStream;
using Support::UComPacket;

constexpr long long kSecond = 1000000000;

// One message with time, latitude, longitude and altitude.
Dbu position_dbu() {
  return Dbu()
      .message(1, {1, 2, 3, 4})
      .signal(1)
      .name("Nano")
      .type("S", 64)
      .at(0)
      .signal(2)
      .name("GnssInt1_Latitude")
      .type("R", 64)
      .at(64)
      .signal(3)
      .name("GnssInt1_Longitude")
      .type("R", 64)
      .at(128)
      .signal(4)
      .name("GnssInt1_Altitude")
      .type("R", 32)
      .at(192);
}

Support::Bytes position(long long nano, double latitude, double longitude, float altitude) {
  return UComPacket(1)
      .integer(0, 64, nano)
      .real64(64, latitude)
      .real64(128, longitude)
      .real32(192, altitude)
      .bytes();
}

Support::Bytes position_at(long long seconds) {
  return position(seconds * kSecond, 0.5, -0.25, 8.0F);
}

std::string line_at(long long seconds) {
  return std::to_string(seconds) + "000000000;0.500000000000;-0.250000000000;8.000\n";
}

std::string text(const Support::Bytes& bytes) {
  return {bytes.begin(), bytes.end()};
}

std::string found(const std::string& streams, const std::string& start, const std::string& end,
                  const std::string& id) {
  return kBanner + "Added " + streams + " streams from XCOM file.\n" +
         "Start time (GPS nanoseconds): " + start + "\nEnd time (GPS nanoseconds): " + end +
         "\nFound UCOM stream (stream ID = " + id + ")\n";
}

std::string written(const std::string& lines) {
  return lines + " lines written to file \"\"out.txt\"\"\n";
}

// Converts a recording with one line a second, or as told.
struct Converted {
  explicit Converted(Recording& recording, const std::string& seconds = "1") {
    const Folder folder;
    folder.write("drive.xcom", text(recording.bytes()));
    outcome = folder.run({"drive.xcom", "out.txt", seconds});
    lines = folder.read("out.txt").value_or("no file");
  }

  Outcome outcome;
  std::string lines;
};

TEST(Conversion, a_line_is_time_latitude_longitude_and_altitude) {
  Recording recording;
  recording.stream(1)
      .ucom(position_dbu())
      .packet(position(1381234567000000000, 51.123456789012, -1.123456789012, 110.25F))
      .packet(position(1381234568000000000, 0, 0, 0))
      .page();

  const Converted converted(recording);

  EXPECT_EQ(converted.lines, "1381234567000000000;51.123456789012;-1.123456789012;110.250\n");
  EXPECT_EQ(converted.outcome.exit, "0");
  EXPECT_EQ(converted.outcome.err, "");
  EXPECT_EQ(converted.outcome.out,
            found("1", "1381234567000000000", "1381234568000000000", "0") + written("1"));
}

TEST(Conversion, a_line_holds_the_newest_values_at_or_after_the_instant) {
  Recording recording;
  auto& stream = recording.stream(1).ucom(position_dbu());
  for (const long long tenth : {10, 14, 18, 22, 26, 30}) {
    stream.packet(position(tenth * 100000000, static_cast<double>(tenth), 0, 0));
  }
  stream.page();

  // Instants 1 s and 2 s: the first packets at or after them are those of 1.0 s and 2.2 s.
  EXPECT_EQ(Converted(recording).lines,
            "1000000000;10.000000000000;0.000000000000;0.000\n"
            "2200000000;22.000000000000;0.000000000000;0.000\n");
}

TEST(Conversion, the_last_line_lies_ahead_of_the_end) {
  Recording recording;
  auto& stream = recording.stream(1).ucom(position_dbu());
  for (int second = 1; second <= 4; ++second) stream.packet(position_at(second));
  stream.page();

  EXPECT_EQ(Converted(recording).lines, line_at(1) + line_at(2) + line_at(3));
}

TEST(Conversion, the_interval_is_kept_from_the_start_on) {
  Recording recording;
  auto& stream = recording.stream(1).ucom(position_dbu());
  for (int second = 1; second <= 8; ++second) stream.packet(position_at(second));
  stream.page();

  EXPECT_EQ(Converted(recording, "3").lines, line_at(1) + line_at(4) + line_at(7));
}

TEST(Conversion, an_interval_beyond_the_recording_writes_one_line) {
  Recording recording;
  recording.stream(1).ucom(position_dbu()).packet(position_at(5)).packet(position_at(9)).page();

  const Converted converted(recording, "2147483647");
  EXPECT_EQ(converted.lines, line_at(5));
  EXPECT_EQ(converted.outcome.out, found("1", "5000000000", "9000000000", "0") + written("1"));
}

TEST(Conversion, a_recording_of_one_instant_writes_no_line) {
  Recording recording;
  recording.stream(1).ucom(position_dbu()).packet(position_at(5)).page();

  const Converted converted(recording);
  EXPECT_EQ(converted.lines, "");
  EXPECT_EQ(converted.outcome.exit, "0");
  EXPECT_EQ(converted.outcome.out, found("1", "5000000000", "5000000000", "0") + written("0"));
}

TEST(Conversion, a_recording_without_good_time_writes_no_line) {
  Recording recording;
  recording.stream(1).ucom(position_dbu()).page();

  const Converted converted(recording);
  EXPECT_EQ(converted.lines, "");
  EXPECT_EQ(converted.outcome.exit, "0");
  EXPECT_EQ(converted.outcome.out, found("1", "9223372036854775807", "0", "0") + written("0"));
}

TEST(Conversion, the_first_of_two_ucom_streams_is_taken_and_told_by_its_store_id) {
  Recording recording;
  auto& late = recording.stream(900).ucom(position_dbu());
  auto& early = recording.stream(30).ucom(position_dbu());
  for (int second = 1; second <= 3; ++second) {
    late.packet(position(second * kSecond, 9, 9, 9));
    early.packet(position_at(second));
  }
  recording.finish();

  const Converted converted(recording);
  EXPECT_EQ(converted.lines, line_at(1) + line_at(2));
  EXPECT_EQ(converted.outcome.out, found("2", "1000000000", "3000000000", "0") + written("2"));
}

TEST(Conversion, values_stay_as_they_are_once_the_stream_has_ended) {
  Recording recording;
  recording.stream(1).ucom(position_dbu()).packet(position_at(1)).packet(position_at(2)).page();
  recording.stream(2).ucom(position_dbu()).packet(position_at(1)).packet(position_at(5)).page();

  EXPECT_EQ(Converted(recording).lines, line_at(1) + line_at(2) + line_at(2) + line_at(2));
}

TEST(Conversion, a_position_that_is_older_than_the_time_is_written_beside_it) {
  Recording recording;
  auto& stream = recording.stream(1).ucom(Dbu()
                                              .message(1, {1})
                                              .message(2, {2})
                                              .signal(1)
                                              .name("Nano")
                                              .type("S", 64)
                                              .at(0)
                                              .signal(2)
                                              .name("GnssInt1_Latitude")
                                              .type("R", 64)
                                              .at(0));
  stream.packet(UComPacket(1).integer(0, 64, 1 * kSecond).bytes());
  stream.packet(UComPacket(2).real64(0, 1.5).bytes());
  stream.packet(UComPacket(1).integer(0, 64, 2 * kSecond).bytes());
  stream.packet(UComPacket(2).real64(0, 2.5).bytes());
  stream.packet(UComPacket(1).integer(0, 64, 3 * kSecond).bytes());
  stream.page();

  // The latitude of 1.5 comes behind the time of 1 s and stands beside that of 2 s.
  EXPECT_EQ(Converted(recording).lines,
            "1000000000;0.000000000000\n"
            "2000000000;1.500000000000\n");
}

TEST(Conversion, lines_are_empty_without_any_of_the_columns) {
  Recording recording;
  // The second stream gives the recording its span; the first has neither time nor position.
  recording.stream(2).ucom(position_dbu()).packet(position_at(1)).packet(position_at(3)).page();
  recording.stream(1)
      .ucom(Dbu().message(1, {1}).signal(1).name("Speed").type("U", 16).at(0))
      .packet(UComPacket(1).bits(0, 16, 7).bytes())
      .page();

  const Converted converted(recording);
  EXPECT_EQ(converted.lines, "\n\n");
  EXPECT_EQ(converted.outcome.out, found("2", "1000000000", "3000000000", "0") + written("2"));
}

TEST(Conversion, columns_behind_a_missing_one_move_left_and_are_read_by_position) {
  Recording recording;
  auto& stream = recording.stream(1).ucom(Dbu()
                                              .message(1, {1, 2, 3})
                                              .signal(1)
                                              .name("Nano")
                                              .type("S", 64)
                                              .at(0)
                                              .signal(2)
                                              .name("GnssInt1_Longitude")
                                              .type("R", 64)
                                              .at(64)
                                              .signal(3)
                                              .name("GnssInt1_Altitude")
                                              .type("R", 32)
                                              .at(128));
  for (const long long second : {1, 2}) {
    stream.packet(
        UComPacket(1).integer(0, 64, second * kSecond).real64(64, 2.5).real32(128, 8.0F).bytes());
  }
  stream.page();

  // The altitude's four bytes 0x41000000 over a cleared area are the double 1090519040 * 2^-1074,
  // which is 0 in twelve decimals.
  EXPECT_EQ(Converted(recording).lines, "1000000000;2.500000000000;0.000000000000\n");
}

TEST(Conversion, a_column_of_another_type_is_read_through_the_bytes_of_its_position) {
  Recording recording;
  auto& stream = recording.stream(1).ucom(Dbu()
                                              .message(1, {1, 2, 3, 4})
                                              .signal(1)
                                              .name("Nano")
                                              .type("S", 64)
                                              .at(0)
                                              .signal(2)
                                              .name("GnssInt1_Latitude")
                                              .type("S", 64)
                                              .at(64)
                                              .signal(3)
                                              .name("GnssInt1_Longitude")
                                              .type("R", 64)
                                              .at(128)
                                              .signal(4)
                                              .name("GnssInt1_Altitude")
                                              .type("U", 32)
                                              .at(192));
  for (const long long second : {1, 2}) {
    stream.packet(UComPacket(1)
                      .integer(0, 64, second * kSecond)
                      .bits(64, 64, std::bit_cast<std::uint64_t>(-3.5))
                      .real64(128, 4.0)
                      .bits(192, 32, std::bit_cast<std::uint32_t>(6.5F))
                      .bytes());
  }
  stream.page();

  EXPECT_EQ(Converted(recording).lines, "1000000000;-3.500000000000;4.000000000000;6.500\n");
}

TEST(Conversion, an_element_that_was_never_decoded_is_written_as_0) {
  Recording recording;
  // The position comes in a message of its own, which was never sent.
  auto& stream = recording.stream(1).ucom(Dbu()
                                              .message(1, {1})
                                              .message(2, {2, 3, 4})
                                              .signal(1)
                                              .name("Nano")
                                              .type("S", 64)
                                              .at(0)
                                              .signal(2)
                                              .name("GnssInt1_Latitude")
                                              .type("R", 64)
                                              .at(0)
                                              .signal(3)
                                              .name("GnssInt1_Longitude")
                                              .type("R", 64)
                                              .at(64)
                                              .signal(4)
                                              .name("GnssInt1_Altitude")
                                              .type("R", 32)
                                              .at(128));
  for (const long long second : {1, 2}) {
    stream.packet(UComPacket(1).integer(0, 64, second * kSecond).bytes());
  }
  stream.page();

  EXPECT_EQ(Converted(recording).lines, "1000000000;0.000000000000;0.000000000000;0.000\n");
}

TEST(Conversion, an_output_that_cannot_be_written_is_not_noticed) {
  Recording recording;
  recording.stream(1).ucom(position_dbu()).packet(position_at(1)).packet(position_at(2)).page();
  const Folder folder;
  folder.write("drive.xcom", text(recording.bytes()));

  const Outcome outcome = folder.run({"drive.xcom", "no/such/out.txt", "1"});

  EXPECT_EQ(outcome.exit, "0");
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(outcome.out, found("1", "1000000000", "2000000000", "0") +
                             "1 lines written to file \"\"no/such/out.txt\"\"\n");
}

TEST(Conversion, the_output_name_is_told_with_its_quotes_and_backslashes_escaped) {
  Recording recording;
  recording.stream(1).ucom(position_dbu()).packet(position_at(1)).packet(position_at(2)).page();
  const Folder folder;
  folder.write("drive.xcom", text(recording.bytes()));

  const Outcome outcome = folder.run({"drive.xcom", "a\"b\\c.txt", "1"});

  EXPECT_TRUE(outcome.out.ends_with("1 lines written to file \"\"a\\\"b\\\\c.txt\"\"\n"));
  EXPECT_EQ(folder.read("a\"b\\c.txt"), line_at(1));
}

TEST(Conversion, an_output_over_the_input_empties_the_recording_first) {
  Recording recording;
  recording.stream(1).ucom(position_dbu()).packet(position_at(1)).packet(position_at(3)).page();
  const Folder folder;
  folder.write("drive.xcom", text(recording.bytes()));

  const Outcome outcome = folder.run({"drive.xcom", "drive.xcom", "1"});

  // The span is known from the scans; of the values only the first time has been kept.
  EXPECT_EQ(outcome.exit, "0");
  EXPECT_EQ(folder.read("drive.xcom"),
            "1000000000;0.000000000000;0.000000000000;0.000\n"
            "1000000000;0.000000000000;0.000000000000;0.000\n");
}

TEST(Conversion, a_raw_navigation_file_has_a_span_and_no_ucom_stream) {
  // Minute 23010029 of GPS time is 1380601740 s; the first packet brings it, half a second in.
  const auto packet = [](std::uint16_t milliseconds) {
    return Support::NComPacket()
        .time_ms(milliseconds)
        .status(4)
        .channel(0, {0xED, 0x1A, 0x5F, 0x01, 0, 0, 0, 0})
        .bytes();
  };
  const Folder folder;
  folder.write("unit.ncom", text(Support::join({packet(500), packet(510), packet(520)})));

  const Outcome outcome = folder.run({"unit.ncom", "out.txt", "1"});

  EXPECT_EQ(outcome.exit, "251");  // -5
  EXPECT_EQ(outcome.err, "Error: UCOM stream not found.\n");
  EXPECT_EQ(outcome.out, kBanner +
                             "Added 1 streams from XCOM file.\n"
                             "Start time (GPS nanoseconds): 1380601740500000000\n"
                             "End time (GPS nanoseconds): 1380601740520000000\n");
  EXPECT_FALSE(folder.read("out.txt").has_value());
}

// Minute 23010029 of GPS time, as a slow channel tells it.
constexpr Support::NComPacket::ChannelData kMinuteTold = {0xED, 0x1A, 0x5F, 0x01, 0, 0, 0, 0};

// Three packets of a unit, a hundredth of a second apart; the first tells the minute.
template <class P>
void write_unit(RecordingStream& stream, std::uint16_t first) {
  for (const int later : {0, 10, 20}) {
    P packet;
    packet.time_ms(static_cast<std::uint16_t>(first + later)).status(4).channel(0, kMinuteTold);
    stream.packet(packet.xcom_bytes()).page();
  }
}

TEST(Conversion, a_recording_of_all_five_kinds_spans_them_all_and_writes_its_ucom_stream) {
  constexpr long long kMinute = 1380601740;
  Recording recording;
  auto& range = recording.stream(1).codec("RCom").headers();
  write_unit<Support::NComPacket>(recording.stream(2).codec("NCom").headers(), 500);
  write_unit<Support::MComPacket>(recording.stream(3).codec("MCom").headers(), 400);
  auto& car = recording.stream(4).ucom(position_dbu()).headers();
  auto& bus = recording.stream(5)
                  .codec("Can")
                  .dbc("BO_ 16 Motion: 8 Unit\n SG_ Speed : 0|16@1+ (1,0) [0|0] \"\" Driver\n")
                  .headers();
  for (const std::uint16_t time : {450, 460, 470, 480}) {
    Support::RangePacket packet(2);
    packet.target(1, 1).time_ms(time).channel(0, {0xED, 0x1A, 0x5F, 0x01});
    if (time == 460) packet.channel(7, {18, 0});
    range.packet(packet.xcom_bytes()).page();
  }
  for (const int second : {1, 2, 3}) car.packet(position_at(kMinute + second)).page();
  for (const int second : {2, 3, 5}) {
    bus.packet(Support::CanPacket((kMinute + second) * kSecond)
                   .frame(Support::CanFrame(16, 8).intel(0, 16, 7))
                   .bytes())
        .page();
  }

  const Converted converted(recording);

  // The instants are 0.4, 1.4, 2.4, 3.4 and 4.4 s into the minute.
  EXPECT_EQ(converted.outcome.exit, "0");
  EXPECT_EQ(converted.outcome.out,
            found("5", "1380601740400000000", "1380601745000000000", "3") + written("5"));
  EXPECT_EQ(converted.lines, line_at(kMinute + 1) + line_at(kMinute + 2) + line_at(kMinute + 3) +
                                 line_at(kMinute + 3) + line_at(kMinute + 3));
}

TEST(Conversion, a_raw_range_file_has_a_span_and_no_ucom_stream) {
  Support::Bytes file;
  for (const std::uint16_t time : {500, 510, 520}) {
    Support::RangePacket packet(2);
    packet.target(1, 1).time_ms(time).channel(0, {0xED, 0x1A, 0x5F, 0x01});
    if (time == 510) packet.channel(7, {18, 0});
    file = Support::join({file, packet.bytes()});
  }
  const Folder folder;
  folder.write("drive.rcom", text(file));

  const Outcome outcome = folder.run({"drive.rcom", "out.txt", "1"});

  EXPECT_EQ(outcome.exit, "251");  // -5
  EXPECT_EQ(outcome.err, "Error: UCOM stream not found.\n");
  EXPECT_EQ(outcome.out, kBanner +
                             "Added 1 streams from XCOM file.\n"
                             "Start time (GPS nanoseconds): 1380601740500000000\n"
                             "End time (GPS nanoseconds): 1380601740520000000\n");
}

TEST(Conversion, malformed_json_ends_the_program) {
  Recording recording;
  recording.stream(1).codec("UCom").dbu("{\"V\":1,").packet(position_at(1)).page();

  const Converted converted(recording);
  EXPECT_EQ(converted.outcome.exit, "abort");
  EXPECT_EQ(converted.outcome.out, kBanner);
  EXPECT_EQ(converted.lines, "no file");
}

TEST(Conversion, an_empty_initial_packet_ends_the_program_with_a_report) {
  Recording recording;
  // A packet of no bytes, and the tag in one that the page does not end.
  auto& stream = recording.stream(1);
  Support::Bytes body = Support::bytes_of("[Trel-UCom]");
  body.resize(255, '\n');
  stream.raw_page({0, 255}, body, Support::kInitial);

  const Outcome outcome = Converted(recording).outcome;
  EXPECT_EQ(outcome.exit, "abort");
  EXPECT_NE(outcome.err.find("Test : oggPacket.bytes > 0\nFile : com/Com_XComStream\n"),
            std::string::npos);
}

}  // namespace
}  // namespace Trel::Test
