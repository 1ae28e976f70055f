#pragma once
// A streaming JSON writer for zemtra-cli output: deterministic, always valid JSON, and fast enough
// for millions of entities (text is built in a buffer and handed to the stream in large pieces).
#include <cstdint>
#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

namespace zemtra {

struct GeoEntity;

struct GeoPoint;

// Layout: containers nested up to `breakDepth` deep (the outermost is depth 1) put each member
// on its own line, indented two spaces a level; deeper ones are written on one line without
// blanks. With breakDepth 0 the whole document is one line. The default puts each top-level key
// and each element of a top-level array (one entity, one message) on its own line, which keeps
// expected outputs readable in a diff.
//
// Strings: text that is valid UTF-8 is copied as is (escaping quotes, backslashes and control
// characters); text that is not valid UTF-8 is taken as Latin-1, each byte from 0x80 written as
// \u00XX. Numbers: floats and doubles as the shortest text that reads back to the same value;
// NaN and infinities, which JSON cannot hold, are written as null.
//
// Calls must form a well-formed document (a key before each member value in an object, balanced
// begin/end); a misuse is a programming error, checked by assertions in debug builds.
class JsonWriter {
 public:
  explicit JsonWriter(std::ostream& out, int breakDepth = 2);
  // Flushes what is buffered.
  ~JsonWriter();
  JsonWriter(const JsonWriter&) = delete;
  JsonWriter& operator=(const JsonWriter&) = delete;

  JsonWriter& beginObject();
  JsonWriter& endObject();
  JsonWriter& beginArray();
  JsonWriter& endArray();
  // The name of the next member of the current object.
  JsonWriter& key(std::string_view name);

  JsonWriter& stringValue(std::string_view text);
  JsonWriter& floatValue(float value);    // 32-bit: shortest text that reads back as this float
  JsonWriter& doubleValue(double value);  // 64-bit: shortest text that reads back as this double
  JsonWriter& intValue(std::int64_t value);
  JsonWriter& boolValue(bool value);
  JsonWriter& nullValue();
  // A point as the array [X, Y, Z, A] of 32-bit values.
  JsonWriter& pointValue(const GeoPoint& point);

  // Writes a newline after the finished document (if any) and hands everything to the stream.
  void finish();
  // Hands what is buffered to the stream.
  void flush();

 private:
  struct Level {
    bool isObject;
    bool empty;
  };
  void beforeValue();
  void open(char bracket, bool isObject);
  void close(char bracket);
  void newLine(std::size_t depth);
  void appendEscaped(std::string_view text);
  void put(char c) {
    if (used_ == buffer_.size()) flush();
    buffer_[used_++] = c;
  }
  void put(std::string_view text);
  // Room for `count` more bytes, flushing first when needed; count must be small.
  char* space(std::size_t count) {
    if (buffer_.size() - used_ < count) flush();
    return buffer_.data() + used_;
  }
  template <typename Number>
  void putNumber(Number value);

  // Texts of recently written points. A tool path repeats points all the time (an entity starts
  // where the one before ended; centres and work offsets recur), and a copy is far cheaper than
  // formatting four numbers again.
  struct PointText {
    unsigned char bits[16] = {};
    unsigned char length = 0;  // 0: empty slot
    char text[4 * 32 + 5];
  };
  static constexpr std::size_t kPointCacheSize = 4;

  std::ostream& out_;
  std::vector<char> buffer_;
  PointText pointCache_[kPointCacheSize];
  std::size_t nextPointSlot_ = 0;
  std::size_t used_ = 0;
  std::vector<Level> levels_;
  int breakDepth_;
  bool afterKey_ = false;
  bool finished_ = false;
};

// `text` as a JSON string literal with its quotes, by the rules of JsonWriter.
std::string JsonQuoted(std::string_view text);

// One entity of the geometry table as the plot and dxf commands print it.
void WriteEntityJson(JsonWriter& json, const GeoEntity& entity);

}  // namespace zemtra
