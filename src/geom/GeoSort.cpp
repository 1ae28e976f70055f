#include "geom/GeoSort.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <deque>
#include <limits>
#include <unordered_map>
#include <vector>

#include "core/Host.h"
#include "geom/Extents.h"
#include "geom/Nearest.h"
#include "geom/Primitives.h"

namespace zemtra {

namespace {

double NowSeconds() {
  using namespace std::chrono;
  return duration<double>(steady_clock::now().time_since_epoch()).count();
}

// Joining looks at X and Y only, whatever the plane of the record.
double JoinDistance(const GeoPoint& a, const GeoPoint& b) {
  return DistPlane(a, b, 0);
}

bool Finite(const GeoPoint& p) {
  return std::isfinite(p.X) && std::isfinite(p.Y);
}

// Ends of the records of a range in square cells at least as wide as the join tolerance, so that
// every end closer than the tolerance to a point lies in the point's cell or a neighbour. Used
// records are dropped from the cells as the queries meet them.
class EndGrid {
 public:
  EndGrid(const GeometryTable& table, std::int32_t first, std::int32_t last, double tolerance,
          const std::vector<char>& used)
      : table_(table), first_(first), tolerance_(tolerance), used_(used) {
    double largest = 0;
    for (std::int32_t i = first; i <= last; ++i) {
      for (const GeoPoint* p : {&table[i].StartPoint, &table[i].EndPoint}) {
        if (Finite(*p))
          largest = std::max({largest, std::fabs(double(p->X)), std::fabs(double(p->Y))});
      }
    }
    // A little wider than the tolerance against rounding of the division, and never so narrow
    // that a cell number overflows.
    cell_ = std::max(tolerance * 1.0001, largest * 1e-12);
    cells_.reserve(static_cast<std::size_t>(last - first + 1) * 2);
    for (std::int32_t i = first; i <= last; ++i) {
      Insert(table[i].StartPoint, (i - first) * 2);
      Insert(table[i].EndPoint, (i - first) * 2 + 1);
    }
  }

  // Lowest record index whose start or end lies closer than the tolerance to `p`, or
  // `bound` when none lies below it.
  std::int32_t Lowest(const GeoPoint& p, std::int32_t bound) {
    if (!Finite(p)) return bound;
    const std::int64_t cx = CellOf(p.X);
    const std::int64_t cy = CellOf(p.Y);
    for (std::int64_t dx = -1; dx <= 1; ++dx) {
      for (std::int64_t dy = -1; dy <= 1; ++dy) {
        const auto found = cells_.find(Key{cx + dx, cy + dy});
        if (found != cells_.end()) bound = LowestInCell(found->second, p, bound);
      }
    }
    return bound;
  }

 private:
  struct Key {
    std::int64_t x, y;
    bool operator==(const Key&) const = default;
  };
  struct KeyHash {
    std::size_t operator()(const Key& k) const {
      return std::hash<std::int64_t>()(k.x * 0x9E3779B97F4A7C15LL ^ k.y);
    }
  };

  std::int64_t CellOf(double value) const {
    return static_cast<std::int64_t>(std::floor(value / cell_));
  }

  void Insert(const GeoPoint& p, std::int32_t entry) {
    if (Finite(p)) cells_[Key{CellOf(p.X), CellOf(p.Y)}].push_back(entry);
  }

  std::int32_t LowestInCell(std::vector<std::int32_t>& entries, const GeoPoint& p,
                            std::int32_t bound) {
    for (std::size_t k = 0; k < entries.size();) {
      const std::int32_t index = first_ + entries[k] / 2;
      if (used_[static_cast<std::size_t>(index - first_)]) {
        entries[k] = entries.back();
        entries.pop_back();
        continue;
      }
      if (index < bound) {
        const GeoEntity& e = table_[index];
        const GeoPoint& end = (entries[k] % 2) == 0 ? e.StartPoint : e.EndPoint;
        if (JoinDistance(p, end) < tolerance_) bound = index;
      }
      ++k;
    }
    return bound;
  }

