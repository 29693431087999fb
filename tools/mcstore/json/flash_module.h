// The flash module's product data: the FRU image that its own firmware would have written.
//
//   {"manufacturer": "EXAMPLE", "product_name": "TFM-1G", "serial_number": "TF00123", "part_number": "", "fru_file_id":
//   "",
//    "revision": {"part": "A1", "format": 1, "version": "2.0"}}
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "mcstore/json/json_input.h"

namespace mcstore {

inline constexpr std::string_view kFlashModuleKey = "flash-module";

// The image of the module that `object` describes; what is left out is empty. Throws InventoryError.
std::vector<uint8_t> flash_module_image(const Json &object, const std::string &place);

}  // namespace mcstore
