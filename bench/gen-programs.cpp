// Writes synthetic part programs for the benchmarks, shaped like the output of CAM systems.
//
//   gen-programs surfacing N FILE   3-D raster surfacing: N lines, mostly modal X/Y/Z blocks
//   gen-programs profile N FILE     2-D profiles: G1 lines and G2/G3 arcs with I/J centres
//   gen-programs macroloop N FILE   a WHILE loop that executes about N blocks, SIN/COS points
//
// The output depends only on the arguments, so runs are comparable.
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

namespace {

constexpr double kPi = 3.14159265358979323846;

// Collects program text and writes it out in large pieces.
class ProgramWriter {
 public:
  explicit ProgramWriter(std::FILE* file) : file_(file) { text_.reserve(1 << 20); }
  ~ProgramWriter() { flush(); }

  // A word such as "X12.3456": up to `decimals` digits after the point, trailing zeros dropped,
  // the point kept ("X10."), as post-processors write coordinates.
  ProgramWriter& word(char letter, double value, int decimals = 4) {
    text_ += letter;
    const double scale = std::pow(10.0, decimals);
    double rounded = std::round(value * scale) / scale;
    if (rounded == 0) rounded = 0;  // no "-0."
    char digits[48];
    auto result =
        std::to_chars(digits, digits + sizeof digits, rounded, std::chars_format::fixed, decimals);
    std::string_view number(digits, static_cast<std::size_t>(result.ptr - digits));
    if (number.find('.') != std::string_view::npos) {
      while (number.back() == '0') number.remove_suffix(1);
    }
    text_ += number;
    return *this;
  }
  ProgramWriter& text(std::string_view words) {
    text_ += words;
    return *this;
  }
  ProgramWriter& blank() {
    text_ += ' ';
    return *this;
  }
  // Ends the block; returns how many lines were written so far.
  long long endLine() {
    text_ += "\r\n";
    if (text_.size() > (1 << 20)) flush();
    return ++lines_;
  }
  long long lines() const { return lines_; }

