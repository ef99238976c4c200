// NDK binder subset: status codes and AStatus.
#pragma once

#include <stdint.h>

__BEGIN_DECLS

typedef int32_t binder_status_t;
typedef int32_t binder_exception_t;

enum {
    STATUS_OK = 0,
    STATUS_UNKNOWN_ERROR = (-2147483647 - 1),
    STATUS_NO_MEMORY = -12,
    STATUS_INVALID_OPERATION = -38,
    STATUS_BAD_VALUE = -22,
    STATUS_BAD_TYPE = (STATUS_UNKNOWN_ERROR + 1),
    STATUS_NAME_NOT_FOUND = -2,
    STATUS_PERMISSION_DENIED = -1,
    STATUS_NO_INIT = -19,
    STATUS_ALREADY_EXISTS = -17,
    STATUS_DEAD_OBJECT = -32,
    STATUS_FAILED_TRANSACTION = (STATUS_UNKNOWN_ERROR + 2),
    STATUS_UNKNOWN_TRANSACTION = -74,
};

enum {
    EX_NONE = 0,
    EX_ILLEGAL_ARGUMENT = -3,
    EX_ILLEGAL_STATE = -5,
    EX_UNSUPPORTED_OPERATION = -7,
    EX_SERVICE_SPECIFIC = -8,
    EX_TRANSACTION_FAILED = -129,
};

struct AStatus;
typedef struct AStatus AStatus;

AStatus* AStatus_newOk(void);
AStatus* AStatus_fromExceptionCode(binder_exception_t exception);
AStatus* AStatus_fromServiceSpecificError(int32_t serviceSpecific);
AStatus* AStatus_fromStatus(binder_status_t status);
bool AStatus_isOk(const AStatus* status);
binder_exception_t AStatus_getExceptionCode(const AStatus* status);
int32_t AStatus_getServiceSpecificError(const AStatus* status);
binder_status_t AStatus_getStatus(const AStatus* status);
void AStatus_delete(AStatus* status);

__END_DECLS
