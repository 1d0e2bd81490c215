// What the sources that read slow fields share; nobody else includes this header.
#pragma once

namespace Trel::Nav {

// The numbers of a field that say that there is none.
inline constexpr unsigned int kNone8 = 0xFF;
inline constexpr unsigned int kNone16 = 0xFFFF;
inline constexpr unsigned int kNone24 = 0xFFFFFF;
inline constexpr int kNoneSigned16 = -0x8000;

// `target`'s value `name` becomes `number` if that is known, otherwise invalid; `number` is only
// then computed.
#define TREL_NAV_SET_IF(known, target, name, number) \
  ((known) ? (target).Set##name(number) : (target).Inv##name())

}  // namespace Trel::Nav
