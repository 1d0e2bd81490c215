// Metadata of a stream: tagged blobs, as a recording carries them and as the system notes them
// down.
//
// A blob is a tag, delimiters included, and a content whose form the opening delimiter selects:
//   [x] and {x}   items "key=value" between control bytes, read into values
//   <x> (x) |x|   bytes, text and XML, kept in data as they are
//   /x/           one JSON document, read into json and kept in data
// A blob whose tag is not recognised is no error: its format says so, it has no tag, and data is
// the whole of it. A malformed JSON document throws the JSON library's exception. All types here
// are values; copies share the JSON document, which never changes once it has been read.
#pragma once

#include <map>
#include <memory>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

#include "enum/Enum.h"

namespace Trel::Com {

// One blob. It is assigned once: a second assign() of another blob is not supported.
class Meta {
 public:
  Meta() = default;
  // The same as assign() on a fresh Meta.
  Meta(const std::string& blob, bool convert);
  Meta(const unsigned char* bytes, unsigned int size, bool convert);

  // Takes the blob, reads its tag and, when `convert` is set, its content. An empty blob changes
  // nothing but data. The last form joins two pieces; either may be null or empty.
  void assign(const std::string& blob, bool convert);
  void assign(const unsigned char* bytes, unsigned int size, bool convert);
  void assign(const unsigned char* first, unsigned int first_size, const unsigned char* second,
              unsigned int second_size, bool convert);

  // Reads the tag and removes it from data.
  void parse();
  // Reads the content by the form of the tag. False for XML, which has no reader.
  bool convert();
  bool convert_gen();
  bool convert_json();
  bool convert_xml();

  // Write into values, in place of an earlier value of that key. Numbers are rendered in decimal, a
  // double with six significant digits.
  void set(const std::string& key, std::string value);
  void set(const std::string& key, int value);
  void set(const std::string& key, unsigned int value);
  void set(const std::string& key, unsigned long long value);
  void set(const std::string& key, double value);

  // True when values has the key; otherwise `value` is cleared.
  bool get(const std::string& key, std::string& value) const;
  // The value, empty when the key is missing.
  [[nodiscard]] std::string get(const std::string& key) const;
  // The number that the value starts with, read as the standard library's streams read an unsigned
  // one: blanks ahead are passed over, and a minus sign wraps. False, with `value` 0, when the key
  // is missing or its text starts with no number that fits.
  bool get(const std::string& key, unsigned int& value) const;

  // The delimiters of the tag, '?' in both when none was recognised.
  [[nodiscard]] char get_open() const { return open; }
  [[nodiscard]] char get_close() const { return close; }
  // The content; empty once it has been read into values.
  [[nodiscard]] const std::vector<unsigned char>& get_data() const { return data; }
  // The name of the blob, with its delimiters.
  [[nodiscard]] const std::string& get_tag() const { return tag; }
  [[nodiscard]] const std::map<std::string, std::string>& get_values() const { return values; }
  // The document; a null value unless one was read. It lives as long as any copy of this Meta.
  [[nodiscard]] const nlohmann::json& get_json() const;
  [[nodiscard]] Enum::XCOM_META_FORMAT get_format() const { return format; }

 private:
  template <class T>
  void set_conv(const std::string& key, T value);
  template <class T>
  bool get_conv(const std::string& key, T& value) const;
  void reject_tag();

  char open = '?';
  char close = '?';
  std::vector<unsigned char> data;
  std::string tag;
  std::map<std::string, std::string> values;
  std::shared_ptr<const nlohmann::json> json;
  Enum::XCOM_META_FORMAT format = Enum::XCOM_META_FORMAT_INVALID;
};

// The blobs of one stream.
struct StreamMeta {
  Meta initial;
  std::vector<Meta> auxiliary;  // in order of arrival
  Meta footer;

  // Stores a copy of `header` behind the others and notes their number in `initial` as "headers".
  // The reference is valid until the next call.
  Meta& append_aux_header(const Meta& header);

  // The first auxiliary header of that tag, delimiters included; null when there is none. Valid
  // until the next append_aux_header().
  [[nodiscard]] Meta* find_aux_header(const std::string& tag);
  [[nodiscard]] const Meta* find_aux_header(const std::string& tag) const;
};

}  // namespace Trel::Com
