// The header is understood once, each row only converted.
#include "cli/tables/eye_table.h"

#include <algorithm>
#include <set>
#include <unordered_map>
#include <utility>

#include "cli/number_text.h"
#include "cli/spelling.h"
#include "cli/visible_text.h"

namespace orvanel::cli {
namespace {

constexpr const char* kStatementKeys[] = {kUnitKey,  kWavelengthKey, kNormalisationKey, kOrderKey,
                                          kYAxisKey, kSideKey,       kPupilKey};

bool IsStatement(std::string_view name) {
  return std::find(std::begin(kStatementKeys), std::end(kStatementKeys), name) != std::end(kStatementKeys);
}

// A column that is nearly one of ours would be taken for the user's own and silently left out.
std::size_t MostEdits(std::size_t length) { return length < 6 ? 1 : 2; }

std::size_t Position(Order order) { return static_cast<std::size_t>(order); }

}  // namespace

EyeColumns::EyeColumns(const Record& header, std::string file, const Statement& stated)
    : file_(std::move(file)), stated_(stated) {
  std::unordered_map<std::string, std::size_t> seen;
  for (std::size_t column = 0; column < header.size(); ++column) {
    names_.emplace_back(header[column]);
    const auto [earlier, isNew] = seen.emplace(names_.back(), column);
    if (!isNew) {
      Refuse(header, column, "the column " + Quoted(names_.back()) + " stands in the header twice; keep one");
    }
  }
  Sort(header);
  if (coefficients_.empty()) {
    Refuse(header, 0, "no column holds coefficients; name them Z4, Z(2,0) or c[2,-2] in the first row");
  }
  for (const Order order : {Order::kOsa, Order::kNoll, Order::kFringe, Order::kNamed}) Resolve(order);
}

void EyeColumns::Refuse(const Record& row, std::size_t column, const std::string& reason) const {
  throw ErrorAt(file_, row.size() == 0 ? Place{1, 1} : row.place(std::min(column, row.size() - 1)), reason);
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
    } else if (IsStatement(names_[column])) {
      statements_.push_back(column);
    } else {
      if (const auto slip = Nearest(names_[column], kStatementKeys, MostEdits)) {
        Refuse(header, column,
               "the column " + Quoted(names_[column]) + " is not known; did you mean '" + std::string(*slip) +
                   "'? If it is your own, give it another name");
      }
      if (names_[column] == "name") nameColumn_ = column;
      identifiers_.push_back(column);
    }
  }
}

void EyeColumns::Resolve(Order order) {
  Resolved& resolved = resolved_[Position(order)];
  std::set<std::size_t> seen;
  for (const CoefficientColumn& coefficient : coefficients_) {
    try {
      const std::size_t j = OsaIndex(TermNamed(coefficient.name, order));
      if (!seen.insert(j).second) throw Error("the term " + Symbol(Term(j)) + " has a column already; keep one");
      resolved.osa.push_back(j);
    } catch (const Error& error) {
      resolved.faulty = coefficient.column;
      resolved.fault = error.what();
      return;
    }
  }
}

bool EyeColumns::HasOrderColumn() const {
  return std::any_of(statements_.begin(), statements_.end(),
                     [this](std::size_t column) { return names_[column] == kOrderKey; });
}

std::optional<Order> EyeColumns::CommonOrder() const {
  if (stated_.order || numbered_) return stated_.order;
  return Order::kNamed;
}

std::vector<std::size_t> EyeColumns::Terms() const {
  std::set<std::size_t> terms;
  for (const Order order : {Order::kOsa, Order::kNoll, Order::kFringe, Order::kNamed}) {
    if (numbered_ && !HasOrderColumn() && stated_.order != order) continue;
    const Resolved& resolved = resolved_[Position(order)];
    terms.insert(resolved.osa.begin(), resolved.osa.end());
  }
  return {terms.begin(), terms.end()};
}

const std::vector<std::size_t>& EyeColumns::Terms(Order order) const { return resolved_[Position(order)].osa; }

Statement EyeColumns::StatementOfRow(const Record& row) const {
  Statement own;
  for (const std::size_t column : statements_) {
    if (row[column].empty()) continue;  // not stated
    try {
      State(own, names_[column], row[column]);
    } catch (const Error& error) {
      Refuse(row, column, "column '" + names_[column] + "': " + error.what());
    }
  }
  try {
    return Combined(stated_, "the command line", own, "the table");
  } catch (const Error& error) {
    Refuse(row, statements_.front(), error.what());
  }
}

