#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <stdexcept>

#include "Fakes.h"
#include "support/Support_Dbu.h"
#include "support/Support_Packet.h"
#include "support/Support_Recording.h"

namespace Trel::Sto::Test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr auto kNormal = Enum::RETURN_TYPE_NORMAL;
constexpr auto kNothing = Enum::RETURN_TYPE_NOTHING;

std::vector<std::string> leaf_names(const std::vector<StoreLeaf>& leaves) {
  std::vector<std::string> names;
  for (const StoreLeaf& leaf : leaves) names.push_back(leaf.name);
  return names;
}

std::vector<double> numbers_of(const std::vector<Result>& results) {
  std::vector<double> numbers;
  for (const Result& result : results) numbers.push_back(static_cast<double>(result));
  return numbers;
}

// Registering.

TEST(AddElement, twice_succeeds_twice_and_grows_the_cache_once) {
  FakeStore store;
  store.stream();
  EXPECT_EQ(store.direct_add_element(0, "Nano"), kNormal);
  EXPECT_EQ(store.direct_add_element(0, "Nano"), kNormal);
  EXPECT_EQ(store.get_direct().next_element_int64_t(0), 1U);
  EXPECT_THAT(leaf_names(store.get_direct().elements()), ElementsAre("Nano"));
}

TEST(AddElement, without_a_name_gives_nothing_before_anything_else_is_looked_at) {
  FakeStore store;
  EXPECT_EQ(store.add_element(7, 0, ""), kNothing);
  EXPECT_EQ(store.direct_add_element(0, ""), kNothing);
}

TEST(AddElement, an_unknown_mode_throws) {
  FakeStore store;
  store.stream();
  EXPECT_THROW(store.add_element(2, 0, "Nano"), std::out_of_range);
  EXPECT_THROW(store.add_element(2, 99, "Nano"), std::out_of_range);
}

TEST(AddElement, an_unknown_stream_or_name_gives_nothing) {
  FakeStore store;
  store.stream();
  EXPECT_EQ(store.direct_add_element(1, "Nano"), kNothing);
  EXPECT_EQ(store.direct_add_element(0, "nano"), kNothing);
  EXPECT_EQ(store.direct_add_element(0, "[2]"), kNothing);
  EXPECT_THAT(store.get_direct().elements(), IsEmpty());
}

TEST(AddElement, a_stream_that_is_not_storable_has_no_elements) {
  FakeStore store;
  auto resource = std::make_unique<FakeResource>();
  FakeStream& stream = resource->stream(1);
  store.take(std::move(resource));
  EXPECT_EQ(store.direct_add_element(0, "Nano"), kNothing);
  stream.span(0, 1);
  EXPECT_EQ(store.direct_add_element(0, "Nano"), kNormal);
}

TEST(AddElement, a_name_of_several_kinds_is_the_first_kind_in_order) {
  FakeStore store;
  FakeStream& stream = store.stream();
  stream.element<Arr_t<float>>(info("Twin", kArraySize));
  stream.element<Var_t<unsigned char>>(info("Twin"));
  stream.element<Var_t<short>>(info("Twin"));
  EXPECT_EQ(store.direct_add_element(0, "Twin"), kNormal);
  EXPECT_TRUE(stream.hit_element_Var_t_int16_t(0, "Twin"));
  EXPECT_FALSE(stream.hit_element_Var_t_uint8_t(0, "Twin"));
  EXPECT_FALSE(stream.hit_element_Arr_t_float(0, "Twin"));
  EXPECT_EQ(store.get_direct().elements().size(), 1U);
}

TEST(AddElement, every_kind_can_be_added_and_used) {
  for_each_kind([]<class K>(std::type_identity<K>) {
    FakeStore store;
    store.stream().element<K>(info("Own", K::kIsArray ? kArraySize : 1));
    Aspect aspect;
    EXPECT_EQ(store.direct_add_element(0, "Own"), kNormal);
    EXPECT_EQ(store.direct_use_element(aspect, 0, "Own"), kNormal);
    EXPECT_THAT(aspect.destinations(), SizeIs(K::kIsArray ? kArraySize : 1));
    EXPECT_EQ(aspect.measurements()[0].basic_type, Lib::kBasicType<typename K::value_type>);
    EXPECT_EQ(aspect.measurements()[0].is_array, K::kIsArray);
  });
}

