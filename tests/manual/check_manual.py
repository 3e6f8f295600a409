"""The manual against the program's own texts, and against itself.

Usage: check_manual.py project-folder [pages-folder]

What the program shows is taken from its sources, so a message, a caption or a key that is new there fails
here until the manual tells about it. With a folder of pages, these are checked as well.
"""

import os
import re
import sys
import unittest
from functools import cache
from html.parser import HTMLParser

PROJECT = PAGES = None
MESSAGES, KEYS, ERRORS, COURSE, ANSWERS = (
    "11-mensajes.md",
    "10-teclado.md",
    "05-errores.md",
    "12-curso.md",
    "13-respuestas.md",
)
LARGEST_PICTURE = 150 * 1024

# Where the user's texts are, and what is no text of theirs.
SOURCES = ("ui", "assembler/window", "assembler/Messages.h", "images/HexLoader.cpp")
NOT_SHOWN = {"ui/common/Fonts.cpp"}  # names of fonts
# Keys of Qt's own; all others must be in the sources.
QT_KEYS = {"Ctrl+Z", "Ctrl+Mayús+Z", "Ctrl+C", "Ctrl+A", "Ctrl+Inicio", "Ctrl+Fin"}

ENGLISH = set(
    """the and with from this that which when where what have are was were will would should can could file
    files window windows button buttons click press save open close errors address value values
    memory register registers stack step run running breakpoint program programs is it its you your
    then than of to by not if else or as at be an see note warning fixme list box text key keys
    default""".split()
)
# The manual says "tú": no order to "usted" begins a sentence.
FORMAL = re.compile(
    r"\busted(?:es)?\b|(?:^|[.:;¿¡] *)(?:Pulse|Escriba|Haga|Ponga|Elija|Abra|Cierre|Guarde|Cargue|Ejecute|Vea|Mire"
    r"|Seleccione|Marque|Desmarque|Recuerde|Compruebe|Cambie|Lea|Use|Pruebe|Acepte|Vuelva|Quite|Añada|Fíjese)\b",
    re.MULTILINE,
)


def path(*parts):
    return os.path.join(PROJECT, *parts)


@cache
def read(*parts):
    with open(path(*parts), encoding="utf-8") as file:
        return file.read()


@cache
def chapters():
    names = sorted(name for name in os.listdir(path("docs/manual")) if name.endswith(".md"))
    return {name: read("docs/manual", name) for name in names}


def without_blocks(text):
    return re.sub(r"^```.*?^```$", "", text, flags=re.DOTALL | re.MULTILINE)


def without_code(text):
    return re.sub(r"`[^`\n]*`", "", without_blocks(text))


def plain(text):
    """Without marks and line breaks."""
    return re.sub(r"\s+", " ", re.sub(r"\*\*|`|\\(?=\*)", "", text))


@cache
def sources():
    found = {}
    for place in SOURCES:
        if place.endswith((".h", ".cpp")):
            found[place] = read(place)
        for folder, _, names in os.walk(path(place)):
            for name in names:
                relative = os.path.relpath(os.path.join(folder, name), PROJECT)
                if name.endswith((".h", ".cpp")) and relative not in NOT_SHOWN:
                    found[relative] = read(relative)
    return found


# A comment, a character, or a text with its adjacent parts.
TOKEN = re.compile(r"""//[^\n]*|'(?:\\.|[^'\\])'|((?:"(?:\\.|[^"\\\n])*"\s*)+)""")


def literals(code):
    code = re.sub(r"^\s*#.*$", "", code, flags=re.MULTILINE)
    for match in TOKEN.finditer(code):
        if match[1]:
            yield "".join(re.findall(r'"((?:\\.|[^"\\\n])*)"', match[1]))


def pieces(literal):
    """What stands between the line breaks and the places for values, without the marks of access keys."""
    for piece in re.split(r"\\r\\n|\\n|\\r|%\d|\|", literal):
        yield re.sub(r"&(?=\w)", "", piece).strip(" ,")


def is_prose(piece):
    """Several words, or a word that is no identifier."""
    words = re.findall(r"[A-Za-zÁÉÍÓÚÑáéíóúñ]{2,}", piece)
    return len(words) > 1 and " " in piece or bool(re.search("[áéíóúñ¿]", piece))


