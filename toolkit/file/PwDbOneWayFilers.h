// PwDbOneWayFilers: the bases of filers that go one way only. A filer that objects write into
// fails every read, one they read from fails every write, so that a class that reads while
// it writes (or the reverse) is found at once.
#pragma once

#include <lodeqdb/toolkit/db/PwDbPlwFiler.h>

/// A filer that is only written to: every read gives StatusFilerError (and a null text or id).
class PwDbWriteOnlyFiler : public PwDbPlwFiler {
  public:
    Plotwright::ErrorStatus readString(char16_t*& text) override;
    Plotwright::ErrorStatus readInt32(int32_t& value) override;
    Plotwright::ErrorStatus readInt64(int64_t& value) override;
    Plotwright::ErrorStatus readDouble(double& value) override;
    Plotwright::ErrorStatus readBool(bool& value) override;
    Plotwright::ErrorStatus readBytes(void* bytes, size_t size) override;
    Plotwright::ErrorStatus readObjectId(PwDbObjectId& id) override;
    Plotwright::ErrorStatus filerStatus() const override { return Plotwright::StatusOk; }

    using PwDbPlwFiler::readString;
};

/// A filer that is only read from: every write gives StatusFilerError.
class PwDbReadOnlyFiler : public PwDbPlwFiler {
  public:
    Plotwright::ErrorStatus writeString(const char16_t* text) override;
    Plotwright::ErrorStatus writeInt32(int32_t value) override;
    Plotwright::ErrorStatus writeInt64(int64_t value) override;
    Plotwright::ErrorStatus writeDouble(double value) override;
    Plotwright::ErrorStatus writeBool(bool value) override;
    Plotwright::ErrorStatus writeBytes(const void* bytes, size_t size) override;
    Plotwright::ErrorStatus writeObjectId(PwDbObjectId id) override;

    using PwDbPlwFiler::writeString;
};
