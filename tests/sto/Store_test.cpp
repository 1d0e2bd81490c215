#include "sto/Sto_Store.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include "Fakes.h"
#include "support/Support_Dbu.h"
#include "support/Support_Packet.h"
#include "support/Support_Recording.h"

namespace Trel::Sto::Test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// One UCom stream for each of `serials`, with packets at 10 s, 11 s and 12 s.
Support::Bytes drive(const std::vector<unsigned int>& serials) {
  const auto dbu = Support::Dbu().message(1, {10}).signal(10).name("Nano").type("S", 64).at(0);
  Support::Recording recording;
  for (const unsigned int serial : serials) recording.stream(serial).ucom(dbu).headers();
  for (long long second = 10; second <= 12; ++second) {
    for (const unsigned int serial : serials) {
      const auto packet = Support::UComPacket(1).integer(0, 64, second * kSecond);
      recording.stream(serial).packet(packet.bytes()).page();
    }
  }
  return recording.bytes();
}

// A store and what registering files with it has given so far.
struct Registered {
  Enum::RETURN_TYPE add(const std::string& path) { return store.add_resource(path, ids, count); }

  DataStore store{kOptions};
  std::vector<unsigned int> ids;
  unsigned int count = 99;
};

TEST(Registration, a_recording_s_streams_get_ids_from_0) {
  const Folder folder;
  Registered registered;
  EXPECT_EQ(registered.add(folder.write("a.xcom", drive({5, 9}))), Enum::RETURN_TYPE_NORMAL);
  EXPECT_EQ(registered.count, 2U);
  EXPECT_THAT(registered.ids, ElementsAre(0, 1));
}

TEST(Registration, an_extension_counts_in_any_case) {
  const Folder folder;
  Registered registered;
  const std::string path = folder.write("FILE.XCOM", drive({5}));
  EXPECT_EQ(registered.add(path), Enum::RETURN_TYPE_NORMAL);
  EXPECT_EQ(registered.add(folder.write("File.XcOm", drive({5}))), Enum::RETURN_TYPE_NORMAL);
  StreamLeaf leaf;
  registered.store.query_stream(leaf, 0);
  EXPECT_EQ(leaf.name, path);
  EXPECT_EQ(leaf.extension, ".xcom");
}

TEST(Registration, a_path_without_a_known_extension_makes_no_resource) {
  const Folder folder;
  Registered registered;
  for (const std::string name : {"nodot", "trailing.", "a.txt", "a.xcom.bak", "a.xcomx", "xcom"}) {
    EXPECT_EQ(registered.add(folder.write(name, drive({5}))), Enum::RETURN_TYPE_NOTHING) << name;
    EXPECT_EQ(registered.count, 0U) << name;
  }
  EXPECT_THAT(registered.ids, IsEmpty());

  registered.add(folder.write("a.xcom", drive({5})));
  StreamLeaf leaf;
  registered.store.query_stream(leaf, 0);
  EXPECT_EQ(leaf.resource_id, 0U);  // the ones before left no trace
}

TEST(Registration, a_file_that_does_not_exist_is_skipped_and_makes_no_resource) {
  const Folder folder;
  Registered registered;
  EXPECT_EQ(registered.add("/nowhere/at/all.xcom"), Enum::RETURN_TYPE_NOTHING);
  EXPECT_EQ(registered.count, 0U);
  EXPECT_THAT(registered.ids, IsEmpty());

  registered.add(folder.write("a.xcom", drive({5})));
  EXPECT_EQ(registered.store.get_stream_in(0)->getResourceId(), 0U);
}

TEST(Registration, a_file_without_streams_is_a_resource_that_gives_nothing) {
  const Folder folder;
  Registered registered;
  EXPECT_EQ(registered.add(folder.write("empty.xcom", {})), Enum::RETURN_TYPE_NOTHING);
  EXPECT_EQ(registered.add(folder.write("noise.xcom", Support::noise(5000))),
            Enum::RETURN_TYPE_NOTHING);
  EXPECT_THAT(registered.ids, IsEmpty());

  registered.add(folder.write("a.xcom", drive({5})));
  StreamLeaf leaf;
  registered.store.query_stream(leaf, 0);
  EXPECT_EQ(leaf.resource_id, 2U);
}