def prose_literals():
    for name, code in sources().items():
        for literal in literals(code):
            for piece in pieces(literal):
                if is_prose(piece):
                    yield name, piece


MESSAGE_CALL = re.compile(
    r"\b(?:showMessage|askYesNo|askYesNoCancel|errorText)\s*\(|\b(?:question|notFound|message)\s*="
)


def box_texts():
    """The texts of message boxes: what stands in a call for one, or in what is prepared for it."""
    for name, code in sources().items():
        for match in MESSAGE_CALL.finditer(code):
            end = re.compile(r";\n|\n}").search(code, match.end())
            for literal in literals(code[match.start() : end.start() if end else None]):
                for piece in pieces(literal):
                    if is_prose(piece):
                        yield name, piece


def editor_commands():
    """Caption and key of every command of the editor's menus."""
    calls = re.findall(r'add\(\w+, "\w+", "([^"]+)", "([^"]+)"\)', read("ui/editor/Editor.cpp"))
    return [(caption.replace("&", ""), key) for caption, key in calls]


def history_commands():
    """Captions of the commands of the menu "Historial"."""
    return re.findall(r'add\(\s*"\w+", "([^"]+)"', read("ui/main/HistoryMenu.cpp"))


def access_keys():
    """Caption and key of everything that Alt reaches: buttons, and the menus in a bar."""
    commands = {caption for caption, _ in editor_commands()}
    for name, code in sources().items():
        for literal in literals(code):
            mark = re.search(r"&(\w)", literal)
            caption = literal.replace("&", "")
            if not mark or re.search(r"[=;<>]", literal) or literal in history_commands():
                continue
            if name == "ui/editor/Editor.cpp" and (
                caption in commands or "Buscarvacio" in code.split(literal)[0][-90:]
            ):
                continue
            yield caption, "Alt+" + mark[1].upper()


def bold_texts(text):
    return [
        re.sub(r"\s+", " ", bold)
        for bold in re.findall(r"\*\*(.+?)\*\*", without_blocks(text), re.DOTALL)
    ]


def anchors(text):
    return {
        re.sub(r"[^\w\- ]", "", heading.strip().lower()).replace(" ", "-")
        for heading in re.findall(r"^#+ (.*)$", without_blocks(text), re.MULTILINE)
    }


class Chapters(unittest.TestCase):
    def test_links_and_pictures_lead_somewhere(self):
        count = 0
        for name, text in chapters().items():
            for target in re.findall(r"\]\(([^)]+)\)", without_code(text)):
                count += 1
                file, _, anchor = target.partition("#")
                with self.subTest(f"{name}: {target}"):
                    self.assertNotRegex(target, r"^\w+:", "needs the network")
                    there = os.path.normpath(path("docs/manual", file or name))
                    self.assertTrue(os.path.isfile(there), "no such file")
                    if anchor:
                        self.assertIn(anchor, anchors(read(there)), "no such heading")
        self.assertGreater(count, 50)

    def test_cover_lists_every_chapter_in_order(self):
        listed = re.findall(r"^\d+\. \[[^]]+\]\(([^)]+)\)", chapters()["README.md"], re.MULTILINE)
        self.assertEqual(listed, [name for name in chapters() if name != "README.md"])

    def test_pictures_are_used_and_small(self):
        used = set(re.findall(r"images/([\w-]+\.png)", "".join(chapters().values()) + read("README.md")))
        there = [name for name in os.listdir(path("docs/images")) if name.endswith(".png")]
        self.assertEqual(used, set(there))
        taken = read("docs/pictures.py") + read("tests/e2e/first_hour.py")
        for picture in there:
            with self.subTest(picture):
                self.assertLess(os.path.getsize(path("docs/images", picture)), LARGEST_PICTURE)
                self.assertIn(f'"{picture.removesuffix(".png")}"', taken, "nothing takes this picture")

    def test_speaks_spanish(self):
        for name, text in chapters().items():
            words = set(re.findall(r"\b[a-z]{2,}\b", re.sub(r"\]\([^)]*\)", "]", without_code(text))))
            self.assertFalse(words & ENGLISH, name)

    def test_says_tu(self):
        others = ["LEEME.md"] + [name for name in os.listdir(path("examples")) if name.endswith(".asm")]
        texts = list(chapters().items()) + [(name, read("examples", name)) for name in others]
        for name, text in texts:
            quoted = re.sub(r"\*\*.*?\*\*", "", without_code(text), flags=re.DOTALL)
            self.assertFalse(
                [m[0] for m in FORMAL.finditer(re.sub(r"^; *", "", quoted, flags=re.MULTILINE))], name
            )

    def test_every_exercise_has_an_answer(self):
        asked, answered = [], re.findall(
            r"^### (Ejercicio [\d.]+): respuesta$", chapters()[ANSWERS], re.MULTILINE
        )
        for name, text in chapters().items():
            if name != ANSWERS:
                asked += re.findall(r"^### (Ejercicio [\d.]+)$", text, re.MULTILINE)
        self.assertGreater(len(asked), 10)
        self.assertEqual(asked, answered)


