#pragma once

#include <functional>

#include <sys/types.h>

namespace dravik::test {

/// Work in a process of its own, forked from the test: to be killed, or to have no rights. The work must not use
/// GoogleTest's assertions; what it has to say is its result.

/// Runs the work and gives its result, 200 when it threw, or minus the number of the signal that ended it.
[[nodiscard]] int inChild(const std::function<int()>& work);
/// The same without the rights of the superuser: as "nobody" where the test runs as root, else as the test's user.
[[nodiscard]] int inChildWithoutRights(const std::function<int()>& work);
/// Who that is; what such a child is to write must be theirs.
[[nodiscard]] uid_t userWithoutRights();

/// Starts the work and does not wait.
[[nodiscard]] pid_t startChild(const std::function<int()>& work);
/// Waits for it; the result as above.
[[nodiscard]] int waitForChild(pid_t child);

}  // namespace dravik::test
