#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>

#include "Com_Feed.h"

namespace Trel::Com::Test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using Status = Enum::STREAM_DECODE_STATUS;
using Metric = XComStreamDec::Metric;

constexpr Status kAll[] = {
    Enum::STREAM_DECODE_STATUS_INVALID,     Enum::STREAM_DECODE_STATUS_EMPTY,
    Enum::STREAM_DECODE_STATUS_CAPTURED,    Enum::STREAM_DECODE_STATUS_INITIALISING,
    Enum::STREAM_DECODE_STATUS_INITIALISED, Enum::STREAM_DECODE_STATUS_DECODING,
    Enum::STREAM_DECODE_STATUS_SKIPPING,    Enum::STREAM_DECODE_STATUS_SKIPPED,
    Enum::STREAM_DECODE_STATUS_FINISHED,    Enum::STREAM_DECODE_STATUS_DEAD,
    Enum::STREAM_DECODE_STATUS_ZOMBIE,      Enum::STREAM_DECODE_STATUS_DEFUNCT,
    Enum::STREAM_DECODE_STATUS_UNKNOWN,
};

// What a page does to a decoder of some status: where it leads and who counts its packet.
struct Effect {
  Status status;
  std::uint64_t Metric::*counter;
};
constexpr Effect kDeath{Enum::STREAM_DECODE_STATUS_DEAD, nullptr};

void expect_effect(Status before, const Bytes& bytes, const Effect& effect) {
  SCOPED_TRACE(Enum::GetString(before));
  Fed decoder;
  decoder.set_status(before);
  EXPECT_THAT(decoder.feed(bytes), ElementsAre(true));
  EXPECT_EQ(decoder.get_status(), effect.status);
  decoder.drain();
  for (const auto counter :
       {&Metric::initial_used, &Metric::initial_skip, &Metric::auxiliary_used,
        &Metric::auxiliary_skip, &Metric::footer_used, &Metric::footer_skip, &Metric::payload}) {
    EXPECT_EQ(decoder.get_packets().*counter, counter == effect.counter ? 1U : 0U);
  }
}

TEST(StreamStatus, an_initial_page_is_read_when_captured_and_stepped_over_when_running) {
  const auto effect = [](Status before) -> Effect {
    switch (before) {
      case Enum::STREAM_DECODE_STATUS_CAPTURED:
        return {Enum::STREAM_DECODE_STATUS_INITIALISING, &Metric::initial_used};
      case Enum::STREAM_DECODE_STATUS_INITIALISED:
      case Enum::STREAM_DECODE_STATUS_DECODING:
      case Enum::STREAM_DECODE_STATUS_SKIPPED:
        return {Enum::STREAM_DECODE_STATUS_SKIPPING, &Metric::initial_skip};
      default:
        return kDeath;
    }
  };
  for (const Status before : kAll) expect_effect(before, initial_page(0, "1"), effect(before));
}

TEST(StreamStatus, another_page_is_a_header_while_headers_are_due_and_payload_when_running) {
  const auto effect = [](Status before) -> Effect {
    switch (before) {
      case Enum::STREAM_DECODE_STATUS_INITIALISING:
        return {Enum::STREAM_DECODE_STATUS_INITIALISED, &Metric::auxiliary_used};
      case Enum::STREAM_DECODE_STATUS_SKIPPING:
        return {Enum::STREAM_DECODE_STATUS_SKIPPED, &Metric::auxiliary_skip};
      case Enum::STREAM_DECODE_STATUS_INITIALISED:
      case Enum::STREAM_DECODE_STATUS_DECODING:
      case Enum::STREAM_DECODE_STATUS_SKIPPED:
        return {Enum::STREAM_DECODE_STATUS_DECODING, &Metric::payload};
      default:
        return kDeath;
    }
  };
  for (const Status before : kAll) {
    expect_effect(before, page(0, 0, {"x"}), effect(before));
    expect_effect(before, page(0, Support::kAuxiliary, {"x"}), effect(before));
  }
}

TEST(StreamStatus, a_last_page_changes_nothing_when_footers_are_off) {
  for (const Status before : kAll) {
    expect_effect(before, page(0, Support::kFooter, {"(end)"}), {before, nullptr});
  }
}

TEST(StreamStatus, a_decoder_begins_empty) {
  const XComStreamDec decoder(kSerial, false);
  EXPECT_EQ(decoder.get_status(), Enum::STREAM_DECODE_STATUS_EMPTY);
  EXPECT_EQ(decoder.get_status_previous(), Enum::STREAM_DECODE_STATUS_INVALID);
}

TEST(StreamStatus, a_change_remembers_the_status_before) {
  Fed decoder;
  EXPECT_EQ(decoder.get_status(), Enum::STREAM_DECODE_STATUS_CAPTURED);
  EXPECT_EQ(decoder.get_status_previous(), Enum::STREAM_DECODE_STATUS_EMPTY);
  decoder.feed(initial_page(0, "0"));
  EXPECT_EQ(decoder.get_status_previous(), Enum::STREAM_DECODE_STATUS_CAPTURED);
}

TEST(StreamStatus, a_page_before_the_capture_is_the_death_of_the_stream) {
  XComStreamDec decoder(kSerial, false);
  Bytes bytes = initial_page(0, "0");
  Support::PageReader reader(bytes);
  ogg_page next;
  ASSERT_EQ(reader.next(next), 1);
  EXPECT_TRUE(decoder.decode_page(next));
  EXPECT_EQ(decoder.get_status(), Enum::STREAM_DECODE_STATUS_DEAD);
}

