"""Files dragged from another program and dropped on the windows.

Usage: dropping.py program drag-source
"""

import os
import select
import subprocess
import sys
import time
from contextlib import contextmanager
from functools import partial

from desktop import Failure, Program, check, play_all, xdotool

import pyatspi

EDITED_TEXT = "Texto del programa"
IMAGE = ":03010000C33412F3\n:00000001FF\n"


def put(folder, name, text):
    path = os.path.join(folder, name)
    with open(path, "w", encoding="utf-8") as file:
        file.write(text)
    return path


def expect(process, word, meanwhile=None):
    """Waits for what the program says, and does something every few seconds meanwhile."""
    while not select.select([process.stdout], [], [], 3)[0]:
        if meanwhile:
            meanwhile()
    said = process.stdout.readline().decode().strip()
    if said != word:
        raise Failure(f"the drag is {said!r}, expected {word!r}")


@contextmanager
def dragged(source, files, control, expected):
    """Drags files into the middle of a control. The program that they come from goes at the end: until then
    they can be asked for."""
    box = control.queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
    target = (box.x + box.width // 2, box.y + box.height // 2)
    width, height = map(int, xdotool("getdisplaygeometry"))
    start = (width - 20, height - 20)
    with subprocess.Popen([source, *files], stdout=subprocess.PIPE, bufsize=0) as process:
        try:
            expect(process, "ready")
            xdotool("mousemove", *start, "mousedown", 1, "mousemove", start[0] - 3, start[1] - 3)
            expect(process, "dragging")
            # Straight there: windows on the way may allow what this one does not.
            xdotool("mousemove", target[0] - 1, target[1], "mousemove", *target)
            if expected == "refused":
                time.sleep(0.5)  # what is not allowed is not told
            else:
                # What is dragged may have been asked for in vain: then only coming once more helps.
                expect(process, "allowed", lambda: xdotool("mousemove", *start, "mousemove", *target))
            xdotool("mouseup", 1)
            end = process.stdout.readline().decode().strip()
            if end != expected:
                raise Failure(f"{files} on {control.name!r}: {end}, expected {expected}")
            yield
        finally:
            process.kill()


def refuses(source, files, control):
    with dragged(source, files, control, "refused"):
        pass


def drops(program, source):
    with Program(program) as p:
        p.ready()
        image, asm = put(p.home, "a.hex", IMAGE), put(p.home, "a.asm", "HLT\n")
        other, text = put(p.home, "b.asm", "NOP\n"), put(p.home, "a.txt", "x")

        for name in ("Listado del programa", "Acumulador A"):
            refuses(source, [text], p.find(name))
            refuses(source, [image, asm], p.find(name))
            with dragged(source, [image], p.find(name), "copied"):
                p.message("Carga correcta")
        check("(0100)", lambda: p.cell("Contenido de la memoria", 0x10, 0), "0100: C3")

        with dragged(source, [asm], p.find("Contenido de la memoria"), "copied"):
            editor = p.frame_beside(p.frame)
            check("the title", lambda: editor.name, "Tavinor - a.asm")
            p.wait_until_active(editor)
        box = p.find(EDITED_TEXT, "text", editor)
        refuses(source, [image], box)
        check("the text", lambda: p.text(EDITED_TEXT, editor), "HLT\n")
        with dragged(source, [other], box, "copied"):
            check("the title", lambda: editor.name, "Tavinor - b.asm")
            check("the text", lambda: p.text(EDITED_TEXT, editor), "NOP\n")


def main():
    program, source = map(os.path.abspath, sys.argv[1:3])
    return play_all({"drops": partial(drops, program, source)})


if __name__ == "__main__":
    sys.exit(main())
