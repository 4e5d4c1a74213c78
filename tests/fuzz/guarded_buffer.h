// Allocates a host's buffer between two inaccessible pages.
#ifndef ORVANEL_TESTS_FUZZ_GUARDED_BUFFER_H
#define ORVANEL_TESTS_FUZZ_GUARDED_BUFFER_H

#include <sys/mman.h>

#include <cstddef>
#include <cstring>

#include "tests/fuzz/require.h"

namespace orvanel::fuzz {

// Room for `count` doubles at any alignment. What lies between them and the guards keeps a pattern.
class GuardedBuffer {
 public:
  explicit GuardedBuffer(std::size_t count) : bytes_(count * sizeof(double)) {
    room_ = (bytes_ + kPage - 1) / kPage * kPage + kPage;  // a page more, so that every shift has its place
    void* const mapped =
        mmap(nullptr, room_ + 2 * kPage, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    ORVANEL_REQUIRE(mapped != MAP_FAILED);
    first_ = static_cast<unsigned char*>(mapped) + kPage;
    Protect(PROT_READ | PROT_WRITE);
    std::memset(first_, kPattern, room_);
    TakeBack();
  }
  GuardedBuffer(const GuardedBuffer&) = delete;
  GuardedBuffer& operator=(const GuardedBuffer&) = delete;
  ~GuardedBuffer() { munmap(first_ - kPage, room_ + 2 * kPage); }

  // The doubles anew, untouched: shift 0 puts them right behind the lower guard, 255 right before the upper one, and
  // the others between, most of them unaligned.
  double* Untouched(int shift) {
    Protect(PROT_READ | PROT_WRITE);
    std::memset(first_ + at_, kPattern, bytes_);
    const std::size_t slack = room_ - bytes_;
    at_ = shift == 255 ? slack : static_cast<std::size_t>(shift) * (slack / 255) + static_cast<std::size_t>(shift) % 8;
    if (at_ > slack) at_ = slack;
    return reinterpret_cast<double*>(first_ + at_);
  }

  // Until then nobody may touch them either, who may have kept their address.
  void TakeBack() { Protect(PROT_NONE); }
  bool IsOut() const { return protection_ != PROT_NONE; }

  // Whether nothing has been written since then: at all, or beside the doubles.
  bool IsUntouched() const { return IsPattern(0, room_); }
  bool IsUntouchedBeside() const { return IsPattern(0, at_) && IsPattern(at_ + bytes_, room_); }

  // A double, and whether all its bytes have been written.
  double operator[](std::size_t index) const {
    double value;
    std::memcpy(&value, first_ + at_ + index * sizeof value, sizeof value);
    return value;
  }
  bool IsWritten(std::size_t index) const {
    return !IsPattern(at_ + index * sizeof(double), at_ + (index + 1) * sizeof(double));
  }

 private:
  static constexpr std::size_t kPage = 4096;
  static constexpr unsigned char kPattern = 0xa5;

  bool IsPattern(std::size_t from, std::size_t to) const {
    return from >= to ||
           (first_[from] == kPattern && std::memcmp(first_ + from, first_ + from + 1, to - from - 1) == 0);
  }

  void Protect(int protection) {
    if (protection == protection_) return;
    ORVANEL_REQUIRE(mprotect(first_, room_, protection) == 0);
    protection_ = protection;
  }

  std::size_t bytes_, room_, at_ = 0;
  int protection_ = PROT_NONE;
  unsigned char* first_;
};

}  // namespace orvanel::fuzz

#endif  // ORVANEL_TESTS_FUZZ_GUARDED_BUFFER_H
