"""VXI-11 to the simulated instrument, through a gateway: foreign clients, and the driver.

usage: vxi11_cases.py SIMULATOR TARVIKCTL DRIVER [Vxi11.test_NAME]

Runs itself again in a network namespace, in which the port mapper's port is free. Where the machine allows none the cases are
skipped.
"""

import json
import os
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

from simulator import PATIENCE, Simulator
from vxi11 import Gateway, bring_loopback_up

SKIPPED = 77
INSIDE = "--inside"
IDENTITY = "Velmora,VP-210 Dual Pulse Generator,V210-00417,2.31"
BENCH = "Bench (TCPIP::127.0.0.1::INSTR)"


class Vxi11(unittest.TestCase):
    simulator_path = tarvikctl = driver = ""

    def setUp(self):
        self.simulator = Simulator(self.simulator_path)
        self.addCleanup(self.simulator.__exit__)
        gateway = Gateway(self.simulator.port)
        self.addCleanup(gateway.close)

    def test_lxi_runs_a_session(self):
        def lxi(message):
            result = subprocess.run(["lxi", "scpi", "--address", "127.0.0.1", message], capture_output=True, text=True,
                                    timeout=PATIENCE, check=True)
            return result.stdout.strip()

        self.assertEqual(lxi("*IDN?"), IDENTITY)
        lxi(":SOUR1:PULS:WIDT 50 NS")
        self.assertEqual(lxi(":SOUR1:PULS:WIDT?"), "5.0E-08")

    def test_pyvisa_runs_a_session(self):
        import pyvisa
        manager = pyvisa.ResourceManager("@py")
        self.addCleanup(manager.close)
        instrument = manager.open_resource("TCPIP::127.0.0.1::INSTR", read_termination="\n", write_termination="\n",
                                           timeout=PATIENCE * 1000)
        self.addCleanup(instrument.close)
        self.assertEqual(instrument.query("*IDN?"), IDENTITY)
        self.assertEqual(instrument.query("FREQ 2 MHZ;FREQ?"), "2.0E+06")

    def test_driver_reads_and_sets_the_instrument(self):
        self.offer_instrument()
        self.assertEqual(self.ctl("get", BENCH, "timing.width[1]"), "timing.width[1]=100ns")
        self.ctl("set", BENCH, "timing.width[1]=50ns", "timing.frequency=2MHz")
        with self.simulator.client() as witness:
            self.assertEqual(witness.ask("PULS:WIDT?;:FREQ?"), "5.0E-08;2.0E+06")
            witness.write("DIG:PATT:DATA 24,#13\x12\x0a\x34")
        self.assertEqual(self.ctl("get", BENCH, "timing.width[1]"), "timing.width[1]=50ns")

    def test_driver_tells_address_and_command_when_the_instrument_falls_silent(self):
        self.offer_instrument()
        with self.simulator.client() as referee:
            self.assertEqual(referee.ask("DIAG:FAUL 1,SIL,EVER;*OPC?"), "1")
            result = self.run_ctl("get", BENCH, "timing.width[1]")
        self.assertNotEqual(result.returncode, 0)
        self.assertIn("TCPIP::127.0.0.1::INSTR: *IDN?: no answer", result.stderr)

    def offer_instrument(self):
        """One instrument, and the driver in the place of the simulated ones."""
        folder = Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, folder)
        (folder / "config/tarvikvi").mkdir(parents=True)
        entry = {"name": "Bench", "address": "TCPIP::127.0.0.1::INSTR", "profile": "scpi-99-pattern"}
        (folder / "config/tarvikvi/scpi-instruments.json").write_text(json.dumps(
            {"format": "tarvikvi-scpi-instruments", "version": 1, "instruments": [entry]}), encoding="utf-8")
        (folder / "data/tarvikvi/drivers").mkdir(parents=True)
        (folder / "data/tarvikvi/drivers/KolvenAtl.Kolven.driver").write_text(self.driver + "\n", encoding="utf-8")
        self.environment = {**os.environ, "HOME": str(folder), "XDG_CONFIG_HOME": str(folder / "config"),
                            "XDG_DATA_HOME": str(folder / "data")}

    def run_ctl(self, *arguments):
        return subprocess.run([self.tarvikctl, *arguments], capture_output=True, text=True, timeout=PATIENCE * 2,
                              env=self.environment, check=False)

    def ctl(self, *arguments):
        result = self.run_ctl(*arguments)
        self.assertEqual(result.returncode, 0, result.stderr)
        return result.stdout.strip()


def main(arguments):
    if INSIDE not in arguments:
        inside = ["unshare", "--map-root-user", "--net"]
        if subprocess.run([*inside, "true"], capture_output=True, check=False).returncode != 0:
            print("skipped: this machine allows no network namespace")
            sys.exit(SKIPPED)
        sys.exit(subprocess.run([*inside, sys.executable, "-B", *sys.argv, INSIDE], check=False).returncode)
    arguments.remove(INSIDE)
    bring_loopback_up()
    Vxi11.simulator_path, Vxi11.tarvikctl, Vxi11.driver = arguments[:3]
    module, loader = sys.modules[__name__], unittest.defaultTestLoader
    suite = loader.loadTestsFromNames(arguments[3:], module) if arguments[3:] else loader.loadTestsFromModule(module)
    sys.exit(0 if unittest.TextTestRunner(verbosity=2).run(suite).wasSuccessful() else 1)


if __name__ == "__main__":
    main(sys.argv[1:])
