#include "ucom/UCom_SignalX.h"

#include <tuple>

namespace Trel::UCom {
namespace {

// How many of the types are the M of a pair with B, and how many pairs there are.
template <class... Types>
struct Matrix {
  template <class B>
  static constexpr int kRow = (is_pair<B, Types>() + ...);
  static constexpr int kPairs = (kRow<Types> + ...);
};

template <class Tuple>
struct MatrixOf;
template <class... Types>
struct MatrixOf<std::tuple<Types...>> : Matrix<Types...> {};

static_assert(MatrixOf<Lib::ElementTypes>::kPairs == 44);

}  // namespace

std::unique_ptr<Signal> make_signal(const SignalBasic& basic) {
  std::unique_ptr<Signal> signal;
  Lib::visit_element_type(basic.bit_type, [&]<class B>(std::type_identity<B>) {
    Lib::visit_element_type(basic.mea_type, [&]<class M>(std::type_identity<M>) {
      if constexpr (is_pair<B, M>()) {
        if (std::is_same_v<B, M> || basic.bit_size <= kFieldBits<M>) {
          signal = std::make_unique<SignalX<B, M>>(basic);
        }
      }
    });
  });
  return signal;
}

}  // namespace Trel::UCom
