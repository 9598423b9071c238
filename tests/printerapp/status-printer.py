#!/usr/bin/env python3
"""A network receipt printer that answers the real-time status queries, for the printer
application's tests.

    status-printer.py FOLDER

Listens on 127.0.0.1 on two free ports: the printer port, which records every byte it
receives (from any connection, in arrival order) to FOLDER/received.bin and answers each
DLE EOT n (10 04 n, n = 1..4) with the status byte of its current state. What it prints goes
to FOLDER/printed.bin: every byte but the printer application's status questions, all four
DLE EOT in a row (a picture's dots may hold a single DLE EOT n by chance, twelve such bytes
in that order they do not). A control port takes one command per line and answers "ok" once
the command has taken effect:

    state ready | near-end | paper-out | cover-open | cutter-jam | off | silent
    wait-received N
    wait-printed N
    state-after N STATE

"state-after N STATE" takes STATE once N bytes in all have been printed, as a printer whose
paper runs out in the middle of a receipt.
"wait-received N" answers once N bytes in all have reached the printer, "wait-printed N" once
N bytes have been printed. "off" closes the printer port (connections are refused, open ones dropped) until another
state opens it again on the same port; "silent" records the queries but never answers them.
Once both ports listen, their numbers are printed on standard output as "PRINTER CONTROL".
The printer stops when its control connection closes or standard input ends.
"""

import os
import selectors
import socket
import sys

# The four answers of each state, for DLE EOT 1 (printer), 2 (offline cause), 3 (error
# cause) and 4 (roll paper sensor). Bits 1 and 4 are always set in an answer.
BASE = 0x12
ANSWERS = {
    "ready": (BASE, BASE, BASE, BASE),
    "near-end": (BASE, BASE, BASE, BASE | 0x0C),
    "paper-out": (BASE | 0x08, BASE | 0x20, BASE, BASE | 0x0C | 0x60),
    "cover-open": (BASE | 0x08, BASE | 0x04, BASE, BASE),
    "cutter-jam": (BASE | 0x08, BASE | 0x40, BASE | 0x08, BASE),
}
STATES = set(ANSWERS) | {"off", "silent"}
ALL_QUERIES = b"\x10\x04\x01\x10\x04\x02\x10\x04\x03\x10\x04\x04"


