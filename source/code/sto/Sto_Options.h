// The one configuration record of the data store: a plain value that the client fills, the store
// copies and each resource reads.
#pragma once

namespace Trel::Sto {

class Options {
 public:
  // In the order of the members below.
  Options(unsigned int bits, long long resolution, unsigned int spare, double period,
          unsigned long long bytes, unsigned int ring_bits)
      : store_bits(bits),
        store_resolution(resolution),
        reserved(spare),
        progress_period(period),
        progress_bytes(bytes),
        message_bits(ring_bits) {}

  // Power of two: a retained store holds at most 2^store_bits sample slots.
  unsigned int store_bits;
  // Finest slot width of a retained store, in nanoseconds.
  long long store_resolution;
  // Kept and copied; nothing reads it.
  unsigned int reserved;
  // Least time between two progress messages of a seek or an export, in seconds.
  double progress_period;
  // Least advance of the file position between two progress messages of a scan, in bytes.
  unsigned long long progress_bytes;
  // Power of two: size of the message ring, in bytes.
  unsigned int message_bits;
};

}  // namespace Trel::Sto
