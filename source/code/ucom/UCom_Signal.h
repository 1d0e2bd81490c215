// A signal: where its bits lie in a message, and the type and scaling of the value that they carry.
//
// Signal hides the types, SignalM<M> fixes the measurement type that the user sees, SignalX<B, M>
// (in UCom_SignalX.h) the bit type as well. Signals belong to the database and live as long as it
// does. Message data is passed as a pointer to its first byte, behind the message number; it must
// have get_reach() bytes, since reads can be wider than the field.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <map>
#include <memory>
#include <string>
#include <tuple>

#include "library/Lib_Variable.h"
#include "ucom/UCom_Basic.h"
#include "ucom/UCom_Values.h"

namespace Trel::UCom {

class Message;
class Recursive;
class SignalList;
template <Lib::ElementType M>
class SignalM;

// Receives a signal by its measurement type, together with the data of its message.
class AbstractDispatcher {
 public:
  virtual void dispatch(const SignalM<bool>& signal, const unsigned char* bytes) = 0;
  virtual void dispatch(const SignalM<float>& signal, const unsigned char* bytes) = 0;
  virtual void dispatch(const SignalM<double>& signal, const unsigned char* bytes) = 0;
  virtual void dispatch(const SignalM<signed char>& signal, const unsigned char* bytes) = 0;
  virtual void dispatch(const SignalM<short>& signal, const unsigned char* bytes) = 0;
  virtual void dispatch(const SignalM<int>& signal, const unsigned char* bytes) = 0;
  virtual void dispatch(const SignalM<long long>& signal, const unsigned char* bytes) = 0;
  virtual void dispatch(const SignalM<unsigned char>& signal, const unsigned char* bytes) = 0;
  virtual void dispatch(const SignalM<unsigned short>& signal, const unsigned char* bytes) = 0;
  virtual void dispatch(const SignalM<unsigned int>& signal, const unsigned char* bytes) = 0;
  virtual void dispatch(const SignalM<unsigned long long>& signal, const unsigned char* bytes) = 0;

 protected:
  AbstractDispatcher() = default;
  AbstractDispatcher(const AbstractDispatcher&) = default;
  AbstractDispatcher& operator=(const AbstractDispatcher&) = default;
  ~AbstractDispatcher() = default;
};

// The bytes and shifts that a layout comes to. Both shifts are 0 for a field longer than its type.
struct SignalRange {
  std::uint32_t byte_first = 0;
  std::uint32_t byte_end = 0;
  std::uint32_t byte_count = 0;
  std::uint32_t type_bytes = 0;
  std::uint32_t bit_shift = 0;
  std::uint32_t bit_top = 0;
  std::uint32_t type_bits = 0;
  std::uint32_t shift_left = 0;
  std::uint32_t shift_right = 0;

  void set_range(const SignalBasic& basic);
  // Whether the field fills its type from the border of a byte on.
  [[nodiscard]] bool is_whole() const { return bit_shift == 0 && bit_top == type_bits; }
};

// Aligned so that all that decoding reads, scaling and all, stands in one cache line.
class alignas(64) Signal {
 public:
  // `basic` as RecursiveSignals::get_basic() gives it.
  explicit Signal(const SignalBasic& basic);
  virtual ~Signal();
  Signal(const Signal&) = delete;
  Signal& operator=(const Signal&) = delete;

  // Reads what the entry says beside the layout. Always true.
  virtual bool parse(Recursive& lookup);
  // One line for people: identifiers, name, layout, types, scaling and limits.
  virtual void write_txt(std::ostream& out) const;
  // The value: "true" or "false", or in hexadecimal notation. Leaves the stream in decimal.
  virtual void convert_print(std::ostream& out, const unsigned char* bytes) const = 0;
  // Calls the dispatcher's overload for the measurement type.
  virtual void accept(AbstractDispatcher& dispatcher, const unsigned char* bytes) const = 0;
  // Sets the variable that each signal of `run` has among `values` to its value, with the time and
  // the Timeless state of `stamp`, which may be that of such a variable. The signals must be of
  // this one's kind.
  virtual void decode(SignalRun run, Values& values, const Lib::StampExt& stamp,
                      const unsigned char* bytes) const = 0;

