// What navigation packets have said so far: one stamped variable for each named value.
//
// The values stand in the tables that Nav_ComData.def, Nav_ComDataGps.def and
// Nav_ComDataMeasurePt.def list. For each value X of type T:
//   IsXValid()  its stamp is good: it has arrived, without a reservation
//   GetX()      the number as stored; for an enumerated value the member. Ask IsXValid() first.
//   SetX(v)     stores v, good, at the time of Nano; Timeless without one. An enumerated value
//   takes
//               any whole number, and one out of range becomes _UNKNOWN. A text takes a pointer and
//               the length of its field.
//   InvX()      makes it invalid
//   VarX()      the stamped variable
//   HitX()      the same, to change its flags
// What has not arrived is invalid; that is no error. ComData is a plain value without allocation,
// some tens of kilobytes large, and is copied as one.
#pragma once

#include <array>
#include <cstddef>

#include "library/Lib_Accessor.h"
#include "nav/Nav_Text.h"

namespace Trel::Nav {

// Which packet families offer a value as an element.
enum class Family : unsigned char { None = 0, NCom = 1, MCom = 2, Both = 3 };

// Whether a row for `families` is one of `family`.
[[nodiscard]] constexpr bool carries(Family families, Family family) {
  return (static_cast<unsigned char>(families) & static_cast<unsigned char>(family)) != 0;
}

// The accessors, from the rows of a table. reference() is what values are stamped with.
#define TREL_NAV_READ(name, type) \
  TREL_ACCESSOR_READ(Is##name##Valid, Var##name, Hit##name, name##_, type)
#define TREL_NAV_OWN(name, type, ...) \
  TREL_NAV_READ(name, type)           \
  TREL_ACCESSOR_GET(Get##name, name##_, type)
#define TREL_NAV_VALUE(name, type, ...)       \
  TREL_NAV_OWN(name, type, )                  \
  TREL_ACCESSOR_SET(Set##name, name##_, type) \
  TREL_ACCESSOR_INV(Inv##name, name##_)
#define TREL_NAV_OWN_CODE(name, enumeration, ...)              \
  TREL_NAV_READ(name, Enum::Traits<Enum::enumeration>::Number) \
  TREL_ACCESSOR_GET_CODE(Get##name, name##_, enumeration)
#define TREL_NAV_CODE(name, enumeration, ...)             \
  TREL_NAV_OWN_CODE(name, enumeration, )                  \
  TREL_ACCESSOR_SET_CODE(Set##name, name##_, enumeration) \
  TREL_ACCESSOR_INV(Inv##name, name##_)
#define TREL_NAV_TEXT(name, length, ...)                \
  [[nodiscard]] bool Is##name##Valid() const {          \
    return name##_.good();                              \
  }                                                     \
  [[nodiscard]] const char* Get##name() const {         \
    return name##_.c_str();                             \
  }                                                     \
  void Set##name(const char* field, std::size_t size) { \
    name##_.set(reference());                           \
    name##_.strgrab(field, size);                       \
  }                                                     \
  void Inv##name() {                                    \
    name##_.invalidate();                               \
  }                                                     \
  [[nodiscard]] const Text<length>& Var##name() const { \
    return name##_;                                     \
  }                                                     \
  [[nodiscard]] Text<length>& Hit##name() {             \
    return name##_;                                     \
  }
#define TREL_NAV_MEMBER(name, type, ...) Lib::VariableExt<type> name##_;

// The values of one satellite receiver.
class ComDataGps : public Lib::StampedPart {
 public:
  ComDataGps();
  // Makes every value, and the reference, invalid.
  void Invalidate();

#define VALUE TREL_NAV_VALUE
#define CODE TREL_NAV_CODE
#include "nav/Nav_ComDataGps.def"

 private:
#define VALUE TREL_NAV_MEMBER
#include "nav/Nav_ComDataGps.def"
};

// The values of one measure point.
class ComDataMeasurePt : public Lib::StampedPart {
 public:
  ComDataMeasurePt();
  // Makes every value, and the reference, invalid.
  void Invalidate();

#define VALUE TREL_NAV_VALUE
#include "nav/Nav_ComDataMeasurePt.def"

 private:
#define VALUE TREL_NAV_MEMBER
#include "nav/Nav_ComDataMeasurePt.def"
};

// One licensed feature of the unit. Dates are deci dates.
struct FeatureRecord {
  bool known = false;
  unsigned int issue = 0;
  unsigned int expiry = 0;
  Enum::FEATURE_STATUS status = Enum::FEATURE_STATUS_UNKNOWN;
};

class ComData {
 public:
  static constexpr unsigned int kReceivers = 3;
  static constexpr unsigned int kMeasurePoints = 8;
  static constexpr unsigned int kFeatures = 63;

  ComData();
  // Makes every value invalid, those of the parts too, and forgets features and filter settings.
  void Invalidate();

#define VALUE TREL_NAV_VALUE
#define OWN TREL_NAV_OWN
#define CODE TREL_NAV_CODE
#define OWN_CODE TREL_NAV_OWN_CODE
#define TEXT TREL_NAV_TEXT
#include "nav/Nav_ComData.def"

  // Nano's own stamp is its value, with flags 0.
  void SetNano(long long value) {
    Lib::set_record_time(Nano_, value);
  }
  void InvNano() {
    Nano_.invalidate();
  }
  // Gives the main Nano stamp to the receivers and the measure points.
  void ShareNano();

  // The settings of the filters for linear acceleration, linear jerk and angular acceleration. For
  // each filter P:
  //   IsPFixed(), IsPChanged(), IsPOff()  its three flags
  //   ClearPChanged()                     for whoever has applied the settings
  //   FixP(), ClearP()                    stores and fixes; forgets settings and flags
  // and for each setting X of it:
  //   SetX(v)       notes whether it changed anything, and changes nothing that is good and fixed.
  //   A
  //                 cut-off and a damping (for jerk: an order) that are both exactly 0 mark the
  //                 filter off, until it is cleared.
  //   BasicSetX(v)  stores without looking
  //   InvX()        makes it invalid unless the filter is fixed
#define TREL_NAV_FILTER(P)                    \
  [[nodiscard]] bool Is##P##Fixed() const {   \
    return P##_.fixed;                        \
  }                                           \
  [[nodiscard]] bool Is##P##Changed() const { \
    return P##_.changed;                      \
  }                                           \
  [[nodiscard]] bool Is##P##Off() const {     \
    return P##_.off;                          \
  }                                           \
  void Clear##P##Changed() {                  \
    P##_.changed = false;                     \
  }                                           \
  void Clear##P();
