// A whole recording through the store as it comes, with most checksums broken.
#include "Fuzz_Input.h"

using namespace Trel;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Support::Bytes bytes(data, data + size);
  Fuzz::defuse_empty_headers(bytes);
  Fuzz::open_and_walk(bytes, ".xcom");
  return 0;
}
