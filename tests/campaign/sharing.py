"""Programs that change one project at the same time, and branches of it that git merges."""

import json
import os
import shutil
import subprocess
import sys

sys.path.insert(0, os.path.join(os.path.dirname(os.path.dirname(os.path.abspath(__file__))), "serve"))
from rpc_client import Client  # noqa: E402


def write_project(folder, groups, files):
    """A project of that many groups with that many files each, as `tarn new` would write it."""
    os.makedirs(os.path.join(folder, "src"), exist_ok=True)
    lines = ["", '<Application Header="fw" Extern=".\\fw.tapp" Path=".\\fw.tapp" >',
             "\t<Options>", '\t\t<Config Header="Standard" >', '\t\t\t<Set Header="Application" >',
             '\t\t\t\t<Section Header="Target" >',
             '\t\t\t\t\t<Property Header="Toolchain" Removable="Yes" Value="host-gcc" />',
             "\t\t\t\t</Section>", "\t\t\t</Set>", "\t\t</Config>", "\t</Options>"]
    for group in range(groups):
        lines.append(f'\t<Group Header="g{group}" >')
        for number in range(files):
            name = f"f{group}_{number}.c"
            open(os.path.join(folder, "src", name), "w").close()
            lines.append(f'\t\t<C Header="{name}" Path=".\\src\\{name}" />')
        lines.append("\t</Group>")
    lines.append("</Application>")
    with open(os.path.join(folder, "fw.tapp"), "w", newline="") as file:
        file.write("\r\n".join(lines))
    with open(os.path.join(folder, "fw.tprj"), "w", newline="") as file:
        file.write('\r\n<Project Header="Project \'fw\'" Path=".\\fw.tprj" Project="Yes" '
                   'ActiveApp="fw" >\r\n\t<Application Header="fw" Extern=".\\fw.tapp" '
                   'Path=".\\fw.tapp" />\r\n</Project>')


class Desktop:
    """The desktop program with the project open, driven by lines (tests/desktop/driver)."""

    def __init__(self, world, program):
        environment = dict(world.environment(), QT_QPA_PLATFORM="offscreen")
        self.process = subprocess.Popen([os.path.abspath(program)], cwd=world.project, env=environment, text=True,
                                        stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                        stderr=subprocess.DEVNULL)
        self.pending = 0
        self.start("open " + os.path.join(world.project, "fw.tprj"))
        self.finish()

    def start(self, *lines):
        self.process.stdin.write("".join(line + "\n" for line in lines))
        self.process.stdin.flush()
        self.pending += len(lines)

    def finish(self):
        """Waits for the answers to all lines; those that aren't "ok"."""
        answers = [self.process.stdout.readline().strip() for _ in range(self.pending)]
        self.pending = 0
        return [each for each in answers if each != "ok"]

    def close(self):
        self.process.stdin.close()
        self.process.wait()


class Change:
    """A change by the command line, and the text that the project's files must have afterwards."""

    def __init__(self, world, random, number):
        kind = random.choice(("add", "option", "configuration"))
        group = random.randrange(4)
        if kind == "add":
            self.path = os.path.join(world.project, "src", f"new{number}.c")
            open(self.path, "w").close()
            self.words = ("add", f"src/new{number}.c", "--to", f"g{group}")
            self.wanted = f"new{number}.c"
        elif kind == "option":
            self.words = ("options", "set", "-n", f"g{group}", "Compiler.Defines", f"D{number}")
            self.wanted = None  # if there are two for one group, the later one wins
        else:
            self.words = ("config", "add", f"c{number}")
            self.wanted = f'"c{number}"'


def run_races(world, random, rounds, tally, options):
    """2 or 8 processes change the project at once, in every third round with an editor's server as
    one of them and in another with the desktop program: all changes are there, and the files are
    whole."""
    write_project(world.project, 4, 3)
    server = Client(world.program, world.environment(), world.project)
    server.wait(server.post("initialize", {"applicationPath": os.path.join(world.share, "")}))
    server.call("ProjectOpen", os.path.join(world.project, "fw.tprj"))
    desktop = Desktop(world, options.desktop) if options.desktop else None
    wanted = set()
    number = 0
    for turn in range(rounds):
        place = f"--seed {options.seed} round {turn}"
        changes = []
        for _ in range(random.choice((2, 8))):
            changes.append(Change(world, random, number))
            number += 1
        before = len(world.records())
        processes = [world.start(*each.words) for each in changes]
        if turn % 3 == 0:
            name = f"serve{turn}.c"
            path = os.path.join(world.project, "src", name)
            open(path, "w").close()
            server.call("AddExistingItem", path, None)
            server.call("ProjectSave")
            wanted.add(name)
        if desktop and turn % 3 == 1:
            name = f"desktop{turn}.c"
            path = os.path.join(world.project, "src", name)
            open(path, "w").close()
            desktop.start("add " + path, "save")
            wanted.add(name)
        for change, process in zip(changes, processes):
            run = world.finish(process, before)
            tally.count("changes")
            if run.code != 0:
                tally.fault("crash" if run.crashed else "refused change", place, run.brief())
            elif change.wanted:
                wanted.add(change.wanted)
        if desktop and desktop.pending:
            tally.count("desktop changes")
            if desktop.finish():
                tally.fault("refused change", place, "by the desktop program")
        with open(os.path.join(world.project, "fw.tapp")) as file:
            text = file.read()
        lost = sorted(each for each in wanted if each not in text)
        if lost:
            tally.fault("lost update", place, " ".join(lost))
            wanted -= set(lost)
        check = world.tarn("check", "--json")
        if json.loads(check.output)["damage"]:
            tally.fault("damaged file", place, check.brief())
        kept = [each for each in os.listdir(world.project) if each.endswith((".orig", ".unsaved"))]
        for each in kept:
            tally.fault("needless copy", place, each)
            os.remove(os.path.join(world.project, each))
    server.kill()
    if desktop:
        desktop.close()


