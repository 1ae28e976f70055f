#include "cli/JsonWriter.h"

#include <array>
#include <cassert>
#include <charconv>
#include <cmath>
#include <cstring>
#include <ostream>

#include "core/GeoTypes.h"

namespace zemtra {

namespace {

constexpr std::size_t kBufferSize = 1 << 16;

constexpr std::string_view kHexDigits = "0123456789abcdef";

// Length of the well-formed UTF-8 sequence at `i`, or 0 when the bytes there are not one
// (overlong forms, surrogates and code points above U+10FFFF are not well formed).
std::size_t Utf8SequenceLength(std::string_view text, std::size_t i) {
  const auto byte = [&](std::size_t k) { return static_cast<unsigned char>(text[k]); };
  const unsigned char lead = byte(i);
  if (lead < 0x80) return 1;
  std::size_t length = 0;
  unsigned char low = 0x80, high = 0xBF;  // range of the second byte
  if (lead >= 0xC2 && lead <= 0xDF) {
    length = 2;
  } else if (lead >= 0xE0 && lead <= 0xEF) {
    length = 3;
    if (lead == 0xE0) low = 0xA0;
    if (lead == 0xED) high = 0x9F;
  } else if (lead >= 0xF0 && lead <= 0xF4) {
    length = 4;
    if (lead == 0xF0) low = 0x90;
    if (lead == 0xF4) high = 0x8F;
  } else {
    return 0;
  }
  if (i + length > text.size()) return 0;
  if (byte(i + 1) < low || byte(i + 1) > high) return 0;
  for (std::size_t k = 2; k < length; ++k) {
    if (byte(i + k) < 0x80 || byte(i + k) > 0xBF) return 0;
  }
  return length;
}

bool IsValidUtf8(std::string_view text) {
  for (std::size_t i = 0; i < text.size();) {
    const std::size_t length = Utf8SequenceLength(text, i);
    if (length == 0) return false;
    i += length;
  }
  return true;
}

bool NeedsEscape(unsigned char c) {
  return c < 0x20 || c == '"' || c == '\\';
}

// True when the text can be copied between quotes as it is: printable ASCII without quotes or
// backslashes, as nearly every key and most texts are.
bool IsPlainAscii(std::string_view text) {
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (NeedsEscape(byte) || byte >= 0x80) return false;
  }
  return true;
}

// The escape sequence of one byte; bytes from 0x80 are Latin-1 characters here.
std::string_view EscapeOf(unsigned char c, std::array<char, 6>& scratch) {
  switch (c) {
    case '"':
      return "\\\"";
    case '\\':
      return "\\\\";
    case '\n':
      return "\\n";
    case '\r':
      return "\\r";
    case '\t':
      return "\\t";
    case '\b':
      return "\\b";
    case '\f':
      return "\\f";
    default:
      scratch = {'\\', 'u', '0', '0', kHexDigits[c >> 4], kHexDigits[c & 0xF]};
      return {scratch.data(), scratch.size()};
  }
}

// Calls `sink` with the pieces of `text` escaped for a JSON string, without the quotes. Bytes
// from 0x80 are copied when the whole text is valid UTF-8, else escaped as Latin-1.
template <typename Sink>
void EscapeText(std::string_view text, Sink&& sink) {
  if (IsPlainAscii(text)) {
    sink(text);
    return;
  }
  const bool utf8 = IsValidUtf8(text);
  std::array<char, 6> scratch;
  std::size_t runStart = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto c = static_cast<unsigned char>(text[i]);
    if (!NeedsEscape(c) && (c < 0x80 || utf8)) continue;
    sink(text.substr(runStart, i - runStart));
    sink(EscapeOf(c, scratch));
    runStart = i + 1;
  }
  sink(text.substr(runStart));
}

// Writes the shortest text of a finite number into `at`, which has room for 32 characters; NaN
// and infinities become null. Returns the end of the text.
template <typename Number>
char* WriteShortest(char* at, Number value) {
  if (!std::isfinite(value)) {
    std::memcpy(at, "null", 4);
    return at + 4;
  }
  // Small whole numbers (zero, plane codes, work offsets) are the commonest values and their
  // shortest text is their digits; -0 and the rest take the general path.
  if (std::abs(value) < 10000 && value == static_cast<int>(value) && !std::signbit(value)) {
    return std::to_chars(at, at + 32, static_cast<int>(value)).ptr;
  }
  return std::to_chars(at, at + 32, value).ptr;
}

constexpr std::size_t kNumberRoom = 32;

}  // namespace

JsonWriter::JsonWriter(std::ostream& out, int breakDepth)
    : out_(out), buffer_(kBufferSize), breakDepth_(breakDepth) {}

JsonWriter::~JsonWriter() {
  flush();
}

void JsonWriter::put(std::string_view text) {
  if (buffer_.size() - used_ < text.size()) {
    flush();
    if (text.size() > buffer_.size()) {
      out_.write(text.data(), static_cast<std::streamsize>(text.size()));
      return;
    }
  }
  std::memcpy(buffer_.data() + used_, text.data(), text.size());
  used_ += text.size();
}

template <typename Number>
void JsonWriter::putNumber(Number value) {
  char* start = space(kNumberRoom);
  used_ += static_cast<std::size_t>(WriteShortest(start, value) - start);
}

void JsonWriter::newLine(std::size_t depth) {
  put('\n');
  for (std::size_t i = 0; i < depth; ++i) put("  ");
}

