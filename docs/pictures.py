"""Takes the pictures of the documents from the program while it is used as the manual tells.

Usage: pictures.py program docs-folder examples-folder (see make-pictures)
"""

import os
import shutil
import subprocess
import sys
import time

import first_hour
from desktop import Program, check, key, wait_for, walk, write, xdotool

import pyatspi

# Paths are seen in some of the pictures, so they are the same every time.
FOLDER = "/tmp/practicas"
WITH_ERRORS = """; Práctica 3
INICIO: LXI  H,TABLA
        MVI  A,300
        JMP  INICIO
"""
GROUPS = {
    "instruccion": "Instrucción",
    "registros": "Registros",
    "pila": "PILA",
    "interrupciones": "Interrupciones",
    "memoria": "Memoria",
    "puertos": "Puertos de E/S",
}
MARGIN = 6
FRAME = 20  # what lies below the last control of a full group, with its frame


class Camera:
    def __init__(self, folder):
        self.folder = folder

    def _take(self, name, *arguments):
        xdotool("mousemove", 1365, 767)
        time.sleep(0.6)  # what moves or fades has come to rest
        path = os.path.join(self.folder, name + ".png")
        colours = ["+dither", "-colors", "255", "-strip", "-define", "png:compression-level=9"]
        subprocess.run(["import", *arguments, *colours, "PNG8:" + path], check=True)

    def window(self, name):
        """The window that has the focus."""
        self._take(name, "-window", xdotool("getactivewindow")[0])

    def node(self, name, node):
        """A control, or a group: whole where its controls fill it, else down to the last of them."""
        box = node.queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
        inside = [child.queryComponent().getExtents(pyatspi.DESKTOP_COORDS) for child in node]
        height = max([child.y + child.height for child in inside], default=box.y + box.height) - box.y
        if box.height - height <= FRAME:
            height = box.height
        size = f"{box.width + 2 * MARGIN}x{height + 2 * MARGIN}"
        place = f"+{box.x - MARGIN}+{box.y - MARGIN}"
        self._take(name, "-window", "root", "-crop", size + place, "+repage")


def group(p, title):
    def look():
        for node in walk(p.frame):
            if node.name == title and node.getRoleName() in ("panel", "grouping"):
                return node
        return None

    return wait_for(f"the group {title!r}", look)


def saved_as(name, text):
    path = os.path.join(FOLDER, name)
    with open(path, "w", encoding="utf-8") as file:
        file.write(text)
    return path


def example(examples, name):
    return shutil.copy(os.path.join(examples, name), FOLDER)


def main_window(p, camera, examples):
    p.load(example(examples, "09-burbuja.HEX"))
    for step in range(9):
        key("alt+p")
        time.sleep(0.1)
    camera.window("principal")
    bar = p.find("Ejecutar", "push button").parent
    camera.node("botones", bar)
    p.click(p.row("0008"))  # shows it in the entry row
    for name, title in GROUPS.items():
        camera.node(name, group(p, title))


def breakpoint_reached(p, camera, examples):
    p.load(example(examples, "12-factorial.HEX"))
    p.click(p.row("000D"))
    key("F9")
    p.click("Ejecutar")
    check("PC", lambda: p.text("Contador de programa PC"), "000D")
    camera.node("ruptura", group(p, "Programa"))


def halt_dialog(p, camera, examples):
    p.load(example(examples, "01-suma.HEX"))
    p.click("Ejecutar")
    dialog = p.dialog("Tavinor")
    p.find("Programa Parado por instrucción HLT", within=dialog)
    camera.window("halt")
    p.click(p.find("Continuar ejecución", within=dialog))
    p.click(p.find("Aceptar", "push button", dialog))
    p.wait_until_gone(dialog)


def trace(p, camera, examples):
    p.load(example(examples, "02-suma-16-bits.HEX"))
    for step in range(10):
        key("alt+p")
        time.sleep(0.1)
    p.click("Lista")
    p.frame_beside(p.frame)
    camera.window("lista")
    key("alt+Tab")
    p.wait_until_active(p.frame)


def assemble(p, path):
    p.click("Ensamblar fichero")
    p.choose_file("Ensamblar fichero .ASM", path)


def close_assembler(p):
    window = p.dialog("Tavinor")
    p.click(p.find("Cerrar", "push button", window))
    p.wait_until_gone(window)


def assembler(p, camera, examples):
    assemble(p, example(examples, "01-suma.asm"))
    p.find("Ensamblado correcto", within=p.dialog("Tavinor"))
    camera.window("ensamblador")
    close_assembler(p)
    assemble(p, saved_as("errores.asm", WITH_ERRORS))
    p.answer("Ensamblado incorrecto")
    p.dialog("Tavinor")
    camera.window("ensamblador-errores")
    close_assembler(p)


def editor(p, camera, examples):
    p.click("Editar fichero")
    p.choose_file("Editar fichero .ASM", example(examples, "01-suma.asm"))
    window = p.frame_beside(p.frame)
    camera.window("editor")
    key("ctrl+b")
    dialog = p.dialog("Tavinor - Buscar")
    p.focused_box("Texto a buscar", dialog)
    write("suma")
    camera.window("busqueda")
    key("Escape")
    p.wait_until_active(window)
    key("ctrl+s")
    p.wait_until_active(p.frame)


def about_box(p, camera, _examples):
    p.click("Acerca de Tavinor")
    dialog = p.dialog("Tavinor")
    camera.window("acerca")
    p.click(p.find("Cerrar esta ventana", "push button", dialog))
    p.wait_until_gone(dialog)


SCENES = [main_window, breakpoint_reached, halt_dialog, trace, assembler, editor, about_box]


def the_first_hour(p, camera, docs):
    """The tutorial itself, with a picture wherever its chapter shows one."""
    chapter = first_hour.Chapter(os.path.join(docs, "manual", "01-primera-hora.md"))

    def picture(name):
        if name == "hora-ruptura":
            camera.node(name, group(p, "Programa"))
        else:
            camera.window(name)

    first_hour.follow(p, chapter, FOLDER, picture)


def take_all(program, docs, examples):
    camera = Camera(os.path.join(docs, "images"))
    with Program(program) as p:
        the_first_hour(p.ready(), camera, docs)
    for scene in SCENES:
        with Program(program) as p:
            scene(p.ready(), camera, examples)


def main():
    try:
        os.mkdir(FOLDER)
    except FileExistsError:
        sys.exit(f"{FOLDER} is there already; it would be written over. Move it away.")
    try:
        take_all(*map(os.path.abspath, sys.argv[1:4]))
    finally:
        shutil.rmtree(FOLDER)


if __name__ == "__main__":
    main()
