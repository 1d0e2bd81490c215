#include "rng/Rng_Polygon.h"

#include <algorithm>
#include <array>

#include "rng/Rng_Run.h"
#include "rng/Rng_Scale.h"

namespace Trel::Rng {

namespace {

constexpr unsigned int kLeastSize = 10;
constexpr unsigned int kPoints = 10;
constexpr unsigned int kThreeBytes = 0x80;
constexpr unsigned int kThreeValues = 0x40;
constexpr unsigned int kCountMask = 0x3F;

// What a packet brings, and where.
struct Points {
  const unsigned char* p;
  std::size_t used;
  std::size_t first;
  std::size_t count;
  unsigned int stride;  // bytes of a point
  Lib::StampExt now;
};

// What a row of numbers spans.
struct Span {
  double least;
  double most;

  void add(double number) {
    least = std::min(least, number);
    most = std::max(most, number);
  }
  [[nodiscard]] double middle() const { return (least + most) / 2.0; }
};

// The values of one vehicle's outline.
struct Outline {
  Lib::VariableExt<unsigned int>& used;
  Lib::VariableExt<double>& centre_lon;
  Lib::VariableExt<double>& centre_lat;
  Run& lon;
  Run& lat;
  // What is computed from the corners.
  std::array<Run*, 4> places;

  void reject() const {
    used.reject();
    centre_lon.reject();
    centre_lat.reject();
    Detail::empty(lon, Lib::Flags::Rejected);
    Detail::empty(lat, Lib::Flags::Rejected);
    for (Run* run : places) shorten_run(*run, 0);
  }

  template <Raw R>
  void take(const Points& points, double scale) const {
    const unsigned char* p = points.p;
    const std::size_t end = std::min(points.first + points.count, lon.size());
    for (std::size_t index = points.first; index < end; ++index, p += points.stride) {
      store(read_field<R>(p), scale, lon, index, points.now);
      store(read_field<R>(p + raw_form(R).bytes), scale, lat, index, points.now);
    }
    used.set(static_cast<unsigned int>(points.used), points.now);
    set_centre(points);
    for (Run* run : places) shorten_run(*run, points.used);
  }

  // The centre of the rectangle around the corners in use, along the vehicle's axes.
  void set_centre(const Points& points) const {
    Span along = {lon.get_data(0), lon.get_data(0)};
    Span across = {lat.get_data(0), lat.get_data(0)};
    bool known = points.used > 0;
    for (std::size_t index = 0; index < points.used; ++index) {
      known = known && lon.good(index) && lat.good(index);
      along.add(lon.get_data(index));
      across.add(lat.get_data(index));
    }
    if (!known) {
      centre_lon.invalidate();
      centre_lat.invalidate();
      return;
    }
    centre_lon.set(along.middle(), points.now);
    centre_lat.set(across.middle(), points.now);
  }
};

Outline outline_of(DataMain& main) {
  return {main.Hit_Hunter_PolygonPointsUsed(),
          main.Hit_Hunter_PolygonCentreLon(),
          main.Hit_Hunter_PolygonCentreLat(),
          main.Hit_Hunter_PolygonPointsLon(),
          main.Hit_Hunter_PolygonPointsLat(),
          {&main.Hit_Hunter_PolygonPointsPosX(), &main.Hit_Hunter_PolygonPointsPosY(),
           &main.Hit_Hunter_IsoPolygonPointsPcX(), &main.Hit_Hunter_IsoPolygonPointsPcY()}};
}

Outline outline_of(DataTarget& target) {
  return {target.Hit_PolygonPointsUsed(),
          target.Hit_PolygonCentreLon(),
          target.Hit_PolygonCentreLat(),
          target.Hit_PolygonPointsLon(),
          target.Hit_PolygonPointsLat(),
          {&target.Hit_PolygonPointsPosX(), &target.Hit_PolygonPointsPosY(),
           &target.Hit_IsoPolygonPointsPcX(), &target.Hit_IsoPolygonPointsPcY()}};
}

}  // namespace

void ExtractPolygon(const Packet& packet, const ComKey& key, ComData& data) {
  if (packet.size < kLeastSize) return;
  const unsigned int vehicle = packet.data[6];
  if (vehicle > ComData::kTargets) return;
  const unsigned int form = packet.data[9];
  const bool wide = (form & kThreeBytes) != 0;
  const unsigned int bytes = wide ? 3 : 2;
  const unsigned int values = (form & kThreeValues) != 0 ? 3 : 2;
  const unsigned int count = (form & kCountMask) + 1;
  if (packet.size < values * bytes * count + kPoints + 1) return;

  DataMain& main = data.DMain();
  const bool hunter = vehicle == 0;
  const Outline outline = hunter ? outline_of(main) : outline_of(data.DTarget(vehicle - 1));
  const bool wanted = hunter ? key.KMain().Get_Hunter_Config_Polygon()
                             : key.KTarget(vehicle - 1).Get_Config_Polygon();
  if (!wanted) return outline.reject();

  const Points points{packet.data + kPoints, packet.data[7], packet.data[8], count,
                      values * bytes,        main.Var_Nano()};
  if (wide) {
    outline.take<Raw::I24>(points, RComScales::POLYGON_POS_HIGH);
  } else {
    outline.take<Raw::I16>(points, RComScales::POLYGON_POS_LOW);
  }
}

}  // namespace Trel::Rng
