// Signals of fixed bit and measurement type, and the choice among them.
//
// A pair of types exists only if no value of the bit type is lost in the measurement type: 44 do.
#pragma once

#include <memory>
#include <type_traits>

#include "ucom/UCom_Extract.h"
#include "ucom/UCom_Signal.h"

namespace Trel::UCom {

// Whether a SignalX<B, M> exists.
template <Lib::ElementType B, Lib::ElementType M>
[[nodiscard]] consteval bool is_pair() {
  if (std::is_same_v<B, M>) return true;
  if (std::is_same_v<B, bool> || std::is_same_v<M, bool>) return false;
  if (std::is_floating_point_v<B>) return std::is_same_v<B, float> && std::is_same_v<M, double>;
  if (std::is_floating_point_v<M>) return std::is_same_v<M, double> || sizeof(B) <= 4;
  return sizeof(M) > sizeof(B) && (std::is_signed_v<M> || std::is_unsigned_v<B>);
}

// The longest field that M holds without loss. A signal whose types are the same has no limit.
template <Lib::ElementType M>
inline constexpr std::uint32_t kFieldBits = std::is_same_v<M, float>    ? 24
                                            : std::is_same_v<M, double> ? 53
                                                                        : ~std::uint32_t{0};

template <Lib::ElementType B, Lib::ElementType M>
class SignalX final : public SignalM<M> {
 public:
  static_assert(is_pair<B, M>());

  using SignalM<M>::SignalM;

  [[nodiscard]] M convert(const unsigned char* bytes) const override {
    return this->whole ? value<true>(bytes) : value<false>(bytes);
  }

  void convert(Lib::VariableExt<M>& variable, const Lib::StampExt& stamp,
               const unsigned char* bytes) const override {
    variable.set(SignalX::convert(bytes), stamp);
  }

  void decode(SignalRun run, Values& values, const Lib::StampExt& stamp,
              const unsigned char* bytes) const override {
    if (this->whole) {
      decode_run<true>(run, values.all<M>(), stamp, bytes);
    } else {
      decode_run<false>(run, values.all<M>(), stamp, bytes);
    }
  }

 private:
  template <bool kWhole>
  [[nodiscard]] M value(const unsigned char* bytes) const {
    const B raw = read<kWhole>(bytes + this->byte_first);
    if constexpr (std::is_same_v<M, bool>) {
      return raw;
    } else if constexpr (std::is_integral_v<M>) {
      using Wide = unsigned long long;
      return static_cast<M>(static_cast<Wide>(raw) * static_cast<Wide>(this->scale) +
                            static_cast<Wide>(this->offset));
    } else {
      return static_cast<M>(raw) * this->scale + this->offset;
    }
  }

  template <bool kWhole>
  static void decode_run(SignalRun run, Values::Row<M>& variables, const Lib::StampExt& stamp,
                         const unsigned char* bytes) {
    const Lib::StampExt time = stamp;  // a copy, which no variable can be
    for (const Signal* signal : run) {
      const auto& typed = static_cast<const SignalX&>(*signal);
      variables[typed.get_slot()].set(typed.template value<kWhole>(bytes), time);
    }
  }

  template <bool kWhole>
  [[nodiscard]] B read(const unsigned char* p) const {
    if constexpr (kWhole && !std::is_same_v<B, bool>) {
      return extract_whole<B>(p);
    } else {
      return extract<B>(p, this->shift_left, this->shift_right);
    }
  }
};

// The signal for the pair of types in `basic`; null if that does not exist or the field is too long
// for the measurement type.
[[nodiscard]] std::unique_ptr<Signal> make_signal(const SignalBasic& basic);

}  // namespace Trel::UCom
