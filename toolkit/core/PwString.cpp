// PwString's storage moves between the object and the toolkit heap, and its UTF-8 cache.
#include <lodeqdb/toolkit/core/PwString.h>

#include <cstring>
#include <exception>
#include <string>
#include <string_view>

#include <lodeqdb/lodeutil/Utf.h>
#include <lodeqdb/toolkit/pal/PwHeap.h>

namespace {

// memcpy and memmove must not see a null pointer even for zero units.
void CopyUnits(char16_t* to, const char16_t* from, size_t count) noexcept {
    if (count != 0) std::memcpy(to, from, count * sizeof(char16_t));
}

void MoveUnits(char16_t* to, const char16_t* from, size_t count) noexcept {
    if (count != 0) std::memmove(to, from, count * sizeof(char16_t));
}

// Zero-terminated length, or kMaxLength + 1 once the text is known to be too long, so that
// an absurd text is rejected without scanning all of it.
size_t BoundedLength(const char16_t* text) noexcept {
    size_t length = 0;
    while (length <= PwString::kMaxLength && text[length] != u'\0') ++length;
    return length;
}

}  // namespace

PwString::PwString() noexcept : mLengthAndFlag(0), mUtf8(nullptr) {
    mText.inlineText[0] = 0;
}

PwString::PwString(const char16_t* text) : PwString() {
    assign(text);
}

PwString::PwString(const char16_t* text, size_t count) : PwString() {
    assign(text, count);
}

PwString::PwString(const wstring& text) : PwString() {
    assign(text.data(), text.size());
}

PwString::PwString(const PwString& other) : PwString() {
    assign(other.kwszPtr(), other.length());
}

PwString::PwString(PwString&& other) noexcept : PwString() {
    takeFrom(other);
}

PwString::~PwString() {
    // The layout is part of the type's contract: length word, text storage, UTF-8 block.
    static_assert(offsetof(PwString, mLengthAndFlag) == 0);
    static_assert(offsetof(PwString, mText) > offsetof(PwString, mLengthAndFlag));
    static_assert(offsetof(PwString, mUtf8) > offsetof(PwString, mText));
    release();
}

PwString& PwString::operator=(const PwString& other) {
    if (this != &other) assign(other.kwszPtr(), other.length());
    return *this;
}

PwString& PwString::operator=(PwString&& other) noexcept {
    if (this != &other) {
        release();
        takeFrom(other);
    }
    return *this;
}

PwString& PwString::operator=(const char16_t* text) {
    assign(text);
    return *this;
}

PwString& PwString::operator=(const wstring& text) {
    assign(text.data(), text.size());
    return *this;
}

Plotwright::ErrorStatus PwString::assign(const char16_t* text, size_t count) {
    return replaceTail(0, text, count);
}

Plotwright::ErrorStatus PwString::assign(const char16_t* text) {
    if (text == nullptr) return replaceTail(0, nullptr, 0);
    return replaceTail(0, text, BoundedLength(text));
}

Plotwright::ErrorStatus PwString::append(const char16_t* text, size_t count) {
    return replaceTail(length(), text, count);
}

Plotwright::ErrorStatus PwString::append(const char16_t* text) {
    if (text == nullptr) return Plotwright::StatusOk;
    return replaceTail(length(), text, BoundedLength(text));
}

Plotwright::ErrorStatus PwString::append(const PwString& other) {
    return replaceTail(length(), other.kwszPtr(), other.length());
}

const char16_t* PwString::kwszPtr() const noexcept {
    return isOnHeap() ? mText.heap : mText.inlineText;
}

size_t PwString::capacity() const noexcept {
    return isOnHeap() ? heapCapacityFor(length()) : kInlineCapacity;
}

wstring PwString::toWString() const {
    return wstring(kwszPtr(), length());
}

