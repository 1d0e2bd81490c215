// One decoded source inside a resource.
//
// A stream hides how its packets arrive behind one set of operations that walk it forward in time
// until its own clock has passed a requested time. There is no index: going back means a rewind to
// the start of the file and a fresh walk. A concrete class adds the codec and its elements. A
// stream owns its reader; it takes no lock and runs under the store's.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "com/Com_Meta.h"
#include "enum/Enum.h"
#include "library/Lib_Dynamic.h"
#include "library/Lib_Time.h"
#include "library/Lib_Variable.h"
#include "sto/Sto_Access.h"
#include "sto/Sto_Datum.h"
#include "sto/Sto_File.h"
#include "sto/Sto_FileNav.h"
#include "sto/Sto_FileRng.h"
#include "sto/Sto_Kind.h"
#include "sto/Sto_Taxonomy.h"

namespace Trel::Sto {

using Lib::nano_t;

class Stream {
 public:
  // Bytes that a walk reads at a time.
  static constexpr unsigned long long kReadSize = 4096;

  Stream(Enum::TRANSPORT_TYPE transport, Enum::CODEC_TYPE type, unsigned int serial);
  virtual ~Stream();
  Stream(const Stream&) = delete;
  Stream& operator=(const Stream&) = delete;

  // One packet in each of the passes. The plain forms take packets as a raw file has them, the
  // xcom_ forms packets that came out of a page. True from a scan: the stream needs no more of it.
  // `location` is kept with the time that the packet carries. The bytes need to last for the call.
  virtual bool prescan_packet(const unsigned char* data, unsigned int size) = 0;
  virtual bool postscan_packet(const unsigned char* data, unsigned int size) = 0;
  virtual bool seek_packet(const unsigned char* data, unsigned int size, long long location) = 0;
  virtual bool decode_packet(const unsigned char* data, unsigned int size, long long location) = 0;
  virtual bool xcom_prescan_packet(const unsigned char* data, unsigned int size) = 0;
  virtual bool xcom_postscan_packet(const unsigned char* data, unsigned int size) = 0;
  virtual bool xcom_seek_packet(const unsigned char* data, unsigned int size,
                                long long location) = 0;
  virtual bool xcom_decode_packet(const unsigned char* data, unsigned int size,
                                  long long location) = 0;

  // Sets the codec up from the stream's headers; false when they lack what it needs.
  virtual bool codec_configure() = 0;
  // End of the pass that looks for the first time, and of the one that looks for the last.
  virtual void prescan_tidy() = 0;
  virtual void postscan_tidy() = 0;
  // The codec back to the first time.
  virtual void rewind() = 0;

  // Appends the description of each element that the stream can deliver.
  virtual void query_measurements(std::vector<DynamicNode>& measurements) const = 0;
  // The first and the last good time; of the stream, or of one of its elements. The value of a
  // stream's time is the time itself. Not ok for an element that the stream does not have.
  [[nodiscard]] virtual Result get_start() const = 0;
  [[nodiscard]] virtual Result get_end() const = 0;
  [[nodiscard]] virtual Result get_start(const std::string& element) const = 0;
  [[nodiscard]] virtual Result get_end(const std::string& element) const = 0;

  // For each kind of element, in one mode:
  // add: finds the element and gives it the place `index` in store `place`; false when the stream
  //      is not storable or has no such element of that kind.
  // hit: whether the element has been added.
  // use: describes an added element and gives the text form of its values; false when there is
  //      none.
  // sum: describes the element added last.
#define TREL_DECLARE(kind, K)                                                                \
  virtual bool add_element_##kind(unsigned int mode, unsigned int place, unsigned int index, \
                                  const std::string& name) = 0;                              \
  [[nodiscard]] virtual bool hit_element_##kind(unsigned int mode, const std::string& name)  \
      const = 0;                                                                             \
  virtual bool use_element_##kind(StoreLeaf& leaf, ValueText<typename K::value_type>& fn,    \
                                  unsigned int mode, const std::string& name) const = 0;     \
  [[nodiscard]] virtual StoreLeaf sum_element_##kind(unsigned int mode) const = 0;
  TREL_ELEMENT_KINDS(TREL_DECLARE)
