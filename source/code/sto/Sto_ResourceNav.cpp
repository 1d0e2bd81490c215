#include "sto/Sto_ResourceNav.h"

#include <array>

#include "library/Lib_Report.h"
#include "sto/Sto_StreamMCom.h"
#include "sto/Sto_StreamNCom.h"

namespace Trel::Sto {

namespace {

std::span<const ResourceNav::StreamKind> stream_kinds() {
  static const std::array kinds = {ResourceNav::StreamKind{".mcom", make_stream<StreamMCom>},
                                   ResourceNav::StreamKind{".ncom", make_stream<StreamNCom>}};
  return kinds;
}

}  // namespace

ResourceNav::ResourceNav(const Options& store_options, const std::string& path, Messages* progress)
    : ResourceNav(store_options, path, progress, stream_kinds()) {}

ResourceNav::ResourceNav(const Options& store_options, const std::string& path, Messages* progress,
                         std::span<const StreamKind> kinds)
    : ResourceRaw(store_options, Enum::TRANSPORT_TYPE_NAV, path, progress) {
  do_init(kinds);
  do_prescan();
  do_postscan();
}

void ResourceNav::do_init(std::span<const StreamKind> kinds) {
  push_msg(Enum::DATA_STORE_MSG_INIT, 0.0);
  init_main(kinds);
  push_msg(Enum::DATA_STORE_MSG_INIT, 100.0);
}

void ResourceNav::do_prescan() {
  push_msg(Enum::DATA_STORE_MSG_PRESCAN, 0.0);
  if (Stream* stream = find_main()) {
    LogicalNavAny all;
    scan(Enum::DATA_STORE_MSG_PRESCAN, all, [&](const LogicalNavAny& reader, unsigned long long) {
      if (stream->get_logical_nav() == nullptr) {
        stream->set_logical_nav(reader_from<LogicalNavAny>(reader));
      }
      return !stream->prescan_packet(reader.payload_data(),
                                     static_cast<unsigned int>(reader.payload_size()));
    });
    stream->prescan_tidy();
  }
  push_msg(Enum::DATA_STORE_MSG_PRESCAN, 100.0);
}

void ResourceNav::do_postscan() {
  push_msg(Enum::DATA_STORE_MSG_POSTSCAN, 0.0);
  if (Stream* stream = find_main()) {
    LogicalNavAny all;
    scan(Enum::DATA_STORE_MSG_POSTSCAN, all,
         [&](const LogicalNavAny& reader, unsigned long long place) {
           if (stream->get_logical_nav() == nullptr) return true;
           stream->get_logical_nav()->set_finish(place);
           return !stream->postscan_packet(reader.payload_data(),
                                           static_cast<unsigned int>(reader.payload_size()));
         });
    stream->postscan_tidy();
  }
  push_msg(Enum::DATA_STORE_MSG_POSTSCAN, 100.0);
}

bool ResourceNav::do_export(const std::string& path, nano_t from, nano_t to) {
  const auto serial_of = [](const LogicalNavAny&) { return kSerial; };
  return export_packets<LogicalNavAny>(path, from, to, serial_of,
                                       [](const Stream* stream) -> const LogicalNav& {
                                         TREL_ASSERT(stream->logical_nav, "sto/Sto_ResourceNav");
                                         return *stream->logical_nav;
                                       });
}

}  // namespace Trel::Sto
