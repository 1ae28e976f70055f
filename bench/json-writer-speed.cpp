// Times JsonWriter on a plot-shaped document of N entities written to /dev/null (or FILE).
//
//   json-writer-speed N [FILE]
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <string>

#include "cli/JsonWriter.h"
#include "core/GeoTypes.h"

namespace {

// A chained path with varied coordinates, so numbers of every length are formatted; each
// entity starts where the one before ended, as in a plotted program.
zemtra::GeoEntity SampleEntity(int index, const zemtra::GeoPoint& start) {
  zemtra::GeoEntity entity;
  entity.EntityType = static_cast<std::uint8_t>(index % 4);
  const float t = static_cast<float>(index) * 0.0137f;
  entity.StartPoint = start;
  entity.EndPoint = {t + 0.1f, t * 0.5f - 3.15f, -1.0f / (1.0f + t), 0};
  entity.CenterPoint = {t * 3, 1.5f, 0, 0};
  entity.RadiusOrTurns = index % 4 >= 2 ? 4.0f + t : 0;
  entity.Plane = 17;
  entity.LineNumber = index + 7;
  entity.ColorIndex = static_cast<std::uint8_t>(index % 4);
  entity.WorkOffset = {100, 50, 0, 0};
  return entity;
}

void WriteDocument(zemtra::JsonWriter& json, int count) {
  json.beginObject();
  json.key("file").stringValue("surfacing.nc");
  json.key("messages").beginArray().endArray();
  json.key("entity_count").intValue(count);
  json.key("entities").beginArray();
  zemtra::GeoPoint position;
  for (int i = 1; i <= count; ++i) {
    const zemtra::GeoEntity entity = SampleEntity(i, position);
    position = entity.EndPoint;
    zemtra::WriteEntityJson(json, entity);
  }
  json.endArray();
  json.endObject();
  json.finish();
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2 || argc > 3) {
    std::fputs("Usage: json-writer-speed N [FILE]\n", stderr);
    return 2;
  }
  const int count = std::atoi(argv[1]);
  std::ofstream out(argc == 3 ? argv[2] : "/dev/null", std::ios::binary);
  if (count < 1 || !out) {
    std::fputs("json-writer-speed: N must be positive and FILE writable\n", stderr);
    return 2;
  }
  const auto start = std::chrono::steady_clock::now();
  const std::clock_t cpuStart = std::clock();
  {
    zemtra::JsonWriter json(out);
    WriteDocument(json, count);
  }
  const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
  const double cpuSeconds = static_cast<double>(std::clock() - cpuStart) / CLOCKS_PER_SEC;
  std::printf("%d entities in %.3f s, cpu %.3f s (%.2f M entities/s)\n", count, elapsed.count(),
              cpuSeconds, count / elapsed.count() / 1e6);
  return out ? 0 : 1;
}
