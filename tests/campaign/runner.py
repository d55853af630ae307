"""What campaigns there are, how each is set up, and in which portions they run."""

import argparse
import concurrent.futures
import contextlib
import io
import os
import random
import shutil
import tempfile

from campaign.edits import KINDS as KINDS_OF_EDITS
from campaign.edits import Edits, run_edits
from campaign.firmware import KINDS, Firmware
from campaign.interrupted import PARTS, run_interrupted
from campaign.rounds import FAKE_COMPILER, run_kills, run_pairs, run_state
from campaign.sharing import run_git, run_races
from campaign.stops import TOOL, run_stops
from campaign.transcripts import run_jobs
from campaign.world import Tally, World

PORTION = 25  # edits or rounds per seed and folder; enough to reproduce a fault


def make_world(folder, options, compilers, **more):
    missing = [name for name in compilers if shutil.which(name) is None]
    if missing:
        raise SystemExit(f"campaign: {', '.join(missing)} not found")
    return World(os.path.join(folder, "w"), options.tarn, options.share, compilers, **more)


def run_portion(options):
    """One portion in a folder of its own; returns what a tally merges."""
    tally = Tally(options.campaign)
    folder = tempfile.mkdtemp(prefix="campaign-", dir=options.folder)
    chance = random.Random(options.seed)
    if options.campaign == "state":
        world = make_world(folder, options, ("gcc", "g++", "size"), script=FAKE_COMPILER)
        run_state(world, Firmware(world, "gcc", chance), chance, options.positions, tally, options)
    elif options.campaign == "interrupted":
        world = make_world(folder, options, ("gcc", "g++", "size"), script=FAKE_COMPILER)
        run_interrupted(world, *options.part, options.stride, tally, chance)
    elif options.campaign == "stops":
        world = make_world(folder, options, ("gcc", "g++", "size"), script=TOOL)
        run_stops(world, Firmware(world, "gcc", chance), chance, options.count, tally, options)
    elif options.campaign in ("races", "git"):
        world = make_world(folder, options, ())
        run = {"races": run_races, "git": run_git}[options.campaign]
        run(world, chance, options.count, tally, options)
    else:
        world = make_world(folder, options, KINDS[options.toolchain]["compilers"])
        firmware = Firmware(world, options.toolchain, chance)
        firmware.create()
        if options.campaign == "edits":
            world.jobs = (1, 8)[options.seed % 2]
            run_edits(world, firmware, chance, options.count, tally, options)
        else:
            edits = Edits(world, firmware, chance)
            run = {"pairs": run_pairs, "kills": run_kills, "jobs": run_jobs}[options.campaign]
            run(world, firmware, edits, chance, options.count, tally, options)
    if options.keep:
        print(f"{options.campaign} --seed {options.seed}: {folder}", flush=True)
    else:
        shutil.rmtree(folder)
    return tally.counts, tally.faults


def portions(options):
    """The same work in portions, whose seeds count up from the one that was given."""
    if options.campaign == "state":
        positions = range(0, options.bytes, options.stride)
        parts = [{"positions": positions[at:at + 8 * PORTION]}
                 for at in range(0, len(positions), 8 * PORTION)]
    elif options.campaign == "interrupted":
        parts = [{"part": part} for part in PARTS]
    else:
        parts = [{"count": min(PORTION, options.count - at)}
                 for at in range(0, options.count, PORTION)]
    return [argparse.Namespace(**{**vars(options), **part, "seed": options.seed + number})
            for number, part in enumerate(parts)]


def run_campaigns(campaigns, jobs):
    """Runs all portions of all campaigns, `jobs` at a time; prints a line for each campaign."""
    good = True
    with concurrent.futures.ProcessPoolExecutor(jobs) as pool:
        started = [(options, [pool.submit(run_portion, each) for each in portions(options)])
                   for options in campaigns]
        for options, portion_runs in started:
            title = options.campaign
            if title == "edits":
                title += f" --toolchain {options.toolchain}"
            tally = Tally(title)
            for each in portion_runs:
                tally.merge(*each.result())
            print(tally.summary(), flush=True)
            good = good and not tally.faults
    return good


SABOTAGE = """#!/bin/sh
echo >>'{folder}/calls'
count=$(wc -l <'{folder}/calls')
{body}
exec '{tarn}' "$@"
"""

NEVER_AGAIN = '[ ! -d build ] || { echo "{\\"toolsRun\\": 0}"; exit 0; }'
LINKS_ALWAYS = "rm -f build/*/fw"
FORGETS = "rm -f *.tstate*"

# Fault injection: programs with one fault each, and the fault that a campaign must report.
SABOTEURS = (
    ("edits", "missed rebuild", NEVER_AGAIN),
    ("edits", "endless rebuild", LINKS_ALWAYS),
    ("edits", "needless rebuild", f"[ $((count % 3)) != 1 ] || {FORGETS}"),  # the next is up to date
    ("edits", "crash", "[ $((count % 5)) != 0 ] || kill -SEGV $$"),
    ("edits", "wrong verdict", "[ $((count % 7)) != 0 ] || { echo '{}'; exit 1; }"),
    ("state", "missed rebuild", NEVER_AGAIN),
    ("state", "endless rebuild", LINKS_ALWAYS),
    ("state", "crash", "[ $((count % 5)) != 0 ] || kill -ABRT $$"),
    ("pairs", "missed rebuild", NEVER_AGAIN),
    ("pairs", "needless rebuild", FORGETS),
    ("kills", "needless rebuild", FORGETS),
    ("kills", "endless rebuild", LINKS_ALWAYS),
    ("interrupted", "torn file", '[ "$1" != add ] || printf " " >>fw.tapp'),
    ("interrupted", "untold reason", "exec 2>/dev/null"),
    ("races", "lost update", '[ "$1" != add ] || [ $((count % 3)) != 0 ] || exit 0'),
    ("stops", "survivor", "setsid sleep 9 >/dev/null 2>&1 &"),
    ("jobs", "other transcript", '[ "$TARN_JOBS" != 8 ] || echo more'),
    ("git", "noise", '[ "$1" != add ] || echo >>fw.tprj'),
)


def run_sabotaged(given, campaign, wanted, body):
    """Whether a campaign finds the fault of a program that was broken on purpose."""
    with tempfile.TemporaryDirectory(prefix="campaign-") as folder:
        tarn = os.path.join(folder, "tarn")
        with open(tarn, "w") as file:
            file.write(SABOTAGE.format(folder=folder, body=body, tarn=os.path.abspath(given.tarn)))
        os.chmod(tarn, 0o755)
        case = {**vars(given), "campaign": campaign, "tarn": tarn, "count": 5,
                "positions": range(0, 900, 150)}
        if campaign == "interrupted":
            case.update(part=(1, "kill" if wanted == "torn file" else "EIO"), stride=60)
        if (campaign, wanted) == ("edits", "needless rebuild"):
            case["only"] = ["change_nothing"]
        with contextlib.redirect_stdout(io.StringIO()):
            return wanted in run_portion(argparse.Namespace(**case))[1]


def self_test(given):
    """Shows that campaigns find what they are made for."""
    with concurrent.futures.ProcessPoolExecutor(given.jobs) as pool:
        runs = [pool.submit(run_sabotaged, given, *each) for each in SABOTEURS]
        for (campaign, wanted, _), run in zip(SABOTEURS, runs):
            verdict = "found" if run.result() else "OVERLOOKED"
            print(f"{verdict} by {campaign}: {wanted}", flush=True)
        return all(run.result() for run in runs)
