/*
 * mcserver_storage: the storage inventory of a server, as a plug-in of its management daemon (the host).
 *
 * The plug-in reads the store files that a collector keeps under /var, and answers each call with what it found (a
 * full call) or with what changed since the previous call (a delta call). It never talks to the hardware.
 *
 * How a host uses it
 *   1. Define the host symbols below and export them from the program (link it with -rdynamic).
 *   2. Load libmcserver_storage.so with dlopen(..., RTLD_NOW), or link against it.
 *   3. Call the entry points. The plug-in keeps what it needs to tell changes, per kind of device, until it is
 *      unloaded; unloading frees everything.
 *
 * What holds for every entry point
 *   Threads    One call of a kind at a time. Nothing inside guards the state of a kind.
 *   Blocking   A call waits, without a limit, for the collector to release its exclusive flock on the store files.
 *   Ownership  The reply buffer is the host's before, during and after the call. The plug-in may ask for a larger one
 *              (mc_grow_attribute_buffer) and then writes into the one that it was given.
 *   Results    0 is success, anything else is one of the MC_STORE_* results below and leaves a length of 0, except
 *              where a function says otherwise. A null length pointer is refused with MC_STORE_UNAVAILABLE.
 *
 * On 32-bit Linux, compile with -D_FILE_OFFSET_BITS=64 and -D_TIME_BITS=64.
 */
#ifndef MCSERVER_STORAGE_H
#define MCSERVER_STORAGE_H

#include <features.h>
#include <stddef.h>
#include <stdint.h>
#include <stdio.h>
#include <sys/stat.h>

/* struct stat is part of the interface, and its layout follows from these two macros. */
#if defined(__GLIBC__) && __SIZEOF_LONG__ == 4
#if !defined(_FILE_OFFSET_BITS) || _FILE_OFFSET_BITS != 64 || !defined(_TIME_BITS) || _TIME_BITS != 64
#error "mcserver_storage.h needs -D_FILE_OFFSET_BITS=64 and -D_TIME_BITS=64 on a 32-bit system"
#endif
#endif

#define MC_STORE_PACKED __attribute__((packed))