class Repository:
    """A git repository of a project, with the program that changes it."""

    def __init__(self, world):
        self.world = world
        self.git("init", "-q", "-b", "main")
        self.git("config", "user.email", "a@b.c")
        self.git("config", "user.name", "n")
        with open(os.path.join(world.project, ".gitignore"), "w") as file:
            file.write("*.tlock\n*.tstate\n*.tlog\n/build/\n")
        self.commit("begin")

    def git(self, *words):
        return subprocess.run(["git", "-c", "core.autocrlf=false", *words], cwd=self.world.project,
                              capture_output=True, text=True, check=False)

    def commit(self, text):
        self.git("add", "-A")
        self.git("commit", "-q", "-m", text)

    def changed_lines(self):
        """How many lines were added and removed since the last commit."""
        lines = self.git("diff", "--numstat", "--", "*.tprj", "*.tapp").stdout.split("\n")
        counts = [line.split("\t")[:2] for line in lines if line]
        return tuple(sum(int(each[i]) for each in counts) for i in (0, 1))

    def tarn(self, *words):
        run = self.world.tarn(*words)
        if run.code != 0:
            raise AssertionError(f"{' '.join(words)}: {run.brief()}")


# The changes that two people make on their branches, and the expected result of a git merge.
BRANCHES = (
    ([("add", "src/a.c", "--to", "g1")], [("add", "src/b.c", "--to", "g2")], True),
    ([("add", "src/a.c", "--to", "g1")], [("remove", "src/f3_1.c")], True),
    ([("remove", "src/f1_1.c")], [("rename", "src/f2_1.c", "second")], True),
    ([("rename", "g3", "Third")], [("add", "src/b.c", "--to", "g9")], True),
    ([("options", "set", "-n", "src/f1_1.c", "Compiler.Defines", "A")],
     [("options", "set", "-n", "src/f5_1.c", "Compiler.Defines", "B")], True),
    ([("options", "set", "-n", "src/f1_1.c", "Compiler.Defines", "A")],
     [("remove", "src/f1_5.c")], True),
    ([("config", "add", "Debug")], [("add", "src/b.c", "--to", "g7")], True),
    ([("options", "set", "Compiler.Defines", "A")], [("add", "src/b.c", "--to", "g7")], True),
    ([("add", "src/a.c", "--to", "g1")], [("options", "set", "Compiler.Defines", "B")], True),
    ([("options", "set", "-n", "src/f1_1.c", "Compiler.Defines", "A")],
     [("options", "set", "-n", "src/f1_1.c", "Compiler.Defines", "B")], False),
    ([("rename", "src/f1_1.c", "first")], [("remove", "src/f1_1.c")], False),
)


def run_git(world, random, rounds, tally, options):
    """Branches of a project of 300 files: what touches different nodes merges cleanly, what does not
    conflicts and is named by a check. One change is one line, and a save of nothing is none."""
    del random
    if shutil.which("git") is None:
        raise SystemExit("campaign: git not found")
    write_project(world.project, 20, 15)
    for name in ("a.c", "b.c"):
        open(os.path.join(world.project, "src", name), "w").close()
    repository = Repository(world)
    for words, lines in ((("add", "src/a.c", "--to", "g4"), (1, 0)),
                         (("remove", "src/f4_4.c"), (0, 1)),
                         (("rename", "src/f4_5.c", "other"), (1, 1)),
                         (("config", "add", "Debug", "--empty"), (3, 0)),
                         (("config", "select", "Debug"), (1, 1))):
        repository.tarn(*words)
        tally.count("changes")
        if repository.changed_lines() != lines:
            tally.fault("noise", f"after {' '.join(words)}",
                        f"{repository.changed_lines()} lines instead of {lines}")
        repository.commit("x")
    repository.git("reset", "-q", "--hard", repository.git("rev-list", "--max-parents=0",
                                                           "HEAD").stdout.strip())
    for number, (ours, theirs, isClean) in enumerate(BRANCHES[:rounds]):
        place = f"{ours} and {theirs}"
        for branch, commands in ((f"one{number}", ours), (f"two{number}", theirs)):
            repository.git("checkout", "-q", "-B", branch, "main")
            for words in commands:
                repository.tarn(*words)
            repository.commit(branch)
        merged = repository.git("merge", "-q", "-m", "m", f"one{number}").returncode == 0
        tally.count("merges")
        check = world.tarn("check", "--json")
        damage = json.loads(check.output)["damage"]
        if merged != isClean:
            tally.fault("conflict" if isClean else "missing conflict", place, check.brief())
        elif merged == bool(damage):
            tally.fault("unnamed conflict" if damage == [] else "damaged file", place, check.brief())
        repository.git("merge", "--abort")
        repository.git("checkout", "-q", "-f", "main")
    check_line_ends(world, repository, tally)


def check_line_ends(world, repository, tally):
    """A save keeps the line ends of the file, and a second one changes nothing."""
    for ends in (b"\r\n", b"\n"):
        for name in ("fw.tapp", "fw.tprj"):
            path = os.path.join(world.project, name)
            with open(path, "rb") as file:
                text = file.read().replace(b"\r\n", b"\n").replace(b"\n", ends)
            with open(path, "wb") as file:
                file.write(text)
        repository.commit("ends")
        repository.tarn("options", "set", "Compiler.Defines", "X")
        repository.tarn("options", "reset", "Compiler.Defines")
        tally.count("saves", 2)
        lines = repository.changed_lines()
        if lines != (0, 0):
            tally.fault("noise", f"line ends {ends!r}", f"{lines} lines changed by set and reset")
