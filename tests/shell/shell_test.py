"""The program as other programs run it: options, exit status, JSON, scripts, each, check, help.

Run as: shell_test.py VEXIL MODULE TEST_MODULE"""
import json
import os
import re
import subprocess
import sys
import tempfile
import unittest

VEXIL, MODULE, TEST_MODULE = (os.path.abspath(path) for path in sys.argv[1:4])
with open(VEXIL, "rb") as program:
    IS_SANITIZED = b"__asan_init" in program.read()


def run(*arguments, text=b"", modules=(MODULE, TEST_MODULE)):
    """Exit status, standard output and standard error of a run."""
    options = [part for module in modules for part in ("--module", module)]
    text = text if isinstance(text, bytes) else text.encode("latin-1")
    done = subprocess.run([VEXIL, *options, *arguments], input=text, capture_output=True,
                          timeout=120, check=False)
    return done.returncode, done.stdout.decode("latin-1"), done.stderr.decode("latin-1")


def json_of(text, *arguments):
    """The objects that --json gives for statements on standard input, in UTF-8."""
    text = text if isinstance(text, bytes) else text.encode("latin-1")
    done = subprocess.run([VEXIL, "--module", TEST_MODULE, "--json", *arguments], input=text,
                          capture_output=True, timeout=120, check=False)
    return [json.loads(line) for line in done.stdout.decode("utf-8").splitlines()]


class Files(unittest.TestCase):
    """A test with a folder of its own."""

    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)

    def file(self, name, text):
        path = os.path.join(self.folder.name, name)
        with open(path, "wb") as out:
            out.write(text if isinstance(text, bytes) else text.encode("latin-1"))
        return path


class Diagnostics(unittest.TestCase):
    def test_lancaster_rules_are_traced_until_told_otherwise(self):
        statements = ('stem("has", stemmer = paice, trace_rules)', 'lancaster("running")',
                      'lancaster("")', 'stem("owed", lancaster, no_trace_rules)', 'lancaster("x")')
        status, _, error = run(*(part for text in statements for part in ("-e", text)))
        self.assertEqual((status, error), (0, 'has  ["has" -> "ha"]["has" -> "has"] has\n'
                         'running  ["running" -> "runn"]["runn" -> "run"] run\n   \n'))


