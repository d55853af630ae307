// C interface of Tarn, for C and for every language that can call C: creates automation objects by
// class name, calls their methods by name or by number, exchanges values and errors, receives
// window messages and runs the event loop of a thread.
//
// No link-time dependency. A program loads one of Tarn's libraries, obtains the table of operations
// from its function TarnGetAutomation, and makes all further calls through that table. tarn/load.h
// implements the loading.
//
// Calling sequence: TarnLoad, AddWindow if the program wants messages, CreateObject, then Invoke or
// InvokeByName; Pump or PumpUntil while builds run; ClearVariant for each result and Release for
// each object.
//
// Strings are zero-terminated 8-bit strings, UTF-8 by convention; the library never converts them.
// Integers have 32 bits. An operation that can fail returns TARN_OK or another TarnStatus; on
// error, LastError returns the details. No operation throws.
//
// Threads: an object belongs to the thread that created it, and so does a window; that thread has
// to run its event loop. Operations may be called from any thread, on objects and windows of that
// thread. Only a wake handler is called from other threads.
//
// Compatibility: new operations are added at the end of the table, and new fields at the end of the
// structures that the library fills in; TARN_HAS checks whether a library provides an operation. An
// incompatible change gets a new version number, and libraries continue to provide the tables of
// earlier versions.

#ifndef TARN_AUTOMATION_H
#define TARN_AUTOMATION_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

// Interface version described by this header.
#define TARN_AUTOMATION_VERSION 1

// ProgIDs of Tarn's classes. The manager can also be created by its class id.
#define TARN_PROJECT_MANAGER "TarnProjectManager.ProjectManager"
#define TARN_PROJECT_MANAGER_ID "{D9B8CA9D-D21F-48A2-8AC1-31865478798D}"
#define TARN_PROJECT_INSPECTOR "TarnProjectManager.ProjectInspector"
#define TARN_PROPERTY_MANAGER "TarnOptionsManager.PropertyManager"
#define TARN_TOOL_MANAGER "TarnToolManager.ToolManager"

// Result of an operation.
typedef enum TarnStatus {
  TARN_OK = 0,
  TARN_NO_OBJECT = 1,        // null object, or no running one
  TARN_UNKNOWN_MEMBER = 2,   // no method of that name or number
  TARN_WRONG_COUNT = 3,      // too few or too many arguments
  TARN_WRONG_TYPE = 4,       // an argument has the wrong kind or an invalid one
  TARN_NOT_IMPLEMENTED = 5,  // the method exists but is not implemented yet
  TARN_FAILED = 6,           // the call could not be completed, for example after an exception
  TARN_NO_CLASS = 7,         // no such class, or it created no object
  TARN_BAD_CALL = 8          // NULL for a required pointer
} TarnStatus;

typedef enum TarnKind {
  TARN_EMPTY = 0,  // as an argument: 0, NULL string or NULL object, as the parameter requires
  TARN_LONG = 1,
  TARN_TEXT = 2,
  TARN_OBJECT = 3
} TarnKind;

// A reference-counted automation object.
typedef struct TarnObject TarnObject;

// An argument or a result of a call. An argument borrows what it points to. A result owns it: the
// caller frees it with ClearVariant.
typedef struct TarnVariant {
  int32_t kind;  // a TarnKind
  int32_t reserved;
  union {
    int32_t number;
    struct {
      const char* data;  // NULL is the null string, which differs from an empty one
      size_t length;     // bytes before the terminating zero
    } text;
    TarnObject* object;  // may be NULL
  } as;
} TarnVariant;

// Error of the last operation of a thread. Later versions may add fields at the end.
typedef struct TarnError {
  int32_t status;    // a TarnStatus
  int32_t argument;  // index of the offending argument, or -1
  const char* text;  // message for the user; empty on success; never NULL
} TarnError;

// A method of an object. Later versions may add fields at the end.
typedef struct TarnMethod {
  const char* name;
  int32_t id;
  int32_t result;         // a TarnKind; TARN_EMPTY for a method without a result
  int32_t argumentCount;  // length of the two lists
  const char* const* argumentNames;
  const int32_t* argumentKinds;
} TarnMethod;

// Handles a message to a window of the program; the return value is passed back to the sender.
// Called on the thread that created the window, from inside other operations or from the operations
// that run the event loop; it may call any operation. Pointers passed in wParam and lParam are
// valid only during the call.
typedef intptr_t (*TarnMessageHandler)(void* context, uint32_t message, intptr_t wParam,
                                       intptr_t lParam);

