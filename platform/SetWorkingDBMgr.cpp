// The scoped change of the host's working database.
#include <lodeqdb/platform/SetWorkingDBMgr.h>

#include <lodeqdb/toolkit/db/PwDbHostApplicationServices.h>

namespace LodeQDBUtil {

SetWorkingDBMgr::SetWorkingDBMgr(PwDbDatabase* database) {
    PwDbHostApplicationServices* services = pwdbHostApplicationServices();
    // Without host services there is no working database to switch.
    if (services == nullptr) return;
    previous_ = services->workingDatabase();
    if (services->hostKind() != PwDbHostApplicationServices::kInkstoneHostKind &&
        previous_ != nullptr)
        return;
    if (database == previous_) return;
    switched_ = true;
    services->setWorkingDatabase(database);
}

SetWorkingDBMgr::~SetWorkingDBMgr() {
    if (!switched_) return;
    if (PwDbHostApplicationServices* services = pwdbHostApplicationServices())
        services->setWorkingDatabase(previous_);
}

}  // namespace LodeQDBUtil
