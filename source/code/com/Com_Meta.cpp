#include "com/Com_Meta.h"

#include <algorithm>
#include <array>
#include <locale>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string_view>
#include <utility>

namespace Trel::Com {

namespace {

struct Delimiters {
  char open;
  char close;
  Enum::XCOM_META_FORMAT format;
};

constexpr std::array<Delimiters, 6> kDelimiters{{
    {'[', ']', Enum::XCOM_META_FORMAT_INI_GENERIC},
    {'<', '>', Enum::XCOM_META_FORMAT_AUX_BINARY},
    {'(', ')', Enum::XCOM_META_FORMAT_AUX_TEXT},
    {'{', '}', Enum::XCOM_META_FORMAT_AUX_GENERIC},
    {'/', '/', Enum::XCOM_META_FORMAT_AUX_JSON},
    {'|', '|', Enum::XCOM_META_FORMAT_AUX_XML},
}};

const Delimiters* find_opening(unsigned char byte) {
  const auto* found = std::find_if(
      kDelimiters.begin(), kDelimiters.end(),
      [byte](const Delimiters& row) { return static_cast<unsigned char>(row.open) == byte; });
  return found == kDelimiters.end() ? nullptr : found;
}

bool is_closing(unsigned char byte) {
  return std::any_of(kDelimiters.begin(), kDelimiters.end(), [byte](const Delimiters& row) {
    return static_cast<unsigned char>(row.close) == byte;
  });
}

// Bytes from 0x80 up are negative here and so separate items like control bytes.
bool is_text(unsigned char byte) {
  return static_cast<signed char>(byte) > 31;
}

}  // namespace

Meta::Meta(const std::string& blob, bool convert) {
  assign(blob, convert);
}

Meta::Meta(const unsigned char* bytes, unsigned int size, bool convert) {
  assign(bytes, size, convert);
}

void Meta::assign(const std::string& blob, bool convert) {
  assign(reinterpret_cast<const unsigned char*>(blob.data()),
         static_cast<unsigned int>(blob.size()), convert);
}

void Meta::assign(const unsigned char* bytes, unsigned int size, bool convert) {
  assign(bytes, size, nullptr, 0, convert);
}

void Meta::assign(const unsigned char* first, unsigned int first_size, const unsigned char* second,
                  unsigned int second_size, bool convert) {
  data.clear();
  if (first != nullptr) data.insert(data.end(), first, first + first_size);
  if (second != nullptr) data.insert(data.end(), second, second + second_size);
  if (data.empty()) return;
  parse();
  if (convert) this->convert();
}

void Meta::parse() {
  open = '?';
  close = '?';
  const Delimiters* form = data.empty() ? nullptr : find_opening(data.front());
  if (form == nullptr) {
    tag.clear();
    return;
  }
  open = form->open;
  close = form->close;
  format = form->format;

  const auto end = std::find_if(data.begin() + 1, data.end(), is_closing);
  if (end == data.end() || static_cast<char>(*end) != close) {
    reject_tag();
    return;
  }
  tag.append(data.begin(), end + 1);
  data.erase(data.begin(), end + 1);
}

void Meta::reject_tag() {
  open = '?';
  close = '?';
  tag.clear();
  format = Enum::XCOM_META_FORMAT_UNKNOWN;
}

bool Meta::convert() {
  switch (format) {
    case Enum::XCOM_META_FORMAT_INI_GENERIC:
    case Enum::XCOM_META_FORMAT_AUX_GENERIC:
      return convert_gen();
    case Enum::XCOM_META_FORMAT_AUX_JSON:
      return convert_json();
    case Enum::XCOM_META_FORMAT_AUX_XML:
      return convert_xml();
    default:
      return true;
  }
}

bool Meta::convert_gen() {
  const std::vector<unsigned char> content = std::exchange(data, {});
  auto position = content.begin();
  while (position != content.end()) {
    const auto first = std::find_if(position, content.end(), is_text);
    const auto last = std::find_if_not(first, content.end(), is_text);
    const auto split = std::find(first, last, static_cast<unsigned char>('='));
    if (split != last) {
      values.try_emplace(std::string(first, split), split + 1, last);
    }
    position = last;
  }
  return true;
}

bool Meta::convert_json() {
  const char* text = reinterpret_cast<const char*>(data.data());
  json = std::make_shared<const nlohmann::json>(nlohmann::json::parse(text, text + data.size()));
  return true;
}

bool Meta::convert_xml() {
  return false;
}

const nlohmann::json& Meta::get_json() const {
  static const nlohmann::json null;
  return json ? *json : null;
}

template <class T>
void Meta::set_conv(const std::string& key, T value) {
  std::ostringstream text;
  text.imbue(std::locale::classic());
  text << value;
  values[key] = text.str();
}

template <class T>
bool Meta::get_conv(const std::string& key, T& value) const {
  value = 0;
  const auto found = values.find(key);
  if (found == values.end()) return false;
  std::istringstream text(found->second);
  text.imbue(std::locale::classic());
  T number{};
  if (!(text >> number)) return false;
  value = number;
  return true;
}

void Meta::set(const std::string& key, std::string value) {
  values[key] = std::move(value);
}
void Meta::set(const std::string& key, int value) {
  set_conv(key, value);
}
void Meta::set(const std::string& key, unsigned int value) {
  set_conv(key, value);
}
void Meta::set(const std::string& key, unsigned long long value) {
  set_conv(key, value);
}
void Meta::set(const std::string& key, double value) {
  set_conv(key, value);
}

bool Meta::get(const std::string& key, std::string& value) const {
  const auto found = values.find(key);
  if (found == values.end()) {
    value.clear();
    return false;
  }
  value = found->second;
  return true;
}

std::string Meta::get(const std::string& key) const {
  std::string value;
  get(key, value);
  return value;
}

bool Meta::get(const std::string& key, unsigned int& value) const {
  return get_conv(key, value);
}

Meta& StreamMeta::append_aux_header(const Meta& header) {
  auxiliary.push_back(header);
  initial.set("headers", static_cast<unsigned int>(auxiliary.size()));
  return auxiliary.back();
}

Meta* StreamMeta::find_aux_header(const std::string& tag) {
  return const_cast<Meta*>(std::as_const(*this).find_aux_header(tag));
}

const Meta* StreamMeta::find_aux_header(const std::string& tag) const {
  const auto found = std::find_if(auxiliary.begin(), auxiliary.end(),
                                  [&tag](const Meta& header) { return header.get_tag() == tag; });
  return found == auxiliary.end() ? nullptr : &*found;
}

}  // namespace Trel::Com
