#include "editor/LineIndex.h"

#include <algorithm>

namespace zemtra {

namespace {

// Whether a line starts at `p` (0 < p <= size): behind an LF, or behind a CR that no LF follows.
inline bool StartsLine(std::string_view text, std::size_t p) {
  const char before = text[p - 1];
  if (before == '\n') return true;
  return before == '\r' && (p == text.size() || text[p] != '\n');
}

}  // namespace

void LineIndex::CollectStarts(std::string_view text, std::size_t from, std::size_t to,
                              std::vector<std::size_t>& out) {
  if (from == 0) out.push_back(0);
  const char* data = text.data();
  for (std::size_t p = from == 0 ? 1 : from; p <= to; ++p) {
    const char before = data[p - 1];
    if ((before == '\n' || before == '\r') && StartsLine(text, p)) out.push_back(p);
  }
}

void LineIndex::Rebuild(std::string_view text) {
  starts_.clear();
  starts_.reserve(text.size() / 24 + 1);
  CollectStarts(text, 0, text.size(), starts_);
}

void LineIndex::Replaced(std::string_view text, std::size_t start, std::size_t removed,
                         std::size_t insertedLength) {
  // Starts before `start` and those behind the old replaced stretch depend on bytes that did
  // not change; the ones between are found again in the new text.
  const auto first = std::lower_bound(starts_.begin(), starts_.end(), start);
  const auto last = std::upper_bound(first, starts_.end(), start + removed);
  std::vector<std::size_t> fresh;
  CollectStarts(text, start, std::min(start + insertedLength, text.size()), fresh);

  const std::size_t firstIndex = static_cast<std::size_t>(first - starts_.begin());
  std::size_t lastIndex = static_cast<std::size_t>(last - starts_.begin());
  if (insertedLength != removed) {
    for (std::size_t i = lastIndex; i < starts_.size(); ++i) {
      starts_[i] = starts_[i] + insertedLength - removed;
    }
  }
  const std::size_t replacedCount = lastIndex - firstIndex;
  if (fresh.size() == replacedCount) {
    std::copy(fresh.begin(), fresh.end(), starts_.begin() + static_cast<long>(firstIndex));
    return;
  }
  starts_.erase(starts_.begin() + static_cast<long>(firstIndex),
                starts_.begin() + static_cast<long>(lastIndex));
  starts_.insert(starts_.begin() + static_cast<long>(firstIndex), fresh.begin(), fresh.end());
}

int LineIndex::LineFromPosition(std::size_t position) const {
  const auto after = std::upper_bound(starts_.begin(), starts_.end(), position);
  return static_cast<int>(after - starts_.begin()) - 1;
}

std::size_t LineIndex::LineStart(int line) const {
  if (line <= 0) return 0;
  if (line >= LineCount()) return starts_.back();
  return starts_[static_cast<std::size_t>(line)];
}

}  // namespace zemtra
