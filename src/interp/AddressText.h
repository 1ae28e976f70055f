#pragma once
// The text of an address value as the block wrote it. Short texts, nearly all of them, are
// kept in place, so that reading a block allocates nothing.
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace zemtra {

class AddressText {
 public:
  void Assign(std::string_view text) {
    const std::size_t n = text.size();
    if (n <= kShort) {
      // Two overlapping copies of a power of two cover any length up to twice that.
      const char* from = text.data();
      char* to = short_.data();
      if (n >= 8) {
        CopyOverlapping<8>(to, from, n);
      } else if (n >= 4) {
        CopyOverlapping<4>(to, from, n);
      } else {
        for (std::size_t i = 0; i < n; ++i) to[i] = from[i];
      }
      size_ = static_cast<std::uint8_t>(n);
    } else {
      long_.assign(text);
      size_ = kLong;
    }
  }
  void Clear() {
    size_ = 0;
    long_.clear();
  }
  std::string_view View() const {
    return size_ == kLong ? std::string_view(long_) : std::string_view(short_.data(), size_);
  }
  bool empty() const { return View().empty(); }
  friend bool operator==(const AddressText& a, std::string_view b) { return a.View() == b; }

 private:
  template <std::size_t kChunk>
  static void CopyOverlapping(char* to, const char* from, std::size_t n) {
    for (std::size_t at = 0; at + kChunk < n; at += kChunk) std::memcpy(to + at, from + at, kChunk);
    std::memcpy(to + n - kChunk, from + n - kChunk, kChunk);
  }

  static constexpr std::size_t kShort = 32;
  static constexpr std::uint8_t kLong = kShort + 1;
  std::array<char, kShort> short_{};
  std::uint8_t size_ = 0;
  std::string long_;
};

}  // namespace zemtra
