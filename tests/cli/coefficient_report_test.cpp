// Tests the text of the report on coefficients.
#include "cli/coefficient_report.h"

#include <gtest/gtest.h>

#include "base/error.h"
#include "tests/eye/eyes.h"

namespace orvanel::cli {
namespace {

Eye Lopsided() {
  Eye eye;
  eye.name = "Lopsided";
  eye.pupil = Millimetres(4.0);
  eye.side = Side::kOs;
  eye.coefficients = {kOsaConvention, {0, 0, 0, 0, 0.5, 0, 0, -0.3, 0.4}};
  return eye;
}

TEST(CoefficientReport, NamesTermsAndSumsThemUp) {
  EXPECT_EQ(CoefficientReport(Lopsided(), CylinderSign::kMinus),
            "Coefficients    over 4 mm, laterality OS, in um, orthonormal, index scheme osa, y up\n"
            "  term        n    m  um                      name\n"
            "  Z0          0    0  0                       piston\n"
            "  Z1          1   -1  0                       vertical tilt\n"
            "  Z2          1    1  0                       horizontal tilt\n"
            "  Z3          2   -2  0                       oblique astigmatism\n"
            "  Z4          2    0  0.5                     defocus\n"
            "  Z5          2    2  0                       vertical astigmatism\n"
            "  Z6          3   -3  0                       vertical trefoil\n"
            "  Z7          3   -1  -0.3                    vertical coma\n"
            "  Z8          3    1  0.4                     horizontal coma\n"
            "RMS             order 1   0 um, tilts, which only move the image\n"
            "                order 2   0.5 um\n"
            "                order 3   0.5 um\n"
            "                total     0.7071 um, orders 2 and above\n"
            "                higher    0.5 um, orders 3 and above\n"
            "Refraction      -0.87 D sphere, 0.00 D cylinder, axis 180 (least squares)\n"
            "                -0.87 D sphere, 0.00 D cylinder, axis 180 (paraxial)\n");
}

TEST(CoefficientReport, ListsTermsInTheirOrder) {
  Eye eye = Lopsided();
  Convention convention = kOsaConvention;
  convention.scheme = IndexScheme::kNoll;
  eye.coefficients.Restate(convention);
  const std::string report = CoefficientReport(eye, CylinderSign::kMinus);
  EXPECT_LT(report.find("Z7          3   -1  -0.3"), report.find("Z8          3    1  0.4"));
  EXPECT_LT(report.find("Z1 "), report.find("Z4 "));
}

TEST(CoefficientReport, RefusesATermWithoutANumber) {
  Eye eye = Lopsided();
  Convention convention = kOsaConvention;
  convention.scheme = IndexScheme::kFringe;
  eye.coefficients.Restate(convention);
  EXPECT_NO_THROW(CoefficientReport(eye, CylinderSign::kMinus));
  SetTerm(eye, 27, 0.1);
  EXPECT_THROW(CoefficientReport(eye, CylinderSign::kMinus), Error);
}

TEST(CoefficientReport, BeginsWithTheEyeAsMeasuredAndWhatWasDone) {
  EXPECT_EQ(EyeLines(Lopsided(), {"this", "that"}),
            "Eye             Lopsided, laterality OS\n"
            "Measured        over 4 mm, in um, orthonormal, index scheme osa, y up\n"
            "Changes         this\n"
            "                that\n");
}

}  // namespace
}  // namespace orvanel::cli
