#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <deque>
#include <random>
#include <vector>

#include "core/RecordingHost.h"
#include "geom/GeoSort.h"
#include "geom/GeomTestSupport.h"
#include "geom/Nearest.h"
#include "geom/Primitives.h"

namespace zemtra {
namespace {

using test::Line;
using test::TableOf;

// The chaining search written out directly: restart from the first record after every join,
// take the first record in table order that passes one of the four tests.
void DirectChain(GeometryTable& table, std::int32_t first, std::int32_t last, double tolerance,
                 std::int32_t& chainCount) {
  if (first >= last) return;
  std::vector<GeoEntity> work;
  std::vector<bool> used(static_cast<std::size_t>(last + 1), false);
  for (std::int32_t start = first; start <= last; ++start) {
    if (used[start]) continue;
    std::deque<GeoEntity> chain{table[start]};
    used[start] = true;
    for (std::int32_t i = first; i <= last; ++i) {
      if (used[i]) continue;
      const GeoPoint head = chain.front().StartPoint;
      const GeoPoint tail = chain.back().EndPoint;
      const GeoEntity& c = table[i];
      bool taken = true;
      if (DistPlane(tail, c.StartPoint, 0) < tolerance) {
        chain.push_back(c);
      } else if (DistPlane(tail, c.EndPoint, 0) < tolerance) {
        chain.push_back(ReverseEntity(c));
      } else if (DistPlane(head, c.StartPoint, 0) < tolerance) {
        chain.push_front(ReverseEntity(c));
      } else if (DistPlane(head, c.EndPoint, 0) < tolerance) {
        chain.push_front(c);
      } else {
        taken = false;
      }
      if (taken) {
        used[i] = true;
        i = first - 1;
      }
    }
    for (GeoEntity& e : chain) {
      e.LineNumber = chainCount;
      work.push_back(e);
    }
    ++chainCount;
  }
  for (std::size_t k = 0; k < work.size(); ++k) table[first + std::int32_t(k)] = work[k];
}

bool SameRecords(const GeometryTable& a, const GeometryTable& b) {
  if (a.HighestIndex() != b.HighestIndex()) return false;
  for (std::int32_t i = 1; i <= a.HighestIndex(); ++i) {
    if (std::memcmp(&a[i], &b[i], sizeof(GeoEntity)) != 0) return false;
  }
  return true;
}

TEST(ReverseEntity, SwapsEndsAndArcDirectionOnly) {
  const GeoEntity arc = test::Entity(kArcCW, test::P(0, 0), test::P(1, 1));
  const GeoEntity reversed = ReverseEntity(arc);
  EXPECT_EQ(reversed.EntityType, kArcCCW);
  EXPECT_EQ(reversed.StartPoint, arc.EndPoint);
  EXPECT_EQ(ReverseEntity(reversed).EntityType, kArcCW);
  for (const int type : {kPoint, kRapid}) {
    const GeoEntity e = test::Entity(type, test::P(0, 0), test::P(1, 1));
    EXPECT_EQ(ReverseEntity(e).StartPoint, e.StartPoint) << type;
  }
}

TEST(ChainGeometry, JoinsAtTailAndHeadReversingWhereNeeded) {
  // Table order: a middle line, one meeting its tail head to head, one meeting its head tail to
  // tail, one at another height, and a stray.
  GeometryTable table = TableOf({Line(1, 0, 2, 0), Line(3, 0, 2, 0), Line(1, 0, 0, 0),
                                 Line(3, 0, 4, 0, 5), Line(9, 9, 10, 9)});
  RecordingHost host;
  GeoSort sort(host);
  sort.ChainCount = 1;
  ASSERT_TRUE(sort.ChainGeometry(table, 1, 5));
  // (0,0)->(1,0) reversed at the head, (1,0)->(2,0), (2,0)->(3,0) reversed at the tail, then the
  // line at Z 5, which joins in X and Y.
  const float expected[][2] = {{0, 1}, {1, 2}, {2, 3}, {3, 4}};
  for (int k = 0; k < 4; ++k) {
    EXPECT_EQ(table[k + 1].StartPoint.X, expected[k][0]) << k;
    EXPECT_EQ(table[k + 1].EndPoint.X, expected[k][1]) << k;
    EXPECT_EQ(table[k + 1].LineNumber, 1);
  }
  EXPECT_EQ(table[5].LineNumber, 2);
  EXPECT_EQ(sort.ChainCount, 3);
}

TEST(ChainGeometry, ToleranceIsStrictAndOneRecordIsLeftAlone) {
  GeometryTable table = TableOf({Line(0, 0, 1, 0), Line(1, 0, 2, 0)});
  RecordingHost host;
  GeoSort sort(host);
  sort.DXFMaxJoinDistance = 0;
  ASSERT_TRUE(sort.ChainGeometry(table, 1, 2));
  EXPECT_EQ(table[1].LineNumber, 0);
  EXPECT_EQ(table[2].LineNumber, 1);

  GeometryTable single = TableOf({Line(0, 0, 1, 0)});
  single[1].LineNumber = 7;
  sort.ChainCount = 0;
  ASSERT_TRUE(sort.ChainGeometry(single, 1, 1));
  EXPECT_EQ(single[1].LineNumber, 7);
  EXPECT_EQ(sort.ChainCount, 0);
}

TEST(ChainGeometry, CancelLeavesTheRangeAsItWas) {
  std::vector<GeoEntity> lines;
  for (int k = 0; k < 50; ++k) lines.push_back(Line(k, 0, k + 1, 0));
  std::shuffle(lines.begin(), lines.end(), std::mt19937(3));
  GeometryTable table = TableOf(lines);
  const GeometryTable before = table;
  RecordingHost host;
  host.abort = true;
  GeoSort sort(host);
  sort.ProgressInterval = 0;
  EXPECT_FALSE(sort.ChainGeometry(table, 1, table.HighestIndex()));
  EXPECT_GT(host.pumpCount, 0);
  EXPECT_TRUE(SameRecords(table, before));
  EXPECT_EQ(sort.ChainCount, 0);
}

// Random drawings with many coincident and nearly coincident ends, branches and loops.
std::vector<GeoEntity> RandomDrawing(std::mt19937& random, int count) {
  std::uniform_int_distribution<int> cell(0, 6);
  std::uniform_real_distribution<float> jitter(-0.004f, 0.004f);
  std::vector<GeoEntity> entities;
  for (int k = 0; k < count; ++k) {
    GeoEntity e = Line(cell(random) + jitter(random), cell(random) + jitter(random),
                       cell(random) + jitter(random), cell(random) + jitter(random));
    if (k % 5 == 0) {
      e.EntityType = (k % 10 == 0) ? kArcCW : kArcCCW;
    }
    entities.push_back(e);
  }
  return entities;
}

TEST(ChainGeometry, GivesExactlyTheChainsOfTheDirectSearch) {
  std::mt19937 random(11);
  for (const double tolerance : {0.0, 0.003, 0.005, 0.5, 2.0}) {
    for (int round = 0; round < 40; ++round) {
      const std::vector<GeoEntity> drawing = RandomDrawing(random, 2 + round * 3);
      GeometryTable expected = TableOf(drawing);
      GeometryTable actual = TableOf(drawing);
      const std::int32_t last = actual.HighestIndex();
      const std::int32_t first = round % 3 == 0 ? 1 : 2;  // also a range that is not the table
      std::int32_t chains = 4;
      DirectChain(expected, first, last, tolerance, chains);
      RecordingHost host;
      GeoSort sort(host);
      sort.ChainCount = 4;
      sort.DXFMaxJoinDistance = tolerance;
      ASSERT_TRUE(sort.ChainGeometry(actual, first, last));
      EXPECT_TRUE(SameRecords(expected, actual)) << "tolerance " << tolerance << " round " << round;
      EXPECT_EQ(sort.ChainCount, chains);
    }
  }
}

TEST(SortGeometry, NearestChainFirstThenNearestToAnyPartOfTheLast) {
  // Chain 0 far right, chain 1 at the top left, chain 2 near the start of chain 1.
  std::vector<GeoEntity> lines = {Line(50, 0, 60, 0), Line(0, 10, 5, 10), Line(5, 10, 10, 10),
                                  Line(-1, 8, -1, 5)};
  for (int k = 0; k < 4; ++k) lines[k].LineNumber = (k + 1) / 2;
  GeometryTable table = TableOf(lines);
  RecordingHost host;
  GeoSort sort(host);
  sort.SortGeometry(table, 1, 4, GeoPoint{}, false);
  EXPECT_EQ(table[1].StartPoint.X, 0);  // chain 1 keeps its order and direction
  EXPECT_EQ(table[2].StartPoint.X, 5);
  EXPECT_EQ(table[3].StartPoint.X, -1);  // near (0,10), the start of the chain before
  EXPECT_EQ(table[4].StartPoint.X, 50);
  const std::int32_t numbers[] = {0, 0, 1, 2};
  for (int k = 0; k < 4; ++k) EXPECT_EQ(table[k + 1].LineNumber, numbers[k]);

  // From a reference point the nearest chain comes first.
  sort.SortGeometry(table, 1, 4, GeoPoint{55, 1, 0, 0}, true);
  EXPECT_EQ(table[1].StartPoint.X, 50);
}

// The sort written out directly: every probe against every unused record, a later pair winning
// on a lower or equal distance.
void DirectSort(GeometryTable& table, std::int32_t first, std::int32_t last) {
  std::vector<GeoEntity> buffer(&table[first], &table[last] + 1);
  std::vector<bool> used(buffer.size(), false);
  std::int32_t number = buffer[0].LineNumber;
  for (const GeoEntity& e : buffer) number = std::min(number, e.LineNumber);
  double minX = 1e300, maxY = -1e300;
  for (const GeoEntity& e : buffer) {
    for (const GeoPoint& p : {e.StartPoint, e.EndPoint}) {
      minX = std::min<double>(minX, p.X);
      maxY = std::max<double>(maxY, p.Y);
    }
  }
  std::vector<GeoPoint> probes{GeoPoint{float(minX), float(maxY), 0, 0}};
  std::vector<GeoEntity> output;
  const auto distance = [](const GeoEntity& e, const GeoPoint& p) {
    return e.EntityType == kFeed ? DistPointToSegment(LineFromEntity(e), p)
                                 : DistPointToArc(ArcFromEntity(e), p);
  };
  while (output.size() < buffer.size()) {
    std::size_t best = 0;
    double bestDistance = 1e300;
    for (const GeoPoint& p : probes) {
      for (std::size_t k = 0; k < buffer.size(); ++k) {
        if (!used[k] && distance(buffer[k], p) <= bestDistance) {
          bestDistance = distance(buffer[k], p);
          best = k;
        }
      }
    }
    const std::int32_t chain = buffer[best].LineNumber;
    probes.clear();
    for (std::size_t k = 0; k < buffer.size(); ++k) {
      if (used[k] || buffer[k].LineNumber != chain) continue;
      used[k] = true;
      output.push_back(buffer[k]);
      output.back().LineNumber = number;
      probes.push_back(buffer[k].StartPoint);
      probes.push_back(buffer[k].EndPoint);
    }
    ++number;
  }
  for (std::size_t k = 0; k < output.size(); ++k) table[first + std::int32_t(k)] = output[k];
}

TEST(SortGeometry, GivesExactlyTheOrderOfTheDirectSearch) {
  std::mt19937 random(5);
  for (int round = 0; round < 60; ++round) {
    const std::vector<GeoEntity> drawing = RandomDrawing(random, 3 + round * 2);
    GeometryTable expected = TableOf(drawing);
    RecordingHost host;
    GeoSort chainer(host);
    chainer.DXFMaxJoinDistance = round % 2 == 0 ? 0.003 : 0.5;
    ASSERT_TRUE(chainer.ChainGeometry(expected, 1, expected.HighestIndex()));
    GeometryTable actual = expected;
    DirectSort(expected, 1, expected.HighestIndex());
    GeoSort(host).SortGeometry(actual, 1, actual.HighestIndex(), GeoPoint{}, false);
    EXPECT_TRUE(SameRecords(expected, actual)) << "round " << round;
  }
}

TEST(SortGeometry, OneChainOnlyGetsTheSmallestNumber) {
  std::vector<GeoEntity> lines = {Line(0, 0, 1, 0), Line(1, 0, 2, 0)};
  lines[0].LineNumber = lines[1].LineNumber = 5;
  GeometryTable table = TableOf(lines);
  RecordingHost host;
  GeoSort sort(host);
  sort.SortGeometry(table, 1, 2, GeoPoint{}, false);
  EXPECT_EQ(table[1].StartPoint.X, 0);
  EXPECT_EQ(table[2].StartPoint.X, 1);
  EXPECT_EQ(table[2].LineNumber, 5);
}

TEST(ReverseChain, SelectedRecordsTurnAroundInPlace) {
  GeometryTable table = TableOf({Line(0, 0, 1, 0), Line(7, 7, 8, 8), Line(1, 0, 2, 0)});
  table[1].Selected = table[3].Selected = 1;
  RecordingHost host;
  GeoSort(host).ReverseChain(table, 1, 3);
  EXPECT_EQ(table[1].StartPoint.X, 2);
  EXPECT_EQ(table[1].EndPoint.X, 1);
  EXPECT_EQ(table[3].StartPoint.X, 1);
  EXPECT_EQ(table[3].EndPoint.X, 0);
  EXPECT_EQ(table[2].StartPoint.X, 7);
  EXPECT_EQ(table[1].Selected + table[3].Selected, 0);
}

TEST(SelectChainFrom, FollowsExactEndsAtOneHeight) {
  GeometryTable table = TableOf({Line(0, 0, 1, 0), Line(1, 0, 1, 1), Line(5, 5, 0, 0),
                                 Line(1, 1, 2, 2, 3), Line(1, 1, 0, 1), Line(0, 1.0001f, 0, 2)});
  SelectChainFrom(table, 2, false);
  const int selected[] = {1, 1, 1, 0, 1, 0};
  for (int k = 0; k < 6; ++k) EXPECT_EQ(table[k + 1].Selected != 0, selected[k] != 0) << k;
}

}  // namespace
}  // namespace zemtra
