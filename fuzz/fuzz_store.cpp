// A whole recording through the store. Checksums are made good first, so that what the fuzzer
// changes reaches the readers behind the pages.
#include "Fuzz_Input.h"
#include "support/Support_Damage.h"

using namespace Trel;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Support::Bytes bytes(data, data + size);
  Support::mend_pages(bytes);
  Fuzz::defuse_empty_headers(bytes);
  Fuzz::open_and_walk(bytes, ".xcom");
  return 0;
}
