#!/usr/bin/env python3
"""Writes data/words.inc, the built-in word list: English words from the word lists of Debian's
package scowl (sizes 10 and 20 whole, of size 35 the words of up to seven letters) and the names of
the library's commands and classes.

Run from the top of the checkout, with scowl installed. Prints how many words there are."""

import pathlib
import re

LISTS = pathlib.Path("/usr/share/dict/scowl")
KINDS = ("english-words", "american-words", "british-words", "english-contractions")
LONGEST_RARE = 7


def english_words():
    for size in (10, 20, 35):
        for kind in KINDS:
            path = LISTS / f"{kind}.{size}"
            if not path.exists():
                continue
            for word in path.read_text(encoding="latin-1").split():
                is_plain = re.fullmatch(r"[a-z]+('[a-z]+)?", word) and not word.endswith("'s")
                if is_plain and (size < 35 or len(word) <= LONGEST_RARE):
                    yield word


def library_names():
    for path in pathlib.Path("vstring").rglob("*.def"):
        for name in re.findall(r"^COMMAND\(vstring_(\w+)", path.read_text(), re.M):
            yield name.lower()
    classes = pathlib.Path("vstring/charclass/charclass.cpp").read_text()
    yield from re.findall(r'\{"([a-z]+)", ccl_is', classes)


def row(word, tail_end):
    key = word.encode()[:8].ljust(8, b"\0").hex()
    return f'WORD(0x{key}, {tail_end}, "{word[8:]}")  // {word}\n'


def main():
    words = sorted(set(english_words()) | set(library_names()))
    rows = []
    tail_end = 0
    for word in words:
        tail_end += len(word[8:])
        rows.append(row(word, tail_end))
    head = "// Written by tools/make_words.py; see words.LICENSE for where the words come from.\n"
    pathlib.Path("data/words.inc").write_text(head + "".join(rows))
    print(len(words), "words")


if __name__ == "__main__":
    main()
