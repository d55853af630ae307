"""Drives `tarn serve` from outside: serve_test.py PROGRAM SOURCE_DIR [unittest arguments]."""

import os
import re
import shutil
import signal
import subprocess
import sys
import time
import unittest

from rpc_client import Client, Ended, Project, RpcError, frame, is_running, wait_gone

PROGRAM = os.path.abspath(sys.argv[1])
SOURCE_DIR = os.path.abspath(sys.argv[2])



def read_numbers(header):
    """Reads the constants of a public header."""
    with open(os.path.join(SOURCE_DIR, "include/tarn", header), encoding="utf-8") as source:
        return {name: int(value, 0) for name, value in
                re.findall(r"^  (TARN_\w+)\s*=\s*(\w+)", source.read(), re.MULTILINE)}


COMMANDS = read_numbers("commands.h")
MESSAGES = read_numbers("automation.h")
APPLY = COMMANDS["TARN_CMD_APPLY_OPTION_AND_REBUILD"]
REBUILD = COMMANDS["TARN_CMD_REBUILD_ALL"]
BUILD = COMMANDS["TARN_CMD_BUILD_ALL"]
CLEAN = COMMANDS["TARN_CMD_CLEAN_ALL"]
BUILD_NODE = COMMANDS["TARN_CMD_BUILD_NODE"]
STOP = COMMANDS["TARN_CMD_STOP"]
STOP_PUBLISHING = COMMANDS["TARN_CMD_STOP_PUBLISHING"]
BUILD_STARTING = MESSAGES["TARN_MSG_BUILD_STARTING"]
PROJECT_CLOSING = MESSAGES["TARN_MSG_PROJECT_CLOSING"]
INITIALIZE = {"jsonrpc": "2.0", "id": 1, "method": "initialize", "params": {}}
EXIT = {"jsonrpc": "2.0", "method": "exit"}


def request(number, method, *params):
    return {"jsonrpc": "2.0", "id": number, "method": method, "params": list(params)}


class ServeTest(unittest.TestCase):
    trusts = None  # the client trusts every project

    def setUp(self):
        self.project = Project(SOURCE_DIR)
        self.addCleanup(self.project.remove)

    def start(self, answers=None, initialize=True):
        client = Client(PROGRAM, self.project.environment, self.project.folder, answers)
        self.addCleanup(client.kill)
        if initialize:
            client.wait(client.post("initialize", {
                "applicationPath": self.project.share, "dataPath": self.project.data,
                "answers": list(answers or {}), "trust": self.trusts}))
        return client

    def open(self, answers=None):
        client = self.start(answers)
        self.assertEqual(client.call("ProjectOpen", self.project.write_project()), 1)
        client.transcript.clear()
        return client

    def start_build(self, client, command=BUILD):
        client.transcript.clear()
        self.assertEqual(client.call("PrologCommand", command), 1)
        self.assertEqual(client.call("Command", command), 2)

    def build(self, client, command=BUILD):
        """Builds, and gives whether that went well and the names of the files that tools made."""
        self.start_build(client, command)
        success = client.wait_message("WorkerEnded")["wParam"]
        client.call("EpilogCommand", command)
        made = [os.path.basename(each["wParam"]) for each in client.transcript
                if each["name"] == "ToolSucceeded"]
        return success, made

    def shorten(self, transcript):
        """One line a message: name and parameters, without what differs from run to run."""
        lines = []
        for each in transcript:
            values = []
            for value in (each["wParam"], each["lParam"]):
                if isinstance(value, str):
                    value = value.replace(self.project.folder, "").strip()
                    if value.startswith("<") or value.endswith(".xml"):
                        value = "..."
                values.append(str(value))
            lines.append(" ".join([each["name"]] + values))
        return lines

    def errors(self, client, *calls):
        found = []
        for method, params in calls:
            try:
                client.wait(client.post(method, params))
                found.append(None)
            except RpcError as error:
                found.append(error.code)
        return found


