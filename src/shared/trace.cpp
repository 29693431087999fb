#include "shared/trace.h"

#include <climits>
#include <ctime>

namespace mcserver {

// What ctime gives, but in memory of our own: two kinds may run at the same time, and ctime's text is the process's.
// ctime_r would do, had it a text for years of five digits.
CtimeText::CtimeText(time_t time) : text_{} {
  constexpr char kDays[7][4] = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
  constexpr char kMonths[12][4] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun", "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
  constexpr int kFirstYear = 1900;

  tzset();  // ctime notices when TZ has changed, localtime_r need not
  struct tm local;
  if (!localtime_r(&time, &local) || local.tm_year > INT_MAX - kFirstYear) return;
  snprintf(text_, sizeof text_, "%s %s%3d %.2d:%.2d:%.2d %d\n", kDays[local.tm_wday], kMonths[local.tm_mon],
           local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec, kFirstYear + local.tm_year);
}

}  // namespace mcserver
