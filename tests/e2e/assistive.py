"""The main job of the program through the accessibility bus alone, as a user works who has no mouse, no keys
and no sight of the screen: every deed is an action or a text given to a control that was found by its name,
and everything shown is read there.

Usage: assistive.py program examples-folder
"""

import os
import sys
from functools import partial

from desktop import Failure, Program, check, has, play_all

import pyatspi

OK = "Aceptar"
MEMORY = "Contenido de la memoria"
PC = "Contador de programa PC"
VECTOR = "Vector de INTR"


def act(node, *wanted):
    """Does the first of the wanted actions that a control offers."""
    actions = node.queryAction()
    offered = [actions.getName(i) for i in range(actions.nActions)]
    for name in wanted:
        if name in offered:
            actions.doAction(offered.index(name))
            return
    raise Failure(f"{node.name!r} offers {offered}, expected one of {wanted}")


class SpokenProgram(Program):
    """The program, used through the bus. What a user does with mouse and keys is done by actions instead."""

    def click(self, node, times=1):
        if isinstance(node, str):
            node = self.find(node)
        for _ in range(times):
            act(node, "Press", "Toggle", "SetFocus")

    def write(self, name, text, within=None):
        """Puts a text into a box, without a word about the focus."""
        box = self.find(name, "text", within) if isinstance(name, str) else name
        box.queryEditableText().setTextContents(text)
        content = box.queryText()
        check(f"the text of {name!r}", lambda: content.getText(0, content.characterCount), text)

    def leave_for(self, name):
        act(self.find(name), "SetFocus")

    def type_into(self, name, text):
        self.write(name, text)
        self.leave_for("Listado del programa")

    def choose_file(self, title, path):
        dialog = self.dialog(title)
        self.write(self.focused_box(None, dialog), path)
        self.click(self.find("Abrir", "push button", dialog))

    def message(self, text):
        self.answer(text, OK)
        self.wait_until_active(self.frame)

    def flags(self):
        names = ("signo", "cero", "acarreo auxiliar", "paridad", "acarreo")
        return "".join(str(int(self.checked(f"Indicador de {name}"))) for name in names)

    def halt_dialog(self):
        dialog = self.dialog("Tavinor")
        self.find("Programa Parado por instrucción HLT", within=dialog)
        return dialog


def loads(p, examples):
    p.load(os.path.join(examples, "01-suma.HEX"))
    check("the first row", lambda: p.rows()[0][:21], "0000 3A 00 10  LDA 10")
    check("the marked row", lambda: p.row("0000").name.endswith(", contador de programa"), True)


def steps(p):
    for program_counter, accumulator in (("0003", "25"), ("0004", "25"), ("0007", "1A")):
        p.click("Ejecutar un paso")
        check("PC", lambda want=program_counter: p.text(PC), program_counter)
        check("A", lambda: p.text("Acumulador A"), accumulator)
    check("B", lambda: p.text("Registro B"), "25")
    check("the marked row", lambda: p.row("0007").name.endswith(", contador de programa"), True)


def edits(p):
    """E6 and 1A make 100: nothing is left but a carry, and an auxiliary one."""
    p.type_into("Registro B", "e6")
    check("B", lambda: p.text("Registro B"), "E6")
    check("BC", lambda: p.text("Par BC"), "E600")
    p.click("Ejecutar un paso")
    check("A", lambda: p.text("Acumulador A"), "00")
    check("S Z AC P CY", p.flags, "01111")

    p.write("Dirección de memoria", "1001")
    p.type_into("Dato de memoria", "f0")
    check("(1001)", lambda: p.cell(MEMORY, 0x100, 1), "1001: F0")
    cell = p.find(MEMORY, "table").queryTable().getAccessibleAt(0x100, 0)
    act(cell, "Toggle")
    check("the selected cell", lambda: has(cell, pyatspi.STATE_SELECTED), True)
    check("the selected address", lambda: p.text("Dirección de memoria"), "1000")
    p.type_into("Dato de memoria", "20")
    check("(1000)", lambda: p.cell(MEMORY, 0x100, 0), "1000: 20")


