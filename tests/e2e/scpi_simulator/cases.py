"""The simulated SCPI instrument as its users meet it: over the loopback, with clients of their own.

usage: cases.py PROGRAM SOURCE_FOLDER [Class.test_NAME]
"""

import json
import os
import random
import shlex
import shutil
import socket
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

from simulator import PATIENCE, Simulator

IDENTITY = "Velmora,VP-210 Dual Pulse Generator,V210-00417,2.31"
NO_ERROR = '0,"No error"'


def lines(text):
    return text.splitlines()


class Case(unittest.TestCase):
    program = ""
    source = Path()

    def start(self, *options):
        simulator = Simulator(self.program, *options)
        self.addCleanup(simulator.__exit__)
        return simulator

    def connect(self, simulator):
        client = simulator.client()
        self.addCleanup(client.close)
        return client

    def run_program(self, *options):
        return subprocess.run([self.program, *options], capture_output=True, text=True, timeout=PATIENCE, check=False)


class CommandLine(Case):
    def test_greeting_names_model_and_address_and_sigterm_ends_it_cleanly(self):
        simulator = self.start("--model", "VB-200")
        self.assertRegex(simulator.greeting, r"^tarvik-scpi-simulator: VB-200 listening on 127\.0\.0\.1:[0-9]+$")
        client = self.connect(simulator)
        self.assertEqual(client.ask("*IDN?"), "Velmora,VB-200 Bench Pulse Generator,B200-00756,3.02")
        self.assertEqual(simulator.end(), 0)
        self.assertEqual(client.read(), "")

    def test_wrong_options_are_explained(self):
        for options, words in [
                (["--port", "65536"], "--port takes a number from 0 to 65535"),
                (["--model", "VP-9"], '"VP-9" is no instrument of the rack; try --list'),
                (["--model", "VP-210 reserved"], '"VP-210 reserved" does not open: somebody else holds it'),
                (["--fault", "1:smoke"], '"smoke" is no fault; there are cut half silence'),
                (["--fault", "cut"], "--fault takes N:KIND or N:KIND:ever"),
                (["--rack", "/nowhere.rack"], "/nowhere.rack is not there"),
                (["--listen", "no.such.host.invalid"], "cannot listen on no.such.host.invalid:5025"),
                (["--smoke"], "--smoke is no option; try --help")]:
            with self.subTest(options):
                result = self.run_program(*options)
                self.assertEqual(result.returncode, 1)
                self.assertIn("tarvik-scpi-simulator: " + words, result.stderr)

    def test_port_in_use_is_explained(self):
        simulator = self.start()
        result = self.run_program("--port", str(simulator.port))
        self.assertEqual(result.returncode, 1)
        self.assertIn(f"cannot listen on 127.0.0.1:{simulator.port}: Address already in use", result.stderr)

    def test_models_and_commands_are_listed(self):
        models = self.run_program("--list")
        self.assertIn(f"VP-210\t{IDENTITY}", lines(models.stdout))
        self.assertNotIn("reserved", models.stdout)
        commands = lines(self.run_program("--commands").stdout)
        self.assertIn("[:SOURce#]:PULSe:WIDTh\t[:SOURce#]:PULSe:WIDTh?", commands)
        self.assertIn("*RST", commands)
        self.assertIn(":SYSTem:VERSion?", commands)


class Profiles(Case):
    def test_every_command_of_the_shipped_profiles_is_answered(self):
        client = self.connect(self.start())
        asked = 0
        for path in sorted((self.source / "drivers/scpi/profiles").glob("*.json")):
            profile = json.loads(path.read_text(encoding="utf-8"))
            client.ask("*RST;*OPC?")
            for setting, row in profile["settings"].items():
                command = row.get("query", row["command"])
                units = command.items() if isinstance(command, dict) else [(None, command)]
                for unit, header in units:
                    for channel in ("1", "2") if "{channel}" in header else ("",):
                        if unit == "A":
                            client.write(f":SOUR{channel}:FUNC:MODE CURR;:SOUR{channel}:CURR:HIGH 0.1;LOW 0")
                        header_asked = header.replace("{channel}", channel).rstrip("?")
                        with self.subTest(profile=path.name, setting=setting, header=header_asked):
                            answer = client.ask(header_asked + "?")
                            self.assertNotEqual(answer, "")
                            if "words" in row:
                                self.check_word(answer, row["words"])
                            asked += 1
                        if unit == "A":
                            client.ask("*RST;*OPC?")
        self.assertEqual(client.errors(), NO_ERROR)
        self.assertGreater(asked, 60)

    def check_word(self, answer, words):
        """The answer is the short form of a word that the profile knows; 1 and 0 are ON and OFF."""
        known = set()
        for word in words.values():
            for form in [word] if isinstance(word, str) else word:
                known.add("".join(ch for ch in form if not ch.islower()))
        known |= {"1"} if "ON" in known else set()
        known |= {"0"} if "OFF" in known else set()
        self.assertIn(answer, known)


