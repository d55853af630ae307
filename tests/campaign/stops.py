"""Builds that are stopped in each way there is: nothing that their tools have started goes on."""

import json
import os
import shutil
import signal
import subprocess
import time

# A stop must end within two seconds; the search for survivors takes some of that on a busy
# computer.
LIMIT = 2
MARK = "CAMPAIGN_STOP"

# A compiler that is quick for one.c. For two.c it starts processes of the kind given by a variable,
# reports that, and waits forever.
TOOL = """#!/bin/sh
for word; do
  case "$before" in -o) out=$word ;; -MF) rules=$word ;; esac
  before=$word
done
[ -n "$out" ] || exit 0
echo "start $$ $out" >>'{log}'
case "$*" in
  *two.c*)
    case "$CAMPAIGN_TOOL" in
      plain) sleep 600 & ;;
      deaf) trap '' TERM INT HUP; sleep 600 & ;;
      session) setsid sleep 600 & ;;
      deaf-session) setsid sh -c 'trap "" TERM INT HUP; sleep 600; sleep 600' & ;;
      orphan) setsid sh -c '(trap "" HUP; exec sleep 600) &' ;;
      quiet-orphan) setsid sh -c 'exec sleep 600 </dev/null >/dev/null 2>&1 &' ;;
      tree) for i in 1 2 3; do (setsid sleep 600 & sleep 600) & done ;;
    esac
    echo "up $$ $out" >>'{log}'
    while :; do sleep 600; done ;;
esac
[ -z "$rules" ] || echo "$out: one.c" >"$rules"
echo made >"$out"
echo "end $$ 0 $out" >>'{log}'
"""

ORDINARY = ("plain", "deaf")
OUTSIDE = ("session", "deaf-session", "orphan", "quiet-orphan", "tree")
SIGNALS = {"INT": signal.SIGINT, "TERM": signal.SIGTERM, "HUP": signal.SIGHUP,
           "KILL": signal.SIGKILL}
# Kinds of stops with the tools that they are tried on.
KINDS = {"INT": ORDINARY, "TERM": ORDINARY, "HUP": ORDINARY, "KILL": ORDINARY, "pipe": ORDINARY,
         "outside": OUTSIDE}


def marked(value):
    """Names and numbers of the processes whose environment has the mark with this value."""
    wanted = f"{MARK}={value}".encode()
    found = []
    for number in filter(str.isdigit, os.listdir("/proc")):
        try:
            with open(f"/proc/{number}/environ", "rb") as file:
                environment = file.read().split(b"\0")
            with open(f"/proc/{number}/cmdline", "rb") as file:
                command = file.read().replace(b"\0", b" ").decode(errors="replace").strip()
        except OSError:
            continue
        if wanted in environment and command:
            found.append((command, int(number)))
    return found


def make_project(world, firmware):
    for name in ("one.c", "two.c"):
        with open(firmware.place(name), "w") as file:
            file.write("/* nothing */\n")
    firmware.create_tiny()


def clear(world):
    for path in world.state_files():
        shutil.rmtree(path) if os.path.isdir(path) else os.remove(path)
    shutil.rmtree(os.path.join(world.project, "build"), ignore_errors=True)
    open(world.log, "w").close()


def start(world, value, tool):
    """A build of which the second tool is at work."""
    environment = dict(world.environment(), CAMPAIGN_TOOL=tool, **{MARK: value})
    process = subprocess.Popen([world.program, "build"], cwd=world.project, env=environment,
                               stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                               stderr=subprocess.DEVNULL, start_new_session=True)
    deadline = time.monotonic() + 60
    while time.monotonic() < deadline and process.poll() is None:
        if any(words[0] == "up" for words in world.records()):
            return process
        time.sleep(0.005)
    process.kill()
    process.wait()
    return None


def stop_once(world, kind, tool, value, random, tally, place):
    clear(world)
    process = start(world, value, tool)
    if process is None:
        tally.fault("wrong verdict", place, "the build didn't come to its second tool")
        return
    time.sleep(random.random() * 0.02)
    way = random.choice((*SIGNALS, "pipe")) if kind == "outside" else kind
    began = time.monotonic()
    if way == "pipe":
        process.stdout.close()
    else:
        process.send_signal(SIGNALS[way])
    try:
        code = process.wait(timeout=60)
    except subprocess.TimeoutExpired:
        process.kill()
        code = process.wait()
    took = time.monotonic() - began
    tally.count(f"{kind} stops")
    wanted = -signal.SIGKILL if way == "KILL" else 130
    if code != wanted:
        tally.fault("wrong verdict", place, f"{way}: exit {code} instead of {wanted}")
    if took > LIMIT:
        tally.fault("slow stop", place, f"{way}: {took:.1f} s")
    survivors = marked(value)
    while survivors and time.monotonic() < began + max(took, LIMIT):
        time.sleep(0.01)
        survivors = marked(value)
    if survivors:
        names = ", ".join(command for command, _ in survivors[:4])
        tally.fault("survivor", place, f"{way}: {len(survivors)} of the tool \"{tool}\": {names}")
        for _, number in survivors:
            os.kill(number, signal.SIGKILL)
    # Results of ended tools are stored. After a kill, the record of the tool that ended last may be
    # lost. With several jobs the second tool may be at work before the first has ended.
    if way != "KILL" and world.jobs == 1:
        status = json.loads(world.tarn("status", "--json").output)
        stale = [os.path.basename(node["output"]) for each in status for node in each["outOfDate"]]
        if any("one" in name for name in stale):
            tally.fault("needless rebuild", place, f"{way}: {' '.join(stale)} are out of date")


def run_stops(world, firmware, random, rounds, tally, options):
    """One stop of each kind in each round."""
    make_project(world, firmware)
    for number in range(rounds):
        world.jobs = (1, 3)[number % 2]
        for kind, tools in KINDS.items():
            tool = random.choice(tools)
            place = f"--seed {options.seed} round {number}, {kind} of \"{tool}\""
            value = f"{os.getpid()}-{options.seed}-{number}-{kind}"
            stop_once(world, kind, tool, value, random, tally, place)
