#include "tests/cli/program.h"

#include "tests/support/files.h"

#include <cstdlib>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace dravik::test {

namespace {

std::filesystem::path programFile() {
    if (const char* named = std::getenv("DRAVIK_CLI"); named != nullptr) return named;
    return std::filesystem::read_symlink("/proc/self/exe").parent_path() / "dravik-cli";
}

}  // namespace

Program::Program(const std::vector<std::string>& arguments, const Surroundings& surroundings) {
    const std::filesystem::path out =
        surroundings.standardOutput.empty() ? folder_ / "out" : surroundings.standardOutput;
    const std::filesystem::path err = folder_ / "err";
    std::vector<std::string> line = {programFile()};
    line.insert(line.end(), arguments.begin(), arguments.end());
    std::vector<char*> pointers;
    for (std::string& argument : line)
        pointers.push_back(argument.data());
    pointers.push_back(nullptr);

    child_ = ::fork();
    if (child_ != 0) return;
    ::dup2(::open("/dev/null", O_RDONLY), STDIN_FILENO);
    ::dup2(::open(out.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), STDOUT_FILENO);
    ::dup2(::open(err.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), STDERR_FILENO);
    ::unsetenv("COLUMNS");
    for (const auto& [name, value] : surroundings.environment)
        ::setenv(name.c_str(), value.c_str(), 1);
    if (!surroundings.workingFolder.empty() && ::chdir(surroundings.workingFolder.c_str()) != 0) ::_exit(126);
    ::execv(pointers.front(), pointers.data());
    ::_exit(127);
}

void Program::signal(int number) const { ::kill(child_, number); }

Ran Program::wait() {
    int status = 0;
    if (::waitpid(child_, &status, 0) != child_) throw std::runtime_error("the program was lost");
    Ran ran;
    ran.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    if (std::filesystem::exists(folder_ / "out")) ran.out = asText(readFile(folder_ / "out"));
    ran.err = asText(readFile(folder_ / "err"));
    return ran;
}

Ran run(const std::vector<std::string>& arguments) { return run(arguments, {}); }
Ran run(const std::vector<std::string>& arguments, const Program::Surroundings& surroundings) {
    return Program(arguments, surroundings).wait();
}

}  // namespace dravik::test
