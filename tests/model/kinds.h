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
Kind nvme_controllers();
Kind nvme_drives();

}  // namespace model
