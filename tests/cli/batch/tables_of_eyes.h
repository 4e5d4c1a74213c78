// Small tables of eyes, and runs over them.
#ifndef ORVANEL_TESTS_CLI_BATCH_TABLES_OF_EYES_H
#define ORVANEL_TESTS_CLI_BATCH_TABLES_OF_EYES_H

#include <string>

#include "cli/batch/run.h"
#include "cli/number_text.h"
#include "orvanel/orvanel.h"
#include "tests/cli/temporary_folder.h"

namespace orvanel::cli {

// Lopsided eyes, no two alike; every seventh row is at fault.
inline std::string TableOfEyes(int rows) {
  std::string text = "id,pupil_diameter_mm,eye,unit,normalisation,order,y_axis,Z4,Z7,Z8\n";
  for (int i = 0; i < rows; ++i) {
    text += "\"eye, " + std::to_string(i) + "\"," + ShortestText(4.0 + 0.01 * i) + ",OD,um,orthonormal,osa,up," +
            (i % 7 == 5 ? "x" : ShortestText(0.003 * i)) + "," + ShortestText(0.2 - 0.001 * i) + ",0.04\n";
  }
  return text;
}

// A run in a folder that has eyes.csv, to results.csv, of numbers that cost little.
inline BatchRequest RequestIn(const TemporaryFolder& folder) {
  BatchRequest request;
  request.table = (folder / "eyes.csv").string();
  request.results = (folder / "results.csv").string();
  request.choice.metrics = MetricsNamed("rms,refraction");
  request.record.version = ORVANEL_VERSION;
  request.record.chunkRows = 8;
  return request;
}

}  // namespace orvanel::cli

#endif  // ORVANEL_TESTS_CLI_BATCH_TABLES_OF_EYES_H
