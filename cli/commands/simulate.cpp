// Implements "orvanel simulate": reads an eye, computes its results and writes their files to a folder.
#include "cli/commands/simulate.h"

#include <CLI/App.hpp>
#include <algorithm>
#include <utility>

#include "base/error.h"
#include "base/number_text.h"
#include "base/split.h"
#include "cli/commands/options/model_options.h"
#include "cli/commands/options/options.h"
#include "cli/commands/options/quality_options.h"
#include "cli/commands/options/sized_options.h"
#include "cli/console/report.h"
#include "cli/console/terminal.h"
#include "cli/error_text.h"
#include "cli/result_files.h"
#include "cli/summary.h"
#include "drawing/sheet.h"
#include "evaluation/quality_evaluator.h"
#include "evaluation/simulation.h"
#include "evaluation/warnings.h"
#include "eye/plausibility.h"
#include "files/interruption.h"
#include "files/output_folder.h"
#include "files/path_of.h"
#include "files/pictures/picture_file.h"

namespace orvanel::cli {
namespace {

// Two tenths of a logarithmic unit apart: the shipped aberrated eyes show the first ring clearly and blur the last.
constexpr const char* kUsualAcuities = "0.4,0.63,1,1.6,2.5";

constexpr const char* kSimulateExamples =
    "Examples:\n"
    "  orvanel simulate assets/eyes/standard_observer_6mm.json -o standard_observer\n"
    "  orvanel simulate my_eye.json -o my_eye --acuities 0.1,0.5,1 --gaps all --format npy,hdf5\n"
    "  orvanel simulate my_eye.json -o my_eye_4mm --pupil 4 --mtf-at 15,30\n"
    "  orvanel simulate my_eye.json -o in_white_light --pupil 3 --light white --reference-wavelength 555\n"
    "  orvanel simulate my_eye.json --json --metric VSX,SRX,D50 --metric-origin peak\n"
    "  orvanel simulate my_eye.json -o classic --model classic\n"
    "  orvanel simulate eyes.csv --row 2 -o second_eye --refraction=-1.5,-0.5,90\n"
    "  orvanel simulate my_eye.json -o my_eye_reads --picture photograph.jpg\n"
    "  orvanel simulate my_eye.json -o reads --chart --optotype sloan --logmar 0.5:-0.3\n"
    "  orvanel simulate my_eye.json -o focus --strip=-1,-0.5,0,0.5,1 --only strip.png\n"
    "  orvanel simulate my_eye.json -o sees --picture photograph.jpg --field 4deg --pupil 3 --light display \\\n"
    "    --reference-wavelength 555";

constexpr const char* kObjectNotes =
    R"(Objects are the Siemens star (sector star), Landolt rings (broken rings) and your own picture.
The physical model draws rings of exactly the acuity requested: the stroke is 1' / acuity. The star and your picture
span the angle of --object-angle; white surrounds rings and star, the mean of each channel your picture.
With --model classic, the half extent of the PSF window, frequencies, ring sizes and acuities are those of a pupil of
twice the diameter. The diameter of a ring is then a multiple of 5 samples, so the acuity drawn differs from the one
requested; a difference of more than a tenth gives a warning. Names of ring files contain the acuity drawn.
)";

constexpr const char* kPictureNotes =
    R"(Your own picture (--picture) is a PNG, JPEG or TIFF file of at most 64 million pixels, grey or in colour.
It is brought to the 256 x 256 samples of an object:
  --fit crop    the central square, scaled
  --fit pad     the whole picture, scaled, with white beside it
  --fit pixels  the central 256 x 256 pixels, not scaled, with white around a smaller picture
Its values are read as sRGB and converted to light, and back in PNG files. With --linear they are read and written as
light. 16 bits stay 16 bits. Transparent parts are drawn on white. Each channel is computed separately, and no image is
stretched. picture.png has the picture and its retinal image, picture_seen, side by side. With --model classic there are
two retinal images:
  picture_contrast_kept  blurred, with the contrast and colours of light; each channel keeps its total light
  picture_seen           the image of the library's functions: the square of that image, with more contrast and colour,
                         scaled to the total light and clipped at white
and the 256 samples span an angle that follows from the pupil, 43 minutes of arc for a pupil of 3 mm.
)";

