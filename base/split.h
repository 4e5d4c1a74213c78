// Splits lists at their commas.
#ifndef ORVANEL_BASE_SPLIT_H
#define ORVANEL_BASE_SPLIT_H

#include <string_view>
#include <vector>

namespace orvanel {

// The parts between the commas, one more than there are commas. They refer to the list.
std::vector<std::string_view> Split(std::string_view list);

}  // namespace orvanel

#endif  // ORVANEL_BASE_SPLIT_H