class Options(Files):
    def test_expressions(self):
        self.assertEqual(run("-e", "1+1", "-e", "x := 3", "-e", "x, -x", "-e", "()"),
                         (0, "2\n3, -3\n", ""))
        self.assertEqual(run("-e", "-5", "-e", "[1, 2]"), (0, "-5\n[1, 2]\n", ""))
        self.assertEqual(run("-e", "1", "-e", "raise(\"no\")", "-e", "2"), (1, "1\n", "error: no\n"))
        self.assertEqual(run("-e", "count(1)"),
                         (1, "", "error in count: expecting a counter, but got 1\n"))

    def test_wrong_use_is_2(self):
        for arguments in (["--nonsense"], ["--heap", "12X"], ["--heap", "5G"], ["--heap", "0"],
                          ["each"], ["check"], ["--raise", "loudly"], ["/nowhere.vx"],
                          ["each", "line", "/nowhere"], ["help", "a", "b"]):
            status, output, error = run(*arguments)
            self.assertEqual((status, output), (2, ""), arguments)
            self.assertNotEqual(error, "")
        self.assertEqual(run("-e", "1", modules=["/nowhere.so"])[0], 2)

    def test_standard_files(self):
        options = "--module '%s' -e 1" % MODULE
        for closed in ("<&-", ">&-", "2>&-", "<&- >&- 2>&-"):
            status = subprocess.run("'%s' %s %s" % (VEXIL, options, closed), shell=True,
                                    stdout=subprocess.DEVNULL, check=False).returncode
            self.assertEqual(status, 0, closed)
        done = subprocess.run("printf 'ARGS\nread(\"-\")' | '%s' --module '%s' - a b <&0" %
                              (VEXIL, MODULE), shell=True, capture_output=True, check=False)
        self.assertEqual(done.stdout, b'["a", "b"]\n')
        for option in ("--version", "--help"):
            with open("/dev/full", "w", encoding="ascii") as full:
                self.assertEqual(subprocess.call([VEXIL, option], stdout=full), 1)

    def test_folders_are_no_input(self):
        for words in (("/tmp",), ("check", "/tmp"), ("each", "line", "/tmp")):
            self.assertEqual(run(*words), (2, "", "vexil: cannot read `/tmp': Is a directory\n"))

    @unittest.skipIf(IS_SANITIZED, "sanitizers need all addresses")
    def test_what_there_is_no_memory_for_ends_its_statement_alone(self):
        text = ('raise(fill("x", 60000000))\n1+1\nprint(repeat("abc", 30000000), 1)\n2+2\n'
                + '"%s"\n3+3' % ("x" * 150000000))
        command = "ulimit -v 500000; '%s' --module '%s' --heap 300M " % (VEXIL, MODULE)
        done = subprocess.run(command + "--json", shell=True, input=text.encode(),
                              capture_output=True, check=False)
        refused = {"error": "out of memory", "format": "out of memory", "args": []}
        self.assertEqual([json.loads(line) for line in done.stdout.splitlines()],
                         [refused, {"value": 2}, refused, {"value": 4}, refused, {"value": 6}])
        command = "ulimit -v 70000; '%s' --module '%s' --heap 16M " % (VEXIL, MODULE)
        done = subprocess.run(command, shell=True, input=b"x := 2\n" + b"x := x * x; 0\n" * 31,
                              capture_output=True, check=False)
        self.assertRegex(done.stderr, b"\\A(error: out of memory\n)+\\Z")
        self.assertEqual(done.returncode, 0)

    def test_information(self):
        self.assertEqual(run("--version"), (0, "vexil 6.0\n", ""))
        self.assertEqual(run("--help")[0], 0)
        self.assertEqual(run("-e", 'inform(2, "told")')[2], "")
        self.assertEqual(run("--info", "2", "-e", 'inform(2, "told")')[2], "Test: told\n")

    def test_heap_limit(self):
        grow = "x := [1]\ny := collect(i -> (x := [x, x, i]; ()), 1..10000000)\n1 + 1\n"
        self.assertEqual(run("--heap", "4M", text=grow), (0, "2\n", "error: out of memory\n"))

    def test_out_of_memory_leaves_the_argument_whole(self):
        setup = 's := fill("x", 60000000); try(length(take(s, 59999990)))'
        for mode in "exception", "longjmp":
            self.assertEqual(run("--raise", mode, "--heap", "100M", "-e", setup,
                                 "-e", "substr(s, 59999988..59999993)")[1],
                             'error = "out of memory"\n"xxxxxx"\n')

    def test_quit(self):
        self.assertEqual(run("-e", "print(1)", "-e", "quit()", "-e", "2"), (0, "1\n", ""))

    def test_help_and_list(self):
        self.assertIn("print(x, ...)", run("help", "print")[1])
        self.assertEqual(run("help", "nope"), (1, "", "vexil: there is no command `nope'\n"))
        self.assertRegex(run("list", "test")[1], r"(?m)^test\n(  .*\n)+\Z")
        self.assertIn("  point(x, y)  ", run("list")[1])
        self.assertEqual(run("list", "nope")[0], 1)
        listed = run("list", modules=[MODULE])[1]
        self.assertIn("  take(s, n), take(s, t)  ", listed)
        names = re.findall(r"(?m)^  (\w+)\(", listed)
        self.assertGreater(len(names), 230)
        statements = "".join('print("page of %s"); help("%s")\n' % (name, name) for name in names)
        pages = re.findall(r"(?m)^page of (\w+)\n(.*)", run(text=statements, modules=[MODULE])[1])
        for name, heading in pages:
            self.assertRegex(heading, r"(^|\W)%s\(" % name)
        self.assertEqual([name for name, _ in pages], names)


