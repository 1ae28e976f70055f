// Writes a DXF drawing of many short lines for the chaining benchmark: closed polygons of
// `sides` segments each, laid out on a grid, their lines shuffled in table order and half of
// them reversed, so that chaining must search and turn segments round.
// Usage: gen-dxf OUT [LINES=100000] [SIDES=100]
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <vector>

int main(int argc, char** argv) {
  if (argc < 2) {
    std::fprintf(stderr, "usage: gen-dxf OUT [LINES] [SIDES]\n");
    return 2;
  }
  const long lines = argc > 2 ? std::atol(argv[2]) : 100000;
  const long sides = std::max(3L, argc > 3 ? std::atol(argv[3]) : 100L);
  struct Segment {
    double x1, y1, x2, y2;
  };
  std::vector<Segment> segments;
  const long shapes = (lines + sides - 1) / sides;
  const long columns = static_cast<long>(std::ceil(std::sqrt(static_cast<double>(shapes))));
  for (long s = 0; s < shapes; ++s) {
    const double cx = 10.0 * (s % columns);
    const double cy = 10.0 * (s / columns);
    for (long k = 0; k < sides && static_cast<long>(segments.size()) < lines; ++k) {
      const double a1 = 6.283185307179586 * k / sides;
      const double a2 = 6.283185307179586 * (k + 1) / sides;
      segments.push_back({cx + 4 * std::cos(a1), cy + 4 * std::sin(a1), cx + 4 * std::cos(a2),
                          cy + 4 * std::sin(a2)});
    }
  }
  std::mt19937 random(7);
  std::shuffle(segments.begin(), segments.end(), random);
  FILE* out = std::fopen(argv[1], "w");
  if (out == nullptr) return 2;
  std::fprintf(out, "  0\nSECTION\n  2\nENTITIES\n");
  for (std::size_t k = 0; k < segments.size(); ++k) {
    Segment s = segments[k];
    if (k % 2 == 1) s = {s.x2, s.y2, s.x1, s.y1};
    std::fprintf(out, "  0\nLINE\n  8\nCUT\n 10\n%.6f\n 20\n%.6f\n 11\n%.6f\n 21\n%.6f\n", s.x1,
                 s.y1, s.x2, s.y2);
  }
  std::fprintf(out, "  0\nENDSEC\n  0\nEOF\n");
  std::fclose(out);
  return 0;
}
