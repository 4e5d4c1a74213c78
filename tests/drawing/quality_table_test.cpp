// Tests that the table of metrics stays in its box, for any number of metrics, and shows notes.
#include "drawing/quality_table.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "drawing/canvas/canvas.h"
#include "metrics/quality_names.h"
#include "tests/drawing/blank_margin.h"

namespace orvanel::drawing {
namespace {

SimulatedEye WithMetrics(const char* names, QualityNote note = QualityNote::kNone) {
  SimulatedEye simulated;
  simulated.qualityRequest.metrics = metrics::QualityMetricsNamed(names);
  Quality& quality = simulated.quality.emplace();
  quality.originX = -12.75;
  quality.originY = -12.75;
  for (const QualityMetric metric : simulated.qualityRequest.metrics) {
    quality.values.push_back({metric, -123.4567, 123.4567, 1e-4, note});
  }
  return simulated;
}

constexpr double kMargin = 20.0, kHeight = 440.0;

ColourPicture Drawn(const SimulatedEye& simulated) {
  Canvas canvas(kQualityTableWidth + 2 * kMargin, kHeight + 2 * kMargin, 1.0);
  DrawQualityTable(canvas, {kMargin, kMargin, kQualityTableWidth, kHeight}, simulated);
  return canvas.picture();
}

bool IsBlank(const ColourPicture& picture) {
  return std::all_of(picture.pixels.begin(), picture.pixels.end(), [](const Colour& c) {
    return c.red == kPaper.red && c.green == kPaper.green && c.blue == kPaper.blue;
  });
}

TEST(QualityTable, StaysInItsBox) {
  for (const char* const names : {"VSX", "VSX,SRX,D50,NS", "all"}) {
    const ColourPicture picture = Drawn(WithMetrics(names, QualityNote::kPlaceNotUnique));
    EXPECT_FALSE(IsBlank(picture)) << names;
    EXPECT_TRUE(HasBlankMargin(picture, static_cast<int>(kMargin) - 1)) << names;
  }
}

TEST(QualityTable, MarksNotes) {
  EXPECT_NE(Drawn(WithMetrics("VSX")).pixels.size(), 0U);
  const ColourPicture plain = Drawn(WithMetrics("VSX")), marked = Drawn(WithMetrics("VSX", QualityNote::kBelowZero));
  EXPECT_FALSE(std::equal(plain.pixels.begin(), plain.pixels.end(), marked.pixels.begin(),
                          [](const Colour& a, const Colour& b) { return a.red == b.red; }));
}

TEST(QualityTable, IsBlankWithoutMetrics) { EXPECT_TRUE(IsBlank(Drawn(SimulatedEye()))); }

}  // namespace
}  // namespace orvanel::drawing
