"""The program on a terminal: prompt, history, completion, Ctrl-C, help. Run as: terminal_test.py
VEXIL MODULE TEST_MODULE"""
import os
import pty
import re
import select
import signal
import sys
import tempfile
import time
import unittest

VEXIL, MODULE, TEST_MODULE = (os.path.abspath(path) for path in sys.argv[1:4])


class Terminal:
    """A session on a terminal of its own."""

    def __init__(self, home, *arguments):
        self.seen = ""
        self.pid, self.terminal = pty.fork()
        if self.pid == 0:
            os.environ.update(HOME=home, TERM="xterm", LC_ALL="C.UTF-8")
            os.execv(VEXIL, [VEXIL, "--module", MODULE, "--module", TEST_MODULE, *arguments])

    def expect(self, pattern, seconds=20):
        """Waits for a pattern in what came since the last one; gives what came up to its end."""
        end = time.time() + seconds
        while not (found := re.search(pattern, self.seen)):
            if not select.select([self.terminal], [], [], max(0, end - time.time()))[0]:
                raise AssertionError(f"no {pattern!r} in {self.seen!r}")
            try:
                block = os.read(self.terminal, 65536)
            except OSError:
                block = b""
            if not block:
                raise AssertionError(f"ended without {pattern!r}: {self.seen!r}")
            self.seen += block.decode("latin-1")
        self.seen = self.seen[found.end():]
        return found.group()

    def send(self, text):
        os.write(self.terminal, text.encode("latin-1"))

    def ready(self):
        """Waits for the prompt, and until keys are no longer echoed by the terminal itself."""
        self.expect(r"(^|\n)(> |\.\.\. )")
        time.sleep(0.2)

    def status(self):
        return os.waitstatus_to_exitcode(os.waitpid(self.pid, 0)[1])


class Prompt(unittest.TestCase):
    def setUp(self):
        self.home = tempfile.TemporaryDirectory()
        self.addCleanup(self.home.cleanup)

    def start(self, *arguments):
        terminal = Terminal(self.home.name, *arguments)
        terminal.ready()
        return terminal

    def test_statements_and_end(self):
        shell = self.start()
        for keys, answer in (("6 * 7", r"\n42\r?\n"), ("x := [1,", ""), ("2]", ""),
                             ("x[2] + 100", r"\n102\r?\n"), ('raise("bad")', r"\nerror: bad\r?")):
            shell.send(keys + "\n")
            shell.expect(answer)
            shell.ready()
        shell.send("\x04")
        self.assertEqual(shell.status(), 0)

    def test_interrupt_abandons_the_line(self):
        shell = self.start()
        for abandoned in ("999 + [", "(1;\n"):
            shell.send(abandoned)
            time.sleep(0.5)
            shell.send("\x03")
            shell.expect(r"\^C")
            shell.ready()
            shell.send("20 + 3\n")
            shell.expect(r"\n23\r?")
            shell.ready()
        shell.send("quit()\n")
        self.assertEqual(shell.status(), 0)

    def test_interrupt_ends_a_call(self):
        shell = self.start()
        shell.send('print("sta" = 1); collect(i -> (), 1..2000000000)\n')
        shell.expect(r'\n"sta" = 1')
        time.sleep(0.3)
        shell.send("\x03")
        self.assertEqual(shell.status(), 130)

    @unittest.skipIf(os.environ.get("VEXIL_PLAIN"), "built without line editing")
    def test_editing(self):
        shell = self.start()
        for keys, answer in (
                ("new_co\t(3\x01\x05)", r"\n3\r?\n"),  # completed; to the start and back
                ("some_variable := 8", ""),
                ("some_v\t", r"\n8\r?\n"),
                ("\x1b[A\x1b[A\x7f9", ""),  # the statement before the last, with another end
                ("some_variable", r"\n9\r?\n"),
                ("rai\t\t\x15\"\xc3\xa9\"", r'raise  raise_holding(.|\n)*\n"\\xc3\\xa9"\r?\n')):
            shell.send(keys + "\n")
            shell.expect(answer)
            shell.ready()
        shell.send("quit()\n")
        self.assertEqual(shell.status(), 0)
        again = self.start()
        again.send("\x1b[A\x1b[A\x1b[A\n")  # quit(), the string, some_variable
        again.expect(r"\nsome_variable\r?\n")
        again.ready()
        again.send("\x04")
        self.assertEqual(again.status(), 0)


if __name__ == "__main__":
    signal.alarm(200)  # rather than wait for ever
    unittest.main(argv=sys.argv[:1])
