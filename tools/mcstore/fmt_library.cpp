// The one file that compiles the formatting library, which takes long. The others include its declarations alone.

#define FMT_HEADER_ONLY
#include <fmt/format.h>

namespace {

// Inline in this form of the library, and so only there when it is used.
[[gnu::used]] std::string (*const vformat)(fmt::string_view, fmt::format_args) = fmt::vformat;

}  // namespace
