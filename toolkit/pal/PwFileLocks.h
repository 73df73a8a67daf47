// Advisory locks between the toolkit's readers and savers, with a short wait for a holder
// that is about to let go. Internal to the toolkit's file layer.
//
//   if (pwLockWithinBound(fd, LOCK_SH) != 0) return StatusSecurityAccessDenied;  // still held
//
// Every read holds a shared lock and every save an exclusive one on the file it replaces,
// each for as long as it reads or renames: a conflict between two of them lasts
// milliseconds. A lock that another holder keeps longer than kPwLockWaitMilliseconds (a
// drawing kept open for reading, say) is reported as before.
#pragma once

/// How long a lock held by another process is waited for before the conflict is reported.
inline constexpr int kPwLockWaitMilliseconds = 2000;

/// Takes the flock(2) lock `operation` (LOCK_SH or LOCK_EX) on `fd`, retrying while another
/// holder has it, for at most kPwLockWaitMilliseconds. 0 on success; -1 otherwise, with errno
/// EWOULDBLOCK when the other holder kept it throughout, or the error that stopped it.
int pwLockWithinBound(int fd, int operation);
