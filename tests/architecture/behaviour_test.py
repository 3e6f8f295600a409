#!/usr/bin/env python3
"""Holds docs/behaviour.md against the folders and against the comments that name its headings."""

import re
import unittest

from folders import ROOT
from includes_test import product_tops, sources

PAGE = "behaviour.md"
FOLDER = re.compile(r"^## `(.+)/`$", re.MULTILINE)
HEADING = re.compile(r"^### (.+)$", re.MULTILINE)
RULE = re.compile(r"- \*\*.+\*\*.* .+\.$")
TABLE_ROW = re.compile(r"^\| `(.+?)/` \|", re.MULTILINE)
COMMENT_MARK = re.compile(r"^\s*//[/!]?<?", re.MULTILINE)


def page(name):
    return (ROOT / "docs" / name).read_text(encoding="utf-8")


def headings():
    return HEADING.findall(page(PAGE))


def named_in(text):
    """What follows the page's name, wherever a comment names it and however it is wrapped."""
    running = re.sub(r"\s+", " ", COMMENT_MARK.sub("", text))
    return [following.strip() for following in running.split(PAGE)[1:]]


def leads_to(following, heading):
    return re.match(rf", {re.escape(heading)}(?!\w)", following) is not None


def misses_in(text, known):
    """The beginnings of what is named and is not there."""
    return [name[:40] for name in named_in(text) if not any(leads_to(name, heading) for heading in known)]


class Page(unittest.TestCase):
    def test_comments_name_headings_that_are_there(self):
        known = headings()
        texts = sources(product_tops() | {"tests"})
        misses = [f"{path}: {miss}" for path, text in texts for miss in misses_in(text, known)]
        self.assertEqual(misses, [])

    def test_comments_do_name_headings(self):
        self.assertNotEqual([path for path, text in sources(product_tops()) if named_in(text)], [])

    def test_folders_come_in_the_order_of_the_architecture(self):
        self.assertEqual(FOLDER.findall(page(PAGE)), TABLE_ROW.findall(page("architecture.md")))

    def test_no_heading_comes_twice(self):
        self.assertEqual(len(set(headings())), len(headings()))

    def test_each_rule_is_a_line_that_begins_with_what_it_is_about(self):
        body = page(PAGE).split("\n## ", 1)[1].splitlines()[1:]
        others = [line for line in body if line and not line.startswith("#") and not RULE.match(line)]
        self.assertEqual(others, [])


class Names(unittest.TestCase):
    KNOWN = ("Machine: flags", "Images: HEX files")

    def test_found(self):
        for text in (
            "/// Never clears one (see behaviour.md, Machine: flags).\n",
            "    /// As it was; see behaviour.md,\n    /// Images: HEX files.\n",
            "    int x = 0;  ///< See behaviour.md, Images:\n                ///< HEX files\n",
        ):
            with self.subTest(text):
                self.assertEqual(misses_in(text, self.KNOWN), [])

    def test_missed(self):
        for text in (
            "// see behaviour.md, Machine: flag\n",
            "// see behaviour.md, Machine: flagship\n",
            "// see behaviour.md\n",
            "// see behaviour.md, Images: HEX\n",
        ):
            with self.subTest(text):
                self.assertEqual(len(misses_in(text, self.KNOWN)), 1)


if __name__ == "__main__":
    unittest.main()
