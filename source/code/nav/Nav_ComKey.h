// Which groups of navigation values anyone wants.
//
// A key has a node for each group: the groups of the solution, of three receivers and of eight
// measure points. Whoever wants a value lets its group, then PropagateKeyOr() turns on all that
// those groups need. For each node N its owner has Let_N() to turn it on, Bar_N() to turn it off
// and Get_N() to read it. The nodes and what they need stand in Nav_ComKey.def. A fresh key is on
// throughout. Nothing fails. A key is never copied, since its nodes point at each other.
#pragma once

#include <array>

#include "library/Lib_KeyNode.h"

namespace Trel::Nav {

class ComKey {
 public:
  using Node = Lib::KeyNode;

  // The groups of one receiver.
  class KeyGps : public Lib::KeyPart {
   public:
    KeyGps() { Reset(true); }
    void Reset(bool value);
#define GPS TREL_KEY_FUNCTIONS
#include "nav/Nav_ComKey.def"

   private:
    friend class ComKey;
#define GPS TREL_KEY_NODE
#include "nav/Nav_ComKey.def"
  };

  // The groups of one measure point.
  class KeyMeasurePt : public Lib::KeyPart {
   public:
    KeyMeasurePt() { Reset(true); }
    void Reset(bool value);
#define POINT TREL_KEY_FUNCTIONS
#include "nav/Nav_ComKey.def"

   private:
    friend class ComKey;
#define POINT TREL_KEY_NODE
#include "nav/Nav_ComKey.def"
  };

  // The groups of the solution and of the unit.
  class KeyMain : public Lib::KeyPart {
   public:
    KeyMain() { Reset(true); }
    // Status, System_Id and Time are on whatever `value` is.
    void Reset(bool value);
#define MAIN TREL_KEY_FUNCTIONS
#include "nav/Nav_ComKey.def"

   private:
    friend class ComKey;
#define MAIN TREL_KEY_NODE
#include "nav/Nav_ComKey.def"
  };

  static constexpr unsigned int kMeasurePoints = 8;

  ComKey();
  ComKey(const ComKey&) = delete;
  ComKey& operator=(const ComKey&) = delete;

  // Sets every node to `value`, and then turns on Status, System_Id and Time of the main key.
  void Reset(bool value);
  // Turns on whatever a node that is on needs, directly or by way of others.
  void PropagateKeyOr();
  // Never 0, and another number whenever nodes may have changed; for whoever keeps what follows
  // from them.
  [[nodiscard]] unsigned int changes() const {
    return changes_;
  }

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
  // `index` must be below kMeasurePoints.
  [[nodiscard]] KeyMeasurePt& KMeasurePt(unsigned int index) {
    return points_[index];
  }
  [[nodiscard]] const KeyMeasurePt& KMeasurePt(unsigned int index) const {
    return points_[index];
  }

 private:
  KeyGps primary_;
  KeyGps secondary_;
  KeyGps external_;
  std::array<KeyMeasurePt, kMeasurePoints> points_;
  KeyMain main_;
  Lib::KeyGraph graph_;
  unsigned int changes_ = 1;
};

}  // namespace Trel::Nav
