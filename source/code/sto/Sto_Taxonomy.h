// Property chains: what the store answers about the identity of streams and elements.
//
// A chain is built level by level; each level adds one record and keeps those before it, so a
// description travels from an access table through a store into an aspect and grows on its way.
// All are plain values. A default record describes nothing: its ids are kNoId, its names "?".
#pragma once

#include <memory>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>

#include "enum/Enum.h"

namespace Trel::Sto {

inline constexpr unsigned int kNoId = 0xFFFFFFFF;

// The first level of a chain.
template <class P>
class TaxRoot : public P {
 public:
  TaxRoot() = default;
  explicit TaxRoot(P props) : P(std::move(props)) {}
};

// A further level: a copy of its parent and one more record, made of the arguments.
template <class Parent, class P>
class TaxNode : public Parent, public P {
 public:
  TaxNode() = default;
  template <class... Arguments>
  explicit TaxNode(Parent parent, Arguments&&... arguments)
      : Parent(std::move(parent)), P{std::forward<Arguments>(arguments)...} {}
};

// Where a stream sits.

struct PropsResource {
  unsigned int resource_id = kNoId;
  Enum::TRANSPORT_TYPE transport = Enum::TRANSPORT_TYPE_NONE;
  std::string name = "?";       // the resource's file path
  std::string extension = "?";  // lower-cased, with its dot
};

struct PropsGroup {
  unsigned int group_id = kNoId;
  std::string group_tag = "?";
};

struct PropsStream {
  unsigned int stream_id = kNoId;
  unsigned int serial_id = kNoId;
  Enum::CODEC_TYPE codec = Enum::CODEC_TYPE_NONE;
  bool captured = false;
  bool configured = false;
  bool storable = false;
  std::string identifier;
  long long start = 0;  // nanoseconds; 0 unless storable
  long long end = 0;    // nanoseconds; 0 unless storable
};

using ResourceNode = TaxRoot<PropsResource>;
using GroupNode = TaxNode<ResourceNode, PropsGroup>;
using StreamLeaf = TaxNode<GroupNode, PropsStream>;

// What an element is and where it lives.

// A constant text that its copies share: a description may be long, and many elements may have the
// same.
class Text {
 public:
  Text() = default;  // empty
  Text(std::shared_ptr<const std::string> text) : text_(std::move(text)) {}
  Text(std::string text) : Text(std::make_shared<const std::string>(std::move(text))) {}
  Text(const char* text) {
    if (*text != '\0') *this = std::string(text);
  }

  // Valid as long as any copy.
  [[nodiscard]] const std::string& str() const;
  operator const std::string&() const { return str(); }

  friend bool operator==(const Text& text, std::string_view other) { return text.str() == other; }
  friend std::ostream& operator<<(std::ostream& out, const Text& text) { return out << text.str(); }

 private:
  std::shared_ptr<const std::string> text_;
};

// The text of an array index.
using IndexLabel = std::string (*)(unsigned long long);

struct InfoProps {
  InfoProps();
  // `size` is 1 for a scalar and the number of entries of an array; `label` may be null. The
  // resolution may be given with either sign.
  InfoProps(std::string name, unsigned int size, IndexLabel label, Text unit, Text description,
            double resolution, double d1, double d2, double d3, double d4);
  // Out of line, since descriptions are copied in many places.
  InfoProps(const InfoProps& other);
  InfoProps(InfoProps&& other) noexcept;
  InfoProps& operator=(const InfoProps& other);
  InfoProps& operator=(InfoProps&& other) noexcept;
  ~InfoProps();

  std::string name = "?";
  unsigned int size = 1;
  Text unit;
  Text description;  // one sentence for people
  IndexLabel label = nullptr;
  double resolution = 0.0;
  int decimals = -1;  // for display; -1 when the resolution is not known
  double limits[4] = {0.0, 0.0, 0.0, 0.0};
};

struct PointerProps {
  unsigned int pointer_id = kNoId;
  Enum::MEASUREMENT_TYPE measurement_type = Enum::MEASUREMENT_TYPE_NONE;
};

struct DynamicProps {
  Enum::BASIC_TYPE basic_type = Enum::BASIC_TYPE_void;
  bool is_array = false;
};

struct StreamProps {
  unsigned int stream_id = kNoId;
};

struct StoreProps {
  unsigned int mode_id = kNoId;
  unsigned int store_id = kNoId;
  unsigned int offset = kNoId;  // of the element's first value in its store's array
};

struct AspectProps {
  unsigned int aspect_id = kNoId;
  unsigned int destination = kNoId;  // of the element's first value in the client's results
};

struct DestinationProps {
  unsigned int measurement = kNoId;  // index in the aspect's measurements
  unsigned int index = kNoId;        // index in the array
};

using InfoNode = TaxRoot<InfoProps>;
using PointerNode = TaxNode<InfoNode, PointerProps>;
using DynamicNode = TaxNode<PointerNode, DynamicProps>;
using ElementNode = TaxNode<DynamicNode, StreamProps>;
using StoreLeaf = TaxNode<ElementNode, StoreProps>;
using AspectNode = TaxNode<StoreLeaf, AspectProps>;
using DestinationNode = TaxNode<AspectNode, DestinationProps>;

// The numbers that place one output value, without the description.
struct AspectAddress {
  AspectAddress() = default;
  explicit AspectAddress(const DestinationNode& node)
      : aspect_id(node.aspect_id),
        destination(node.destination),
        measurement(node.measurement),
        index(node.index) {}

  unsigned int aspect_id = kNoId;
  unsigned int destination = kNoId;
  unsigned int measurement = kNoId;
  unsigned int index = kNoId;
};

}  // namespace Trel::Sto
