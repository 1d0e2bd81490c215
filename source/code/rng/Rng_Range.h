// Range data: the packets that tell where one target is, and what is computed from them.
//
// Rng_RangeField.def and Rng_OldRangeField.def say what the packets hold. A group of values whose
// key is off is rejected; a value that its packet is too short to hold, or says nothing about, is
// invalid. Then come the slow channel and what is computed (Rng_Derived.h). The caller has checked
// framing and kind, and that Nano is up to date; all is stamped with it. Nothing fails and nothing
// allocates.
#pragma once

#include "rng/Rng_ComData.h"
#include "rng/Rng_ComKey.h"
#include "rng/Rng_Field.h"

namespace Trel::Rng {

// Where the number of the target, 1 to 4, stands in the form of today.
inline constexpr unsigned int kTargetByte = 6;

// The old form, which knows one target: the first of the record.
void ExtractObsoleteRangeData(const Packet& packet, const ComKey& key, ComData& data);

// The form of today. A target's number out of range is passed over.
void ExtractExtendedRangeData(const Packet& packet, const ComKey& key, ComData& data);

}  // namespace Trel::Rng
