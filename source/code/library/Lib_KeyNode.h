// Which groups of values anyone wants: a node for each group, and what each node needs.
//
// A codec's key is made of these. Whoever wants a group turns its node on, then propagate() turns
// on all that those groups need, and the decoding code asks a node before it touches the group.
// Nodes point at each other, so whatever holds them is never copied and never moves. Nothing fails.
#pragma once

#include <vector>

namespace Trel::Lib {

class KeyNode {
 public:
  [[nodiscard]] bool get() const { return on_; }
  void set(bool on) { on_ = on; }
  // Notes that this node needs `other`, which must live as long.
  void push(KeyNode& other) { needs_.push_back(&other); }

 private:
  friend class KeyGraph;
  bool on_ = true;
  std::vector<KeyNode*> needs_;
};

// All nodes of a key that need others.
class KeyGraph {
 public:
  // Notes that `node` needs `other`; both must live as long as this.
  void connect(KeyNode& node, KeyNode& other);
  // Turns on whatever a node that is on needs, directly or by way of others.
  void propagate();

 private:
  std::vector<KeyNode*> dependents_;
};

// The nodes of one part of a key, such as one receiver's.
class KeyPart {
 public:
  KeyPart() = default;
  KeyPart(const KeyPart&) = delete;
  KeyPart& operator=(const KeyPart&) = delete;

  // From now on `changes`, which must live as long, rises whenever a node is turned by name.
  void count_changes(unsigned int& changes) { changes_ = &changes; }

 protected:
  void turn(KeyNode& node, bool on) {
    node.set(on);
    if (changes_ != nullptr) ++*changes_;
  }

 private:
  unsigned int* changes_ = nullptr;
};

}  // namespace Trel::Lib

// A node's member, and its functions: Let_N() turns it on, Bar_N() turns it off, Get_N() reads it.
#define TREL_KEY_NODE(node) Trel::Lib::KeyNode node##_;
#define TREL_KEY_FUNCTIONS(node)          \
  void Let_##node() {                     \
    turn(node##_, true);                  \
  }                                       \
  void Bar_##node() {                     \
    turn(node##_, false);                 \
  }                                       \
  [[nodiscard]] bool Get_##node() const { \
    return node##_.get();                 \
  }
