// Implements a scanner for clinical notation, and formats prescriptions.
#include "eye/prescription.h"

#include <algorithm>
#include <initializer_list>
#include <optional>
#include <vector>

#include "base/number_text.h"
#include "base/split.h"
#include "eye/errors.h"

namespace orvanel::eye {
namespace {

constexpr std::string_view kMinusSign = "\u2212", kTimesSign = "\u00d7", kDegreeSign = "\u00b0";

// A whole number from 1 to 180. A cylinder that rounds to 0 gets the axis 180.
std::string AxisText(const Refraction& refraction) {
  const std::string axis = FixedText(refraction.axis.value(), 0);
  return axis == "0" || SignedText(refraction.cylinder) == "0.00" ? "180" : axis;
}

char Lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

// Reads a text piece by piece, and skips blanks before each piece.
class Scanner {
 public:
  explicit Scanner(std::string_view text) : rest_(text) {}

  bool IsAtEnd() {
    SkipBlanks();
    return rest_.empty();
  }

  // Takes the first of these words that the text continues with, in upper or lower case.
  bool Take(std::initializer_list<std::string_view> words) {
    SkipBlanks();
    for (const std::string_view word : words) {
      const std::string_view next = rest_.substr(0, word.size());
      if (!std::equal(word.begin(), word.end(), next.begin(), next.end(),
                      [](char a, char b) { return a == Lower(b); })) {
        continue;
      }
      rest_.remove_prefix(word.size());
      return true;
    }
    return false;
  }

  bool IsAtSign() {
    SkipBlanks();
    return rest_.starts_with('-') || rest_.starts_with('+') || rest_.starts_with(kMinusSign);
  }

  // Takes a number without exponent, if one is next.
  std::optional<double> TakeNumber() {
    SkipBlanks();
    std::string number;
    std::string_view rest = rest_;
    if (rest.starts_with(kMinusSign)) {
      number = "-";
      rest.remove_prefix(kMinusSign.size());
    } else if (rest.starts_with('-') || rest.starts_with('+')) {
      number = rest.front();
      rest.remove_prefix(1);
    }
    const std::size_t length = std::min(rest.find_first_not_of("0123456789."), rest.size());
    if (length == 0) return std::nullopt;
    number += rest.substr(0, length);
    rest_ = rest.substr(length);
    return ParseNumber(number);
  }

 private:
  void SkipBlanks() { rest_.remove_prefix(std::min(rest_.find_first_not_of(" \t"), rest_.size())); }