#undef TREL_DECLARE

  // The same for a kind known to a template.
  template <class K>
  bool add_element(unsigned int mode, unsigned int place, unsigned int index,
                   const std::string& name) {
#define TREL_DISPATCH(kind, Kind) \
  if constexpr (std::is_same_v<K, Kind>) return add_element_##kind(mode, place, index, name);
    TREL_ELEMENT_KINDS(TREL_DISPATCH)
#undef TREL_DISPATCH
  }
  template <class K>
  [[nodiscard]] bool hit_element(unsigned int mode, const std::string& name) const {
#define TREL_DISPATCH(kind, Kind) \
  if constexpr (std::is_same_v<K, Kind>) return hit_element_##kind(mode, name);
    TREL_ELEMENT_KINDS(TREL_DISPATCH)
#undef TREL_DISPATCH
  }
  template <class K>
  bool use_element(StoreLeaf& leaf, ValueText<typename K::value_type>& fn, unsigned int mode,
                   const std::string& name) const {
#define TREL_DISPATCH(kind, Kind) \
  if constexpr (std::is_same_v<K, Kind>) return use_element_##kind(leaf, fn, mode, name);
    TREL_ELEMENT_KINDS(TREL_DISPATCH)
#undef TREL_DISPATCH
  }
  template <class K>
  [[nodiscard]] StoreLeaf sum_element(unsigned int mode) const {
#define TREL_DISPATCH(kind, Kind) \
  if constexpr (std::is_same_v<K, Kind>) return sum_element_##kind(mode);
    TREL_ELEMENT_KINDS(TREL_DISPATCH)
#undef TREL_DISPATCH
  }

  // Tells the codec which fields the elements of a mode need.
  virtual void let_system(unsigned int mode) = 0;
  // Copies the current values of a mode's elements in one store to their places.
  virtual void pop_system(unsigned int mode, unsigned int store, Datum& datum) const = 0;
  // Sets the count of stores of a mode.
  virtual void exp_system(unsigned int mode, unsigned int count) = 0;
  // Forgets the elements of a mode.
  virtual void clr_system(unsigned int mode) = 0;

  void set_captured() {
    captured = true;
  }
  [[nodiscard]] bool is_captured() const {
    return captured;
  }
  void set_configured() {
    configured = true;
  }
  [[nodiscard]] bool is_configured() const {
    return configured;
  }
  void set_storable() {
    storable = true;
  }
  [[nodiscard]] bool is_storable() const {
    return storable;
  }
  void set_good(bool value) {
    good = value;
  }
  [[nodiscard]] bool get_good() const {
    return good;
  }
  void setResourceId(unsigned int id) {
    resource_id = id;
  }
  void setStreamId(unsigned int id) {
    stream_id = id;
  }
  void setGroupId(unsigned int id) {
    group_id = id;
  }
  [[nodiscard]] unsigned int getResourceId() const {
    return resource_id;
  }
  [[nodiscard]] unsigned int getSerialId() const {
    return serial_id;
  }
  [[nodiscard]] unsigned int getStreamId() const {
    return stream_id;
  }
  [[nodiscard]] const std::string& getGroupTag() const {
    return group_tag;
  }
  [[nodiscard]] unsigned int getGroupId() const {
    return group_id;
  }
  [[nodiscard]] Enum::CODEC_TYPE getCodec() const {
    return codec;
  }
  [[nodiscard]] Enum::TRANSPORT_TYPE getTrans() const {
    return trans;
  }
  [[nodiscard]] nano_t get_indexer() const {
    return indexer;
  }
  [[nodiscard]] Com::StreamMeta& get_meta() {
    return meta;
  }
  [[nodiscard]] const Com::StreamMeta& get_meta() const {
    return meta;
  }
  // The reader of pages; null on another transport.
  [[nodiscard]] LogicalXCom* get_logical_xcom() {
    return logical_xcom.get();
  }
  void set_logical_xcom(std::unique_ptr<LogicalXCom> reader) {
    logical_xcom = std::move(reader);
  }
  [[nodiscard]] std::unique_ptr<LogicalXCom> release_logical_xcom() {
    return std::move(logical_xcom);
  }
  // The reader of a raw navigation file; null on another transport, and where no packet was found.
  [[nodiscard]] LogicalNav* get_logical_nav() {
    return logical_nav.get();
  }
  void set_logical_nav(std::unique_ptr<LogicalNav> reader) {
    logical_nav = std::move(reader);
  }
  // The reader of a raw range file; null on another transport, and where no packet was found.
  [[nodiscard]] LogicalRng* get_logical_rng() {
    return logical_rng.get();
  }
  void set_logical_rng(std::unique_ptr<LogicalRng> reader) {
    logical_rng = std::move(reader);
  }

  // The tag of the stream's initial header: "[Trel-UCom]" and its like.
  [[nodiscard]] std::string codec_identifier() const;
  // The recorder's name for the stream's group; empty when it gave none.
  [[nodiscard]] std::string obtain_group_tag_from_meta() const;
  // The group's name and the resource id, so that a name never merges resources.
  void set_group_tag();
  // Fills the group and the stream records of the leaf.
  void query_stream(StreamLeaf& leaf) const;

  // Whether the clock has reached t. The stream must be storable.
  [[nodiscard]] bool test_indexer(nano_t t) const;
  // Moves the clock to the time `now` if that is good.
  void cache_indexer(const Lib::VariableExt<long long>& now, long long location);

  // Prepares a walk that shall reach t: goes on from where the stream stands, or rewinds when t was
  // passed. True when the stream can be walked.
  bool do_init(nano_t t);
  // Walks until the clock has reached t; whether it has. At the end of the data the reader closes.
  bool do_seek(nano_t t);
  bool do_decode(nano_t t);
  // Closes the reader.
  void do_tidy();

 protected:
  Com::StreamMeta meta;

 private:
  // The export asserts the reader of each stream under its name.
  friend class ResourceNav;
  friend class ResourceRng;

  // Whether it went back to the start, which it did when t had been passed.
  template <class Source>
  bool init_walk(Source source, nano_t t);
  template <class Source>
  bool seek_walk(Source source, nano_t t);
  template <class Source>
  bool decode_walk(Source source, nano_t t);
  bool do_init_nav(nano_t t);
  bool do_seek_nav(nano_t t);
  bool do_decode_nav(nano_t t);
  bool do_init_ogg(nano_t t);
  bool do_seek_ogg(nano_t t);
  bool do_decode_ogg(nano_t t);
  bool do_init_rng(nano_t t);
  bool do_seek_rng(nano_t t);
  bool do_decode_rng(nano_t t);

  Enum::TRANSPORT_TYPE trans;
  Enum::CODEC_TYPE codec;
  unsigned int resource_id = kNoId;
  unsigned int serial_id;
  unsigned int stream_id = kNoId;
  std::string group_tag = "*";
  unsigned int group_id = kNoId;
  bool captured = false;
  bool configured = false;
  bool storable = false;
  bool good = true;
  nano_t indexer = 0;
  Lib::Flags indexer_flags;
  long long location_previous = 0;
  long long location_current = 0;
  nano_t target;
  std::unique_ptr<LogicalRng> logical_rng;
  std::unique_ptr<LogicalNav> logical_nav;
  std::unique_ptr<LogicalXCom> logical_xcom;
};

}  // namespace Trel::Sto
