#include "shared/trace.h"

#include <cstring>
#include <ctime>

namespace mcserver {

CtimeText::CtimeText(time_t time) : text_{} {
  // A year of five digits and more still fits.
  const char *text = ctime(&time);
  if (text) strncpy(text_, text, sizeof text_ - 1);
}

}  // namespace mcserver
