// What the toolkit's file layer shares about descriptors: the status of a failed call, and
// writing all of a buffer. Internal to the toolkit's file layer.
#pragma once

#include <string_view>

#include <lodeqdb/toolkit/pal/PwErrorStatus.h>

/// The toolkit's status for the errno of a failed file call: a missing file, a refusal
/// (permission, or a lock that stayed held), a name no file can have, or a failed input or
/// output.
::Plotwright::ErrorStatus pwStatusOfErrno(int error);

/// Writes all of `bytes` to `fd` through the table of file-system calls; false when not all
/// could be written.
bool pwWriteAll(int fd, std::string_view bytes);
