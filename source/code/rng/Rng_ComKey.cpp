#include "rng/Rng_ComKey.h"

#include <span>

namespace Trel::Rng {

namespace {

constexpr int kLevelGeneral = 1;
constexpr int kLevelAll = 10;

}  // namespace

void ComKey::KeyWrap::Reset(bool value) {
#define WRAP(node) turn(node##_, value);
#include "rng/Rng_ComKey.def"
}

void ComKey::KeyTarget::Reset(bool value) {
#define TARGET(node) turn(node##_, value);
#include "rng/Rng_ComKey.def"
}

void ComKey::KeyMain::Reset(bool value) {
#define MAIN(node) turn(node##_, value);
#include "rng/Rng_ComKey.def"
}

ComKey::ComKey() {
  const std::span<KeyMain, 1> main(&main_, 1);
  const std::span<KeyWrap> wrap(wraps_);
  for (KeyTarget& each : targets_) {
    const std::span<KeyTarget, 1> own(&each, 1);
#define TARGET_CHILD(node, owner, child) \
  for (auto& holder : owner) graph_.connect(each.node##_, holder.child##_);
#include "rng/Rng_ComKey.def"
  }
  const std::span<KeyTarget> target(targets_);
#define MAIN_CHILD(node, owner, child) \
  for (auto& holder : owner) graph_.connect(main_.node##_, holder.child##_);
#include "rng/Rng_ComKey.def"
}

void ComKey::Reset(bool value) {
  for (KeyWrap& wrap : wraps_) wrap.Reset(value);
  for (KeyTarget& target : targets_) target.Reset(value);
  main_.Reset(value);
}

void ComKey::DecodeLevel(int level) {
  Reset(level >= kLevelAll);
  if (level < kLevelGeneral || level >= kLevelAll) return;
  main_.Let_General();
  PropagateKeyOr();
}

void ComKey::PropagateKeyOr() {
  graph_.propagate();
}

}  // namespace Trel::Rng
