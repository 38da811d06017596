// SPDX-License-Identifier: MIT
#include "passwords/supplied_password_file.h"

#include <embedded_password_file.h>

namespace vantrell {

std::string_view suppliedPasswordFile() {
    const void* const bytes = embedded_password_file;
    return {static_cast<const char*>(bytes), embedded_password_file_size};
}

}  // namespace vantrell
