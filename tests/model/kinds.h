// Every kind of device, a file for each.
#pragma once

#include "model/kind.h"

namespace model {

template <typename KindsModel>
std::unique_ptr<Model> make_model(World &world) {
  return std::make_unique<KindsModel>(world);
}

Kind bbus();
Kind controllers();
Kind drives();
Kind expanders();
Kind nvme_controllers();
Kind nvme_drives();
Kind virtual_drives();

// What a store file's decoder makes of copies.
std::vector<Kind> decoders();

// A record's text, in its dump and when its file is decoded.
std::string text_of_bbu(const Bytes &record);
std::string text_of_controller(const Bytes &record);
std::string text_of_drive(const Bytes &record);
std::string text_of_nvme_controller(const Bytes &record);
std::string text_of_nvme_drive(const Bytes &record);
std::string text_of_virtual_drive(const Bytes &record);

}  // namespace model
