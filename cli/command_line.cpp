// The options of "simulate" and their checks.
#include "cli/command_line.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <charconv>
#include <cmath>
#include <iostream>

#include "orvanel/orvanel.h"

namespace orvanel::cli {
namespace {

constexpr const char* kDescription = "Shows what an eye with a measured aberration sees.";

// Two tenths of a logarithmic unit apart, from a ring that the shipped aberrated eyes show clearly to one they smear.
constexpr const char* kUsualAcuities = "0.4,0.63,1,1.6,2.5";

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
    const auto* const gap = std::find_if(std::begin(kAll), std::end(kAll), [&part](Gap g) { return part == Word(g); });
    if (gap == std::end(kAll)) {
      throw CLI::ValidationError("--gap", "'" + part + "' is not one of down, up, right, left, all");
    }
    gaps.push_back(*gap);
  }
  return gaps;
}

// Every gap at every acuity, each once.
std::vector<RingRequest> RingRequests(const std::string& acuities, const std::string& gaps) {
  std::vector<RingRequest> requests;
  for (const double acuity : Acuities(acuities)) {
    for (const Gap gap : Gaps(gaps)) {
      const auto same = [&](const RingRequest& r) { return r.acuity == acuity && r.gap == gap; };
      if (std::none_of(requests.begin(), requests.end(), same)) requests.push_back({acuity, gap});
    }
  }
  constexpr std::size_t kMost = 64;  // more would make an overview that no viewer opens
  if (requests.size() > kMost) {
    throw CLI::ValidationError("--acuity", "with --gap asks for " + std::to_string(requests.size()) +
                                               " rings; at most " + std::to_string(kMost) + " can be drawn at a time");
  }
  return requests;
}

void DefineSimulate(CLI::App& simulate, Command& command, std::string& acuities, std::string& gaps) {
  simulate.add_option("EYE", command.eyeFile, "The eye file")->required();
  simulate.add_option("-o,--output", command.folder, "The folder to write, made if need be")->required();
  simulate.add_option("--acuity", acuities, "Decimal acuities of the rings, with commas, on the library scale")
      ->capture_default_str();
  simulate.add_option("--gap", gaps, "Directions of the rings' gaps: down, up, right, left or all")
      ->capture_default_str();
  simulate.add_flag("--npy", command.npy, "Write the planes as NPY files too");
  simulate.add_flag("--force", command.force, "Replace the files of an earlier run in the folder; others stay");
  simulate.footer(std::string(kSimulateNotes) + "\n" + kExamples);
  simulate.final_callback([&command, &acuities, &gaps] {
    if (command.folder.empty()) throw CLI::ValidationError("--output", "the folder has no name");
    command.rings = RingRequests(acuities, gaps);
  });
}

}  // namespace

std::optional<Command> ReadCommandLine(int argc, char** argv, ExitStatus& status) {
  Command command;
  std::string acuities = kUsualAcuities, gaps = "right";
  CLI::App app(kDescription, "orvanel");
  app.set_version_flag("--version", "orvanel " ORVANEL_VERSION);
  app.require_subcommand(1);
  app.footer(kExamples);
  DefineSimulate(*app.add_subcommand("simulate", "Write all pictures and numbers of one eye into a folder."), command,
                 acuities, gaps);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) {  // help or version
      app.exit(error);
      status = std::cout.flush() ? kDone : kFailed;
    } else {
      std::cerr << "orvanel: " << error.what() << "\nRun it with --help to see how it is used.\n";
      status = kUsage;
    }
    return std::nullopt;
  }
  return command;
}

}  // namespace orvanel::cli
