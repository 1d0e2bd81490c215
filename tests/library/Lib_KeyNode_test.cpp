#include "library/Lib_KeyNode.h"

#include <gtest/gtest.h>

namespace Trel::Lib::Test {
namespace {

// A part with one node, whose functions the macros make.
class Part : public KeyPart {
 public:
  TREL_KEY_FUNCTIONS(Only)
  TREL_KEY_NODE(Only)
};

// The first needs the second, the second the third; the fourth needs the first.
class KeyGraphs : public testing::Test {
 protected:
  KeyGraphs() {
    graph_.connect(first_, second_);
    graph_.connect(second_, third_);
    graph_.connect(fourth_, first_);
    for (KeyNode* node : {&first_, &second_, &third_, &fourth_}) node->set(false);
  }

  KeyNode first_;
  KeyNode second_;
  KeyNode third_;
  KeyNode fourth_;
  KeyGraph graph_;
};

TEST(KeyNode, is_on_until_it_is_turned_off) {
  KeyNode node;
  EXPECT_TRUE(node.get());
  node.set(false);
  EXPECT_FALSE(node.get());
}

TEST_F(KeyGraphs, turn_on_what_a_node_needs_by_way_of_others_too) {
  first_.set(true);
  graph_.propagate();
  EXPECT_TRUE(first_.get() && second_.get() && third_.get());
  EXPECT_FALSE(fourth_.get()) << "it is not needed, it needs";
}

TEST_F(KeyGraphs, turn_on_nothing_while_all_is_off) {
  graph_.propagate();
  EXPECT_FALSE(first_.get() || second_.get() || third_.get() || fourth_.get());
}

// Connected last, it stands behind those that it turns on.
TEST_F(KeyGraphs, do_not_depend_on_the_order_of_connection) {
  fourth_.set(true);
  graph_.propagate();
  EXPECT_TRUE(first_.get() && second_.get() && third_.get());
}

TEST_F(KeyGraphs, come_to_an_end_where_nodes_need_each_other) {
  graph_.connect(third_, first_);
  second_.set(true);
  graph_.propagate();
  EXPECT_TRUE(first_.get() && second_.get() && third_.get());
}

TEST(KeyPart, counts_each_turn_of_a_node_once_it_has_been_told_where) {
  Part part;
  part.Bar_Only();
  EXPECT_FALSE(part.Get_Only());
  unsigned int changes = 7;
  part.count_changes(changes);
  part.Let_Only();
  EXPECT_TRUE(part.Get_Only());
  EXPECT_EQ(changes, 8u);
  part.Bar_Only();
  EXPECT_EQ(changes, 9u);
}

}  // namespace
}  // namespace Trel::Lib::Test
