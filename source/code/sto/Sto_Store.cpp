#include "sto/Sto_Store.h"

#include <algorithm>
#include <cstdlib>
#include <limits>

#include "library/Lib_System.h"
#include "library/Lib_Timer.h"
#include "sto/Sto_ResourceNav.h"
#include "sto/Sto_ResourceRng.h"
#include "sto/Sto_ResourceXCom.h"

namespace Trel::Sto {

namespace {

constexpr long long kSeekStep = 1000000000;

std::unique_ptr<Resource> open_resource(const Options& options, const std::string& path,
                                        Messages* messages) {
  const std::string extension = Lib::file_extension(path, true);
  if (extension == ".xcom") return std::make_unique<ResourceOgg>(options, path, messages);
  if (extension == ".ncom" || extension == ".mcom") {
    return std::make_unique<ResourceNav>(options, path, messages);
  }
  if (extension == ".rcom") return std::make_unique<ResourceRng>(options, path, messages);
  return nullptr;
}

// "Name[3]" is the entry 3 of "Name"; -1 stands for a name without an index.
struct IndexedName {
  explicit IndexedName(const std::string& text) : name(text) {
    const std::size_t open = text.find('[');
    if (text.empty() || text.back() != ']' || open == std::string::npos) return;
    name = text.substr(0, open);
    const std::size_t close = text.find(']');
    const std::string digits =
        close < open ? std::string() : text.substr(open + 1, close - open - 1);
    const long value = std::strtol(digits.c_str(), nullptr, 10);
    index = static_cast<int>(std::clamp<long>(value, -1, std::numeric_limits<int>::max()));
  }

