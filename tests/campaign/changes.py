"""Ways to change files: those of editors, of version control, and of people in a hurry."""

import os
import re
import shutil

HOUR = 3600 * 10**9


class EditFailed(Exception):
    """A command that had to work didn't."""


class Changes:
    """What edits are made of; contents that are meant to stay go into the firmware's texts."""

    def __init__(self, world, firmware, random, strict=False):
        self.world, self.firmware, self.random = world, firmware, random
        self.strict = strict  # include edits visible only in the time of the last status change
        self.quiet = False  # the last edit makes nothing outdated
        self.backups = {}  # path below the project: copies of older versions outside of it
        self.states = []  # older versions of the state
        self.definitions = 0
        self.tool = "tool"  # label of the second application

    def write(self, path, text):
        place = self.firmware.place(path)
        before = os.stat(place) if os.path.exists(place) else None
        if before is not None and self.random.random() < 0.3:
            self.back_up(path)
        way = self.random.choice(("in place", "replaced"))
        target = place if way == "in place" else place + ".new~"
        with open(target, "w") as file:
            file.write(text)
        way += ", " + self.set_time(target, before, len(text), way)
        if target != place:
            os.replace(target, place)
        return way

    def set_time(self, path, before, size, way):
        """Gives a file one of the times that edits leave."""
        now = os.stat(path).st_mtime_ns
        times = {"now": now, "past": now - self.random.randrange(HOUR), "long ago": 10**18,
                 "future": now + self.random.randrange(1, HOUR)}
        if before is not None:
            second = before.st_mtime_ns // 10**9 * 10**9
            times["same second"] = second + (before.st_mtime_ns - second + 1) % 10**9
            # The edit stays visible: the file is a different one, or its size has changed.
            if self.strict or way == "replaced" or size != before.st_size:
                times["same time"] = before.st_mtime_ns
        name = self.random.choice(["now"] * 4 + sorted(times))
        os.utime(path, ns=(times[name], times[name]))
        return name

    def back_up(self, path):
        copies = self.backups.setdefault(path, [])
        copy = os.path.join(self.world.root, f"backup-{path.replace('/', '-')}-{len(copies)}")
        shutil.copy2(self.firmware.place(path), copy)
        copies.append((copy, self.firmware.texts[path]))

    def change_number(self, path):
        """Changes the last number in a file; now and then its size, too."""
        texts = self.firmware.texts
        number = self.firmware.number() + ("0" if self.random.random() < 0.2 else "")
        texts[path] = re.sub(r"\d+(?!.*\d)", number, texts[path], flags=re.S)
        return f"{path} {self.write(path, texts[path])}"

    def tarn(self, *words):
        run = self.world.tarn(*words)
        if run.code != 0:
            raise EditFailed(f"tarn {' '.join(words)}: {run.brief()}")
        return " ".join(words)

    def keep_state(self):
        kept = {}
        for path in self.world.state_files():
            with open(path, "rb") as file:
                kept[path] = file.read()
        self.states = self.states[-9:] + [kept]

    def damage(self, path):
        how = self.random.choice(("deleted", "cut", "emptied", "overwritten", "flipped"))
        if how == "deleted":
            os.remove(path)
            return how
        with open(path, "rb") as file:
            content = bytearray(file.read())
        at = self.random.randrange(len(content)) if content else 0
        if how == "flipped" and content:
            content[at] ^= 1 << self.random.randrange(8)
        else:
            content = {"cut": content[:at], "emptied": b""}.get(how, b"something else\n")
        with open(path, "wb") as file:
            file.write(content)
        return f"{how} at {at}"