class Session(ServeTest):
    maxDiff = None

    """A project from its beginning to its second opening, with all that the host hears of it."""

    def told(self, value):
        """A value as the expected text has it: its first line, without what differs by the run."""
        if value is None or isinstance(value, int):
            return str(value)
        for place, name in ((self.project.folder, "."), (self.project.root, "..")):
            value = value.replace(place + "/", name + "/")
        return "'%s'" % re.sub(r"\$opj\w+", "$opj", value.strip().split("\n")[0].strip())

    def tell(self, client, method, *params, until=()):
        """Makes a call, waits for what is to be heard of it, and gives both as lines."""
        client.heard.clear()
        client.transcript.clear()
        result = client.call(method, *params)
        for name, count in until:
            client.wait_message(name, count)
        client.call("EnableCommand", STOP)  # posted messages arrive before this result
        words = [hex(each) if isinstance(each, int) else self.told(each) for each in params]
        lines = ["%s(%s) -> %s" % (method, ", ".join(words), self.told(result))]
        return lines + self.list_heard(client)

    def list_heard(self, client):
        lines = []
        for name, params in client.heard:
            words = [params.get("name", "")] if name == "host/message" else [name]
            words += [self.told(params[key]) for key in ("wParam", "lParam") if key in params]
            lines.append("    " + " ".join(words))
        return lines

    def tell_build(self, client, command, until):
        return (self.tell(client, "PrologCommand", command)
                + self.tell(client, "Command", command, until=until))

    def test_everything_is_told_to_the_host_in_order(self):
        client = self.start({"host/ask": lambda params: 1,
                             "host/wizard": lambda params: {"applicationName": "app"}})
        path = self.project.path("demo.tprj")
        ended = [("WorkerEnded", 1)]
        known = [("Command", 1)]  # last notification about options after opening
        lines = ["initialize"] + self.list_heard(client)
        for step in (("ProjectNew", path), ("ProjectOpen", path),
                     ("AddNewItem", None, "Application"),
                     ("SavePropertyValue", "Application", "Target", "Toolchain", "host-gcc"),
                     ("Command", APPLY), ("AddNewItem", None, "Group"),
                     ("AddExistingItem", self.project.path("src/a.c"), None),
                     ("AddExistingItem", self.project.path("src/b.c"), None),
                     ("SavePropertyValue", "C", "Compiler", "Defines", "ANSWER=42"),
                     ("Command", APPLY)):
            lines += self.tell(client, *step, until=known if step[0] == "ProjectOpen" else ())
        lines += self.tell_build(client, BUILD, ended)
        lines += self.tell(client, "EpilogCommand", BUILD)

        self.project.slow_compiler()
        lines += self.tell_build(client, REBUILD, [("ToolStarted", 2)])
        self.project.wait_child()
        lines += self.tell(client, "Command", STOP, until=ended)
        lines += self.tell(client, "EpilogCommand", REBUILD)
        lines += self.tell(client, "ProjectSave", until=known) + self.tell(client, "ProjectClose")
        self.assertIsNone(client.call("shutdown"))
        client.send(EXIT)
        self.assertEqual(client.end(), 0)

        self.project.add_compiler('exec /usr/bin/gcc "$@"\n')
        client = self.start({"host/ask": lambda params: 1})
        lines += self.tell(client, "ProjectOpen", path, until=known)
        lines += self.tell(client, "GetSelectedApplication")
        for _ in range(2):
            lines += self.tell_build(client, BUILD, ended)
            lines += self.tell(client, "EpilogCommand", BUILD)
        with open(os.path.join(os.path.dirname(__file__), "session.txt")) as file:
            self.assertEqual(file.read(), "\n".join(lines) + "\n")

    def test_kept_records_leave_the_chosen_file_and_go_with_a_clean(self):
        client = self.open()
        self.assertEqual(self.build(client)[0], 1)
        self.assertEqual(client.call("ProjectSave"), 1)
        self.project.write("src/a.c", "int a(void) { return 2 - 1; }\n")
        os.utime(self.project.path("src/a.c"), (time.time() + 2, time.time() + 2))
        self.assertEqual(client.call("SelectApplication", "a.c"), 1)
        self.assertEqual(self.build(client, BUILD_NODE), (1, ["a.c.o"]))
        self.assertEqual(self.build(client, CLEAN)[0], 1)
        self.assertFalse(os.path.exists(self.project.path("demo.tstate")))

    def test_a_project_is_loaded_while_nothing_is_requested_or_for_the_first_build(self):
        client = self.open()
        self.assertEqual(self.build(client)[0], 1)
        self.assertEqual(client.call("ProjectSave"), 1)
        client.kill()
        for waits in (False, True):
            client = self.start()
            self.assertEqual(client.call("ProjectOpen", self.project.path("demo.tprj")), 1)
            if waits:
                client.wait_message("Command")  # last notification about options after opening
            self.assertEqual(self.build(client), (1, []), waits)

    def test_edited_definitions_take_effect_in_the_next_build(self):
        share = os.path.join(self.project.root, "share")
        shutil.copytree(self.project.share, share)
        self.project.share = share + "/"
        client = self.open()
        everything = (1, ["a.c.o", "b.c.o", "app"])
        self.assertEqual(self.build(client), everything)
        for name, old, new in (("tools/gcc.tools", 'V="-c"/>', 'V="-c"/><Arg V="-DX=1"/>'),
                               ("options/host-gcc.options", 'Value="2"', 'Value="1"')):
            path = os.path.join(share, "config", name)
            with open(path) as file:
                text = file.read()
            with open(path, "w") as file:
                file.write(text.replace(old, new, 1))
            self.assertEqual(self.build(client), everything, name)
            self.assertEqual(self.build(client), (1, []), name)
        # An editor may have written half of a file.
        for name in ("tools/host-gcc.tools", "options/host-gcc.options"):
            path = os.path.join(share, "config", name)
            with open(path) as file:
                text = file.read()
            with open(path, "w") as file:
                file.write(text[:text.rindex("<")])
            client.transcript.clear()
            client.call("PrologCommand", BUILD)
            self.assertEqual(client.call("Command", BUILD), 0)
            client.call("EpilogCommand", BUILD)
            self.assertEqual(client.call("PrologCommand", BUILD), 0)
            self.assertEqual(client.call("ProjectBuild"), 0)
            self.assertIn("Nothing was built: " + path, client.transcript[-1]["wParam"])
            with open(path, "w") as file:
                file.write(text)
            self.assertEqual(self.build(client)[0], 1, name)
            self.assertEqual(self.build(client), (1, []), name)

    def test_a_new_configuration_has_the_options_of_another(self):
        client = self.open()
        wanted = {"name": "Copy"}
        self.assertIsNone(client.wait(client.post("addConfiguration", wanted)))
        self.assertIsNone(client.wait(client.post("addConfiguration", {"name": "Bare", "from": ""})))
        self.assertEqual(self.errors(client, ("addConfiguration", wanted),
                                     ("addConfiguration", {"name": "X", "from": "Y"}),
                                     ("addConfiguration", {"name": 7}), ("addConfiguration", [])),
                         [-32000, -32000, -32602, -32602])
        self.assertEqual(client.call("ProjectSave"), 1)
        with open(self.project.path("app.tapp")) as file:
            saved = file.read()
        self.assertEqual([saved.count(part) for part in (
            '<Config Header="Copy"', '<Config Header="Bare"', '"host-gcc"')], [2, 1, 2])

    def test_project_build_keeps_its_records_too(self):
        client = self.open()
        self.assertEqual(client.call("ProjectBuild"), 1)
        client.call("shutdown")
        client.send(EXIT)
        self.assertEqual(client.end(), 0)
        client = self.open()
        self.assertEqual(self.build(client), (1, []))


