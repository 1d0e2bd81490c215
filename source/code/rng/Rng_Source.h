// Where navigation packets come from, as range packets tell it: packets that wrap them name their
// source, and a slow channel names the sources of the hunter and of a target.
#pragma once

#include "rng/Rng_ComData.h"
#include "rng/Rng_ComKey.h"
#include "rng/Rng_Field.h"

namespace Trel::Rng {

// Provenances: a network, a file, and none.
inline constexpr unsigned int kNetwork = 0;
inline constexpr unsigned int kFile = 16;
inline constexpr unsigned int kNoSource = 18;

// Notes the source of a packet that wraps one navigation packet, in the first of the record's
// sources that is still empty, unless one has its address. Any other size than 82 is passed over,
// and so is a source without provenance, or without address and provenance; when no place is left a
// source is dropped. A place that nobody wants stays empty. The provenance is kept as it came.
void ExtractNCom(const Packet& packet, const ComKey& key, ComData& data);

// The numbers that the channel of addresses gives to the hunter or a target. An address is good
// for AddressIPv4, and a key of four characters for AddressFile; Address has either, and 0 is none.
// IPv4Adr is the address alone. NComIndex is the place of the source with that address among the
// record's, as far as they are known by then.
void set_hunter_source(unsigned int number, ComData& data);
void set_target_source(unsigned int number, unsigned int target, ComData& data);
// Nobody wants them.
void reject_hunter_source(ComData& data);
void reject_target_source(unsigned int target, ComData& data);

}  // namespace Trel::Rng
