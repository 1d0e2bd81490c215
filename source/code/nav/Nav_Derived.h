// What follows from the navigation solution: filtered, rotated and displaced quantities, speeds and
// their held forms, track, slip, distance, gradient, the user's own frame, the ISO 8855 axes.
//
// All is computed from ComData into ComData, after each packet, in the order in which the codec
// calls: later groups use what earlier ones have set. A group whose key is off is left alone, and
// one with an input that is not valid keeps its last values; nothing fails and no input makes the
// mathematics report. The distances and the filters alone carry state from packet to packet. Data,
// key, filters and form are the codec's and outlive this object. Nothing allocates for a packet,
// the moving averages apart. docs/frames.md tells the frames.
#pragma once

#include <array>

#include "nav/Nav_ComData.h"
#include "nav/Nav_ComKey.h"
#include "nav/Nav_DerivedAttitude.h"
#include "nav/Nav_DerivedTurn.h"
#include "nav/Nav_FilterBank.h"
#include "nav/Nav_Form.h"
#include "nav/Nav_Scale.h"

namespace Trel::Nav {

class DerivedOutputs : public ComScales {
 public:
  // The feature without which track, slip, curvature, distance, gradient and the rotated vectors
  // are not computed, where the form has licensed features.
  static constexpr unsigned int kMotionFeature = 1;

  DerivedOutputs(ComData& data, const ComKey& key, FilterBank& filters, const PacketForm& form)
      : data_(data), key_(key), filters_(filters), form_(form) {}
  DerivedOutputs(const DerivedOutputs&) = delete;
  DerivedOutputs& operator=(const DerivedOutputs&) = delete;

  // Feeds the filters; not for a moment between packets.
  void FilteredOutputsCompute();
  void RotateOutputsCompute();
  // Below twice the accuracy of the speed, track, slip and curvature keep their values.
  void SpeedSlipCompute();
  // `predicting`: gives the distance at a moment between packets and leaves the sum alone.
  void DistanceCompute(bool predicting);
  void RefFrameOutputsCompute();
  // A measure point that moves at no more than 0.14 m/s keeps its values.
  void DisplacedOutputsCompute();
  // A gradient that cannot be told at this speed and accuracy becomes invalid.
  void AngleGradientCompute();
  // `predicting`: the moment lies between packets, so that nothing is fed to a filter, and the jerk
  // is not computed.
  void Iso8855OutputsCompute(bool predicting);

  // Make invalid what would outlive its packet.
  void RotateOutputsInvalidate();
  void Iso8855OutputsInvalidate();

  // Distances start anew.
  void Reset();

  // To be called once the key has changed: families of outputs that nobody wants then cost one
  // test.
  void NoteKey();
  // Whether anyone wants any of all this; otherwise none of it need be called.
  [[nodiscard]] bool wanted() const { return wanted_; }

 private:
  // One distance that grows.
  struct Distance {
    bool started = false;
    double last_time = 0.0;  // seconds
    double last_speed = 0.0;
    double total = 0.0;
  };

  [[nodiscard]] bool is_licensed() const;
  [[nodiscard]] bool is_attitude_valid() const {
    return data_.IsHeadingValid() && data_.IsPitchValid() && data_.IsRollValid();
  }

  // The speed above which track, slip and curvature can be told.
  [[nodiscard]] double compute_speeds();
  void compute_track();
  void compute_slip();

  void CalculateRefFramePosition(double lat, double lon);
  void CalculateRefFrameVelocity(double vn, double ve);
  void CalculateRefFrameYaw(double heading);
  void CalculateRefFrameTrack(double vn, double ve);

  void filter_acceleration(FilterBank::Axes<FilterLPF2ndOrder>& low_pass, bool off,
                           const Axes& from, const Axes& to);
  void filter_jerk(FilterBank::Axes<FilterLPFNthOrder>& low_pass,
                   FilterBank::Axes<MovingAverager>& average, const Axes& from, const Axes& to);

  void rotate_velocity();
  void compute_lps();
  void compute_alignments();

  void displace(unsigned int index, const Triple& rate, const Triple& velocity);
  void compute_point_gradient(ComDataMeasurePt& point, const Triple& velocity);

  void compute_iso_angles();
  [[nodiscard]] bool compute_corrections();
  void compute_iso_sources(bool predicting);
  void compute_iso_acceleration(const Axes& from, const Axes& to);
  void compute_iso_jerk();
  void compute_iso_rate();

  [[nodiscard]] bool wants_filtered() const;
  [[nodiscard]] bool wants_motion() const;
  [[nodiscard]] bool wants_ref_frame() const;
  [[nodiscard]] bool wants_rotated() const;
  [[nodiscard]] bool wants_iso() const;
  [[nodiscard]] bool wants_points() const;

  ComData& data_;
  const ComKey& key_;
  FilterBank& filters_;
  const PacketForm& form_;
  std::array<Distance, 4> distances_;  // Dist2d, Dist2dHold, Dist3d, Dist3dHold
  Attitude attitude_;                  // heading, pitch, roll
  Attitude iso_attitude_;              // ISO 8855 yaw, pitch, roll
  Triple acceleration_correction_;     // north, east, down
  Triple rate_correction_;             // the same, in degrees per second
  bool wanted_ = true;                 // whether anyone wants anything,
  bool rotated_ = true;                // a rotated vector,
  bool iso_ = true;                    // one in ISO 8855 axes,
  bool points_ = true;                 // a measure point
};

}  // namespace Trel::Nav
