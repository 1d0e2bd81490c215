#include "rng/Rng_ComKey.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace Trel::Rng::Test {
namespace {

using testing::ContainerEq;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

using Names = std::set<std::string>;

// A node of a part of a key: its name and its three functions.
template <class Part>
struct Node {
  const char* name;
  void (Part::*let)();
  void (Part::*bar)();
  bool (Part::*get)() const;
};

#define NODE(part, node) \
  {#node, &ComKey::part::Let_##node, &ComKey::part::Bar_##node, &ComKey::part::Get_##node},
constexpr Node<ComKey::KeyWrap> kWrapNodes[] = {
#define WRAP(node) NODE(KeyWrap, node)
#include "rng/Rng_ComKey.def"
};
constexpr Node<ComKey::KeyTarget> kTargetNodes[] = {
#define TARGET(node) NODE(KeyTarget, node)
#include "rng/Rng_ComKey.def"
};
constexpr Node<ComKey::KeyMain> kMainNodes[] = {
#define MAIN(node) NODE(KeyMain, node)
#include "rng/Rng_ComKey.def"
};
#undef NODE

// One node of a whole key.
struct Handle {
  std::string name;
  std::function<void()> let;
  std::function<void()> bar;
  std::function<bool()> get;
};

template <class Part, std::size_t count>
void add_handles(std::vector<Handle>& all, const Node<Part> (&nodes)[count], Part& part,
                 const std::string& prefix) {
  for (const Node<Part>& node : nodes) {
    all.push_back({prefix + node.name, [&part, &node] { (part.*node.let)(); },
                   [&part, &node] { (part.*node.bar)(); },
                   [&part, &node] { return (part.*node.get)(); }});
  }
}

std::string numbered(const std::string& owner, unsigned int index) {
  return owner + std::to_string(index) + '.';
}

std::vector<Handle> handles(ComKey& key) {
  std::vector<Handle> all;
  for (unsigned int i = 0; i < ComKey::kWraps; ++i) {
    add_handles(all, kWrapNodes, key.KWrap(i), numbered("wrap", i));
  }
  for (unsigned int i = 0; i < ComKey::kTargets; ++i) {
    add_handles(all, kTargetNodes, key.KTarget(i), numbered("target", i));
  }
  add_handles(all, kMainNodes, key.KMain(), "");
  return all;
}

Names nodes_on(ComKey& key) {
  Names names;
  for (const Handle& node : handles(key)) {
    if (node.get()) names.insert(node.name);
  }
  return names;
}

// A line of the table of children.
struct Line {
  const char* node;
  std::string owner;
  const char* child;
};

const Line kTargetLines[] = {
#define TARGET_CHILD(node, owner, child) {#node, #owner, #child},
#include "rng/Rng_ComKey.def"
};
const Line kMainLines[] = {
#define MAIN_CHILD(node, owner, child) {#node, #owner, #child},
#include "rng/Rng_ComKey.def"
};

// What a line names; `own` is the target whose line it is.
Names below(const Line& line, const std::string& own) {
  if (line.owner == "own") return {own + line.child};
  if (line.owner == "main") return {line.child};
  Names names;
  for (unsigned int i = 0; i < (line.owner == "target" ? 4U : 8U); ++i) {
    names.insert(numbered(line.owner, i) + line.child);
  }
  return names;
}

// The children of each node, by name, as the table lists them.
std::map<std::string, Names> children() {
  std::map<std::string, Names> table;
  for (unsigned int i = 0; i < ComKey::kTargets; ++i) {
    const std::string own = numbered("target", i);
    for (const Line& line : kTargetLines) table[own + line.node].merge(below(line, own));
  }
  for (const Line& line : kMainLines) table[line.node].merge(below(line, ""));
  return table;
}

// All that `node` reaches, itself included, by walking the table.
void reach(const std::map<std::string, Names>& table, const std::string& node, Names& reached) {
  if (!reached.insert(node).second) return;
  const auto row = table.find(node);
  if (row == table.end()) return;
  for (const std::string& child : row->second) reach(table, child, reached);
}

// What is on after letting one node and its children.
Names brought_by(const std::function<void(ComKey&)>& let) {
  ComKey key;
  key.Reset(false);
  let(key);
  key.PropagateKeyOr();
  return nodes_on(key);
}

TEST(ComKey, is_on_throughout_when_fresh) {
  ComKey key;
  for (const Handle& node : handles(key)) EXPECT_TRUE(node.get()) << node.name;
}

TEST(ComKey, reset_sets_every_node) {
  ComKey key;
  key.Reset(false);
  EXPECT_THAT(nodes_on(key), IsEmpty());
  key.PropagateKeyOr();
  EXPECT_THAT(nodes_on(key), IsEmpty()) << "what is off brings nothing";
  key.Reset(true);
  EXPECT_EQ(nodes_on(key).size(), handles(key).size());
}

TEST(ComKey, each_node_is_turned_alone) {
  ComKey key;
  key.Reset(false);
  for (const Handle& node : handles(key)) {
    node.let();
    EXPECT_THAT(nodes_on(key), ContainerEq(Names{node.name}));
    node.bar();
    EXPECT_THAT(nodes_on(key), IsEmpty()) << node.name;
  }
}

TEST(ComKey, each_node_brings_all_below_it_and_nothing_else) {
  const auto table = children();
  ComKey key;
  Names names;
  for (const Handle& node : handles(key)) {
    key.Reset(false);
    node.let();
    key.PropagateKeyOr();
    Names expected;
    reach(table, node.name, expected);
    EXPECT_THAT(nodes_on(key), ContainerEq(expected)) << node.name;
    names.insert(node.name);
  }
  for (const auto& [node, below] : table) {
    EXPECT_TRUE(names.contains(node)) << node;
    for (const std::string& child : below) EXPECT_TRUE(names.contains(child)) << child;
  }
}

TEST(ComKey, two_wishes_add_up_and_stay) {
  ComKey key;
  key.Reset(false);
  key.KMain().Let_Time_Week();
  key.KTarget(1).Let_Iso_Range();
  key.PropagateKeyOr();
  const auto expected =
      UnorderedElementsAre("Time_Week", "Time", "target1.Iso_Range", "target1.General_Range");
  EXPECT_THAT(nodes_on(key), expected);
  key.PropagateKeyOr();
  EXPECT_THAT(nodes_on(key), expected);
}

TEST(ComKey, the_groups_of_time_stand_alone) {
  EXPECT_THAT(brought_by([](ComKey& key) { key.KMain().Let_Time(); }),
              UnorderedElementsAre("Time"));
  EXPECT_THAT(brought_by([](ComKey& key) { key.KMain().Let_Time_Relative(); }),
              UnorderedElementsAre("Time_Relative", "Time"));
  EXPECT_THAT(brought_by([](ComKey& key) { key.KMain().Let_Time_Utc(); }),
              UnorderedElementsAre("Time_Utc"));
}

TEST(ComKey, a_target_brings_groups_of_the_hunter_and_none_of_other_targets) {
  const Names on = brought_by([](ComKey& key) { key.KTarget(2).Let_Hunter2Target(); });
  EXPECT_THAT(
      on, testing::IsSupersetOf({"target2.Hunter2Target", "target2.Attitude", "Hunter_Attitude"}));
  for (const std::string& name : on) {
    EXPECT_TRUE(!name.starts_with("target") || name.starts_with("target2.")) << name;
  }
}

TEST(ComKey, a_chain_is_followed_to_its_end) {
  // From the ISO form by way of the local frame down to what the packets tell.
  EXPECT_THAT(brought_by([](ComKey& key) { key.KTarget(0).Let_Iso_Nearest(); }),
              testing::IsSupersetOf({"target0.Range_Nearest_Pos", "target0.Range_Nearest",
                                     "target0.Local_Polygon", "target0.Config_Polygon",
                                     "target0.Local_PolygonOrigin", "Hunter_Local_Polygon",
                                     "Hunter_Config_Polygon", "Hunter_Local_PolygonOrigin"}));
}

TEST(ComKey, the_number_of_a_source_needs_all_sources) {
  const auto sources = testing::IsSupersetOf({"wrap0.General", "wrap7.General"});
  EXPECT_THAT(brought_by([](ComKey& key) { key.KMain().Let_Hunter_General_Source(); }), sources);
  EXPECT_THAT(brought_by([](ComKey& key) { key.KTarget(3).Let_General_Source(); }), sources);
}

TEST(ComKey, a_child_does_not_bring_what_it_belongs_to) {
  EXPECT_THAT(brought_by([](ComKey& key) { key.KTarget(0).Let_General_Range(); }),
              UnorderedElementsAre("target0.General_Range"));
}

// The groups that tell who measures what, and how well.
Names general_groups() {
  Names names = {"General",
                 "General_Range",
                 "General_Command",
                 "Time",
                 "Time_Relative",
                 "Time_Week",
                 "Time_Utc",
                 "Trig_General",
                 "System_Product",
                 "System_Id",
                 "System_Os",
                 "System_Cpu",
                 "Hunter_General_Latency",
                 "Hunter_General_PosMode",
                 "Hunter_General_Source",
                 "Hunter_General_Targets",
                 "Hunter_General_Received",
                 "Lane_General"};
  for (int wrap = 0; wrap < 8; ++wrap) names.insert("wrap" + std::to_string(wrap) + ".General");
  for (int target = 0; target < 4; ++target) {
    for (const char* group :
         {"General", "General_Mode", "General_Latency", "General_PosMode", "General_Source",
          "General_MeasPlane", "General_Wireless", "General_Range"}) {
      names.insert("target" + std::to_string(target) + '.' + group);
    }
  }
  return names;
}

TEST(ComKey, level_0_and_below_decode_nothing) {
  for (const int level : {0, -1, -1000}) {
    ComKey key;
    key.DecodeLevel(level);
    EXPECT_THAT(nodes_on(key), IsEmpty()) << level;
  }
}

TEST(ComKey, levels_1_to_9_decode_the_general_groups_alone) {
  for (const int level : {1, 2, 9}) {
    ComKey key;
    key.DecodeLevel(level);
    EXPECT_THAT(nodes_on(key), ContainerEq(general_groups())) << level;
  }
}

TEST(ComKey, level_10_and_above_decode_everything) {
  for (const int level : {10, 11, 1000}) {
    ComKey key;
    key.Reset(false);
    key.DecodeLevel(level);
    EXPECT_EQ(nodes_on(key).size(), handles(key).size()) << level;
  }
}

}  // namespace
}  // namespace Trel::Rng::Test