  const GeometryTable& table_;
  std::int32_t first_;
  double tolerance_;
  const std::vector<char>& used_;
  double cell_ = 1;
  std::unordered_map<Key, std::vector<std::int32_t>, KeyHash> cells_;
};

// How a found candidate joins the chain, in the order the tests are tried.
enum class JoinKind { None, TailStart, TailEnd, HeadStart, HeadEnd };

JoinKind JoinOf(const GeoEntity& candidate, const GeoPoint& head, const GeoPoint& tail,
                double tolerance) {
  if (JoinDistance(tail, candidate.StartPoint) < tolerance) return JoinKind::TailStart;
  if (JoinDistance(tail, candidate.EndPoint) < tolerance) return JoinKind::TailEnd;
  if (JoinDistance(head, candidate.StartPoint) < tolerance) return JoinKind::HeadStart;
  if (JoinDistance(head, candidate.EndPoint) < tolerance) return JoinKind::HeadEnd;
  return JoinKind::None;
}

void AddToChain(std::deque<GeoEntity>& chain, const GeoEntity& record, JoinKind kind) {
  switch (kind) {
    case JoinKind::TailStart:
      chain.push_back(record);
      break;
    case JoinKind::TailEnd:
      chain.push_back(ReverseEntity(record));
      break;
    case JoinKind::HeadStart:
      chain.push_front(ReverseEntity(record));
      break;
    case JoinKind::HeadEnd:
      chain.push_front(record);
      break;
    case JoinKind::None:
      break;
  }
}

void ClearSelection(GeometryTable& table, std::int32_t first, std::int32_t last) {
  for (std::int32_t i = first; i <= last; ++i) table[i].Selected = 0;
}

// Distance from p to a record for the sort's nearest search.
double DistanceToRecord(const GeoEntity& e, const GeoPoint& p) {
  switch (e.EntityType) {
    case kRapid:
    case kFeed:
      return DistPointToSegment(LineFromEntity(e), p);
    case kArcCW:
    case kArcCCW:
    case kHelixCW:
    case kHelixCCW:
      return DistPointToArc(ArcFromEntity(e), p);
    default:
      return DistPlane(e.EndPoint, p, 17);
  }
}

}  // namespace

GeoEntity ReverseEntity(const GeoEntity& entity) {
  const int type = entity.EntityType;
  if (type != kFeed && type != kArcCW && type != kArcCCW) return entity;
  GeoEntity reversed = entity;
  std::swap(reversed.StartPoint, reversed.EndPoint);
  if (type == kArcCW) reversed.EntityType = kArcCCW;
  if (type == kArcCCW) reversed.EntityType = kArcCW;
  return reversed;
}

bool GeoSort::Tick(double done, double total) {
  const double now = NowSeconds();
  if (now - lastTick_ < ProgressInterval) return false;
  lastTick_ = now;
  host_.progress(total > 0 ? static_cast<int>(100 * done / total) : 0);
  host_.pumpEvents();
  return host_.abortRequested();
}

bool GeoSort::ChainGeometry(GeometryTable& table, std::int32_t first, std::int32_t last) {
  if (first >= last) return true;
  const std::size_t count = static_cast<std::size_t>(last - first + 1);
  std::vector<char> used(count, 0);
  EndGrid grid(table, first, last, DXFMaxJoinDistance, used);
  std::vector<GeoEntity> work;
  work.reserve(count);
  const std::int32_t startCount = ChainCount;
  lastTick_ = NowSeconds();
  std::int32_t next = first;  // no unused record lies below it
  while (true) {
    while (next <= last && used[static_cast<std::size_t>(next - first)]) ++next;
    if (next > last) break;
    std::deque<GeoEntity> chain{table[next]};
    used[static_cast<std::size_t>(next - first)] = 1;
    while (true) {
      const GeoPoint head = chain.front().StartPoint;
      const GeoPoint tail = chain.back().EndPoint;
      const std::int32_t found = grid.Lowest(head, grid.Lowest(tail, last + 1));
      if (found > last) break;
      AddToChain(chain, table[found], JoinOf(table[found], head, tail, DXFMaxJoinDistance));
      used[static_cast<std::size_t>(found - first)] = 1;
      if (Tick(static_cast<double>(work.size() + chain.size()), static_cast<double>(count))) {
        ChainCount = startCount;
        ClearSelection(table, first, last);
        host_.progress(-1);
        return false;
      }
    }
    for (GeoEntity& member : chain) {
      member.LineNumber = ChainCount;
      work.push_back(member);
    }
    ++ChainCount;
  }
  for (std::size_t k = 0; k < work.size(); ++k) {
    work[k].Selected = 0;
    table[first + static_cast<std::int32_t>(k)] = work[k];
  }
  host_.progress(-1);
  return true;
}

void GeoSort::ReverseChain(GeometryTable& table, std::int32_t first, std::int32_t last) {
  std::vector<std::int32_t> places;
  std::vector<GeoEntity> taken;
  for (std::int32_t i = first; i <= last; ++i) {
    if (table[i].Selected == 0) continue;
    places.push_back(i);
    taken.push_back(table[i]);
  }
  for (std::size_t k = 0; k < places.size(); ++k) {
    GeoEntity e = ReverseEntity(taken[taken.size() - 1 - k]);
    e.Selected = 0;
    table[places[k]] = e;
  }
}

namespace {

// The top-left corner (lowest X, highest Y) of the box of the unused records.
GeoPoint TopLeftOfUnused(const std::vector<GeoEntity>& buffer, const std::vector<char>& used) {
  bool any = false;
  double minX = 0, maxY = 0;
  for (std::size_t k = 0; k < buffer.size(); ++k) {
    GeoPoint low, high;
    if (used[k] || !EntityExtents(buffer[k], low, high)) continue;
    minX = any ? std::min<double>(minX, low.X) : low.X;
    maxY = any ? std::max<double>(maxY, high.Y) : high.Y;
    any = true;
  }
  GeoPoint corner;
  corner.X = static_cast<float>(minX);
  corner.Y = static_cast<float>(maxY);
  return corner;
}

// Boxes in X and Y of the buffer's records, for a quick lower bound of their distance. Records
// measured in another plane get no box and are always measured.
struct FlatBox {
  double minX = 0, minY = 0, maxX = 0, maxY = 0;
  bool valid = false;
};

FlatBox BoxOf(const GeoEntity& e) {
  FlatBox box;
  const bool otherPlane = (e.EntityType == kArcCW || e.EntityType == kArcCCW ||
                           e.EntityType == kHelixCW || e.EntityType == kHelixCCW) &&
                          NormalPlane(e.Plane) != 17;
  GeoPoint low, high;
  if (otherPlane || !EntityExtents(e, low, high)) return box;
  box = {low.X, low.Y, high.X, high.Y, true};
  return box;
}

double BoxGap(const FlatBox& a, const FlatBox& b) {
  const double dx = std::max({0.0, a.minX - b.maxX, b.minX - a.maxX});
  const double dy = std::max({0.0, a.minY - b.maxY, b.minY - a.maxY});
  return std::hypot(dx, dy);
}

// The unused record nearest to any probe. Measured probe by probe over the records, a later
// pair replaces the best on a lower or equal distance; the same winner is found record by record
// by keeping, for equal distances, the later probe and then the later record. Records whose box
// lies farther from the probes' box than the best distance cannot win and are not measured.
std::size_t NearestUnused(const std::vector<GeoEntity>& buffer, const std::vector<char>& used,
                          const std::vector<FlatBox>& boxes, const std::vector<GeoPoint>& probes) {
  FlatBox probeBox{probes[0].X, probes[0].Y, probes[0].X, probes[0].Y, true};
  for (const GeoPoint& p : probes) {
    probeBox.minX = std::min<double>(probeBox.minX, p.X);
    probeBox.minY = std::min<double>(probeBox.minY, p.Y);
    probeBox.maxX = std::max<double>(probeBox.maxX, p.X);
    probeBox.maxY = std::max<double>(probeBox.maxY, p.Y);
  }
  std::size_t best = buffer.size();
  std::size_t bestProbe = 0;
  double bestDistance = std::numeric_limits<double>::infinity();
  for (std::size_t k = 0; k < buffer.size(); ++k) {
    if (used[k]) continue;
    if (boxes[k].valid && BoxGap(boxes[k], probeBox) > bestDistance * (1 + 1e-9) + 1e-12) continue;
    for (std::size_t q = 0; q < probes.size(); ++q) {
      const double d = DistanceToRecord(buffer[k], probes[q]);
      if (d < bestDistance || (d == bestDistance && q >= bestProbe)) {
        bestDistance = d;
        bestProbe = q;
        best = k;
      }
    }
  }
  return best;
}

}  // namespace

void GeoSort::SortGeometry(GeometryTable& table, std::int32_t first, std::int32_t last,
                           const GeoPoint& refPoint, bool useRefPoint) {
  if (last <= first) return;
  std::vector<GeoEntity> buffer;
  buffer.reserve(static_cast<std::size_t>(last - first + 1));
  std::int32_t number = std::numeric_limits<std::int32_t>::max();
  for (std::int32_t i = first; i <= last; ++i) {
    buffer.push_back(table[i]);
    buffer.back().Selected = 0;
    number = std::min(number, table[i].LineNumber);
  }
  std::vector<char> used(buffer.size(), 0);
  std::vector<GeoEntity> output;
  output.reserve(buffer.size());
  std::vector<FlatBox> boxes;
  boxes.reserve(buffer.size());
  for (const GeoEntity& e : buffer) boxes.push_back(BoxOf(e));
  std::vector<GeoPoint> probes{useRefPoint ? refPoint : TopLeftOfUnused(buffer, used)};
  lastTick_ = NowSeconds();
  while (output.size() < buffer.size()) {
    std::size_t best = buffer.size() == 1 ? 0 : NearestUnused(buffer, used, boxes, probes);
    // Nothing measurable (NaN coordinates): the first unused record.
    if (best >= buffer.size()) {
      best = static_cast<std::size_t>(std::find(used.begin(), used.end(), 0) - used.begin());
    }
    const std::int32_t chain = buffer[best].LineNumber;
    probes.clear();
    for (std::size_t k = 0; k < buffer.size(); ++k) {
      if (used[k] || buffer[k].LineNumber != chain) continue;
      used[k] = 1;
      output.push_back(buffer[k]);
      output.back().LineNumber = number;
      // A member usually starts where the one before ended: that point is measured once.
      if (probes.empty() || !(probes.back() == buffer[k].StartPoint)) {
        probes.push_back(buffer[k].StartPoint);
      }
      probes.push_back(buffer[k].EndPoint);
    }
    ++number;
    Tick(static_cast<double>(output.size()), static_cast<double>(buffer.size()));
  }
  for (std::size_t k = 0; k < output.size(); ++k)
    table[first + static_cast<std::int32_t>(k)] = output[k];
  host_.progress(-1);
}

void SelectChainFrom(GeometryTable& table, std::int32_t index, bool lathe) {
  if (index < 1 || index > table.HighestIndex()) return;
  // Mill: tips meet in X and Y at a constant Z; lathe: in Z and X at a constant Y.
  const auto level = [lathe](const GeoPoint& p) { return lathe ? p.Y : p.Z; };
  const auto meets = [lathe](const GeoPoint& a, const GeoPoint& b) {
    return lathe ? (a.Z == b.Z && a.X == b.X) : (a.X == b.X && a.Y == b.Y);
  };
  GeoEntity& origin = table[index];
  if (level(origin.StartPoint) != level(origin.EndPoint)) return;
  const float z = level(origin.StartPoint);
  origin.Selected = 1;
  GeoPoint front = origin.EndPoint;
  GeoPoint back = origin.StartPoint;
  bool found = true;
  while (found) {
    found = false;
    for (std::int32_t i = 1; i <= table.HighestIndex(); ++i) {
      GeoEntity& e = table[i];
      if (e.Selected != 0 || level(e.StartPoint) != z || level(e.EndPoint) != z) continue;
      if (meets(e.StartPoint, front)) {
        e.Selected = 1;
        front = e.EndPoint;
        found = true;
      } else if (meets(e.EndPoint, back)) {
        e.Selected = 1;
        back = e.StartPoint;
        found = true;
      }
    }
  }
}

}  // namespace zemtra
