// Writes the manual pages and the bash completion to the folder that its argument names.
#include <filesystem>
#include <fstream>
#include <iostream>
#include <set>
#include <string>

#include "cli/commands/command_line.h"
#include "cli/manual.h"
#include "metrics/metrics.h"
#include "metrics/quality/catalogue.h"

namespace {

bool Write(const std::filesystem::path& file, const std::string& text) {
  std::ofstream stream(file, std::ios::binary);
  stream << text;
  stream.close();
  if (!stream) std::cerr << file.string() << ": cannot be written\n";
  return stream.good();
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: make_manuals FOLDER\n";
    return 2;
  }
  using namespace orvanel::cli;
  const std::filesystem::path folder = argv[1];
  const Program program = DefineProgram();
  std::set<std::string> metrics;  // some words are of both models
  for (const Metric& metric : Metrics()) metrics.insert(metric.word);
  std::string table, quality;
  for (const std::string& metric : metrics) table += metric + " ";
  for (const QualityRow& row : QualityCatalogue()) quality += row.name + std::string(" ");
  const CLI::App& app = *program.app;
  bool good = Write(folder / "orvanel.1", ManualPage(app, nullptr));
  for (const CLI::App* subcommand : app.get_subcommands({})) {
    good = Write(folder / (ManualName(*subcommand, &app) + ".1"), ManualPage(*subcommand, &app)) && good;
  }
  return Write(folder / "orvanel.bash", BashCompletion(app, {{"batch:--metrics", table + quality + "all"},
                                                             {"--metric", quality + "all"},
                                                             {"--metrics", quality + "all"},
                                                             {"--refract", quality}})) &&
                 good
             ? 0
             : 1;
}
