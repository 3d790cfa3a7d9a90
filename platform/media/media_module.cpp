#include "platform/media/media_module.h"

namespace dravik {

MediaFunction mediaFunction(const char* name) { return moduleFunction("dravik_media", name); }

}  // namespace dravik
