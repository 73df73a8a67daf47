// Layout revision 2 of the native file: the class table, the index and the pages of packed
// records, written and read.
#include "toolkit/file/PwDbPlwIndexed.h"

#include <algorithm>
#include <limits>
#include <new>

#include "toolkit/file/PwDbPlwBytes.h"
#include "toolkit/file/PwDbPlwFrame.h"
#include "toolkit/file/PwDbPlwPacking.h"

namespace {

using Plotwright::ErrorStatus;

// A page closes once it holds this much; a record is never split, so a page may be longer.
constexpr size_t kPageTarget = 4096;
constexpr uint64_t kMost32 = std::numeric_limits<uint32_t>::max();
// The end section: its head and the checksum of its empty payload.
constexpr uint64_t kEndSectionSize = kPwDbPlwSectionHeadSize + 4;

std::u16string ClassKey(const std::vector<wstring>& chain) {
    std::u16string key;
    for (const wstring& name : chain) {
        key += name;
        key.push_back(u'\0');
    }
    return key;
}

// The most tags all the shapes of a file may hold together, for each byte of the file.
constexpr uint64_t kShapeTagsPerFileByte = 16;

bool NamesObject(const std::vector<wstring>& chain) {
    return std::find(chain.begin(), chain.end(), u"PwDbObject") != chain.end();
}

// ---- the class table ----

void WriteClasses(PwDbPlwWriter& out, const std::vector<std::vector<wstring>>& classes,
                  const std::vector<PwDbPlwShape>& shapes) {
    out.varint(classes.size());
    for (const auto& chain : classes) {
        out.varint(chain.size());
        for (const wstring& name : chain) {
            out.varint(name.size());
            out.units(name);
        }
    }
    out.varint(shapes.size());
    for (const PwDbPlwShape& shape : shapes) {
        out.varint(shape.classIndex);
        // The tags in runs of one tag: a block of a million entities has a shape of a million
        // handles, which takes a few bytes so.
        std::vector<std::pair<uint8_t, uint64_t>> runs;
        for (char tag : shape.tags) {
            if (runs.empty() || runs.back().first != static_cast<uint8_t>(tag)) {
                runs.emplace_back(static_cast<uint8_t>(tag), 0);
            }
            ++runs.back().second;
        }
        out.varint(runs.size());
        for (const auto& [tag, length] : runs) {
            out.u8(tag);
            out.varint(length);
        }
    }
}

// The tags of a shape, from their runs; false for an unknown tag, a run of none, a run of the
// tag of the run before, or more tags in all than `mostTags`, which is lowered by those read.
bool ReadShapeTags(PwDbPlwReader& in, uint64_t& mostTags, std::string& tags) {
    uint64_t runs = 0;
    // A run takes a tag byte and a length: 2 bytes at least.
    if (!in.varint(runs) || runs > in.left() / 2) return false;
    uint8_t before = 0;
    for (uint64_t n = 0; n < runs; ++n) {
        uint8_t tag = 0;
        uint64_t length = 0;
        if (!in.u8(tag) || tag < kPwDbPlwTagText || tag > kPwDbPlwTagHandle || tag == before ||
            !in.varint(length) || length == 0 || length > mostTags) {
            return false;
        }
        mostTags -= length;
        tags.append(static_cast<size_t>(length), static_cast<char>(tag));
        before = tag;
    }
    return true;
}

bool ReadClasses(std::string_view payload, uint64_t fileSize, PwDbPlwIndexedFront& front) {
    PwDbPlwReader in(payload);
    uint64_t count = 0;
    // A class takes at least a count of names, a count of units and one unit: 4 bytes.
    if (!in.varint(count) || count > in.left() / 4) return false;
    front.classes.resize(static_cast<size_t>(count));
    for (auto& chain : front.classes) {
        uint64_t names = 0;
        if (!in.varint(names) || names == 0 || names > in.left() / 3) return false;
        chain.resize(static_cast<size_t>(names));
        for (wstring& name : chain) {
            uint64_t units = 0;
            if (!in.varint(units) || units == 0 || !in.units(units, name)) return false;
        }
        if (!NamesObject(chain)) return false;
    }
    if (!in.varint(count) || count > in.left() / 2) return false;
    front.shapes.resize(static_cast<size_t>(count));
    // Every item of a record takes a byte of the file at least, so that no shape holds more
    // tags than the file has bytes; all of them together are held to a few times that, for
    // shapes kept from earlier saves of the drawing whose records have gone.
    uint64_t mostTags = kShapeTagsPerFileByte * std::max<uint64_t>(fileSize, 1);
    for (PwDbPlwShape& shape : front.shapes) {
        uint64_t classIndex = 0;
        if (!in.varint(classIndex) || classIndex >= front.classes.size()) return false;
        uint64_t mostHere = std::min(mostTags, fileSize);
        const uint64_t before = mostHere;
        if (!ReadShapeTags(in, mostHere, shape.tags)) return false;
        mostTags -= before - mostHere;
        shape.classIndex = static_cast<uint32_t>(classIndex);
    }
    return in.left() == 0;
}

// ---- the index ----

bool ReadIndex(std::string_view payload, PwDbPlwIndexedFront& front) {
    PwDbPlwReader in(payload);
    uint64_t classes = 0;
    uint64_t pages = 0;
    // The number of records is bounded by the pages' runs, each record taking 3 bytes of its
    // run at least, and the runs by the file's size (pwdbPlwReadIndexedFront).
    if (!in.varint(front.records) || !in.varint(classes) || classes != front.classes.size()) {
        return false;
    }
    front.classRecords.resize(static_cast<size_t>(classes));
    uint64_t counted = 0;
    for (uint64_t& count : front.classRecords) {
        if (!in.varint(count) || count > front.records - counted) return false;
        counted += count;
    }
    // A page's entry takes at least four one-byte numbers and its run's check.
    if (counted != front.records || !in.varint(pages) || pages > in.left() / 8) return false;
    front.pages.resize(static_cast<size_t>(pages));
    counted = 0;
    PwDbHandle first = 0;
    uint64_t previousRecords = 0;
    front.runsLength = 0;
    for (PwDbPlwPage& page : front.pages) {
        uint64_t records = 0;
        uint64_t length = 0;
        uint64_t step = 0;
        uint64_t runLength = 0;
        // A page's first handle stands past every handle of the page before.
        if (!in.varint(records) || records == 0 || records > front.records - counted ||
            !in.varint(length) || length > kMost32 || !in.varint(step) || step == 0 ||
            step < previousRecords || step > std::numeric_limits<PwDbHandle>::max() - first ||
            !in.varint(runLength) || records > runLength / 3 || runLength > kMost32 ||
            !in.u32(page.runCrc)) {
            return false;
        }
        counted += records;
        first += step;
        previousRecords = records;
        page.length = static_cast<uint32_t>(length);
        page.records = static_cast<uint32_t>(records);
        page.firstHandle = first;
        page.runOffset = front.runsLength;
        page.runLength = static_cast<uint32_t>(runLength);
        front.runsLength += runLength;
    }
    return counted == front.records && in.left() == 0;
}

}  // namespace