TEST(Registration, a_second_file_s_ids_follow_and_the_vector_is_only_appended_to) {
  const Folder folder;
  Registered registered;
  registered.ids = {77};
  registered.add(folder.write("a.xcom", drive({5, 9})));
  EXPECT_EQ(registered.add(folder.write("b.xcom", drive({1}))), Enum::RETURN_TYPE_NORMAL);
  EXPECT_EQ(registered.count, 1U);
  EXPECT_THAT(registered.ids, ElementsAre(77, 0, 1, 2));
}

TEST(Registration, the_same_file_twice_is_two_resources) {
  const Folder folder;
  Registered registered;
  const std::string path = folder.write("a.xcom", drive({5}));
  registered.add(path);
  EXPECT_EQ(registered.add(path), Enum::RETURN_TYPE_NORMAL);
  EXPECT_THAT(registered.ids, ElementsAre(0, 1));
}

TEST(Registration, several_paths_add_up_and_those_that_do_not_exist_are_passed_over) {
  const Folder folder;
  DataStoreImpl store(kOptions);
  std::vector<unsigned int> ids;
  unsigned int count = 99;
  const std::vector<std::string> paths = {folder.write("a.xcom", drive({5, 9})), "/nowhere/b.xcom",
                                          folder.write("c.txt", drive({5})),
                                          folder.write("d.xcom", drive({1}))};
  EXPECT_EQ(store.add_resources(paths, ids, count), Enum::RETURN_TYPE_NORMAL);
  EXPECT_EQ(count, 3U);
  EXPECT_THAT(ids, ElementsAre(0, 1, 2));

  EXPECT_EQ(store.add_resources({}, ids, count), Enum::RETURN_TYPE_NOTHING);
  EXPECT_EQ(count, 0U);
}

TEST(Registration, streams_are_numbered_in_order_of_their_serial_numbers) {
  const Folder folder;
  Registered registered;
  registered.add(folder.write("a.xcom", drive({300, 7, 4000000000, 20})));
  std::vector<unsigned int> serials;
  for (const unsigned int id : registered.ids) {
    serials.push_back(registered.store.get_stream_in(id)->getSerialId());
  }
  EXPECT_THAT(serials, ElementsAre(7, 20, 300, 4000000000));
}

TEST(Registration, a_stream_knows_its_ids_before_the_resource_is_told_to_store) {
  FakeStore store;
  store.stream();
  auto resource = std::make_unique<FakeResource>();
  const FakeStream& stream = resource->stream(8);
  bool stored = false;
  resource->on_store = [&] {
    stored = true;
    EXPECT_EQ(stream.getStreamId(), 1U);
    EXPECT_EQ(stream.getResourceId(), 1U);
    EXPECT_EQ(stream.getGroupTag(), "1");
    EXPECT_EQ(stream.getGroupId(), 1U);
  };
  store.take(std::move(resource));
  EXPECT_TRUE(stored);
}

TEST(Registration, the_retained_stores_are_made_after_the_resource_has_stored) {
  FakeStore store;
  auto resource = std::make_unique<FakeResource>();
  FakeStream& stream = resource->stream(8);
  resource->on_store = [&] { stream.span(100 * kSecond, 200 * kSecond); };
  store.take(std::move(resource));
  ASSERT_NE(store.get_retain().stores().at(0), nullptr);
}

TEST(Registration, each_stream_has_a_slot_among_the_retained_stores) {
  FakeStore store;
  auto first = std::make_unique<FakeResource>();
  first->stream(1);  // not storable
  first->stream(2).span(100 * kSecond, 200 * kSecond);
  first->stream(3).span(5, 5);  // storable, but no time passes
  store.take(std::move(first));
  auto second = std::make_unique<FakeResource>();
  second->stream(1).span(7 * kSecond, 9 * kSecond);
  store.take(std::move(second));

  const Stores& stores = store.get_retain().stores();
  EXPECT_EQ(stores.at(0), nullptr);
  ASSERT_NE(stores.at(1), nullptr);
  EXPECT_EQ(stores.at(1)->id(), 1U);
  EXPECT_EQ(stores.at(1)->start(), 100 * kSecond);
  EXPECT_EQ(stores.at(1)->end(), 200 * kSecond);
  EXPECT_EQ(stores.at(1)->indexing().resolution, kSecond);
  EXPECT_EQ(stores.at(2), nullptr);
  ASSERT_NE(stores.at(3), nullptr);
  EXPECT_EQ(stores.at(3)->start(), 7 * kSecond);
}

