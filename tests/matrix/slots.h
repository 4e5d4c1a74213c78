// Finds the slot of a virtual operation in the table of its class.
#ifndef ORVANEL_TESTS_MATRIX_SLOTS_H
#define ORVANEL_TESTS_MATRIX_SLOTS_H

#include <cstddef>
#include <cstring>

namespace orvanel::test {

#if defined(__GXX_ABI_VERSION) && (defined(__x86_64__) || defined(__i386__))
#define ORVANEL_TEST_CAN_READ_SLOTS

// Counted from 1. In this ABI a pointer to a virtual member holds the byte offset of its slot, plus 1.
template <typename Member>
std::size_t SlotOf(Member member) {
  std::size_t offset = 0;
  std::memcpy(&offset, &member, sizeof offset);
  return offset / sizeof(void*) + 1;
}
#endif

}  // namespace orvanel::test

#endif  // ORVANEL_TESTS_MATRIX_SLOTS_H
