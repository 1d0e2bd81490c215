// Streams and resources of a test's own making, recordings of them, and eyes for what a store
// hides.
//
// A fake stream has a scalar and an array of kArraySize entries of every type. Its elements are
// "Nano" (int64) and "Builtin" (uint8), which all fakes share, and whatever a test adds. It walks a
// real recording when it has been given one, and otherwise stands still.
#pragma once

#include <filesystem>
#include <functional>
#include <limits>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include "sto/Sto_Resource.h"
#include "sto/Sto_Store.h"
#include "sto/Sto_StreamDescribed.h"
#include "support/Support_Bytes.h"

namespace Trel::Sto {

// Reaches the locks and the cancel flag.
struct DataStorePeer {
  static Lib::SharedMutexStandard& cancel_mutex(const DataStore& store) {
    return store.cancel_mutex;
  }
  static Lib::SharedMutexStandard& store_mutex(const DataStore& store) { return store.store_mutex; }
  static void set_cancelled(DataStoreImpl& store) { store.cancelled = true; }
};

namespace Test {

inline constexpr long long kSecond = 1000000000;
inline constexpr long long kMax = std::numeric_limits<long long>::max();
inline constexpr std::size_t kArraySize = 5;

// 2^16 slots of a second; a ring of 2^10 bytes.
inline const Options kOptions(16, kSecond, 0, 0.1, 1048576, 10);

// A folder that goes with the test.
class Folder {
 public:
  Folder();
  ~Folder();
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;

  // Writes a file of that name and returns its path.
  std::string write(const std::string& name, const Support::Bytes& bytes) const;

 private:
  std::filesystem::path path_;
};

// The data record of a fake: a variable of each kind.
class FakeData {
 public:
  template <class K>
  [[nodiscard]] const typename K::variable_type& value() const {
    const auto& values = std::get<Values<typename K::value_type>>(values_);
    if constexpr (K::kIsArray) {
      return values.array;
    } else {
      return values.scalar;
    }
  }
  template <class K>
  [[nodiscard]] typename K::variable_type& value() {
    return const_cast<typename K::variable_type&>(std::as_const(*this).value<K>());
  }

  // Sets a scalar, good and at `nano`.
  template <Lib::ElementType T>
  void set(T number, long long nano) {
    value<Var_t<T>>().set(number, stamp_at(nano));
  }
  // Sets an array to `first`, first + 1 and so on.
  template <Lib::ElementType T>
  void set_array(T first, long long nano) {
    auto& array = value<Arr_t<T>>();
    for (std::size_t i = 0; i < array.size(); ++i) {
      array.set(i, stamp_at(nano));
      array.set_data(i, static_cast<T>(first + static_cast<T>(i)));
    }
  }
  void set_time(long long nano) { set<long long>(nano, nano); }

  [[nodiscard]] static Lib::StampExt stamp_at(long long nano) {
    Lib::StampExt stamp;
    stamp.wipe();
    stamp.set_nano(nano);
    return stamp;
  }

 private:
  template <class T>
  struct Values {
    Lib::VariableExt<T> scalar;
    Lib::VarArrayExt<T> array{kArraySize};
  };

  typename PerType<Values>::type values_;
};

template <class K>
class FakeRow : public AccessRow<K> {
 public:
  explicit FakeRow(const InfoProps& info, ValueText<typename K::value_type> text = nullptr)
      : AccessRow<K>(InfoNode(info), text) {}

  [[nodiscard]] const typename K::variable_type& fetch(const FakeData& data) const {
    return data.value<K>();
  }
};

class FakeAccess : public AccessTable<FakeRow> {
 public:
  explicit FakeAccess(bool built_in);
  static const FakeAccess& shared();
  [[nodiscard]] static const Lib::VariableExt<long long>& time_of(const FakeData& data) {
    return data.value<Var_t<long long>>();
  }
};

// The description of an element, of which only name and size matter.
InfoProps info(const std::string& name, unsigned int size = 1, IndexLabel label = nullptr);

// A packet of a fake stream: a time, and a number that becomes the uint8 scalar.
Support::Bytes fake_packet(long long nano, unsigned char number);

class FakeCodec {
 public:
  bool decode(const unsigned char* bytes, unsigned int size);
  void rewind(bool) { data.set_time(first_time); }
  [[nodiscard]] const FakeData& CData() const { return data; }

