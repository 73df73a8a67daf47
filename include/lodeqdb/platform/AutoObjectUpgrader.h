// A scoped change of an open from read to write: upgraded at construction, downgraded again at
// destruction when the upgrade succeeded.
//
//   pwdb::AutoObjectUpgrader upgrade(*record);
//   if (upgrade.GetStatus() == Plotwright::StatusOk) record->setName(u"NEW");
#pragma once

#include <lodeqdb/toolkit/pal/PwErrorStatus.h>

class PwDbObject;

namespace pwdb {

class AutoObjectUpgrader {
  public:
    /// Upgrades `object`'s open; test GetStatus() before writing.
    explicit AutoObjectUpgrader(PwDbObject& object);
    ~AutoObjectUpgrader();
    AutoObjectUpgrader(const AutoObjectUpgrader&) = delete;
    AutoObjectUpgrader& operator=(const AutoObjectUpgrader&) = delete;

    /// The status of the upgrade.
    const Plotwright::ErrorStatus& GetStatus() const { return status_; }

  private:
    Plotwright::ErrorStatus status_ = Plotwright::StatusOk;
    PwDbObject* object_;
};

}  // namespace pwdb
