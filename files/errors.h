// Defines the errors of this layer. A code says what a host can offer to fix one.
#ifndef ORVANEL_FILES_ERRORS_H
#define ORVANEL_FILES_ERRORS_H

#include <string>

#include "base/error.h"
#include "base/layers.h"

namespace orvanel::files {

// What a host can offer to fix an error.
enum class FileFix {
  kChooseRow,           // a table holds more eyes than one is wanted from
  kAskForNoRow,         // a row is wanted from an eye file
  kReadAsEyeFile,       // columns of a prescription or decimal commas are expected in an eye file
  kReplaceFile,         // a file exists already
  kReplaceFolder,       // a folder has files in it
  kReadNoPrescription,  // no column holds the sphere of a prescription
  kReadDecimalCommas,   // a number has a decimal comma
  kReadDecimalPoints,   // decimal commas are expected in JSON
};

class FileError : public ErrorWithFix {
 public:
  FileError(FileFix code, const std::string& factText, const std::string& fixText)
      : ErrorWithFix(factText, fixText), fix(code) {}

  FileFix fix;
};

}  // namespace orvanel::files

#endif  // ORVANEL_FILES_ERRORS_H
