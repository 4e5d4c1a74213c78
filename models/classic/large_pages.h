// Memory in large pages, where the system has them.
#ifndef ORVANEL_MODELS_CLASSIC_LARGE_PAGES_H
#define ORVANEL_MODELS_CLASSIC_LARGE_PAGES_H

#include <cstdint>
#include <memory>

namespace orvanel {

// Memory for so many doubles, not written, that begins where a large page can and asks for such pages: a new process
// waits for each page that it touches first, and a processor looks one up for every few lines of a transform's columns.
// Null where there is no such memory.
std::shared_ptr<double[]> LargePages(std::uint64_t count) noexcept;

}  // namespace orvanel

#endif  // ORVANEL_MODELS_CLASSIC_LARGE_PAGES_H
