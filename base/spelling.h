// Slips of the keyboard in the names of keys and columns.
#ifndef ORVANEL_BASE_SPELLING_H
#define ORVANEL_BASE_SPELLING_H

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace orvanel {

// Letters to insert, delete or replace to make one of the other.
std::size_t EditDistance(std::string_view a, std::string_view b);

// The known name that is nearest; empty where none is within `most(length)` edits.
std::optional<std::string_view> Nearest(std::string_view name, std::span<const char* const> known,
                                        std::size_t (*most)(std::size_t length));

}  // namespace orvanel

#endif  // ORVANEL_BASE_SPELLING_H
