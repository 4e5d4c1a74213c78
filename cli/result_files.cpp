// Lists the files of a run, each with the function that encodes it.
#include "cli/result_files.h"

#include <algorithm>

#include "base/error.h"
#include "base/number_text.h"
#include "cli/planes.h"
#include "cli/summary.h"
#include "drawing/canvas/canvas.h"
#include "drawing/canvas/svg.h"
#include "drawing/chart_sheet.h"
#include "drawing/figures.h"
#include "drawing/letters_sheet.h"
#include "drawing/overview.h"
#include "drawing/picture_sheet.h"
#include "drawing/quality_table.h"
#include "drawing/sections_figure.h"
#include "drawing/sized_sheet.h"
#include "drawing/strip_sheet.h"
#include "files/output_folder.h"
#include "files/pictures/picture_pixels.h"
#include "files/pictures/png.h"

namespace orvanel::cli {
namespace {

constexpr double kFigureScale = 2.0;  // pixels in a unit, for figures in separate files

// A figure that is also a separate file.
struct FigureFile {
  const char* name;
  double width;
  std::function<void(Surface&, Point, const SimulatedEye&)> draw;
};

// The PSF has its metrics to the right.
std::vector<FigureFile> FiguresOf(ModelKind model) {
  const double table = model == ModelKind::kPhysical ? kQualityTableWidth : 0.0;
  return {
      {"wavefront", kPlaneFigureWidth,
       [](Surface& s, Point at, const SimulatedEye& r) { Draw(s, at, WavefrontFigure(r.results, r.eye.side)); }},
      {"psf", kPlaneFigureWidth + table,
       [](Surface& s, Point at, const SimulatedEye& r) {
         Draw(s, at, PsfFigure(r.results, r.eye.side));
         DrawQualityTable(s, {at.x + kPlaneFigureWidth, at.y, kQualityTableWidth, kFigureHeight}, r);
       }},
      {"psf_log", kPlaneFigureWidth,
       [](Surface& s, Point at, const SimulatedEye& r) { Draw(s, at, PsfLogFigure(r.results, r.eye.side)); }},
      {"mtf", kPlaneFigureWidth,
       [](Surface& s, Point at, const SimulatedEye& r) { Draw(s, at, MtfFigure(r.results)); }},
      {"mtf_sections", kSectionsFigureWidth,
       [](Surface& s, Point at, const SimulatedEye& r) { DrawSections(s, at, r.results); }},
  };
}

// Adds each figure as a PNG file, and as an SVG file if `vectors`.
void AddFigures(std::vector<ResultFile>& files, ModelKind model, bool vectors) {
  constexpr double kMargin = 12.0;
  constexpr double kHeight = kFigureHeight + 2 * kMargin;
  for (const FigureFile& figure : FiguresOf(model)) {
    const double width = figure.width + 2 * kMargin;
    files.push_back({figure.name + std::string(".png"), [width, draw = figure.draw](const SimulatedEye& simulated) {
                       Canvas canvas(width, kHeight, kFigureScale);
                       draw(canvas, {kMargin, kMargin}, simulated);
                       return EncodePng(canvas.picture());
                     }});
    if (!vectors) continue;
    files.push_back({figure.name + std::string(".svg"), [width, draw = figure.draw](const SimulatedEye& simulated) {
                       Svg svg(width, kHeight, 1.0);
                       draw(svg, {kMargin, kMargin}, simulated);
                       return svg.file();
                     }});
  }
}

// Adds the planes that are written as grey PNG files.
void AddGreyPictures(std::vector<ResultFile>& files, const std::vector<PlaneSource>& sources) {
  for (const PlaneSource& source : sources) {
    // PSF and MTF have figures instead.
    if (!source.grey || source.name == "psf" || source.name == "mtf") continue;
    files.push_back({source.name + ".png", [samples = source.samples](const SimulatedEye& simulated) {
                       return EncodePng(GreyPictureOf(samples(simulated)), Pixels::kNumbers);
                     }});
  }
}

// Adds the user's picture in colour, with the bits of its file, or 16 if `deep`.
void AddPicture(std::vector<ResultFile>& files, ModelKind model, bool deep) {
  using Channels = const std::vector<Plane>& (*)(const RetinalPicture&);
  const auto add = [&files, deep](const std::string& name, Channels channels) {
    files.push_back({name + ".png", [deep, channels](const SimulatedEye& simulated) {
                       const ObjectPicture& object = simulated.results.picture->object;
                       return EncodePicture(channels(*simulated.results.picture), object.request.linear,
                                            deep ? 16 : object.bits);
                     }});
  };
  add("picture_original", [](const RetinalPicture& p) -> const std::vector<Plane>& { return p.object.channels; });
  add("picture_seen", [](const RetinalPicture& p) -> const std::vector<Plane>& { return p.seen; });
  if (model == ModelKind::kClassic) {
    add("picture_contrast_kept", [](const RetinalPicture& p) -> const std::vector<Plane>& { return p.contrastKept; });
  }
  files.push_back({kPictureFile, [](const SimulatedEye& simulated) { return EncodePng(DrawPictureSheet(simulated)); }});
}

// Adds the chart or picture of true size, with the bits of its file, or 16 if `deep`.
void AddSizedView(std::vector<ResultFile>& files, const std::string& name, bool deep) {
  const auto add = [&](const char* what, const std::vector<Plane>& (*channels)(const SizedImage&)) {
    files.push_back({name + what + ".png", [deep, channels](const SimulatedEye& simulated) {
                       const SizedView& view = *simulated.sized;
                       return EncodePicture(channels(view.image), view.linear, deep ? 16 : view.bits);
                     }});
  };
  add("_shown", [](const SizedImage& image) -> const std::vector<Plane>& { return image.object.channels; });
  add("_seen", [](const SizedImage& image) -> const std::vector<Plane>& { return image.seen; });
  files.push_back(
      {name + "_before_after.png", [](const SimulatedEye& simulated) { return EncodePng(DrawSizedView(simulated)); }});
}

PlaneSet SetOf(const std::vector<PlaneSource>& sources, const SimulatedEye& simulated) {
  PlaneSet set{{}, FactsOf(simulated)};
  for (const PlaneSource& source : sources) set.planes.push_back(PlaneOf(source, simulated));
  return set;
}

// Adds the planes in a format: in one file, or one file for each plane.
void AddFormat(std::vector<ResultFile>& files, const Format& format, const std::vector<PlaneSource>& sources) {
  const auto add = [&files, &format](const std::string& name, const std::vector<PlaneSource>& planes) {
    files.push_back(
        {name + std::string(format.ending),
         [planes, encode = format.encode](const SimulatedEye& simulated) { return encode(SetOf(planes, simulated)); }});
  };
  if (format.together) {
    add("", sources);
    return;
  }
  for (const PlaneSource& source : sources) {
    if (source.grey || !format.greyOnly) add(source.name, {source});
  }
}

// Keeps the files that are named.
void KeepOnly(std::vector<ResultFile>& files, const std::vector<std::string>& only) {
  if (only.empty()) return;
  const auto isNamed = [](const std::vector<std::string>& names, const std::string& name) {
    return std::find(names.begin(), names.end(), name) != names.end();
  };
  std::vector<std::string> all;
  std::string list;
  for (const ResultFile& file : files) {
    all.push_back(file.name);
    list += (list.empty() ? "" : ", ") + file.name;
  }
  for (const std::string& name : only) {
    if (name == kSummaryFile) continue;  // which is always written
    if (!isNamed(all, name)) throw Error("--only: " + Quoted(name) + " is not a file of this run, which are " + list);
  }
  std::erase_if(files, [&](const ResultFile& file) { return !isNamed(only, file.name); });
}

}  // namespace

std::vector<ResultFile> ResultFiles(const Request& request) {
  const std::vector<PlaneSource> sources = PlaneSources(request);
  std::vector<ResultFile> files;
  AddFigures(files, request.model, request.vectors);
  AddGreyPictures(files, sources);
  const auto deep = [](const Format* format) { return format->greyOnly; };
  if (request.pictureChannels > 0) {
    AddPicture(files, request.model, std::any_of(request.formats.begin(), request.formats.end(), deep));
  }
  if (request.sized != nullptr) {
    AddSizedView(files, request.sized, std::any_of(request.formats.begin(), request.formats.end(), deep));
  }
  for (const Format* format : request.formats) AddFormat(files, *format, sources);
  files.push_back({kChartFile, [](const SimulatedEye& r) { return EncodePng(DrawChart(r)); }});
  if (request.letters) {
    files.push_back({kLettersFile, [](const SimulatedEye& r) { return EncodePng(DrawLetters(r)); }});
  }
  files.push_back({kOverviewFile, [](const SimulatedEye& r) { return EncodePng(DrawOverview(r)); }});
  if (request.strip) {
    files.push_back({kStripFile, [](const SimulatedEye& r) { return EncodePng(DrawStripSheet(r)); }});
  }
  KeepOnly(files, request.only);
  std::vector<std::string> names;
  for (const ResultFile& file : files) names.push_back(file.name);
  names.emplace_back(kSummaryFile);
  // NOLINTNEXTLINE(modernize-use-emplace): an aggregate has no constructor to call
  files.push_back({kSummaryFile, [names](const SimulatedEye& r) { return SummaryJson(r, names); }});
  return files;
}

}  // namespace orvanel::cli
