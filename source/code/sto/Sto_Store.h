// The data store: the public face of the library.
//
// A client registers recordings, asks for their streams, their time span and their properties,
// selects elements by name into an Aspect, and steps through time:
//
//   DataStore store(Options(16, 1000000000, 0, 0.1, 1048576, 10));
//   store.add_resource("drive.xcom", ids, count);
//   store.get_start(start);
//   store.direct_add_element(ids[0], "Nano");
//   store.direct_use_element(aspect, ids[0], "Nano");
//   store.direct_decode_begin(start);
//   store.direct_decode_step(aspect, start, values);   // as often as wanted, t never going back
//   store.direct_decode_end();
//
// A step delivers the newest value of each element once the stream's own clock has reached t;
// nothing is interpolated. Ids are dense from 0 in order of registration; resources stay until the
// store goes. Nothing is printed: each operation returns NORMAL, NOTHING when nothing could be
// done, WRITE or READ when the store's lock was not to be had, or CANCEL. A malformed JSON header
// in a recording throws the JSON library's exception out of add_resource().
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "enum/Enum.h"
#include "library/Lib_Lock.h"
#include "sto/Sto_Aspect.h"
#include "sto/Sto_Messages.h"
#include "sto/Sto_Mode.h"
#include "sto/Sto_Options.h"
#include "sto/Sto_Taxonomy.h"

namespace Trel::Sto {

class Resource;
class Stream;

// The work, without locks.
class DataStoreImpl {
 public:
  using Mode = Sto::Mode;
  using ModeDirect = Sto::ModeDirect;
  using ModeRetain = Sto::ModeRetain;

  explicit DataStoreImpl(const Options& store_options);
  virtual ~DataStoreImpl();
  DataStoreImpl(const DataStoreImpl&) = delete;
  DataStoreImpl& operator=(const DataStoreImpl&) = delete;

  // Registers each file that exists and whose extension is known. Appends the ids of the streams
  // found to `ids` and sets `count` to their number.
  Enum::RETURN_TYPE add_resources(const std::vector<std::string>& paths,
                                  std::vector<unsigned int>& ids, unsigned int& count);
  // Takes over the resource, which may be null.
  Enum::RETURN_TYPE add_resource(Resource* resource, std::vector<unsigned int>& ids,
                                 unsigned int& count);

  // The earliest start of the storable streams, or the latest; the largest time without one.
  Enum::RETURN_TYPE get_start(long long& t, bool earliest) const;
  // The latest end of the storable streams; 0 without one.
  Enum::RETURN_TYPE get_end(long long& t) const;

  // The stream of that id, or null.
  [[nodiscard]] Stream* get_stream_in(unsigned int id);
  [[nodiscard]] const Stream* get_stream_in(unsigned int id) const;
  // Fills all records of the leaf; leaves it as it is for an unknown id.
  Enum::RETURN_TYPE query_stream(StreamLeaf& leaf, unsigned int id) const;

  [[nodiscard]] unsigned int direct_mode() const { return direct_mode_id; }
  [[nodiscard]] unsigned int retain_mode() const { return retain_mode_id; }
  // The modes, for what has been added and for the retained stores.
  [[nodiscard]] const ModeDirect& get_direct() const { return direct; }
  [[nodiscard]] const ModeRetain& get_retain() const { return retain; }
  // The progress channel, which a reader may drain.
  [[nodiscard]] Messages& get_messages() { return messages; }

  // Registers the element in a mode; an array whole, whatever index the name carries. A mode id
  // that is none of the two throws std::out_of_range.
  Enum::RETURN_TYPE add_element(unsigned int mode, unsigned int stream, const std::string& name);
  // Selects a registered element, or with "name[i]" one entry of an array, into the aspect.
  Enum::RETURN_TYPE use_element(Aspect& aspect, unsigned int mode, unsigned int stream,
                                const std::string& name) const;

  // Takes every stream to t.
  Enum::RETURN_TYPE direct_decode_begin(long long t);
  // Takes every stream on to t and copies out the selected values; `out` gets one entry for each
  // destination of the aspect.
  template <class Lock>
  Enum::RETURN_TYPE direct_decode_step(const Aspect& aspect, long long t, std::vector<Result>& out,
                                       Lock lock);
  // Closes the streams' readers.
  Enum::RETURN_TYPE direct_decode_end();

  // Takes each of the streams to `target` in steps of `step` nanoseconds, which is above 0,
  // reporting progress.
  Enum::RETURN_TYPE simple_seek(std::vector<Stream*> list, long long target, long long step);

 private:
  friend struct DataStorePeer;  // lets the tests cancel a seek

  template <class Lock>
  void direct_decode_inner(long long t, Lock lock);
  void register_streams(Resource& resource, std::vector<unsigned int>& ids);
  void add_stores(const Resource& resource);
  // Walks one stream to the target. `base` and `share` place it in the progress of the whole seek.
  void seek_stream(Stream& stream, long long target, long long step, double base, double share);

  static constexpr unsigned int direct_mode_id = 0;
  static constexpr unsigned int retain_mode_id = 1;

  Options options;
  Messages messages;
  std::vector<std::unique_ptr<Resource>> resources;
  std::vector<Stream*> streams;
  std::map<std::string, unsigned int> groups;
  std::vector<Mode*> modes;
  ModeDirect direct;
  ModeRetain retain;
  bool cancelled = false;
};

// The same under locks: every operation first passes the cancel lock and then holds the store lock
// for its length. Out-parameters get their defaults before that.
class DataStore : public DataStoreImpl {
 public:
  using DataStoreImpl::DataStoreImpl;

  // Registers one file, chosen by its extension. `count` becomes the number of streams found.
  Enum::RETURN_TYPE add_resource(const std::string& path, std::vector<unsigned int>& ids,
                                 unsigned int& count);
  // The earliest start and the latest end of the storable streams, in nanoseconds.
  Enum::RETURN_TYPE get_start(long long& t) const;
  Enum::RETURN_TYPE get_end(long long& t) const;
  Enum::RETURN_TYPE query_stream(StreamLeaf& leaf, unsigned int stream) const;

  Enum::RETURN_TYPE direct_add_element(unsigned int stream, const std::string& name);
  Enum::RETURN_TYPE direct_use_element(Aspect& aspect, unsigned int stream,
                                       const std::string& name) const;
  Enum::RETURN_TYPE direct_decode_begin(long long t);
  Enum::RETURN_TYPE direct_decode_step(const Aspect& aspect, long long t, std::vector<Result>& out);
  Enum::RETURN_TYPE direct_decode_end();

 private:
  friend struct DataStorePeer;  // lets the tests hold the locks

  template <class Work>
  Enum::RETURN_TYPE read_guarded(Work&& work) const;
  template <class Work>
  Enum::RETURN_TYPE write_guarded(Work&& work);

  // Held alone by a party that wants to stop all work.
  mutable Lib::SharedMutexStandard cancel_mutex;
  mutable Lib::SharedMutexStandard store_mutex;
  Lib::SharedMutexStandard spare_mutex_;
};

}  // namespace Trel::Sto
