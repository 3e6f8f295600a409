#!/usr/bin/env python3
"""Compares the #include directives of all sources with the table in folders.py, and the table with its picture."""

import re
import unittest
import xml.etree.ElementTree
from collections import namedtuple

from folders import (
    ALL,
    BENCHMARKS,
    FOLDERS,
    OPENS_BY_ITSELF,
    PICTURE,
    ROOT,
    SYSTEM_SOURCES,
    TESTS,
    WHOLE_PROGRAM_TESTS,
    arrows,
    folder_of,
)

DIRECTIVE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]', re.MULTILINE)
# What opens a file. Turning names of files into others, and asking whether there is one, does not.
OPENING = re.compile(
    r"\b(basic_)?[io]?f(ile)?stream\b|\bfilebuf\b|\bQ(Save|Temporary)File\b|\bQFile\b(?!::(en|de)codeName)"
    r"|\bf(re)?open\b|(?<!\w)::_?w?s?open(64|at)?\(|\bcreat\("
)
STANDARD_HEADER = re.compile(r"[a-z0-9_]+")  # neither <QString> nor <zstd.h>

Include = namedtuple("Include", "source header own")


def includes_in(source, text):
    return [Include(source, header, mark == '"') for mark, header in DIRECTIVE.findall(text)]


def sources(tops):
    """Paths and texts of all sources in these folders."""
    for top in sorted(tops):
        for file in sorted((ROOT / top).rglob("*")):
            if file.suffix in (".h", ".cpp"):
                yield file.relative_to(ROOT).as_posix(), file.read_text(encoding="utf-8")


def product_tops():
    return {name.split("/")[0] for name in FOLDERS}


def all_includes():
    return [i for path, text in sources(product_tops() | {TESTS, BENCHMARKS}) for i in includes_in(path, text)]


def opened_in(text):
    """The words of a source that open a file."""
    return [found.group() for found in OPENING.finditer(DIRECTIVE.sub("", text))]


def is_test(path):
    return path.startswith(TESTS + "/")


def tests_whole_program(path):
    return any(path.startswith(f"{TESTS}/{folder}/") for folder in WHOLE_PROGRAM_TESTS)


def is_benchmark(path):
    return path.startswith(BENCHMARKS + "/")


def tested_folder(path):
    """The tests of a folder lie in a folder of the same name."""
    return folder_of(path[len(TESTS) + 1 :])


def in_face(header):
    face = FOLDERS[folder_of(header)].face
    return face is ALL or header.rsplit("/", 1)[1] in face


def complaint_about_product(include):
    home, target = folder_of(include.source), folder_of(include.header)
    if home is None:
        return "lies in no folder of the table"
    if not include.own:
        alone = FOLDERS[home].core and include.source not in SYSTEM_SOURCES
        if alone and not STANDARD_HEADER.fullmatch(include.header):
            return "the core uses the standard library alone"
        return None
    if target is None:
        return "belongs to no folder of the table (write the path from the top)"
    if target == home:
        return None
    if target not in FOLDERS[home].includes:
        return f"there is no arrow from {home} to {target}"
    return None if in_face(include.header) else f"is inside {target}"


def complaint_about_test(include):
    home = tested_folder(include.source)
    if not include.own:
        core = home is not None and FOLDERS[home].core
        of_qt = include.header.startswith("Q")
        return "tests of the core need no Qt" if core and of_qt else None
    target = folder_of(include.header)
    if target is None or target == home or in_face(include.header) or tests_whole_program(include.source):
        return None
    return f"is inside {target}, whose tests lie elsewhere"


def complaint(include):
    """Why `include` must not be, or None."""
    if include.own and include.header.endswith(".cpp"):
        return "is no header"
    if is_test(include.source):
        return complaint_about_test(include)
    if is_benchmark(include.source):
        return None  # they measure the inside
    if include.own and (is_test(include.header) or is_benchmark(include.header)):
        return "is not part of the program"
    return complaint_about_product(include)


def cycle(edges):
    """The folders that nothing but a cycle keeps from being taken off one after the other."""
    left = {name for edge in edges for name in edge}
    while True:
        free = {name for name in left if not any(a == name and b in left for a, b in edges)}
        if not free:
            return left
        left -= free


def drawn_arrows(svg):
    """Each arrow of the picture has a title, "from->to"."""
    titles = (element.text for element in svg.iter("{http://www.w3.org/2000/svg}title"))
    return {tuple(title.split("->")) for title in titles if title and "->" in title}