constexpr const char* kFormatNotes =
    R"(Formats of figures and planes (--format). PNG pictures of 8 bits are always written:
  svg    the figures wavefront, psf, psf_log, mtf and mtf_sections as vector graphics. Curves, axes and text are vectors,
         in the font DejaVu Sans; the samples of a plane are a picture inside
  png16  grey pictures of 16 bits, of all planes from 0 to 1; the PNG files of your own picture get 16 bits
  npy    doubles, for NumPy            csv   text, 256 lines of 256 numbers
  tiff   32-bit floating point         mat   all planes in planes.mat, for MATLAB, Octave and SciPy
  hdf5   all planes in planes.h5 with units, scales and the eye as attributes
)";

struct SimulateCommand {
  InputOptions input;
  ModelOptions model;
  QualityRequest quality;
  Adjustments adjustments;
  PictureRequest picture;  // without a file if no picture is given
  SizedOptions sized;
  StripRequest strip;             // without lenses if no strip is drawn
  std::vector<std::string> only;  // names of files; empty: all
  std::string folder;
  std::vector<RingRequest> rings;      // at least one; each once, those of one acuity together
  std::vector<const Format*> formats;  // each once
  bool vectors = false;                // figures as SVG too
  std::vector<CyclesPerDegree> mtfAt;
  bool force = false, json = false;
  bool letters = false;  // also in light of several wavelengths
};

// Options as text of the command line.
struct SimulateWords {
  std::string acuities = kUsualAcuities, gaps = "right", frequencies, formats = kPictures, fit{Word(Fit::kCrop)}, only;
  bool npy = false;
};

std::vector<double> PositiveNumbers(const std::string& list, const char* option) {
  std::vector<double> numbers;
  for (const std::string_view part : Split(list)) {
    double number = 0.0;
    try {
      number = ParseNumber(part);
    } catch (const Error&) {
    }
    if (number <= 0.0) throw CLI::ValidationError(option, Quoted(part) + " is not a number above 0, such as 0.5");
    numbers.push_back(number);
  }
  return numbers;
}

std::vector<Gap> Gaps(const std::string& list) {
  constexpr Gap kAll[] = {Gap::kDown, Gap::kUp, Gap::kRight, Gap::kLeft};
  std::vector<Gap> gaps;
  for (const std::string_view part : Split(list)) {
    if (part == "all") {
      gaps.insert(gaps.end(), std::begin(kAll), std::end(kAll));
      continue;
    }
    const auto* const gap = std::find_if(std::begin(kAll), std::end(kAll), [part](Gap g) { return part == Word(g); });
    if (gap == std::end(kAll)) {
      throw CLI::ValidationError("--gap", Quoted(part) + " is not one of down, up, right, left, all");
    }
    gaps.push_back(*gap);
  }
  return gaps;
}

// Every gap at every acuity, each once.
std::vector<RingRequest> RingRequests(const std::string& acuities, const std::string& gaps) {
  std::vector<RingRequest> requests;
  for (const double acuity : PositiveNumbers(acuities, "--acuity")) {
    for (const Gap gap : Gaps(gaps)) {
      const auto same = [&](const RingRequest& r) { return r.acuity == acuity && r.gap == gap; };
      if (std::none_of(requests.begin(), requests.end(), same)) requests.push_back({acuity, gap});
    }
  }
  constexpr std::size_t kMaxRings = 64;  // viewers refuse the overview of more
  if (requests.size() > kMaxRings) {
    throw CLI::ValidationError("--acuity", "with --gap requests " + std::to_string(requests.size()) +
                                               " rings; one run draws at most " + std::to_string(kMaxRings));
  }
  return requests;
}

std::vector<const Format*> FormatsOf(const std::string& list) {
  std::vector<const Format*> formats;
  for (const std::string_view part : Split(list)) {
    if (part == kPictures || part == kVectors) continue;
    try {
      const Format* const format = &FormatNamed(part);
      if (std::find(formats.begin(), formats.end(), format) == formats.end()) formats.push_back(format);
    } catch (const Error& error) {
      throw CLI::ValidationError("--format", error.what());
    }
  }
  return formats;
}

Fit FitOf(const std::string& word) {
  for (const Fit fit : {Fit::kCrop, Fit::kPad, Fit::kPixels}) {
    if (word == Word(fit)) return fit;
  }
  throw CLI::ValidationError("--fit", Quoted(word) + " is not one of crop, pad, pixels");
}

// Letters take some seconds for each wavelength, and so minutes in white light.
bool ShowsLetters(const SimulateCommand& command) {
  const ModelRequest& model = command.model.request;
  return model.kind == ModelKind::kPhysical && (command.letters || model.physical.light.size() == 1);
}

