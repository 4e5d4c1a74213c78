// Tests reading eyes from tables and lists of files, also if these change.
#include "cli/batch/eye_source.h"

#include <gtest/gtest.h>
#ifndef _WIN32
#include <sys/stat.h>
#endif

#include <filesystem>

#include "tests/support/temporary_files.h"

namespace orvanel::cli {
namespace {

constexpr const char* kEye = R"({"pupil_diameter_mm": 5, "convention": {"name": "osa"}, "coefficients": [0, 0, 0, 0, )";

std::string EyeText(const std::string& defocus) { return kEye + defocus + "]}"; }

TEST(EyeSource, GivesFilesInTheirOrderAndGoesOnBehindTheFaulty) {
  const TemporaryFolder folder;
  const auto name = [&](const char* file) { return (folder / file).string(); };
  Write(folder / "b.json", EyeText("0.25"));
  Write(folder / "broken.json", kEye);
  Write(folder / "a.json", EyeText("0.5"));
  EyeSource source({name("b.json"), name("missing.json"), name("broken.json"), name("a.json")}, {});
  EXPECT_EQ(source.identifierNames(), std::vector<std::string>{"file"});
  EXPECT_EQ(source.Share(), 0.0);
  TableEye eye;
  ASSERT_TRUE(source.Next(eye));
  EXPECT_EQ(eye.eye.coefficients.AsStated().at(4), 0.25);
  EXPECT_EQ(eye.identifiers, std::vector<std::string>{name("b.json")});
  EXPECT_THROW(source.Next(eye), UnreadableEye);
  EXPECT_EQ(eye.identifiers, std::vector<std::string>{name("missing.json")});
  EXPECT_EQ(source.Share(), 0.5);
  EXPECT_THROW(source.Next(eye), ErrorAt);
  EXPECT_EQ(eye.identifiers, std::vector<std::string>{name("broken.json")});
  ASSERT_TRUE(source.Next(eye));
  EXPECT_EQ(eye.eye.coefficients.AsStated().at(4), 0.5);
  EXPECT_FALSE(source.Next(eye));
  EXPECT_FALSE(source.Skip());
}

TEST(EyeSource, AFileOfMoreThanAnEyeFileMayHoldIsUnreadable) {
  const TemporaryFolder folder;
  const std::string large = (folder / "large.json").string();
  Write(large, std::string((1 << 20) + 1, ' '));
  EyeSource source({large}, {});
  TableEye eye;
  try {
    source.Next(eye);
    FAIL() << "read";
  } catch (const UnreadableEye& error) {
    EXPECT_EQ(std::string(error.what()), "is larger than 1 MiB; an eye file holds one eye");
  }
}

#ifndef _WIN32
TEST(EyeSource, APipeIsUnreadableAndNobodyWaitsForItsWriter) {
  const TemporaryFolder folder;
  const std::string pipe = (folder / "pipe.json").string();
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  EyeSource source({pipe}, {});
  TableEye eye;
  EXPECT_THROW(source.Next(eye), UnreadableEye);
}
#endif

TEST(EyeSource, PassesOverFiles) {
  EyeSource source({"missing.json", "also missing.json"}, {});
  EXPECT_TRUE(source.Skip());
  EXPECT_TRUE(source.Skip());
  EXPECT_FALSE(source.Skip());
}

TEST(EyeSource, GivesTheRowsOfATable) {
  const TemporaryFolder folder;
  Write(folder / "eyes.csv",
        "id,pupil_diameter_mm,eye,unit,normalisation,y_axis,\"Z(2,0)\"\na,5,OD,um,orthonormal,up,1\n");
  EyeSource source((folder / "eyes.csv").string(), TableKind::kCsv, {}, {});
  EXPECT_EQ(source.identifierNames(), std::vector<std::string>{"id"});
  EXPECT_TRUE(source.files().empty());
  TableEye eye;
  ASSERT_TRUE(source.Next(eye));
  EXPECT_EQ(eye.eye.coefficients.AsStated().at(4), 1.0);
  EXPECT_EQ(source.Share(), 1.0);
  EXPECT_FALSE(source.Next(eye));
  EXPECT_EQ(source.tableHash(), HashOfFile((folder / "eyes.csv").string()));
}

TEST(EyeSource, ItsHashesAreThoseOfTheBytes) {
  const TemporaryFolder folder;
  const std::string a = (folder / "a.json").string(), missing = (folder / "missing.json").string();
  Write(a, "foobar");
  const EyeSource source({a, missing}, {});
  const std::vector<EyeFile> expected = {{a, "85944171f73967e8"}, {missing, ""}};  // a published value
  EXPECT_EQ(source.files(), expected);
}

TEST(EyeSource, AFileThatVanishesIsUnreadableAndLosesItsHash) {
  const TemporaryFolder folder;
  const std::string a = (folder / "a.json").string();
  Write(a, EyeText("0.25"));
  EyeSource source({a}, {});
  EXPECT_NE(source.files()[0].hash, "");
  std::filesystem::remove(a);
  TableEye eye;
  EXPECT_THROW(source.Next(eye), UnreadableEye);
  EXPECT_EQ(source.files()[0].hash, "");
}

TEST(EyeSource, AFileThatChangesOrAppearsAfterTheBeginningIsRefused) {
  const TemporaryFolder folder;
  const std::string a = (folder / "a.json").string(), b = (folder / "b.json").string();
  Write(a, EyeText("0.25"));
  EyeSource source({a, b}, {});
  Write(a, EyeText("0.26"));
  Write(b, EyeText("0.25"));
  TableEye eye;
  for (const std::string& name : {a, b}) {
    try {
      source.Next(eye);
      FAIL() << "read";
    } catch (const UnreadableEye&) {
      FAIL() << "taken for a row at fault";
    } catch (const Error& error) {
      EXPECT_EQ(error.what(), name + ": was changed after the batch began; start over with --force");
    }
  }
}

}  // namespace
}  // namespace orvanel::cli