TEST(AddElement, an_index_registers_the_whole_array) {
  FakeStore store;
  store.stream().element<Arr_t<float>>(info("Arr", kArraySize));
  EXPECT_EQ(store.direct_add_element(0, "Arr[3]"), kNormal);
  EXPECT_EQ(store.get_direct().next_element_float(0), 5U);
  EXPECT_EQ(store.direct_add_element(0, "Arr[1]"), kNormal);
  EXPECT_EQ(store.direct_add_element(0, "Arr"), kNormal);
  EXPECT_EQ(store.get_direct().next_element_float(0), 5U);
}

TEST(AddElement, elements_of_one_type_lie_one_behind_the_other_in_one_cache_for_all_streams) {
  FakeStore store;
  FakeStream& first = store.stream();
  FakeStream& second = store.stream();
  first.element<Arr_t<float>>(info("Arr", kArraySize)).element<Var_t<float>>(info("One"));
  second.element<Var_t<float>>(info("Two")).element<Var_t<int>>(info("Other"));
  store.direct_add_element(0, "Arr");
  store.direct_add_element(1, "Two");
  store.direct_add_element(0, "One");
  store.direct_add_element(1, "Other");
  const auto& leaves = store.get_direct().elements();
  EXPECT_THAT(leaf_names(leaves), ElementsAre("Arr", "Two", "One", "Other"));
  EXPECT_EQ(leaves[0].offset, 0U);
  EXPECT_EQ(leaves[1].offset, 5U);
  EXPECT_EQ(leaves[2].offset, 6U);
  EXPECT_EQ(leaves[3].offset, 0U);
  for (const StoreLeaf& leaf : leaves) {
    EXPECT_EQ(leaf.mode_id, 0U);
    EXPECT_EQ(leaf.store_id, 0U);
  }
  EXPECT_EQ(leaves[1].stream_id, 1U);
}

TEST(AddElement, in_retained_mode_each_stream_has_its_own_store) {
  FakeStore store;
  store.stream();
  store.stream();
  EXPECT_EQ(store.add_element(1, 0, "Nano"), kNormal);
  EXPECT_EQ(store.add_element(1, 1, "Nano"), kNormal);
  const auto& leaves = store.get_retain().elements();
  ASSERT_THAT(leaves, SizeIs(2));
  EXPECT_EQ(leaves[1].mode_id, 1U);
  EXPECT_EQ(leaves[1].store_id, 1U);
  EXPECT_EQ(leaves[1].offset, 0U);
  EXPECT_EQ(store.get_retain().next_element_int64_t(1), 1U);
  EXPECT_THAT(store.get_direct().elements(), IsEmpty());
}

TEST(AddElement, the_modes_do_not_know_each_other_s_elements) {
  FakeStore store;
  store.stream();
  store.add_element(1, 0, "Nano");
  Aspect aspect;
  EXPECT_EQ(store.direct_use_element(aspect, 0, "Nano"), kNothing);
  EXPECT_EQ(store.use_element(aspect, 1, 0, "Nano"), kNormal);
  EXPECT_EQ(aspect.measurements()[0].mode_id, 1U);
}

TEST(AddElement, is_kept_when_another_file_is_registered) {
  FakeStore store;
  store.stream();
  store.direct_add_element(0, "Nano");
  store.add_element(1, 0, "Builtin");
  store.stream();
  Aspect aspect;
  EXPECT_EQ(store.direct_use_element(aspect, 0, "Nano"), kNormal);
  EXPECT_EQ(store.use_element(aspect, 1, 0, "Builtin"), kNormal);
}

// Selecting.

TEST(UseElement, finds_nothing_before_the_element_has_been_added) {
  FakeStore store;
  store.stream();
  Aspect aspect;
  EXPECT_EQ(store.direct_use_element(aspect, 0, "Nano"), kNothing);
  EXPECT_THAT(aspect.measurements(), IsEmpty());
  EXPECT_THAT(aspect.destinations(), IsEmpty());
  EXPECT_TRUE(aspect.stores().empty());
}

