#include "mcserver_storage.h"
#include "shared/exported.h"

EXPORTED const char *const nvme_state_names[] = {
    "Unknown", "Uninitialized", "Initializing", "Aux_Power", "Main_Power", nullptr,
};

EXPORTED const char *const nvme_status_names[] = {
    "Unknown", "Optimal", "Unresponsive", "Moderate_Fault", "Severe_Fault", "Deleted", "Degraded", nullptr,
};
