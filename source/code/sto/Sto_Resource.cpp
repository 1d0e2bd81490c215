#include "sto/Sto_Resource.h"

#include <algorithm>
#include <limits>

#include "library/Lib_System.h"

namespace Trel::Sto {

namespace {

constexpr unsigned int kNComSources = 8;
constexpr unsigned int kTargets = 4;

// Copies what one stream's range header says into its scan header, with stream ids in place of
// serial numbers.
class RangeMapping {
 public:
  RangeMapping(const Resource::StreamMap& streams, const Com::Meta& range, Com::Meta& scan)
      : streams_(streams), range_(range), scan_(scan) {}

  // The stream whose serial number stands under `serial_key`; nothing when there is none.
  void translate(const std::string& serial_key, const std::string& stream_key) {
    unsigned int serial = 0;
    if (!range_.get(serial_key, serial)) return;
    const auto found = streams_.find(serial);
    if (found != streams_.end()) scan_.set(stream_key, found->second->getStreamId());
  }

  void copy(const std::string& key) {
    std::string text;
    if (range_.get(key, text)) scan_.set("Range." + key, text);
  }

  // The numbered keys `prefix`0 to `prefix`(count - 1).
  void translate_all(const std::string& prefix, unsigned int count) {
    for (unsigned int n = 0; n < count; ++n) {
      const std::string key = prefix + std::to_string(n);
      translate(key + ".XCom.Serial", "Range." + key + ".Stream");
    }
  }

 private:
  const Resource::StreamMap& streams_;
  const Com::Meta& range_;
  Com::Meta& scan_;
};

}  // namespace

Resource::Resource(const Options& store_options, Enum::TRANSPORT_TYPE transport,
                   const std::string& path, Messages* progress)
    : options(store_options),
      trans(transport),
      file(path, std::ios::in | std::ios::binary),
      name(path),
      extension(Lib::file_extension(path, true)),
      messages(progress) {
  if (!file.good()) return;
  file.seekg(0, std::ios::end);
  const std::streamoff end = file.good() ? static_cast<std::streamoff>(file.tellg()) : 0;
  size = end > 0 ? static_cast<unsigned long long>(end) : 0;
  file.seekg(0, std::ios::beg);
}

Resource::~Resource() = default;

void Resource::setResourceId(unsigned int id) {
  resource_id = id;
  for (const auto& [serial, stream] : streams) stream->setResourceId(id);
}

void Resource::query_resource(ResourceNode& root) const {
  root.resource_id = resource_id;
  root.transport = trans;
  root.name = name;
  root.extension = extension;
}

nano_t Resource::get_start() const {
  nano_t answer = std::numeric_limits<nano_t>::max();
  for (const auto& [serial, stream] : streams) {
    if (stream->is_storable()) {
      answer = std::min(answer, static_cast<nano_t>(stream->get_start()));
    }
  }
  return answer;
}

nano_t Resource::get_end() const {
  bool first = true;
  nano_t answer = 0;
  for (const auto& [serial, stream] : streams) {
    if (!stream->is_storable()) continue;
    const auto end = static_cast<nano_t>(stream->get_end());
    answer = first ? end : std::max(answer, end);
    first = false;
  }
  return answer;
}

void Resource::range_hunter_target_store_mapping() {
  for (const auto& [serial, stream] : streams) {
    const Com::Meta* range = stream->get_meta().find_aux_header("{Trel-Range}");
    Com::Meta* scan = stream->get_meta().find_aux_header("{Trel-StreamScan}");
    if (range == nullptr || scan == nullptr) continue;
    RangeMapping mapping(streams, *range, *scan);
    if (stream->getCodec() == Enum::CODEC_TYPE_RCOM) {
      mapping.translate_all("Codec.NCom.Index.", kNComSources);
      mapping.copy("Codec.NCom.Indices");
      mapping.translate("Hunter.XCom.Serial", "Range.Hunter.Stream");
      mapping.translate_all("Target.Index.", kTargets);
      mapping.copy("Target.Indices");
    } else if (stream->getCodec() == Enum::CODEC_TYPE_NCOM) {
      mapping.translate("Codec.RCom.XCom.Serial", "Range.Codec.RCom.Stream");
      mapping.translate("Range.XCom.Serial", "Range.Range.Stream");
    }
  }
}

unsigned long long Resource::read_file(unsigned char* buffer, unsigned long long count) {
  file.read(reinterpret_cast<char*>(buffer), static_cast<std::streamsize>(count));
  const auto got = static_cast<unsigned long long>(file.gcount());
  place_ += got;
  return got;
}

void Resource::reopen_file() {
  file.close();
  file.clear();
  file.open(name, std::ios::in | std::ios::binary);
  place_ = 0;
}

void Resource::push_msg(Enum::DATA_STORE_MSG msg, double percent) {
  if (messages != nullptr) messages->push(resource_id, msg, percent);
}

void Resource::push_msg(Enum::DATA_STORE_MSG msg, unsigned long long at, unsigned int index,
                        unsigned int count) {
  if (messages == nullptr || size == 0) return;
  const double share = static_cast<double>(at) / static_cast<double>(size);
  push_msg(msg, 100.0 * (index + share) / count);
}

}  // namespace Trel::Sto
