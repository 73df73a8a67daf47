// The write through a read open shared by the const setters: upgrade, write, downgrade.
#pragma once

#include <lodeqdb/toolkit/pal/PwErrorStatus.h>
#include <lodeqdb/toolkit/db/PwDbObject.h>

namespace LodeQDBUtil::detail {

/// Upgrades `object`'s open (false at once when refused, nothing changed), runs `write` on the
/// writable object, downgrades again and gives `write`'s answer.
template <class T, class Write>
bool WriteThroughReadOpen(const T& object, Write&& write) {
    T& writable = const_cast<T&>(object);
    if (writable.upgradeOpen() != Plotwright::StatusOk) return false;
    const bool written = write(writable);
    writable.downgradeOpen();
    return written;
}

}  // namespace LodeQDBUtil::detail
