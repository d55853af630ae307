"""The place where a campaign runs: a project, compilers that record their runs, and references."""

import hashlib
import json
import os
import shutil
import subprocess
import time

LIMIT = 120  # seconds per run of the program; exceeded only if it hangs
INPUTS = (".c", ".cpp", ".s", ".h", ".ld", ".a", ".tprj", ".tapp")

WRAPPER = """#!/bin/sh
for word; do [ "$before" = -o ] && out=$word; before=$word; done
[ -n "$out" ] || exec '{compiler}' {flags} "$@"
echo "start $$ $out" >>'{log}'
'{compiler}' {flags} "$@"
code=$?
echo "end $$ $code $out" >>'{log}'
exit $code
"""


class Run:
    """One run of the program: exit code, what it wrote and what its compilers did."""

    def __init__(self, code, output, errors, tools):
        self.code, self.output, self.errors, self.tools = code, output, errors, tools

    @property
    def crashed(self):
        return self.code < 0 or self.code >= 132 or self.code == 124

    @property
    def idle(self):
        """True for a successful build that ran no tool, by its own account and by the compilers'."""
        try:
            report = json.loads(self.output)
        except ValueError:
            return False
        return self.code == 0 and not self.tools and report["toolsRun"] == 0

    def ran(self):
        names = [os.path.basename(words[-1]) for words in self.tools]
        return " ".join(names[:6]) or self.brief()

    def brief(self):
        lines = [line.strip() for line in (self.errors + self.output).splitlines()]
        told = [line for line in lines if "rror" in line] or lines
        return f"exit {self.code}: {' / '.join(told[:2])[:300]}"


class World:
    """Folders of one campaign. The project is always built at the same path, also for reference."""

    def __init__(self, root, tarn, share, compilers, script=WRAPPER):
        self.root, self.program, self.script = root, os.path.abspath(tarn), script
        self.project = os.path.join(root, "run", "fw")
        self.source, self.share = share, os.path.join(root, "share")
        self.log = os.path.join(root, "runs.log")
        self.compilers = {name: shutil.which(name) for name in compilers}
        self.revision = 0
        self.jobs = None  # number of tools at the same time; default: that of the program
        self.path = os.path.join(root, "bin")
        os.makedirs(self.project)
        open(self.log, "w").close()
        shutil.copytree(share, self.share, ignore=shutil.ignore_patterns("examples", "bin"))
        self.install_compilers(self.path)

    def install_compilers(self, folder, flags="-DTOOLCHAIN=100"):
        """Puts recording compilers in place as a package manager does: new files, times of old."""
        os.makedirs(folder, exist_ok=True)
        self.revision += 1
        for name, compiler in self.compilers.items():
            target = os.path.join(folder, name)
            with open(target + ".new", "w") as file:
                file.write(self.script.format(log=self.log, compiler=compiler, flags=flags))
            os.chmod(target + ".new", 0o755)
            os.utime(target + ".new", (10**9 + self.revision,) * 2)
            os.replace(target + ".new", target)

    def environment(self):
        found = dict(os.environ, PATH=self.path + os.pathsep + os.environ["PATH"], LC_ALL="C",
                     TARN_ROOT=self.share, TARN_SETTINGS=os.path.join(self.root, "settings"))
        if self.jobs is not None:
            found["TARN_JOBS"] = str(self.jobs)
        return found

    def records(self):
        """What the compilers have recorded so far, as lists of words."""
        with open(self.log) as file:
            return [line.split(" ", 3) for line in file.read().splitlines()]

    def start(self, *words):
        return subprocess.Popen([self.program, *words], cwd=self.project, env=self.environment(),
                                stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True,
                                errors="replace")

    def finish(self, process, before):
        try:
            output, errors = process.communicate(timeout=LIMIT)
            code = process.returncode
        except subprocess.TimeoutExpired:
            process.kill()
            output, errors = process.communicate()
            code = 124
        tools = [words for words in self.records()[before:] if words[0] == "start"]
        return Run(code, output, errors, tools)

    def tarn(self, *words):
        before = len(self.records())
        return self.finish(self.start(*words), before)

    def build(self, *words):
        return self.tarn("build", "--json", *words)

    def await_compilers(self):
        """Waits until no compiler runs, those of a killed build included."""
        deadline = time.monotonic() + LIMIT
        while time.monotonic() < deadline:
            ended = {words[1] for words in self.records() if words[0] == "end"}
            open_runs = [words[1] for words in self.records()
                         if words[0] == "start" and words[1] not in ended]
            if not any(os.path.exists(f"/proc/{each}") for each in open_runs):
                return
            time.sleep(0.005)

    def outputs(self):
        """Hash of everything that the tools have made, except for their dependency files."""
        found = {}
        for folder, _, names in os.walk(self.project):
            place = os.path.relpath(folder, self.project)
            for name in names:
                inside = place.split(os.sep)[0] == "build" and not name.endswith(".d")
                if inside or "-Globals" in name:
                    with open(os.path.join(folder, name), "rb") as file:
                        digest = hashlib.sha1(file.read()).hexdigest()
                    found[os.path.normpath(os.path.join(place, name))] = digest
        return found

    def reference(self, *words):
        """Builds a copy of the inputs alone, at the path of the project: the run and its outputs."""
        copy, parked = os.path.join(self.root, "copy"), os.path.join(self.root, "parked")

        def ignored(folder, names):
            return [name for name in names
                    if not os.path.isdir(os.path.join(folder, name)) and not name.endswith(INPUTS)
                    or folder == self.project and name == "build"]

        shutil.copytree(self.project, copy, symlinks=True, ignore=ignored)
        os.rename(self.project, parked)
        os.rename(copy, self.project)
        try:
            run = self.build(*words)
            return run, self.outputs()
        finally:
            shutil.rmtree(self.project)
            os.rename(parked, self.project)

    def state_files(self):
        names = [name for name in os.listdir(self.project) if name.startswith("fw.tstate")]
        return sorted(os.path.join(self.project, name) for name in names)

    def forget(self):
        """Leaves only the inputs, none of them from the future, and builds them once: a fault that
        was found isn't found again."""
        self.await_compilers()
        for path in self.state_files():
            shutil.rmtree(path) if os.path.isdir(path) else os.remove(path)
        shutil.rmtree(os.path.join(self.project, "build"), ignore_errors=True)
        for folder, _, names in os.walk(self.project):
            for path in (os.path.join(folder, name) for name in names):
                if os.path.exists(path) and os.stat(path).st_mtime > time.time():
                    os.utime(path)
        self.build()


