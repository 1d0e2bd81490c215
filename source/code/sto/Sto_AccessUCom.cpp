#include "sto/Sto_AccessUCom.h"

namespace Trel::Sto {

const AccessUCom& AccessUCom::shared() {
  static const AccessUCom table;
  return table;
}

}  // namespace Trel::Sto
