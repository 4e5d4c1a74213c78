// The eye file: JSON that gives one eye's pupil, Zernike coefficients and their convention.
#ifndef ORVANEL_FILES_EYES_EYE_FILE_H
#define ORVANEL_FILES_EYES_EYE_FILE_H

#include <string>

#include "base/layers.h"
#include "eye/conventions/statement.h"
#include "eye/eye.h"

namespace orvanel::files {

// The bytes of an eye file; of one that is too large, enough to tell. Throws as InputFile does.
std::string ReadEyeBytes(const std::string& file);

// Checks the bytes of an eye file. Throws Error with file, line, column, key, reason and remedy.
//   stated  what the command line states, which the file must not contradict and need not repeat
Eye EyeOfBytes(const std::string& file, std::string text, const Statement& stated = {});

// Reads and checks an eye file. Throws Error with file, line, column, key, reason and remedy.
Eye ReadEyeFile(const std::string& file, const Statement& stated = {});

// The text of an eye file in the eye's convention. Throws Error where its order has no place for a term that is not 0.
std::string EyeFileText(const Eye& eye);

}  // namespace orvanel::files

#endif  // ORVANEL_FILES_EYES_EYE_FILE_H