TEST(Registration, the_retained_stores_follow_the_options) {
  FakeStore store(Options(2, 5 * kSecond, 0, 0.1, 1048576, 10));
  store.stream();  // 0 to 10 s: 3 points of 5 s
  ASSERT_NE(store.get_retain().stores().at(0), nullptr);
  EXPECT_EQ(store.get_retain().stores().at(0)->indexing().resolution, 5 * kSecond);
}

TEST(Registration, every_registration_gives_all_streams_one_direct_and_n_retained_stores) {
  FakeStore store;
  std::vector<std::string> calls;
  const auto note = [&](const std::string& call) {
    if (call.starts_with("exp")) calls.push_back(call);
  };
  store.stream().on_call = note;
  calls.clear();

  auto resource = std::make_unique<FakeResource>();
  for (const unsigned int serial : {1, 2}) resource->stream(serial).on_call = note;
  store.take(std::move(resource));

  EXPECT_THAT(calls, ElementsAre("exp 0 1", "exp 1 3", "exp 0 1", "exp 1 3", "exp 0 1", "exp 1 3"));
}

TEST(Registration, a_missing_resource_changes_no_id_but_expands_the_streams_again) {
  FakeStore store;
  std::vector<std::string> calls;
  store.stream().on_call = [&](const std::string& call) { calls.push_back(call); };
  store.count = 99;
  EXPECT_EQ(store.take(nullptr), Enum::RETURN_TYPE_NOTHING);
  EXPECT_EQ(store.count, 0U);
  EXPECT_THAT(store.ids, ElementsAre(0));
  EXPECT_THAT(calls, ElementsAre("exp 0 1", "exp 1 1"));
}

TEST(Registration, a_resource_without_streams_gives_nothing) {
  FakeStore store;
  store.count = 99;
  EXPECT_EQ(store.take(std::make_unique<FakeResource>()), Enum::RETURN_TYPE_NOTHING);
  EXPECT_EQ(store.count, 0U);
}

TEST(Groups, streams_of_one_resource_without_a_grouping_share_group_0) {
  FakeStore store;
  auto resource = std::make_unique<FakeResource>();
  const FakeStream& first = resource->stream(1);
  const FakeStream& second = resource->stream(2);
  store.take(std::move(resource));
  EXPECT_EQ(first.getGroupTag(), "0");
  EXPECT_EQ(first.getGroupId(), 0U);
  EXPECT_EQ(second.getGroupId(), 0U);
}

TEST(Groups, ids_count_the_distinct_tags_in_order_of_sight) {
  FakeStore store;
  auto resource = std::make_unique<FakeResource>();
  std::vector<const FakeStream*> streams;
  for (const std::string name : {"Zebra", "", "Zebra", "Ant"}) {
    FakeStream& stream = resource->stream(static_cast<unsigned int>(streams.size()));
    if (!name.empty()) stream.grouping(name);
    streams.push_back(&stream);
  }
  store.take(std::move(resource));
  EXPECT_EQ(streams[0]->getGroupTag(), "Zebra 0");
  EXPECT_EQ(streams[0]->getGroupId(), 0U);
  EXPECT_EQ(streams[1]->getGroupId(), 1U);
  EXPECT_EQ(streams[2]->getGroupId(), 0U);
  EXPECT_EQ(streams[3]->getGroupId(), 2U);
}

TEST(Groups, a_name_never_joins_two_resources) {
  FakeStore store;
  std::vector<const FakeStream*> streams;
  for (int n = 0; n < 2; ++n) {
    auto resource = std::make_unique<FakeResource>();
    streams.push_back(&resource->stream(1).grouping("Car"));
    store.take(std::move(resource));
  }
  EXPECT_EQ(streams[0]->getGroupTag(), "Car 0");
  EXPECT_EQ(streams[1]->getGroupTag(), "Car 1");
  EXPECT_EQ(streams[0]->getGroupId(), 0U);
  EXPECT_EQ(streams[1]->getGroupId(), 1U);
}

