// The plan of the files.
#include "cli/results.h"

#include "cli/canvas.h"
#include "cli/figures.h"
#include "cli/npy.h"
#include "cli/number_text.h"
#include "cli/output_folder.h"
#include "cli/overview.h"
#include "cli/png.h"
#include "cli/sections_figure.h"
#include "cli/summary.h"

namespace orvanel::cli {
namespace {

using PlaneOf = std::function<const Plane&(const Results&)>;

constexpr double kFigureScale = 2.0;  // pixels in a unit, for figures that stand alone

// A figure of its own.
template <class Figure>
ResultFile FigureFile(const std::string& name, double width, Figure draw) {
  return {name, [width, draw](const Results& results) {
            constexpr double kMargin = 12.0;
            Canvas canvas(width + 2 * kMargin, kFigureHeight + 2 * kMargin, kFigureScale);
            draw(canvas, Point{kMargin, kMargin}, results);
            return EncodePng(canvas.picture());
          }};
}

void AddFigures(std::vector<ResultFile>& files) {
  files.push_back(FigureFile("wavefront.png", kPlaneFigureWidth, [](Canvas& canvas, Point corner, const Results& r) {
    Draw(canvas, corner, WavefrontFigure(r.simulation));
  }));
  files.push_back(FigureFile("psf.png", kPlaneFigureWidth, [](Canvas& canvas, Point corner, const Results& r) {
    Draw(canvas, corner, PsfFigure(r.simulation, r.scales));
  }));
  files.push_back(FigureFile("psf_log.png", kPlaneFigureWidth, [](Canvas& canvas, Point corner, const Results& r) {
    Draw(canvas, corner, PsfLogFigure(r.simulation, r.scales));
  }));
  files.push_back(FigureFile("mtf.png", kPlaneFigureWidth, [](Canvas& canvas, Point corner, const Results& r) {
    Draw(canvas, corner, MtfFigure(r.simulation, r.scales));
  }));
  files.push_back(FigureFile(
      "mtf_sections.png", kSectionsFigureWidth,
      [](Canvas& canvas, Point corner, const Results& r) { DrawSections(canvas, corner, r.simulation, r.scales); }));
}

// A plane of the library as NPY.
void AddNpy(std::vector<ResultFile>& files, const std::string& stem, const PlaneOf& plane) {
  files.push_back(
      {stem + ".npy", [plane](const Results& results) { return EncodeNpy(plane(results), ORVANEL_GRID_SIZE); }});
}

// An image as grey PNG and, on request, as NPY.
void AddImage(std::vector<ResultFile>& files, const std::string& stem, bool npy, const PlaneOf& plane) {
  files.push_back(
      {stem + ".png", [plane](const Results& results) { return EncodePng(GreyPictureOf(plane(results))); }});
  if (npy) AddNpy(files, stem, plane);
}

}  // namespace

std::string RingStem(const RingRequest& request) {
  return "ring_acuity-" + ShortestText(request.acuity) + "_gap-" + Word(request.gap);
}

std::vector<ResultFile> ResultFiles(const std::vector<RingRequest>& rings, bool npy) {
  std::vector<ResultFile> files;
  AddFigures(files);
  if (npy) {
    AddNpy(files, "wavefront", [](const Results& r) -> const Plane& { return r.simulation.wavefront.map; });
    AddNpy(files, "psf", [](const Results& r) -> const Plane& { return r.simulation.psf; });
    AddNpy(files, "mtf", [](const Results& r) -> const Plane& { return r.simulation.mtf; });
  }
  AddImage(files, "star_original", npy, [](const Results& r) -> const Plane& { return r.simulation.starOriginal; });
  AddImage(files, "star_seen_stretched", npy,
           [](const Results& r) -> const Plane& { return r.simulation.starStretched; });
  AddImage(files, "star_seen_total_light", npy,
           [](const Results& r) -> const Plane& { return r.simulation.starTotalLight; });
  for (std::size_t i = 0; i < rings.size(); ++i) {
    const std::string stem = RingStem(rings[i]);
    AddImage(files, stem + "_original", npy,
             [i](const Results& r) -> const Plane& { return r.simulation.rings[i].original; });
    AddImage(files, stem + "_seen", npy, [i](const Results& r) -> const Plane& { return r.simulation.rings[i].seen; });
  }
  files.push_back({kOverviewFile, [](const Results& r) {
                     return EncodePng(DrawOverview(r.eye, r.simulation, r.scales, r.warnings));
                   }});
  std::vector<std::string> names;
  for (const ResultFile& file : files) names.push_back(file.name);
  names.emplace_back(kSummaryFile);
  // NOLINTNEXTLINE(modernize-use-emplace): an aggregate has no constructor to call
  files.push_back({kSummaryFile, [names](const Results& r) { return SummaryJson(r, names); }});
  return files;
}

}  // namespace orvanel::cli
