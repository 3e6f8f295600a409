#!/usr/bin/env python3
"""mutate_test.py SCRIPT: the script at work on a program of one function and its test."""

import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

SCRIPT = Path(sys.argv.pop(1))

PROJECT = """
cmake_minimum_required(VERSION 3.25)
project(toy LANGUAGES C)
enable_testing()
add_executable(sum_test sum_test.c)
add_test(NAME sum_test COMMAND sum_test)
"""
PRESETS = """{
  "version": 6,
  "configurePresets": [{ "name": "debug", "generator": "Ninja", "binaryDir": "${sourceDir}/build/debug" }]
}"""
PROGRAM = """
#include <stdio.h>
#include <unistd.h>
#include "sum.h"
int main(void) {
    if (sum(0, 0) == 1) {
        puts("FAIL!  : as Qt's tests say it, which go on then");
        fflush(stdout);
        sleep(600);
    }
    return sum(2, 3) == 5 && sum(0, 0) == 0 ? 0 : 1;
}
"""
SUM = """
static int sum(int a, int b) {
    if (a > 1000) return 0;
    return a + b;
}
"""

CAUGHT = """
= minus
in sum.h
seen by sum_test
-     return a + b;
+     return a - b;
"""
BROKEN = """
= broken
in sum.h
seen by sum_test
-     return a + b;
+     return a +;
"""
LONG = """
= long
in sum.h
seen by sum_test
-     return a + b;
+     return a + b + 1;
"""
UNSEEN = """
= greater
in sum.h
seen by sum_test
-     if (a > 1000) return 0;
"""
EXCUSED = UNSEEN.replace("seen by sum_test\n", "seen by sum_test\nsurvives: that much is never added\n")


class MutateTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = Path(folder.name)
        for name, text in (
            ("CMakeLists.txt", PROJECT),
            ("CMakePresets.json", PRESETS),
            ("sum_test.c", PROGRAM),
            ("sum.h", SUM),
            (".gitignore", "/build/\n"),
        ):
            (self.root / name).write_text(text, encoding="utf-8")
        (self.root / "tests" / "mutations").mkdir(parents=True)
        (self.root / "scripts").mkdir()
        shutil.copy(SCRIPT, self.root / "scripts" / "mutate")
        subprocess.run(["git", "init", "-q", str(self.root)], check=True)

    def mutate(self, table, *arguments):
        (self.root / "tests" / "mutations" / "toy.table").write_text(table, encoding="utf-8")
        return subprocess.run(
            [str(self.root / "scripts" / "mutate"), *arguments],
            check=False, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, encoding="utf-8",
        )

    def test_tells_the_caught_from_the_survivors(self):
        result = self.mutate(CAUGHT + UNSEEN + BROKEN)
        self.assertEqual(result.returncode, 1, result.stdout)
        self.assertRegex(result.stdout, r"(?m)^caught .* toy/minus$")
        self.assertRegex(result.stdout, r"(?m)^SURVIVED .* toy/greater$")
        self.assertRegex(result.stdout, r"(?m)^does not build .* toy/broken$")
        self.assertIn("1 of 3 caught", result.stdout)
        # Everything was taken back, and the sources themselves never touched.
        self.assertEqual((self.root / "build" / "mutate" / "sum.h").read_text(encoding="utf-8"), SUM)
        self.assertEqual((self.root / "sum.h").read_text(encoding="utf-8"), SUM)
        self.assertEqual(self.mutate(CAUGHT).returncode, 0)

    def test_the_first_failure_is_enough(self):
        result = self.mutate(LONG)
        self.assertRegex(result.stdout, r"(?m)^caught +[0-9]+ s  toy/long$")

    def test_wants_tests_that_pass_as_long_as_nothing_is_wrong(self):
        (self.root / "sum.h").write_text(SUM.replace("a + b", "a * b"), encoding="utf-8")
        result = self.mutate(CAUGHT.replace("a + b", "a * b"))
        self.assertEqual(result.returncode, 1)
        self.assertIn("fail before anything is wrong: sum_test", result.stdout)

    def test_chooses_by_name(self):
        table = CAUGHT + UNSEEN
        self.assertEqual(self.mutate(table, "--list").stdout.split(), ["toy/minus", "toy/greater"])
        self.assertEqual(self.mutate(table, "--list", "min*").stdout.split(), ["toy/minus"])
        self.assertEqual(self.mutate(table, "--list", "toy").stdout.split(), ["toy/minus", "toy/greater"])
        self.assertIn("no mistake is called x", self.mutate(table, "--list", "x").stdout)

    def test_checks_the_table(self):
        many = "".join(CAUGHT.replace("minus", f"minus-{i}") for i in range(20))
        self.assertEqual(self.mutate(many, "--check").returncode, 0)
        for wrong, complaint in (
            (CAUGHT.replace("a + b", "a + c"), "toy/minus: its old text stands 0 times in sum.h"),
            (CAUGHT.replace("-     return a + b;", "- a"), "toy/minus: its old text stands 4 times in sum.h"),
            (CAUGHT.replace("a - b", "a + b"), "toy/minus: changes nothing"),
            (CAUGHT.replace("in sum.h", "in gone.h"), "toy/minus: its old text stands 0 times in gone.h"),
            (CAUGHT.replace("seen by sum_test\n", ""), "toy/minus: lacks its file, its tests or its old text"),
            (CAUGHT + CAUGHT, "minus: more than one is called so"),
            (many + EXCUSED + EXCUSED.replace("greater", "too"), "2 of 22 are said to survive, more than 5%"),
            ("what is this", "toy.table:1: not understood: what is this"),
        ):
            with self.subTest(complaint):
                result = self.mutate(wrong, "--check")
                self.assertEqual(result.returncode, 1)
                self.assertIn(complaint, result.stdout)
        self.assertEqual(self.mutate(many + EXCUSED, "--check").returncode, 0)
        result = self.mutate(CAUGHT, "--check", str(self.root))  # a folder without any test
        self.assertIn("minus: there is no test sum_test", result.stdout)


unittest.main()
