"""A student at work: loads, steps, runs, breaks, edits, halts and ends, on a screen of its own.

Usage: student.py program examples-folder
"""

import os
import sys
import time
from functools import partial

from desktop import Failure, Program, check, key, play_all, wait_for, walk, write
from whole_program import TRACE, back_to_main_window, in_file, saved

import pyatspi

REGISTERS = (
    "Acumulador A",
    "Registro B",
    "Registro C",
    "Registro D",
    "Registro E",
    "Registro de indicadores F",
    "Registro H",
    "Registro L",
    "Memoria apuntada por HL",
    "Contador de programa PC",
    "Puntero de pila SP",
)


def steps_through_the_sum(p, examples):
    p.load(os.path.join(examples, "01-suma.HEX"))
    check("the first row", lambda: p.rows()[0][:29], "0000 3A 00 10  LDA 1000, cont")
    p.click("Ejecutar un paso")
    check("PC", lambda: p.text("Contador de programa PC"), "0003")
    check("A", lambda: p.text("Acumulador A"), "25")
    for program_counter in ("0004", "0007", "0008", "000B"):
        key("alt+p")
        check("PC", lambda: p.text("Contador de programa PC"), program_counter)
    check("A", lambda: p.text("Acumulador A"), "3F")
    check("(2000)", lambda: p.cell("Contenido de la memoria", 0x200, 0), "2000: 3F")


def breaks_and_halts(p, examples):
    p.load(os.path.join(examples, "01-suma.HEX"))
    p.click(p.row("0007"))
    check("entry row", lambda: p.text("Código de la instrucción"), "80")
    key("F9")
    check("the breakpoint", lambda: p.row("0007").name[:6], "0007*8")
    p.click("Ejecutar")
    check("PC", lambda: p.text("Contador de programa PC"), "0007")
    check("the selected row", lambda: p.row("0007").name.endswith("contador de programa"), True)
    check("the step button", lambda: p.enabled("Ejecutar un paso"), True)
    p.click(p.row("0007"), times=2)
    check("the breakpoint", lambda: p.row("0007").name[:6], "0007 8")

    p.click("Ejecutar")
    dialog = p.dialog("Tavinor")
    p.find("Programa Parado por instrucción HLT", within=dialog)
    key("Escape")
    p.close()
    time.sleep(0.3)
    check("the halt dialog", lambda: dialog.getState().contains(pyatspi.STATE_SHOWING), True)
    p.click(p.find("Salir con TRAP", within=dialog))
    p.click(p.find("Continuar ejecución", within=dialog))
    p.click(p.find("Aceptar", "push button", within=dialog))
    p.wait_until_gone(dialog)
    check("PC", lambda: p.text("Contador de programa PC"), "0024")
    check("SP", lambda: p.text("Puntero de pila SP"), "FFFE")
    p.find("Ejecutar", "push button")


def goes_back(p, examples):
    def check_place(told, program_counter, sum_in_memory):
        p.find(told)
        check("PC", lambda: p.text("Contador de programa PC"), program_counter)
        check("(2000)", lambda: p.cell("Contenido de la memoria", 0x200, 0), f"2000: {sum_in_memory}")

    p.load(os.path.join(examples, "01-suma.HEX"))
    for _ in range(5):
        key("alt+p")
    check("(2000)", lambda: p.cell("Contenido de la memoria", 0x200, 0), "2000: 3F")
    key("F7")
    check_place("Deshecho: STA 2000", "0008", "00")
    key("F7")
    check_place("Deshecho: ADD B", "0007", "00")
    for _ in range(2):
        key("alt+p")
    p.type_into("Dirección de memoria", "2000")
    key("shift+F7")
    check_place("Atrás, antes de la última escritura en 2000", "0008", "00")
    p.click(p.row("0003"))
    key("F9")
    key("shift+F5")
    check_place("Atrás, en el punto de ruptura de 0003", "0003", "00")
    key("alt+p")
    check("PC", lambda: p.text("Contador de programa PC"), "0004")
    key("alt+h")
    key("i")  # "Al principio": the load is undone as well
    check_place("Al principio del historial", "0000", "00")
    check("the first row", lambda: p.rows()[0][:8], "0000 00 ")


def registers(p):
    """The columns of the trace that show registers, as their boxes read."""
    texts = [p.text(name) for name in REGISTERS]
    flags = "".join(str(int(texts[5], 16) >> bit & 1) for bit in (7, 6, 4, 2, 0))
    return texts[:6] + [flags] + texts[6:]


def traces_what_the_boxes_show(p, examples):
    """The saved trace is what one would write down from the boxes before and after each step."""
    rows = []

    def step():
        before = registers(p)
        if not rows or rows[-1][3:] != before:
            rows.append(["", "", "", *before])
        address = before[10]
        instruction = p.row(address).name
        key("alt+p")
        wait_for("a step", lambda: p.text("Contador de programa PC") != address)
        text = instruction[15:].split(", contador")[0]
        rows.append([address, instruction[5:13].ljust(9), text, *registers(p)])

    p.load(os.path.join(examples, "01-suma.HEX"))
    step()
    step()
    p.type_into("Registro D", "5A")
    check("D", lambda: p.text("Registro D"), "5A")
    step()
    key("F7")
    p.find("Deshecho: " + rows.pop()[2])
    check("the boxes", lambda: registers(p), rows[-1][3:])
    for _ in range(3):
        step()
    p.click("Lista")
    window = p.frame_beside(p.frame)
    p.click(p.find("Salvar", within=window))
    path = os.path.join(p.home, "pasos.txt")
    p.choose_file("Salvar fichero .TXT", path)
    p.wait_until_active(window)
    lines = [TRACE[0].replace("|", "\t"), *("\t".join(row) for row in rows)]
    check("the trace", lambda: saved(path), in_file("\n".join(lines)))
    check("rows", lambda: len(rows), 7)  # two of them state rows
    os.remove(path)
    back_to_main_window(p)


