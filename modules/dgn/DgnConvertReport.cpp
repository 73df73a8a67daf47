// Counting what a conversion made and skipped, and laying it out in plain rows.
#include "modules/dgn/DgnConvertReport.h"

#include <algorithm>
#include <limits>

namespace {

uint32_t SaturatingAdd(uint32_t a, uint32_t b) {
    return a > std::numeric_limits<uint32_t>::max() - b ? std::numeric_limits<uint32_t>::max()
                                                        : a + b;
}

}  // namespace

void DgnConvertReport::clear() {
    m_translated.clear();
    m_skipped.clear();
}

void DgnConvertReport::addTranslated(int32_t elementType, const wstring& className,
                                     uint32_t count) {
    uint32_t& total = m_translated[elementType][className];
    total = SaturatingAdd(total, count);
}

void DgnConvertReport::addSkipped(int32_t elementType, uint32_t count) {
    uint32_t& total = m_skipped[elementType];
    total = SaturatingAdd(total, count);
}

uint32_t DgnConvertReport::translatedCount(int32_t elementType, const wstring& className) const {
    const auto type = m_translated.find(elementType);
    if (type == m_translated.end()) return 0;
    const auto found = type->second.find(className);
    return found == type->second.end() ? 0 : found->second;
}

uint32_t DgnConvertReport::skippedCount(int32_t elementType) const {
    const auto found = m_skipped.find(elementType);
    return found == m_skipped.end() ? 0 : found->second;
}

uint32_t DgnConvertReport::totalTranslated() const {
    uint32_t total = 0;
    for (const auto& [type, classes] : m_translated) {
        for (const auto& [name, count] : classes) total = SaturatingAdd(total, count);
    }
    return total;
}

uint32_t DgnConvertReport::totalSkipped() const {
    uint32_t total = 0;
    for (const auto& [type, count] : m_skipped) {
        if (type != kPwDbDgnUnreadableBytes) total = SaturatingAdd(total, count);
    }
    return total;
}

std::vector<PwDbDgnConvertReportRow> DgnConvertReport::rows() const {
    std::vector<PwDbDgnConvertReportRow> rows;
    for (const auto& [type, classes] : m_translated) {
        for (const auto& [name, count] : classes) {
            PwDbDgnConvertReportRow row{};
            row.elementType = type;
            const size_t length = std::min(name.size(), std::size(row.className) - 1);
            std::copy_n(name.begin(), length, row.className);
            row.count = count;
            rows.push_back(row);
        }
    }
    for (const auto& [type, count] : m_skipped) {
        PwDbDgnConvertReportRow row{};
        row.elementType = type;
        row.count = count;
        rows.push_back(row);
    }
    return rows;
}
