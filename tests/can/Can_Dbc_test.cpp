#include "can/Can_Dbc.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "can/Can_Builders.h"

namespace Trel::Can {
namespace {

using namespace std::string_literals;

constexpr const char* kPublicStyle =
    "VERSION \"1.2\"\r\n"
    "\r\n"
    "NS_ :\r\n"
    "\tCM_\r\n"
    "\tBA_DEF_\r\n"
    "\tSIG_VALTYPE_\r\n"
    "\r\n"
    "BS_:\r\n"
    "\r\n"
    "BU_: Chassis Engine\tDash \r\n"
    "VAL_TABLE_ Gears 1 \"first\" 0 \"none\" ;\r\n"
    "\r\n"
    "BO_ 512 Wheels: 8 Chassis\r\n"
    " SG_ Left : 0|16@1+ (0.01,0) [0|655.35] \"km/h\"  Dash\r\n"
    "\tSG_ Right : 16|16@1+ (0.01,0) [0|655.35] \"km/h\" Dash,Engine\r\n"
    "\r\n"
    "BO_ 2566834709 Engine_1: 8 Engine\r\n"
    " SG_ Mode M : 7|8@0+ (1,0) [0|3] \"\" Dash\r\n"
    " SG_ Torque m1 : 15|12@0- (1,-200) [-200|1000] \"Nm\" Dash\r\n"
    " SG_ Left : 40|8@1+ (1,0) [|] \"\" Vector__XXX\r\n"
    "\r\n"
    "BO_TX_BU_ 512 : Chassis,Engine;\r\n"
    "EV_ Env: 0 [0|1] \"\" 0 1 DUMMY_NODE_VECTOR0 Dash;\r\n"
    "CM_ \"the whole bus\";\r\n"
    "CM_ BU_ Engine \"a node\";\r\n"
    "CM_ BO_ 512 \"speeds of the wheels\";\r\n"
    "CM_ SG_ 512 Left \"front \"left\" wheel\";\r\n"
    "CM_ SG_ 2566834709 Torque \"runs over\r\n"
    "two lines\";\r\n"
    "BA_ \"Cycle\" BO_ 512 10;\r\n"
    "VAL_ 2566834709 Mode 1 \"on\" 0 \"off\" ;\r\n"
    "SIG_VALTYPE_ 512 Left : 1;\r\n";

std::vector<std::string> tags(const Dbc& dbc) {
  std::vector<std::string> result;
  for (const auto& signal : dbc.get_signals()) result.push_back(signal->get_tag());
  return result;
}
using Tags = std::vector<std::string>;

// A message, and signals of these lines in it.
std::string text_of(std::initializer_list<std::string_view> lines) {
  std::string text = "BO_ 1 M: 8 N\n";
  for (const std::string_view line : lines) text.append(line).push_back('\n');
  return text;
}

TEST(Dbc, a_database_of_the_public_style_is_read) {
  const Dbc dbc = database(kPublicStyle);
  EXPECT_EQ(dbc.get_instance().get_nodes(), "Chassis Engine Dash");
  ASSERT_EQ(dbc.get_instance().get_messages().size(), 2U);
  EXPECT_EQ(tags(dbc), (Tags{"Left", "Right", "Mode", "Torque", "Left.1"}));

  const Message* const wheels = dbc.get_message_by_mid(512);
  ASSERT_NE(wheels, nullptr);
  EXPECT_EQ(wheels->get_mix(), 0U);
  EXPECT_EQ(wheels->get_comment(), "speeds of the wheels");
  ASSERT_EQ(wheels->get_signals().size(), 2U);
  EXPECT_EQ(wheels->get_signals()[1]->get_receiver(), "Dash,Engine");

  const Message* const engine = dbc.get_message_by_mid(2566834709U);
  ASSERT_NE(engine, nullptr);
  EXPECT_EQ(engine->get_mix(), 1U);
  ASSERT_EQ(engine->get_signals().size(), 3U);
  EXPECT_EQ(engine->get_signals()[0]->get_mux_kind(), Signal::kMultiplexor);
  EXPECT_EQ(engine->get_signals()[1]->get_mux_value(), 1);
  EXPECT_EQ(engine->get_signals()[1]->get_message(), engine);
}

TEST(Dbc, a_signal_is_found_by_its_place) {
  const Dbc dbc = database(kPublicStyle);
  ASSERT_NE(dbc.get_signal_by_six(4), nullptr);
  EXPECT_EQ(dbc.get_signal_by_six(4)->get_tag(), "Left.1");
  EXPECT_EQ(dbc.get_signal_by_six(4)->get_six(), 4U);
  EXPECT_EQ(dbc.get_signal_by_six(4)->get_sid(), 4U);
  EXPECT_EQ(dbc.get_instance().get_signal_by_sid(4), dbc.get_signal_by_six(4));
  EXPECT_EQ(dbc.get_signal_by_six(5), nullptr);
  EXPECT_EQ(dbc.get_instance().get_signal_by_sid(5), nullptr);
  EXPECT_EQ(dbc.get_message_by_mid(513), nullptr);
}

TEST(Dbc, comments_reach_from_the_first_quote_to_the_last_on_one_line) {
  const Dbc dbc = database(kPublicStyle);
  EXPECT_EQ(dbc.get_signal_by_six(0)->get_comment(), "front \"left\" wheel");
  EXPECT_EQ(dbc.get_signal_by_six(3)->get_comment(), "");
}

TEST(Dbc, a_comment_belongs_to_the_signals_of_one_message) {
  const Dbc dbc = database(kPublicStyle);
  EXPECT_EQ(dbc.get_signal_by_six(4)->get_name(), "Left");
  EXPECT_EQ(dbc.get_signal_by_six(4)->get_comment(), "");
}

TEST(Dbc, a_comment_goes_to_each_signal_of_the_name_and_the_last_one_stands) {
  const Dbc dbc =
      database(text_of({"SG_ A : 0|8@1+ (1,0)", "SG_ B : 0|8@1+ (1,0)", "SG_ A : 8|8@1+ (1,0)",
                        "CM_ SG_ 1 A \"old\";", "CM_ SG_ 1 A \"new\";", "CM_ SG_ 1 A none;",
                        "CM_ SG_ 1 A \"open;", "CM_ SG_ 2 A \"absent\";"}));
  EXPECT_EQ(dbc.get_signal_by_six(0)->get_comment(), "new");
  EXPECT_EQ(dbc.get_signal_by_six(1)->get_comment(), "");
  EXPECT_EQ(dbc.get_signal_by_six(2)->get_comment(), "new");
}

TEST(Dbc, a_comment_may_stand_ahead_of_what_it_describes) {
  const Dbc dbc =
      database("CM_ BO_ 1 \"m\";\nCM_ SG_ 1 A \"a\";\n" + text_of({"SG_ A : 0|8@1+ (1,0)"}));
  EXPECT_EQ(dbc.get_message_by_mid(1)->get_comment(), "m");
  EXPECT_EQ(dbc.get_signal_by_six(0)->get_comment(), "a");
}

TEST(Dbc, a_comment_over_several_lines_leaves_lines_read_as_statements) {
  const Dbc dbc = database(text_of({"CM_ BO_ 1 \"one", "BO_ 2 Hidden: 8 N", "two\";"}));
  EXPECT_EQ(dbc.get_message_by_mid(1)->get_comment(), "");
  EXPECT_NE(dbc.get_message_by_mid(2), nullptr);
}

TEST(Dbc, an_empty_comment_replaces_one) {
  const Dbc dbc = database(text_of({"CM_ BO_ 1 \"old\";", "CM_ BO_ 1 \"\";"}));
  EXPECT_EQ(dbc.get_message_by_mid(1)->get_comment(), "");
}

TEST(Dbc, two_signals_of_one_name_differ_in_their_tags) {
  const Dbc dbc = database(
      "BO_ 1 M: 8 N\nSG_ A : 0|8@1+ (1,0)\nSG_ A : 0|8@1+ (1,0)\n"
      "BO_ 2 M: 8 N\nSG_ A : 0|8@1+ (1,0)\n");
  EXPECT_EQ(tags(dbc), (Tags{"A", "A.1", "A.2"}));
  EXPECT_EQ(dbc.get_instance().get_messages()[1]->get_tag(), "M.1");
}

TEST(Dbc, the_second_message_of_an_identifier_is_dropped_with_its_signals) {
  const Dbc dbc = database(
      "BO_ 1 M: 8 N\nSG_ A : 0|8@1+ (1,0)\nBO_ 1 Again: 8 N\nSG_ B : 0|8@1+ (1,0)\n"
      "BO_ 2 Next: 8 N\nSG_ C : 0|8@1+ (1,0)\n");
  EXPECT_EQ(tags(dbc), (Tags{"A", "C"}));
  EXPECT_EQ(dbc.get_message_by_mid(1)->get_name(), "M");
}

TEST(Dbc, signals_under_a_bad_message_are_skipped) {
  const Dbc dbc = database(
      "SG_ Early : 0|8@1+ (1,0)\nBO_ 1 M: 8 N\nSG_ A : 0|8@1+ (1,0)\nBO_ x Bad: 8 N\n"
      "SG_ B : 0|8@1+ (1,0)\n");
  EXPECT_EQ(tags(dbc), (Tags{"A"}));
}

TEST(Dbc, a_bad_signal_is_dropped_alone) {
  const Dbc dbc = database(
      text_of({"SG_ A : 0|8@1+ (1,0)", "SG_ Bad : 512|8@1+ (1,0)", "SG_ B : 0|8@1+ (1,0)"}));
  EXPECT_EQ(tags(dbc), (Tags{"A", "B"}));
}

TEST(Dbc, statements_between_a_message_and_its_signals_do_not_part_them) {
  const Dbc dbc = database(text_of({"NS_ :", "", "BU_: X", "SG_ A : 0|8@1+ (1,0)"}));
  EXPECT_EQ(tags(dbc), (Tags{"A"}));
}

TEST(Dbc, keywords_must_be_whole_words) {
  const Dbc dbc =
      database(text_of({"SG_A : 0|8@1+ (1,0)", "SG_MUL_VAL_ 1 A B 0-1;", "BO_TX_BU_ 2 X : A;",
                        "BO_2 X : 8 A", "XSG_ A : 0|8@1+ (1,0)", "CM_X BO_ 1 \"x\";"}));
  EXPECT_EQ(dbc.get_instance().get_messages().size(), 1U);
  EXPECT_EQ(tags(dbc), Tags{});
  EXPECT_EQ(dbc.get_message_by_mid(1)->get_comment(), "");
}

TEST(Dbc, nodes_may_follow_their_colon_at_once_but_not_a_space_ahead_of_it) {
  EXPECT_EQ(database("BU_:A B").get_instance().get_nodes(), "A B");
  EXPECT_EQ(database("BU_: A\nBU_:\t B \t\n").get_instance().get_nodes(), "B");
  EXPECT_EQ(database("BU_ : A").get_instance().get_nodes(), "");
}

TEST(Dbc, every_line_end_ends_a_line) {
  for (const char* end : {"\n", "\r", "\r\n", "\n\r", "\n\n\n"}) {
    const std::string text = std::string("BO_ 1 M: 8 N") + end + "SG_ A : 0|8@1+ (1,0)" + end +
                             "\t  SG_ B : 0|8@1+ (1,0)";
    EXPECT_EQ(tags(database(text)), (Tags{"A", "B"}));
  }
}

TEST(Dbc, control_bytes_become_question_marks_and_high_bytes_stay) {
  const std::string line = "SG_ \x01\x1F\x7F\x80\xFF : 0|8@1+ (1,0) [0|1] \"a\0b\" C"s;
  const Dbc dbc = database(text_of({line}));
  ASSERT_EQ(dbc.get_signals().size(), 1U);
  EXPECT_EQ(dbc.get_signal_by_six(0)->get_name(), "??\x7F\x80\xFF");
  EXPECT_EQ(dbc.get_signal_by_six(0)->get_unit(), "a?b");
}

TEST(Dbc, a_zero_byte_does_not_end_a_line) {
  const std::string text = "BO_ 1 M: 8 N\0\nSG_ A : 0|8@1+ (1,0)"s;
  const Dbc dbc = database(text);
  ASSERT_NE(dbc.get_message_by_mid(1), nullptr);
  EXPECT_EQ(dbc.get_message_by_mid(1)->get_sender(), "N?");
}

TEST(Dbc, the_text_is_kept_as_it_came_with_a_zero_behind) {
  EXPECT_EQ(database("BU_:\tA\r\n").get_text(), "BU_:\tA\r\n\0"s);
}

TEST(Dbc, no_text_is_an_empty_database) {
  Dbc dbc = database(kPublicStyle);
  dbc.configure({});
  EXPECT_TRUE(dbc.get_signals().empty());
  EXPECT_TRUE(dbc.get_instance().get_messages().empty());
  EXPECT_EQ(dbc.get_message_by_mid(512), nullptr);
  EXPECT_EQ(dbc.get_instance().get_nodes(), "");
}

TEST(Dbc, a_database_can_be_read_anew) {
  Dbc dbc = database(kPublicStyle);
  dbc.configure(bytes_of(kPublicStyle));
  EXPECT_EQ(tags(dbc), (Tags{"Left", "Right", "Mode", "Torque", "Left.1"}));
  EXPECT_EQ(dbc.get_signal_by_six(0)->get_sid(), 0U);
}

TEST(Dbc, the_1025th_message_is_left_out_with_its_signals) {
  std::string text;
  for (int mid = 0; mid < 1030; ++mid) {
    text += "BO_ " + std::to_string(7919 * mid) + " M: 8 N\nSG_ A : 0|8@1+ (1,0)\n";
  }
  const Dbc dbc = database(text);
  EXPECT_EQ(dbc.get_instance().get_messages().size(), 1024U);
  EXPECT_EQ(dbc.get_signals().size(), 1024U);
  ASSERT_NE(dbc.get_message_by_mid(7919 * 1023), nullptr);
  EXPECT_EQ(dbc.get_message_by_mid(7919 * 1023)->get_tag(), "M.1023");
  EXPECT_EQ(dbc.get_message_by_mid(7919 * 1024), nullptr);
}

TEST(Dbc, the_16385th_signal_is_left_out) {
  std::string text = "BO_ 1 M: 8 N\n";
  for (int at = 0; at < 16390; ++at) text += "SG_ A : 0|8@1+ (1,0)\n";
  const Dbc dbc = database(text);
  EXPECT_EQ(dbc.get_signals().size(), 16384U);
  EXPECT_EQ(dbc.get_signals().back()->get_tag(), "A.16383");
}

TEST(Instance, a_signal_without_a_message_is_refused) {
  Instance instance;
  EXPECT_FALSE(instance.add_signal(signal("SG_ A : 0|8@1+ (1,0)")));
  EXPECT_TRUE(instance.get_signals().empty());
}

TEST(Dbc, pointers_stay_good_when_it_is_moved) {
  Dbc dbc = database(kPublicStyle);
  const Signal* const first = dbc.get_signal_by_six(0);
  const Dbc moved = std::move(dbc);
  EXPECT_EQ(moved.get_signal_by_six(0), first);
  EXPECT_EQ(moved.get_message_by_mid(512)->get_signals()[0], first);
}

// Ten megabytes each. Work that grows with the square of the size would take minutes.
std::string repeated(std::string_view line) {
  std::string text = "BO_ 1 M: 8 N\n";
  while (text.size() < 10'000'000) text += line;
  return text;
}

TEST(DbcSize, many_signals_of_one_name) {
  EXPECT_EQ(database(repeated("SG_ A:0|8@1+(1,0)\n")).get_signals().size(), 16384U);
}

TEST(DbcSize, many_comments_on_many_signals_of_one_name) {
  std::string text = "BO_ 1 M: 8 N\n";
  for (int at = 0; at < 16384; ++at) text += "SG_ A : 0|8@1+ (1,0)\n";
  while (text.size() < 10'000'000) text += "CM_ SG_ 1 A \"x\";\n";
  text += "CM_ SG_ 1 A \"" + std::string(1'000'000, 'y') + "\";\n";
  EXPECT_EQ(database(text).get_signal_by_six(16383)->get_comment().size(), 1'000'000U);
}

TEST(DbcSize, many_messages_of_one_identifier) {
  EXPECT_EQ(database(repeated("BO_ 1 M: 8 N\n")).get_instance().get_messages().size(), 1U);
}

TEST(DbcSize, lines_of_nothing_but_one_character) {
  for (const char character : std::string(" \n\t\"_:([|@\x01\xFF")) {
    EXPECT_TRUE(database(std::string(1'000'000, character)).get_signals().empty());
    const std::string inside(1'000'000, character);
    const Dbc dbc = database("BO_ 1 M: 8 N\nSG_ A : 0|8@1+ (1,0) [0|1] " + inside + " \"u\" B\n");
    EXPECT_EQ(dbc.get_signals().size(), 1U);
  }
}

TEST(DbcSize, one_line_of_ten_megabytes) {
  const std::string digits(5'000'000, '7');
  const Dbc dbc =
      database(text_of({"SG_ " + std::string(5'000'000, 'n') + " : 0|8@1+ (" + digits + ",0)"}));
  ASSERT_EQ(dbc.get_signals().size(), 1U);
  EXPECT_EQ(dbc.get_signal_by_six(0)->get_name().size(), 5'000'000U);
  EXPECT_EQ(dbc.get_signal_by_six(0)->get_factor().get_unsigned(), 0U);
}

TEST(DbcDamage, any_byte_of_the_text_can_be_any_other) {
  constexpr unsigned int kSeed = 20260806;
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  std::mt19937 random(kSeed);
  const std::string whole(kPublicStyle);
  for (int round = 0; round < 3000; ++round) {
    std::string text = whole.substr(0, random() % (whole.size() + 1));
    for (unsigned int flips = random() % 8; flips > 0 && !text.empty(); --flips) {
      text[random() % text.size()] = static_cast<char>(random());
    }
    const Dbc dbc = database(text);
    ASSERT_LE(dbc.get_signals().size(), 5U);
    for (const auto& signal : dbc.get_signals()) {
      ASSERT_FALSE(signal->get_name().empty());
      ASSERT_NE(signal->get_message(), nullptr);
    }
  }
}

}  // namespace
}  // namespace Trel::Can
