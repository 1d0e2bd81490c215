// Random layouts, packed and read bit by bit here, against the codec.
#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "ucom/UCom_TestDocument.h"

namespace Trel::UCom {
namespace {

constexpr std::uint32_t kSeed = 20240611;

struct Field {
  sid_t sid;
  char letter;  // B, S, U or R
  std::uint32_t offset;
  std::uint32_t size;
  bool scaled = false;  // measured as a double, half the raw value plus 3
};

void write_bits(Bytes& data, const Field& field, std::uint64_t value) {
  for (std::uint32_t bit = 0; bit < field.size; ++bit) {
    const std::uint32_t place = field.offset + bit;
    const auto mask = static_cast<unsigned char>(1U << place % 8);
    if ((value >> bit & 1) != 0) {
      data[place / 8] = static_cast<unsigned char>(data[place / 8] | mask);
    } else {
      data[place / 8] = static_cast<unsigned char>(data[place / 8] & ~mask);
    }
  }
}

// Bits beyond the end are 0.
std::uint64_t read_bits(const Bytes& data, const Field& field) {
  std::uint64_t value = 0;
  for (std::uint32_t bit = 0; bit < field.size; ++bit) {
    const std::uint32_t place = field.offset + bit;
    if (place / 8 >= data.size()) break;
    value |= static_cast<std::uint64_t>(data[place / 8] >> place % 8 & 1) << bit;
  }
  return value;
}

std::int64_t sign_extended(std::uint64_t value, std::uint32_t size) {
  const bool negative = (value >> (size - 1) & 1) != 0;
  if (negative) {
    for (std::uint32_t bit = size; bit < 64; ++bit) value |= std::uint64_t{1} << bit;
  }
  return static_cast<std::int64_t>(value);
}

std::string entry(const Field& field) {
  return R"({"ID":)" + std::to_string(field.sid) + R"(,"BT":")" + field.letter + R"(","BO":)" +
         std::to_string(field.offset) + R"(,"BS":)" + std::to_string(field.size) +
         (field.scaled ? R"(,"MT":"R64","MS":0.5,"MO":3})" : "}");
}

// One message 1 with all the fields.
nlohmann::json layout(const std::vector<Field>& fields) {
  std::string list;
  std::string signals;
  for (const Field& field : fields) {
    if (!list.empty()) {
      list += ',';
      signals += ',';
    }
    list += std::to_string(field.sid);
    signals += entry(field);
  }
  return document(R"({"ID":1,"BS":[)" + list + "]}", signals);
}

// The variable of `field` has the value of `bits`.
void expect_value(const Codec& codec, const Field& field, std::uint64_t bits) {
  const Signal* signal = listed_signal(codec, field.sid);
  ASSERT_NE(signal, nullptr) << entry(field);
  Lib::visit_element_type(signal->get_mea_type(), [&]<class M>(std::type_identity<M>) {
    const M value = codec.CData().var<M>(signal->get_slot()).get();
    if (field.scaled) {
      const double raw = field.letter == 'S' ? static_cast<double>(sign_extended(bits, field.size))
                                             : static_cast<double>(bits);
      EXPECT_EQ(static_cast<double>(value), raw * 0.5 + 3.0) << entry(field);
    } else if constexpr (std::is_same_v<M, float>) {
      const auto expected = std::bit_cast<float>(static_cast<std::uint32_t>(bits));
      EXPECT_TRUE(value == expected || (value != value && expected != expected)) << entry(field);
    } else if constexpr (std::is_same_v<M, double>) {
      const auto expected = std::bit_cast<double>(bits);
      EXPECT_TRUE(value == expected || (value != value && expected != expected)) << entry(field);
    } else if constexpr (std::is_same_v<M, bool>) {
      EXPECT_EQ(value, bits != 0) << entry(field);
    } else if (field.letter == 'S') {
      EXPECT_EQ(static_cast<long long>(value), sign_extended(bits, field.size)) << entry(field);
    } else {
      EXPECT_EQ(static_cast<unsigned long long>(value), bits) << entry(field);
    }
  });
}

class RandomFields {
 public:
  explicit RandomFields(std::uint32_t seed) : engine_(seed) {}

  std::uint64_t bits() { return engine_(); }
  std::uint32_t between(std::uint32_t low, std::uint32_t high) {
    return low + static_cast<std::uint32_t>(engine_() % (high - low + 1));
  }

  Field field(sid_t sid, std::uint32_t offset) {
    const char letter = "BSUR"[between(0, 3)];
    const std::uint32_t size = letter == 'B' ? 1 : between(letter == 'R' ? 17 : 1, 64);
    const bool scaled = (letter == 'S' || letter == 'U') && size <= 53 && between(0, 1) == 1;
    return {sid, letter, offset, size, scaled};
  }

  // Fields side by side, with gaps of up to 11 bits.
  std::vector<Field> row(std::size_t count) {
    std::vector<Field> fields;
    std::uint32_t offset = 0;
    for (std::size_t index = 0; index < count; ++index) {
      offset += between(0, 11);
      fields.push_back(field(index + 1, offset));
      offset += fields.back().size;
    }
    return fields;
  }

  Bytes noise(std::size_t size) {
    Bytes data(size);
    for (unsigned char& byte : data) byte = static_cast<unsigned char>(engine_());
    return data;
  }