class Program(unittest.TestCase):
    def test_includes_only_along_the_arrows(self):
        complaints = {f"{i.source} includes {i.header}: {complaint(i)}" for i in all_includes() if complaint(i)}
        self.assertEqual(sorted(complaints), [])

    def test_what_is_included_is_there(self):
        missing = [
            i
            for i in all_includes()
            if i.own and not i.header.endswith(".moc") and not (ROOT / i.header).is_file()
        ]
        self.assertEqual(missing, [])

    def test_every_arrow_is_used(self):
        used = {(folder_of(i.source), folder_of(i.header)) for i in all_includes() if i.own}
        self.assertEqual(sorted(arrows() - used), [])

    def test_every_face_is_used_from_outside(self):
        used = {i.header for i in all_includes() if i.own and folder_of(i.source) != folder_of(i.header)}
        faces = {f"{name}/{header}" for name, folder in FOLDERS.items() for header in folder.face or ()}
        self.assertEqual(sorted(faces - used), [])

    def test_files_are_opened_in_one_place(self):
        opening = {path for path, text in sources(product_tops()) if opened_in(text)}
        self.assertEqual(sorted(opening), sorted(SYSTEM_SOURCES + OPENS_BY_ITSELF))

    def test_the_arrows_make_no_cycle(self):
        self.assertEqual(cycle(arrows()), set())

    def test_the_picture_shows_the_arrows(self):
        self.assertEqual(drawn_arrows(xml.etree.ElementTree.parse(PICTURE)), arrows())


class Rules(unittest.TestCase):
    """What each rule is there to find, so that none of them falls asleep."""

    def refused(self, source, directive):
        (include,) = includes_in(source, f"#include {directive}\n")
        return complaint(include) is not None

    def test_refused(self):
        for source, directive in (
            ("machine/Stepper.cpp", "<QString>"),
            ("assembler/Passes.cpp", "<zstd.h>"),
            ("images/Listing.h", "<QtCore/qglobal.h>"),
            ("machine/Stepper.cpp", '"images/Disassembler.h"'),
            ("assembler/Ensambla.cpp", '"assembler/window/Ensamblador.h"'),
            ("ui/trace/TraceView.h", '"ui/main/Principal.h"'),
            ("ui/editor/Editor.cpp", '"ui/trace/Listapasos.h"'),
            ("ui/common/HexBox.cpp", '"ui/main/Principal.h"'),
            ("ui/main/RegisterPanel.h", '"ui/trace/TraceRow.h"'),
            ("ui/startup/Cabecera.cpp", '"ui/main/Principal.h"'),
            ("ui/program/main.cpp", '"ui/main/Halt.h"'),
            ("ui/main/Halt.cpp", '"Halt.h"'),
            ("ui/main/Halt.cpp", '"ui/main/HeldPaints.cpp"'),
            ("ui/main/Halt.cpp", '"tests/support/RealInput.h"'),
            ("ui/new/Window.cpp", '"ui/common/HexBox.h"'),
            ("tests/machine/AluTest.cpp", "<QString>"),
            ("tests/ui/editor/EditorFixture.h", '"ui/main/Halt.h"'),
            ("tests/examples/ExamplesTest.cpp", '"ui/trace/TraceView.h"'),
        ):
            with self.subTest(source, includes=directive):
                self.assertTrue(self.refused(source, directive))

    def test_allowed(self):
        for source, directive in (
            ("machine/Stepper.cpp", "<string_view>"),
            ("ui/main/Principal.cpp", '"ui/trace/Listapasos.h"'),
            ("ui/program/Program.h", '"ui/main/Principal.h"'),
            ("tests/ui/main/Simulator.h", '"ui/main/Halt.h"'),
            ("tests/monkey/Answers.cpp", '"ui/main/Halt.h"'),
            ("tests/ui/trace/TracedRunTest.cpp", '"ui/main/Principal.h"'),
            ("benchmarks/TraceBenchmark.cpp", '"trace/TraceReader.h"'),
        ):
            with self.subTest(source, includes=directive):
                self.assertFalse(self.refused(source, directive))

    def test_opening(self):
        for line in (
            "std::ifstream in(path);",
            "std::ofstream out(path);",
            "std::fstream both;",
            "std::basic_fstream<char> both;",
            "std::filebuf buffer;",
            "QFile file(path);",
            "QFile::copy(a, b);",
            "QSaveFile file(path);",
            'auto* f = std::fopen("a", "r");',
            "::open(path.c_str(), O_RDONLY);",
        ):
            with self.subTest(line):
                self.assertTrue(opened_in(line))
        for line in ("#include <QFile>", "QFile::encodeName(name)", "QFileInfo::exists(path)", "open(path)", "reopens"):
            with self.subTest(line):
                self.assertFalse(opened_in(line))

    def test_a_cycle(self):
        edges = {("machine", "images"), ("images", "machine"), ("ui/common", "machine")}
        self.assertEqual(cycle(edges), {"machine", "images", "ui/common"})


if __name__ == "__main__":
    unittest.main()
