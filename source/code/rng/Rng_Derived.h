// What is computed from range data: resultants, times, directions, frames and the forms of
// ISO 8855. docs/range.md tells the frames and the formulas.
//
// Each function computes the groups of one target, 0 to 3, from the record as it stands, and those
// of the hunter that follow from the same packet. A group whose key is off is rejected; a value
// that follows from one that is not good is invalid. Runs are computed as far as they are in use,
// and their other entries are invalid. Values are stamped with Nano, ISO forms of other values as
// those are. Nothing fails and nothing allocates.
#pragma once

#include "rng/Rng_ComData.h"
#include "rng/Rng_ComKey.h"

namespace Trel::Rng {

// The range and its rate in the plane, and the times to impact at the present rate.
void compute_range(unsigned int target, const ComKey& key, ComData& data);

// What needs accelerations, or the hunter's speed: the acceleration of the range, times to impact
// with it, and the gap in front of the hunter.
void compute_acceleration(unsigned int target, const ComKey& key, ComData& data);

// What headings alone tell: directions in the local frame, the difference of headings, and the ends
// of the hunter's ranges.
void compute_directions(unsigned int target, const ComKey& key, ComData& data);

// Rotations from frame to frame, outlines, sensors and nearest points in the local frame, and the
// distance of the centres.
void compute_frames(unsigned int target, const ComKey& key, ComData& data);

// The ISO forms of range, hunter and target, and of lanes.
void compute_iso(unsigned int target, const ComKey& key, ComData& data);
void compute_iso_lanes(const ComKey& key, ComData& data);

}  // namespace Trel::Rng
