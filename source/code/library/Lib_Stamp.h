// Quality flags and time stamps, alone and in arrays.
//
// Every decoded quantity carries a time and a byte of flags. A value has been set by a decoder
// exactly when its flags are good; a stamp's time means something only when Timeless is clear.
// All are plain values without allocation, the arrays apart.
#pragma once

#include <cstddef>
#include <vector>

namespace Trel::Lib {

// One byte of quality bits. A fresh one is Rejected: nothing has been decoded yet.
class Flags {
 public:
  enum Bit : unsigned char {
    Rejected = 0x80,  // no value has been decoded
    Invalid = 0x40,   // the source said that the value is not valid
    Pass = 0x20,      // set by navigation decoders on certain status values
    Timeless = 0x10,  // the time of the stamp is not to be used
    Over = 0x08,      // the source value was above what its field can carry
    Under = 0x04,     // the source value was below what its field can carry
    Approx = 0x02,    // approximate value, such as a predicted time
    Stale = 0x01,     // too old to trust
  };
  static constexpr unsigned char kNull = Rejected | Invalid | Pass;
  static constexpr unsigned char kPoor = Over | Under | Approx | Stale;

  constexpr Flags() = default;
  constexpr explicit Flags(unsigned char byte) : bits_(Bits{byte}) {}

  [[nodiscard]] constexpr unsigned char byte() const { return static_cast<unsigned char>(bits_); }

  // A value exists: none of Rejected, Invalid, Pass.
  [[nodiscard]] constexpr bool ok() const { return (byte() & kNull) == 0; }
  // Not ok.
  [[nodiscard]] constexpr bool null() const { return (byte() & kNull) != 0; }
  // No bit but Timeless.
  [[nodiscard]] constexpr bool good() const { return (byte() & (kNull | kPoor)) == 0; }
  // A value exists, with a reservation: ok, but some of Over, Under, Approx, Stale.
  [[nodiscard]] constexpr bool poor() const { return ok() && (byte() & kPoor) != 0; }
  [[nodiscard]] constexpr bool isTimeless() const { return (byte() & Timeless) != 0; }
  [[nodiscard]] constexpr bool isntTimeless() const { return (byte() & Timeless) == 0; }
  [[nodiscard]] constexpr bool isOver() const { return (byte() & Over) != 0; }
  [[nodiscard]] constexpr bool isUnder() const { return (byte() & Under) != 0; }
  [[nodiscard]] constexpr bool isPass() const { return (byte() & Pass) != 0; }

  // These three replace the whole byte.
  constexpr void reject() { put(Rejected); }
  constexpr void invalidate() { put(Invalid); }
  constexpr void wipe() { put(0); }

  // These change one bit and leave the others.
  constexpr void setRejected() { put(byte() | Rejected); }
  constexpr void setInvalid() { put(byte() | Invalid); }
  constexpr void setPass() { put(byte() | Pass); }
  constexpr void setTimeless() { put(byte() | Timeless); }
  constexpr void setOver() { put(byte() | Over); }
  constexpr void setUnder() { put(byte() | Under); }
  constexpr void setApprox() { put(byte() | Approx); }
  constexpr void setStale() { put(byte() | Stale); }
  constexpr void setTimeless(bool on) { assign(Timeless, on); }
  constexpr void setOver(bool on) { assign(Over, on); }
  constexpr void setUnder(bool on) { assign(Under, on); }
  constexpr void clearTimeless() { assign(Timeless, false); }
  constexpr void clearOver() { assign(Over, false); }
  constexpr void clearUnder() { assign(Under, false); }

  // Swaps Over and Under, as negating a value swaps the limits of its range.
  constexpr void negate() {
    static_assert(Over == 2 * Under);
    put((byte() & ~(Over | Under)) | (byte() & Under) * 2 | (byte() & Over) / 2);
  }

  friend constexpr Flags operator|(Flags a, Flags b) {
    return Flags(static_cast<unsigned char>(a.byte() | b.byte()));
  }
  friend constexpr bool operator==(Flags, Flags) = default;

 private:
  constexpr void assign(Bit bit, bool on) { put(on ? byte() | bit : byte() & ~bit); }
  constexpr void put(int byte) { bits_ = Bits{static_cast<unsigned char>(byte)}; }

  // A type of its own. A write through unsigned char could change anything as far as the compiler
  // knows, so that loops over runs would look up again and again where the run is.
  enum class Bits : unsigned char {};

  Bits bits_{Rejected};
};

// A time, in nanoseconds of GPS time, with its flags.
class Stamp {
 public:
  constexpr Stamp() = default;

  [[nodiscard]] constexpr long long get_nano() const { return nano; }
  constexpr void set_nano(long long value) { nano = value; }
  [[nodiscard]] constexpr Flags get_flags() const { return flags; }
  constexpr void set_flags(Flags value) { flags = value; }

  // Time 0; Rejected and Timeless.
  constexpr void reset() { assign(0, Flags::Rejected | Flags::Timeless); }
  // Time 0; Invalid and Timeless.
  constexpr void invalidate() { assign(0, Flags::Invalid | Flags::Timeless); }
  // Takes the time and Timeless of `source`; every other flag becomes clear, so a stamp taken from
  // an invalid one is good.
  constexpr void set(const Stamp& source) {
    assign(source.nano, source.flags.byte() & Flags::Timeless);
  }
  // Clears the flags and leaves the time.
  constexpr void wipe() { flags.wipe(); }

