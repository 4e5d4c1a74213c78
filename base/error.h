// What ends the program with a message: something outside it is wrong, not the program.
#ifndef ORVANEL_BASE_ERROR_H
#define ORVANEL_BASE_ERROR_H

#include <cstddef>
#include <exception>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>

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

// Something wrong at a place in a file: "eyes.csv: line 3, column 14: ...". One that is made while another error is
// handled keeps it, with its code and fields: nested_ptr().
class ErrorAt : public Error, public std::nested_exception {
 public:
  ErrorAt(const std::string& file, Place at, const std::string& what)
      : Error(file + ": line " + std::to_string(at.line) + ", column " + std::to_string(at.column) + ": " + what),
        place(at),
        reason(what) {}

  // An error that a host may word itself, at a place.
  //   beforeText  comes before the text of the cause: "column 'Z4': "
  ErrorAt(const std::string& file, Place at, const std::string& beforeText,
          std::shared_ptr<const ErrorWithFix> theCause)
      : ErrorAt(file, at, beforeText + theCause->what()) {
    before = beforeText;
    cause = std::move(theCause);
  }

  Place place;
  std::string reason;
  std::string before;                         // the reason without the text of the cause
  std::shared_ptr<const ErrorWithFix> cause;  // null where the reason is all
};

}  // namespace orvanel

#endif  // ORVANEL_BASE_ERROR_H
