"""The program as the package installs it, on a machine that has nothing but what the package asks for, with an
English desktop: it finds all it needs, and speaks Spanish.

Usage: installed_program.py root
"""

import os
import sys
from functools import partial

sys.path.append(os.path.join(os.path.dirname(os.path.abspath(__file__)), "../e2e"))
import student
import whole_program
from desktop import play_all

EXAMPLES = "/usr/share/tavinor/ejemplos"  # seen from inside the root
START = """#!/bin/sh
exec chroot {root} /bin/sh -c '
export LANG=en_US.UTF-8 LANGUAGE=en_US:en LC_CTYPE=C.UTF-8
cd "$HOME" && exec setpriv --inh-caps=-all --ambient-caps=-all tavinor'
"""


def starter(root):
    """Writes a program that starts the one in the root in its own place, so that it keeps its process."""
    path = os.path.join(os.environ["HOME"], "start")
    with open(path, "w", encoding="utf-8") as file:
        file.write(START.format(root=root))
    os.chmod(path, 0o755)
    return path


def main():
    program = starter(sys.argv[1])
    scenes = {
        scene.__name__: partial(student.play, scene, program, EXAMPLES)
        for scene in (student.steps_through_the_sum, student.refuses_a_bad_file)
    }
    scenes["whole_program"] = partial(whole_program.whole_program, program)
    return play_all(scenes)


if __name__ == "__main__":
    sys.exit(main())
