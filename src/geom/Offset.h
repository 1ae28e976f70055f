#pragma once
// Parallel copies of paths of lines and arcs: each run of consecutive selected entities is
// offset with its corners joined (trimmed inside, rounded outside), and the loops an inside
// offset makes are cut away.
#include <vector>

#include "core/GeometryTable.h"

namespace zemtra {

class Host;

// Joins the offsets of neighbouring entities. The working records hold the last join.
class PathOffsetter {
 public:
  // `distance` > 0 offsets to the left of travel.
  PathOffsetter(double distance, Host& host) : distance_(distance), host_(host) {}

  // Offsets one path into `result`. False when a corner could not be joined or an offset arc
  // could not be built ("Can't create offset arc"): `result` then holds the path as far as it
  // came.
  bool OffsetPath(const std::vector<GeoEntity>& run, std::vector<GeoEntity>& result);

  // Join of the offsets OffsetA (ending at the corner) and OffsetB (starting there) of the
  // source entities `a` and `b`; true when solved. CornerPending says whether CornerArc must go
  // between them.
  bool JoinLineLine(const GeoEntity& a, const GeoEntity& b);
  bool JoinLineArc(const GeoEntity& a, const GeoEntity& b);
  bool JoinArcLine(const GeoEntity& a, const GeoEntity& b);
  bool JoinArcArc(const GeoEntity& a, const GeoEntity& b);

  GeoEntity OffsetA, OffsetB;
  bool CornerPending = false;
  GeoEntity CornerArc;

 private:
  bool Join(const GeoEntity& a, const GeoEntity& b);
  // Joins neighbours of which at least one is an arc; a turn under `tangentDegrees` counts as
  // tangent, and the offsets then meet without a corner.
  bool JoinCurves(const GeoEntity& a, const GeoEntity& b, double tangentDegrees);
  void JoinTangent();
  void SetCornerArc(const GeoEntity& a, double turnDegrees);
  bool OffsetOne(const GeoEntity& source, GeoEntity& offset);

  double distance_;
  Host& host_;
};

// Cuts away the loops of an offset path: the first crossing of an entity with one beyond its
// neighbour removes everything between them and trims both at the crossing; repeated until
// none is left. Paths of fewer than three entities are left alone.
void RemoveLoops(std::vector<GeoEntity>& result);

// Offsets every run of consecutive selected entities by `distance` and appends the results to
// the table. Returns the number of entities appended.
int OffsetSelected(GeometryTable& table, double distance, Host& host);

}  // namespace zemtra