// Messages of the project manager to its host's window. "string" means the address of a
// zero-terminated string, never null; unlisted parameters are 0. The manager evaluates only two
// results: 0 for TARN_MSG_BUILD_STARTING or TARN_MSG_PROJECT_CLOSING refuses the action. A host
// should return 1 for all other messages.
enum {
  TARN_MSG_COMMAND = 273,              // wParam: a command to run with Command, later
  TARN_MSG_SHOW_TIME_STAMPS = 0x2503,  // wParam, lParam: high and low half of a clicked time
  TARN_MSG_ANNOUNCE_WINDOW = 0x8005,   // wParam: window object, lParam: string, its description
  TARN_MSG_CREATION_ENDED = 0x8006,    // wParam: string, the word for a project
  TARN_MSG_OPEN_FILE_AT_LINE =
      0x8008,                    // wParam: string, the file, lParam: line or its negative; 0: none
  TARN_MSG_RUN_SCRIPT = 0x8009,  // wParam: string, a script to run
  TARN_MSG_CREATE_TOOLBAR = 0x800B,         // wParam: string, a caption, lParam: string, XML
  TARN_MSG_BUILD_STARTING = 0x800C,         // return 0 to refuse
  TARN_MSG_WORKER_ENDED = 0x800D,           // wParam: 1 on success, lParam: string, the log file
  TARN_MSG_OPEN_FILE = 0x800F,              // wParam: string, the file, lParam: -1
  TARN_MSG_APPLICATION_ACTIVATED = 0x8010,  // wParam: string, file, lParam: string, configuration
  TARN_MSG_CURRENT_NODE_CHANGED = 0x8011,   // wParam: string, path of the node, may be empty
  TARN_MSG_SHOW_POPUP_MENU = 0x8012,        // wParam: a point, lParam: string, name of the menu
  TARN_MSG_ADD_MAIN_MENU = 0x8013,          // wParam: string, a caption, lParam: string, XML
  TARN_MSG_PROJECT_OPENED = 0x8015,     // wParam: string, its file, lParam: 1 for the default one
  TARN_MSG_PROJECT_CLOSING = 0x8016,    // wParam: string, its file; return 0 to refuse
  TARN_MSG_PROJECT_CREATED = 0x8017,    // wParam: string, its file
  TARN_MSG_TOOL_SUCCEEDED = 0x8018,     // wParam: string, the output file
  TARN_MSG_PANE_CAPTION = 0x8019,       // wParam: string, a caption, lParam: number of the pane
  TARN_MSG_LOG_LINE = 0x801B,           // wParam: string
  TARN_MSG_OUTPUT_INVALID = 0x8021,     // wParam: string, the output file, lParam: -1
  TARN_MSG_APPLICATION_KNOWN = 0x8023,  // wParam: string, file, lParam: string, configuration
  TARN_MSG_SHOW_HELP = 0x802D,          // wParam: string, the file
  // Sent by the tool manager:
  TARN_MSG_TOOL_STARTED = 0x8F01,  // wParam: string, an XML element: tool, files, output, command
  TARN_MSG_TOOL_ENDED = 0x8F02     // wParam: string, its messages as XML, lParam: 1 on success
};

