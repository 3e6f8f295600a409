"""The folders of the program and which of them may include which. docs/images/architecture.svg is drawn from this
table (docs/make-architecture-picture), and includes_test.py compares it with the #include directives."""

from dataclasses import dataclass
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
PICTURE = ROOT / "docs/images/architecture.svg"

ALL = None


@dataclass(frozen=True)
class Folder:
    includes: tuple = ()
    face: tuple = ALL  # the headers that others may include; all of them where others build on the folder
    core: bool = False  # standard library alone, but for SYSTEM_SOURCES


FOLDERS = {
    "files": Folder(core=True),
    "text": Folder(includes=("files",), core=True),
    "machine": Folder(core=True),
    "history": Folder(includes=("machine",), core=True),
    "images": Folder(includes=("files", "machine"), core=True),
    "trace": Folder(includes=("files", "history", "machine"), core=True),
    "simulation": Folder(includes=("files", "history", "images", "machine", "trace"), core=True),
    "assembler": Folder(includes=("files", "images", "machine", "text"), core=True),
    "ui/common": Folder(includes=("files", "machine")),
    "ui/trace": Folder(includes=("simulation", "trace", "ui/common"), face=("Listapasos.h",)),
    "ui/editor": Folder(includes=("files", "text", "ui/common"), face=("Editor.h",)),
    "assembler/window": Folder(includes=("assembler", "text", "ui/common"), face=("Ensamblador.h",)),
    "ui/main": Folder(
        includes=(
            "machine", "images", "trace", "simulation", "assembler", "assembler/window", "ui/common", "ui/editor",
            "ui/trace",
        ),
        face=("Principal.h",),
    ),
    "ui/startup": Folder(includes=("ui/common",), face=("Cabecera.h", "Ending.h")),
    # The program itself puts the windows together. No other folder includes it.
    "ui/program": Folder(includes=("ui/common", "ui/main", "ui/startup"), face=("Program.h",)),
}

SYSTEM_SOURCES = ("files/File.cpp",)  # what of the core asks the operating system
# What opens files by itself, and may: they are the system's own.
OPENS_BY_ITSELF = ("ui/common/RequiredMemory.cpp", "ui/common/ControlGroups.cpp")

TESTS = "tests"
WHOLE_PROGRAM_TESTS = ("memory", "monkey", "ui/everywhere")  # folders of tests that look into every window
BENCHMARKS = "benchmarks"


def folder_of(path):
    """The entry of the table that `path` belongs to: the longest one. None when there is none."""
    fitting = [name for name in FOLDERS if path == name or path.startswith(name + "/")]
    return max(fitting, key=len, default=None)


def arrows():
    return {(name, target) for name, folder in FOLDERS.items() for target in folder.includes}
