#include "tests/support/child.h"

#include <cerrno>
#include <exception>
#include <stdexcept>

#include <grp.h>
#include <sys/wait.h>
#include <unistd.h>

namespace dravik::test {
namespace {

constexpr int threwResult = 200;
constexpr uid_t nobody = 65534;

}  // namespace

pid_t startChild(const std::function<int()>& work) {
    const pid_t child = ::fork();
    if (child < 0) throw std::runtime_error("cannot fork");
    if (child > 0) return child;
    int result = threwResult;
    try {
        result = work();
    } catch (const std::exception&) {
        result = threwResult;
    }
    ::_exit(result);
}

int waitForChild(pid_t child) {
    int status = 0;
    while (::waitpid(child, &status, 0) < 0) {
        if (errno != EINTR) throw std::runtime_error("cannot wait for a child");
    }
    return WIFSIGNALED(status) ? -WTERMSIG(status) : WEXITSTATUS(status);
}

int inChild(const std::function<int()>& work) { return waitForChild(startChild(work)); }

uid_t userWithoutRights() { return ::getuid() == 0 ? nobody : ::getuid(); }

int inChildWithoutRights(const std::function<int()>& work) {
    return inChild([&] {
        if (::getuid() == 0 && (::setgroups(0, nullptr) != 0 || ::setgid(nobody) != 0 || ::setuid(nobody) != 0)) {
            throw std::runtime_error("cannot give up the rights of root");
        }
        return work();
    });
}

}  // namespace dravik::test
