// Packet synchronisation against a book of what went in: any bytes, in writes of any size that the
// buffer can hold.
//
// Each packet must be the bytes that were written at its location, and packets, what was dropped
// and what is still held must add up to all that was written. A stop is a finding.
#pragma once

#include <algorithm>
#include <cstdlib>
#include <vector>

#include "Fuzz_Input.h"

namespace Trel::Fuzz {

template <class Sync, class Packet>
class SyncBook {
 public:
  void run(Input input) {
    while (!input.empty()) {
      std::string_view part = input.part();
      do {
        write(part.substr(0, kLargest));
        part.remove_prefix(std::min(part.size(), kLargest));
      } while (!part.empty());
    }
  }

 private:
  // Of a longer write not the newest bytes survive, so the book would be wrong about them.
  static constexpr std::size_t kLargest = 2559;

  static void require(bool holds) {
    if (!holds) std::abort();
  }

  void write(std::string_view part) {
    written_.insert(written_.end(), part.begin(), part.end());
    sync_.write(reinterpret_cast<const unsigned char*>(part.data()),
                static_cast<unsigned int>(part.size()));
    int result = 0;
    while ((result = sync_.packet_out(packet_)) != 0) {
      require(sync_.location() + sync_.size() == written_.size());
      if (result > 0) take();
    }
    require(sync_.location() + sync_.size() == written_.size());
  }

  void take() {
    static_cast<void>(packet_.serial());
    const std::size_t at = packet_.location();
    const std::size_t size = packet_.payload_size();
    require(packet_.valid() && at + size <= written_.size());
    require(std::equal(packet_.payload_data(), packet_.payload_data() + size,
                       written_.begin() + static_cast<std::ptrdiff_t>(at)));
    unsigned char sum = 0;
    for (std::size_t n = 1; n + 1 < size; ++n) {
      sum = static_cast<unsigned char>(sum + written_[at + n]);
    }
    require(sum == written_[at + size - 1]);
    if (sync_.packets() == 1) first_ = at;
    require(first_ + taken_ + sync_.bytes_skipped() == at);
    taken_ += size;
  }

  Sync sync_;
  Packet packet_;
  std::vector<unsigned char> written_;
  std::size_t first_ = 0;  // what stands ahead of the first packet is not counted as skipped
  std::size_t taken_ = 0;
};

}  // namespace Trel::Fuzz
