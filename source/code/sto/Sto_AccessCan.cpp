#include "sto/Sto_AccessCan.h"

namespace Trel::Sto {

namespace {

const AccessCan kShared(true);

}  // namespace

AccessCan::AccessCan(bool built_in) {
  if (!built_in) return;
#define VALUE(name, type, unit, resolution, description)                                      \
  add(Pointer<Lib::VariableExt<type>>(                                                        \
          &Can::DataMain::Var_##name,                                                         \
          InfoNode(InfoProps(#name, 1, nullptr, unit, description, resolution, 0, 0, 0, 0))), \
      0);
#include "can/Can_ComData.def"
#undef VALUE
}

const AccessCan& AccessCan::shared() {
  return kShared;
}

}  // namespace Trel::Sto
