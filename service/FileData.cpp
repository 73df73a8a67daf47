// The dependency record: constructors from a name and from an object id.
#include <lodeqdb/service/FileData.h>

namespace LodeQDBService {

FileData::FileData(const wstring& fullName) : fullName_(fullName) {}

FileData::FileData(const PwDbObjectId& id) : objectId_(id), refId_(id.nonForwardedHandle()) {}

bool FileData::operator==(const FileData& other) const {
    return fullName_ == other.fullName_;
}

bool FileData::operator<(const FileData& other) const {
    // std::u16string compares char16_t, an unsigned type: code unit order, shorter first.
    return fullName_ < other.fullName_;
}

}  // namespace LodeQDBService
