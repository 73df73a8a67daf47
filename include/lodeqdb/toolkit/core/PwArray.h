// PwArray, the toolkit's growable array of plain values on the toolkit heap.
//
// Defines PwArrayMemCopyReallocator and PwArray.
//
//   PwArray<int32_t> ids;                 // nothing allocated yet
//   if (ids.append(42) == PwArray<int32_t>::kNoIndex) return Plotwright::StatusOutOfMemory;
//   size_t where = 0;
//   if (ids.find(42, where)) ids.removeAt(where);
//
// The physical length counts the elements the block has room for, the logical length those
// in use. Growth: when a logical length above the physical length is needed, the block is
// replaced by one of max(request, physical + max(growLength, min(physical, kMaxDoubling)))
// elements: the room doubles until it reaches 1 MiB worth of elements and then grows by
// 1 MiB at a time. When a replacement block cannot be had, the old block is freed and the
// array is left with physical and logical length 0: its contents are lost, never half-kept.
#pragma once

#include <cassert>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

#include <lodeqdb/toolkit/pal/PwErrorStatus.h>
#include <lodeqdb/toolkit/pal/PwHeap.h>

/// Moves elements from an old block to a new one when a PwArray changes blocks, as plain
/// memory. Another reallocator must offer the same static function, and it must not throw.
template <typename T>
struct PwArrayMemCopyReallocator {
    /// Copies `count` elements; the ranges do not overlap.
    static void copy(T* destination, const T* source, size_t count) noexcept {
        if (count != 0) std::memcpy(destination, source, count * sizeof(T));
    }
};

template <typename T, typename R = PwArrayMemCopyReallocator<T>>
class PwArray {
    static_assert(std::is_trivially_copyable_v<T>, "PwArray holds plain values only");

  public:
    /// The growth length of an array made without one.
    static constexpr size_t kDefaultGrowLength = 8;
    /// Above this physical length the room grows by this much instead of doubling.
    static constexpr size_t kMaxDoubling = 1048576 / sizeof(T);
    /// What append returns when the array could not grow (and is now empty).
    static constexpr size_t kNoIndex = static_cast<size_t>(-1);

    /// Empty, nothing allocated.
    PwArray() noexcept = default;
    /// Room for `physicalLength` elements, none in use. A growth length of 0 becomes
    /// kDefaultGrowLength. When the block cannot be had the physical length is 0.
    explicit PwArray(size_t physicalLength, size_t growLength = kDefaultGrowLength) noexcept
        : mGrowLength(growLength == 0 ? kDefaultGrowLength : growLength) {
        if (physicalLength != 0) setPhysicalLength(physicalLength);
    }
    /// Same physical, logical and growth length and elements as `other`; when the block
    /// cannot be had the copy has physical and logical length 0.
    PwArray(const PwArray& other) noexcept : mGrowLength(other.mGrowLength) { copyFrom(other); }
    /// Takes over the block of `other`, which is left with physical and logical length 0.
    PwArray(PwArray&& other) noexcept { takeFrom(other); }
    /// Frees the block; an array of physical length 0 has none and frees nothing.
    ~PwArray() { freeData(); }

    /// Copies as the copy constructor does; on a failed allocation this array ends up with
    /// physical and logical length 0.
    PwArray& operator=(const PwArray& other) noexcept {
        if (this != &other) {
            freeData();
            mGrowLength = other.mGrowLength;
            copyFrom(other);
        }
        return *this;
    }
    /// Frees this array's block and takes over that of `other`, as the move constructor does.
    PwArray& operator=(PwArray&& other) noexcept {
        if (this != &other) {
            freeData();
            takeFrom(other);
        }
        return *this;
    }

    /// Elements in use; the same as logicalLength().
    size_t length() const noexcept { return mLogicalLength; }
    size_t logicalLength() const noexcept { return mLogicalLength; }
    /// Elements the current block has room for; 0 exactly when there is no block.
    size_t physicalLength() const noexcept { return mPhysicalLength; }
    /// The least number of elements the room grows by.
    size_t growLength() const noexcept { return mGrowLength; }
    /// True for a logical length of 0, whatever the room.
    bool isEmpty() const noexcept { return mLogicalLength == 0; }