class ForeignClients(Case):
    def test_lxi_runs_a_session(self):
        port = str(self.start().port)

        def lxi(message):
            result = subprocess.run(["lxi", "scpi", "--raw", "--address", "127.0.0.1", "--port", port, message],
                                    capture_output=True, text=True, timeout=PATIENCE, check=True)
            return result.stdout.strip()

        self.assertEqual(lxi("*IDN?"), IDENTITY)
        lxi(":SOURce1:PULSe:WIDTh 50 NS;:SOURce:FREQuency 2 MHZ")
        self.assertEqual(lxi(":SOUR1:PULS:WIDT?;:FREQ?"), "5.0E-08;2.0E+06")
        lxi("PULS:WIDT 2US")
        self.assertTrue(lxi("SYST:ERR?").startswith('-221,"Settings conflict;'))
        self.assertEqual(lxi("SYST:ERR?"), NO_ERROR)
        self.assertEqual(lxi("*RST;*OPC?"), "1")
        self.assertEqual(lxi("PULS:WIDT?"), "1.0E-07")

    def test_commands_of_the_document_answer_what_stands_there(self):
        port = self.start().port
        document = lines((self.source / "docs/scpi.md").read_text(encoding="utf-8"))
        tried = 0
        for line, answer in zip(document, document[1:]):
            if not line.startswith("    $ lxi scpi --raw --address 127.0.0.1 "):
                continue
            command = shlex.split(line.removeprefix("    $ "))
            result = subprocess.run([*command[:-1], "--port", str(port), command[-1]], capture_output=True, text=True,
                                    timeout=PATIENCE, check=True)
            self.assertEqual(result.stdout.strip(), answer.strip(), line)
            tried += 1
        self.assertGreaterEqual(tried, 2)

    def test_pyvisa_runs_a_session(self):
        import pyvisa  # takes as long as all other cases together
        manager = pyvisa.ResourceManager("@py")
        self.addCleanup(manager.close)
        instrument = manager.open_resource(f"TCPIP::127.0.0.1::{self.start().port}::SOCKET",
                                           read_termination="\n", write_termination="\n", timeout=PATIENCE * 1000)
        self.addCleanup(instrument.close)
        self.assertEqual(instrument.query("*IDN?"), IDENTITY)
        self.assertEqual(instrument.query("*TST?"), "0")
        instrument.write("FREQ 10 MHZ;:SOUR1:PULS:WIDT 20 NS;:SOUR2:PULS:WIDT 30 NS")
        self.assertEqual(instrument.query_ascii_values("FREQ?")[0], 1e7)
        self.assertEqual(instrument.query_ascii_values("SOUR1:PULS:WIDT?;:SOUR2:PULS:WIDT?", separator=";"),
                         [2e-8, 3e-8])
        # A line feed within a block is data.
        instrument.write_binary_values("DIG:PATT1:DATA 24,", [0x12, 0x0A, 0x34], datatype="B")
        self.assertEqual(instrument.query("*OPC?"), "1")
        instrument.write("DIG:PATT1:DATA?")
        self.assertEqual(instrument.read_bytes(len("24,#13...\n")), b"24,#13\x12\x0a\x34\n")
        instrument.write("OUTP1 MAYBE")
        self.assertEqual(instrument.query("SYST:ERR?"), '-141,"Invalid character data;MAYBE"')
        self.assertEqual(instrument.query("*STB?"), "0")