bool pwdbPlwReadPageRecords(const PwDbPlwIndexedFront& front, size_t page, std::string_view run,
                            PwDbPlwPageRecords& records) {
    const PwDbPlwPage& described = front.pages[page];
    if (run.size() != described.runLength || !pwdbPlwChecksumHolds(described.runCrc, run)) {
        return false;
    }
    const PwDbHandle limit = page + 1 < front.pages.size() ? front.pages[page + 1].firstHandle
                                                           : std::numeric_limits<PwDbHandle>::max();
    PwDbPlwReader in(run);
    records.handles.resize(described.records);
    records.erased.resize(described.records);
    records.places.resize(described.records);
    PwDbHandle handle = described.firstHandle;
    uint64_t offset = 0;
    for (uint32_t i = 0; i < described.records; ++i) {
        uint64_t step = 0;
        uint64_t shapeAndErased = 0;
        uint64_t length = 0;
        if (!in.varint(step) || (i == 0) != (step == 0) || step >= limit - handle ||
            !in.varint(shapeAndErased) || (shapeAndErased >> 1) >= front.shapes.size() ||
            !in.varint(length) || length > described.length - offset) {
            return false;
        }
        handle += step;
        records.handles[i] = handle;
        records.erased[i] = static_cast<uint8_t>(shapeAndErased & 1);
        records.places[i] = {static_cast<uint32_t>(offset), static_cast<uint32_t>(length),
                             static_cast<uint32_t>(shapeAndErased >> 1)};
        offset += length;
    }
    return offset == described.length && in.left() == 0;
}

