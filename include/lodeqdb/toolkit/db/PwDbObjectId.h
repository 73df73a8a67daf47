// PwDbObjectId: the identity of an object that lives in a database.
//
//   PwDbObjectId id = database.layerZeroId();
//   if (!id.isNull() && !id.isErased()) { PwDbDatabase* owner = id.database(); }
//
// An id is 64 bits (the address of the database's record for that object), cheap to copy and
// compared by value; the null id is 0. An id means something only while its database lives:
// the database keeps the record of every object it ever held, erased ones too, until it is
// destroyed, so an id never dangles before that.
#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <functional>

#include <lodeqdb/toolkit/db/PwDb.h>

class PwDbDatabase;
class PwDbObject;
struct PwDbStub;

class PwDbObjectId {
  public:
    /// The null id.
    constexpr PwDbObjectId() = default;
    /// The id of the database record `stub`; null for a null stub.
    explicit constexpr PwDbObjectId(PwDbStub* stub) : m_stub(stub) {}

    /// A shared null id, for functions that return a reference to "no object".
    static const PwDbObjectId kNull;

    bool isNull() const { return m_stub == nullptr; }
    /// The database the object lives in; null for the null id.
    PwDbDatabase* database() const;
    /// The object's handle; 0 for the null id.
    PwDbHandle handle() const;
    /// The object's own handle, never that of an object it was merged into.
    PwDbHandle nonForwardedHandle() const { return handle(); }
    /// True when the object is erased.
    bool isErased() const;
    /// True when the object or any of its owners is erased, or there is no object.
    bool isEffectivelyErased() const;
    /// True for a non-null id whose object exists (erased or not).
    bool isValid() const;

    /// The database's record behind the id; for the toolkit's own use.
    PwDbStub* stub() const { return m_stub; }
    /// The id as a 64-bit number, as it is compared; 0 for null.
    std::uintptr_t asNumber() const { return reinterpret_cast<std::uintptr_t>(m_stub); }

    friend bool operator==(const PwDbObjectId&, const PwDbObjectId&) = default;
    friend auto operator<=>(const PwDbObjectId& a, const PwDbObjectId& b) {
        return a.asNumber() <=> b.asNumber();
    }

  private:
    PwDbStub* m_stub = nullptr;
};

static_assert(sizeof(PwDbObjectId) == 8, "an object id is 64 bits");

template <>
struct std::hash<PwDbObjectId> {
    size_t operator()(const PwDbObjectId& id) const noexcept {
        return std::hash<std::uintptr_t>()(id.asNumber());
    }
};
