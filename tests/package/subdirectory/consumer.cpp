#include <nlohmann/json.hpp>

#include "ucom/UCom_Codec.h"

int main() {
  Trel::UCom::Codec codec(false);
  codec.configure(nlohmann::json::parse(R"({"V":1,"M":[{"ID":1,"BS":[2]}],"S":[{"ID":2}]})"),
                  false);
  return codec.get_signals_size() == 1 ? 0 : 1;
}
