#pragma once

#include <cstdio>
#include <cstdlib>
#include <source_location>

/// A condition that must hold whatever the input. A fuzz target that finds otherwise names the line and stops, in
/// release builds too.
inline void require(bool holds, std::source_location here = std::source_location::current()) {
    if (holds) return;
    std::fprintf(stderr, "%s:%u: the condition does not hold\n", here.file_name(), static_cast<unsigned>(here.line()));
    std::abort();
}
