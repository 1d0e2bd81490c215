// Logical readers of raw range files, which mix range data with wrapped NCom packets.
//
// One stream is filtered out of the mix by the kind of its packets and by its serial number: 0 for
// the range data; the address of the source, or its provenance where that is 0, for what is
// wrapped. A read succeeds on a packet of any kind; whether it is one for the reader is asked
// afterwards. A wrapper too short to name its source is of neither kind.
#pragma once

#include "rng/Rng_Sync.h"
#include "sto/Sto_FileSync.h"

namespace Trel::Sto {

class LogicalRng : public LogicalSync<Rng::SyncState, Rng::PacketState> {
 public:
  static constexpr const char* kSource = "sto/Sto_FileRng";

  // What the packet holds: range data, or NCom packets of a source that it names.
  [[nodiscard]] bool is_rcom() const { return packet.rcom_valid(); }
  [[nodiscard]] bool is_ncom() const { return packet.ncom_valid() && packet.ncom_serial() >= 0; }
  // The number of the packet's logical stream within the file; -1 without a packet. The second and
  // the third take the packet for range data and for a wrapper, whatever it is.
  [[nodiscard]] long long serial() const { return packet.serial(); }
  [[nodiscard]] long long serial_rcom() const { return packet.rcom_serial(); }
  [[nodiscard]] long long serial_ncom() const { return packet.ncom_serial(); }
};

using LogicalRngAny = LogicalAny<LogicalRng>;

extern template class LogicalAny<LogicalRng>;

// What the readers of one stream share. The packet held is valid if it is of the reader's kind, and
// matches if it is of the stream `serial` besides.
class LogicalRngOne : public LogicalRng {
 public:
  explicit LogicalRngOne(unsigned int serial) : serial_wanted(serial) {}

  void rewind() override;
  bool read_next_packet() override;
  [[nodiscard]] bool valid_packet() const override { return valid; }
  [[nodiscard]] bool match_packet() const override { return match; }
  [[nodiscard]] const std::uint8_t* payload_data() const override;
  [[nodiscard]] std::size_t payload_size() const override;

  // The serial number of the last valid packet.
  [[nodiscard]] unsigned int found() const { return serial_found; }

 protected:
  // Of the packet held: whether it is of the kind, and then its serial number and its payload.
  [[nodiscard]] virtual bool is_kind() const = 0;
  [[nodiscard]] virtual long long serial_of_kind() const = 0;
  [[nodiscard]] virtual const std::uint8_t* data_of_kind() const = 0;
  [[nodiscard]] virtual std::size_t size_of_kind() const = 0;

 private:
  unsigned int serial_wanted;
  unsigned int serial_found = 0;
  bool valid = false;
  bool match = false;
};

// A reader of range data. The payload is the whole packet.
class LogicalRngRCom : public LogicalRngOne {
 public:
  using LogicalRngOne::LogicalRngOne;

 private:
  [[nodiscard]] bool is_kind() const override { return is_rcom(); }
  [[nodiscard]] long long serial_of_kind() const override { return serial_rcom(); }
  [[nodiscard]] const std::uint8_t* data_of_kind() const override {
    return packet.rcom_payload_data();
  }
  [[nodiscard]] std::size_t size_of_kind() const override { return packet.rcom_payload_size(); }
};

// A reader of wrapped NCom packets. The payload is what is wrapped: address, provenance, packets.
class LogicalRngNCom : public LogicalRngOne {
 public:
  using LogicalRngOne::LogicalRngOne;

 private:
  [[nodiscard]] bool is_kind() const override { return is_ncom(); }
  [[nodiscard]] long long serial_of_kind() const override { return serial_ncom(); }
  [[nodiscard]] const std::uint8_t* data_of_kind() const override {
    return packet.ncom_range_payload_data();
  }
  [[nodiscard]] std::size_t size_of_kind() const override {
    return packet.ncom_range_payload_size();
  }
};

}  // namespace Trel::Sto