// Writes the separator and line break that go before a value at the current level.
void JsonWriter::beforeValue() {
  if (afterKey_) {
    afterKey_ = false;
    return;
  }
  if (levels_.empty()) return;
  Level& level = levels_.back();
  assert(!level.isObject && "a value in an object needs a key first");
  if (!level.empty) put(',');
  level.empty = false;
  if (static_cast<int>(levels_.size()) <= breakDepth_) newLine(levels_.size());
}

void JsonWriter::open(char bracket, bool isObject) {
  beforeValue();
  put(bracket);
  levels_.push_back({isObject, true});
}

void JsonWriter::close(char bracket) {
  assert(!levels_.empty() && !afterKey_);
  const bool wasEmpty = levels_.back().empty;
  levels_.pop_back();
  if (!wasEmpty && static_cast<int>(levels_.size()) < breakDepth_) newLine(levels_.size());
  put(bracket);
}

JsonWriter& JsonWriter::beginObject() {
  open('{', true);
  return *this;
}

JsonWriter& JsonWriter::endObject() {
  assert(!levels_.empty() && levels_.back().isObject);
  close('}');
  return *this;
}

JsonWriter& JsonWriter::beginArray() {
  open('[', false);
  return *this;
}

JsonWriter& JsonWriter::endArray() {
  assert(!levels_.empty() && !levels_.back().isObject);
  close(']');
  return *this;
}

JsonWriter& JsonWriter::key(std::string_view name) {
  assert(!levels_.empty() && levels_.back().isObject && !afterKey_);
  Level& level = levels_.back();
  if (!level.empty) put(',');
  level.empty = false;
  if (static_cast<int>(levels_.size()) <= breakDepth_) newLine(levels_.size());
  appendEscaped(name);
  put(':');
  afterKey_ = true;
  return *this;
}

void JsonWriter::appendEscaped(std::string_view text) {
  if (text.size() < kNumberRoom && IsPlainAscii(text)) {  // keys and short words: one copy
    char* at = space(text.size() + 2);
    *at = '"';
    std::memcpy(at + 1, text.data(), text.size());
    at[text.size() + 1] = '"';
    used_ += text.size() + 2;
    return;
  }
  put('"');
  EscapeText(text, [this](std::string_view piece) { put(piece); });
  put('"');
}

JsonWriter& JsonWriter::stringValue(std::string_view text) {
  beforeValue();
  appendEscaped(text);
  return *this;
}

JsonWriter& JsonWriter::floatValue(float value) {
  beforeValue();
  putNumber(value);
  return *this;
}

JsonWriter& JsonWriter::doubleValue(double value) {
  beforeValue();
  putNumber(value);
  return *this;
}

JsonWriter& JsonWriter::intValue(std::int64_t value) {
  beforeValue();
  char* start = space(kNumberRoom);
  used_ += static_cast<std::size_t>(std::to_chars(start, start + kNumberRoom, value).ptr - start);
  return *this;
}

JsonWriter& JsonWriter::boolValue(bool value) {
  beforeValue();
  put(value ? std::string_view("true") : std::string_view("false"));
  return *this;
}

JsonWriter& JsonWriter::nullValue() {
  beforeValue();
  put("null");
  return *this;
}

JsonWriter& JsonWriter::pointValue(const GeoPoint& point) {
  static_assert(sizeof(point) == sizeof(PointText::bits));
  beforeValue();
  for (const PointText& cached : pointCache_) {
    if (cached.length != 0 && std::memcmp(cached.bits, &point, sizeof point) == 0) {
      put(std::string_view(cached.text, cached.length));
      return *this;
    }
  }
  PointText& slot = pointCache_[nextPointSlot_];
  nextPointSlot_ = (nextPointSlot_ + 1) % kPointCacheSize;
  char* at = slot.text;
  *at++ = '[';
  at = WriteShortest(at, point.X);
  *at++ = ',';
  at = WriteShortest(at, point.Y);
  *at++ = ',';
  at = WriteShortest(at, point.Z);
  *at++ = ',';
  at = WriteShortest(at, point.A);
  *at++ = ']';
  std::memcpy(slot.bits, &point, sizeof point);
  slot.length = static_cast<unsigned char>(at - slot.text);
  put(std::string_view(slot.text, slot.length));
  return *this;
}

void JsonWriter::flush() {
  if (used_ == 0) return;
  out_.write(buffer_.data(), static_cast<std::streamsize>(used_));
  used_ = 0;
}

void JsonWriter::finish() {
  assert(levels_.empty() && !afterKey_);
  if (!finished_) put('\n');
  finished_ = true;
  flush();
  out_.flush();
}

std::string JsonQuoted(std::string_view text) {
  std::string quoted = "\"";
  EscapeText(text, [&quoted](std::string_view piece) { quoted += piece; });
  quoted += '"';
  return quoted;
}

void WriteEntityJson(JsonWriter& json, const GeoEntity& e) {
  json.beginObject();
  json.key("type").intValue(e.EntityType);
  json.key("start").pointValue(e.StartPoint);
  json.key("end").pointValue(e.EndPoint);
  json.key("center").pointValue(e.CenterPoint);
  json.key("radius_or_turns").floatValue(e.RadiusOrTurns);
  json.key("plane").intValue(e.Plane);
  json.key("line").intValue(e.LineNumber);
  json.key("color").intValue(e.ColorIndex);
  json.key("work_offset").pointValue(e.WorkOffset);
  json.endObject();
}

}  // namespace zemtra