 private:
  std::mt19937_64 engine_;
};

std::size_t bytes_of(const std::vector<Field>& fields) {
  return (fields.back().offset + fields.back().size + 7) / 8;
}

TEST(UComProperty, fields_packed_side_by_side_come_out_as_they_went_in) {
  SCOPED_TRACE("seed " + std::to_string(kSeed));
  RandomFields random(kSeed);
  for (int round = 0; round < 200; ++round) {
    const std::vector<Field> fields = random.row(20);
    Codec codec(false);
    codec.configure(layout(fields), false);
    Bytes data = random.noise(bytes_of(fields));
    std::vector<std::uint64_t> values;
    for (const Field& field : fields) {
      values.push_back(random.bits() & ~std::uint64_t{0} >> (64 - field.size));
      write_bits(data, field, values.back());
    }
    decode(codec, 1, data);
    for (std::size_t index = 0; index < fields.size(); ++index) {
      expect_value(codec, fields[index], values[index]);
    }
    if (HasFailure()) FAIL() << "round " << round;
  }
}

TEST(UComProperty, fields_anywhere_in_noise_are_read_bit_by_bit) {
  SCOPED_TRACE("seed " + std::to_string(kSeed + 1));
  RandomFields random(kSeed + 1);
  for (int round = 0; round < 200; ++round) {
    std::vector<Field> fields;
    for (sid_t sid = 1; sid <= 30; ++sid)
      fields.push_back(random.field(sid, random.between(0, 255)));
    Codec codec(false);
    codec.configure(layout(fields), false);
    const Bytes data = random.noise(random.between(1, 60));
    decode(codec, 1, data);
    for (const Field& field : fields) expect_value(codec, field, read_bits(data, field));
    if (HasFailure()) FAIL() << "round " << round;
  }
}

TEST(UComProperty, every_type_size_and_offset_in_a_byte_is_read_bit_by_bit) {
  SCOPED_TRACE("seed " + std::to_string(kSeed + 2));
  RandomFields random(kSeed + 2);
  std::vector<Field> fields;
  for (std::uint32_t offset = 0; offset < 8; ++offset) {
    fields.push_back({fields.size(), 'B', offset, 1});
    for (std::uint32_t size = 1; size <= 64; ++size) {
      fields.push_back({fields.size(), 'S', offset, size});
      fields.push_back({fields.size(), 'U', offset, size});
      if (size >= 17) fields.push_back({fields.size(), 'R', offset, size});
    }
  }
  Codec codec(false);
  codec.configure(layout(fields), false);
  ASSERT_EQ(codec.get_signals_size(), fields.size());
  for (int round = 0; round < 10; ++round) {
    const Bytes data = random.noise(9);
    decode(codec, 1, data);
    for (std::size_t six = 0; six < fields.size(); ++six) {
      expect_value(codec, fields[six], read_bits(data, fields[six]));
      if (HasFailure()) FAIL() << "round " << round;
    }
  }
}

TEST(UComProperty, a_packet_cut_at_any_length_reads_zeros_behind_its_end) {
  SCOPED_TRACE("seed " + std::to_string(kSeed + 3));
  RandomFields random(kSeed + 3);
  for (int round = 0; round < 5; ++round) {
    const std::vector<Field> fields = random.row(16);
    Codec codec(false);
    codec.configure(layout(fields), false);
    const Bytes whole = random.noise(bytes_of(fields) + 12);
    const Bytes ones(whole.size(), 0xFF);
    for (std::size_t size = 1; size <= whole.size(); ++size) {
      // What an earlier packet left in the codec must not show.
      decode(codec, 1, ones);
      decode(codec, 1, Bytes(ones.begin(), ones.begin() + 1));
      const Bytes data(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
      decode(codec, 1, data);
      for (const Field& field : fields) expect_value(codec, field, read_bits(data, field));
      if (HasFailure()) FAIL() << "round " << round << ", size " << size;
    }
  }
}

TEST(UComProperty, a_short_packet_shows_nothing_of_a_longer_one_before_it) {
  // Two messages share the space in which short packets are extended.
  Codec codec(false);
  codec.configure(document(R"({"ID":1,"BS":[1]},{"ID":2,"BS":[2]})",
                           R"({"ID":1,"BT":"U","BS":64,"BO":64},{"ID":2,"BT":"U","BS":64})"),
                  false);
  decode(codec, 1, Bytes(16, 0xFF));
  decode(codec, 2, {0x05});
  EXPECT_EQ(variable<unsigned long long>(codec, 2).get(), 5u);
  EXPECT_EQ(variable<unsigned long long>(codec, 1).get(), ~0ULL);
  decode(codec, 1, Bytes(8, 0xFF));
  EXPECT_EQ(variable<unsigned long long>(codec, 1).get(), 0u);
}

TEST(UComProperty, the_farthest_fields_stay_inside_short_and_long_packets) {
  // Bit 65535 is the highest of byte 8191.
  Codec codec(false);
  codec.configure(document(R"({"ID":1,"BS":[1,2,3]})",
                           R"({"ID":1,"BT":"U","BS":64,"BO":65535},{"ID":2,"BO":65535,"BS":65536},
                              {"ID":3,"BT":"B","BO":65535})"),
                  false);
  decode(codec, 1, {0xFF});
  EXPECT_EQ(variable<unsigned long long>(codec, 1).get(), 0u);
  EXPECT_EQ(variable<int>(codec, 2).get(), 0);
  EXPECT_FALSE(variable<bool>(codec, 3).get());

  decode(codec, 1, Bytes(8192, 0x80));
  EXPECT_EQ(variable<unsigned long long>(codec, 1).get(), 1u);
  EXPECT_EQ(variable<int>(codec, 2).get(), 0x80);  // longer than its type: no shift
  EXPECT_TRUE(variable<bool>(codec, 3).get());

  decode(codec, 1, Bytes(20000, 0xFF));
  EXPECT_EQ(variable<unsigned long long>(codec, 1).get(), ~0ULL);
  EXPECT_EQ(variable<int>(codec, 2).get(), -1);
}

}  // namespace
}  // namespace Trel::UCom