void RunSimulate(const SimulateCommand& command) {
  SimulatedEye simulated;
  simulated.measured = ReadEye(command.input);
  std::optional<ObjectPicture> object;
  std::optional<SizedView> sized = SizedViewOf(command.sized, command.picture);
  if (!command.picture.file.empty() && !sized) object = ReadObjectPicture(command.picture);
  std::vector<ResultFile> files;
  try {
    simulated.eye = Adjusted(simulated.measured, command.adjustments, &simulated.dropped);
    simulated.changes = Changes(simulated.measured, command.adjustments);
    Request request{simulated.eye.pupil, command.rings, command.formats, object ? object->channels.size() : 0};
    request.model = command.model.request.kind;
    request.view = ViewOf(command.model.request);
    request.letters = ShowsLetters(command);
    request.vectors = command.vectors;
    request.strip = !command.strip.lenses.empty();
    request.only = command.only;
    if (sized) {
      request.sized = sized->name;
      request.sizedChannels = command.model.request.physical.display ? 3 : 1;
    }
    files = ResultFiles(request);
  } catch (const Error& error) {
    throw Error(command.input.file + ": " + TextOf(error));
  }
  std::vector<std::string> names;
  for (const ResultFile& file : files) names.push_back(file.name);
  std::optional<OutputFolder> folder;
  if (!command.json) folder.emplace(PathOf(command.folder), names, command.force);

  ModelRequest model = command.model.request;
  model.physical.mtfAt = command.mtfAt;
  Evaluator evaluator(model);
  try {
    simulated.results = Simulate(evaluator, simulated.eye, command.rings);
    if (model.kind == ModelKind::kPhysical) {
      simulated.qualityRequest = command.quality;
      simulated.quality = QualityEvaluator(model.physical, command.quality).Evaluate(simulated.eye);
    }
    const auto showsLetters = [](const std::string& name) { return name == kLettersFile || name == kOverviewFile; };
    if (folder && ShowsLetters(command) && std::any_of(names.begin(), names.end(), showsLetters))
      simulated.letters = SeeLetters(simulated.eye, model.physical);
    if (!command.strip.lenses.empty()) {
      simulated.strip = SeenStrip(simulated.eye, model.physical, command.strip);
    }
    if (sized) simulated.sized = Seen(std::move(*sized), simulated.eye, model.physical);
  } catch (const Error& error) {
    throw Error(command.input.file + ": " + TextOf(error));
  }
  if (object) simulated.results.picture = evaluator.RetinalPictureOf(std::move(*object));
  simulated.mtfAt = command.mtfAt;
  std::vector<std::string>& warnings = simulated.warnings;
  warnings = EyeWarnings(simulated.eye);
  for (std::string& warning : Warnings(simulated.results)) warnings.push_back(std::move(warning));
  if (simulated.dropped && simulated.dropped->rms > Micrometres(0.0)) warnings.push_back(Text(*simulated.dropped));
  if (folder) {
    for (const std::string& warning : WarningsOfTexts(simulated.measured)) warnings.push_back(warning);
  }
  for (const std::string& warning : warnings) PrintWarning(warning);
  if (!folder) {
    PrintOutput(SummaryJson(simulated, {}), "");
    return;
  }
  {
    Progress progress("Writing", files.size());
    for (const ResultFile& file : files) {
      StopIfInterrupted();
      folder->Add(file.name, file.encode(simulated));
      progress.Advance();
    }
  }
  folder->Commit();
  const bool hasOverview = std::find(names.begin(), names.end(), kOverviewFile) != names.end();
  PrintOutput(SummaryText(simulated, command.folder, files.size(), hasOverview), "the results are in place");
}

}  // namespace

