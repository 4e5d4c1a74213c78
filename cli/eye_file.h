// The eye file: JSON that gives one eye's pupil, Zernike coefficients and their convention.
#ifndef ORVANEL_CLI_EYE_FILE_H
#define ORVANEL_CLI_EYE_FILE_H

#include <string>
#include <vector>

#include "cli/convention.h"
#include "cli/units.h"

namespace orvanel::cli {

struct Eye {
  std::string file;  // as the user named it
  std::string name, source, note;
  Millimetres pupil;
  Convention convention = Convention::kLibrary;
  std::vector<double> coefficients;  // as given, 1 to 28, in the unit of the convention
};

// Reads and checks an eye file. Throws Error with file, key, reason and remedy.
Eye ReadEyeFile(const std::string& file);

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_EYE_FILE_H
