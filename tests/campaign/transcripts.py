"""Builds of the same state with different numbers of jobs, which must say and make the same."""

import os
import re
import shutil

from campaign.changes import EditFailed
from campaign.edits import BREAKING, KINDS, WEIGHTS

JOBS = (1, 2, 8)


def park(world, name):
    """Moves the project to the side and returns its place there."""
    place = os.path.join(world.root, name)
    shutil.rmtree(place, ignore_errors=True)
    os.rename(world.project, place)
    return place


def read(path):
    if not os.path.exists(path):
        return ""
    with open(path, encoding="latin-1") as file:
        return file.read()


def untimed(text):
    text = re.sub(r"\(\d+(\.\d+)? s\)", "(T)", text)
    text = re.sub(r'"milliseconds":\s*\d+', '"milliseconds": 0', text)
    return re.sub(r"/tmp/cc\w+", "/tmp/cc", text)


def transcript(world, words, jobs):
    """What a build said and left behind, apart from times."""
    world.jobs = jobs
    run = world.tarn(*words)
    log = read(os.path.join(world.project, "fw.tlog"))
    report = world.tarn("report", "--json")
    status = world.tarn("status", "--json")
    outputs = world.outputs()
    if run.code != 0:
        # Outputs of early runs that the build doesn't reach are removed: which outputs of an earlier
        # build remain after a failure depends on the jobs, and so does what is out of date.
        status.output, outputs = "", {}
    return {"exit code": run.code, "output": untimed(run.output), "errors": untimed(run.errors),
            "log": untimed(log), "report": untimed(report.output), "status": status.output,
            "outputs": outputs}


def difference(one, other):
    for name, value in one.items():
        if value == other[name]:
            continue
        if not isinstance(value, str):
            return f"{name}: {value} and {other[name]}"[:300]
        lines, others = value.splitlines(), other[name].splitlines()
        for line, its in zip(lines + [""], others + [""]):
            if line != its:
                return f"{name}: {line[:200]} | {its[:200]}"
        return f"{name}: {len(lines)} and {len(others)} lines"
    return None


def run_jobs(world, firmware, edits, random, count, tally, options):
    """Makes `count` edits. After each, the same state is built with each number of jobs."""
    world.build()
    mending = False
    kinds = options.only or KINDS
    for step in range(count):
        place = f"--toolchain {options.toolchain} --seed {options.seed} step {step}"
        kind, told = "heal", None
        try:
            while told is None:
                kind = "heal" if mending else random.choices(
                    kinds, [WEIGHTS.get(each, 2) for each in kinds])[0]
                told = getattr(edits, kind)()
        except EditFailed as failure:
            tally.fault("failed command", f"{place} {kind}", failure)
        place = f"{place} {kind} {told}"
        words = random.choice(
            (("build", "-v"), ("build", "--json"), ("rebuild",), ("build", "-v", "-k", "0")))
        before = park(world, "before")
        made = {}
        for jobs in JOBS:
            shutil.rmtree(world.project, ignore_errors=True)
            shutil.copytree(before, world.project, symlinks=True)
            made[jobs] = transcript(world, words, jobs)
            tally.count("builds")
            found = difference(made[JOBS[0]], made[jobs])
            if found:
                tally.fault("other transcript", f"{place} -j{jobs}", found)
        shutil.rmtree(world.project)
        os.rename(before, world.project)
        run = world.build()
        tally.count("broken states" if run.code else "good states")
        mending = kind in BREAKING or run.code != 0
        edits.keep_state()
