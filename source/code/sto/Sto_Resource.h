// One recording file registered with the store.
//
// A resource owns its file handle, used by the passes that scan the file, and the streams that it
// found. The concrete classes do all their scanning in their constructors. A file that cannot be
// opened, or holds nothing that is known, leaves a resource without streams; nothing is reported.
#pragma once

#include <fstream>
#include <map>
#include <memory>
#include <string>

#include "sto/Sto_Messages.h"
#include "sto/Sto_Options.h"
#include "sto/Sto_Stream.h"
#include "sto/Sto_Taxonomy.h"

namespace Trel::Sto {

// Makes a stream of the concrete class S, for the tables of kinds that resources know.
template <class S>
std::unique_ptr<Stream> make_stream(Enum::TRANSPORT_TYPE transport, unsigned int serial) {
  return std::make_unique<S>(transport, serial);
}

class Resource {
 public:
  // By the page serial number, or the number that a raw resource gives. Never null.
  using StreamMap = std::map<unsigned int, std::unique_ptr<Stream>>;

  // The options and the messages must outlive the resource; without messages no progress is sent.
  Resource(const Options& store_options, Enum::TRANSPORT_TYPE transport, const std::string& path,
           Messages* progress);
  virtual ~Resource();
  Resource(const Resource&) = delete;
  Resource& operator=(const Resource&) = delete;

  // What is left to do once the streams have their ids.
  virtual void do_store() = 0;
  // Writes the packets of a span to a new file; false where that is not supported.
  virtual bool do_export(const std::string& path, nano_t from, nano_t to) = 0;

  [[nodiscard]] unsigned int getResourceId() const { return resource_id; }
  [[nodiscard]] Enum::TRANSPORT_TYPE getTrans() const { return trans; }
  [[nodiscard]] const std::string& getName() const { return name; }
  // Lower-cased, with its dot.
  [[nodiscard]] const std::string& getExtension() const { return extension; }
  [[nodiscard]] const StreamMap& getStreams() const { return streams; }
  // Of the resource and of each of its streams.
  void setResourceId(unsigned int id);
  void query_resource(ResourceNode& root) const;

  // The earliest start and the latest end of the storable streams. Without one, the largest time
  // and 0.
  [[nodiscard]] nano_t get_start() const;
  [[nodiscard]] nano_t get_end() const;

  // Translates the serial numbers by which the streams of one range measurement name each other
  // into stream ids, and notes those in the scan header of each stream.
  void range_hunter_target_store_mapping();

 protected:
  // The place of the next read; the file's size once a read has failed or met the end.
  [[nodiscard]] unsigned long long position() const { return file.good() ? place_ : size; }
  // Reads up to `count` bytes and returns how many came.
  unsigned long long read_file(unsigned char* buffer, unsigned long long count);
  // Closes the file and opens it again at its start, which clears the end of the file.
  void reopen_file();

  void push_msg(Enum::DATA_STORE_MSG msg, double percent);
  // The progress of part `index` of `count` equal parts, as a share of the whole job.
  void push_msg(Enum::DATA_STORE_MSG msg, unsigned long long position, unsigned int index,
                unsigned int count);

  const Options& options;
  StreamMap streams;

 private:
  unsigned int resource_id = 0;
  Enum::TRANSPORT_TYPE trans;
  std::ifstream file;
  std::string name;
  std::string extension;
  unsigned long long size = 0;
  unsigned long long place_ = 0;
  Messages* messages;
};

}  // namespace Trel::Sto
