// Fields of range packets: raw numbers, and which of them stand for something else.
//
// A field is a whole number, its lowest byte first, whose ends are reserved: one says that there is
// no value, and others that the value lies below or above what the field can carry. A field that
// its packet is too short to hold says that there is no value; nothing is read beyond the packet,
// or out of its sum. Nothing allocates and nothing fails.
#pragma once

#include <type_traits>

#include "library/Lib_Cast.h"
#include "library/Lib_Variable.h"
#include "rng/Rng_ComData.h"

namespace Trel::Rng {

// A whole framed packet, sum and all. The bytes are the framing's.
struct Packet {
  const unsigned char* data;
  unsigned int size;

  // Whether `count` bytes from `at` lie ahead of the sum.
  [[nodiscard]] constexpr bool holds(unsigned int at, unsigned int count) const {
    return count < size && at < size - count;
  }
};

// How a field's number stands in its bytes: sign and width. The lowest signed number says that
// there is no value, the next one Under and the highest Over; so does the highest unsigned number,
// and the one below it says Over.
enum class Raw : unsigned char {
  I16,
  I24,
  I32,
  U8,       // Over is not used
  U8Whole,  // every number is a value
  U16,
  U16Floor,  // 0 says Under
  U24,
  U32,
};

struct RawForm {
  unsigned int bytes;
  bool has_none;
  long long none;
  bool has_under;
  long long under;
  bool has_over;
  long long over;
};

[[nodiscard]] constexpr RawForm raw_form(Raw raw) {
  const auto signed_form = [](unsigned int bytes) {
    const long long highest = (1LL << (8 * bytes - 1)) - 1;
    return RawForm{bytes, true, -highest - 1, true, -highest, true, highest};
  };
  const auto unsigned_form = [](unsigned int bytes) {
    const long long highest = (1LL << (8 * bytes)) - 1;
    return RawForm{bytes, true, highest, false, 0, bytes > 1, highest - 1};
  };
  switch (raw) {
    case Raw::I16:
      return signed_form(2);
    case Raw::I24:
      return signed_form(3);
    case Raw::I32:
      return signed_form(4);
    case Raw::U8:
      return unsigned_form(1);
    case Raw::U8Whole:
      return {1, false, 0, false, 0, false, 0};
    case Raw::U16:
      return unsigned_form(2);
    case Raw::U16Floor:
      return {2, true, 0xFFFF, true, 0, true, 0xFFFE};
    case Raw::U24:
      return unsigned_form(3);
    default:
      return unsigned_form(4);
  }
}

// What the bytes of a field say: a number, with Flags::Under or Flags::Over where it is one of
// those, or Flags::Invalid where there is no value.
struct Reading {
  long long number = 0;
  unsigned char flags = Lib::Flags::Invalid;

  [[nodiscard]] constexpr bool known() const { return flags != Lib::Flags::Invalid; }
};

// The field at `p`, of which all bytes are there.
template <Raw R>
[[nodiscard]] constexpr Reading read_field(const unsigned char* p) {
  constexpr RawForm kForm = raw_form(R);
  constexpr bool kSigned = R == Raw::I16 || R == Raw::I24 || R == Raw::I32;
  using Word = std::conditional_t<kSigned, long long, unsigned long long>;
  const auto number =
      static_cast<long long>(Lib::load_bytes<Word, kForm.bytes, Lib::ByteOrder::LE>(p));
  if (kForm.has_none && number == kForm.none) return {};
  if (kForm.has_under && number == kForm.under) return {number, Lib::Flags::Under};
  if (kForm.has_over && number == kForm.over) return {number, Lib::Flags::Over};
  return {number, 0};
}

// The field that stands `at` bytes into the packet.
template <Raw R>
[[nodiscard]] constexpr Reading read_field(const Packet& packet, unsigned int at) {
  if (!packet.holds(at, raw_form(R).bytes)) return {};
  return read_field<R>(packet.data + at);
}

// Stores what a field says, times `scale`, at the time of `now`; invalid where there is no value.
template <class T>
constexpr void store(const Reading& reading, double scale, Lib::VariableExt<T>& value,
                     const Lib::StampExt& now) {
  if (!reading.known()) return value.invalidate();
  value.set(static_cast<T>(static_cast<double>(reading.number) * scale), now);
  if ((reading.flags & Lib::Flags::Under) != 0) value.setUnder();
  if ((reading.flags & Lib::Flags::Over) != 0) value.setOver();
}

// The same for an entry of a run; `index` must be below its size.
template <class T>
void store(const Reading& reading, double scale, Lib::VarArrayExt<T>& run, std::size_t index,
           const Lib::StampExt& now) {
  if (!reading.known()) return Detail::invalidate(run, index);
  run.set(index, now);
  run.set_data(index, static_cast<T>(static_cast<double>(reading.number) * scale));
  if ((reading.flags & Lib::Flags::Under) != 0) run.setUnder(index);
  if ((reading.flags & Lib::Flags::Over) != 0) run.setOver(index);
}

}  // namespace Trel::Rng