def is_refused(p):
    """What a box must not hold stays there; whatever was pressed does nothing."""
    p.write("Registro B", "xyz")
    p.click("RESET: reiniciar el procesador")
    p.message("Valor incorrecto")
    check("B", lambda: p.text("Registro B"), "xyz")
    check("PC", lambda: p.text(PC), "0008")
    p.type_into("Registro B", "0")
    p.click("RESET: reiniciar el procesador")
    check("PC", lambda: p.text(PC), "0000")


def breaks(p):
    act(p.row("0007"), "Toggle")
    check("the breakpoint", lambda: p.row("0007").name.endswith(", punto de ruptura"), True)
    p.click("Ejecutar")
    check("PC", lambda: p.text(PC), "0007")
    check("the step button", lambda: p.enabled("Ejecutar un paso"), True)
    check("A", lambda: p.text("Acumulador A"), "F0")
    check("B", lambda: p.text("Registro B"), "20")


def halts(p):
    """20 and F0 make 110. The way out is the instruction of the vector, CF: RST 1, which calls 0008."""
    p.click(p.find("Interrupciones habilitadas", "check box"))
    check("IE", lambda: p.checked("Interrupciones habilitadas"), True)
    p.click("Ejecutar")
    dialog = p.halt_dialog()
    check("A", lambda: p.text("Acumulador A"), "10")
    check("S Z AC P CY", p.flags, "00001")
    way_out = p.find("Salir con INTR", "radio button", dialog)
    go_on = p.find("Continuar ejecución", "check box", dialog)

    p.write(VECTOR, "zz", dialog)
    p.click(way_out)
    p.answer("Valor incorrecto", OK)
    p.wait_until_active(dialog)
    check("the way out", lambda: has(way_out, pyatspi.STATE_CHECKED), False)
    p.write(VECTOR, "cf", dialog)
    p.click(way_out)
    check("the way out", lambda: has(way_out, pyatspi.STATE_CHECKED), True)
    check("the vector", lambda: p.text(VECTOR, within=dialog), "CF")
    p.click(go_on)
    check("going on", lambda: has(go_on, pyatspi.STATE_CHECKED), False)
    p.click(p.find(OK, "push button", dialog))
    p.wait_until_gone(dialog)
    p.find("Ejecutar", "push button")
    check("PC", lambda: p.text(PC), "0008")
    check("SP", lambda: p.text("Puntero de pila SP"), "FFFE")
    check("the vector", lambda: p.text(VECTOR), "CF")
    check("(2000)", lambda: p.cell(MEMORY, 0x200, 0), "2000: 10")
    check("(FFFE)", lambda: p.cell(MEMORY, 0xFFF, 14), "FFFE: 0C")


def reads_the_trace(p):
    p.click(p.find("Lista", "menu item"))
    window = p.frame_beside(p.frame)
    table = p.find("Lista de pasos ejecutados", "table", window).queryTable()

    def last_row():
        row = table.nRows - 1
        return [table.getAccessibleAt(row, column).name for column in range(table.nColumns)]

    # The HLT, with the registers after its way out.
    want = "000B 76 HLT 10 20 00 00 00 01 00001 00 00 3A 0008 FFFE".split()
    check("the last row of the trace", last_row, want)
    headers = [table.getColumnDescription(column) for column in range(table.nColumns)]
    check("the columns", lambda: headers[:6], ["DIR", "DAT", "INS", "A", "B", "C"])


def main_job(program, examples):
    with SpokenProgram(program) as p:
        p.ready()
        loads(p, examples)
        steps(p)
        edits(p)
        is_refused(p)
        breaks(p)
        halts(p)
        reads_the_trace(p)


def main():
    program, examples = map(os.path.abspath, sys.argv[1:3])
    return play_all({"main_job": partial(main_job, program, examples)})


if __name__ == "__main__":
    sys.exit(main())