namespace {

// The sections before the records' pages, in their order; the preview may be missing.
bool FollowsInFront(uint32_t previous, uint32_t tag) {
    switch (tag) {
        case kPwDbPlwSettingsTag:
            return previous == 0;
        case kPwDbPlwClassesTag:
            return previous == kPwDbPlwSettingsTag;
        case kPwDbPlwIndexTag:
            return previous == kPwDbPlwClassesTag;
        case kPwDbPlwPreviewTag:
            return previous == kPwDbPlwIndexTag;
        case kPwDbPlwObjectsTag:
            return previous == kPwDbPlwIndexTag || previous == kPwDbPlwPreviewTag;
        default:
            return false;
    }
}

uint64_t LittleAt(std::string_view bytes, uint64_t offset, size_t size) {
    uint64_t value = 0;
    for (size_t i = 0; i < size; ++i) {
        value |= static_cast<uint64_t>(static_cast<uint8_t>(bytes[offset + i])) << (8 * i);
    }
    return value;
}

}  // namespace

PwDbPlwFrontExtent pwdbPlwIndexedFrontExtent(std::string_view prefix, uint64_t fileSize) {
    PwDbPlwFrontExtent extent;
    PwDbPlwHeader header;
    if (prefix.size() < kPwDbPlwHeaderSize) {
        extent.sound = fileSize >= kPwDbPlwHeaderSize;
        extent.end = kPwDbPlwHeaderSize;
        return extent;
    }
    if (!pwdbPlwReadHeader(prefix, fileSize, header) ||
        header.revision != kPwDbPlwIndexedRevision) {
        return extent;
    }
    uint64_t at = header.sectionsOffset;
    uint32_t previous = 0;
    while (true) {
        if (fileSize - at < kPwDbPlwSectionHeadSize) return extent;
        if (prefix.size() < at + kPwDbPlwSectionHeadSize) {
            extent.sound = true;
            extent.end = at + kPwDbPlwSectionHeadSize;
            return extent;
        }
        const auto tag = static_cast<uint32_t>(LittleAt(prefix, at, 4));
        const uint64_t length = LittleAt(prefix, at + 4, 8);
        if (!FollowsInFront(previous, tag)) return extent;
        at += kPwDbPlwSectionHeadSize;
        if (tag == kPwDbPlwObjectsTag) {
            extent.sound = true;
            extent.complete = true;
            extent.end = at;
            return extent;
        }
        if (length > fileSize - at || fileSize - at - length < 4) return extent;
        at += length + 4;
        previous = tag;
    }
}

