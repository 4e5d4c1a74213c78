// Adds to errors the options of the command line that avoid them.
#ifndef ORVANEL_CLI_ERROR_TEXT_H
#define ORVANEL_CLI_ERROR_TEXT_H

#include <string>

#include "base/error.h"
#include "base/layers.h"

namespace orvanel::cli {

// Returns the error's own message if no option helps.
std::string TextOf(const Error& error);

// Returns the same without file and place.
std::string ReasonOf(const ErrorAt& error);

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_ERROR_TEXT_H
