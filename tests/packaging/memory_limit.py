"""The program under a limit on its memory that falls while it is used. With less and less room it may say that there is
no memory, and then nothing has changed; or it may end, and then the unsaved text lies beside its source.

Usage: memory_limit.py program
"""

import os
import resource
import sys
import time
from functools import partial

sys.path.append(os.path.join(os.path.dirname(os.path.abspath(__file__)), "../e2e"))
import pyatspi
from desktop import Failure, check, has, key, play_all, wait_for, walk, write
from ending import EDITED_TEXT, OLD, Writer, content, put

MIB = 1024 * 1024
ROOMS = (200, 80, 40, 20, 10, 5, 2, 0)  # beyond what the program has taken when the limit falls, in MiB
OUT_OF_MEMORY = "Memoria insuficiente"

# Counts up in memory for ever: LXI H,1000; INR M; INX H; MOV A,H; ORI 10; MOV H,A; JMP 0003.
COUNTS = ":0C00000021001034237CF61067C30300"
SOURCE = b"INICIO: MVI A,5\r\n JMP INICIO\r\n"
HEX = b":050000003E05C30000F5\r\n:00000001FF\r\n"
MANY = 30_000  # files in a folder: their list is Qt's, and takes more than the last limits leave
LEFT_BY_THE_END = ("cuenta.hex", "muchos", "lista.txt", "otro.asm", "otro.HEX", "otro.LST", "prueba.asm", "prueba.asm.rescate")


def image(record):
    """The record with its checksum, and the end."""
    total = sum(bytes.fromhex(record[1:]))
    return f"{record}{-total & 255:02X}\r\n:00000001FF\r\n".encode()


def limit(process, room):
    with open(f"/proc/{process.pid}/statm", encoding="ascii") as statm:
        pages = int(statm.read().split()[0])
    most = pages * resource.getpagesize() + room * MIB
    resource.prlimit(process.pid, resource.RLIMIT_AS, (most, resource.RLIM_INFINITY))


def has_settled(path):
    """Whether a file is there and no longer grows."""
    if not os.path.exists(path):
        return False
    size = os.path.getsize(path)
    time.sleep(0.5)
    return size > 0 and os.path.getsize(path) == size


def rows_at_both_ends(path):
    """The first and the last rows of a saved trace, and what stands behind the last line end."""
    with open(path, "rb") as file:
        first = file.read(MIB)
        file.seek(max(0, os.path.getsize(path) - MIB))
        last = file.read()
    return first.split(b"\r\n")[:-1] + last.split(b"\r\n")[1:]


