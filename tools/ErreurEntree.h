#pragma once

#include <stdexcept>

namespace outil {

/// Input that can't be used; the message names the file, the line and what is wrong there.
struct ErreurEntree : std::runtime_error {
    using std::runtime_error::runtime_error;
};

}  // namespace outil
