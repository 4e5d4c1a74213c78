// The engine's own planes between pages that nobody may touch: allocations with an alignment, which are those of the
// engine, come from blocks that are mapped once and used again and again.
#ifndef ORVANEL_TESTS_FUZZ_GUARDED_NEW_H
#define ORVANEL_TESTS_FUZZ_GUARDED_NEW_H

#include <cstddef>

namespace orvanel::fuzz {

// How many have not been given back.
std::size_t GuardedBlocksInUse();

}  // namespace orvanel::fuzz

#endif  // ORVANEL_TESTS_FUZZ_GUARDED_NEW_H
