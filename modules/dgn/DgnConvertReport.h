// DgnConvertReport: what one conversion of a DGN model made and what it left out: entities
// made per element type and entity class, and elements skipped per element type.
//
//   report.addTranslated(kDgnLine, u"PwDbLine");
//   report.addSkipped(kDgnSurfaceHeader);
//   report.translatedCount(kDgnLine, u"PwDbLine");   // 1
#pragma once

#include <cstdint>
#include <map>
#include <vector>

#include <lodeqdb/lodeutil/WideString.h>
#include <lodeqdb/toolkit/dgn/PwDbDgnConvertReport.h>

class DgnConvertReport {
  public:
    void clear();
    void addTranslated(int32_t elementType, const wstring& className, uint32_t count = 1);
    void addSkipped(int32_t elementType, uint32_t count = 1);

    uint32_t translatedCount(int32_t elementType, const wstring& className) const;
    uint32_t skippedCount(int32_t elementType) const;
    /// Entities made, over every type and class.
    uint32_t totalTranslated() const;
    /// Skipped elements over every type, unreadable bytes not counted.
    uint32_t totalSkipped() const;

    const std::map<int32_t, std::map<wstring, uint32_t>>& translated() const {
        return m_translated;
    }
    const std::map<int32_t, uint32_t>& skipped() const { return m_skipped; }

    /// The rows of the plain form: translated rows by element type and class, then skipped
    /// rows by element type. Class names longer than a row holds are cut.
    std::vector<PwDbDgnConvertReportRow> rows() const;

  private:
    std::map<int32_t, std::map<wstring, uint32_t>> m_translated;
    std::map<int32_t, uint32_t> m_skipped;
};
