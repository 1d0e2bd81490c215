#include "Fakes.h"

#include <cstdlib>
#include <cstring>

#include "library/Lib_Cast.h"
#include "support/Support_Recording.h"

namespace Trel::Sto::Test {

Folder::Folder() {
  std::string name = (std::filesystem::temp_directory_path() / "trel_sto_XXXXXX").string();
  if (mkdtemp(name.data()) == nullptr) std::abort();
  path_ = name;
}

Folder::~Folder() {
  std::filesystem::remove_all(path_);
}

std::string Folder::write(const std::string& name, const Support::Bytes& bytes) const {
  Support::write_file(path_ / name, bytes);
  return (path_ / name).string();
}

InfoProps info(const std::string& name, unsigned int size, IndexLabel label) {
  return InfoProps(name, size, label, "", "", 0.0, 0.0, 0.0, 0.0, 0.0);
}

FakeAccess::FakeAccess(bool built_in) {
  if (!built_in) return;
  add(FakeRow<Var_t<long long>>(info("Nano")), 0);
  InfoProps builtin = info("Builtin");
  builtin.description = "The built-in one.";
  add(FakeRow<Var_t<unsigned char>>(builtin), 0);
}

const FakeAccess& FakeAccess::shared() {
  static const FakeAccess table(true);
  return table;
}

Support::Bytes fake_packet(long long nano, unsigned char number) {
  Support::Bytes bytes(9);
  std::memcpy(bytes.data(), &nano, sizeof nano);
  bytes[8] = number;
  return bytes;
}

bool FakeCodec::decode(const unsigned char* bytes, unsigned int size) {
  if (size < 9) return true;
  long long nano = 0;
  std::memcpy(&nano, bytes, sizeof nano);
  data.set_time(nano);
  data.set<unsigned char>(bytes[8], nano);
  if (on_decode) on_decode(nano);
  return true;
}

FakeStream& FakeStream::span(long long start, long long end) {
  data_start.set_time(start);
  data_end.set_time(end);
  codec.first_time = start;
  set_configured();
  set_storable();
  return *this;
}

FakeStream& FakeStream::grouping(const std::string& name) {
  Com::Meta header("{Trel-Grouping}", true);
  header.set("Grouping", name);
  meta.append_aux_header(header);
  return *this;
}

FakeStream& FakeStream::reads(const std::string& path) {
  auto reader = std::make_unique<LogicalXCom>(getSerialId());
  reader->set_file(path);
  reader->decoder().capture();
  reader->enable();
  while (reader->do_gobble(kReadSize) != 0) {
  }
  reader->disable();
  set_logical_xcom(std::move(reader));
  return *this;
}

Result FakeStream::get_start() const {
  call("get_start");
  return StreamDescribed::get_start();
}

Result FakeStream::get_end() const {
  call("get_end");
  return StreamDescribed::get_end();
}

bool FakeStream::hit_element_Var_t_float(unsigned int mode, const std::string& name) const {
  call("hit " + std::to_string(mode) + " " + name);
  return StreamDescribed::hit_element_Var_t_float(mode, name);
}

bool FakeStream::use_element_Var_t_float(StoreLeaf& leaf, ValueText<float>& fn, unsigned int mode,
                                         const std::string& name) const {
  call("use " + std::to_string(mode) + " " + name);
  return StreamDescribed::use_element_Var_t_float(leaf, fn, mode, name);
}

void FakeStream::let_system(unsigned int mode) {
  call("let " + std::to_string(mode));
}

void FakeStream::pop_system(unsigned int mode, unsigned int store, Datum& datum) const {
  call("pop " + std::to_string(mode) + " " + std::to_string(store));
  StreamDescribed::pop_system(mode, store, datum);
}

void FakeStream::exp_system(unsigned int mode, unsigned int count) {
  call("exp " + std::to_string(mode) + " " + std::to_string(count));
  StreamDescribed::exp_system(mode, count);
}

FakeStream& FakeResource::stream(unsigned int serial, Enum::TRANSPORT_TYPE transport) {
  auto made = std::make_unique<FakeStream>(serial, transport);
  FakeStream& stream = *made;
  streams[serial] = std::move(made);
  return stream;
}

Enum::RETURN_TYPE FakeStore::take(std::unique_ptr<FakeResource> resource) {
  return DataStoreImpl::add_resource(resource.release(), ids, count);
}

FakeStream& FakeStore::stream() {
  auto resource = std::make_unique<FakeResource>();
  FakeStream& stream = resource->stream(1).span(0, 10 * kSecond);
  take(std::move(resource));
  return stream;
}

Support::Bytes fake_recording(const std::vector<unsigned int>& serials,
                              const std::vector<long long>& times) {
  Support::Recording recording;
  for (const unsigned int serial : serials) recording.stream(serial).codec("UCom").headers();
  unsigned char number = 0;
  for (const long long time : times) {
    for (const unsigned int serial : serials) {
      recording.stream(serial).packet(fake_packet(time, number)).page();
    }
    ++number;
  }
  return recording.bytes();
}

std::vector<Message> drain(Lib::CyclicBuffer& ring) {
  std::vector<Message> messages;
  unsigned char record[10];
  while (ring.size() >= sizeof record) {
    ring.pull(record, sizeof record);
    messages.push_back({cast_4_byte_LE_to_uint32(record), cast_2_byte_LE_to_uint16(record + 4),
                        cast_4_byte_LE_to_real32(record + 6)});
  }
  return messages;
}

std::vector<std::string> names_of(const Aspect& aspect) {
  std::vector<std::string> names;
  for (const DestinationNode& node : aspect.destinations()) names.push_back(node.name);
  return names;
}

}  // namespace Trel::Sto::Test