  std::string name;
  int index = -1;
};

// later - earlier, for times in that order.
unsigned long long distance(long long earlier, long long later) {
  return static_cast<unsigned long long>(later) - static_cast<unsigned long long>(earlier);
}

double difference(long long later, long long earlier) {
  return later >= earlier ? static_cast<double>(distance(earlier, later))
                          : -static_cast<double>(distance(later, earlier));
}

// The first of u + step, u + 2 step, ... that lies after `clock`, or `target` where none of them
// lies ahead of that. u must lie ahead of the target.
long long next_step(long long u, long long step, long long clock, long long target) {
  const unsigned long long left = distance(u, target);
  const unsigned long long passed = clock > u ? distance(u, clock) : 0;
  if (passed >= left) return target;
  const auto width = static_cast<unsigned long long>(step);
  const unsigned long long steps = passed / width + 1;
  if (steps > left / width) return target;
  return static_cast<long long>(static_cast<unsigned long long>(u) + steps * width);
}

}  // namespace

DataStoreImpl::DataStoreImpl(const Options& store_options)
    : options(store_options),
      messages(store_options.message_bits),
      direct(direct_mode_id),
      retain(retain_mode_id, store_options.store_bits, store_options.store_resolution) {
  modes.push_back(&direct);
  modes.push_back(&retain);
}

DataStoreImpl::~DataStoreImpl() = default;

Enum::RETURN_TYPE DataStoreImpl::add_resources(const std::vector<std::string>& paths,
                                               std::vector<unsigned int>& ids,
                                               unsigned int& count) {
  count = 0;
  for (const std::string& path : paths) {
    if (!Lib::file_exist(path)) continue;
    unsigned int added = 0;
    add_resource(open_resource(options, path, &messages).release(), ids, added);
    count += added;
  }
  return count == 0 ? Enum::RETURN_TYPE_NOTHING : Enum::RETURN_TYPE_NORMAL;
}

Enum::RETURN_TYPE DataStoreImpl::add_resource(Resource* resource, std::vector<unsigned int>& ids,
                                              unsigned int& count) {
  count = 0;
  const std::size_t known_ids = ids.size();
  if (resource != nullptr) {
    resources.push_back(std::unique_ptr<Resource>(resource));
    resource->setResourceId(static_cast<unsigned int>(resources.size() - 1));
    register_streams(*resource, ids);
    resource->do_store();
    add_stores(*resource);
  }
  for (Stream* stream : streams) {
    stream->exp_system(direct_mode_id, 1);
    stream->exp_system(retain_mode_id, static_cast<unsigned int>(streams.size()));
  }
  count = static_cast<unsigned int>(ids.size() - known_ids);
  return count == 0 ? Enum::RETURN_TYPE_NOTHING : Enum::RETURN_TYPE_NORMAL;
}

void DataStoreImpl::register_streams(Resource& resource, std::vector<unsigned int>& ids) {
  for (const auto& [serial, stream] : resource.getStreams()) {
    const auto id = static_cast<unsigned int>(streams.size());
    stream->setStreamId(id);
    streams.push_back(stream.get());
    ids.push_back(id);
    stream->set_group_tag();
    const auto next_group = static_cast<unsigned int>(groups.size());
    stream->setGroupId(groups.try_emplace(stream->getGroupTag(), next_group).first->second);
  }
}

void DataStoreImpl::add_stores(const Resource& resource) {
  for (const auto& [serial, stream] : resource.getStreams()) {
    if (stream->is_storable()) {
      retain.add(static_cast<long long>(stream->get_start()),
                 static_cast<long long>(stream->get_end()));
    } else {
      retain.add();
    }
  }
}

Enum::RETURN_TYPE DataStoreImpl::get_start(long long& t, bool earliest) const {
  t = std::numeric_limits<long long>::max();
  bool found = false;
  for (const Stream* stream : streams) {
    if (!stream->is_storable()) continue;
    const auto v = static_cast<long long>(stream->get_start());
    if (!found || (earliest ? v < t : t < v)) t = v;
    found = true;
  }
  return found ? Enum::RETURN_TYPE_NORMAL : Enum::RETURN_TYPE_NOTHING;
}

Enum::RETURN_TYPE DataStoreImpl::get_end(long long& t) const {
  t = 0;
  bool found = false;
  for (const Stream* stream : streams) {
    if (!stream->is_storable()) continue;
    const auto v = static_cast<long long>(stream->get_end());
    if (!found || v > t) t = v;
    found = true;
  }
  return found ? Enum::RETURN_TYPE_NORMAL : Enum::RETURN_TYPE_NOTHING;
}

Stream* DataStoreImpl::get_stream_in(unsigned int id) {
  return id < streams.size() ? streams[id] : nullptr;
}

const Stream* DataStoreImpl::get_stream_in(unsigned int id) const {
  return id < streams.size() ? streams[id] : nullptr;
}

Enum::RETURN_TYPE DataStoreImpl::query_stream(StreamLeaf& leaf, unsigned int id) const {
  const Stream* stream = get_stream_in(id);
  if (stream == nullptr || stream->getResourceId() >= resources.size()) {
    return Enum::RETURN_TYPE_NOTHING;
  }
  resources[stream->getResourceId()]->query_resource(leaf);
  stream->query_stream(leaf);
  return Enum::RETURN_TYPE_NORMAL;
}

Enum::RETURN_TYPE DataStoreImpl::add_element(unsigned int mode_id, unsigned int stream_id,
                                             const std::string& name) {
  if (name.empty()) return Enum::RETURN_TYPE_NOTHING;
  const IndexedName element(name);
  Mode* mode = modes.at(mode_id);
  Stream* stream = get_stream_in(stream_id);
  if (mode == nullptr || stream == nullptr) return Enum::RETURN_TYPE_NOTHING;
  const unsigned int place = mode_id == direct_mode_id ? 0 : stream_id;
  const bool added = first_kind([&]<class K>(std::type_identity<K>) {
    using T = typename K::value_type;
    if (stream->hit_element<K>(mode_id, element.name)) return true;
    const unsigned int index = mode->next_element<T>(place);
    return stream->add_element<K>(mode_id, place, index, element.name) &&
           mode->add_element<T>(place, stream->sum_element<K>(mode_id));
  });
  return added ? Enum::RETURN_TYPE_NORMAL : Enum::RETURN_TYPE_NOTHING;
}

Enum::RETURN_TYPE DataStoreImpl::use_element(Aspect& aspect, unsigned int mode_id,
                                             unsigned int stream_id,
                                             const std::string& name) const {
  const Stream* stream = get_stream_in(stream_id);
  if (name.empty() || stream == nullptr) return Enum::RETURN_TYPE_NOTHING;
  const IndexedName element(name);
  StoreLeaf leaf;
  const bool used = first_kind([&]<class K>(std::type_identity<K>) {
    using T = typename K::value_type;
    ValueText<T> fn = nullptr;
    return stream->use_element<K>(leaf, fn, mode_id, element.name) &&
           aspect.add_element<T>(leaf, fn, 0, element.index);
  });
  return used ? Enum::RETURN_TYPE_NORMAL : Enum::RETURN_TYPE_NOTHING;
}

Enum::RETURN_TYPE DataStoreImpl::direct_decode_begin(long long t) {
  for (Stream* stream : streams) stream->let_system(direct_mode_id);
  return simple_seek(streams, t, kSeekStep);
}

void DataStoreImpl::seek_stream(Stream& stream, long long target, long long step, double base,
                                double share) {
  Lib::Timer timer;
  timer.start();
  messages.push(Enum::DATA_STORE_MSG_SEEK, base * 100.0);
  if (!stream.do_init(target)) return;
  const long long first = stream.get_indexer();
  const double span = difference(target, first);
  const double scale = span == 0.0 ? share : share / span;
  // Steps that change nothing are left out: those at the stream's end, and those to times that its
  // clock has passed.
  for (long long u = first; u < target && !cancelled && stream.get_good();) {
    stream.do_seek(u);
    if (timer.seconds() > options.progress_period) {
      timer.start();
      messages.push(Enum::DATA_STORE_MSG_SEEK, (base + difference(u, first) * scale) * 100.0);
    }
    u = next_step(u, step, stream.get_indexer(), target);
  }
  if (!cancelled) stream.do_seek(target);
}

Enum::RETURN_TYPE DataStoreImpl::simple_seek(std::vector<Stream*> list, long long target,
                                             long long step) {
  if (!cancelled) messages.push(Enum::DATA_STORE_MSG_SEEK, 0.0);
  const double share = 1.0 / static_cast<double>(list.size());
  for (std::size_t i = 0; i < list.size() && !cancelled; ++i) {
    seek_stream(*list[i], target, step, static_cast<double>(i) * share, share);
  }
  if (cancelled) {
    for (Stream* stream : list) stream->do_tidy();
    return Enum::RETURN_TYPE_CANCEL;
  }
  messages.push(Enum::DATA_STORE_MSG_SEEK, 100.0);
  return Enum::RETURN_TYPE_NORMAL;
}

template <class Lock>
void DataStoreImpl::direct_decode_inner(long long t, Lock lock) {
  for (Stream* stream : streams) stream->do_decode(t);
  direct.cache().update(lock, [this](Datum& datum) {
    for (const Stream* stream : streams) stream->pop_system(direct_mode_id, 0, datum);
  });
}

template <class Lock>
Enum::RETURN_TYPE DataStoreImpl::direct_decode_step(const Aspect& aspect, long long t,
                                                    std::vector<Result>& out, Lock lock) {
  out.resize(aspect.destinations().size());
  if (aspect.stores().empty()) return Enum::RETURN_TYPE_NOTHING;
  direct_decode_inner(t, lock);
  direct.cache().fill(aspect.store(0), out, lock);
  return Enum::RETURN_TYPE_NORMAL;
}

template Enum::RETURN_TYPE DataStoreImpl::direct_decode_step(const Aspect&, long long,
                                                             std::vector<Result>&,
                                                             Lib::BlockLock_t);

Enum::RETURN_TYPE DataStoreImpl::direct_decode_end() {
  for (Stream* stream : streams) stream->do_tidy();
  return Enum::RETURN_TYPE_NORMAL;
}

template <class Work>
Enum::RETURN_TYPE DataStore::read_guarded(Work&& work) const {
  if (!Lib::ReadLock(cancel_mutex, Lib::TryLock)) return Enum::RETURN_TYPE_CANCEL;
  Lib::ReadLock lock(store_mutex, Lib::BlockLock);
  return lock ? work() : Enum::RETURN_TYPE_READ;
}

template <class Work>
Enum::RETURN_TYPE DataStore::write_guarded(Work&& work) {
  if (!Lib::ReadLock(cancel_mutex, Lib::TryLock)) return Enum::RETURN_TYPE_CANCEL;
  Lib::WriteLock lock(store_mutex, Lib::BlockLock);
  return lock ? work() : Enum::RETURN_TYPE_WRITE;
}

Enum::RETURN_TYPE DataStore::add_resource(const std::string& path, std::vector<unsigned int>& ids,
                                          unsigned int& count) {
  count = 0;
  return write_guarded([&] { return add_resources({path}, ids, count); });
}

Enum::RETURN_TYPE DataStore::get_start(long long& t) const {
  t = std::numeric_limits<long long>::max();
  return read_guarded([&] { return DataStoreImpl::get_start(t, true); });
}

Enum::RETURN_TYPE DataStore::get_end(long long& t) const {
  t = 0;
  return read_guarded([&] { return DataStoreImpl::get_end(t); });
}

Enum::RETURN_TYPE DataStore::query_stream(StreamLeaf& leaf, unsigned int stream) const {
  return read_guarded([&] { return DataStoreImpl::query_stream(leaf, stream); });
}

Enum::RETURN_TYPE DataStore::direct_add_element(unsigned int stream, const std::string& name) {
  return write_guarded([&] { return add_element(direct_mode(), stream, name); });
}

Enum::RETURN_TYPE DataStore::direct_use_element(Aspect& aspect, unsigned int stream,
                                                const std::string& name) const {
  return read_guarded([&] { return use_element(aspect, direct_mode(), stream, name); });
}

Enum::RETURN_TYPE DataStore::direct_decode_begin(long long t) {
  return write_guarded([&] { return DataStoreImpl::direct_decode_begin(t); });
}

Enum::RETURN_TYPE DataStore::direct_decode_step(const Aspect& aspect, long long t,
                                                std::vector<Result>& out) {
  return write_guarded(
      [&] { return DataStoreImpl::direct_decode_step(aspect, t, out, Lib::BlockLock); });
}

Enum::RETURN_TYPE DataStore::direct_decode_end() {
  return write_guarded([&] { return DataStoreImpl::direct_decode_end(); });
}

}  // namespace Trel::Sto
