// DgnV7DesignFile: a DGN V7 design file read into memory, with what its control block (the
// first element, type 9) says about units and dimension; and the test that tells design files
// from V8 files and from everything else.
//
//   std::shared_ptr<const DgnV7DesignFile> document;
//   if (DgnV7DesignFile::load(u"/srv/plan.dgn", document) == Plotwright::StatusOk) {
//       DgnV7ElementStream stream(document->bytes());
//       double perMaster = document->header().units.uorPerMaster();
//   }
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include <lodeqdb/lodeutil/WideString.h>
#include <lodeqdb/toolkit/pal/PwErrorStatus.h>

/// The design file's units, from its control block.
struct DgnV7Units {
    /// Both at least 1: a stored value below 1 is read as 1.
    int32_t uorPerSubunit = 1;
    int32_t subunitsPerMaster = 1;
    /// The names the file gives them (two characters at most, trailing blanks removed).
    wstring masterName;
    wstring subunitName;
    /// The global origin, in UOR.
    double originX = 0.0;
    double originY = 0.0;
    double originZ = 0.0;

    double uorPerMaster() const {
        return static_cast<double>(uorPerSubunit) * static_cast<double>(subunitsPerMaster);
    }
};

struct DgnV7Header {
    bool is3d = false;
    DgnV7Units units;
};

enum class DgnFileKind {
    NotDgn,
    /// A DGN V7 design file: a control block of type 9 on level 8 comes first and fits.
    DesignV7,
    /// A compound document (V8 DGN) named *.dgn or holding a "Dgn" storage near its start.
    CompoundV8,
};

/// Bytes read from the start of a file to classify it.
inline constexpr size_t kDgnProbeBytes = 4096;
/// The largest design file read.
inline constexpr uint64_t kDgnMaxFileBytes = uint64_t{1} << 30;

/// Classifies `head`, the first bytes of a file of `fileSize` bytes named `fileName`.
DgnFileKind dgnClassifyBytes(std::span<const uint8_t> head, uint64_t fileSize,
                             const wstring& fileName);

/// Classifies the file at `path` by reading at most two small blocks of it. `status` is
/// StatusFileNotFound for a missing file or a folder, StatusSecurityAccessDenied or
/// StatusFileIOError when it can't be read, else StatusOk.
DgnFileKind dgnClassifyFile(const wstring& path, Plotwright::ErrorStatus& status);

/// Reads the control block at the start of `bytes`; StatusBadFileFormat unless they start with
/// a design file's.
Plotwright::ErrorStatus dgnReadHeader(std::span<const uint8_t> bytes, DgnV7Header& header);

class DgnV7DesignFile {
  public:
    /// Reads the design file at `path`. StatusFileNotFound for a missing file or a folder;
    /// StatusBadFileFormat for anything but a DGN V7 design file (a V8 file included) and for
    /// a file above kDgnMaxFileBytes; the read's own status when it fails.
    static Plotwright::ErrorStatus load(const wstring& path,
                                        std::shared_ptr<const DgnV7DesignFile>& document);
    /// A document over `bytes` as if read from `path` (which may be empty); statuses as load.
    static Plotwright::ErrorStatus fromBytes(std::vector<uint8_t> bytes, const wstring& path,
                                             std::shared_ptr<const DgnV7DesignFile>& document);

    /// The absolute path the file was read from; empty for one made from bytes alone.
    const wstring& path() const { return m_path; }
    std::span<const uint8_t> bytes() const { return m_bytes; }
    const DgnV7Header& header() const { return m_header; }

  private:
    DgnV7DesignFile() = default;

    wstring m_path;
    std::vector<uint8_t> m_bytes;
    DgnV7Header m_header;
};
