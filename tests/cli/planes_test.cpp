// Tests the descriptions of the planes.
#include "cli/planes.h"

#include <gtest/gtest.h>

#include <map>
#include <set>

#include "tests/evaluation/simulated_eyes.h"

namespace orvanel::cli {
namespace {

const Request kRequest = {Millimetres(4.5), {{0.7, Gap::kLeft}, {1.9, Gap::kDown}}, {}, 3};

SimulatedEye WithPicture() {
  SimulatedEye simulated = Simulated(AsymmetricEye(), kRequest.rings);
  ObjectPicture object;
  for (const double light : {0.2, 0.4, 0.8}) object.channels.emplace_back(ORVANEL_GRID_SIZE, ORVANEL_GRID_SIZE, light);
  simulated.results.picture = RetinalPictureOf(simulated.eye, object);
  return simulated;
}

TEST(Planes, HaveNamesOfTheirOwnAlsoWithoutSigns) {
  Request request = kRequest;
  request.rings = {{0.5, Gap::kUp},  {5.0, Gap::kUp}, {0.005, Gap::kUp},
                   {1e-5, Gap::kUp}, {8.0, Gap::kUp}, {1e-20, Gap::kUp}};
  std::set<std::string> names, identifiers;
  for (const PlaneSource& source : PlaneSources(request)) {
    EXPECT_TRUE(names.insert(source.name).second) << source.name;
    std::string identifier = source.name;
    std::erase(identifier, '+');
    for (char& c : identifier) c = c == '.' || c == '-' ? '_' : c;
    EXPECT_TRUE(identifiers.insert(identifier).second) << identifier;
  }
}

TEST(Planes, AreThoseOfTheirNames) {
  const SimulatedEye simulated = WithPicture();
  const std::map<std::string, const Plane*> expected = {
      {"wavefront", &simulated.results.wavefront.map},
      {"ring_acuity-1.782_gap-down_seen", &simulated.results.rings[1].seen},
      {"picture_original_red", &simulated.results.picture->object.channels[0]},
      {"picture_seen_green", &simulated.results.picture->seen[1]},
      {"picture_contrast_kept_blue", &simulated.results.picture->contrastKept[2]}};
  std::size_t found = 0;
  for (const PlaneSource& source : PlaneSources(kRequest)) {
    const auto plane = expected.find(source.name);
    if (plane == expected.end()) continue;
    ++found;
    EXPECT_EQ(PlaneOf(source, simulated).samples, plane->second) << source.name;
  }
  EXPECT_EQ(found, expected.size());
  EXPECT_EQ(PlaneSources(kRequest).size(), 6U + 2 * 2 + 3 * 3);
}

TEST(Planes, TheExaminerSeesPupilAndRetinaAndThePatientAllElse) {
  SimulatedEye simulated = WithPicture();
  simulated.eye.side = Side::kOd;
  for (const PlaneSource& source : PlaneSources(kRequest)) {
    const NamedPlane plane = PlaneOf(source, simulated);
    const std::string view = std::get<std::string>(plane.view.at(0).value);
    EXPECT_EQ(plane.view[0].name, "view");
    if (source.name == "wavefront" || source.name == "psf") {
      EXPECT_EQ(view, Description(source.name == "psf" ? View::kRetina : View::kPupil));
      ASSERT_EQ(plane.view.size(), 2U);
      EXPECT_EQ(plane.view[1].name, "nasal_side");
      EXPECT_EQ(std::get<std::string>(plane.view[1].value), "right");
    } else if (source.name == "mtf") {
      EXPECT_EQ(view, Description(View::kRetina));
      EXPECT_EQ(plane.view.size(), 1U);
    } else {
      EXPECT_EQ(view, Description(View::kPatient)) << source.name;
      ASSERT_EQ(plane.view.size(), 2U);
      EXPECT_EQ(plane.view[1].name, "nasal_field_side");
      EXPECT_EQ(std::get<std::string>(plane.view[1].value), "left");
    }
  }
  simulated.eye.side = Side::kUnknown;
  for (const PlaneSource& source : PlaneSources(kRequest)) EXPECT_EQ(PlaneOf(source, simulated).view.size(), 1U);
}

TEST(Planes, SpacingsAreThoseOfTheirDomain) {
  const SimulatedEye simulated = WithPicture();
  const auto value = [](const NamedPlane& plane, std::size_t i) {
    return std::get<double>(plane.spacings.at(i).value);
  };
  for (const PlaneSource& source : PlaneSources(kRequest)) {
    const NamedPlane plane = PlaneOf(source, simulated);
    if (source.name == "wavefront") {
      EXPECT_EQ(plane.spacings[0].name, "sample_spacing_mm");
      EXPECT_EQ(value(plane, 0), 4.5 / 128.0);  // 128 intervals across the pupil
      EXPECT_DOUBLE_EQ(plane.samplesPerCm, 1280.0 / 4.5);
    } else if (source.name == "mtf") {
      EXPECT_EQ(plane.spacings[1].name, "sample_spacing_cpd_optical_scale");
      EXPECT_EQ(value(plane, 1), simulated.results.scales.optical.step.value());
      EXPECT_EQ(plane.samplesPerCm, 0.0);
    } else {
      EXPECT_EQ(plane.spacings[0].name, "sample_spacing_arcmin_library_scale");
      EXPECT_EQ(value(plane, 0), simulated.results.scales.library.pitch.value());
      EXPECT_DOUBLE_EQ(value(plane, 2), simulated.results.scales.library.halfWidth.value() / 128.0);
      EXPECT_DOUBLE_EQ(plane.samplesPerCm, 10.0 / value(plane, 2));
    }
  }
}

}  // namespace
}  // namespace orvanel::cli
