// Tests the rows of results, for any number of threads, and for runs that are resumed.
#include "cli/batch/run.h"

#include <gtest/gtest.h>
#ifndef _WIN32
#include <sys/stat.h>
#endif

#include <algorithm>
#include <csignal>
#include <numbers>
#include <thread>

#include "base/error.h"
#include "cli/batch/join.h"
#include "files/input_file.h"
#include "tests/cli/batch/tables_of_eyes.h"

namespace orvanel::cli {
namespace {

std::string Refusal(const BatchRequest& request) {
  try {
    RunBatch(request);
  } catch (const Error& error) {
    return error.what();
  }
  return "accepted";
}

TEST(Run, EachRowBecomesOneRowInTheSameOrder) {
  const TemporaryFolder folder;
  Write(folder / "eyes.csv", TableOfEyes(40));
  BatchRequest request = RequestIn(folder);
  request.jobs = 3;
  const BatchResult result = RunBatch(request);
  EXPECT_EQ(result.rows, 40U);
  EXPECT_EQ(result.errors, 5U);
  const std::string text = Read(folder / "results.csv");
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 41);
  EXPECT_TRUE(text.starts_with("id,rms_um_orders_2_and_above,"));
  EXPECT_NE(text.find("\n\"eye, 5\",,,,,,,\"line 7, column 40: column 'Z4': 'x' is not a number; write it as 0.12 or "
                      "1.2e-1\"\n"),
            std::string::npos)
      << text;
}

TEST(Run, TheBytesDoNotDependOnTheNumberOfThreads) {
  std::string first;
  for (const std::size_t jobs : {1U, 2U, 7U}) {
    const TemporaryFolder folder;
    Write(folder / "eyes.csv", TableOfEyes(300));
    BatchRequest request = RequestIn(folder);
    request.choice.metrics = MetricsNamed("strehl,rms");
    request.jobs = jobs;
    RunBatch(request);
    if (first.empty()) first = Read(request.results);
    EXPECT_EQ(Read(request.results), first);
  }
}

TEST(Run, FromEveryCutOfTheResultsItGoesOnToTheSameBytes) {
  const TemporaryFolder folder;
  Write(folder / "eyes.csv", TableOfEyes(20));
  BatchRequest request = RequestIn(folder);
  RunBatch(request);
  const std::string whole = Read(request.results), record = Read(RecordFileOf(request.results));
  request.resume = true;
  for (std::size_t cut = 0; cut <= whole.size(); cut += 17) {
    Write(request.results, whole.substr(0, cut));
    const BatchResult result = RunBatch(request);
    EXPECT_EQ(Read(request.results), whole) << cut;
    EXPECT_EQ(Read(RecordFileOf(request.results)), record) << cut;
    EXPECT_EQ(result.rows, 20U);
    EXPECT_EQ(result.errors, 3U);
  }
}

// Eyes of small pupils with a metric of image quality and a lens. The second is too steep for both.
BatchRequest RequestOfQuality(const TemporaryFolder& folder) {
  Write(
      folder / "eyes.csv",
      "id,pupil_diameter_mm,eye,unit,normalisation,order,y_axis,Z3,Z4,Z8\na,3,OD,um,orthonormal,osa,up,0.02,0.1,0.03\n"
      "b,3,OD,um,orthonormal,osa,up,0,0,4000\nc,2.5,OD,um,orthonormal,osa,up,-0.03,0.05,0.02\n"
      "d,20,OD,um,orthonormal,osa,up,0,0.1,0\ne,2.8,OD,um,orthonormal,osa,up,0,-0.1,0.01\n");
  BatchRequest request = RequestIn(folder);
  request.model.kind = request.choice.model = ModelKind::kPhysical;
  request.choice.metrics = MetricsNamed("rms", ModelKind::kPhysical);
  request.quality.metrics = {QualityMetric::kVsx, QualityMetric::kRmsW};
  request.lensBy = QualityMetric::kVsx;
  request.lens.grid.sphereOnly = true;
  request.lenses = {-0.5, 0.0, 0.5};
  request.record.chunkRows = 2;
  return request;
}

TEST(Run, MetricsOfImageQualityAndLensesAreColumnsWithANoteWhereTheyAreMissing) {
  const TemporaryFolder folder;
  const BatchRequest request = RequestOfQuality(folder);
  const BatchResult result = RunBatch(request);
  EXPECT_EQ(result.rows, 5U);
  EXPECT_EQ(result.errors, 1U);  // a pupil of 20 mm
  EXPECT_EQ(result.noted, 4U);   // three lenses do not hold the depth of focus of the others
  const std::string text = Read(request.results);
  EXPECT_TRUE(
      text.starts_with("id,rms_um_orders_2_and_above,rms_um_orders_3_and_above,implausible,"
                       "VSX_origin_best_reference_same_light_physical,RMSw_um_physical,"
                       "refraction_sphere_d_by_VSX,"))
      << text;
  EXPECT_NE(text.find(",quality_note,error\n"), std::string::npos) << text;
  EXPECT_NE(text.find("\"through focus: VSX is best with the last lens that has a value, -0.5 D;"), std::string::npos)
      << text;
  // Of the wavefront that is too steep for VSX, RMSw has values with all lenses.
  EXPECT_NE(text.find("\nb,4000,4000,0,,4000" + std::string(14, ',') +
                      "0,4000,,,\"VSX, lens by VSX: the wavefront is too steep"),
            std::string::npos)
      << text;
  EXPECT_NE(text.find("through focus: 3 of 3 lenses have no values of VSX, from -0.5 D to 0.5 D"), std::string::npos)
      << text;
  EXPECT_NE(text.find("\nd" + std::string(24, ',') + "line 5: the pupil diameter 20 mm is outside"), std::string::npos)
      << text;
}

TEST(Run, MetricsOfImageQualityAndLensesHaveTheSameBytesForAnyThreadsShardsAndCuts) {
  const TemporaryFolder folder;
  BatchRequest request = RequestOfQuality(folder);
  RunBatch(request);
  const std::string whole = Read(request.results);
  request.jobs = 3;
  request.force = true;
  RunBatch(request);
  EXPECT_EQ(Read(request.results), whole);
  request.force = false;
  request.resume = true;
  for (const std::size_t rows : {1U, 4U}) {
    LeaveAsKilled(request.results, EndOfRows(whole, rows), whole.size());
    EXPECT_EQ(RunBatch(request).earlier, rows);
    EXPECT_EQ(Read(request.results), whole) << rows;
  }
  request.resume = false;
  std::vector<std::string> shards;
  for (const std::size_t number : {1U, 2U}) {
    request.record.shard = {number, 2};
    request.results = (folder / ("shard_" + std::to_string(number) + ".csv")).string();
    RunBatch(request);
    shards.push_back(request.results);
  }
  const std::string merged = (folder / "merged.csv").string();
  JoinShards(shards, merged, false);
  EXPECT_EQ(Read(merged), whole);
}

// One eye in several lights. The eye has no aberration in the first rows. The last rows are invalid.
BatchRequest RequestOfLights(const TemporaryFolder& folder) {
  Write(folder / "sodium.csv", "nm,weight\n589,1\n");
  Write(folder / "two.csv", "500,1\n650,0.5\n");
  Write(folder / "wrong.csv", "500,x\n");
  const std::string of = "," + folder.path().string() + "/", none = ",0,0\n", some = ",0.1,-0.03\n";
  Write(folder / "eyes.csv",
        "id,Light,pupil_diameter_mm,reference_wavelength_nm,eye,unit,normalisation,order,y_axis,Z4,Z7\n"
        "a,450,3,555,OD,um,orthonormal,osa,up" +
            none + "b,,3,555,OD,um,orthonormal,osa,up" + some + "c,600,3,555,OD,um,orthonormal,osa,up" + none + "d" +
            of + "sodium.csv,3,555,OD,um,orthonormal,osa,up" + some + "e, 589 ,3,555,OD,um,orthonormal,osa,up" + some +
            "f" + of + "two.csv,3,555,OD,um,orthonormal,osa,up" + some + "g,650,3,555,OD,um,orthonormal,osa,up" + some +
            "h,450,3,555,OD,um,orthonormal,osa,up" + some + "i" + of + "sodium.csv,2.5,555,OD,um,orthonormal,osa,up" +
            some + "j,200,3,555,OD,um,orthonormal,osa,up" + some + "k" + of +
            "wrong.csv,3,555,OD,um,orthonormal,osa,up" + some);
  BatchRequest request = RequestIn(folder);
  request.model.kind = request.choice.model = ModelKind::kPhysical;
  request.choice.metrics = MetricsNamed("strehl_axis,cutoff", ModelKind::kPhysical);
  request.quality.metrics = {QualityMetric::kVsx, QualityMetric::kRmsW};
  request.record.chunkRows = 2;
  return request;
}

// The row that begins with a letter, without the user's own columns.
std::string NumbersOf(const std::string& results, char id) {
  const std::size_t begin = results.find(std::string("\n") + id + ",") + 1, numbers = results.find(',', begin + 2) + 1;
  return results.substr(numbers, results.find('\n', begin) - numbers);
}

TEST(Run, ARowHasTheLightThatItStates) {
  const TemporaryFolder folder;
  const BatchRequest request = RequestOfLights(folder);
  const BatchResult result = RunBatch(request);
  EXPECT_EQ(result.rows, 11U);
  EXPECT_EQ(result.errors, 2U);
  const std::string rows = Read(request.results);
  EXPECT_NE(rows.find("\nb,555,"), std::string::npos) << rows;  // the light of the run
  const auto cutOff = [&rows](char id) {
    const std::string numbers = NumbersOf(rows, id);
    return std::stod(numbers.substr(numbers.find(',') + 1));
  };
  constexpr double kPerDegree = std::numbers::pi / 180.0;
  EXPECT_DOUBLE_EQ(cutOff('a'), 3.0 / 450e-6 * kPerDegree);
  EXPECT_DOUBLE_EQ(cutOff('c'), 3.0 / 600e-6 * kPerDegree);
  // The same light under three names.
  EXPECT_EQ(NumbersOf(rows, 'd'), NumbersOf(rows, 'e'));
  EXPECT_NE(NumbersOf(rows, 'd'), NumbersOf(rows, 'b'));
  EXPECT_NE(NumbersOf(rows, 'h'), NumbersOf(rows, 'g'));
  EXPECT_NE(
      rows.find("\nj,200" + std::string(7, ',') + "line 11: column 'light': '200' is outside of 300 to 1200 nm\n"),
      std::string::npos)
      << rows;
  EXPECT_NE(rows.find("wrong.csv: line 1, column 5: 'x' is not a number"), std::string::npos) << rows;
  // Each row is that of a run in its light alone.
  const std::pair<char, physical::Light> lights[] = {{'a', {{450.0, 1.0}}},
                                                     {'c', {{600.0, 1.0}}},
                                                     {'e', {{589.0, 1.0}}},
                                                     {'f', {{500.0, 1.0}, {650.0, 0.5}}},
                                                     {'g', {{650.0, 1.0}}}};
  std::string eyes = Read(request.table);
  eyes.replace(eyes.find("Light"), 5, "lamp");
  Write(folder / "own.csv", eyes);
  BatchRequest single = RequestOfLights(folder);
  single.table = (folder / "own.csv").string();
  single.force = true;
  for (const auto& [id, light] : lights) {
    single.model.physical.light = light;
    RunBatch(single);
    EXPECT_EQ(NumbersOf(rows, id), NumbersOf(Read(single.results), id)) << id;
  }
}

TEST(Run, LightOfEachRowHasTheSameBytesForAnyThreadsShardsAndCuts) {
  const TemporaryFolder folder;
  BatchRequest request = RequestOfLights(folder);
  RunBatch(request);
  const std::string whole = Read(request.results), record = Read(RecordFileOf(request.results));
  EXPECT_EQ(ReadRecord(request.results)->lightFiles.size(), 3U);
  request.jobs = 3;
  request.force = true;
  RunBatch(request);
  EXPECT_EQ(Read(request.results), whole);
  EXPECT_EQ(Read(RecordFileOf(request.results)), record);
  request.force = false;
  request.resume = true;
  for (const std::size_t rows : {1U, 5U, 10U}) {
    LeaveAsKilled(request.results, EndOfRows(whole, rows), whole.size());
    EXPECT_EQ(RunBatch(request).earlier, rows);
    EXPECT_EQ(Read(request.results), whole) << rows;
    EXPECT_EQ(Read(RecordFileOf(request.results)), record) << rows;
  }
  request.resume = false;
  std::vector<std::string> shards;
  for (const std::size_t number : {1U, 2U, 3U}) {
    request.record.shard = {number, 3};
    request.results = (folder / ("shard_" + std::to_string(number) + ".csv")).string();
    RunBatch(request);
    shards.push_back(request.results);
  }
  const std::string merged = (folder / "merged.csv").string();
  JoinShards(shards, merged, false);
  EXPECT_EQ(Read(merged), whole);
  EXPECT_EQ(Read(RecordFileOf(merged)), record);
}

TEST(Run, ASpectrumThatHasChangedIsNoticed) {
  const TemporaryFolder folder;
  BatchRequest request = RequestOfLights(folder);
  RunBatch(request);
  const std::string whole = Read(request.results), spectrum = (folder / "sodium.csv").string();
  request.resume = true;
  Write(spectrum, "590,1\n");
  EXPECT_NE(Refusal(request).find("the spectrum " + spectrum + " was changed"), std::string::npos);
  EXPECT_EQ(Read(request.results), whole);
  // Rows d and i of different shards name it.
  std::vector<std::string> shards;
  request.resume = false;
  for (const std::size_t number : {1U, 2U, 3U, 4U, 5U, 6U}) {
    Write(spectrum, number == 2 ? "590,1\n" : "nm,weight\n589,1\n");
    request.record.shard = {number, 6};
    request.results = (folder / ("shard_" + std::to_string(number) + ".csv")).string();
    RunBatch(request);
    shards.push_back(request.results);
  }
  try {
    JoinShards(shards, (folder / "merged.csv").string(), false);
    FAIL() << "joined";
  } catch (const Error& error) {
    EXPECT_NE(std::string(error.what()).find("the spectrum " + spectrum + " was changed"), std::string::npos);
  }
}

// Eye files in place of the table, of which every fifth is missing.
BatchRequest RequestOfFiles(const TemporaryFolder& folder, int files) {
  BatchRequest request = RequestIn(folder);
  request.table.clear();
  for (int i = 0; i < files; ++i) {
    const std::filesystem::path file = folder / (std::to_string(i) + ".json");
    request.eyeFiles.push_back(file.string());
    if (i % 5 == 3) continue;
    Write(file, "{\"pupil_diameter_mm\": 5, \"convention\": {\"name\": \"osa\"}, \"coefficients\": [0, 0, 0, 0, " +
                    ShortestText(0.25 + 0.01 * i) + "]}");
  }
  return request;
}

TEST(Run, EachEyeFileBecomesARowAndFromEveryCutItGoesOnToTheSameBytes) {
  const TemporaryFolder folder;
  BatchRequest request = RequestOfFiles(folder, 20);
  request.choice.metrics = MetricsNamed("rms");
  request.jobs = 3;
  EXPECT_EQ(RunBatch(request).errors, 4U);
  const std::string whole = Read(request.results), record = Read(RecordFileOf(request.results));
  std::string expected = "file,rms_um_orders_2_and_above,rms_um_orders_3_and_above,implausible,error\n";
  for (int i = 0; i < 20; ++i) {
    expected +=
        request.eyeFiles[static_cast<std::size_t>(i)] + (i % 5 == 3 ? ",,,,cannot be read: No such file or directory\n"
                                                                    : "," + ShortestText(0.25 + 0.01 * i) + ",0,0,\n");
  }
  EXPECT_EQ(whole, expected);
  request.resume = true;
  for (std::size_t rows = 0; rows <= 20; ++rows) {
    LeaveAsKilled(request.results, EndOfRows(whole, rows), whole.size());
    const BatchResult result = RunBatch(request);
    EXPECT_EQ(result.earlier, rows);
    EXPECT_EQ(result.errors, 4U);
    EXPECT_EQ(Read(request.results), whole) << rows;
    EXPECT_EQ(Read(RecordFileOf(request.results)), record) << rows;
  }
}

TEST(Run, AnEyeFileThatVanishesMeanwhileIsARowAtFaultAndItsReturnIsNoticed) {
  const TemporaryFolder folder;
  BatchRequest request = RequestOfFiles(folder, 3);
  const std::filesystem::path file = request.eyeFiles[1];
  const std::string bytes = Read(file);
  const BatchResult result = RunBatch(request, [&file](const std::string&) { std::filesystem::remove(file); });
  EXPECT_EQ(result.rows, 3U);
  EXPECT_EQ(result.errors, 1U);
  request.resume = true;
  EXPECT_EQ(RunBatch(request).earlier, 3U);
  Write(file, bytes);
  EXPECT_NE(Refusal(request).find("the eye file " + file.string() + " was changed"), std::string::npos);
}

TEST(Run, AnEyeFileThatChangesMeanwhileStopsIt) {
  const TemporaryFolder folder;
  const BatchRequest request = RequestOfFiles(folder, 3);
  const std::string file = request.eyeFiles[1];
  try {
    RunBatch(request, [&file](const std::string&) { Write(file, Read(file) + "\n"); });
    FAIL() << "not noticed";
  } catch (const Error& error) {
    EXPECT_EQ(error.what(), file + ": was changed after the batch began; start over with --force");
  }
}

TEST(Run, FromEveryMomentItWasKilledItGoesOnToTheSameBytes) {
  const TemporaryFolder folder;
  Write(folder / "eyes.csv", TableOfEyes(20));
  BatchRequest request = RequestIn(folder);
  RunBatch(request);
  const std::string whole = Read(request.results), record = Read(RecordFileOf(request.results));
  request.resume = true;
  for (const std::size_t rows : {0U, 1U, 7U, 19U, 20U}) {
    for (const std::size_t more : {0U, 1U, 100U}) {
      LeaveAsKilled(request.results, EndOfRows(whole, rows), EndOfRows(whole, rows) + more);
      const BatchResult result = RunBatch(request);
      EXPECT_EQ(result.earlier, rows);
      EXPECT_EQ(result.rows, 20U);
      EXPECT_EQ(result.errors, 3U);
      EXPECT_EQ(Read(request.results), whole) << rows << " " << more;
      EXPECT_EQ(Read(RecordFileOf(request.results)), record) << rows << " " << more;
    }
  }
}

TEST(Run, RowsThatWereAddedOrChangedAreNoticed) {
  const TemporaryFolder folder;
  Write(folder / "eyes.csv", TableOfEyes(20));
  BatchRequest request = RequestIn(folder);
  RunBatch(request);
  const std::string whole = Read(request.results);
  request.resume = true;
  // A row glued on twice: to complete results, and to those of a killed run, of which the rest is computed.
  const std::string last = whole.substr(EndOfRows(whole, 19));
  Write(request.results, whole + last);
  EXPECT_NE(Refusal(request).find("has more rows than its run has written"), std::string::npos);
  EXPECT_EQ(Read(request.results), whole + last);
  Write(request.results, whole);
  LeaveAsKilled(request.results, EndOfRows(whole, 10), EndOfRows(whole, 10));
  Write(request.results, whole.substr(0, EndOfRows(whole, 10)) + whole.substr(EndOfRows(whole, 9), 30));
  EXPECT_EQ(RunBatch(request).rows, 20U);
  EXPECT_EQ(Read(request.results), whole);
  // Within what the record knows.
  LeaveAsKilled(request.results, EndOfRows(whole, 10), EndOfRows(whole, 10));
  std::string changed = Read(request.results);
  const std::size_t digit = changed.find_last_of("123456789");
  changed[digit] = changed[digit] == '1' ? '2' : '1';
  Write(request.results, changed);
  EXPECT_NE(Refusal(request).find("was changed after its run had written it"), std::string::npos);
  EXPECT_EQ(Read(request.results), changed);
}

TEST(Run, MoreRowsThanTheTableHasAreRefused) {
  const TemporaryFolder folder;
  Write(folder / "eyes.csv", TableOfEyes(20));
  BatchRequest request = RequestIn(folder);
  RunBatch(request);
  const std::string whole = Read(request.results);
  const std::string more = whole + whole.substr(EndOfRows(whole, 19));
  Write(request.results, more);
  LeaveAsKilled(request.results, more.size(), more.size());  // by somebody who has changed the record too
  request.resume = true;
  EXPECT_NE(Refusal(request).find("has more rows than the table of eyes gives"), std::string::npos);
}

#ifndef _WIN32
// Runs with a pipe that somebody writes the table into; gives the refusal.
std::string RefusalOfPipe(BatchRequest request, const TemporaryFolder& folder, const std::string& text) {
  std::signal(SIGPIPE, SIG_IGN);
  request.table = (folder / "pipe.csv").string();
  EXPECT_EQ(mkfifo(request.table.c_str(), 0600), 0);
  std::thread writer([&] { Write(request.table, text); });
  const std::string refusal = Refusal(request);
  { const InputFile unblocks(request.table); }  // should nobody have read
  writer.join();
  std::filesystem::remove(request.table);
  return refusal;
}

TEST(Run, APipeIsReadLikeAFileButNotTwice) {
  const TemporaryFolder folder;
  Write(folder / "eyes.csv", TableOfEyes(20));
  BatchRequest request = RequestIn(folder);
  RunBatch(request);
  const std::string whole = Read(request.results), record = Read(RecordFileOf(request.results));
  request.resume = true;
  EXPECT_NE(RefusalOfPipe(request, folder, TableOfEyes(20)).find("the table of eyes is a pipe; give a file"),
            std::string::npos);
  request.resume = false;
  request.force = true;
  EXPECT_EQ(RefusalOfPipe(request, folder, TableOfEyes(20)), "accepted");
  EXPECT_EQ(Read(request.results), whole);
  EXPECT_EQ(Read(RecordFileOf(request.results)), record);
}
#endif

TEST(Run, ItGoesOnWithNothingButItsOwnResults) {
  const TemporaryFolder folder;
  Write(folder / "eyes.csv", TableOfEyes(20));
  BatchRequest request = RequestIn(folder);
  RunBatch(request);
  const std::string whole = Read(request.results);
  EXPECT_NE(Refusal(request).find("exists already"), std::string::npos);
  request.resume = true;
  BatchRequest other = request;
  other.record.settings = {{"--pupil", "4"}};
  EXPECT_NE(Refusal(other).find("--pupil was not given and is '4'"), std::string::npos);
  other = request;
  other.choice.metrics = MetricsNamed("rms");
  EXPECT_NE(Refusal(other).find("the columns of the results are others"), std::string::npos);
  Write(folder / "eyes.csv", TableOfEyes(21));
  EXPECT_NE(Refusal(request).find("the table of eyes differs"), std::string::npos);
  std::filesystem::remove(RecordFileOf(request.results));
  EXPECT_NE(Refusal(request).find("is missing"), std::string::npos);
  EXPECT_EQ(Read(request.results), whole);
}

TEST(Run, StrictStopsAtTheFirstRowAtFaultAndKeepsThoseBefore) {
  const TemporaryFolder folder;
  Write(folder / "eyes.csv", TableOfEyes(20));
  BatchRequest request = RequestIn(folder);
  request.strict = true;
  EXPECT_NE(Refusal(request).find("line 7, column 40"), std::string::npos);
  const std::string text = Read(request.results);
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 6);
  request.strict = false;
  request.resume = true;
  EXPECT_EQ(RunBatch(request).rows, 20U);
}

