// Fuzzes tables of eyes in CSV and NDJSON: every row is an eye or a message, and the reader ends.
#include "files/tables/eye_table.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string>

#include "base/error.h"
#include "files/tables/eye_writer.h"
#include "tests/fuzz/input.h"
#include "tests/fuzz/require.h"

using namespace orvanel;
using namespace orvanel::files;

namespace {

PartialConvention Stated(int choice) {
  if (choice % 4 == 0) return {};
  PartialConvention stated = PartsOf(choice % 4 == 1 ? kOsaConvention : kLibraryConvention);
  if (choice % 4 == 3) stated.scheme = IndexScheme::kFringe;
  stated.pupil = Millimetres(4.1);
  return stated;
}

}  // namespace

// The first byte chooses the kind of table and what is stated for all rows.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const int choice = orvanel::fuzz::Input(data, size).Byte();
  const std::size_t first = size > 0 ? 1 : 0;
  std::istringstream stream(std::string(reinterpret_cast<const char*>(data) + first, size - first));
  try {
    EyeTable table(stream, "table", choice / 4 % 2 == 0 ? TableKind::kCsv : TableKind::kNdjson, Stated(choice));
    const EyeWriter writer(table.identifierNames(), table.CommonScheme().value_or(IndexScheme::kNamed), table.Terms(),
                           table.MayStateReference());
    ORVANEL_REQUIRE(!writer.Header().empty());
    TableEye eye;
    std::size_t rows = 0;
    for (bool more = true; more; ++rows) {
      ORVANEL_REQUIRE(rows <= size);  // each takes at least a byte
      try {
        more = table.Next(eye);
        if (!more) continue;
        ORVANEL_REQUIRE(eye.identifiers.size() == table.identifierNames().size());
        ORVANEL_REQUIRE(std::isfinite(eye.eye.pupil.value()) && eye.eye.pupil.value() > 0.0);
        for (const double c : eye.eye.coefficients.AsStated()) ORVANEL_REQUIRE(std::isfinite(c));
        ORVANEL_REQUIRE(!writer.Row(eye.eye, eye.identifiers).empty());
      } catch (const Error& error) {
        ORVANEL_REQUIRE(*error.what() != '\0');
      }
    }
  } catch (const Error& error) {
    ORVANEL_REQUIRE(*error.what() != '\0');
  }
  return 0;
}