class Texts(unittest.TestCase):
    def test_everything_the_program_says_is_in_the_manual(self):
        manual = plain(" ".join(chapters().values()))
        found = list(prose_literals())
        self.assertGreater(len(found), 80)
        for name, piece in found:
            with self.subTest(name):
                self.assertTrue(piece in manual, f"{piece!r} is nowhere in the manual")

    def test_every_message_box_has_its_heading(self):
        headings = plain(" ".join(re.findall(r"^### (.*)$", chapters()[MESSAGES], re.MULTILINE)))
        found = set(box_texts())
        self.assertGreater(len(found), 20)
        for name, piece in sorted(found):
            with self.subTest(name):
                self.assertIn(piece.rstrip(":").removeprefix("- "), headings)

    def test_every_reason_of_a_failed_load_has_its_heading(self):
        headings = plain(" ".join(re.findall(r"^### (.*)$", chapters()[MESSAGES], re.MULTILINE)))
        for literal in literals(read("images/HexLoader.cpp")):
            for piece in filter(is_prose, pieces(literal)):
                self.assertIn(piece, headings)

    def test_every_assembler_error_has_its_entry(self):
        messages = re.findall(r'string_view \w+ = "([^"]+)"', read("assembler/Messages.h"))
        self.assertGreater(len(messages), 10)
        text = chapters()[ERRORS]
        for message in messages:
            entry = re.search(
                rf"^### {re.escape(message)}$|^\| \*\*{re.escape(message)}\*\* \|", text, re.MULTILINE
            )
            self.assertTrue(entry, message)

    def test_every_instruction_is_in_its_chapter(self):
        (folder,) = {f for f in ("machine", "images") if os.path.isfile(path(f, "MnemonicTable.h"))}
        table = read(folder, "MnemonicTable.h")
        mnemonics = {
            text.split(" ")[0] for text in literals(table) if re.match(r"[A-Z]{2,4}( |$)", text)
        }
        self.assertGreater(len(mnemonics), 70)
        named = set(re.findall(r"`([A-Z]+)[ \w]*`", chapters()["08-instrucciones.md"]))
        self.assertEqual(mnemonics - named, set())


class Keys(unittest.TestCase):
    def row(self, key, caption):
        return re.search(
            rf"^\| `{re.escape(key)}` \|[^|]*\*\*{re.escape(caption)}\*\*",
            chapters()[KEYS],
            re.MULTILINE,
        )

    def test_every_key_is_in_the_table(self):
        found = editor_commands() + list(access_keys())
        self.assertGreater(len(found), 20)
        for caption, key in found:
            self.assertTrue(self.row(key, caption), f"{key} {caption}")

    def test_every_key_named_exists(self):
        known = {key for _, key in editor_commands()} | {key for _, key in access_keys()} | QT_KEYS
        code = "".join(sources().values())
        known |= {"F" + n for n in re.findall(r"Qt::Key_F(\d+)", code)}
        known |= {"Ctrl+" + n for n in re.findall(r"Qt::ControlModifier \| Qt::Key_([A-Z])\b", code)}
        for name, text in chapters().items():
            function_keys = r"|F\d+" if name == KEYS else ""  # elsewhere F7 may be a byte
            for key in re.findall(rf"`((?:Ctrl|Alt)\+[^`]+{function_keys})`", text):
                self.assertIn(key, known, name)

    def test_every_caption_named_exists(self):
        """What is bold is on the screen, apart from a few words that lead a paragraph."""
        lead = {"Causa", "Remedio", "Resultado", "Antes", "Qué importa", "Punto de ruptura", "Sí", "No"}
        shown = {
            piece.strip() for code in sources().values() for l in literals(code) for piece in pieces(l)
        }
        shown |= {text.rstrip(".") for text in shown}
        for name, text in chapters().items():
            if name == "14-glosario.md":
                continue
            for bold in bold_texts(text):
                if bold.endswith((".", "?")) and not bold.startswith("¿"):
                    continue  # a sentence that leads a paragraph
                if re.fullmatch(r"[a-zñáéíóú, ]+|[A-Z]{1,2}|Las sumas .*", bold) or bold in lead:
                    continue
                with self.subTest(name):
                    self.assertTrue(bold in shown, bold)


