#include "editor/RenumberProgram.h"

#include <algorithm>
#include <charconv>
#include <unordered_map>
#include <vector>

#include "core/NumberText.h"
#include "editor/LineFilters.h"
#include "interp/BlockReader.h"

namespace zemtra {
namespace {

constexpr int kProgressLines = 50;

char Upper(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c;
}

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

// The lines of a text without their line ends.
std::vector<std::string_view> SplitLines(std::string_view text) {
  std::vector<std::string_view> lines;
  lines.reserve(static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n')) + 1);
  std::size_t start = 0;
  while (start < text.size()) {
    std::size_t end = text.find('\n', start);
    const std::size_t next = end == std::string_view::npos ? text.size() : end + 1;
    if (end == std::string_view::npos) end = text.size();
    std::string_view line = text.substr(start, end - start);
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    lines.push_back(line);
    start = next;
  }
  return lines;
}

// Index range [begin, end) of the value of the first `letter` word outside "( )" comments.
bool FindAddressValue(std::string_view line, char letter, std::size_t& begin, std::size_t& end) {
  int depth = 0;
  for (std::size_t i = 0; i < line.size(); ++i) {
    const char c = line[i];
    if (c == '(') ++depth;
    if (c == ')' && depth > 0) --depth;
    if (depth > 0 || Upper(c) != letter) continue;
    begin = i + 1;
    end = begin;
    while (end < line.size() &&
           (IsDigit(line[end]) || line[end] == '.' || line[end] == '-' || line[end] == '+')) {
      ++end;
    }
    return true;
  }
  return false;
}

// A block number as the list keeps it: whole numbers only.
bool PlainNumber(std::string_view text, std::int64_t& number) {
  if (text.empty() || !std::all_of(text.begin(), text.end(), IsDigit)) return false;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
  return result.ec == std::errc() && result.ptr == text.data() + text.size();
}

// Words of a cleaned block: the first plain value of each letter, and the M and G codes.
struct BlockWords {
  std::array<std::string_view, 27> first{};
  std::vector<double> mCodes, gCodes;
  bool Has(char letter) const { return !first[static_cast<std::size_t>(letter - 64)].empty(); }
  std::string_view Get(char letter) const { return first[static_cast<std::size_t>(letter - 64)]; }
  bool HasM(double code) const {
    return std::find(mCodes.begin(), mCodes.end(), code) != mCodes.end();
  }
  bool HasG(double code) const {
    return std::find(gCodes.begin(), gCodes.end(), code) != gCodes.end();
  }
};

void ReadWords(std::string_view clean, BlockWords& words) {
  words.first.fill({});
  words.mCodes.clear();
  words.gCodes.clear();
  for (std::size_t i = 0; i < clean.size(); ++i) {
    const char c = clean[i];
    if (c < 'A' || c > 'Z') continue;
    std::size_t end = i + 1;
    while (end < clean.size() && (IsDigit(clean[end]) || clean[end] == '.' || clean[end] == '-'))
      ++end;
    const std::string_view value = clean.substr(i + 1, end - i - 1);
    if (value.empty()) continue;
    auto& first = words.first[static_cast<std::size_t>(c - 64)];
    if (first.empty()) first = value;
    if (c == 'M') words.mCodes.push_back(NumericTextValue(value));
    if (c == 'G') words.gCodes.push_back(NumericTextValue(value));
    i = end - 1;
  }
}

// The leading block number of a raw line: behind blanks and a "/", "N" and its digits.
bool LeadingNumber(std::string_view line, std::int64_t& number) {
  std::size_t at = line.find_first_not_of(" \t");
  if (at != std::string_view::npos && line[at] == '/') at = line.find_first_not_of(" \t", at + 1);
  if (at == std::string_view::npos || Upper(line[at]) != 'N') return false;
  std::size_t end = at + 1;
  while (end < line.size() && IsDigit(line[end])) ++end;
  return PlainNumber(line.substr(at + 1, end - at - 1), number);
}

class Renumbering {
 public:
  Renumbering(const RenumberOptions& options, const MachineConfig& config, Host& host)
      : options_(options), config_(config), host_(host) {}

  FilterResult Run(std::string_view text) {
    FilterResult result;
    lines_ = SplitLines(text);
    lineEnd_ = text.find("\r\n") != std::string_view::npos ? "\r\n" : "\n";
    if (!FindReferences() || !NumberBlocks() || !RewriteReferences(result.text)) {
      result.cancelled = true;
      result.text.clear();
    }
    host_.progress(-1);
    return result;
  }

 private:
  struct Reference {
    std::int64_t newNumber = -1;
  };
  using Key = std::pair<int, std::int64_t>;
  struct KeyHash {
    std::size_t operator()(const Key& key) const {
      // Mixed in unsigned arithmetic, where a block number of any size wraps instead of
      // overflowing.
      const auto number = static_cast<std::uint64_t>(key.second);
      return std::hash<std::uint64_t>()(number * 131U + static_cast<std::uint64_t>(key.first));
    }
  };

  // Progress over the three passes; false when the user stopped the run.
  bool Checkpoint(int pass, std::size_t index) {
    if ((index + 1) % kProgressLines != 0) return true;
    const std::size_t total = std::max<std::size_t>(lines_.size(), 1);
    host_.progress(static_cast<int>((pass * 100 + index * 100 / total) / 3));
    host_.pumpEvents();
    return !host_.abortRequested();
  }

  // Cleans a line; true when it starts a new program ("O" or ":"), which moves the counter.
  bool Clean(std::string_view line) {
    std::int32_t number = 0;
    CleanBlock(line, false, clean_, number);
    return !clean_.empty() && (clean_.front() == 'O' || clean_.front() == ':');
  }

  bool IsPercentLine(std::string_view line) const {
    const std::size_t at = line.find_first_not_of(" \t");
    return at != std::string_view::npos && line[at] == '%';
  }

  // The letters of this block that hold references, in the order they are searched.
  std::string ReferenceLetters(const BlockWords& words) const {
    std::string letters;
    if (words.HasM(99) || words.HasM(97)) letters += 'P';
    if (words.HasM(98)) {
      if (config_.M98Format == 3 && letters.find('P') == std::string::npos) letters += 'P';
      letters += 'H';
    }
    if (config_.MachineType == 1 &&
        (words.HasG(70) || words.HasG(71) || words.HasG(72) || words.HasG(73))) {
      if (letters.find('P') == std::string::npos) letters += 'P';
      letters += 'Q';
    }
    return letters;
  }

  // The number behind GOTO in a cleaned block, when it is a plain number.
  static bool GotoTarget(std::string_view clean, std::int64_t& number) {
    const std::size_t at = clean.find("GOTO");
    if (at == std::string_view::npos) return false;
    std::size_t end = at + 4;
    while (end < clean.size() && IsDigit(clean[end])) ++end;
    return PlainNumber(clean.substr(at + 4, end - at - 4), number);
  }

  void AddReference(std::int64_t number) { references_.try_emplace(Key{program_, number}); }

  bool FindReferences() {
    program_ = 0;
    BlockWords words;
    for (std::size_t i = 0; i < lines_.size(); ++i) {
      if (!Checkpoint(0, i)) return false;
      if (Clean(lines_[i])) {
        ++program_;
        continue;
      }
      if (options_.Mode == 0 || clean_.empty() || clean_.front() == '%') continue;
      std::int64_t number = 0;
      if (GotoTarget(clean_, number)) AddReference(number);
      ReadWords(clean_, words);
      for (char letter : ReferenceLetters(words)) {
        if (PlainNumber(words.Get(letter), number)) AddReference(number);
      }
    }
    return true;
  }

  std::string NumberText(std::int64_t number) const {
    return FormatNumberText(static_cast<double>(number), "#####0");
  }

  // The raw line with a new number in front; the old one and a "/" handled.
  std::string WithNumber(std::string_view raw, std::int64_t number) const {
    std::string_view rest = raw.substr(std::min(raw.find_first_not_of(" \t"), raw.size()));
    std::string out;
    if (!rest.empty() && rest.front() == '/') {
      out += '/';
      rest.remove_prefix(1);
      rest.remove_prefix(std::min(rest.find_first_not_of(" \t"), rest.size()));
    }
    if (!rest.empty() && Upper(rest.front()) == 'N' && rest.size() > 1 && IsDigit(rest[1])) {
      std::size_t end = 1;
      while (end < rest.size() && IsDigit(rest[end])) ++end;
      rest.remove_prefix(end);
    }
    out += 'N';
    out += NumberText(number);
    if (options_.AddSpace) {
      rest.remove_prefix(std::min(rest.find_first_not_of(" \t"), rest.size()));
      if (!rest.empty()) out += ' ';
    }
    out.append(rest);
    return out;
  }

  // What one line becomes in the numbering pass.
  std::string NumberLine(std::string_view raw, std::int64_t& n) {
    std::int64_t old = 0;
    const bool numbered = LeadingNumber(raw, old);
    Reference* reference = nullptr;
    if (numbered) {
      const auto found = references_.find(Key{program_, old});
      if (found != references_.end()) reference = &found->second;
    }
    const int mode = options_.Mode;
    if (mode == 0) return numbered ? StripBlockNumber(raw) : std::string(raw);
    if (mode == 2) {
      const std::string stripped = StripBlockNumber(raw);
      if (stripped.find_first_not_of(" \t/") == std::string::npos) return stripped;
      if (reference == nullptr && clean_.empty()) return stripped;
    }
    if (mode == 3 && reference == nullptr)
      return numbered ? StripBlockNumber(raw) : std::string(raw);
    if (reference != nullptr && reference->newNumber < 0) reference->newNumber = n;
    std::string out = WithNumber(raw, n);
    n += options_.Increment;
    if (n >= limit_) n = options_.Start;
    return out;
  }

  bool NumberBlocks() {
    program_ = 0;
    limit_ = 1;
    for (int i = 0; i < options_.MaxDigits; ++i) limit_ *= 10;
    std::int64_t n = options_.Start;
    numbered_.clear();
    numbered_.reserve(lines_.size());
    for (std::size_t i = 0; i < lines_.size(); ++i) {
      if (!Checkpoint(1, i)) return false;
      const std::string_view raw = lines_[i];
      if (Clean(raw)) ++program_;
      if (IsPercentLine(raw) ||
          (!clean_.empty() && (clean_.front() == 'O' || clean_.front() == ':'))) {
        numbered_.emplace_back(raw);
        continue;
      }
      numbered_.push_back(NumberLine(raw, n));
    }
    return true;
  }

  // The new number of a reference text of this program, or "" when it has none.
  std::string NewNumberOf(std::string_view text) const {
    std::int64_t old = 0;
    if (!PlainNumber(text, old)) return {};
    const auto found = references_.find(Key{program_, old});
    if (found == references_.end() || found->second.newNumber < 0) return {};
    return NumberText(found->second.newNumber);
  }

  // GOTO's number, outside comments, replaced with one blank between word and number.
  std::string RewriteGoto(const std::string& line) const {
    const std::string upper = UpperCaseLine(line);
    std::size_t at = upper.find("GOTO");
    while (at != std::string::npos &&
           std::count(upper.begin(), upper.begin() + static_cast<long>(at), '(') >
               std::count(upper.begin(), upper.begin() + static_cast<long>(at), ')')) {
      at = upper.find("GOTO", at + 4);
    }
    if (at == std::string::npos) return line;
    std::size_t begin = upper.find_first_not_of(" \t", at + 4);
    if (begin == std::string::npos) return line;
    std::size_t end = begin;
    while (end < line.size() && IsDigit(line[end])) ++end;
    const std::string target = NewNumberOf(std::string_view(line).substr(begin, end - begin));
    if (target.empty()) return line;
    return line.substr(0, at + 4) + " " + target + line.substr(end);
  }

  bool RewriteReferences(std::string& out) {
    program_ = 0;
    out.reserve(numbered_.size() * 24);
    BlockWords words;
    for (std::size_t i = 0; i < numbered_.size(); ++i) {
      if (!Checkpoint(2, i)) return false;
      std::string line = std::move(numbered_[i]);
      if (Clean(line)) {
        ++program_;
      } else if (options_.Mode > 0 && !clean_.empty()) {
        std::int64_t dummy = 0;
        if (GotoTarget(clean_, dummy)) line = RewriteGoto(line);
        ReadWords(clean_, words);
        for (char letter : ReferenceLetters(words)) {
          const std::string target = NewNumberOf(words.Get(letter));
          if (!target.empty()) line = SetAddressValue(line, letter, target);
        }
      }
      out += line;
      out += lineEnd_;
    }
    return true;
  }

  const RenumberOptions& options_;
  const MachineConfig& config_;
  Host& host_;
  std::vector<std::string_view> lines_;
  std::vector<std::string> numbered_;
  std::unordered_map<Key, Reference, KeyHash> references_;
  std::string clean_;
  std::string_view lineEnd_;
  std::int64_t limit_ = 100000;
  int program_ = 0;
};

}  // namespace

std::string GetAddressValue(std::string_view line, char letter) {
  std::size_t begin = 0, end = 0;
  if (!FindAddressValue(line, Upper(letter), begin, end)) return {};
  return std::string(line.substr(begin, end - begin));
}

std::string SetAddressValue(std::string_view line, char letter, std::string_view newValue) {
  std::size_t begin = 0, end = 0;
  if (!FindAddressValue(line, Upper(letter), begin, end)) return std::string(line);
  const bool blank = line.find(' ') != std::string_view::npos;
  std::string out(line.substr(0, begin));
  out.append(newValue);
  std::string_view rest = line.substr(end);
  if (blank) {
    out += ' ';
    rest.remove_prefix(std::min(rest.find_first_not_of(" \t"), rest.size()));
  }
  out.append(rest);
  return RightTrim(out);
}

FilterResult RenumberProgram(std::string_view text, const RenumberOptions& options,
                             const MachineConfig& config, Host& host) {
  RenumberOptions checked = options;
  if (checked.Start == 0) checked.Start = 1;
  if (checked.Increment == 0) checked.Increment = 1;
  checked.MaxDigits = std::clamp(checked.MaxDigits, 2, 6);
  host.status("msg", "Renumbering");
  Renumbering run(checked, config, host);
  FilterResult result = run.Run(text);
  host.status("msg", "");
  return result;
}

}  // namespace zemtra
