// SPDX-License-Identifier: MIT
#include "core/about_facts.h"

namespace vantrell {

std::string programVersion() { return VANTRELL_VERSION; }

}  // namespace vantrell
