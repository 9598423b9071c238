#!/usr/bin/env python3
"""A network receipt printer for the printing tests: listens on 127.0.0.1, stores what each
connection sends in its own file, and closes its side once the sender has finished.

    fake-printer.py FOLDER [PORT]

Without PORT a free port is taken.  The port is written to FOLDER/port once the printer
listens; each connection's bytes land in FOLDER/job-0001.bin, job-0002.bin, ... in the order
the connections were accepted, each file renamed into place only when complete, so a reader
never sees half a job; FOLDER/received.log gets a line "job-NNNN.bin BYTES TIME" for each, TIME
being when the sender closed (seconds since the epoch).  FOLDER/printer.pid holds the process
id.
"""

import os
import socket
import sys
import threading
import time

log_lock = threading.Lock()


def serve(connection, folder, number):
    partial = os.path.join(folder, "job-%04d.part" % number)
    with connection, open(partial, "wb") as out:
        while True:
            chunk = connection.recv(65536)
            if not chunk:
                break
            out.write(chunk)
    finished = time.time()
    os.rename(partial, os.path.join(folder, "job-%04d.bin" % number))
    with log_lock, open(os.path.join(folder, "received.log"), "a") as log:
        log.write("job-%04d.bin %d %.6f\n" % (number, os.path.getsize(os.path.join(folder, "job-%04d.bin" % number)), finished))


def main():
    folder = sys.argv[1]
    port = int(sys.argv[2]) if len(sys.argv) > 2 else 0
    os.makedirs(folder, exist_ok=True)
    listener = socket.socket(socket.AF_INET, socket.SOCK_STREAM)
    listener.setsockopt(socket.SOL_SOCKET, socket.SO_REUSEADDR, 1)
    listener.bind(("127.0.0.1", port))
    listener.listen(64)
    with open(os.path.join(folder, "printer.pid"), "w") as out:
        out.write("%d\n" % os.getpid())
    with open(os.path.join(folder, "port.part"), "w") as out:
        out.write("%d\n" % listener.getsockname()[1])
    os.rename(os.path.join(folder, "port.part"), os.path.join(folder, "port"))
    number = 0
    while True:
        connection, _ = listener.accept()
        number += 1
        threading.Thread(target=serve, args=(connection, folder, number), daemon=True).start()


if __name__ == "__main__":
    main()