class Calls(ServeTest):
    def test_every_method_is_there_and_wrong_calls_are_told(self):
        client = self.start(initialize=False)
        self.assertEqual(self.errors(client, ("GetCurConfig", [])), [-32002])
        self.assertEqual(self.errors(client, ("initialize", {"dataPath": 7}),
                                     ("initialize", {"answers": "host/ask"}),
                                     ("initialize", {"folder": ""}),
                                     ("initialize", {"applicationPath": "/nowhere"})),
                         [-32602, -32602, -32602, -32000])
        result = client.wait(client.post("initialize", {"applicationPath": self.project.share,
                                                        "dataPath": self.project.data}))
        self.assertEqual(len(result["methods"]), 44)
        self.assertEqual(result["definitionErrors"], [])
        named = {each["name"]: each["params"] for each in result["methods"]}
        self.assertEqual(named["Command"], ["Command"])
        self.assertEqual(self.errors(
            client, ("initialize", {}), ("GetCurConfig", None), ("getcurconfig", []),
            ("rpc.discover", []), ("Command", ["x"]), ("Command", [None]), ("Command", []),
            ("Command", {"Command": STOP_PUBLISHING}), ("Command", {"command": STOP_PUBLISHING}),
            ("ProjectOpen", ["a\0b"]), ("ProjectOpen", [5]), ("InitToolManager", [None]),
            ("SelectNode", [None]), ("ReportMessage", ["x", "y"])),
            [-32600, None, -32601, -32601, -32602, -32602, -32602, None, -32602, -32602, -32602,
             -32602, None, -32602])
        self.assertIsNone(client.call("ReportMessage", "said"))
        client.transcript.clear()
        client.send({"jsonrpc": "2.0", "method": "PrologCommand", "params": {"Command": BUILD}})
        self.assertEqual(client.call("EnableCommand", STOP), 0)
        self.assertEqual(self.shorten(client.transcript), ["BuildStarting 0 0"])

    def test_no_value_is_stored_at_the_node_before_one_that_was_not_found(self):
        client = self.open()
        self.assertEqual(client.call("SelectNode", "none.c"), 1)
        store = ("SavePropertyValue", ["C", "Compiler", "Defines", "X"])
        self.assertEqual(self.errors(client, store), [-32000])
        self.assertEqual(client.call("SelectApplication", "app"), 1)
        self.assertEqual(self.errors(client, store), [None])

    def test_requests_are_answered_once_and_in_order(self):
        client = self.start()
        client.send_bytes(frame(request(11, "GetCurConfig")) + frame(request("b", "EnableCommand", 1)))
        self.assertEqual([client.next()["id"], client.next()["id"]], [11, "b"])
        client.send([request(12, "EnableCommand", STOP), 5, request(13, "Nothing"),
                     {"jsonrpc": "2.0", "method": "SelectNode", "params": [None]}])
        self.assertEqual([(each["id"], each.get("result"), each.get("error", {}).get("code"))
                          for each in client.next()],
                         [(12, 0, None), (None, None, -32600), (13, None, -32601)])
        client.send([{"jsonrpc": "2.0", "method": "SelectNode", "params": [None]}])
        client.send(request(14, "EnableCommand", STOP))
        self.assertEqual(client.next()["id"], 14)

    def test_a_client_that_writes_long_before_it_reads_is_served(self):
        client = self.start(initialize=False)
        many = 20000
        client.send_bytes(frame(INITIALIZE) + b"".join(
            frame(request(i, "EnableCommand", STOP)) for i in range(2, many)))
        client.process.stdin.close()
        seen = []
        while len(seen) < many - 1:
            message = client.next()
            if "method" not in message:
                seen.append(message["id"])
        self.assertEqual(seen, list(range(1, many)))

    def test_no_frame_ends_the_server(self):
        client = self.start()
        next_one = frame(request(2, "EnableCommand", STOP))
        answered = (2, None)
        rows = [
            (b"GET / HTTP/1.1\r\nHost: x\r\n\r\n" + next_one, [(None, -32700), answered]),
            (b"Content-Length: 999999999999\r\n\r\n{}" + next_one, [(None, -32600), answered]),
            (frame(b"{nonsense") + next_one, [(None, -32700), answered]),
            (frame(b"[" * 1000000) + next_one, [(None, -32600), answered]),
            (b"Content-Length: 100\r\n\r\n{\"cut\":" + next_one + frame(b"1" * 20),
             [(None, -32700), answered, (None, -32600)]),
            (frame({"jsonrpc": "2.0", "id": 77, "result": 1}) + next_one, [answered]),
        ]
        for sent, expected in rows:
            client.send_bytes(sent)
            seen = [client.next() for _ in expected]
            self.assertEqual([(each["id"], each.get("error", {}).get("code")) for each in seen],
                             expected, sent[:60])
        with open("/proc/%d/status" % client.process.pid) as file:
            peak = [int(line.split()[1]) for line in file if line.startswith("VmHWM")][0]
        if "asan" not in PROGRAM and "tsan" not in PROGRAM:
            self.assertLess(peak, 200 * 1024, "kilobytes")