  [[nodiscard]] constexpr bool ok() const { return flags.ok(); }
  [[nodiscard]] constexpr bool good() const { return flags.good(); }
  [[nodiscard]] constexpr bool null() const { return flags.null(); }
  [[nodiscard]] constexpr bool poor() const { return flags.poor(); }
  [[nodiscard]] constexpr bool isTimeless() const { return flags.isTimeless(); }
  constexpr void setInvalid() { flags.setInvalid(); }
  constexpr void setRejected() { flags.setRejected(); }
  constexpr void setTimeless() { flags.setTimeless(); }
  constexpr void setTimeless(bool on) { flags.setTimeless(on); }
  constexpr void clearTimeless() { flags.clearTimeless(); }
  constexpr void setOver() { flags.setOver(); }
  constexpr void setUnder() { flags.setUnder(); }
  constexpr void setApprox() { flags.setApprox(); }
  constexpr void setPass() { flags.setPass(); }
  constexpr void setStale() { flags.setStale(); }

 protected:
  constexpr void assign(long long time, int byte) {
    nano = time;
    flags = Flags(static_cast<unsigned char>(byte));
  }

  long long nano = 0;
  Flags flags;
};

// A stamp with one further 64-bit field, which no decoder sets: it stays 0 and is carried along.
class StampExt : public Stamp {
 public:
  constexpr StampExt() = default;

  [[nodiscard]] constexpr long long get_extra() const { return extra; }
  constexpr void set_extra(long long value) { extra = value; }

  constexpr void reset() {
    Stamp::reset();
    extra = 0;
  }
  constexpr void invalidate() {
    Stamp::invalidate();
    extra = 0;
  }
  constexpr void set(const StampExt& source) {
    Stamp::set(source);
    extra = source.extra;
  }

 protected:
  long long extra = 0;
};

// A run of flags. Indexes must be below size().
class FlagsArray {
 public:
  FlagsArray() = default;
  explicit FlagsArray(std::size_t count) : flags(count) {}

  [[nodiscard]] std::size_t size() const { return flags.size(); }
  // Keeps what stays; new elements are Rejected.
  void resize(std::size_t count) { flags.resize(count); }

  void reject() { flags.assign(flags.size(), Flags(Flags::Rejected)); }
  void invalidate() { flags.assign(flags.size(), Flags(Flags::Invalid)); }
  void wipe() { flags.assign(flags.size(), Flags(0)); }
  void setRejected() {
    for (Flags& element : flags) element.setRejected();
  }

  void wipe(std::size_t index) { flags[index].wipe(); }
  void setRejected(std::size_t index) { flags[index].setRejected(); }
  void setInvalid(std::size_t index) { flags[index].setInvalid(); }
  void setTimeless(std::size_t index) { flags[index].setTimeless(); }
  void setOver(std::size_t index) { flags[index].setOver(); }
  void setUnder(std::size_t index) { flags[index].setUnder(); }
  [[nodiscard]] bool good(std::size_t index) const { return flags[index].good(); }
  [[nodiscard]] bool poor(std::size_t index) const { return flags[index].poor(); }
  [[nodiscard]] bool ok(std::size_t index) const { return flags[index].ok(); }
  void set_flags(std::size_t index, Flags value) { flags[index] = value; }
  [[nodiscard]] Flags get_flags(std::size_t index) const { return flags[index]; }

 protected:
  std::vector<Flags> flags;
};

// A run of stamps: flags and times side by side.
class StampArray : public FlagsArray {
 public:
  StampArray() = default;
  explicit StampArray(std::size_t count) : FlagsArray(count), nanos(count) {}

  // Keeps what stays; new elements are Rejected, with time 0.
  void resize(std::size_t count) {
    FlagsArray::resize(count);
    nanos.resize(count);
  }
  // Each element Rejected, with time 0.
  void reject() {
    FlagsArray::reject();
    nanos.assign(nanos.size(), 0);
  }
  // Each element Invalid, with time 0.
  void invalidate() {
    FlagsArray::invalidate();
    nanos.assign(nanos.size(), 0);
  }
  // One element, with the meaning of Stamp::set.
  void set(std::size_t index, const Stamp& source) {
    Stamp stamp;
    stamp.set(source);
    flags[index] = stamp.get_flags();
    nanos[index] = stamp.get_nano();
  }
  void set_nano(std::size_t index, long long time) { nanos[index] = time; }
  [[nodiscard]] long long get_nano(std::size_t index) const { return nanos[index]; }

 protected:
  std::vector<long long> nanos;
};

// A run of extended stamps.
class StampExtArray : public StampArray {
 public:
  StampExtArray() = default;
  explicit StampExtArray(std::size_t count) : StampArray(count), extras(count) {}

  void resize(std::size_t count) {
    StampArray::resize(count);
    extras.resize(count);
  }
  void reject() {
    StampArray::reject();
    extras.assign(extras.size(), 0);
  }
  void invalidate() {
    StampArray::invalidate();
    extras.assign(extras.size(), 0);
  }
  void set(std::size_t index, const StampExt& source) {
    StampArray::set(index, source);
    extras[index] = source.get_extra();
  }
  [[nodiscard]] long long get_extra(std::size_t index) const { return extras[index]; }

 protected:
  std::vector<long long> extras;
};

}  // namespace Trel::Lib
