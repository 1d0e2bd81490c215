#include <gtest/gtest.h>

#include "Stream_recordings.h"
#include "sto/Sto_File.h"
#include "support/Support_Damage.h"

namespace Trel::Sto::Test {
namespace {

Bytes counting(std::size_t size) {
  Bytes bytes(size);
  for (std::size_t index = 0; index < size; ++index) {
    bytes[index] = static_cast<unsigned char>(index);
  }
  return bytes;
}

Bytes read(Logical& reader, std::size_t count) {
  Bytes bytes(count);
  bytes.resize(reader.read(bytes.data(), count));
  return bytes;
}

const std::string kMissing = "/nonexistent/recording.xcom";

TEST(Logical, a_fresh_reader_is_at_0_and_delivers_nothing) {
  Logical reader;
  EXPECT_EQ(reader.size() + reader.start() + reader.finish() + reader.span() + reader.position(),
            0U);
  EXPECT_FALSE(reader.good());
  EXPECT_EQ(read(reader, 1), Bytes());
}

TEST(Logical, set_file_takes_the_whole_length_and_leaves_the_file_closed) {
  const ScratchFile file(counting(100));
  Logical reader;
  EXPECT_TRUE(reader.set_file(file.path()));
  EXPECT_EQ(reader.size(), 100U);
  EXPECT_EQ(reader.start(), 0U);
  EXPECT_EQ(reader.finish(), 100U);
  EXPECT_FALSE(reader.good());
  EXPECT_EQ(file.open_handles(), 0);
}

TEST(Logical, set_file_on_an_open_reader_goes_to_the_start_of_the_new_file_and_leaves_it_open) {
  const ScratchFile first(counting(100));
  const ScratchFile second(Bytes{50, 51, 52});
  Logical reader;
  reader.open(first.path(), 0, 0);
  read(reader, 10);
  EXPECT_TRUE(reader.set_file(second.path()));
  EXPECT_EQ(first.open_handles(), 0);
  EXPECT_EQ(second.open_handles(), 1);
  EXPECT_EQ(reader.size(), 3U);
  EXPECT_EQ(read(reader, 2), (Bytes{50, 51}));
}

TEST(Logical, set_file_on_a_missing_file_is_false_and_forgets_the_earlier_one) {
  const ScratchFile file(counting(100));
  Logical reader;
  reader.set_file(file.path());
  EXPECT_FALSE(reader.set_file(kMissing));
  EXPECT_EQ(reader.size(), 0U);
  EXPECT_EQ(reader.finish(), 0U);
  reader.enable();
  EXPECT_FALSE(reader.good());
  EXPECT_EQ(read(reader, 1), Bytes());
}

TEST(Logical, open_goes_to_the_start_of_the_stretch) {
  const ScratchFile file(counting(100));
  Logical reader;
  reader.open(file.path(), 20, 60);
  EXPECT_EQ(reader.start(), 20U);
  EXPECT_EQ(reader.finish(), 60U);
  EXPECT_EQ(reader.span(), 40U);
  EXPECT_TRUE(reader.good());
  EXPECT_EQ(read(reader, 2), (Bytes{20, 21}));
}

TEST(LogicalDeathTest, open_of_a_missing_file_stops_the_program) {
  Logical reader;
  EXPECT_DEATH(reader.open(kMissing, 0, 0), "Test : false\n.*sto/Sto_File");
}

TEST(Logical, a_start_beyond_the_file_stops_at_its_size) {
  const ScratchFile file(counting(100));
  Logical reader;
  reader.set_file(file.path());
  reader.set_start(100);
  EXPECT_EQ(reader.start(), 100U);
  reader.set_start(101);
  EXPECT_EQ(reader.start(), 100U);
  EXPECT_EQ(reader.span(), 0U);
}

TEST(Logical, a_finish_of_0_means_the_end_of_the_file) {
  const ScratchFile file(counting(100));
  Logical reader;
  reader.set_file(file.path());
  reader.set_finish(40);
  reader.set_finish(0);
  EXPECT_EQ(reader.finish(), 100U);
}

TEST(Logical, a_finish_beyond_the_file_means_its_end) {
  const ScratchFile file(counting(100));
  Logical reader;
  reader.set_file(file.path());
  reader.set_finish(99);
  EXPECT_EQ(reader.finish(), 99U);
  reader.set_finish(101);
  EXPECT_EQ(reader.finish(), 100U);
}

TEST(Logical, the_span_follows_both_bounds) {
  const ScratchFile file(counting(100));
  Logical reader;
  reader.set_file(file.path());
  reader.set_start(10);
  EXPECT_EQ(reader.span(), 90U);
  reader.set_finish(30);
  EXPECT_EQ(reader.span(), 20U);
}

TEST(Logical, a_read_moves_the_position_by_what_came) {
  const ScratchFile file(counting(100));
  Logical reader;
  reader.open(file.path(), 0, 0);
  EXPECT_EQ(read(reader, 30), counting(30));
  EXPECT_EQ(reader.position(), 30U);
  EXPECT_EQ(reader.absolute(), 30U);
}

TEST(Logical, the_last_read_comes_up_short_and_leaves_the_position_at_the_end) {
  const ScratchFile file(counting(100));
  Logical reader;
  reader.open(file.path(), 90, 0);
  EXPECT_EQ(read(reader, 30).size(), 10U);
  EXPECT_EQ(reader.position(), 100U);
  EXPECT_EQ(reader.absolute(), 100U);
  EXPECT_FALSE(reader.good());
  EXPECT_EQ(read(reader, 1), Bytes());
}

TEST(Logical, a_closed_reader_reads_nothing_and_keeps_its_position) {
  const ScratchFile file(counting(100));
  Logical reader;
  reader.open(file.path(), 0, 0);
  read(reader, 30);
  reader.disable();
  EXPECT_EQ(file.open_handles(), 0);
  EXPECT_EQ(read(reader, 1), Bytes());
  EXPECT_EQ(reader.position(), 30U);
  EXPECT_EQ(reader.absolute(), 100U);
}

TEST(Logical, enable_after_disable_goes_on_where_the_last_read_ended) {
  const ScratchFile file(counting(100));
  Logical reader;
  reader.set_file(file.path());
  reader.enable();
  read(reader, 30);
  reader.disable();
  reader.enable();
  EXPECT_EQ(read(reader, 2), (Bytes{30, 31}));
}

TEST(Logical, enable_and_disable_may_be_repeated) {
  const ScratchFile file(counting(100));
  Logical reader;
  reader.set_file(file.path());
  reader.enable();
  read(reader, 30);
  reader.enable();
  EXPECT_EQ(file.open_handles(), 1);
  EXPECT_EQ(read(reader, 2), (Bytes{30, 31}));
  reader.disable();
  reader.disable();
  EXPECT_EQ(file.open_handles(), 0);
}

TEST(Logical, after_the_end_enable_clears_the_failure_and_there_is_still_nothing_to_read) {
  const ScratchFile file(counting(100));
  Logical reader;
  reader.open(file.path(), 0, 0);
  read(reader, 101);
  reader.enable();
  EXPECT_TRUE(reader.good());
  EXPECT_EQ(reader.position(), 100U);
  EXPECT_EQ(read(reader, 1), Bytes());
}

TEST(Logical, rewind_goes_back_to_the_start_of_the_stretch) {
  const ScratchFile file(counting(100));
  Logical reader;
  reader.open(file.path(), 20, 0);
  read(reader, 10);
  reader.rewind();
  EXPECT_EQ(reader.position(), 20U);
  EXPECT_EQ(read(reader, 2), (Bytes{20, 21}));
}

TEST(Logical, rewind_at_the_end_clears_the_failure) {
  const ScratchFile file(counting(100));
  Logical reader;
  reader.open(file.path(), 0, 0);
  read(reader, 101);
  reader.rewind();
  EXPECT_EQ(read(reader, 2), (Bytes{0, 1}));
}

TEST(Logical, rewind_of_a_closed_reader_leaves_it_closed_and_counts_for_the_next_enable) {
  const ScratchFile file(counting(100));
  Logical reader;
  reader.open(file.path(), 20, 0);
  read(reader, 10);
  reader.disable();
  reader.rewind();
  EXPECT_EQ(file.open_handles(), 0);
  reader.enable();
  EXPECT_EQ(read(reader, 1), Bytes{20});
}

// A page reader bound to a file, ready for the pages after the headers.
class Pages {
 public:
  explicit Pages(const Bytes& bytes, unsigned int serial = kSerial) : file(bytes), reader(serial) {
    reader.set_file(file.path());
    reader.decoder().capture();
    reader.rewind();
    reader.enable();
  }

