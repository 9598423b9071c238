#!/usr/bin/env python3
"""Many ordering terminals printing at once, for the printer application's load test and its
benchmark: each client sends its receipts one after another over IPP (Print-Job on a
connection of its own, as a terminal does), while the other clients do the same.

    load-clients.py submit HOST:PORT CLIENTS JOBS PRINTER[,PRINTER...] FOLDER
    load-clients.py check FOLDER PRINTED_FILE...

"submit" starts CLIENTS clients that send JOBS receipts each; a client sends its n-th receipt to
the n-th printer of the list, round and round. Each receipt carries its client and serial
number. FOLDER/sent-PRINTER.bin gets the bytes sent to each printer, and FOLDER/job-ids the
job id libpappl gave each receipt ("client serial printer id" a line). The exit status is not
0 when a job was refused.

"check" reads what the printers printed and answers whether every receipt sent printed exactly
once, each client's in the order that client sent them (the receipts of different clients may
interleave), nothing else printed, and none was cut into by another.
"""

import http.client
import os
import re
import struct
import sys
import threading

PRINT_JOB = 0x0002
OPERATION_TAG = 0x01
END_TAG = 0x03
CHARSET = 0x47
LANGUAGE = 0x48
URI = 0x45
NAME = 0x42
MIME_TYPE = 0x49
INTEGER = 0x21
RECEIPT = re.compile(rb"\x1b@receipt (\d+)-(\d+) [^\n]*\n\x1dVB\x00")


def receipt(client, serial):
    # A line long enough that a receipt cut into by another would show.
    return b"\x1b@receipt %d-%d %s\n\x1dVB\x00" % (client, serial, b"=" * 40)


def attribute(tag, name, value):
    name = name.encode()
    return struct.pack(">BH", tag, len(name)) + name + struct.pack(">H", len(value)) + value


def print_job_request(request_id, uri, user, job_name):
    return (struct.pack(">BBHI", 2, 0, PRINT_JOB, request_id) + bytes([OPERATION_TAG]) +
            attribute(CHARSET, "attributes-charset", b"utf-8") +
            attribute(LANGUAGE, "attributes-natural-language", b"en") +
            attribute(URI, "printer-uri", uri.encode()) +
            attribute(NAME, "requesting-user-name", user.encode()) +
            attribute(NAME, "job-name", job_name.encode()) +
            attribute(MIME_TYPE, "document-format", b"application/vnd.escpos") + bytes([END_TAG]))


def job_id(response):
    """The status of an IPP response and its job-id (0 when there is none)."""
    status = struct.unpack(">H", response[2:4])[0]
    position = 8
    while position < len(response):
        tag = response[position]
        position += 1
        if tag == END_TAG:
            break
        if tag < 0x10:
            continue
        name_length = struct.unpack(">H", response[position:position + 2])[0]
        name = response[position + 2:position + 2 + name_length]
        position += 2 + name_length
        value_length = struct.unpack(">H", response[position:position + 2])[0]
        value = response[position + 2:position + 2 + value_length]
        position += 2 + value_length
        if tag == INTEGER and name == b"job-id":
            return status, struct.unpack(">i", value)[0]
    return status, 0


class Client(threading.Thread):
    def __init__(self, host, port, number, jobs, printers):
        super().__init__()
        self.host, self.port, self.number, self.jobs, self.printers = host, port, number, jobs, printers
        self.sent = []  # (serial, printer, job id)
        self.error = None

    def run(self):
        connection = http.client.HTTPConnection(self.host, self.port, timeout=120)
        try:
            for serial in range(self.jobs):
                printer = self.printers[serial % len(self.printers)]
                uri = "ipp://%s:%d/ipp/print/%s" % (self.host, self.port, printer)
                body = print_job_request(serial + 1, uri, "terminal%d" % self.number,
                                         "receipt %d-%d" % (self.number, serial)) + receipt(self.number, serial)
                connection.request("POST", "/ipp/print/" + printer, body, {"Content-Type": "application/ipp"})
                answer = connection.getresponse()
                data = answer.read()
                status, job = job_id(data) if answer.status == 200 else (answer.status, 0)
                if status >= 0x100 or job <= 0:
                    self.error = "client %d: receipt %d refused (status 0x%04x)" % (self.number, serial, status)
                    return
                self.sent.append((serial, printer, job))
        except (OSError, http.client.HTTPException) as error:
            self.error = "client %d: %s" % (self.number, error)
        finally:
            connection.close()


def submit(address, clients, jobs, printers, folder):
    host, port = address.rsplit(":", 1)
    threads = [Client(host, int(port), number, int(jobs), printers.split(",")) for number in range(int(clients))]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    sent = {printer: [] for printer in printers.split(",")}
    with open(os.path.join(folder, "job-ids"), "w") as ids:
        for thread in threads:
            for serial, printer, job in thread.sent:
                sent[printer].append(receipt(thread.number, serial))
                ids.write("%d %d %s %d\n" % (thread.number, serial, printer, job))
    for printer, receipts in sent.items():
        with open(os.path.join(folder, "sent-%s.bin" % printer), "wb") as out:
            out.write(b"".join(receipts))
    errors = [thread.error for thread in threads if thread.error]
    for error in errors:
        print(error, file=sys.stderr)
    return 1 if errors else 0


def check(folder, printed_files):
    """Compares each printer's printed bytes with what was sent to it."""
    problems = []
    for printed_file in printed_files:
        printer = os.path.basename(os.path.dirname(printed_file))
        with open(os.path.join(folder, "sent-%s.bin" % printer), "rb") as sent_file:
            sent = [(int(c), int(s)) for c, s in RECEIPT.findall(sent_file.read())]
        with open(printed_file, "rb") as printed_bytes:
            printed = printed_bytes.read()
        whole = b"".join(receipt(c, s) for c, s in (tuple(map(int, m)) for m in RECEIPT.findall(printed)))
        if whole != printed:
            problems.append("%s: bytes that are no whole receipt were printed (receipts cut into?)" % printer)
        got = [(int(c), int(s)) for c, s in RECEIPT.findall(printed)]
        if sorted(got) != sorted(sent):
            missing = sorted(set(sent) - set(got))
            twice = sorted({job for job in got if got.count(job) > 1})
            problems.append("%s: %d receipts sent, %d printed; missing %s; printed more than once %s" %
                            (printer, len(sent), len(got), missing[:10], twice[:10]))
        last = {}
        for client, serial in got:
            if serial < last.get(client, -1):
                problems.append("%s: client %d's receipt %d printed after its receipt %d" %
                                (printer, client, serial, last[client]))
            last[client] = serial
    for problem in problems[:20]:
        print(problem, file=sys.stderr)
    return 1 if problems else 0


def main():
    if len(sys.argv) == 7 and sys.argv[1] == "submit":
        return submit(*sys.argv[2:])
    if len(sys.argv) >= 4 and sys.argv[1] == "check":
        return check(sys.argv[2], sys.argv[3:])
    print(__doc__, file=sys.stderr)
    return 2


if __name__ == "__main__":
    sys.exit(main())
