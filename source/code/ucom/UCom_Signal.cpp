#include "ucom/UCom_Signal.h"

#include <iomanip>
#include <ios>
#include <ostream>
#include <sstream>
#include <type_traits>
#include <vector>

#include "ucom/UCom_Extract.h"
#include "ucom/UCom_Message.h"
#include "ucom/UCom_Recursive.h"

namespace Trel::UCom {
namespace {

std::uint32_t size_of_type(Enum::BASIC_TYPE type) {
  std::uint32_t bytes = 0;
  Lib::visit_element_type(type,
                          [&](auto element) { bytes = sizeof(typename decltype(element)::type); });
  return bytes;
}

// Bytes that extracting a field of this type reads.
std::uint32_t size_of_read(Enum::BASIC_TYPE type) {
  std::uint32_t bytes = 0;
  Lib::visit_element_type(
      type, [&](auto element) { bytes = kReadBytes<typename decltype(element)::type>; });
  return bytes;
}

template <class M>
void put(std::ostream& out, M value) {
  if constexpr (std::is_same_v<M, bool>) {
    out << std::setw(5) << (value ? "true" : "false");
  } else {
    out << std::setw(7) << +value;
  }
}

}  // namespace

// What decoding does not read.
struct Signal::Details {
  six_t six = six_t_inv;
  Enum::BASIC_TYPE bit_type;
  Enum::BASIC_TYPE mea_type;
  std::uint32_t bit_size;
  std::uint32_t bit_offset;
  SharedText name = std::make_shared<const std::string>();
  SharedText unit = name;
  SharedText comment = name;
  std::vector<const SignalList*> lists;
};

void SignalRange::set_range(const SignalBasic& basic) {
  byte_first = basic.bit_offset / 8;
  byte_end = (basic.bit_size + basic.bit_offset + 7) / 8;
  byte_count = byte_end - byte_first;
  type_bytes = size_of_type(basic.bit_type);
  bit_shift = basic.bit_offset - 8 * byte_first;
  bit_top = bit_shift + basic.bit_size;
  type_bits = 8 * type_bytes;
  shift_left = 0;
  shift_right = 0;
  if (type_bits == 0 || basic.bit_size > type_bits) return;
  const std::uint32_t word_bits =
      basic.bit_type == Enum::BASIC_TYPE_bool ? type_bits : 2 * type_bits;
  shift_left = word_bits - bit_top;
  shift_right = word_bits - basic.bit_size;
}

Signal::Signal(const SignalBasic& basic) : sid(basic.sid), details_(std::make_unique<Details>()) {
  details_->bit_type = basic.bit_type;
  details_->mea_type = basic.mea_type;
  details_->bit_size = basic.bit_size;
  details_->bit_offset = basic.bit_offset;
  const SignalRange range = get_range();
  byte_first = range.byte_first;
  shift_left = range.shift_left;
  shift_right = range.shift_right;
  whole = range.is_whole();
}

Signal::~Signal() = default;

bool Signal::parse(Recursive& lookup) {
  details_->name = lookup.text(sid, "DN");
  details_->unit = lookup.text(sid, "DU");
  details_->comment = lookup.text(sid, "DC");
  return true;
}

void Signal::write_txt(std::ostream& out) const {
  std::ostringstream line;
  line << "Sig: " << std::setw(4) << sid << ' ';
  if (get_six() == six_t_inv) {
    line << "  -.   - ";
  } else {
    line << std::setw(3) << get_six() << ". " << std::setw(3) << slot << ' ';
  }
  line << std::left << std::setw(24) << get_name() << std::right << " (" << std::setw(2)
       << get_bit_size() << ", " << std::setw(3) << get_bit_offset() << ") | ("
       << Enum::GetString(get_bit_type()) << ", " << Enum::GetString(get_mea_type()) << ") ["
       << get_unit() << ']';
  out << line.str();
}

void Signal::set_six(six_t six) {
  details_->six = six;
}
void Signal::add_list(const SignalList& list) {
  details_->lists.push_back(&list);
}

six_t Signal::get_six() const {
  return details_->six;
}
Enum::BASIC_TYPE Signal::get_bit_type() const {
  return details_->bit_type;
}
Enum::BASIC_TYPE Signal::get_mea_type() const {
  return details_->mea_type;
}
Signal::Kind Signal::get_kind() const {
  return {get_bit_type(), get_mea_type(), whole};
}
std::uint32_t Signal::get_bit_size() const {
  return details_->bit_size;
}
std::uint32_t Signal::get_bit_offset() const {
  return details_->bit_offset;
}
const std::string& Signal::get_name() const {
  return *details_->name;
}
const std::string& Signal::get_unit() const {
  return *details_->unit;
}
const std::string& Signal::get_comment() const {
  return *details_->comment;
}
const SharedText& Signal::get_shared_unit() const {
  return details_->unit;
}
const SharedText& Signal::get_shared_comment() const {
  return details_->comment;
}

SignalRange Signal::get_range() const {
  SignalRange range;
  range.set_range({sid, get_bit_type(), get_mea_type(), get_bit_size(), get_bit_offset()});
  return range;
}

std::uint32_t Signal::get_reach() const {
  return byte_first + (whole ? size_of_type(get_bit_type()) : size_of_read(get_bit_type()));
}

bool Signal::is_listed() const {
  return !details_->lists.empty();
}

std::map<mid_t, Message*> Signal::get_messages() const {
  std::map<mid_t, Message*> messages;
  for (const SignalList* list : details_->lists) {
    messages.insert(list->get_messages().begin(), list->get_messages().end());
  }
  return messages;
}

template <Lib::ElementType M>
bool SignalM<M>::parse(Recursive& lookup) {
  Signal::parse(lookup);
  if constexpr (!std::is_same_v<M, bool>) {
    lookup.parse(scale, get_sid(), "MS");
    lookup.parse(offset, get_sid(), "MO");
    lookup.parse(min, get_sid(), "ML");
    lookup.parse(max, get_sid(), "MH");
  }
  return true;
}

template <Lib::ElementType M>
void SignalM<M>::write_txt(std::ostream& out) const {
  Signal::write_txt(out);
  std::ostringstream line;
  line << " | (";
  put(line, scale);
  line << ", ";
  put(line, offset);
  line << ") [";
  put(line, min);
  line << ", ";
  put(line, max);
  line << "]\n";
  out << line.str();
}

template <Lib::ElementType M>
void SignalM<M>::convert_print(std::ostream& out, const unsigned char* bytes) const {
  const M value = convert(bytes);
  if constexpr (std::is_same_v<M, bool>) {
    out << (value ? "true" : "false");
  } else if constexpr (std::is_floating_point_v<M>) {
    out << std::hexfloat << value << std::defaultfloat << std::dec;
  } else {
    // A negative number shows its two's complement in its own width.
    out << std::hex << +static_cast<std::make_unsigned_t<M>>(value) << std::dec;
  }
}

#define TREL_SIGNAL_M(suffix, type) template class SignalM<type>;
TREL_ELEMENT_TYPES(TREL_SIGNAL_M)
#undef TREL_SIGNAL_M

}  // namespace Trel::UCom
