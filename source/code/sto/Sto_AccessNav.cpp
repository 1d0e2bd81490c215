#include "sto/Sto_AccessNav.h"

#include "sto/Sto_AccessText.h"

namespace Trel::Sto {

namespace {

using Nav::Family;

const AccessNCom kSharedNCom(true);
const AccessMCom kSharedMCom(true);

// One line of a table: what a row is made of.
template <Lib::ElementType T, class Data, class Key>
struct Line {
  Family families;
  const char* name;
  const char* unit;
  const char* description;
  double resolution;
  ValueText<T> text;
  const Lib::VariableExt<T>& (Data::*value)() const;
  void (Key::*on)();
  void (Key::*off)();
};
template <Lib::ElementType T>
using MainLine = Line<T, Nav::ComData, Nav::ComKey::KeyMain>;
template <Lib::ElementType T>
using GpsLine = Line<T, Nav::ComDataGps, Nav::ComKey::KeyGps>;
template <Lib::ElementType T>
using PointLine = Line<T, Nav::ComDataMeasurePt, Nav::ComKey::KeyMeasurePt>;

template <class L>
InfoNode info(const L& line, const std::string& prefix) {
  return InfoNode(InfoProps(prefix + line.name, 1, nullptr, line.unit, line.description,
                            line.resolution, 0, 0, 0, 0));
}

// Adds a line's row, if `family` has it.
template <Lib::ElementType T, class Data, class Key>
void add_row(AccessNav& table, Family family, const Line<T, Data, Key>& line,
             const std::string& prefix, int instance) {
  using Row = AccessNav::Pointer<Lib::VariableExt<T>>;
  if (!Nav::carries(line.families, family)) return;
  table.add(Row(line.text, instance, line.value, line.on, line.off, info(line, prefix)), 0);
}

void add_main(AccessNav& table, Family family) {
#define VALUE(name, type, key, unit, resolution, text, families, description) \
  {                                                                           \
    static constexpr MainLine<type> line{families,                            \
                                         #name,                               \
                                         unit,                                \
                                         description,                         \
                                         resolution,                          \
                                         text_of<text, type>(),               \
                                         &Nav::ComData::Var##name,            \
                                         &Nav::ComKey::KeyMain::Let_##key,    \
                                         &Nav::ComKey::KeyMain::Bar_##key};   \
    add_row(table, family, line, "", 0);                                      \
  }
#include "nav/Nav_ComData.def"
}

void add_gps(AccessNav& table, Family family, const std::string& prefix, int instance) {
#define VALUE(name, type, key, unit, resolution, text, families, description) \
  {                                                                           \
    static constexpr GpsLine<type> line{families,                             \
                                        #name,                                \
                                        unit,                                 \
                                        description,                          \
                                        resolution,                           \
                                        text_of<text, type>(),                \
                                        &Nav::ComDataGps::Var##name,          \
                                        &Nav::ComKey::KeyGps::Let_##key,      \
                                        &Nav::ComKey::KeyGps::Bar_##key};     \
    add_row(table, family, line, prefix, instance);                           \
  }
#include "nav/Nav_ComDataGps.def"
}

void add_point(AccessNav& table, Family family, const std::string& prefix, int instance) {
#define VALUE(name, type, key, unit, resolution, text, families, description)     \
  {                                                                               \
    static constexpr PointLine<type> line{families,                               \
                                          #name,                                  \
                                          unit,                                   \
                                          description,                            \
                                          resolution,                             \
                                          text_of<text, type>(),                  \
                                          &Nav::ComDataMeasurePt::Var##name,      \
                                          &Nav::ComKey::KeyMeasurePt::Let_##key,  \
                                          &Nav::ComKey::KeyMeasurePt::Bar_##key}; \
    add_row(table, family, line, prefix, instance);                               \
  }
#include "nav/Nav_ComDataMeasurePt.def"
}

#define VALUE(name, type, key, unit, resolution, text, families, description) \
  +(Nav::carries(families, family) ? 1 : 0)
constexpr int main_rows(Family family) {
  return 0
#include "nav/Nav_ComData.def"
      ;
}
#define VALUE(name, type, key, unit, resolution, text, families, description) \
  +(Nav::carries(families, family) ? 1 : 0)
constexpr int gps_rows(Family family) {
  return 0
#include "nav/Nav_ComDataGps.def"
      ;
}
#define VALUE(name, type, key, unit, resolution, text, families, description) \
  +(Nav::carries(families, family) ? 1 : 0)
constexpr int point_rows(Family family) {
  return 0
#include "nav/Nav_ComDataMeasurePt.def"
      ;
}
constexpr int rows(Family family) {
  return main_rows(family) + 3 * gps_rows(family) + 8 * point_rows(family);
}
static_assert(rows(Family::NCom) == 667 && rows(Family::MCom) == 626);

}  // namespace

AccessNav::AccessNav(bool built_in, Family family) {
  if (!built_in) return;
  add_gps(*this, family, "GpsInt1_", 0);
  add_gps(*this, family, "GpsExt1_", 1);
  add_gps(*this, family, "GpsInt2_", 2);
  for (int point = 0; point < 8; ++point) {
    add_point(*this, family, "MeasPt" + std::to_string(point + 1) + '_', point);
  }
  add_main(*this, family);
}

const AccessNCom& AccessNCom::shared() {
  return kSharedNCom;
}

const AccessMCom& AccessMCom::shared() {
  return kSharedMCom;
}

}  // namespace Trel::Sto
