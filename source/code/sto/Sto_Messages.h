// The store's progress channel: small binary records in a ring that a reader may drain.
//
// Progress is advisory. A full ring loses messages without a trace, nothing is overwritten and
// nothing blocks. A record is ten bytes, little-endian: the resource id (4), the index of the
// message (2), the progress in per cent as a 32-bit real (4).
#pragma once

#include <cstddef>

#include "enum/Enum.h"
#include "library/Lib_CyclicBuffer.h"

namespace Trel::Sto {

class Messages : public Lib::CyclicBuffer {
 public:
  static constexpr std::size_t kRecordSize = 10;
  // The id of a message that concerns the store as a whole.
  static constexpr unsigned int kWholeStore = 0xFFFFFFFF;

  // A ring of 2^bits bytes; above 30, 2^30.
  explicit Messages(unsigned int bits);

  // Writes one record of kRecordSize bytes to `dest`. `value` is limited to 0 to 100.
  void encode(unsigned char* dest, unsigned int id, Enum::DATA_STORE_MSG msg, double value) const;

  // Appends a record, unless it repeats the last call exactly or the ring has no room for it.
  void push(unsigned int id, Enum::DATA_STORE_MSG msg, double value);
  void push(Enum::DATA_STORE_MSG msg, double value);

 private:
  unsigned int last_id_ = 0;
  Enum::DATA_STORE_MSG last_message_ = Enum::DATA_STORE_MSG_NONE;
  double last_value_ = -1.0;
};

}  // namespace Trel::Sto
