"""A generated firmware project, and what its files should contain."""

import os
import shutil
import subprocess

KINDS = {
    "gcc": {"name": "host-gcc", "compilers": ("gcc", "g++"), "cc": "gcc", "ar": "ar",
            "optimize": "1", "device": ""},
    "avr": {"name": "avr-gcc", "compilers": ("avr-gcc", "avr-g++"), "cc": "avr-gcc", "ar": "avr-ar",
            "optimize": "s", "device": "atmega328p"},
}

FOLDERS = ("src/drivers", "inc", "lib/inc", "boards/a", "boards/b", "variants", "ld")
INCLUDES = ("inc", "lib/inc", "board")  # in include path order; the last one is a link

HEADERS = {  # content; "@" is replaced by a number
    "lib/inc/shared.h": '#include "nested.h"\n#define SHARED (NESTED + @)\n',
    "lib/inc/nested.h": '#include "deep.h"\n#define NESTED (DEEP + @)\n',
    "src/deep.h": "#define DEEP_OF_SOURCES @\n",
    # Checks for a header whose name is a macro, and includes it if it exists.
    "lib/inc/deep.h": ('#define TUNING "tuning.h"\n#if __has_include(TUNING)\n#include TUNING\n'
                       "#else\n#define TUNED 0\n#endif\n#define DEEP (TUNED + @)\n"),
    "lib/inc/shadowed.h": "#define SHADOWED @\n",
    "src/drivers/driver.h": "#define DRIVER @\n",
    "boards/a/pins.h": "#define PINS @\n",
    "boards/b/pins.h": "#define PINS @ + 1\n",
    "variants/one.h": "#define VARIANT @\n",
    "variants/two.h": "#define VARIANT @ + 1\n",
}

UNIT = """#include "shared.h"
#include "shadowed.h"
#include "pins.h"
#include "variant.h"
#include "{own}"
extern volatile int sink;
void {name}(void) {{ sink += SHARED + SHADOWED + PINS + VARIANT + TOOLCHAIN + {extra} + @; }}
"""

MAIN = """#include "units.h"
volatile int sink;
extern const unsigned char table[];
extern int vendor(void);
int main(void) {{ CALL_UNITS; sink += table[sink & 1] + vendor() + LEVEL + {number}; return sink; }}
"""

ASSEMBLER = """#include "nested.h"
.section .rodata
.global table
table: .byte NESTED & 255
.2byte @
.section .note.GNU-stack,"",%progbits
"""

SCRIPT = "SECTIONS {{ .stamp : {{ LONG({number}) }} }} INSERT AFTER .data;\n"


