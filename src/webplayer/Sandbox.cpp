#include "webplayer/Sandbox.h"

#include <QByteArray>

#include <cstdlib>

#include <fcntl.h>
#include <sched.h>
#include <sys/wait.h>
#include <unistd.h>

namespace randblatt {

namespace {

bool isSwitchedOff()
{
    const QByteArray disabled = qgetenv("QTWEBENGINE_DISABLE_SANDBOX");
    return (!disabled.isEmpty() && disabled != "0") ||
           qgetenv("QTWEBENGINE_CHROMIUM_FLAGS").contains("--no-sandbox");
}

/// Makes a user namespace and becomes somebody in it. Some kernels allow the one without the other.
bool enterUserNamespace()
{
    if (unshare(CLONE_NEWUSER | CLONE_NEWPID) != 0)
        return false;
    const int map = open("/proc/self/setgroups", O_WRONLY | O_CLOEXEC);
    const bool isWritten = map >= 0 && write(map, "deny", 4) == 4;
    if (map >= 0)
        close(map);
    // Shut in without capabilities, as where a security module takes them away, nothing more can be made.
    return isWritten && unshare(CLONE_NEWNET) == 0;
}

} // namespace

bool canConfineEngine()
{
    if (isSwitchedOff())
        return true;
    if (geteuid() == 0)
        return false;
    const pid_t child = fork();
    if (child == 0)
        _exit(enterUserNamespace() ? EXIT_SUCCESS : EXIT_FAILURE);
    int status = 0;
    return child > 0 && waitpid(child, &status, 0) == child && WIFEXITED(status) &&
           WEXITSTATUS(status) == EXIT_SUCCESS;
}

} // namespace randblatt
