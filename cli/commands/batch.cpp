// Implements "orvanel batch": its options, and the report of a run.
#include "cli/commands/batch.h"

#include <CLI/App.hpp>
#include <algorithm>
#include <thread>

#include "base/error.h"
#include "base/number_text.h"
#include "base/split.h"
#include "cli/batch/run.h"
#include "cli/batch/statistics.h"
#include "cli/commands/options/correction_options.h"
#include "cli/commands/options/model_options.h"
#include "cli/commands/options/options.h"
#include "cli/commands/options/quality_options.h"
#include "cli/console/report.h"
#include "cli/console/terminal.h"
#include "cli/error_text.h"
#include "evaluation/evaluator.h"
#include "evaluation/through_focus.h"
#include "files/eyes/any_eye.h"
#include "files/input_file.h"
#include "metrics/named_metrics.h"
#include "metrics/quality_names.h"

namespace orvanel::cli {
namespace {

constexpr const char* kBatchExamples =
    "Examples:\n"
    "  orvanel batch eyes.csv -o results.csv\n"
    "  orvanel batch eyes.csv -o strehl.csv --metrics strehl_peak,rms --pupil 4 --summary\n"
    "  orvanel batch eyes.csv -o vsx.csv --metrics rms,VSX,D50 --metric-origin peak\n"
    "  orvanel batch eyes.csv -o lenses.csv --metrics refraction --refract VSX --step 0.25\n"
    "  orvanel batch eyes.csv -o focus.csv --metrics VSX --through -1:1:0.25 --pupil 3\n"
    "  orvanel batch eyes.csv -o at_15_cpd.csv --mtf-at 15 --light 589\n"
    "  orvanel batch eyes.csv -o classic.csv --model classic --metrics strehl,mtf_area --acuity 0.5,1\n"
    "  orvanel batch eyes.csv -o with_planes.csv --planes planes.h5 --pictures pictures\n"
    "  orvanel batch eyes.csv -o shard_1.csv --shard 1/2\n"
    "  orvanel batch my_eye.json assets/eyes/*.json -o files.csv";

constexpr const char* kBatchNotes =
    R"(A table (.csv, .ndjson) has one eye in each row. Columns such as Z4, Z(2,0) or c[2,-2] hold coefficients, others
state the convention, and all further ones are copied. Each row gives one row of results, in the same order. For an
invalid row, the last column, 'error', has the line and the reason, and the exit status is 3. The column 'implausible'
counts values unlike those of a human eye: a pupil outside 0.5 to 12 mm, a refraction beyond 30 D.

The columns 'light' and 'model' of a table state the conditions of their row, as --light and --model state those of the
run: a wavelength in nm, white, display, or the name of a file; physical or classic. An empty field takes the option,
and the results have its value there. The models have different columns, so a row of the other model is invalid.

Instead of a table there can be eye files (.json). Each gives one row, in the order of the command line, with its name
in the column 'file'. A file that is invalid or cannot be read gives an invalid row.

A value that does not exist for a row, or is not to be trusted, is explained in the column 'quality_note'; the former is
empty. --refract searches the lens to be worn with the best value of a metric, as 'orvanel refract' does: minus
cylinder, axis of trial frames. The least-squares refraction is the metric refraction. --through computes the metrics of
image quality and the MTF of --mtf-at behind each lens of a range: the lens of the best focus, the value there, and the
depth of focus in which the metric keeps 80 % and 50 % of it.

An interrupted run continues with --resume and gives the same bytes. Its settings are stored in RESULTS.orvanel.
Chunks of rows are assigned to the shards in turn (round-robin); 'orvanel merge' joins the shards.
)";

constexpr std::size_t kMaxJobs = 1024;

struct BatchCommand {
  ModelOptions model;
  std::vector<std::string> eyes;  // a table, or eye files
  BatchRequest request;
  std::optional<FileKind> kind;
  std::string metrics, frequencies, acuities, planesOf = "psf,mtf", picturesOf = "psf,star";
  std::vector<CLI::Option*> conditions;  // of metrics of image quality
  bool summary = false;
};

std::size_t UsualJobs() { return std::clamp<std::size_t>(std::thread::hardware_concurrency(), 1, kMaxJobs); }

std::string MetricNotes() {
  std::string notes =
      "Metrics. Those with a star are computed without --metrics. If --pupil or --measured-pupil states one pupil for "
      "all\n"
      "rows, half_width and frequency_range are in the record and the report, not in each row:\n";
  for (const ModelKind model : {ModelKind::kPhysical, ModelKind::kClassic}) {
    notes += "of the " + std::string(Word(model)) + " model\n";
    for (const Metric& metric : Metrics()) {
      if (!IsFor(metric, model)) continue;
      const std::string word = metric.word;
      notes += (metric.usual ? "* " : "  ") + word + std::string(17 - word.size(), ' ') + metric.description + "\n";
    }
  }
  notes += "of image quality, on the physical model: the names below; all means all metrics of the model\n";
  return notes;
}

std::vector<double> PositiveNumbers(const std::string& list) {
  std::vector<double> numbers;
  for (const std::string_view part : Split(list)) {
    const double number = ParseNumber(part);
    if (number <= 0.0) throw Error(Quoted(part) + " is not above 0");
    if (std::find(numbers.begin(), numbers.end(), number) == numbers.end()) numbers.push_back(number);
  }
  return numbers;
}

// Options that do not change the bytes of the results.
bool DoesNotAffectResults(const std::string& name) {
  constexpr const char* kNames[] = {"--help",  "EYES",      "--output", "--jobs",  "--strict",          "--resume",
                                    "--force", "--summary", "--shard",  "--chunk", "--max-undersampled"};
  return std::find(std::begin(kNames), std::end(kNames), name) != std::end(kNames);
}

std::vector<std::pair<std::string, std::string>> SettingsOf(const CLI::App& app) {
  std::vector<std::pair<std::string, std::string>> settings;
  for (const CLI::Option* const option : app.get_options()) {
    const std::string name = option->get_single_name().starts_with("-") || option->get_positional()
                                 ? option->get_single_name()
                                 : "--" + option->get_single_name();
    if (option->count() == 0 || DoesNotAffectResults(name)) continue;
    std::string text;
    for (const std::string& part : option->results()) text += (text.empty() ? "" : " ") + part;
    settings.emplace_back(name, text);
  }
  return settings;
}

void RunCommand(const BatchCommand& command) {
  const BatchRequest& request = command.request;
  const BatchResult result = RunBatch(request, [&request](const std::string& columns) {
    if (!columns.empty()) PrintColumns(InputName(request.table), columns);
  });
  const bool toFile = request.results != kStandardStream;
  const std::string results = toFile ? request.results : "standard output";
  std::string report = ReportLine(
      "Written", request.results + ", " + std::to_string(result.rows) + " rows" +
                     (result.earlier > 0 ? ", " + std::to_string(result.earlier) + " of them by an earlier run" : ""));
  std::string label = "In all rows";
  for (const auto& [name, value] : result.constants) {
    report += ReportLine(std::exchange(label, ""), name + " = " + ShortestText(value));
  }
  if (result.dropped.eyes > 0) {
    report += ReportLine("Orders", Text(result.dropped, *request.adjustments.highestOrder) +
                                       (result.earlier > 0 ? ", by this run" : ""));
  }
  const std::size_t undersampled =
      result.earlier > 0 ? CountUndersampled(request.results, request.maxUndersampled) : result.undersampled;
  const std::string samples = UndersampledText(undersampled, request.maxUndersampled);
  if (undersampled > 0) report += ReportLine("Undersampled", samples);
  const std::size_t noted = result.earlier > 0 ? CountNoted(request.results) : result.noted;
  const std::string notes = std::to_string(noted) + (noted == 1 ? " row has" : " rows have") +
                            " values that are missing or doubtful; see the column '" + kNoteColumn + "'";
  if (noted > 0) report += ReportLine("Notes", notes);
  if (result.again > 0) {
    report += ReportLine("Repeated", "planes and pictures of " + std::to_string(result.again) +
                                         " rows, since some were missing or incomplete");
  }
  if (command.summary) report += "\n" + StatisticsText(request.results, result.columns);
  if (toFile) {
    PrintOutput(report, results + " is written");
  } else {
    if (result.dropped.affected > 0) PrintWarning(Text(result.dropped, *request.adjustments.highestOrder));
    if (undersampled > 0) PrintWarning("undersampled: " + samples);
    if (noted > 0) PrintWarning(notes);
  }
  if (result.errors > 0) {
    throw FaultyRows((request.eyeFiles.empty() ? InputName(request.table) : "eye files") + ": " +
                     std::to_string(result.errors) + " of " + std::to_string(result.rows) +
                     " rows are invalid; the column '" + kErrorColumn + "' of " + results + " has the reasons");
  }
}

void AddOutputOptions(CLI::App& batch, BatchCommand& command) {
  constexpr const char* kGroup = "Results";
  BatchRequest& request = command.request;
  AddParsedOption(batch, "--metrics", "LIST", "Metrics to compute, of those below, separated by commas; or all",
                  [&command](const std::string& text) { command.metrics = text; })
      ->group(kGroup);
  AddParsedOption(batch, "--mtf-at", "LIST", "Also compute the MTF at these frequencies, in cycles/degree",
                  [&request](const std::string& text) {
                    request.choice.mtfAt.clear();
                    for (const double number : PositiveNumbers(text)) request.choice.mtfAt.emplace_back(number);
                  })
      ->group(kGroup);
  AddParsedOption(batch, "--acuity", "LIST",
                  "Also compute the effective acuity of rings drawn for these acuities, on the library scale",
                  [&request](const std::string& text) { request.choice.acuities = PositiveNumbers(text); })
      ->group(kGroup);
  batch.add_flag("--summary", command.summary, "Print mean, standard deviation and percentiles of each column")
      ->group(kGroup);
  batch
      .add_option(kPlanesOption, request.planes,
                  "Write planes of all eyes as HDF5, one file for each chunk of rows, as FILE-000001")
      ->type_name("FILE")
      ->group(kGroup);
  AddParsedOption(batch, "--planes-of", "LIST", "Which planes: wavefront, psf, mtf [psf,mtf]",
                  [&request](const std::string& text) { request.planeKinds = PlaneKindsNamed(text); })
      ->group(kGroup);
  batch.add_option(kPicturesOption, request.pictures, "Write grey PNG pictures of each eye to this folder")
      ->type_name("FOLDER")
      ->group(kGroup);
  AddParsedOption(batch, "--pictures-of", "LIST",
                  "Which pictures; star is its retinal image: psf, mtf, star [psf,star]",
                  [&request](const std::string& text) { request.pictureKinds = PictureKindsNamed(text); })
      ->group(kGroup);
}

// --refract with the options of its search, and --through. Returns these two.
std::vector<CLI::Option*> AddLensOptions(CLI::App& batch, BatchRequest& request) {
  constexpr const char* kGroup = "Best lens and focus";
  CLI::Option* const refract =
      AddParsedOption(batch, "--refract", "METRIC",
                      "Also search the lens with the best value of this metric of image quality",
                      [&request](const std::string& text) {
                        const std::vector<QualityMetric> metrics = QualityMetricsNamed(text);
                        if (metrics.size() != 1) throw Error("a lens is searched by one metric; name only one");
                        request.lensBy = metrics.front();
                      })
          ->group(kGroup);
  for (CLI::Option* const option : AddCorrectionOptions(batch, request.lens)) option->needs(refract)->group(kGroup);
  CLI::Option* const through =
      AddParsedOption(batch, "--through", "FROM:TO:STEP",
                      "Also compute best focus and depth of focus, behind lenses of these dioptres",
                      [&request](const std::string& text) { request.lenses = LensesOfRange(text); })
          ->group(kGroup);
  return {refract, through};
}

void AddRunOptions(CLI::App& batch, BatchCommand& command) {
  constexpr const char* kGroup = "The run";
  BatchRequest& request = command.request;
  AddParsedOption(batch, "-j,--jobs", "N", "Number of threads, each with an engine [number of cores]",
                  [&request](const std::string& text) { request.jobs = ParseCount(text, 1, kMaxJobs); })
      ->group(kGroup);
  batch.add_flag("--strict", request.strict, "Stop at the first row that is invalid or undersampled")->group(kGroup);
  AddParsedOption(batch, "--max-undersampled", "SHARE",
                  "Share of the pupil, 0 to 1, above which a row counts as undersampled [0.01]",
                  [&request](const std::string& text) {
                    request.maxUndersampled = ParseNumber(text);
                    if (!(request.maxUndersampled >= 0.0 && request.maxUndersampled <= 1.0)) {
                      throw Error("a share must be from 0 to 1");
                    }
                  })
      ->group(kGroup);
  const auto* const force =
      batch.add_flag("--force", request.force, "Start over and replace existing results")->group(kGroup);
  batch.add_flag("--resume", request.resume, "Continue existing results; start if there are none")
      ->excludes(const_cast<CLI::Option*>(force))
      ->group(kGroup);
  AddParsedOption(batch, "--shard", "K/N", "Compute only the K-th of N parts of the table",
                  [&request](const std::string& text) { request.record.shard = ParseShard(text); })
      ->group(kGroup);
  AddParsedOption(
      batch, "--chunk", "N", "Rows in a chunk, the unit of shards and of files of planes [64]",
      [&request](const std::string& text) { request.record.chunkRows = ParseCount(text, 1, kMaxChunkRows); })
      ->group(kGroup);
}

// Accepts one table, or only eye files.
void ChooseEyes(BatchCommand& command) {
  BatchRequest& request = command.request;
  const std::vector<std::string>& eyes = command.eyes;
  const auto isTable = [&command](const std::string& file) { return KindOf(file, command.kind) != FileKind::kEyeFile; };
  const auto table = std::find_if(eyes.begin(), eyes.end(), isTable);
  if (table == eyes.end()) {
    if (request.tableOptions.prescription || request.tableOptions.decimalComma) {
      throw CLI::ValidationError(
          "EYES", eyes.front() + " is an eye file, not a table; remove --prescription-columns and --decimal-comma");
    }
    request.eyeFiles = eyes;
    return;
  }
  if (eyes.size() > 1) {
    const auto eyeFile = std::find_if_not(eyes.begin(), eyes.end(), isTable);
    throw CLI::ValidationError("EYES", InputName(*table) +
                                           (eyeFile == eyes.end() ? " is not the only table"
                                                                  : " is a table, and " + *eyeFile + " an eye file") +
                                           "; give one table, or only eye files");
  }
  request.table = *table;
  request.kind = TableKindOf(KindOf(*table, command.kind));
}

// What the metrics of image quality depend on, also where it is the default. A file of a contrast sensitivity may
// change between runs, so the record has its points.
void NameTheQuality(BatchRequest& request) {
  if (!HasNotes(request)) return;
  std::vector<std::pair<std::string, std::string>>& settings = request.record.settings;
  std::string contrast;
  for (const ContrastSensitivity::Point& point : request.quality.contrast.table()) {
    contrast +=
        (contrast.empty() ? "" : " ") + ShortestText(point.frequency) + " c/deg: " + ShortestText(point.sensitivity);
  }
  const std::pair<const char*, std::string> conditions[] = {
      {"--metric-origin", Word(request.quality.origin)},
      {"--metric-reference", Word(request.quality.reference)},
      {"--csf", contrast.empty() ? "Campbell and Green (1965)" : contrast},
      {"--gaussian-sd", ShortestText(request.quality.gaussianSdArcmin)}};
  for (const auto& [name, text] : conditions) {
    std::erase_if(settings, [its = name](const auto& setting) { return setting.first == its; });
    settings.emplace_back(name, text);
  }
}

// The record states the model and its light also where they are the defaults. A file of a spectrum may change between
// runs, so the record has its lines.
void NameTheModel(BatchRequest& request) {
  std::vector<std::pair<std::string, std::string>>& settings = request.record.settings;
  std::erase_if(settings, [](const auto& setting) { return setting.first == "--model" || setting.first == "--light"; });
  settings.emplace_back("--model", Word(request.model.kind));
  if (request.model.kind == ModelKind::kClassic) return;
  std::string light;
  for (const physical::SpectralLine& line : request.model.physical.light) {
    light += (light.empty() ? "" : " ") + ShortestText(line.wavelengthNm) + " nm * " + ShortestText(line.weight);
  }
  settings.emplace_back("--light", light);
}

// Conditions of metrics without such a metric would have no effect.
void RequireUseOf(const std::vector<CLI::Option*>& conditions, const BatchRequest& request) {
  if (HasNotes(request)) return;
  for (const CLI::Option* const option : conditions) {
    if (option->count() == 0) continue;
    throw CLI::ValidationError(option->get_name(false, false),
                               "there is no metric of image quality; name one with --metrics or --refract");
  }
}

void Complete(BatchCommand& command, const CLI::App& batch) {
  BatchRequest& request = command.request;
  ChooseEyes(command);
  if (request.resume && (request.table == kStandardStream || request.results == kStandardStream)) {
    throw CLI::ValidationError("--resume", "needs files; standard input and output cannot be continued");
  }
  if (command.summary && request.results == kStandardStream) {
    throw CLI::ValidationError("--summary", "reads the results again; --output must name a file");
  }
  if (KindOf(request.results) != FileKind::kCsv) throw CLI::ValidationError("--output", "results are written as .csv");
  request.model = command.model.request;
  request.light = command.model.light;
  request.model.physical.mtfAt = request.choice.mtfAt;
  request.choice.model = request.model.kind;
  if (request.model.kind == ModelKind::kPhysical && !request.choice.acuities.empty()) {
    throw CLI::ValidationError("--acuity",
                               "needs --model classic; rings of the physical model have the acuity requested");
  }
  if (!command.metrics.empty()) {
    try {
      NamedMetrics named = AnyMetricsNamed(command.metrics, request.model.kind);
      request.choice.metrics = std::move(named.table);
      request.quality.metrics = std::move(named.quality);
    } catch (const Error& error) {
      throw CLI::ValidationError("--metrics", TextOf(error));
    }
  } else {
    const std::optional<Millimetres> pupil =
        request.adjustments.pupil ? request.adjustments.pupil : request.stated.pupil;
    // Standard output has no record for the values that all rows share.
    const bool samePupil = pupil && request.results != kStandardStream;
    if (samePupil) request.record.constants = ConstantsOf(*pupil, request.model);
    request.choice.metrics = UsualMetrics(samePupil, request.model.kind);
  }
  if (!NeedsOf(request.choice).empty() || !request.planes.empty() || !request.pictures.empty()) {
    AddUndersampled(request.choice);
  }
  if (request.planeKinds.empty()) request.planeKinds = PlaneKindsNamed("psf,mtf");
  if (request.pictureKinds.empty()) request.pictureKinds = PictureKindsNamed("psf,star");
  RequireUseOf(command.conditions, request);
  if (!request.lenses.empty() && request.quality.metrics.empty() && request.choice.mtfAt.empty()) {
    throw CLI::ValidationError("--through",
                               "there is no metric of image quality; name one with --metrics, or --mtf-at");
  }
  request.record.version = ORVANEL_VERSION;
  request.record.settings = SettingsOf(batch);
  NameTheModel(request);
  NameTheQuality(request);
}

}  // namespace

