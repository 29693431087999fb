// Every kind of device, a file for each.
#pragma once

#include "model/kind.h"

namespace model {

template <typename KindsModel>
std::unique_ptr<Model> make_model(World &world) {
  return std::make_unique<KindsModel>(world);
}

Kind drives();
Kind expanders();
Kind virtual_drives();

// What a store file's decoder makes of copies.
std::vector<Kind> decoders();

// A record's text, in its dump and when its file is decoded.
std::string text_of_drive(const tests::Bytes &record);
std::string text_of_virtual_drive(const tests::Bytes &record);

}  // namespace model
