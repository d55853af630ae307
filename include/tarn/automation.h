// Tarn for programs in C and in every language that can call C: objects by name, calls by name or
// by number, values, errors, windows that get messages, and the loop that serves them.
//
// Nothing is linked. A program loads a library of Tarn, asks it for the table of operations by the
// one function TarnGetAutomation, and calls through the table. tarn/load.h does the loading.
//
// Texts are zero-terminated 8-bit texts, UTF-8 by custom; nothing converts them. Numbers have 32
// bits. An operation that can fail gives TARN_OK or another TarnStatus, and LastError then tells
// why. No operation throws.
//
// Threads: an object belongs to the thread that created it, a window to the thread that made it,
// and that thread has to serve its loop. Operations may be used from any thread, with objects and
// windows of that thread. Only a wake handler is called from others.
//
// Growth: operations are added at the end of the table and fields at the end of structures that
// the library fills in; TARN_HAS asks whether a library has an operation. What changes the meaning
// of something gets a new version, and a library goes on giving tables of the old one.

#ifndef TARN_AUTOMATION_H
#define TARN_AUTOMATION_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

// The version that this header describes.
#define TARN_AUTOMATION_VERSION 1

// The classes of Tarn. The manager is also known by its class id.
#define TARN_PROJECT_MANAGER "TarnProjectManager.ProjectManager"
#define TARN_PROJECT_MANAGER_ID "{D9B8CA9D-D21F-48A2-8AC1-31865478798D}"
#define TARN_PROJECT_INSPECTOR "TarnProjectManager.ProjectInspector"
#define TARN_PROPERTY_MANAGER "TarnOptionsManager.PropertyManager"
#define TARN_TOOL_MANAGER "TarnToolManager.ToolManager"

// How an operation ended.
typedef enum TarnStatus {
  TARN_OK = 0,
  TARN_NO_OBJECT = 1,        // a null object, or none that runs
  TARN_UNKNOWN_MEMBER = 2,   // no method of that name or number
  TARN_WRONG_COUNT = 3,      // too few or too many arguments
  TARN_WRONG_TYPE = 4,       // an argument of another kind than the method takes, or of none
  TARN_NOT_IMPLEMENTED = 5,  // the method is known and does nothing yet
  TARN_FAILED = 6,           // the call did not reach the object's work
  TARN_NO_CLASS = 7,         // no such class, or it made no object
  TARN_BAD_CALL = 8          // a null pointer where there must be none
} TarnStatus;

typedef enum TarnKind {
  TARN_EMPTY = 0,  // as an argument: 0, no text or no object, whichever is wanted
  TARN_LONG = 1,
  TARN_TEXT = 2,
  TARN_OBJECT = 3
} TarnKind;

// A counted automation object.
typedef struct TarnObject TarnObject;

// A value on its way into a call or out of it. As an argument it borrows what it points to. As a
// result it owns it: ClearVariant gives it back.
typedef struct TarnVariant {
  int32_t kind;  // a TarnKind
  int32_t reserved;
  union {
    int32_t number;
    struct {
      const char* data;  // NULL is no text, which is another thing than an empty one
      size_t length;     // bytes in front of the terminating zero
    } text;
    TarnObject* object;  // may be NULL
  } as;
} TarnVariant;

// What went wrong in the last operation of a thread. Fields may be added at the end.
typedef struct TarnError {
  int32_t status;    // a TarnStatus
  int32_t argument;  // index of the argument that it went wrong at, or -1
  const char* text;  // for a person; empty when nothing went wrong; never NULL
} TarnError;

// A method of an object. Fields may be added at the end.
typedef struct TarnMethod {
  const char* name;
  int32_t id;
  int32_t result;         // a TarnKind; TARN_EMPTY for a method without a result
  int32_t argumentCount;  // of the two lists
  const char* const* argumentNames;
  const int32_t* argumentKinds;
} TarnMethod;

// A message to a window of the program. The answer goes back to the sender. Called on the thread
// that made the window, from inside other operations or from those that serve the loop; it may call
// every operation. What wParam and lParam point to lives only during the call.
typedef intptr_t (*TarnMessageHandler)(void* context, uint32_t message, intptr_t wParam,
                                       intptr_t lParam);

