// PwString, the toolkit's wide string: short texts inside the object, longer ones on the
// toolkit heap, plus an optional UTF-8 form made on demand.
//
// Defines PwString.
//
//   PwString name(u"host.plw");
//   if (name.append(u".bak") != Plotwright::StatusOk) return;
//   const char16_t* wide = name.kwszPtr();   // never null
//   const char* narrow = name.utf8();        // valid until name changes or dies
//
// Storage: a text of fewer than kInlineCapacity (20) units lies in the object itself; a
// longer one lies in a block from pwHeapAlloc whose capacity, terminator included, is the
// smallest multiple of 32 units above the length. The capacity follows the length in both
// directions, so a text that shrinks into a smaller capacity class moves to a smaller block.
// Texts may contain U+0000; length() counts it, kwszPtr() readers stop at it.
#pragma once

#include <cstddef>
#include <cstdint>

#include <lodeqdb/lodeutil/WideString.h>
#include <lodeqdb/toolkit/pal/PwErrorStatus.h>

class PwString {
  public:
    /// Units the object holds by itself, terminator included: texts of 0 to 19 units.
    static constexpr size_t kInlineCapacity = 20;
    /// Heap capacities are multiples of this many units.
    static constexpr size_t kHeapGranule = 32;
    /// The longest text: the length field has 30 bits.
    static constexpr size_t kMaxLength = (size_t{1} << 30) - 1;

    /// The empty text; allocates nothing.
    PwString() noexcept;
    /// Copies the zero-terminated `text`; null gives the empty text. When the text is longer
    /// than kMaxLength or its block cannot be had, the string is empty (use assign to learn
    /// why).
    PwString(const char16_t* text);
    /// Copies `count` units from `text`, which may contain U+0000. Null `text` with a
    /// non-zero count, an oversize count or a failed allocation give the empty text.
    PwString(const char16_t* text, size_t count);
    /// Copies `text`; the empty text on failure, as above.
    PwString(const wstring& text);
    /// Copies the text (not the UTF-8 form); the empty text on failure.
    PwString(const PwString& other);
    /// Takes over both blocks of `other`, which is left empty; never fails.
    PwString(PwString&& other) noexcept;
    /// Frees the text block and the UTF-8 block, when there are any.
    ~PwString();

    /// These assign and drop the status; on failure the previous value stays.
    PwString& operator=(const PwString& other);
    /// Frees this string's blocks and takes over those of `other`, which is left empty.
    PwString& operator=(PwString&& other) noexcept;
    PwString& operator=(const char16_t* text);
    PwString& operator=(const wstring& text);

    /// Replaces the text by `count` units from `text`, which may lie inside this string's own
    /// text. Null `text` with a non-zero count, or a count above kMaxLength, gives
    /// StatusInvalidInput; a block that cannot be had gives StatusOutOfMemory. On failure
    /// the string keeps its previous value and its UTF-8 form.
    Plotwright::ErrorStatus assign(const char16_t* text, size_t count);
    /// The zero-terminated `text`; null assigns the empty text.
    Plotwright::ErrorStatus assign(const char16_t* text);

    /// Adds `count` units from `text` (which may lie inside this string) at the end. Fails
    /// like assign, StatusInvalidInput also when the sum exceeds kMaxLength; on failure the
    /// string is unchanged.
    Plotwright::ErrorStatus append(const char16_t* text, size_t count);
    /// The zero-terminated `text`; null appends nothing.
    Plotwright::ErrorStatus append(const char16_t* text);
    /// The text of `other`, which may be this string itself.
    Plotwright::ErrorStatus append(const PwString& other);

    /// The zero-terminated text; never null, u"" for the empty text. Valid until the string
    /// changes or dies.
    const char16_t* kwszPtr() const noexcept;
    /// Units in the text, without the terminator; U+0000 inside the text counts.
    size_t length() const noexcept { return mLengthAndFlag & kLengthMask; }
    /// True for a length of 0.
    bool isEmpty() const noexcept { return length() == 0; }
    /// True when the text lies in a heap block rather than in the object.
    bool isOnHeap() const noexcept { return (mLengthAndFlag & kOnHeapFlag) != 0; }
    /// Units the current storage holds, terminator included: kInlineCapacity in the object,
    /// otherwise the heap block's size in units.
    size_t capacity() const noexcept;

    /// A std::u16string copy; may throw std::bad_alloc like any std::u16string.
    wstring toWString() const;

    /// The zero-terminated UTF-8 form, made on first use and kept in a second heap block that
    /// the string owns until its text changes or it dies. Lone surrogates become U+FFFD.
    /// Null when the block or the conversion cannot be had. Not safe to call from two
    /// threads at once on the same string, although it is const.
    const char* utf8() const noexcept;

    /// Equal when the lengths and all units agree. A null `text` counts as empty. The
    /// language derives !=, and the reversed operand order, from these.
    friend bool operator==(const PwString& left, const PwString& right) noexcept;
    friend bool operator==(const PwString& left, const char16_t* right) noexcept;

  private:
    static constexpr uint32_t kOnHeapFlag = uint32_t{1} << 31;
    static constexpr uint32_t kLengthMask = static_cast<uint32_t>(kMaxLength);

    static size_t heapCapacityFor(size_t length) noexcept;
    char16_t* textBuffer() noexcept;
    Plotwright::ErrorStatus replaceTail(size_t keep, const char16_t* text, size_t count);
    void setLength(size_t length, bool onHeap) noexcept;
    void dropUtf8() const noexcept;
    void release() noexcept;
    void takeFrom(PwString& other) noexcept;

    // Bits 0-29: the length in units; bit 31: the text lies in mText.heap.
    uint32_t mLengthAndFlag;
    union Storage {
        char16_t inlineText[kInlineCapacity];
        char16_t* heap;
    } mText;
    // The UTF-8 form, a block from pwHeapAlloc, or null while not made.
    mutable char* mUtf8;
};