def kill(process):
    process.kill()
    process.communicate()


def differences(actual, wanted):
    """Names of the outputs that aren't those of the reference; more of them may be there."""
    return sorted(name for name, digest in wanted.items() if actual.get(name) != digest)


class Tally:
    """Faults of a campaign, each printed in one line when it is found."""

    def __init__(self, title):
        self.title, self.counts, self.faults = title, {}, []

    def count(self, name, number=1):
        self.counts[name] = self.counts.get(name, 0) + number

    def fault(self, kind, place, text):
        self.count(kind)
        self.faults.append(kind)
        print(f"FAIL {self.title} {place}: {kind}: {text}", flush=True)

    def merge(self, counts, faults):
        for name, number in counts.items():
            self.count(name, number)
        self.faults += faults

    def summary(self):
        figures = ", ".join(f"{number} {name}" for name, number in self.counts.items())
        return f"{'FAILED' if self.faults else 'passed'} {self.title}: {figures}"


def settle(world, tally, place, words=(), quiet=False):
    """Builds, builds again and compares with a clean build: the check that all campaigns share.

    Returns whether all was as it should be, and whether the inputs can be built at all. After an
    edit that is `quiet` nothing must be run."""
    run = world.build(*words)
    made = world.outputs()
    again = world.build(*words)
    clean, wanted = world.reference(*words)
    faults = len(tally.faults)
    tally.count("builds")
    for each in (run, again, clean):
        if each.crashed:
            tally.fault("crash", place, each.brief())
    if (run.code == 0) != (clean.code == 0) or (again.code == 0) != (clean.code == 0):
        verdicts = f"{run.brief()}; again {again.brief()}; clean {clean.brief()}"
        tally.fault("wrong verdict", place, verdicts)
    elif clean.code != 0:
        tally.count("broken states")
    else:
        stale = differences(made, wanted)
        if stale:
            tally.fault("missed rebuild", place, f"not as a clean build: {' '.join(stale[:4])}")
        if not again.idle:
            tally.fault("endless rebuild", place, f"second build ran {again.ran()}")
        if quiet and run.tools:
            tally.fault("needless rebuild", place, f"ran {run.ran()}")
    return len(tally.faults) == faults, clean.code == 0
