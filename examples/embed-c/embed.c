// A host in plain C: opens a project, lists what its active application is made of, builds it and
// shows the log. It links nothing of Tarn; the server is found by its name when the program runs,
// once `tarn register` has made it known.
//
//   embed-c PROJECT.tprj [APPLICATION_PATH]
//
// APPLICATION_PATH is the folder of the installed data, with a separator at its end; without it
// the server looks beside its own library. Ends with 0 after a successful build.

#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <tarn/load.h>

enum {
  kMethodGetSelectedApplication = 26,  // numbers of methods never change
  kMethodInitToolManager = 17,
  kCommandBuildAll = 0x8112,
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

// Calls a method that answers with a number; 0 when the call fails, with the reason on stderr.
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

// Whether a method of the inspector that names what is wrong answers with an empty text; else the
// answer goes to stderr.
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

// What a tool has reported of its output, its headers for example, goes to the project.
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

// Prints a reference of XML as the character that it stands for, and returns its length; 0 for
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

// Prints the lines of a tool: the element "header" of each message.
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

// Texts live only during the call; whoever needs them longer copies them.
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
  return 1;  // agreed: 0 would refuse a build or a close
}

static int32_t HasWorkerEnded(void* context) {
  return ((Host*)context)->hasWorkerEnded;
}

// Makes the server and a tool manager, brings the two together, and makes sure that the
// installation is whole: with a part of it missing every project would seem to be built. A project
// that was read only in part is not to be built, either.
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
  if (host->tarn->Invoke(host->manager, kMethodInitToolManager, &tools, 1, NULL) != TARN_OK) {
    return 0;
  }
  manager = TarnObjectOf(host->manager);
  if (CallLong(host, host->inspector, "Attach", &manager, 1) == 0) return 0;
  protect = TarnLong(1);
  CallLong(host, host->inspector, "ProtectDamaged", &protect, 1);
  return HasNoProblem(host, "GetInstallationProblem");
}

// The object that others of this process find is the one that was made.
static int FindsItself(const Host* host) {
  TarnObject* running = NULL;
  int isSame = 0;
  host->tarn->FindRunningObject(TARN_PROJECT_MANAGER_ID, &running);
  isSame = running == host->manager;
  host->tarn->Release(running);
  return isSame;
}

// Makes the options of every node known now; else that happens in front of a build.
static void PublishAll(const Host* host) {
  CallLong(host, host->inspector, "PublishAll", NULL, 0);
}

static void ShowApplication(const Host* host) {
  const TarnVariant separator = TarnText("\n  ");
  TarnVariant result;
  if (host->tarn->Invoke(host->manager, kMethodGetSelectedApplication, NULL, 0, &result) ==
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

// Errors have a kind, a text and a place.
static void ShowError(const Host* host) {
  const TarnVariant wrong = TarnText("build");
  const int32_t status = host->tarn->InvokeByName(host->manager, "Command", &wrong, 1, NULL);
  const TarnError* error = host->tarn->LastError();
  printf("a wrong call: status %d, argument %d: %s\n", (int)status, (int)error->argument,
         error->text);
}

static int Build(Host* host) {
  if (CallWithNumber(host, "PrologCommand", kCommandBuildAll) == 0) return 0;
  // 2: the work goes on in the background, and needs this thread to serve its loop.
  if (CallWithNumber(host, "Command", kCommandBuildAll) == 2) {
    host->tarn->PumpUntil(HasWorkerEnded, host, kLongestWait);
  }
  CallWithNumber(host, "EpilogCommand", kCommandBuildAll);
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
  // A build passes over what nothing says how to build.
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
  // The manager uses the tools to its end, and tells the window of it.
  host.tarn->Release(host.manager);
  host.tarn->Release(host.tools);
  host.tarn->RemoveWindow(window);
  return isDone ? 0 : 1;
}
