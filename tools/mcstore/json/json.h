// JSON, for the few files that read or write it: the library takes long to compile.
#pragma once

#include <nlohmann/json.hpp>

namespace mcstore {

using Json = nlohmann::ordered_json;  // keys stay in the order in which they were written

}  // namespace mcstore