bool pwdbPlwReadIndexedFront(std::string_view front, uint64_t fileSize, PwDbPlwIndexedFront& out) {
    PwDbPlwHeader header;
    if (!pwdbPlwReadHeader(front, fileSize, header) || header.revision != kPwDbPlwIndexedRevision ||
        header.sectionsOffset > front.size()) {
        return false;
    }
    const auto appInfo =
        front.substr(kPwDbPlwHeaderSize, header.sectionsOffset - kPwDbPlwHeaderSize);
    if (!pwdbPlwChecksumHolds(header.appInfoCrc, appInfo) ||
        !pwdbPlwReadAppInfo(appInfo, out.head.appInfo)) {
        return false;
    }
    PwDbPlwReader in(front.substr(header.sectionsOffset));
    PwDbPlwSection section;
    if (!pwdbPlwReadSoundSection(in, section) || section.tag != kPwDbPlwSettingsTag ||
        !pwdbPlwReadSettings(section.payload, header.version, out.head) ||
        !pwdbPlwReadSoundSection(in, section) || section.tag != kPwDbPlwClassesTag ||
        !ReadClasses(section.payload, fileSize, out) || !pwdbPlwReadSoundSection(in, section) ||
        section.tag != kPwDbPlwIndexTag || !ReadIndex(section.payload, out)) {
        return false;
    }
    uint32_t tag = 0;
    uint64_t length = 0;
    if (!in.u32(tag)) return false;
    if (tag == kPwDbPlwPreviewTag) {
        std::string_view payload;
        uint32_t crc = 0;
        if (!in.u64(length) || !in.view(length, payload) || !in.u32(crc) ||
            !pwdbPlwChecksumHolds(crc, payload) ||
            !pwdbPlwReadPreview(payload, out.head.preview.emplace())) {
            return false;
        }
        if (!in.u32(tag)) return false;
    }
    if (tag != kPwDbPlwObjectsTag || !in.u64(length)) return false;
    const uint64_t pagesStart = static_cast<uint64_t>(in.position() - front.data());
    // The pages fill the objects section exactly, and the end section follows to the end.
    uint64_t at = pagesStart;
    for (PwDbPlwPage& page : out.pages) {
        page.offset = at;
        at += uint64_t{page.length} + 4;
    }
    if (at - pagesStart != length || at > fileSize) return false;
    // Then the objects section's check, the record index's section and the end section.
    const uint64_t tail = 4 + kPwDbPlwSectionHeadSize + 4 + kEndSectionSize;
    if (fileSize - at < tail || fileSize - at - tail != out.runsLength) return false;
    out.runsOffset = at + 4 + kPwDbPlwSectionHeadSize;
    for (PwDbPlwPage& page : out.pages) page.runOffset += out.runsOffset;
    return true;
}

bool pwdbPlwPageSound(std::string_view pageAndCheck) {
    if (pageAndCheck.size() < 4) return false;
    const std::string_view page = pageAndCheck.substr(0, pageAndCheck.size() - 4);
    return pwdbPlwChecksumHolds(static_cast<uint32_t>(LittleAt(pageAndCheck, page.size(), 4)),
                                page);
}

bool pwdbPlwIndexedRecordsSound(std::string_view file, uint64_t pagesStart,
                                const PwDbPlwIndexedFront& front) {
    // The objects section's own checksum covers all of its pages; then the end section.
    const uint64_t objectsEnd = front.runsOffset - kPwDbPlwSectionHeadSize - 4;
    const std::string_view objects = file.substr(pagesStart, objectsEnd - pagesStart);
    PwDbPlwReader tail(file.substr(objectsEnd));
    uint32_t objectsCrc = 0;
    PwDbPlwSection runs;
    PwDbPlwSection end;
    if (!tail.u32(objectsCrc) || !pwdbPlwChecksumHolds(objectsCrc, objects) ||
        !pwdbPlwReadSoundSection(tail, runs) || runs.tag != kPwDbPlwRunsTag ||
        runs.payload.size() != front.runsLength || !pwdbPlwReadSoundSection(tail, end) ||
        end.tag != kPwDbPlwEndTag || !end.payload.empty() || tail.left() != 0) {
        return false;
    }
    return std::all_of(front.pages.begin(), front.pages.end(), [file](const PwDbPlwPage& page) {
        return pwdbPlwPageSound(file.substr(page.offset, uint64_t{page.length} + 4));
    });
}

