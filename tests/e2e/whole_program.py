"""The whole program in one sitting: a student writes, searches, assembles, mends, loads, runs and traces a
program of their own, and leaves.

Usage: whole_program.py program
"""

import os
import sys
from functools import partial

from desktop import Program, check, has, key, play_all, write

import pyatspi

EDITED_TEXT = "Texto del programa"
VERSION = "vers. 1.5.7"

SOURCE = """inicio: lxi h,1234h ; destino
 mvi a,3ah
 mvi b,0c6h
 suma b
 mov m,a
fin: hlt"""
MENDED = SOURCE.replace("suma", "add")

# 21+34+12+3E+3A+06+C6+80+77+76 = 318, and 0A bytes: 322, whose low byte 22 and DE make 100.
HEX = ":0A0000002134123E3A06C6807776DE\n:00000001FF\n"

# Columns: DIR, DAT and INS of the instruction; A B C D E F, the flags S Z AC P CY, H L M, PC and SP after it.
# The first row and the one after the breakpoint, where B has been changed from C6 to C7, show the registers
# alone. 3A + C7 = 101: A = 01 with AC and CY. After the HLT the RESET has cleared the registers, and M is the
# first byte of the program.
TRACE = [
    "DIR |DAT      |INS         |A |B |C |D |E |F |szapc|H |L |M |PC  |SP  ",
    "|||00|00|00|00|00|00|00000|00|00|21|0000|0000",
    "0000|21 34 12 |LXI H,1234|00|00|00|00|00|00|00000|12|34|00|0003|0000",
    "0003|3E 3A    |MVI A,3A|3A|00|00|00|00|00|00000|12|34|00|0005|0000",
    "0005|06 C6    |MVI B,C6|3A|C6|00|00|00|00|00000|12|34|00|0007|0000",
    "|||3A|C7|00|00|00|00|00000|12|34|00|0007|0000",
    "0007|80       |ADD B|01|C7|00|00|00|11|00101|12|34|00|0008|0000",
    "0008|77       |MOV M,A|01|C7|00|00|00|11|00101|12|34|01|0009|0000",
    "0009|76       |HLT|00|00|00|00|00|00|00000|00|00|21|0000|0000",
]


def saved(path):
    """The content of a file, None as long as there is none."""
    if not os.path.exists(path):
        return None
    with open(path, "rb") as file:
        return file.read()


def in_file(text):
    return b"".join(line.encode() + b"\r\n" for line in text.split("\n"))


def back_to_main_window(p):
    """From the window that was opened from there."""
    key("alt+Tab")
    p.wait_until_active(p.frame)


def run_through(p):
    """From the main window to the farewell screen. Returns the files made."""
    folder = p.home
    source, program, listing, trace = (
        os.path.join(folder, name) for name in ("tarea.asm", "tarea.HEX", "tarea.LST", "traza.txt")
    )
    editor = opens_a_new_file(p, source)
    writes_and_saves(p, editor, source)
    searches(p, editor)
    back_to_main_window(p)
    meets_the_error(p, source)
    mends(p, editor, source)
    back_to_main_window(p)
    assembles(p, source, program)
    p.load(program)
    runs_in_two_parts(p)
    saves_the_trace(p, editor, trace)
    back_to_main_window(p)
    looks_at_the_about_box(p)
    p.close()
    p.expect_alone(VERSION)  # the farewell screen
    return [os.path.relpath(path, folder) for path in (source, program, listing, trace)]


def opens_a_new_file(p, source):
    p.click("Editar fichero")
    p.choose_file("Editar fichero .ASM", source)
    p.answer(f"El fichero {source} no existe\n¿Desea crearlo?", "Sí")
    editor = p.frame_beside(p.frame)
    check("the editor's title", lambda: editor.name, "Tavinor - tarea.asm")
    return editor


def expect_saved(p, editor, source, text):
    check("the text", lambda: p.text(EDITED_TEXT, editor), text)
    key("ctrl+g")
    check("the source file", lambda: saved(source), in_file(text))


def writes_and_saves(p, editor, source):
    p.focused_box(EDITED_TEXT, editor)
    write(SOURCE)
    expect_saved(p, editor, source, SOURCE)


