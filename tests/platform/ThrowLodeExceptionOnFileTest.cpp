// Status to exception: which class each status value becomes.
#include <lodeqdb/platform/ThrowLodeExceptionOnFile.h>

#include <gtest/gtest.h>

#include <string>

#include <lodeqdb/platform/LodeExceptions.h>

namespace {

const wstring kFile = u"D:\\proj\\host.plw";

enum class Thrown { Nothing, ReadError, NotFound, InvalidFormat, SecurityError };

Thrown Classify(int status) {
    try {
        LodeQDBUtil::ThrowLodeExceptionOnFile(static_cast<Plotwright::ErrorStatus>(status), kFile);
        return Thrown::Nothing;
    } catch (const lode::NotFound& error) {
        EXPECT_EQ(error.code(), 102);
        return Thrown::NotFound;
    } catch (const lode::InvalidFormat& error) {
        EXPECT_EQ(error.code(), 103);
        return Thrown::InvalidFormat;
    } catch (const lode::SecurityError& error) {
        EXPECT_EQ(error.code(), 104);
        return Thrown::SecurityError;
    } catch (const lode::ReadError& error) {
        EXPECT_EQ(error.code(), 101);
        return Thrown::ReadError;
    }
}

struct StatusCase {
    int status;
    Thrown expected;
};

class StatusTranslation : public testing::TestWithParam<StatusCase> {};

TEST_P(StatusTranslation, ThrowsTheExpectedClass) {
    EXPECT_EQ(Classify(GetParam().status), GetParam().expected) << GetParam().status;
}

INSTANTIATE_TEST_SUITE_P(
    Statuses, StatusTranslation,
    testing::Values(StatusCase{0, Thrown::Nothing}, StatusCase{76, Thrown::NotFound},
                    StatusCase{314, Thrown::InvalidFormat}, StatusCase{1001, Thrown::SecurityError},
                    StatusCase{1002, Thrown::SecurityError},
                    StatusCase{1003, Thrown::SecurityError}, StatusCase{1004, Thrown::ReadError},
                    StatusCase{1100, Thrown::ReadError}, StatusCase{1101, Thrown::SecurityError},
                    StatusCase{1102, Thrown::SecurityError},
                    StatusCase{1103, Thrown::SecurityError},
                    StatusCase{1104, Thrown::SecurityError}, StatusCase{1105, Thrown::ReadError},
                    StatusCase{1200, Thrown::ReadError}, StatusCase{1201, Thrown::SecurityError},
                    StatusCase{1202, Thrown::SecurityError},
                    StatusCase{1203, Thrown::SecurityError}, StatusCase{1204, Thrown::ReadError},
                    StatusCase{-1, Thrown::ReadError}, StatusCase{1, Thrown::ReadError},
                    StatusCase{3, Thrown::ReadError}, StatusCase{15, Thrown::ReadError},
                    StatusCase{75, Thrown::ReadError}, StatusCase{77, Thrown::ReadError},
                    StatusCase{313, Thrown::ReadError}, StatusCase{315, Thrown::ReadError},
                    StatusCase{1000, Thrown::ReadError}, StatusCase{INT32_MAX, Thrown::ReadError},
                    StatusCase{INT32_MIN, Thrown::ReadError}),
    [](const testing::TestParamInfo<StatusCase>& info) {
        const int status = info.param.status;
        return (status < 0 ? "minus" + std::to_string(-static_cast<long long>(status))
                           : std::to_string(status));
    });

TEST(ThrowLodeExceptionOnFile, ExactlyTenSecurityStatuses) {
    int security = 0;
    for (int status = -10; status < 3000; ++status) {
        if (Plotwright::IsSecurityStatus(static_cast<Plotwright::ErrorStatus>(status))) ++security;
    }
    EXPECT_EQ(security, 10);
}

TEST(ThrowLodeExceptionOnFile, MessageNamesTheFile) {
    try {
        LodeQDBUtil::ThrowLodeExceptionOnFile(Plotwright::StatusFileNotFound, kFile);
        FAIL() << "nothing thrown";
    } catch (const lode::FileError& error) {
        EXPECT_NE(error.message().find(kFile), wstring::npos);
    }
}

}  // namespace
