// What ends the program with a message: something outside it is wrong, not the program.
#ifndef ORVANEL_BASE_ERROR_H
#define ORVANEL_BASE_ERROR_H

#include <cstddef>
#include <stdexcept>
#include <string>

namespace orvanel {

class Error : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// An error to which a host can add its own way to fix it, such as an option of a command line.
class ErrorWithFix : public Error {
 public:
  //   factText  what is wrong, with the punctuation before the fix
  //   fix       what to do, in words that hold for every host
  ErrorWithFix(const std::string& factText, const std::string& fix) : Error(factText + fix), fact(factText) {}

  std::string fact;
};

// The work is done, but some rows of a table are invalid.
class FaultyRows : public Error {
 public:
  using Error::Error;
};

// A place in a text file, both from 1; columns count characters.
struct Place {
  std::size_t line = 0, column = 0;
};

// Something wrong at a place in a file: "eyes.csv: line 3, column 14: ...".
class ErrorAt : public Error {
 public:
  ErrorAt(const std::string& file, Place at, const std::string& what)
      : Error(file + ": line " + std::to_string(at.line) + ", column " + std::to_string(at.column) + ": " + what),
        place(at),
        reason(what) {}

  Place place;
  std::string reason;
};

}  // namespace orvanel

#endif  // ORVANEL_BASE_ERROR_H
