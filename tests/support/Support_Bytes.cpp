#include "support/Support_Bytes.h"

#include <fstream>
#include <random>
#include <sstream>
#include <stdexcept>

namespace Trel::Support {

Bytes bytes_of(std::string_view text) {
  return Bytes(text.begin(), text.end());
}

Bytes join(std::initializer_list<Bytes> parts) {
  Bytes whole;
  for (const Bytes& part : parts) whole.insert(whole.end(), part.begin(), part.end());
  return whole;
}

Bytes noise(std::size_t size, unsigned int seed) {
  std::mt19937 engine(seed);
  Bytes result(size);
  for (unsigned char& byte : result) byte = static_cast<unsigned char>(engine() >> 24);
  return result;
}

unsigned char packet_sum(const Bytes& bytes, std::size_t end) {
  unsigned int sum = 0;
  for (std::size_t at = 1; at < end; ++at) sum += bytes[at];
  return static_cast<unsigned char>(sum);
}

void write_file(const std::filesystem::path& path, const Bytes& bytes) {
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file.write(reinterpret_cast<const char*>(bytes.data()),
             static_cast<std::streamsize>(bytes.size()));
  file.close();
  if (!file) throw std::runtime_error("cannot write " + path.string());
}

Bytes read_file(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) throw std::runtime_error("cannot read " + path.string());
  std::ostringstream bytes;
  bytes << file.rdbuf();
  return bytes_of(bytes.str());
}

}  // namespace Trel::Support