def searches(p, editor):
    """From the end of the text, where the cursor is."""
    key("ctrl+b")
    dialog = p.dialog("Tavinor - Buscar")
    p.focused_box("Texto a buscar", dialog)
    write("SUMA")
    check("the pattern", lambda: p.text("Texto a buscar", dialog), "SUMA")
    key("Return")
    p.answer("SUMA no encontrada\n¿Desea buscar desde el principio del documento?", "Sí")
    p.wait_until_active(editor)
    start = SOURCE.index("suma")
    text = p.find(EDITED_TEXT, "text", editor).queryText()
    check("the selection", lambda: tuple(text.getSelection(0)), (start, start + len("suma")))


def starts_assembling(p, source):
    p.click("Ensamblar fichero")
    p.choose_file("Ensamblar fichero .ASM", source)


def leaves_assembler(p, report):
    """Reads the report, and closes the window."""
    window = p.dialog("Tavinor")
    check("the report", lambda: p.text("Informe de errores o registros HEX", window), report)
    p.click(p.find("Cerrar", "push button", window))
    p.wait_until_gone(window)


def meets_the_error(p, source):
    starts_assembling(p, source)
    p.answer("Ensamblado incorrecto")
    leaves_assembler(p, "==> suma b\nLínea: 4 - ERROR: Código de operación no valido\n")


def mends(p, editor, source):
    """What the search has found is still selected."""
    p.click("Editar fichero")
    p.wait_until_active(editor)
    p.focused_box(EDITED_TEXT, editor)
    write("add")
    expect_saved(p, editor, source, MENDED)


def assembles(p, source, program):
    starts_assembling(p, source)
    p.find("Ensamblado correcto", within=p.dialog("Tavinor"))
    leaves_assembler(p, HEX)
    check("the HEX file", lambda: saved(program), in_file(HEX.rstrip("\n")))


def runs_in_two_parts(p):
    p.click(p.row("0007"))
    key("F9")
    check("the breakpoint", lambda: p.row("0007").name[:6], "0007*8")
    p.click("Ejecutar")
    check("PC", lambda: p.text("Contador de programa PC"), "0007")
    check("the step button", lambda: p.enabled("Ejecutar un paso"), True)
    for name, value in (("Acumulador A", "3A"), ("Registro B", "C6"), ("Par HL", "1234")):
        check(name, lambda box=name: p.text(box), value)

    p.type_into("Registro B", "c7")
    check("BC", lambda: p.text("Par BC"), "C700")
    p.click("Ejecutar")
    dialog = p.dialog("Tavinor")
    p.find("Programa Parado por instrucción HLT", within=dialog)
    check("A", lambda: p.text("Acumulador A"), "01")
    check("PC", lambda: p.text("Contador de programa PC"), "0009")  # the refresh comes after the step
    reset = p.find("Salir con RESET", within=dialog)
    check("the RESET option", lambda: has(reset, pyatspi.STATE_CHECKED), True)
    p.click(p.find("Continuar ejecución", within=dialog))
    p.click(p.find("Aceptar", "push button", dialog))
    p.wait_until_gone(dialog)
    p.find("Ejecutar", "push button")
    check("PC", lambda: p.text("Contador de programa PC"), "0000")
    check("(1234)", lambda: p.cell("Contenido de la memoria", 0x123, 4), "1234: 01")


def saves_the_trace(p, editor, path):
    p.click("Lista")
    window = p.frame_beside(p.frame, editor)
    p.click(p.find("Salvar", within=window))
    p.choose_file("Salvar fichero .TXT", path)
    p.wait_until_active(window)
    check("the trace", lambda: saved(path), in_file("\n".join(TRACE).replace("|", "\t")))


def looks_at_the_about_box(p):
    p.click("Acerca de Tavinor")
    dialog = p.dialog("Tavinor")
    p.find(VERSION, within=dialog)
    p.click(p.find("Cerrar esta ventana", "push button", dialog))
    p.wait_until_gone(dialog)


def whole_program(path):
    with Program(path) as p:
        p.expect_alone(VERSION)  # the splash
        made = run_through(p.ready())
        p.expect_end(made)


def main():
    program = os.path.abspath(sys.argv[1])
    return play_all({"whole_program": partial(whole_program, program)})


if __name__ == "__main__":
    sys.exit(main())