class Questions(ServeTest):
    def test_a_refusal_keeps_the_project_and_the_build_from_happening(self):
        refused = []
        client = self.open({"host/ask": lambda params: 0 if params["name"] in refused else 1})
        refused[:] = ["ProjectClosing", "BuildStarting"]
        self.assertEqual(client.call("ProjectClose"), 0)
        self.assertEqual(client.call("PrologCommand", BUILD), 0)
        self.assertEqual(client.call("SelectApplication", "app"), 1)
        self.assertTrue(client.call("GetSelectedApplication").endswith("/app.tapp"))
        refused.clear()
        self.assertEqual(self.build(client)[0], 1)
        self.assertEqual([(method, params["number"]) for method, params in client.questions],
                         [("host/ask", PROJECT_CLOSING)] * 2 + [("host/ask", BUILD_STARTING)] * 2)

    def test_a_late_answer_counts_and_holds_up_what_came_behind(self):
        client = self.start(initialize=False)
        client.wait(client.post("initialize", {"answers": ["host/ask"]}))
        opening = client.post("ProjectOpen", [self.project.write_project()])
        question = client.wait_question()
        answer = {"jsonrpc": "2.0", "id": question["id"], "result": 1}
        behind = client.post("GetSelectedApplication", [])
        client.send({"jsonrpc": "2.0", "id": question["id"] + 50, "result": 0})
        client.send({"jsonrpc": "2.0", "id": str(question["id"]), "result": 0})
        time.sleep(0.3)
        self.assertTrue(client.incoming.empty())
        client.send(answer)
        self.assertEqual(client.wait(opening), 1)
        self.assertNotIn(behind, client.responses)
        self.assertTrue(client.wait(behind).endswith("/app.tapp"))
        # Once more, when the response is no longer expected.
        client.send(dict(answer, result=0))
        self.assertEqual(client.call("EnableCommand", STOP), 0)

    def test_a_client_that_leaves_a_question_open_refuses(self):
        client = self.start(initialize=False)
        client.wait(client.post("initialize", {"answers": ["host/ask"]}))
        opening = client.post("ProjectOpen", [self.project.write_project()])
        client.wait_question()
        client.process.stdin.close()
        self.assertEqual(client.wait(opening), 0)
        self.assertEqual(client.process.wait(10), 1)


class Launchers(ServeTest):
    trusts = True

    def test_a_launcher_in_the_options_runs_as_many_tools_as_its_hosts(self):
        count = os.cpu_count() + 1
        names = ["f%d.c" % number for number in range(count)]
        for name in names:
            self.project.write("src/" + name, "int main(void) { return 0; }\n")
        # Waits until as many are running.
        self.project.add_program("distcc", """touch "$TMPDIR/run.$$"
for try in $(seq 300); do
  [ $(ls "$TMPDIR"/run.* | wc -l) -ge %d ] && exec "$@"
  sleep 0.1
done
exit 1
""" % count)
        self.project.environment["DISTCC_HOSTS"] = "far/64"
        client = self.start()
        client.call("ProjectOpen", self.project.write_project(sources=names))
        client.call("SavePropertyValue", "Application", "Build", "Launcher", "distcc")
        client.call("Command", APPLY)
        self.start_build(client)
        client.wait_message("ToolSucceeded", count)


class Stops(ServeTest):
    def start_slow_build(self, answers=None):
        self.project.slow_compiler()
        client = self.open(answers)
        self.start_build(client)
        return client, self.project.wait_child()

    def test_a_stop_ends_the_tools_and_the_next_build_runs(self):
        client, child = self.start_slow_build()
        self.assertEqual(client.call("EnableCommand", STOP), 1)
        self.assertEqual(client.call("Command", STOP), 1)
        wait_gone(child, 2)
        self.assertEqual(client.wait_message("WorkerEnded")["wParam"], 0)
        self.project.add_compiler('exec /usr/bin/gcc "$@"\n')
        # The compiler differs from the one that a.c was built with.
        self.assertEqual(self.build(client), (1, ["a.c.o", "b.c.o", "app"]))

    def test_whoever_agrees_to_stop_the_build_stops_its_tools(self):
        client, child = self.start_slow_build({"host/messageBox": lambda params: "ok"})
        self.assertEqual(client.call("ProjectClose"), 0)
        self.assertEqual([method for method, _ in client.questions], ["host/messageBox"])
        wait_gone(child, 2)
        self.assertEqual(client.wait_message("WorkerEnded")["wParam"], 0)
        self.assertEqual(client.call("ProjectClose"), 1)

    def test_whoever_wants_the_build_to_go_on_keeps_it(self):
        client, child = self.start_slow_build({"host/messageBox": lambda params: "cancel"})
        self.assertEqual(client.call("ProjectClose"), 0)
        self.assertTrue(is_running(child))
        os.kill(child, signal.SIGTERM)
        self.assertEqual(client.wait_message("WorkerEnded")["wParam"], 1)

    def test_a_wait_for_another_build_is_told_and_ends_with_a_stop(self):
        self.start_slow_build()
        client = self.start()
        self.assertEqual(client.call("ProjectOpen", self.project.path("demo.tprj")), 1)
        for method, params in (("Command", [STOP]), ("shutdown", [])):
            with self.subTest(method):
                client.transcript.clear()
                build = client.post("PrologCommand", [BUILD])
                line = client.wait_message("LogLine")["wParam"]
                self.assertRegex(line, r"^Waiting for another build of this project \(process \d+\)")
                stop = client.post(method, params)
                self.assertEqual(client.wait(build), 0)
                client.wait(stop)
                lines = [each for each in client.transcript if each["name"] == "LogLine"]
                self.assertEqual(len(lines), 1)

    def test_a_closed_input_ends_the_server_although_nobody_reads_what_it_writes(self):
        with subprocess.Popen([PROGRAM, "serve"], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                              env=self.project.environment, cwd=self.project.folder) as server:
            server.stdin.write(frame(INITIALIZE) + b"".join(
                frame(request(i, "Nothing")) for i in range(2, 3000)))
            server.stdin.close()
            self.assertEqual(server.wait(timeout=3), 1)

    def test_a_client_that_goes_takes_the_tools_along(self):
        rows = [("close the input", lambda client: client.process.stdin.close(), 1),
                ("close the output", lambda client: client.stop_reading(), 1),
                ("terminate", lambda client: client.process.terminate(), 130),
                ("say exit", lambda client: client.send(EXIT), 1)]
        for build_here in (False, True):
            for name, leave, code in rows:
                if build_here and name == "say exit":
                    continue  # stays queued like every other message
                with self.subTest(name, build_here=build_here):
                    self.setUp()
                    self.project.slow_compiler()
                    # The first source is built before the compiler of the second starts.
                    self.project.environment["TARN_JOBS"] = "1"
                    client = self.open()
                    if build_here:
                        client.post("ProjectBuild", [])
                    else:
                        self.start_build(client)
                    child = self.project.wait_child()
                    start = time.time()
                    leave(client)
                    wait_gone(child, 2)
                    self.assertEqual(client.process.wait(10), code)
                    self.assertLess(time.time() - start, 2)
                    # The results until then are stored.
                    self.assertTrue(os.path.exists(self.project.path("demo.tstate")))


