#include "sto/Sto_ResourceRaw.h"

#include <filesystem>

namespace Trel::Sto {

void ResourceRaw::init_main(std::span<const StreamKind> kinds) {
  const auto kind = std::ranges::find(kinds, getExtension(), &StreamKind::extension);
  if (kind != kinds.end() && find_main() == nullptr) add_stream(kind->make, kSerial);
}

Stream* ResourceRaw::find_main() const {
  const auto found = streams.find(kSerial);
  return found == streams.end() ? nullptr : found->second.get();
}

Stream& ResourceRaw::add_stream(MakeStream make, unsigned int serial) {
  std::unique_ptr<Stream> stream = make(getTrans(), serial);
  stream->set_captured();
  stream->get_meta().initial.assign(stream->codec_identifier(), true);
  stream->get_meta().footer.assign(stream->codec_identifier(), true);
  stream->codec_configure();
  return *streams.emplace(serial, std::move(stream)).first->second;
}

bool ResourceRaw::is_own_file(const std::string& path) const {
  std::error_code missing;
  return std::filesystem::equivalent(path, getName(), missing);
}

}  // namespace Trel::Sto
