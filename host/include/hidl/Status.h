// HIDL runtime subset: transport status and Return<T>, with the device's rules: reading the
// value of a failed call aborts the process, and so does dropping a failed Return unchecked.
#pragma once

#include <utils/Errors.h>

#include <cstdint>
#include <string>
#include <utility>

namespace android {
namespace hardware {

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
        EX_HAS_REPLY_HEADER = -128,
        EX_TRANSACTION_FAILED = -129,
    };

    static Status ok() { return Status(); }
    static Status fromExceptionCode(int32_t exceptionCode) {
        return Status(exceptionCode, exceptionCode == EX_TRANSACTION_FAILED ? UNKNOWN_ERROR : OK);
    }
    static Status fromStatusT(status_t status) {
        return status == OK ? Status() : Status(EX_TRANSACTION_FAILED, status);
    }

    Status() = default;
    bool isOk() const { return mException == EX_NONE; }
    int32_t exceptionCode() const { return mException; }
    status_t transactionError() const { return mErrorCode; }
    std::string description() const;

private:
    Status(int32_t exception, status_t error) : mException(exception), mErrorCode(error) {}
    int32_t mException = EX_NONE;
    status_t mErrorCode = OK;
};

namespace details {

[[noreturn]] void hidlFatal(const char* what, const Status& status);

class return_status {
public:
    return_status() = default;
    return_status(const Status& status) : mStatus(status) {}  // NOLINT: implicit as on device
    return_status(const return_status&) = delete;
    return_status& operator=(const return_status&) = delete;
    return_status(return_status&& other) noexcept { *this = std::move(other); }
    return_status& operator=(return_status&& other) noexcept {
        checkStatus();
        mStatus = other.mStatus;
        mCheckedStatus = other.mCheckedStatus;
        other.mCheckedStatus = true;
        return *this;
    }
    ~return_status() { checkStatus(); }

    bool isOk() const {
        mCheckedStatus = true;
        return mStatus.isOk();
    }
    bool isDeadObject() const {
        return !isOk() && mStatus.exceptionCode() == Status::EX_TRANSACTION_FAILED &&
               mStatus.transactionError() == DEAD_OBJECT;
    }
    const Status& getStatus() const {
        mCheckedStatus = true;
        return mStatus;
    }
    std::string description() const { return mStatus.description(); }

protected:
    void assertOk() const {
        if (!isOk()) hidlFatal("Attempted to retrieve value from failed HIDL call", mStatus);
    }

private:
    void checkStatus() const {
        if (!mCheckedStatus && !mStatus.isOk()) hidlFatal("Failed HIDL return status not checked", mStatus);
    }

    Status mStatus;
    mutable bool mCheckedStatus = false;
};

}  // namespace details

template <typename T>
class Return : public details::return_status {
public:
    Return(T value) : details::return_status(), mVal(std::move(value)) {}  // NOLINT
    Return(const Status& status) : details::return_status(status), mVal{} {}  // NOLINT
    Return(Return&& other) noexcept = default;
    Return& operator=(Return&& other) noexcept = default;

    T withDefault(T t) { return isOk() ? mVal : t; }
    operator T() const {  // NOLINT: implicit as on device
        assertOk();
        return mVal;
    }

private:
    T mVal;
};

template <>
class Return<void> : public details::return_status {
public:
    Return() : details::return_status() {}
    Return(const Status& status) : details::return_status(status) {}  // NOLINT
    Return(Return&& other) noexcept = default;
    Return& operator=(Return&& other) noexcept = default;
};

inline Return<void> Void() { return Return<void>(); }

}  // namespace hardware
}  // namespace android