  // How many packets the decoder holds.
  int packets() {
    ogg_packet packet;
    int count = 0;
    while (reader.decoder().packet_out(packet) > 0) ++count;
    return count;
  }

  ScratchFile file;
  LogicalXCom reader;
};

TEST(LogicalXCom, a_gobble_returns_the_count_of_bytes_and_takes_every_page_that_they_complete) {
  const Bytes bytes = drive(kSerial, {100, 200, 300});  // two pages of headers, three of payload
  Pages pages(bytes);
  EXPECT_EQ(pages.reader.do_gobble(kScanRead), bytes.size());
  EXPECT_EQ(pages.reader.decoder().get_pages().total, 5U);
  EXPECT_EQ(pages.packets(), 3);
}

TEST(LogicalXCom, a_page_comes_when_its_last_byte_has_been_read) {
  const Bytes bytes = drive(kSerial, {100, 200});
  const auto last = Support::find_pages(bytes).back();
  Pages pages(bytes);
  EXPECT_EQ(pages.reader.do_gobble(last.end() - 1), last.end() - 1);
  EXPECT_EQ(pages.packets(), 1);
  EXPECT_EQ(pages.reader.do_gobble(kScanRead), 1U);
  EXPECT_EQ(pages.packets(), 1);
}

TEST(LogicalXCom, a_gobble_at_the_end_of_the_file_returns_0_and_does_not_touch_the_decoder) {
  Pages pages(drive(kSerial, {100, 200}));
  pages.reader.do_gobble(kScanRead);
  EXPECT_EQ(pages.reader.do_gobble(kScanRead), 0U);
  EXPECT_EQ(pages.reader.decoder().get_status(), Enum::STREAM_DECODE_STATUS_DECODING);
  EXPECT_EQ(pages.reader.decoder().get_pages().total, 4U);
  EXPECT_EQ(pages.packets(), 2);
}

TEST(LogicalXCom, pages_of_other_streams_are_thrown_away) {
  const Bytes bytes = join({drive(3, {100}), drive(kSerial, {100}), drive(8, {100})});
  Pages pages(bytes);
  pages.reader.do_gobble(bytes.size());
  EXPECT_EQ(pages.reader.decoder().get_pages().total, 3U);
  EXPECT_EQ(pages.packets(), 1);
}

TEST(LogicalXCom, a_serial_number_with_its_top_bit_set_is_like_any_other) {
  const Bytes bytes = drive(0xFFFFFFFE, {100});
  Pages pages(bytes, 0xFFFFFFFE);
  pages.reader.do_gobble(bytes.size());
  EXPECT_EQ(pages.packets(), 1);
}

TEST(LogicalXCom, bytes_that_are_no_page_are_passed_over) {
  const Bytes bytes = join({bytes_of("junk ahead"), drive(kSerial, {100}), bytes_of("junk OggS"),
                            drive(8, {100}), bytes_of("junk behind")});
  Pages pages(bytes);
  EXPECT_EQ(pages.reader.do_gobble(bytes.size()), bytes.size());
  EXPECT_EQ(pages.packets(), 1);
}

TEST(LogicalXCom, rewind_takes_the_decoder_back_to_where_it_steps_over_the_headers) {
  Pages pages(drive(kSerial, {100, 200}));
  pages.reader.do_gobble(kScanRead);
  pages.reader.rewind();
  EXPECT_EQ(pages.reader.decoder().get_status(), Enum::STREAM_DECODE_STATUS_INITIALISED);
  EXPECT_EQ(pages.packets(), 0);
  pages.reader.do_gobble(kScanRead);
  EXPECT_EQ(pages.packets(), 2);
}

TEST(LogicalXCom, rewind_drops_the_part_of_a_page_that_was_read) {
  const Bytes bytes = drive(kSerial, {100});
  const auto last = Support::find_pages(bytes).back();
  const std::size_t middle = last.offset + last.size / 2;
  Pages pages(bytes);
  pages.reader.do_gobble(middle);
  pages.reader.set_start(middle);
  pages.reader.rewind();
  EXPECT_EQ(pages.reader.do_gobble(kScanRead), bytes.size() - middle);
  EXPECT_EQ(pages.packets(), 0);  // the two halves must not meet
}

TEST(LogicalXCom, two_readers_of_one_file_do_not_know_of_each_other) {
  const Bytes bytes = join({drive(3, {100}), drive(kSerial, {100, 200})});
  Pages pages(bytes);
  LogicalXCom other(3);
  other.set_file(pages.file.path());
  other.decoder().capture();
  other.rewind();
  pages.reader.do_gobble(bytes.size());
  other.enable();
  EXPECT_EQ(other.do_gobble(bytes.size()), bytes.size());
  EXPECT_EQ(other.decoder().get_pages().total, 3U);
  EXPECT_EQ(pages.packets(), 2);
}

TEST(LogicalXCom, a_footer_page_is_counted_and_not_read) {
  Recording recording;
  recording.stream(kSerial).ucom(database()).packet(sample(100)).footer(bytes_of("[x]"));
  Pages pages(recording.bytes());
  pages.reader.do_gobble(kScanRead);
  EXPECT_EQ(pages.reader.decoder().get_pages().eos, 1U);
  EXPECT_FALSE(pages.reader.decoder().is_footer_decoded());
  EXPECT_EQ(pages.packets(), 1);
}

}  // namespace
}  // namespace Trel::Sto::Test
