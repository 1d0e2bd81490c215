// The tables that files, packets and other programs rely on, written out row by row, and the list
// of all enumerations with the number of their members.
#include "Enum_Walk.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace Trel::Enum::Test {
namespace {

struct Expected {
  unsigned int number;
  const char* tag;
  const char* string;
  const char* verbose;
  const char* comment;
};

// The rows are all members of the enumeration of this name, and in this order.
void expect_table(const std::string& name, const std::vector<Expected>& rows) {
  for (const Enumerated& x : enumerations()) {
    if (x.name != name) continue;
    ASSERT_EQ(x.lines.size(), rows.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
      const Expected& row = rows[i];
      EXPECT_EQ(x.lines[i].number, row.number) << row.tag;
      EXPECT_STREQ(x.GetTag(row.number), row.tag);
      EXPECT_STREQ(x.GetString(row.number), row.string) << row.tag;
      EXPECT_STREQ(x.GetVerbose(row.number), row.verbose) << row.tag;
      EXPECT_STREQ(x.GetComment(row.number), row.comment) << row.tag;
    }
    return;
  }
  FAIL() << "no enumeration is called " << name;
}

// clang-format off

TEST(EnumTable, tri_state) {
  expect_table("TRI_STATE_TYPE", {
    {0, "TRI_STATE_TYPE_DISABLED", "Disabled", "Disabled", "Disabled"},
    {1, "TRI_STATE_TYPE_ENABLED", "Enabled", "Enabled", "Enabled"},
    {2, "TRI_STATE_TYPE_UNKNOWN", "Unknown", "Unknown", "Unknown"},
  });
}

TEST(EnumTable, return_types) {
  expect_table("RETURN_TYPE", {
    {0, "RETURN_TYPE_NORMAL", "Normal", "Normal", "Normal operation"},
    {1, "RETURN_TYPE_WRITE", "Write", "Write", "Write lock fail"},
    {2, "RETURN_TYPE_READ", "Read", "Read", "Read lock fail"},
    {3, "RETURN_TYPE_NOTHING", "Nothing", "Nothing", "Nothing happened"},
    {4, "RETURN_TYPE_SOMETHING", "Something", "Something", "Something extra happened"},
    {5, "RETURN_TYPE_ERROR", "Error", "Error", "Error"},
    {6, "RETURN_TYPE_PANIC", "Panic", "Panic", "Panic"},
    {7, "RETURN_TYPE_CANCEL", "Cancel", "Cancel", "Cancel"},
    {8, "RETURN_TYPE_LACKING", "Lacking", "Lacking", "Less than notmal operation"},
    {9, "RETURN_TYPE_UNIMPLEMENTED", "Unimplemented", "Unimplemented", "Not implemented"},
    {10, "RETURN_TYPE_UNKNOWN", "Unknown", "Unknown", "Unknown"},
  });
}

TEST(EnumTable, transports) {
  expect_table("TRANSPORT_TYPE", {
    {0, "TRANSPORT_TYPE_NONE", "None", "None", "None"},
    {1, "TRANSPORT_TYPE_OGG", "XCom", "XCOM", "XCOM"},
    {2, "TRANSPORT_TYPE_PRE", "Pre", "Pre", "Pre"},
    {3, "TRANSPORT_TYPE_NAV", "Nav", "Nav", "Navigation"},
    {4, "TRANSPORT_TYPE_RNG", "Rng", "Rng", "Range"},
    {5, "TRANSPORT_TYPE_UMAC", "Umac", "UMAC", "UMAC"},
    {6, "TRANSPORT_TYPE_BCOM", "BCom", "BCOM", "BCOM"},
    {7, "TRANSPORT_TYPE_CMD", "Cmd", "Cmd", "Command"},
    {8, "TRANSPORT_TYPE_CCOM", "CCom", "CCOM", "CCOM"},
    {9, "TRANSPORT_TYPE_VIRTUAL", "Virtual", "Virtual", "Virtual"},
    {10, "TRANSPORT_TYPE_LCOM", "LCom", "LCOM", "LCOM"},
    {11, "TRANSPORT_TYPE_UNKNOWN", "Unknown", "Unknown", "Unknown"},
  });
}

TEST(EnumTable, codecs) {
  expect_table("CODEC_TYPE", {
    {0, "CODEC_TYPE_NONE", "None", "None", "None"},
    {1, "CODEC_TYPE_RD", "RD", "RD", "Raw Data"},
    {2, "CODEC_TYPE_CD", "CD", "CD", "Cooked Data"},
    {3, "CODEC_TYPE_MCOM", "MCom", "MCOM", "MCOM"},
    {4, "CODEC_TYPE_NCOM", "NCom", "NCOM", "NCOM"},
    {5, "CODEC_TYPE_RCOM", "RCom", "RCOM", "RCOM"},
    {6, "CODEC_TYPE_CAN", "Can", "CAN", "CAN"},
    {7, "CODEC_TYPE_STUB", "Stub", "Stub", "Stub"},
    {8, "CODEC_TYPE_CCOM", "CCom", "CCOM", "CCOM"},
    {9, "CODEC_TYPE_SCOM", "SCom", "SCOM", "SCOM"},
    {10, "CODEC_TYPE_BINARY", "Binary", "Binary", "Binary"},
    {11, "CODEC_TYPE_TEXT", "Text", "Text", "Text"},
    {12, "CODEC_TYPE_PCOM", "PCom", "PCOM", "PCOM"},
    {13, "CODEC_TYPE_BCOM", "BCom", "BCOM", "BCOM"},
    {14, "CODEC_TYPE_QCOM", "QCom", "QCOM", "QCOM"},
    {15, "CODEC_TYPE_UCOM", "UCom", "UCOM", "UCOM"},
    {16, "CODEC_TYPE_LCOM", "LCom", "LCOM", "LCOM"},
    {17, "CODEC_TYPE_UNKNOWN", "Unknown", "Unknown", "Unknown"},
  });
}

TEST(EnumTable, basic_types) {
  expect_table("BASIC_TYPE", {
    {0, "BASIC_TYPE_void", "void", "void", "void"},
    {1, "BASIC_TYPE_bool", "bool", "bool", "bool"},
    {2, "BASIC_TYPE_char", "char", "char", "char"},
    {3, "BASIC_TYPE_float", "float", "float", "float"},
    {4, "BASIC_TYPE_double", "double", "double", "double"},
    {5, "BASIC_TYPE_uint8_t", "uint8_t", "uint8", "uint8"},
    {6, "BASIC_TYPE_uint16_t", "uint16_t", "uint16", "uint16"},
    {7, "BASIC_TYPE_uint32_t", "uint32_t", "uint32", "uint32"},
    {8, "BASIC_TYPE_uint64_t", "uint64_t", "uint64", "uint64"},
    {9, "BASIC_TYPE_int8_t", "int8_t", "int8", "int8"},
    {10, "BASIC_TYPE_int16_t", "int16_t", "int16", "int16"},
    {11, "BASIC_TYPE_int32_t", "int32_t", "int32", "int32"},
    {12, "BASIC_TYPE_int64_t", "int64_t", "int64", "int64"},
    {13, "BASIC_TYPE_UNKNOWN", "Unknown", "Unknown", "Unknown"},
  });
}

TEST(EnumTable, data_store_messages) {
  expect_table("DATA_STORE_MSG", {
    {0, "DATA_STORE_MSG_NONE", "None", "None", "None"},
    {1, "DATA_STORE_MSG_INIT", "Init", "Init", "Init"},
    {2, "DATA_STORE_MSG_PRESCAN", "Prescan", "Prescan", "Prescan"},
    {3, "DATA_STORE_MSG_POSTSCAN", "Postscan", "Postscan", "Postscan"},
    {4, "DATA_STORE_MSG_INIT2", "Init2", "Init2", "Init2"},
    {5, "DATA_STORE_MSG_PRESCAN2", "Prescan2", "Prescan2", "Prescan2"},
    {6, "DATA_STORE_MSG_POSTSCAN2", "Postscan2", "Postscan2", "Postscan2"},
    {7, "DATA_STORE_MSG_DECODE", "Decode", "Decode", "Decode"},
    {8, "DATA_STORE_MSG_SEEK", "Seek", "Seek", "Seek"},
    {9, "DATA_STORE_MSG_EXPORT", "Export", "Export", "Export"},
    {10, "DATA_STORE_MSG_UNKNOWN", "Unknown", "Unknown", "Unknown"},
  });
}

TEST(EnumTable, stream_decode_statuses) {
  expect_table("STREAM_DECODE_STATUS", {
    {0, "STREAM_DECODE_STATUS_INVALID", "Invalid", "Invalid", "Invalid"},
    {1, "STREAM_DECODE_STATUS_EMPTY", "Empty", "Empty", "Empty"},
    {2, "STREAM_DECODE_STATUS_CAPTURED", "Captured", "Captured", "Captured"},
    {3, "STREAM_DECODE_STATUS_INITIALISING", "Initialising", "Initialising", "Initialising"},
    {4, "STREAM_DECODE_STATUS_INITIALISED", "Initialised", "Initialised", "Initialised"},
    {5, "STREAM_DECODE_STATUS_DECODING", "Decoding", "Decoding", "Decoding"},
    {6, "STREAM_DECODE_STATUS_SKIPPING", "Skipping", "Skipping", "Skipping"},
    {7, "STREAM_DECODE_STATUS_SKIPPED", "Skipped", "Skipped", "Skipped"},
    {8, "STREAM_DECODE_STATUS_FINISHED", "Finished", "Finished", "Finished"},
    {9, "STREAM_DECODE_STATUS_DEAD", "Dead", "Dead", "Dead"},
    {10, "STREAM_DECODE_STATUS_ZOMBIE", "Zombie", "Zombie", "Zombie"},
    {11, "STREAM_DECODE_STATUS_DEFUNCT", "Defunct", "Defunct", "Defunct"},
    {12, "STREAM_DECODE_STATUS_UNKNOWN", "Unknown", "Unknown", "Unknown"},
  });
}

TEST(EnumTable, page_number_statuses) {
  expect_table("XCOM_PAGE_NUM_STATUS", {
    {0, "XCOM_PAGE_NUM_STATUS_INVALID", "Invalid", "Invalid", "Invalid"},
    {1, "XCOM_PAGE_NUM_STATUS_FIRST", "First", "First", "First"},
    {2, "XCOM_PAGE_NUM_STATUS_BACK", "Back", "Back", "Back"},
    {3, "XCOM_PAGE_NUM_STATUS_STALL", "Stall", "Stall", "Stall"},
    {4, "XCOM_PAGE_NUM_STATUS_GOOD", "Good", "Good", "Good"},
    {5, "XCOM_PAGE_NUM_STATUS_LOST", "Lost", "Lost", "Lost"},
    {6, "XCOM_PAGE_NUM_STATUS_UNKNOWN", "Unknown", "Unknown", "Unknown"},
  });
}

TEST(EnumTable, metadata_formats) {
  expect_table("XCOM_META_FORMAT", {
    {0, "XCOM_META_FORMAT_INVALID", "Invalid", "Invalid", "Invalid"},
    {1, "XCOM_META_FORMAT_INI_GENERIC", "Ini Generic", "Ini Generic", "Ini Generic"},
    {2, "XCOM_META_FORMAT_AUX_BINARY", "Aux Binary", "Aux Binary", "Aux Binary"},
    {3, "XCOM_META_FORMAT_AUX_TEXT", "Aux Text", "Aux Text", "Aux Text"},
    {4, "XCOM_META_FORMAT_AUX_GENERIC", "Aux Generic", "Aux Generic", "Aux Generic"},
    {5, "XCOM_META_FORMAT_AUX_JSON", "Aux JSON", "Aux JSON", "Aux JSON"},
    {6, "XCOM_META_FORMAT_AUX_XML", "Aux XML", "Aux XML", "Aux XML"},
    {7, "XCOM_META_FORMAT_UNKNOWN", "Unknown", "Unknown", "Unknown"},
  });
}

TEST(EnumTable, measurement_types) {
  expect_table("MEASUREMENT_TYPE", {
    {0, "MEASUREMENT_TYPE_NONE", "None", "None", "None"},
    {1, "MEASUREMENT_TYPE_CODEC_STATIC", "Codec-S", "Codec Static", "Codec Static"},
    {2, "MEASUREMENT_TYPE_CODEC_DYNAMIC", "Codec-D", "Codec Dynamic", "Codec Dynamic"},
    {3, "MEASUREMENT_TYPE_CODEC", "Codec-A", "Codec All", "Codec All"},
    {4, "MEASUREMENT_TYPE_COMMS_STATIC", "Comms-S", "Comms Static", "Comms Static"},
    {8, "MEASUREMENT_TYPE_COMMS_DYNAMIC", "Comms-D", "Comms Dynamic", "Comms Dynamic"},
    {12, "MEASUREMENT_TYPE_COMMS", "Comms-A", "Comms All", "Comms All"},
    {16, "MEASUREMENT_TYPE_EXTRA_STATIC", "Extra-S", "Extra Static", "Extra Static"},
    {32, "MEASUREMENT_TYPE_EXTRA_DYNAMIC", "Extra-D", "Extra Dynamic", "Extra Dynamic"},
    {48, "MEASUREMENT_TYPE_EXTRA", "Extra-A", "Extra All", "Extra All"},
    {5461, "MEASUREMENT_TYPE_EVERY_STATIC", "Every-S", "Every Static", "Every Static"},
    {10922, "MEASUREMENT_TYPE_EVERY_DYNAMIC", "Every-D", "Every Dynamic", "Every Dynamic"},
    {16383, "MEASUREMENT_TYPE_EVERY", "Every-A", "Every All", "Every All"},
    {32768, "MEASUREMENT_TYPE_UNKNOWN", "Unknown", "Unknown", "Unknown"},
  });
}

TEST(EnumTable, navigation_output_packets) {
  expect_table("NAV_OUTPUT_PACKET_TYPE", {
    {0, "NAV_OUTPUT_PACKET_TYPE_INVALID", "Invalid", "Invalid", "An invalid output packet (only on invalidation)."},
    {1, "NAV_OUTPUT_PACKET_TYPE_EMPTY", "Empty", "Empty", "An empty output packet."},
    {2, "NAV_OUTPUT_PACKET_TYPE_REGULAR", "Regular", "Regular", "A regular output packet."},
    {3, "NAV_OUTPUT_PACKET_TYPE_STATUS", "Status", "Status", "Status only output packet."},
    {4, "NAV_OUTPUT_PACKET_TYPE_IN1DOWN", "In 1 Down", "In 1 Down", "Trigger 1 down output packet (falling edge of input)."},
    {5, "NAV_OUTPUT_PACKET_TYPE_IN1UP", "In 1 Up", "In 1 Up", "Trigger 1 up output packet (rising edge of input)."},
    {6, "NAV_OUTPUT_PACKET_TYPE_OUT1", "Out 1", "Out 1", "Digital output packet."},
    {7, "NAV_OUTPUT_PACKET_TYPE_INTERPOLATED", "Interpolated", "Interpolated", "Interpolated output packet."},
    {8, "NAV_OUTPUT_PACKET_TYPE_IN2DOWN", "In 2 Down", "In 2 Down", "Trigger 2 down output packet (falling edge of input)."},
    {9, "NAV_OUTPUT_PACKET_TYPE_IN2UP", "In 2 Up", "In 2 Up", "Trigger 2 up output packet (rising edge of input)."},
    {10, "NAV_OUTPUT_PACKET_TYPE_OUT2", "Out 2", "Out 2", "Digital output 2 packet."},
    {11, "NAV_OUTPUT_PACKET_TYPE_EXTRA", "Extra", "Extra", "An extra output packet (feature codes)."},
    {12, "NAV_OUTPUT_PACKET_TYPE_UNKNOWN", "Unknown", "Unknown", "Unknown"},
  });
}

TEST(EnumTable, range_output_packets) {
  expect_table("RNG_OUTPUT_PACKET_TYPE", {
    {0, "RNG_OUTPUT_PACKET_TYPE_OBS_RANGE", "Obsolete", "Obsolete", "Obsolete"},
    {1, "RNG_OUTPUT_PACKET_TYPE_LANE", "Lane", "Lane", "Lane"},
    {2, "RNG_OUTPUT_PACKET_TYPE_EXT_RANGE", "Extended", "Extended", "Extended"},
    {3, "RNG_OUTPUT_PACKET_TYPE_NCOM", "Navigation", "Navigation", "Navigation"},
    {4, "RNG_OUTPUT_PACKET_TYPE_TRIGGER", "Trigger", "Trigger", "Trigger"},
    {5, "RNG_OUTPUT_PACKET_TYPE_POLYGON", "Polygon", "Polygon", "Polygon"},
    {6, "RNG_OUTPUT_PACKET_TYPE_MULTSEN", "MultSen", "MultSen", "Multiple sensor points"},
    {7, "RNG_OUTPUT_PACKET_TYPE_UNKNOWN", "Unknown", "Unknown", "Unknown"},
  });
}

TEST(EnumTable, navigation_statuses) {
  expect_table("NAVIGATION_STATUS", {
    {0, "NAVIGATION_STATUS_INVALID", "Invalid", "Invalid", "Invalid"},
    {1, "NAVIGATION_STATUS_RAWIMU", "Raw Inertial Data", "Raw Inertial Data", "Raw Inertial Data"},
    {2, "NAVIGATION_STATUS_INIT", "Ready to Initialise", "Ready to Initialise", "Ready to Initialise"},
    {3, "NAVIGATION_STATUS_LOCKING", "Locking On", "Locking On", "Locking On"},
    {4, "NAVIGATION_STATUS_LOCKED", "Real-Time", "Real-Time", "Real-Time"},
    {5, "NAVIGATION_STATUS_UNLOCKED", "Unlocked", "Unlocked", "Unlocked"},
    {6, "NAVIGATION_STATUS_EXPIRED", "Firmware Expired", "Firmware Expired", "Firmware Expired"},
    {7, "NAVIGATION_STATUS_BLOCKED", "Firmware Blocked", "Firmware Blocked", "Firmware Blocked"},
    {8, "NAVIGATION_STATUS_RESERVED_08", "Reserved", "Reserved", "Reserved"},
    {9, "NAVIGATION_STATUS_RESERVED_09", "Reserved", "Reserved", "Reserved"},
    {10, "NAVIGATION_STATUS_STATUSONLY", "Status Only", "Status Only", "Status Only"},
    {11, "NAVIGATION_STATUS_EXTRA", "Extra", "Extra", "Extra"},
    {12, "NAVIGATION_STATUS_LOCKED_SURVEY", "Real-Time (Survey)", "Real-Time (Survey)", "Real-Time (Survey)"},
    {13, "NAVIGATION_STATUS_RESERVED_13", "Reserved", "Reserved", "Reserved"},
    {14, "NAVIGATION_STATUS_RESERVED_14", "Reserved", "Reserved", "Reserved"},
    {15, "NAVIGATION_STATUS_RESERVED_15", "Reserved", "Reserved", "Reserved"},
    {16, "NAVIGATION_STATUS_RESERVED_16", "Reserved", "Reserved", "Reserved"},
    {17, "NAVIGATION_STATUS_RESERVED_17", "Reserved", "Reserved", "Reserved"},
    {18, "NAVIGATION_STATUS_RESERVED_18", "Reserved", "Reserved", "Reserved"},
    {19, "NAVIGATION_STATUS_RESERVED_19", "Reserved", "Reserved", "Reserved"},
    {20, "NAVIGATION_STATUS_TRIGINIT", "Trigger (Initialise)", "Trigger (Initialise)", "Trigger (Initialise)"},
    {21, "NAVIGATION_STATUS_TRIGLOCKING", "Trigger (Locking On)", "Trigger (Locking On)", "Trigger (Locking On)"},
    {22, "NAVIGATION_STATUS_TRIGLOCKED", "Trigger (Real-Time)", "Trigger (Real-Time)", "Trigger (Real-Time)"},
    {23, "NAVIGATION_STATUS_UNKNOWN", "Unknown", "Unknown", "Unknown"},
  });
}

TEST(EnumTable, there_are_91_enumerations_in_this_order_with_these_many_members) {
  const std::vector<std::pair<std::string, std::size_t>> expected = {
      {"TRI_STATE_TYPE", 3}, {"CAN_BUS_BAUD", 8}, {"SERIAL_BAUD", 35}, {"SERIAL_DATA_BITS", 5},
      {"SERIAL_STOP_BITS", 4}, {"SERIAL_PARITY", 6}, {"IMU_TYPE", 21}, {"IMU_ACCEL_TYPE", 21},
      {"IMU_GYRO_TYPE", 15}, {"GPS_TYPE", 23}, {"GPS_FORMAT", 12}, {"GPS_DIFF_TYPE", 8},
      {"GPS_DIFF_FORMAT", 10}, {"GPS_BASE_STATUS", 7}, {"DATUM_ELLIPSOID", 3}, {"DATUM_FRAME", 4},
      {"INTER_PCB_TYPE", 31}, {"FRONT_PCB_TYPE", 19}, {"IMU_PCB_TYPE", 24}, {"GPS_PCB_TYPE", 32},
      {"FLEX_PCB_TYPE", 4}, {"ADK_PCB_TYPE", 9}, {"INTER_SW_ID", 14}, {"CPU_PCB_TYPE", 11},
      {"HARDWARE_CONFIG_TYPE", 17}, {"IMU_HOUSING_TYPE", 7}, {"EEPROM_I2C_ADD", 5},
      {"EEPROM_PAGE_INDEX", 13}, {"NAVIGATION_STATUS", 24}, {"NAV_OUTPUT_PACKET_TYPE", 13},
      {"RNG_OUTPUT_PACKET_TYPE", 8}, {"RNG_PROVENANCE_TYPE", 18}, {"RNG_RANGE_MODE", 5},
      {"RNG_MEASUREMENT_PLANE", 3}, {"COM_HEADING_QUALITY", 5}, {"COM_HEADING_SEARCH_TYPE", 5},
      {"COM_HEADING_SEARCH_STATUS", 20}, {"COM_HEADING_SEARCH_READY", 3},
      {"COM_DUAL_PORT_RAM_STATUS", 12}, {"COM_GPS_RATE_TYPE", 8}, {"COM_GPS_ANTENNA_STATUS", 4},
      {"COM_GPS_ANTENNA_POWER", 3}, {"COM_GPS_XMODE_TYPE", 37}, {"COM_OPTION_VEHICLE_LEVEL", 4},
      {"COM_OPTION_VIBRATION", 4}, {"COM_OPTION_GPS_ACCURACY", 4}, {"COM_OPTION_OUTPUT", 16},
      {"COM_OPTION_HEADING", 5}, {"COM_OPTION_HEAVE", 4}, {"COM_UMAC_STATUS", 11},
      {"UMAC_STATUS_TYPE", 11}, {"INTERFACE_TYPE", 10}, {"TRANSPORT_TYPE", 12}, {"CODEC_TYPE", 18},
      {"STREAM_DECODE_STATUS", 13}, {"XCOM_PAGE_NUM_STATUS", 7}, {"XCOM_META_FORMAT", 8},
      {"DATA_STORE_MSG", 11}, {"MEASUREMENT_TYPE", 14}, {"BASIC_TYPE", 14}, {"RD_PKT_TYPE", 57},
      {"CD_PKT_TYPE", 6}, {"INPUT_CONFIG_EXT", 41}, {"GENERATOR_TYPE", 7}, {"PROVENANCE_TYPE", 20},
      {"FEATURE_CODE", 64}, {"FEATURE_STATUS", 20}, {"FEATURE_STATUS_COMPACT", 8},
      {"RETURN_TYPE", 11}, {"XBNS_LED", 17}, {"CCOM_CAT_TYPE", 14}, {"CCOM_PKT_TYPE", 38},
      {"AID_AID_DEVICE", 6}, {"AID_STREAM", 70}, {"AID_TYPE", 20}, {"NTRIP_SM", 19},
      {"TREL_PORT", 21}, {"WIFI_CONNECTION_STATE", 5}, {"WIFI_AP_STATE", 5}, {"WIFI_REGION", 7},
      {"PTP_STATE", 14}, {"STATIC_TAGET_TYPE", 3}, {"OUTPUT_DATUM", 5}, {"PTP_EPOCH_TYPE", 6},
      {"PPS_STATUS", 4}, {"FILTER_TYPE", 3}, {"PRODUCT_TYPE", 4}, {"PRODUCT_FAMILY_TYPE", 12},
      {"PRODUCT_GROUP_TYPE", 38}, {"PRODUCT_MODEL_TYPE", 602}, {"PRODUCT_GENERATION_TYPE", 6},
  };
  // clang-format on
  std::vector<std::pair<std::string, std::size_t>> found;
  for (const Enumerated& x : enumerations()) found.emplace_back(x.name, x.lines.size());
  EXPECT_EQ(found.size(), 91U);
  EXPECT_EQ(found, expected);
}

}  // namespace
}  // namespace Trel::Enum::Test
