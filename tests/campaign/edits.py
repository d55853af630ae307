"""Random edits of a project, made without pauses, each checked against a clean build."""

import os
import re
import shutil
import time

from campaign.changes import Changes, EditFailed
from campaign.world import settle


class Edits(Changes):
    """One method for each kind of edit; each returns a few words on what it did, or None."""

    # --- Changes of content ---

    def edit_source(self):
        return self.change_number(self.random.choice(self.firmware.sources()))

    def edit_header(self):
        edited = [path for path in self.firmware.headers() if path != "inc/units.h"]
        return self.change_number(self.random.choice(edited))

    def edit_script(self):
        return self.change_number("ld/stamp.ld")

    def touch(self):
        path = self.random.choice(sorted(self.firmware.texts))
        place = self.firmware.place(path)
        return f"{path} {self.set_time(place, os.stat(place), -1, 'touched')}"

    def restore(self):
        """An older version comes back with its old time, as with cp -p or from an archive."""
        kept = [path for path in sorted(self.backups) if path in self.firmware.texts]
        if not kept:
            return None
        path = self.random.choice(kept)
        copy, text = self.random.choice(self.backups[path])
        self.firmware.texts[path] = text
        self.firmware.list_units()
        place = self.firmware.place(path)
        if self.random.random() < 0.5:
            shutil.copy2(copy, place)
        else:
            shutil.copy2(copy, place + ".new~")
            os.replace(place + ".new~", place)
        return path

    def swap_files(self):
        """Two files trade places; neither has a new time."""
        one, two = self.random.choice((("boards/a/pins.h", "boards/b/pins.h"),
                                       ("variants/one.h", "variants/two.h")))
        texts, place = self.firmware.texts, self.firmware.place
        texts[one], texts[two] = texts[two], texts[one]
        os.rename(place(one), place("traded"))
        os.rename(place(two), place(one))
        os.rename(place("traded"), place(two))
        return f"{one} and {two}"

    def save_while_compiling(self):
        path = self.random.choice(self.firmware.sources() + self.firmware.headers()[:4])
        if path == "inc/units.h":
            return None
        self.change_number("src/main.c")
        process = self.world.start("build", "--json")
        time.sleep(self.random.random() * 0.15)
        told = self.change_number(path)
        process.communicate()
        return told

    # --- Changes of the tree ---

    def add_source(self):
        if len(self.firmware.units) > 10:
            return None
        path = self.firmware.add_unit(self.random.choice(("src", "src/drivers")))
        self.write(path, self.firmware.texts[path])
        self.write("inc/units.h", self.firmware.texts["inc/units.h"])
        return self.tarn("add", "fw.tprj", path, "--to", "fw/Sources")

    def remove_source(self):
        if len(self.firmware.units) < 5:
            return None
        name = self.random.choice(sorted(self.firmware.units))
        path = self.firmware.units.pop(name)
        del self.firmware.texts[path]
        os.remove(self.firmware.place(path))
        self.firmware.list_units()
        self.write("inc/units.h", self.firmware.texts["inc/units.h"])
        return self.tarn("remove", "fw.tprj", path)

    def rename_source(self):
        name = self.random.choice(sorted(self.firmware.units))
        path = self.firmware.units[name]
        stem, extension = os.path.splitext(path)
        new = stem.split("-")[0] + f"-{self.firmware.number()}{extension}"
        os.rename(self.firmware.place(path), self.firmware.place(new))
        self.firmware.texts[new] = self.firmware.texts.pop(path)
        self.firmware.units[name] = new
        self.tarn("remove", "fw.tprj", path)
        return self.tarn("add", "fw.tprj", new, "--to", "fw/Drivers")

    def move_node(self):
        path = self.random.choice(sorted(self.firmware.units.values()))
        return self.tarn("move", "fw.tprj", path, self.random.choice(("fw/Drivers", "fw/Sources")))

    def rename_node(self):
        self.quiet = True
        node = self.random.choice(sorted(self.firmware.units.values()))
        return self.tarn("rename", "fw.tprj", node, f"label {self.firmware.number()}")

    def rename_application(self):
        self.quiet = True
        old, self.tool = self.tool, f"tool {self.firmware.number()}"
        return self.tarn("rename", "fw.tprj", old, self.tool)

    def shadow(self):
        """A header appears or goes that is found earlier in the include path than another one, or
        that is tested for."""
        path = self.random.choice(("inc/shadowed.h", "inc/shared.h", "src/shadowed.h",
                                   "src/drivers/pins.h", "inc/deep.h", "inc/tuning.h"))
        if path in self.firmware.texts:
            del self.firmware.texts[path]
            os.remove(self.firmware.place(path))
            return f"{path} is gone"
        names = {"shadowed.h": "SHADOWED", "shared.h": "SHARED", "pins.h": "PINS", "deep.h": "DEEP",
                 "tuning.h": "TUNED"}
        name = names[os.path.basename(path)]
        self.firmware.texts[path] = f"#define {name} {self.firmware.number()}\n"
        return f"{path} appears, {self.write(path, self.firmware.texts[path])}"

    def retarget_link(self):
        path, targets = self.random.choice((("board", ("boards/a", "boards/b")), (
            "inc/variant.h", ("../variants/one.h", "../variants/two.h"))))
        old = self.firmware.links[path]
        target = targets[0] if old == targets[1] else targets[1]
        self.firmware.links[path] = target
        os.remove(self.firmware.place(path))
        os.symlink(target, self.firmware.place(path))
        return f"{path} -> {target}"

    def replace_library(self):
        self.firmware.make_library(self.firmware.number())
        return "lib/libvendor.a"

    # --- Options, definitions, compilers ---

    def set_option(self):
        number = self.firmware.number()
        include = ["inc", "lib/inc", "board"]
        self.random.shuffle(include)
        key, value = self.random.choice((
            ("Compiler.Defines", f"LEVEL={number}"), ("Compiler.Optimize", "2"),
            ("Compiler.Optimize", "1"), ("Directories.Include", ";".join(include)),
            ("Linker.Extra", f"-Wl,--defsym=mark={number}"), ("Compiler.Debug", "No"),
            ("Compiler.Debug", "Yes"), ("Build.Launcher", "env")))
        self.quiet = key == "Build.Launcher"
        return self.tarn("options", "set", "-a", "fw", "--", key, value, "fw.tprj")

    def set_file_option(self):
        path = self.random.choice(sorted(self.firmware.units.values()))
        extra = self.random.choice(("-DX=1", "-DX=2", "-fno-inline", "-DTOOLCHAIN_=3"))
        return self.tarn("options", "set", "-n", path, "--", "Compiler.Extra", extra, "fw.tprj")

    def reset_option(self):
        if self.random.random() < 0.5:
            path = self.random.choice(sorted(self.firmware.units.values()))
            return self.tarn("options", "reset", "-n", path, "Compiler.Extra", "fw.tprj")
        key = self.random.choice(("Compiler.Debug", "Linker.Extra", "Build.Launcher"))
        return self.tarn("options", "reset", "-a", "fw", key, "fw.tprj")

    def edit_application(self):
        """A property is changed in the file itself, by hand or by a merge."""
        place = self.firmware.place("fw.tapp")
        with open(place, encoding="latin-1") as file:
            text = file.read()
        text, count = re.subn(r'LEVEL=\d+', f"LEVEL={self.firmware.number()}", text, count=1)
        with open(place, "w", encoding="latin-1") as file:
            file.write(text)
        return f"fw.tapp, {count} places"

    def select_configuration(self):
        name = self.random.choice(("Standard", "Debug"))
        return self.tarn("config", "select", name, "fw.tprj", "-a", "fw")

    def edit_definitions(self):
        self.definitions += 1
        kind = self.firmware.kind["name"]
        name, pattern, text = self.random.choice((
            (f"tools/{kind}.tools", r'<Arg V="-c"/>(<Arg V="-DTOOL=\d+"/>)?',
             f'<Arg V="-c"/><Arg V="-DTOOL={self.definitions}"/>'),
            ("options/common.options", r'(Header="Extra" Type="text" Label=")[^"]*',
             rf"\g<1>Label {self.definitions}"),
            (f"tools/{kind}.tools", r'Title="[^"]*', f'Title="Title {self.definitions}')))
        self.quiet = "-DTOOL" not in text
        place = os.path.join(self.world.share, "config", name)
        with open(place) as file:
            old = file.read()
        with open(place, "w") as file:
            file.write(re.sub(pattern, text, old))
        return f"{name} {text}"

    def replace_compiler(self):
        flags = f"-DTOOLCHAIN={self.random.randrange(100, 999)}"
        self.world.install_compilers(self.world.path, flags)
        return flags

    def change_search_path(self):
        name = "bin" if self.world.path.endswith("bin2") else "bin2"
        self.world.path = os.path.join(self.world.root, name)
        if not os.path.exists(self.world.path):
            self.world.install_compilers(self.world.path, "-DTOOLCHAIN=555")
        return name

    # --- Changes of outputs and state ---

    def damage_output(self):
        made = [name for name in sorted(self.world.outputs()) if name.startswith("build")]
        if not made:
            return None
        place = self.firmware.place(self.random.choice(made))
        return f"{os.path.relpath(place, self.world.project)} {self.damage(place)}"

    def damage_rules(self):
        rules = [os.path.join(folder, name) for folder, _, names in os.walk(self.world.project)
                 for name in names if name.endswith(".d")]
        return self.damage(self.random.choice(sorted(rules))) if rules else None

    def damage_state(self):
        states = self.world.state_files()
        if self.states and self.random.random() < 0.3:
            for path, content in self.random.choice(self.states).items():
                with open(path, "wb") as file:
                    file.write(content)
            return "an older one"
        return self.damage(self.random.choice(states)) if states else None

    def delete_outputs(self):
        shutil.rmtree(self.firmware.place("build"), ignore_errors=True)
        return "build"

    def clean(self):
        return self.tarn("clean", "fw.tprj")

    def change_nothing(self):
        self.quiet = True
        return ""

    # --- Edits that break a build; the next edit repairs it ---

    def delete_input(self):
        path = self.random.choice(sorted(self.firmware.texts))
        os.remove(self.firmware.place(path))
        return path

    def break_source(self):
        path = self.random.choice(self.firmware.sources() + self.firmware.headers())
        with open(self.firmware.place(path), "a") as file:
            file.write("\n#error broken\n")
        return path

    def rename_by_case(self):
        path = self.random.choice(self.firmware.headers())
        folder, name = os.path.split(self.firmware.place(path))
        os.rename(os.path.join(folder, name), os.path.join(folder, name.capitalize()))
        return path

    def heal(self):
        """Everything is as it should be, files with another letter case included."""
        for folder in ("inc", "lib/inc", "src", "src/drivers", "boards/a", "boards/b", "variants"):
            for name in os.listdir(self.firmware.place(folder)):
                if name != name.lower():
                    os.rename(self.firmware.place(f"{folder}/{name}"),
                              self.firmware.place(f"{folder}/{name.lower()}"))
        self.firmware.heal()
        return "all inputs"


