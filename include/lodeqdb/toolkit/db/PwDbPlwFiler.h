// PwDbPlwFiler: the stream through which every object states its persistent data.
//
//   Plotwright::ErrorStatus PwDbCircle::plwOutFields(PwDbPlwFiler* filer) const {
//       if (auto status = PwDbEntity::plwOutFields(filer)) return status;
//       filer->writePoint3d(m_center);
//       return filer->writeDouble(m_radius);
//   }
//
// A filer is a sequence of typed items. Each class writes its items after its base class's
// and reads them back in the same order and of the same types; a reader that meets another
// type, or the end, gets StatusFilerError. Object ids travel as handles and are resolved in
// the filer's database when read.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include <lodeqdb/lodeutil/WideString.h>
#include <lodeqdb/toolkit/pal/PwErrorStatus.h>
#include <lodeqdb/toolkit/db/PwDbObjectId.h>
#include <lodeqdb/toolkit/ge/PwGeGeometry.h>

class PwString;

class PwDbPlwFiler {
  public:
    // The first four operations stand first among the virtual ones, in this order.

    /// Reads a text into a new buffer that the caller frees with pwutDelBuffer.
    virtual Plotwright::ErrorStatus readString(char16_t*& text) = 0;
    /// Writes zero-terminated text; null writes the empty text.
    virtual Plotwright::ErrorStatus writeString(const char16_t* text) = 0;
    virtual Plotwright::ErrorStatus readInt32(int32_t& value) = 0;
    virtual Plotwright::ErrorStatus writeInt32(int32_t value) = 0;

    virtual Plotwright::ErrorStatus readInt64(int64_t& value) = 0;
    virtual Plotwright::ErrorStatus writeInt64(int64_t value) = 0;
    virtual Plotwright::ErrorStatus readDouble(double& value) = 0;
    virtual Plotwright::ErrorStatus writeDouble(double value) = 0;
    virtual Plotwright::ErrorStatus readBool(bool& value) = 0;
    virtual Plotwright::ErrorStatus writeBool(bool value) = 0;
    /// Reads exactly `size` bytes written as one item by writeBytes of the same size.
    virtual Plotwright::ErrorStatus readBytes(void* bytes, size_t size) = 0;
    virtual Plotwright::ErrorStatus writeBytes(const void* bytes, size_t size) = 0;
    /// Reads an object id: a handle resolved in database(); the null id for handle 0.
    virtual Plotwright::ErrorStatus readObjectId(PwDbObjectId& id) = 0;
    virtual Plotwright::ErrorStatus writeObjectId(PwDbObjectId id) = 0;

    /// The first failure met so far; StatusOk while there was none.
    virtual Plotwright::ErrorStatus filerStatus() const = 0;
    /// The database in which ids that are read are resolved; may be null.
    virtual PwDbDatabase* database() const = 0;

    virtual ~PwDbPlwFiler();

    /// Reads an id as its handle alone, neither finding nor making its record, for long lists
    /// of ids that an object resolves in database() when they are first used. Only filers
    /// whose keepsIdsAsHandles() is true take it; the others give StatusNotApplicable.
    virtual Plotwright::ErrorStatus readHandle(PwDbHandle& handle);
    /// Reads `count` ids as handles, kept packed as varints (LodeUtil/Varint.h) in `packed`,
    /// for a long list that is resolved only when used; `named` says how many aren't 0. Only
    /// filers whose keepsIdsAsHandles() is true take it; the others give StatusNotApplicable.
    virtual Plotwright::ErrorStatus readPackedHandles(size_t count, std::string& packed,
                                                      size_t& named);
    /// Whether readHandle may be used: the filer reads an object into database(), where the
    /// object will live.
    virtual bool keepsIdsAsHandles() const { return false; }

    // Conveniences made of the items above.
    Plotwright::ErrorStatus readString(wstring& text);
    Plotwright::ErrorStatus readString(PwString& text);
    Plotwright::ErrorStatus writeString(const wstring& text);
    Plotwright::ErrorStatus readPoint3d(PwGePoint3d& point);
    Plotwright::ErrorStatus writePoint3d(const PwGePoint3d& point);
    Plotwright::ErrorStatus readScale3d(PwGeScale3d& scale);
    Plotwright::ErrorStatus writeScale3d(const PwGeScale3d& scale);
};
