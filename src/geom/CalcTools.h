#pragma once
// The Calc menu's work on the selected entities of the geometry table: measuring, intersecting,
// blending two lines and marking centres. Results go to the status panel "msg" or a message,
// and new entities are appended to the table; the program text never changes.
#include <string>
#include <string_view>

#include "core/GeometryTable.h"

namespace zemtra {

class Host;

// Distances from the first selected entity's end to the second's start, as the lines of the
// measuring box ("\r\n" between them), numbers in `format`.
std::string MeasureText(const GeoPoint& from, const GeoPoint& to, std::string_view format);
// Shows MeasureText of the two selected entities; "Select 2 entities to measure" otherwise.
void CalcMeasure(const GeometryTable& table, Host& host, std::string_view format);
// Intersects two selected lines or arcs, reports the result in "msg" and appends each point as
// a point entity. Returns the number of points appended.
int CalcIntersect(GeometryTable& table, Host& host, std::string_view format);
// Appends the arc of `radius` tangent to two selected feed lines; "No intersection" when they
// are parallel. True when an arc was appended.
bool CalcBlendRadius(GeometryTable& table, double radius, Host& host);
// Appends a point at the middle of each selected line and the centre of each selected arc,
// clearing their selection. Returns the number of points appended.
int CalcPointAtCenter(GeometryTable& table, Host& host);

// Appends `entity` behind the last entity of a finished table.
void AppendEntity(GeometryTable& table, const GeoEntity& entity);

}  // namespace zemtra