TEST(UseElement, an_empty_name_or_an_unknown_stream_gives_nothing) {
  FakeStore store;
  store.stream();
  store.direct_add_element(0, "Nano");
  Aspect aspect;
  EXPECT_EQ(store.direct_use_element(aspect, 0, ""), kNothing);
  EXPECT_EQ(store.direct_use_element(aspect, 1, "Nano"), kNothing);
  EXPECT_EQ(store.direct_use_element(aspect, 0, "Nan"), kNothing);
  EXPECT_THAT(aspect.destinations(), IsEmpty());
}

// The names that a selection of "Arr", five entries, and of the scalar "Nano" ends with.
std::vector<std::string> used(const std::string& name) {
  FakeStore store;
  store.stream().element<Arr_t<float>>(info("Arr", kArraySize));
  store.direct_add_element(0, "Arr");
  store.direct_add_element(0, "Nano");
  Aspect aspect;
  const auto answer = store.direct_use_element(aspect, 0, name);
  EXPECT_EQ(answer, aspect.destinations().empty() ? kNothing : kNormal);
  return names_of(aspect);
}

TEST(UseElement, an_array_of_five_gives_five_destinations_and_with_an_index_one) {
  EXPECT_THAT(used("Arr"), ElementsAre("Arr[0]", "Arr[1]", "Arr[2]", "Arr[3]", "Arr[4]"));
  EXPECT_THAT(used("Arr[2]"), ElementsAre("Arr[2]"));
  EXPECT_THAT(used("Arr[0]"), ElementsAre("Arr[0]"));
}

TEST(UseElement, an_index_is_the_number_that_its_text_begins_with) {
  EXPECT_THAT(used("Arr[ 3]"), ElementsAre("Arr[3]"));
  EXPECT_THAT(used("Arr[3x]"), ElementsAre("Arr[3]"));
  EXPECT_THAT(used("Arr[]"), ElementsAre("Arr[0]"));
  EXPECT_THAT(used("Arr[x]"), ElementsAre("Arr[0]"));
  EXPECT_THAT(used("Arr[1][4]"), ElementsAre("Arr[1]"));
  EXPECT_THAT(used("Arr[-1]"), SizeIs(5));
}

TEST(UseElement, an_index_beyond_the_array_gives_nothing) {
  EXPECT_THAT(used("Arr[5]"), IsEmpty());
  EXPECT_THAT(used("Arr[99999999999999999999]"), IsEmpty());
}

TEST(UseElement, a_suffix_counts_only_at_the_end_of_the_name) {
  EXPECT_THAT(used("Arr[2"), IsEmpty());
  EXPECT_THAT(used("Arr[2]x"), IsEmpty());
  EXPECT_THAT(used("Arr]"), IsEmpty());
  EXPECT_THAT(used("]"), IsEmpty());
}

TEST(UseElement, an_index_on_a_scalar_is_dropped) {
  EXPECT_THAT(used("Nano[4]"), ElementsAre("Nano"));
}

TEST(UseElement, a_label_function_names_the_entries) {
  FakeStore store;
  const IndexLabel label = [](unsigned long long index) { return "xyzuv"[index] + std::string(); };
  store.stream().element<Arr_t<float>>(info("Arr", kArraySize, label));
  store.direct_add_element(0, "Arr");
  Aspect aspect;
  store.direct_use_element(aspect, 0, "Arr[1]");
  store.direct_use_element(aspect, 0, "Arr");
  EXPECT_THAT(names_of(aspect),
              ElementsAre("Arr[y]", "Arr[x]", "Arr[y]", "Arr[z]", "Arr[u]", "Arr[v]"));
}

TEST(UseElement, selects_for_aspect_0_with_everything_that_is_known_of_the_element) {
  FakeStore store;
  store.stream();
  FakeStream& stream = store.stream();
  InfoProps props("Own", 1, nullptr, "m/s", "Text.", 0.5, 1.0, 2.0, 3.0, 4.0);
  stream.element<Var_t<int>>(props);
  store.direct_add_element(1, "Own");
  Aspect aspect;
  store.direct_use_element(aspect, 1, "Own");
  const DestinationNode& node = aspect.destinations().at(0);
  EXPECT_EQ(node.unit, "m/s");
  EXPECT_EQ(node.basic_type, Enum::BASIC_TYPE_int32_t);
  EXPECT_EQ(node.stream_id, 1U);
  EXPECT_EQ(node.store_id, 0U);
  EXPECT_EQ(node.aspect_id, 0U);
}

// Stepping, by fakes: values are set by hand, and no packet is read.