    /// Sets the least growth step; 0 gives StatusInvalidInput and changes nothing.
    Plotwright::ErrorStatus setGrowLength(size_t growLength) noexcept {
        if (growLength == 0) return Plotwright::StatusInvalidInput;
        mGrowLength = growLength;
        return Plotwright::StatusOk;
    }

    /// Puts `logicalLength` elements in use, growing the block by the growth rule when
    /// needed. Elements that come into use are zero-filled. StatusOutOfMemory when the block
    /// could not grow; the array is then empty (physical and logical length 0).
    Plotwright::ErrorStatus setLogicalLength(size_t logicalLength) noexcept {
        if (logicalLength > mPhysicalLength) {
            const Plotwright::ErrorStatus status = setPhysicalLength(grownLength(logicalLength));
            if (status != Plotwright::StatusOk) return status;
        }
        if (logicalLength > mLogicalLength) {
            std::memset(static_cast<void*>(mData + mLogicalLength), 0,
                        (logicalLength - mLogicalLength) * sizeof(T));
        }
        mLogicalLength = logicalLength;
        return Plotwright::StatusOk;
    }

    /// Replaces the block by one of exactly `physicalLength` elements (0 frees it), keeping
    /// the elements that fit; a logical length above it is cut. StatusOutOfMemory when the
    /// new block cannot be had; the array is then empty (physical and logical length 0).
    Plotwright::ErrorStatus setPhysicalLength(size_t physicalLength) noexcept {
        if (physicalLength == mPhysicalLength) return Plotwright::StatusOk;
        T* fresh = nullptr;
        if (physicalLength != 0) {
            fresh = allocate(physicalLength);
            if (fresh == nullptr) {
                freeData();
                return Plotwright::StatusOutOfMemory;
            }
        }
        const size_t kept = mLogicalLength < physicalLength ? mLogicalLength : physicalLength;
        if (kept != 0) R::copy(fresh, mData, kept);
        freeData();
        mData = fresh;
        mPhysicalLength = physicalLength;
        mLogicalLength = kept;
        return Plotwright::StatusOk;
    }

    /// Adds `value` at the end and returns its index. When the block could not grow, returns
    /// kNoIndex and the array is empty (physical and logical length 0). `value` may be an
    /// element of this array.
    size_t append(const T& value) noexcept {
        const T copy = value;  // `value` may lie in the block that growing frees
        if (setLogicalLength(mLogicalLength + 1) != Plotwright::StatusOk) return kNoIndex;
        mData[mLogicalLength - 1] = copy;
        return mLogicalLength - 1;
    }

    /// Inserts `value` before the element at `index` (`index` == length() appends).
    /// StatusInvalidInput for an index above length(), changing nothing; StatusOutOfMemory
    /// when the block could not grow, leaving the array empty.
    Plotwright::ErrorStatus insertAt(size_t index, const T& value) noexcept {
        if (index > mLogicalLength) return Plotwright::StatusInvalidInput;
        const T copy = value;
        const size_t tail = mLogicalLength - index;
        const Plotwright::ErrorStatus status = setLogicalLength(mLogicalLength + 1);
        if (status != Plotwright::StatusOk) return status;
        if (tail != 0)
            std::memmove(static_cast<void*>(mData + index + 1), mData + index, tail * sizeof(T));
        mData[index] = copy;
        return Plotwright::StatusOk;
    }

    /// Removes the element at `index`, moving the later ones down; the block stays.
    /// StatusInvalidInput for an index not below length(), changing nothing.
    Plotwright::ErrorStatus removeAt(size_t index) noexcept {
        if (index >= mLogicalLength) return Plotwright::StatusInvalidInput;
        const size_t tail = mLogicalLength - index - 1;
        if (tail != 0)
            std::memmove(static_cast<void*>(mData + index), mData + index + 1, tail * sizeof(T));
        --mLogicalLength;
        return Plotwright::StatusOk;
    }