ErrorStatus pwdbPlwDecodeIndexed(std::string_view file, PwDbDrawingImage& image) {
    const PwDbPlwFrontExtent extent = pwdbPlwIndexedFrontExtent(file, file.size());
    PwDbPlwIndexedFront front;
    if (!extent.sound || !extent.complete ||
        !pwdbPlwReadIndexedFront(file.substr(0, extent.end), file.size(), front)) {
        return Plotwright::StatusBadFileFormat;
    }
    if (!pwdbPlwIndexedRecordsSound(file, extent.end, front))
        return Plotwright::StatusBadFileFormat;
    image = std::move(front.head);
    image.objects.resize(static_cast<size_t>(front.records));
    PwDbPlwPageRecords records;
    size_t next = 0;
    for (size_t page = 0; page < front.pages.size(); ++page) {
        const PwDbPlwPage& described = front.pages[page];
        if (!pwdbPlwReadPageRecords(
                front, page, file.substr(described.runOffset, described.runLength), records)) {
            return Plotwright::StatusBadFileFormat;
        }
        for (size_t i = 0; i < records.handles.size(); ++i) {
            const PwDbPlwRecordPlace& place = records.places[i];
            const PwDbPlwShape& shape = front.shapes[place.shape];
            PwDbObjectRecord& record = image.objects[next++];
            record.classChain = front.classes[shape.classIndex];
            record.handle = records.handles[i];
            record.erased = records.erased[i] != 0;
            const std::string_view values =
                file.substr(front.pages[page].offset + place.offset, place.length);
            if (!pwdbPlwUnpackItems(shape.tags, values, record.data)) {
                return Plotwright::StatusBadFileFormat;
            }
        }
    }
    return Plotwright::StatusOk;
}

// ---- writing ----

uint32_t PwDbPlwIndexedWriter::classFor(const std::vector<wstring>& chain) {
    // A chain that doesn't end in the base of all objects could never be read back.
    if (chain.empty() || !NamesObject(chain) ||
        std::any_of(chain.begin(), chain.end(), [](const wstring& name) { return name.empty(); })) {
        return std::numeric_limits<uint32_t>::max();
    }
    const auto [at, added] =
        m_classByKey.try_emplace(ClassKey(chain), static_cast<uint32_t>(m_classes.size()));
    if (added) {
        m_classes.push_back(chain);
        m_classRecords.push_back(0);
    }
    return at->second;
}

uint32_t PwDbPlwIndexedWriter::shapeFor(uint32_t classIndex, std::string_view tags) {
    std::string key(reinterpret_cast<const char*>(&classIndex), sizeof classIndex);
    key.append(tags);
    const auto [at, added] =
        m_shapeByKey.try_emplace(std::move(key), static_cast<uint32_t>(m_shapes.size()));
    if (added) m_shapes.push_back({classIndex, std::string(tags)});
    return at->second;
}

void PwDbPlwIndexedWriter::adoptTables(const std::vector<std::vector<wstring>>& classes,
                                       const std::vector<PwDbPlwShape>& shapes) {
    for (const auto& chain : classes) {
        m_classByKey.try_emplace(ClassKey(chain), static_cast<uint32_t>(m_classes.size()));
        m_classes.push_back(chain);
        m_classRecords.push_back(0);
    }
    for (const PwDbPlwShape& shape : shapes) {
        std::string key(reinterpret_cast<const char*>(&shape.classIndex), sizeof shape.classIndex);
        key.append(shape.tags);
        m_shapeByKey.try_emplace(std::move(key), static_cast<uint32_t>(m_shapes.size()));
        m_shapes.push_back(shape);
    }
}

