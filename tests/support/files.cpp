#include "tests/support/files.h"

#include <algorithm>
#include <fstream>
#include <stdexcept>

#include <fmt/format.h>
#include <sys/stat.h>

namespace dravik::test {
namespace {

void write(const std::filesystem::path& path, ByteSpan bytes, std::ios::openmode mode) {
    std::ofstream out(path, std::ios::binary | mode);
    out.write(asText(bytes).data(), static_cast<std::streamsize>(bytes.size()));
    out.close();
    if (!out) throw std::runtime_error("cannot write " + path.string());
}

}  // namespace

Bytes readFile(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in) throw std::runtime_error("cannot read " + path.string());
    std::string text(static_cast<std::size_t>(std::filesystem::file_size(path)), '\0');
    in.read(text.data(), static_cast<std::streamsize>(text.size()));
    if (!in) throw std::runtime_error("cannot read " + path.string());
    return toBytes(text);
}

void writeFile(const std::filesystem::path& path, ByteSpan bytes) { write(path, bytes, std::ios::trunc); }
void appendToFile(const std::filesystem::path& path, std::string_view text) {
    write(path, asBytes(text), std::ios::app);
}

std::vector<std::string> namesIn(const std::filesystem::path& folder) {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        names.push_back(entry.path().filename());
    std::sort(names.begin(), names.end());
    return names;
}

std::map<std::string, std::string> stateOf(const std::filesystem::path& folder) {
    std::map<std::string, std::string> state;
    for (const std::string& name : namesIn(folder)) {
        struct stat info {};
        if (::stat((folder / name).c_str(), &info) != 0) throw std::runtime_error("cannot look at " + name);
        state[name] = fmt::format("{} {}.{} {}", info.st_ino, info.st_mtim.tv_sec, info.st_mtim.tv_nsec,
                                  asText(readFile(folder / name)));
    }
    return state;
}

}  // namespace dravik::test
