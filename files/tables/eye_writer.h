// Writes eyes as rows of a CSV table, which EyeTable can read.
#ifndef ORVANEL_FILES_TABLES_EYE_WRITER_H
#define ORVANEL_FILES_TABLES_EYE_WRITER_H

#include <string>
#include <vector>

#include "base/layers.h"
#include "eye/eye.h"

namespace orvanel::files {

class EyeWriter {
 public:
  //   identifierNames  the user's own columns, which come first
  //   scheme           the index scheme of all eyes
  //   terms            by OSA index, those that may differ from 0; terms outside the index scheme get no column
  //   withReference    adds a column for the reference wavelength
  EyeWriter(std::vector<std::string> identifierNames, IndexScheme scheme, const std::vector<std::size_t>& terms,
            bool withReference);

  std::string Header() const;

  // The row of an eye in this index scheme. Throws Error if a term that is not 0 or a reference wavelength has no
  // column.
  std::string Row(const Eye& eye, const std::vector<std::string>& identifiers) const;

 private:
  std::vector<std::string> identifierNames_;
  IndexScheme scheme_;
  std::vector<std::size_t> terms_;
  bool withReference_;
};

// The terms that can differ from 0 after rescaling the pupil: also those of lower radial order and the same azimuthal
// frequency.
std::vector<std::size_t> WithLowerOrders(const std::vector<std::size_t>& terms);

}  // namespace orvanel::files

#endif  // ORVANEL_FILES_TABLES_EYE_WRITER_H