    /// Logical length 0; the block and its physical length stay.
    void removeAll() noexcept { mLogicalLength = 0; }

    /// The element at `index`, which must be below length() (asserted in debug builds).
    T& at(size_t index) noexcept {
        assert(index < mLogicalLength && "PwArray::at: index beyond the logical length");
        return mData[index];
    }
    const T& at(size_t index) const noexcept {
        assert(index < mLogicalLength && "PwArray::at: index beyond the logical length");
        return mData[index];
    }
    /// The same as at().
    T& operator[](size_t index) noexcept { return at(index); }
    const T& operator[](size_t index) const noexcept { return at(index); }
    /// The first and last element of a non-empty array (asserted in debug builds).
    T& first() noexcept { return at(0); }
    const T& first() const noexcept { return at(0); }
    T& last() noexcept { return at(mLogicalLength - 1); }
    const T& last() const noexcept { return at(mLogicalLength - 1); }

    /// True when an element equal to `value` (by T's ==) lies at `start` or later; `index`
    /// then receives the first such position and is left alone otherwise.
    bool find(const T& value, size_t& index, size_t start = 0) const noexcept {
        for (size_t i = start; i < mLogicalLength; ++i) {
            if (mData[i] == value) {
                index = i;
                return true;
            }
        }
        return false;
    }
    /// True when an element equals `value`.
    bool contains(const T& value) const noexcept {
        size_t unused = 0;
        return find(value, unused);
    }

    /// The block, null while the physical length is 0; valid until the array changes blocks.
    T* asArrayPtr() noexcept { return mData; }
    const T* asArrayPtr() const noexcept { return mData; }

  private:
    // The physical length the growth rule gives for a request above the current one.
    size_t grownLength(size_t request) const noexcept {
        const size_t doubling = mPhysicalLength < kMaxDoubling ? mPhysicalLength : kMaxDoubling;
        const size_t step = mGrowLength > doubling ? mGrowLength : doubling;
        // Saturates: a sum that wraps would shrink the block instead of failing to grow it.
        const size_t grown = mPhysicalLength > SIZE_MAX - step ? SIZE_MAX : mPhysicalLength + step;
        return request > grown ? request : grown;
    }

    // A block for `count` elements, or null when its size in bytes cannot even be expressed.
    static T* allocate(size_t count) noexcept {
        if (count > SIZE_MAX / sizeof(T)) return nullptr;
        return static_cast<T*>(pwHeapAlloc(nullptr, count * sizeof(T)));
    }

    // Frees the block; an array of physical length 0 owns none.
    void freeData() noexcept {
        if (mPhysicalLength >= 1) pwHeapFree(nullptr, mData);
        mData = nullptr;
        mPhysicalLength = 0;
        mLogicalLength = 0;
    }

    // Expects this array to own no block; the growth length is already set.
    void copyFrom(const PwArray& other) noexcept {
        if (other.mPhysicalLength == 0) return;
        mData = allocate(other.mPhysicalLength);
        if (mData == nullptr) return;
        if (other.mLogicalLength != 0) R::copy(mData, other.mData, other.mLogicalLength);
        mPhysicalLength = other.mPhysicalLength;
        mLogicalLength = other.mLogicalLength;
    }

    // Expects this array to own no block.
    void takeFrom(PwArray& other) noexcept {
        mData = other.mData;
        mPhysicalLength = other.mPhysicalLength;
        mLogicalLength = other.mLogicalLength;
        mGrowLength = other.mGrowLength;
        other.mData = nullptr;
        other.mPhysicalLength = 0;
        other.mLogicalLength = 0;
    }

    T* mData = nullptr;
    size_t mPhysicalLength = 0;
    size_t mLogicalLength = 0;
    size_t mGrowLength = kDefaultGrowLength;
};
