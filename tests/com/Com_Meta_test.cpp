#include "com/Com_Meta.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <climits>
#include <nlohmann/json.hpp>

namespace Trel::Com {
namespace {

using testing::IsEmpty;
using Values = std::map<std::string, std::string>;

std::string text(const Meta& meta) {
  return std::string(meta.get_data().begin(), meta.get_data().end());
}

TEST(Meta, a_fresh_one_is_empty_and_invalid) {
  const Meta meta;
  EXPECT_EQ(meta.get_open(), '?');
  EXPECT_EQ(meta.get_close(), '?');
  EXPECT_EQ(meta.get_format(), Enum::XCOM_META_FORMAT_INVALID);
  EXPECT_EQ(meta.get_tag(), "");
  EXPECT_THAT(meta.get_data(), IsEmpty());
  EXPECT_THAT(meta.get_values(), IsEmpty());
  EXPECT_TRUE(meta.get_json().is_null());
}

TEST(Meta, an_initial_header_becomes_a_tag_and_items) {
  const Meta meta("[Trel-NCom]\nheaders=2\n", true);
  EXPECT_EQ(meta.get_tag(), "[Trel-NCom]");
  EXPECT_EQ(meta.get_format(), Enum::XCOM_META_FORMAT_INI_GENERIC);
  EXPECT_EQ(meta.get_open(), '[');
  EXPECT_EQ(meta.get_close(), ']');
  EXPECT_EQ(meta.get_values(), (Values{{"headers", "2"}}));
  EXPECT_THAT(meta.get_data(), IsEmpty());
}

TEST(Meta, without_conversion_the_content_stays_in_data) {
  const Meta meta("[Trel-NCom]\nheaders=2\n", false);
  EXPECT_EQ(meta.get_tag(), "[Trel-NCom]");
  EXPECT_EQ(text(meta), "\nheaders=2\n");
  EXPECT_THAT(meta.get_values(), IsEmpty());
}

TEST(Meta, each_pair_of_delimiters_selects_its_form) {
  const struct {
    const char* blob;
    char open;
    char close;
    Enum::XCOM_META_FORMAT format;
  } rows[] = {
      {"[x]", '[', ']', Enum::XCOM_META_FORMAT_INI_GENERIC},
      {"<x>", '<', '>', Enum::XCOM_META_FORMAT_AUX_BINARY},
      {"(x)", '(', ')', Enum::XCOM_META_FORMAT_AUX_TEXT},
      {"{x}", '{', '}', Enum::XCOM_META_FORMAT_AUX_GENERIC},
      {"/x/", '/', '/', Enum::XCOM_META_FORMAT_AUX_JSON},
      {"|x|", '|', '|', Enum::XCOM_META_FORMAT_AUX_XML},
  };
  for (const auto& row : rows) {
    const Meta meta(row.blob, false);
    EXPECT_EQ(meta.get_tag(), row.blob);
    EXPECT_EQ(meta.get_open(), row.open) << row.blob;
    EXPECT_EQ(meta.get_close(), row.close) << row.blob;
    EXPECT_EQ(meta.get_format(), row.format) << row.blob;
    EXPECT_THAT(meta.get_data(), IsEmpty()) << row.blob;
  }
}

TEST(Meta, any_closing_delimiter_but_the_right_one_makes_the_format_unknown) {
  for (const std::string open : {"[", "<", "(", "{", "/", "|"}) {
    for (const std::string close : {"]", ">", ")", "}", "/", "|"}) {
      const std::string blob = open + "b" + close + "rest";
      const Meta meta(blob, false);
      const bool pair = std::string("[]<>(){}//||").find(open + close) % 2 == 0;
      if (pair) {
        EXPECT_EQ(meta.get_tag(), open + "b" + close);
        continue;
      }
      EXPECT_EQ(meta.get_format(), Enum::XCOM_META_FORMAT_UNKNOWN) << blob;
      EXPECT_EQ(meta.get_tag(), "") << blob;
      EXPECT_EQ(meta.get_open(), '?') << blob;
      EXPECT_EQ(meta.get_close(), '?') << blob;
      EXPECT_EQ(text(meta), blob);
    }
  }
}

TEST(Meta, a_tag_that_never_closes_makes_the_format_unknown_and_keeps_the_data) {
  for (const std::string blob : {"{a=1", "[", "/x"}) {
    const Meta meta(blob, true);
    EXPECT_EQ(meta.get_format(), Enum::XCOM_META_FORMAT_UNKNOWN);
    EXPECT_EQ(meta.get_tag(), "");
    EXPECT_EQ(text(meta), blob);
    EXPECT_THAT(meta.get_values(), IsEmpty());
  }
}

TEST(Meta, a_blob_without_an_opening_delimiter_stays_invalid_and_whole) {
  for (const std::string blob : {"plain=1", "]x[", " [x]", "\x80"}) {
    const Meta meta(blob, true);
    EXPECT_EQ(meta.get_format(), Enum::XCOM_META_FORMAT_INVALID);
    EXPECT_EQ(meta.get_open(), '?');
    EXPECT_EQ(meta.get_tag(), "");
    EXPECT_EQ(text(meta), blob);
  }
}

TEST(Meta, opening_delimiters_inside_a_tag_belong_to_it) {
  const Meta meta("[a[{(<b]c", false);
  EXPECT_EQ(meta.get_tag(), "[a[{(<b]");
  EXPECT_EQ(text(meta), "c");
}

TEST(Meta, a_json_tag_ends_at_the_second_slash) {
  const Meta meta("/x/y/", false);
  EXPECT_EQ(meta.get_tag(), "/x/");
  EXPECT_EQ(text(meta), "y/");
}

TEST(Meta, a_tag_alone_yields_an_empty_table) {
  const Meta meta("{Trel-Grouping}", true);
  EXPECT_EQ(meta.get_tag(), "{Trel-Grouping}");
  EXPECT_THAT(meta.get_values(), IsEmpty());
}

TEST(Meta, text_content_is_kept) {
  const Meta meta("(Trel-Can-Dbc)BO_ 1", true);
  EXPECT_EQ(text(meta), "BO_ 1");
  EXPECT_THAT(meta.get_values(), IsEmpty());
}

TEST(Meta, binary_content_stays_raw) {
  const std::string content("a=1\0\x1F\xFF=2", 8);
  const Meta meta("<x>" + content, true);
  EXPECT_EQ(text(meta), content);
  EXPECT_THAT(meta.get_values(), IsEmpty());
}

TEST(Meta, xml_is_recognised_and_left_unread) {
  Meta meta("|x|abc", false);
  EXPECT_EQ(meta.get_format(), Enum::XCOM_META_FORMAT_AUX_XML);
  EXPECT_FALSE(meta.convert());
  EXPECT_EQ(text(meta), "abc");
}

TEST(Meta, conversion_succeeds_for_every_form_but_xml) {
  for (const char* blob : {"[x]a=1", "<x>a=1", "(x)a=1", "{x}a=1", "/x/1", "nothing", "{bad"}) {
    Meta meta(blob, false);
    EXPECT_TRUE(meta.convert()) << blob;
  }
}

TEST(Meta, two_pieces_are_read_as_one_blob) {
  const unsigned char first[] = {'{', 'T'};
  const unsigned char second[] = {'}', 'a', '=', '1'};
  Meta meta;
  meta.assign(first, sizeof first, second, sizeof second, true);
  EXPECT_EQ(meta.get_tag(), "{T}");
  EXPECT_EQ(meta.get("a"), "1");
}

TEST(Meta, either_piece_may_be_missing) {
  const unsigned char blob[] = {'{', 'T', '}'};
  Meta only_second;
  only_second.assign(nullptr, 3, blob, sizeof blob, true);
  EXPECT_EQ(only_second.get_tag(), "{T}");
  Meta only_first;
  only_first.assign(blob, sizeof blob, blob, 0, true);
  EXPECT_EQ(only_first.get_tag(), "{T}");
  EXPECT_THAT(only_first.get_data(), IsEmpty());
}

TEST(Meta, an_empty_blob_clears_the_data_and_nothing_else) {
  Meta meta("(x)text", true);
  meta.assign("", true);
  EXPECT_EQ(meta.get_tag(), "(x)");
  EXPECT_EQ(meta.get_format(), Enum::XCOM_META_FORMAT_AUX_TEXT);
  EXPECT_THAT(meta.get_data(), IsEmpty());
}

TEST(MetaItems, a_run_of_control_bytes_is_one_break) {
  const Meta meta(std::string("{x}\0\n\r\t\x1F"
                              "a=1\n\n\0\0b=2\x1F",
                              20),
                  true);
  EXPECT_EQ(meta.get_values(), (Values{{"a", "1"}, {"b", "2"}}));
}

TEST(MetaItems, the_first_item_may_follow_the_tag_at_once_and_the_last_needs_no_end) {
  const Meta meta("{x}a=1\nb=2", true);
  EXPECT_EQ(meta.get_values(), (Values{{"a", "1"}, {"b", "2"}}));
}

TEST(MetaItems, a_byte_from_0x80_up_ends_the_item) {
  const Meta meta("{x}a=caf\xC3\xA9=b\nc=3", true);
  EXPECT_EQ(meta.get_values(), (Values{{"a", "caf"}, {"", "b"}, {"c", "3"}}));
}

TEST(MetaItems, the_limits_of_text_are_0x20_and_0x7F) {
  const Meta meta(
      "{x}a= \x7F\x80"
      "b=\x1F"
      "c=~\xFF",
      true);
  EXPECT_EQ(meta.get_values(), (Values{{"a", " \x7F"}, {"b", ""}, {"c", "~"}}));
}

TEST(MetaItems, the_first_of_two_equal_keys_wins) {
  const Meta meta(std::string("{x}a=1\0a=2", 10), true);
  EXPECT_EQ(meta.get_values(), (Values{{"a", "1"}}));
}

TEST(MetaItems, the_first_equals_sign_splits) {
  const Meta meta("{x}a=b=c\n=x", true);
  EXPECT_EQ(meta.get_values(), (Values{{"a", "b=c"}, {"", "x"}}));
}

TEST(MetaItems, an_item_without_equals_sign_is_dropped) {
  const Meta meta("{x}word\na=1", true);
  EXPECT_EQ(meta.get_values(), (Values{{"a", "1"}}));
}

TEST(MetaItems, nothing_is_trimmed) {
  const Meta meta("{x} a = 1 ", true);
  EXPECT_EQ(meta.get_values(), (Values{{" a ", " 1 "}}));
}

TEST(MetaJson, a_document_is_read_and_its_text_kept) {
  const Meta meta("/x/{\"a\":[1,2]}", true);
  EXPECT_EQ(meta.get_json(), nlohmann::json({{"a", {1, 2}}}));
  EXPECT_EQ(text(meta), "{\"a\":[1,2]}");
  EXPECT_THAT(meta.get_values(), IsEmpty());
}

TEST(MetaJson, a_malformed_document_throws_the_parse_error_of_the_library) {
  for (const char* blob : {"/x/{\"a\":", "/x/", "/x/y/", "/x/1 2", "/x/\"\xFF\""}) {
    EXPECT_THROW(Meta(blob, true), nlohmann::json::parse_error) << blob;
  }
}

TEST(MetaJson, a_copy_has_the_document_even_when_the_original_is_gone) {
  Meta copy;
  {
    const Meta meta("/x/[7]", true);
    copy = meta;
  }
  EXPECT_EQ(copy.get_json(), nlohmann::json::array({7}));
}

TEST(MetaJson, a_document_nested_a_hundred_thousand_deep_can_be_read_and_copied) {
  const std::size_t depth = 100000;
  const Meta meta("/x/" + std::string(depth, '[') + std::string(depth, ']'), true);
  const Meta copy = meta;
  EXPECT_TRUE(copy.get_json().is_array());
}

TEST(MetaValues, a_text_that_is_missing_comes_back_empty) {
  Meta meta;
  meta.set("key", "text");
  std::string value = "old";
  EXPECT_TRUE(meta.get("key", value));
  EXPECT_EQ(value, "text");
  EXPECT_FALSE(meta.get("other", value));
  EXPECT_EQ(value, "");
  EXPECT_EQ(meta.get("other"), "");
}

TEST(MetaValues, setting_replaces) {
  Meta meta("{x}a=1", true);
  meta.set("a", "2");
  EXPECT_EQ(meta.get_values(), (Values{{"a", "2"}}));
}

TEST(MetaValues, numbers_are_rendered_in_decimal) {
  Meta meta;
  meta.set("int", -7);
  meta.set("unsigned", UINT_MAX);
  meta.set("long", ULLONG_MAX);
  EXPECT_EQ(meta.get("int"), "-7");
  EXPECT_EQ(meta.get("unsigned"), "4294967295");
  EXPECT_EQ(meta.get("long"), "18446744073709551615");
}

TEST(MetaValues, a_real_number_has_six_significant_digits) {
  Meta meta;
  meta.set("pi", 3.14159265);
  meta.set("large", 12345678.0);
  meta.set("whole", 100.0);
  EXPECT_EQ(meta.get("pi"), "3.14159");
  EXPECT_EQ(meta.get("large"), "1.23457e+07");
  EXPECT_EQ(meta.get("whole"), "100");
}

TEST(MetaValues, a_number_is_read_from_the_start_of_the_text) {
  Meta meta;
  meta.set("plain", "12");
  meta.set("tail", "12 of 20");
  meta.set("zeros", "007");
  unsigned int value = 99;
  EXPECT_TRUE(meta.get("plain", value));
  EXPECT_EQ(value, 12U);
  EXPECT_TRUE(meta.get("tail", value));
  EXPECT_EQ(value, 12U);
  EXPECT_TRUE(meta.get("zeros", value));
  EXPECT_EQ(value, 7U);
}

TEST(MetaValues, blanks_ahead_of_a_number_are_passed_over_and_a_minus_sign_wraps) {
  Meta meta;
  meta.set("blank", "  5");
  meta.set("minus", "-1");
  unsigned int value = 99;
  EXPECT_TRUE(meta.get("blank", value));
  EXPECT_EQ(value, 5U);
  EXPECT_TRUE(meta.get("minus", value));
  EXPECT_EQ(value, UINT_MAX);
}

TEST(MetaValues, a_number_that_is_missing_or_none_is_zero) {
  Meta meta;
  meta.set("word", "many");
  meta.set("empty", "");
  meta.set("too large", "4294967296");
  for (const char* key : {"word", "empty", "too large", "missing"}) {
    unsigned int value = 99;
    EXPECT_FALSE(meta.get(key, value)) << key;
    EXPECT_EQ(value, 0U) << key;
  }
}

TEST(StreamMeta, appending_keeps_a_copy_and_counts_into_the_initial_header) {
  StreamMeta meta;
  meta.append_aux_header(Meta("{A}x=1", true));
  Meta& stored = meta.append_aux_header(Meta("{B}x=2", true));
  EXPECT_EQ(meta.initial.get("headers"), "2");
  stored.set("x", "3");
  EXPECT_EQ(meta.auxiliary.at(1).get("x"), "3");
}

TEST(StreamMeta, appending_replaces_the_count_that_the_recording_declared) {
  StreamMeta meta;
  meta.initial.assign("[Trel-UCom]\nheaders=9", true);
  meta.append_aux_header(Meta("{A}", true));
  EXPECT_EQ(meta.initial.get("headers"), "1");
}

TEST(StreamMeta, the_first_header_of_a_tag_is_found) {
  StreamMeta meta;
  meta.append_aux_header(Meta("{A}x=1", true));
  meta.append_aux_header(Meta("(A)", true));
  meta.append_aux_header(Meta("{A}x=2", true));
  ASSERT_NE(meta.find_aux_header("{A}"), nullptr);
  EXPECT_EQ(meta.find_aux_header("{A}")->get("x"), "1");
  EXPECT_EQ(std::as_const(meta).find_aux_header("(A)"), &meta.auxiliary[1]);
}

TEST(StreamMeta, the_same_word_between_other_delimiters_is_not_found) {
  StreamMeta meta;
  meta.append_aux_header(Meta("{A}", true));
  EXPECT_EQ(meta.find_aux_header("[A]"), nullptr);
  EXPECT_EQ(std::as_const(meta).find_aux_header("A"), nullptr);
}

}  // namespace
}  // namespace Trel::Com