class Lines(Case):
    def test_many_clients_share_one_instrument(self):
        simulator = self.start()
        clients = [self.connect(simulator) for _ in range(30)]
        for number, client in enumerate(clients):
            client.write(f"*IDN?;:FREQ {number + 1} KHZ")
        for client in clients:
            self.assertEqual(client.read(), IDENTITY)
        clients[7].write("FREQ 5 KHZ;FREQ?")
        self.assertEqual(clients[7].read(), "5.0E+03")
        self.assertEqual({client.ask("FREQ?") for client in clients}, {"5.0E+03"})

    def test_client_beyond_the_limit_is_turned_away_until_one_leaves(self):
        simulator = self.start("--max-clients", "2")
        first, second = self.connect(simulator), self.connect(simulator)
        self.assertEqual(first.ask("*OPC?") + second.ask("*OPC?"), "11")
        self.assertEqual(self.connect(simulator).read(), "")
        second.close()
        for _ in range(1000):
            answer = ""
            try:
                answer = self.connect(simulator).ask("*OPC?")
            except ConnectionError:
                pass
            if answer == "1":
                return
        self.fail("no place became free")

    def test_messages_in_pieces_and_many_at_once(self):
        client = self.connect(self.start())
        for ch in b"*IDN?\n":
            client.write(bytes([ch]))
        self.assertEqual(client.read(), IDENTITY)
        client.write(b"*OPC?\n" * 500)
        self.assertEqual([client.read() for _ in range(500)], ["1"] * 500)

    def test_malformed_input_leaves_the_instrument_as_it_was(self):
        simulator = self.start()
        client, witness = self.connect(simulator), self.connect(simulator)
        chance = random.Random(17)
        for _ in range(300):
            letters = chance.choices(range(256), k=chance.randrange(200))
            client.write(bytes(b for b in letters if b not in b"#") + b"\n")
        # Lines of the grammar's own characters reach deeper; none of these headers is known.
        for _ in range(300):
            client.write("X" + "".join(chance.choices("ABC:;*?, '\"()@+-.0123456789eE", k=60)))
        client.write("*OPC?")
        while witness.ask("SYST:ERR:COUN?") == "0":
            pass
        self.assertIn("-1", witness.errors())
        self.assertEqual(witness.ask("FREQ?;:PULS:WIDT?;:OUTP?"), "1.0E+06;1.0E-07;0")

    def test_too_long_message_is_dropped_and_the_next_one_taken(self):
        client = self.connect(self.start("--max-message", "256"))
        client.write("FREQ 2MHZ" + " " * 300)
        client.write("DIG:PATT:DATA 16384,#42048" + "\n" * 2048)
        self.assertEqual(client.errors(), '-363,"Input buffer overrun",-363,"Input buffer overrun"')
        self.assertEqual(client.ask("FREQ?"), "1.0E+06")

    def test_client_that_leaves_in_the_middle_of_a_message_changes_nothing(self):
        simulator = self.start()
        client = self.connect(simulator)
        client.write(b"FREQ 2MHZ\nFREQ 3MHZ")
        client.close()
        witness = self.connect(simulator)
        while witness.ask("FREQ?") == "1.0E+06":
            pass
        self.assertEqual(witness.ask("FREQ?"), "2.0E+06")
        self.assertEqual(witness.errors(), NO_ERROR)

    def test_query_without_an_end_is_unterminated(self):
        simulator = self.start()
        client = self.connect(simulator)
        client.write(b"*OPC?\n*IDN?")
        client.socket.shutdown(socket.SHUT_WR)
        self.assertEqual([client.read(), client.read()], ["1", ""])
        self.assertEqual(self.connect(simulator).errors(), '-420,"Query UNTERMINATED"')

    def test_message_that_comes_before_a_slow_answer_interrupts_it(self):
        simulator = self.start("--delay", "200")
        client = self.connect(simulator)
        client.write("*IDN?\n*OPC?")
        self.assertEqual(client.read(), "1")
        self.assertEqual(client.errors(), '-410,"Query INTERRUPTED"')

    def test_client_that_reads_nothing_keeps_nobody_waiting(self):
        simulator = self.start()
        deaf = self.connect(simulator)
        deaf.write("DIG:PATT:DATA 16384,#42048" + "a" * 2048)
        deaf.socket.settimeout(1)
        with self.assertRaises(TimeoutError):
            while True:
                deaf.write("DIG:PATT:DATA?;DATA?;DATA?;DATA?")
        self.assertEqual(self.connect(simulator).ask("*IDN?"), IDENTITY)
        self.assertLess(self.resident_megabytes(simulator.pid), 100)
        self.assertEqual(simulator.end(), 0)

    def test_busy_instrument_can_be_stopped(self):
        simulator = self.start_slow("60000 ms")
        self.connect(simulator).write("*TST?")
        self.connect(simulator).write("*IDN?")
        self.assertEqual(simulator.end(), 0)

    def test_client_that_keeps_the_instrument_busy_does_not_keep_it_to_itself(self):
        simulator = self.start_slow("200 ms")
        greedy = self.connect(simulator)
        greedy.write(b"*TST?\n" * 1000)  # for more than three minutes
        self.assertEqual(greedy.read(), "0")
        self.assertEqual(self.connect(simulator).ask("*OPC?"), "1")

    def start_slow(self, self_test_delay):
        rack = Path(tempfile.mkdtemp()) / "slow.rack"
        self.addCleanup(shutil.rmtree, rack.parent)
        rack.write_text(f"[Slow]\nself test delay = {self_test_delay}\n", encoding="utf-8")
        return self.start("--rack", str(rack))

    @staticmethod
    def resident_megabytes(pid):
        pages = int(Path(f"/proc/{pid}/statm").read_text(encoding="ascii").split()[1])
        return pages * os.sysconf("SC_PAGESIZE") / 2**20


