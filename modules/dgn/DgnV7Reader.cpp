// Walking a design file's elements, and the components of complex ones, inside its bytes.
#include "modules/dgn/DgnV7Reader.h"

#include <algorithm>

#include "modules/dgn/DgnV7Bytes.h"

namespace {

constexpr uint16_t kEndOfDesign = 0xFFFF;
// Byte offsets in a complex header: the component length word and the component count word.
constexpr size_t kComponentWordsOffset = 36;
constexpr size_t kComponentCountOffset = 38;
// Words of a header up to and including its component length word.
constexpr size_t kWordsThroughLength = 19;

size_t SaturatingAdd(size_t a, size_t b) {
    return a > SIZE_MAX - b ? SIZE_MAX : a + b;
}

}  // namespace

DgnV7ElementStream::DgnV7ElementStream(std::span<const uint8_t> file, size_t start)
    : m_file(file), m_position(std::min(start, file.size())) {
    if (start % 2 != 0 && start < file.size()) m_end = DgnV7StreamEnd::Truncated;
}

bool DgnV7ElementStream::decodeAt(DgnV7RawElement& element, DgnV7StreamEnd& end) const {
    const size_t remaining = m_file.size() - m_position;
    if (remaining == 0) {
        end = DgnV7StreamEnd::EndOfBytes;
        return false;
    }
    const DgnV7Bytes bytes(m_file.subspan(m_position));
    uint16_t first = 0, words = 0;
    if (!bytes.readShort(0, first)) {
        end = DgnV7StreamEnd::Truncated;
        return false;
    }
    if (first == kEndOfDesign) {
        end = DgnV7StreamEnd::EndMarker;
        return false;
    }
    if (!bytes.readShort(2, words) || (size_t{words} + 2) * 2 > remaining) {
        end = DgnV7StreamEnd::Truncated;
        return false;
    }
    element.byteOffset = m_position;
    element.level = static_cast<uint8_t>(first & 0x3F);
    element.complex = (first & 0x0080) != 0;
    element.type = static_cast<uint8_t>((first >> 8) & 0x7F);
    element.deleted = (first & 0x8000) != 0;
    element.wordsToFollow = words;
    element.bytes = m_file.subspan(m_position, (size_t{words} + 2) * 2);
    return true;
}

bool DgnV7ElementStream::next(DgnV7RawElement& element) {
    if (m_end != DgnV7StreamEnd::Running) return false;
    DgnV7StreamEnd end = DgnV7StreamEnd::Running;
    if (!decodeAt(element, end)) {
        m_end = end;
        return false;
    }
    m_position += element.bytes.size();
    return true;
}

bool DgnV7ElementStream::peek(DgnV7RawElement& element) const {
    if (m_end != DgnV7StreamEnd::Running) return false;
    DgnV7StreamEnd end = DgnV7StreamEnd::Running;
    return decodeAt(element, end);
}

bool dgnComplexExtent(const DgnV7RawElement& header, size_t& componentWords,
                      size_t& maxComponents) {
    bool counted = false;
    switch (header.type) {
        case kDgnCellHeader:
        case kDgnSharedCellDefinition:
            break;
        case kDgnTextNode:
        case kDgnComplexChain:
        case kDgnComplexShape:
        case kDgnSurfaceHeader:
        case kDgnSolidHeader:
            counted = true;
            break;
        default:
            return false;
    }
    const DgnV7Bytes bytes(header.bytes);
    uint16_t total = 0, count = 0;
    if (!bytes.readShort(kComponentWordsOffset, total)) return false;
    if (counted && !bytes.readShort(kComponentCountOffset, count)) return false;
    // The length counts the header's own words after the length word, then the components.
    const size_t headerWords = bytes.size() / 2;
    const size_t ownWords =
        headerWords > kWordsThroughLength ? headerWords - kWordsThroughLength : 0;
    componentWords = total > ownWords ? total - ownWords : 0;
    maxComponents = counted ? count : SIZE_MAX;
    return true;
}

void dgnSkipComponentWords(DgnV7ElementStream& stream, size_t words) {
    const size_t end =
        SaturatingAdd(stream.position(), words > SIZE_MAX / 2 ? SIZE_MAX : words * 2);
    DgnV7RawElement element;
    while (stream.peek(element) && element.complex &&
           element.byteOffset + element.bytes.size() <= end) {
        stream.next(element);
    }
}

DgnV7Components::DgnV7Components(DgnV7ElementStream& stream, size_t componentWords,
                                 size_t maxComponents, size_t limit)
    : m_stream(stream),
      m_end(std::min(limit,
                     SaturatingAdd(stream.position(),
                                   componentWords > SIZE_MAX / 2 ? SIZE_MAX : componentWords * 2))),
      m_maxComponents(maxComponents) {}

void DgnV7Components::skipUnreadComponentsOfPrevious() {
    if (!m_hasPrevious) return;
    m_hasPrevious = false;
    if (m_stream.position() != m_afterPrevious) return;  // read through a nested reader
    size_t words = 0, count = 0;
    if (!dgnComplexExtent(m_previous, words, count)) return;
    const size_t room = (m_end - std::min(m_end, m_stream.position())) / 2;
    dgnSkipComponentWords(m_stream, std::min(words, room));
}

bool DgnV7Components::next(DgnV7RawElement& component) {
    skipUnreadComponentsOfPrevious();
    if (m_count >= m_maxComponents) return false;
    DgnV7RawElement candidate;
    if (!m_stream.peek(candidate) || !candidate.complex) return false;
    if (candidate.byteOffset + candidate.bytes.size() > m_end) return false;
    m_stream.next(candidate);
    component = candidate;
    m_previous = candidate;
    m_hasPrevious = true;
    m_afterPrevious = m_stream.position();
    ++m_count;
    return true;
}

void DgnV7Components::skipRest() {
    DgnV7RawElement ignored;
    while (next(ignored)) {
    }
}
