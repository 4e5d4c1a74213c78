// Makes control characters in text visible, so that none of the user's reaches a terminal.
#ifndef ORVANEL_BASE_VISIBLE_TEXT_H
#define ORVANEL_BASE_VISIBLE_TEXT_H

#include <string>
#include <string_view>

namespace orvanel {

// The text in one line. Control characters of one byte and bytes that are no UTF-8 become \x1b, all other control
// characters and those that change the direction of writing become \u202e.
std::string VisibleText(std::string_view text);

// The same, except that line feeds stay.
std::string VisibleLines(std::string_view text);

}  // namespace orvanel

#endif  // ORVANEL_BASE_VISIBLE_TEXT_H
