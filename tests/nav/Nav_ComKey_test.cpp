#include "nav/Nav_ComKey.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace Trel::Nav::Test {
namespace {

using testing::UnorderedElementsAre;

// What each node needs. `point` is the same measure point, a bare name a node of the main key.
const std::vector<std::pair<std::string, std::string>> kNeeds = {
    // clang-format off
    {"point.Point", "Imu2Veh Veh2Out RemoteLeverArm AngPos AngVel Vel"},
    {"point.Track", "point.Point point.Vel"},
    {"point.Slip", "AngPos point.Point point.Vel point.Track"},
    {"point.Curvature", "AngVel_Fld point.Point point.Vel"},
    {"point.AngleGradient", "point.Point point.Vel"},
    {"System_Stats", "System_Type"},
    {"System_CanFlags", "System_CanStatus"},
    {"System_Dates", "System_Id"},
    {"System_ProductInfo", "System_Id System_Type GnssInfo_Feature primary.System primary.System_Rate"},
    {"System_ProductModel", "System_ProductInfo GnssInfo_System secondary.System"},
    {"GnssInfo_Feature", "primary.System"},
    {"Time_Rel", "Time"},
    {"Time_Extra", "Time"},
    {"Time_Rate", "Time"},
    {"Dist", "Time Speed"},
    {"Vel_Fld", "AngPos Vel"},
    {"IsoVelEarth", "AngPos Vel"},
    {"IsoVelInter", "AngPos IsoVelEarth"},
    {"IsoVelVeh", "AngPos IsoVelInter"},
    {"Speed", "Vel Vel_Accuracy"},
    {"Acc_Fld", "AngPos Acc"},
    {"IsoAccEarth", "Pos AngPos Vel Acc"},
    {"IsoAccInter", "AngPos IsoAccEarth"},
    {"IsoAccVeh", "AngPos IsoAccInter"},
    {"FiltAcc", "Acc Time"},
    {"Jerk", "Acc Time"},
    {"FiltAcc_Fld", "AngPos FiltAcc"},
    {"FiltIsoAccEarth", "Pos AngPos Vel FiltAcc"},
    {"FiltIsoAccInter", "AngPos FiltIsoAccEarth"},
    {"FiltIsoAccVeh", "AngPos FiltIsoAccInter"},
    {"Jerk_Fld", "AngPos Jerk"},
    {"IsoJerkEarth", "IsoAccEarth Time"},
    {"IsoJerkInter", "AngPos IsoJerkEarth"},
    {"IsoJerkVeh", "AngPos IsoJerkInter"},
    {"FiltJerk", "Jerk Time"},
    {"FiltJerk_Fld", "AngPos FiltJerk"},
    {"FiltIsoJerkEarth", "IsoJerkEarth Time"},
    {"FiltIsoJerkInter", "AngPos FiltIsoJerkEarth"},
    {"FiltIsoJerkVeh", "AngPos FiltIsoJerkInter"},
    {"IsoAngPos", "AngPos"},
    {"Track", "Speed Vel Vel_Accuracy"},
    {"Slip", "Track AngPos AngPos_Accuracy"},
    {"Curvature", "Speed AngVel_Fld"},
    {"AngleGradient", "Vel"},
    {"AngVel_Fld", "AngPos AngVel"},
    {"IsoAngVelEarth", "AngPos IsoAngVelInter"},
    {"IsoAngVelInter", "AngPos IsoAngVelVeh"},
    {"IsoAngVelVeh", "Pos AngPos Vel AngVel"},
    {"AngAcc", "AngVel Time"},
    {"AngAcc_Fld", "AngPos AngAcc"},
    {"IsoAngAccEarth", "AngPos IsoAngAccInter"},
    {"IsoAngAccInter", "AngPos IsoAngAccVeh"},
    {"IsoAngAccVeh", "Pos AngPos Vel AngAcc"},
    {"FiltAngAcc", "AngAcc Time"},
    {"FiltAngAcc_Fld", "AngPos FiltAngAcc"},
    {"FiltIsoAngAccEarth", "AngPos FiltIsoAngAccInter"},
    {"FiltIsoAngAccInter", "AngPos FiltIsoAngAccVeh"},
    {"FiltIsoAngAccVeh", "Pos AngPos Vel FiltAngAcc"},
    {"Ned2Veh", "AngPos Veh2Out"},
    {"Surf2Out", "AngPos Ned2Surf"},
    {"RefFrame_Definition", "Pos"},
    {"RefFrame_Pos", "RefFrame_Definition Pos"},
    {"RefFrame_Vel", "RefFrame_Definition Vel"},
    {"RefFrame_Track", "RefFrame_Definition Vel"},
    {"RefFrame_Yaw", "RefFrame_Definition AngPos"},
    {"Leica", "AngPos"},
    {"WSpeed_Measure", "Time WSpeed_Model"},
    // clang-format on
};

// One node of a key: by name, with its three functions.
struct Handle {
  std::string name;
  std::function<void()> let;
  std::function<void()> bar;
  std::function<bool()> get;
};

// The same of a part of the key, wherever the part stands.
template <class Part>
struct Functions {
  const char* name;
  void (Part::*let)();
  void (Part::*bar)();
  bool (Part::*get)() const;
};

#define FUNCTIONS(Part, node) {#node, &Part::Let_##node, &Part::Bar_##node, &Part::Get_##node},
constexpr Functions<ComKey::KeyGps> kGpsNodes[] = {
#define GPS(node) FUNCTIONS(ComKey::KeyGps, node)
#include "nav/Nav_ComKey.def"
};
constexpr Functions<ComKey::KeyMeasurePt> kPointNodes[] = {
#define POINT(node) FUNCTIONS(ComKey::KeyMeasurePt, node)
#include "nav/Nav_ComKey.def"
};
constexpr Functions<ComKey::KeyMain> kMainNodes[] = {
#define MAIN(node) FUNCTIONS(ComKey::KeyMain, node)
#include "nav/Nav_ComKey.def"
};
#undef FUNCTIONS

std::vector<Handle> handles(ComKey& key) {
  std::vector<Handle> all;
  const auto take = [&all](const std::string& prefix, auto& part, const auto& nodes) {
    for (const auto& node : nodes) {
      all.push_back({prefix + node.name, [&part, node] { (part.*node.let)(); },
                     [&part, node] { (part.*node.bar)(); },
                     [&part, node] { return (part.*node.get)(); }});
    }
  };
  take("primary.", key.KGps(0), kGpsNodes);
  take("external.", key.KGps(1), kGpsNodes);
  take("secondary.", key.KGps(2), kGpsNodes);
  for (unsigned int i = 0; i < 8; ++i) {
    take("point" + std::to_string(i) + '.', key.KMeasurePt(i), kPointNodes);
  }
  take("", key.KMain(), kMainNodes);
  return all;
}

using Names = std::set<std::string>;

Names nodes_on(ComKey& key) {
  Names names;
  for (const Handle& node : handles(key)) {
    if (node.get()) names.insert(node.name);
  }
  return names;
}

// The same table with a row for each of the eight points.
std::map<std::string, Names> needs() {
  std::map<std::string, Names> table;
  const auto add = [&](const std::string& node, const std::string& others, int point) {
    const auto named = [&](const std::string& name) {
      return name.starts_with("point.") ? "point" + std::to_string(point) + name.substr(5) : name;
    };
    std::istringstream words(others);
    for (std::string other; words >> other;) table[named(node)].insert(named(other));
  };
  for (const auto& [node, others] : kNeeds) {
    for (int point = 0; point < (node.starts_with("point.") ? 8 : 1); ++point) {
      add(node, others, point);
    }
  }
  return table;
}

// All that `node` reaches, itself included, by walking the table.
void reach(const std::map<std::string, Names>& table, const std::string& node, Names& reached) {
  if (!reached.insert(node).second) return;
  const auto row = table.find(node);
  if (row == table.end()) return;
  for (const std::string& other : row->second) reach(table, other, reached);
}

const Names kAlways = {"Status", "System_Id", "Time"};

TEST(ComKey, has_its_nodes_and_its_146_edges) {
  ComKey key;
  EXPECT_EQ(handles(key).size(), 171U + 3 * 8 + 8 * 6);
  std::size_t edges = 0;
  for (const auto& [node, others] : kNeeds) {
    std::istringstream words(others);
    for (std::string other; words >> other;) ++edges;
  }
  EXPECT_EQ(edges, 146U);
}

TEST(ComKey, the_table_names_nodes_that_exist) {
  ComKey key;
  Names names;
  for (const Handle& node : handles(key)) names.insert(node.name);
  for (const auto& [node, others] : needs()) {
    EXPECT_TRUE(names.contains(node)) << node;
    for (const std::string& other : others) EXPECT_TRUE(names.contains(other)) << other;
  }
}

TEST(ComKey, is_on_throughout_when_fresh) {
  ComKey key;
  for (const Handle& node : handles(key)) EXPECT_TRUE(node.get()) << node.name;
}

TEST(ComKey, the_parts_are_on_when_fresh) {
  EXPECT_TRUE(ComKey::KeyGps().Get_Stats_Received());
  EXPECT_TRUE(ComKey::KeyMeasurePt().Get_Point());
  EXPECT_TRUE(ComKey::KeyMain().Get_LiDAR_options());
}

TEST(ComKey, reset_to_off_leaves_status_identity_and_time_on) {
  ComKey key;
  key.Reset(false);
  EXPECT_EQ(nodes_on(key), kAlways);
  key.PropagateKeyOr();
  EXPECT_EQ(nodes_on(key), kAlways) << "they need nothing";
}

TEST(ComKey, reset_to_on_turns_every_node_on) {
  ComKey key;
  key.Reset(false);
  key.Reset(true);
  for (const Handle& node : handles(key)) EXPECT_TRUE(node.get()) << node.name;
}

TEST(ComKey, each_node_is_turned_alone) {
  ComKey key;
  key.Reset(false);
  for (const Handle& node : handles(key)) {
    node.let();
    Names expected = kAlways;
    expected.insert(node.name);
    EXPECT_EQ(nodes_on(key), expected) << node.name;
    node.bar();
    EXPECT_FALSE(node.get()) << node.name;
    key.Reset(false);
  }
}

TEST(ComKey, each_node_turns_on_all_that_it_reaches_and_nothing_else) {
  const auto table = needs();
  ComKey key;
  for (const Handle& node : handles(key)) {
    key.Reset(false);
    node.let();
    key.PropagateKeyOr();
    Names expected;
    reach(table, node.name, expected);
    expected.insert(kAlways.begin(), kAlways.end());
    EXPECT_EQ(nodes_on(key), expected) << node.name;
  }
}

TEST(ComKey, two_wishes_add_up) {
  ComKey key;
  key.Reset(false);
  key.KMain().Let_Speed();
  key.KMain().Let_IsoAngPos();
  key.PropagateKeyOr();
  EXPECT_THAT(nodes_on(key), UnorderedElementsAre("Status", "System_Id", "Time", "Speed", "Vel",
                                                  "Vel_Accuracy", "IsoAngPos", "AngPos"));
}

TEST(ComKey, slip_needs_track_speed_velocity_and_attitude) {
  ComKey key;
  key.Reset(false);
  key.KMain().Let_Slip();
  key.PropagateKeyOr();
  EXPECT_THAT(nodes_on(key),
              UnorderedElementsAre("Status", "System_Id", "Time", "Slip", "Track", "Speed", "Vel",
                                   "Vel_Accuracy", "AngPos", "AngPos_Accuracy"));
}

TEST(ComKey, the_linear_chain_starts_from_the_earth_and_the_angular_one_from_the_vehicle) {
  ComKey key;
  key.Reset(false);
  key.KMain().Let_IsoVelEarth();
  key.KMain().Let_IsoAngVelVeh();
  key.PropagateKeyOr();
  EXPECT_FALSE(key.KMain().Get_IsoVelInter());
  EXPECT_FALSE(key.KMain().Get_IsoVelVeh());
  EXPECT_FALSE(key.KMain().Get_IsoAngVelInter());
  EXPECT_FALSE(key.KMain().Get_IsoAngVelEarth());

  key.KMain().Let_IsoVelVeh();
  key.KMain().Let_IsoAngVelEarth();
  key.PropagateKeyOr();
  EXPECT_TRUE(key.KMain().Get_IsoVelInter());
  EXPECT_TRUE(key.KMain().Get_IsoAngVelInter());
}

TEST(ComKey, a_measure_point_asks_for_nothing_of_another) {
  ComKey key;
  key.Reset(false);
  key.KMeasurePt(3).Let_Slip();
  key.PropagateKeyOr();
  EXPECT_TRUE(key.KMeasurePt(3).Get_Point());
  EXPECT_TRUE(key.KMain().Get_RemoteLeverArm());
  EXPECT_FALSE(key.KMain().Get_Slip());
  EXPECT_FALSE(key.KMeasurePt(2).Get_Point());
  EXPECT_FALSE(key.KMeasurePt(4).Get_Track());
}

TEST(ComKey, a_node_does_not_turn_on_what_needs_it) {
  ComKey key;
  key.Reset(false);
  key.KMain().Let_AngPos();
  key.PropagateKeyOr();
  EXPECT_FALSE(key.KMain().Get_IsoAngPos());
}

TEST(ComKey, an_odd_index_is_the_external_receiver_and_2_the_secondary) {
  ComKey key;
  key.Reset(false);
  key.KMain().Let_System_ProductModel();
  key.PropagateKeyOr();
  // The product needs the primary and the secondary receiver, and never the external one.
  EXPECT_TRUE(key.KGps(0).Get_System());
  EXPECT_FALSE(key.KGps(1).Get_System());
  EXPECT_TRUE(key.KGps(2).Get_System());
  EXPECT_TRUE(key.KGps(0).Get_System_Rate());
  EXPECT_FALSE(key.KGps(2).Get_System_Rate());

  EXPECT_EQ(&key.KGps(1), &key.KGps(3));
  EXPECT_EQ(&key.KGps(2), &key.KGps(4));
}

TEST(ComKey, nodes_can_be_bound_by_hand) {
  ComKey::Node node;
  ComKey::Node other;
  node.push(other);
  EXPECT_TRUE(node.get());
  node.set(false);
  EXPECT_FALSE(node.get());
  EXPECT_TRUE(other.get());
}

TEST(ComKey, a_const_key_can_be_asked) {
  ComKey key;
  key.KMeasurePt(7).Bar_Vel();
  key.KGps(2).Bar_Status();
  const ComKey& asked = key;
  EXPECT_FALSE(asked.KMeasurePt(7).Get_Vel());
  EXPECT_FALSE(asked.KGps(2).Get_Status());
  EXPECT_TRUE(asked.KMain().Get_Pos());
}

TEST(ComKey, tells_whenever_a_node_may_have_changed) {
  ComKey key;
  unsigned int seen = 0;
  const auto expect_change = [&](const char* what) {
    EXPECT_NE(key.changes(), seen) << what;
    seen = key.changes();
  };
  expect_change("never 0");
  key.Reset(false);
  expect_change("all nodes");
  key.KMain().Let_Speed();
  expect_change("a node of the main key");
  key.PropagateKeyOr();
  expect_change("what it needs");
  key.KGps(0).Let_System();
  expect_change("of the primary receiver");
  key.KGps(1).Let_System();
  expect_change("of the external one");
  key.KGps(2).Bar_System();
  expect_change("of the secondary one");
  key.KMeasurePt(7).Let_Slip();
  expect_change("of a measure point");
  EXPECT_TRUE(key.KMain().Get_Speed());
  EXPECT_EQ(key.changes(), seen) << "asking changes nothing";
}

}  // namespace
}  // namespace Trel::Nav::Test
