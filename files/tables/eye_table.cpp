// Parses the header once, and converts each row by it.
#include "files/tables/eye_table.h"

#include <algorithm>
#include <set>
#include <unordered_map>
#include <utility>

#include "base/number_text.h"
#include "base/spelling.h"
#include "base/visible_text.h"

namespace orvanel::files {
namespace {

constexpr const char* kPartKeys[] = {kUnitKey,  kWavelengthKey, kNormalisationKey, kOrderKey,
                                     kYAxisKey, kSideKey,       kPupilKey,         kReferenceKey};

// Names of the columns of a prescription.
constexpr const char* kPrescriptionNames[3][4] = {
    {"sphere", "sph", "s", "sphere_d"}, {"cylinder", "cyl", "c", "cylinder_d"}, {"axis", "ax", "a", "axis_deg"}};

// The part that a name stands for.
std::optional<std::size_t> PrescriptionPart(const std::string& folded) {
  for (std::size_t part = 0; part < 3; ++part) {
    const auto& names = kPrescriptionNames[part];
    if (std::find(std::begin(names), std::end(names), folded) != std::end(names)) return part;
  }
  return std::nullopt;
}

// Appends "copied: id, visit and 60 more" to the summary; nothing without columns.
void AppendColumns(std::string& summary, const char* use, const std::vector<std::string>& names,
                   const std::vector<std::size_t>& columns) {
  constexpr std::size_t kMaxNames = 40, kMaxLength = 40;
  if (columns.empty()) return;
  summary += (summary.empty() ? "" : "; ") + std::string(use) + ": ";
  for (std::size_t i = 0; i < columns.size() && i < kMaxNames; ++i) {
    summary += (i == 0 ? "" : ", ") + Shortened(Trimmed(names[columns[i]]), kMaxLength);
  }
  if (columns.size() > kMaxNames) summary += " and " + std::to_string(columns.size() - kMaxNames) + " more";
}

// A misspelt name of a known column would otherwise be read as the user's own column.
std::size_t MaxEdits(std::size_t length) {
  if (length < 6) return 1;
  return length < 20 ? 2 : 3;  // "reference_wavelength"
}

std::size_t Position(IndexScheme scheme) { return static_cast<std::size_t>(scheme); }

}  // namespace

EyeColumns::EyeColumns(const Record& header, std::string file, const PartialConvention& stated, TableOptions options)
    : file_(std::move(file)), stated_(stated), options_(options) {
  std::unordered_map<std::string, std::size_t> seen;
  for (std::size_t column = 0; column < header.size(); ++column) {
    names_.emplace_back(header[column]);
    const auto [earlier, isNew] = seen.emplace(names_.back(), column);
    if (!isNew) {
      Refuse(header, column, "the column " + Quoted(names_.back()) + " is in the header twice; keep one");
    }
  }
  Sort(header);
  CheckPrescription(header);
  if (coefficients_.empty()) {
    Refuse(header, 0, "no column holds coefficients; name them Z4, Z(2,0) or c[2,-2] in the first row");
  }
  for (const IndexScheme scheme : {IndexScheme::kOsa, IndexScheme::kNoll, IndexScheme::kFringe, IndexScheme::kNamed})
    Resolve(scheme);
}

Place EyeColumns::PlaceOf(const Record& row, std::size_t column) {
  return row.size() == 0 ? Place{1, 1} : row.place(std::min(column, row.size() - 1));
}

void EyeColumns::Refuse(const Record& row, std::size_t column, const std::string& reason) const {
  throw ErrorAt(file_, PlaceOf(row, column), reason);
}

void EyeColumns::Refuse(const Record& row, std::size_t column, const std::string& before,
                        const FileError& cause) const {
  throw ErrorAt(file_, PlaceOf(row, column), before, std::make_shared<FileError>(cause));
}

void EyeColumns::Sort(const Record& header) {
  for (std::size_t column = 0; column < names_.size(); ++column) {
    std::optional<CoefficientName> coefficient;
    try {
      coefficient = ParseCoefficientName(names_[column]);
    } catch (const Error& error) {
      Refuse(header, column, "the column " + std::string(error.what()));
    }
    if (coefficient) {
      numbered_ = numbered_ || std::holds_alternative<std::size_t>(*coefficient);
      coefficients_.push_back({column, *coefficient});
    } else if (!SortPart(header, column) && !SortPrescription(header, column)) {
      if (Trimmed(names_[column]) == "name") nameColumn_ = column;
      identifiers_.push_back(column);
    }
  }
}

// False if the column does not state a part of the convention.
bool EyeColumns::SortPart(const Record& header, std::size_t column) {
  const std::string folded = Folded(names_[column]);
  const auto same = [&folded](const char* key) { return folded == key; };
  const auto* const key = std::find_if(std::begin(kPartKeys), std::end(kPartKeys), same);
  if (key != std::end(kPartKeys)) {
    const auto again = [key](const PartColumn& earlier) { return earlier.key == *key; };
    if (std::any_of(parts_.begin(), parts_.end(), again)) {
      Refuse(header, column, "the column '" + folded + "' is in the header twice; keep one");
    }
    parts_.push_back({column, *key});
    return true;
  }
  if (PrescriptionPart(folded)) return false;  // "axis" is similar to "y_axis"
  if (const auto slip = Nearest(folded, kPartKeys, MaxEdits)) {
    Refuse(header, column,
           "the column " + Quoted(names_[column]) + " is not known; did you mean '" + std::string(*slip) +
               "'? If it is your own column, rename it");
  }
  return false;
}

// False if the column is not part of a prescription.
bool EyeColumns::SortPrescription(const Record& header, std::size_t column) {
  if (!options_.prescription) return false;
  const std::optional<std::size_t> part = PrescriptionPart(Folded(names_[column]));
  if (!part) return false;
  if (prescription_[*part]) {
    Refuse(header, column,
           "the columns " + Quoted(names_[*prescription_[*part]]) + " and " + Quoted(names_[column]) +
               " both hold the " + kPrescriptionNames[*part][0] + "; keep one");
  }
  prescription_[*part] = column;
  return true;
}

void EyeColumns::CheckPrescription(const Record& header) const {
  if (!options_.prescription) return;
  const auto& [sphere, cylinder, axis] = prescription_;
  if (!sphere) {
    Refuse(header, 0, "",
           FileError(FileFix::kReadNoPrescription, "no column holds the sphere of a refraction; name it sphere, or ",
                     "read no prescription"));
  }
  if (cylinder.has_value() != axis.has_value()) {
    Refuse(header, cylinder ? *cylinder : *axis, "cylinder and axis belong together; add the column that is missing");
  }
}

std::string EyeColumns::Summary() const {
  std::vector<std::size_t> coefficients, prescription;
  for (const CoefficientColumn& coefficient : coefficients_) coefficients.push_back(coefficient.column);
  for (const auto& column : prescription_) {
    if (column) prescription.push_back(*column);
  }
  std::string summary;
  AppendColumns(summary, "read as coefficients", names_, coefficients);
  AppendColumns(summary, "added as refraction", names_, prescription);
  AppendColumns(summary, "copied", names_, identifiers_);
  return summary;
}

void EyeColumns::Resolve(IndexScheme scheme) {
  Resolved& resolved = resolved_[Position(scheme)];
  std::set<std::size_t> seen;
  for (const CoefficientColumn& coefficient : coefficients_) {
    try {
      const std::size_t j = OsaIndex(TermNamed(coefficient.name, scheme));
      if (!seen.insert(j).second) throw Error("the term " + Symbol(Term(j)) + " has a column already; keep one");
      resolved.osa.push_back(j);
    } catch (const Error& error) {
      resolved.faulty = coefficient.column;
      resolved.fault = error.what();
      return;
    }
  }
}

bool EyeColumns::HasColumnFor(const char* key) const {
  return std::any_of(parts_.begin(), parts_.end(), [key](const PartColumn& part) { return part.key == key; });
}

bool EyeColumns::MayStateReference() const { return stated_.reference || HasColumnFor(kReferenceKey); }

std::optional<IndexScheme> EyeColumns::CommonScheme() const {
  if (stated_.scheme || numbered_) return stated_.scheme;
  return IndexScheme::kNamed;
}

std::vector<std::size_t> EyeColumns::Terms() const {
  std::set<std::size_t> terms;
  for (const IndexScheme scheme : {IndexScheme::kOsa, IndexScheme::kNoll, IndexScheme::kFringe, IndexScheme::kNamed}) {
    if (numbered_ && !HasColumnFor(kOrderKey) && stated_.scheme != scheme) continue;
    const Resolved& resolved = resolved_[Position(scheme)];
    terms.insert(resolved.osa.begin(), resolved.osa.end());
  }
  return {terms.begin(), terms.end()};
}

const std::vector<std::size_t>& EyeColumns::Terms(IndexScheme scheme) const { return resolved_[Position(scheme)].osa; }

double EyeColumns::Number(const Record& row, std::size_t column) const {
  if (!options_.decimalComma && HasDecimalComma(row[column])) {
    Refuse(row, column, "column " + Quoted(names_[column]) + ": ",
           FileError(FileFix::kReadDecimalCommas, Quoted(row[column]) + " has a decimal comma; ",
                     "write it with a point"));
  }
  try {
    return ParseNumber(row[column], options_.decimalComma ? ',' : '.');
  } catch (const Error& error) {
    Refuse(row, column, "column " + Quoted(names_[column]) + ": " + error.what());
  }
}

PartialConvention EyeColumns::PartsOfRow(const Record& row) const {
  PartialConvention own;
  for (const auto& [column, key] : parts_) {
    if (Trimmed(row[column]).empty()) continue;  // not stated
    const bool isNumber = key == kPupilKey || key == kWavelengthKey || key == kReferenceKey;
    const std::string text = isNumber ? ShortestText(Number(row, column)) : std::string(row[column]);
    try {
      SetPart(own, key, text);
    } catch (const Error& error) {
      Refuse(row, column, "column " + Quoted(names_[column]) + ": " + error.what());
    }
  }
  try {
    return Combined(stated_, "the command line", own, "the table");
  } catch (const Error& error) {
    Refuse(row, parts_.front().column, error.what());
  }
}

std::optional<PowerVector> EyeColumns::PrescriptionOfRow(const Record& row) const {
  std::optional<std::size_t> empty, filled;
  for (const auto& column : prescription_) {
    if (column) (Trimmed(row[*column]).empty() ? empty : filled) = column;
  }
  if (!filled) return std::nullopt;
  if (empty) {
    Refuse(row, *empty,
           "column " + Quoted(names_[*empty]) + " is empty and column " + Quoted(names_[*filled]) +
               " is not; write 0, or leave all three empty");
  }
  Refraction refraction{Dioptres(Number(row, *prescription_[0])), Dioptres(), Degrees(180.0)};
  if (prescription_[1]) {
    refraction.cylinder = Dioptres(Number(row, *prescription_[1]));
    refraction.axis = Degrees(Number(row, *prescription_[2]));
    if (!(refraction.axis >= Degrees() && refraction.axis <= Degrees(180.0))) {
      Refuse(row, *prescription_[2],
             "column " + Quoted(names_[*prescription_[2]]) + ": an axis must be from 0 to 180 degrees");
    }
  }
  return ToPowerVector(refraction);
}

Eye EyeColumns::Read(const Record& row) const {
  if (row.size() != names_.size()) {
    Refuse(row, names_.size(),
           "the row has " + std::to_string(row.size()) + " fields, but the header has " +
               std::to_string(names_.size()) +
               (row.size() > names_.size() ? "; are there decimal commas? Write numbers with a point"
                                           : "; is the row cut off?"));
  }
  CompleteConvention complete{};
  try {
    complete = Complete(PartsOfRow(row), numbered_);
  } catch (const ErrorAt&) {
    throw;
  } catch (const Error& error) {
    Refuse(row, 0, error.what());
  }
  const Resolved& resolved = resolved_[Position(complete.convention.scheme)];
  if (resolved.faulty)
    Refuse(row, *resolved.faulty, "column " + Quoted(names_[*resolved.faulty]) + ": " + resolved.fault);
  Eye eye;
  eye.file = file_;
  if (nameColumn_) eye.name = VisibleText(row[*nameColumn_]);
  eye.pupil = complete.pupil;
  eye.side = complete.side;
  eye.referenceWavelength = complete.reference;
  Coefficients numbers(1 + *std::max_element(resolved.osa.begin(), resolved.osa.end()));
  for (std::size_t i = 0; i < coefficients_.size(); ++i) {
    numbers[resolved.osa[i]] = Number(row, coefficients_[i].column);
  }
  eye.coefficients = {complete.convention, std::move(numbers)};
  eye.prescription = PrescriptionOfRow(row);
  return eye;
}

EyeTable::EyeTable(std::istream& stream, std::string file, TableKind kind, const PartialConvention& stated,
                   TableOptions options)
    : file_(std::move(file)), stated_(stated), options_(options) {
  if (kind == TableKind::kCsv) {
    csv_.emplace(stream, file_, options.decimalComma);
  } else if (options.decimalComma) {
    throw FileError(FileFix::kReadDecimalPoints, file_ + ": numbers of JSON have a decimal point; ",
                    "expect no decimal commas");
  } else {
    ndjson_.emplace(stream, file_);
  }
  ReadHeader();
}

void EyeTable::ReadHeader() {
  const bool found = csv_ ? csv_->Next(header_) : ndjson_->Next(header_, row_);
  if (!found) throw ErrorAt(file_, {1, 1}, "the table is empty; its first row names the columns");
  firstRowRead_ = ndjson_.has_value();
  columns_ = std::make_unique<EyeColumns>(header_, file_, stated_, options_);
  for (const std::size_t column : columns_->identifiers()) {
    slots_.push_back(identifierNames_.size());
    identifierNames_.push_back(columns_->names()[column]);
    if (ndjson_) slotOf_.emplace(identifierNames_.back(), slots_.back());
  }
}

bool EyeTable::NextRow() {
  if (csv_) return csv_->Next(row_);
  if (std::exchange(firstRowRead_, false)) return true;
  if (!ndjson_->Next(header_, row_)) return false;
  // Parsed again only if the keys differ from the last row.
  bool same = header_.size() == columns_->names().size();
  for (std::size_t i = 0; same && i < header_.size(); ++i) same = header_[i] == columns_->names()[i];
  if (!same) UnderstandKeys();
  return true;
}

void EyeTable::UnderstandKeys() {
  auto columns = std::make_unique<EyeColumns>(header_, file_, stated_, options_);
  std::vector<std::size_t> slots;
  for (const std::size_t column : columns->identifiers()) {
    const std::string& name = columns->names()[column];
    const auto found = slotOf_.find(name);
    if (found == slotOf_.end()) {
      throw ErrorAt(file_, row_.place(column),
                    "key " + Quoted(name) + " is not in the first row; add it there to keep it");
    }
    slots.push_back(found->second);
  }
  columns_ = std::move(columns);
  slots_ = std::move(slots);
}

// Copies the identifiers that could be read from an invalid row. In CSV, the last field is the invalid one.
void EyeTable::IdentifyFaulty(TableEye& eye) const {
  for (std::size_t i = 0; csv_ && i < slots_.size(); ++i) {
    const std::size_t column = columns_->identifiers()[i];
    if (column + 1 < row_.size()) eye.identifiers[slots_[i]] = row_[column];
  }
  for (std::size_t column = 0; ndjson_ && column < header_.size(); ++column) {
    const auto slot = slotOf_.find(std::string(header_[column]));
    if (slot != slotOf_.end()) eye.identifiers[slot->second] = row_[column];
  }
}

bool EyeTable::Next(TableEye& eye) {
  eye.line = 0;
  eye.identifiers.assign(identifierNames_.size(), {});
  try {
    if (!NextRow()) return false;
  } catch (const ErrorAt&) {
    IdentifyFaulty(eye);
    throw;
  }
  eye.line = row_.line();
  for (std::size_t i = 0; i < slots_.size(); ++i) {
    const std::size_t column = columns_->identifiers()[i];
    if (column < row_.size()) eye.identifiers[slots_[i]] = row_[column];
  }
  eye.eye = columns_->Read(row_);
  return true;
}

bool EyeTable::Skip() { return NextRow(); }

}  // namespace orvanel::files
