"""Campaigns in rounds: a damaged state, two builds at once, builds that are killed."""

import json
import os
import time

from campaign.world import kill, settle

# Fake compiler for campaigns that need thousands of builds: an object is the concatenation of its
# source and the header, a program that of its objects. Records its runs like the wrapper of real
# compilers.
FAKE_COMPILER = """#!/bin/sh
while [ $# -gt 0 ]; do
  case "$1" in
    -o) out=$2; shift ;;
    -MF) rules=$2; shift ;;
    -x | -Xassembler | -Xlinker) shift ;;
    -*) ;;
    *) files="$files $1" ;;
  esac
  shift
done
[ -n "$out" ] || exit 0
echo "start $$ $out" >>'{log}'
if [ -n "$rules" ]; then
  echo "$out: $files common.h" >"$rules"
  files="$files common.h"
fi
cat $files >"$out"
echo "end $$ 0 $out" >>'{log}'
"""


def run_state(world, firmware, random, positions, tally, options):
    """Cuts the state at each position and flips a bit there, always with a source edited as well."""
    contents = {}

    def edit(name):
        contents[name] = f"/* {name} {firmware.number()} */\n"
        with open(firmware.place(name), "w") as file:
            file.write(contents[name])

    def linked():
        return "".join(contents[name] + contents["common.h"] for name in ("one.c", "two.c"))

    for name in ("one.c", "two.c", "common.h"):
        edit(name)
    firmware.create_tiny()
    world.build()
    for position in positions:
        for how in ("cut", "flipped"):
            edit(random.choice(("one.c", "two.c", "common.h")))
            if random.random() < 0.1:
                stop_in_the_middle(world, random)
            damaged = damage_state(world, position, how, random)
            if damaged is None:
                return
            place = f"--seed {options.seed} {how} at {position}, {damaged}"
            check_tiny(world, tally, place, linked())


def damage_state(world, position, how, random):
    """Damages the files of the state as if they were one."""
    for path in world.state_files():
        with open(path, "rb") as file:
            content = bytearray(file.read())
        if position >= len(content):
            position -= len(content)
            continue
        if how == "cut":
            del content[position:]
        else:
            content[position] ^= 1 << random.randrange(8)
        with open(path, "wb") as file:
            file.write(content)
        return os.path.basename(path)
    return None


def kill_after(process, world, before, runs, delay):
    """Kills a build a moment after it has started so many tools, if it still runs."""
    while process.poll() is None:
        if sum(words[0] == "start" for words in world.records()[before:]) >= runs:
            break
        time.sleep(0.002)
    time.sleep(delay)
    kill(process)


def stop_in_the_middle(world, random):
    before = len(world.records())
    kill_after(world.start("build"), world, before, random.randrange(3), random.random() * 0.01)
    world.await_compilers()


def check_tiny(world, tally, place, wanted):
    run = world.build()
    try:
        with open(os.path.join(world.project, "build/Standard/fw")) as file:
            made = file.read()
    except (OSError, UnicodeDecodeError) as failure:
        made = str(failure)
    again = world.build()
    tally.count("builds")
    if run.crashed or again.crashed:
        tally.fault("crash", place, f"{run.brief()}; again {again.brief()}")
    elif run.code != 0:
        tally.fault("wrong verdict", place, run.brief())
    elif made != wanted:
        tally.fault("missed rebuild", place, f"{made!r} is linked instead of {wanted!r}")
    elif not again.idle:
        tally.fault("endless rebuild", place, f"second build ran {again.ran()}")
    else:
        return
    world.forget()


def change(firmware, edits, random, count):
    """Edits some sources and sometimes a header."""
    paths = random.sample(firmware.sources(), count)
    if random.random() < 0.3:
        paths.append(random.choice(("lib/inc/deep.h", "lib/inc/shadowed.h")))
    for path in paths:
        edits.change_number(path)


def run_pairs(world, firmware, edits, random, rounds, tally, options):
    """Two builds at once: both succeed, and what they leave is whole and current."""
    pairs = ((("build",), ("build",)), (("build",), ("rebuild",)), (("rebuild",), ("rebuild",)),
             (("build",), ("build", "-c", "Debug")))
    world.build()
    for number in range(rounds):
        change(firmware, edits, random, 4)
        commands = random.choice(pairs)
        place = f"--seed {options.seed} round {number}, {' and '.join(map(' '.join, commands))}"
        before = len(world.records())
        first = world.start(*commands[0])
        time.sleep(random.choice((0, 0, 0.02, 0.1)))
        second = world.start(*commands[1])
        for run in (world.finish(first, before), world.finish(second, before)):
            if run.code != 0:
                tally.fault("crash" if run.crashed else "wrong verdict", place, run.brief())
        good = settle(world, tally, place, quiet=True)[0]
        if "-c" in commands[1]:
            good = settle(world, tally, place, commands[1][1:], quiet=True)[0] and good
        if not good:
            world.forget()


def stale_reasons(world):
    """Of each output that is out of date, by its name."""
    status = json.loads(world.tarn("status", "--json").output)
    return {os.path.basename(node["output"]): f"{node['reason']} {node['file']}".strip()
            for application in status for node in application["outOfDate"]}


def run_kills(world, firmware, edits, random, rounds, tally, options):
    """After a kill only those tools run again whose run had not ended, or just ended."""
    world.jobs = 1  # with more, results that wait for their turn are lost, too
    world.build()
    for number in range(rounds):
        change(firmware, edits, random, 5)
        needed = set(stale_reasons(world))
        before = len(world.records())
        kill_after(world.start("build"), world, before, random.randrange(len(needed) + 1),
                   random.random() * 0.03)
        ended = [os.path.basename(words[-1]) for words in world.records()[before:]
                 if words[0] == "end"]
        waits = random.random() < 0.5
        place = f"--seed {options.seed} round {number}, killed after {len(ended)} of {len(needed)} runs"
        if waits:
            world.await_compilers()
        reasons = stale_reasons(world)
        ran = [os.path.basename(words[-1]) for words in world.build().tools]
        # The record of the tool that ended last may not have been written.
        again = set(ran) & set(ended[:-1])
        needless = sorted(again | (set(ran) - needed))
        tally.count("kept runs", len(set(ended[:-1]) - again))
        if needless:
            told = ", ".join(f"{each} ({reasons.get(each, 'not stale before')})" for each in needless)
            tally.fault("needless rebuild", place, f"ran {told}")
        if not waits:  # processes of the killed build may have run in between
            world.await_compilers()
        good = settle(world, tally, place, quiet=waits)[0]
        if not good or needless:
            world.forget()

