"""The module as other hosts load it: the example host in both languages, what is exported, what is
left after it was released, and hosts that are too old.

Run as: module_test.py MODULE GREEDY_MODULE VEXIL RELOAD HOST ..."""
import pathlib
import re
import subprocess
import sys
import unittest

MODULE, GREEDY_MODULE, VEXIL, RELOAD, *HOSTS = sys.argv[1:]
ROOT = pathlib.Path(__file__).resolve().parent.parent.parent


class Module(unittest.TestCase):
    def test_example_hosts(self):
        shown = re.search(r"```\n(words: .*?)```", (ROOT / "docs/embedding.md").read_text(), re.S)
        for host in HOSTS:
            done = subprocess.run([host, MODULE], capture_output=True, text=True, check=False)
            self.assertEqual((done.returncode, done.stdout, done.stderr), (0, shown[1], ""), host)

    def test_names_of_the_headers_alone_are_exported(self):
        known = "".join(path.read_text() for path in [*(ROOT / "include/vstring").glob("*.h"),
                                                      *(ROOT / "vstring").glob("**/*.def")])
        known = set(re.findall(r"\w+", known))
        names = subprocess.run(["nm", "-D", "--defined-only", "--format=just-symbols", MODULE],
                               capture_output=True, text=True, check=True).stdout.split()
        self.assertGreater(len(names), 300)
        self.assertEqual([name for name in names if name not in known], [])

    def test_nothing_stays_of_a_released_module(self):
        self.assertEqual(subprocess.call([RELOAD, MODULE]), 0)

    def test_a_host_with_a_shorter_table_refuses(self):
        done = subprocess.run([VEXIL, "--module", GREEDY_MODULE, "-e", "1"], capture_output=True,
                              text=True, check=False)
        self.assertEqual(done.returncode, 2)
        self.assertRegex(done.stderr, r"^vexil: the module needs \d+ services, but there are \d+\n$")


unittest.main(argv=sys.argv[:1])
