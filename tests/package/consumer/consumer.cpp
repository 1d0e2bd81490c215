// The smallest client of the data store: a recording that is not there has no streams.
#include <cstdio>
#include <vector>

#include "sto/Sto_Store.h"

int main() {
  Trel::Sto::DataStore store(Trel::Sto::Options(16, 1000000000, 0, 0.1, 1048576, 10));
  std::vector<unsigned> ids;
  unsigned count = 1;
  const auto result = store.add_resource("missing.xcom", ids, count);
  std::printf("%u streams\n", count);
  return result == Trel::Enum::RETURN_TYPE_NOTHING && count == 0 && ids.empty() ? 0 : 1;
}
