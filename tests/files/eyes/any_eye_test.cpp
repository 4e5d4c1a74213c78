// Tests which reader a file gets, and which eye of a table is read.
#include "files/eyes/any_eye.h"

#include <gtest/gtest.h>

#include "base/error.h"
#include "tests/support/temporary_files.h"

namespace orvanel::files {
namespace {

constexpr const char* kTable =
    "name,pupil_diameter_mm,eye,unit,normalisation,order,y_axis,Z4\n"
    "one,5,OD,um,orthonormal,osa,up,0.1\n"
    "two,5,OD,um,orthonormal,osa,up,oops\n"
    "three,5,OD,um,orthonormal,osa,up,0.3\n";

class AnyEye : public testing::Test {
 protected:
  Eye Read(const std::string& name, const std::string& text, std::optional<std::size_t> row) {
    Write(folder_ / name, text);
    return ReadEye((folder_ / name).string(), {}, row);
  }

 private:
  TemporaryFolder folder_;
};

TEST_F(AnyEye, EndingsTellTheKind) {
  EXPECT_EQ(KindOf("a.b/eyes.CSV"), FileKind::kCsv);
  EXPECT_EQ(KindOf("eyes.tsv"), FileKind::kCsv);
  EXPECT_EQ(KindOf("eyes.txt"), FileKind::kCsv);
  EXPECT_EQ(KindOf("eyes.ndjson"), FileKind::kNdjson);
  EXPECT_EQ(KindOf("eyes.jsonl"), FileKind::kNdjson);
  EXPECT_EQ(KindOf("eye.json"), FileKind::kEyeFile);
  EXPECT_EQ(KindOf("eye"), FileKind::kEyeFile);
}

TEST_F(AnyEye, ARowIsCountedFromOneAndOtherRowsFaultsDoNotMatter) {
  EXPECT_EQ(Read("t.csv", kTable, 1).name, "one");
  EXPECT_EQ(Read("t.csv", kTable, 3).coefficients.AsStated().at(4), 0.3);
  EXPECT_THROW(Read("t.csv", kTable, 2), ErrorAt);
  EXPECT_THROW(Read("t.csv", kTable, 4), Error);
}

TEST_F(AnyEye, ATableOfSeveralNeedsARow) {
  EXPECT_THROW(Read("t.csv", kTable, std::nullopt), Error);
  const std::string single(kTable, std::string(kTable).find("two"));
  EXPECT_EQ(Read("t.csv", single, std::nullopt).name, "one");
}

TEST_F(AnyEye, ARowWithoutANameIsCalledByItsPlace) {
  std::string nameless = kTable;
  nameless.replace(0, 4, "id");
  EXPECT_TRUE(Read("t.csv", nameless, 3).name.ends_with("t.csv, row 3"));
}

TEST_F(AnyEye, ATableTellsWhatItsColumnsAreReadAs) {
  const TemporaryFolder folder;
  Write(folder / "t.csv", kTable);
  Write(folder / "e.json", R"({"pupil_diameter_mm": 4, "convention": {"name": "osa"}, "coefficients": [0]})");
  std::string columns;
  ReadEye((folder / "t.csv").string(), {}, 1, std::nullopt, {}, &columns);
  EXPECT_TRUE(columns.find("read as coefficients") != std::string::npos) << columns;
  columns.clear();
  ReadEye((folder / "e.json").string(), {}, std::nullopt, std::nullopt, {}, &columns);
  EXPECT_EQ(columns, "");
  EXPECT_THROW(ReadEye((folder / "e.json").string(), {}, std::nullopt, std::nullopt, {.prescription = true}), Error);
  EXPECT_THROW(ReadEye((folder / "e.json").string(), {}, std::nullopt, std::nullopt, {.decimalComma = true}), Error);
}

TEST_F(AnyEye, AnEyeFileHasNoRows) {
  const std::string text = R"({"pupil_diameter_mm": 4, "convention": {"name": "osa"}, "coefficients": [0]})";
  EXPECT_EQ(Read("e.json", text, std::nullopt).pupil, Millimetres(4.0));
  EXPECT_THROW(Read("e.json", text, 1), Error);
}

TEST_F(AnyEye, ADashIsATableAndWhatIsStatedGoesBeforeTheName) {
  EXPECT_EQ(KindOf("-"), FileKind::kCsv);
  EXPECT_EQ(KindOf("-", FileKind::kNdjson), FileKind::kNdjson);
  EXPECT_EQ(KindOf("/dev/stdin", FileKind::kCsv), FileKind::kCsv);
  EXPECT_EQ(KindOf("eyes.csv", FileKind::kNdjson), FileKind::kNdjson);
  EXPECT_EQ(TableKindOf(FileKind::kCsv), TableKind::kCsv);
  EXPECT_EQ(TableKindOf(FileKind::kNdjson), TableKind::kNdjson);
}

}  // namespace
}  // namespace orvanel::files
