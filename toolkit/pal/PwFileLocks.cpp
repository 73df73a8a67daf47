// Taking a file lock with a bounded wait: retries with growing pauses, up to the bound.
#include "toolkit/pal/PwFileLocks.h"

#include <sys/file.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <thread>

#include "toolkit/pal/PwFileSystemCalls.h"

int pwLockWithinBound(int fd, int operation) {
    using Clock = std::chrono::steady_clock;
    const Clock::time_point deadline =
        Clock::now() + std::chrono::milliseconds(kPwLockWaitMilliseconds);
    std::chrono::milliseconds pause(1);
    for (;;) {
        if (pwFileSystemCalls().flock(fd, operation | LOCK_NB) == 0) return 0;
        if (errno == EINTR) continue;
        if (errno != EWOULDBLOCK) return -1;
        const Clock::time_point now = Clock::now();
        if (now >= deadline) {
            errno = EWOULDBLOCK;
            return -1;
        }
        std::this_thread::sleep_for(std::min<Clock::duration>(pause, deadline - now));
        pause = std::min(pause * 2, std::chrono::milliseconds(50));
    }
}
