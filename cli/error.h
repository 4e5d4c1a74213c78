// What ends the program with a message: something outside it is wrong, not the program.
#ifndef ORVANEL_CLI_ERROR_H
#define ORVANEL_CLI_ERROR_H

#include <stdexcept>

namespace orvanel::cli {

class Error : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_ERROR_H
