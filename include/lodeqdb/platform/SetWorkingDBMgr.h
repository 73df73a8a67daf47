// A scoped change of the host's working database.
//
//   {
//       LodeQDBUtil::SetWorkingDBMgr working(&drawing);
//       drawing.saveAs(...);
//   }   // the working database is back
//
// A switch happens only when the toolkit runs alone (host kind 4) or the host has no working
// database; a full host's working database is left alone. The working database is a setting
// of the process: two threads must not overlap in this.
#pragma once

class PwDbDatabase;

namespace LodeQDBUtil {

class SetWorkingDBMgr {
  public:
    explicit SetWorkingDBMgr(PwDbDatabase* database);
    /// Switches back when the constructor switched.
    ~SetWorkingDBMgr();
    /// A scope guard isn't copied: a copy would switch back a second time.
    SetWorkingDBMgr(const SetWorkingDBMgr&) = delete;
    /// The member copy stays part of the exported interface; assigning a guard takes over the
    /// other's duty to switch back, so only one of the two should then end its scope.
    SetWorkingDBMgr& operator=(const SetWorkingDBMgr&) = default;

  private:
    PwDbDatabase* previous_ = nullptr;
    bool switched_ = false;
};

}  // namespace LodeQDBUtil