// Messages of the project manager to its host's window. "text" is the address of a zero-terminated
// text, never null; parameters that aren't named are 0. Only two answers are looked at: 0 to
// TARN_MSG_BUILD_STARTING and TARN_MSG_PROJECT_CLOSING refuses. So a host answers 1 to all others.
enum {
  TARN_MSG_COMMAND = 273,              // wParam: a command to carry out with Command, later
  TARN_MSG_SHOW_TIME_STAMPS = 0x2503,  // wParam, lParam: high and low part of a clicked time
  TARN_MSG_ANNOUNCE_WINDOW = 0x8005,   // wParam: window object, lParam: text that describes it
  TARN_MSG_CREATION_ENDED = 0x8006,    // wParam: text, the word for a project
  TARN_MSG_OPEN_FILE_AT_LINE =
      0x8008,                        // wParam: text, the file, lParam: line or its minus; 0: none
  TARN_MSG_RUN_SCRIPT = 0x8009,      // wParam: text of a script to run
  TARN_MSG_CREATE_TOOLBAR = 0x800B,  // wParam: text, a caption, lParam: text, XML
  TARN_MSG_BUILD_STARTING = 0x800C,  // a question
  TARN_MSG_WORKER_ENDED = 0x800D,    // wParam: 1 for success, lParam: text, the log file
  TARN_MSG_OPEN_FILE = 0x800F,       // wParam: text, the file, lParam: -1
  TARN_MSG_APPLICATION_ACTIVATED = 0x8010,  // wParam: text, its file, lParam: text, configuration
  TARN_MSG_CURRENT_NODE_CHANGED = 0x8011,   // wParam: text, path of the node, may be empty
  TARN_MSG_SHOW_POPUP_MENU = 0x8012,        // wParam: a point, lParam: text, name of the menu
  TARN_MSG_ADD_MAIN_MENU = 0x8013,          // wParam: text, a caption, lParam: text, XML
  TARN_MSG_PROJECT_OPENED = 0x8015,         // wParam: text, its file, lParam: 1 for the default one
  TARN_MSG_PROJECT_CLOSING = 0x8016,        // wParam: text, its file; a question
  TARN_MSG_PROJECT_CREATED = 0x8017,        // wParam: text, its file
  TARN_MSG_TOOL_SUCCEEDED = 0x8018,         // wParam: text, the output file
  TARN_MSG_PANE_CAPTION = 0x8019,           // wParam: text, a caption, lParam: number of the pane
  TARN_MSG_LOG_LINE = 0x801B,               // wParam: text
  TARN_MSG_OUTPUT_INVALID = 0x8021,         // wParam: text, the output file, lParam: -1
  TARN_MSG_APPLICATION_KNOWN = 0x8023,      // wParam: text, its file, lParam: text, configuration
  TARN_MSG_SHOW_HELP = 0x802D,              // wParam: text, the file
  // Of the tool manager:
  TARN_MSG_TOOL_STARTED = 0x8F01,  // wParam: text, an XML element: tool, files, output, command
  TARN_MSG_TOOL_ENDED = 0x8F02     // wParam: text, its messages as XML, lParam: 1 for success
};