Run DefineSimulate(CLI::App& app) {
  const auto command = std::make_shared<SimulateCommand>();
  const auto words = std::make_shared<SimulateWords>();
  CLI::App& simulate = *app.add_subcommand("simulate", "Write all pictures and numbers of one eye into a folder.");
  AddInputOptions(simulate, command->input);
  const CLI::Option* const output = simulate
                                        .add_option("-o,--output", command->folder,
                                                    "The folder to write, created if missing; REQUIRED without --json")
                                        ->type_name("FOLDER");
  simulate.add_flag("--json", command->json, "Print all numbers as JSON, as in summary.json, and write no files");
  simulate
      .add_option("--acuity,--acuities", words->acuities, "Decimal acuities of the Landolt rings, separated by commas")
      ->capture_default_str()
      ->type_name("LIST");
  simulate
      .add_option("--gap,--gaps", words->gaps,
                  "Directions of the rings' gaps, separated by commas: down, up, right, left, all")
      ->capture_default_str()
      ->type_name("LIST");
  simulate
      .add_option("--mtf-at", words->frequencies,
                  "Frequencies of the printed MTF, in cycles/degree, separated by commas")
      ->type_name("LIST");
  const std::function<void()> readSized = AddSizedOptions(simulate, command->sized);
  const std::function<void()> readStrip = AddStripOptions(simulate, command->strip);
  CLI::Option* const picture =
      simulate.add_option("--picture", command->picture.file, "Your own picture, to compute its retinal image too")
          ->type_name("FILE");
  simulate.add_option("--fit", words->fit, "How the picture is brought to 256 x 256 samples: crop, pad, pixels")
      ->capture_default_str()
      ->type_name("WORD")
      ->needs(picture);
  simulate.add_flag("--linear", command->picture.linear, "The values of the picture are light, not sRGB")
      ->needs(picture);
  simulate
      .add_option("--format", words->formats,
                  "Formats, separated by commas: png8, png16, svg, npy, csv, tiff, mat, hdf5")
      ->capture_default_str()
      ->type_name("LIST");
  simulate.add_flag("--npy", words->npy, "Add npy to the formats");
  simulate.add_flag("--letters", command->letters,
                    "Write letters.png also in light of several wavelengths, which takes minutes");
  simulate
      .add_option("--only", words->only,
                  "Write only these files and summary.json, separated by commas: psf.png,mtf.svg")
      ->type_name("LIST");
  simulate.add_flag("--force", command->force, "Replace the files of an earlier run in the folder; other files stay");
  std::vector<CLI::Option*> quality = {AddMetricOption(simulate, command->quality, kUsualMetrics)};
  for (CLI::Option* const option : AddQualityConditions(simulate, command->quality, ModelOutput::kPlanes)) {
    quality.push_back(option);
  }
  AddModelOptions(simulate, command->model, ModelOutput::kPlanes, quality);
  command->sized.chart->excludes(picture);
  AddAdjustmentOptions(simulate, command->adjustments);
  simulate.footer(std::string(kEyeNotes) + "\n" + kColumnNotes + "\n" + kModelNotes + "\n" + kQualityNotes +
                  QualityCatalogueText() + "\n" + kObjectNotes + "\n" + kPictureNotes + "\n" + kSizedNotes + "\n" +
                  kFormatNotes + "\n" + kSimulateExamples);
  simulate.final_callback([command, words, picture, output, readSized, readStrip, &simulate] {
    readSized();
    readStrip();
    for (const char* const name : {"--letters", "--strip"}) {
      if (simulate.get_option(name)->count() > 0 && command->model.request.kind == ModelKind::kClassic) {
        throw CLI::ExcludesError("--model classic", name);
      }
    }
    if (command->sized.content != SizedOptions::Content::kNone) RefuseBesideSized(simulate, command->model);
    if (command->json) {
      for (const char* const name : {"--output", "--picture", "--format", "--npy", "--force", "--only", "--strip"}) {
        if (simulate.get_option(name)->count() > 0) {
          throw CLI::ValidationError("--json", std::string("writes no files; remove ") + name);
        }
      }
    } else if (output->count() == 0) {
      throw CLI::RequiredError("--output");
    }
    if (!command->json && command->folder.empty()) throw CLI::ValidationError("--output", "the folder has no name");
    command->rings = RingRequests(words->acuities, words->gaps);
    if (picture->count() > 0 && command->picture.file.empty()) {
      throw CLI::ValidationError("--picture", "the file has no name");
    }
    command->picture.fit = FitOf(words->fit);
    for (const std::string_view part : Split(words->formats)) command->vectors = command->vectors || part == kVectors;
    command->formats = FormatsOf(words->npy ? words->formats + ",npy" : words->formats);
    if (!words->only.empty()) {
      for (const std::string_view name : Split(words->only)) command->only.emplace_back(name);
    }
    if (words->frequencies.empty()) return;
    for (const double frequency : PositiveNumbers(words->frequencies, "--mtf-at")) {
      command->mtfAt.emplace_back(frequency);
    }
  });
  return [command] { RunSimulate(*command); };
}

}  // namespace orvanel::cli