def counts_pulses_in_a_run(p, examples):
    p.load(os.path.join(examples, "14-interrupcion.HEX"))
    p.click("Ejecutar")
    p.find("Parar", "push button")
    check("the step button", lambda: p.enabled("Ejecutar un paso"), False)
    p.close()
    for pulse in range(1, 6):
        check("RST 7.5", lambda: p.enabled("Petición de RST 7.5"), True)
        p.click("Petición de RST 7.5")
        check("port 01", lambda: p.cell("Contenido de los puertos", 0, 1), f"01: {pulse:02X}")
        check("SOD", lambda: p.checked("Salida serie SOD"), pulse % 2 == 1)
    dialog = p.dialog("Tavinor")
    p.click(p.find("Aceptar", "push button", within=dialog))  # RESET, and the run goes on
    p.wait_until_gone(dialog)
    check("port 01", lambda: p.cell("Contenido de los puertos", 0, 1), "01: 00")
    p.click("Parar")
    p.find("Ejecutar", "push button")
    check("the step button", lambda: p.enabled("Ejecutar un paso"), True)


def edits(p, _examples):
    p.type_into("Dirección de memoria", "1234")
    write("7f")
    key("Tab")
    check("(1234)", lambda: p.cell("Contenido de la memoria", 0x123, 4), "1234: 7F")
    p.type_into("Par HL", "1234")
    check("M", lambda: p.text("Memoria apuntada por HL"), "7F")
    p.type_into("Dirección de la instrucción", "0000")
    write("c3")
    key("Tab")
    check("the first row", lambda: p.rows()[0][:22], "0000 C3 00 00  JMP 000")

    p.click(p.find("Registro B", "text"))
    write("xyz")
    p.click("Ejecutar un paso")
    p.message("Valor incorrecto")
    check("B", lambda: p.text("Registro B"), "xyz")
    check("PC", lambda: p.text("Contador de programa PC"), "0000")
    write("5")  # in place of what is selected
    p.click("Ejecutar un paso")
    check("B", lambda: p.text("Registro B"), "05")
    key("alt+r")
    check("B", lambda: p.text("Registro B"), "00")


def refuses_a_bad_file(p, examples):
    path = os.path.join(examples, "01-suma.asm")
    p.click("Cargar fichero HEX")
    p.choose_file("Cargar fichero .HEX", path)
    p.message(f"Error en fichero {path}.\nFormato incorrecto.")
    p.click("Cargar fichero HEX")
    dialog = p.dialog("Cargar fichero .HEX")
    names = [node.name for node in walk(dialog)]
    if "Cancelar" not in names:
        raise Failure(f"the file dialog speaks another language: {names}")
    key("Escape")
    p.wait_until_gone(dialog)


def types_in_a_run(p, _examples):
    p.type_into("Dirección de la instrucción", "0001")
    write("c3")  # 0001: JMP 0000; 0000 keeps its NOP
    key("Tab")
    key("alt+j")
    p.find("Parar", "push button")
    p.type_into("Acumulador A", "5a")
    check("the stop key", lambda: p.enabled("Ejecutar un paso"), False)
    key("alt+p")
    p.find("Ejecutar", "push button")


def halts_again_at_once(p, _examples):
    """A halt dialog that comes back before the window system has seen it go is the same dialog still."""
    p.type_into("Dirección de la instrucción", "0000")
    write("76")
    key("Tab")
    key("alt+j")
    for _ in range(3):
        dialog = p.dialog("Tavinor")
        p.find("Programa Parado por instrucción HLT", within=dialog)
        key("Return")  # RESET, and the run goes on
        time.sleep(0.3)
    dialog = p.dialog("Tavinor")
    key("Tab")
    write("qq")
    key("Return")
    p.answer("Valor incorrecto")
    p.wait_until_active(dialog)
    check("the vector", lambda: p.text("Vector de INTR", within=dialog), "qq")
    write("5")
    p.click(p.find("Continuar ejecución", within=dialog))
    p.click(p.find("Aceptar", "push button", within=dialog))
    p.wait_until_gone(dialog)
    p.find("Ejecutar", "push button")
    check("the vector", lambda: p.text("Vector de INTR"), "05")


SCENES = [
    steps_through_the_sum,
    breaks_and_halts,
    goes_back,
    traces_what_the_boxes_show,
    counts_pulses_in_a_run,
    edits,
    refuses_a_bad_file,
    types_in_a_run,
    halts_again_at_once,
]


def play(scene, program, examples):
    with Program(program) as p:
        scene(p.ready(), examples)
        p.close()
        p.expect_end()


def main():
    program, examples = map(os.path.abspath, sys.argv[1:3])
    return play_all({scene.__name__: partial(play, scene, program, examples) for scene in SCENES})


if __name__ == "__main__":
    sys.exit(main())