// The operations. Lives as long as the library that gave it.
typedef struct TarnAutomation {
  uint32_t size;     // of this table in bytes; use TARN_HAS
  uint32_t version;  // TARN_AUTOMATION_VERSION

  // --- Objects ---

  // Makes an object of the class, named by ProgID or class id. `*object` has one reference, which
  // the caller gives back with Release; NULL when it fails. TARN_NO_CLASS, TARN_BAD_CALL.
  int32_t (*CreateObject)(const char* classId, TarnObject** object);
  // The object of the class, named by ProgID or class id, that runs in this process: the one that
  // was initialised last and not yet withdrawn. `*object` has a further reference, which the caller
  // gives back; NULL when it fails. TARN_NO_OBJECT, TARN_BAD_CALL.
  int32_t (*FindRunningObject)(const char* classId, TarnObject** object);
  // A further reference. NULL is fine.
  void (*AddReference)(TarnObject* object);
  // Gives a reference back; behind the last one the object is gone. NULL is fine. A project manager
  // holds itself from Init to Clean.
  void (*Release)(TarnObject* object);

  // --- Calls ---

  // The number of a method, whose name compares without regard to case. `*id` stays as it is when
  // it fails. TARN_UNKNOWN_MEMBER, TARN_NO_OBJECT, TARN_BAD_CALL.
  int32_t (*GetId)(TarnObject* object, const char* name, int32_t* id);
  // Calls a method by its number. `arguments` may be NULL when `count` is 0; all arguments have to
  // be there. `result` may be NULL; else what it held is overwritten, not given back, and it is
  // empty after a failure. The call lasts as long as the method's work; messages come meanwhile.
  // TARN_OK means that the method was called: whether it did its work says its result.
  // All but TARN_NO_CLASS.
  int32_t (*Invoke)(TarnObject* object, int32_t id, const TarnVariant* arguments, size_t count,
                    TarnVariant* result);
  // The same by name.
  int32_t (*InvokeByName)(TarnObject* object, const char* name, const TarnVariant* arguments,
                          size_t count, TarnVariant* result);
  // Tells `visit` of each method, in the order of the object's own table. What `method` points to
  // lives only during that call. TARN_NO_OBJECT, TARN_BAD_CALL, TARN_FAILED.
  int32_t (*ListMethods)(TarnObject* object, void (*visit)(void* context, const TarnMethod* method),
                         void* context);
  // Gives back what a result owns and leaves it empty. Only for what the library filled in, not for
  // arguments. NULL and empty ones are fine.
  void (*ClearVariant)(TarnVariant* result);
  // How the last operation of the calling thread that gives a TarnStatus ended. Never NULL; holds
  // until the thread's next operation. A text of more than 1000 bytes is cut.
  const TarnError* (*LastError)(void);

  // --- Windows ---

  // Makes a window, which is nothing but somebody who answers messages, on the calling thread. The
  // handle goes where a method wants one, such as the main frame of Init. Never 0; 0 when `handler`
  // is NULL or memory is out.
  int32_t (*AddWindow)(TarnMessageHandler handler, void* context);
  // From now on nothing reaches the handler, and the handle answers 0. On the window's thread, also
  // from inside its handler; a window of another thread, or of another part of the process, stays.
  void (*RemoveWindow)(int32_t window);

  // --- The loop of the calling thread ---

  // Serves what waits for the thread: work of builds, messages, timers. Returns at once; 1 when
  // there was anything, else 0.
  int32_t (*Pump)(void);
  // Serves until `done` gives something else than 0, at most so many milliseconds, and sleeps in
  // between. `done` is asked after whatever was served. 1 when it held, else 0.
  int32_t (*PumpUntil)(int32_t (*done)(void* context), void* context, int32_t milliseconds);
  // For a program with an event loop of its own: `wake` is called, from any thread, whenever there
  // is something to serve or a timer was set. It should only make that loop call Pump soon, and
  // calls no operation itself. One per thread; NULL removes it, and none runs any more behind this.
  void (*SetWakeHandler)(void (*wake)(void* context), void* context);
  // Milliseconds until Pump has a timer to serve; -1 without one. To be asked behind each wake and
  // each Pump.
  int32_t (*UntilNextTimer)(void);
} TarnAutomation;

// Whether the table has the operation: TARN_HAS(tarn, PumpUntil).
#define TARN_HAS(table, operation) \
  ((table)->size >= offsetof(TarnAutomation, operation) + sizeof((table)->operation))

// The one function that a library of Tarn exports for this: the table of a version, NULL when the
// library doesn't have it. May be called from any thread.
const TarnAutomation* TarnGetAutomation(uint32_t version);
typedef const TarnAutomation* (*TarnGetAutomationFunction)(uint32_t version);

// Arguments. What they point to has to live until the call is over.

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

// NULL is the null text.
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
