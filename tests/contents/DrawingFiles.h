// Drawings for the contents tests: built with the toolkit's authoring interface, written to
// disk in the format under test and read back, as a client meets them.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "support/TempFolderTest.h"
#include <lodeqdb/toolkit/db/PwDbAuthoring.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>

namespace lodeqdbtest {

/// Parameter of the tests that run on both formats: true for the exchange format.
class DrawingFilesTest : public TempFolderTest, public testing::WithParamInterface<bool> {
  protected:
    explicit DrawingFilesTest(std::string prefix) : TempFolderTest(std::move(prefix)) {}

    bool Exchange() const { return GetParam(); }
    /// `stem` with the extension of the format under test.
    wstring FileName(const std::string& stem) const {
        return Path(stem + (Exchange() ? ".plx" : ".plw"));
    }
    /// Writes `drawing` as `stem` in the format under test and gives the file's path.
    wstring Save(PwDbDatabase& drawing, const std::string& stem) const {
        const wstring path = FileName(stem);
        const Plotwright::ErrorStatus status =
            Exchange() ? drawing.plxOut(path.c_str(), 17, PwDb::PwDbPlwVersionCurrent)
                       : drawing.saveAs(path.c_str(), false, PwDb::PwDbPlwVersionCurrent);
        EXPECT_EQ(status, Plotwright::StatusOk);
        return path;
    }
    /// Writes `drawing` and reads the file into a new database.
    std::unique_ptr<PwDbDatabase> SaveAndRead(PwDbDatabase& drawing, const std::string& stem) {
        const wstring path = Save(drawing, stem);
        auto read = std::make_unique<PwDbDatabase>(false, true);
        const Plotwright::ErrorStatus status =
            Exchange() ? read->plxIn(path.c_str()) : read->readPlwFile(path.c_str());
        EXPECT_EQ(status, Plotwright::StatusOk);
        return read;
    }
};

/// Names the instances of a test suite on both formats "Plw" and "Plx".
inline std::string FormatName(const testing::TestParamInfo<bool>& info) {
    return info.param ? "Plx" : "Plw";
}

}  // namespace lodeqdbtest
