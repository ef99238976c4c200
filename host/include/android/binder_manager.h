// NDK binder subset: the service manager calls.
#pragma once

#include <android/binder_ibinder.h>

__BEGIN_DECLS

binder_status_t AServiceManager_addService(AIBinder* binder, const char* instance);
// Running service or null, without waiting; the caller owns a strong reference.
AIBinder* AServiceManager_checkService(const char* instance);
// Blocks until the service is running; the caller owns a strong reference.
AIBinder* AServiceManager_waitForService(const char* instance);
bool AServiceManager_isDeclared(const char* instance);

__END_DECLS
