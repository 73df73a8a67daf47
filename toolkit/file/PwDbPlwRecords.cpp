// Records of the native file's objects section: class chains, handles and typed data items.
#include "toolkit/file/PwDbPlwRecords.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <limits>

#include "toolkit/file/PwDbPlwBytes.h"

namespace {

using Item = PwDbMemoryFiler::Item;

enum ItemTag : uint8_t {
    kTagText = 1,
    kTagInt32 = 2,
    kTagInt64 = 3,
    kTagDouble = 4,
    kTagBool = 5,
    kTagBytes = 6,
    kTagHandle = 7,
};

// The fewest bytes a record can take: one name of one unit, a handle, the erased flag and no
// items. Counts
// are bounded by these before anything is reserved for them.
constexpr size_t kMinNameBytes = 4 + 2;
constexpr size_t kMinRecordBytes = 4 + kMinNameBytes + 8 + 1 + 4;
constexpr size_t kMinItemBytes = 2;
// Item vectors grow past this by pushing, so a lying count can't reserve much.
constexpr size_t kMostItemsReserved = 4096;

constexpr uint64_t kMost32 = std::numeric_limits<uint32_t>::max();

bool WriteItem(PwDbPlwWriter& out, const Item& item) {
    if (const auto* text = std::get_if<wstring>(&item)) {
        if (text->size() > kMost32) return false;
        out.u8(kTagText);
        out.u32(static_cast<uint32_t>(text->size()));
        out.units(*text);
    } else if (const auto* value32 = std::get_if<int32_t>(&item)) {
        out.u8(kTagInt32);
        out.u32(static_cast<uint32_t>(*value32));
    } else if (const auto* value64 = std::get_if<int64_t>(&item)) {
        out.u8(kTagInt64);
        out.u64(static_cast<uint64_t>(*value64));
    } else if (const auto* real = std::get_if<double>(&item)) {
        out.u8(kTagDouble);
        out.u64(std::bit_cast<uint64_t>(*real));
    } else if (const auto* flag = std::get_if<bool>(&item)) {
        out.u8(kTagBool);
        out.u8(*flag ? 1 : 0);
    } else if (const auto* bytes = std::get_if<std::string>(&item)) {
        if (bytes->size() > kMost32) return false;
        out.u8(kTagBytes);
        out.u32(static_cast<uint32_t>(bytes->size()));
        out.raw(*bytes);
    } else {
        out.u8(kTagHandle);
        out.u64(std::get<PwDbMemoryFiler::Handle>(item).value);
    }
    return true;
}

bool WriteRecord(PwDbPlwWriter& out, const PwDbObjectRecord& record) {
    if (record.classChain.empty() || record.classChain.size() > kMost32) return false;
    if (record.data.size() > kMost32) return false;
    out.u32(static_cast<uint32_t>(record.classChain.size()));
    for (const wstring& name : record.classChain) {
        if (name.empty() || name.size() > kMost32) return false;
        out.u32(static_cast<uint32_t>(name.size()));
        out.units(name);
    }
    out.u64(record.handle);
    out.u8(record.erased ? 1 : 0);
    out.u32(static_cast<uint32_t>(record.data.size()));
    for (const Item& item : record.data) {
        if (!WriteItem(out, item)) return false;
    }
    return true;
}

bool ReadScalarItem(PwDbPlwReader& in, uint8_t tag, std::vector<Item>& data) {
    uint32_t value32 = 0;
    uint64_t value64 = 0;
    uint8_t flag = 0;
    switch (tag) {
        case kTagInt32:
            if (!in.u32(value32)) return false;
            data.emplace_back(std::in_place_type<int32_t>, static_cast<int32_t>(value32));
            return true;
        case kTagInt64:
            if (!in.u64(value64)) return false;
            data.emplace_back(std::in_place_type<int64_t>, static_cast<int64_t>(value64));
            return true;
        case kTagDouble:
            if (!in.u64(value64)) return false;
            data.emplace_back(std::in_place_type<double>, std::bit_cast<double>(value64));
            return true;
        case kTagBool:
            if (!in.u8(flag) || flag > 1) return false;
            data.emplace_back(std::in_place_type<bool>, flag == 1);
            return true;
        case kTagHandle:
            if (!in.u64(value64)) return false;
            data.emplace_back(std::in_place_type<PwDbMemoryFiler::Handle>,
                              PwDbMemoryFiler::Handle{value64});
            return true;
        default:
            return false;
    }
}

bool ReadItem(PwDbPlwReader& in, std::vector<Item>& data) {
    uint8_t tag = 0;
    if (!in.u8(tag)) return false;
    uint32_t count = 0;
    if (tag == kTagText) {
        if (!in.u32(count) || count > in.left() / 2) return false;
        auto& text = std::get<wstring>(data.emplace_back(std::in_place_type<wstring>));
        return in.units(count, text);
    }
    if (tag == kTagBytes) {
        std::string_view bytes;
        if (!in.u32(count) || !in.view(count, bytes)) return false;
        data.emplace_back(std::in_place_type<std::string>, bytes);
        return true;
    }
    return ReadScalarItem(in, tag, data);
}

bool ReadRecord(PwDbPlwReader& in, PwDbObjectRecord& record) {
    uint32_t names = 0;
    if (!in.u32(names) || names == 0 || names > in.left() / kMinNameBytes) return false;
    record.classChain.resize(names);
    for (wstring& name : record.classChain) {
        uint32_t units = 0;
        if (!in.u32(units) || units == 0 || !in.units(units, name)) return false;
    }
    uint32_t items = 0;
    uint8_t erased = 0;
    if (!in.u64(record.handle) || !in.u8(erased) || erased > 1 || !in.u32(items) ||
        items > in.left() / kMinItemBytes) {
        return false;
    }
    record.erased = erased == 1;
    record.data.reserve(std::min<size_t>(items, kMostItemsReserved));
    for (uint32_t i = 0; i < items; ++i) {
        if (!ReadItem(in, record.data)) return false;
    }
    return true;
}

}  // namespace

Plotwright::ErrorStatus pwdbPlwWriteObjects(const std::vector<PwDbObjectRecord>& objects,
                                            std::string& payload) {
    PwDbPlwWriter out(payload);
    out.u64(objects.size());
    for (const PwDbObjectRecord& record : objects) {
        if (!WriteRecord(out, record)) return Plotwright::StatusInvalidInput;
    }
    return Plotwright::StatusOk;
}

bool pwdbPlwReadObjects(std::string_view payload, std::vector<PwDbObjectRecord>& objects) {
    PwDbPlwReader in(payload);
    uint64_t count = 0;
    if (!in.u64(count) || count > in.left() / kMinRecordBytes) return false;
    objects.clear();
    objects.reserve(static_cast<size_t>(count));
    for (uint64_t i = 0; i < count; ++i) {
        if (!ReadRecord(in, objects.emplace_back())) return false;
    }
    return in.left() == 0;
}
