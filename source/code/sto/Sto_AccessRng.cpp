#include "sto/Sto_AccessRng.h"

#include <string>

#include "sto/Sto_AccessText.h"

namespace Trel::Sto {

namespace {

const AccessRCom kSharedRCom(true);

// One line of a table: what a row of kind K is made of.
template <class K, class Data, class Key>
struct Line {
  const char* name;
  unsigned int size;
  const char* unit;
  const char* description;
  double resolution;
  ValueText<typename K::value_type> text;
  const typename K::variable_type& (Data::*value)() const;
  void (Key::*on)();
  void (Key::*off)();
};
template <class K>
using MainLine = Line<K, Rng::DataMain, Rng::ComKey::KeyMain>;
template <class K>
using TargetLine = Line<K, Rng::DataTarget, Rng::ComKey::KeyTarget>;

template <class L>
InfoNode info(const L& line, const std::string& prefix) {
  return InfoNode(InfoProps(prefix + line.name, line.size, nullptr, line.unit, line.description,
                            line.resolution, 0, 0, 0, 0));
}

template <class K, class Data, class Key>
void add_row(AccessRCom& table, const Line<K, Data, Key>& line, const std::string& prefix,
             int instance) {
  table.add(AccessRngRow<K>(line.text, instance, line.value, line.on, line.off, info(line, prefix)),
            0);
}

#define LINE(LineOf, kind, data, keys, name, type, size, key, unit, resolution, text, description) \
  static constexpr LineOf<kind<type>> line{#name,                                                  \
                                           size,                                                   \
                                           unit,                                                   \
                                           description,                                            \
                                           resolution,                                             \
                                           text_of<text, type>(),                                  \
                                           &Rng::data::Var_##name,                                 \
                                           &Rng::ComKey::keys::Let_##key,                          \
                                           &Rng::ComKey::keys::Bar_##key};

void add_main(AccessRCom& table) {
#define VALUE(name, type, key, unit, resolution, text, description)                      \
  {                                                                                      \
    LINE(MainLine, Var_t, DataMain, KeyMain, name, type, 1, key, unit, resolution, text, \
         description)                                                                    \
    add_row(table, line, "", 0);                                                         \
  }
#define ARRAY(name, type, count, key, unit, resolution, text, description)                   \
  {                                                                                          \
    LINE(MainLine, Arr_t, DataMain, KeyMain, name, type, count, key, unit, resolution, text, \
         description)                                                                        \
    add_row(table, line, "", 0);                                                             \
  }
#include "rng/Rng_ComDataMain.def"
}

void add_target(AccessRCom& table, const std::string& prefix, int instance) {
#define VALUE(name, type, key, unit, resolution, text, description)                            \
  {                                                                                            \
    LINE(TargetLine, Var_t, DataTarget, KeyTarget, name, type, 1, key, unit, resolution, text, \
         description)                                                                          \
    add_row(table, line, prefix, instance);                                                    \
  }
#define ARRAY(name, type, count, key, unit, resolution, text, description)                         \
  {                                                                                                \
    LINE(TargetLine, Arr_t, DataTarget, KeyTarget, name, type, count, key, unit, resolution, text, \
         description)                                                                              \
    add_row(table, line, prefix, instance);                                                        \
  }
#include "rng/Rng_ComDataTarget.def"
}

#undef LINE

#define VALUE(...) +1
#define ARRAY(...) +1
constexpr unsigned int kMainRows = 0
#include "rng/Rng_ComDataMain.def"
    ;
#define VALUE(...) +1
#define ARRAY(...) +1
constexpr unsigned int kTargetRows = 0
#include "rng/Rng_ComDataTarget.def"
    ;
static_assert(kMainRows + Rng::ComData::kTargets * kTargetRows == 818);

}  // namespace

AccessRCom::AccessRCom(bool built_in) {
  if (!built_in) return;
  for (unsigned int target = 0; target < Rng::ComData::kTargets; ++target) {
    add_target(*this, "Target" + std::to_string(target + 1) + '_', static_cast<int>(target));
  }
  add_main(*this);
}

const AccessRCom& AccessRCom::shared() {
  return kSharedRCom;
}

}  // namespace Trel::Sto
