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
#define GPS(node) node##_.set(value);
#include "nav/Nav_ComKey.def"
}

void ComKey::KeyMeasurePt::Reset(bool value) {
#define POINT(node) node##_.set(value);
#include "nav/Nav_ComKey.def"
}

void ComKey::KeyMain::Reset(bool value) {
#define MAIN(node) node##_.set(value);
#include "nav/Nav_ComKey.def"
  Let_Status();
  Let_System_Id();
  Let_Time();
}

ComKey::ComKey() {
  KeyMain& main = main_;
  KeyGps& primary = primary_;
  KeyGps& secondary = secondary_;
  for (KeyMeasurePt& own : points_) {
#define POINT_NEEDS(node, owner, other) connect(own.node##_, owner.other##_);
#include "nav/Nav_ComKey.def"
  }
#define MAIN_NEEDS(node, owner, other) connect(main.node##_, owner.other##_);
#include "nav/Nav_ComKey.def"
}

void ComKey::connect(Node& node, Node& other) {
  if (node.needs_.empty()) dependents_.push_back(&node);
  node.push(other);
}

void ComKey::Reset(bool value) {
  primary_.Reset(value);
  secondary_.Reset(value);
  external_.Reset(value);
  for (KeyMeasurePt& point : points_) point.Reset(value);
  main_.Reset(value);
}

void ComKey::PropagateKeyOr() {
  bool changed = true;
  while (changed) {
    changed = false;
    for (const Node* node : dependents_) {
      for (Node* needed : node->needs_) {
        if (!node->on_ || needed->on_) continue;
        needed->on_ = true;
        changed = true;
      }
    }
  }
}

}  // namespace Trel::Nav
