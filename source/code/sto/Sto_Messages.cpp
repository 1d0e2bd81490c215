#include "sto/Sto_Messages.h"

#include <algorithm>
#include <array>

#include "library/Lib_Cast.h"

namespace Trel::Sto {

Messages::Messages(unsigned int bits) : CyclicBuffer(bits) {}

void Messages::encode(unsigned char* dest, unsigned int id, Enum::DATA_STORE_MSG msg,
                      double value) const {
  cast_uint32_to_4_byte_LE(dest, id);
  cast_uint16_to_2_byte_LE(dest + 4, static_cast<unsigned short>(Enum::GetIndex(msg)));
  cast_real32_to_4_byte_LE(dest + 6, std::clamp(static_cast<float>(value), 0.0F, 100.0F));
}

void Messages::push(unsigned int id, Enum::DATA_STORE_MSG msg, double value) {
  if (id == last_id_ && msg == last_message_ && value == last_value_) return;
  last_id_ = id;
  last_message_ = msg;
  last_value_ = value;
  if (space() < kRecordSize) return;
  std::array<unsigned char, kRecordSize> record;
  encode(record.data(), id, msg, value);
  CyclicBuffer::push(record.data(), record.size());
}

void Messages::push(Enum::DATA_STORE_MSG msg, double value) {
  push(kWholeStore, msg, value);
}

}  // namespace Trel::Sto