class Scripts(ServeTest):
    trusts = True

    def run_script(self, client, text):
        """Runs a script, and gives what the client hears of it up to the tools' own messages."""
        self.project.write("t.lua", text)
        client.transcript.clear()
        self.assertEqual(client.call("ExecuteScript", self.project.path("t.lua")), 1)
        return [each for each in self.shorten(client.transcript) if " Building " not in each
                and each.split()[0] in ("RunScript", "LogLine", "ToolSucceeded", "WorkerEnded")]

    def test_a_script_is_passed_on_and_run(self):
        client = self.open()
        text = "print(tarn.SelectApplication('app'), host.wait())\nerror('enough')"
        self.assertEqual(self.run_script(client, text), [
            "RunScript %s 0" % text, "LogLine 1\trefused 0", "LogLine script:2: enough 0"])
        self.assertEqual(self.run_script(client, "print(host.build())")[1:], [
            "LogLine Build: app (Standard) 0",
            "ToolSucceeded /build/Standard/app.obj/src/a.c.o 0",
            "ToolSucceeded /build/Standard/app.obj/src/b.c.o 0",
            "ToolSucceeded /build/Standard/app 0",
            "LogLine Finished. 0", "WorkerEnded 1 ...", "LogLine succeeded\t3\t0 0"])
        self.assertEqual(self.run_script(client, "print(tarn.ProjectClose(), host.build())")[1:],
                         ["LogLine 1\trefused\t0\t0 0"])
        # Build records are available in the next server and to its scripts.
        client = self.open()
        self.assertEqual(self.run_script(client, "print(host.build())")[-1],
                         "LogLine succeeded\t0\t0 0")

    def test_a_build_that_a_script_leaves_behind_can_be_stopped(self):
        self.project.slow_compiler()
        client = self.open()
        for _ in range(2):  # the first stop must not affect the tools of the second build
            self.run_script(client, f"tarn.PrologCommand({REBUILD})\ntarn.Command({REBUILD})\n")
            child = self.project.wait_child()
            self.assertEqual(client.call("Command", STOP), 1)
            wait_gone(child, 2)
            self.assertEqual(client.wait_message("WorkerEnded")["wParam"], 0)
            os.remove(os.path.join(self.project.root, "child"))

    def test_a_client_that_goes_takes_scripts_along(self):
        for text in ("while true do end", "while true do pcall(host.build) end"):
            self.setUp()
            self.project.slow_compiler()
            client = self.open()
            self.project.write("t.lua", text)
            for _ in range(2):
                client.post("ExecuteScript", [self.project.path("t.lua")])
            client.wait_message("RunScript")
            child = self.project.wait_child() if "host" in text else None
            client.process.stdin.close()
            self.assertEqual(client.process.wait(5), 1, text)
            if child:
                self.assertFalse(is_running(child))


