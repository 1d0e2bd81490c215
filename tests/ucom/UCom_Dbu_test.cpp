#include "ucom/UCom_Dbu.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <span>
#include <string>
#include <vector>

#include "ucom/UCom_Recursive.h"
#include "ucom/UCom_TestDocument.h"

namespace Trel::UCom {
namespace {

using nlohmann::json;
using testing::ElementsAre;
using testing::Key;
using testing::UnorderedElementsAre;
using namespace Enum;

Dbu configured(const json& source) {
  Dbu dbu;
  dbu.configure(source);
  return dbu;
}

// The layout of a signal entry with `keys`.
SignalBasic basic(const std::string& keys) {
  const json array = json::parse(R"([{"ID":10)" + (keys.empty() ? "" : "," + keys) + "}]");
  RecursiveSignals lookup;
  lookup.import(array);
  return lookup.get_basic(10);
}

bool has_signal(const std::string& keys) {
  return configured(one_signal(keys)).find_signal(10) != nullptr;
}

std::vector<sid_t> sids(std::span<const Signal* const> signals) {
  std::vector<sid_t> result;
  for (const Signal* signal : signals) result.push_back(signal->get_sid());
  return result;
}

std::vector<std::vector<sid_t>> sids_of_runs(const std::vector<SignalRun>& runs) {
  std::vector<std::vector<sid_t>> result;
  for (const SignalRun run : runs) result.push_back(sids(run));
  return result;
}

TEST(UComDbu, a_document_needs_all_three_keys_with_their_types) {
  const json good = one_signal("");
  EXPECT_EQ(configured(good).get_signals().size(), 1u);
  for (const char* key : {"V", "M", "S"}) {
    json missing = good;
    missing.erase(key);
    EXPECT_TRUE(configured(missing).get_signals().empty()) << key;
    json wrong = good;
    wrong[key] = "1";
    EXPECT_TRUE(configured(wrong).get_signals().empty()) << key;
  }
  json real_version = good;
  real_version["V"] = 1.0;
  EXPECT_TRUE(configured(real_version).get_signals().empty());
  EXPECT_TRUE(configured(json::array({1, 2})).get_signals().empty());
  EXPECT_TRUE(configured(json()).get_signals().empty());
}

TEST(UComDbu, another_version_gives_an_empty_database) {
  for (const int version : {2, 0, -1}) {
    json source = one_signal("");
    source["V"] = version;
    const Dbu dbu = configured(source);
    EXPECT_TRUE(dbu.get_signals().empty());
    EXPECT_EQ(dbu.find_signal(10), nullptr);
    EXPECT_EQ(dbu.get_message_by_mid(1), nullptr);
  }
}

TEST(UComDbu, configuring_again_replaces_the_content) {
  Dbu dbu = configured(one_signal(""));
  dbu.configure(document(R"({"ID":2,"BS":[20,21]})", R"({"ID":20},{"ID":21})"));
  EXPECT_THAT(sids(dbu.get_signals()), ElementsAre(20, 21));
  EXPECT_EQ(dbu.get_message_by_mid(1), nullptr);
  dbu.configure(json());
  EXPECT_TRUE(dbu.get_signals().empty());
}

TEST(UComDbu, nothing_refers_to_the_document_after_configuring) {
  Dbu dbu;
  {
    const json source = document(R"({"ID":1,"DN":"message","DC":"about it","BS":[10]})",
                                 R"({"ID":10,"DN":"name","DU":"m/s","DC":"comment"})");
    dbu.configure(source);
  }
  const Signal* signal = dbu.get_signal_by_six(0);
  EXPECT_EQ(signal->get_name(), "name");
  EXPECT_EQ(signal->get_unit(), "m/s");
  EXPECT_EQ(signal->get_comment(), "comment");
  EXPECT_EQ(dbu.get_message_by_mid(1)->get_name(), "message");
  EXPECT_EQ(dbu.get_message_by_mid(1)->get_comment(), "about it");
}

TEST(UComDbu, texts_that_are_absent_or_no_strings_are_empty) {
  const Dbu dbu = configured(one_signal(R"("DN":5,"DU":null)"));
  const Signal* signal = dbu.get_signal_by_six(0);
  EXPECT_EQ(signal->get_name(), "");
  EXPECT_EQ(signal->get_unit(), "");
  EXPECT_EQ(signal->get_comment(), "");
}

TEST(UComDbu, an_entry_without_layout_keys_is_an_int32_at_the_start) {
  const SignalBasic layout = basic("");
  EXPECT_EQ(layout.sid, 10u);
  EXPECT_EQ(layout.bit_type, BASIC_TYPE_int32_t);
  EXPECT_EQ(layout.mea_type, BASIC_TYPE_int32_t);
  EXPECT_EQ(layout.bit_size, 32u);
  EXPECT_EQ(layout.bit_offset, 0u);
}

TEST(UComDbu, an_entry_without_a_bit_type_stays_int32_whatever_its_size) {
  EXPECT_EQ(basic(R"("BS":64)").bit_type, BASIC_TYPE_int32_t);
  EXPECT_EQ(basic(R"("BS":64)").bit_size, 64u);
  EXPECT_EQ(basic(R"("BS":8)").bit_type, BASIC_TYPE_int32_t);
}

TEST(UComDbu, a_bit_type_B_is_one_bit_whatever_its_size) {
  for (const char* keys : {R"("BT":"B")", R"("BT":"b","BS":8)", R"("BT":"b","BS":65536)"}) {
    EXPECT_EQ(basic(keys).bit_type, BASIC_TYPE_bool) << keys;
    EXPECT_EQ(basic(keys).bit_size, 1u) << keys;
  }
}

TEST(UComDbu, the_bit_type_comes_from_letter_and_size) {
  struct Case {
    const char* letter;
    int size;
    BASIC_TYPE type;
  };
  const std::vector<Case> cases{{"R", 1, BASIC_TYPE_UNKNOWN},   {"R", 16, BASIC_TYPE_UNKNOWN},
                                {"R", 17, BASIC_TYPE_float},    {"R", 32, BASIC_TYPE_float},
                                {"R", 33, BASIC_TYPE_double},   {"R", 64, BASIC_TYPE_double},
                                {"R", 65, BASIC_TYPE_UNKNOWN},  {"S", 1, BASIC_TYPE_int8_t},
                                {"S", 8, BASIC_TYPE_int8_t},    {"S", 9, BASIC_TYPE_int16_t},
                                {"S", 16, BASIC_TYPE_int16_t},  {"S", 17, BASIC_TYPE_int32_t},
                                {"S", 32, BASIC_TYPE_int32_t},  {"S", 33, BASIC_TYPE_int64_t},
                                {"S", 64, BASIC_TYPE_int64_t},  {"S", 65, BASIC_TYPE_UNKNOWN},
                                {"U", 1, BASIC_TYPE_uint8_t},   {"U", 8, BASIC_TYPE_uint8_t},
                                {"U", 9, BASIC_TYPE_uint16_t},  {"U", 16, BASIC_TYPE_uint16_t},
                                {"U", 17, BASIC_TYPE_uint32_t}, {"U", 32, BASIC_TYPE_uint32_t},
                                {"U", 33, BASIC_TYPE_uint64_t}, {"U", 64, BASIC_TYPE_uint64_t},
                                {"U", 65, BASIC_TYPE_UNKNOWN},  {"s", 8, BASIC_TYPE_int8_t},
                                {"u", 8, BASIC_TYPE_uint8_t},   {"r", 32, BASIC_TYPE_float}};
  for (const Case& row : cases) {
    const std::string keys =
        std::string(R"("BT":")") + row.letter + R"(","BS":)" + std::to_string(row.size);
    EXPECT_EQ(basic(keys).bit_type, row.type) << keys;
    EXPECT_EQ(basic(keys).mea_type, row.type) << keys;
  }
}

TEST(UComDbu, a_real_without_a_size_is_a_float_of_32_bits) {
  EXPECT_EQ(basic(R"("BT":"R")").bit_type, BASIC_TYPE_float);
  EXPECT_EQ(basic(R"("BT":"R")").bit_size, 32u);
}

TEST(UComDbu, an_unknown_bit_type_drops_the_signal) {
  for (const char* text : {"X", "", "S8", "BB", " S", "\u0131"}) {
    EXPECT_FALSE(has_signal(std::string(R"("BT":")") + text + "\"")) << text;
  }
}

TEST(UComDbu, measurement_types_go_by_name_in_either_case) {
  struct Case {
    const char* name;
    BASIC_TYPE type;
  };
  const std::vector<Case> cases{
      {"B", BASIC_TYPE_bool},       {"R32", BASIC_TYPE_float},    {"R64", BASIC_TYPE_double},
      {"S8", BASIC_TYPE_int8_t},    {"S16", BASIC_TYPE_int16_t},  {"S32", BASIC_TYPE_int32_t},
      {"S64", BASIC_TYPE_int64_t},  {"U8", BASIC_TYPE_uint8_t},   {"U16", BASIC_TYPE_uint16_t},
      {"U32", BASIC_TYPE_uint32_t}, {"U64", BASIC_TYPE_uint64_t}, {"r64", BASIC_TYPE_double},
      {"s8", BASIC_TYPE_int8_t},    {"b", BASIC_TYPE_bool}};
  for (const Case& row : cases) {
    EXPECT_EQ(basic(std::string(R"("MT":")") + row.name + "\"").mea_type, row.type) << row.name;
  }
}

TEST(UComDbu, an_unknown_measurement_type_drops_the_signal) {
  for (const char* text : {"S", "R", "S24", "", "double"}) {
    EXPECT_FALSE(has_signal(std::string(R"("MT":")") + text + "\"")) << text;
  }
}

TEST(UComDbu, offsets_end_at_65535) {
  EXPECT_EQ(basic(R"("BO":65535)").bit_offset, 65535u);
  EXPECT_FALSE(has_signal(R"("BO":65536)"));
  EXPECT_FALSE(has_signal(R"("BO":4294967296)"));  // 2^32 is not cut to 0
  EXPECT_FALSE(has_signal(R"("BO":18446744073709551615)"));
}

TEST(UComDbu, sizes_go_from_1_to_65536) {
  EXPECT_TRUE(has_signal(R"("BS":1)"));
  EXPECT_TRUE(has_signal(R"("BS":65536)"));
  EXPECT_FALSE(has_signal(R"("BS":0)"));
  EXPECT_FALSE(has_signal(R"("BS":65537)"));
  EXPECT_FALSE(has_signal(R"("BS":4294967304)"));  // 2^32 + 8
  EXPECT_FALSE(has_signal(R"("BT":"B","BS":0)"));  // the size is looked at first
}

TEST(UComDbu, a_failed_layout_is_as_fresh) {
  for (const char* keys : {R"("BO":65536,"BS":8)", R"("BO":8,"BS":0)", R"("BO":8,"BT":"X")",
                           R"("BO":8,"BT":"R","BS":16)", R"("BO":8,"BT":"S","BS":16,"MT":"X")"}) {
    const SignalBasic layout = basic(keys);
    EXPECT_EQ(layout.sid, 10u) << keys;
    EXPECT_EQ(layout.bit_type, BASIC_TYPE_UNKNOWN) << keys;
    EXPECT_EQ(layout.mea_type, BASIC_TYPE_UNKNOWN) << keys;
    EXPECT_EQ(layout.bit_size, 0u) << keys;
    EXPECT_EQ(layout.bit_offset, 0u) << keys;
  }
}

TEST(UComDbu, a_key_of_the_wrong_type_counts_as_absent_and_hides_the_parents) {
  const json array = json::parse(R"([
    {"ID":1,"BO":5,"BS":12,"BT":"U","MT":"R64"},
    {"ID":10,"IP":1,"BO":-5,"BS":"12","BT":1,"MT":null}])");
  RecursiveSignals lookup;
  lookup.import(array);
  const SignalBasic layout = lookup.get_basic(10);
  EXPECT_EQ(layout.bit_offset, 0u);
  EXPECT_EQ(layout.bit_size, 32u);
  EXPECT_EQ(layout.bit_type, BASIC_TYPE_int32_t);
  EXPECT_EQ(layout.mea_type, BASIC_TYPE_int32_t);
}

TEST(UComDbu, every_key_of_a_signal_is_inherited_and_its_own_wins) {
  const Dbu dbu = configured(document(
      R"({"ID":1,"BS":[10]})",
      R"({"ID":1,"BO":3,"BS":12,"BT":"U","MT":"R64","DN":"n","DU":"u","DC":"c","MS":2,"MO":3,
          "ML":4,"MH":5},
         {"ID":10,"IP":1,"BO":8,"DN":"own"})"));
  const auto* signal = dynamic_cast<const SignalM<double>*>(dbu.find_signal(10));
  ASSERT_NE(signal, nullptr);
  EXPECT_EQ(signal->get_bit_offset(), 8u);
  EXPECT_EQ(signal->get_bit_size(), 12u);
  EXPECT_EQ(signal->get_bit_type(), BASIC_TYPE_uint16_t);
  EXPECT_EQ(signal->get_name(), "own");
  EXPECT_EQ(signal->get_unit(), "u");
  EXPECT_EQ(signal->get_comment(), "c");
  EXPECT_EQ(signal->get_scale(), 2.0);
  EXPECT_EQ(signal->get_offset(), 3.0);
  EXPECT_EQ(signal->get_min(), 4.0);
  EXPECT_EQ(signal->get_max(), 5.0);
}

TEST(UComDbu, signals_and_messages_do_not_inherit_from_each_other) {
  const Dbu dbu = configured(
      document(R"({"ID":1,"IP":5,"BS":[10]})", R"({"ID":5,"DN":"signal"},{"ID":10,"IP":1})"));
  EXPECT_EQ(dbu.get_message_by_mid(1)->get_name(), "");
  EXPECT_EQ(dbu.find_signal(10)->get_name(), "");
}

TEST(UComDbu, a_followed_IP_that_is_no_number_throws) {
  Dbu dbu;
  EXPECT_THROW(dbu.configure(one_signal(R"("IP":"1")")), json::type_error);
  EXPECT_THROW(dbu.configure(document(R"({"ID":1,"IP":true})", "")), json::type_error);
  // Every key that would be looked for stands in the entry: nothing is followed.
  EXPECT_NO_THROW(
      dbu.configure(document(R"({"ID":1,"IP":true,"DN":"","DC":"","BS":[10]})",
                             R"({"ID":10,"IP":[],"BO":0,"BS":8,"BT":"B","MT":"B","DN":"","DU":"",
                                 "DC":""})")));
  EXPECT_EQ(dbu.get_signals().size(), 1u);
}

TEST(UComDbu, limits_and_scaling_have_defaults) {
  const Dbu dbu = configured(one_signal(R"("BT":"R")"));
  const auto* signal = dynamic_cast<const SignalM<float>*>(dbu.find_signal(10));
  ASSERT_NE(signal, nullptr);
  EXPECT_EQ(signal->get_scale(), 1.0F);
  EXPECT_EQ(signal->get_offset(), 0.0F);
  EXPECT_EQ(signal->get_min(), 1.0F);
  EXPECT_EQ(signal->get_max(), 0.0F);
}

TEST(UComDbu, a_message_lists_the_unsigned_members_of_its_array) {
  // -1 is not the highest sid, and 12.0 is not 12.
  const Dbu dbu =
      configured(document(R"({"ID":1,"BS":[11,-1,10,"12",null,12.0,11,[12]]})",
                          R"({"ID":10},{"ID":11},{"ID":12},{"ID":18446744073709551615})"));
  EXPECT_THAT(dbu.get_message_by_mid(1)->get_signals(), ElementsAre(Key(10), Key(11)));
}

TEST(UComDbu, a_message_drops_what_it_lists_in_vain) {
  const Dbu dbu = configured(
      document(R"({"ID":1,"BS":[9,10,11,12]})", R"({"ID":10},{"ID":11,"BS":0},{"ID":12})"));
  const Message* message = dbu.get_message_by_mid(1);
  EXPECT_THAT(message->get_signals(), ElementsAre(Key(10), Key(12)));
  EXPECT_EQ(message->get_signals().at(10), dbu.find_signal(10));
}

TEST(UComDbu, a_signal_of_two_messages_has_both_and_one_index) {
  const Dbu dbu = configured(document(R"({"ID":2,"BS":[10]},{"ID":1,"BS":[10]})", R"({"ID":10})"));
  const Signal* signal = dbu.find_signal(10);
  EXPECT_THAT(signal->get_messages(), ElementsAre(Key(1), Key(2)));
  EXPECT_EQ(signal->get_messages().at(2), dbu.get_message_by_mid(2));
  EXPECT_EQ(signal->get_six(), 0u);
  EXPECT_EQ(dbu.get_signals().size(), 1u);
}

TEST(UComDbu, messages_that_inherit_their_list_hold_the_same_signals) {
  const Dbu dbu = configured(document(R"({"ID":1,"BS":[10,11,12]},{"ID":2,"IP":1},{"ID":3,"IP":2})",
                                      R"({"ID":10},{"ID":12})"));
  for (const mid_t mid : {1, 2, 3}) {
    EXPECT_THAT(dbu.get_message_by_mid(mid)->get_signals(), ElementsAre(Key(10), Key(12))) << mid;
    EXPECT_EQ(dbu.get_message_by_mid(mid)->get_mix(), mid - 1);
  }
  EXPECT_THAT(dbu.find_signal(12)->get_messages(), ElementsAre(Key(1), Key(2), Key(3)));
  // One list, however many inherit it: memory does not multiply.
  EXPECT_EQ(&dbu.get_message_by_mid(1)->get_signals(), &dbu.get_message_by_mid(3)->get_signals());
}

TEST(UComDbu, signals_that_inherit_a_text_hold_the_same_one) {
  const Dbu dbu = configured(
      document(R"({"ID":1,"BS":[10,11]})", R"({"ID":10,"DC":"long"},{"ID":11,"IP":10})"));
  EXPECT_EQ(&dbu.find_signal(10)->get_comment(), &dbu.find_signal(11)->get_comment());
}

TEST(UComDbu, runs_are_of_one_kind_and_do_not_pass_the_time) {
  // 12 is the time. 10, 13 and 17 stand within bytes, all other integers fill their bytes.
  Dbu dbu =
      configured(document(R"({"ID":1,"BS":[10,11,12,13,14,15,16,17,18]})",
                          R"({"ID":10,"BT":"S","BS":16,"BO":1},{"ID":11,"BT":"S","BS":16,"BO":16},
         {"ID":12,"BT":"S","BS":64,"BO":0},{"ID":13,"BT":"S","BS":16,"BO":2},
         {"ID":14,"BT":"S","BS":16,"BO":24},{"ID":15,"BT":"S","BS":16,"BO":32,"MT":"R64"},
         {"ID":16,"BT":"S","BS":16,"BO":40},{"ID":17,"BT":"S","BS":16,"BO":3},
         {"ID":18,"BT":"S","BS":16,"BO":48,"MT":"R64"})"));
  const SignalList& list = dbu.get_message_by_mid(1)->get_list();
  EXPECT_TRUE(list.get_runs_to_time().empty());
  EXPECT_TRUE(list.get_runs_behind_time().empty());

  dbu.arrange(12);
  EXPECT_THAT(sids_of_runs(list.get_runs_to_time()),
              UnorderedElementsAre(ElementsAre(10), ElementsAre(11), ElementsAre(12)));
  EXPECT_THAT(sids_of_runs(list.get_runs_behind_time()),
              UnorderedElementsAre(ElementsAre(13, 17), ElementsAre(14, 16), ElementsAre(15, 18)));
}

TEST(UComDbu, all_runs_are_behind_a_time_that_is_not_listed) {
  Dbu dbu = configured(document(R"({"ID":1,"BS":[10,11]})", R"({"ID":10},{"ID":11})"));
  dbu.arrange(sid_t_inv);
  const SignalList& list = dbu.get_message_by_mid(1)->get_list();
  EXPECT_TRUE(list.get_runs_to_time().empty());
  EXPECT_THAT(sids_of_runs(list.get_runs_behind_time()), ElementsAre(ElementsAre(10, 11)));
}

TEST(UComDbu, a_list_that_messages_share_is_arranged_once) {
  Dbu dbu = configured(
      document(R"({"ID":1,"BS":[10,11]},{"ID":2,"IP":1})", R"({"ID":10},{"ID":11,"BT":"R"})"));
  dbu.arrange(10);
  const SignalList& list = dbu.get_message_by_mid(2)->get_list();
  EXPECT_THAT(sids_of_runs(list.get_runs_to_time()), ElementsAre(ElementsAre(10)));
  EXPECT_THAT(sids_of_runs(list.get_runs_behind_time()), ElementsAre(ElementsAre(11)));
}

TEST(UComDbu, indexes_go_to_what_is_linked_in_ascending_order) {
  const Dbu dbu =
      configured(document(R"({"ID":7,"BS":[30,10]},{"ID":3,"BS":[20]},{"ID":5},{"ID":4,"BS":[99]})",
                          R"({"ID":30},{"ID":10},{"ID":25},{"ID":20})"));
  EXPECT_THAT(sids(dbu.get_signals()), ElementsAre(10, 20, 30));
  EXPECT_EQ(dbu.find_signal(10)->get_six(), 0u);
  EXPECT_EQ(dbu.find_signal(20)->get_six(), 1u);
  EXPECT_EQ(dbu.find_signal(30)->get_six(), 2u);
  EXPECT_EQ(dbu.find_signal(25)->get_six(), six_t_inv);
  EXPECT_EQ(dbu.get_signal_by_six(2), dbu.find_signal(30));
  EXPECT_EQ(dbu.get_signal_by_six(3), nullptr);
  EXPECT_EQ(dbu.get_signal_by_six(six_t_inv), nullptr);

  ASSERT_EQ(dbu.get_messages().size(), 2u);
  EXPECT_EQ(dbu.get_messages()[0], dbu.get_message_by_mid(3));
  EXPECT_EQ(dbu.get_message_by_mid(3)->get_mix(), 0u);
  EXPECT_EQ(dbu.get_message_by_mid(7)->get_mix(), 1u);
  EXPECT_EQ(dbu.get_message_by_mid(4)->get_mix(), mix_t_inv);
  EXPECT_EQ(dbu.get_message_by_mid(5)->get_mix(), mix_t_inv);
}

TEST(UComDbu, the_invalid_identifiers_are_all_bits_set_but_for_the_message_index) {
  EXPECT_EQ(sid_t_inv, 0xFFFFFFFFFFFFFFFF);
  EXPECT_EQ(six_t_inv, 0xFFFFFFFFFFFFFFFF);
  EXPECT_EQ(mid_t_inv, 0xFFFFFFFFFFFFFFFF);
  EXPECT_EQ(mix_t_inv, 65535u);
}

TEST(UComDbu, messages_are_found_by_any_number) {
  const Dbu dbu =
      configured(document(R"({"ID":0},{"ID":65535},{"ID":65536},{"ID":18446744073709551615})", ""));
  for (const mid_t mid : {mid_t{0}, mid_t{65535}, mid_t{65536}, mid_t_inv}) {
    ASSERT_NE(dbu.get_message_by_mid(mid), nullptr) << mid;
    EXPECT_EQ(dbu.get_message_by_mid(mid)->get_mid(), mid);
  }
  for (const mid_t mid : {1, 65534, 65537, 131072}) {
    EXPECT_EQ(dbu.get_message_by_mid(mid), nullptr) << mid;
  }
}

TEST(UComDbu, a_message_above_the_highest_number_is_unknown) {
  const Dbu dbu = configured(document(R"({"ID":3})", ""));
  EXPECT_EQ(dbu.get_message_by_mid(4), nullptr);
  EXPECT_EQ(dbu.get_message_by_mid(2), nullptr);
}

TEST(UComDbu, its_reach_is_that_of_the_widest_read) {
  // int16 at bit 24: its two bytes from byte 3, and a third where it stands or ends within one;
  // double at bit 17: nine bytes from byte 2.
  const Dbu dbu = configured(
      document(R"({"ID":1,"BS":[10]},{"ID":2,"BS":[11]},{"ID":3,"BS":[12]},{"ID":4,"BS":[13]})",
               R"({"ID":10,"BT":"S","BS":16,"BO":24},
                  {"ID":11,"BT":"R","BS":64,"BO":17},
                  {"ID":12,"BT":"S","BS":16,"BO":25},
                  {"ID":13,"BT":"S","BS":15,"BO":24},
                  {"ID":14,"BO":800})"));
  EXPECT_EQ(dbu.get_message_by_mid(1)->get_reach(), 5u);
  EXPECT_EQ(dbu.get_message_by_mid(2)->get_reach(), 11u);
  EXPECT_EQ(dbu.get_message_by_mid(3)->get_reach(), 6u);
  EXPECT_EQ(dbu.get_message_by_mid(4)->get_reach(), 6u);
  EXPECT_EQ(dbu.get_reach(), 11u);
}

}  // namespace
}  // namespace Trel::UCom