// Table of operations. Valid as long as the library that returned it stays loaded.
typedef struct TarnAutomation {
  uint32_t size;     // size of this table in bytes; use TARN_HAS
  uint32_t version;  // TARN_AUTOMATION_VERSION

  // --- Objects ---

  // Creates an object of the class named by ProgID or class id. On success `*object` holds one
  // reference, which the caller returns with Release; on error it is NULL. Errors: TARN_NO_CLASS,
  // TARN_BAD_CALL.
  int32_t (*CreateObject)(const char* classId, TarnObject** object);
  // Finds the running object of a class, named by ProgID or class id, in this process: the one
  // initialised last that has not been withdrawn. On success `*object` holds an additional
  // reference, which the caller returns with Release; on error it is NULL. Errors: TARN_NO_OBJECT,
  // TARN_BAD_CALL.
  int32_t (*FindRunningObject)(const char* classId, TarnObject** object);
  // Adds a reference. No-op for NULL.
  void (*AddReference)(TarnObject* object);
  // Releases a reference; the last one destroys the object. No-op for NULL. A project manager holds
  // a reference to itself from Init to Clean.
  void (*Release)(TarnObject* object);

  // --- Calls ---

  // Looks up the number of a method; method names are case-insensitive. `*id` is unchanged on
  // error. Errors: TARN_UNKNOWN_MEMBER, TARN_NO_OBJECT, TARN_BAD_CALL.
  int32_t (*GetId)(TarnObject* object, const char* name, int32_t* id);
  // Calls a method by its number. `arguments` may be NULL if `count` is 0; no argument is optional.
  // `result` may be NULL; otherwise it is overwritten without being freed first, and it is empty on
  // error. The call blocks until the method returns; the program receives messages in the meantime.
  // TARN_OK means only that the method was called; its result reports whether it succeeded. Errors:
  // all except TARN_NO_CLASS.
  int32_t (*Invoke)(TarnObject* object, int32_t id, const TarnVariant* arguments, size_t count,
                    TarnVariant* result);
  // Like Invoke, but finds the method by name.
  int32_t (*InvokeByName)(TarnObject* object, const char* name, const TarnVariant* arguments,
                          size_t count, TarnVariant* result);
  // Calls `visit` for each method, in the order of the object's own table. `*method` is valid only
  // during that call. Errors: TARN_NO_OBJECT, TARN_BAD_CALL, TARN_FAILED.
  int32_t (*ListMethods)(TarnObject* object, void (*visit)(void* context, const TarnMethod* method),
                         void* context);
  // Frees the string or releases the object owned by a result, and sets it to empty. Only for
  // values filled in by the library, not for arguments. No-op for NULL and for empty values.
  void (*ClearVariant)(TarnVariant* result);
  // Returns the outcome of the calling thread's last operation that returned a TarnStatus. Never
  // NULL; valid until the thread's next operation. Messages are truncated to 1000 bytes.
  const TarnError* (*LastError)(void);

  // --- Windows ---

  // Creates a message-only window on the calling thread. The returned handle can be passed to
  // methods that expect a window, such as the main frame of Init. Returns 0 if `handler` is NULL or
  // memory is exhausted; a valid handle is never 0.
  int32_t (*AddWindow)(TarnMessageHandler handler, void* context);
  // Removes a window: its handler is not called again, and messages to the handle return 0. Must be
  // called on the window's thread; calling it from inside the handler is allowed. No-op for a
  // window of another thread or one that another part of the process created.
  void (*RemoveWindow)(int32_t window);

  // --- The loop of the calling thread ---

  // Runs the thread's pending work (build steps, messages, timers) without blocking. Returns 1 if
  // there was any, otherwise 0.
  int32_t (*Pump)(void);
  // Runs the event loop until `done` returns non-zero, for at most `milliseconds`, and sleeps while
  // there is nothing to do. `done` is checked before the first and after each round of Pump.
  // Returns 1 if `done` returned non-zero, otherwise 0.
  int32_t (*PumpUntil)(int32_t (*done)(void* context), void* context, int32_t milliseconds);
  // For programs with an event loop of their own: `wake` is called, on any thread, whenever work
  // becomes pending or a timer is set. It should only make that event loop call Pump soon; it must
  // not call any operation itself. One handler per thread; NULL removes it, and it is not running
  // any more when this returns.
  void (*SetWakeHandler)(void (*wake)(void* context), void* context);
  // Returns the milliseconds until Pump has a timer to run, or -1 if there is none. Query it after
  // each wake and after each Pump.
  int32_t (*UntilNextTimer)(void);
} TarnAutomation;

// Non-zero if the table has the operation: TARN_HAS(tarn, PumpUntil).
#define TARN_HAS(table, operation) \
  ((table)->size >= offsetof(TarnAutomation, operation) + sizeof((table)->operation))

// The entry point exported by Tarn's libraries. Returns the table of the requested version, or NULL
// if the library does not support it. May be called from any thread.
const TarnAutomation* TarnGetAutomation(uint32_t version);
typedef const TarnAutomation* (*TarnGetAutomationFunction)(uint32_t version);

// Argument constructors. They don't copy: the string or object must stay valid until the call
// returns.

static inline TarnVariant TarnEmpty(void) {
  TarnVariant value;
  value.kind = TARN_EMPTY;
  value.reserved = 0;
  value.as.text.data = NULL;
  value.as.text.length = 0;
  return value;
}

static inline TarnVariant TarnLong(int32_t number) {
  TarnVariant value = TarnEmpty();
  value.kind = TARN_LONG;
  value.as.number = number;
  return value;
}

// NULL yields the null string.
static inline TarnVariant TarnText(const char* text) {
  TarnVariant value = TarnEmpty();
  value.kind = TARN_TEXT;
  value.as.text.data = text;
  if (text != NULL) {
    while (text[value.as.text.length] != '\0') ++value.as.text.length;
  }
  return value;
}

static inline TarnVariant TarnObjectOf(TarnObject* object) {
  TarnVariant value = TarnEmpty();
  value.kind = TARN_OBJECT;
  value.as.object = object;
  return value;
}

#ifdef __cplusplus
}  // extern "C"
#endif

#endif  // TARN_AUTOMATION_H
