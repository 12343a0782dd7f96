#!/usr/bin/env python3
"""plant.py HEADER: the same C++ as generate.py makes for the tests, but of wrong formulas: for every pointer of every
operation and every part of its formula one byte more and one less, behind and before, and one row more and one less."""
import re
import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "tools" / "contract"))
import contract
import generate


def wrong_parts(text):
    shape, _, offsets = text.partition(", from ")
    offsets = contract.split_at_commas(offsets or "0")
    moved = lambda by: f", from {', '.join(f'({o}) {by}' for o in offsets)}"
    there = moved("+ 0")
    found = re.fullmatch(r"(?:(?P<rows>.+) rows of )?(?P<bytes>.+) bytes(?:, (?P<apart>.+) apart)?", shape)
    rows, count, apart = found["rows"], found["bytes"], found["apart"]
    made = lambda r, b: f"{f'({r}) rows of ' if r else ''}({b}) bytes{f', {apart} apart' if r else ''}"
    yield "byte more behind", made(rows, f"({count}) + 1") + there
    yield "byte less behind", made(rows, f"({count}) - 1") + there
    yield "byte more before", made(rows, f"({count}) + 1") + moved("- 1")
    yield "byte less before", made(rows, f"({count}) - 1") + moved("+ 1")
    if rows:
        yield "row more", made(f"({rows}) + 1", count) + there
        yield "row less", made(f"({rows}) - 1", count) + there


def main(header):
    operations = []
    for found in contract.DECLARATION.finditer(Path(header).read_text()):
        for access in contract.ACCESS.finditer(found[0]) if found["name"] else ():
            parameter = re.findall(r"@param (\w+)", found[0][:access.start()])[-1]
            parts = re.sub(r"\n \*\s*", " ", access[2]).split(" and ")
            for k, part in enumerate(parts):
                for what, wrong in wrong_parts(part):
                    formula = " and ".join(parts[:k] + [wrong] + parts[k + 1:])
                    text = found[0][:access.start(2)] + formula + found[0][access.end(2):]
                    operation, = contract.parse(text)
                    operation.name += f"#{parameter}, part {k}, {what}"
                    operations.append(operation)
    print(generate.as_tests(operations), end="")


main(*sys.argv[1:])
