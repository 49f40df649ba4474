"""The simulated SCPI instrument as a process, and a plain client of it."""

import socket
import subprocess

# Longer than anything here takes; nothing is timed by it.
PATIENCE = 30


class Simulator:
    """The program on a port of its own."""

    def __init__(self, program, *options):
        self._process = subprocess.Popen([program, "--port", "0", *options], stdin=subprocess.DEVNULL,
                                         stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
        self.greeting = self._process.stdout.readline().strip()
        if "listening on" not in self.greeting:
            self._process.wait(timeout=PATIENCE)
            raise AssertionError(f"the simulator said {self.greeting!r} {self._process.stderr.read()!r}")
        self.port = int(self.greeting.rpartition(":")[2])
        self.pid = self._process.pid

    def client(self):
        return Client(self.port)

    def end(self):
        """Stops it as a service is stopped; the exit status."""
        self._process.terminate()
        code = self._process.wait(timeout=PATIENCE)
        self._process.stdout.close()
        self._process.stderr.close()
        return code

    def __enter__(self):
        return self

    def __exit__(self, *_):
        if self._process.poll() is None:
            self.end()


class Client:
    """Lines to and from the socket, bytes as they are."""

    def __init__(self, port):
        self.socket = socket.create_connection(("127.0.0.1", port), timeout=PATIENCE)
        self._file = self.socket.makefile("rb")

    def write(self, message):
        self.socket.sendall(message if isinstance(message, bytes) else message.encode("latin-1") + b"\n")

    def read(self):
        """One line without its end; an empty text where the line was cut."""
        return self._file.readline().decode("latin-1").rstrip("\n")

    def ask(self, message):
        self.write(message)
        return self.read()

    def errors(self):
        return self.ask("SYST:ERR:ALL?")

    def close(self):
        self._file.close()
        self.socket.close()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()
