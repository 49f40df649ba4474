"""A gateway that puts a SCPI instrument on a socket behind VXI-11: port mapper and core channel, as far as clients use them.

Programs that look for an instrument by VXI-11 ask the port mapper on port 111, so it has to run where that port is free: in
a network namespace of its own.
"""

import fcntl
import socket
import socketserver
import struct
import threading

PORT_MAPPER, PORT_MAPPER_VERSION, GET_PORT = 100000, 2, 3
CORE, CORE_VERSION = 0x0607AF, 1
CREATE_LINK, WRITE, READ, CLEAR, DESTROY_LINK = 10, 11, 12, 15, 23
END_FLAG, END_REASON, REQUEST_COUNT_REASON = 8, 4, 1
NO_ERROR, INVALID_LINK, TIMEOUT = 0, 4, 15
SUCCESS, PROGRAM_UNAVAILABLE, VERSION_MISMATCH, PROCEDURE_UNAVAILABLE = 0, 1, 2, 3


class Arguments:
    """What a call carries, in XDR."""

    def __init__(self, data):
        self._data = data

    def number(self):
        value, self._data = struct.unpack(">I", self._data[:4])[0], self._data[4:]
        return value

    def numbers(self, count):
        return [self.number() for _ in range(count)]

    def opaque(self):
        length = self.number()
        value, self._data = self._data[:length], self._data[(length + 3) & ~3:]
        return value


def numbers(*values):
    return struct.pack(f">{len(values)}I", *values)


def opaque(data):
    return numbers(len(data)) + data + bytes(-len(data) % 4)


def reply(call, programs):
    """The answer to a remote procedure call. Programs: {(number, version): {procedure: function of the arguments}}."""
    arguments = Arguments(call)
    transaction, _, _, program, version, procedure = arguments.numbers(6)
    for _ in "credentials", "verifier":
        arguments.number()
        arguments.opaque()
    accepted = numbers(transaction, 1, 0, 0, 0)
    versions = [known for number, known in programs if number == program]
    if not versions:
        return accepted + numbers(PROGRAM_UNAVAILABLE)
    if version not in versions:
        return accepted + numbers(VERSION_MISMATCH, min(versions), max(versions))
    procedures = {0: lambda _: b"", **programs[program, version]}
    if procedure not in procedures:
        return accepted + numbers(PROCEDURE_UNAVAILABLE)
    return accepted + numbers(SUCCESS) + procedures[procedure](arguments)


def receive(connection, count):
    data = b""
    while len(data) < count:
        piece = connection.recv(count - len(data))
        if not piece:
            raise ConnectionError
        data += piece
    return data


class Calls(socketserver.BaseRequestHandler):
    """Remote procedure calls on a TCP connection, each a record of fragments."""

    def handle(self):
        programs = self.server.programs()
        try:
            while True:
                record, last = b"", False
                while not last:
                    mark = struct.unpack(">I", receive(self.request, 4))[0]
                    last = bool(mark >> 31)
                    record += receive(self.request, mark & 0x7FFFFFFF)
                answer = reply(record, programs)
                self.request.sendall(numbers(len(answer) | 1 << 31) + answer)
        except ConnectionError:
            pass


class Datagrams(socketserver.BaseRequestHandler):
    def handle(self):
        data, connection = self.request
        connection.sendto(reply(data, self.server.programs()), self.client_address)


class Links:
    """The links of one client to the instrument on a socket."""

    def __init__(self, port):
        self._port = port
        self._lines = {}
        self._messages = {}

    def programs(self):
        return {(CORE, CORE_VERSION): {
            CREATE_LINK: self.create, WRITE: self.write, READ: self.read, CLEAR: self.clear, DESTROY_LINK: self.destroy}}

    def _connect(self, link):
        self._lines[link] = socket.create_connection(("127.0.0.1", self._port))
        self._messages[link] = b""

    def create(self, _):
        link = len(self._lines) + 1
        self._connect(link)
        return numbers(NO_ERROR, link, 0, 65536)

    def write(self, arguments):
        link, _, _, flags = arguments.numbers(4)
        data = arguments.opaque()
        if link not in self._lines:
            return numbers(INVALID_LINK, 0)
        self._messages[link] += data
        if flags & END_FLAG:
            message, self._messages[link] = self._messages[link], b""
            self._lines[link].sendall(message if message.endswith(b"\n") else message + b"\n")
        return numbers(NO_ERROR, len(data))

    def read(self, arguments):
        link, size, milliseconds = arguments.numbers(3)
        if link not in self._lines:
            return numbers(INVALID_LINK, 0) + opaque(b"")
        self._lines[link].settimeout(milliseconds / 1000)
        try:
            data = self._lines[link].recv(size)
        except TimeoutError:
            return numbers(TIMEOUT, 0) + opaque(b"")
        return numbers(NO_ERROR, END_REASON if data.endswith(b"\n") else REQUEST_COUNT_REASON) + opaque(data)

    def clear(self, arguments):
        link = arguments.number()
        if link not in self._lines:
            return numbers(INVALID_LINK)
        self._lines[link].close()
        self._connect(link)
        return numbers(NO_ERROR)

    def destroy(self, arguments):
        line = self._lines.pop(arguments.number(), None)
        if line:
            line.close()
        return numbers(NO_ERROR if line else INVALID_LINK)


class Gateway:
    """Serves the instrument on a port of this machine by VXI-11."""

    def __init__(self, port):
        core = self._server(socketserver.ThreadingTCPServer, 0, Calls, lambda: Links(port).programs())
        core_port = core.server_address[1]
        mapper = {(PORT_MAPPER, PORT_MAPPER_VERSION): {
            GET_PORT: lambda arguments: numbers(core_port if arguments.number() == CORE else 0)}}
        self._servers = [core, self._server(socketserver.ThreadingTCPServer, 111, Calls, lambda: mapper),
                         self._server(socketserver.ThreadingUDPServer, 111, Datagrams, lambda: mapper)]

    @staticmethod
    def _server(kind, port, handler, programs):
        kind.allow_reuse_address = kind.daemon_threads = True
        server = kind(("127.0.0.1", port), handler)
        server.programs = programs
        threading.Thread(target=server.serve_forever, kwargs={"poll_interval": 0.01}, daemon=True).start()
        return server

    def close(self):
        for server in self._servers:
            server.shutdown()
            server.server_close()


def bring_loopback_up():
    """In a new network namespace the loopback is down."""
    get_flags, set_flags, up = 0x8913, 0x8914, 1
    with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as any_socket:
        request = struct.pack("16sh14x", b"lo", 0)
        flags = struct.unpack("16sh14x", fcntl.ioctl(any_socket, get_flags, request))[1]
        fcntl.ioctl(any_socket, set_flags, struct.pack("16sh14x", b"lo", flags | up))
