#include "mcserver_storage.h"
#include "records/words.h"
#include "shared/exported.h"

using mcserver::records::kNvmeStates;
using mcserver::records::kNvmeStatuses;

EXPORTED const char *const nvme_state_names[] = {
    kNvmeStates[0].text, kNvmeStates[1].text, kNvmeStates[2].text, kNvmeStates[3].text, kNvmeStates[4].text, nullptr,
};
static_assert(std::size(nvme_state_names) == kNvmeStates.size() + 1);

EXPORTED const char *const nvme_status_names[] = {
    kNvmeStatuses[0].text, kNvmeStatuses[1].text, kNvmeStatuses[2].text, kNvmeStatuses[3].text,
    kNvmeStatuses[4].text, kNvmeStatuses[5].text, kNvmeStatuses[6].text, nullptr,
};
static_assert(std::size(nvme_status_names) == kNvmeStatuses.size() + 1);