class Course(unittest.TestCase):
    def test_goes_through_the_examples_in_order_and_answers_their_questions(self):
        names = sorted(name[:-4] for name in os.listdir(path("examples")) if name.endswith(".asm"))
        self.assertEqual(
            re.findall(r"^### (\d\d) ", chapters()[COURSE], re.MULTILINE), [n[:2] for n in names]
        )
        self.assertEqual(re.findall(r"^`(\d\d-[\w-]+)`\.", chapters()[COURSE], re.MULTILINE), names)
        self.assertEqual(
            re.findall(r"^### Respuesta (\d\d)$", chapters()[ANSWERS], re.MULTILINE),
            [n[:2] for n in names],
        )


class Page(HTMLParser):
    ALONE = {"meta", "link", "img", "br", "hr", "input"}

    def __init__(self, text):
        super().__init__()
        self.ids, self.targets, self.tags, self.open, self.faults = [], [], set(), [], []
        self.feed(text)

    def handle_starttag(self, tag, attributes):
        self.tags.add(tag)
        for name, value in attributes:
            if name == "id":
                self.ids.append(value)
            elif name in ("href", "src"):
                self.targets.append(value)
            elif name.startswith("on") or name == "style":
                self.faults.append(f"<{tag} {name}>")
        if tag == "img" and not dict(attributes).get("alt"):
            self.faults.append("a picture without a text")
        if tag not in self.ALONE:
            self.open.append(tag)

    def handle_endtag(self, tag):
        if not self.open or self.open.pop() != tag:
            self.faults.append(f"</{tag}>")


class Pages(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        if PAGES is None:
            raise unittest.SkipTest("no pages")
        cls.pages = {}
        for name in os.listdir(PAGES):
            if name.endswith(".html"):
                with open(os.path.join(PAGES, name), encoding="utf-8") as file:
                    cls.pages[name] = Page(file.read())

    def test_there_is_one_for_every_chapter(self):
        expected = {name[:-3] + ".html" for name in chapters() if name != "README.md"} | {"index.html"}
        self.assertEqual(set(self.pages), expected)

    def test_are_well_formed_without_scripts(self):
        for name, page in self.pages.items():
            with self.subTest(name):
                self.assertEqual(page.faults + page.open, [])
                self.assertFalse(page.tags & {"script", "iframe", "object", "style"})
                self.assertEqual(len(page.ids), len(set(page.ids)))

    def test_links_and_pictures_lead_somewhere(self):
        for name, page in self.pages.items():
            for target in page.targets:
                with self.subTest(f"{name}: {target}"):
                    self.assertNotRegex(target, r"^(\w+:|//)", "needs the network")
                    file, _, anchor = target.partition("#")
                    self.assertTrue(os.path.isfile(os.path.join(PAGES, file or name)), "no such file")
                    if anchor:
                        self.assertIn(anchor, self.pages[file or name].ids, "no such heading")

    def test_lead_from_one_to_the_next(self):
        names = ["index.html"] + sorted(set(self.pages) - {"index.html"})
        for before, after in zip(names, names[1:]):
            self.assertIn(after, self.pages[before].targets)
            self.assertIn(before, self.pages[after].targets)

    def test_style_needs_no_network(self):
        with open(os.path.join(PAGES, "estilo.css"), encoding="utf-8") as file:
            self.assertNotRegex(file.read(), r"url\(|@import|https?:")


if __name__ == "__main__":
    PROJECT = os.path.abspath(sys.argv[1])
    PAGES = os.path.abspath(sys.argv[2]) if len(sys.argv) > 2 else None
    unittest.main(argv=sys.argv[:1])
