// The includes of the source tree against the rules of layering_rules.h, and the rules themselves
// against arrows that break them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>

#include "structure/layering_rules.h"

namespace layering {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

namespace fs = std::filesystem;

const std::vector<Arrow>& project_arrows() {
  static const auto arrows = read_arrows(TREL_PROJECT_DIR);
  return arrows;
}

bool has_arrow(const std::vector<Arrow>& arrows, const std::string& from, const std::string& to) {
  return std::ranges::any_of(
      arrows, [&](const Arrow& arrow) { return arrow.from == from && arrow.to == to; });
}

TEST(Layering, every_file_lies_in_a_folder_and_room_of_the_house) {
  EXPECT_THAT(homeless(read_files(TREL_PROJECT_DIR)), IsEmpty());
}

TEST(Layering, no_include_points_up_or_sideways_between_folders) {
  EXPECT_THAT(floor_violations(project_arrows()), IsEmpty());
}

TEST(Layering, no_include_points_up_between_the_rooms_of_sto) {
  EXPECT_THAT(room_violations(project_arrows()), IsEmpty());
}

TEST(Layering, no_file_includes_itself_by_a_detour) {
  EXPECT_THAT(circles(project_arrows()), IsEmpty());
}

TEST(Layering, every_quoted_include_names_a_file_from_the_root_of_the_sources) {
  const auto files = read_files(TREL_PROJECT_DIR);
  for (const auto& arrow : project_arrows()) {
    EXPECT_THAT(files, testing::Contains(arrow.to)) << "included by " << arrow.from;
  }
}

TEST(Layering, every_header_may_be_included_twice) {
  for (const char* root : {"source/code", "app", "tests", "tools"}) {
    for (const auto& entry : fs::recursive_directory_iterator(fs::path(TREL_PROJECT_DIR) / root)) {
      if (entry.path().extension() != ".h") continue;
      std::ifstream lines(entry.path());
      bool once = false;
      for (std::string line; !once && std::getline(lines, line);) once = line == "#pragma once";
      EXPECT_TRUE(once) << entry.path();
    }
  }
}

TEST(Layering, the_scan_sees_the_source_tree) {
  EXPECT_TRUE(has_arrow(project_arrows(), "library/Lib_Dynamic.h", "library/Lib_Stamp.h"));
}

TEST(LayeringRules, a_lower_floor_and_the_own_folder_may_be_included) {
  EXPECT_THAT(floor_violations({{"sto/Sto_Store.h", "enum/Enum.h"},
                                {"sto/Sto_Store.h", "ucom/UCom_Dbu.h"},
                                {"com/Com_Meta.h", "library/Lib_Time.h"},
                                {"com/Com_Meta.h", "com/Com_Page.h"},
                                {"app/Process.cpp", "app/Process.h"},
                                {"app/Process.cpp", "sto/Sto_Store.h"}}),
              IsEmpty());
}

TEST(LayeringRules, an_arrow_to_a_higher_floor_is_reported) {
  EXPECT_THAT(floor_violations({{"enum/Enum.h", "library/Lib_Time.h"},
                                {"library/Lib_Time.h", "com/Com_Page.h"},
                                {"can/Can_Dbc.h", "sto/Sto_Store.h"},
                                {"sto/Sto_Store.h", "app/Process.h"}}),
              ElementsAre("enum/Enum.h includes library/Lib_Time.h: the arrow points up",
                          "library/Lib_Time.h includes com/Com_Page.h: the arrow points up",
                          "can/Can_Dbc.h includes sto/Sto_Store.h: the arrow points up",
                          "sto/Sto_Store.h includes app/Process.h: the arrow points up"));
}

TEST(LayeringRules, neighbours_may_not_include_one_another) {
  EXPECT_THAT(floor_violations({{"ucom/UCom_Dbu.h", "com/Com_Meta.h"}}),
              ElementsAre("ucom/UCom_Dbu.h includes com/Com_Meta.h: "
                          "neighbours do not include one another"));
}

TEST(LayeringRules, the_program_may_include_only_sto) {
  EXPECT_THAT(floor_violations({{"app/Process.cpp", "library/Lib_Dynamic.h"}}),
              ElementsAre("app/Process.cpp includes library/Lib_Dynamic.h: "
                          "the program knows only sto"));
}

TEST(LayeringRules, an_include_without_a_folder_is_reported) {
  EXPECT_THAT(floor_violations({{"com/Com_Meta.h", "Com_Page.h"}}),
              ElementsAre("com/Com_Meta.h includes Com_Page.h: "
                          "one of them lies in no folder of the house"));
}

TEST(LayeringRules, a_file_of_an_unknown_folder_or_room_is_homeless) {
  EXPECT_THAT(homeless({"misc/Helper.h", "Helper.h", "sto/Sto_Helper.h", "sto/Sto_FileNav.h"}),
              ElementsAre("misc/Helper.h lies in no folder of the house",
                          "Helper.h lies in no folder of the house",
                          "sto/Sto_Helper.h belongs to no room of sto"));
}

TEST(LayeringRules, each_room_of_sto_may_include_the_rooms_below_and_none_above) {
  const std::vector<std::string> upward = {
      "sto/Sto_Taxonomy.h",   "sto/Sto_AccessUCom.h",   "sto/Sto_Element.h", "sto/Sto_FileNav.h",
      "sto/Sto_StreamUCom.h", "sto/Sto_ResourceXCom.h", "sto/Sto_Mode.h",    "sto/Sto_Store.h"};
  for (size_t low = 0; low < upward.size(); ++low) {
    for (size_t high = low + 1; high < upward.size(); ++high) {
      EXPECT_THAT(room_violations({{upward[high], upward[low]}}), IsEmpty());
      EXPECT_THAT(room_violations({{upward[low], upward[high]}}), testing::SizeIs(1))
          << upward[low] << " -> " << upward[high];
    }
  }
}

TEST(LayeringRules, files_of_one_room_may_include_one_another) {
  EXPECT_THAT(room_violations({{"sto/Sto_ModeDirect.h", "sto/Sto_Cache.h"},
                               {"sto/Sto_Cache.h", "sto/Sto_ModeDirect.h"}}),
              IsEmpty());
}

TEST(LayeringRules, every_file_on_a_circle_of_includes_is_reported) {
  EXPECT_THAT(circles({{"a", "b"}, {"b", "c"}, {"c", "a"}, {"d", "a"}}),
              ElementsAre("a includes itself by a detour", "b includes itself by a detour",
                          "c includes itself by a detour"));
}

class LayeringScan : public testing::Test {
 protected:
  void SetUp() override {
    fs::remove_all(project_);
    fs::create_directories(project_ / "source/code/com");
    fs::create_directories(project_ / "app");
  }
  void TearDown() override { fs::remove_all(project_); }

