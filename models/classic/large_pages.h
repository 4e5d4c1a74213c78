// Allocates memory in large pages, if the system has them.
#ifndef ORVANEL_MODELS_CLASSIC_LARGE_PAGES_H
#define ORVANEL_MODELS_CLASSIC_LARGE_PAGES_H

#include <cstdint>
#include <memory>

namespace orvanel {

// Memory for so many doubles, not initialised, at an address where a large page can start. Large pages mean fewer page
// faults at start-up and fewer TLB misses in column passes. Null if there is no such memory.
std::shared_ptr<double[]> LargePages(std::uint64_t count) noexcept;

}  // namespace orvanel

#endif  // ORVANEL_MODELS_CLASSIC_LARGE_PAGES_H