class StandardInput(Files):
    def test_statements(self):
        self.assertEqual(run(text="x := [1,\n  2] # two\n\nx; raise(\"a\"); 3\n\"a\nb\"\n(1"),
                         (0, '[1, 2]\n3\n"a\\nb"\n', "error: a\nerror: unexpected end of the statement\n"))

    def test_last_value(self):
        self.assertEqual(run(text="5\nx := 6\n()\n_\n")[1], "5\n5\n")

    def test_any_bytes(self):
        for text in (bytes(range(256)), b"\0", b'"\0"', b"`", b"\\", b"\xff\xfe", b"\n;\n;"):
            self.assertIn(run(text=text)[0], (0,), text)

    def test_deep_nesting(self):
        many = 100000
        for text in ("(" * many + "1" + ")" * many, "[" * many, "f(" * many, "-" * many + "1",
                     "not " * many + "true", "x -> " * many + "1", "x := " * many + "1",
                     "x" + "[1]" * many, "f" + "(1)" * many):
            self.assertEqual(run(text=text)[::2], (0, "error: nested too deeply\n"), text[:9])

    def test_long_chains(self):
        many = 100000
        self.assertEqual(run(text="1+" * many + "1")[1], "100001\n")
        self.assertEqual(run(text="false or " * many + "true")[1], "true\n")
        self.assertEqual(run(text="size([" + "1," * many + "1])")[1], "100001\n")

    def test_deep_values(self):
        text = ("nest := n -> (v := []; collect(i -> (v := [v]; ()), 1..n); v)\n"
                "a := nest(200000); b := nest(200000)\nif(a = b, 1, 2)\ngc()\nsize({a, b})\n")
        self.assertEqual(run(text=text), (0, "1\n1\n", ""))
        self.assertEqual(json_of(text + "a")[-1]["error"], "nested too deeply")

    def test_small_stack(self):
        done = subprocess.run(["sh", "-c", 'ulimit -s 1024; exec "$@"', "sh", VEXIL, "--module",
                               MODULE, "-e", "f := n -> 1 + f(n)", "-e", "f(1)"],
                              capture_output=True, check=False)
        self.assertEqual((done.returncode, done.stderr), (1, b"error: nested too deeply\n"))


class Scripts(Files):
    def test_error_names_file_and_line(self):
        script = self.file("a.vx", "x := 1\n\n# comment\nprint(\n  x,\n  raise(\"bad %1\", 2))\n5\n")
        self.assertEqual(run(script), (1, "", script + ":4: error: bad 2\n"))
        script = self.file("b.vx", "1\ncount(\n1)\n")
        self.assertEqual(run(script)[2],
                         script + ":2: error in count: expecting a counter, but got 1\n")
        script = self.file("c.vx", "1\n2; 3 +; 4\n5\n")
        self.assertEqual(run(script), (1, "1\n2\n", script + ":2: error: unexpected `;'\n"))
        script = self.file("d.vx", b"1\n2\0\n")
        self.assertEqual(run(script)[0], 1)

    def test_arguments(self):
        script = self.file("a.vx", "ARGS\n")
        self.assertEqual(run(script, "x", "-y", "--json", "\xe9"),
                         (0, '["x", "-y", "--json", "\\xc3\\xa9"]\n', ""))
        self.assertEqual(run(script)[1], "[]\n")
        self.assertEqual(run("--", script, "--", "-y")[1], '["--", "-y"]\n')
        self.assertEqual(run("each", "--", "-lineno", text="a")[1], "-1\n")


class ReadAndWrite(Files):
    def test_files(self):
        path = os.path.join(self.folder.name, "a")
        script = self.file("a.vx", "f := ARGS[1]; write(f, ARGS[2]); read(f), lines(f)\n")
        self.assertEqual(run(script, path, "one\ntwo\r\n\nlast")[1],
                         '"one\\ntwo\\r\\n\\nlast", ["one", "two\\r", "", "last"]\n')
        self.assertEqual(run(script, path, "a\n")[1], '"a\\n", ["a"]\n')
        self.assertEqual(run(script, path, "")[1], '"", []\n')
        self.assertEqual(run(script, "/dev/full", "a")[2],
                         script + ":1: error: cannot write `/dev/full': No space left on device\n")
        self.file("a", b"a\0b")
        self.assertEqual(run("-e", f'lines("{path}")')[2], f"error: `{path}' holds a NUL byte\n")


