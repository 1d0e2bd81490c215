#include "sto/Sto_FileNav.h"

namespace Trel::Sto {

template class LogicalAny<LogicalNav>;

}  // namespace Trel::Sto
