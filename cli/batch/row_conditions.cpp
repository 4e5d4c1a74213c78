// Keeps the spectra of files, and why the others cannot be read.
#include "cli/batch/row_conditions.h"

#include <filesystem>
#include <system_error>
#include <utility>

#include "base/number_text.h"
#include "base/visible_text.h"
#include "cli/batch/run_record.h"
#include "cli/error_text.h"
#include "cli/quality/named_light.h"
#include "files/input_file.h"
#include "files/interruption.h"
#include "files/path_of.h"

namespace orvanel::cli {
namespace {

namespace fs = std::filesystem;

constexpr const char *kLight = "light", *kModel = "model";

// A spectrum has at most 1000 rows.
constexpr std::uintmax_t kLargestFile = std::uintmax_t{1} << 20;

// The memory of a run does not grow with its table.
constexpr std::size_t kMostFiles = 1000;

std::optional<std::size_t> ColumnNamed(const char* name, const std::vector<std::string>& columns,
                                       const std::string& table) {
  std::optional<std::size_t> found;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    if (Folded(columns[i]) != name) continue;
    if (found) {
      throw Error(InputName(table) + ": the columns " + Quoted(columns[*found]) + " and " + Quoted(columns[i]) +
                  " both state the " + name + "; keep one");
    }
    found = i;
  }
  return found;
}

// Throws ConditionRefused for what cannot be read, or not twice.
void RequireSpectrumFile(const std::string& file) {
  std::error_code ignored;
  const fs::file_status status = fs::status(PathOf(file), ignored);
  if (file == kStandardStream || !fs::exists(status)) {
    throw ConditionRefused(Quoted(file) +
                           " is not a wavelength in nm, white or display, and there is no file of this name");
  }
  if (!fs::is_regular_file(status)) throw ConditionRefused(Quoted(file) + " is not a file; name a CSV file");
  if (fs::file_size(PathOf(file), ignored) > kLargestFile) {
    throw ConditionRefused(Quoted(file) + " is larger than 1 MiB; a spectrum has at most 1000 rows");
  }
}

}  // namespace

RowConditions::RowConditions(const std::vector<std::string>& columns, std::string table, ModelRequest model,
                             std::string light)
    : table_(std::move(table)),
      model_(std::move(model)),
      runLight_(std::move(light)),
      light_(ColumnNamed(kLight, columns, table_)),
      kind_(ColumnNamed(kModel, columns, table_)) {}

std::string RowConditions::Summary() const {
  std::string names = light_ ? kLight : "";
  if (kind_) names += (names.empty() ? "" : ", ") + std::string(kModel);
  return names.empty() ? "" : "conditions of each row: " + names;
}

RowLight RowConditions::Complete(std::vector<std::string>& fields) {
  if (kind_) {
    std::string& field = fields[*kind_];
    const std::string model = Folded(field);
    if (model.empty()) {
      field = Word(model_.kind);
    } else if (model != Word(model_.kind)) {
      const bool known = model == Word(ModelKind::kPhysical) || model == Word(ModelKind::kClassic);
      throw ConditionRefused("column 'model': " +
                             (known ? "the columns of this run are those of the " + std::string(Word(model_.kind)) +
                                          " model; compute this row in a run with --model " + model
                                    : Quoted(field) + " is not one of physical, classic; if the column is not about "
                                                      "models of this program, rename it"));
    }
  }
  if (!light_) return {};
  std::string& field = fields[*light_];
  const std::string name(Trimmed(field));
  if (model_.kind == ModelKind::kClassic) {
    if (name.empty()) return {};
    throw ConditionRefused("column 'light': the classic model has no light; leave it empty, or use --model physical");
  }
  if (name.empty()) {
    field = runLight_;
    return {};
  }
  return LightNamed(name);
}

void RowConditions::Read(const std::map<std::string, std::string>& files) {
  for (const auto& [file, hash] : files) SpectrumOf(file);
}

RowLight RowConditions::LightNamed(const std::string& name) {
  const std::string column = "column 'light': ";
  constexpr std::size_t kLongestName = 4096;  // each name is kept
  if (name.size() > kLongestName) throw ConditionRefused(column + Quoted(name) + " is too long");
  if (!NamesSpectrumFile(name)) {
    try {
      return {name, SettingsIn(name)};
    } catch (const Error& error) {
      throw ConditionRefused(column + error.what());
    }
  }
  const RowLight& light = SpectrumOf(name);
  if (!light.settings) throw ConditionRefused(column + reasons_.at(name));
  return light;
}

// Without settings if the file has no spectrum.
const RowLight& RowConditions::SpectrumOf(const std::string& file) {
  const auto [entry, isNew] = spectra_.try_emplace(file);
  RowLight& light = entry->second;
  if (!isNew) return light;
  if (spectra_.size() > kMostFiles) {
    throw Error(InputName(table_) + ": the column 'light' names more than " + std::to_string(kMostFiles) +
                " files; divide the table, or rename the column if it is not about light");
  }
  light.name = file;
  std::string& hash = files_[file];
  try {
    RequireSpectrumFile(file);
    hash = HashOfFile(file);
    light.settings = SettingsIn(file);
  } catch (const Interrupted&) {
    throw;
  } catch (const Error& error) {
    reasons_[file] = VisibleText(TextOf(error));
  }
  return light;
}

std::shared_ptr<const PhysicalSettings> RowConditions::SettingsIn(const std::string& light) const {
  auto settings = std::make_shared<PhysicalSettings>(model_.physical);
  SetLight(*settings, light);
  return settings;
}

}  // namespace orvanel::cli
