// The bare reading loop as a program: bare_loop FOLDER opens every recording of a bench folder, reads its header area
// and its iXML, and closes it. What any program that lists such a folder must do at least.

#include "bench/fixture.h"

#include <fmt/format.h>

int main(int argc, char** argv) {
    if (argc != 2) {
        fmt::print(stderr, "usage: bare_loop FOLDER\n");
        return 2;
    }
    using namespace dravik::bench;
    std::size_t bytes = 0;
    for (const auto& entry : std::filesystem::directory_iterator(argv[1])) {
        const Layout layout = layoutOf(kindOf(entry.path().filename().native()), smallAudioBytes);
        bytes += readBare(entry.path().c_str(), layout);
    }
    return bytes > 0 ? 0 : 1;
}
