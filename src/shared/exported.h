#pragma once

// Stands before the definition of each function that exports.list names. Everything else is hidden.
#define EXPORTED extern "C" [[gnu::visibility("default")]]