TEST(Run, AColumnOfTheUserMustNotHaveTheNameOfAResult) {
  const TemporaryFolder folder;
  Write(folder / "eyes.csv", "error,\"Z(2,0)\"\n1,0.1\n");
  EXPECT_NE(Refusal(RequestIn(folder)).find("'error' has the name of a column of the results"), std::string::npos);
  EXPECT_FALSE(std::filesystem::exists(folder / "results.csv"));
}

TEST(Run, TheTableItselfIsNeverReplaced) {
  const TemporaryFolder folder;
  Write(folder / "eyes.csv", TableOfEyes(2));
  BatchRequest request = RequestIn(folder);
  request.results = request.table;
  request.force = true;
  EXPECT_NE(Refusal(request).find("is the table of eyes itself"), std::string::npos);
  EXPECT_EQ(Read(folder / "eyes.csv"), TableOfEyes(2));
}

TEST(Run, ATableWithoutRowsHasResultsWithoutRows) {
  const TemporaryFolder folder;
  Write(folder / "eyes.csv", "id,\"Z(2,0)\"\n");
  EXPECT_EQ(RunBatch(RequestIn(folder)).rows, 0U);
  EXPECT_TRUE(Read(folder / "results.csv").ends_with(",error\n"));
}

}  // namespace
}  // namespace orvanel::cli
