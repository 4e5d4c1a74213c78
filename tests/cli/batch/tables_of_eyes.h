// Writes small tables of eyes for tests, and runs batches over them.
#ifndef ORVANEL_TESTS_CLI_BATCH_TABLES_OF_EYES_H
#define ORVANEL_TESTS_CLI_BATCH_TABLES_OF_EYES_H

#include <string>

#include "base/number_text.h"
#include "cli/batch/run.h"
#include "orvanel/orvanel.h"
#include "tests/support/temporary_files.h"

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

// The results and record of a complete run, as if it had been killed when it had written `written` bytes and its record
// told of the first `sure`.
inline void LeaveAsKilled(const std::string& results, std::size_t sure, std::size_t written) {
  const std::string text = Read(results);
  RunRecord record = *ReadRecord(results);
  Fnv1a hash;
  hash.Add(text.substr(0, sure));
  record.end.reset();
  record.resultsBytes = sure;
  record.resultsHash = hash.Text();
  WriteRecord(results, record);
  Write(results, text.substr(0, written));
}

// Where the first `rows` rows below the header of a table without line feeds in its fields end.
inline std::size_t EndOfRows(const std::string& text, std::size_t rows) {
  std::size_t end = 0;
  for (std::size_t i = 0; i <= rows; ++i) end = text.find('\n', end) + 1;
  return end;
}

}  // namespace orvanel::cli

#endif  // ORVANEL_TESTS_CLI_BATCH_TABLES_OF_EYES_H
