// What all concrete streams share: a codec and how the passes drive it, the elements asked for in
// each mode, the tables they come from, and the first and last good data of the stream.
//
// Codec decodes packets into its live record, CData(); Data is that record's type, a plain value;
// A is the access table of the stream's kind, which also knows where the time stands in a record. A
// name is looked up in the table that all streams of the kind share and then in the stream's own,
// which describes what its headers brought along. A mode above 2 throws std::out_of_range.
#pragma once

#include <string>
#include <vector>

#include "sto/Sto_Element.h"
#include "sto/Sto_Stream.h"

namespace Trel::Sto {

template <class Codec, class Data, class A>
class StreamCodec : public Stream {
 public:
  bool prescan_packet(const unsigned char* data, unsigned int size) override {
    return raw_packet(data, size);
  }
  bool xcom_prescan_packet(const unsigned char* data, unsigned int size) override {
    return page_packet(data, size);
  }
  bool postscan_packet(const unsigned char* data, unsigned int size) override {
    raw_packet(data, size);
    return false;
  }
  bool xcom_postscan_packet(const unsigned char* data, unsigned int size) override {
    page_packet(data, size);
    return false;
  }
  bool seek_packet(const unsigned char* data, unsigned int size, long long location) override {
    raw_packet(data, size);
    cache_indexer(location);
    return false;
  }
  bool decode_packet(const unsigned char* data, unsigned int size, long long location) override {
    raw_packet(data, size);
    cache_indexer(location);
    return false;
  }
  bool xcom_seek_packet(const unsigned char* data, unsigned int size, long long location) override {
    page_packet(data, size);
    cache_indexer(location);
    return false;
  }
  bool xcom_decode_packet(const unsigned char* data, unsigned int size,
                          long long location) override {
    page_packet(data, size);
    cache_indexer(location);
    return false;
  }

  void rewind() override {
    rewind_codec();
    cache_indexer(0);
  }
  void prescan_tidy() override {
    rewind();
    if (is_configured()) data_start = codec.CData();
  }
  void postscan_tidy() override {
    if (is_configured()) data_end = codec.CData();
    rewind();
    Com::Meta header("{Trel-StreamScan}", true);
    header.set("StreamCodec", Enum::GetString(getCodec()));
    note_scan(header);
    meta.append_aux_header(header);
    if (A::time_of(codec.CData()).good() && A::time_of(data_start).good() &&
        A::time_of(data_end).good()) {
      set_storable();
    }
  }

  using Stream::cache_indexer;
  // Offers the clock the codec's time.
  void cache_indexer(long long location) {
    Stream::cache_indexer(A::time_of(codec.CData()), location);
  }

  void query_measurements(std::vector<DynamicNode>& measurements) const override {
    A::shared().describe_rows(measurements);
    access.describe_rows(measurements);
  }

  [[nodiscard]] Result get_start() const override { return result_of(A::time_of(data_start)); }
  [[nodiscard]] Result get_end() const override { return result_of(A::time_of(data_end)); }
  [[nodiscard]] Result get_start(const std::string& element) const override {
    return result_of(element, data_start);
  }
  [[nodiscard]] Result get_end(const std::string& element) const override {
    return result_of(element, data_end);
  }

#define TREL_DEFINE(kind, K)                                                           \
  bool add_element_##kind(unsigned int mode, unsigned int place, unsigned int index,   \
                          const std::string& name) override {                          \
    return add_element_of(kKindIndex<K>, mode, place, index, name);                    \
  }                                                                                    \
  [[nodiscard]] bool hit_element_##kind(unsigned int mode, const std::string& name)    \
      const override {                                                                 \
    return systems.at(mode).hit_element(kKindIndex<K>, name);                          \
  }                                                                                    \
  bool use_element_##kind(StoreLeaf& leaf, ValueText<typename K::value_type>& fn,      \
                          unsigned int mode, const std::string& name) const override { \
    return systems.at(mode).template use_element<K>(leaf, fn, name, getStreamId());    \
  }                                                                                    \
  [[nodiscard]] StoreLeaf sum_element_##kind(unsigned int mode) const override {       \
    return systems.at(mode).sum_element(kKindIndex<K>, getStreamId());                 \
  }
  TREL_ELEMENT_KINDS(TREL_DEFINE)
#undef TREL_DEFINE

  void let_system(unsigned int) override {}
  void pop_system(unsigned int mode, unsigned int store, Datum& datum) const override {
    systems.at(mode).var1(store, datum, codec.CData());
  }
  void exp_system(unsigned int mode, unsigned int count) override {
    systems.at(mode).expand(count);
  }
  void clr_system(unsigned int mode) override {
    systems.at(mode).clear();
  }

 protected:
  static constexpr unsigned int kModes = 3;

  template <class... Arguments>
  StreamCodec(Enum::TRANSPORT_TYPE transport, Enum::CODEC_TYPE type, unsigned int serial,
              Arguments&&... arguments)
      : Stream(transport, type, serial),
        codec(std::forward<Arguments>(arguments)...),
        access(false) {
    for (unsigned int mode = 0; mode < kModes; ++mode) systems.emplace_back(mode);
  }

  // Decodes one packet, as a raw file has it or as a page has it. True when it completed the
  // codec's prescan.
  virtual bool raw_packet(const unsigned char* data, unsigned int size) = 0;
  virtual bool page_packet(const unsigned char* data, unsigned int size) = 0;
  // Takes the codec back to the first time.
  virtual void rewind_codec() = 0;
  // Adds to the header that keeps what the scans have found out.
  virtual void note_scan(Com::Meta& /*header*/) {}

  Codec codec;
  std::vector<System<A>> systems;
  A access;
  Data data_start;
  Data data_end;

 private:
  [[nodiscard]] const AnyAccessRow* find_row(std::size_t kind, const std::string& name) const {
    const AnyAccessRow* row = A::shared().find(kind, name);
    return row != nullptr ? row : access.find(kind, name);
  }

  bool add_element_of(std::size_t kind, unsigned int mode, unsigned int place, unsigned int index,
                      const std::string& name) {
    if (!is_storable()) return false;
    const AnyAccessRow* row = find_row(kind, name);
    if (row == nullptr) return false;
    systems.at(mode).add_element(kind, *row, place, index);
    return true;
  }

  template <Lib::ElementType T>
  static Result result_of(const Lib::VariableExt<T>& variable) {
    Result result;
    result = variable.get();
    result.set_nano(variable.get_nano());
    result.set_flags(variable.get_flags());
    return result;
  }

  // The first entry stands for an array.
  template <Lib::ElementType T>
  static Result result_of(const Lib::VarArrayExt<T>& variable) {
    Result result;
    if (variable.size() == 0) return result;
    result = variable.get_data(0);
    result.set_nano(variable.get_nano(0));
    result.set_flags(variable.get_flags(0));
    return result;
  }

  [[nodiscard]] Result result_of(const std::string& element, const Data& data) const {
    Result result;
    first_kind([&]<class K>(std::type_identity<K>) {
      using Row = typename A::template Row<K>;
      if constexpr (requires(const Row& row) { row.fetch(data); }) {
        const auto* row = static_cast<const Row*>(find_row(kKindIndex<K>, element));
        if (row != nullptr) result = result_of(row->fetch(data));
        return row != nullptr;
      }
      return false;
    });
    return result;
  }
};

}  // namespace Trel::Sto
