#include "mcstore/source/xml_reply.h"

#include <gtest/gtest.h>

#include "nvme/nvme_bytes.h"

namespace tests {
namespace {

std::string contradiction_of(const std::string &kind, const std::string &reply, const Bytes &records) {
  return mcstore::contradiction(mcstore::kind_named(kind), reply, {records.data(), records.size()});
}

std::string drive_contradiction(const std::string &reply, const NvmeDrive &drive = {}) {
  return contradiction_of("nvme-drives", drive_summary(1) + reply, drive.stored());
}

TEST(XmlReply, AgreesWithTheRecordsThatItWasMadeOf) {
  const NvmeController a_switch{.name = "SW-1", .type = "NVME-MSWITCH", .link_status = "Link degraded"};

  EXPECT_EQ(drive_contradiction(NvmeDrive().xml()), "");
  EXPECT_EQ(contradiction_of("nvme-controllers", controller_summary(1) + plain_controller_xml("NVME-C1"),
                             NvmeController().stored()),
            "");
  EXPECT_EQ(contradiction_of("nvme-controllers",
                             controller_summary(1) +
                                 "<NVME-ctlr controller-name=\"SW-1\" drive-count=\"4\" component-id=\"abcd\" "
                                 "link-status=\"Moderate_Fault\" link-status-desc=\"Link degraded\" />",
                             a_switch.stored()),
            "");
  EXPECT_EQ(contradiction_of("nvme-drives", drive_summary(0), Bytes()), "");
}

TEST(XmlReply, IsUnclearWhenItIsNotWellFormed) {
  const NvmeDrive drive{.vendor = "a\"b"};

  const std::string problem = drive_contradiction(drive.xml(), drive);

  EXPECT_EQ(problem.substr(0, 38), "it is not well-formed: Error parsing e");
}

TEST(XmlReply, IsUnclearWhenItHasMarkupInAValue) {
  const auto problem = [](const std::string &serial) {
    const NvmeDrive drive{.serial = serial};
    return drive_contradiction(drive.xml(), drive);
  };

  EXPECT_EQ(problem("a<b").substr(0, 36), "it is not well-formed: '<' in a valu");
  for (const char *serial : {"a&b", "a&;", "a&b;", "a&#;", "a&#x;", "a&#xg;", "a&#1a;"})
    EXPECT_EQ(problem(serial).substr(0, 36), "it is not well-formed: '&' that begi") << serial;
  EXPECT_EQ(problem("a>'b"), "");
  for (const char *serial : {"a&amp;b", "a&#65;", "a&#x4a;"})
    EXPECT_EQ(problem(serial), "its attribute serial-number is another") << serial;
}

TEST(XmlReply, IsUnclearWhenItSaysSomethingElse) {
  EXPECT_EQ(drive_contradiction(NvmeDrive{.serial = "OTHER"}.xml()), "its attribute serial-number is another");
  EXPECT_EQ(drive_contradiction(NvmeDrive{.temperature = 36}.xml()), "its attribute temperature is another");
  EXPECT_EQ(drive_contradiction(NvmeDrive{.vendor_id = 1}.xml()), "its attribute vendor-id is another");
  EXPECT_EQ(drive_contradiction(NvmeDrive().xml("Degraded")), "its attribute status is another");
}

TEST(XmlReply, IsUnclearWhenATextBecameSomethingElse) {
  const NvmeDrive forger{.vendor = "a\" forged=\"b"};
  const NvmeDrive entity{.vendor = "a&amp;b"};

  EXPECT_EQ(drive_contradiction(forger.xml(), forger), "its attribute vendor is another");
  EXPECT_EQ(drive_contradiction(entity.xml(), entity), "its attribute vendor is another");
}

TEST(XmlReply, IsUnclearWhenTheNumberOfElementsIsAnother) {
  EXPECT_EQ(drive_contradiction(NvmeDrive().xml() + NvmeDrive().xml()), "it has more elements than there are devices");
  EXPECT_EQ(drive_contradiction(""), "it has fewer elements than there are devices");
}

}  // namespace
}  // namespace tests
