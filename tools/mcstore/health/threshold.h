// Limits that users set on numbers of devices, in the syntax of monitoring plug-ins.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "mcstore/health/health.h"
#include "mcstore/kinds/device.h"
#include "mcstore/kinds/kind.h"

namespace mcstore {

// "10" alerts outside of 0 to 10, "10:" below 10, "~:10" above 10, "5:10" outside of 5 to 10, "@5:10" inside.
class Range {
 public:
  // Nothing if the text is none.
  static std::optional<Range> parse(std::string_view text);

  bool alerts(double number) const;
  const std::string &text() const { return text_; }

 private:
  std::string text_;
  double least_ = 0;
  double greatest_ = 0;
  bool is_inside_ = false;  // alerts inside instead of outside
};

// "drives.media_err_count=10".
struct Threshold {
  const Kind *kind;
  std::string field;
  Range range;
  Health health;

  // Throws std::invalid_argument, whose message says what is wrong with it.
  static Threshold parse(const std::string &text, Health health);
};

}  // namespace mcstore
