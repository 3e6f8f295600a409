"""What becomes of unsaved text when the system ends the program: by a signal, once or twice, with a modal window
in the way, in the middle of a run, or by taking the display away.

Usage: ending.py program
"""

import os
import secrets
import signal
import subprocess
import sys
import tempfile
import time
from contextlib import contextmanager
from functools import partial

from desktop import Failure, Program, check, key, play_all, wait_for, write
from session import INTERACT_NONE, SessionManager

EDITED_TEXT = "Texto del programa"
QUESTION = " prueba.asm ha cambiado\n¿Desea guardarlo?"
OFFER = "Hay una copia de rescate más reciente.\n¿Desea abrirla?"
OLD = b"; a\xf1o\r\n HLT\r\n"  # Windows-1252
NEW = b"; nuevo\r\n; a\xf1o\r\n HLT\r\n"
LOOP = ":03000000C300003A\n:00000001FF\n"  # JMP 0000
HALT = ":010000007689\n:00000001FF\n"


def put(path, content):
    with open(path, "wb") as file:
        file.write(content)


def content(path):
    if not os.path.exists(path):
        return None
    with open(path, "rb") as file:
        return file.read()


class Writer(Program):
    """The program with a source in the editor whose first line is new."""

    def __enter__(self):
        self.source = os.path.join(self.home, "prueba.asm")
        self.copy = self.source + ".rescate"
        put(self.source, OLD)
        return self

    def writes(self):
        self.ready()
        self.click("Editar fichero")
        self.choose_file("Editar fichero .ASM", self.source)
        self.editor = self.frame_beside(self.frame)
        self.focused_box(EDITED_TEXT, self.editor)
        write("; nuevo\n")
        check("the text", self.edited, "; nuevo\n; año\n HLT\n")
        return self

    def edited(self):
        return self.text(EDITED_TEXT, self.editor)

    def back_to_main_window(self):
        key("alt+Tab")
        self.wait_until_active(self.frame)

    def loads(self, image):
        path = os.path.join(self.home, "prueba.hex")
        put(path, image.encode())
        self.load(path)

    def gets(self, number=signal.SIGTERM):
        self.process.send_signal(number)

    def expect_rescue(self, others=()):
        self.expect_end(["prueba.asm", "prueba.asm.rescate", *others])
        check("the source", lambda: content(self.source), OLD)
        check("the copy", lambda: content(self.copy), NEW)


def asks(number, program):
    with Writer(program) as p:
        p.writes()
        p.gets(number)
        p.answer(QUESTION, "Cancelar")
        p.wait_until_active(p.editor)
        check("the text", p.edited, "; nuevo\n; año\n HLT\n")
        p.gets(number)
        p.answer(QUESTION, "Sí")
        p.expect_end(["prueba.asm"])
        check("the source", lambda: content(p.source), NEW + b"\r\n")


def has_nothing_to_ask(program):
    with Writer(program) as p:
        p.ready()
        p.gets()
        p.expect_end(["prueba.asm"])


def ends_before_the_main_window(program):
    with Writer(program) as p:
        p.expect_alone("vers. 1.5.7")
        p.gets()
        p.expect_end(["prueba.asm"])


def stops_a_run(program):
    with Writer(program) as p:
        p.writes()
        p.back_to_main_window()
        p.loads(LOOP)
        p.click("Ejecutar")
        check("the step button", lambda: p.enabled("Ejecutar un paso"), False)
        p.gets()
        p.answer(QUESTION, "Cancelar")
        check("the step button", lambda: p.enabled("Ejecutar un paso"), True)
        p.gets()
        p.answer(QUESTION, "No")
        p.expect_end(["prueba.asm", "prueba.hex"])
        check("the source", lambda: content(p.source), OLD)


