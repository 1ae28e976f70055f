#include "geom/CalcTools.h"

#include <cmath>
#include <vector>

#include "core/Host.h"
#include "core/NumberText.h"
#include "core/Version.h"
#include "geom/Corners.h"
#include "geom/Intersect.h"
#include "geom/Primitives.h"

namespace zemtra {

namespace {

constexpr int kOneHit = -1;  // two lines cross at one point

std::vector<std::int32_t> SelectedIndices(const GeometryTable& table) {
  std::vector<std::int32_t> selected;
  for (std::int32_t i = 1; i <= table.HighestIndex(); ++i) {
    if (table[i].Selected != 0) selected.push_back(i);
  }
  return selected;
}

bool IsLineOrArc(const GeoEntity& e) {
  return e.EntityType == kFeed || e.EntityType == kArcCW || e.EntityType == kArcCCW;
}

GeoEntity PointEntity(const GeoPoint& p) {
  GeoEntity e;
  e.EntityType = kPoint;
  e.StartPoint = e.EndPoint = p;
  e.Plane = 17;
  return e;
}

std::string XYText(const GeoPoint& p, std::string_view format) {
  return FormatNumberText(p.X, format) + ", " + FormatNumberText(p.Y, format);
}

// The plane of two lines from the coordinate that all four ends share.
int PlaneOfLines(const GeoEntity& a, const GeoEntity& b) {
  const auto same = [&](float GeoPoint::*axis) {
    const float v = a.StartPoint.*axis;
    return a.EndPoint.*axis == v && b.StartPoint.*axis == v && b.EndPoint.*axis == v;
  };
  if (same(&GeoPoint::Z)) return 17;
  if (same(&GeoPoint::Y)) return 18;
  if (same(&GeoPoint::X)) return 19;
  return 17;
}

}  // namespace

void AppendEntity(GeometryTable& table, const GeoEntity& entity) {
  table.GeoIndex = table.HighestIndex() + 1;
  table.Add(entity);
  table.End();
}

std::string MeasureText(const GeoPoint& from, const GeoPoint& to, std::string_view format) {
  const double dx = std::fabs(double(to.X) - from.X);
  const double dy = std::fabs(double(to.Y) - from.Y);
  const double dz = std::fabs(double(to.Z) - from.Z);
  return "X Distance:  " + FormatNumberText(dx, format) +
         "\r\nY Distance:  " + FormatNumberText(dy, format) +
         "\r\nZ Distance:  " + FormatNumberText(dz, format) + "\r\nOverall Distance:  " +
         FormatNumberText(std::sqrt(dx * dx + dy * dy + dz * dz), format);
}

void CalcMeasure(const GeometryTable& table, Host& host, std::string_view format) {
  const std::vector<std::int32_t> selected = SelectedIndices(table);
  if (selected.size() != 2) {
    host.status("msg", "Select 2 entities to measure");
    return;
  }
  host.ask(Prompt{MeasureText(table[selected[0]].EndPoint, table[selected[1]].StartPoint, format),
                  kProductName, MsgIcon::Information, MsgButtons::Ok});
}

int CalcIntersect(GeometryTable& table, Host& host, std::string_view format) {
  const std::vector<std::int32_t> selected = SelectedIndices(table);
  if (selected.size() != 2 || !IsLineOrArc(table[selected[0]]) ||
      !IsLineOrArc(table[selected[1]])) {
    host.status("msg", "Select 2 entities to intersect");
    return 0;
  }
  GeoEntity a = table[selected[0]];
  GeoEntity b = table[selected[1]];
  if (a.EntityType != kFeed && b.EntityType == kFeed) std::swap(a, b);
  GeoPoint p1, p2;
  int hit = kNoHit;
  if (a.EntityType == kFeed && b.EntityType == kFeed) {
    hit = IntersectLines(LineFromEntity(a), LineFromEntity(b), p1, 17) != 0 ? kOneHit : kNoHit;
  } else if (a.EntityType == kFeed) {
    hit = IntersectLineArc(LineFromEntity(a), ArcFromEntity(b), p1, p2);
  } else {
    hit = IntersectArcs(ArcFromEntity(a), ArcFromEntity(b), p1, p2);
  }
  if (hit == kNoHit) {
    host.status("msg", "No intersection");
    return 0;
  }
  if (hit == kTwoHits) {
    host.status("msg", "Intersects at " + XYText(p1, format) + " and " + XYText(p2, format));
    AppendEntity(table, PointEntity(p1));
    AppendEntity(table, PointEntity(p2));
    return 2;
  }
  host.status("msg", (hit == kTangentHit ? "Tangent at " : "Intersects at ") + XYText(p1, format));
  AppendEntity(table, PointEntity(p1));
  return 1;
}

bool CalcBlendRadius(GeometryTable& table, double radius, Host& host) {
  const std::vector<std::int32_t> selected = SelectedIndices(table);
  if (selected.size() != 2 || table[selected[0]].EntityType != kFeed ||
      table[selected[1]].EntityType != kFeed) {
    host.status("msg", "Select 2 lines to create blend radius");
    return false;
  }
  const GeoEntity& first = table[selected[0]];
  const GeoEntity& second = table[selected[1]];
  const int plane = PlaneOfLines(first, second);
  LineRec l1 = LineFromEntity(first);
  LineRec l2 = LineFromEntity(second);
  l1.Plane = l2.Plane = static_cast<std::uint8_t>(plane);
  ArcRec arc;
  if (!FilletLines(l1, l2, radius, plane, arc)) {
    host.status("msg", "No intersection");
    return false;
  }
  AppendEntity(table, EntityFromArc(arc));
  return true;
}

int CalcPointAtCenter(GeometryTable& table, Host& host) {
  const std::vector<std::int32_t> selected = SelectedIndices(table);
  if (selected.empty()) {
    host.status("msg", "Select at least 1 entity");
    return 0;
  }
  int added = 0;
  for (const std::int32_t index : selected) {
    table[index].Selected = 0;
    const GeoEntity e = table[index];
    GeoPoint p;
    if (IsLineCode(e.EntityType)) {
      p.X = static_cast<float>((double(e.StartPoint.X) + e.EndPoint.X) / 2);
      p.Y = static_cast<float>((double(e.StartPoint.Y) + e.EndPoint.Y) / 2);
      p.Z = static_cast<float>((double(e.StartPoint.Z) + e.EndPoint.Z) / 2);
    } else if (e.EntityType == kArcCW || e.EntityType == kArcCCW || IsHelixCode(e.EntityType)) {
      p = e.CenterPoint;
    } else {
      continue;
    }
    AppendEntity(table, PointEntity(p));
    ++added;
  }
  return added;
}

}  // namespace zemtra
