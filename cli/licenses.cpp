// Gives access to the two embedded files.
#include "cli/licenses.h"

extern "C" {
extern const unsigned char orvanel_license[];
extern const unsigned char orvanel_license_end[];
extern const unsigned char orvanel_third_party_notices[];
extern const unsigned char orvanel_third_party_notices_end[];
}

namespace orvanel::cli {

std::string LicensesText() {
  return std::string(orvanel_license, orvanel_license_end) + "\n" +
         std::string(orvanel_third_party_notices, orvanel_third_party_notices_end);
}

}  // namespace orvanel::cli
