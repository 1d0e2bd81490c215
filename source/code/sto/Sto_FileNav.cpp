#include "sto/Sto_FileNav.h"

#include "library/Lib_Report.h"

namespace Trel::Sto {

void LogicalNavAny::rewind() {
  rewind_sync();
  valid = false;
}

bool LogicalNavAny::read_next_packet() {
  valid = sync_next_packet();
  return valid;
}

const std::uint8_t* LogicalNavAny::payload_data() const {
  TREL_ASSERT(valid, "sto/Sto_FileNav");
  return packet.payload_data();
}

std::size_t LogicalNavAny::payload_size() const {
  TREL_ASSERT(valid, "sto/Sto_FileNav");
  return packet.payload_size();
}

}  // namespace Trel::Sto
