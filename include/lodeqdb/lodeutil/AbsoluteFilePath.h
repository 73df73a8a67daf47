// A path made absolute and lexically normalised, compared the way its kind of system would.
//
// Defines LodeUtil::AbsoluteFilePath.
//
//   AbsoluteFilePath host(u"C:\\a\\..\\b\\.\\c.plw");
//   host.FullPath();                  // u"C:\\b\\c.plw"
//   host == u"c:/B/C.PLW";            // true: Windows paths compare without regard to case
//   AbsoluteFilePath(u"/home/a/../b") == u"/home/B";  // false: POSIX paths compare exactly
//
// Normalising works on the text alone (the only system call is getcwd, for relative paths):
//   - '\' and '/' both separate; runs of separators collapse to one; `.` components go; a
//     `..` removes the component before it, and at the root it is dropped (`/..` is `/`).
//   - Windows form: a path rooted at a drive (`C:\`, or the drive-relative `C:x`, which
//     becomes `C:\x`), at a UNC share (`\\srv\share`, and `//srv/share`: two separators and a
//     server name are UNC), at a device prefix (`\\?\`, `\\.\`) or at a leading '\' that
//     starts none of these. Its separators become '\'. `\\?\C:\a` is written `C:\a` and
//     `\\?\UNC\srv\share\a` is written `\\srv\share\a`; other device roots
//     (`\\?\Volume{...}\`) stay as they are. A UNC path never climbs above its share:
//     `\\srv\share\..\x` is `\\srv\share\x`; server and share names are kept as written,
//     even when they are `.` or `..`.
//   - POSIX form: a path rooted at a leading '/' that starts no UNC or device root (`/home`,
//     `///x`). Its separators become '/'.
//   - A relative path is joined to the process's current directory, which makes it POSIX
//     form; when the current directory cannot be had, `/` stands in for it.
//   - A root always ends in its separator (`C:\`, `\\srv\share\`, `/`); nothing else keeps a
//     trailing separator (`C:\a\` is `C:\a`). A UNC path without a share is `\\srv\`.
//   - Case, and the drive letter's case, are kept as given. An empty path stays empty.
#pragma once

#include <lodeqdb/lodeutil/WideString.h>

namespace LodeUtil {

/// An absolute, lexically normalised path (see above). Cheap to copy; holds no system handle.
class AbsoluteFilePath {
  public:
    /// Normalises `path`, resolving a relative one against the current working directory.
    explicit AbsoluteFilePath(const wstring& path);
    ~AbsoluteFilePath();
    AbsoluteFilePath(const AbsoluteFilePath&) = default;
    AbsoluteFilePath(AbsoluteFilePath&&) noexcept = default;
    AbsoluteFilePath& operator=(const AbsoluteFilePath&) = default;
    AbsoluteFilePath& operator=(AbsoluteFilePath&&) noexcept = default;

    /// The normalised absolute path; empty only for an empty input.
    const wstring& FullPath() const { return fullPath_; }

    /// True for a drive, UNC, device or backslash-rooted path; false for POSIX form (which
    /// every relative input takes) and for an empty path.
    bool IsWindowsForm() const { return windowsForm_; }

    /// True when `other`, normalised the same way, names this path: compared after ICU full
    /// case folding when both are Windows form, code unit by code unit when both are POSIX
    /// form, and never equal when their forms differ.
    bool operator==(const wstring& other) const;
    bool operator==(const AbsoluteFilePath& other) const;

    /// The negation of operator==.
    bool operator!=(const wstring& other) const { return !(*this == other); }
    bool operator!=(const AbsoluteFilePath& other) const { return !(*this == other); }

  private:
    wstring fullPath_;
    bool windowsForm_ = false;
};

}  // namespace LodeUtil
