// Which groups of range values anyone wants.
//
// A key has a node for each group: those of eight sources of navigation packets, of four targets,
// and of all else. The nodes form trees: a node that is on brings its children with it, once
// PropagateKeyOr() has been called, and the decoding code asks a node before it touches the group.
// For each node N its owner has Let_N() to turn it on, Bar_N() to turn it off and Get_N() to read
// it. The nodes and their children stand in Rng_ComKey.def. A fresh key is on throughout. Nothing
// fails. A key is never copied, since its nodes point at each other.
#pragma once

#include <array>

#include "library/Lib_KeyNode.h"

namespace Trel::Rng {

class ComKey {
 public:
  using Node = Lib::KeyNode;

  // The groups of one source of navigation packets.
  class KeyWrap : public Lib::KeyPart {
   public:
    void Reset(bool value);
#define WRAP TREL_KEY_FUNCTIONS
#include "rng/Rng_ComKey.def"

   private:
    friend class ComKey;
#define WRAP TREL_KEY_NODE
#include "rng/Rng_ComKey.def"
  };

  // The groups of one target.
  class KeyTarget : public Lib::KeyPart {
   public:
    void Reset(bool value);
#define TARGET TREL_KEY_FUNCTIONS
#include "rng/Rng_ComKey.def"

   private:
    friend class ComKey;
#define TARGET TREL_KEY_NODE
#include "rng/Rng_ComKey.def"
  };

  // The groups of time, of the hunter, of the lanes and of the system.
  class KeyMain : public Lib::KeyPart {
   public:
    void Reset(bool value);
#define MAIN TREL_KEY_FUNCTIONS
#include "rng/Rng_ComKey.def"

   private:
    friend class ComKey;
#define MAIN TREL_KEY_NODE
#include "rng/Rng_ComKey.def"
  };

  static constexpr unsigned int kWraps = 8;
  static constexpr unsigned int kTargets = 4;

  ComKey();
  ComKey(const ComKey&) = delete;
  ComKey& operator=(const ComKey&) = delete;

  // Sets every node to `value`.
  void Reset(bool value);
  // 0 and below: nothing. 1 to 9: the general groups, which tell who measures what. 10 and above:
  // everything.
  void DecodeLevel(int level);
  // Turns on the children of every node that is on, and theirs, and so on.
  void PropagateKeyOr();

  // `index` must be below kWraps.
  [[nodiscard]] KeyWrap& KWrap(unsigned int index) {
    return wraps_[index];
  }
  [[nodiscard]] const KeyWrap& KWrap(unsigned int index) const {
    return wraps_[index];
  }
  // `index` must be below kTargets.
  [[nodiscard]] KeyTarget& KTarget(unsigned int index) {
    return targets_[index];
  }
  [[nodiscard]] const KeyTarget& KTarget(unsigned int index) const {
    return targets_[index];
  }
  [[nodiscard]] KeyMain& KMain() {
    return main_;
  }
  [[nodiscard]] const KeyMain& KMain() const {
    return main_;
  }

 private:
  std::array<KeyWrap, kWraps> wraps_;
  std::array<KeyTarget, kTargets> targets_;
  KeyMain main_;
  Lib::KeyGraph graph_;
};

}  // namespace Trel::Rng
