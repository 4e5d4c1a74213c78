// Writes numbers to standard output.
#ifndef ORVANEL_MATRIX_PRINTING_H
#define ORVANEL_MATRIX_PRINTING_H

namespace orvanel {

// Writes the number to stdout as printf's "%10.4f" gives it in the C locale. It does not use printf, which would write
// a decimal comma in a host's locale that has one.
void PrintNumber(double number);

}  // namespace orvanel

#endif  // ORVANEL_MATRIX_PRINTING_H
