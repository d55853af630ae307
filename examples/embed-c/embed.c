// A host in plain C: opens a project, lists the inputs of its active application, builds it and
// shows the log. It links no library of Tarn; the server is found at run time by its registered
// name, so `tarn register` must have been run.
//
//   embed-c PROJECT.tprj [APPLICATION_PATH]
//
// APPLICATION_PATH is the folder of the installed data, with a trailing separator; by default the
// server searches next to its own library. Exits with 0 after a successful build.

#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <tarn/commands.h>
#include <tarn/load.h>
#include <tarn/methods.h>

enum {
  kLongestWait = 60 * 1000  // milliseconds
};

typedef struct Host {
  const TarnAutomation* tarn;
  TarnObject* manager;
  TarnObject* tools;
  TarnObject* inspector;
  int hasWorkerEnded;
  int hasSucceeded;
} Host;

// Calls a method that returns a number. Returns 0 and prints the reason on stderr if the call
// fails.
static int32_t CallLong(const Host* host, TarnObject* object, const char* method,
                        const TarnVariant* arguments, size_t count) {
  TarnVariant result;
  int32_t number = 0;
  if (host->tarn->InvokeByName(object, method, arguments, count, &result) != TARN_OK) {
    fprintf(stderr, "%s: %s\n", method, host->tarn->LastError()->text);
    return 0;
  }
  if (result.kind == TARN_LONG) number = result.as.number;
  host->tarn->ClearVariant(&result);
  return number;
}

// Calls a method of the inspector that describes a problem. Returns true if the result is an empty
// string; otherwise prints it on stderr.
static int HasNoProblem(const Host* host, const char* method) {
  TarnVariant result;
  int isEmpty = 0;
  if (host->tarn->InvokeByName(host->inspector, method, NULL, 0, &result) != TARN_OK) {
    fprintf(stderr, "%s: %s\n", method, host->tarn->LastError()->text);
    return 0;
  }
  isEmpty = result.kind == TARN_TEXT && result.as.text.data[0] == '\0';
  if (!isEmpty && result.kind == TARN_TEXT) fprintf(stderr, "embed-c: %s\n", result.as.text.data);
  host->tarn->ClearVariant(&result);
  return isEmpty;
}

static int32_t CallWithNumber(const Host* host, const char* method, int32_t number) {
  const TarnVariant argument = TarnLong(number);
  return CallLong(host, host->manager, method, &argument, 1);
}

// Passes a tool's report about its output, such as the headers used, to the project.
static void HandOnReports(const Host* host) {
  TarnVariant arguments[2];
  TarnVariant report;
  if (host->tarn->InvokeByName(host->tools, "TakeBuildInformation", NULL, 0, &report) != TARN_OK) {
    return;
  }
  arguments[0] = TarnText("");
  arguments[1] = report;
  CallLong(host, host->manager, "SetBuildInfo", arguments, 2);
  host->tarn->ClearVariant(&report);
}

static void PrintUtf8(unsigned long character) {
  int shift = character < 0x80 ? 0 : character < 0x800 ? 6 : character < 0x10000 ? 12 : 18;
  const unsigned long lead = shift == 0 ? 0 : shift == 6 ? 0xC0 : shift == 12 ? 0xE0 : 0xF0;
  fputc((int)(lead | character >> shift), stderr);
  while ((shift -= 6) >= 0) fputc((int)(0x80 | (character >> shift & 0x3F)), stderr);
}

// Prints the character of an XML reference and returns the length of the reference; returns 0 for
// anything else.
static size_t PrintReference(const char* text) {
  static const char* const kNames[] = {"&lt;", "&gt;", "&amp;"};
  size_t i;
  for (i = 0; i < 3; ++i) {
    if (strncmp(text, kNames[i], strlen(kNames[i])) != 0) continue;
    fputc("<>&"[i], stderr);
    return strlen(kNames[i]);
  }
  if (strncmp(text, "&#", 2) == 0) {
    char* end = NULL;
    const unsigned long character = strtoul(text + 2, &end, 10);
    if (*end == ';') {
      PrintUtf8(character);
      return (size_t)(end + 1 - text);
    }
  }
  return 0;
}

// Prints a tool's lines: the element "header" of each message.
static void PrintMessages(const char* xml) {
  static const char kHeader[] = "<header>";
  const char* at = xml;
  while ((at = strstr(at, kHeader)) != NULL) {
    at += strlen(kHeader);
    while (*at != '\0' && *at != '<') {
      const size_t length = PrintReference(at);
      if (length == 0) fputc(*at, stderr);
      at += length == 0 ? 1 : length;
    }
    fputc('\n', stderr);
  }
}

// Strings are valid during the call only; a receiver that needs them longer must copy them.
static intptr_t OnMessage(void* context, uint32_t message, intptr_t wParam, intptr_t lParam) {
  Host* host = (Host*)context;
  switch (message) {
    case TARN_MSG_PROJECT_OPENED:
      printf("opened %s\n", (const char*)wParam);
      break;
    case TARN_MSG_LOG_LINE:
      printf("log: %s\n", (const char*)wParam);
      break;
    case TARN_MSG_TOOL_SUCCEEDED:
      HandOnReports(host);
      break;
    case TARN_MSG_TOOL_ENDED:
      if (lParam == 0) PrintMessages((const char*)wParam);
      break;
    case TARN_MSG_WORKER_ENDED:
      host->hasWorkerEnded = 1;
      host->hasSucceeded = wParam != 0;
      break;
    default:
      break;
  }
  return 1;  // consent: 0 would refuse a build or a close
}

static int32_t HasWorkerEnded(void* context) {
  return ((Host*)context)->hasWorkerEnded;
}

