// Reads and writes eye files: JSON with the pupil, the Zernike coefficients and the convention of one eye.
#ifndef ORVANEL_FILES_EYES_EYE_FILE_H
#define ORVANEL_FILES_EYES_EYE_FILE_H

#include <string>

#include "base/layers.h"
#include "eye/conventions/partial_convention.h"
#include "eye/eye.h"

namespace orvanel::files {

// Reads the bytes of an eye file, at most one more than are allowed. Throws as InputFile does.
std::string ReadEyeBytes(const std::string& file);

// Parses the bytes of an eye file. Throws Error with file, line, column, key, reason and fix.
//   stated  the convention on the command line, which the file may repeat but must not contradict
Eye EyeOfBytes(const std::string& file, std::string text, const PartialConvention& stated = {});

// Reads and parses an eye file. Throws Error with file, line, column, key, reason and fix.
Eye ReadEyeFile(const std::string& file, const PartialConvention& stated = {});

// The text of an eye file in the convention of the eye. Throws Error if its index scheme does not contain a term that
// is not 0.
std::string EyeFileText(const Eye& eye);

}  // namespace orvanel::files

#endif  // ORVANEL_FILES_EYES_EYE_FILE_H
