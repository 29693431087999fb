#include "mcstore/views/json.h"

#include <utility>

#include "mcstore/command_line.h"
#include "mcstore/shown_json.h"
#include "raid/controllers/controller_bytes.h"

namespace tests {
namespace {

class JsonViews : public McstoreTest {
 protected:
  ShownJson kind(const std::string &name) { return shown("get " + name + " --format json")["kinds"][0]; }
  ShownJson shown(const std::string &arguments) { return ShownJson(mcstore_here(arguments).out); }
};

TEST_F(JsonViews, TellWhoSaysSo) {
  const ShownJson document = shown("get all --format json");

  EXPECT_EQ(document["format"], 2);
  EXPECT_EQ(document["tool"].text(), R"({"name":"mcstore","version":")" MCSTORE_VERSION "\"}");
  EXPECT_EQ(document["root"], files.real(""));
  EXPECT_EQ(document["time"].text().size(), std::string("\"2026-03-02T10:00:00Z\"").size());
  EXPECT_EQ(document["kinds"].size(), 7u);
}

TEST_F(JsonViews, OfAKindThatIsNotThere) {
  const ShownJson absent = kind("drives");

  EXPECT_EQ(absent["status"], "absent");
  EXPECT_EQ(absent["error"], files.real("/var/storphydrive_info") + " does not exist");
  EXPECT_EQ(absent["state"].text(), "null");
  EXPECT_EQ(absent["store"].text(), "null");
  EXPECT_EQ(absent["devices"].text(), "[]");
}

TEST_F(JsonViews, OfADamagedKindHaveItsDevicesAndWhatIsWrong) {
  files.write("/var/storctlr_info", Bytes::hex("02") + Bytes::repeated(kControllerSize + 7, 0));

  const ShownJson damaged = kind("controllers");

  EXPECT_EQ(damaged["status"], "damaged");
  EXPECT_EQ(damaged["state"], 2);
  EXPECT_EQ(damaged["state_text"], "ready");
  EXPECT_EQ(damaged["store"].text(), R"({"path":"/var/storctlr_info","modified":"1970-01-01T00:16:40Z","size":)" +
                                         std::to_string(8 + kControllerSize) +
                                         R"(,"announced":null,"records":1,"left_over":7})");
  EXPECT_EQ(damaged["devices"].size(), 1u);
}

TEST_F(JsonViews, OfAnUnreadableKindTellWhatIsWrong) {
  files.write_text("/var/storctlr_info/in-the-way", "");

  const ShownJson unreadable = kind("controllers");

  EXPECT_EQ(unreadable["status"], "unreadable");
  EXPECT_EQ(unreadable["devices"].text(), "[]");
}

TEST_F(JsonViews, TellByTheExitCodeWhetherThereIsAnything) {
  EXPECT_EQ(mcstore_here("get all --format json").exit_code, 3);

  files.write("/var/storctlr_info", Bytes::hex("02"));
  EXPECT_EQ(mcstore_here("get all --format json").exit_code, 0);

  files.write("/var/storctlr_info", Bytes::hex("02 00"));
  EXPECT_EQ(mcstore_here("get all --format json").exit_code, 1);
}

TEST_F(JsonViews, InLinesNameTheKindOfEachDevice) {
  files.write("/var/storctlr_info", Bytes::hex("02") + Bytes::repeated(2 * kControllerSize, 0));

  const std::string lines = mcstore_here("get all --format ndjson").out;

  const size_t end = lines.find('\n');
  EXPECT_EQ(lines.find('\n', end + 1), lines.size() - 1);
  const ShownJson line(lines.substr(0, end));
  EXPECT_EQ(line.keys(), (std::vector<std::string>{"kind", "device", "health", "reasons", "notes", "fields"}));
  EXPECT_EQ(line["kind"], "controllers");
  EXPECT_EQ(line["device"], "c0");
}

// No text of a device can end the line that it stands in, or disturb a terminal.
TEST_F(JsonViews, AreAsciiWhateverADeviceIsCalled) {
  files.write("/var/storctlr_info",
              Bytes::hex("02") + Bytes::repeated(kControllerSize, 0).put_text(1, "\x1b[2J\u202e\n\"\xff"));

  for (const char *format : {"json", "ndjson"}) {
    const std::string text = mcstore_here(std::string("get controllers --format ") + format).out;
    for (const char c : text) EXPECT_TRUE((c >= 0x20 && c < 0x7F) || c == '\n');
    EXPECT_NO_THROW(ShownJson{text});
  }
}

TEST_F(JsonViews, AreTakenAwayAndStayWhole) {
  const mcstore::Kind &kind = mcstore::kind_named("controllers");
  mcstore::KindInventory inventory(kind);
  inventory.records.resize(3 * kind.record_size);
  std::string out;
  std::string taken;

  mcstore::JsonDocument document(out);
  document.begin({.version = "1", .time = "", .root = "/"});
  document.begin_kind(inventory);
  for (size_t i = 0; i < inventory.size(); ++i) {
    document.add(inventory.device(i), {});
    taken += std::exchange(out, "");
  }
  document.end_kind();
  document.end();

  EXPECT_EQ(ShownJson(taken + out)["kinds"][0]["devices"].size(), 3u);
}

}  // namespace
}  // namespace tests