#define TREL_NAV_SETTING(X, type) \
  void Set##X(type value);        \
  void BasicSet##X(type value) {  \
    X##_.set(value, reference()); \
  }                               \
  void Inv##X();
  TREL_NAV_FILTER(LinAccFilt)
  TREL_NAV_SETTING(LinAccFiltFreq, double)
  TREL_NAV_SETTING(LinAccFiltZeta, double)
  void FixLinAccFilt(double freq, double zeta);
  TREL_NAV_FILTER(LinJerkFilt)
  TREL_NAV_SETTING(LinJerkFiltType, Enum::FILTER_TYPE)
  TREL_NAV_SETTING(LinJerkFiltOrder, unsigned int)
  TREL_NAV_SETTING(LinJerkFiltFreq, double)
  void FixLinJerkFilt(Enum::FILTER_TYPE type, unsigned int order, double freq);
  TREL_NAV_FILTER(AngAccFilt)
  TREL_NAV_SETTING(AngAccFiltFreq, double)
  TREL_NAV_SETTING(AngAccFiltZeta, double)
  void FixAngAccFilt(double freq, double zeta);
#undef TREL_NAV_FILTER
#undef TREL_NAV_SETTING

  // What is known of a licensed feature; `code` must be below kFeatures. The three values of a
  // feature record follow the one that was set last.
  void SetFeatureCode(unsigned int code, const FeatureRecord& record);
  [[nodiscard]] const FeatureRecord& GetFeatureCode(unsigned int code) const {
    return features_[code];
  }

  // An odd index is the external receiver; 0 the primary one, any other even index the secondary.
  [[nodiscard]] ComDataGps& DGps(unsigned int index) {
    return gps_[gps_place(index)];
  }
  [[nodiscard]] const ComDataGps& DGps(unsigned int index) const {
    return gps_[gps_place(index)];
  }
  // `index` must be below kMeasurePoints.
  [[nodiscard]] ComDataMeasurePt& DMeasurePt(unsigned int index) {
    return points_[index];
  }
  [[nodiscard]] const ComDataMeasurePt& DMeasurePt(unsigned int index) const {
    return points_[index];
  }

 private:
  struct FilterSetting {
    bool fixed = false;
    bool changed = false;
    bool off = false;
  };

  [[nodiscard]] static constexpr unsigned int gps_place(unsigned int index) {
    return index % 2 != 0 ? 2 : index == 0 ? 0 : 1;
  }
  [[nodiscard]] const Lib::StampExt& reference() const {
    return Nano_;
  }

  FilterSetting LinAccFilt_;
  FilterSetting LinJerkFilt_;
  FilterSetting AngAccFilt_;
#define VALUE TREL_NAV_MEMBER
#define TEXT(name, length, ...) Text<length> name##_;
#include "nav/Nav_ComData.def"
  std::array<FeatureRecord, kFeatures> features_;
  std::array<ComDataGps, kReceivers> gps_;  // primary, secondary, external
  std::array<ComDataMeasurePt, kMeasurePoints> points_;
};

#undef TREL_NAV_READ
#undef TREL_NAV_OWN
#undef TREL_NAV_VALUE
#undef TREL_NAV_OWN_CODE
#undef TREL_NAV_CODE
#undef TREL_NAV_TEXT
#undef TREL_NAV_MEMBER

}  // namespace Trel::Nav
