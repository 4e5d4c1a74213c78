// Words errors for the command line: with the options that avoid them.
#ifndef ORVANEL_CLI_ERROR_TEXT_H
#define ORVANEL_CLI_ERROR_TEXT_H

#include <string>

#include "base/error.h"
#include "base/layers.h"

namespace orvanel::cli {

// The error's own sentence where no option helps.
std::string TextOf(const Error& error);

// The same without file and place.
std::string ReasonOf(const ErrorAt& error);

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_ERROR_TEXT_H