TEST(Streams, are_found_by_id_and_not_beyond) {
  FakeStore store;
  EXPECT_EQ(store.get_stream_in(0), nullptr);
  const Stream* stream = &store.stream();
  EXPECT_EQ(store.get_stream_in(0), stream);
  EXPECT_EQ(std::as_const(store).get_stream_in(0), stream);
  EXPECT_EQ(store.get_stream_in(1), nullptr);
  EXPECT_EQ(std::as_const(store).get_stream_in(1), nullptr);
  EXPECT_EQ(store.get_stream_in(0xFFFFFFFF), nullptr);
}

// A store whose streams last as told; a span of {} is a stream that is not storable.
struct Span {
  long long start;
  long long end;
  bool storable = true;
};
void fill(FakeStore& store, const std::vector<Span>& spans) {
  auto resource = std::make_unique<FakeResource>();
  unsigned int serial = 0;
  for (const Span& span : spans) {
    FakeStream& stream = resource->stream(serial++);
    if (span.storable) {
      stream.span(span.start, span.end);
    } else {
      stream.live().set_time(span.start);
    }
  }
  store.take(std::move(resource));
}

TEST(TimeSpan, without_storable_streams_is_the_largest_time_and_0) {
  FakeStore store;
  long long t = 5;
  EXPECT_EQ(store.get_start(t), Enum::RETURN_TYPE_NOTHING);
  EXPECT_EQ(t, kMax);
  t = 5;
  EXPECT_EQ(store.get_end(t), Enum::RETURN_TYPE_NOTHING);
  EXPECT_EQ(t, 0);

  fill(store, {{3, 4, false}});
  EXPECT_EQ(store.get_start(t), Enum::RETURN_TYPE_NOTHING);
  EXPECT_EQ(t, kMax);
  EXPECT_EQ(store.get_end(t), Enum::RETURN_TYPE_NOTHING);
  EXPECT_EQ(t, 0);
}

TEST(TimeSpan, goes_from_the_earliest_start_to_the_latest_end) {
  FakeStore store;
  fill(store, {{1, 2, false}, {30, 50}, {20, 90}, {40, 60}});
  long long t = 0;
  EXPECT_EQ(store.get_start(t), Enum::RETURN_TYPE_NORMAL);
  EXPECT_EQ(t, 20);
  EXPECT_EQ(store.get_end(t), Enum::RETURN_TYPE_NORMAL);
  EXPECT_EQ(t, 90);
}

TEST(TimeSpan, can_start_where_the_last_stream_starts) {
  FakeStore store;
  fill(store, {{30, 50}, {40, 60}, {20, 90}, {99, 99, false}});
  const DataStoreImpl& impl = store;
  long long t = 0;
  EXPECT_EQ(impl.get_start(t, false), Enum::RETURN_TYPE_NORMAL);
  EXPECT_EQ(t, 40);
  EXPECT_EQ(impl.get_start(t, true), Enum::RETURN_TYPE_NORMAL);
  EXPECT_EQ(t, 20);
}

TEST(TimeSpan, the_first_storable_stream_counts_even_before_time_0_or_at_the_largest_time) {
  FakeStore negative;
  fill(negative, {{-9, -5}});
  long long t = 0;
  EXPECT_EQ(negative.get_end(t), Enum::RETURN_TYPE_NORMAL);
  EXPECT_EQ(t, -5);

  FakeStore last;
  fill(last, {{kMax, kMax}});
  EXPECT_EQ(last.get_start(t), Enum::RETURN_TYPE_NORMAL);
  EXPECT_EQ(t, kMax);
}

TEST(TimeSpan, of_a_recording_is_that_of_its_packets) {
  const Folder folder;
  Registered registered;
  registered.add(folder.write("a.xcom", drive({5})));
  long long t = 0;
  EXPECT_EQ(registered.store.get_start(t), Enum::RETURN_TYPE_NORMAL);
  EXPECT_EQ(t, 10 * kSecond);
  EXPECT_EQ(registered.store.get_end(t), Enum::RETURN_TYPE_NORMAL);
  EXPECT_EQ(t, 12 * kSecond);
}