bool PwDbPlwIndexedWriter::addPage(std::string_view pageAndCheck, std::string_view run,
                                   const PwDbPlwPageRecords& records) {
    if (records.handles.empty() || records.handles.front() <= m_lastHandle ||
        pageAndCheck.size() < 4 || pageAndCheck.size() - 4 > kMost32) {
        return false;
    }
    for (const PwDbPlwRecordPlace& place : records.places) {
        if (place.shape >= m_shapes.size()) return false;
    }
    closePage();
    for (const PwDbPlwRecordPlace& place : records.places) {
        ++m_classRecords[m_shapes[place.shape].classIndex];
    }
    m_pages.append(pageAndCheck);
    m_runs.append(run);
    notePage(static_cast<uint32_t>(LittleAt(pageAndCheck, pageAndCheck.size() - 4, 4)),
             pageAndCheck.size() - 4);
    PwDbPlwWriter table(m_pageTable);
    table.varint(records.handles.size());
    table.varint(pageAndCheck.size() - 4);
    table.varint(records.handles.front() - m_previousPageFirst);
    table.varint(run.size());
    table.u32(pwdbPlwCrc32(run));
    m_previousPageFirst = records.handles.front();
    m_runStart = m_runs.size();
    m_pageStart = m_pages.size();
    m_lastHandle = records.handles.back();
    m_recordCount += records.handles.size();
    ++m_pageCount;
    return true;
}

bool PwDbPlwIndexedWriter::add(PwDbHandle handle, bool erased, uint32_t shape,
                               std::string_view values) {
    if (handle <= m_lastHandle || values.size() > kMost32 || shape >= m_shapes.size()) {
        return false;
    }
    if (m_pageRecords == 0) m_pageFirstHandle = handle;
    PwDbPlwWriter runs(m_runs);
    runs.varint(m_pageRecords == 0 ? 0 : handle - m_lastHandle);
    runs.varint((uint64_t{shape} << 1) | (erased ? 1 : 0));
    runs.varint(values.size());
    m_lastHandle = handle;
    ++m_classRecords[m_shapes[shape].classIndex];
    m_pages.append(values);
    ++m_recordCount;
    ++m_pageRecords;
    if (m_pages.size() - m_pageStart >= kPageTarget) closePage();
    return true;
}

void PwDbPlwIndexedWriter::notePage(uint32_t pageCrc, size_t pageLength) {
    // The page's bytes, then its check's four bytes.
    const char check[4] = {static_cast<char>(pageCrc), static_cast<char>(pageCrc >> 8),
                           static_cast<char>(pageCrc >> 16), static_cast<char>(pageCrc >> 24)};
    m_pagesCrc = pwdbPlwCrc32Combine(m_pagesCrc, pageCrc, pageLength);
    m_pagesCrc = pwdbPlwCrc32Combine(m_pagesCrc, pwdbPlwCrc32(std::string_view(check, 4)), 4);
}

void PwDbPlwIndexedWriter::closePage() {
    if (m_pageRecords == 0) return;
    const size_t length = m_pages.size() - m_pageStart;
    const uint32_t pageCrc = pwdbPlwCrc32(std::string_view(m_pages).substr(m_pageStart, length));
    PwDbPlwWriter pages(m_pages);
    pages.u32(pageCrc);
    notePage(pageCrc, length);
    PwDbPlwWriter table(m_pageTable);
    table.varint(m_pageRecords);
    table.varint(length);
    table.varint(m_pageFirstHandle - m_previousPageFirst);
    table.varint(m_runs.size() - m_runStart);
    table.u32(pwdbPlwCrc32(std::string_view(m_runs).substr(m_runStart)));
    m_previousPageFirst = m_pageFirstHandle;
    m_runStart = m_runs.size();
    ++m_pageCount;
    m_pageRecords = 0;
    m_pageStart = m_pages.size();
}

