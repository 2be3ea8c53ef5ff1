#pragma once

#include <android/binder_parcel.h>
#include <android/binder_status.h>
#include <stdbool.h>
#include <stdint.h>
#include <sys/cdefs.h>
#include <sys/types.h>

__BEGIN_DECLS

typedef uint32_t binder_flags_t;
enum {
    /** The caller does not wait, and there is no reply. Calls to one binder keep their order. */
    FLAG_ONEWAY = 0x01,
};

/** Which method of an interface is called. */
typedef uint32_t transaction_code_t;
enum {
    FIRST_CALL_TRANSACTION = 0x00000001,
    LAST_CALL_TRANSACTION = 0x00ffffff,
};

/** An interface: its descriptor and what carries out its calls. Lives as long as the process. */
struct AIBinder_Class;
typedef struct AIBinder_Class AIBinder_Class;

/**
 * A binder, of this process or of another. While one lives there is one AIBinder for it, so that
 * pointers may be compared. Counted: what gives out an AIBinder* gives a strong reference with it,
 * what takes one takes none unless it says so. Thread-safe, with all its functions.
 */
struct AIBinder;
typedef struct AIBinder AIBinder;

/** Remembers a binder without keeping it. */
struct AIBinder_Weak;
typedef struct AIBinder_Weak AIBinder_Weak;

/** A function to call when binders die, and the links to those binders. Thread-safe. */
struct AIBinder_DeathRecipient;
typedef struct AIBinder_DeathRecipient AIBinder_DeathRecipient;

/** Makes the user data of a new binder from AIBinder_new's arguments. */
typedef void* (*AIBinder_Class_onCreate)(void* args);
/** Called once, when the last reference to the binder goes. */
typedef void (*AIBinder_Class_onDestroy)(void* userData);
/** A call, on one of the threads of the pool or on the thread of a local caller. */
typedef binder_status_t (*AIBinder_Class_onTransact)(AIBinder* binder, transaction_code_t code,
                                                     const AParcel* in, AParcel* out);
/** Writes text for a person to `fd`, which stays the caller's. */
typedef binder_status_t (*AIBinder_onDump)(AIBinder* binder, int fd, const char** args,
                                           uint32_t numArgs);

/** The descriptor is copied. Null when any argument is. */
AIBinder_Class* AIBinder_Class_define(const char* interfaceDescriptor,
                                      AIBinder_Class_onCreate onCreate,
                                      AIBinder_Class_onDestroy onDestroy,
                                      AIBinder_Class_onTransact onTransact)
        __attribute__((warn_unused_result));

/** Before the first binder of the class is made; without it a dump is empty. */
void AIBinder_Class_setOnDump(AIBinder_Class* clazz, AIBinder_onDump onDump);

/** A local binder. Null, without onCreate having been called, when the class is. */
AIBinder* AIBinder_new(const AIBinder_Class* clazz, void* args) __attribute__((warn_unused_result));

/** Whether it is of another process. */
bool AIBinder_isRemote(const AIBinder* binder);

/** False once a remote binder is known to have died; nothing is asked of it. */
bool AIBinder_isAlive(const AIBinder* binder);

binder_status_t AIBinder_dump(AIBinder* binder, int fd, const char** args, uint32_t numArgs);

/**
 * Calls the recipient with `cookie` once, on a thread of the pool, when the binder dies. The link
 * keeps neither binder nor cookie: release the binder and it may never be called. Fails with
 * STATUS_INVALID_OPERATION for a local binder, STATUS_DEAD_OBJECT for one that is dead.
 */
binder_status_t AIBinder_linkToDeath(AIBinder* binder, AIBinder_DeathRecipient* recipient,
                                     void* cookie);

/**
 * Takes back the last link of this binder, recipient and cookie; STATUS_NAME_NOT_FOUND when there
 * is none, STATUS_DEAD_OBJECT when the binder has died: the recipient is being called or was.
 */
binder_status_t AIBinder_unlinkToDeath(AIBinder* binder, AIBinder_DeathRecipient* recipient,
                                       void* cookie);

/** Of the call that this thread carries out, as the driver tells it; 0 in a one-way call. */
pid_t AIBinder_getCallingPid(void);

/** Whether this thread carries out a call from another process. */
bool AIBinder_isHandlingTransaction(void);

/** Null is fine for both. */
void AIBinder_incStrong(AIBinder* binder);
void AIBinder_decStrong(AIBinder* binder);

/**
 * Says which interface a binder has, as a condition of calling it. A remote binder is asked for its
 * descriptor, once. False, and nothing changes, when it has another descriptor, belongs to another
 * class already, is dead, or an argument is null.
 */
bool AIBinder_associateClass(AIBinder* binder, const AIBinder_Class* clazz);

/** What onCreate returned; null for a binder that AIBinder_new did not make in this process. */
void* AIBinder_getUserData(AIBinder* binder);

/**
 * A parcel for a request to this binder, its header written. STATUS_INVALID_OPERATION when the
 * binder has no class yet. The caller deletes the parcel or hands it to AIBinder_transact.
 */
binder_status_t AIBinder_prepareTransaction(AIBinder* binder, AParcel** in);

/**
 * Calls the binder. Takes `*in`, which prepareTransaction must have made for this very binder, and
 * leaves null there, also when it fails. `*out` is the reply, the caller's, or null after a
 * failure. `code` lies between FIRST_CALL_TRANSACTION and LAST_CALL_TRANSACTION. Waits for the
 * reply unless FLAG_ONEWAY is given.
 */
binder_status_t AIBinder_transact(AIBinder* binder, transaction_code_t code, AParcel** in,
                                  AParcel** out, binder_flags_t flags);

/** Null for null. */
AIBinder_Weak* AIBinder_Weak_new(AIBinder* binder) __attribute__((warn_unused_result));
void AIBinder_Weak_delete(AIBinder_Weak* weakBinder);
/** The binder with a strong reference, or null when nobody holds it any more. */
AIBinder* AIBinder_Weak_promote(AIBinder_Weak* weakBinder) __attribute__((warn_unused_result));

/** An order of binders that holds while they live; null comes first. */
bool AIBinder_lt(const AIBinder* lhs, const AIBinder* rhs);

typedef void (*AIBinder_DeathRecipient_onBinderDied)(void* cookie);
typedef void (*AIBinder_DeathRecipient_onBinderUnlinked)(void* cookie);

/** Null when the function is. */
AIBinder_DeathRecipient* AIBinder_DeathRecipient_new(
        AIBinder_DeathRecipient_onBinderDied onBinderDied) __attribute__((warn_unused_result));

/**
 * Called exactly once for each linkToDeath from now on, when its cookie is no longer needed: after
 * the recipient was called, after unlinkToDeath, after the recipient was deleted, or when
 * linkToDeath failed. Set before the first link.
 */
void AIBinder_DeathRecipient_setOnUnlinked(AIBinder_DeathRecipient* recipient,
                                           AIBinder_DeathRecipient_onBinderUnlinked onUnlinked);

/** Takes back all its links. A call of the recipient that has begun goes on. Null is fine. */
void AIBinder_DeathRecipient_delete(AIBinder_DeathRecipient* recipient);

/** Another binder that the service's owner has attached; `*outExt` is null when there is none. */
binder_status_t AIBinder_getExtension(AIBinder* binder, AIBinder** outExt);

/** Before a local binder is sent anywhere. Keeps a reference to `ext`. */
binder_status_t AIBinder_setExtension(AIBinder* binder, AIBinder* ext);

__END_DECLS
