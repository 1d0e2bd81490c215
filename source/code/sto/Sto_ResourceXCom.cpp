#include "sto/Sto_ResourceXCom.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "sto/Sto_StreamCan.h"
#include "sto/Sto_StreamMCom.h"
#include "sto/Sto_StreamNCom.h"
#include "sto/Sto_StreamRCom.h"
#include "sto/Sto_StreamUCom.h"

namespace Trel::Sto {

namespace {

constexpr unsigned long long kInitReadSize = 65536;
constexpr unsigned long long kScanReadSize = 4096;
constexpr unsigned long long kEarlyPatience = 1 << 20;

// A kind of stream: how its initial page begins, and how it is made.
struct StreamKind {
  std::string tag;
  std::unique_ptr<Stream> (*make)(Enum::TRANSPORT_TYPE transport, unsigned int serial);
};

std::string tag_of(Enum::CODEC_TYPE codec) {
  return std::string("[Trel-") + Enum::GetString(codec) + "]";
}

const auto& stream_kinds() {
  static const std::array kinds = {
      StreamKind{tag_of(Enum::CODEC_TYPE_MCOM), make_stream<StreamMCom>},
      StreamKind{tag_of(Enum::CODEC_TYPE_NCOM), make_stream<StreamNCom>},
      StreamKind{tag_of(Enum::CODEC_TYPE_RCOM), make_stream<StreamRCom>},
      StreamKind{tag_of(Enum::CODEC_TYPE_UCOM), make_stream<StreamUCom>},
      StreamKind{tag_of(Enum::CODEC_TYPE_CAN), make_stream<StreamCan>},
  };
  return kinds;
}

std::unique_ptr<Stream> make(Enum::CODEC_TYPE codec, Enum::TRANSPORT_TYPE transport,
                             unsigned int serial) {
  const std::string tag = tag_of(codec);
  for (const StreamKind& kind : stream_kinds()) {
    if (kind.tag == tag) return kind.make(transport, serial);
  }
  return nullptr;
}

bool begins_with(const ogg_page& page, const std::string& tag) {
  return page.body_len >= static_cast<long>(tag.size()) &&
         std::memcmp(page.body, tag.data(), tag.size()) == 0;
}

bool is_ready(Enum::STREAM_DECODE_STATUS status) {
  switch (status) {
    case Enum::STREAM_DECODE_STATUS_INITIALISED:
    case Enum::STREAM_DECODE_STATUS_DECODING:
    case Enum::STREAM_DECODE_STATUS_SKIPPING:
    case Enum::STREAM_DECODE_STATUS_SKIPPED:
    case Enum::STREAM_DECODE_STATUS_FINISHED:
    case Enum::STREAM_DECODE_STATUS_DEAD:
      return true;
    default:
      return false;
  }
}

}  // namespace

ResourceOgg::ResourceOgg(const Options& store_options, const std::string& path, Messages* progress)
    : Resource(store_options, Enum::TRANSPORT_TYPE_OGG, path, progress) {
  do_init();
  do_prescan();
  do_postscan();
}

void ResourceOgg::do_store() {
  range_hunter_target_store_mapping();
}

bool ResourceOgg::do_export(const std::string&, nano_t, nano_t) {
  return false;
}

unsigned long long ResourceOgg::read(unsigned long long count) {
  unsigned char* buffer = sync.buffer(count);
  if (buffer == nullptr) return 0;
  const unsigned long long got = read_file(buffer, count);
  sync.wrote(got);
  return got;
}

void ResourceOgg::rewind_soft() {
  reopen_file();
  sync.reset();
}

void ResourceOgg::do_init() {
  push_msg(Enum::DATA_STORE_MSG_INIT, 0.0);
  do_gobble_init(kInitReadSize);
  while (!capture_ready_streams() && do_gobble_init(kInitReadSize)) prescan_early();
  push_msg(Enum::DATA_STORE_MSG_INIT, 100.0);
}

bool ResourceOgg::capture_ready_streams() {
  bool all_ready = true;
  for (const auto& [serial, stream] : streams) {
    const Com::XComStreamDec& decoder = stream->get_logical_xcom()->decoder();
    const bool ready = is_ready(decoder.get_status());
    if (ready && !stream->is_captured()) configure(*stream);
    all_ready = all_ready && ready;
  }
  return all_ready;
}

void ResourceOgg::configure(Stream& stream) {
  stream.set_captured();
  stream.get_meta() = stream.get_logical_xcom()->decoder().get_meta();
  stream.codec_configure();
}

// A stream waits as long as its headers are, at the least: making it anew costs what they cost.
void ResourceOgg::prescan_early() {
  const unsigned long long place = position();
  for (auto& [serial, stream] : streams) {
    if (!stream->is_captured()) continue;
    Com::XComStreamDec& decoder = stream->get_logical_xcom()->decoder();
    Early& early = early_[serial];
    if (early.patience == 0) early.patience = std::max(kEarlyPatience, place);
    if (early.restarts != decoder.get_restarts()) {
      if (early.begun) make_anew(stream);
      early = {decoder.get_restarts(), place, early.patience};
    }
    if (place - early.from < early.patience) continue;
    if (decoder.get_status() != Enum::STREAM_DECODE_STATUS_DECODING) continue;
    early.begun = true;
    if (stream->is_configured() && !early.finished) {
      early.finished = draw(*stream, &Stream::xcom_prescan_packet);
    }
    ogg_packet unwanted;
    while (decoder.packet_out(unwanted) != 0) {
    }
  }
}

void ResourceOgg::make_anew(std::unique_ptr<Stream>& stream) {
  std::unique_ptr<Stream> fresh = make(stream->getCodec(), getTrans(), stream->getSerialId());
  fresh->set_logical_xcom(stream->release_logical_xcom());
  stream = std::move(fresh);
  configure(*stream);
}

Stream* ResourceOgg::stream_of(const ogg_page& page) {
  const auto serial = static_cast<unsigned int>(ogg_page_serialno(&page));
  const auto found = streams.find(serial);
  if (found != streams.end()) return found->second.get();
  if (ogg_page_bos(&page) == 0) return nullptr;
  for (const StreamKind& kind : stream_kinds()) {
    if (!begins_with(page, kind.tag)) continue;
    auto reader = std::make_unique<LogicalXCom>(serial);
    reader->set_file(getName());
    reader->decoder().capture();
    std::unique_ptr<Stream>& stream = streams[serial];
    stream = kind.make(getTrans(), serial);
    stream->set_logical_xcom(std::move(reader));
    return stream.get();
  }
  return nullptr;
}

bool ResourceOgg::do_gobble_init(unsigned long long count) {
  if (read(count) == 0) return false;
  ogg_page page;
  while (sync.next_page(page)) {
    Stream* stream = stream_of(page);
    if (stream != nullptr) stream->get_logical_xcom()->decoder().decode_page(page);
  }
  return true;
}

bool ResourceOgg::do_gobble(Active& active, unsigned long long count) {
  if (read(count) == 0) return false;
  ogg_page page;
  while (sync.next_page(page)) {
    const auto found = active.find(static_cast<unsigned int>(ogg_page_serialno(&page)));
    if (found != active.end()) found->second->get_logical_xcom()->decoder().decode_page(page);
  }
  return true;
}

void ResourceOgg::drain(Active& active, ScanPacket scan_packet) {
  for (auto at = active.begin(); at != active.end();) {
    Stream& stream = *at->second;
    if (!stream.is_configured()) {
      active.erase(at);
      return;
    }
    Early& early = early_[at->first];
    early.reached = true;
    const bool finished = early.finished || draw(stream, scan_packet);
    at = finished ? active.erase(at) : std::next(at);
  }
}

bool ResourceOgg::draw(Stream& stream, ScanPacket scan_packet) {
  Com::XComStreamDec& decoder = stream.get_logical_xcom()->decoder();
  for (;;) {
    ogg_packet packet;
    const int result = decoder.packet_out(packet);
    if (result == 0) return false;
    if (result < 0) continue;
    if ((stream.*scan_packet)(packet.packet, static_cast<unsigned int>(packet.bytes))) return true;
  }
}

void ResourceOgg::scan(Enum::DATA_STORE_MSG msg, ScanPacket scan_packet) {
  push_msg(msg, 0.0);
  Active active;
  for (const auto& [serial, stream] : streams) active.emplace(serial, stream.get());
  unsigned long long reported = 0;
  do {
    const unsigned long long place = position();
    if (place >= reported && place - reported >= options.progress_bytes) {
      reported = place;
      push_msg(msg, place, 0, 1);
    }
    drain(active, scan_packet);
  } while (!active.empty() && do_gobble(active, kScanReadSize));
}

void ResourceOgg::do_prescan() {
  scan(Enum::DATA_STORE_MSG_PRESCAN, &Stream::xcom_prescan_packet);
  for (auto& [serial, stream] : streams) {
    if (early_[serial].begun && !early_[serial].reached) make_anew(stream);
  }
  early_.clear();
  for (const auto& [serial, stream] : streams) {
    stream->get_logical_xcom()->rewind();
    stream->prescan_tidy();
  }
  rewind_soft();
  push_msg(Enum::DATA_STORE_MSG_PRESCAN, 100.0);
}

void ResourceOgg::do_postscan() {
  scan(Enum::DATA_STORE_MSG_POSTSCAN, &Stream::xcom_postscan_packet);
  for (const auto& [serial, stream] : streams) stream->postscan_tidy();
  rewind_soft();
  push_msg(Enum::DATA_STORE_MSG_POSTSCAN, 100.0);
}

}  // namespace Trel::Sto
