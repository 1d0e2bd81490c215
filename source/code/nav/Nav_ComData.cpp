#include "nav/Nav_ComData.h"

namespace Trel::Nav {

namespace {

// What follows a new value of a setting: whether it changed, and whether it may be stored.
template <Lib::ElementType T, class Setting>
bool admit(const Lib::VariableExt<T>& stored, T value, Setting& setting) {
  if (!stored.good()) {
    setting.changed = true;
    return true;
  }
  if (setting.fixed) return false;
  if (stored.get() != value) setting.changed = true;
  return true;
}

template <Lib::ElementType T, Lib::ElementType U, class Setting>
void mark_off(const Lib::VariableExt<T>& a, const Lib::VariableExt<U>& b, Setting& setting) {
  if (a.good() && b.good() && a.get() == 0 && b.get() == 0) setting.off = true;
}

}  // namespace

ComDataGps::ComDataGps() {
  Invalidate();
}

void ComDataGps::Invalidate() {
  InvalidateReference();
#define VALUE(name, ...) name##_.invalidate();
#include "nav/Nav_ComDataGps.def"
}

ComDataMeasurePt::ComDataMeasurePt() {
  Invalidate();
}

void ComDataMeasurePt::Invalidate() {
  InvalidateReference();
#define VALUE(name, ...) name##_.invalidate();
#include "nav/Nav_ComDataMeasurePt.def"
}

ComData::ComData() {
  Invalidate();
}

void ComData::Invalidate() {
#define VALUE(name, ...) name##_.invalidate();
#define TEXT(name, ...) name##_.invalidate();
#include "nav/Nav_ComData.def"
  LinAccFilt_ = LinJerkFilt_ = AngAccFilt_ = FilterSetting{};
  features_.fill(FeatureRecord{});
  for (ComDataGps& gps : gps_) gps.Invalidate();
  for (ComDataMeasurePt& point : points_) point.Invalidate();
}

void ComData::ShareNano() {
  for (ComDataGps& gps : gps_) gps.SetReference(Nano_);
  for (ComDataMeasurePt& point : points_) point.SetReference(Nano_);
}

// A setting X of the filter P. `limit` and `shape` are the settings of P that switch it off.
#define SETTING(P, X, type, limit, shape)                                         \
  void ComData::Set##X(type value) {                                              \
    if (admit<decltype(X##_)::value_type>(X##_, value, P##_)) BasicSet##X(value); \
    mark_off(limit##_, shape##_, P##_);                                           \
  }                                                                               \
  void ComData::Inv##X() {                                                        \
    if (!P##_.fixed) X##_.invalidate();                                           \
  }
SETTING(LinAccFilt, LinAccFiltFreq, double, LinAccFiltFreq, LinAccFiltZeta)
SETTING(LinAccFilt, LinAccFiltZeta, double, LinAccFiltFreq, LinAccFiltZeta)
SETTING(LinJerkFilt, LinJerkFiltType, Enum::FILTER_TYPE, LinJerkFiltFreq, LinJerkFiltOrder)
SETTING(LinJerkFilt, LinJerkFiltOrder, unsigned int, LinJerkFiltFreq, LinJerkFiltOrder)
SETTING(LinJerkFilt, LinJerkFiltFreq, double, LinJerkFiltFreq, LinJerkFiltOrder)
SETTING(AngAccFilt, AngAccFiltFreq, double, AngAccFiltFreq, AngAccFiltZeta)
SETTING(AngAccFilt, AngAccFiltZeta, double, AngAccFiltFreq, AngAccFiltZeta)
#undef SETTING

void ComData::FixLinAccFilt(double freq, double zeta) {
  LinAccFilt_.fixed = false;
  SetLinAccFiltFreq(freq);
  SetLinAccFiltZeta(zeta);
  LinAccFilt_.fixed = true;
}

void ComData::FixLinJerkFilt(Enum::FILTER_TYPE type, unsigned int order, double freq) {
  LinJerkFilt_.fixed = false;
  SetLinJerkFiltType(type);
  SetLinJerkFiltOrder(order);
  SetLinJerkFiltFreq(freq);
  LinJerkFilt_.fixed = true;
}

void ComData::FixAngAccFilt(double freq, double zeta) {
  AngAccFilt_.fixed = false;
  SetAngAccFiltFreq(freq);
  SetAngAccFiltZeta(zeta);
  AngAccFilt_.fixed = true;
}

void ComData::ClearLinAccFilt() {
  LinAccFilt_ = FilterSetting{};
  InvLinAccFiltFreq();
  InvLinAccFiltZeta();
}

void ComData::ClearLinJerkFilt() {
  LinJerkFilt_ = FilterSetting{};
  InvLinJerkFiltType();
  InvLinJerkFiltOrder();
  InvLinJerkFiltFreq();
}

void ComData::ClearAngAccFilt() {
  AngAccFilt_ = FilterSetting{};
  InvAngAccFiltFreq();
  InvAngAccFiltZeta();
}

void ComData::SetFeatureCode(unsigned int code, const FeatureRecord& record) {
  features_[code] = record;
  SetFeatureCodeIssue(record.issue);
  SetFeatureCodeExpiry(record.expiry);
  SetFeatureCodeStatus(record.status);
}

}  // namespace Trel::Nav
