// Which groups of navigation values anyone wants.
//
// A key has a node for each group: the groups of the solution, of three receivers and of eight
// measure points. Whoever wants a value lets its group, then PropagateKeyOr() turns on all that
// those groups need; the decoding code asks a node before it touches the group. For each node N
// its owner has Let_N() to turn it on, Bar_N() to turn it off and Get_N() to read it. The nodes and
// what they need stand in Nav_ComKey.def. A fresh key is on throughout. Nothing fails. A key is
// never copied, since its nodes point at each other.
#pragma once

#include <array>
#include <vector>

namespace Trel::Nav {

class ComKey {
 public:
  class Node {
   public:
    [[nodiscard]] bool get() const { return on_; }
    void set(bool on) { on_ = on; }
    // Notes that this node needs `other`, which must live as long.
    void push(Node& other) { needs_.push_back(&other); }

   private:
    friend class ComKey;
    bool on_ = true;
    std::vector<Node*> needs_;
  };

#define NODE(node)                        \
  void Let_##node() {                     \
    node##_.set(true);                    \
  }                                       \
  void Bar_##node() {                     \
    node##_.set(false);                   \
  }                                       \
  [[nodiscard]] bool Get_##node() const { \
    return node##_.get();                 \
  }

  // The groups of one receiver.
  class KeyGps {
   public:
    KeyGps() { Reset(true); }
    void Reset(bool value);
#define GPS(node) NODE(node)
#include "nav/Nav_ComKey.def"

   private:
    friend class ComKey;
#define GPS(node) Node node##_;
#include "nav/Nav_ComKey.def"
  };

  // The groups of one measure point.
  class KeyMeasurePt {
   public:
    KeyMeasurePt() { Reset(true); }
    void Reset(bool value);
#define POINT(node) NODE(node)
#include "nav/Nav_ComKey.def"

   private:
    friend class ComKey;
#define POINT(node) Node node##_;
#include "nav/Nav_ComKey.def"
  };

  // The groups of the solution and of the unit.
  class KeyMain {
   public:
    KeyMain() { Reset(true); }
    // Status, System_Id and Time are on whatever `value` is.
    void Reset(bool value);
#define MAIN(node) NODE(node)
#include "nav/Nav_ComKey.def"

   private:
    friend class ComKey;
#define MAIN(node) Node node##_;
#include "nav/Nav_ComKey.def"
  };
#undef NODE

  static constexpr unsigned int kMeasurePoints = 8;

  ComKey();
  ComKey(const ComKey&) = delete;
  ComKey& operator=(const ComKey&) = delete;

  // Sets every node to `value`, and then turns on Status, System_Id and Time of the main key.
  void Reset(bool value);
  // Turns on whatever a node that is on needs, directly or by way of others.
  void PropagateKeyOr();

  [[nodiscard]] KeyMain& KMain() {
    return main_;
  }
  [[nodiscard]] const KeyMain& KMain() const {
    return main_;
  }
  // An odd index is the external receiver; 0 the primary one, any other even index the secondary.
  [[nodiscard]] KeyGps& KGps(unsigned int index) {
    return index % 2 != 0 ? external_ : index == 0 ? primary_ : secondary_;
  }
  [[nodiscard]] const KeyGps& KGps(unsigned int index) const {
    return index % 2 != 0 ? external_ : index == 0 ? primary_ : secondary_;
  }
  // Whether anyone wants a measure point.
  [[nodiscard]] bool wants_points() const {
    bool wanted = false;
    for (const KeyMeasurePt& point : points_) wanted |= point.Get_Point();
    return wanted;
  }
  // `index` must be below kMeasurePoints.
  [[nodiscard]] KeyMeasurePt& KMeasurePt(unsigned int index) {
    return points_[index];
  }
  [[nodiscard]] const KeyMeasurePt& KMeasurePt(unsigned int index) const {
    return points_[index];
  }

 private:
  void connect(Node& node, Node& other);

  KeyGps primary_;
  KeyGps secondary_;
  KeyGps external_;
  std::array<KeyMeasurePt, kMeasurePoints> points_;
  KeyMain main_;
  std::vector<Node*> dependents_;  // every node that needs another
};

}  // namespace Trel::Nav