class Faults(Case):
    """What the simulator does wrong when it is told to."""

    def setUp(self):
        self.simulator = self.start()
        self.referee = self.connect(self.simulator)
        self.client = self.connect(self.simulator)

    def order(self, fault, message=1, how="ONCE"):
        self.assertEqual(self.referee.ask(f"DIAG:FAUL {message},{fault},{how};*OPC?"), "1")

    def test_cut_before_the_message_is_carried_out(self):
        self.order("CUT", 2)
        self.assertEqual(self.client.ask("FREQ 2MHZ;FREQ?"), "2.0E+06")
        self.assertEqual(self.client.ask("FREQ 3MHZ;FREQ?"), "")
        self.assertEqual(self.referee.ask("FREQ?"), "2.0E+06")
        self.assertEqual(self.connect(self.simulator).ask("FREQ?"), "2.0E+06")

    def test_half_an_answer_and_then_the_cut(self):
        self.order("HALF")
        self.assertEqual(self.client.ask("FREQ 2MHZ;FREQ?"), "2.0")
        self.assertEqual(self.client.read(), "")
        self.assertEqual(self.referee.ask("FREQ?"), "2.0E+06")

    def test_silence_loses_the_message_and_mute_its_answer(self):
        self.order("SIL")
        self.client.write("FREQ 2MHZ;FREQ?")
        self.assertEqual(self.client.ask("FREQ?"), "1.0E+06")
        self.order("MUTE")
        self.client.write("FREQ 2MHZ;FREQ?")
        self.assertEqual(self.client.ask("*OPC?"), "1")
        self.assertEqual(self.referee.ask("FREQ?"), "2.0E+06")

    def test_garbage_in_answers_and_in_messages(self):
        self.order("GARB", 1, "EVER")
        self.assertEqual(self.client.ask("FREQ?"), "1.0\xff+06")
        self.client.write("FREQ 2MHZ")
        self.assertEqual(self.client.ask("*OPC?"), "\xff")
        self.assertEqual(self.referee.errors(), '-101,"Invalid character"')
        self.assertEqual(self.referee.ask("FREQ?;:DIAG:FAUL:COUN?;:DIAG:MESS:COUN?"), "1.0E+06;3;3")

    def test_error_refuses_the_message(self):
        self.order("ERR")
        self.client.write("FREQ 2MHZ;FREQ?")
        self.assertEqual(self.client.errors(), '-240,"Hardware error;as ordered"')
        self.assertEqual(self.client.ask("FREQ?"), "1.0E+06")

    def test_endless_and_stale_answers(self):
        self.order("ENDL")
        self.assertEqual(len(self.client.ask("FREQ?")), 2**20)
        self.assertEqual(self.client.ask("OUTP?"), "0")
        self.order("STAL")
        self.assertEqual([self.client.ask("FREQ?"), self.client.read()], ["0", "1.0E+06"])

    def test_clearing_ends_a_fault_for_ever(self):
        self.order("SIL", 1, "EVER")
        self.client.write("FREQ 2MHZ")
        self.client.write("FREQ 3MHZ")
        while self.referee.ask("DIAG:FAUL:COUN?") != "2":
            pass
        self.assertEqual(self.referee.ask("DIAG:FAUL:CLE;*OPC?"), "1")
        self.assertEqual(self.client.ask("FREQ?"), "1.0E+06")

    def test_fault_of_the_command_line_meets_every_client(self):
        simulator = self.start("--fault", "2:cut:ever")
        self.assertEqual(self.connect(simulator).ask("*OPC?"), "1")
        self.assertEqual(self.connect(simulator).ask("*OPC?"), "")
        self.assertEqual(self.connect(simulator).ask("*OPC?"), "")

    def test_delay_of_answers_can_be_set_and_asked_for(self):
        self.referee.write("DIAG:DEL 200 MS")
        self.assertEqual(self.referee.ask("DIAG:DEL?"), "2.0E-01")


def main(arguments):
    Case.program, Case.source = arguments[0], Path(arguments[1])
    module, loader = sys.modules[__name__], unittest.defaultTestLoader
    suite = loader.loadTestsFromNames(arguments[2:], module) if arguments[2:] else loader.loadTestsFromModule(module)
    sys.exit(0 if unittest.TextTestRunner(verbosity=2).run(suite).wasSuccessful() else 1)


if __name__ == "__main__":
    main(sys.argv[1:])
