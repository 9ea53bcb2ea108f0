"""Long runs: what somebody who watches sees, and what an interruption leaves."""
import os
import pty
import select
import signal
import struct
import subprocess
import termios
import time
import unittest

import fcntl

from case import PROGRAM, UNREADABLE, Case

ROWS = 1000000
CALL = '{"call":"QSTNSeaLevelCalcByBM","benchmarkHeight":1,"reflectorHeight":2,"verticalDifference":0.5}\n'

# The bar appears half a second after the beginning of a pass, and there are two. A machine that is done with all the
# rows earlier shows none.
LONG_ENOUGH = 1.2

COLUMNS = 60


class LongRuns(Case):
    @classmethod
    def setUpClass(cls):
        cls.table = "id,n,e,h\n" + "".join(f"{i},{i % 997},{i % 1009},{i % 13}\n" for i in range(ROWS))
        cls.calls = CALL * (ROWS // 2)

    def commands(self):
        return {"line": ["line", "0,0", "100,100", self.put("table.csv", self.table), "--csv"],
                "replay": ["replay", self.put("calls.jsonl", self.calls)]}

    def watch(self, arguments):
        """What a terminal shows of standard error, and how long the run took."""
        master, slave = pty.openpty()
        fcntl.ioctl(slave, termios.TIOCSWINSZ, struct.pack("HHHH", 24, COLUMNS, 0, 0))
        started = time.monotonic()
        process = subprocess.Popen([PROGRAM, *arguments], stdout=subprocess.DEVNULL, stderr=slave)
        os.close(slave)
        shown = b""
        while True:
            ready, _, _ = select.select([master], [], [], 60)
            self.assertTrue(ready, "the program hangs")
            try:
                part = os.read(master, 65536)
            except OSError:  # the terminal is closed: the program has ended
                break
            if not part:
                break
            shown += part
        os.close(master)
        self.assertEqual(process.wait(60), 0, shown)
        return shown.decode(), time.monotonic() - started

    def test_a_terminal_shows_a_bar_that_goes_away(self):
        for name, arguments in self.commands().items():
            with self.subTest(verb=name):
                shown, seconds = self.watch(arguments)
                if seconds < LONG_ENOUGH and not shown:
                    self.skipTest(f"done within {seconds:.2f} s")
                bars = [bar for bar in shown.split("\r") if bar.strip()]
                self.assertGreaterEqual(len(bars), 1)
                for bar in bars:
                    self.assertRegex(bar, r"\d+ *%")
                    self.assertLess(len(bar), COLUMNS)
                # In the end the line is empty and the cursor stands at its beginning.
                self.assertTrue(shown.endswith("\r"), shown[-80:])
                self.assertEqual(shown.split("\r")[-2].strip(), "")

    def test_a_pipe_sees_no_bar(self):
        for name, arguments in self.commands().items():
            with self.subTest(verb=name):
                self.assertEqual(self.expect(0, *arguments).stderr, b"")

    def test_an_interrupted_run_leaves_nothing(self):
        for name, arguments in self.commands().items():
            for ending in (signal.SIGINT, signal.SIGTERM):
                with self.subTest(verb=name, signal=ending):
                    output = self.path("result")
                    before = set(os.listdir(self.folder.name))
                    process = subprocess.Popen([PROGRAM, *arguments, "--output", output], stderr=subprocess.DEVNULL)
                    # The moment to interrupt is when the results are on their way: a file of another name is there.
                    deadline = time.monotonic() + 60
                    while set(os.listdir(self.folder.name)) == before and process.poll() is None:
                        self.assertLess(time.monotonic(), deadline)
                    process.send_signal(ending)
                    self.assertEqual(process.wait(60), -ending)
                    self.assertEqual(set(os.listdir(self.folder.name)), before)

    def test_input_that_changes_while_it_is_read_leaves_nothing(self):
        # Into the last row of the table goes a northing that is no number, into the last line of the calls no JSON.
        places = {"line": (self.table.rindex("\n", 0, -1) + 1 + len(f"{ROWS - 1},"), f':{ROWS + 1}: changed while it '
                           'was read: n "x'),
                  "replay": (self.calls.rindex("\n", 0, -1) + 1, f":{ROWS // 2}: changed while it was read: column 1: ")}
        for name, arguments in self.commands().items():
            place, message = places[name]
            with self.subTest(verb=name):
                file = self.path("table.csv" if name == "line" else "calls.jsonl")
                before = set(os.listdir(self.folder.name))
                process = subprocess.Popen([PROGRAM, *arguments, "--output", self.path("result")],
                                           stderr=subprocess.PIPE)
                # The second reading has begun when the results are on their way; it is held up at its beginning.
                while set(os.listdir(self.folder.name)) == before and process.poll() is None:
                    pass
                process.send_signal(signal.SIGSTOP)
                with open(file, "r+b") as table:
                    table.seek(place)
                    table.write(b"x")
                process.send_signal(signal.SIGCONT)
                told = process.communicate(timeout=60)[1].decode()
                self.assertEqual(process.returncode, UNREADABLE, told)
                self.assertTrue(told.startswith(file + message), told)
                self.assertEqual(set(os.listdir(self.folder.name)), before)

    def test_what_stood_there_before_survives_an_interruption(self):
        arguments = self.commands()["line"]
        output = self.put("result", "old\n")
        before = set(os.listdir(self.folder.name))
        process = subprocess.Popen([PROGRAM, *arguments, "--output", output], stderr=subprocess.DEVNULL)
        while set(os.listdir(self.folder.name)) == before and process.poll() is None:
            pass
        process.send_signal(signal.SIGINT)
        self.assertEqual(process.wait(60), -signal.SIGINT)
        self.assertEqual(set(os.listdir(self.folder.name)), before)
        with open(output, encoding="utf-8") as file:
            self.assertEqual(file.read(), "old\n")


if __name__ == "__main__":
    unittest.main()
