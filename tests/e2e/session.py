"""A session manager that does no more than save the session or end it: it asks its programs to save what they have,
lets them ask the user meanwhile, notes whether one of them has called the end off, and otherwise ends them.

It speaks through libSM and libICE, which Qt needs for the same purpose.
"""

import ctypes
import os
import select
import threading
from ctypes import CFUNCTYPE, POINTER, byref, c_char_p, c_int, c_ulong, c_void_p

SAVE_LOCAL, SAVE_BOTH = 1, 2
INTERACT_NONE, INTERACT_ANY = 0, 2
ALL_CALLBACKS = (1 << 10) - 1

ice = ctypes.CDLL("libICE.so.6")
sm = ctypes.CDLL("libSM.so.6")
ice.IceAcceptConnection.restype = c_void_p
ice.IceComposeNetworkIdList.restype = c_char_p
for function, arguments in (
    (ice.IceComposeNetworkIdList, [c_int, c_void_p]),
    (ice.IceFreeListenObjs, [c_int, c_void_p]),
    (ice.IceGetListenConnectionNumber, [c_void_p]),
    (ice.IceSetHostBasedAuthProc, [c_void_p, c_void_p]),
    (ice.IceAcceptConnection, [c_void_p, POINTER(c_int)]),
    (ice.IceConnectionNumber, [c_void_p]),
    (ice.IceProcessMessages, [c_void_p, c_void_p, c_void_p]),
    (sm.SmsRegisterClientReply, [c_void_p, c_char_p]),
    (sm.SmsSaveYourself, [c_void_p, c_int, c_int, c_int, c_int]),
    (sm.SmsInteract, [c_void_p]),
    (sm.SmsSaveComplete, [c_void_p]),
    (sm.SmsShutdownCancelled, [c_void_p]),
    (sm.SmsDie, [c_void_p]),
):
    function.argtypes = arguments

# What a program may tell, in the order of libSM's table: each is called with its connection, our data (none) and
# up to two arguments more.
Told = CFUNCTYPE(c_int, c_void_p, c_void_p, c_void_p, c_void_p)
TOLD = (
    "register_client",
    "interact_request",
    "interact_done",
    "save_yourself_request",
    "save_yourself_phase2_request",
    "save_yourself_done",
    "close_connection",
    "set_properties",
    "delete_properties",
    "get_properties",
)
NewClient = CFUNCTYPE(c_int, c_void_p, c_void_p, POINTER(c_ulong), POINTER(c_void_p), c_void_p)
# The libraries keep the first of these they are given, for whatever session comes later.
trusts = CFUNCTYPE(c_int, c_char_p)(lambda _: 1)
broken = CFUNCTYPE(None, c_void_p)(lambda _: None)  # a program has gone; libICE would end this one, too


class SessionManager:
    """To be used in a `with`, inside which programs find it by their environment."""

    def __init__(self):
        self.client = None
        self.events = []
        self.wanted = None  # what has been called for and not begun: whether it is the end, and how to ask the user
        self.ending = False
        self.over = False
        self.connections = []
        self.told = [Told(self._noting(name)) for name in TOLD]
        self.new_client = NewClient(self._new_client)
        ice.IceSetIOErrorHandler(broken)
        self.listeners, self.count, error = c_void_p(), c_int(), ctypes.create_string_buffer(256)
        if not sm.SmsInitialize(b"test", b"1", self.new_client, None, trusts, 256, error):
            raise RuntimeError(error.value)
        if not ice.IceListenForConnections(byref(self.count), byref(self.listeners), 256, error):
            raise RuntimeError(error.value)
        self.sockets = [c_void_p.from_address(self.listeners.value + 8 * i).value for i in range(self.count.value)]
        for socket in self.sockets:
            ice.IceSetHostBasedAuthProc(socket, ctypes.cast(trusts, c_void_p))
        self.address = ice.IceComposeNetworkIdList(self.count, self.listeners).decode()

    def __enter__(self):
        os.environ["SESSION_MANAGER"] = self.address
        self.thread = threading.Thread(target=self._serve, daemon=True)
        self.thread.start()
        return self

    def __exit__(self, *_):
        del os.environ["SESSION_MANAGER"]
        self.over = True
        self.thread.join()
        ice.IceFreeListenObjs(self.count, self.listeners)  # for the next one to listen where this one did

    def end_session(self, interaction=INTERACT_ANY):
        self.wanted = (True, interaction)

    def save_session(self):
        self.wanted = (False, INTERACT_NONE)

    def times(self, event):
        """How often the program has told of an event."""
        return sum(name == event for name, _ in self.events)

    def _serve(self):
        while not self.over:
            numbers = {ice.IceGetListenConnectionNumber(socket): socket for socket in self.sockets}
            talking = {ice.IceConnectionNumber(connection): connection for connection in self.connections}
            ready, _, _ = select.select([*numbers, *talking], [], [], 0.05)
            for number in ready:
                if number in numbers:
                    connection = ice.IceAcceptConnection(numbers[number], byref(c_int()))
                    if connection:
                        self.connections.append(connection)
                elif ice.IceProcessMessages(talking[number], None, None) != 0:
                    self.connections.remove(talking[number])
            if self.wanted is not None and self.client:
                (self.ending, interaction), self.wanted = self.wanted, None
                sm.SmsSaveYourself(self.client, SAVE_BOTH, int(self.ending), interaction, 0)

    def _new_client(self, client, _, mask, callbacks, __):
        mask[0] = ALL_CALLBACKS
        for i, told in enumerate(self.told):
            callbacks[2 * i] = ctypes.cast(told, c_void_p).value
        self.client = client
        return 1

    def _noting(self, name):
        def told(client, _, argument, __):
            self.events.append((name, argument))
            getattr(self, "_" + name, lambda *_: None)(client, argument)
            return 1

        return told

    def _register_client(self, client, previous):
        sm.SmsRegisterClientReply(client, b"one")
        if not previous:
            sm.SmsSaveYourself(client, SAVE_LOCAL, 0, INTERACT_NONE, 0)

    def _interact_request(self, client, _):
        sm.SmsInteract(client)

    def _interact_done(self, client, cancelled):
        if (cancelled or 0) & 0xFF:
            self.ending = False
            sm.SmsShutdownCancelled(client)

    def _save_yourself_done(self, client, _):
        if self.ending:
            sm.SmsDie(client)
        else:
            sm.SmsSaveComplete(client)

    def _close_connection(self, *_):
        self.client = None