class History(ServeTest):
    trusts = True

    def state(self, client):
        """The labels of what can be undone and redone, the next first."""
        history = client.wait(client.post("project/history"))
        for way in ("undo", "redo"):
            labels = history[way]
            told = [history[name] for name in ("can" + way.title(), way + "Label", way + "Steps")]
            self.assertEqual(told, [bool(labels), (labels or [None])[0], len(labels)])
        return history["undo"], history["redo"]

    def told(self, client):
        """The labels of each notification since the last call."""
        told = [(params["undoLabel"], params["redoLabel"]) for method, params in client.heard
                if method == "project/historyChanged"]
        client.heard.clear()
        return told

    def go(self, client, way):
        return client.wait(client.post("project/" + way))

    def refusal(self, client, way):
        with self.assertRaises(RpcError) as caught:
            self.go(client, way)
        self.assertEqual(caught.exception.code, -32000)
        return caught.exception.text

    def files(self):
        """The project's files as a save would write them."""
        texts = []
        for name in ("demo.tprj", "app.tapp"):
            with open(self.project.path(name), newline="") as file:
                texts.append(file.read())
        return texts

    def save(self, client):
        self.assertEqual(client.call("ProjectSave"), 1)
        return self.files()

    def edits(self, client):
        """Label and calls of a step of each kind."""
        path = self.project.path
        defines = ("C", "Compiler", "Defines")
        return [
            ("Add c.c", [("AddExistingItem", path("src/c.c"), None)]),
            ("Add 2 files", [("AddExistingItem", path("src/d.c"), None),
                             ("AddExistingItem", path("src/e.c"), None)]),
            ("Add New", [("AddNewItem", None, "Group"),
                         ("SavePropertyValue", "Group", "General", "Header", "New")]),
            ("Set Compiler.Defines", [("SavePropertyValue",) + defines + ("X",)]),
            ("Set Compiler.Defines", [("SavePropertyValue",) + defines + ("Y",)]),
            ("Reset Compiler.Defines", [("ResetPropertyValue",) + defines]),
            ("Remove a.c", [("RemoveItem", "a.c")]),
            ("Remove Sources", [("RemoveItem", "Sources")]),
            ("Add configuration Fast", [("addConfiguration", "Fast")]),
        ]

    def test_every_edit_is_taken_back_and_made_again(self):
        for name in "cde":
            self.project.write("src/%s.c" % name, "")
        client = self.open()
        # Converts the files to the format of a save.
        client.call("SavePropertyValue", "C", "Compiler", "Defines", "X")
        client.call("ProjectSave")
        client.call("ResetPropertyValue", "C", "Compiler", "Defines")
        client.call("ProjectClose")
        client.call("ProjectOpen", self.project.path("demo.tprj"))
        self.told(client)
        saved = [self.files()]
        self.assertEqual(self.state(client), ([], []))
        labels = []
        for label, calls in self.edits(client):
            # A batch is one undo step.
            client.send([request(1000 + i, *call) for i, call in enumerate(calls)])
            answers = client.next()
            while not isinstance(answers, list):
                answers = client.next()
            self.assertFalse([each for each in answers if "error" in each], label)
            labels.insert(0, label)
            self.assertEqual(self.told(client)[-1:], [(label, None)])
            self.assertEqual(self.state(client), (labels, []))
            saved.append(self.save(client))
            self.assertNotEqual(saved[-1], saved[-2], label)
        for i, label in enumerate(labels):
            done = self.go(client, "undo")
            self.assertEqual((done["label"], done["canRedo"]), (label, True))
            self.assertTrue(self.project.path("app.tapp") in done["files"], done)
            self.assertEqual(self.files(), saved[-1 - i], "nothing is written yet")
            self.assertEqual(self.save(client), saved[-2 - i], label)
        self.assertEqual(self.refusal(client, "undo"), "There is nothing to undo.")
        self.assertEqual(self.state(client), ([], labels[::-1]))
        for label in labels[::-1]:
            self.assertEqual(self.go(client, "redo")["label"], label)
        self.assertEqual(self.refusal(client, "redo"), "There is nothing to redo.")
        self.assertEqual(self.save(client), saved[-1])

    def test_a_failed_edit_leaves_no_step_and_a_new_one_ends_the_redo(self):
        client = self.open()
        self.told(client)
        self.assertEqual(client.call("RemoveItem", "nothing"), 0)
        self.assertEqual(client.call("SavePropertyValue", "C", "Compiler", "Defines", "X"), 1)
        self.assertEqual(client.call("RemoveItem", "b.c"), 1)
        self.assertEqual(self.go(client, "undo")["label"], "Remove b.c")
        self.assertEqual(self.state(client), (["Set Compiler.Defines"], ["Remove b.c"]))
        self.assertEqual(client.call("RemoveItem", "a.c"), 1)
        self.assertEqual(self.state(client), (["Remove a.c", "Set Compiler.Defines"], []))
        self.assertEqual(self.told(client), [
            ("Set Compiler.Defines", None), ("Remove b.c", None),
            ("Set Compiler.Defines", "Remove b.c"), ("Remove a.c", None)])
        # Unsaved changes are undone as well, and builds use the result.
        self.go(client, "undo")
        self.assertEqual(self.build(client)[0], 1)

    def test_another_project_ends_the_history(self):
        client = self.open()
        client.call("RemoveItem", "a.c")
        self.project.write("other.tprj", '\r\n<Project Header="other" Path=".\\other.tprj" />')
        for call in (("ProjectOpen", self.project.path("other.tprj")), ("ProjectClose",)):
            client.call("ProjectOpen", self.project.path("demo.tprj"))
            client.call("RemoveItem", "b.c")
            self.assertNotEqual(self.state(client)[0], [])
            self.told(client)
            client.call(*call)
            self.assertEqual(self.told(client), [(None, None)])
            self.assertEqual(self.state(client), ([], []))
            self.project.write_project()
        self.assertEqual(self.refusal(client, "undo"), "No project is open.")

    def change_outside(self, old, new):
        with open(self.project.path("app.tapp"), newline="") as file:
            text = file.read()
        self.assertIn(old, text)
        self.project.write("app.tapp", text.replace(old, new))

    def test_what_another_program_wrote_stays_or_nothing_is_undone(self):
        self.project.write("src/c.c", "")
        for old, new, is_undone in (('"b.c"', '"x.c"', True), ('"Sources"', '"x"', True),
                                    ('"new"', '"x"', False)):
            client = self.open()
            client.call("AddExistingItem", self.project.path("src/c.c"), None)
            client.call("SavePropertyValue", "C", "General", "Header", "new")
            self.save(client)
            self.change_outside(old, new)
            client.call("RemoveItem", "a.c")
            rename = "Rename c.c to new"
            text = self.save(client)[1]  # merged
            self.assertIn(new, text)
            self.go(client, "undo")
            if is_undone:
                self.assertEqual(self.go(client, "undo")["label"], rename)
            else:
                self.assertRegex(self.refusal(client, "undo"),
                                 '^"%s": .*app.tapp: c.c has changed since$' % rename)
                self.assertEqual(self.state(client)[0][0], rename)
            text = self.save(client)[1]
            self.assertIn(new, text)
            self.assertIn('"a.c"', text)
            client.kill()

    def test_nothing_is_undone_during_a_build_or_against_the_client(self):
        self.project.slow_compiler()
        refused = []
        client = self.open({"host/ask": lambda params: int(not refused)})
        client.call("SavePropertyValue", "C", "Compiler", "Defines", "X")
        self.start_build(client)
        self.project.wait_child()
        self.assertEqual(self.refusal(client, "undo"), "A build is running.")
        with self.assertRaises(RpcError) as caught:
            client.wait(client.post("addConfiguration", {"name": "New"}))
        self.assertEqual(caught.exception.text, "A build is running.")
        client.call("Command", STOP)
        client.wait_message("WorkerEnded")
        refused.append(True)
        self.assertIn("the host keeps the project open", self.refusal(client, "undo"))
        refused.clear()
        self.assertEqual(self.go(client, "undo")["label"], "Set Compiler.Defines")

    def test_a_script_is_one_step(self):
        client = self.open()
        with open(self.project.path("s.lua"), "w") as file:
            file.write("for _, name in ipairs{'a.c', 'b.c'} do tarn.RemoveItem(name) end")
        client.call("ExecuteScript", self.project.path("s.lua"))
        self.assertEqual(self.state(client), (["Remove 2 files"], []))