TEST(Query, of_a_stream_tells_resource_group_and_stream) {
  const Folder folder;
  Registered registered;
  registered.add(folder.write("a.xcom", drive({5})));
  const std::string path = folder.write("b.xcom", drive({8, 9}));
  registered.add(path);
  StreamLeaf leaf;
  EXPECT_EQ(registered.store.query_stream(leaf, 2), Enum::RETURN_TYPE_NORMAL);
  EXPECT_EQ(leaf.resource_id, 1U);
  EXPECT_EQ(leaf.transport, Enum::TRANSPORT_TYPE_OGG);
  EXPECT_EQ(leaf.name, path);
  EXPECT_EQ(leaf.extension, ".xcom");
  EXPECT_EQ(leaf.group_id, 1U);
  EXPECT_EQ(leaf.group_tag, "1");
  EXPECT_EQ(leaf.stream_id, 2U);
  EXPECT_EQ(leaf.serial_id, 9U);
  EXPECT_EQ(leaf.codec, 15);
  EXPECT_TRUE(leaf.captured);
  EXPECT_TRUE(leaf.configured);
  EXPECT_TRUE(leaf.storable);
  EXPECT_EQ(leaf.start, 10 * kSecond);
  EXPECT_EQ(leaf.end, 12 * kSecond);
}

TEST(Query, of_an_unknown_stream_leaves_the_leaf_as_it_is) {
  FakeStore store;
  store.stream();
  StreamLeaf leaf;
  leaf.name = "kept";
  EXPECT_EQ(store.query_stream(leaf, 1), Enum::RETURN_TYPE_NOTHING);
  EXPECT_EQ(leaf.name, "kept");
  EXPECT_EQ(leaf.stream_id, 0xFFFFFFFFU);
}

TEST(Query, of_a_stream_whose_resource_is_unknown_leaves_the_leaf_as_it_is) {
  FakeStore store;
  store.stream().setResourceId(1);
  StreamLeaf leaf;
  EXPECT_EQ(store.query_stream(leaf, 0), Enum::RETURN_TYPE_NOTHING);
  EXPECT_EQ(leaf.stream_id, 0xFFFFFFFFU);
}

TEST(StoreLife, resources_and_their_streams_go_with_the_store) {
  auto alive = std::make_shared<int>();
  {
    FakeStore store;
    store.stream().on_call = [alive](const std::string&) {};
    EXPECT_EQ(alive.use_count(), 2);
  }
  EXPECT_EQ(alive.use_count(), 1);
}

TEST(StoreLife, the_options_are_copied) {
  Options options = kOptions;
  options.store_resolution = 3 * kSecond;
  FakeStore store(options);
  options.store_resolution = 7 * kSecond;
  store.stream();
  EXPECT_EQ(store.get_retain().stores().at(0)->indexing().resolution, 3 * kSecond);
}

TEST(StoreLife, the_modes_are_numbered_direct_and_retained) {
  const DataStoreImpl store(kOptions);
  EXPECT_EQ(store.direct_mode(), 0U);
  EXPECT_EQ(store.retain_mode(), 1U);
  EXPECT_EQ(store.get_direct().id(), 0U);
  EXPECT_EQ(store.get_retain().id(), 1U);
}

TEST(StoreLife, the_message_ring_has_the_size_of_the_options) {
  EXPECT_EQ(DataStoreImpl(kOptions).get_messages().space(), 1024U);
  EXPECT_EQ(DataStoreImpl(Options(16, kSecond, 0, 0.1, 1048576, 5)).get_messages().space(), 32U);
}

TEST(StoreLife, a_resource_reports_its_scans_under_its_id) {
  const Folder folder;
  Registered registered;
  registered.add(folder.write("a.xcom", drive({5})));
  const auto messages = drain(registered.store.get_messages());
  ASSERT_FALSE(messages.empty());
  for (const Message& message : messages) EXPECT_EQ(message.id, 0U);
  EXPECT_EQ(messages.front(), (Message{0, Enum::DATA_STORE_MSG_INIT, 0.0F}));
  EXPECT_EQ(messages.back(), (Message{0, Enum::DATA_STORE_MSG_POSTSCAN, 100.0F}));
}

TEST(OptionsRecord, keeps_its_values_in_order_of_the_constructor) {
  const Options options(1, -2, 3, 4.5, 6, 7);
  EXPECT_EQ(options.store_bits, 1U);
  EXPECT_EQ(options.store_resolution, -2);
  EXPECT_EQ(options.reserved, 3U);
  EXPECT_EQ(options.progress_period, 4.5);
  EXPECT_EQ(options.progress_bytes, 6U);
  EXPECT_EQ(options.message_bits, 7U);
}

}  // namespace
}  // namespace Trel::Sto::Test
