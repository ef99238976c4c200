// NDK binder subset: AIBinder, binder classes and death recipients.
#pragma once

#include <android/binder_status.h>
#include <sys/cdefs.h>

__BEGIN_DECLS

struct AIBinder;
typedef struct AIBinder AIBinder;
struct AIBinder_Class;
typedef struct AIBinder_Class AIBinder_Class;
struct AIBinder_DeathRecipient;
typedef struct AIBinder_DeathRecipient AIBinder_DeathRecipient;
struct AIBinder_Weak;
typedef struct AIBinder_Weak AIBinder_Weak;
struct AParcel;
typedef struct AParcel AParcel;

typedef uint32_t transaction_code_t;
typedef void* (*AIBinder_Class_onCreate)(void* args);
typedef void (*AIBinder_Class_onDestroy)(void* userData);
typedef binder_status_t (*AIBinder_Class_onTransact)(AIBinder* binder, transaction_code_t code,
                                                     const AParcel* in, AParcel* out);
typedef void (*AIBinder_DeathRecipient_onBinderDied)(void* cookie);

AIBinder_Class* AIBinder_Class_define(const char* interfaceDescriptor,
                                      AIBinder_Class_onCreate onCreate,
                                      AIBinder_Class_onDestroy onDestroy,
                                      AIBinder_Class_onTransact onTransact);
const char* AIBinder_Class_getDescriptor(const AIBinder_Class* clazz);

// A new local binder of the class; onCreate(args) gives its user data. The caller owns one
// strong reference.
AIBinder* AIBinder_new(const AIBinder_Class* clazz, void* args);
bool AIBinder_associateClass(AIBinder* binder, const AIBinder_Class* clazz);
const AIBinder_Class* AIBinder_getClass(AIBinder* binder);
void* AIBinder_getUserData(AIBinder* binder);
bool AIBinder_isRemote(const AIBinder* binder);
bool AIBinder_isAlive(const AIBinder* binder);
binder_status_t AIBinder_ping(AIBinder* binder);
void AIBinder_incStrong(AIBinder* binder);
void AIBinder_decStrong(AIBinder* binder);

binder_status_t AIBinder_linkToDeath(AIBinder* binder, AIBinder_DeathRecipient* recipient,
                                     void* cookie);
binder_status_t AIBinder_unlinkToDeath(AIBinder* binder, AIBinder_DeathRecipient* recipient,
                                       void* cookie);
AIBinder_Weak* AIBinder_Weak_new(AIBinder* binder);
void AIBinder_Weak_delete(AIBinder_Weak* weakBinder);
// A strong reference owned by the caller, or null when the binder is gone.
AIBinder* AIBinder_Weak_promote(AIBinder_Weak* weakBinder);

AIBinder_DeathRecipient* AIBinder_DeathRecipient_new(AIBinder_DeathRecipient_onBinderDied onBinderDied);
void AIBinder_DeathRecipient_delete(AIBinder_DeathRecipient* recipient);

__END_DECLS
