"""Commands that are interrupted at one of their file system calls: killed there, or told an error.

Afterwards each file of the project is the old one or the new one. A command that has failed says
which file and why, one that has succeeded has done all of its work, and it can be repeated.
"""

import errno
import os
import shutil
import signal
import subprocess

from campaign.world import LIMIT

APPLICATION = """
<Application Header="{name}" Extern=".\\{name}.tapp" Path=".\\{name}.tapp" >
\t<Options>
\t\t<Config Header="Standard" >
\t\t\t<Set Header="Application" >
\t\t\t\t<Section Header="Target" >
\t\t\t\t\t<Property Header="Toolchain" Removable="Yes" Value="host-gcc" />
\t\t\t\t</Section>
\t\t\t</Set>
\t\t</Config>
\t</Options>
\t<C Header="{name}.c" Path=".\\src\\{name}.c" />
</Application>
"""
PROJECT = """
<Project Header="Project 'fw'" Path=".\\fw.tprj" Project="Yes" ActiveApp="fw" >
\t<Application Header="fw" Extern=".\\fw.tapp" Path=".\\fw.tapp" />
\t<Application Header="boot" Extern=".\\boot.tapp" Path=".\\boot.tapp" />
</Project>
"""
OLDER = "[Project]\nForm = 1\nName = old\nTarget = HOST\n[Files]\nsrc/fw.c\n"

# Command, program whose calls are counted, and arguments.
COMMANDS = (
    ("options set", "tarn", ("options", "set", "Compiler.Defines", "A=1")),
    ("add", "tarn", ("add", "src/new.c")),
    ("config add", "tarn", ("config", "add", "Debug")),
    ("rename", "tarn", ("rename", "boot.tapp", "loader")),  # changes two files
    ("build", "tarn", ("build",)),
    ("new", "tarn", ("new", "fresh", "--git")),
    ("import", "tarn", ("import", "older/old.prj")),
    ("import", "perl", ("import", "older/old.prj")),
)
FULL_DISK = "full disk"  # nothing can be written from that call on
FAULTS = {"kill": 0, "EIO": errno.EIO, "ENOSPC": errno.ENOSPC, "EINTR": errno.EINTR,
          FULL_DISK: errno.ENOSPC}
KINDS = {"ENOSPC": ("alters", "both"), FULL_DISK: ("alters", "both"), "EINTR": ("waits", "both")}
PARTS = [(number, fault) for number in range(len(COMMANDS)) for fault in FAULTS]


def build_shim(folder):
    source = os.path.join(os.path.dirname(os.path.abspath(__file__)), "faults.c")
    library = os.path.join(folder, "faults.so")
    subprocess.run(["gcc", "-O1", "-shared", "-fPIC", "-o", library, source, "-ldl"], check=True)
    return library


def is_of_project(path):
    return path.endswith((".tprj", ".tapp", ".prj", ".c", ".gitignore", ".gitattributes"))