TEST(Step, on_an_empty_aspect_gives_no_values_and_nothing) {
  FakeStore store;
  bool popped = false;
  store.stream().on_call = [&](const std::string& call) { popped |= call.starts_with("pop"); };
  std::vector<Result> out(3);
  EXPECT_EQ(store.direct_decode_step(Aspect(), 0, out), kNothing);
  EXPECT_THAT(out, IsEmpty());
  EXPECT_FALSE(popped);
}

TEST(Step, delivers_scalars_and_arrays_of_all_types_each_at_its_place) {
  FakeStore store;
  FakeStream& stream = store.stream();
  Aspect aspect;
  std::vector<double> expected;
  for_each_kind([&]<class K>(std::type_identity<K>) {
    using T = typename K::value_type;
    const std::string name = "E" + std::to_string(expected.size());
    stream.element<K>(info(name, K::kIsArray ? kArraySize : 1));
    store.direct_add_element(0, name);
    store.direct_use_element(aspect, 0, name);
    if constexpr (K::kIsArray) {
      stream.live().set_array(static_cast<T>(20), 2);
      for (std::size_t i = 0; i < kArraySize; ++i) {
        expected.push_back(std::is_same_v<T, bool> ? 1.0 : 20.0 + static_cast<double>(i));
      }
    } else {
      stream.live().set(static_cast<T>(7), 1);
      expected.push_back(std::is_same_v<T, bool> ? 1.0 : 7.0);
    }
  });
  std::vector<Result> out;
  EXPECT_EQ(store.direct_decode_step(aspect, 0, out), kNormal);
  EXPECT_EQ(numbers_of(out), expected);
  EXPECT_EQ(out[0].get_nano(), 1);
  EXPECT_EQ(out.back().get_nano(), 2);
}

TEST(Step, a_single_entry_stands_alone_at_its_place_in_the_results) {
  FakeStore store;
  FakeStream& stream = store.stream();
  stream.element<Arr_t<int>>(info("Arr", kArraySize));
  store.direct_add_element(0, "Nano");
  store.direct_add_element(0, "Arr");
  Aspect aspect;
  for (const std::string name : {"Nano", "Arr[3]", "Arr[1]", "Nano"}) {
    store.direct_use_element(aspect, 0, name);
  }
  stream.live().set_time(6);
  stream.live().set_array(100, 6);
  std::vector<Result> out;
  store.direct_decode_step(aspect, 0, out);
  EXPECT_THAT(numbers_of(out), ElementsAre(6, 103, 101, 6));
}

TEST(Step, invalid_values_travel_on_with_their_flags) {
  FakeStore store;
  FakeStream& stream = store.stream();
  store.direct_add_element(0, "Builtin");
  Aspect aspect;
  store.direct_use_element(aspect, 0, "Builtin");
  std::vector<Result> out;
  store.direct_decode_step(aspect, 0, out);
  ASSERT_THAT(out, SizeIs(1));
  EXPECT_FALSE(out[0].ok());

  stream.live().set<unsigned char>(9, 4);
  stream.live().value<Var_t<unsigned char>>().setInvalid();
  store.direct_decode_step(aspect, 0, out);
  EXPECT_EQ(static_cast<int>(out[0]), 9);
  EXPECT_EQ(out[0].get_flags().byte(), Lib::Flags::Invalid);
}

TEST(Step, values_carry_the_converter_of_their_element) {
  FakeStore store;
  FakeStream& stream = store.stream();
  const ValueText<int> text = [](int value) { return "#" + std::to_string(value); };
  stream.element<Var_t<int>>(info("Own"), text);
  store.direct_add_element(0, "Own");
  store.direct_add_element(0, "Nano");
  Aspect aspect;
  store.direct_use_element(aspect, 0, "Own");
  store.direct_use_element(aspect, 0, "Nano");
  stream.live().set(8, 0);
  std::vector<Result> out;
  store.direct_decode_step(aspect, 0, out);
  EXPECT_EQ(out[0].text(), "#8");
  EXPECT_EQ(out[1].text(), "");
}