// Creates the server and a tool manager, connects them, and checks that the installation is
// complete: if a part is missing, every project would appear to be built. Also makes the server
// refuse to build a project that could be read only partially.
static int Start(Host* host, int32_t window, const char* applicationPath) {
  TarnVariant init[3];
  TarnVariant tools;
  TarnVariant manager;
  TarnVariant protect;
  if (host->tarn->CreateObject(TARN_PROJECT_MANAGER, &host->manager) != TARN_OK ||
      host->tarn->CreateObject(TARN_TOOL_MANAGER, &host->tools) != TARN_OK ||
      host->tarn->CreateObject(TARN_PROJECT_INSPECTOR, &host->inspector) != TARN_OK) {
    fprintf(stderr, "embed-c: %s\n", host->tarn->LastError()->text);
    return 0;
  }
  init[0] = TarnText(applicationPath);
  init[1] = TarnText(NULL);
  init[2] = TarnLong(window);
  if (CallLong(host, host->manager, "Init", init, 3) == 0) {
    fprintf(stderr, "embed-c: the installation isn't complete\n");
    return 0;
  }
  if (CallLong(host, host->tools, "InitTools", init, 3) == 0) return 0;
  tools = TarnObjectOf(host->tools);
  if (host->tarn->Invoke(host->manager, TARN_PM_INIT_TOOL_MANAGER, &tools, 1, NULL) != TARN_OK) {
    return 0;
  }
  manager = TarnObjectOf(host->manager);
  if (CallLong(host, host->inspector, "Attach", &manager, 1) == 0) return 0;
  protect = TarnLong(1);
  CallLong(host, host->inspector, "ProtectDamaged", &protect, 1);
  return HasNoProblem(host, "GetInstallationProblem");
}

// Returns true if other code of this process would find the object that was created here.
static int FindsItself(const Host* host) {
  TarnObject* running = NULL;
  int isSame = 0;
  host->tarn->FindRunningObject(TARN_PROJECT_MANAGER_ID, &running);
  isSame = running == host->manager;
  host->tarn->Release(running);
  return isSame;
}

// Publishes the options of every node now; otherwise that happens before a build.
static void PublishAll(const Host* host) {
  CallLong(host, host->inspector, "PublishAll", NULL, 0);
}

static void ShowApplication(const Host* host) {
  const TarnVariant separator = TarnText("\n  ");
  TarnVariant result;
  if (host->tarn->Invoke(host->manager, TARN_PM_GET_SELECTED_APPLICATION, NULL, 0, &result) ==
      TARN_OK) {
    printf("application %s\n", result.as.text.data);
    host->tarn->ClearVariant(&result);
  }
  if (host->tarn->InvokeByName(host->manager, "GetSelectedFilesList", &separator, 1, &result) ==
      TARN_OK) {
    printf("made of\n  %s\n", result.as.text.data);
    host->tarn->ClearVariant(&result);
  }
}

// Demonstrates errors, which have a kind, a text and a position.
static void ShowError(const Host* host) {
  const TarnVariant wrong = TarnText("build");
  const int32_t status = host->tarn->InvokeByName(host->manager, "Command", &wrong, 1, NULL);
  const TarnError* error = host->tarn->LastError();
  printf("a wrong call: status %d, argument %d: %s\n", (int)status, (int)error->argument,
         error->text);
}

static int Build(Host* host) {
  if (CallWithNumber(host, "PrologCommand", TARN_CMD_BUILD_ALL) == 0) return 0;
  // 2: the work continues in the background, and this thread must run its message loop.
  if (CallWithNumber(host, "Command", TARN_CMD_BUILD_ALL) == 2) {
    host->tarn->PumpUntil(HasWorkerEnded, host, kLongestWait);
  }
  CallWithNumber(host, "EpilogCommand", TARN_CMD_BUILD_ALL);
  return host->hasSucceeded;
}

static int Work(Host* host, const char* project) {
  const TarnVariant path = TarnText(project);
  int isBuilt = 0;
  printf("the running object is this one: %s\n", FindsItself(host) ? "yes" : "no");
  if (CallLong(host, host->manager, "ProjectOpen", &path, 1) == 0) {
    fprintf(stderr, "embed-c: %s can't be opened\n", project);
    return 0;
  }
  PublishAll(host);
  ShowApplication(host);
  ShowError(host);
  // A build skips files without a build rule.
  isBuilt = Build(host) && HasNoProblem(host, "GetBuildProblem");
  printf("built: %s\n", isBuilt ? "yes" : "no");
  return isBuilt;
}

int main(int argc, char** argv) {
  Host host;
  char reason[1024];
  int32_t window = 0;
  int isDone = 0;
  if (argc < 2 || argc > 3) {
    fprintf(stderr, "usage: embed-c PROJECT.tprj [APPLICATION_PATH]\n");
    return 2;
  }
  memset(&host, 0, sizeof host);
  host.tarn = TarnLoad(TARN_PROJECT_MANAGER, reason, sizeof reason);
  if (host.tarn == NULL) {
    fprintf(stderr, "embed-c: %s\n", reason);
    return 1;
  }
  window = host.tarn->AddWindow(OnMessage, &host);
  if (Start(&host, window, argc == 3 ? argv[2] : NULL)) {
    isDone = Work(&host, argv[1]);
    CallLong(&host, host.manager, "Clean", NULL, 0);
  }
  host.tarn->Release(host.inspector);
  // The manager uses the tools until it is destroyed, and notifies the window of that.
  host.tarn->Release(host.manager);
  host.tarn->Release(host.tools);
  host.tarn->RemoveWindow(window);
  return isDone ? 0 : 1;
}