class Interruptions:
    """One command in a project that is put back before each run."""

    def __init__(self, world, number):
        self.world = world
        self.name, self.program, self.words = COMMANDS[number]
        self.shim = build_shim(world.root)
        self.begin = os.path.join(world.root, "begin")
        self.temporary = os.path.join(world.root, "tmp")
        self.log = os.path.join(world.root, "calls.log")
        shutil.copytree(os.path.join(world.source, "bin"), os.path.join(world.share, "bin"))
        os.makedirs(os.path.join(self.begin, "src"))
        os.makedirs(os.path.join(self.begin, "older", "src"))
        texts = {"fw.tprj": PROJECT, "older/old.prj": OLDER, "older/src/fw.c": "int main;\n"}
        for name in ("fw", "boot"):
            texts[name + ".tapp"] = APPLICATION.format(name=name)
            texts[f"src/{name}.c"] = f"/* {name} */\n"
        texts["src/new.c"] = "/* new */\n"
        texts["common.h"] = "/* common */\n"
        for name, text in texts.items():
            with open(os.path.join(self.begin, name), "w", newline="") as file:
                file.write(text if name.endswith((".c", ".h")) else text.replace("\n", "\r\n"))
        self.before = self.put_back()
        self.calls = self.trace()
        self.after, self.made = self.state(), world.outputs()

    def put_back(self):
        self.world.await_compilers()
        shutil.rmtree(self.world.project)
        shutil.copytree(self.begin, self.world.project)
        shutil.rmtree(self.temporary, ignore_errors=True)
        os.makedirs(self.temporary)
        return self.state()

    def files(self):
        for folder, _, names in os.walk(self.world.project):
            for name in names:
                yield os.path.relpath(os.path.join(folder, name), self.world.project)

    def state(self):
        """The bytes of all files that belong to projects."""
        found = {}
        for name in filter(is_of_project, self.files()):
            with open(os.path.join(self.world.project, name), "rb") as file:
                found[name] = file.read()
        return found

    def run(self, **faults):
        environment = self.world.environment()
        environment.update(TMPDIR=self.temporary, **faults)
        if faults:
            environment.update(LD_PRELOAD=self.shim, FAULT_PROGRAM=self.program,
                               FAULT_BELOW=self.world.root)
        return subprocess.run([self.world.program, *self.words], cwd=self.world.project,
                              env=environment, capture_output=True, text=True, errors="replace",
                              timeout=LIMIT, check=False)

    def trace(self):
        """All calls of a run without faults: number, function, kind and path."""
        self.run()  # creates what is created only once
        self.put_back()
        run = self.run(FAULT_LOG=self.log)
        if run.returncode != 0:
            raise SystemExit(f"campaign: {self.name} fails by itself: {run.stderr}")
        if not os.path.exists(self.log):
            raise SystemExit(f"campaign: {self.program} can't be made to fail: it is linked "
                             "statically, or not loaded with LD_PRELOAD")
        with open(self.log) as file:
            return [line.split(" ", 3) for line in file.read().splitlines()]

    def is_possible(self, fault, call):
        """Whether a fault at the call is the command's to handle. Not one of a compiler's file, which
        counts as missing then, as for a shell; nor what the interpreter keeps to itself of its own
        script, and that it closes a file again after a signal."""
        path = call[3]
        if fault == "kill":
            return True
        if fault in KINDS and call[2] not in KINDS[fault]:
            return False
        if self.program == "perl" and (path.endswith(".pl")
                                       or fault == "EINTR" and call[1] == "close"):
            return False
        return os.path.dirname(path) != self.world.path

    def chosen(self, fault):
        """Numbers of the calls that the fault can happen at."""
        return [int(call[0]) for call in self.calls if self.is_possible(fault, call)]

    def interrupt(self, fault, at):
        self.put_back()
        faults = {"FAULT_AT": str(at), "FAULT": str(FAULTS[fault]), "FAULT_LOG": self.log}
        if fault == FULL_DISK:
            faults["FAULT_LASTS"] = "1"
        open(self.log, "w").close()
        run = self.run(**faults)
        with open(self.log) as file:
            calls = [line.split(" ", 3) for line in file.read().splitlines()]
        self.world.await_compilers()
        # The order of threads varies, so this need not be the call from the trace.
        return run, calls[at - 1] if at <= len(calls) else None

    def is_whole(self, state):
        """All that the command should do is done."""
        if self.name != "build":
            return state == self.after
        return self.world.outputs() == self.made

    def faults_of(self, run, fault, call):
        """Pairs of kind and text for all that is wrong after a run."""
        state = self.state()
        isWhole = self.is_whole(state)
        for name in sorted({*self.before, *self.after, *state}):
            if state.get(name) not in (self.before.get(name), self.after.get(name)):
                yield "torn file", name
        for name in state:
            isNew = name.endswith(".tprj") and name not in self.before
            if isNew and not isWhole:
                yield "half project", " ".join(state)
        if fault == "kill":
            if run.returncode not in (-signal.SIGKILL, 0) and self.program == "tarn":
                yield "crash", run.stderr
        elif run.returncode < 0 or run.returncode >= 128:
            yield "crash", f"exit {run.returncode}: {run.stderr}"
        elif run.returncode == 0 and not isWhole:
            yield "false success", run.stderr
        elif fault == "EINTR" and run.returncode != 0:
            yield "given up", run.stderr
        elif run.returncode != 0:
            if state not in (self.before, self.after):
                yield "torn project", run.stderr
            said = run.stdout + run.stderr
            if os.strerror(FAULTS[fault]) not in said:
                yield "untold reason", f"exit {run.returncode}: {said}"
            if not any(name in said for name in self.names(call[3])):
                yield "unnamed file", said
        yield from self.leftovers(run, fault, call)

    def names(self, path):
        """What can stand for a path in an error: a part of it, or a file that was to be written."""
        parts = path.removeprefix(self.world.root).split(os.sep)
        targets = map(os.path.basename, {**self.before, **self.after})
        names = [name for name in parts if name not in ("", "run", "fw", "share")]
        return [os.path.dirname(path), self.world.root, *names, *targets]

    def leftovers(self, run, fault, call):
        for name in self.files():
            place = os.path.basename(name)
            mayStay = fault == "kill" or call[1] in ("unlink", "rename", "renameat")
            if place.startswith(".tarn-") or ".new" in place:
                if not mayStay:
                    yield "leftover", name
            elif ".unsaved" in place:
                if fault != "kill" and place not in run.stderr:
                    yield "untold copy", name
            elif ".orig" in place or ".bak" in place:
                yield "needless copy", name

    def repeat(self):
        """Runs the command without faults, unless its work is done."""
        if self.name != "build" and self.is_whole(self.state()):
            return
        run = self.run()
        # If it was killed between two files, the label that the second run finds in use may be its
        # own.
        isThere = self.name == "rename" and "already" in run.stderr
        if not isThere and (run.returncode != 0 or not self.is_whole(self.state())):
            yield "no second try", f"exit {run.returncode}: {run.stderr}"
        if self.name == "build":
            again = self.world.build()
            if not again.idle:
                yield "endless rebuild", again.ran()


def run_interrupted(world, number, fault, stride, tally, random):
    interruptions = Interruptions(world, number)
    calls = interruptions.chosen(fault)
    for at in calls[random.randrange(min(stride, len(calls))) :: stride]:
        run, call = interruptions.interrupt(fault, at)
        tally.count("interruptions")
        if call is None or not interruptions.is_possible(fault, call):
            continue
        place = f"{interruptions.name}, {fault} at {at} of {interruptions.program}, " \
                f"{call[1]} {call[3].removeprefix(world.root)}"
        faults = [*interruptions.faults_of(run, fault, call), *interruptions.repeat()]
        for kind, text in faults:
            tally.fault(kind, place, " / ".join(text.split("\n"))[:300])
