// How a function that stands in for one of libc's goes on to it.
#pragma once

#include <dlfcn.h>

namespace host {

template <typename Function>
Function *next_definition(const char *name) {
  return reinterpret_cast<Function *>(dlsym(RTLD_NEXT, name));
}

}  // namespace host

#define NEXT(type, name) host::next_definition<type>(#name)

// Where a sanitizer is linked into the program itself, its checking versions have these names and nothing else leads
// to them; elsewhere they are null.
#define SANITIZER_VERSION(result, name, ...) extern "C" __attribute__((weak)) result __interceptor_##name(__VA_ARGS__);
#define REAL(name) (__interceptor_##name ? __interceptor_##name : NEXT(decltype(__interceptor_##name), name))
