// The program: its command line, and one run from eye file to folder.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <charconv>
#include <cmath>
#include <csignal>
#include <cstdio>
#include <exception>
#include <iostream>
#include <string>
#include <vector>

#include "cli/error.h"
#include "cli/output_folder.h"
#include "cli/plausibility.h"
#include "cli/results.h"
#include "cli/summary.h"
#include "orvanel/orvanel.h"

namespace orvanel::cli {
namespace {

enum ExitStatus { kDone = 0, kFailed = 1, kUsage = 2 };

struct Arguments {
  std::string eyeFile, folder;
  std::string acuities = "0.4,0.63,1,1.6,2.5";
  std::string gaps = "right";
  bool npy = false, force = false;
};

constexpr const char* kDescription = "Shows what an eye with a measured aberration sees.";

constexpr const char* kExamples =
    "Examples:\n"
    "  orvanel simulate assets/eyes/standard_observer_6mm.json -o standard_observer\n"
    "  orvanel simulate my_eye.json -o my_eye --acuity 0.5,1 --gap all --npy";

constexpr const char* kSimulateNotes =
    "The eye file is JSON:\n"
    "  {\"name\": \"My eye\", \"pupil_diameter_mm\": 5.5,\n"
    "   \"convention\": {\"name\": \"osa\"}, \"coefficients\": [0, 0, 0, -0.11, 0.42, 0.03]}\n"
    "with 1 to 28 Zernike coefficients, those missing being 0. Conventions:\n"
    "  osa      OSA/ANSI Z80.28: micrometres, orthonormal, y upwards\n"
    "  library  millimetres, not normalised, y downwards\n";

std::vector<std::string> Split(const std::string& list) {
  std::vector<std::string> parts(1);
  for (const char c : list) {
    if (c == ',') {
      parts.emplace_back();
    } else {
      parts.back() += c;
    }
  }
  return parts;
}

std::vector<double> Acuities(const std::string& list) {
  std::vector<double> acuities;
  for (const std::string& part : Split(list)) {
    double acuity = 0.0;
    const char* const end = part.data() + part.size();
    const auto [rest, error] = std::from_chars(part.data(), end, acuity);
    if (error != std::errc() || rest != end || !std::isfinite(acuity) || acuity <= 0.0) {
      throw CLI::ValidationError("--acuity", "'" + part + "' is not a number above 0, such as 0.5");
    }
    acuities.push_back(acuity);
  }
  return acuities;
}

std::vector<Gap> Gaps(const std::string& list) {
  constexpr Gap kAll[] = {Gap::kDown, Gap::kUp, Gap::kRight, Gap::kLeft};
  std::vector<Gap> gaps;
  for (const std::string& part : Split(list)) {
    if (part == "all") {
      gaps.insert(gaps.end(), std::begin(kAll), std::end(kAll));
      continue;
    }
    const auto gap = std::find_if(std::begin(kAll), std::end(kAll), [&part](Gap g) { return part == Word(g); });
    if (gap == std::end(kAll)) {
      throw CLI::ValidationError("--gap", "'" + part + "' is not one of down, up, right, left, all");
    }
    gaps.push_back(*gap);
  }
  return gaps;
}

// Every gap at every acuity, each once.
std::vector<RingRequest> RingRequests(const Arguments& arguments) {
  std::vector<RingRequest> requests;
  for (const double acuity : Acuities(arguments.acuities)) {
    for (const Gap gap : Gaps(arguments.gaps)) {
      const auto same = [&](const RingRequest& r) { return r.acuity == acuity && r.gap == gap; };
      if (std::none_of(requests.begin(), requests.end(), same)) requests.push_back({acuity, gap});
    }
  }
  return requests;
}

volatile std::sig_atomic_t interrupted = 0;

// So that a run that is stopped, or whose output nobody reads any more, still clears away what it has staged.
void HandleSignals() {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    std::signal(signal, [](int) { interrupted = 1; });
  }
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
}

void PrintSummary(const std::string& text) {
  const bool written = std::fwrite(text.data(), 1, text.size(), stdout) == text.size();
  if (!written || std::fflush(stdout) != 0)
    throw Error("the results are in place, but standard output cannot be written");
}

void Run(const Arguments& arguments, const std::vector<RingRequest>& requests) {
  Results results;
  results.eye = ReadEyeFile(arguments.eyeFile);
  const std::vector<ResultFile> files = ResultFiles(requests, arguments.npy);
  std::vector<std::string> names;
  for (const ResultFile& file : files) names.push_back(file.name);
  OutputFolder folder(arguments.folder, names, arguments.force);

  try {
    const Eye& eye = results.eye;
    results.simulation = Simulate(eye.pupil, ToLibrary(eye.convention, eye.coefficients), requests);
  } catch (const Error& error) {
    throw Error(arguments.eyeFile + ": " + error.what());
  }
  results.scales = ScalesOf(results.simulation);
  results.warnings = Warnings(results.simulation);
  for (const std::string& warning : results.warnings) std::cerr << "orvanel: warning: " << warning << '\n';

  for (const ResultFile& file : files) {
    if (interrupted) throw Error("interrupted; nothing is written");
    folder.Add(file.name, file.encode(results));
  }
  folder.Commit();
  PrintSummary(SummaryText(results, arguments.folder, files.size()));
}

int Main(int argc, char** argv) {
  Arguments arguments;
  std::vector<RingRequest> requests;
  CLI::App app(kDescription, "orvanel");
  app.set_version_flag("--version", "orvanel " ORVANEL_VERSION);
  app.require_subcommand(1);
  app.footer(kExamples);
  CLI::App* const simulate = app.add_subcommand("simulate", "Write all pictures and numbers of one eye into a folder.");
  simulate->add_option("EYE", arguments.eyeFile, "The eye file")->required();
  simulate->add_option("-o,--output", arguments.folder, "The folder to write, made if need be")->required();
  simulate
      ->add_option("--acuity", arguments.acuities, "Decimal acuities of the rings, with commas, on the library scale")
      ->capture_default_str();
  simulate->add_option("--gap", arguments.gaps, "Directions of the rings' gaps: down, up, right, left or all")
      ->capture_default_str();
  simulate->add_flag("--npy", arguments.npy, "Write the planes as NPY files too");
  simulate->add_flag("--force", arguments.force, "Replace the files of an earlier run in the folder; others stay");
  simulate->footer(std::string(kSimulateNotes) + "\n" + kExamples);
  simulate->final_callback([&] { requests = RingRequests(arguments); });

  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) return app.exit(error);  // help or version
    std::cerr << "orvanel: " << error.what() << "\nRun it with --help to see how it is used.\n";
    return kUsage;
  }
  HandleSignals();
  try {
    Run(arguments, requests);
  } catch (const std::exception& error) {
    std::cerr << "orvanel: " << error.what() << '\n';
    return kFailed;
  }
  return kDone;
}

}  // namespace
}  // namespace orvanel::cli

int main(int argc, char** argv) { return orvanel::cli::Main(argc, argv); }