class Student(Writer):
    """Uses the program; each thing that is done tells whether there was memory for it."""

    def begin(self):
        put(os.path.join(self.home, "cuenta.hex"), image(COUNTS))
        put(os.path.join(self.home, "otro.asm"), SOURCE)
        self.many = os.path.join(self.home, "muchos")
        os.mkdir(self.many)
        for i in range(MANY):
            put(os.path.join(self.many, f"programa-de-prueba-{i}.hex"), b"")
        self.writes()
        self.written = "; nuevo\n"
        self.rest = "; año\n HLT\n"
        self.on_disk = (OLD,)
        self.back_to_main_window()
        self.trace = None

    def comes(self, what, sign):
        """Waits for what is to come, and returns it; None where the program says that it has no memory for it."""

        def look():
            for window in self._showing():
                texts = [node.name for node in walk(window)] if window.getRoleName() == "alert" else []
                if OUT_OF_MEMORY in texts:
                    return (window, None)
            found = sign()
            return found and (None, found)

        refusal, found = wait_for(what, look)
        if refusal is None:
            return found
        self.wait_until_active(refusal)
        key("Return")
        self.wait_for_end(refusal)
        return None

    def window(self, title, role=None):
        """A window with a title that has the focus, if there is one."""
        for window in self._showing():
            right = window.name == title and role in (None, window.getRoleName())
            if right and has(window, pyatspi.STATE_ACTIVE):
                return window
        return None

    def says(self, text):
        """A message box that says `text`, if there is one."""
        for window in self._showing():
            says = window.getRoleName() == "alert" and any(node.name == text for node in walk(window))
            if says and has(window, pyatspi.STATE_ACTIVE):
                return window
        return None

    def answers_dialog(self, title, path):
        if self.comes("the dialog " + title, lambda: self.window(title)) is None:
            return False
        self.choose_file(title, path)
        return True

    def loads(self):
        self.click("Cargar fichero HEX")
        if not self.answers_dialog("Cargar fichero .HEX", os.path.join(self.home, "cuenta.hex")):
            return False
        box = self.comes("the end of a load", lambda: self.says("Carga correcta"))
        if box is not None:
            key("Return")
            self.wait_for_end(box)
        self.wait_until_active(self.frame)
        return box is not None

    def steps(self):
        before = self.text("Contador de programa PC")
        self.click("Ejecutar un paso")
        done = self.comes("a step", lambda: self.text("Contador de programa PC") != before)
        if done is None:
            check("PC", lambda: self.text("Contador de programa PC"), before)
        return done is not None

    def runs(self):
        self.click("Ejecutar")
        running = self.comes("a run", lambda: not self.enabled("Ejecutar un paso"))
        if running is None:
            return False
        time.sleep(0.3)
        key("alt+p")
        stopped = self.comes("the end of a run", lambda: self.enabled("Ejecutar un paso"))
        check("the step button", lambda: self.enabled("Ejecutar un paso"), True)
        return stopped is not None

    def saves_the_trace(self):
        path = os.path.join(self.home, "lista.txt")
        if os.path.exists(path):
            os.remove(path)
        key("alt+l")
        self.trace = self.frame_beside(self.frame, self.editor)
        rows = self.find("Lista de pasos ejecutados", within=self.trace).queryTable().nRows
        saved = rows > 0 and self.saves_rows(path)
        self.wait_until_active(self.trace)
        self.back_to_main_window()
        return saved

    def saves_rows(self, path):
        key("alt+s")
        if not self.answers_dialog("Salvar fichero .TXT", path):
            return False
        # A short run leaves millions of rows: after a second of saving them the user has had enough.
        def ended():
            if self.window("Tavinor", "dialog"):
                key("Escape")
            return has_settled(path) and self.trace_is_active()

        saved = self.comes("the end of saving", ended)
        if saved is not None:
            rows = rows_at_both_ends(path)
            if rows[-1] != b"" or len(rows) < 3 or any(len(row) < 20 for row in rows[:-1]):
                raise Failure(f"the saved trace is none: the last rows are {rows[-2:]}")
        return saved is not None

    def trace_is_active(self):
        return has(self.trace, pyatspi.STATE_ACTIVE)

    def assembles(self):
        self.click("Ensamblar fichero")
        if not self.answers_dialog("Ensamblar fichero .ASM", os.path.join(self.home, "otro.asm")):
            return False
        done = self.comes("the end of an assembly", self.assembled) is not None
        if self.assembled() or self.window("Tavinor", "dialog"):
            key("Return")
        self.wait_until_active(self.frame)
        if content(os.path.join(self.home, "otro.HEX")) not in (HEX, None if not done else HEX):
            raise Failure("the HEX file is not whole")
        return done

    def assembled(self):
        dialog = self.window("Tavinor", "dialog")
        return dialog and any(node.name == "Ensamblado correcto" for node in walk(dialog))

    def goes_to_the_editor(self):
        self.click("Editar fichero")
        self.wait_until_active(self.editor)
        self.focused_box(EDITED_TEXT, self.editor)

    def adds(self, line):
        write(line)
        self.written += line
        check("the text", self.edited, self.written + self.rest)

    def types(self):
        self.goes_to_the_editor()
        self.adds("; x\n")
        self.back_to_main_window()
        return True

    def in_bytes(self):
        return (self.written + self.rest).replace("\n", "\r\n").encode("cp1252")

    def saves_and_opens_the_source(self):
        self.goes_to_the_editor()
        self.adds("; s\n")
        done = self.saves_the_source() and self.opens_the_source()
        self.adds("; x\n")
        self.back_to_main_window()
        return done

    def saves_the_source(self):
        saved = self.in_bytes() + b"\r\n"
        self.on_disk += (saved,)
        key("ctrl+g")
        if self.comes("the end of a save", lambda: content(self.source) == saved) is None:
            self.wait_until_active(self.editor)
            check("the source", lambda: content(self.source), self.on_disk[0])
            self.on_disk = self.on_disk[:1]
            return False
        self.on_disk = (saved,)
        return True

    def opens_the_source(self):
        text = self.written + self.rest + "\n"
        key("ctrl+a")
        dialog = self.answers_dialog("Cargar fichero .ASM", self.source)
        opened = dialog and self.comes("the end of opening", lambda: self.edited() == text) is not None
        self.wait_until_active(self.editor)
        if opened:
            self.written, self.rest = "", text
        return opened

    def looks_into_a_folder(self):
        title = "Cargar fichero .HEX"
        self.click("Cargar fichero HEX")
        if not self.answers_dialog(title, self.many):
            return False
        time.sleep(2)  # the files come one after the other
        key("Escape")
        self.wait_until_active(self.frame)
        return True

    def check_rescue(self):
        """After an end of the program."""
        if content(self.source) not in self.on_disk:
            raise Failure(f"the source is {content(self.source)!r}")
        text = self.in_bytes()
        typed = self.written.replace("\n", "\r\n").encode("cp1252")
        before = typed[: -len(b"; x\r\n")] + text[len(typed) :]  # it may have ended while it was typed
        saved = [None] if content(self.source) in (text + b"\r\n", before + b"\r\n", text) else []
        if content(self.copy) not in [text, before, *saved]:
            raise Failure(f"the text is lost: the copy is {content(self.copy)!r}")
        for name in os.listdir(self.home):
            if name not in LEFT_BY_THE_END:
                raise Failure(f"{name} has been left behind")


THINGS = ("loads", "steps", "runs", "saves_the_trace", "assembles", "types", "saves_and_opens_the_source")


def goes_on(student, room):
    """Does everything once with this much room, and where there is none something that Qt needs much for. False when
    the program has ended over it."""
    for thing in THINGS if room > 0 else (*THINGS, "looks_into_a_folder"):
        try:
            limit(student.process, room)
            done = getattr(student, thing)()
        except Exception:
            time.sleep(1)
            if student.process.poll() is None:
                raise
            print(f"{room} MiB: {thing} ends the program with {student.process.returncode}", flush=True)
            student.check_rescue()
            return False
        print(f"{room} MiB: {thing} {'done' if done else 'refused'}", flush=True)
    return True


def works_or_loses_nothing(program):
    rooms = list(ROOMS)
    while rooms:
        with Student(program) as student:
            student.begin()
            while rooms and goes_on(student, rooms.pop(0)):
                pass


def main():
    program = os.path.abspath(sys.argv[1])
    return play_all({"works_or_loses_nothing": partial(works_or_loses_nothing, program)})


if __name__ == "__main__":
    sys.exit(main())