class Json(Files):
    def test_values(self):
        cases = {
            '"a\\"\\n\\x01\\x7f\\xe9\\xff"': 'a"\n\x01\x7f\xe9\xff',
            '"\\x7f\\x80\\xff"': "\x7f\x80\xff", "true": True, "false": False, "FAIL": {"name": "FAIL"}, "`a b`": {"name": "a b"},
            "12345678901234567890123": 12345678901234567890123, "-5": -5,
            "1.5": {"float": 1.5}, "nan": {"float": "nan"}, "-inf": {"float": "-inf"},
            '[1, ["a"], ()]': [1, ["a"]], "1, 2": {"seq": [1, 2]}, "()": {"seq": []},
            "1, ()": {"seq": [1]}, "{1, 1}": {"set": [1]}, "array([1])": {"array": [1]},
            "new_table(1)": {"bytes": [10, 11, 12, 20, 21, 22]},
            "bytes(1, 2)": {"bytes": [1, 2]}, "1..n": {"range": [1, {"name": "n"}]},
            "a = 1": {"equation": [{"name": "a"}, 1]},
            "rot[3, 4]": {"index": [{"name": "rot"}, 3, 4]},
            "(x, y)  -> x": {"procedure": "(x, y)  -> x"},
            "point(1, 2)": {"record": {"x": 1, "y": 2}}, "new_counter(4)": {"foreign": 4},
            "q := 7": 7, '"\xe9"': "\xe9",
        }
        for statement, value in cases.items():
            self.assertEqual(json_of(statement), [{"value": value}], statement)
        self.assertEqual(repr(json_of("-0.0")), "[{'value': {'float': -0.0}}]")

    def test_errors_and_output(self):
        self.assertEqual(json_of('raise("%1 is %-2", "a", [1])\n\n# nothing\n1; 2\n'), [
            {"error": "a is [1]", "format": "%1 is %-2", "args": ["a", [1]]},
            {"value": 1}, {"value": 2}])
        self.assertEqual(json_of("count(1)"), [
            {"error": "expecting a counter, but got 1",
             "format": "expecting a counter, but got %1", "args": [1]}])
        self.assertEqual(json.loads(run("--json", "-e", 'lcp("a", "a", 3)')[1])["format"],
                         "argument 3 is not a string")
        self.assertEqual(json_of('(print(1); print("a"); 2)\n3'),
                         [{"value": 2, "output": "1\na\n"}, {"value": 3}])
        self.assertEqual(json_of('(print(1); raise("x"))'),
                         [{"error": "x", "format": "x", "args": [], "output": "1\n"}])
        self.assertEqual(json_of('inform(9, "told")')[0]["info"], ["Test: told"])
        self.assertIn("error", json_of("[1,\n2")[0])  # a line is a statement
        self.assertEqual(json_of("[1,\n2")[1], {"value": 2})

    def test_with_scripts_and_expressions(self):
        script = self.file("a.vx", "1\nraise(\"x\")\n2\n")
        status, output, error = run("--json", script)
        self.assertEqual([list(json.loads(line)) for line in output.splitlines()],
                         [["value"], ["error", "format", "args"], ["value"]])
        self.assertEqual((status, error), (1, ""))
        self.assertEqual(run("--json", "-e", "1", "-e", "2")[1], '{"value": 1}\n{"value": 2}\n')

    def test_each_answer_comes_at_once(self):
        with subprocess.Popen([VEXIL, "--module", MODULE, "--json"], stdin=subprocess.PIPE,
                              stdout=subprocess.PIPE) as child:
            for n in range(3):
                child.stdin.write(b"%d + 1\n" % n)
                child.stdin.flush()
                self.assertEqual(json.loads(child.stdout.readline()), {"value": n + 1})
            child.stdin.close()


