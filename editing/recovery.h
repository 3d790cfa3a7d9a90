#pragma once

#include "base/folder_recovery.h"  // IWYU pragma: export
