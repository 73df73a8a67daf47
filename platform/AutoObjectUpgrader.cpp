// The scoped upgrade of an open from read to write.
#include <lodeqdb/platform/AutoObjectUpgrader.h>

#include <lodeqdb/toolkit/db/PwDbObject.h>

namespace pwdb {

AutoObjectUpgrader::AutoObjectUpgrader(PwDbObject& object) : object_(&object) {
    status_ = object_->upgradeOpen();
}

AutoObjectUpgrader::~AutoObjectUpgrader() {
    if (status_ == Plotwright::StatusOk) object_->downgradeOpen();
}

}  // namespace pwdb
