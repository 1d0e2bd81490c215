#include "sto/Sto_Taxonomy.h"

#include <cmath>

namespace Trel::Sto {

namespace {

int decimals_of(double resolution) {
  if (!(resolution > 0.0)) return -1;
  if (resolution < 1e-20) return 20;
  if (resolution < 1.0) return static_cast<int>(std::ceil(-std::log10(resolution)));
  return 0;
}

}  // namespace

const std::string& Text::str() const {
  static const std::string kEmpty;
  return text_ ? *text_ : kEmpty;
}

InfoProps::InfoProps() = default;
InfoProps::InfoProps(const InfoProps& other) = default;
InfoProps::InfoProps(InfoProps&& other) noexcept = default;
InfoProps& InfoProps::operator=(const InfoProps& other) = default;
InfoProps& InfoProps::operator=(InfoProps&& other) noexcept = default;
InfoProps::~InfoProps() = default;

InfoProps::InfoProps(std::string name_in, unsigned int size_in, IndexLabel label_in, Text unit_in,
                     Text description_in, double resolution_in, double d1, double d2, double d3,
                     double d4)
    : name(std::move(name_in)),
      size(size_in),
      unit(std::move(unit_in)),
      description(std::move(description_in)),
      label(label_in),
      resolution(std::fabs(resolution_in)),
      decimals(decimals_of(resolution)),
      limits{d1, d2, d3, d4} {}

}  // namespace Trel::Sto
