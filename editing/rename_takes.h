#pragma once

#include "editing/save_item.h"

#include <vector>

namespace dravik {

/// Takes are told by their files' names, so a rename can take one apart, or make one of two. Groups the files of each
/// folder concerned as they are and as they would be, and refuses when the files of one take of the plan would not be
/// one take any more, with the same track numbers, or when a renamed file would join another take, of the plan or only
/// of the folder. Reads the headers of files whose names fit the new ones; changes nothing. Throws MainSaveRenameError.
void checkTakes(const std::vector<SaveItem>& items);

}  // namespace dravik
