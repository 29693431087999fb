#include "mcstore/source/place.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include "host/store_directory.h"
#include "mcstore/source/digest.h"
#include "mcstore/source/failure.h"

namespace tests {
namespace {

using mcstore::Place;

constexpr char kCapturedStore[] = "/var/storctlr_info";

TEST(Place, IsARootWithoutStoreFilesInItself) {
  const StoreDirectory files;

  EXPECT_EQ(Place(files.real("")).real(kCapturedStore), files.real(kCapturedStore));
  EXPECT_EQ(Place(files.real("/")).real("/etc/product"), files.real("/etc/product"));
}

TEST(Place, IsVarWithStoreFilesInItself) {
  StoreDirectory files;
  files.write_text("/storBBU_info", "");

  EXPECT_EQ(Place(files.real("")).real(kCapturedStore), files.real("/storctlr_info"));
  EXPECT_EQ(Place(files.real("///")).real(kCapturedStore), files.real("/storctlr_info"));
}

TEST(Place, IsThisMachineWithoutADirectory) {
  EXPECT_EQ(Place("").real(kCapturedStore), kCapturedStore);
  EXPECT_EQ(Place("/").real(kCapturedStore), kCapturedStore);
  EXPECT_EQ(Place("/").directory(), "/");
}

TEST(Place, LeavesRelativePathsAlone) {
  Place place("/nowhere");

  EXPECT_EQ(place.resolve("fopen", "file"), "file");
  EXPECT_EQ(place.resolve("fopen", "/var/file"), "/nowhere/var/file");
}

TEST(Place, LogsPrintably) {
  Place place("/nowhere");
  testing::internal::CaptureStderr();

  place.log(0, "a\x1b[2Jb\nforged\n");

  EXPECT_EQ(testing::internal::GetCapturedStderr(), "syslog: a\\x1b[2Jb\\x0aforged\n");
}

class CapturedPlace : public testing::Test {
 protected:
  CapturedPlace() { files.write_text(kCapturedStore, kContent); }

  static std::string entry(const std::string &path, const std::string &content) {
    return R"({"path": ")" + path + R"(", "size": )" + std::to_string(content.size()) +
           R"(, "modified": "2026-03-02T09:00:00Z", "sha256": ")" +
           mcstore::sha256({reinterpret_cast<const uint8_t *>(content.data()), content.size()}) + "\"}";
  }

  static std::string manifest(const std::string &entries) {
    return R"({"format": 1, "host": "h", "tool": {"name": "mcstore", "version": "1"},)"
           R"( "time": "2026-03-02T10:00:00Z", "files": [)" +
           entries + "]}";
  }

  // What is said of the capture with this manifest; empty if it is accepted.
  std::string refusal(const std::string &text) {
    files.write_text("/manifest.json", text);
    try {
      const Place place(files.real(""));
      return "";
    } catch (const std::runtime_error &error) {
      return error.what();
    }
  }

  std::string about_manifest(const std::string &problem) const { return files.real("/manifest.json") + ": " + problem; }

  static constexpr char kContent[] = "\x02";
  StoreDirectory files;
};

TEST_F(CapturedPlace, KnowsWhenItWasCaptured) {
  files.write_text("/manifest.json", manifest(entry(kCapturedStore, kContent)));

  const Place place(files.real("/"));

  ASSERT_TRUE(place.captured());
  EXPECT_EQ(place.captured()->time, 1772445600);
  EXPECT_EQ(place.real(kCapturedStore), files.real(kCapturedStore));
  EXPECT_FALSE(Place(files.real("/var")).captured());
}

TEST_F(CapturedPlace, IsRefusedWhenAFileIsNotAsItWas) {
  const std::string path = files.real(kCapturedStore);

  EXPECT_EQ(refusal(manifest(entry(kCapturedStore, "\x03"))),
            path + " is not as it was captured: its SHA-256 is another one");
  EXPECT_EQ(refusal(manifest(entry(kCapturedStore, "abc"))), path + " has 1 bytes, and had 3 when it was captured");
}

TEST_F(CapturedPlace, IsRefusedWithoutAFileThatItLists) {
  const std::string path = "/var/nvmectlr_info";

  EXPECT_EQ(refusal(manifest(entry(kCapturedStore, kContent) + ", " + entry(path, ""))),
            files.real(path) + " does not exist, and " + files.real("/manifest.json") + " lists it");
}

TEST_F(CapturedPlace, IsRefusedWithAFileThatItDoesNotList) {
  EXPECT_EQ(refusal(manifest("")), files.real(kCapturedStore) + " is not listed in " + files.real("/manifest.json"));
}

TEST_F(CapturedPlace, IsRefusedWithAnyFileThatItDoesNotList) {
  files.write_text("/debug/mctool_storage_debug", "");

  EXPECT_EQ(refusal(manifest(entry(kCapturedStore, kContent))),
            files.real("/debug/mctool_storage_debug") + " is not listed in " + files.real("/manifest.json"));
}

TEST_F(CapturedPlace, ReadsNothingElsewhere) {
  for (const std::string path : {"/var/../../etc/passwd", "/etc/passwd", "var/storctlr_info", ""})
    EXPECT_EQ(refusal(manifest(entry(kCapturedStore, kContent) + ", " + entry(path, ""))),
              about_manifest("it lists " + path + ", which no capture holds"));
}

TEST_F(CapturedPlace, RefusesLinks) {
  symlink("/etc/passwd", files.real("/var/mctool_pddebug.txt").c_str());

  EXPECT_EQ(
      refusal(manifest(entry(kCapturedStore, kContent))),
      files.real("/var/mctool_pddebug.txt") + " is neither a file nor a directory, and a capture holds nothing else");
}

TEST_F(CapturedPlace, RefusesAManifestThatIsNone) {
  EXPECT_EQ(refusal(R"({"format": 2})"), about_manifest("format: 2 is not known: this mcstore reads 1"));
  EXPECT_EQ(refusal(R"({"format": 1})"), about_manifest("host: is missing"));
  EXPECT_EQ(refusal("[]"), about_manifest("the manifest: must be an object"));
  EXPECT_EQ(refusal(R"({"format": 1, "format": 1})"), about_manifest("format: this key stands twice in one object"));
  EXPECT_EQ(refusal(manifest("7")), about_manifest("files[0]: must be an object"));
  EXPECT_EQ(refusal(manifest(R"({"path": "/var/storctlr_info", "size": -1})")),
            about_manifest("files[0].size: -1 does not fit: from 0 to 9223372036854775807 does"));
  EXPECT_EQ(refusal(manifest(R"({"path": "/var/storctlr_info", "size": 1e300})")),
            about_manifest("files[0].size: must be a whole number"));
}

TEST_F(CapturedPlace, SurvivesAManifestOfAnyDepth) {
  constexpr size_t kDepth = 200000;
  EXPECT_TRUE(
      refusal(std::string(kDepth, '[') + std::string(kDepth, ']')).ends_with("is nested deeper than 32 levels"));
}

}  // namespace
}  // namespace tests