Run DefineBatch(CLI::App& app) {
  const auto command = std::make_shared<BatchCommand>();
  BatchRequest& request = command->request;
  request.jobs = UsualJobs();
  constexpr std::size_t kUsualChunk = 64;
  request.record.chunkRows = kUsualChunk;
  CLI::App& batch = *app.add_subcommand("batch", "Compute metrics of every eye of a table, or of many eye files.");
  batch.add_option("EYES", command->eyes, "A table of eyes, - for standard input; or any number of eye files")
      ->required()
      ->type_name("FILE");
  batch.add_option("-o,--output", request.results, "The table of results, .csv; - for standard output")
      ->required()
      ->type_name("FILE");
  AddOutputOptions(batch, *command);
  AddRunOptions(batch, *command);
  AddTableFormatOption(batch, command->kind);
  AddTableOptions(batch, request.tableOptions);
  command->conditions = AddQualityConditions(batch, request.quality, ModelOutput::kPlanes);
  std::vector<CLI::Option*> physical = AddLensOptions(batch, request);
  physical.insert(physical.end(), command->conditions.begin(), command->conditions.end());
  AddModelOptions(batch, command->model, ModelOutput::kPlanes, physical);
  AddStatementOptions(batch, request.stated);
  AddAdjustmentOptions(batch, request.adjustments);
  batch.footer(std::string(kBatchNotes) + "\n" + kColumnNotes + "\n" + kModelNotes + "\n" + MetricNotes() + "\n" +
               QualityCatalogueText() + "\n" + kQualityNotes + "\n" + kBatchExamples);
  batch.final_callback([command, &batch] { Complete(*command, batch); });
  return [command] { RunCommand(*command); };
}

}  // namespace orvanel::cli