class Saves(ServeTest):
    def problems(self, client):
        found = [params for method, params in client.heard if method == "project/saveProblem"]
        client.heard.clear()
        return found

    def read(self, name):
        with open(self.project.path(name), newline="") as file:
            return file.read()

    def add(self, client, name):
        self.project.write(name, "")
        client.call("AddExistingItem", self.project.path(name), None)

    def test_what_could_not_be_saved_is_told_and_tried_again(self):
        client = self.open()
        before = self.read("app.tapp")
        self.add(client, "src/c.c")
        os.chmod(self.project.path("app.tapp"), 0o444)
        for _ in range(2):
            self.assertEqual(client.call("ProjectSave"), 1)
            problems = self.problems(client)
            self.assertEqual(len(problems), 1)
            self.assertEqual(problems[0], client.wait(client.post("project/saveReport")))
            self.assertEqual(len(problems[0]["problems"]), 1)
            self.assertRegex(problems[0]["problems"][0],
                             "/app.tapp can't be saved: .*; the unsaved content is in /")
            self.assertEqual(self.read("app.tapp"), before)
        os.chmod(self.project.path("app.tapp"), 0o644)
        self.assertEqual(client.call("ProjectSave"), 1)
        self.assertEqual(self.problems(client), [])
        self.assertIn('"c.c"', self.read("app.tapp"))

    def test_what_is_not_saved_without_the_lock_is_copied(self):
        client = self.open()
        before = self.read("app.tapp")
        lock = self.project.path("demo.tlock")
        if os.path.exists(lock):
            os.remove(lock)
        os.mkdir(lock)
        self.add(client, "src/c.c")
        self.assertEqual(client.call("ProjectSave"), 1)
        self.assertRegex("\n".join(self.problems(client)[0]["problems"]),
                         "/app.tapp can't be saved: .*demo.tlock can't be locked: Is a "
                         "directory; the unsaved content is in .*/app.tapp.unsaved")
        self.assertEqual(self.read("app.tapp"), before)
        self.assertIn('"c.c"', self.read("app.tapp.unsaved"))
        os.rmdir(lock)
        self.assertEqual(client.call("ProjectSave"), 1)
        self.assertEqual(self.problems(client), [])
        self.assertIn('"c.c"', self.read("app.tapp"))

    def test_an_unchanged_project_that_can_not_be_read_stays_open(self):
        client = self.open()
        for name in ("demo.tprj", "app.tapp"):
            path = self.project.path(name)
            os.rename(path, path + ".kept")
            os.mkfifo(path)
            self.assertEqual(client.call("ProjectSave"), 1)
            self.assertIn(path + " can't be saved: not a regular file",
                          "\n".join(self.problems(client)[0]["problems"]))
            os.remove(path)
            os.rename(path + ".kept", path)
        self.add(client, "src/c.c")
        self.assertEqual(client.call("ProjectSave"), 1)
        self.assertIn('"c.c"', self.read("app.tapp"))

    def test_a_project_that_was_moved_away_is_not_made_again(self):
        client = self.open()
        self.add(client, "src/c.c")
        moved = self.project.folder + "-moved"
        self.addCleanup(shutil.rmtree, moved, True)
        os.rename(self.project.folder, moved)
        self.assertEqual(client.call("ProjectSave"), 1)
        self.assertIn("the folder %s does not exist" % self.project.folder,
                      "\n".join(self.problems(client)[0]["problems"]))
        self.assertFalse(os.path.exists(self.project.folder))
        os.rename(moved, self.project.folder)
        self.assertEqual(client.call("ProjectSave"), 1)
        self.assertEqual(self.problems(client), [])
        self.assertIn('"c.c"', self.read("app.tapp"))


