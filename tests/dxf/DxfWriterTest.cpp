#include "dxf/DxfWriter.h"

#include <gtest/gtest.h>

#include "geom/GeomTestSupport.h"

namespace zemtra {
namespace {

using test::CrLfLines;
using test::Entity;
using test::P;

TEST(DxfWriter, EntityPairsOfEachKind) {
  const GeometryTable table = test::TableOf(
      {Entity(kRapid, P(0, 0, 5), P(1, 1, 5)), Entity(kFeed, P(1, 1), P(2.5f, 1, -1)),
       Entity(kArcCW, P(0, 1), P(1, 0), P(0, 0), 1), Entity(kArcCCW, P(1, 0), P(1, 0), P(0, 0), 1),
       Entity(kArcCCW, P(0, 0, 1), P(1, 0), P(0, 0), 1, 18)});
  std::uint32_t handle = 0x20;
  EXPECT_EQ(DxfEntitiesText(table, 1, table.HighestIndex(), DxfWriteOptions{}, handle),
            CrLfLines({" 0", "LINE", " 8", "DEFAULT", " 5", "20", " 10", "1.0", " 20", "1.0", " 30",
                       "0.0", " 11", "2.5", " 21", "1.0", " 31", "-1.0",
                       // the clockwise quarter from 90 to 0 degrees
                       " 0", "ARC", " 8", "DEFAULT", " 5", "21", " 10", "0.0", " 20", "0.0", " 30",
                       "0.0", " 40", "1.0", " 50", "0.0", " 51", "90.0",
                       // ends together: a circle
                       " 0", "CIRCLE", " 8", "DEFAULT", " 5", "22", " 10", "0.0", " 20", "0.0",
                       " 30", "0.0", " 40", "1.0",
                       // the ZX plane: angles turned by 90 degrees, normal +Y
                       " 0", "ARC", " 8", "DEFAULT", " 5", "23", " 10", "0.0", " 20", "0.0", " 30",
                       "0.0", " 40", "1.0", " 50", "90.0", " 51", "180.0", "210", " 0", "220", " 1",
                       "230", " 0"}));
  EXPECT_EQ(handle, 0x24u);
}

TEST(DxfWriter, LatheLinesCarryZAsDrawingX) {
  const GeometryTable table = test::TableOf({Entity(kFeed, P(1, 0, 2), P(3, 0, 4))});
  std::uint32_t handle = 1;
  DxfWriteOptions options;
  options.lathe = true;
  EXPECT_EQ(DxfEntitiesText(table, 1, 1, options, handle),
            CrLfLines({" 0", "LINE", " 8", "DEFAULT", " 5", "1", " 10", "2.0", " 20", "1.0", " 30",
                       " 0", " 11", "4.0", " 21", "3.0", " 31", " 0"}));
}

}  // namespace
}  // namespace zemtra
