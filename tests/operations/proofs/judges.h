#pragma once

#include "tests/support/shell.h"

#include <gtest/gtest.h>

/// For a test that needs the programs that judge our files; none of them was written here.
// NOLINTNEXTLINE: the skip has to return from the test itself
#define DRAVIK_NEEDS_JUDGES()                                                                     \
    for (const char* program : {"ffprobe", "ffmpeg", "sox", "soxi", "sndfile-info", "mediainfo"}) \
        if (!dravik::test::isInstalled(program)) GTEST_SKIP() << program << " is not installed: scripts/deps.sh test"
