// Formats the table of coefficients, and the lines of RMS and refraction below it.
#include "cli/coefficient_report.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "base/number_text.h"
#include "cli/console/report.h"
#include "eye/conventions/column_name.h"
#include "eye/rms.h"

namespace orvanel::cli {
namespace {

std::string Padded(const std::string& text, std::size_t width) {
  return text + std::string(width > text.size() ? width - text.size() : 0, ' ');
}

std::string RightAligned(const std::string& text, std::size_t width) {
  return std::string(width > text.size() ? width - text.size() : 0, ' ') + text;
}

// Modes in the order of their numbers.
std::vector<std::size_t> InOrder(IndexScheme scheme, std::size_t count) {
  std::vector<std::size_t> terms;
  for (std::size_t j = 0; j < count; ++j) {
    if (scheme != IndexScheme::kFringe || FringeIndex(Term(j))) terms.push_back(j);
  }
  const auto number = [scheme](std::size_t j) {
    if (scheme == IndexScheme::kNoll) return NollIndex(Term(j));
    return scheme == IndexScheme::kFringe ? *FringeIndex(Term(j)) : j;
  };
  std::sort(terms.begin(), terms.end(), [&](std::size_t a, std::size_t b) { return number(a) < number(b); });
  return terms;
}

std::string TermLine(const std::string& name, const std::string& n, const std::string& m, const std::string& value,
                     const std::string& words) {
  return "  " + Padded(name, 10) + RightAligned(n, 3) + RightAligned(m, 5) + "  " + Padded(value, 24) + words + "\n";
}

std::string TermLines(const Convention& convention, const Coefficients& coefficients) {
  std::string lines = TermLine("term", "n", "m", UnitText(convention), "name");
  for (const std::size_t j : InOrder(convention.scheme, coefficients.size())) {
    const ZernikeTerm term = Term(j);
    lines += TermLine(NameIn(convention.scheme, term), std::to_string(term.n), std::to_string(term.m),
                      ShortestText(coefficients[j]), Name(term));
  }
  return lines;
}

std::string RmsLines(const Coefficients& osa) {
  const int highest = osa.empty() ? 0 : Term(osa.size() - 1).n;
  const auto rms = [&osa](int first, int last) { return NumberText(Rms(osa, first, last).value(), 4) + " um"; };
  std::string lines, label = "RMS";
  for (int n = 1; n <= highest; ++n) {
    lines += ReportLine(std::exchange(label, ""), "order " + Padded(std::to_string(n), 4) + rms(n, n) +
                                                      (n == 1 ? ", tilts, which only move the image" : ""));
  }
  lines += ReportLine(label, "total     " + rms(kLowestOrderThatBlurs, kLargestOrder) + ", orders 2 and above");
  return lines + ReportLine("", "higher    " + rms(kLowestHigherOrder, kLargestOrder) + ", orders 3 and above");
}

}  // namespace

std::string EyeLines(const Eye& measured, const std::vector<std::string>& changes) {
  std::string lines = ReportLine(
      "Eye", (measured.name.empty() ? measured.file : measured.name) + ", laterality " + SideText(measured.side));
  const std::optional<Nanometres> reference = measured.referenceWavelength;
  lines += ReportLine("Measured",
                      "over " + NumberText(measured.pupil.value(), 6) + " mm, in " +
                          Text(measured.coefficients.convention()) +
                          (reference ? ", reference wavelength " + ShortestText(reference->value()) + " nm" : ""));
  std::string label = "Changes";
  for (const std::string& change : changes) lines += ReportLine(std::exchange(label, ""), change);
  return lines;
}

std::string RefractionLines(const Eye& eye, CylinderSign sign) {
  const Coefficients& osa = eye.coefficients.osa();
  const auto text = [sign](const PowerVector& powers) { return Text(ToRefraction(powers, sign)); };
  return ReportLine("Refraction", text(LeastSquaresRefraction(osa, eye.pupil)) + " (least squares)") +
         ReportLine("", text(ParaxialRefraction(osa, eye.pupil)) + " (paraxial)");
}

std::string CoefficientReport(const Eye& eye, CylinderSign sign) {
  const Convention& convention = eye.coefficients.convention();
  const Coefficients stated = eye.coefficients.AsStated();
  // Throws if a mode has no number.
  if (convention.scheme != IndexScheme::kNamed) ToList(convention.scheme, stated);
  return ReportLine("Coefficients", "over " + NumberText(eye.pupil.value(), 6) + " mm, laterality " +
                                        SideText(eye.side) + ", in " + Text(convention)) +
         TermLines(convention, stated) + RmsLines(eye.coefficients.osa()) + RefractionLines(eye, sign);
}

}  // namespace orvanel::cli