def does_not_ask_twice(program):
    """The question is still open when the second signal comes. The copy is offered the next time."""
    with Writer(program) as p:
        p.writes()
        p.gets()
        p.message_box(QUESTION)
        p.gets()
        p.expect_rescue()
        with Program(program) as again:
            again.ready()
            again.click("Editar fichero")
            again.choose_file("Editar fichero .ASM", p.source)
            again.answer(OFFER, "Sí")
            editor = again.frame_beside(again.frame)
            check("the title", lambda: editor.name, "Tavinor - prueba.asm")
            check("the text", lambda: again.text(EDITED_TEXT, editor), "; nuevo\n; año\n HLT\n")
            check("the copy", lambda: content(p.copy), NEW)
            key("ctrl+g")
            check("the source", lambda: content(p.source), NEW + b"\r\n")
            check("the copy", lambda: content(p.copy), None)


def file_dialog(p):
    p.click("Cargar fichero HEX")
    p.dialog("Cargar fichero .HEX")


def halt_dialog(p):
    p.loads(HALT)
    p.click("Ejecutar")
    p.find("Programa Parado por instrucción HLT", within=p.dialog("Tavinor"))


def message_box(p):
    p.click(p.find("Acumulador A", "text"))
    write("x")
    key("Tab")
    p.message_box("Valor incorrecto")


def assembler_window(p):
    p.click("Ensamblar fichero")
    p.choose_file("Ensamblar fichero .ASM", p.source)
    p.find("Ensamblado correcto", within=p.dialog("Tavinor"))


def meets(window, others, program):
    with Writer(program) as p:
        p.writes()
        p.back_to_main_window()
        window(p)
        p.gets()
        p.expect_rescue(others)


@contextmanager
def another_display():
    """A display of this user's own, with a window manager, and what takes it away."""
    reading, writing = os.pipe()
    with tempfile.TemporaryDirectory() as folder:
        authority, cookie = os.path.join(folder, "cookie"), secrets.token_hex(16)

        def allow(display):
            # By its input: arguments can be read by all users of the machine.
            entry = f"add {display} . {cookie}\n"
            subprocess.run(["xauth", "-q", "-f", authority, "source", "-"], input=entry, text=True, check=True)

        put(authority, b"")
        allow(":0")
        server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(writing), "-auth", authority]
            + ["-screen", "0", "1366x768x24", "-nolisten", "tcp"],
            pass_fds=[writing],
            stderr=subprocess.DEVNULL,
        )
        os.close(writing)
        with os.fdopen(reading) as number:
            name = ":" + number.readline().strip()
        allow(name)
        before = {variable: os.environ[variable] for variable in ("DISPLAY", "XAUTHORITY")}
        os.environ.update(DISPLAY=name, XAUTHORITY=authority)
        manager = subprocess.Popen(
            ["openbox"], env={**os.environ, "HOME": folder}, stderr=subprocess.DEVNULL
        )

        def take_away():
            server.kill()
            server.wait()

        try:
            yield take_away
        finally:
            os.environ.update(before)
            take_away()
            manager.wait()


def loses_its_display(program, during=lambda p: None, others=()):
    with another_display() as take_away, Writer(program) as p:
        p.writes()
        during(p)
        take_away()
        try:
            p.process.wait(60)
        except subprocess.TimeoutExpired:
            raise Failure("the program does not end") from None
        check("the source", lambda: content(p.source), OLD)
        check("the copy", lambda: content(p.copy), NEW)
        check("the files", lambda: sorted(os.listdir(p.home)), sorted(["prueba.asm", "prueba.asm.rescate", *others]))


def in_a_run(p):
    p.back_to_main_window()
    p.loads(LOOP)
    p.click("Ejecutar")
    check("the step button", lambda: p.enabled("Ejecutar un paso"), False)


def is_cancelled(session):
    return any(name == "interact_done" and (argument or 0) & 0xFF for name, argument in session.events)


