#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Database server for upload tests: TDS 7.4 on loopback, rows stored in SQLite.

Implements the part of the protocol needed for an INSERT: pre-login without encryption, Login7,
batches, and the procedure call that the ODBC driver uses to execute a statement. Anything else
results in an error or, if that is not possible, in a closed connection.

  tdsresponder.py serve --store FILE [--mode MODE] [--user U --password P]
      prints "ready PORT", then one line per event; reads lines "mode MODE" from the standard
      input, replies "mode MODE", and exits at the end of the input
  tdsresponder.py rows --store FILE
      prints the stored rows, one JSON array per line
"""

import argparse
import json
import re
import socket
import socketserver
import sqlite3
import struct
import sys
import threading

MODES = (
    "ok",
    "deaf",  # the first segment of a connection is dropped, as with a firewall
    "login-wrong",
    "silent-accept",
    "silent-prelogin",
    "silent-login",
    "silent-statement",
    "die-login",
    "die-statement",
    "error-statement",
    "die-confirmation",  # the statement is executed, but the client does not learn it
)

BATCH, RPC, REPLY, ATTENTION, LOGIN7, PRELOGIN = 1, 3, 4, 6, 0x10, 0x12
LAST_PACKET = 1
PACKET_SIZE = 4096
HEADER = struct.Struct(">BBHHBB")

DONE, DONEPROC, DONEINPROC = 0xFD, 0xFE, 0xFF
DONE_FINAL, DONE_MORE, DONE_ERROR, DONE_COUNT, DONE_ATTENTION = 0, 1, 2, 0x10, 0x20

CURSOR_OPEN = 2  # the procedure that the driver uses to execute a statement: handle, statement, ...

COLUMNS = ("Date", "Time", "Station", "Dev_id", "Voltage", "Temperature", "Radiation", "UVIndex")
TEXT = r"'((?:[^']|'')*)'"
INSERT = re.compile(
    r"INSERT \[UVIndex\]\.\[dbo\]\.\[UVI\] \("
    + ", ".join(r"\[%s\]" % column for column in COLUMNS)
    + r"\) VALUES \("
    + ", ".join(["'(\\d{4}-\\d\\d-\\d\\d)'", "'(\\d\\d:\\d\\d:\\d\\d\\.\\d{3})'", TEXT])
    + r", (-?\d+)"
    + r", (-?\d+\.\d{3})" * 4
    + r"\)"
)


class ProtocolError(Exception):
    pass


def utf16(text):
    return text.encode("utf-16-le")


def b_varchar(text):
    return bytes([len(text)]) + utf16(text)


def us_varchar(text):
    return struct.pack("<H", len(text)) + utf16(text)


def done(token, status, count=0):
    return struct.pack("<BHHQ", token, status, 0, count)


def error(number, severity, text):
    body = struct.pack("<IBB", number, 1, severity) + us_varchar(text)
    body += b_varchar("responder") + b_varchar("") + struct.pack("<I", 1)
    return struct.pack("<BH", 0xAA, len(body)) + body


def change(kind, new, old):
    body = bytes([kind]) + new + old
    return struct.pack("<BH", 0xE3, len(body)) + body


def integer_result(name, value):
    """Returns an output value of a procedure: a nullable four-byte integer."""
    body = struct.pack("<H", 0) + b_varchar(name) + struct.pack("<BIH", 1, 0, 0)
    return b"\xac" + body + bytes([0x26, 4, 4]) + struct.pack("<i", value)


def text_column(text):
    """Returns one row with one text column."""
    column = struct.pack("<IH", 0, 8) + b"\xe7" + struct.pack("<H", 8000) + bytes(5) + b_varchar("")
    row = b"\xd1" + struct.pack("<H", len(utf16(text))) + utf16(text)
    return b"\x81" + struct.pack("<H", 1) + column + row


class Reader:
    """Reads values from a message sequentially."""

    def __init__(self, data):
        self.data = data
        self.at = 0

    def take(self, length):
        piece = self.data[self.at : self.at + length]
        if len(piece) != length:
            raise ProtocolError("message too short")
        self.at += length
        return piece

    def number(self, form):
        return struct.unpack(form, self.take(struct.calcsize(form)))[0]

    def skip_all_headers(self):
        self.take(self.number("<I") - 4)

    def parameter(self):
        """Reads an argument of a procedure call: an integer, a text, or None for null."""
        self.take(2 * self.number("<B"))
        self.take(1)
        kind = self.number("<B")
        if kind in (0x26, 0x68):
            self.take(1)
            value = self.take(self.number("<B"))
            return int.from_bytes(value, "little", signed=True) if value else None
        if kind == 0x63:
            self.take(4 + 5)
            length = self.number("<i")
            return None if length < 0 else self.take(length).decode("utf-16-le")
        if kind == 0xE7:
            self.take(2 + 5)
            length = self.number("<H")
            return None if length == 0xFFFF else self.take(length).decode("utf-16-le")
        raise ProtocolError("argument of type 0x%02x" % kind)


class Store:
    """The table; SQLite checks the types of the columns."""

    def __init__(self, path):
        self.path = path
        self.lock = threading.Lock()
        with sqlite3.connect(path) as db:
            db.execute(
                "CREATE TABLE IF NOT EXISTS UVI ([Date] TEXT, [Time] TEXT, Station TEXT,"
                " Dev_id INTEGER, Voltage REAL, Temperature REAL, Radiation REAL, UVIndex REAL)"
            )

    def insert(self, statement):
        found = INSERT.fullmatch(statement)
        if not found:
            raise ValueError(statement)
        day, time, station, device, *values = found.groups()
        row = [day, time, station.replace("''", "'"), int(device)] + [float(v) for v in values]
        with self.lock, sqlite3.connect(self.path) as db:
            db.execute("PRAGMA synchronous = OFF")
            db.execute("INSERT INTO UVI VALUES (?, ?, ?, ?, ?, ?, ?, ?)", row)

    def rows(self):
        with sqlite3.connect(self.path) as db:
            return db.execute("SELECT * FROM UVI ORDER BY rowid").fetchall()


class Session(socketserver.BaseRequestHandler):
    def handle(self):
        self.report("connected")
        try:
            self.run_session()
        except (ProtocolError, UnicodeDecodeError) as problem:
            self.report("protocol error: %s" % problem)
        except (EOFError, ConnectionError):
            pass
        self.report("gone")

    def report(self, text):
        self.server.report(text)

    def bytes(self, length):
        data = b""
        while len(data) < length:
            piece = self.request.recv(length - len(data))
            if not piece:
                raise EOFError
            data += piece
        return data

    def message(self):
        data = b""
        while True:
            kind, status, length, _, _, _ = HEADER.unpack(self.bytes(HEADER.size))
            data += self.bytes(length - HEADER.size)
            if status & LAST_PACKET:
                return kind, data

    def send(self, data):
        size = PACKET_SIZE - HEADER.size
        pieces = [data[i : i + size] for i in range(0, len(data), size)] or [b""]
        for number, piece in enumerate(pieces, 1):
            last = LAST_PACKET if number == len(pieces) else 0
            header = HEADER.pack(REPLY, last, HEADER.size + len(piece), 0, number & 0xFF, 0)
            self.request.sendall(header + piece)

    def ignore_data(self):
        """Reads and ignores all data until the client disconnects."""
        while self.request.recv(4096):
            pass
        raise EOFError

    def run_session(self):
        mode = self.server.mode
        if mode == "silent-accept":
            self.ignore_data()
        kind, _ = self.message()
        if kind != PRELOGIN:
            raise ProtocolError("no pre-login, but message 0x%02x" % kind)
        self.send(self.prelogin())
        if mode == "silent-prelogin":
            self.ignore_data()
        kind, data = self.message()
        if kind != LOGIN7:
            raise ProtocolError("no login, but message 0x%02x" % kind)
        if mode == "die-login":
            return
        if not self.login(data):
            return
        if mode == "silent-login":
            self.ignore_data()
        while True:
            kind, data = self.message()
            if kind == ATTENTION:
                self.report("attention")
                self.send(done(DONE, DONE_ATTENTION))
            elif kind == BATCH:
                reader = Reader(data)
                reader.skip_all_headers()
                self.batch(reader.data[reader.at :].decode("utf-16-le").rstrip("\n"))
            elif kind == RPC:
                self.procedure(Reader(data))
            else:
                raise ProtocolError("message 0x%02x" % kind)

    @staticmethod
    def prelogin():
        options = ((0, bytes([15, 0, 0x10, 0, 0, 0])), (1, b"\x02"), (2, b"\x00"), (4, b"\x00"))
        table, values = b"", b""
        for token, value in options:
            table += struct.pack(">BHH", token, 5 * len(options) + 1 + len(values), len(value))
            values += value
        return table + b"\xff" + values

    def login(self, data):
        def text(offset):
            start, length = struct.unpack_from("<HH", data, offset)
            return data[start : start + 2 * length]

        def hidden(raw):
            return bytes((b ^ 0xA5) << 4 & 0xF0 | (b ^ 0xA5) >> 4 for b in raw)

        # Some clients include the terminating zero character in the length of the last text.
        user, password, database = (
            raw.decode("utf-16-le").rstrip("\0") for raw in (text(40), hidden(text(44)), text(68))
        )
        self.report("login %s" % json.dumps([user, password, database], ensure_ascii=False))
        known = user == self.server.user and password == self.server.password
        if self.server.mode == "login-wrong" or not known:
            refusal = error(18456, 14, "Login failed for user '%s'." % user)
            self.send(refusal + done(DONE, DONE_ERROR))
            return False
        acknowledge = bytes([1]) + struct.pack(">I", 0x74000004) + b_varchar("Responder")
        acknowledge += bytes([15, 0, 0x10, 0])
        self.send(
            change(1, b_varchar(database), b_varchar("master"))
            + change(7, b"\x05\x09\x04\xd0\x00\x34", b"\x00")
            + change(4, b_varchar(str(PACKET_SIZE)), b_varchar(str(PACKET_SIZE)))
            + struct.pack("<BH", 0xAD, len(acknowledge))
            + acknowledge
            + done(DONE, DONE_FINAL)
        )
        return True

    def batch(self, text):
        self.report("batch %s" % json.dumps(text, ensure_ascii=False))
        self.send(self.run(text, DONE))

    def run(self, text, token):
        """Returns the reply to a statement. In a procedure, the "more" flag must be set, or the client
        would treat the end of the statement as the end of the procedure."""
        more = DONE_MORE if token == DONEINPROC else 0
        if not text.lstrip().upper().startswith("INSERT"):
            if re.fullmatch(r"select 'test'", text, re.IGNORECASE):
                return text_column("test") + done(token, DONE_COUNT | more, 1)
            if re.match(r"(SET|USE|IF @@TRANCOUNT|EXEC sp_datatype_info)\b", text, re.IGNORECASE):
                return done(token, DONE_FINAL | more)
            return error(102, 15, "Unknown statement.") + done(token, DONE_ERROR | more)
        mode = self.server.mode
        if mode == "silent-statement":
            self.ignore_data()
        if mode == "die-statement":
            raise EOFError
        if mode == "error-statement":
            return error(547, 16, "The statement was refused.") + done(token, DONE_ERROR | more)
        try:
            self.server.store.insert(text)
        except ValueError:
            self.report("refused %s" % json.dumps(text, ensure_ascii=False))
            return error(102, 15, "Incorrect syntax.") + done(token, DONE_ERROR | more)
        self.report("inserted")
        if mode == "die-confirmation":
            raise EOFError
        return done(token, DONE_COUNT | more, 1)

    def procedure(self, reader):
        reader.skip_all_headers()
        length = reader.number("<H")
        by_number = length == 0xFFFF
        name = reader.number("<H") if by_number else reader.take(2 * length).decode("utf-16-le")
        reader.take(2)
        arguments = []
        while reader.at < len(reader.data):
            arguments.append(reader.parameter())
        self.report("call %s" % json.dumps([name] + arguments, ensure_ascii=False))
        if name != CURSOR_OPEN:
            raise ProtocolError("procedure %s" % name)
        reply = self.run(arguments[1], DONEINPROC)
        reply += b"\x79" + struct.pack("<i", 0) + integer_result("", 0)
        self.send(reply + done(DONEPROC, DONE_FINAL))


class Server(socketserver.ThreadingTCPServer):
    allow_reuse_address = True
    daemon_threads = True
    request_queue_size = 64

    def __init__(self, options):
        super().__init__(("127.0.0.1", 0), Session)
        self.mode = options.mode
        self.user = options.user
        self.password = options.password
        self.store = Store(options.store)
        self.output = threading.Lock()

    def report(self, text):
        with self.output:
            sys.stdout.write(text + "\n")
            sys.stdout.flush()


def stop_listening(server):
    """Fills the connection queue without accepting, so that the system drops new connections."""
    server.socket.listen(0)
    full = []
    while True:
        client = socket.socket()
        client.settimeout(0.2)
        full.append(client)
        try:
            client.connect(server.server_address)
        except TimeoutError:
            return full


def serve(options):
    with Server(options) as server:
        if options.mode == "deaf":
            server.queue = stop_listening(server)
        else:
            threading.Thread(target=server.serve_forever, daemon=True).start()
        server.report("ready %d" % server.server_address[1])
        for line in sys.stdin:
            command, _, mode = line.strip().partition(" ")
            if command != "mode" or mode not in MODES:
                raise SystemExit("unknown command: " + line)
            server.mode = mode
            server.report("mode " + mode)


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    commands = parser.add_subparsers(dest="command", required=True)
    serving = commands.add_parser("serve")
    serving.add_argument("--mode", choices=MODES, default="ok")
    serving.add_argument("--store", required=True)
    serving.add_argument("--user", default="uvi")
    serving.add_argument("--password", default="")
    rows = commands.add_parser("rows")
    rows.add_argument("--store", required=True)
    options = parser.parse_args()
    sys.stdout.reconfigure(encoding="utf-8")
    if options.command == "serve":
        serve(options)
    else:
        for row in Store(options.store).rows():
            print(json.dumps(row, ensure_ascii=False))


if __name__ == "__main__":
    main()
