// Decoding packets allocates nothing.
#include <gtest/gtest.h>

#include <cstddef>
#include <string>

#include "support/Support_Allocations.h"
#include "ucom/UCom_TestDocument.h"

namespace Trel::UCom {
namespace {

// Message 1 has Nano and a signal of every other measurement type, message 2 no time.
nlohmann::json every_type() {
  return document(R"({"ID":1,"BS":[1,2,3,4,5,6,7,8,9,10,11]},{"ID":2,"BS":[2,3]})",
                  R"({"ID":1,"DN":"Nano","BT":"S","BS":64},
         {"ID":2,"BO":64,"BT":"B"},
         {"ID":3,"BO":65,"BT":"S","BS":12,"MT":"R32","MS":0.1},
         {"ID":4,"BO":77,"BT":"U","BS":30,"MT":"R64"},
         {"ID":5,"BO":107,"BT":"S","BS":5},
         {"ID":6,"BO":112,"BT":"S","BS":16},
         {"ID":7,"BO":128,"BT":"S","BS":32},
         {"ID":8,"BO":160,"BT":"U","BS":8},
         {"ID":9,"BO":168,"BT":"U","BS":16},
         {"ID":10,"BO":184,"BT":"U","BS":32},
         {"ID":11,"BO":216,"BT":"U","BS":64})");
}

TEST(UComAllocation, decoding_allocates_nothing) {
  Codec codec(true);
  codec.configure(every_type(), true);
  const Bytes whole = packet(1, Bytes(64, 0x5A));
  const Bytes shorter = packet(1, Bytes(10, 0x5A));
  const Bytes other = packet(2, Bytes(3, 0x5A));
  const Bytes unknown = packet(999, Bytes(3, 0x5A));

  const auto before = Support::allocations();
  codec.decode(other.data(), other.size());
  const bool goes_on = codec.decode(shorter.data(), shorter.size());
  codec.rewind(true);
  for (int repeat = 0; repeat < 100; ++repeat) {
    for (const Bytes* bytes : {&whole, &shorter, &other, &unknown}) {
      codec.decode(bytes->data(), bytes->size());
    }
  }
  const Lib::VariableExt<long long> nano = codec.Nano();
  const auto after = Support::allocations();

  EXPECT_EQ(after, before);
  EXPECT_FALSE(goes_on);
  EXPECT_EQ(nano.get(), 0x5A5A5A5A5A5A5A5A);
}

}  // namespace
}  // namespace Trel::UCom
