// Writes eyes as CSV rows.
#include "files/tables/eye_writer.h"

#include <algorithm>
#include <cstdlib>
#include <set>
#include <utility>

#include "base/error.h"
#include "base/number_text.h"
#include "eye/conventions/column_name.h"
#include "eye/conventions/partial_convention.h"
#include "files/tables/csv.h"

namespace orvanel::files {
namespace {

std::string Line(const std::vector<std::string>& fields) {
  std::string line;
  for (const std::string& field : fields) {
    line += CsvField(field);
    line += ',';
  }
  line.back() = '\n';
  return line;
}

}  // namespace

EyeWriter::EyeWriter(std::vector<std::string> identifierNames, IndexScheme scheme,
                     const std::vector<std::size_t>& terms, bool withReference)
    : identifierNames_(std::move(identifierNames)), scheme_(scheme), withReference_(withReference) {
  for (const std::size_t j : terms) {
    if (scheme != IndexScheme::kFringe || FringeIndex(Term(j))) terms_.push_back(j);
  }
}

std::string EyeWriter::Header() const {
  std::vector<std::string> names = identifierNames_;
  names.insert(names.end(), {kPupilKey, kSideKey, kUnitKey, kWavelengthKey, kNormalisationKey, kOrderKey, kYAxisKey});
  if (withReference_) names.emplace_back(kReferenceKey);
  for (const std::size_t j : terms_) names.push_back(NameIn(scheme_, Term(j)));
  return Line(names);
}

std::string EyeWriter::Row(const Eye& eye, const std::vector<std::string>& identifiers) const {
  const Convention& convention = eye.coefficients.convention();
  const Coefficients coefficients = eye.coefficients.AsStated();
  if (const auto term = TermWithoutPlace(scheme_, coefficients)) {
    throw Error("the term " + Symbol(*term) + ", " + Name(*term) + ", is not 0 and has no number in the index scheme " +
                std::string(Word(scheme_)) + "; convert to another, such as named");
  }
  for (std::size_t j = 0; j < coefficients.size(); ++j) {
    if (coefficients[j] != 0.0 && !std::binary_search(terms_.begin(), terms_.end(), j)) {
      throw Error("the term " + Symbol(Term(j)) + " is not 0 and is not in the first row; add it there");
    }
  }
  if (eye.referenceWavelength && !withReference_) {
    throw Error(std::string(kReferenceKey) + " is stated and is not in the first row; add it there");
  }
  std::vector<std::string> fields = identifiers;
  fields.push_back(ShortestText(eye.pupil.value()));
  fields.emplace_back(Word(eye.side));
  fields.emplace_back(Word(convention.unit));
  fields.push_back(convention.unit == Unit::kWaves ? ShortestText(convention.wavelength.value()) : "");
  fields.emplace_back(Word(convention.normalisation));
  fields.emplace_back(Word(scheme_));
  fields.emplace_back(Word(convention.yAxis));
  if (withReference_) {
    fields.push_back(eye.referenceWavelength ? ShortestText(eye.referenceWavelength->value()) : "");
  }
  for (const std::size_t j : terms_) {
    fields.push_back(ShortestText(j < coefficients.size() ? coefficients[j] : 0.0));
  }
  return Line(fields);
}

std::vector<std::size_t> WithLowerOrders(const std::vector<std::size_t>& terms) {
  std::set<std::size_t> all;
  for (const std::size_t j : terms) {
    const auto [n, m] = Term(j);
    for (int k = std::abs(m); k <= n; k += 2) all.insert(OsaIndex({k, m}));
  }
  return {all.begin(), all.end()};
}

}  // namespace orvanel::files