  FakeData data;
  long long first_time = 0;
  std::function<void(long long)> on_decode;
};

class FakeStream : public StreamDescribed<FakeCodec, FakeData, FakeAccess> {
 public:
  explicit FakeStream(unsigned int serial,
                      Enum::TRANSPORT_TYPE transport = Enum::TRANSPORT_TYPE_NONE)
      : StreamDescribed(transport, Enum::CODEC_TYPE_UCOM, serial) {}

  bool codec_configure() override { return true; }

  // Makes it storable, with that span.
  FakeStream& span(long long start, long long end);
  FakeStream& grouping(const std::string& name);
  // Adds an element to the stream's own table.
  template <class K>
  FakeStream& element(const InfoProps& description,
                      ValueText<typename K::value_type> text = nullptr) {
    access.add(FakeRow<K>(description, text), 0);
    return *this;
  }
  // Reads the packets of `serial` from the recording at `path` and knows its headers. The first
  // time is that of span().
  FakeStream& reads(const std::string& path);

  // What the codec holds.
  FakeData& live() { return codec.data; }
  FakeCodec& live_codec() { return codec; }

  // Called at the start of the operations below with their names and arguments: "exp 0 1".
  std::function<void(const std::string&)> on_call;

  [[nodiscard]] Result get_start() const override;
  [[nodiscard]] Result get_end() const override;
  using StreamDescribed::get_end;
  using StreamDescribed::get_start;
  [[nodiscard]] bool hit_element_Var_t_float(unsigned int mode,
                                             const std::string& name) const override;
  bool use_element_Var_t_float(StoreLeaf& leaf, ValueText<float>& fn, unsigned int mode,
                               const std::string& name) const override;
  void let_system(unsigned int mode) override;
  void pop_system(unsigned int mode, unsigned int store, Datum& datum) const override;
  void exp_system(unsigned int mode, unsigned int count) override;

 private:
  void call(const std::string& text) const {
    if (on_call) on_call(text);
  }
};

class FakeResource : public Resource {
 public:
  explicit FakeResource(const std::string& path = "nowhere/Drive.FAKE")
      : Resource(kOptions, Enum::TRANSPORT_TYPE_OGG, path, nullptr) {}

  FakeStream& stream(unsigned int serial,
                     Enum::TRANSPORT_TYPE transport = Enum::TRANSPORT_TYPE_NONE);

  void do_store() override {
    if (on_store) on_store();
  }
  bool do_export(const std::string&, nano_t, nano_t) override { return false; }

  std::function<void()> on_store;
};

// A store with fakes in it.
class FakeStore : public DataStore {
 public:
  FakeStore() : DataStore(kOptions) {}
  explicit FakeStore(const Options& store_options) : DataStore(store_options) {}

  // Takes over the resource; what the store answers.
  Enum::RETURN_TYPE take(std::unique_ptr<FakeResource> resource);
  // A stream in a resource of its own, storable from 0 to 10 s.
  FakeStream& stream();

  std::vector<unsigned int> ids;
  unsigned int count = 0;
};

// Pages of a recording with one packet each, at `times`, for each of the streams `serials`. The
// packets carry the numbers 0, 1 and so on.
Support::Bytes fake_recording(const std::vector<unsigned int>& serials,
                              const std::vector<long long>& times);

// A record read back out of the ring.
struct Message {
  unsigned int id;
  unsigned int kind;
  float percent;

  friend bool operator==(const Message&, const Message&) = default;
};
std::vector<Message> drain(Lib::CyclicBuffer& ring);

// Of what an aspect delivers, in its order.
std::vector<std::string> names_of(const Aspect& aspect);

}  // namespace Test
}  // namespace Trel::Sto