const char* PwString::utf8() const noexcept {
    if (mUtf8 != nullptr) return mUtf8;
    try {
        const std::string converted =
            LodeUtil::Utf8FromUtf16(std::u16string_view(kwszPtr(), length()));
        void* block = pwHeapAlloc(nullptr, converted.size() + 1);
        if (block == nullptr) return nullptr;
        std::memcpy(block, converted.c_str(), converted.size() + 1);
        mUtf8 = static_cast<char*>(block);
    } catch (const std::exception&) {
        // The conversion allocates with operator new and limits the length; the toolkit
        // reports such failures instead of throwing them.
        return nullptr;
    }
    return mUtf8;
}

bool operator==(const PwString& left, const PwString& right) noexcept {
    return std::u16string_view(left.kwszPtr(), left.length()) ==
           std::u16string_view(right.kwszPtr(), right.length());
}

bool operator==(const PwString& left, const char16_t* right) noexcept {
    const std::u16string_view text = right == nullptr ? std::u16string_view() : right;
    return std::u16string_view(left.kwszPtr(), left.length()) == text;
}

size_t PwString::heapCapacityFor(size_t length) noexcept {
    return (length / kHeapGranule + 1) * kHeapGranule;
}

char16_t* PwString::textBuffer() noexcept {
    return isOnHeap() ? mText.heap : mText.inlineText;
}

// The new text is the first `keep` units of the current text followed by `count` units of
// `text`. `text` may point into the current text, so the old storage is freed only after the
// last unit has been read from it, and copies within one buffer use memmove.
Plotwright::ErrorStatus PwString::replaceTail(size_t keep, const char16_t* text, size_t count) {
    if (count != 0 && text == nullptr) return Plotwright::StatusInvalidInput;
    if (count > kMaxLength - keep) return Plotwright::StatusInvalidInput;
    const size_t newLength = keep + count;
    if (newLength == length() && count == 0) return Plotwright::StatusOk;
    const bool wasOnHeap = isOnHeap();
    const bool toHeap = newLength >= kInlineCapacity;
    char16_t* current = textBuffer();

    if (toHeap && (!wasOnHeap || heapCapacityFor(newLength) != capacity())) {
        void* block = pwHeapAlloc(nullptr, heapCapacityFor(newLength) * sizeof(char16_t));
        if (block == nullptr) return Plotwright::StatusOutOfMemory;
        char16_t* fresh = static_cast<char16_t*>(block);
        CopyUnits(fresh, current, keep);
        CopyUnits(fresh + keep, text, count);
        fresh[newLength] = u'\0';
        if (wasOnHeap) pwHeapFree(nullptr, current);
        mText.heap = fresh;
    } else if (!toHeap && wasOnHeap) {
        // The inline units overlay the heap pointer; `current` keeps the old block alive
        // while its units are copied out.
        char16_t local[kInlineCapacity];
        CopyUnits(local, current, keep);
        CopyUnits(local + keep, text, count);
        local[newLength] = u'\0';
        pwHeapFree(nullptr, current);
        CopyUnits(mText.inlineText, local, newLength + 1);
    } else {
        MoveUnits(current + keep, text, count);
        current[newLength] = u'\0';
    }
    setLength(newLength, toHeap);
    dropUtf8();
    return Plotwright::StatusOk;
}

void PwString::setLength(size_t length, bool onHeap) noexcept {
    mLengthAndFlag = static_cast<uint32_t>(length) | (onHeap ? kOnHeapFlag : 0);
}

void PwString::dropUtf8() const noexcept {
    if (mUtf8 == nullptr) return;
    pwHeapFree(nullptr, mUtf8);
    mUtf8 = nullptr;
}

void PwString::release() noexcept {
    if (isOnHeap()) pwHeapFree(nullptr, mText.heap);
    dropUtf8();
    setLength(0, false);
    mText.inlineText[0] = u'\0';
}

// Expects this string to hold nothing on the heap; leaves `other` empty and inline.
void PwString::takeFrom(PwString& other) noexcept {
    mLengthAndFlag = other.mLengthAndFlag;
    std::memcpy(&mText, &other.mText, sizeof(mText));
    mUtf8 = other.mUtf8;
    other.mUtf8 = nullptr;
    other.setLength(0, false);
    other.mText.inlineText[0] = u'\0';
}
