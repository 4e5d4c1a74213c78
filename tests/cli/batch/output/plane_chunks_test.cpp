// Tests the files of planes in chunks, by runs over small tables.
#include "cli/batch/output/plane_chunks.h"

#include <gtest/gtest.h>

#include "base/error.h"
#include "cli/batch/place_lock.h"
#include "tests/cli/batch/tables_of_eyes.h"

namespace orvanel::cli {
namespace {

TEST(PlaneChunks, AreChosenByName) {
  EXPECT_EQ(PlaneKindsNamed("mtf,psf,mtf"), (std::vector<PlaneKind>{PlaneKind::kMtf, PlaneKind::kPsf}));
  EXPECT_THROW(PlaneKindsNamed("psf,phase"), Error);
}

#if ORVANEL_WITH_HDF5

BatchRequest WithPlanes(const TemporaryFolder& folder) {
  BatchRequest request = RequestIn(folder);
  request.planes = (folder / "planes.h5").string();
  request.planeKinds = PlaneKindsNamed("psf");
  request.record.chunkRows = 3;
  request.jobs = 2;
  return request;
}

TEST(PlaneChunks, ThereIsAFileForEachChunkAndNoneThatIsHalf) {
  const TemporaryFolder folder;
  Write(folder / "eyes.csv", TableOfEyes(7));
  RunBatch(WithPlanes(folder));
  EXPECT_EQ(Names(folder.path()), (std::set<std::string>{"eyes.csv", "results.csv", "results.csv.orvanel",
                                                         "planes-000001.h5", "planes-000002.h5", "planes-000003.h5"}));
}

TEST(PlaneChunks, AResumedRunMakesTheSameFiles) {
  const TemporaryFolder folder;
  Write(folder / "eyes.csv", TableOfEyes(7));
  BatchRequest request = WithPlanes(folder);
  RunBatch(request);
  const std::string whole = Read(request.results);
  std::string planes[3];
  for (int i = 0; i < 3; ++i) planes[i] = Read(folder / ("planes-00000" + std::to_string(i + 1) + ".h5"));
  EXPECT_NE(planes[0], planes[1]);
  request.resume = true;
  // After five rows: the second chunk was under way.
  LeaveAsKilled(request.results, EndOfRows(whole, 3), EndOfRows(whole, 5) + 5);
  Write(folder / "planes-000002.h5.part", "half");
  std::filesystem::remove(folder / "planes-000002.h5");
  std::filesystem::remove(folder / "planes-000003.h5");
  EXPECT_EQ(RunBatch(request).earlier, 3U);
  EXPECT_EQ(Read(request.results), whole);
  for (int i = 0; i < 3; ++i) EXPECT_EQ(Read(folder / ("planes-00000" + std::to_string(i + 1) + ".h5")), planes[i]);
  EXPECT_FALSE(std::filesystem::exists(folder / "planes-000002.h5.part"));
}

TEST(PlaneChunks, FilesThatAreGoneOrCutShortAreMadeAgain) {
  const TemporaryFolder folder;
  Write(folder / "eyes.csv", TableOfEyes(7));
  BatchRequest request = WithPlanes(folder);
  RunBatch(request);
  const std::string whole = Read(request.results), record = Read(RecordFileOf(request.results));
  std::string planes[3];
  for (int i = 0; i < 3; ++i) planes[i] = Read(folder / ("planes-00000" + std::to_string(i + 1) + ".h5"));
  request.resume = true;
  EXPECT_EQ(RunBatch(request).again, 0U);
  std::filesystem::remove(folder / "planes-000001.h5");
  Write(folder / "planes-000003.h5", planes[2].substr(0, planes[2].size() - 1));
  const BatchResult result = RunBatch(request);
  EXPECT_EQ(result.again, 4U);
  EXPECT_EQ(result.earlier, 7U);
  EXPECT_EQ(result.rows, 7U);
  EXPECT_EQ(result.errors, 1U);
  for (int i = 0; i < 3; ++i) EXPECT_EQ(Read(folder / ("planes-00000" + std::to_string(i + 1) + ".h5")), planes[i]);
  EXPECT_EQ(Read(request.results), whole);
  EXPECT_EQ(Read(RecordFileOf(request.results)), record);
  // The same of a run that was killed, in the chunk before the one where it goes on.
  LeaveAsKilled(request.results, EndOfRows(whole, 6), EndOfRows(whole, 6));
  std::filesystem::remove(folder / "planes-000002.h5");
  std::filesystem::remove(folder / "planes-000003.h5");
  EXPECT_EQ(RunBatch(request).again, 3U);
  for (int i = 0; i < 3; ++i) EXPECT_EQ(Read(folder / ("planes-00000" + std::to_string(i + 1) + ".h5")), planes[i]);
  EXPECT_EQ(Read(request.results), whole);
}

TEST(PlaneChunks, ARunIsLockedOutOfThePlanesOfAnother) {
  const TemporaryFolder folder;
  Write(folder / "eyes.csv", TableOfEyes(7));
  BatchRequest request = WithPlanes(folder);
  request.pictures = (folder / "pictures").string();
  request.pictureKinds = PictureKindsNamed("psf");
  for (const std::string& place : {request.planes + ".lock", request.pictures + "/orvanel.lock"}) {
    std::filesystem::create_directory(request.pictures);
    const PlaceLock another(place, {}, "");
    EXPECT_THROW(RunBatch(request), Error) << place;
    EXPECT_FALSE(std::filesystem::exists(request.results));
  }
  EXPECT_NO_THROW(RunBatch(request));
  EXPECT_FALSE(std::filesystem::exists(request.planes + ".lock"));
  EXPECT_FALSE(std::filesystem::exists(request.pictures + "/orvanel.lock"));
}

TEST(PlaneChunks, ShardsMakeTheFilesOfASingleRun) {
  const TemporaryFolder folder;
  Write(folder / "eyes.csv", TableOfEyes(7));
  BatchRequest request = WithPlanes(folder);
  RunBatch(request);
  const std::string second = Read(folder / "planes-000002.h5");
  request.record.shard = {2, 2};
  request.results = (folder / "shard_2.csv").string();
  EXPECT_THROW(RunBatch(request), Error);  // the file is there
  EXPECT_FALSE(std::filesystem::exists(request.results));
  request.force = true;
  RunBatch(request);
  EXPECT_EQ(Read(folder / "planes-000002.h5"), second);
}

// The stack refuses planes of another size than its description says, so that this test fails without the size of the
// settings. The file of a PSF of more samples is larger.
TEST(PlaneChunks, OfThePhysicalModelHaveTheSizeOfItsSettings) {
  const TemporaryFolder folder;
  Write(folder / "eyes.csv", TableOfEyes(2));
  BatchRequest request = WithPlanes(folder);
  request.model.kind = request.choice.model = ModelKind::kPhysical;
  request.choice.metrics = UsualMetrics(false, ModelKind::kPhysical);
  request.model.physical.samples = 31;
  RunBatch(request);
  const std::string small = Read(folder / "planes-000001.h5");
  EXPECT_NE(small.find("psf_sample_arcmin"), std::string::npos);
  request.model.physical.samples = 90;
  request.force = true;
  RunBatch(request);
  EXPECT_GT(Read(folder / "planes-000001.h5").size(), small.size() + 2 * 31 * 31 * 2);
}

TEST(PlaneChunks, AFolderThatIsMissingIsRefused) {
  EXPECT_THROW(PlaneChunks("/no such folder/planes.h5", {PlaneKind::kPsf}, 4, {}), Error);
}

#endif

}  // namespace
}  // namespace orvanel::cli
