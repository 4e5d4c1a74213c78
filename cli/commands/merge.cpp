// Implements "orvanel merge": joins shards to one table and reports it.
#include "cli/commands/merge.h"

#include <CLI/App.hpp>

#include "cli/batch/join.h"
#include "cli/batch/statistics.h"
#include "cli/console/report.h"
#include "files/eyes/any_eye.h"
#include "orvanel/sampling.h"

namespace orvanel::cli {
namespace {

constexpr const char* kMergeExamples =
    "Examples:\n"
    "  orvanel batch eyes.csv -o shard_1.csv --shard 1/2 --chunk 1\n"
    "  orvanel batch eyes.csv -o shard_2.csv --shard 2/2 --chunk 1\n"
    "  orvanel merge shard_1.csv shard_2.csv -o results.csv\n"
    "  orvanel merge shard_*.csv -o all.csv --summary";

constexpr const char* kMergeNotes =
    R"(Each shard is a table of 'orvanel batch --shard', with its record beside it (.orvanel). The shards may come in any
order. All must exist, be complete, and come from one table with the same settings. The result has the same bytes as
a run without shards.
)";

struct MergeCommand {
  std::vector<std::string> shards;
  std::string output;
  bool force = false, summary = false;
};

void RunMerge(const MergeCommand& command) {
  const RunRecord record = JoinShards(command.shards, command.output, command.force);
  std::string report = ReportLine("Written", command.output + ", " + std::to_string(record.end->tableRows) + " rows, " +
                                                 std::to_string(record.end->errors) + " with an error");
  const std::size_t undersampled = CountUndersampled(command.output, kLargestUndersampledShare);
  if (undersampled > 0) {
    report += ReportLine("Undersampled", UndersampledText(undersampled, kLargestUndersampledShare));
  }
  if (command.summary) report += "\n" + StatisticsText(command.output, record.columns);
  PrintOutput(report, command.output + " is written");
}

}  // namespace

Run DefineMerge(CLI::App& app) {
  const auto command = std::make_shared<MergeCommand>();
  CLI::App& merge = *app.add_subcommand("merge", "Join the shards of a batch to one table.");
  merge.add_option("SHARD", command->shards, "The tables of all shards")->required()->type_name("FILE");
  merge.add_option("-o,--output", command->output, "The table to write, .csv")->required()->type_name("FILE");
  merge.add_flag("--force", command->force, "Replace an existing table");
  merge.add_flag("--summary", command->summary, "Print mean, standard deviation and percentiles of each column");
  merge.footer(std::string(kMergeNotes) + "\n" + kMergeExamples);
  merge.final_callback([command] {
    if (KindOf(command->output) != FileKind::kCsv) {
      throw CLI::ValidationError("--output", "results are written as .csv");
    }
  });
  return [command] { RunMerge(*command); };
}

}  // namespace orvanel::cli