TEST(Step, an_element_added_after_decoding_has_begun_disturbs_no_other) {
  FakeStore store;
  FakeStream& stream = store.stream();
  stream.element<Arr_t<unsigned char>>(info("Late", kArraySize));
  store.direct_add_element(0, "Builtin");
  Aspect aspect;
  store.direct_use_element(aspect, 0, "Builtin");
  stream.live().set<unsigned char>(3, 1);
  std::vector<Result> out;
  store.direct_decode_step(aspect, 0, out);

  store.direct_add_element(0, "Late");
  stream.live().set_array<unsigned char>(50, 2);
  stream.live().set<unsigned char>(4, 2);
  store.direct_decode_step(aspect, 1, out);
  EXPECT_THAT(numbers_of(out), ElementsAre(4));
  store.direct_use_element(aspect, 0, "Late");
  store.direct_decode_step(aspect, 1, out);
  EXPECT_THAT(numbers_of(out), ElementsAre(4, 50, 51, 52, 53, 54));
}

TEST(Step, begin_tells_every_stream_which_mode_decodes) {
  FakeStore store;
  std::vector<std::string> calls;
  for (const std::string name : {"a", "b"}) {
    store.stream().on_call = [&calls, name](const std::string& call) {
      calls.push_back(name + " " + call);
    };
  }
  calls.clear();
  EXPECT_EQ(store.direct_decode_begin(0), kNormal);
  EXPECT_THAT(calls, ElementsAre("a let 0", "b let 0"));
}

TEST(Step, all_streams_are_decoded_before_the_first_is_copied) {
  const Folder folder;
  const std::string path = folder.write("a.xcom", fake_recording({1, 2}, {10, 20, 30}));
  auto resource = std::make_unique<FakeResource>(path);
  std::vector<std::string> calls;
  for (const unsigned int serial : {1, 2}) {
    FakeStream& stream = resource->stream(serial, Enum::TRANSPORT_TYPE_OGG);
    stream.span(10, 30).reads(path);
    const std::string name = std::to_string(serial);
    stream.live_codec().on_decode = [&calls, name](long long nano) {
      calls.push_back(name + " at " + std::to_string(nano));
    };
    stream.on_call = [&calls, name](const std::string& call) {
      if (call.starts_with("pop")) calls.push_back(name + " " + call);
    };
  }
  FakeStore store;
  store.take(std::move(resource));
  store.direct_add_element(0, "Nano");
  Aspect aspect;
  store.direct_use_element(aspect, 0, "Nano");
  store.direct_decode_begin(10);
  calls.clear();
  std::vector<Result> out;
  EXPECT_EQ(store.direct_decode_step(aspect, 20, out), kNormal);
  EXPECT_THAT(calls, ElementsAre("1 at 20", "2 at 20", "1 pop 0 0", "2 pop 0 0"));
  EXPECT_THAT(numbers_of(out), ElementsAre(20));
}

// Stepping through a recording: "Nano" at 10.0 s, 10.1 s, ... 12.0 s and a "Count" from 0.

constexpr long long kTenth = kSecond / 10;
constexpr long long kFirst = 10 * kSecond;

Support::Bytes drive(const std::vector<unsigned int>& serials) {
  const auto dbu = Support::Dbu()
                       .message(1, {10, 11})
                       .signal(10)
                       .name("Nano")
                       .type("S", 64)
                       .at(0)
                       .signal(11)
                       .name("Count")
                       .type("S", 32)
                       .at(64);
  Support::Recording recording;
  for (const unsigned int serial : serials) {
    recording.stream(serial).ucom(dbu).headers().packets_per_page(3);
  }
  for (long long k = 0; k <= 20; ++k) {
    for (const unsigned int serial : serials) {
      const auto packet = Support::UComPacket(1).integer(0, 64, kFirst + k * kTenth);
      recording.stream(serial).packet(Support::UComPacket(packet).integer(64, 32, k).bytes());
    }
  }
  return recording.bytes();
}

// A store with a recording of two streams, whose first is selected.
class DriveTest : public testing::Test {
 protected:
  // Behind the pages lie bytes that are none, so that no reader is at its end at once.
  DriveTest() {
    const Support::Bytes bytes = Support::join({drive({1, 2}), Support::Bytes(20000)});
    store.add_resource(folder.write("a.xcom", bytes), ids, count);
    for (const std::string name : {"Count", "Nano"}) {
      store.direct_add_element(0, name);
      store.direct_use_element(aspect, 0, name);
    }
  }

