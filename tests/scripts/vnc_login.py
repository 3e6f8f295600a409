"""Tells what a VNC server of this machine asks for, or whether it lets a password in.

Usage: vnc_login.py port [password]

Prints "nothing", "password" or other ways in by their number; with a password, "welcome" or "refused".
Debian package: openssl.
"""

import socket
import subprocess
import sys

NO_SECRET, PASSWORD = 1, 2
WAYS = {NO_SECRET: "nothing", PASSWORD: "password"}


def read(server, count):
    data = b""
    while len(data) < count:
        piece = server.recv(count - len(data))
        if not piece:
            raise EOFError("the server has hung up")
        data += piece
    return data


def answer(challenge, password):
    """The challenge in DES, whose key is the password with the bits of each byte turned round. Three times the same
    key is as good as once, and OpenSSL still knows that one."""
    padded = password.encode().ljust(8, b"\0")[:8]
    key = bytes(int(f"{byte:08b}"[::-1], 2) for byte in padded)
    command = ["openssl", "enc", "-des-ede3", "-nopad", "-K", (key * 3).hex()]
    return subprocess.run(command, input=challenge, capture_output=True, check=True).stdout


def main(port, password=None):
    with socket.create_connection(("localhost", int(port)), timeout=30) as server:
        version = read(server, 12)
        server.sendall(version)
        ways = read(server, read(server, 1)[0])
        if password is None:
            return " ".join(WAYS.get(way, str(way)) for way in ways)
        server.sendall(bytes([PASSWORD]))
        server.sendall(answer(read(server, 16), password))
        return "welcome" if int.from_bytes(read(server, 4), "big") == 0 else "refused"


if __name__ == "__main__":
    print(main(*sys.argv[1:]))
