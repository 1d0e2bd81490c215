// Runs of bytes, as builders and tests pass them around.
#pragma once

#include <filesystem>
#include <initializer_list>
#include <string_view>
#include <vector>

namespace Trel::Support {

using Bytes = std::vector<unsigned char>;

// The characters of `text`, without a terminator.
[[nodiscard]] Bytes bytes_of(std::string_view text);

// `parts` one after the other.
[[nodiscard]] Bytes join(std::initializer_list<Bytes> parts);

// `size` bytes that look like nothing; the same for the same seed.
[[nodiscard]] Bytes noise(std::size_t size, unsigned int seed = 1);

// What a packet's sum is: of the bytes between the first and the one at `end`, modulo 256.
[[nodiscard]] unsigned char packet_sum(const Bytes& bytes, std::size_t end);

// Whole files. A file that cannot be written or read throws std::runtime_error.
void write_file(const std::filesystem::path& path, const Bytes& bytes);
[[nodiscard]] Bytes read_file(const std::filesystem::path& path);

}  // namespace Trel::Support
