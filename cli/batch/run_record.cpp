// Stores records as JSON.
#include "cli/batch/run_record.h"

#include <algorithm>
#include <filesystem>
#include <limits>

#include "base/error.h"
#include "base/number_text.h"
#include "base/visible_text.h"
#include "files/input_file.h"
#include "files/json_text.h"
#include "files/new_file.h"
#include "files/path_of.h"

namespace orvanel::cli {
namespace {

namespace fs = std::filesystem;

constexpr const char* kSubject = "orvanel batch";

constexpr std::size_t kAny = std::numeric_limits<std::size_t>::max();

class OlderVersion : public Error {
 public:
  using Error::Error;
};

// A whole number within limits. Throws if it is not one.
std::size_t Count(const Json& json, const char* key, std::size_t least, std::size_t most) {
  const Json& value = json.at(key);
  if (!value.is_number_unsigned() || value.get<std::size_t>() < least || value.get<std::size_t>() > most) {
    throw Error(key);
  }
  return value;
}

// Spectra and contrast sensitivities are too long for a message.
constexpr std::size_t kLongestInMessages = 100;

std::string WordOf(const std::string& text) { return text.empty() ? "not given" : Quoted(text); }

std::string Setting(const RunRecord& record, const std::string& name) {
  for (const auto& [its, text] : record.settings) {
    if (its == name) return text;
  }
  return "";
}

std::string DifferenceOfSettings(const RunRecord& before, const RunRecord& now, bool anyFiles) {
  for (const RunRecord* const record : {&now, &before}) {
    for (const auto& [name, text] : record->settings) {
      if (anyFiles && (name == kPlanesOption || name == kPicturesOption)) continue;
      const std::string was = Setting(before, name), is = Setting(now, name);
      if (was == is) continue;
      if (std::max(was.size(), is.size()) > kLongestInMessages) return name + " has other values";
      return name + " was " + WordOf(was) + " and is " + WordOf(is);
    }
  }
  return "";
}

std::string DifferenceOfFiles(const std::vector<EyeFile>& before, const std::vector<EyeFile>& now) {
  const auto sameName = [](const EyeFile& a, const EyeFile& b) { return a.name == b.name; };
  if (!std::equal(before.begin(), before.end(), now.begin(), now.end(), sameName)) {
    return "the list of eye files differs";
  }
  const auto changed = std::mismatch(before.begin(), before.end(), now.begin()).second;
  return changed == now.end() ? "" : "the eye file " + changed->name + " was changed";
}

// Parts of a table may name different files.
std::string DifferenceOfLights(const RunRecord& before, const RunRecord& now) {
  for (const auto& [file, hash] : before.lightFiles) {
    const auto found = now.lightFiles.find(file);
    if (found != now.lightFiles.end() && found->second != hash) {
      return "the spectrum " + VisibleText(file) + " was changed";
    }
  }
  return "";
}

}  // namespace

std::string RecordFileOf(const std::string& results) { return results + ".orvanel"; }

void WriteRecord(const std::string& results, const RunRecord& record) {
  if (results == kStandardStream) return;
  Json settings = Json::object();
  for (const auto& [name, text] : record.settings) settings[name] = text;
  Json json = {{"record_of", kSubject},
               {"version", record.version},
               {"settings", settings},
               {"columns", record.columns},
               {"table_hash", record.tableHash},
               {"shard", record.shard.number},
               {"shards", record.shard.of},
               {"chunk_rows", record.chunkRows},
               {"results_bytes", record.resultsBytes},
               {"results_hash", record.resultsHash},
               {"complete", record.end.has_value()}};
  for (const auto& [name, value] : record.constants) json["same_in_all_rows"][name] = value;
  for (const EyeFile& file : record.eyeFiles) json["eye_files"].push_back({{"file", file.name}, {"hash", file.hash}});
  if (!record.lightFiles.empty()) json["light_files"] = record.lightFiles;
  if (record.end) {
    json["table_rows"] = record.end->tableRows;
    json["error_rows"] = record.end->errors;
  }
  ReplaceFile(PathOf(RecordFileOf(results)), json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n");
}

std::optional<RunRecord> ReadRecord(const std::string& results) {
  const std::string name = RecordFileOf(results);
  std::error_code ignored;
  if (!fs::exists(PathOf(name), ignored)) return std::nullopt;
  constexpr std::size_t kLargest = std::size_t{64} << 20;
  const std::string text = ReadBytes(name, kLargest);
  try {
    const Json json = JsonOf(text).value();
    if (json.at("record_of") != kSubject) throw Error("");
    RunRecord record;
    record.version = json.at("version");
    for (const auto& [key, value] : json.at("settings").items()) record.settings.emplace_back(key, value);
    record.columns = json.at("columns").get<std::vector<std::string>>();
    const Json constants = json.value("same_in_all_rows", Json::object());
    for (const auto& [column, value] : constants.items()) record.constants.emplace_back(column, value.get<double>());
    record.tableHash = json.at("table_hash");
    for (const Json& file : json.value("eye_files", Json::array())) {
      record.eyeFiles.push_back({file.at("file"), file.at("hash")});
    }
    record.lightFiles = json.value("light_files", std::map<std::string, std::string>());
    record.shard.of = Count(json, "shards", 1, kMaxShards);
    record.shard.number = Count(json, "shard", 1, record.shard.of);
    record.chunkRows = Count(json, "chunk_rows", 1, kMaxChunkRows);
    if (!json.contains("results_hash")) {
      throw OlderVersion(name + ": is of version " + record.version +
                         ", whose records cannot show whether rows were changed; start over with --force");
    }
    record.resultsBytes = Count(json, "results_bytes", 0, kAny);
    record.resultsHash = json.at("results_hash");
    if (json.at("complete")) record.end = {Count(json, "table_rows", 0, kAny), Count(json, "error_rows", 0, kAny)};
    return record;
  } catch (const OlderVersion&) {
    throw;
  } catch (const std::exception&) {
    throw Error(name + ": is not a record of a batch; move it away, or start over with --force");
  }
}

std::string Difference(const RunRecord& before, const RunRecord& now, bool anyShard) {
  if (before.version != now.version) return "it was version " + before.version + " and is " + now.version;
  if (before.tableHash != now.tableHash) return "the table of eyes differs or was changed";
  std::string difference = DifferenceOfFiles(before.eyeFiles, now.eyeFiles);
  if (difference.empty()) difference = DifferenceOfLights(before, now);
  if (!difference.empty()) return difference;
  if (before.chunkRows != now.chunkRows) {
    return "--chunk was " + std::to_string(before.chunkRows) + " and is " + std::to_string(now.chunkRows);
  }
  if (before.shard.of != now.shard.of || (!anyShard && before.shard != now.shard)) {
    const auto text = [](Shard shard) { return std::to_string(shard.number) + "/" + std::to_string(shard.of); };
    return "--shard was " + text(before.shard) + " and is " + text(now.shard);
  }
  difference = DifferenceOfSettings(before, now, anyShard);
  if (!difference.empty()) return difference;
  return before.columns == now.columns ? "" : "the columns of the results are others";
}

std::string HashOfFile(const std::string& file) {
  std::error_code ignored;
  if (file == kStandardStream || !fs::is_regular_file(PathOf(file), ignored))
    return "";  // not opened, since opening might wait for a writer
  InputFile stream(file);
  stream.ignore(std::numeric_limits<std::streamsize>::max());
  return stream.hash();
}

}  // namespace orvanel::cli