 private:
  void flush() {
    std::fwrite(text_.data(), 1, text_.size(), file_);
    text_.clear();
  }
  std::FILE* file_;
  std::string text_;
  long long lines_ = 0;
};

void WriteHeader(ProgramWriter& out, std::string_view title, int spindle) {
  out.text("%").endLine();
  out.text("O1001 (").text(title).text(")").endLine();
  out.text("(GENERATED FOR BENCHMARKS)").endLine();
  out.text("G21 G90 G17 G54").endLine();
  out.text("T1 M6").endLine();
  out.text("S").text(std::to_string(spindle)).text(" M3").endLine();
}

constexpr int kFooterLines = 4;

void WriteFooter(ProgramWriter& out) {
  out.text("G0 Z25.").endLine();
  out.text("M5").endLine();
  out.text("M30").endLine();
  out.text("%").endLine();
}

// A smooth wavy surface, in mm below the top of the stock.
double SurfaceZ(double x, double y) {
  return -3.0 + 1.5 * std::sin(x / 7.0) * std::cos(y / 11.0) + 0.3 * std::sin((x + y) / 3.1);
}

// Zig-zag raster along X; every block changes X and Z, a new row also Y. A feed word comes back
// every so often, as post-processors repeat it after slow-downs.
void WriteSurfacing(ProgramWriter& out, long long total) {
  WriteHeader(out, "SURFACING", 12000);
  constexpr int kPointsPerRow = 500;
  constexpr double kStepX = 0.1, kStepY = 0.25;
  out.text("G0 X0. Y0. Z5.").endLine();
  out.text("G1 ").word('Z', SurfaceZ(0, 0)).text(" F600.").endLine();
  long long row = 0;
  int column = 0;
  while (out.lines() < total - kFooterLines) {
    ++column;
    if (column == kPointsPerRow) {
      column = 0;
      ++row;
    }
    const bool forward = row % 2 == 0;
    const double x = (forward ? column : kPointsPerRow - 1 - column) * kStepX;
    const double y = static_cast<double>(row) * kStepY;
    if (column == 0) {
      out.word('Y', y).blank().word('Z', SurfaceZ(x, y));
    } else {
      out.word('X', x).blank().word('Z', SurfaceZ(x, y));
    }
    if (out.lines() % 97 == 0) out.text(" F1800.");
    out.endLine();
  }
  WriteFooter(out);
}

// Rounded rectangles on a grid, cut in several depths: G1 edges and G3 corners with I/J
// relative to the arc start, and now and then a full circle of two G2 halves.
void WriteProfiles(ProgramWriter& out, long long total) {
  WriteHeader(out, "PROFILES", 9000);
  constexpr double kWidth = 40, kHeight = 25, kRadius = 4, kPitch = 60;
  long long part = 0;
  auto room = [&](int lines) { return out.lines() + lines <= total - kFooterLines; };
  while (room(15)) {
    const double ox = static_cast<double>(part % 10) * kPitch;
    const double oy = static_cast<double>(part / 10 % 10) * kPitch;
    const double depth = -1.0 - static_cast<double>(part / 100 % 5) * 0.5;
    ++part;
    out.text("G0 ").word('X', ox + kRadius).blank().word('Y', oy).text(" Z2.").endLine();
    out.text("G1 ").word('Z', depth).text(" F300.").endLine();
    out.text("F1200.").endLine();
    out.text("G1 ").word('X', ox + kWidth - kRadius).endLine();
    out.text("G3 ").word('X', ox + kWidth).blank().word('Y', oy + kRadius);
    out.text(" I0. ").word('J', kRadius).endLine();
    out.text("G1 ").word('Y', oy + kHeight - kRadius).endLine();
    out.text("G3 ").word('X', ox + kWidth - kRadius).blank().word('Y', oy + kHeight).blank();
    out.word('I', -kRadius).text(" J0.").endLine();
    out.text("G1 ").word('X', ox + kRadius).endLine();
    out.text("G3 ").word('X', ox).blank().word('Y', oy + kHeight - kRadius).text(" I0. ");
    out.word('J', -kRadius).endLine();
    out.text("G1 ").word('Y', oy + kRadius).endLine();
    out.text("G3 ").word('X', ox + kRadius).blank().word('Y', oy).blank().word('I', kRadius);
    out.text(" J0.").endLine();
    if (part % 3 == 0) {  // a bore in the middle
      const double cx = ox + kWidth / 2, cy = oy + kHeight / 2, r = 3.175;
      out.text("G1 ").word('X', cx + r).blank().word('Y', cy).endLine();
      out.text("G2 ").word('X', cx - r).blank().word('Y', cy).blank().word('I', -r);
      out.text(" J0.").endLine();
      out.text("G2 ").word('X', cx + r).blank().word('Y', cy).blank().word('I', r);
      out.text(" J0.").endLine();
    }
    out.text("G0 Z2.").endLine();
  }
  while (room(1)) out.text("(END OF PROFILES)").endLine();
  WriteFooter(out);
}

// A small program whose loop body is 7 blocks, run often enough for about `total` blocks.
void WriteMacroLoop(ProgramWriter& out, long long total) {
  WriteHeader(out, "MACRO LOOP", 8000);
  constexpr int kBodyBlocks = 7;
  const long long turns = std::max(1LL, total / kBodyBlocks);
  out.text("G0 X50. Y0. Z5.").endLine();
  out.text("#1=0 (ANGLE)").endLine();
  out.text("#2=50. (RADIUS)").endLine();
  out.text("#3=0 (COUNT)").endLine();
  out.text("#4=").text(std::to_string(turns)).text(" (TURNS)").endLine();
  out.text("G1 Z-1. F800.").endLine();
  out.text("WHILE [#3 LT #4] DO1").endLine();
  out.text("#5=#2*COS[#1]").endLine();
  out.text("#6=#2*SIN[#1]").endLine();
  out.text("G1 X#5 Y#6 Z[-1-#3*0.00001]").endLine();
  out.text("#1=#1+0.5").endLine();
  out.text("#3=#3+1").endLine();
  out.text("END1").endLine();
  WriteFooter(out);
}

int Usage() {
  std::fputs(
      "Usage: gen-programs surfacing|profile|macroloop N FILE\n"
      "Writes a synthetic part program of about N lines (executed blocks for macroloop).\n",
      stderr);
  return 2;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4) return Usage();
  const std::string_view kind = argv[1];
  const std::string_view countText = argv[2];
  long long count = 0;
  const auto parsed = std::from_chars(countText.data(), countText.data() + countText.size(), count);
  if (parsed.ec != std::errc() || parsed.ptr != countText.data() + countText.size() || count < 20) {
    std::fputs("gen-programs: N must be a whole number of at least 20\n", stderr);
    return 2;
  }
  void (*generate)(ProgramWriter&, long long) = nullptr;
  if (kind == "surfacing") generate = WriteSurfacing;
  if (kind == "profile") generate = WriteProfiles;
  if (kind == "macroloop") generate = WriteMacroLoop;
  if (generate == nullptr) return Usage();

  std::FILE* file = std::fopen(argv[3], "wb");
  if (file == nullptr) {
    std::perror(argv[3]);
    return 2;
  }
  {
    ProgramWriter out(file);
    generate(out, count);
  }
  const bool written = std::ferror(file) == 0;
  if (std::fclose(file) != 0 || !written) {
    std::perror(argv[3]);
    return 1;
  }
  return 0;
}
