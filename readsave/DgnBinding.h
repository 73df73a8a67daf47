// The binding of the DGN module "PwDgnIO.qdb" for the library's DGN calls: loaded on the first
// DGN question through the toolkit's dynamic linker, its entries bound once each by their
// plain names. Internal to the library.
#pragma once

#include <atomic>
#include <cstddef>

namespace LodeQDBUtil {

/// The address of the module's entry `name`, loading the module first when it isn't in the
/// process. lode::InkstoneError when the module can't be loaded or lacks the entry. The
/// module's name, entries and their types are in toolkit/dgn/PwDgnIOEntryPoints.h; binding
/// pins the module (pwrxBindModuleEntry), so entries once bound stay callable and a request
/// to unload the module is refused from then on.
void* BindDgnEntryPoint(const char* name);

/// Binds the entry `name` into `slot` unless it holds an address already; gives the address.
/// The slots are process-wide and take no lock: two threads binding one entry at once both
/// look it up and store the same address. They are atomic so that doing so isn't a data race.
template <class Function>
Function BindDgnEntryPointOnce(std::atomic<Function>& slot, const char* name) {
    Function bound = slot.load(std::memory_order_acquire);
    if (bound == nullptr) {
        bound = reinterpret_cast<Function>(BindDgnEntryPoint(name));
        slot.store(bound, std::memory_order_release);
    }
    return bound;
}

namespace detail {
/// How many entries were looked up in the module so far, for tests of the binding.
size_t DgnEntryLookups();
}  // namespace detail

}  // namespace LodeQDBUtil
