#include "library/Lib_KeyNode.h"

namespace Trel::Lib {

void KeyGraph::connect(KeyNode& node, KeyNode& other) {
  if (node.needs_.empty()) dependents_.push_back(&node);
  node.push(other);
}

void KeyGraph::propagate() {
  bool changed = true;
  while (changed) {
    changed = false;
    for (const KeyNode* node : dependents_) {
      for (KeyNode* needed : node->needs_) {
        if (!node->on_ || needed->on_) continue;
        needed->on_ = true;
        changed = true;
      }
    }
  }
}

}  // namespace Trel::Lib
