// FileData: one record per file that a drawing depends on, as every dependency query hands
// it out; and lode::FileType, the kind of such a file.
//
//   for (const LodeQDBService::FileData& child : children)
//       show(child.GetFullname(), child.GetType(), child.GetXrefStatus());
//
// Records compare by their full names alone, exactly (code unit by code unit, no case
// folding, no path normalisation), so that callers can keep them in ordered containers.
#pragma once

#include <cstdint>

#include <lodeqdb/lodeutil/WideString.h>
#include <lodeqdb/toolkit/db/PwDb.h>
#include <lodeqdb/toolkit/db/PwDbObjectId.h>
#include <lodeqdb/vocabulary/FileKinds.h>


namespace LodeQDBService {

class FileData {
  public:
    FileData() = default;
    /// A record of the file `fullName`, with nothing else known yet.
    explicit FileData(const wstring& fullName);
    /// A record of the file that the object `id` refers to; the ref id is its handle.
    explicit FileData(const PwDbObjectId& id);

    wstring GetFullname() const { return fullName_; }
    void SetFullname(const wstring& fullName) { fullName_ = fullName; }
    const PwDbObjectId& PwdbObjectId() const { return objectId_; }
    /// Changes the object id only: the ref id stays.
    void SetPwdbObjectId(const PwDbObjectId& id) { objectId_ = id; }
    uint64_t GetRefId() const { return refId_; }
    void SetRefId(uint64_t refId) { refId_ = refId; }
    lode::FileType GetType() const { return type_; }
    void SetType(lode::FileType type) { type_ = type; }
    PwDb::XrefStatus GetXrefStatus() const { return xrefStatus_; }
    void SetXrefStatus(PwDb::XrefStatus status) { xrefStatus_ = status; }

    /// Same full name, whatever else differs.
    bool operator==(const FileData& other) const;
    /// Full names in plain code-unit order.
    bool operator<(const FileData& other) const;

  private:
    wstring fullName_;
    PwDbObjectId objectId_;
    uint64_t refId_ = 0;
    lode::FileType type_ = lode::Unknown;
    PwDb::XrefStatus xrefStatus_ = PwDb::XrefNotAnXref;
};

}  // namespace LodeQDBService