  void write(const std::string& file, const std::string& text) const {
    std::ofstream(project_ / file) << text;
  }

  const fs::path project_ =
      fs::path(testing::TempDir()) / testing::UnitTest::GetInstance()->current_test_info()->name();
};

TEST_F(LayeringScan, spaces_and_brackets_hide_no_include) {
  write("source/code/com/Com_Page.cpp",
        "#include \"com/Com_Page.h\"\n"
        "  #  include\t<library/Lib_Time.h>  // why\n"
        "#include <vector>\n"
        "// #include \"sto/Sto_Store.h\"\n");

  const auto arrows = read_arrows(project_);

  ASSERT_EQ(arrows.size(), 2u);
  EXPECT_TRUE(has_arrow(arrows, "com/Com_Page.cpp", "com/Com_Page.h"));
  EXPECT_TRUE(has_arrow(arrows, "com/Com_Page.cpp", "library/Lib_Time.h"));
}

TEST_F(LayeringScan, tables_are_read_like_sources_and_other_files_are_not) {
  write("source/code/com/Com_Page.def", "");
  write("source/code/com/CMakeLists.txt", "");
  write("app/main.cpp", "#include \"Application.h\"\n");

  EXPECT_THAT(read_files(project_), UnorderedElementsAre("com/Com_Page.def", "app/main.cpp"));
  EXPECT_TRUE(has_arrow(read_arrows(project_), "app/main.cpp", "app/Application.h"));
}

}  // namespace
}  // namespace layering