  std::string_view rest_;
};

// True if a text has characters that a list of numbers does not have.
bool IsClinical(std::string_view text) { return text.find_first_not_of("+-0123456789.,eE") != std::string_view::npos; }

// "-2.25/-0.75x170" and similar, or only the sphere.
Refraction ParseClinical(std::string_view text) {
  if (!IsClinical(text)) return {Dioptres(ParseNumber(text)), Dioptres(), Degrees(180.0)};
  Scanner scanner(text);
  std::optional<double> sphere = scanner.Take({"plano", "pl"}) ? 0.0 : scanner.TakeNumber();
  if (!sphere) throw InvalidPrescription(PrescriptionProblem::kMalformed, text);
  scanner.Take({"ds", "sph", "d"});
  if (scanner.IsAtEnd()) return {Dioptres(*sphere), Dioptres(), Degrees(180.0)};
  scanner.Take({"/"});
  const bool hasSign = scanner.IsAtSign();
  const std::optional<double> cylinder = scanner.TakeNumber();
  if (!cylinder) throw InvalidPrescription(PrescriptionProblem::kMalformed, text);
  if (!hasSign && *cylinder != 0.0) throw InvalidPrescription(PrescriptionProblem::kCylinderWithoutSign, text);
  scanner.Take({"dc", "cyl", "d"});
  if (!scanner.Take({"x", kTimesSign, "axis", "ax"})) {
    throw InvalidPrescription(PrescriptionProblem::kCylinderWithoutAxis, text);
  }
  const std::optional<double> axis = scanner.TakeNumber();
  scanner.Take({kDegreeSign});
  if (!axis || !scanner.IsAtEnd()) throw InvalidPrescription(PrescriptionProblem::kMalformed, text);
  return {Dioptres(*sphere), Dioptres(*cylinder), Degrees(*axis)};
}

Millimetres ParseVertex(std::string_view text) {
  Scanner scanner(text);
  const std::optional<double> vertex = scanner.TakeNumber();
  scanner.Take({"mm"});
  if (!vertex || !scanner.IsAtEnd()) throw InvalidPrescription(PrescriptionProblem::kMalformedVertex, text);
  return VertexDistance(*vertex);
}

}  // namespace

Millimetres VertexDistance(double mm) {
  constexpr double kNearest = 1.0, kFarthest = 30.0;
  if (mm != 0.0 && !(mm >= kNearest && mm <= kFarthest)) throw VertexOutOfRange(Millimetres(mm));
  return Millimetres(mm);
}

Refraction AtCornea(const Lens& lens) {
  const double metres = lens.vertex.value() * 1e-3;
  const auto effective = [&](Dioptres power) {
    const double rest = 1.0 - metres * power.value();
    if (!(rest > 0.0)) throw FocusInFrontOfCornea(power, lens.vertex);
    return power / rest;
  };
  const Refraction& power = lens.power;
  const Dioptres sphere = effective(power.sphere);
  return {sphere, effective(power.sphere + power.cylinder) - sphere, power.axis};
}

Refraction ParseRefraction(std::string_view text) {
  const std::vector<std::string_view> parts = Split(text);
  if (parts.size() > 1 && text.find_first_of("/xX") != std::string_view::npos) {
    throw InvalidPrescription(PrescriptionProblem::kMixedNotations, text);
  }
  Refraction refraction;
  if (parts.size() == 1) {
    refraction = ParseClinical(text);
  } else if (parts.size() == 3) {
    refraction = {Dioptres(ParseNumber(parts[0])), Dioptres(ParseNumber(parts[1])), Degrees(ParseNumber(parts[2]))};
  } else {
    throw InvalidPrescription(PrescriptionProblem::kMalformed, text);
  }
  if (!(refraction.axis >= Degrees(0.0) && refraction.axis <= Degrees(180.0))) {
    throw AxisOutOfRange(refraction.axis);
  }
  return refraction;
}

Lens ParseLens(std::string_view text) {
  const std::vector<std::string_view> parts = Split(text);
  const bool apart = parts.size() == 4 || (parts.size() > 1 && parts.back().find("mm") != std::string_view::npos) ||
                     (parts.size() == 2 && IsClinical(parts.front()));
  if (!apart) {
    if (parts.size() == 2) throw InvalidPrescription(PrescriptionProblem::kCylinderOrVertex, text);
    return {ParseRefraction(text), Millimetres()};
  }
  return {ParseRefraction(text.substr(0, text.rfind(','))), ParseVertex(parts.back())};
}

std::string SignedText(Dioptres power) {
  std::string text = FixedText(power.value(), 2);
  if (text == "-0.00") text = "0.00";
  return power > Dioptres(0.0) && text != "0.00" ? "+" + text : text;
}

std::string Text(const Refraction& refraction) {
  return SignedText(refraction.sphere) + " D sphere, " + SignedText(refraction.cylinder) + " D cylinder, axis " +
         AxisText(refraction);
}

std::string PrescriptionText(const Refraction& refraction) {
  const std::string sphere = SignedText(refraction.sphere), cylinder = SignedText(refraction.cylinder);
  if (cylinder != "0.00") return sphere + "/" + cylinder + "x" + AxisText(refraction);
  return sphere == "0.00" ? "plano" : sphere + " DS";
}

}  // namespace orvanel::eye
