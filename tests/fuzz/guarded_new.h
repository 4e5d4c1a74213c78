// Places the planes of the engine between inaccessible pages. It replaces aligned allocations, which only the engine
// uses, by blocks that are mapped once and reused.
#ifndef ORVANEL_TESTS_FUZZ_GUARDED_NEW_H
#define ORVANEL_TESTS_FUZZ_GUARDED_NEW_H

#include <cstddef>

namespace orvanel::fuzz {

// How many have not been given back.
std::size_t GuardedBlocksInUse();

}  // namespace orvanel::fuzz

#endif  // ORVANEL_TESTS_FUZZ_GUARDED_NEW_H