class EachLine(Files):
    def test_lines(self):
        self.assertEqual(run("each", "[lineno, line]", text="a\n\nb\r\nlast"),
                         (0, '[1, "a"]\n[2, ""]\n[3, "b\\r"]\n[4, "last"]\n', ""))
        self.assertEqual(run("each", "line", text=b"\xe9 as it is\n"), (0, "\xe9 as it is\n", ""))
        self.assertEqual(run("each", "x := line; if(lineno mod 2 = 0, x, ())", text="a\nb\nc\nd"),
                         (0, "b\nd\n", ""))
        self.assertEqual(run("each", "line", text=""), (0, "", ""))

    def test_long_lines_and_blocks(self):
        text = "".join("x" * (n * 7919 % 300000) + "\n" for n in range(40))
        self.assertEqual(run("each", "line", text=text), (0, text, ""))
        self.assertEqual(run("each", "size(line)", text="y" * 3000000)[1], "3000000\n")

    def test_files(self):
        first, second = self.file("a", "1\n2"), self.file("b", "3\n")
        self.assertEqual(run("each", "lineno, line", first, "-", second, text="in\n")[1],
                         '1, "1"\n2, "2"\n3, "in"\n4, "3"\n')

    def test_an_error_ends_all_files(self):
        first, second = self.file("a.txt", "1\nx\n"), self.file("b.txt", "2\n")
        expression = 'if(line = "x", raise("no"), line)'
        self.assertEqual(run("each", expression, first, second)[:2], (1, "1\n"))
        self.assertEqual(run("each", "--keep-going", expression, first, second)[:2], (1, "1\n2\n"))

    def test_errors(self):
        expression = 'if(line = "b", raise("no %1", line), line)'
        self.assertEqual(run("each", expression, text="a\nb\nc\n"),
                         (1, "a\n", "stdin:2: error: no b\n"))
        self.assertEqual(run("each", "--keep-going", expression, text="a\nb\nc\n"),
                         (1, "a\nc\n", "ERROR stdin:2: error: no b\n"))
        self.assertEqual(run("each", "--keep-going", "line", text="a\nb\0c\nd\n"),
                         (1, "a\nd\n", "ERROR stdin:2: error: the line holds a NUL byte\n"))
        self.assertEqual(run("each", "1 +", text="a\n")[0], 1)

    def test_reader_goes_away(self):
        done = subprocess.run(f'yes | head -c 3000000 | "{VEXIL}" --module "{MODULE}" each line '
                              "| head -n 1", shell=True, capture_output=True, check=False)
        self.assertEqual((done.stdout, done.stderr), (b"y\n", b""))


class Check(Files):
    def test_transcripts(self):
        good = self.file("a.vt", "# comment\n> x := 1\n> x; x + 1\n1\n2\n\n> raise(\"a\")\nerror: a\n")
        self.assertEqual(run("check", good), (0, "3 passed, 0 failed\n", ""))
        self.assertEqual(run("check", good, self.file("b.vt", "> x\nx\n"))[1],
                         "4 passed, 0 failed\n")  # each file has a session of its own
        bad = self.file("c.vt", "> 1\n1\n> 2\n3\n")
        self.assertEqual(run("check", bad), (1, f"{bad}:3: 2\n  expected\n    3\n  got\n    2\n"
                                                "1 passed, 1 failed\n", ""))
        self.assertEqual(run("check", self.file("d.vt", "# nothing\n"))[0], 1)
        self.assertEqual(run("check", self.file("e.vt", "stray\n> 1\n1\n"))[0], 1)

    def test_pages(self):
        page = self.file("a.md", "# T\n> quoted\n```vexil\n> 1\n1\n```\n> 2\n```\n> 3\n```\n"
                                 "```vexil\n> _\n1\n> print(2)\n2\n```\n")
        self.assertEqual(run("check", page), (0, "3 passed, 0 failed\n", ""))


class Interrupt(Files):
    def test_during_a_call(self):
        with subprocess.Popen([VEXIL, "--module", MODULE, "-e", "print(\"on\")", "-e",
                               "f := n -> (collect(i -> i, 1..1000); f(n))", "-e",
                               "collect(i -> try(f(1)), 1..1000000000)"],
                              stdout=subprocess.PIPE, stderr=subprocess.PIPE) as child:
            try:
                child.wait(0.7)
            except subprocess.TimeoutExpired:
                child.send_signal(2)
            output, error = child.communicate(timeout=20)
            self.assertEqual((child.returncode, output, error), (130, b"on\n", b""))

    def test_while_waiting(self):
        with subprocess.Popen([VEXIL, "--module", MODULE], stdin=subprocess.PIPE,
                              stdout=subprocess.PIPE, stderr=subprocess.PIPE) as child:
            child.stdin.write(b"1 + 1\n")
            child.stdin.flush()
            self.assertEqual(child.stdout.readline(), b"2\n")
            child.send_signal(2)
            self.assertEqual((child.wait(20), child.stdout.read()), (130, b""))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
