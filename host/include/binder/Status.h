// libbinder subset: binder::Status, the result of every generated AIDL method.
#pragma once

#include <utils/Errors.h>
#include <utils/String8.h>

#include <cstdint>

namespace android {
namespace binder {

class Status final {
public:
    enum Exception {
        EX_NONE = 0,
        EX_SECURITY = -1,
        EX_BAD_PARCELABLE = -2,
        EX_ILLEGAL_ARGUMENT = -3,
        EX_NULL_POINTER = -4,
        EX_ILLEGAL_STATE = -5,
        EX_NETWORK_MAIN_THREAD = -6,
        EX_UNSUPPORTED_OPERATION = -7,
        EX_SERVICE_SPECIFIC = -8,
        EX_PARCELABLE = -9,
        EX_HAS_REPLY_HEADER = -128,
        EX_TRANSACTION_FAILED = -129,
    };

    static Status ok() { return Status(); }
    static Status fromExceptionCode(int32_t exceptionCode) { return Status(exceptionCode, OK); }
    static Status fromServiceSpecificError(int32_t errorCode) {
        Status s(EX_SERVICE_SPECIFIC, OK);
        s.mErrorCode = errorCode;
        return s;
    }
    static Status fromStatusT(status_t status) {
        return status == OK ? Status() : Status(EX_TRANSACTION_FAILED, status);
    }

    Status() = default;

    bool isOk() const { return mException == EX_NONE; }
    int32_t exceptionCode() const { return mException; }
    status_t transactionError() const { return mException == EX_TRANSACTION_FAILED ? mErrorCode : OK; }
    int32_t serviceSpecificErrorCode() const { return mException == EX_SERVICE_SPECIFIC ? mErrorCode : 0; }
    String8 toString8() const;

private:
    Status(int32_t exception, status_t error) : mException(exception), mErrorCode(error) {}

    int32_t mException = EX_NONE;
    int32_t mErrorCode = OK;
};

}  // namespace binder
}  // namespace android
