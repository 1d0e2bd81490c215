#include "sto/Sto_FileRng.h"

namespace Trel::Sto {

template class LogicalAny<LogicalRng>;

void LogicalRngOne::rewind() {
  rewind_sync();
  valid = match = false;
}

bool LogicalRngOne::read_next_packet() {
  valid = match = false;
  if (!sync_next_packet()) return false;
  if (!is_kind()) return true;
  serial_found = static_cast<unsigned int>(serial_of_kind());
  valid = true;
  match = serial_wanted == serial_found;
  return true;
}

const std::uint8_t* LogicalRngOne::payload_data() const {
  TREL_ASSERT(valid, kSource);
  return data_of_kind();
}

std::size_t LogicalRngOne::payload_size() const {
  TREL_ASSERT(valid, kSource);
  return size_of_kind();
}

}  // namespace Trel::Sto
