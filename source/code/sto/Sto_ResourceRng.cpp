#include "sto/Sto_ResourceRng.h"

#include <string>

#include "library/Lib_Report.h"
#include "sto/Sto_StreamNCom.h"
#include "sto/Sto_StreamRCom.h"

namespace Trel::Sto {

namespace {

constexpr const char* kRangeTag = "{Trel-Range}";

const ResourceRng::Kinds& system_kinds() {
  static const std::array range = {ResourceRng::StreamKind{".rcom", make_stream<StreamRCom>}};
  static const ResourceRng::Kinds kinds{range, make_stream<StreamNCom>, [](const Stream& stream) {
                                          return dynamic_cast<const StreamRCom&>(stream).sources();
                                        }};
  return kinds;
}

// Adds a number to the list of them that stands under the key, with a blank between two.
void append_index(Com::Meta& header, const std::string& key, unsigned int index) {
  const std::string list = header.get(key);
  header.set(key, (list.empty() ? list : list + " ") + std::to_string(index));
}

unsigned int payload_size(const LogicalRng& reader) {
  return static_cast<unsigned int>(reader.payload_size());
}

}  // namespace

ResourceRng::ResourceRng(const Options& store_options, const std::string& path, Messages* progress)
    : ResourceRng(store_options, path, progress, system_kinds()) {}

ResourceRng::ResourceRng(const Options& store_options, const std::string& path, Messages* progress,
                         const Kinds& kinds)
    : ResourceRaw(store_options, Enum::TRANSPORT_TYPE_RNG, path, progress) {
  do_init_rcom(kinds.range);
  do_prescan_rcom();
  do_postscan_rcom();
  do_init_ncoms(kinds);
  do_prescan_ncoms();
  do_postscan_ncoms();
}

void ResourceRng::do_store() {
  range_hunter_target_store_mapping();
}

void ResourceRng::do_init_rcom(std::span<const StreamKind> kinds) {
  push_msg(Enum::DATA_STORE_MSG_INIT, 0.0);
  init_main(kinds);
  push_msg(Enum::DATA_STORE_MSG_INIT, 100.0);
}

// Wrappers are handed on too, since the codec learns the sources from them; but the stretch of the
// stream's reader is that of the range data alone.
void ResourceRng::do_prescan_rcom() {
  push_msg(Enum::DATA_STORE_MSG_PRESCAN, 0.0);
  if (Stream* stream = find_main()) {
    LogicalRngAny all;
    scan(Enum::DATA_STORE_MSG_PRESCAN, all, [&](const LogicalRngAny& reader, unsigned long long) {
      if (reader.is_rcom() && stream->get_logical_rng() == nullptr) {
        stream->set_logical_rng(reader_from<LogicalRngRCom>(reader, kSerial));
      }
      return !stream->prescan_packet(reader.payload_data(), payload_size(reader));
    });
    stream->prescan_tidy();
  }
  push_msg(Enum::DATA_STORE_MSG_PRESCAN, 100.0);
}

void ResourceRng::do_postscan_rcom() {
  push_msg(Enum::DATA_STORE_MSG_POSTSCAN, 0.0);
  if (Stream* stream = find_main()) {
    LogicalRngAny all;
    scan(Enum::DATA_STORE_MSG_POSTSCAN, all,
         [&](const LogicalRngAny& reader, unsigned long long place) {
           if (reader.is_rcom()) {
             if (stream->get_logical_rng() == nullptr) return true;
             stream->get_logical_rng()->set_finish(place);
           }
           return !stream->postscan_packet(reader.payload_data(), payload_size(reader));
         });
    stream->postscan_tidy();
  }
  push_msg(Enum::DATA_STORE_MSG_POSTSCAN, 100.0);
}

void ResourceRng::do_init_ncoms(const Kinds& kinds) {
  push_msg(Enum::DATA_STORE_MSG_INIT2, 0.0);
  if (Stream* stream = find_main()) {
    Com::Meta* range = stream->get_meta().find_aux_header(kRangeTag);
    const RangeSources sources = kinds.sources(*stream);
    for (unsigned int slot = 0; slot < sources.wraps.size(); ++slot) {
      if (sources.wraps[slot]) connect(sources, slot, kinds.wrapped, range);
    }
  }
  push_msg(Enum::DATA_STORE_MSG_INIT2, 100.0);
}

void ResourceRng::connect(const RangeSources& sources, unsigned int slot, MakeStream make,
                          Com::Meta* range) {
  const RangeSources::Source& source = *sources.wraps[slot];
  const unsigned int serial = source.serial();
  Com::Meta* own = wrapped_header(serial, make);
  const auto assign_role = [&](const std::string& role) {
    if (own != nullptr) own->set("WhoAmI", role);
  };
  if (range == nullptr) return;
  if (sources.hunter == source.address) {
    range->set("Hunter.XCom.Serial", serial);
    assign_role("Hunter");
  }
  for (unsigned int n = 0; n < sources.targets.size(); ++n) {
    if (sources.targets[n] != source.address) continue;
    range->set("Target.Index." + std::to_string(n) + ".XCom.Serial", serial);
    append_index(*range, "Target.Indices", n);
    assign_role("Target " + std::to_string(n + 1));
  }
  range->set("Codec.NCom.Index." + std::to_string(slot) + ".XCom.Serial", serial);
  append_index(*range, "Codec.NCom.Indices", slot);
}

Com::Meta* ResourceRng::wrapped_header(unsigned int serial, MakeStream make) {
  const auto known = streams.find(serial);
  if (known != streams.end()) {
    return serial == kSerial ? nullptr : known->second->get_meta().find_aux_header(kRangeTag);
  }
  Com::Meta header(kRangeTag, true);
  header.set("Codec.RCom.XCom.Serial", kSerial);
  header.set("Range.XCom.Serial", kSerial);
  return &add_stream(make, serial).get_meta().append_aux_header(header);
}

template <class Visit>
void ResourceRng::scan_ncoms(Enum::DATA_STORE_MSG msg, Visit visit, Tidy tidy) {
  push_msg(msg, 0.0);
  const Active wrapped = ncoms();
  Active active = wrapped;
  if (!active.empty()) {
    LogicalRngNCom all(kSerial);
    scan(msg, all, [&](const LogicalRngNCom& reader, unsigned long long place) {
      const auto found = reader.valid_packet() ? active.find(reader.found()) : active.end();
      if (found == active.end()) return true;
      Stream* stream = found->second;
      TREL_ASSERT(stream, "sto/Sto_ResourceRng");
      if (visit(*stream, reader, place)) active.erase(found);
      return !active.empty();
    });
  }
  for (const auto& [serial, stream] : wrapped) (stream->*tidy)();
  push_msg(msg, 100.0);
}

void ResourceRng::do_prescan_ncoms() {
  const auto visit = [&](Stream& stream, const LogicalRngNCom& reader, unsigned long long) {
    if (stream.get_logical_rng() == nullptr) {
      stream.set_logical_rng(reader_from<LogicalRngNCom>(reader, reader.found()));
    }
    return stream.prescan_packet(reader.payload_data(), payload_size(reader));
  };
  scan_ncoms(Enum::DATA_STORE_MSG_PRESCAN2, visit, &Stream::prescan_tidy);
}

void ResourceRng::do_postscan_ncoms() {
  const auto visit = [](Stream& stream, const LogicalRngNCom& reader, unsigned long long place) {
    if (stream.get_logical_rng() == nullptr) return false;
    stream.get_logical_rng()->set_finish(place);
    return stream.postscan_packet(reader.payload_data(), payload_size(reader));
  };
  scan_ncoms(Enum::DATA_STORE_MSG_POSTSCAN2, visit, &Stream::postscan_tidy);
}

ResourceRng::Active ResourceRng::ncoms() const {
  Active found;
  for (const auto& [serial, stream] : streams) {
    if (stream->getCodec() == Enum::CODEC_TYPE_NCOM) found.emplace(serial, stream.get());
  }
  return found;
}

bool ResourceRng::do_export(const std::string& path, nano_t from, nano_t to) {
  const auto serial_of = [](const LogicalRngAny& reader) { return reader.serial(); };
  return export_packets<LogicalRngAny>(path, from, to, serial_of,
                                       [](const Stream* stream) -> const LogicalRng& {
                                         TREL_ASSERT(stream->logical_rng, "sto/Sto_ResourceRng");
                                         return *stream->logical_rng;
                                       });
}

}  // namespace Trel::Sto
