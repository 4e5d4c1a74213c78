// Reads the columns "light" and "model" of a table of eyes: the conditions of each row.
#ifndef ORVANEL_CLI_BATCH_ROW_CONDITIONS_H
#define ORVANEL_CLI_BATCH_ROW_CONDITIONS_H

#include <cstddef>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/error.h"
#include "base/layers.h"
#include "models/model.h"

namespace orvanel::cli {

// A condition that the run cannot fulfil: an error of one row.
class ConditionRefused : public Error {
 public:
  using Error::Error;
};

// The light of one row.
struct RowLight {
  std::string name;                                  // as stated by the row; empty for the light of the run
  std::shared_ptr<const PhysicalSettings> settings;  // null for those of the run
};

class RowConditions {
 public:
  // Finds the columns. Letter case and blanks around a name do not count. Throws Error if one is there twice.
  //   columns  the user's own columns, which a row of results copies
  //   light    the name of the run's light
  RowConditions(const std::vector<std::string>& columns, std::string table, ModelRequest model, std::string light);

  // Whether rows may differ in light.
  bool haveLight() const { return light_.has_value(); }

  // Which columns are read: "conditions of each row: light"; empty if there are none.
  std::string Summary() const;

  // Reads the conditions of a row, and writes those of the run where it states none. Each file of a spectrum is read
  // once. Throws ConditionRefused, and Error if the table names too many files.
  //   fields  of the user's own columns
  RowLight Complete(std::vector<std::string>& fields);

  // The files that lights name, with the hashes of their bytes. A file that cannot be read has no hash.
  const std::map<std::string, std::string>& files() const { return files_; }

  // Reads the files of an earlier run again.
  void Read(const std::map<std::string, std::string>& files);

 private:
  RowLight LightNamed(const std::string& name);
  const RowLight& SpectrumOf(const std::string& file);
  std::shared_ptr<const PhysicalSettings> SettingsIn(const std::string& light) const;

  std::string table_;
  ModelRequest model_;
  std::string runLight_;
  std::optional<std::size_t> light_, kind_;  // columns
  std::map<std::string, std::string> files_, reasons_;
  std::map<std::string, RowLight> spectra_;
};

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_BATCH_ROW_CONDITIONS_H
