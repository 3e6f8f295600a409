"""The program on a screen: real mouse and keys through the X server, and what is shown there, read as a
screen reader reads it.

Debian packages: xvfb, xauth, openbox, xdotool, dbus, at-spi2-core, python3-pyatspi.
"""

import os
import shutil
import subprocess
import tempfile
import time
import traceback

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
    first, *others = text.split("\n")
    xdotool("type", "--delay", 8, first)
    for line in others:
        key("Return")
        xdotool("type", "--delay", 8, line)


def children(node):
    """Those that are still there when they are looked at."""
    for i in range(node.childCount):
        child = node.getChildAtIndex(i)
        if child is not None:
            yield child


def walk(node):
    for child in children(node):
        yield child
        if child.getRoleName() not in DO_NOT_ENTER:
            yield from walk(child)


def has(node, state):
    return node.getState().contains(state)


class Program:
    """The running program. To be used in a `with`, and first of all to be waited for, until it is `ready`."""

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
        return self

    def __exit__(self, *_):
        if self.process.poll() is None:
            self.process.kill()
            self.process.wait()
        shutil.rmtree(self.home)

    # Its windows.

    def _showing(self):
        """The windows on the screen."""
        if self.process.poll() is not None:
            raise Failure(f"the program has ended with {self.process.returncode}")
        for application in children(pyatspi.Registry.getDesktop(0)):
            if application.get_process_id() == self.process.pid:
                return [window for window in children(application) if has(window, pyatspi.STATE_SHOWING)]
        return []

    def ready(self):
        """Waits for the main window. Returns the program."""
        self.frame = self.frame_beside()
        return self

    def frame_beside(self, *others):
        """Waits for a window that is no dialog and none of the others, and has the focus. Returns it."""

        def look():
            for window in self._showing():
                if window.getRoleName() == "frame" and window not in others:
                    return has(window, pyatspi.STATE_ACTIVE) and window
            return None

        return wait_for("a window with the focus", look)

    def expect_alone(self, text):
        """Waits until all there is on the screen is a dialog that says `text` and has nothing to press."""

        def look():
            windows = self._showing()
            if len(windows) != 1 or windows[0].getRoleName() == "frame":
                return False
            shown = [node for node in walk(windows[0]) if has(node, pyatspi.STATE_SHOWING)]
            says = any(node.name == text for node in shown)
            return says and all(node.getRoleName() != "push button" for node in shown)

        wait_for(f"a window alone on the screen that says {text!r}", look)

    def wait_until_active(self, window):
        wait_for("the focus in a window", lambda: has(window, pyatspi.STATE_ACTIVE))

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
            for window in self._showing():
                is_dialog = window.getRoleName() not in ("frame", "popup menu")
                if is_dialog and window.name == title and has(window, pyatspi.STATE_ACTIVE):
                    return window
            return None

        return wait_for(f"the dialog {title!r}", look)

    def message_box(self, text):
        """Waits for a message box that says `text`. Returns it."""

        def look():
            for window in self._showing():
                says = window.getRoleName() == "alert" and any(node.name == text for node in walk(window))
                if says and has(window, pyatspi.STATE_ACTIVE):
                    return window
            return None

        return wait_for(f"the message {text!r}", look)

    def answer(self, text, button=None):
        """Waits for a message box that says `text`, and presses the button of a name, or the default one."""
        window = self.message_box(text)
        check("the title of a message", lambda: window.name, "Tavinor")
        time.sleep(0.1)
        if button is None:
            key("Return")
        else:
            self.click(self.find(button, "push button", window))
        self.wait_for_end(window)

    def message(self, text):
        """Answers a message box of the main window."""
        self.answer(text)
        self.wait_until_active(self.frame)

    def wait_for_end(self, dialog):
        wait_for("the end of a dialog", lambda: not has(dialog, pyatspi.STATE_SHOWING))

    def wait_until_gone(self, dialog):
        """Waits for the end of a dialog of the main window."""
        self.wait_for_end(dialog)
        self.wait_until_active(self.frame)

    def text(self, name, within=None):
        content = self.find(name, "text", within).queryText()
        return content.getText(0, content.characterCount)

    def rows(self):
        return [row.name for row in children(self.find("Listado del programa"))]

    def row(self, address):
        """The listing row of an address."""
        for row in children(self.find("Listado del programa")):
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
        self.focused_box(name, self.frame)
        write(text)
        key("Tab")

    def focused_box(self, name, within):
        """Waits for the focus in a text box, of any name if `name` is None."""

        def look():
            for node in walk(within):
                right = node.getRoleName() == "text" and name in (None, node.name)
                if right and has(node, pyatspi.STATE_FOCUSED):
                    return node
            return None

        return wait_for(f"the focus in {name or 'a box'!r}", look)

    def choose_file(self, title, path):
        """Types a path into a file dialog and accepts it."""
        dialog = self.dialog(title)
        box = self.focused_box(None, dialog).queryText()
        write(path)
        check("the file name", lambda: box.getText(0, box.characterCount), path)
        key("Return")

    def load(self, path):
        self.click(self.find("Cargar fichero HEX"))
        self.choose_file("Cargar fichero .HEX", path)
        self.message("Carga correcta")

    def close(self):
        """Asks the window manager to close the window."""
        key("alt+F4")

    def expect_end(self, made=()):
        """Waits for a good end that has left nothing in the home but the files that the student made."""
        try:
            status = self.process.wait(PATIENCE)
        except subprocess.TimeoutExpired:
            raise Failure("the program does not end") from None
        if status != 0:
            raise Failure(f"the program ended with {status}")
        left = [
            os.path.relpath(os.path.join(folder, name), self.home)
            for folder, folders, names in os.walk(self.home)
            for name in folders + names
        ]
        if sorted(left) != sorted(made):
            raise Failure(f"in the home are {sorted(left)}, expected {sorted(made)}")


def play_all(scenes):
    """Plays scenes, one after the other, and tells how each went. Returns the exit status."""
    failed = 0
    for name, scene in scenes.items():
        start = time.monotonic()
        try:
            scene()
        except Failure:
            failed += 1
            traceback.print_exc(limit=-2)
            print(f"FAILED {name}", flush=True)
        else:
            print(f"passed {name} ({time.monotonic() - start:.1f} s)", flush=True)
    return 1 if failed else 0
