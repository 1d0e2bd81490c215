#include "sto/Sto_AccessUCom.h"

namespace Trel::Sto {

namespace {

const AccessUCom kShared(true);

}  // namespace

AccessUCom::AccessUCom(bool) {}

const AccessUCom& AccessUCom::shared() {
  return kShared;
}

}  // namespace Trel::Sto
