"""A client of `tarn serve` that shares nothing with it: frames, JSON-RPC, a project to work on."""

import json
import os
import queue
import shutil
import signal
import subprocess
import tempfile
import threading
import time

LIMIT = 60  # seconds; exceeded only if something hangs


def frame(document):
    body = document if isinstance(document, bytes) else json.dumps(document).encode()
    return b"Content-Length: %d\r\n\r\n" % len(body) + body


class Ended(Exception):
    """The server closed its output."""


class RpcError(Exception):
    def __init__(self, error):
        super().__init__(error["message"])
        self.code = error["code"]
        self.text = error["message"]


class Client:
    """A running server. `answers` maps a question's name to a function of its params."""

    def __init__(self, program, environment, folder, answers=None):
        # The server's output goes through a separate process: when that ends, the pipe has no
        # reader.
        self.relay = subprocess.Popen(["cat"], stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        self.answers = answers or {}
        self.transcript = []  # params of host/message, in order
        self.questions = []  # methods and params of the server's questions
        self.heard = []  # both of them, in order
        self.process = subprocess.Popen(
            [program, "serve"], stdin=subprocess.PIPE, stdout=self.relay.stdin,
            env=environment, cwd=folder)
        self.relay.stdin.close()
        self.incoming = queue.Queue()
        self.responses = {}
        self.last_id = 0
        self.reader = threading.Thread(target=self._read, daemon=True)
        self.reader.start()

    def _read(self):
        out = self.relay.stdout
        while True:
            length = None
            while True:
                line = out.readline()
                if not line:
                    self.incoming.put(None)
                    return
                if line == b"\r\n":
                    break
                name, value = line.split(b":")
                if name == b"Content-Length":
                    length = int(value)
            # Strict: invalid UTF-8 or JSON ends the test.
            body = out.read(length)
            if len(body) == length:
                self.incoming.put(json.loads(body.decode("utf-8")))

    def send(self, document):
        self.send_bytes(frame(document))

    def send_bytes(self, data):
        self.process.stdin.write(data)
        self.process.stdin.flush()

    def next(self):
        """The next message of the server that is no question it can answer by itself."""
        while True:
            message = self.incoming.get(timeout=LIMIT)
            if message is None:
                raise Ended()
            if isinstance(message, list) or "method" not in message:
                return message
            self.heard.append((message["method"], message["params"]))
            if message["method"] == "host/message":
                self.transcript.append(message["params"])
                return message
            self.questions.append((message["method"], message["params"]))
            if message["method"] not in self.answers:
                return message
            answer = self.answers[message["method"]](message["params"])
            self.send({"jsonrpc": "2.0", "id": message["id"], "result": answer})

    def post(self, method, params=None):
        """Sends a request and gives its id."""
        self.last_id += 1
        request = {"jsonrpc": "2.0", "id": self.last_id, "method": method}
        if params is not None:
            request["params"] = params
        self.send(request)
        return self.last_id

    def wait(self, request_id):
        while request_id not in self.responses:
            message = self.next()
            if isinstance(message, dict) and "method" not in message:
                assert message["id"] not in self.responses, "answered twice"
                self.responses[message["id"]] = message
        response = self.responses[request_id]
        if "error" in response:
            raise RpcError(response["error"])
        return response["result"]

    def call(self, method, *params):
        return self.wait(self.post(method, list(params)))

    def wait_message(self, name, count=1):
        """Waits for so many host messages that came since the transcript was last cleared."""
        while sum(each["name"] == name for each in self.transcript) < count:
            message = self.next()
            if isinstance(message, dict) and "method" not in message:
                self.responses[message["id"]] = message
        return [each for each in self.transcript if each["name"] == name][-1]

    def wait_question(self):
        while True:
            message = self.next()
            if isinstance(message, dict) and "method" in message and "id" in message:
                return message

    def end(self):
        """Closes the input and gives the exit code."""
        self.process.stdin.close()
        return self.process.wait(LIMIT)

    def stop_reading(self):
        self.relay.kill()

    def kill(self):
        for process in (self.process, self.relay):
            process.kill()
            process.wait()
        self.reader.join()
        self.relay.stdout.close()
        try:
            self.process.stdin.close()
        except BrokenPipeError:
            pass


class Project:
    """A folder for a project that is built with this machine's compiler, and an environment in
    which the server sees nothing of the user's."""

    def __init__(self, source_dir):
        self.root = tempfile.mkdtemp(prefix="tarn-serve-")
        self.folder = os.path.join(self.root, "work")
        self.data = os.path.join(self.root, "data")
        self.share = os.path.join(source_dir, "share") + "/"
        os.makedirs(os.path.join(self.folder, "src"))
        os.makedirs(os.path.join(self.root, "bin"))
        self.environment = dict(
            os.environ, TARN_ROOT=self.share, TARN_SETTINGS=os.path.join(self.root, "settings"),
            XDG_DATA_HOME=self.data, TMPDIR=self.root,
            PATH=os.path.join(self.root, "bin") + ":" + os.environ["PATH"])
        self.write("src/a.c", "int a(void) { return 1; }\n")
        self.write("src/b.c", "int a(void);\nint main(void) { return a() - 1; }\n")

    def write(self, name, text):
        path = self.path(name)
        with open(path, "w", newline="") as file:
            file.write(text)
        old = time.time() - 3600
        os.utime(path, (old, old))

    def write_project(self, name="demo", sources=("a.c", "b.c")):
        """The files of a project with one application, as a save leaves them."""
        option = ('<Config Header="Standard" ><Set Header="Application" ><Section Header="Target" >'
                  '<Property Header="Toolchain" Removable="Yes" Value="host-gcc" />'
                  '</Section></Set></Config>')
        files = "".join('<C Header="%s" Path=".\\src\\%s" />' % (each, each) for each in sources)
        self.write(name + ".tprj",
                   '\r\n<Project Header="Project \'%s\'" Path=".\\%s.tprj" Project="Yes" '
                   'ActiveApp="app" ><Application Header="app" Extern=".\\app.tapp" '
                   'Path=".\\app.tapp" /></Project>' % (name, name))
        self.write("app.tapp",
                   '\r\n<Application Header="app" Extern=".\\app.tapp" Path=".\\app.tapp" >'
                   '<Options>%s</Options><Group Header="Sources" >%s</Group></Application>'
                   % (option, files))
        return self.path(name + ".tprj")

    def path(self, name):
        return os.path.join(self.folder, name)

    def add_compiler(self, script):
        self.add_program("gcc", script)

    def add_program(self, name, script):
        path = os.path.join(self.root, "bin", name)
        with open(path, "w") as file:
            file.write("#!/bin/sh\n" + script)
        os.chmod(path, 0o755)

    def slow_compiler(self):
        """A compiler that starts a child for b.c and waits for it."""
        self.add_compiler('case "$*" in *b.c*) sleep 60 & echo $! > "$TMPDIR/child"; wait ;; esac\n'
                          'exec /usr/bin/gcc "$@"\n')

    def wait_child(self):
        path = os.path.join(self.root, "child")
        end = time.time() + LIMIT
        while time.time() < end:
            if os.path.exists(path):
                with open(path) as file:
                    text = file.read()
                if text.endswith("\n"):
                    return int(text)
            time.sleep(0.01)
        raise AssertionError("the compiler never started")

    def remove(self):
        shutil.rmtree(self.root, ignore_errors=True)


def is_running(process_id):
    """False also for one that has ended and that nobody has asked for its exit code."""
    try:
        with open("/proc/%d/stat" % process_id) as file:
            return file.read().rsplit(")", 1)[1].split()[0] != "Z"
    except (FileNotFoundError, ProcessLookupError):
        return False


def wait_gone(process_id, seconds):
    """How long it took until the process was gone; fails when it took longer than told."""
    start = time.time()
    while is_running(process_id):
        if time.time() - start > seconds:
            os.kill(process_id, signal.SIGKILL)
            raise AssertionError("%d still runs after %.1f s" % (process_id, seconds))
        time.sleep(0.01)
    return time.time() - start