Eye EyeColumns::Read(const Record& row) const {
  if (row.size() != names_.size()) {
    Refuse(row, names_.size(),
           "the row has " + std::to_string(row.size()) + " fields where the header has " +
               std::to_string(names_.size()) +
               (row.size() > names_.size() ? "; are there decimal commas? Write numbers with a point"
                                           : "; is the row cut off?"));
  }
  StatedConvention complete{};
  try {
    complete = Complete(StatementOfRow(row), numbered_);
  } catch (const ErrorAt&) {
    throw;
  } catch (const Error& error) {
    Refuse(row, 0, error.what());
  }
  const Resolved& resolved = resolved_[Position(complete.convention.order)];
  if (resolved.faulty)
    Refuse(row, *resolved.faulty, "column " + Quoted(names_[*resolved.faulty]) + ": " + resolved.fault);
  Eye eye;
  eye.file = file_;
  if (nameColumn_) eye.name = VisibleText(row[*nameColumn_]);
  eye.pupil = complete.pupil;
  eye.side = complete.side;
  eye.convention = complete.convention;
  eye.coefficients.resize(1 + *std::max_element(resolved.osa.begin(), resolved.osa.end()));
  for (std::size_t i = 0; i < coefficients_.size(); ++i) {
    const std::size_t column = coefficients_[i].column;
    try {
      eye.coefficients[resolved.osa[i]] = ParseNumber(row[column]);
    } catch (const Error& error) {
      Refuse(row, column, "column " + Quoted(names_[column]) + ": " + error.what());
    }
  }
  return eye;
}

EyeTable::EyeTable(std::istream& stream, std::string file, TableKind kind, const Statement& stated)
    : file_(std::move(file)), stated_(stated) {
  if (kind == TableKind::kCsv) {
    csv_.emplace(stream, file_);
  } else {
    ndjson_.emplace(stream, file_);
  }
  ReadHeader();
}

void EyeTable::ReadHeader() {
  const bool found = csv_ ? csv_->Next(header_) : ndjson_->Next(header_, row_);
  if (!found) throw ErrorAt(file_, {1, 1}, "the table is empty; its first row names the columns");
  firstRowRead_ = ndjson_.has_value();
  columns_ = std::make_unique<EyeColumns>(header_, file_, stated_);
  for (const std::size_t column : columns_->identifiers()) {
    slots_.push_back(identifierNames_.size());
    identifierNames_.push_back(columns_->names()[column]);
  }
}

bool EyeTable::NextRow() {
  if (csv_) return csv_->Next(row_);
  if (std::exchange(firstRowRead_, false)) return true;
  if (!ndjson_->Next(header_, row_)) return false;
  // Understood anew only where the keys have changed.
  bool same = header_.size() == columns_->names().size();
  for (std::size_t i = 0; same && i < header_.size(); ++i) same = header_[i] == columns_->names()[i];
  if (!same) UnderstandKeys();
  return true;
}

void EyeTable::UnderstandKeys() {
  auto columns = std::make_unique<EyeColumns>(header_, file_, stated_);
  std::vector<std::size_t> slots;
  for (const std::size_t column : columns->identifiers()) {
    const std::string& name = columns->names()[column];
    const auto found = std::find(identifierNames_.begin(), identifierNames_.end(), name);
    if (found == identifierNames_.end()) {
      throw ErrorAt(file_, row_.place(column),
                    "key " + Quoted(name) + " does not stand in the first row; add it there, if it is to be kept");
    }
    slots.push_back(static_cast<std::size_t>(found - identifierNames_.begin()));
  }
  columns_ = std::move(columns);
  slots_ = std::move(slots);
}

bool EyeTable::Next(TableEye& eye) {
  eye.line = 0;
  eye.identifiers.assign(identifierNames_.size(), {});
  if (!NextRow()) return false;
  eye.line = row_.line();
  for (std::size_t i = 0; i < slots_.size(); ++i) {
    const std::size_t column = columns_->identifiers()[i];
    if (column < row_.size()) eye.identifiers[slots_[i]] = row_[column];
  }
  eye.eye = columns_->Read(row_);
  return true;
}

bool EyeTable::Skip() { return NextRow(); }

}  // namespace orvanel::cli