def meets_the_end_of_the_session(program):
    """The user calls it off; the next time they save."""
    with SessionManager() as session, Writer(program) as p:
        p.writes()
        session.end_session()
        p.answer(QUESTION, "Cancelar")
        wait_for("the end of the session to be called off", lambda: is_cancelled(session))
        check("the text", p.edited, "; nuevo\n; año\n HLT\n")
        session.end_session()
        p.answer(QUESTION, "Sí")
        p.expect_end(["prueba.asm"])
        check("the source", lambda: content(p.source), NEW + b"\r\n")


def survives_the_saving_of_the_session(program):
    """Nothing is asked and nothing ends, as often as it comes; the end that comes later is met as ever."""
    with SessionManager() as session, Writer(program) as p:
        p.writes()
        for _ in range(2):
            done = session.times("save_yourself_done")
            session.save_session()
            wait_for("the session to be saved", lambda: session.times("save_yourself_done") > done)
            time.sleep(1)  # an end would come of itself
            check("the text", p.edited, "; nuevo\n; año\n HLT\n")
            check("the copy", lambda: content(p.copy), None)
        p.gets()
        p.answer(QUESTION, "Cancelar")
        session.end_session()
        p.answer(QUESTION, "Sí")
        p.expect_end(["prueba.asm"])


def keeps_a_copy_that_was_not_wanted(program):
    """The next rescue leaves it under another name."""
    earlier = b"; antes\r\n"
    with Writer(program) as p:
        put(p.copy, earlier)
        p.ready()
        p.click("Editar fichero")
        p.choose_file("Editar fichero .ASM", p.source)
        p.answer(OFFER, "No")
        p.editor = p.frame_beside(p.frame)
        p.focused_box(EDITED_TEXT, p.editor)
        write("; nuevo\n")
        check("the text", p.edited, "; nuevo\n; año\n HLT\n")
        p.gets()
        p.message_box(QUESTION)
        p.gets()
        p.expect_rescue(["prueba.asm.rescate.1"])
        check("the copy that was not wanted", lambda: content(p.copy + ".1"), earlier)


def may_not_ask_at_the_end_of_the_session(program):
    with SessionManager() as session, Writer(program) as p:
        p.writes()
        session.end_session(INTERACT_NONE)
        p.expect_rescue()


def main():
    program = os.path.abspath(sys.argv[1])
    # A shell may have started this with some of them ignored, and the program takes that over.
    for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
        signal.signal(number, signal.SIG_DFL)
    scenes = {
        "asks_at_SIGTERM": partial(asks, signal.SIGTERM),
        "asks_at_SIGINT": partial(asks, signal.SIGINT),
        "asks_at_SIGHUP": partial(asks, signal.SIGHUP),
        "has_nothing_to_ask": has_nothing_to_ask,
        "ends_before_the_main_window": ends_before_the_main_window,
        "stops_a_run": stops_a_run,
        "does_not_ask_twice": does_not_ask_twice,
        "meets_a_file_dialog": partial(meets, file_dialog, ()),
        "meets_the_halt_dialog": partial(meets, halt_dialog, ("prueba.hex",)),
        "meets_a_message_box": partial(meets, message_box, ()),
        "meets_the_assembler": partial(meets, assembler_window, ("prueba.HEX", "prueba.LST")),
        "meets_the_end_of_the_session": meets_the_end_of_the_session,
        "may_not_ask_at_the_end_of_the_session": may_not_ask_at_the_end_of_the_session,
        "survives_the_saving_of_the_session": survives_the_saving_of_the_session,
        "keeps_a_copy_that_was_not_wanted": keeps_a_copy_that_was_not_wanted,
        "loses_its_display": loses_its_display,
        "loses_its_display_in_a_run": partial(loses_its_display, during=in_a_run, others=["prueba.hex"]),
    }
    chosen = sys.argv[2:] or list(scenes)
    return play_all({name: partial(scenes[name], program) for name in chosen})


if __name__ == "__main__":
    sys.exit(main())