class Firmware:
    """Knows what every input should be; `heal` makes the disk equal to that."""

    def __init__(self, world, kind, random):
        self.world, self.kind, self.random = world, KINDS[kind], random
        self.next_number = 1000
        self.next_name = 0
        self.texts = {}  # path below the project: content
        self.links = {"board": "boards/a", "inc/variant.h": "../variants/one.h"}
        self.units = {}  # function name: path of its source
        for path, text in HEADERS.items():
            self.texts[path] = text.replace("@", self.number())
        for _ in range(3):
            self.add_unit("src")
        for _ in range(2):
            self.add_unit("src/drivers")
        self.add_unit("src", ".cpp")
        self.texts["src/main.c"] = MAIN.format(number=self.number())
        self.texts["src/table.s"] = ASSEMBLER.replace("@", self.number())
        self.texts["src/tool.c"] = ('#include "shared.h"\nvolatile int sink;\n'
                                    "int main(void) { return SHARED + %s; }\n" % self.number())
        self.texts["ld/stamp.ld"] = SCRIPT.format(number=self.number())

    def number(self):
        """Four digits, so that an edit may leave a file's size alone."""
        self.next_number = self.next_number % 9999 + 1
        return f"{max(self.next_number, 1000):04}"

    def place(self, path):
        return os.path.join(self.world.project, path)

    def add_unit(self, folder, extension=".c"):
        self.next_name += 1
        name = f"unit_{self.next_name:03}"
        path = f"{folder}/{name}{extension}"
        own, extra = ("driver.h", "DRIVER") if folder.endswith("drivers") else ("deep.h", "0")
        text = UNIT.format(own=own, extra=extra, name=name).replace("@", self.number())
        if extension == ".cpp":
            text = text.replace(f"void {name}", f'extern "C" void {name}')
        self.texts[path] = text
        self.units[name] = path
        self.list_units()
        return path

    def list_units(self):
        declared = "".join(f"void {name}(void);\n" for name in sorted(self.units))
        calls = "; ".join(f"{name}()" for name in sorted(self.units))
        self.texts["inc/units.h"] = f"{declared}#define CALL_UNITS {calls}\n"

    def sources(self):
        return sorted(path for path in self.texts if path.endswith((".c", ".cpp", ".s")))

    def headers(self):
        return sorted(path for path in self.texts if path.endswith(".h"))

    def create(self):
        for folder in FOLDERS:
            os.makedirs(self.place(folder), exist_ok=True)
        self.heal()
        self.make_library(self.number())
        with open(self.place("fw.tprj"), "w") as file:
            file.write(PROJECT)
        for name, sources in (("fw", self.sources()), ("tool", ["src/tool.c"])):
            with open(self.place(f"{name}.tapp"), "w") as file:
                file.write(self.application(name, sources))

    def create_tiny(self):
        """A project of two sources, for compilers that don't look into them."""
        with open(self.place("fw.tprj"), "w") as file:
            file.write(PROJECT.replace(TOOL_LINE, ""))
        with open(self.place("fw.tapp"), "w") as file:
            file.write(self.application("fw", ["one.c", "two.c"], ()))

    def heal(self):
        """Repairs what edits broke; leaves alone whatever is right already."""
        for path, target in self.links.items():
            place = self.place(path)
            if not os.path.islink(place) or os.readlink(place) != target:
                if os.path.lexists(place):
                    os.remove(place)
                os.symlink(target, place)
        for path, text in self.texts.items():
            place = self.place(path)
            folder, name = os.path.split(place)
            if name in os.listdir(folder):
                with open(place) as file:
                    if file.read() == text:
                        continue
            with open(place, "w") as file:
                file.write(text)

    def make_library(self, number):
        """Builds lib/libvendor.a by the compiler itself."""
        source, made = self.place("vendor.tmp.c"), self.place("vendor.tmp.o")
        with open(source, "w") as file:
            file.write(f"int vendor(void) {{ return {number}; }}\n")
        device = self.kind["device"]
        subprocess.run([shutil.which(self.kind["cc"]), *([f"-mmcu={device}"] if device else []),
                        "-c", source, "-o", made], check=True)
        library = self.place("lib/libvendor.a")
        if os.path.exists(library):
            os.remove(library)
        subprocess.run([self.kind["ar"], "rcsD", library, made], check=True)
        os.remove(source)
        os.remove(made)

    def application(self, name, sources, others=("lib/libvendor.a", "ld/stamp.ld")):
        kinds = {".c": "C", ".cpp": "Cpp", ".s": "Assembler", ".a": "Library", ".ld": "LinkerScript"}
        files = [path for path in sources if name == "tool" or path != "src/tool.c"]
        if name == "fw":
            files += others
        groups = {}
        for path in files:
            groups.setdefault("Drivers" if "drivers" in path else "Sources", []).append(path)
        text = ""
        for group, paths in sorted(groups.items()):
            nodes = "".join(NODE.format(kind=kinds[os.path.splitext(path)[1]],
                                        name=os.path.basename(path), path=path.replace("/", "\\"))
                            for path in paths)
            text += f'\t<Group Header="{group}" sate="32" >\n{nodes}\t</Group>\n'
        options = "".join(
            OPTIONS.format(config=config, toolchain=self.kind["name"], level=level,
                           optimize=self.kind["optimize"], device=self.kind["device"],
                           script="ld/stamp.ld" if "ld/stamp.ld" in files else "",
                           includes=";".join(INCLUDES))
            for config, level in (("Standard", 1), ("Debug", 2)))
        return APPLICATION.format(name=name, options=options, groups=text)


TOOL_LINE = '''	<Application Header="tool" Extern=".\\tool.tapp" Path=".\\tool.tapp" sate="32" />
'''

PROJECT = f"""
<Project Header="fw" Path=".\\fw.tprj" Project="Yes" ActiveApp="fw" sate="32" >
{TOOL_LINE}	<Application Header="fw" Extern=".\\fw.tapp" Path=".\\fw.tapp" sate="32" />
</Project>"""

APPLICATION = """
<Application Header="{name}" Extern=".\\{name}.tapp" Path=".\\{name}.tapp" sate="32" >
	<Configs>
		<Config Header="Debug" />
	</Configs>
	<Options>
{options}	</Options>
{groups}</Application>"""

NODE = '\t\t<{kind} Header="{name}" Path=".\\{path}" Marker="-1" sate="0" />\n'

OPTIONS = """		<Config Header="{config}" >
			<Set Header="Application" >
				<Section Header="Target" >
					<Property Header="Toolchain" Removable="Yes" Value="{toolchain}" />
					<Property Header="Device" Removable="Yes" Value="{device}" />
				</Section>
				<Section Header="Compiler" >
					<Property Header="Optimize" Removable="Yes" Value="{optimize}" />
					<Property Header="Defines" Removable="Yes" Value="LEVEL={level}" />
				</Section>
				<Section Header="Directories" >
					<Property Header="Include" Removable="Yes" Value="{includes}" />
				</Section>
				<Section Header="Linker" >
					<Property Header="Script" Removable="Yes" Value="{script}" />
				</Section>
			</Set>
		</Config>
"""