  void set_six(six_t six);
  void set_slot(std::uint32_t value) { slot = value; }
  void add_list(const SignalList& list);

  [[nodiscard]] sid_t get_sid() const { return sid; }
  // The index among the signals that a message lists; six_t_inv for one that none lists.
  [[nodiscard]] six_t get_six() const;
  // The place of the value among the variables of its type in ComData.
  [[nodiscard]] std::uint32_t get_slot() const { return slot; }
  [[nodiscard]] Enum::BASIC_TYPE get_bit_type() const;
  [[nodiscard]] Enum::BASIC_TYPE get_mea_type() const;
  // Signals of one kind are decoded in the same way: both their types are the same, and all of
  // them fill the bit type from the border of a byte on, or none does.
  using Kind = std::tuple<Enum::BASIC_TYPE, Enum::BASIC_TYPE, bool>;
  [[nodiscard]] Kind get_kind() const;
  [[nodiscard]] std::uint32_t get_bit_size() const;
  [[nodiscard]] std::uint32_t get_bit_offset() const;
  [[nodiscard]] const std::string& get_name() const;
  [[nodiscard]] const std::string& get_unit() const;
  [[nodiscard]] const std::string& get_comment() const;
  // The same, shared with every signal that inherits them.
  [[nodiscard]] const SharedText& get_shared_unit() const;
  [[nodiscard]] const SharedText& get_shared_comment() const;
  [[nodiscard]] SignalRange get_range() const;
  // Bytes of message data that converting can touch, counted from its first one.
  [[nodiscard]] std::uint32_t get_reach() const;

  [[nodiscard]] bool is_listed() const;
  // The messages that list the signal.
  [[nodiscard]] std::map<mid_t, Message*> get_messages() const;

 private:
  sid_t sid;
  std::uint32_t slot = 0;

 protected:
  // Read for every packet, like the slot, and the scaling behind the details.
  std::uint32_t byte_first;
  std::uint32_t shift_left;
  std::uint32_t shift_right;
  bool whole;

 private:
  struct Details;
  std::unique_ptr<Details> details_;
};

template <Lib::ElementType M>
class SignalM : public Signal {
 public:
  using Signal::Signal;

  bool parse(Recursive& lookup) override;
  void write_txt(std::ostream& out) const override;
  void convert_print(std::ostream& out, const unsigned char* bytes) const override;
  void accept(AbstractDispatcher& dispatcher, const unsigned char* bytes) const final {
    dispatcher.dispatch(*this, bytes);
  }

  // The value in the message: raw times scale plus offset, in the arithmetic of M; integers wrap.
  [[nodiscard]] virtual M convert(const unsigned char* bytes) const = 0;
  // Sets `variable` to it, with the time and the Timeless state of `stamp`, which may be the
  // variable itself.
  virtual void convert(Lib::VariableExt<M>& variable, const Lib::StampExt& stamp,
                       const unsigned char* bytes) const = 0;

  [[nodiscard]] M get_scale() const { return scale; }
  [[nodiscard]] M get_offset() const { return offset; }
  // The limits play no part in decoding. A minimum above the maximum means that none were given.
  [[nodiscard]] M get_min() const { return min; }
  [[nodiscard]] M get_max() const { return max; }

 protected:
  M scale = 1;
  M offset = 0;

 private:
  M min = 1;
  M max = 0;
};

#define TREL_SIGNAL_M(suffix, type) extern template class SignalM<type>;
TREL_ELEMENT_TYPES(TREL_SIGNAL_M)
#undef TREL_SIGNAL_M

}  // namespace Trel::UCom