  // The count delivered at `t`.
  long long count_at(long long t) {
    EXPECT_EQ(store.direct_decode_step(aspect, t, out), kNormal);
    EXPECT_EQ(static_cast<long long>(out.at(1)), kFirst + static_cast<long long>(out[0]) * kTenth);
    EXPECT_EQ(out[0].get_nano(), static_cast<long long>(out[1]));
    return static_cast<long long>(out[0]);
  }

  Folder folder;
  DataStore store{kOptions};
  std::vector<unsigned int> ids;
  unsigned int count = 0;
  Aspect aspect;
  std::vector<Result> out;
};

TEST_F(DriveTest, a_step_delivers_the_newest_values_once_the_time_is_reached) {
  store.direct_decode_begin(kFirst);
  EXPECT_EQ(count_at(kFirst), 0);
  EXPECT_EQ(count_at(kFirst + 1), 1);
  EXPECT_EQ(count_at(kFirst + kTenth), 1);
  EXPECT_EQ(count_at(kFirst + 5 * kTenth / 2), 3);  // 0.25 s: the packet of 0.3 s
  EXPECT_EQ(count_at(kFirst + kSecond), 10);
  EXPECT_EQ(store.direct_decode_end(), kNormal);
}

TEST_F(DriveTest, begin_takes_the_streams_to_the_time) {
  EXPECT_EQ(store.direct_decode_begin(kFirst + 14 * kTenth), kNormal);
  EXPECT_EQ(count_at(kFirst + 14 * kTenth), 14);
}

TEST_F(DriveTest, a_repeated_step_gives_the_same_values) {
  store.direct_decode_begin(kFirst);
  EXPECT_EQ(count_at(kFirst + 5 * kTenth), 5);
  EXPECT_EQ(count_at(kFirst + 5 * kTenth), 5);
  EXPECT_EQ(count_at(kFirst + 5 * kTenth), 5);
}

TEST_F(DriveTest, a_step_back_leaves_the_values_as_they_were) {
  store.direct_decode_begin(kFirst);
  EXPECT_EQ(count_at(kFirst + 5 * kTenth), 5);
  EXPECT_EQ(count_at(kFirst), 5);
  EXPECT_EQ(count_at(kFirst + 6 * kTenth), 6);
}

TEST_F(DriveTest, steps_beyond_the_last_packet_keep_giving_its_values) {
  store.direct_decode_begin(kFirst);
  EXPECT_EQ(count_at(kFirst + 2 * kSecond), 20);
  EXPECT_EQ(count_at(kFirst + 2 * kSecond + 1), 20);
  EXPECT_EQ(count_at(kFirst + 900 * kSecond), 20);
  EXPECT_EQ(count_at(std::numeric_limits<long long>::max()), 20);
  EXPECT_TRUE(out[0].good());
}

TEST_F(DriveTest, a_new_begin_goes_back) {
  store.direct_decode_begin(kFirst);
  EXPECT_EQ(count_at(kFirst + 15 * kTenth), 15);
  store.direct_decode_end();
  store.direct_decode_begin(kFirst + 3 * kTenth);
  EXPECT_EQ(count_at(kFirst + 3 * kTenth), 3);
}

TEST_F(DriveTest, streams_that_no_element_names_are_decoded_as_well) {
  store.direct_decode_begin(kFirst);
  count_at(kFirst + 7 * kTenth);
  EXPECT_EQ(store.get_stream_in(1)->get_indexer(), kFirst + 7 * kTenth);
}

TEST_F(DriveTest, the_end_closes_the_readers) {
  store.direct_decode_begin(kFirst);
  EXPECT_TRUE(store.get_stream_in(0)->get_logical_xcom()->good());
  EXPECT_EQ(store.direct_decode_end(), kNormal);
  EXPECT_FALSE(store.get_stream_in(0)->get_logical_xcom()->good());
  EXPECT_FALSE(store.get_stream_in(1)->get_logical_xcom()->good());
}

TEST_F(DriveTest, elements_of_two_streams_come_in_one_step) {
  store.direct_add_element(1, "Count");
  store.direct_use_element(aspect, 1, "Count");
  store.direct_decode_begin(kFirst);
  EXPECT_EQ(count_at(kFirst + 4 * kTenth), 4);
  EXPECT_EQ(static_cast<int>(out.at(2)), 4);
}

}  // namespace
}  // namespace Trel::Sto::Test
