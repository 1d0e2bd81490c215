#include "sto/Sto_Datum.h"

#include "sto/Sto_Aspect.h"

namespace Trel::Sto {

namespace {

template <class T>
void copy_run(const AspectConverter<T>& run, const Array<T>& source, std::vector<Result>& out) {
  for (std::size_t k = 0; k < run.count; ++k) {
    const std::size_t from = run.source + k;
    const std::size_t to = run.destination + k;
    if (from >= source.size() || to >= out.size()) return;
    out[to] = source.value(from);
    out[to].set_flags(source.flags(from));
    out[to].set_nano(source.nano(from));
    out[to].template set_converter<T>(run.converter);
  }
}

}  // namespace

void Datum::get(const AspectStore& aspect, std::vector<Result>& out) const {
#define TREL_COPY(suffix, T)                                     \
  for (const AspectConverter<T>& run : aspect.converters<T>()) { \
    copy_run(run, array<T>(), out);                              \
  }
  TREL_ELEMENT_TYPES(TREL_COPY)
#undef TREL_COPY
}

}  // namespace Trel::Sto
