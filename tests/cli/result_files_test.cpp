// Tests the list of files of a run.
#include "cli/result_files.h"

#include <gtest/gtest.h>

#include <set>

#include "base/error.h"
#include "files/pictures/picture_pixels.h"
#include "files/pictures/png.h"
#include "files/planes/npy.h"
#include "tests/evaluation/simulated_eyes.h"

namespace orvanel::cli {
namespace {

constexpr Millimetres kPupil{4.5};  // of the asymmetric eye; the rings have 65 and 25 samples
const std::vector<RingRequest> kRings = {{0.7, Gap::kLeft}, {1.9, Gap::kDown}};

std::set<std::string> NamesOf(const std::vector<ResultFile>& files) {
  std::set<std::string> names;
  for (const ResultFile& file : files) EXPECT_TRUE(names.insert(file.name).second) << file.name << " comes twice";
  return names;
}

TEST(Results, HoldEveryPictureAndTheSummary) {
  EXPECT_EQ(NamesOf(ResultFiles({kPupil, kRings, {}, 0})),
            (std::set<std::string>{"chart.png", "mtf.png", "mtf_sections.png", "overview.png", "psf.png", "psf_log.png",
                                   "ring_acuity-0.6855_gap-left_original.png", "ring_acuity-0.6855_gap-left_seen.png",
                                   "ring_acuity-1.782_gap-down_original.png", "ring_acuity-1.782_gap-down_seen.png",
                                   "star_original.png", "star_seen_stretched.png", "star_seen_total_light.png",
                                   "summary.json", "wavefront.png"}));
}

TEST(Results, RequestsForOneRingShareItsFiles) {
  const std::vector<RingRequest> same = {{0.7, Gap::kLeft}, {1.9, Gap::kDown}, {0.69, Gap::kLeft}, {1.85, Gap::kDown}};
  EXPECT_EQ(NamesOf(ResultFiles({kPupil, same, {&FormatNamed("npy")}, 0})),
            NamesOf(ResultFiles({kPupil, kRings, {&FormatNamed("npy")}, 0})));
}

TEST(Results, HoldEveryPlaneAsNpyOnRequest) {
  std::set<std::string> names = NamesOf(ResultFiles({kPupil, kRings, {&FormatNamed("npy")}, 0}));
  for (const ResultFile& file : ResultFiles({kPupil, kRings, {}, 0})) names.erase(file.name);
  EXPECT_EQ(names,
            (std::set<std::string>{"mtf.npy", "psf.npy", "ring_acuity-0.6855_gap-left_original.npy",
                                   "ring_acuity-0.6855_gap-left_seen.npy", "ring_acuity-1.782_gap-down_original.npy",
                                   "ring_acuity-1.782_gap-down_seen.npy", "star_original.npy",
                                   "star_seen_stretched.npy", "star_seen_total_light.npy", "wavefront.npy"}));
}

TEST(Results, EachFileHoldsThePlaneThatItsNameSays) {
  const SimulatedEye simulated = Simulated(AsymmetricEye(), kRings);
  const Results& s = simulated.results;
  const std::pair<const char*, const Plane*> planes[] = {
      {"wavefront.npy", &s.wavefront.map},
      {"psf.npy", &s.psf},
      {"mtf.npy", &s.mtf},
      {"star_original", &s.star.original},
      {"star_seen_stretched", &s.star.stretched},
      {"star_seen_total_light", &s.star.totalLight},
      {"ring_acuity-0.6855_gap-left_original", &s.rings[0].original},
      {"ring_acuity-0.6855_gap-left_seen", &s.rings[0].seen},
      {"ring_acuity-1.782_gap-down_original", &s.rings[1].original},
      {"ring_acuity-1.782_gap-down_seen", &s.rings[1].seen},
  };
  int compared = 0;
  for (const ResultFile& file : ResultFiles({kPupil, kRings, {&FormatNamed("npy")}, 0})) {
    for (const auto& [name, plane] : planes) {
      if (!file.name.starts_with(name)) continue;
      const bool png = file.name.ends_with(".png");
      EXPECT_EQ(file.encode(simulated), png ? EncodePng(GreyPictureOf(*plane), Pixels::kNumbers)
                                            : EncodeNpy({{{"", "", "", plane, 0.0, {}, {}}}, {}}))
          << file.name;
      ++compared;
    }
  }
  EXPECT_EQ(compared, 3 + 2 * 7);
}

TEST(Results, HoldEachFigureAsVectorGraphicsOnRequest) {
  Request request{kPupil, kRings, {}, 0};
  request.vectors = true;
  std::set<std::string> names = NamesOf(ResultFiles(request));
  for (const ResultFile& file : ResultFiles({kPupil, kRings, {}, 0})) names.erase(file.name);
  EXPECT_EQ(names, (std::set<std::string>{"mtf.svg", "mtf_sections.svg", "psf.svg", "psf_log.svg", "wavefront.svg"}));
  const SimulatedEye simulated = Simulated(AsymmetricEye(), kRings);
  for (const ResultFile& file : ResultFiles(request)) {
    if (file.name != "mtf_sections.svg") continue;
    const std::string svg = file.encode(simulated);
    EXPECT_NE(svg.find(">MTF sections</text>"), std::string::npos);
    EXPECT_EQ(svg.find("<image"), std::string::npos);
    EXPECT_EQ(svg, file.encode(simulated));
  }
}

TEST(Results, HoldOnlyTheFilesThatAreNamedAndTheSummary) {
  Request request{kPupil, kRings, {}, 0};
  request.strip = true;
  EXPECT_EQ(NamesOf(ResultFiles(request)).count("strip.png"), 1U);
  request.only = {"strip.png", "psf.png"};
  EXPECT_EQ(NamesOf(ResultFiles(request)), (std::set<std::string>{"psf.png", "strip.png", "summary.json"}));
  request.only = {"summary.json"};
  EXPECT_EQ(NamesOf(ResultFiles(request)), (std::set<std::string>{"summary.json"}));
  request.only = {"psf.png", "psf.npy"};
  EXPECT_THROW(ResultFiles(request), Error);
}

TEST(Results, APictureBringsItsThreeViewsAndASheet) {
  std::set<std::string> names = NamesOf(ResultFiles({kPupil, kRings, {}, 3}));
  for (const ResultFile& file : ResultFiles({kPupil, kRings, {}, 0})) names.erase(file.name);
  EXPECT_EQ(names, (std::set<std::string>{"picture.png", "picture_contrast_kept.png", "picture_original.png",
                                          "picture_seen.png"}));
}

TEST(Results, FormatsOfPixelsLeaveOutTheWavefrontAndDeepenThePicture) {
  const std::set<std::string> names = NamesOf(ResultFiles({kPupil, kRings, {&FormatNamed("png16")}, 1}));
  EXPECT_EQ(names.count("psf_16bit.png"), 1U);
  EXPECT_EQ(names.count("star_original_16bit.png"), 1U);
  EXPECT_EQ(names.count("wavefront_16bit.png"), 0U);
  EXPECT_EQ(names.count("picture_seen_16bit.png"), 0U);

  SimulatedEye simulated = Simulated(AsymmetricEye(), kRings);
  ObjectPicture object;
  object.bits = 8;
  object.channels = {simulated.results.star.original};
  simulated.results.picture = RetinalPictureOf(simulated.eye, object);
  for (const Format* format : {&FormatNamed("npy"), &FormatNamed("png16")}) {
    for (const ResultFile& file : ResultFiles({kPupil, kRings, {format}, 1})) {
      if (file.name != "picture_seen.png") continue;
      EXPECT_EQ(file.encode(simulated),
                EncodePicture(simulated.results.picture->seen, false, format->greyOnly ? 16 : 8));
    }
  }
}

TEST(Results, FormatsThatHoldAllPlanesMakeOneFile) {
  for (const Format& format : Formats()) {
    if (format.encode == nullptr || !format.together) continue;
    EXPECT_EQ(ResultFiles({kPupil, kRings, {&format}, 3}).size(), ResultFiles({kPupil, kRings, {}, 3}).size() + 1)
        << format.name;
  }
}

}  // namespace
}  // namespace orvanel::cli