TEST(StreamStatus, a_stream_without_its_initial_page_is_dead_and_gives_no_packet) {
  Fed decoder;
  decoder.feed(Support::join(
      {page(1, 0, {"x"}), page(2, 0, {"y"}), initial_page(3, "0"), page(4, 0, {"z"})}));
  EXPECT_EQ(decoder.get_status(), Enum::STREAM_DECODE_STATUS_DEAD);
  EXPECT_THAT(decoder.drain(), IsEmpty());
}

TEST(StreamStatus, an_initial_page_while_headers_are_due_is_the_death_of_the_stream) {
  Fed decoder;
  decoder.feed(Support::join({initial_page(0, "1"), initial_page(1, "1")}));
  EXPECT_EQ(decoder.get_status(), Enum::STREAM_DECODE_STATUS_DEAD);

  decoder.rewind();
  decoder.feed(initial_page(0, "1"));
  EXPECT_EQ(decoder.get_status(), Enum::STREAM_DECODE_STATUS_SKIPPING);
  decoder.feed(initial_page(1, "1"));
  EXPECT_EQ(decoder.get_status(), Enum::STREAM_DECODE_STATUS_DEAD);
}

TEST(StreamStatus, a_page_of_an_unknown_version_is_the_death_of_the_stream) {
  const Bytes refused_initial = page(0, Support::kInitial, {"[Trel-UCom]"}, 1);
  const Bytes refused = page(1, 0, {"x"}, 1);
  for (const Bytes& bytes : {refused_initial, Support::join({initial_page(0, "1"), refused}),
                             Support::join({initial_page(0, "0"), refused, page(2, 0, {"y"})})}) {
    Fed decoder;
    decoder.feed(bytes);
    EXPECT_EQ(decoder.get_status(), Enum::STREAM_DECODE_STATUS_DEAD);
    EXPECT_THAT(decoder.drain(), IsEmpty());
  }
}

TEST(StreamStatus, a_page_of_an_unknown_version_among_skipped_headers_is_the_death_of_the_stream) {
  Fed decoder;
  decoder.feed(Support::join({initial_page(0, "1"), page(1, 0, {"{A}"})}));
  decoder.rewind();
  decoder.feed(Support::join({initial_page(0, "1"), page(1, 0, {"{A}"}, 1)}));
  EXPECT_EQ(decoder.get_status(), Enum::STREAM_DECODE_STATUS_DEAD);
}

TEST(StreamStatus, a_page_of_another_stream_is_the_death_of_this_one) {
  Support::PageImage foreign;
  foreign.serial = kSerial + 1;
  foreign.number = 1;
  Fed decoder;
  decoder.feed(Support::join({initial_page(0, "0"), foreign.bytes()}));
  EXPECT_EQ(decoder.get_status(), Enum::STREAM_DECODE_STATUS_DEAD);
}

TEST(StreamStatus, an_initial_page_without_a_whole_packet_is_the_death_of_the_stream) {
  Support::PageImage unfinished;
  unfinished.flags = Support::kInitial;
  unfinished.serial = kSerial;
  unfinished.segments = {255};
  unfinished.body = Support::Bytes(255, 'x');
  Support::PageImage empty;
  empty.flags = Support::kInitial;
  empty.serial = kSerial;
  for (const Bytes& bytes : {unfinished.bytes(), empty.bytes()}) {
    Fed decoder;
    decoder.feed(bytes);
    EXPECT_EQ(decoder.get_status(), Enum::STREAM_DECODE_STATUS_DEAD);
    EXPECT_EQ(decoder.get_packets().initial_used, 0U);
  }
}

TEST(StreamStatus, a_rewind_revives_a_dead_stream) {
  Fed decoder;
  decoder.feed(page(0, 0, {"x"}));
  ASSERT_EQ(decoder.get_status(), Enum::STREAM_DECODE_STATUS_DEAD);
  decoder.rewind();
  EXPECT_EQ(decoder.get_status(), Enum::STREAM_DECODE_STATUS_INITIALISED);
  decoder.feed(page(5, 0, {"y"}));
  EXPECT_THAT(decoder.drain(), ElementsAre("y"));
}

TEST(StreamStatus, a_rewind_forgets_queued_packets) {
  Fed decoder;
  decoder.feed(Support::join({initial_page(0, "0"), page(1, 0, {"x"})}));
  decoder.rewind();
  EXPECT_THAT(decoder.drain(), IsEmpty());
}

using StreamAssertionDeathTest = testing::Test;

auto report_of(const char* test) {
  return testing::AllOf(HasSubstr("Test : " + std::string(test) + "\n"),
                        HasSubstr("File : com/Com_XComStream\n"));
}

TEST(StreamAssertionDeathTest, a_second_capture_stops_the_program) {
  Fed decoder;
  EXPECT_DEATH(decoder.capture(), report_of("status == Enum::STREAM_DECODE_STATUS_EMPTY"));
}

TEST(StreamAssertionDeathTest, a_rewind_before_the_capture_stops_the_program) {
  XComStreamDec decoder(kSerial, false);
  EXPECT_DEATH(decoder.rewind(), report_of("status != Enum::STREAM_DECODE_STATUS_EMPTY"));
}

TEST(StreamAssertionDeathTest, an_empty_initial_packet_stops_the_program_on_either_pass) {
  const Bytes empty = page(0, Support::kInitial, {""});
  Fed first_pass;
  EXPECT_DEATH(first_pass.feed(empty), report_of("oggPacket.bytes > 0"));
  Fed later_pass;
  later_pass.rewind();
  EXPECT_DEATH(later_pass.feed(empty), report_of("oggPacket.bytes > 0"));
}

}  // namespace
}  // namespace Trel::Com::Test