class Printer:
    def __init__(self, folder):
        self.selector = selectors.DefaultSelector()
        self.record = open(os.path.join(folder, "received.bin"), "ab", buffering=0)
        self.printed_record = open(os.path.join(folder, "printed.bin"), "ab", buffering=0)
        self.printed = 0
        self.unprinted = {}  # socket -> bytes that may begin the four questions
        self.state = "ready"
        self.port = 0
        self.listener = None
        self.clients = {}  # socket -> bytes of an unfinished query
        self.received = 0
        self.waiters = []  # (control connection, "received" or "printed", byte count)
        self.later_state = None  # (printed byte count, state)
        self.listen()

    def listen(self):
        listener = socket.socket(socket.AF_INET, socket.SOCK_STREAM)
        listener.setsockopt(socket.SOL_SOCKET, socket.SO_REUSEADDR, 1)
        listener.bind(("127.0.0.1", self.port))
        listener.listen(16)
        self.port = listener.getsockname()[1]
        self.listener = listener
        self.selector.register(listener, selectors.EVENT_READ, self.accept)

    def close(self):
        for client in list(self.clients):
            self.drop(client)
        if self.listener is not None:
            self.selector.unregister(self.listener)
            self.listener.close()
            self.listener = None

    def accept(self, listener):
        client, _ = listener.accept()
        self.clients[client] = b""
        self.selector.register(client, selectors.EVENT_READ, self.receive)

    def answer_waiters(self):
        counts = {"received": self.received, "printed": self.printed}
        for waiter in [w for w in self.waiters if w[2] <= counts[w[1]]]:
            self.waiters.remove(waiter)
            waiter[0].sendall(b"ok\n")

    def print_bytes(self, data):
        if data:
            self.printed_record.write(data)
            self.printed += len(data)
        if self.later_state and self.later_state[0] <= self.printed:
            self.set_state(self.later_state[1])
            self.later_state = None

    def print_received(self, client, chunk):
        data = (self.unprinted.get(client, b"") + chunk).replace(ALL_QUERIES, b"")
        # The end may begin the four questions, which the next chunk finishes.
        keep = 0
        for length in range(min(len(ALL_QUERIES) - 1, len(data)), 0, -1):
            if data.endswith(ALL_QUERIES[:length]):
                keep = length
                break
        self.print_bytes(data[:len(data) - keep])
        self.unprinted[client] = data[len(data) - keep:]

    def drop(self, client):
        # What was held back as the possible start of the questions was data after all.
        self.print_bytes(self.unprinted.pop(client, b""))
        self.selector.unregister(client)
        client.close()
        del self.clients[client]

    def receive(self, client):
        try:
            chunk = client.recv(65536)
        except ConnectionError:
            chunk = b""
        if not chunk:
            self.drop(client)
            return
        self.record.write(chunk)
        self.received += len(chunk)
        self.print_received(client, chunk)
        self.answer_waiters()
        pending = self.clients[client] + chunk
        answer = bytearray()
        while True:
            start = pending.find(b"\x10\x04")
            if start < 0:
                pending = pending[-1:] if pending.endswith(b"\x10") else b""
                break
            if len(pending) < start + 3:
                pending = pending[start:]
                break
            n = pending[start + 2]
            pending = pending[start + 3:]
            if 1 <= n <= 4 and self.state in ANSWERS:
                answer.append(ANSWERS[self.state][n - 1])
        self.clients[client] = pending
        if answer:
            client.sendall(bytes(answer))

    def set_state(self, state):
        if state == "off" and self.listener is not None:
            self.close()
        elif state != "off" and self.listener is None:
            self.listen()
        self.state = state


def main():
    folder = sys.argv[1]
    os.makedirs(folder, exist_ok=True)
    printer = Printer(folder)
    control = socket.socket(socket.AF_INET, socket.SOCK_STREAM)
    control.bind(("127.0.0.1", 0))
    control.listen(1)
    print("%d %d" % (printer.port, control.getsockname()[1]), flush=True)
    connection = None
    buffered = b""
    running = True

    def on_control_accept(sock):
        nonlocal connection
        connection, _ = sock.accept()
        printer.selector.register(connection, selectors.EVENT_READ, on_command)

    def on_command(sock):
        nonlocal buffered, running
        chunk = sock.recv(4096)
        if not chunk:
            running = False
            return
        buffered += chunk
        while b"\n" in buffered:
            line, buffered = buffered.split(b"\n", 1)
            words = line.decode().split()
            if len(words) == 2 and words[0] == "state" and words[1] in STATES:
                printer.set_state(words[1])
                sock.sendall(b"ok\n")
            elif len(words) == 3 and words[0] == "state-after" and words[1].isdigit() and words[2] in ANSWERS:
                printer.later_state = (int(words[1]), words[2])
                sock.sendall(b"ok\n")
            elif len(words) == 2 and words[0] in ("wait-received", "wait-printed") and words[1].isdigit():
                printer.waiters.append((sock, words[0][len("wait-"):], int(words[1])))
                printer.answer_waiters()
            else:
                sock.sendall(b"error\n")

    def on_stdin(_):
        nonlocal running
        if not os.read(sys.stdin.fileno(), 4096):
            running = False

    printer.selector.register(control, selectors.EVENT_READ, on_control_accept)
    if sys.stdin is not None:
        printer.selector.register(sys.stdin, selectors.EVENT_READ, on_stdin)
    while running:
        for key, _ in printer.selector.select():
            # A handler earlier in the same round may have closed this connection (the printer
            # switched off drops them all).
            if key.fileobj.fileno() == -1:
                continue
            key.data(key.fileobj)
    printer.close()


if __name__ == "__main__":
    main()
