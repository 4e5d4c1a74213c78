// Tests the pictures of the eyes of a batch.
#include "cli/batch/output/picture_files.h"

#include <gtest/gtest.h>

#include "base/error.h"
#include "evaluation/simulation.h"
#include "files/eyes/eye_file.h"
#include "files/pictures/png.h"
#include "targets/sector_star.h"
#include "tests/cli/batch/tables_of_eyes.h"

namespace orvanel::cli {
namespace {

TEST(PictureFiles, AreChosenByName) {
  EXPECT_EQ(PictureKindsNamed("star,psf"), (std::vector<PictureKind>{PictureKind::kStar, PictureKind::kPsf}));
  EXPECT_THROW(PictureKindsNamed("ring"), Error);
}

TEST(PictureFiles, RowsThatAreNotAtFaultHaveTheirPictures) {
  const TemporaryFolder folder;
  Write(folder / "eyes.csv", TableOfEyes(7));
  BatchRequest request = RequestIn(folder);
  request.pictures = (folder / "pictures").string();
  request.pictureKinds = PictureKindsNamed("psf,mtf");
  request.jobs = 2;
  RunBatch(request);
  const std::set<std::string> names = Names(request.pictures);
  EXPECT_EQ(names.size(), 12U);
  EXPECT_EQ(names.count("0000007_mtf.png"), 1U);
  EXPECT_EQ(names.count("0000006_psf.png"), 0U);
}

TEST(PictureFiles, ThoseThatAreGoneOrCutShortAreMadeAgain) {
  const TemporaryFolder folder;
  Write(folder / "eyes.csv", TableOfEyes(20));
  BatchRequest request = RequestIn(folder);
  request.pictures = (folder / "pictures").string();
  request.pictureKinds = PictureKindsNamed("psf,mtf");
  request.record.chunkRows = 4;
  request.record.shard = {2, 2};  // rows 5 to 8, 13 to 16
  RunBatch(request);
  const std::string whole = Read(request.results);
  const std::set<std::string> names = Names(request.pictures);
  const std::filesystem::path first = folder / "pictures/0000007_psf.png", second = folder / "pictures/0000014_mtf.png";
  const std::string gone = Read(first), cut = Read(second);
  request.resume = true;
  EXPECT_EQ(RunBatch(request).again, 0U);
  std::filesystem::remove(first);
  EXPECT_EQ(RunBatch(request).again, 4U);
  EXPECT_EQ(Read(first), gone);
  Write(second, cut.substr(0, cut.size() / 2));
  const BatchResult result = RunBatch(request);
  EXPECT_EQ(result.again, 4U);
  EXPECT_EQ(result.rows, 8U);
  EXPECT_EQ(Read(second), cut);
  EXPECT_EQ(Read(request.results), whole);
  EXPECT_EQ(Names(request.pictures), names);
}

TEST(PictureFiles, TheStarIsThatOfASimulation) {
  const TemporaryFolder folder;
  const Eye eye = ReadEyeFile(ORVANEL_EYES "/standard_observer_6mm.json");
  const std::vector<PictureKind> kinds = {PictureKind::kStar, PictureKind::kPsf};
  Evaluator evaluator;
  PictureWriter painter(PictureFolder((folder / "new").string(), kinds), evaluator, SectorStar());
  evaluator.Evaluate(eye, NeedsOf(kinds));
  painter.Paint(0);
  const Results simulation = Simulate(evaluator, eye, {});
  EXPECT_EQ(Read(folder / "new" / "0000001_star.png"),
            EncodePng(GreyPictureOf(simulation.star.stretched), Pixels::kNumbers));
  EXPECT_EQ(Read(folder / "new" / "0000001_psf.png"), EncodePng(GreyPictureOf(simulation.psf), Pixels::kNumbers));
}

TEST(PictureFiles, AFolderThatCannotBeMadeIsRefused) {
  EXPECT_THROW(PictureFolder("/no such folder/pictures", {}), Error);
}

}  // namespace
}  // namespace orvanel::cli