KINDS = [name for name in vars(Edits) if not name.startswith("_") and name != "heal"]
BREAKING = {"delete_input", "break_source", "rename_by_case"}
WEIGHTS = {"edit_source": 8, "edit_header": 8, "edit_script": 3, "touch": 4, "restore": 5,
           "shadow": 5, "set_option": 5, "set_file_option": 3, "save_while_compiling": 3,
           "damage_output": 3, "damage_state": 3, "retarget_link": 3}


def run_edits(world, firmware, random, count, tally, options):
    """Makes `count` edits; each is followed by a build, a second one and a clean one."""
    edits = Edits(world, firmware, random, options.strict)
    mending = settled = False
    kinds = options.only or KINDS
    for step in range(count):
        edits.quiet = False
        kind, told = "heal", None
        place = f"--toolchain {options.toolchain} --seed {options.seed} step {step}"
        try:
            while told is None:
                kind = "heal" if mending else random.choices(
                    kinds, [WEIGHTS.get(each, 2) for each in kinds])[0]
                told = getattr(edits, kind)()
        except EditFailed as failure:
            tally.fault("failed command", f"{place} {kind}", failure)
        place = f"{place} {kind} {told}"
        if options.verbose:
            print(place, flush=True)
        settled, clean = settle(world, tally, place, quiet=edits.quiet and settled and not mending)
        if not settled:
            world.forget()
        mending = kind in BREAKING or not clean
        edits.keep_state()
