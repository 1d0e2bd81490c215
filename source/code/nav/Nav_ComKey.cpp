#include "nav/Nav_ComKey.h"

namespace Trel::Nav {

namespace {

#define MAIN(node) +1
constexpr int kMainNodes = 0
#include "nav/Nav_ComKey.def"
    ;
#define GPS(node) +1
constexpr int kGpsNodes = 0
#include "nav/Nav_ComKey.def"
    ;
#define POINT(node) +1
constexpr int kPointNodes = 0
#include "nav/Nav_ComKey.def"
    ;
#define POINT_NEEDS(node, owner, other) +1
#define MAIN_NEEDS(node, owner, other) +1
constexpr int kEdges = 0
#include "nav/Nav_ComKey.def"
    ;
static_assert(kMainNodes == 171 && kGpsNodes == 8 && kPointNodes == 6 && kEdges == 146);

}  // namespace

void ComKey::KeyGps::Reset(bool value) {
#define GPS(node) turn(node##_, value);
#include "nav/Nav_ComKey.def"
}

void ComKey::KeyMeasurePt::Reset(bool value) {
#define POINT(node) turn(node##_, value);
#include "nav/Nav_ComKey.def"
}

void ComKey::KeyMain::Reset(bool value) {
#define MAIN(node) turn(node##_, value);
#include "nav/Nav_ComKey.def"
  Let_Status();
  Let_System_Id();
  Let_Time();
}

ComKey::ComKey() {
  main_.count_changes(changes_);
  for (KeyGps* gps : {&primary_, &secondary_, &external_}) gps->count_changes(changes_);
  for (KeyMeasurePt& point : points_) point.count_changes(changes_);
  KeyMain& main = main_;
  KeyGps& primary = primary_;
  KeyGps& secondary = secondary_;
  for (KeyMeasurePt& own : points_) {
#define POINT_NEEDS(node, owner, other) graph_.connect(own.node##_, owner.other##_);
#include "nav/Nav_ComKey.def"
  }
#define MAIN_NEEDS(node, owner, other) graph_.connect(main.node##_, owner.other##_);
#include "nav/Nav_ComKey.def"
}

void ComKey::Reset(bool value) {
  primary_.Reset(value);
  secondary_.Reset(value);
  external_.Reset(value);
  for (KeyMeasurePt& point : points_) point.Reset(value);
  main_.Reset(value);
}

void ComKey::PropagateKeyOr() {
  graph_.propagate();
  ++changes_;
}

}  // namespace Trel::Nav
