"""The first chapter of the manual, followed to the letter on a screen of its own.

Usage: first_hour.py program first-chapter
"""

import os
import re
import sys
from functools import partial

from desktop import Program, check, key, play_all, write


EDITED_TEXT = "Texto del programa"
FILE = "cuenta.asm"


class Chapter:
    """What the chapter prints: the source with its error, the mended one, the report and the listing."""

    def __init__(self, path):
        with open(path, encoding="utf-8") as file:
            blocks = re.findall(r"^```(\S*)\n(.*?)^```$", file.read(), re.DOTALL | re.MULTILINE)
        self.blocks = dict(reversed(blocks))  # the first of every kind

    def __getitem__(self, kind):
        return self.blocks[kind]


def no_picture(_name):
    """A caller that wants pictures gives `follow` something else, which is called where the chapter shows one."""


def registers(p, **expected):
    names = {"A": "Acumulador A", "C": "Registro C", "PC": "Contador de programa PC"}
    for name, value in expected.items():
        check(name, lambda box=names[name]: p.text(box), value)


def writes(p, chapter, path):
    key("alt+e")
    p.choose_file("Editar fichero .ASM", path)
    p.answer(f"El fichero {path} no existe\n¿Desea crearlo?", "Sí")
    editor = p.frame_beside(p.frame)
    p.focused_box(EDITED_TEXT, editor)
    write(chapter["8085-errores"])
    check("the text", lambda: p.text(EDITED_TEXT, editor), chapter["8085-errores"])
    key("ctrl+g")
    return editor


def assembles(p, path):
    key("alt+n")
    p.choose_file("Ensamblar fichero .ASM", path)


def leaves_assembler(p, window):
    p.click(p.find("Cerrar", "push button", window))
    p.wait_until_gone(window)


def back_to_main_window(p):
    key("alt+Tab")
    p.wait_until_active(p.frame)


def meets_the_error(p, chapter, path, picture):
    assembles(p, path)
    p.answer("Ensamblado incorrecto")
    window = p.dialog("Tavinor")
    report = "Informe de errores o registros HEX"
    check("the report", lambda: p.text(report, window), chapter["informe"])
    picture("hora-error")
    leaves_assembler(p, window)


def mends(p, editor, chapter):
    key("alt+e")
    p.wait_until_active(editor)
    p.focused_box(EDITED_TEXT, editor)
    key("ctrl+Home")
    before = chapter["8085-errores"][: chapter["8085-errores"].index("MOVE")]
    key(*["Down"] * before.count("\n"))
    key("End", *["Left"] * len("E C,A"), "Delete")
    key("space")
    check("the text", lambda: p.text(EDITED_TEXT, editor), chapter["8085"])
    key("ctrl+g")


def listing_lines(text):
    return [line.rstrip() for line in text.rstrip("\n").split("\n")]


def assembles_well(p, chapter, path):
    assembles(p, path)
    window = p.dialog("Tavinor")
    p.find("Ensamblado correcto", within=window)
    shown = listing_lines(p.text("Listado", window))
    check("the listing", lambda: shown, listing_lines(chapter["listado"]))
    leaves_assembler(p, window)


def steps(p):
    for values in ({"A": "05", "PC": "0003"}, {"C": "05", "PC": "0004"}, {"A": "00", "PC": "0005"}):
        key("alt+p")
        registers(p, **values)
    check("Z", lambda: p.checked("Indicador de cero"), True)
    check("P", lambda: p.checked("Indicador de paridad"), True)
    check("C", lambda: p.checked("Indicador de acarreo"), False)


def breaks(p, picture):
    p.click(p.row("0005"))
    key("F9")
    check("the breakpoint", lambda: p.row("0005").name[:5], "0005*")
    for a, c in (("05", "04"), ("09", "03"), ("0C", "02"), ("0E", "01")):
        key("alt+j")
        registers(p, A=a, C=c, PC="0005")
        if a == "05":
            picture("hora-ruptura")
    p.click(p.row("0005"), times=2)
    check("the breakpoint", lambda: p.row("0005").name[:5], "0005 ")


def halts(p, picture=no_picture):
    key("alt+j")
    dialog = p.dialog("Tavinor")
    p.find("Programa Parado por instrucción HLT", within=dialog)
    picture("hora-halt")
    p.click(p.find("Continuar ejecución", within=dialog))
    p.click(p.find("Aceptar", "push button", dialog))
    p.wait_until_gone(dialog)
    registers(p, A="00", PC="0000")


def expect_sum(p, value):
    p.click(p.find("Dirección de memoria", "text"))
    p.focused_box("Dirección de memoria", p.frame)
    write("2000")
    key("shift+Tab")
    check("(2000)", lambda: shown_sum(p), value)


def shown_sum(p):
    return p.cell("Contenido de la memoria", 0x200, 0).removeprefix("2000: ")


def changes_the_number(p, number):
    before = shown_sum(p)
    p.type_into("Dirección de memoria", "1000")
    p.focused_box("Dato de memoria", p.frame)
    write(number)
    key("Tab")
    check("(1000)", lambda: p.cell("Contenido de la memoria", 0x100, 0), "1000: " + number)
    check("(2000), which was only looked at", lambda: shown_sum(p), before)


def opens_the_trace(p, editor, picture):
    key("alt+l")
    window = p.frame_beside(p.frame, editor)
    rows = p.find("Lista de pasos ejecutados", within=window).queryTable()
    check("the last row", lambda: rows.getAccessibleAt(rows.nRows - 1, 2).name.rstrip(), "HLT")
    picture("hora-lista")


def follow(p, chapter, folder, picture=no_picture):
    path = os.path.join(folder, FILE)
    editor = writes(p, chapter, path)
    back_to_main_window(p)
    meets_the_error(p, chapter, path, picture)
    mends(p, editor, chapter)
    back_to_main_window(p)
    assembles_well(p, chapter, path)
    p.load(os.path.join(folder, "cuenta.HEX"))
    registers(p, PC="0000")
    picture("hora-cargado")
    steps(p)
    breaks(p, picture)
    halts(p, picture)
    expect_sum(p, "0F")
    changes_the_number(p, "0A")
    halts(p)
    expect_sum(p, "37")
    opens_the_trace(p, editor, picture)


def first_hour(program, path):
    with Program(program) as p:
        follow(p.ready(), Chapter(path), p.home)


def main():
    program, path = map(os.path.abspath, sys.argv[1:3])
    return play_all({"first_hour": partial(first_hour, program, path)})


if __name__ == "__main__":
    sys.exit(main())
