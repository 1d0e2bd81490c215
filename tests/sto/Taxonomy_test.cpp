#include "sto/Sto_Taxonomy.h"

#include <gtest/gtest.h>

#include <limits>

#include "Fakes.h"

namespace Trel::Sto::Test {
namespace {

InfoProps of_resolution(double resolution) {
  return InfoProps("A", 1, nullptr, "m", "Text.", resolution, 1.0, 2.0, 3.0, 4.0);
}

TEST(Taxonomy, a_default_leaf_matches_nothing) {
  const StreamLeaf leaf;
  EXPECT_EQ(leaf.resource_id, 0xFFFFFFFFU);
  EXPECT_EQ(leaf.transport, 0);
  EXPECT_EQ(leaf.name, "?");
  EXPECT_EQ(leaf.extension, "?");
  EXPECT_EQ(leaf.group_id, 0xFFFFFFFFU);
  EXPECT_EQ(leaf.group_tag, "?");
  EXPECT_EQ(leaf.stream_id, 0xFFFFFFFFU);
  EXPECT_EQ(leaf.serial_id, 0xFFFFFFFFU);
  EXPECT_EQ(leaf.codec, 0);
  EXPECT_FALSE(leaf.captured);
  EXPECT_FALSE(leaf.configured);
  EXPECT_FALSE(leaf.storable);
  EXPECT_EQ(leaf.identifier, "");
  EXPECT_EQ(leaf.start, 0);
  EXPECT_EQ(leaf.end, 0);
}

TEST(Taxonomy, a_node_is_a_copy_of_its_parent_and_one_record_more) {
  InfoNode info(of_resolution(0.5));
  const PointerNode pointer(info, 17U, Enum::MEASUREMENT_TYPE_NONE);
  const DynamicNode dynamic(pointer, Enum::BASIC_TYPE_double, true);
  const ElementNode element(dynamic, 3U);
  const StoreLeaf store(element, 1U, 2U, 40U);
  const AspectNode aspect(store, 5U, 60U);
  const DestinationNode destination(aspect, 7U, 8U);
  info.name = "changed";  // the copies stand

  EXPECT_EQ(destination.name, "A");
  EXPECT_EQ(destination.unit, "m");
  EXPECT_EQ(destination.pointer_id, 17U);
  EXPECT_EQ(destination.basic_type, Enum::BASIC_TYPE_double);
  EXPECT_TRUE(destination.is_array);
  EXPECT_EQ(destination.stream_id, 3U);
  EXPECT_EQ(destination.mode_id, 1U);
  EXPECT_EQ(destination.store_id, 2U);
  EXPECT_EQ(destination.offset, 40U);
  EXPECT_EQ(destination.aspect_id, 5U);
  EXPECT_EQ(destination.AspectProps::destination, 60U);
  EXPECT_EQ(destination.measurement, 7U);
  EXPECT_EQ(destination.index, 8U);

  const AspectAddress address(destination);
  EXPECT_EQ(address.aspect_id, 5U);
  EXPECT_EQ(address.destination, 60U);
  EXPECT_EQ(address.measurement, 7U);
  EXPECT_EQ(address.index, 8U);
}

TEST(Taxonomy, the_information_keeps_what_it_is_given) {
  const IndexLabel label = [](unsigned long long) -> std::string { return "x"; };
  const InfoProps props("Name", 5, label, "deg", "One sentence.", 0.25, 1.0, 2.0, 3.0, 4.0);
  EXPECT_EQ(props.name, "Name");
  EXPECT_EQ(props.size, 5U);
  EXPECT_EQ(props.label, label);
  EXPECT_EQ(props.unit, "deg");
  EXPECT_EQ(props.description, "One sentence.");
  EXPECT_EQ(props.resolution, 0.25);
  EXPECT_EQ(props.limits[0], 1.0);
  EXPECT_EQ(props.limits[1], 2.0);
  EXPECT_EQ(props.limits[2], 3.0);
  EXPECT_EQ(props.limits[3], 4.0);
}

TEST(Taxonomy, a_text_is_shared_by_the_copies_of_its_description) {
  const InfoProps props("Name", 1, nullptr, "deg", "One sentence.", 0, 0, 0, 0, 0);
  const DynamicNode first{PointerNode(InfoNode(props)), Enum::BASIC_TYPE_float, false};
  const DynamicNode second = first;
  EXPECT_EQ(&second.description.str(), &props.description.str());
  EXPECT_EQ(&second.unit.str(), &props.unit.str());
}

TEST(Taxonomy, a_text_that_nobody_gave_is_empty) {
  EXPECT_EQ(InfoProps().unit, "");
  EXPECT_EQ(Text(std::shared_ptr<const std::string>()), "");
}

TEST(Taxonomy, the_decimals_follow_from_the_resolution) {
  EXPECT_EQ(of_resolution(0.001).decimals, 3);
  EXPECT_EQ(of_resolution(0.002).decimals, 3);  // -log10 = 2.7
  EXPECT_EQ(of_resolution(0.5).decimals, 1);    // -log10 = 0.3
  EXPECT_EQ(of_resolution(1e-9).decimals, 9);
  EXPECT_EQ(of_resolution(1.0).decimals, 0);
  EXPECT_EQ(of_resolution(250.0).decimals, 0);
  EXPECT_EQ(of_resolution(std::numeric_limits<double>::infinity()).decimals, 0);
}

TEST(Taxonomy, a_tiny_resolution_gives_20_decimals) {
  EXPECT_EQ(of_resolution(1e-19).decimals, 19);
  EXPECT_EQ(of_resolution(1e-20).decimals, 20);
  EXPECT_EQ(of_resolution(1e-21).decimals, 20);
  EXPECT_EQ(of_resolution(1e-300).decimals, 20);
}

TEST(Taxonomy, without_a_resolution_there_are_minus_1_decimals) {
  EXPECT_EQ(of_resolution(0.0).decimals, -1);
  EXPECT_EQ(of_resolution(-0.0).decimals, -1);
  EXPECT_EQ(of_resolution(std::numeric_limits<double>::quiet_NaN()).decimals, -1);
}

TEST(Taxonomy, a_negative_resolution_is_made_positive_first) {
  const InfoProps props = of_resolution(-0.001);
  EXPECT_EQ(props.resolution, 0.001);
  EXPECT_EQ(props.decimals, 3);
}

TEST(Taxonomy, a_resource_describes_its_file) {
  FakeResource resource("some/where/Drive.XCOM");
  resource.setResourceId(4);
  ResourceNode node;
  resource.query_resource(node);
  EXPECT_EQ(node.resource_id, 4U);
  EXPECT_EQ(node.transport, Enum::TRANSPORT_TYPE_OGG);
  EXPECT_EQ(node.name, "some/where/Drive.XCOM");
  EXPECT_EQ(node.extension, ".xcom");
}

TEST(Taxonomy, a_stream_describes_its_group_and_itself) {
  FakeStream stream(77);
  stream.set_captured();
  stream.span(-5, 2 * kSecond);
  stream.grouping("Car").setResourceId(6);
  stream.set_group_tag();
  stream.setStreamId(3);
  stream.setGroupId(2);

  StreamLeaf leaf;
  stream.query_stream(leaf);

  EXPECT_EQ(leaf.group_id, 2U);
  EXPECT_EQ(leaf.group_tag, "Car 6");
  EXPECT_EQ(leaf.stream_id, 3U);
  EXPECT_EQ(leaf.serial_id, 77U);
  EXPECT_EQ(leaf.codec, 15);
  EXPECT_TRUE(leaf.captured);
  EXPECT_TRUE(leaf.configured);
  EXPECT_TRUE(leaf.storable);
  EXPECT_EQ(leaf.identifier, "");
  EXPECT_EQ(leaf.start, -5);
  EXPECT_EQ(leaf.end, 2 * kSecond);
  EXPECT_EQ(leaf.resource_id, 0xFFFFFFFFU);  // the resource's own part
}

TEST(Taxonomy, a_stream_that_is_not_storable_reports_0_though_its_packets_carry_time) {
  FakeStream stream(1);
  stream.live().set_time(kSecond);
  StreamLeaf leaf;
  leaf.start = 5;
  leaf.end = 6;
  stream.query_stream(leaf);
  EXPECT_FALSE(leaf.storable);
  EXPECT_EQ(leaf.start, 0);
  EXPECT_EQ(leaf.end, 0);
}

TEST(Taxonomy, a_stream_describes_its_elements_up_to_their_types) {
  FakeStream stream(1);
  stream.element<Arr_t<short>>(info("Five", kArraySize));
  std::vector<DynamicNode> measurements;
  stream.query_measurements(measurements);
  ASSERT_EQ(measurements.size(), 3U);
  EXPECT_EQ(measurements[0].name, "Nano");
  EXPECT_EQ(measurements[0].basic_type, Enum::BASIC_TYPE_int64_t);
  EXPECT_FALSE(measurements[0].is_array);
  EXPECT_EQ(measurements[1].name, "Builtin");
  EXPECT_EQ(measurements[2].name, "Five");
  EXPECT_EQ(measurements[2].size, 5U);
  EXPECT_EQ(measurements[2].basic_type, Enum::BASIC_TYPE_int16_t);
  EXPECT_TRUE(measurements[2].is_array);
}

}  // namespace
}  // namespace Trel::Sto::Test