ErrorStatus PwDbPlwIndexedWriter::finish(const PwDbDrawingImage& head, std::string& bytes) {
    if (pwdbSignatureForVersion(head.version) == nullptr) return Plotwright::StatusNoSuchVersion;
    if (head.measurement != PwDb::Imperial && head.measurement != PwDb::Metric) {
        return Plotwright::StatusInvalidInput;
    }
    closePage();
    // A page longer than 4 GiB can't be described; only one huge record makes one.
    if (m_pages.size() - m_pageStart > kMost32) return Plotwright::StatusInvalidInput;
    std::string file(kPwDbPlwHeaderSize, '\0');
    file.reserve(kPwDbPlwHeaderSize + 4096 + m_runs.size() + m_pages.size());
    PwDbPlwWriter out(file);
    if (!pwdbPlwWriteAppInfo(out, head.appInfo)) return Plotwright::StatusInvalidInput;
    const size_t sectionsOffset = out.size();
    pwdbPlwWriteSettings(out, head);
    size_t start = pwdbPlwBeginSection(out, kPwDbPlwClassesTag);
    WriteClasses(out, m_classes, m_shapes);
    pwdbPlwEndSection(out, start);
    start = pwdbPlwBeginSection(out, kPwDbPlwIndexTag);
    out.varint(m_recordCount);
    out.varint(m_classRecords.size());
    for (const uint64_t count : m_classRecords) out.varint(count);
    out.varint(m_pageCount);
    out.raw(m_pageTable);
    pwdbPlwEndSection(out, start);
    if (head.preview && !pwdbPlwWritePreview(out, *head.preview)) {
        return Plotwright::StatusInvalidInput;
    }
    // The objects section's checksum is made of the pages' own, not read again.
    out.u32(kPwDbPlwObjectsTag);
    out.u64(m_pages.size());
    out.raw(m_pages);
    out.u32(m_pagesCrc);
    // The record index comes last: a reader reads a page's run when it first needs it.
    start = pwdbPlwBeginSection(out, kPwDbPlwRunsTag);
    out.raw(m_runs);
    pwdbPlwEndSection(out, start);
    pwdbPlwEndSection(out, pwdbPlwBeginSection(out, kPwDbPlwEndTag));
    pwdbPlwWriteHeader(file, head.version, kPwDbPlwIndexedRevision, sectionsOffset);
    bytes.swap(file);
    return Plotwright::StatusOk;
}

ErrorStatus pwdbEncodePlwIndexed(const PwDbDrawingImage& image, std::string& bytes) {
    if (pwdbSignatureForVersion(image.version) == nullptr) return Plotwright::StatusNoSuchVersion;
    try {
        std::vector<const PwDbObjectRecord*> ordered;
        ordered.reserve(image.objects.size());
        for (const PwDbObjectRecord& record : image.objects) ordered.push_back(&record);
        std::sort(ordered.begin(), ordered.end(),
                  [](const PwDbObjectRecord* a, const PwDbObjectRecord* b) {
                      return a->handle < b->handle;
                  });
        PwDbPlwIndexedWriter writer;
        std::string tags;
        std::string values;
        for (const PwDbObjectRecord* record : ordered) {
            const uint32_t classIndex = writer.classFor(record->classChain);
            if (classIndex == std::numeric_limits<uint32_t>::max()) {
                return Plotwright::StatusInvalidInput;
            }
            tags.clear();
            values.clear();
            for (const auto& item : record->data) pwdbPlwPackItem(item, tags, values);
            if (!writer.add(record->handle, record->erased, writer.shapeFor(classIndex, tags),
                            values)) {
                return Plotwright::StatusInvalidInput;
            }
        }
        std::string file;
        if (auto status = writer.finish(image, file)) return status;
        bytes.swap(file);
        return Plotwright::StatusOk;
    } catch (const std::bad_alloc&) {
        return Plotwright::StatusOutOfMemory;
    }
}
