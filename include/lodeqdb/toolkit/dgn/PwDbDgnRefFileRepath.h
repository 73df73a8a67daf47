// PwDbDgnRefFileRepath: the reference attachments of one DGN design file, read once and offered
// by index, for tools that show or repair where a design file's references point.
//
//   PwDbDgnRefFileRepath repath;
//   if (repath.setFile(PwString(u"/srv/site.dgn"), nullptr) == Plotwright::StatusOk) {
//       for (size_t i = 0; i < repath.numReferences(); ++i) {
//           const PwDbDgnRefFileData* reference = repath.reference(i);
//           if (reference->resolvedPath.isEmpty()) report(reference->storedPath);
//       }
//   }
//
// The records are the object's own and live until the next setFile, detach or destruction.
#pragma once

#include <cstddef>
#include <cstdint>

#include <lodeqdb/toolkit/core/PwArray.h>
#include <lodeqdb/toolkit/pal/PwErrorStatus.h>
#include <lodeqdb/toolkit/core/PwString.h>
#include <lodeqdb/toolkit/dgn/PwDbDgnRefFileData.h>

class PwDbDgnRefFileRepath {
  public:
    /// Attached to no file: no references.
    PwDbDgnRefFileRepath();
    ~PwDbDgnRefFileRepath();
    PwDbDgnRefFileRepath(const PwDbDgnRefFileRepath&) = delete;
    PwDbDgnRefFileRepath& operator=(const PwDbDgnRefFileRepath&) = delete;

    /// Attaches the object to the design file `path` and reads its attachments, with the
    /// statuses of pwdbGetDgnFileReferences (StatusFileNotFound, StatusBadFileFormat for a
    /// file that isn't DGN V7, ...). On failure the object is detached. `password` is accepted
    /// for callers that pass it: DGN V7 files are never protected.
    Plotwright::ErrorStatus setFile(const PwString& path, const char16_t* password);
    /// Drops the references and the file.
    void detach();

    /// The file the object is attached to; empty when detached.
    const PwString& file() const { return m_file; }
    /// Attachments of the file, in file order.
    size_t numReferences() const { return m_references.length(); }
    /// The attachment at `index`; null for an index not below numReferences().
    const PwDbDgnRefFileData* reference(size_t index) const;
    /// The index of the attachment whose refId is `refId`; StatusKeyNotFound when none has it
    /// (`index` is then left alone).
    Plotwright::ErrorStatus findReference(uint64_t refId, size_t& index) const;

  private:
    PwString m_file;
    PwArray<PwDbDgnRefFileData*> m_references;
};
