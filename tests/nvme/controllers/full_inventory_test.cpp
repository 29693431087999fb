#include <gmock/gmock.h>

#include "nvme/nvme_test.h"

namespace tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class NvmeControllers : public NvmeControllerTest {};

TEST_F(NvmeControllers, FullInventoryIsOneLineOfXml) {
  store(kMainPower, {NvmeController{.name = "A"}, NvmeController{.name = "B"}});

  const Reply reply = full();

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(text_of(reply), controller_summary(2) + plain_controller_xml("A") + plain_controller_xml("B"));
  EXPECT_EQ(reply.buffer[reply.length], kUntouched);
  EXPECT_THAT(system_log(), IsEmpty());
}

TEST_F(NvmeControllers, FullInventoryWithoutControllersIsTheSummary) {
  store(2, {});

  EXPECT_EQ(text_of(full()), controller_summary(0, "Initializing"));
}

TEST_F(NvmeControllers, FullInventoryIgnoresTimeAndState) {
  store(kAuxPower, {NvmeController()});

  EXPECT_EQ(text_of(full()), controller_summary(1, "Aux_Power") + plain_controller_xml("NVME-C1"));
  EXPECT_EQ(text_of(full()), controller_summary(1, "Aux_Power") + plain_controller_xml("NVME-C1"));
}

TEST_F(NvmeControllers, APartialRecordAtTheEndIsNotReported) {
  files.write(kNvmeControllerStore,
              nvme_controller_file(kMainPower, {NvmeController()}) + Bytes::repeated(kNvmeControllerSize - 1, 'x'));

  EXPECT_EQ(text_of(full()), controller_summary(1) + plain_controller_xml("NVME-C1"));
  EXPECT_THAT(system_log(), IsEmpty());
}

// The count has one byte, and the slots follow it: what is left of 300 records is the last 44, and then the 212 of the
// first round that were not overwritten do not count.
TEST_F(NvmeControllers, TheCountWrapsAfter255) {
  std::vector<NvmeController> controllers;
  std::string xml;
  for (int i = 0; i < 300; ++i) {
    controllers.push_back(NvmeController{.name = std::to_string(i)});
    if (i >= 256) xml += plain_controller_xml(std::to_string(i));
  }
  store(kMainPower, controllers);

  EXPECT_EQ(text_of(full()), controller_summary(44) + xml);
}

TEST_F(NvmeControllers, TheFileIsReadUnderItsOwnLock) {
  store(kMainPower, {NvmeController()});
  full();
  forget_calls();

  full();

  // The file with its state, and once more the one that was remembered.
  const std::string image = std::to_string(kNvmeControllerImageHeaderSize + 1 + 2 * kNvmeControllerSize);
  const std::string text = std::to_string((controller_summary(1) + plain_controller_xml("NVME-C1")).size());
  EXPECT_THAT(calls(), ElementsAre("fopen /var/nvmectlr_info", "fileno", "flock 1", "stat /var/nvmectlr_info", "malloc",
                                   "memset_s " + image, "fread", "fread", "fread", "flock 8", "fclose", "memset_s 28",
                                   "calloc", "memcpy_s " + text));
}

TEST_F(NvmeControllers, ABufferOfExactlyTheTextIsEnough) {
  store(kMainPower, {NvmeController()});
  const auto length = static_cast<uint32_t>((controller_summary(1) + plain_controller_xml("NVME-C1")).size());

  EXPECT_THAT(full({.size = length}).requests, IsEmpty());
  EXPECT_THAT(full({.size = length - 1}).requests, ElementsAre(length));
}

TEST_F(NvmeControllers, EveryGrantIsUsedAndEveryRefusalHasNoBuffer) {
  store(kMainPower, {NvmeController()});

  for (const Growth growth : {Growth::kInPlace, Growth::kMove, Growth::kSayNothing})
    EXPECT_EQ(text_of(full({.size = 1, .growth = {growth}})), controller_summary(1) + plain_controller_xml("NVME-C1"));
  for (const Growth growth : {Growth::kRefuse, Growth::kGrantLess, Growth::kNull}) {
    const Reply reply = full({.size = 1, .growth = {growth}});
    EXPECT_EQ(reply.status, -4);
    EXPECT_EQ(reply.length, 0u);
  }
}

}  // namespace
}  // namespace tests
