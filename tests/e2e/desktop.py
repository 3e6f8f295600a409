"""The program on a screen: real mouse and keys through the X server, and what is shown there, read as a
screen reader reads it.

Debian packages: xvfb, openbox, xdotool, dbus, at-spi2-core, python3-pyatspi.
"""

import os
import shutil
import subprocess
import tempfile
import time

import pyatspi

PATIENCE = 20  # seconds
DO_NOT_ENTER = {"table", "list"}  # they have thousands of children, and are read cell by cell


class Failure(Exception):
    """What is shown, or done, is not what it should be."""


def wait_for(what, condition):
    """Waits until `condition` gives something true, and returns it."""
    end = time.monotonic() + PATIENCE
    while time.monotonic() < end:
        try:
            result = condition()
        except (RuntimeError, NotImplementedError):  # something has gone while it was looked at
            result = None
        if result:
            return result
        time.sleep(0.02)
    raise Failure(f"did not come: {what}")


def check(what, shown, expected):
    """Waits until `shown()` equals `expected`."""
    last = [None]

    def equal():
        last[0] = shown()
        return last[0] == expected

    try:
        wait_for(what, equal)
    except Failure:
        raise Failure(f"{what} is {last[0]!r}, expected {expected!r}") from None


def xdotool(*arguments):
    return subprocess.run(
        ["xdotool", *map(str, arguments)], check=True, capture_output=True, text=True
    ).stdout.split()


def key(*names):
    xdotool("key", "--delay", 20, *names)


def write(text):
    xdotool("type", "--delay", 8, text)


def walk(node):
    for i in range(node.childCount):
        child = node.getChildAtIndex(i)
        if child is None:
            continue
        yield child
        if child.getRoleName() not in DO_NOT_ENTER:
            yield from walk(child)


def has(node, state):
    return node.getState().contains(state)


class Program:
    """The running program. To be used in a `with`."""

    def __init__(self, path):
        self.home = tempfile.mkdtemp()
        environment = {
            name: value for name, value in os.environ.items() if not name.startswith("XDG_")
        }
        runtime = {"XDG_RUNTIME_DIR": os.environ["XDG_RUNTIME_DIR"]}
        switches = {"QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1", "LANG": "C.UTF-8"}
        self.process = subprocess.Popen(
            [path], env={**environment, **runtime, **switches, "HOME": self.home}, cwd=self.home
        )

    def __enter__(self):
        self.frame = wait_for("the main window", self._find_frame)
        wait_for("the focus", lambda: has(self.frame, pyatspi.STATE_ACTIVE))
        return self

    def __exit__(self, *_):
        if self.process.poll() is None:
            self.process.kill()
            self.process.wait()
        shutil.rmtree(self.home)

    def _find_frame(self):
        if self.process.poll() is not None:
            raise Failure(f"the program has ended with {self.process.returncode}")
        for application in pyatspi.Registry.getDesktop(0):
            if application is None or application.get_process_id() != self.process.pid:
                continue
            self.application = application
            for window in application:
                if window.getRoleName() == "frame" and has(window, pyatspi.STATE_SHOWING):
                    return window
        return None

    # What is there.

    def find(self, name, role=None, within=None):
        def look():
            for node in walk(within or self.frame):
                if node.name == name and role in (None, node.getRoleName()):
                    return node
            return None

        return wait_for(f"the control {name!r}", look)

    def dialog(self, title):
        def look():
            for window in self.application:
                is_dialog = window.getRoleName() not in ("frame", "popup menu")
                if is_dialog and window.name == title and has(window, pyatspi.STATE_ACTIVE):
                    return window
            return None

        return wait_for(f"the dialog {title!r}", look)

    def message(self, text, over=None):
        """Waits for a message box that says `text`, and presses its default button. `over` is the window that
        it stands over, by default the main one."""

        def look():
            window = self.dialog("Tavinor")
            return any(node.name == text for node in walk(window)) and window

        window = wait_for(f"the message {text!r}", look)
        time.sleep(0.1)
        key("Return")
        self.wait_until_gone(window, over)

    def wait_until_gone(self, window, over=None):
        wait_for("the end of a dialog", lambda: not has(window, pyatspi.STATE_SHOWING))
        wait_for("the window below", lambda: has(over or self.frame, pyatspi.STATE_ACTIVE))

    def text(self, name):
        content = self.find(name, "text").queryText()
        return content.getText(0, content.characterCount)

    def rows(self):
        return [row.name for row in self.find("Listado del programa")]

    def row(self, address):
        """The listing row of an address."""
        for row in self.find("Listado del programa"):
            if row.name.startswith(address):
                return row
        raise Failure(f"the listing has no row {address}")

    def cell(self, grid, row, column):
        return self.find(grid, "table").queryTable().getAccessibleAt(row, column).name

    def checked(self, name):
        return has(self.find(name, "check box"), pyatspi.STATE_CHECKED)

    def enabled(self, name):
        return has(self.find(name, "push button"), pyatspi.STATE_ENABLED)

    # What a student does.

    def click(self, node, times=1):
        if isinstance(node, str):
            node = self.find(node)
        box = node.queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
        marked = node.getRoleName() in ("check box", "radio button")
        x = box.x + (8 if marked else box.width // 2)
        xdotool("mousemove", x, box.y + box.height // 2)
        xdotool("click", "--repeat", times, "--delay", 60, 1)

    def type_into(self, name, text):
        """Types into a box, which selects its text when it is entered, and leaves it by Tab."""
        self.click(self.find(name, "text"))
        focused = lambda: has(self.find(name, "text"), pyatspi.STATE_FOCUSED)  # noqa: E731
        wait_for(f"the focus in {name!r}", focused)
        write(text)
        key("Tab")

    def load(self, path):
        self.click(self.find("Cargar fichero HEX"))
        dialog = self.dialog("Cargar fichero .HEX")
        time.sleep(0.1)
        write(path)
        key("Return")
        self.message("Carga correcta")
        return dialog

    def close(self):
        """Asks the window manager to close the window."""
        key("alt+F4")

    def expect_end(self):
        """Waits for a good end that has left nothing behind."""
        try:
            status = self.process.wait(PATIENCE)
        except subprocess.TimeoutExpired:
            raise Failure("the program does not end") from None
        if status != 0:
            raise Failure(f"the program ended with {status}")
        left = [os.path.join(folder, name) for folder, _, names in os.walk(self.home) for name in names]
        if left or os.listdir(self.home):
            raise Failure(f"left behind in the home: {left or os.listdir(self.home)}")
