// A history: what happens to the files and which calls the host makes, step by step. The plug-in lives through it
// beside the model.
#pragma once

#include <string>

#include "model/choices.h"
#include "model/kind.h"

namespace model {

struct Finding {
  std::string difference;  // what the plug-in did that the model did not; empty if there is nothing
  std::string story;       // the steps up to there, for people
};

Finding live_through(const Kind &kind, Choices &choices);

}  // namespace model