class Damage(ServeTest):
    trusts = True

    def damage(self):
        path = self.project.write_project()
        with open(self.project.path("app.tapp")) as file:
            text = file.read()
        self.project.write("app.tapp", text.replace("<C Header", "left over<C Header", 1))
        return path

    def test_a_damaged_project_is_told_of_and_left_alone_until_that_is_accepted(self):
        client = self.start()
        path = self.damage()
        with open(self.project.path("app.tapp")) as file:
            before = file.read()
        expected = [{"file": self.project.path("app.tapp"), "line": 2,
                     "text": 'stray text "left over"'}]
        self.assertEqual(client.call("ProjectOpen", path), 1)
        self.assertEqual(client.questions, [("project/damaged", {"damage": expected})])
        self.assertEqual(client.call("project/damage"), {"damage": expected})
        self.assertEqual(self.errors(
            client, ("PrologCommand", [BUILD]), ("Command", [BUILD]), ("ProjectBuild", []),
            ("ProjectSave", []), ("AddExistingItem", [self.project.path("src/x.c"), None]),
            ("SavePropertyValue", ["C", "Compiler", "Defines", "X"]),
            ("addConfiguration", ["Extra", None]), ("ProjectNew", [path]),
            ("ProjectNew", [self.project.path("app.tapp")])), [-32000] * 9)
        self.assertIn("Standard", client.call("GetCurConfig"))
        self.project.write("t.lua", "host.build()")
        client.call("ExecuteScript", self.project.path("t.lua"))
        self.assertIn("read only in part", client.transcript[-1]["wParam"])
        self.assertFalse(os.path.exists(self.project.path("build")))
        self.assertEqual(client.call("ProjectClose"), 1)
        with open(self.project.path("app.tapp")) as file:
            self.assertEqual(file.read(), before)
        client.call("ProjectOpen", path)
        client.call("project/acceptDamage")
        self.assertEqual(self.build(client)[0], 1)

    def test_damage_can_be_accepted_ahead(self):
        client = self.start(initialize=False)
        client.wait(client.post("initialize", {"damagedOk": True}))
        client.call("ProjectOpen", self.damage())
        self.assertEqual(self.build(client)[0], 1)
        self.assertEqual(self.errors(self.start(initialize=False),
                                     ("initialize", {"damagedOk": 1})), [-32602])


class Trust(ServeTest):
    WISH = "run the launcher ./trap.sh"

    def open_hostile(self):
        client = self.open()
        self.project.write("trap.sh", "#!/bin/sh\ntouch ran\nexec \"$@\"\n")
        os.chmod(self.project.path("trap.sh"), 0o755)
        client.call("SavePropertyValue", "Application", "Build", "Launcher", "./trap.sh")
        client.call("Command", APPLY)
        self.assertFalse(client.call("project/trusted")["trusted"])
        return client

    def test_a_build_is_refused_and_reported_until_the_project_is_trusted(self):
        client = self.open_hostile()
        self.assertEqual(self.build(client), (0, []))
        self.assertIn(("project/refused", {"folder": self.project.folder, "wishes": [self.WISH]}),
                      client.questions)
        self.assertFalse(os.path.exists(self.project.path("ran")))
        answer = {"folder": self.project.folder, "trusted": True}
        self.assertEqual(client.call("project/trust"), answer)
        self.assertEqual(client.call("project/trusted"), answer)
        self.assertEqual(self.build(client)[0], 1)
        self.assertTrue(os.path.exists(self.project.path("ran")))

    def test_calls_that_need_trust_have_an_error_of_their_own(self):
        client = self.open_hostile()
        self.project.write("t.lua", "print('ran')")
        self.assertEqual(self.errors(
            client, ("ProjectBuild", []), ("ExecuteScript", [self.project.path("t.lua")]),
            ("WriteIniValue", ["S", "Key", "1", os.path.join(self.project.root, "x.ini")]),
            ("WriteIniValue", ["S", "Key", "1", self.project.path("x.ini")])),
            [-32001, -32001, -32001, None])
        self.assertFalse(os.path.exists(os.path.join(self.project.root, "x.ini")))
        self.assertEqual(self.errors(self.start(initialize=False),
                                     ("initialize", {"trust": 1})), [-32602])


class Ends(ServeTest):
    def test_the_exit_code_tells_whether_the_client_said_goodbye(self):
        rows = [([], 1), ([EXIT], 1), ([request(2, "shutdown")], 0),
                ([request(2, "shutdown"), EXIT], 0), ([INITIALIZE, request(2, "shutdown"), EXIT], 0),
                ([INITIALIZE, EXIT], 1)]
        for messages, code in rows:
            client = self.start(initialize=False)
            for each in messages:
                client.send(each)
            self.assertEqual(client.end(), code, messages)

    def test_after_shutdown_only_exit_is_taken(self):
        client = self.start()
        client.call("shutdown")
        self.assertEqual(self.errors(client, ("GetCurConfig", []), ("initialize", {}),
                                     ("shutdown", [])), [-32600] * 3)
        client.send(EXIT)
        with self.assertRaises(Ended):
            client.next()

    def test_a_check_names_what_is_missing_and_needs_an_idle_project(self):
        client = self.start()
        self.assertEqual(self.errors(client, ("project/check", []), ("project/check", [1])),
                         [-32000, -32602])
        client = self.open()
        self.assertEqual(client.call("project/check"), {"findings": []})
        os.remove(self.project.path("src/b.c"))
        found = client.call("project/check")["findings"]
        self.assertEqual([(each["kind"], each["text"]) for each in found],
                         [("missing-file", self.project.path("src/b.c") + " is missing")])

    def test_what_was_sent_ahead_of_the_end_is_still_done(self):
        client = self.start(initialize=False)
        client.send_bytes(b"".join(frame(each) for each in [
            INITIALIZE, request(2, "ProjectOpen", self.project.write_project()),
            request(3, "ProjectBuild"), request(4, "shutdown"), EXIT]))
        self.assertEqual(client.end(), 0)
        results = {}
        with self.assertRaises(Ended):
            while True:
                message = client.next()
                if "method" not in message:
                    results[message["id"]] = message["result"]
        self.assertEqual([results[2], results[3], results[4]], [1, 1, None])


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0]] + sys.argv[3:], verbosity=2)