#ifdef __cplusplus
extern "C" {
#endif

/* ------------------------------------------------------------------------------------------------ results */

enum {
  MC_STORE_SUCCESS = 0,           /* also: a delta call that found nothing to report */
  MC_STORE_REPLY_TOO_LARGE = -13, /* the host did not grant the buffer that the reply needs */
  MC_STORE_UNAVAILABLE = -35,     /* null buffer; a file cannot be opened or locked; out of memory */
  MC_STORE_NO_DATA = -37,         /* a store file is missing, or its header cannot be read */
  MC_STORE_NO_BUFFER = -4,        /* NVMe: no memory for the XML, or the host did not grant the reply buffer */
  MC_STORE_NO_IMAGE = 35          /* NVMe controllers: no memory for the records; positive, and meant to be */
};

/* A time stamp of a record that stands for no time. */
#define MC_STORE_NO_TIME 0xFFFFFFFFu

/* --------------------------------------------------------------- host symbols: declared here, defined by the host */

/* The plug-in traces to outfp while use_cmclog is 0, mc_debug_level is above 2 and outfp is not null. */
extern int32_t mc_debug_level;
extern int32_t use_cmclog;
extern FILE *outfp;

/*
 * Replaces the reply buffer by one of at least `size` bytes. `ctx` is the handle that the entry point received.
 * Writes the size that is now available to *available and returns the buffer, moved or not; what it held need not be
 * kept. Less than `size`, or a null result, is a refusal; *available holds `size` on entry, so a host that leaves it
 * alone has granted that. One call of an entry point may ask twice. Two kinds differ, where they say so: virtual drives
 * and BBUs.
 */
uint8_t *mc_grow_attribute_buffer(void *ctx, uint32_t size, uint32_t *available);

/* Bounds-checked copies. The plug-in passes the same value for the size and the count. */
int memset_s(void *dest, size_t dest_size, int fill, size_t count);
int strncpy_s(char *dest, size_t dest_size, const char *src, size_t count);
int memcpy_s(void *dest, size_t dest_size, const void *src, size_t count);

/* ------------------------------------------------------------------------------------------------ controllers */

/* The subsystem state, as far as it decides anything. */
enum {
  MC_STORE_STATE_NOT_READY = 1,
  MC_STORE_STATE_READY = 2 /* the one state in which a delta compares records */
};

/* controller_status */
enum {
  MC_STORE_CONTROLLER_OPTIMAL = 0,
  MC_STORE_CONTROLLER_UNRESPONSIVE = 1,
  MC_STORE_CONTROLLER_GONE = 4 /* only in a delta reply */
};

/* coercion_mode */
enum { MC_STORE_COERCION_NONE = 0, MC_STORE_COERCION_128_MB = 1, MC_STORE_COERCION_1_GB = 2 };

/* How an operation goes: patrol_read_operation_status, and learn_cycle_status of a BBU. */
enum {
  MC_STORE_OPERATION_UNKNOWN = 0,
  MC_STORE_OPERATION_SUCCESS = 1,
  MC_STORE_OPERATION_ACTIVE = 2,
  MC_STORE_OPERATION_ABORTED = 3,
  MC_STORE_OPERATION_SUSPENDED = 4,
  MC_STORE_OPERATION_FAILED = 5
};

/* pinned_cache_state */
enum { MC_STORE_PINNED_CACHE_UNKNOWN = 0, MC_STORE_PINNED_CACHE_PRESENT = 1, MC_STORE_PINNED_CACHE_NOT_PRESENT = 2 };

/*
 * A RAID controller. In the store file /var/storctlr_info these records follow a one-byte subsystem state, with
 * little-endian numbers; in a reply they follow the StoreReplyHeader, with big-endian numbers. Texts are padded with
 * NULs, but one that fills its field has none. The comments give each field's offset.
 */
typedef struct StorCtlrInfo {
  uint8_t index;                                 /* 0: identity, together with the serial number */
  char controller[16];                           /* 1 */
  char smbios_pcislotname[6];                    /* 17 */
  char product_name[81];                         /* 23 */
  uint8_t is_supported;                          /* 104: 1 = supported */
  uint8_t reason_not_supported;                  /* 105 */
  uint8_t controller_status;                     /* 106: MC_STORE_CONTROLLER_... */
  char serial_number[31];                        /* 107: identity, together with the index */
  char firmware_package_build[97];               /* 138 */
  char vendor[20];                               /* 235 */
  uint16_t vendor_id;                            /* 255 */
  uint16_t device_id;                            /* 257 */
  uint16_t subvendor_id;                         /* 259 */
  uint16_t subdevice_id;                         /* 261 */
  char chip_revision[3];                         /* 263 */
  char mfg_date[11];                             /* 266 */
  char mfg_rework_date[11];                      /* 277 */
  char mfg_revision_num[9];                      /* 288 */
  char bios_version[33];                         /* 297 */
  char firmware_version[33];                     /* 330 */
  char preboot_cli_version[33];                  /* 363 */
  char webbios_version[33];                      /* 396 */
  char nvdata_version[33];                       /* 429 */
  char boot_block_version[33];                   /* 462 */
  char boot_version[33];                         /* 495 */
  char pending_bios_version[33];                 /* 528 */
  char pending_firmware_version[33];             /* 561 */
  char pending_preboot_cli_version[33];          /* 594 */
  char pending_webbios_version[33];              /* 627 */
  char pending_nvdata_version[33];               /* 660 */
  char pending_boot_block_version[33];           /* 693 */
  char pending_boot_version[33];                 /* 726 */
  uint16_t predictive_fail_poll_interval;        /* 759: seconds */
  uint8_t rebuild_rate;                          /* 761 */
  uint8_t patrol_read_rate;                      /* 762 */
  uint8_t consistency_check_rate;                /* 763 */
  uint8_t reconstruction_rate;                   /* 764 */
  uint8_t cache_flush_interval;                  /* 765 */
  uint16_t spinup_drive_count;                   /* 766 */
  uint16_t spinup_delay;                         /* 768 */
  uint8_t coercion_mode;                         /* 770: MC_STORE_COERCION_... */
  uint8_t cluster_enable;                        /* 771 */
  uint16_t ecc_bucket_leak_rate;                 /* 772 */
  uint8_t expose_enclosure_devices;              /* 774 */
  uint8_t maintain_pd_fail_history;              /* 775 */
  uint8_t maintain_pd_fail_history_2;            /* 776: a second flag of the same meaning */
  uint8_t enable_copyback_to_ssd_on_smart_error; /* 777 */
  uint8_t disable_ncq;                           /* 778: the text dump prints it inverted */
  uint8_t spin_down_unconfigured;                /* 779 */
  uint8_t enable_ssd_patrol_read;                /* 780 */
  uint8_t auto_enhanced_import;                  /* 781 */
  uint32_t raid_levels_supported;                /* 782: bit set */
  uint8_t nvram_present;                         /* 786 */
  uint8_t serial_debugger_present;               /* 787 */
  uint8_t memory_present;                        /* 788 */
  uint8_t flash_present;                         /* 789 */
  uint64_t memory_size;                          /* 790: bytes */
  uint64_t cache_memory_size;                    /* 798: bytes */
  uint8_t backend_port_count;                    /* 806 */
  uint16_t memory_correctable_errors;            /* 807 */
  uint16_t memory_uncorrectable_errors;          /* 809 */
  uint8_t controller_temperature_sensor_present; /* 811 */
  uint8_t roc_temperature_sensor_present;        /* 812 */
  uint8_t drive_temperature_supported;           /* 813 */
  uint8_t controller_temperature;                /* 814 */
  uint8_t roc_temperature;                       /* 815 */
  uint8_t patrol_read_operation_status;          /* 816: MC_STORE_OPERATION_... */
  int8_t patrol_read_percent_complete;           /* 817: -1 = none is running */
  uint32_t patrol_read_start_timestamp;          /* 818 */
  uint32_t patrol_read_end_timestamp;            /* 822 */
  uint8_t has_sas_expander;                      /* 826 */
  int32_t mod_timestamp;                         /* 827: changes whenever anything in the record does */
  uint8_t sub_oem;                               /* 831 */
  uint8_t pinned_cache_state;                    /* 832: MC_STORE_PINNED_CACHE_... */
  uint8_t controller_type;                       /* 833 */
  uint64_t supported_strip_sizes;                /* 834 */
  uint64_t default_strip_size;                   /* 842 */
  char smbios_pcislotname_ext[16];               /* 850 */
  uint64_t supported_ctlr_ops;                   /* 866 */
  uint64_t supported_phys_ops;                   /* 874 */
  uint64_t supported_virt_ops;                   /* 882 */
  uint16_t supported_bbu_ops;                    /* 890 */
  uint64_t valid_controller_attrs;               /* 892 */
  char controller_status_description[64];        /* 900 */
  uint8_t drive_life_used_percent;               /* 964 */
  uint8_t controller_sed_status;                 /* 965 */
  uint8_t reserved[256];                         /* 966: sent as it is stored */
  uint8_t performance_percent;                   /* 1222 */
  char controller_error[64];                     /* 1223 */
  uint8_t jbod_mode;                             /* 1287 */
  int32_t max_virtual_drives_per_controller;     /* 1288 */
  uint16_t life_left_in_days;                    /* 1292 */
} MC_STORE_PACKED StorCtlrInfo;

/* What the plug-in remembers of a controller between calls, in the byte order of the machine. */
typedef struct CtlrSummary {
  uint8_t index;
  char controller[16];
  char serial_number[31];
  uint16_t vendor_id;
  uint16_t device_id;
  uint16_t subvendor_id;
  uint16_t subdevice_id;
  uint8_t controller_type;
  int32_t mod_timestamp;
} CtlrSummary;

/* The first bytes of a controller reply. The records follow. */
typedef struct StoreReplyHeader {
  uint8_t type;         /* 0: always 0x28 */
  uint8_t zero_1[2];    /* 1 */
  uint8_t state;        /* 3: the subsystem state */
  uint8_t count;        /* 4: the records that follow, modulo 256 */
  uint32_t record_size; /* 5: big-endian; little-endian in a simulated reply */
  uint8_t zero_2;       /* 9 */
  uint8_t unwritten[8]; /* 10: as the buffer held it */
} MC_STORE_PACKED StoreReplyHeader;

/*
 * All controllers.
 *
 * A null buf is refused with MC_STORE_UNAVAILABLE and leaves *len alone.
 *
 * While the file /debug/mctool_storage_debug exists, the reply is a made-up inventory of two controllers, whose
 * numbers, the header's record size included, are little-endian. It is written to `buf` itself: a host that answers the
 * request to grow by moving its buffer must keep the old one valid during the call.
 */
int32_t mc_get_store_ctrls(void *ctx, uint8_t *buf, uint32_t bufsize, uint32_t *len);

/*
 * The controllers that are new or modified since the previous call of either entry point, then a record for each one
 * that is gone: controller_status is MC_STORE_CONTROLLER_GONE, and only index, controller, serial_number, the four ids,
 * is_supported and controller_type are written beside it. Never simulates. A null buf is refused with
 * MC_STORE_UNAVAILABLE.
 *
 * The length is 0 when the store file has not been written since, and also when it has been written in a state other
 * than MC_STORE_STATE_READY that is still the same: records are compared only in that one, or when the state has just
 * changed. Where they were compared and nothing was found, the reply is a header with a count of 0.
 */
int32_t mc_delta_store_ctrls(void *ctx, uint8_t *buf, uint32_t bufsize, uint32_t *len);

/* What both entry points call: everything when `delta` is 0, else the changes. */
int32_t get_store_ctrls(void *ctx, uint8_t *buf, uint32_t bufsize, uint32_t *len, int32_t delta);

/*
 * Is the record's controller missing from the cached list, or there with another mod_timestamp? 1 or 0; 0 when an
 * argument is null. The record is in file byte order.
 */
int32_t new_ctlr_or_modified(const StorCtlrInfo *record, const CtlrSummary *cached_list, uint16_t cached_count);

/*
 * Appends a record to the reply for each cached controller that is not in the cur list. An entry without a serial
 * number, or with an id of 0, is passed over. The reply must have room: the call cannot know its size.
 */
void add_deleted_ctlrs(uint8_t *reply, uint16_t cur_count, const CtlrSummary *cur_list, uint16_t cached_count,
                       const CtlrSummary *cached_list);

/*
 * Writes the record, in file byte order, as text to `stream`, which stays open. With a null stream it is appended to
 * /var/mctool_stordebug.txt, if the file /var/mctool_stordebug exists.
 */
void print_ctlrinfo(const StorCtlrInfo *record, FILE *stream);

/* Appends the list's indices to /var/mctool_ctlrdebug.txt, if the file /var/mctool_ctlrdebug exists. */
void print_ctlr_list(const CtlrSummary *list, int32_t count, const char *title);

/* ------------------------------------------------------------------------------------------------ physical drives */

/* status, as far as the plug-in knows it */
enum { MC_STORE_PHYDRIVE_GONE = 14 /* only in a delta reply */ };

/* power_state */
enum { MC_STORE_POWER_ACTIVE = 0, MC_STORE_POWER_POWERSAVE = 1, MC_STORE_POWER_TRANSITIONING = 2 };

/* link_speed */
enum {
  MC_STORE_LINK_SPEED_UNKNOWN = 0,
  MC_STORE_LINK_SPEED_1_5_GBPS = 1,
  MC_STORE_LINK_SPEED_3_GBPS = 2,
  MC_STORE_LINK_SPEED_6_GBPS = 3,
  MC_STORE_LINK_SPEED_12_GBPS = 4
};

/* device_type */
enum { MC_STORE_DEVICE_DISK = 0, MC_STORE_DEVICE_SSD = 1 };

/* interface_type */
enum { MC_STORE_INTERFACE_UNKNOWN = 0, MC_STORE_INTERFACE_SATA = 1, MC_STORE_INTERFACE_SAS = 2 };

/*
 * A physical drive. In the store file /var/storphydrive_info these records follow the number of drives (four bytes);
 * in a reply they follow the PhyDriveReplyHeader, with big-endian numbers. Texts as in StorCtlrInfo.
 */
typedef struct StorPhyDriveInfo {
  uint8_t controller_index;             /* 0: identity, together with the slot and the serial number */
  uint8_t slot_num;                     /* 1: identity */
  uint8_t lsi_drive_num;                /* 2 */
  uint8_t power_state;                  /* 3: MC_STORE_POWER_... */
  uint16_t device_id;                   /* 4 */
  uint16_t enclosure_device_id;         /* 6 */
  uint32_t media_err_count;             /* 8 */
  uint32_t other_err_count;             /* 12 */
  uint32_t predictive_failure_count;    /* 16 */
  uint8_t disabled_for_removal;         /* 20 */
  uint16_t block_size;                  /* 21: bytes */
  uint64_t raw_size;                    /* 23: bytes */
  uint64_t non_coerced_size;            /* 31: bytes */
  uint64_t coerced_size;                /* 39: bytes */
  uint8_t link_speed;                   /* 47: MC_STORE_LINK_SPEED_... */
  uint8_t device_type;                  /* 48: MC_STORE_DEVICE_... */
  uint8_t interface_type;               /* 49: MC_STORE_INTERFACE_... */
  char product_id[17];                  /* 50 */
  char vendor[9];                       /* 67 */
  char firmware[5];                     /* 76 */
  char serial_num[21];                  /* 81: identity */
  uint8_t status;                       /* 102: MC_STORE_PHYDRIVE_GONE in a delta reply; else the collector's own */
  uint8_t fault;                        /* 103 */
  uint8_t online;                       /* 104 */
  uint8_t temp_valid;                   /* 105: does the temperature mean anything? */
  uint8_t temperature;                  /* 106 */
  uint8_t rebuild_status;               /* 107 */
  int8_t rebuild_percent_complete;      /* 108: -1 = no such operation, as for all of these */
  uint32_t rebuild_start_timestamp;     /* 109 */
  uint32_t rebuild_end_timestamp;       /* 113 */
  uint8_t copyback_status;              /* 117 */
  int8_t copyback_percent_complete;     /* 118 */
  uint32_t copyback_start_timestamp;    /* 119 */
  uint32_t copyback_end_timestamp;      /* 123 */
  uint8_t boot_drive;                   /* 127 */
  uint32_t mod_timestamp;               /* 128: changes whenever anything in the record does */
  char product_id_v3[97];               /* 132 */
  uint8_t locator_state_v7;             /* 229 */
  uint8_t patrol_read_status;           /* 230 */
  int8_t patrol_read_percent_complete;  /* 231 */
  uint32_t patrol_read_start_timestamp; /* 232 */
  uint32_t patrol_read_end_timestamp;   /* 236 */
  uint8_t clear_status;                 /* 240 */
  int8_t clear_percent_complete;        /* 241 */
  uint32_t clear_start_timestamp;       /* 242 */
  uint32_t clear_end_timestamp;         /* 246 */
  uint8_t erase_status;                 /* 250 */
  int8_t erase_percent_complete;        /* 251 */
  uint32_t erase_start_timestamp;       /* 252 */
  uint32_t erase_end_timestamp;         /* 256 */
  uint8_t enclosure_association;        /* 260: 1 directly attached, anything else behind an expander */
  uint8_t enclosure_logical_id[8];      /* 261: never converted */
  uint64_t enclosure_sas_address[2];    /* 269 */
  uint16_t physical_block_size;         /* 285: bytes */
  uint8_t transport_ready;              /* 287 */
  char status_desc[64];                 /* 288 */
  uint64_t powercycle_count;            /* 352 */
  uint64_t power_on_hours;              /* 360 */
  uint8_t percentage_life;              /* 368 */
  uint64_t wear_status_days;            /* 369 */
  uint8_t pd_sed_state;                 /* 377: bit set of the self-encrypting drive */
  char pd_error[64];                    /* 378 */
  uint8_t extended_status;              /* 442 */
  uint8_t state;                        /* 443 */
  char firmware_v37[9];                 /* 444 */
} MC_STORE_PACKED StorPhyDriveInfo;

/* What the plug-in remembers of it between calls, in the byte order of the machine. */
typedef struct PhyDriveSummary {
  uint8_t controller_index;
  uint8_t slot_num;
  char serial_num[21];
  uint32_t mod_timestamp;
} PhyDriveSummary;

/* The first bytes of a physical drive reply. The records follow. In a simulated reply the numbers are little-endian. */
typedef struct PhyDriveReplyHeader {
  uint8_t type;         /* 0: always 0x28 */
  uint8_t zero_1;       /* 1 */
  uint8_t simulated;    /* 2: 1 in a simulated reply, else 0 */
  uint16_t announced;   /* 3: the number of drives that the store file announces, modulo 65536; big-endian */
  uint16_t count;       /* 5: the records that follow, modulo 65536; big-endian */
  uint32_t record_size; /* 7: big-endian */
  uint8_t zero_2;       /* 11 */
  uint8_t unwritten[8]; /* 12: as the buffer held it */
} MC_STORE_PACKED PhyDriveReplyHeader;

/*
 * All physical drives, as many as the store file holds, whatever number it announces.
 *
 * A null buf is refused with MC_STORE_UNAVAILABLE and leaves *len alone.
 *
 * While the file /debug/mctool_storage_debug exists, the reply is a made-up inventory with little-endian numbers. It
 * announces two drives, but a third record is written behind them: a host that wants to try this must pass, or grant, a
 * buffer for three.
 */
int32_t mc_get_store_phydrives(void *ctx, uint8_t *buf, uint32_t bufsize, uint32_t *len);

/*
 * The drives that are new or modified since the previous call of either entry point, then a record for each one that
 * is gone: status is MC_STORE_PHYDRIVE_GONE, and only controller_index, slot_num and serial_num are written beside it.
 * Never simulates. A null buf is refused with MC_STORE_UNAVAILABLE. The length is 0 when there is nothing to report.
 */
int32_t mc_delta_store_phydrives(void *ctx, uint8_t *buf, uint32_t bufsize, uint32_t *len);

/* What both entry points call: everything when `delta` is 0, the changes when it is 1. With any other value the reply
   is that of a full call, but the length is 0. */
int32_t get_store_phydrives(void *ctx, uint8_t *buf, uint32_t bufsize, uint32_t *len, int32_t delta);

/*
 * Is the record's drive missing from the cached list, or there with another mod_timestamp? 1 or 0; 0 when an argument
 * is null. The record is in file byte order.
 */
int32_t new_drive_or_modified(const StorPhyDriveInfo *record, const PhyDriveSummary *cached_list,
                              uint16_t cached_count);

/*
 * Appends a record to the reply for each cached drive that is not in the cur list. The reply's count must be in the
 * byte order of the machine, and the reply must have room: the call cannot know its size.
 */
void add_deleted_drives(uint8_t *reply, uint16_t cur_count, const PhyDriveSummary *cur_list, uint16_t cached_count,
                        const PhyDriveSummary *cached_list);

/* As print_ctlrinfo, to the same file. */
void print_pdinfo(const StorPhyDriveInfo *record, FILE *stream);

/* Appends the list's serial numbers to /var/mctool_pddebug.txt, if the file /var/mctool_pddebug exists. */
void print_pd_list(const PhyDriveSummary *list, int32_t count, const char *title);

/* ------------------------------------------------------------------------------------------------ BBUs */

/* type */
enum {
  MC_STORE_BBU_NONE = 0,
  MC_STORE_BBU_IBBU = 1,
  MC_STORE_BBU_BBU = 2,
  MC_STORE_BBU_ZCR = 3,
  MC_STORE_BBU_ITBBU3 = 4,
  MC_STORE_BBU_IBBU08 = 5,
  MC_STORE_BBU_IBBU09 = 6,
  MC_STORE_BBU_TMMC = 7
};

/* charging_state */
enum {
  MC_STORE_CHARGING_UNKNOWN = 0,
  MC_STORE_CHARGING_FULLY_DISCHARGED = 1,
  MC_STORE_CHARGING_FULLY_CHARGED = 2,
  MC_STORE_CHARGING_DISCHARGING = 3,
  MC_STORE_CHARGING_CHARGING = 4,
  MC_STORE_CHARGING_INITIALIZED = 5,
  MC_STORE_CHARGING_CAPACITOR = 6
};

/* learn_mode */
enum { MC_STORE_LEARN_AUTO = 0, MC_STORE_LEARN_DISABLED = 1, MC_STORE_LEARN_WARN = 2 };

/* The part of a BBU record that is about a capacitor, and the one that is about a battery. */
typedef struct StorBbuCapacitor {
  uint8_t capacitance;          /* 73 */
  uint16_t design_capacity;     /* 74 */
  uint16_t pack_energy;         /* 76 */
  uint8_t remaining_pool_space; /* 78 */
  uint8_t unused[6];            /* 79 */
} MC_STORE_PACKED StorBbuCapacitor;

typedef struct StorBbuBattery {
  uint8_t retention_time;           /* 73 */
  uint8_t relative_state_of_charge; /* 74 */
  uint8_t absolute_state_of_charge; /* 75 */
  uint8_t expected_margin_of_error; /* 76 */
  uint16_t design_capacity;         /* 77 */
  uint16_t full_capacity;           /* 79 */
  uint16_t remaining_capacity;      /* 81: little-endian in a reply, too */
  uint16_t completed_charge_cycles; /* 83 */
} MC_STORE_PACKED StorBbuBattery;

/*
 * A battery backup unit: the battery or capacitor that keeps a controller's cache. The store file /var/storBBU_info
 * holds nothing but these records; in a reply they follow the BbuReplyHeader, with big-endian numbers. Texts as in
 * StorCtlrInfo.
 */
typedef struct StorBbuInfo {
  uint8_t controller_index;             /* 0: identity */
  uint8_t change_id;                    /* 1 */
  uint8_t status;                       /* 2 */
  uint8_t type;                         /* 3: MC_STORE_BBU_... */
  char device_name[8];                  /* 4 */
  char manufacturer[12];                /* 12 */
  char mfg_date[11];                    /* 24 */
  char module_version[8];               /* 35 */
  uint16_t serial_number;               /* 43 */
  uint8_t charging_state;               /* 45: MC_STORE_CHARGING_... */
  uint16_t design_voltage;              /* 46 */
  uint16_t voltage;                     /* 48 */
  uint16_t current;                     /* 50 */
  uint8_t temperature;                  /* 52 */
  uint8_t voltage_low;                  /* 53 */
  uint8_t temp_high;                    /* 54 */
  uint8_t learn_cycle_transparent;      /* 55 */
  uint8_t learn_mode;                   /* 56: MC_STORE_LEARN_... */
  uint8_t learn_cycle_status;           /* 57: MC_STORE_OPERATION_... */
  int8_t learn_cycle_percent_complete;  /* 58 */
  uint32_t learn_cycle_start_timestamp; /* 59 */
  uint32_t learn_cycle_end_timestamp;   /* 63 */
  uint8_t learn_cycle_requested;        /* 67 */
  int32_t next_learn_cycle;             /* 68 */
  uint8_t capacitor;                    /* 72: which of the two follows */
  __extension__ union {
    StorBbuCapacitor capacitor_data; /* 73: when it is not 0 */
    StorBbuBattery battery_data;     /* 73: when it is 0 */
  };
  uint32_t modified_timestamp; /* 85: changes whenever anything in the record does */
  char tfm_vendor[20];         /* 89: this and what follows is the flash module's */
  char tfm_model[20];          /* 109 */
  char tfm_serial_num[16];     /* 129 */
  char tfm_revision[16];       /* 145 */
} MC_STORE_PACKED StorBbuInfo;

/* What the plug-in remembers of it between calls, in the byte order of the machine. */
typedef struct BbuSummary {
  uint8_t controller_index;
  uint32_t mod_timestamp;
} BbuSummary;

/* The first bytes of a BBU reply. The records follow. */
typedef struct BbuReplyHeader {
  uint8_t type;         /* 0: always 0x28 */
  uint8_t zero_1;       /* 1 */
  uint8_t simulated;    /* 2: 1 in a simulated reply, else 0 */
  uint8_t count;        /* 3: the records that follow, modulo 256 */
  uint32_t record_size; /* 4: big-endian; little-endian in a simulated reply */
  uint8_t zero_2;       /* 8 */
  uint8_t unwritten[8]; /* 9: as the buffer held it */
} MC_STORE_PACKED BbuReplyHeader;

/*
 * All BBUs. The four texts about the flash module are those of its own product data, where these can be read. A request
 * to grow covers more than the reply needs: a grant of less, or a refusal that leaves the buffer where it is, is enough
 * when the file's records fit.
 *
 * A null buf is refused with MC_STORE_UNAVAILABLE and leaves *len alone.
 *
 * While the file /debug/mctool_storage_debug exists, the reply is a made-up inventory of a battery and a capacitor,
 * with little-endian numbers.
 */
int32_t mc_get_store_bbu(void *ctx, uint8_t *buf, uint32_t bufsize, uint32_t *len);

/*
 * The BBUs that are new or modified since the previous call of either entry point; those that are gone are not
 * reported. Never simulates. A null buf is refused with MC_STORE_UNAVAILABLE. The length is 0 when the store file has
 * not been written since; a reply without news is a header with a count of 0.
 */
int32_t mc_delta_store_bbu(void *ctx, uint8_t *buf, uint32_t bufsize, uint32_t *len);

/* What both entry points call: the changes when `delta` is 1, else everything. */
int32_t get_store_bbu(void *ctx, uint8_t *buf, uint32_t bufsize, uint32_t *len, int32_t delta);

/*
 * Is the record's BBU missing from the cached list, or there with another time stamp? 1 or 0; 0 when an argument is
 * null. The record is in file byte order.
 */
int32_t new_bbu_or_modified(const StorBbuInfo *record, const BbuSummary *cached_list, uint16_t cached_count);

/*
 * Replaces the record's flash-module texts by those in the FRU image /var/log/TFM_FRU.bin. An image that is missing or
 * shorter than 128 bytes changes nothing; one with false lengths fills them, and what follows them in the record, with
 * whatever the lengths lead to. `index` is not used.
 */
void read_tarvo_tfm_vpd(StorBbuInfo *record, int32_t index);

/* As print_ctlrinfo, to the same file. */
void print_bbuInfo(const StorBbuInfo *record, FILE *stream);

/* Appends the record's flash-module texts to the same file, if its marker exists. */
void print_bbuTFMInfo(const StorBbuInfo *record);

/* Appends the list's controller indices to /var/mctool_bbudebug.txt, if the file /var/mctool_bbudebug exists. */
void print_bbu_list(const BbuSummary *list, int32_t count, const char *title);

/* ------------------------------------------------------------------------------------------------ virtual drives */

/* status */
enum {
  MC_STORE_VIRTDRIVE_OPTIMAL = 0,
  MC_STORE_VIRTDRIVE_CACHE_DEGRADED = 1,
  MC_STORE_VIRTDRIVE_PARTIALLY_DEGRADED = 2,
  MC_STORE_VIRTDRIVE_DEGRADED = 3,
  MC_STORE_VIRTDRIVE_OFFLINE = 4,
  MC_STORE_VIRTDRIVE_UNKNOWN = 5,
  MC_STORE_VIRTDRIVE_GONE = 6 /* only in a delta reply */
};

/* access_policy */
enum {
  MC_STORE_ACCESS_READ_WRITE = 0,
  MC_STORE_ACCESS_UNKNOWN = 1,
  MC_STORE_ACCESS_READ_ONLY = 2,
  MC_STORE_ACCESS_BLOCKED = 3
};

/* io_policy */
enum { MC_STORE_IO_DIRECT = 0, MC_STORE_IO_CACHED = 1 };

/* read_ahead_policy */
enum { MC_STORE_READ_AHEAD = 0, MC_STORE_READ_NORMAL = 1 };

/* current_write_cache_policy and requested_write_cache_policy */
enum {
  MC_STORE_WRITE_UNKNOWN = 0,
  MC_STORE_WRITE_THROUGH = 1,
  MC_STORE_WRITE_BACK = 2,
  MC_STORE_WRITE_BACK_BAD_BBU = 3
};

/* drive_cache_policy */
enum { MC_STORE_DRIVE_CACHE_UNCHANGED = 0, MC_STORE_DRIVE_CACHE_ENABLE = 1, MC_STORE_DRIVE_CACHE_DISABLE = 2 };

/* A member drive of a virtual drive. */
typedef struct VdDriveRef {
  uint8_t controller_index; /* 0 */
  uint8_t slot_number;      /* 1 */
} MC_STORE_PACKED VdDriveRef;

/* A hot spare that is dedicated to a virtual drive. */
typedef struct VdHotSpare {
  uint8_t controller_index;    /* 0 */
  uint8_t slot_number;         /* 1 */
  uint8_t span;                /* 2 */
  uint64_t starting_block;     /* 3 */
  uint64_t number_of_blocks;   /* 11 */
  uint8_t hot_spare_tail_byte; /* 19 */
} MC_STORE_PACKED VdHotSpare;

/*
 * A virtual drive: a volume that a controller builds from physical drives. The store file /var/storvirtdrive_info holds
 * nothing but these records; in a reply they follow the VirtDriveReplyHeader, with big-endian numbers. Texts as in
 * StorCtlrInfo.
 */
typedef struct StorVirtDriveInfo {
  uint8_t controller_index;                   /* 0 */
  uint8_t target_id;                          /* 1 */
  char guid[33];                              /* 2: identity */
  char name[16];                              /* 35 */
  uint8_t status;                             /* 51: MC_STORE_VIRTDRIVE_... */
  uint64_t size;                              /* 52: bytes */
  uint16_t raid_level;                        /* 60 */
  int32_t strip_size;                         /* 62: bytes */
  uint8_t drives_per_span;                    /* 66 */
  uint8_t span_depth;                         /* 67 */
  uint8_t access_policy;                      /* 68: MC_STORE_ACCESS_... */
  uint8_t io_policy;                          /* 69: MC_STORE_IO_... */
  uint8_t read_ahead_policy;                  /* 70: MC_STORE_READ_... */
  uint8_t current_write_cache_policy;         /* 71: MC_STORE_WRITE_... */
  uint8_t requested_write_cache_policy;       /* 72: the same */
  uint8_t drive_cache_policy;                 /* 73: MC_STORE_DRIVE_CACHE_... */
  uint8_t allow_background_init;              /* 74 */
  uint8_t auto_snapshot;                      /* 75 */
  uint8_t auto_delete_oldest;                 /* 76 */
  uint8_t num_physical_drives;                /* 77: so many entries of pd and pd_v5 count */
  VdDriveRef pd[8];                           /* 78 */
  uint8_t num_hot_spares;                     /* 94: so many entries of hot_spares count, and are converted */
  VdHotSpare hot_spares[256];                 /* 95 */
  uint64_t remaining_space;                   /* 5215: bytes */
  uint8_t reconstruction_status;              /* 5223 */
  uint8_t reconstruction_percent_complete;    /* 5224 */
  int32_t reconstruction_start_timestamp;     /* 5225 */
  int32_t reconstruction_end_timestamp;       /* 5229 */
  uint8_t consistency_check_status;           /* 5233 */
  uint8_t consistency_check_percent_complete; /* 5234 */
  int32_t consistency_check_start_timestamp;  /* 5235 */
  int32_t consistency_check_end_timestamp;    /* 5239 */
  uint8_t init_status;                        /* 5243 */
  uint8_t init_percent_complete;              /* 5244 */
  int32_t init_start_timestamp;               /* 5245 */
  int32_t init_end_timestamp;                 /* 5249 */
  uint8_t boot_drive;                         /* 5253 */
  uint32_t mod_timestamp;                     /* 5254: changes whenever anything in the record does */
  VdDriveRef pd_v5[256];                      /* 5258: the member drives once more */
  uint64_t start_block_v12;                   /* 5770 */
  uint64_t span_block_count_v12;              /* 5778 */
  uint64_t smallest_pd_block_count_v12;       /* 5786 */
  uint32_t pd_block_size_v12;                 /* 5794: bytes */
  uint8_t vd_sed_state;                       /* 5798: bit set of the self-encrypting drives */
} MC_STORE_PACKED StorVirtDriveInfo;

/* What the plug-in remembers of it between calls, in the byte order of the machine. */
typedef struct VdSummary {
  uint8_t controller_index;
  uint8_t target_id;
  char guid[33];
  char name[16];
  uint32_t mod_timestamp;
} VdSummary;

/* The first bytes of a virtual drive reply. The records follow. */
typedef struct VirtDriveReplyHeader {
  uint8_t type;         /* 0: always 0x28 */
  uint8_t zero_1;       /* 1 */
  uint8_t eight;        /* 2: always 8 */
  uint8_t count;        /* 3: the records that follow, modulo 256 */
  uint32_t record_size; /* 4: big-endian; little-endian in a simulated reply */
  uint8_t zero_2;       /* 8 */
  uint8_t unwritten[8]; /* 9: as the buffer held it */
} MC_STORE_PACKED VirtDriveReplyHeader;

/*
 * All virtual drives. When their reply needs to grow, *available holds the present size on entry: a host that leaves it
 * alone has refused. (The simulation below asks as the other kinds do.)
 *
 * A null buf is refused with MC_STORE_UNAVAILABLE and leaves *len alone.
 *
 * While the file /debug/mctool_storage_debug exists, the reply is a made-up inventory of two drives with little-endian
 * numbers.
 */
int32_t mc_get_store_virtdrives(void *ctx, uint8_t *buf, uint32_t bufsize, uint32_t *len);

/*
 * What has changed since the previous call of either entry point, once the store file has been written: every virtual
 * drive that is new, or whose mod_timestamp as it stands in the reply, big-endian, is not what the file's bytes were
 * then (so most drives are reported each time); then a record for each one that is gone: status is
 * MC_STORE_VIRTDRIVE_GONE, and only guid, name, controller_index and target_id are written beside it. Never simulates.
 * A null buf is refused with MC_STORE_UNAVAILABLE. The length is 0 when there is nothing to report.
 */
int32_t mc_delta_store_virtdrives(void *ctx, uint8_t *buf, uint32_t bufsize, uint32_t *len);

/* What both entry points call: everything when `delta` is 0, the changes when it is 1. With any other value the reply
   is that of a full call, but the length is 0. */
int32_t get_store_virtdrives(void *ctx, uint8_t *buf, uint32_t bufsize, uint32_t *len, int32_t delta);

/*
 * Is the record's virtual drive missing from the cached list, or there with another mod_timestamp, as the record's
 * bytes stand? 1 or 0; 0 when an argument is null.
 */
int32_t new_virtdrive_or_modified(const StorVirtDriveInfo *record, const VdSummary *cached_list, uint16_t cached_count);

/*
 * Counts the cached virtual drives that are not in the cur list; 0 when a list is null. With `emit` 1 and a reply it
 * also appends a record for each; the reply must have room: the call cannot know its size.
 */
uint16_t find_deleted_virtdrives(uint8_t *reply, uint16_t cur_count, const VdSummary *cur_list, uint16_t cached_count,
                                 const VdSummary *cached_list, int32_t emit);

/* As print_ctlrinfo, to the same file. */
void print_vdinfo(const StorVirtDriveInfo *record, FILE *stream);

/* Appends the list to /var/mctool_vddebug.txt, a line for each entry, if the file /var/mctool_vddebug exists. */
void print_vd_list(const VdSummary *list, int32_t count, const char *label);

/* ------------------------------------------------------------------------------------------------ SAS expanders */

/*
 * Expanders have no store file: these set *len to 0 and return MC_STORE_NO_DATA, the entry points MC_STORE_UNAVAILABLE
 * for a null buf. While the file /debug/mctool_storage_debug exists, mc_get_store_sasexpanders answers with 100 fixed
 * bytes.
 */
int32_t mc_get_store_sasexpanders(void *ctx, uint8_t *buf, uint32_t bufsize, uint32_t *len);
int32_t mc_delta_store_sasexpanders(void *ctx, uint8_t *buf, uint32_t bufsize, uint32_t *len);
int32_t get_store_sasexpanders(void *ctx, uint8_t *buf, uint32_t bufsize, uint32_t *len);

/* ------------------------------------------------------------------------------------------------ NVMe */

/* The subsystem state; nvme_state_names has the words. */
enum {
  MC_NVME_STATE_UNKNOWN = 0,
  MC_NVME_STATE_UNINITIALIZED = 1,
  MC_NVME_STATE_INITIALIZING = 2,
  MC_NVME_STATE_AUX_POWER = 3,
  MC_NVME_STATE_MAIN_POWER = 4 /* the one state in which an event compares records */
};

/* The status of a record; nvme_status_names has the words. */
enum {
  MC_NVME_UNKNOWN = 0,
  MC_NVME_OPTIMAL = 1,
  MC_NVME_UNRESPONSIVE = 2,
  MC_NVME_MODERATE_FAULT = 3,
  MC_NVME_SEVERE_FAULT = 4,
  MC_NVME_DELETED = 5, /* only in the reply to an event: the device is gone */
  MC_NVME_DEGRADED = 6
};

/*
 * An NVMe controller or a PCIe switch. In the store file /var/nvmectlr_info these records follow a one-byte subsystem
 * state. Numbers are little-endian, texts as in StorCtlrInfo.
 */
typedef struct NvmeCtlrInfo {
  char controller_name[24];          /* 0: identity */
  uint32_t mod_timestamp;            /* 24: changes whenever anything in the record does */
  uint8_t status;                    /* 28: MC_NVME_... */
  uint8_t drive_count;               /* 29 */
  char controller_type[16];          /* 30: "NVME-MSWITCH..." has the switch fields below */
  char vendor_id[9];                 /* 46 */
  char product_id[17];               /* 55 */
  uint32_t component_id;             /* 72 */
  char product_revision[5];          /* 76 */
  uint16_t p2p_vendor_id;            /* 81 */
  uint16_t p2p_device_id;            /* 83 */
  char running_firmware_version[24]; /* 85 */
  char pending_firmware_version[24]; /* 109 */
  uint8_t switch_temperature;        /* 133 */
  char switch_status[64];            /* 134: "Optimal...", or what is wrong */
  char link_status[64];              /* 198: "Optimal...", or what is wrong */
} MC_STORE_PACKED NvmeCtlrInfo;

/*
 * An NVMe drive. In the store file /var/nvmephydrive_info these records follow the greatest number of drives that the
 * file may hold (four bytes, of which the low two count) and the subsystem state (one byte).
 */
typedef struct NvmePhyDriveInfo {
  char smbios_pcislotname[16];     /* 0: identity, together with the serial number */
  char controller_name[24];        /* 16 */
  uint8_t status;                  /* 40: MC_NVME_... */
  char product_name[81];           /* 41 */
  char serial_number[31];          /* 122: identity, together with the slot name */
  char firmware_version[97];       /* 153 */
  char vendor[20];                 /* 250 */
  uint16_t vendor_id;              /* 270 */
  uint16_t device_id;              /* 272 */
  uint16_t subvendor_id;           /* 274 */
  uint16_t subdevice_id;           /* 276 */
  uint8_t temperature;             /* 278 */
  char status_description[64];     /* 279 */
  uint8_t drive_life_used_percent; /* 343 */
  uint16_t life_left_in_days;      /* 344 */
  uint8_t performance_percent;     /* 346 */
  uint8_t percent_power_on_hours;  /* 347 */
  uint8_t throttle_threshold;      /* 348 */
  uint8_t shutdown_threshold;      /* 349 */
  uint8_t reserved[2];             /* 350: zero */
  uint32_t mod_timestamp;          /* 352: changes whenever anything in the record does */
} MC_STORE_PACKED NvmePhyDriveInfo;

/* What the plug-in remembers of them between calls, in the byte order of the machine. */
typedef struct NvmeCtlrSummary {
  char controller_name[24];
  uint32_t mod_timestamp; /* always 0: every event reports the controllers whose own is not */
} NvmeCtlrSummary;

typedef struct NvmeDriveSummary {
  char smbios_pcislotname[16];
  char unused[24];
  uint16_t vendor_id;
  uint16_t device_id;
  uint16_t subvendor_id;
  uint16_t subdevice_id;
  char serial_number[31];
  uint32_t mod_timestamp;
} NvmeDriveSummary;

/* What a staging image begins with, in the byte order of the machine. The records to report follow. */
typedef struct NvmeCtlrImageHeader {
  uint8_t state;
  uint8_t count;        /* of the records, modulo 256 */
  uint32_t record_size; /* sizeof(NvmeCtlrInfo) */
  uint8_t zero[8];
} MC_STORE_PACKED NvmeCtlrImageHeader;

typedef struct NvmeDriveImageHeader {
  uint8_t state;
  uint8_t one;
  uint16_t max_entries; /* as the store file announces */
  uint16_t count;       /* of the records, modulo 65536 */
  uint32_t record_size; /* sizeof(NvmePhyDriveInfo) */
  uint8_t zero[8];
} MC_STORE_PACKED NvmeDriveImageHeader;

/*
 * The NVMe entry points answer with one line of XML, without a terminating NUL: a summary element, then an element for
 * each device. Texts are inserted as they are, without escapes, so a device with a quote in its name makes the XML
 * malformed. There is no simulation.
 *
 * The "event" entry points report what is new, modified or deleted (status "Deleted") since the previous call of
 * either. When the store file has not changed, or when it has changed in a state other than MC_NVME_STATE_MAIN_POWER
 * that is still the same, the length is 0. Otherwise a drive event without news has length 0 too, and a controller
 * event is the summary element alone or, since their time stamps are not remembered, every controller whose own is not
 * 0.
 *
 * Beside the common results: MC_STORE_NO_BUFFER, and MC_STORE_NO_IMAGE for controllers. A null reply is refused with
 * MC_STORE_UNAVAILABLE if the reply would be written there.
 */
int32_t mc_get_nvme_controller(void *ctx, uint8_t *reply, uint32_t reply_size, uint32_t *reply_len);
int32_t mc_event_nvme_controller(void *ctx, uint8_t *reply, uint32_t reply_size, uint32_t *reply_len);
int32_t mc_get_nvme_phy_drive(void *ctx, uint8_t *reply, uint32_t reply_size, uint32_t *reply_len);
int32_t mc_event_nvme_phy_drive(void *ctx, uint8_t *reply, uint32_t reply_size, uint32_t *reply_len);

/* What these call: everything when `event` is 0, else the changes. */
int32_t get_nvme_controller_info(void *ctx, uint8_t *reply, uint32_t reply_size, uint32_t *reply_len, int32_t event);
int32_t get_nvme_phy_drive_info(void *ctx, uint8_t *reply, uint32_t reply_size, uint32_t *reply_len, int32_t event);

/* Is the device missing from the cached list, or there with another mod_timestamp? 0 when an argument is null. */
int32_t new_nvme_ctlr_or_modified(const NvmeCtlrInfo *record, const NvmeCtlrSummary *cached_list,
                                  uint16_t cached_count);
int32_t new_nvme_drive_or_modified(const NvmePhyDriveInfo *record, const NvmeDriveSummary *cached_list,
                                   uint16_t cached_count);

/*
 * Append a record with status MC_NVME_DELETED to the staging image for each cached device that is not in the cur list.
 * The image must have room: the call cannot know its size.
 */
void add_deleted_nvme_ctlrs(uint8_t *image, uint16_t cur_count, const NvmeCtlrSummary *cur_list, uint16_t cached_count,
                            const NvmeCtlrSummary *cached_list);
void add_deleted_nvme_drives(uint8_t *image, uint16_t cur_count, const NvmeDriveSummary *cur_list,
                             uint16_t cached_count, const NvmeDriveSummary *cached_list);

/*
 * Render a staging image. *size is the room in `out` on entry, which must be at least 1024 bytes for each record and
 * 100 more, and the length of the text on return: 0 when there was too little room. A text that is longer than the room
 * is cut, and then *size stays as it was.
 */
void xmlize_nvme_controller(const uint8_t *image, char *out, uint32_t *size);
void xmlize_nvme_phy_drive(const uint8_t *image, char *out, uint32_t *size);

/* Write the record as text to `stream`, which stays open. */
void print_nvme_ctlrinfo(const NvmeCtlrInfo *record, FILE *stream);
void print_nvme_pdinfo(const NvmePhyDriveInfo *record, FILE *stream);

/* The words for a subsystem state and for a record's status, by value; a null pointer ends each table. */
extern const char *const nvme_state_names[];
extern const char *const nvme_status_names[];

/*
 * The entry at index `value` of such a table. A value beyond the end gives an empty text; the value that equals the
 * number of words gives the null pointer at the end.
 */
const char *enum_name(int value, const char *const *table);

/* ------------------------------------------------------------------------------------------------ shared services */

/*
 * Opens /var/storctlr_info, takes a shared flock on it, and gives its stat. With a `path`, opens that file too, under
 * the same lock, and gives its stat instead.
 *
 * On success the caller holds the lock until it calls unlock_and_close_file with what it got here. On failure nothing
 * is open or locked; what *data_stream_out held on entry may then have been closed, so it must be null or a stream.
 * data_stream_out may be null when `path` is. MC_STORE_NO_DATA: a file is missing or cannot be stat'ed.
 * MC_STORE_UNAVAILABLE: a file cannot be opened or locked, or an argument is missing.
 */
int32_t getlock_and_open_file(struct stat *stat_out, int32_t *fd_out, FILE **lock_stream_out, FILE **data_stream_out,
                              const char *path);

/* Releases the lock and closes both streams; data_stream may be null. The result is that of the last fclose. */
int unlock_and_close_file(int32_t fd, FILE *lock_stream, FILE *data_stream);

/* A placeholder: prints "TRUE" to standard output and returns what puts returned. */
int verify_version(const void *a, const void *b);

/*
 * Reads the first word of /etc/product into `word`, which has room for 64 bytes. The result is fscanf's (1 when there
 * was a word), or 0 when the file cannot be opened.
 */
int read_product_file(char *word);

/* Does the product word begin with this platform's name, in any case? 1 or 0; the file is read at the first call. */
int running_on_kestrano(void);
int running_on_morvik(void);

/* ------------------------------------------------------------------------------------------------ decoders */

/*
 * Turn a copy of a store file into text, for offline inspection: the kind's file in `input_dir`, under the name that it
 * has below /var, into a file of the same name with "_decoded.txt" behind it in `output_dir`. That file is deleted
 * first, whatever happens then. No lock is taken. A path is cut after 319 characters, and may then be another file's.
 *
 * The text is that of print_ctlrinfo and its like for each whole record, as far as the file went when its size was
 * taken. For controllers and NVMe devices, two lines come first: the subsystem state, and how many records would make
 * up the file's size.
 *
 * The result is 0, or EOF when the file cannot be closed. When something goes wrong, a message is printed to stderr and
 * its number of characters is the result, except for a header that cannot be read, and for physical drives whose size
 * cannot be told (without a message) or that memory is short for: there it is 0 or EOF as well. What was done shows in
 * the messages and in the text file. A null directory is refused with MC_STORE_UNAVAILABLE.
 */
int list_controllers(const char *input_dir, const char *output_dir);
int list_physical_drives(const char *input_dir, const char *output_dir);
int list_virtual_drives(const char *input_dir, const char *output_dir);
int list_bbus(const char *input_dir, const char *output_dir);
int list_nvme_controllers(const char *input_dir, const char *output_dir);
int list_nvme_physical_drives(const char *input_dir, const char *output_dir);

/*
 * Append the record's text to a file. A null record makes the file, if there is none, and writes nothing. The RAID
 * kinds print the path to stdout first, all of them a message when the file cannot be opened. A null path: nothing.
 */
void print_controllerinfo(const char *output_path, const StorCtlrInfo *record);
void print_physicaldriveinfo(const char *output_path, const StorPhyDriveInfo *record);
void print_virtualdriveinfo(const char *output_path, const StorVirtDriveInfo *record);
void print_BBUInfo(const char *output_path, const StorBbuInfo *record);
void print_nvme_controllerinfo(const char *output_path, const NvmeCtlrInfo *record);

/*
 * The same for an NVMe drive, but a null record is told on stdout and opens nothing. The result is that of fclose, or
 * of printing what went wrong; MC_STORE_UNAVAILABLE for a null path.
 */
int print_nvme_physicaldriveinfo(const char *output_path, const NvmePhyDriveInfo *record);

#ifdef __cplusplus
}
#endif

#endif /* MCSERVER_STORAGE_H */
