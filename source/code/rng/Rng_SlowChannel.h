// The slow channels: nine bytes in each packet of range and lane data, a channel's number and its
// eight bytes of data, which bring what is not needed at full rate.
//
// Rng_RangeChannel.def and Rng_LaneChannel.def say what each channel holds, one line a field, and a
// channel is read by going through its lines. What a line cannot say is a function that a CALL line
// names. A channel without a line is passed over. A field whose key is off is rejected; one that is
// not available becomes invalid. The minutes of channel 0 are the codec's. Nothing fails and
// nothing allocates.
#pragma once

#include "rng/Rng_ComData.h"
#include "rng/Rng_ComKey.h"
#include "rng/Rng_Field.h"

namespace Trel::Rng {

// Where the channel stands in range data of the old form and of today's, and in lane data.
inline constexpr unsigned int kOldRangeChannel = 37;
inline constexpr unsigned int kRangeChannel = 41;
inline constexpr unsigned int kLaneChannel = 49;
// The channel at byte `at`: its number, and its eight bytes behind it; null if the packet is too
// short for it.
[[nodiscard]] constexpr const unsigned char* find_channel(const Packet& packet, unsigned int at) {
  return packet.holds(at, 9) ? packet.data + at : nullptr;
}

// The channels that a first pass reads too, from their eight bytes.
inline constexpr unsigned char kTimeChannel = 0;
inline constexpr unsigned char kUtcChannel = 7;
// The minutes since GPS time zero; -1 if the channel does not tell them.
[[nodiscard]] int read_minutes(const unsigned char* data);
// The offset to UTC in seconds; false, with the number as it was, if the channel does not tell it.
bool read_utc_offset(const unsigned char* data, int& seconds);

// Takes the eight bytes of a channel of range data for a target, 0 to 3, or of lane data.
void ExtractRangeChannel(unsigned int target, unsigned char channel, const unsigned char* data,
                         const ComKey& key, ComData& record);
void ExtractLaneChannel(unsigned char channel, const unsigned char* data, const ComKey& key,
                        ComData& record);

}  // namespace Trel::Rng
